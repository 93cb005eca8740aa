#include "sim/models/chat_authority_model.h"

#include "framework/meeting/meeting_context.h"
#include "sim/models/member_model.h"

namespace sim {

ChatAuthorityModel::ChatAuthorityModel(MemberModel const* members) : SimModel(kId), members_(members) {
  auto answer = [](auto value) {
    return [value](Variant const*, Variant* result) {
      if (result) *result = value();
      return true;
    };
  };
  SetMethod(1, answer([this] { return Variant(policy_); }));
  SetMethod(4, answer([this] { return Variant(panelist_policy_); }));
  SetMethod(5, answer([this] { return Variant(attendee_policy_); }));
  SetMethod(6, answer([this] { return Variant(waiting_room_policy_); }));
  SetMethod(9, answer([this] { return AuthorityInfo(); }));
  SetMethod(2, [this](Variant const* params, Variant*) {
    if (!params || !params->IsMap() || !params->Get("policy").IsInteger()) return false;
    const int policy = params->GetInt32("policy");
    if (policy < 0 || policy > 10) return false;
    SetPolicy(policy);
    return true;
  });
  SetMethod(3, [this](Variant const* params, Variant*) {
    if (!params || !params->IsMap() || !params->Get("policy").IsInteger()) return false;
    SetWaitingRoomPolicy(params->GetUint32("policy"));
    return true;
  });
}

void ChatAuthorityModel::SetPolicy(int policy) {
  if (policy <= 3) {
    policy_ = policy;
  } else if (policy <= 7) {
    panelist_policy_ = policy;
  } else {
    attendee_policy_ = policy;
  }
  Changed();
}

void ChatAuthorityModel::SetWaitingRoomPolicy(uint32_t policy) {
  waiting_room_policy_ = policy;
  Changed();
}

Variant ChatAuthorityModel::AuthorityInfo() const {
  auto const& self = talvex::MeetingContext::Current();
  const bool privileged = self.self_role == talvex::MeetingContext::kRoleHost ||
                          self.self_role == talvex::MeetingContext::kRoleCoHost;
  bool has_host = false;
  if (members_) {
    for (auto const& m : members_->members()) has_host = has_host || m.GetString("role") == "host";
  }
  bool disabled = false;
  std::string desc;
  int policy = policy_;
  if (self.is_webinar) {
    policy = self.self_role == talvex::MeetingContext::kRoleAttendee ? attendee_policy_ : panelist_policy_;
  }
  if (!privileged && (policy == 3 || policy == 7 || policy == 10)) {
    disabled = true;
    desc = "Only the host and co-hosts can send messages";
  } else if (!privileged && policy == 2 && !has_host) {
    disabled = true;
    desc = "Messages go to the host only, and no host is here";
  }
  Variant info(base::variant::kVariantTypeMap);
  info.Set("allow_chat_policy", policy);
  info.Set("disable_chat", disabled);
  info.Set("need_show_icon", disabled);
  info.Set("disable_chat_desc", desc);
  const bool limited = policy != 0 && policy != 4 && policy != 8;
  info.Set("allow_chat_wording_show", limited && !privileged);
  info.Set("allow_chat_wording_desc", limited ? "The host limited who you can chat with" : "");
  return info;
}

}  // namespace sim
