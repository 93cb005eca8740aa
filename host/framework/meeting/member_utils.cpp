#include "framework/meeting/member_utils.h"

namespace talvex_common {
namespace utils {
namespace member {

bool EnumInRoomUsers(Variant const& list, std::function<bool(Variant const& member)> const& visit) {
  if (!list.IsArray() || !visit) return false;
  for (auto const& member : list.AsArray()) {
    if (member.IsMap() && visit(member)) return true;
  }
  return false;
}

}  // namespace member
}  // namespace utils
}  // namespace talvex_common
