#include "support/test_util.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <memory>

#include "base/threading/looper.h"
#include "devkit/scratch_home.h"

namespace talvex_test {
namespace {
std::unique_ptr<QTemporaryDir>& Root() {
  static std::unique_ptr<QTemporaryDir> dir;
  return dir;
}
}  // namespace

void IsolateUserDirectories() {
  auto& root = Root();
  if (!root) {
    root = std::make_unique<QTemporaryDir>(QDir::tempPath() + "/talvex-test-XXXXXX");
  }
  devkit::UseScratchHome(root->path());
}

std::string TempRoot() {
  IsolateUserDirectories();
  return Root()->path().toStdString();
}

namespace {
TestClock* g_clock = nullptr;
}  // namespace

TestClock::TestClock() { g_clock = this; }
TestClock::~TestClock() { g_clock = nullptr; }
TestClock* TestClock::Current() { return g_clock; }

bool WaitUntil(std::function<bool()> const& done, int timeout_ms) {
  QElapsedTimer timer;
  timer.start();
  while (!done()) {
    if (timer.elapsed() > timeout_ms) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    if (g_clock) {
      // What a timer's callback posts is handled before `done` is asked, as
      // the event loop would handle it.
      g_clock->Advance(TestClock::kStepMs);
      QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    } else {
      QThread::msleep(1);
    }
  }
  return true;
}

void SpinFor(int ms) {
  if (g_clock) {
    // The clock's timers fire in order, with the event loop turned between steps.
    for (int moved = 0; moved < ms; moved += TestClock::kStepMs) {
      QCoreApplication::processEvents(QEventLoop::AllEvents);
      g_clock->Advance(std::min(TestClock::kStepMs, ms - moved));
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    return;
  }
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < ms) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QThread::msleep(1);
  }
}

void DrainLoopers() {
  using base::threading::LooperThread;
  auto done = std::make_shared<std::atomic<bool>>(false);
  LooperThread::FileLooper()->PostTask([done] {
    LooperThread::MainLooper()->PostTask([done] { done->store(true); });
  });
  WaitUntil([done] { return done->load(); });
  QCoreApplication::processEvents(QEventLoop::AllEvents);
}

LogCapture::LogCapture() {
  base::log::SetLogObserver([this](base::log::LogRecord const& r) { records_.push_back(r); });
}

LogCapture::~LogCapture() { base::log::SetLogObserver(nullptr); }

bool LogCapture::Contains(std::string const& text, int level) const {
  for (auto const& r : records_) {
    if ((level == 0 || r.level == level) && r.text.find(text) != std::string::npos) return true;
  }
  return false;
}

size_t LogCapture::Count(std::string const& text) const {
  size_t n = 0;
  for (auto const& r : records_) n += r.text.find(text) != std::string::npos;
  return n;
}

}  // namespace talvex_test
