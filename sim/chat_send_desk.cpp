#include "sim/chat_send_desk.h"

#include <QTimer>

#include "base/log/log.h"
#include "base/util/file_util.h"
#include "base/util/time_util.h"
#include "framework/meeting/meeting_context.h"
#include "sim/chat_records.h"
#include "sim/models/chat_file_model.h"
#include "sim/models/chat_message_model.h"
#include "sim/models/member_model.h"

namespace sim {

namespace {
constexpr int kChatTypeText = 0;
constexpr int kChatTypeImage = 4;
constexpr int kChatTypeFile = 8;
constexpr int kStatusSending = 1;
constexpr int kStatusSent = 2;
constexpr int kStatusFailed = 3;

std::string PeerOf(std::string const& conv_id) { return conv_id.rfind("c2c_", 0) == 0 ? conv_id.substr(4) : ""; }
}  // namespace

ChatSendDesk::ChatSendDesk(ChatMessageModel& messages, MemberModel& members, ChatFileModel& files)
    : messages_(messages), members_(members), files_(files), alive_(std::make_shared<bool>(true)) {
  for (uint32_t method : {7u, 23u, 40u}) {
    messages_.SetMethod(method, [this, method](Variant const* p, Variant* r) { return Send(method, kChatTypeText, p, r); });
  }
  for (uint32_t method : {30u, 31u}) {
    messages_.SetMethod(method, [this, method](Variant const* p, Variant* r) { return Send(method, kChatTypeImage, p, r); });
  }
  for (uint32_t method : {52u, 57u}) {
    messages_.SetMethod(method, [this, method](Variant const* p, Variant* r) { return Send(method, kChatTypeFile, p, r); });
  }
  // The peer of a private conversation.
  messages_.SetMethod(16, [this](Variant const* conv, Variant* result) {
    if (!conv || !conv->IsString()) return false;
    Variant ask(base::variant::kVariantTypeMap);
    ask.Set("user_id", PeerOf(conv->AsStr()));
    Variant member;
    Variant peer(base::variant::kVariantTypeMap);
    if (members_.Invoke(2, &ask, &member)) {
      peer.Set("app_uid", member.GetString("app_uid"));
      peer.Set("app_id", member.GetString("app_id"));
    }
    if (result) *result = std::move(peer);
    return true;
  });
  messages_.SetMethod(59, [this](Variant const* items, Variant*) {
    if (!items || !items->IsArray()) return false;
    messages_.FireEvent(kEventMixedSend, items);
    return true;
  });
}

ChatSendDesk::~ChatSendDesk() { *alive_ = false; }

bool ChatSendDesk::Send(uint32_t method, int chat_type, Variant const* params, Variant* result) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "[sim] send " << method << " without params";
    return false;
  }
  Variant element(base::variant::kVariantTypeMap);
  Variant record(base::variant::kVariantTypeMap);
  if (chat_type == kChatTypeText) {
    if (!params->Get("text_elem_content").IsString()) return false;
    element.Set("text_elem_content", params->Get("text_elem_content"));
  } else if (chat_type == kChatTypeImage) {
    const std::string path = params->GetString("image_elem_orig_path");
    if (!util::file::IsFileExist(path)) {
      TXLOG_ERROR << "[sim] image to send is missing: " << path;
      return false;
    }
    element.Set("image_elem_orig_path", path);
    element.Set("image_elem_level", params->GetInt32("image_elem_level"));
    element.Set("image_elem_format", params->GetInt32("image_elem_format"));
  } else {
    const std::string path = params->GetString("file_elem_file_path");
    if (!util::file::IsFileExist(path)) {
      TXLOG_ERROR << "[sim] file to send is missing: " << path;
      return false;
    }
    element.Set("file_elem_file_path", path);
    std::string name;
    util::file::GetFileFullName(path, name);
    int64_t size = 0;
    util::file::GetFileLength(path, size);
    Variant file_info(base::variant::kVariantTypeMap);
    file_info.Set("path", path);
    file_info.Set("name", name);
    file_info.Set("size", size);
    file_info.Set("status", 0);
    record["ext_content"].Set("file_info", std::move(file_info));
  }
  auto const& self = talvex::MeetingContext::Current();
  const std::string msg_id = "sent-" + std::to_string(next_id_++);
  Variant content(base::variant::kVariantTypeArray);
  content.Add(std::move(element));
  Variant sender(base::variant::kVariantTypeMap);
  sender.Set("user_id", self.self_user_id);
  sender.Set("app_uid", self.self_app_uid);
  sender.Set("nickname", self.nickname);
  record.Set("msg_id", msg_id);
  record.Set("chat_type", chat_type);
  record.Set("msg_content", std::move(content));
  record.Set("meeting_id", std::to_string(self.meeting_id));
  record.Set("message_conv_id", params->GetString("conv_id"));
  record.Set("message_conv_type", params->GetInteger("conv_type"));
  record.Set("message_sender", std::move(sender));
  record.Set("receiver_type", params->GetInteger("receiver_type"));
  record.Set("message_status", kStatusSending);
  record.Set("message_is_from_self", true);
  record.Set("msg_is_self", true);
  record.Set("message_send_from_type", params->GetInteger("message_send_from_type", 2));
  record.Set("message_client_time", util::time::GetTimestampMsec() / 1000);
  record.Set("message_time", util::time::GetServerTimestamp());
  record.Set("send_method", static_cast<int64_t>(method));
  // The short forms the client's lists read.
  record.Set("is_from_self", true);
  record.Set("conv_id", params->GetString("conv_id"));
  record.Set("conv_type", params->GetInteger("conv_type"));
  record.Set("msg_sender", record.Get("message_sender"));
  // A private message names whom it went to: the peer of its conversation.
  if (params->GetInteger("conv_type") == 1) {
    std::string peer = params->GetString("conv_id");
    if (peer.rfind("c2c_", 0) == 0) peer.erase(0, 4);
    for (auto const& member : members_.members()) {
      if (member.GetString("user_id") != peer && member.GetString("app_uid") != peer) continue;
      record.Set("msg_receiver", Variant::Map{{"user_id", member.GetString("user_id")},
                                              {"app_uid", member.GetString("app_uid")},
                                              {"app_id", member.GetString("app_id")},
                                              {"nickname", member.GetString("nickname")}});
      break;
    }
  }
  record["in_meeting_info"].Set("meeting_id", std::to_string(self.meeting_id));
  record["in_meeting_info"].Set("receiver_type", params->GetInteger("receiver_type"));
  // Sent in the meeting: the meeting's chat group, as its messages carry it.
  record["in_meeting_info"].Set("group_id", "im-" + std::to_string(self.meeting_id));
  // The sending message shows at once; its result updates it.
  if (messages_.ReceiveMessage(std::move(record))) {
    Variant added(msg_id);
    messages_.FireEvent(kEventMessageAdded, &added);
  }
  sent_ids_.push_back(msg_id);
  if (result) *result = msg_id;

  int code = 0;
  if (fail_count_ > 0) {
    --fail_count_;
    code = fail_code_;
  }
  const std::string peer = PeerOf(params->GetString("conv_id"));
  if (!leaving_user_id_.empty() && leaving_user_id_ == peer) {
    leaving_user_id_.clear();
    members_.RemoveMember(peer);
  }
  if (chat_type == kChatTypeFile) StepUpload(msg_id, 0, code == 0 ? 3 : 4);
  std::weak_ptr<bool> alive = alive_;
  QTimer::singleShot(latency_ms_, [this, alive, msg_id, code, peer] {
    if (alive.expired()) return;
    int final_code = code;
    if (final_code == 0 && !peer.empty()) {
      Variant ask(base::variant::kVariantTypeMap);
      ask.Set("user_id", peer);
      if (!members_.Invoke(2, &ask, nullptr)) final_code = kErrorReceiverLeft;
    }
    Complete(msg_id, final_code);
  });
  return true;
}

