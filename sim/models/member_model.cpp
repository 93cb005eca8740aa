#include "sim/models/member_model.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "framework/meeting/meeting_context.h"

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
  SetMethod(1, [this](Variant const* params, Variant* result) {
    if (!params) {
      auto const& self = talvex::MeetingContext::Current();
      Variant info(base::variant::kVariantTypeMap);
      info.Set("user_id", self.self_user_id);
      info.Set("nickname", self.nickname);
      info.Set("is_forbid_chat", self_forbid_chat_);
      if (result) *result = std::move(info);
      return true;
    }
    const int list_type = params && params->IsMap() ? params->GetInt32("list_type") : 0;
    Variant ids(base::variant::kVariantTypeArray);
    for (auto const& member : members_) {
      if (member.GetBoolean("in_waiting_room")) continue;
      const std::string role = member.GetString("role");
      const bool take = list_type == 0 || (list_type == 1 && (role == "host" || role == "cohost")) ||
                        (list_type == 2 && role == "panelist") || (list_type == 3 && role == "attendee");
      if (take) ids.Add(member.GetString("user_id"));
    }
    if (result) *result = std::move(ids);
    return true;
  });
  for (auto [method, by_unique, by_ids] : {std::tuple{84u, true, true}, {82u, true, false}, {47u, false, true}}) {
    SetMethod(method, [this, by_unique = by_unique, by_ids = by_ids](Variant const* params, Variant* result) {
      Variant member = Lookup(params, by_unique, by_ids);
      if (member.IsNull()) return false;
      if (result) *result = std::move(member);
      return true;
    });
  }
  SetMethod(60, [this](Variant const* params, Variant*) {
    if (!params || !params->IsMap() || params->GetString("user_id").empty()) return false;
    const std::string id = params->GetString("user_id");
    if (!params->GetBoolean("allow_join", true)) barred_.push_back(id);
    RemoveMember(id);
    return true;
  });
  SetMethod(12, [this](Variant const*, Variant* result) {
    for (auto const& member : members_) {
      if (member.GetString("role") != "host" || member.GetBoolean("in_waiting_room")) continue;
      Variant host(base::variant::kVariantTypeMap);
      host.Set("app_id", member.GetString("app_id"));
      host.Set("app_uid", member.GetString("app_uid"));
      if (result) *result = std::move(host);
      return true;
    }
    return false;
  });
  SetMethod(83, [this](Variant const* params, Variant* result) {
    if (!params || !params->IsMap()) return false;
    const std::string unique_id = params->GetString("unique_id");
    for (auto const& member : members_) {
      const bool match = !unique_id.empty() ? member.GetString("user_id") == unique_id
                                            : member.GetString("app_uid") == params->GetString("app_uid") &&
                                                  member.GetString("app_id") == params->GetString("app_id");
      if (!match) continue;
      const std::string real = member.GetString("real_name");
      if (result) *result = real.empty() ? member.GetString("nickname") : real;
      return true;
    }
    return false;
  });
  SetMethod(2, [this](Variant const* params, Variant* result) {
    if (!params || !params->IsMap()) return false;
    const std::string id = params->GetString("user_id");
    for (auto const& member : members_) {
      if (member.GetString("user_id") != id) continue;
      Variant info = member;
      info.Set("self", id == talvex::MeetingContext::Current().self_user_id);
      if (result) *result = std::move(info);
      return true;
    }
    return false;
  });
}

namespace {
Variant Ids(std::string const& id) {
  Variant ids(base::variant::kVariantTypeArray);
  ids.Add(id);
  return ids;
}
}  // namespace

bool MemberModel::barred(std::string const& user_id) const {
  return std::find(barred_.begin(), barred_.end(), user_id) != barred_.end();
}

void MemberModel::AddMember(Variant member) {
  const std::string id = member.GetString("user_id");
  if (barred(id)) return;  // removed and not allowed back
  if (!member.Get("user_type").IsInteger()) member.Set("user_type", 1);
  if (!member.Get("instance_id").IsInteger()) member.Set("instance_id", 1);
  for (auto& existing : members_) {
    if (existing.GetString("user_id") == id) {
      const std::string was = existing.GetString("role");
      const std::string now = member.GetString("role");
      existing = std::move(member);
      FireEvent(2, Ids(id));
      // The client tells host and co-host changes apart.
      if (was != now && (was == "host" || now == "host")) FireEvent(6, Ids(id));
      if (was != now && (was == "cohost" || now == "cohost")) FireEvent(7, Ids(id));
      return;
    }
  }
  members_.push_back(std::move(member));
  FireEvent(45, Ids(id));
}

void MemberModel::RemoveMember(std::string const& user_id) {
  members_.erase(std::remove_if(members_.begin(), members_.end(),
                                [&](Variant const& m) { return m.GetString("user_id") == user_id; }),
                 members_.end());
  FireEvent(46, Ids(user_id));
}

void MemberModel::SetInWaitingRoom(std::string const& user_id, bool waiting) {
  for (auto& member : members_) {
    if (member.GetString("user_id") != user_id || member.GetBoolean("in_waiting_room") == waiting) continue;
    member.Set("in_waiting_room", waiting);
    FireEvent(2, Ids(user_id));
  }
}

void MemberModel::AddMembers(std::vector<Variant> members) {
  std::set<std::string> known;
  for (auto const& member : members_) known.insert(member.GetString("user_id"));
  Variant ids(base::variant::kVariantTypeArray);
  for (auto& member : members) {
    const std::string id = member.GetString("user_id");
    if (barred(id) || !known.insert(id).second) continue;
    if (!member.Get("user_type").IsInteger()) member.Set("user_type", 1);
    if (!member.Get("instance_id").IsInteger()) member.Set("instance_id", 1);
    members_.push_back(std::move(member));
    ids.Add(id);
  }
  if (!ids.Empty()) FireEvent(45, ids);
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

Variant MemberModel::Lookup(Variant const* params, bool by_unique_id, bool by_app_ids) const {
  if (!params || !params->IsMap()) return Variant();
  const std::string unique_id = params->GetString("unique_id");
  for (auto const& member : members_) {
    const bool match = by_unique_id && !unique_id.empty()
                           ? member.GetString("user_id") == unique_id
                           : by_app_ids && !params->GetString("app_uid").empty() &&
                                 member.GetString("app_uid") == params->GetString("app_uid") &&
                                 member.GetString("app_id") == params->GetString("app_id");
    if (!match) continue;
    if (!attendees_listed_ && member.GetString("role") == "attendee") return Variant();
    Variant found = member;
    const std::string role = member.GetString("role");
    found.Set("host", role == "host");
    found.Set("co_host", role == "cohost");
    found.Set("role_type", role == "host" ? 1 : role == "cohost" ? 2 : role == "panelist" ? 3 : role == "attendee" ? 4 : 0);
    return found;
  }
  return Variant();
}

}  // namespace sim
