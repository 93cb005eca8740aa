#pragma once

#include <string>
#include <vector>

#include "sim/models/sim_model.h"

namespace sim {

// Model 508: the meeting's members.
//   method 35 -> array of the members waiting in the waiting room
//   method 37 -> the waiting room's own list: its members and the hosts who
//                can talk to it (`host_type` 1 host, 2 co-host)
// A member is a map with `user_id`, `app_uid`, `app_id`, `nickname`, `role`
// ("host", "cohost", "panelist", "attendee", "member") and `in_waiting_room`.
class MemberModel : public SimModel {
 public:
  static constexpr int kId = 508;
  MemberModel();
  // Adds or replaces a member by `user_id`.
  void AddMember(Variant member);
  void RemoveMember(std::string const& user_id);
  void SetInWaitingRoom(std::string const& user_id, bool waiting);
  std::vector<Variant> const& members() const { return members_; }

 private:
  Variant WaitingRoomList() const;
  Variant WaitingRoomOwnList() const;
  std::vector<Variant> members_;
};

}  // namespace sim
