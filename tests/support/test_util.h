#pragma once

#include <QString>
#include <functional>
#include <string>
#include <vector>

#include "base/log/log.h"

namespace talvex_test {

// Points HOME and the XDG directories at a fresh temporary directory, so that
// tests never read or write the real user's files.
void IsolateUserDirectories();
std::string TempRoot();

// Turns the Qt event loop until `done` holds or `timeout_ms` passes.
bool WaitUntil(std::function<bool()> const& done, int timeout_ms = 5000);
// Turns the event loop for `ms`.
void SpinFor(int ms);

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
