#pragma once

#include <string>

#include "base/variant/variant.h"

namespace talvex_common {
namespace utils {
namespace sidebar {

// Opens a mini app in the meeting's sidebar. `params` may carry `scene`,
// `inline` (bool) and `full_screen` (bool). The client keeps a record of what
// was opened (HostJournal "sidebar.OpenApp <open_app_id>").
bool OpenAppWithAppInfo(Variant const& app_info, Variant const& params);
bool OpenApp(std::string const& open_app_id, Variant const& params);
bool IsAppOpened(std::string const& open_app_id);
// Reports that a web app was opened, as the analytics event
// "web_app_opened" with `open_app_id`, `scene_code` and the extra properties.
void ReportWebAppOpened(std::string const& open_app_id, int scene_code, Variant const& extra);
void ReportWebAppOpenedWithCurrentMeetingId(std::string const& open_app_id, int scene_code);

}  // namespace sidebar
}  // namespace utils
}  // namespace talvex_common
