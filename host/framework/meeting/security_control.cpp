#include "framework/meeting/security_control.h"

#include "framework/meeting/meeting_context.h"

namespace talvex_common {
namespace utils {
namespace security_control {

Variant GetSecurityControlInfo(int item) {
  auto const& controls = talvex::MeetingContext::Current().security_controls;
  auto it = controls.find(item);
  Variant info(base::variant::kVariantTypeMap);
  info.Set("is_under_control", it != controls.end());
  info.Set("control_text", it != controls.end() ? it->second : std::string());
  return info;
}

bool IsUnderSecurityControl(int item) { return talvex::MeetingContext::Current().security_controls.count(item) > 0; }

}  // namespace security_control
}  // namespace utils
}  // namespace talvex_common
