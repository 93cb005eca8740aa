#pragma once

#include <cstdint>

#include "sim/models/sim_model.h"

namespace sim {

class MemberModel;

// Model 526: who may chat with whom.
//   method 1 -> the meeting's policy (0 to 3)
//   method 2 {policy} writes a policy: 0 to 3 the meeting's, 4 to 7 the
//            panelists', 8 to 10 the attendees'; other values are refused
//   method 3 {policy} writes the waiting room's switch as given
//   method 4 -> panelists' policy, 5 -> attendees' policy, 6 -> waiting room
//   method 9 -> the local user's chat state (see talvex::ChatUtils::
//            GetIMAuthorityInfo), worked out from the policy and the roles
// Event 0 fires after every write.
class ChatAuthorityModel : public SimModel {
 public:
  static constexpr int kId = 526;
  explicit ChatAuthorityModel(MemberModel const* members);
  int policy() const { return policy_; }
  int panelist_policy() const { return panelist_policy_; }
  int attendee_policy() const { return attendee_policy_; }
  uint32_t waiting_room_policy() const { return waiting_room_policy_; }
  // Writes without going through the client (a host elsewhere changed it).
  void SetPolicy(int policy);
  void SetWaitingRoomPolicy(uint32_t policy);
  Variant AuthorityInfo() const;

 private:
  void Changed() { FireEvent(0, Variant()); }
  MemberModel const* members_;
  int policy_ = 0;
  int panelist_policy_ = 4;
  int attendee_policy_ = 8;
  uint32_t waiting_room_policy_ = 0;
};

}  // namespace sim
