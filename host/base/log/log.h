#pragma once

#include <cstdint>
#include <functional>
#include <sstream>
#include <string>

namespace base {
namespace log {

enum LogLevel : int {
  kLogError = 1,
  kLogWarning = 3,
  kLogNotice = 4,
  kLogInfo = 6,
  // The only level whose lines are never cut.
  kLogVerbose = 7,
};

constexpr size_t kMaxLineLength = 1024;

// The highest level that is written; a statement above it is skipped whole.
int GetLogLevel();
void SetLogLevel(int level);

// Takes one finished line. `text` is already cut to kMaxLineLength unless
// `level` is kLogVerbose.
void PrintLog(int level, char const* file, int line, char const* function, std::string const& text);

struct LogRecord {
  int level = 0;
  std::string file;
  int line = 0;
  std::string function;
  std::string text;
};

struct LogOptions {
  // Directory of the rotating log file; empty means the user's state
  // directory ($XDG_STATE_HOME or ~/.local/state) under "talvex/logs".
  std::string directory;
  std::string file_name = "talvex.log";
  size_t max_file_bytes = 4 * 1024 * 1024;
  size_t max_files = 3;
  // Lines at or below this level are also written to stderr; 0 writes none.
  int stderr_level = kLogWarning;
  bool write_file = true;
};

// Sets up the sinks. Without a call, lines go to stderr at kLogWarning and
// below, and to no file.
void InitLogging(LogOptions const& options);
void ShutdownLogging();
// Path of the current log file, empty when there is none.
std::string CurrentLogFile();

// Every printed line is also handed to the observer (tests read lines here).
using LogObserver = std::function<void(LogRecord const&)>;
void SetLogObserver(LogObserver observer);

// Collects one statement and prints it when it goes out of scope.
class LogStream {
 public:
  LogStream(int level, char const* file, int line, char const* function)
      : level_(level), file_(file), line_(line), function_(function) {}
  ~LogStream();
  LogStream(LogStream const&) = delete;
  LogStream& operator=(LogStream const&) = delete;

  template <typename T>
  LogStream& operator<<(T const& value) {
    stream_ << value;
    return *this;
  }
  LogStream& operator<<(bool value) {
    stream_ << (value ? "true" : "false");
    return *this;
  }
  LogStream& operator<<(char const* value) {
    stream_ << (value ? value : "(null)");
    return *this;
  }

 private:
  int level_;
  char const* file_;
  int line_;
  char const* function_;
  std::ostringstream stream_;
};

// Makes `cond ? (void)0 : Voidify() & stream` well formed.
struct LogVoidify {
  void operator&(LogStream&) {}
  // A statement with nothing streamed into it: TXLOG(level);
  void operator&(LogStream&&) {}
};

}  // namespace log
}  // namespace base

// The one logging statement of the system:
//   TXLOG(base::log::kLogInfo) << "<IM> text " << value;
// The level is tested first; a skipped statement evaluates none of its operands.
#define TXLOG(level)                                                       \
  (static_cast<int>(level) > ::base::log::GetLogLevel())                   \
      ? (void)0                                                            \
      : ::base::log::LogVoidify() &                                        \
            ::base::log::LogStream(static_cast<int>(level), __FILE__, __LINE__, __func__)

#define TXLOG_ERROR TXLOG(::base::log::kLogError)
#define TXLOG_WARN TXLOG(::base::log::kLogWarning)
#define TXLOG_NOTICE TXLOG(::base::log::kLogNotice)
#define TXLOG_INFO TXLOG(::base::log::kLogInfo)
#define TXLOG_VERBOSE TXLOG(::base::log::kLogVerbose)
