#include "base/timer/tx_timer.h"

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <set>

namespace talvex_common {
namespace utils {
namespace timer {

namespace {

// Holds the callback while it runs: it may delete its own timer.
void Run(std::shared_ptr<std::function<void()>> const& callback) {
  auto keep = callback;
  if (*keep) (*keep)();
}

class QtTimer final : public TXTimer {
 public:
  explicit QtTimer(std::function<void()> callback)
      : callback_(std::make_shared<std::function<void()>>(std::move(callback))) {
    QObject::connect(&timer_, &QTimer::timeout, [this] { Run(callback_); });
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
  std::shared_ptr<std::function<void()>> callback_;
  QTimer timer_;
};

class ClockTimer;

std::weak_ptr<ManualTimerClock::State>& InstalledClock() {
  static std::weak_ptr<ManualTimerClock::State> clock;
  return clock;
}

}  // namespace

struct ManualTimerClock::State {
  int64_t now = 0;
  int64_t epoch_ms = 0;
  uint64_t next_sequence = 0;
  std::set<ClockTimer*> timers;

  ClockTimer* NextDue() const;
};

namespace {

class ClockTimer final : public TXTimer {
 public:
  ClockTimer(std::shared_ptr<ManualTimerClock::State> const& clock, std::function<void()> callback)
      : clock_(clock), callback_(std::make_shared<std::function<void()>>(std::move(callback))) {
    clock->timers.insert(this);
  }
  ~ClockTimer() override {
    if (auto clock = clock_.lock()) clock->timers.erase(this);
  }

  void Start(int interval_ms, int repeat) override {
    auto clock = clock_.lock();
    if (!clock) return;
    interval_ = std::max(interval_ms, 0);
    repeat_ = repeat != 0;
    due_ = clock->now + interval_;
    sequence_ = clock->next_sequence++;
    active_ = true;
  }
  void Stop() override { active_ = false; }
  bool IsActive() const override { return active_; }

  // Called by the clock at the due time.
  void Fire(ManualTimerClock::State& clock) {
    if (repeat_) {
      // A repeating timer of no interval fires once a millisecond, as the
      // event loop would fire it once a turn.
      due_ = clock.now + std::max(interval_, 1);
      sequence_ = clock.next_sequence++;
    } else {
      active_ = false;
    }
    Run(callback_);
  }

  bool active_ = false;
  int64_t due_ = 0;
  uint64_t sequence_ = 0;

 private:
  std::weak_ptr<ManualTimerClock::State> clock_;
  std::shared_ptr<std::function<void()>> callback_;
  int interval_ = 0;
  bool repeat_ = false;
};

}  // namespace

ClockTimer* ManualTimerClock::State::NextDue() const {
  ClockTimer* next = nullptr;
  for (ClockTimer* timer : timers) {
    if (!timer->active_) continue;
    if (!next || timer->due_ < next->due_ || (timer->due_ == next->due_ && timer->sequence_ < next->sequence_)) {
      next = timer;
    }
  }
  return next;
}

std::unique_ptr<TXTimer> CreateTimer(std::function<void()> callback) {
  if (auto clock = InstalledClock().lock()) return std::make_unique<ClockTimer>(clock, std::move(callback));
  return std::make_unique<QtTimer>(std::move(callback));
}

namespace {
int64_t RealWallClockMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
      .count();
}
}  // namespace

int64_t WallClockMs() {
  if (auto clock = InstalledClock().lock()) return clock->epoch_ms + clock->now;
  return RealWallClockMs();
}

ManualTimerClock::ManualTimerClock() : state_(std::make_shared<State>()) {
  // On a whole second, so that second-counting code sees the same steps every run.
  state_->epoch_ms = RealWallClockMs() / 1000 * 1000;
  InstalledClock() = state_;
}

// Timers made on this clock outlive it as timers that never fire.
ManualTimerClock::~ManualTimerClock() { InstalledClock().reset(); }

void ManualTimerClock::Advance(int ms) {
  const int64_t target = state_->now + std::max(ms, 0);
  for (ClockTimer* next = state_->NextDue(); next && next->due_ <= target; next = state_->NextDue()) {
    state_->now = next->due_;
    next->Fire(*state_);
  }
  state_->now = target;
}

bool ManualTimerClock::FireNext() {
  ClockTimer* next = state_->NextDue();
  if (!next) return false;
  state_->now = std::max(state_->now, next->due_);
  next->Fire(*state_);
  return true;
}

int64_t ManualTimerClock::now_ms() const { return state_->now; }

size_t ManualTimerClock::active_count() const {
  return static_cast<size_t>(
      std::count_if(state_->timers.begin(), state_->timers.end(), [](ClockTimer* t) { return t->active_; }));
}

}  // namespace timer
}  // namespace utils
}  // namespace talvex_common