void ChatSendDesk::StepUpload(std::string const& msg_id, int status, int final_status) {
  auto record = messages_.FindMessage(msg_id);
  if (!record) return;
  Variant& file_info = (*record)["ext_content"]["file_info"];
  file_info.Set("status", status);
  Variant payload(base::variant::kVariantTypeMap);
  payload.Set("msg_id", msg_id);
  payload.Set("file_info", file_info);
  files_.FireEvent(1, &payload);
  if (status == final_status || status >= 3) return;
  const int next = status == 0 ? 1 : final_status;
  std::weak_ptr<bool> alive = alive_;
  QTimer::singleShot(latency_ms_ / 2, [this, alive, msg_id, next, final_status] {
    if (!alive.expired()) StepUpload(msg_id, next, final_status);
  });
}

void ChatSendDesk::Complete(std::string const& msg_id, int code) {
  auto record = messages_.FindMessage(msg_id);
  if (!record) return;
  record->Set("message_status", code == 0 ? kStatusSent : kStatusFailed);
  if (code == 0) record->Set("message_server_time", util::time::GetTimestampMsec() / 1000);
  // The result carries the message as the floating chat reads it, too.
  Variant result = BulletFormOf(*record);
  result.Set("msg_id", msg_id);
  result.Set("result", code);
  if (code != 0) result.Set("error_msg", "send failed with " + std::to_string(code));
  result.Set("message_info", *record);
  result.Set("chat_type", record->GetInt32("chat_type"));
  messages_.FireEvent(kEventSendResult, &result);
  Variant updated(msg_id);
  messages_.FireEvent(kEventMessageUpdated, &updated);
  TXLOG_INFO << "[sim] send " << msg_id << " done with " << code;
}

}  // namespace sim
