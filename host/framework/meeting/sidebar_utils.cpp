#include "framework/meeting/sidebar_utils.h"

#include <map>
#include <set>

#include "base/analytics/analytics.h"
#include "framework/journal/host_journal.h"
#include "framework/meeting/meeting_context.h"

namespace talvex_common {
namespace utils {
namespace sidebar {

namespace {
std::set<std::string>& Opened() {
  static std::set<std::string> opened;
  return opened;
}
}  // namespace

bool OpenApp(std::string const& open_app_id, Variant const& params) {
  if (open_app_id.empty()) return false;
  Opened().insert(open_app_id);
  framework::HostJournal::Record("sidebar.OpenApp " + open_app_id + " " + params.ToJson());
  return true;
}

bool OpenAppWithAppInfo(Variant const& app_info, Variant const& params) {
  return OpenApp(app_info.GetString("open_app_id"), params);
}

bool IsAppOpened(std::string const& open_app_id) { return Opened().count(open_app_id) > 0; }

void ReportWebAppOpened(std::string const& open_app_id, int scene_code, Variant const& extra) {
  std::map<std::string, std::string> properties{{"open_app_id", open_app_id},
                                                {"scene_code", std::to_string(scene_code)}};
  for (auto const& [key, value] : extra.AsMap()) properties[key] = value.IsString() ? value.AsStr() : value.ToString();
  talvex_common::utils::analytics::LogEventWithProperties("web_app_opened", properties);
}

void ReportWebAppOpenedWithCurrentMeetingId(std::string const& open_app_id, int scene_code) {
  Variant extra(base::variant::kVariantTypeMap);
  extra.Set("meeting_id", GetStrMeetingId());
  ReportWebAppOpened(open_app_id, scene_code, extra);
}

}  // namespace sidebar
}  // namespace utils
}  // namespace talvex_common
