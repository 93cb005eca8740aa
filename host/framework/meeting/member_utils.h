#pragma once

#include <functional>

#include "base/variant/variant.h"

namespace talvex_common {
namespace utils {
namespace member {

// Walks a member list as the member model (508) gives it: an array of member
// maps. `visit` returns true to stop the walk. Entries that are not maps are
// skipped; a list that is not an array is walked as empty. Returns whether a
// visit stopped the walk.
bool EnumInRoomUsers(Variant const& list, std::function<bool(Variant const& member)> const& visit);

}  // namespace member
}  // namespace utils
}  // namespace talvex_common
