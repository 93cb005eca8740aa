#pragma once

#include <QString>
#include <functional>
#include <string>
#include <vector>

#include "base/log/log.h"
#include "base/timer/tx_timer.h"

namespace talvex_test {

// Points HOME and the XDG directories at a fresh temporary directory, so that
// tests never read or write the real user's files.
void IsolateUserDirectories();
std::string TempRoot();

// The host's timers on a clock the test moves: while one lives, every timer
// made (the history's 400 ms flush, the list's 150 ms batch) fires only as
// WaitUntil and SpinFor move it, without waiting for real time.
class TestClock : public talvex_common::utils::timer::ManualTimerClock {
 public:
  // Each turn of WaitUntil moves the clock on this far.
  static constexpr int kStepMs = 10;
  TestClock();
  ~TestClock();
  static TestClock* Current();
};

// Turns the Qt event loop until `done` holds or `timeout_ms` passes; with a
// TestClock, each turn also moves it on by TestClock::kStepMs.
bool WaitUntil(std::function<bool()> const& done, int timeout_ms = 5000);
// Turns the event loop for `ms`; with a TestClock, moves it on by `ms`
// instead of waiting for them.
void SpinFor(int ms);

// Returns once every task already posted to the file looper has run and the
// main thread has handled what those tasks posted back: after it, nothing
// posted before is still on its way. For tests that something did not happen.
void DrainLoopers();

// Collects the log lines printed while it lives.
class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  std::vector<base::log::LogRecord> const& records() const { return records_; }
  // True when a line at `level` (0: any level) contains `text`.
  bool Contains(std::string const& text, int level = 0) const;
  size_t Count(std::string const& text) const;
  void Clear() { records_.clear(); }

 private:
  std::vector<base::log::LogRecord> records_;
};

}  // namespace talvex_test
