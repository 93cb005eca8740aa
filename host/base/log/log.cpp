#include "base/log/log.h"

#include <atomic>
#include <cstring>
#include <memory>
#include <mutex>

#include <spdlog/logger.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

#include "base/util/file_util.h"

namespace base {
namespace log {

namespace {

std::atomic<int> g_log_level{kLogInfo};

struct LogState {
  // Recursive: an observer may itself log.
  std::recursive_mutex mutex;
  std::shared_ptr<spdlog::logger> file_logger;
  std::shared_ptr<spdlog::logger> stderr_logger;
  int stderr_level = kLogWarning;
  std::string file_path;
  LogObserver observer;
};

// Never destroyed: lines may still be printed from static destructors at exit.
LogState& State() {
  static LogState* state = new LogState();
  return *state;
}

constexpr char const* kPattern = "%Y-%m-%d %H:%M:%S.%e %t %v";

std::shared_ptr<spdlog::logger> MakeStderrLogger() {
  auto logger = std::make_shared<spdlog::logger>("talvex_stderr", std::make_shared<spdlog::sinks::stderr_sink_mt>());
  logger->set_pattern(kPattern);
  logger->set_level(spdlog::level::trace);
  return logger;
}

spdlog::level::level_enum ToSpdLevel(int level) {
  if (level <= kLogError) return spdlog::level::err;
  if (level <= kLogWarning) return spdlog::level::warn;
  if (level <= kLogNotice) return spdlog::level::info;
  if (level <= kLogInfo) return spdlog::level::debug;
  return spdlog::level::trace;
}

char LevelLetter(int level) {
  switch (level) {
    case kLogError:
      return 'E';
    case kLogWarning:
      return 'W';
    case kLogNotice:
      return 'N';
    case kLogInfo:
      return 'I';
    case kLogVerbose:
      return 'V';
    default:
      return level >= 0 && level <= 9 ? static_cast<char>('0' + level) : '?';
  }
}

char const* BaseName(char const* path) {
  if (!path) return "";
  char const* slash = std::strrchr(path, '/');
  return slash ? slash + 1 : path;
}

// Cuts to at most kMaxLineLength bytes without splitting a UTF-8 sequence.
size_t CutLength(std::string const& text) {
  if (text.size() <= kMaxLineLength) return text.size();
  size_t cut = kMaxLineLength;
  while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
  return cut;
}

}  // namespace

int GetLogLevel() { return g_log_level.load(std::memory_order_relaxed); }

void SetLogLevel(int level) { g_log_level.store(level, std::memory_order_relaxed); }

void PrintLog(int level, char const* file, int line, char const* function, std::string const& text) {
  LogRecord record;
  record.level = level;
  record.file = file ? file : "";
  record.line = line;
  record.function = function ? function : "";
  record.text = level == kLogVerbose ? text : text.substr(0, CutLength(text));

  std::string formatted;
  formatted.reserve(record.text.size() + 64);
  formatted += '[';
  formatted += LevelLetter(level);
  formatted += "] ";
  formatted += BaseName(file);
  formatted += ':';
  formatted += std::to_string(line);
  formatted += ' ';
  formatted += record.function;
  formatted += " | ";
  formatted += record.text;

  LogState& state = State();
  std::lock_guard<std::recursive_mutex> lock(state.mutex);
  const auto spd_level = ToSpdLevel(level);
  if (state.file_logger) state.file_logger->log(spd_level, spdlog::string_view_t(formatted));
  if (state.stderr_level > 0 && level <= state.stderr_level) {
    if (!state.stderr_logger) state.stderr_logger = MakeStderrLogger();
    state.stderr_logger->log(spd_level, spdlog::string_view_t(formatted));
  }
  if (state.observer) state.observer(record);
}

void InitLogging(LogOptions const& options) {
  LogState& state = State();
  std::lock_guard<std::recursive_mutex> lock(state.mutex);
  state.stderr_level = options.stderr_level;
  if (state.file_logger) state.file_logger->flush();
  state.file_logger.reset();
  state.file_path.clear();
  if (!options.write_file) return;

  std::string directory = options.directory;
  if (directory.empty()) directory = util::file::MakeFilePath(util::file::UserStateDir(), "talvex/logs");
  if (!util::file::EnsureDirExist(directory)) {
    std::fprintf(stderr, "talvex: cannot create the log directory %s\n", directory.c_str());
    return;
  }
  const std::string path = util::file::MakeFilePath(directory, options.file_name);
  try {
    auto sink = std::make_shared<spdlog::sinks::rotating_file_sink_mt>(path, options.max_file_bytes,
                                                                        options.max_files > 0 ? options.max_files - 1 : 0);
    auto logger = std::make_shared<spdlog::logger>("talvex_file", std::move(sink));
    logger->set_pattern(kPattern);
    logger->set_level(spdlog::level::trace);
    // Every line reaches the disk, so a crash leaves the lines that led to it.
    logger->flush_on(spdlog::level::trace);
    state.file_logger = std::move(logger);
    state.file_path = path;
  } catch (std::exception const& e) {
    std::fprintf(stderr, "talvex: cannot open the log file %s: %s\n", path.c_str(), e.what());
  }
}

void ShutdownLogging() {
  LogState& state = State();
  std::lock_guard<std::recursive_mutex> lock(state.mutex);
  if (state.file_logger) state.file_logger->flush();
  state.file_logger.reset();
  state.file_path.clear();
  if (state.stderr_logger) state.stderr_logger->flush();
  state.stderr_level = kLogWarning;
}

std::string CurrentLogFile() {
  LogState& state = State();
  std::lock_guard<std::recursive_mutex> lock(state.mutex);
  return state.file_path;
}

void SetLogObserver(LogObserver observer) {
  LogState& state = State();
  std::lock_guard<std::recursive_mutex> lock(state.mutex);
  state.observer = std::move(observer);
}

LogStream::~LogStream() { PrintLog(level_, file_, line_, function_, stream_.str()); }

}  // namespace log
}  // namespace base
