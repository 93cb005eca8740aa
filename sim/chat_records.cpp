#include "sim/chat_records.h"

namespace sim {

namespace {
Variant SenderMap(Sender const& from) {
  Variant sender(base::variant::kVariantTypeMap);
  sender.Set("user_id", from.user_id);
  sender.Set("nickname", from.nickname);
  sender.Set("app_uid", from.app_uid.empty() ? from.user_id : from.app_uid);
  sender.Set("app_id", from.app_id);
  sender.Set("avatar", from.avatar);
  return sender;
}
}  // namespace

Variant ChatRecord(std::string const& meeting_id, Sender const& from, int chat_type, Variant msg_content,
                   bool from_self, Variant ext_content) {
  Variant r(base::variant::kVariantTypeMap);
  r.Set("chat_type", chat_type);
  r.Set("msg_type", 0);
  r.Set("msg_content", std::move(msg_content));
  if (!ext_content.IsNull()) r.Set("ext_content", std::move(ext_content));
  r.Set("meeting_id", meeting_id);
  r.Set("message_conv_id", meeting_id);
  r.Set("conv_id", meeting_id);
  r.Set("message_conv_type", 2);
  r.Set("conv_type", 2);
  r["in_meeting_info"].Set("meeting_id", meeting_id);
  r["in_meeting_info"].Set("receiver_type", 2);
  const Variant sender = SenderMap(from);
  r.Set("message_sender", sender);
  r.Set("msg_sender", sender);
  r.Set("message_is_from_self", from_self);
  r.Set("msg_is_self", from_self);
  r.Set("is_from_self", from_self);
  r.Set("message_is_online_msg", true);
  return r;
}

Variant TextRecord(std::string const& meeting_id, Sender const& from, std::string const& text, bool from_self) {
  Variant content(base::variant::kVariantTypeArray);
  Variant element(base::variant::kVariantTypeMap);
  element.Set("text_elem_content", text);
  content.Add(std::move(element));
  Variant r = ChatRecord(meeting_id, from, 0, std::move(content), from_self);
  r.Set("msg_text", text);
  return r;
}

Variant PrivateTextRecord(std::string const& meeting_id, Sender const& from, Sender const& to,
                          std::string const& text, bool from_self) {
  Variant r = TextRecord(meeting_id, from, text, from_self);
  r.Set("message_conv_type", 1);
  r.Set("conv_type", 1);
  r["in_meeting_info"].Set("receiver_type", 1);
  r.Set("msg_receiver", SenderMap(to));
  return r;
}

}  // namespace sim
