#pragma once

#include <functional>
#include <string>

#include "base/variant/variant.h"

namespace talvex_common {
namespace utils {
namespace member {

// Walks a member list as the member model (508) gives it: an array of member
// maps. `visit` returns true to stop the walk. Entries that are not maps are
// skipped; a list that is not an array is walked as empty. Returns whether a
// visit stopped the walk.
bool EnumInRoomUsers(Variant const& list, std::function<bool(Variant const& member)> const& visit);

// The member lists of the meeting, as user ids (member model 508 method 1):
// 0 everyone in the meeting, 1 hosts and co-hosts, 2 panelists, 3 attendees.
// An empty array without a member model.
Variant GetUserIndexList(int list_type);
// Walks the members behind an index list, each as GetUserInfo gives it; ids
// the member model no longer knows (members who left) are skipped.
bool EnumInMeetingUsers(Variant const& index_list, std::function<bool(Variant const& member)> const& visit);
// A member's info (member model 508 method 2): `user_id`, `app_uid`,
// `app_id`, `nickname`, `role`, `user_type`, `instance_id`, and `self` for
// the local user. Null when the member is unknown.
Variant GetUserInfo(std::string const& user_id);
bool IsSelfHostOrCoHost();
// The host's `app_id` and `app_uid` (member model 508 method 12); false when
// the meeting has no host or there is no member model.
bool GetHostAppIdAndAppUid(std::string& app_id, std::string& app_uid);

}  // namespace member

namespace webinar {
// Whether a member (a map of GetUserInfo or a receiver info) is a webinar
// attendee.
bool IsAttendeeUser(Variant const& user_info);
}  // namespace webinar

}  // namespace utils
}  // namespace talvex_common
