#include "base/timer/tx_timer.h"

#include <QTimer>

namespace talvex_common {
namespace utils {
namespace timer {

namespace {

class QtTimer final : public TXTimer {
 public:
  explicit QtTimer(std::function<void()> callback)
      : callback_(std::make_shared<std::function<void()>>(std::move(callback))) {
    QObject::connect(&timer_, &QTimer::timeout, [this] { Fire(); });
  }

  // QTimer::stop() and the QTimer's destruction withdraw a timeout that is
  // already queued, so nothing fires after either.
  ~QtTimer() override { timer_.stop(); }

  void Start(int interval_ms, int repeat) override {
    timer_.stop();
    timer_.setSingleShot(repeat == 0);
    timer_.start(interval_ms < 0 ? 0 : interval_ms);
  }

  void Stop() override { timer_.stop(); }

  bool IsActive() const override { return timer_.isActive(); }

 private:
  void Fire() {
    // Holds the callback while it runs: it may delete this timer.
    auto callback = callback_;
    if (*callback) (*callback)();
  }

  std::shared_ptr<std::function<void()>> callback_;
  QTimer timer_;
};

}  // namespace

std::unique_ptr<TXTimer> CreateTimer(std::function<void()> callback) {
  return std::make_unique<QtTimer>(std::move(callback));
}

}  // namespace timer
}  // namespace utils
}  // namespace talvex_common
