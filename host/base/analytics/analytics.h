#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/variant/variant.h"

namespace base {
namespace analytics {

struct AnalyticsEvent {
  std::string name;
  std::map<std::string, std::string> properties;
  int64_t timestamp_ms = 0;
};

void LogEventWithProperties(std::string const& name, std::map<std::string, std::string> const& properties);
// Map values that are not strings are written as their text.
void LogEventWithProperties(std::string const& name, variant::Variant const& properties);

// The recorder keeps every event of the process in memory (for tests and the
// demo's transcript) and, once a file is set, appends each as one JSON line.
std::vector<AnalyticsEvent> RecordedEvents();
// Events with this name, in order.
std::vector<AnalyticsEvent> RecordedEvents(std::string const& name);
void ClearRecordedEvents();
// Empty path stops writing to a file.
void SetJsonLinesFile(std::string const& path);

}  // namespace analytics
}  // namespace base

namespace talvex_common {
namespace utils {
namespace analytics {

void LogEvent(std::string const& name);
void LogEventWithProperty(std::string const& name, std::string const& key, std::string const& value);
void LogEventWith2Properties(std::string const& name, std::string const& key1, std::string const& value1,
                             std::string const& key2, std::string const& value2);
void LogEventWithProperties(std::string const& name, std::map<std::string, std::string> const& properties);

}  // namespace analytics
}  // namespace utils
}  // namespace talvex_common
