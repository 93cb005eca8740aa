#pragma once

#include <functional>
#include <memory>

namespace base {
namespace threading {

// A thread that runs posted tasks one after another, in the order posted.
class Looper : public std::enable_shared_from_this<Looper> {
 public:
  using Task = std::function<void()>;
  virtual ~Looper() = default;
  // Returns false when the looper has stopped; the task is then dropped.
  virtual bool PostTask(Task task) = 0;
  virtual bool PostDelayedTask(Task task, int delay_ms) = 0;
  // True when called on this looper's own thread.
  virtual bool BelongsToCurrentThread() const = 0;
  virtual char const* name() const = 0;
};

class LooperThread {
 public:
  // The Qt main thread's event loop. Tasks run only while the event loop turns.
  static std::shared_ptr<Looper> MainLooper();
  // One worker thread for file work (copies, image decoding), started on first use.
  static std::shared_ptr<Looper> FileLooper();
  // The looper of the calling thread: the file looper on its thread, the main
  // looper elsewhere.
  static std::shared_ptr<Looper> CurrentLooper();
  // Stops the file looper after the tasks already posted; the next
  // FileLooper() starts a new one. Called at process exit and by tests.
  static void ShutdownFileLooper();
};

}  // namespace threading
}  // namespace base
