#include "sim/models/member_model.h"

#include <algorithm>

namespace sim {

MemberModel::MemberModel() : SimModel(kId) {
  SetMethod(35, [this](Variant const*, Variant* result) {
    if (result) *result = WaitingRoomList();
    return true;
  });
  SetMethod(37, [this](Variant const*, Variant* result) {
    if (result) *result = WaitingRoomOwnList();
    return true;
  });
}

void MemberModel::AddMember(Variant member) {
  const std::string id = member.GetString("user_id");
  for (auto& existing : members_) {
    if (existing.GetString("user_id") == id) {
      existing = std::move(member);
      return;
    }
  }
  members_.push_back(std::move(member));
}

void MemberModel::RemoveMember(std::string const& user_id) {
  members_.erase(std::remove_if(members_.begin(), members_.end(),
                                [&](Variant const& m) { return m.GetString("user_id") == user_id; }),
                 members_.end());
}

void MemberModel::SetInWaitingRoom(std::string const& user_id, bool waiting) {
  for (auto& member : members_) {
    if (member.GetString("user_id") == user_id) member.Set("in_waiting_room", waiting);
  }
}

Variant MemberModel::WaitingRoomList() const {
  Variant list(base::variant::kVariantTypeArray);
  for (auto const& member : members_) {
    if (member.GetBoolean("in_waiting_room")) list.Add(member);
  }
  return list;
}

Variant MemberModel::WaitingRoomOwnList() const {
  Variant list = WaitingRoomList();
  for (auto const& member : members_) {
    const std::string role = member.GetString("role");
    if (member.GetBoolean("in_waiting_room") || (role != "host" && role != "cohost")) continue;
    Variant host = member;
    host.Set("host_type", role == "host" ? 1 : 2);
    list.Add(std::move(host));
  }
  return list;
}

}  // namespace sim
