#pragma once

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

std::unique_ptr<TXTimer> CreateTimer(std::function<void()> callback);

}  // namespace timer
}  // namespace utils
}  // namespace talvex_common
