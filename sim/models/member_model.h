#pragma once

#include <string>
#include <vector>

#include "sim/models/sim_model.h"

namespace sim {

// Model 508: the meeting's members.
//   method 35 -> array of the members waiting in the waiting room
//   method 37 -> the waiting room's own list: its members and the hosts who
//                can talk to it (`host_type` 1 host, 2 co-host)
//   method 1 {list_type} -> user ids: 0 everyone in the meeting (not the
//                waiting room), 1 hosts and co-hosts, 2 panelists, 3 attendees
//   method 2 {user_id} -> the member, with `self` for the local user; false
//                for one who is not (or no longer) here
// A member is a map with `user_id`, `app_uid`, `app_id`, `nickname`, `role`
// ("host", "cohost", "panelist", "attendee", "member"), `in_waiting_room`,
// `user_type` (1 a person on a client) and `instance_id` (the kind of device;
// 5 and 8 can't take chat), the last two 1 when not given.
//   method 1 without params -> the local user {user_id, nickname,
//                is_forbid_chat}
//   method 12 -> the host {app_id, app_uid}; false when there is none
//   method 83 {unique_id} or {app_id, app_uid} -> the real name behind an
//                anonymous member (`real_name`, else the nickname)
//   method 60 {user_id, allow_join} removes a member from the meeting; one
//                not allowed back is refused by AddMember from then on
//   methods 84 {unique_id} or {app_uid, app_id}, 82 {unique_id} and 47
//                {app_uid, app_id} -> the member with `host`, `co_host` and
//                `role_type` (1 host, 2 co-host, 3 panelist, 4 attendee, 0)
// Events: 45 [user_id] joined, 46 [user_id] left, 2 [user_id] changed, and
// after it 6 when the member became or stopped being host, 7 co-host.
class MemberModel : public SimModel {
 public:
  static constexpr int kId = 508;
  MemberModel();
  // Adds or replaces a member by `user_id`.
  void AddMember(Variant member);
  // Many new members at once (a large meeting's roster): one event 45 for
  // all; members already here are left as they are.
  void AddMembers(std::vector<Variant> members);
  void RemoveMember(std::string const& user_id);
  void SetInWaitingRoom(std::string const& user_id, bool waiting);
  // The host muted the local user in chat.
  void SetSelfForbidChat(bool forbid) { self_forbid_chat_ = forbid; }
  // The member a lookup by ids finds, with its role flags; null when none.
  Variant Lookup(Variant const* params, bool by_unique_id, bool by_app_ids) const;
  std::vector<Variant> const& members() const { return members_; }
  bool barred(std::string const& user_id) const;
  // Off: like a client in a large webinar, the lookups by ids (84, 82, 47)
  // don't know attendees; they are found through the member provider.
  void set_attendees_listed(bool listed) { attendees_listed_ = listed; }

 private:
  Variant WaitingRoomList() const;
  Variant WaitingRoomOwnList() const;
  std::vector<Variant> members_;
  bool self_forbid_chat_ = false;
  bool attendees_listed_ = true;
  std::vector<std::string> barred_;
};

}  // namespace sim
