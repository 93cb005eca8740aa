#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

namespace talvex_common {
namespace utils {
namespace timer {

// A main-thread timer. The callback never runs after Stop() or destruction.
class TXTimer {
 public:
  virtual ~TXTimer() = default;
  // `repeat` 1 fires every `interval_ms`, 0 fires once. Restarts a running timer.
  virtual void Start(int interval_ms, int repeat) = 0;
  virtual void Stop() = 0;
  virtual bool IsActive() const = 0;
};

// A timer on the event loop, or on the manual clock while one is installed.
std::unique_ptr<TXTimer> CreateTimer(std::function<void()> callback);

// Milliseconds since the epoch. While a ManualTimerClock is installed, the
// moment it was installed plus the time it was moved on, so that what is
// measured against the wall clock (ages, "within four seconds") keeps step
// with the timers.
int64_t WallClockMs();

// A clock that drives, in place of the event loop, every timer created while
// it is installed: time moves only when it is told to, so a test of a 400 ms
// batch takes no time at all. One at a time, on the main thread.
class ManualTimerClock {
 public:
  ManualTimerClock();
  ~ManualTimerClock();
  ManualTimerClock(ManualTimerClock const&) = delete;
  ManualTimerClock& operator=(ManualTimerClock const&) = delete;

  // Moves time on by `ms`, firing every timer that falls due on the way in
  // the order of its due time (equal times in the order they were started),
  // including timers a callback starts within the window.
  void Advance(int ms);
  // Moves on to the next due timer and fires it; false when none is active.
  bool FireNext();
  int64_t now_ms() const;
  size_t active_count() const;

  struct State;

 private:
  std::shared_ptr<State> state_;
};

}  // namespace timer
}  // namespace utils
}  // namespace talvex_common
