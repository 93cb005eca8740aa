#include "base/analytics/analytics.h"

#include <deque>
#include <fstream>
#include <mutex>

#include <nlohmann/json.hpp>

#include "base/log/log.h"
#include "base/util/file_util.h"
#include "base/util/time_util.h"

namespace base {
namespace analytics {

namespace {

// Bounds the memory of a long session; the file keeps everything.
constexpr size_t kMaxRecordedEvents = 50000;

struct Recorder {
  std::mutex mutex;
  std::deque<AnalyticsEvent> events;
  std::string file_path;
  std::ofstream file;
};

Recorder& GetRecorder() {
  static Recorder* recorder = new Recorder();
  return *recorder;
}

std::string ToJsonLine(AnalyticsEvent const& event) {
  nlohmann::json line = {{"name", event.name}, {"timestamp_ms", event.timestamp_ms}};
  line["properties"] = nlohmann::json::object();
  for (auto const& [key, value] : event.properties) line["properties"][key] = value;
  return line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void Record(AnalyticsEvent event) {
  event.timestamp_ms = util::time::GetTimestampMsec();
  Recorder& recorder = GetRecorder();
  std::lock_guard<std::mutex> lock(recorder.mutex);
  if (recorder.file.is_open()) {
    recorder.file << ToJsonLine(event) << '\n';
    recorder.file.flush();
  }
  recorder.events.push_back(std::move(event));
  if (recorder.events.size() > kMaxRecordedEvents) recorder.events.pop_front();
}

}  // namespace

void LogEventWithProperties(std::string const& name, std::map<std::string, std::string> const& properties) {
  Record(AnalyticsEvent{name, properties, 0});
}

void LogEventWithProperties(std::string const& name, variant::Variant const& properties) {
  AnalyticsEvent event;
  event.name = name;
  for (auto const& [key, value] : properties.AsMap()) event.properties.emplace(key, value.ToString());
  Record(std::move(event));
}

std::vector<AnalyticsEvent> RecordedEvents() {
  Recorder& recorder = GetRecorder();
  std::lock_guard<std::mutex> lock(recorder.mutex);
  return std::vector<AnalyticsEvent>(recorder.events.begin(), recorder.events.end());
}

std::vector<AnalyticsEvent> RecordedEvents(std::string const& name) {
  Recorder& recorder = GetRecorder();
  std::lock_guard<std::mutex> lock(recorder.mutex);
  std::vector<AnalyticsEvent> out;
  for (auto const& event : recorder.events) {
    if (event.name == name) out.push_back(event);
  }
  return out;
}

void ClearRecordedEvents() {
  Recorder& recorder = GetRecorder();
  std::lock_guard<std::mutex> lock(recorder.mutex);
  recorder.events.clear();
}

void SetJsonLinesFile(std::string const& path) {
  Recorder& recorder = GetRecorder();
  std::lock_guard<std::mutex> lock(recorder.mutex);
  if (recorder.file.is_open()) recorder.file.close();
  recorder.file_path.clear();
  if (path.empty()) return;
  const std::string dir = util::file::GetParentDir(path);
  if (!dir.empty()) util::file::EnsureDirExist(dir);
  recorder.file.open(path, std::ios::out | std::ios::app | std::ios::binary);
  if (!recorder.file.is_open()) {
    TXLOG_ERROR << "[analytics] cannot open " << path;
    return;
  }
  recorder.file_path = path;
}

}  // namespace analytics
}  // namespace base

namespace talvex_common {
namespace utils {
namespace analytics {

void LogEvent(std::string const& name) {
  base::analytics::LogEventWithProperties(name, std::map<std::string, std::string>());
}

void LogEventWithProperty(std::string const& name, std::string const& key, std::string const& value) {
  base::analytics::LogEventWithProperties(name, std::map<std::string, std::string>{{key, value}});
}

void LogEventWith2Properties(std::string const& name, std::string const& key1, std::string const& value1,
                             std::string const& key2, std::string const& value2) {
  base::analytics::LogEventWithProperties(name, std::map<std::string, std::string>{{key1, value1}, {key2, value2}});
}

void LogEventWithProperties(std::string const& name, std::map<std::string, std::string> const& properties) {
  base::analytics::LogEventWithProperties(name, properties);
}

}  // namespace analytics
}  // namespace utils
}  // namespace talvex_common
