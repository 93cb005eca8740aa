#include "base/threading/looper.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <exception>
#include <map>
#include <mutex>
#include <thread>

#include "base/log/log.h"

namespace base {
namespace threading {

namespace {

// A task that throws must not take its thread (or the event loop) down.
void RunGuarded(Looper::Task const& task, char const* looper) {
  try {
    task();
  } catch (std::exception const& e) {
    TXLOG_ERROR << "[looper] task on " << looper << " threw: " << e.what();
  } catch (...) {
    TXLOG_ERROR << "[looper] task on " << looper << " threw";
  }
}

// Runs tasks through the Qt event loop of the application's thread. The
// application object is the context, so tasks still queued when it goes are
// dropped together with it.
class MainLooperImpl final : public Looper {
 public:
  bool PostTask(Task task) override {
    QCoreApplication* app = QCoreApplication::instance();
    if (!app || !task) return false;
    return QMetaObject::invokeMethod(
        app, [task = std::move(task)] { RunGuarded(task, "main"); }, Qt::QueuedConnection);
  }

  bool PostDelayedTask(Task task, int delay_ms) override {
    if (delay_ms <= 0) return PostTask(std::move(task));
    if (!task) return false;
    // Qt timers can only be started on a thread with an event loop: hop to
    // the main thread first and start the timer there.
    return PostTask([task = std::move(task), delay_ms] {
      QTimer::singleShot(delay_ms, QCoreApplication::instance(), [task] { RunGuarded(task, "main"); });
    });
  }

  bool BelongsToCurrentThread() const override {
    QCoreApplication* app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
  }

  char const* name() const override { return "main"; }
};

struct WorkerState {
  std::mutex mutex;
  std::condition_variable wake;
  std::deque<Looper::Task> tasks;
  std::multimap<std::chrono::steady_clock::time_point, Looper::Task> delayed;
  bool stopping = false;
  // Written before the thread starts, read only on it.
  std::weak_ptr<Looper> self;
};

thread_local WorkerState* t_worker = nullptr;

// One worker thread with its queue. The thread shares the queue's state rather
// than the looper, so the looper may be released from one of its own tasks.
class WorkerLooper final : public Looper {
 public:
  explicit WorkerLooper(char const* name) : name_(name), state_(std::make_shared<WorkerState>()) {}
  ~WorkerLooper() override { Stop(); }

  void Start(std::shared_ptr<Looper> const& self) {
    state_->self = self;
    thread_ = std::thread([state = state_] { Run(*state); });
  }

  // Runs what is already queued, then ends the thread. Delayed tasks not yet
  // due are dropped.
  void Stop() {
    {
      std::lock_guard<std::mutex> lock(state_->mutex);
      state_->stopping = true;
    }
    state_->wake.notify_all();
    if (!thread_.joinable()) return;
    if (thread_.get_id() == std::this_thread::get_id()) {
      thread_.detach();  // stopped from one of its own tasks: it ends by itself
    } else {
      thread_.join();
    }
  }

  bool PostTask(Task task) override { return PostDelayedTask(std::move(task), 0); }

  bool PostDelayedTask(Task task, int delay_ms) override {
    if (!task) return false;
    {
      std::lock_guard<std::mutex> lock(state_->mutex);
      if (state_->stopping) return false;
      if (delay_ms <= 0) {
        state_->tasks.push_back(std::move(task));
      } else {
        state_->delayed.emplace(std::chrono::steady_clock::now() + std::chrono::milliseconds(delay_ms),
                                std::move(task));
      }
    }
    state_->wake.notify_one();
    return true;
  }

  bool BelongsToCurrentThread() const override { return t_worker == state_.get(); }

  char const* name() const override { return name_; }

 private:
  static void Run(WorkerState& state) {
    t_worker = &state;
    std::unique_lock<std::mutex> lock(state.mutex);
    for (;;) {
      const auto now = std::chrono::steady_clock::now();
      while (!state.delayed.empty() && state.delayed.begin()->first <= now) {
        state.tasks.push_back(std::move(state.delayed.begin()->second));
        state.delayed.erase(state.delayed.begin());
      }
      if (!state.tasks.empty()) {
        Task task = std::move(state.tasks.front());
        state.tasks.pop_front();
        lock.unlock();
        RunGuarded(task, "file");
        task = nullptr;  // captures may post again from their destructors
        lock.lock();
        continue;
      }
      if (state.stopping) break;
      if (state.delayed.empty()) {
        state.wake.wait(lock);
      } else {
        state.wake.wait_until(lock, state.delayed.begin()->first);
      }
    }
    auto dropped = std::move(state.delayed);
    lock.unlock();
    dropped.clear();
    t_worker = nullptr;
  }

  char const* name_;
  std::shared_ptr<WorkerState> state_;
  std::thread thread_;
};

struct FileLooperSlot {
  std::mutex mutex;
  std::shared_ptr<WorkerLooper> looper;
  bool exit_hook_registered = false;
  bool app_hook_registered = false;
};

// Never destroyed: the exit hooks use it after static destruction has begun.
FileLooperSlot& FileSlot() {
  static FileLooperSlot* slot = new FileLooperSlot();
  return *slot;
}

void ShutdownAtExit() { LooperThread::ShutdownFileLooper(); }

}  // namespace

std::shared_ptr<Looper> LooperThread::MainLooper() {
  static std::shared_ptr<Looper>* main = new std::shared_ptr<Looper>(std::make_shared<MainLooperImpl>());
  return *main;
}

std::shared_ptr<Looper> LooperThread::FileLooper() {
  FileLooperSlot& slot = FileSlot();
  std::lock_guard<std::mutex> lock(slot.mutex);
  if (!slot.looper) {
    slot.looper = std::make_shared<WorkerLooper>("file");
    slot.looper->Start(slot.looper);
    if (!slot.exit_hook_registered) {
      slot.exit_hook_registered = true;
      std::atexit(ShutdownAtExit);
    }
  }
  // The worker must not outlive the application object whose event loop
  // takes its replies; post routines run while that object is torn down.
  QCoreApplication* app = QCoreApplication::instance();
  if (!slot.app_hook_registered && app && QThread::currentThread() == app->thread()) {
    slot.app_hook_registered = true;
    qAddPostRoutine(ShutdownAtExit);
  }
  return slot.looper;
}

std::shared_ptr<Looper> LooperThread::CurrentLooper() {
  if (t_worker) {
    if (auto looper = t_worker->self.lock()) return looper;
  }
  return MainLooper();
}

void LooperThread::ShutdownFileLooper() {
  std::shared_ptr<WorkerLooper> looper;
  {
    FileLooperSlot& slot = FileSlot();
    std::lock_guard<std::mutex> lock(slot.mutex);
    looper.swap(slot.looper);
  }
  if (looper) looper->Stop();
}

}  // namespace threading
}  // namespace base
