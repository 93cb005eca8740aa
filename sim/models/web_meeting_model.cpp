#include "sim/models/web_meeting_model.h"

#include <algorithm>

#include "framework/meeting/meeting_context.h"

namespace sim {

namespace {

// A page names a meeting or a member by a non-empty text or by a number.
std::string IdParam(Variant const& params, char const* key) {
  Variant const& value = params.Get(key);
  return value.IsString() || value.IsInteger() ? value.ToString() : std::string();
}

std::string MeetingOf(Variant const& record) {
  Variant const& in_meeting = record.Get("in_meeting_info").Get("meeting_id");
  return in_meeting.IsNull() ? record.Get("meeting_id").ToString() : in_meeting.ToString();
}

bool Readable(Variant const& record) {
  const int status = record.GetInt32("message_status");
  return !record.GetBoolean("is_local") && status != 4 && status != 6 && record.GetInt32("chat_type") != 5;
}

Variant PartyOf(Variant const& party) {
  return Variant::Map{{"userId", party.GetString("user_id")},
                      {"appUid", party.GetString("app_uid", party.GetString("user_id"))},
                      {"appId", party.GetString("app_id")},
                      {"nickname", party.GetString("nickname")}};
}

std::string TextOf(Variant const& record) {
  std::string text = record.GetString("msg_text");
  if (!text.empty()) return text;
  for (auto const& element : record.Get("msg_content").AsArray()) text += element.GetString("text_elem_content");
  return text;
}

Variant Entry(Variant const& record, bool with_receiver) {
  Variant entry(base::variant::kVariantTypeMap);
  entry.Set("msgId", record.GetString("msg_id"));
  entry.Set("type", record.GetInt32("chat_type"));
  entry.Set("text", TextOf(record));
  entry.Set("time", record.GetInteger("message_time"));
  entry.Set("isFromSelf", record.GetBoolean("message_is_from_self"));
  entry.Set("sender", PartyOf(record.Get("message_sender")));
  if (with_receiver) entry.Set("receiver", PartyOf(record.Get("msg_receiver")));
  return entry;
}

bool IsSelf(Variant const& party) {
  auto const& self = talvex::MeetingContext::Current();
  const std::string user_id = party.GetString("user_id");
  const std::string app_uid = party.GetString("app_uid");
  return (!user_id.empty() && user_id == self.self_user_id) || (!app_uid.empty() && app_uid == self.self_app_uid);
}

bool IsMember(Variant const& party, std::string const& app_uid, std::string const& app_id) {
  return party.GetString("app_uid", party.GetString("user_id")) == app_uid && party.GetString("app_id") == app_id;
}

}  // namespace

WebMeetingModel::WebMeetingModel(ChatMessageModel& messages) : SimModel(kId), messages_(messages) {
  SetMethod(0, [this](Variant const* params, Variant*) { return Request(kEventPublicMsgList, params, false); });
  SetMethod(1, [this](Variant const* params, Variant*) { return Request(kEventPrivateMsgList, params, true); });
}

WebMeetingModel::~WebMeetingModel() = default;

bool WebMeetingModel::Request(uint32_t event, Variant const* params, bool is_private) {
  if (refusing_ || !params || !params->IsMap()) return false;
  const std::string meeting_id = IdParam(*params, "meetingId");
  const std::string app_uid = IdParam(*params, "privateAppUid");
  const std::string app_id = IdParam(*params, "privateAppId");
  if (meeting_id.empty() || (is_private && (app_uid.empty() || app_id.empty()))) return false;
  const Variant request = *params;
  // The list is read when the answer leaves, as a server would.
  Later([this, event, request, meeting_id, app_uid, app_id, is_private] {
    Variant answer(base::variant::kVariantTypeMap);
    answer.Set("request_param", request);
    answer.Set("callback_data",
               is_private ? PrivateListJson(meeting_id, app_uid, app_id) : PublicListJson(meeting_id));
    FireEvent(event, answer);
  });
  return true;
}

void WebMeetingModel::Later(std::function<void()> task) {
  pending_.erase(std::remove_if(pending_.begin(), pending_.end(), [](auto const& t) { return !t->IsActive(); }),
                 pending_.end());
  pending_.push_back(talvex_common::utils::timer::CreateTimer(std::move(task)));
  pending_.back()->Start(latency_ms_, 0);
}

std::string WebMeetingModel::PublicListJson(std::string const& meeting_id) const {
  Variant list(base::variant::kVariantTypeArray);
  for (auto const& id : messages_.order()) {
    auto record = messages_.FindMessage(id);
    if (!record || !Readable(*record) || record->GetInteger("message_conv_type") != 2) continue;
    if (MeetingOf(*record) != meeting_id) continue;
    list.Add(Entry(*record, false));
  }
  return list.ToJson();
}

std::string WebMeetingModel::PrivateListJson(std::string const& meeting_id, std::string const& app_uid,
                                             std::string const& app_id) const {
  Variant list(base::variant::kVariantTypeArray);
  for (auto const& id : messages_.order()) {
    auto record = messages_.FindMessage(id);
    if (!record || !Readable(*record) || record->GetInteger("message_conv_type") != 1) continue;
    if (MeetingOf(*record) != meeting_id) continue;
    Variant const& sender = record->Get("message_sender");
    Variant const& receiver = record->Get("msg_receiver");
    const bool between = (IsSelf(sender) && IsMember(receiver, app_uid, app_id)) ||
                         (IsSelf(receiver) && IsMember(sender, app_uid, app_id));
    if (between) list.Add(Entry(*record, true));
  }
  return list.ToJson();
}

}  // namespace sim
