#pragma once

#include <string>

#include "base/variant/variant.h"

namespace talvex {
namespace SecurityControl {
// What an account's security policy can take out of a meeting.
enum ControlItem : int {
  kControlItemRecord = 1,
  kControlItemScreenShare = 2,
  kControlItemChat = 3,
  kControlItemFile = 4,
};
}  // namespace SecurityControl
}  // namespace talvex

namespace talvex_common {
namespace utils {
namespace security_control {
// {is_under_control, control_text} for one item, as the client knows it.
Variant GetSecurityControlInfo(int item);
bool IsUnderSecurityControl(int item);
}  // namespace security_control
}  // namespace utils
}  // namespace talvex_common
