#include "sim/chat_records.h"

#include <functional>

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

namespace {
int ElemType(int chat_type, Variant const& element) {
  if (element.Has("face_elem_index")) return 6;
  if (chat_type == 4) return 1;
  if (chat_type == 8) return 4;
  return 0;
}
}  // namespace

Variant BulletFormOf(Variant const& record) {
  Variant form(base::variant::kVariantTypeMap);
  const uint64_t local_id = record.GetUint64("local_msg_id");
  const int chat_type = record.GetInt32("chat_type");
  const std::string msg_id = record.GetString("msg_id");
  form.Set("msg_id", msg_id);
  // Sends that have no local id yet are told apart on the wire by their id.
  form.Set("message_unique_id", std::to_string(local_id != 0 ? local_id : std::hash<std::string>{}(msg_id)));
  form.Set("local_msg_id", std::to_string(local_id));
  form.Set("chat_type", chat_type);
  form.Set("message_seq", local_id);
  form.Set("message_rand", local_id * 2654435761u % 1000003u);
  form.Set("message_server_time", record.GetUint64("message_server_time", record.GetUint64("message_time")));
  form.Set("message_status", record.GetInt32("message_status"));
  form.Set("message_conv_id", record.GetString("message_conv_id"));
  form.Set("message_conv_type", record.GetInteger("message_conv_type", 2));
  form.Set("message_is_from_self", record.GetBoolean("message_is_from_self"));
  form.Set("receiver_type", record.Get("in_meeting_info").GetInt32("receiver_type", 2));
  form.Set("room_type", record.Get("in_meeting_info").GetInt32("receiver_type") == 3 ? 1 : 0);
  Variant const& sender = record.Get("message_sender");
  form.Set("app_id", sender.GetString("app_id"));
  form.Set("app_uid", sender.GetString("app_uid"));
  form.Set("unique_id", sender.GetString("user_id"));
  form.Set("nickname", sender.GetString("nickname"));
  form.Set("message_sender", sender.GetString("nickname"));
  if (record.Has("ext_content")) form.Set("ext_content", record.Get("ext_content"));
  Variant elements(base::variant::kVariantTypeArray);
  for (auto const& element : record.Get("msg_content").AsArray()) {
    Variant elem = element;
    elem.Set("elem_type", ElemType(chat_type, element));
    if (!elem.Has("text_elem_content") && element.Has("item_content")) {
      elem.Set("text_elem_content", element.GetString("item_content"));
    }
    elements.Add(std::move(elem));
  }
  form.Set("message_elem_array", std::move(elements));
  // A private message names the other party.
  if (record.GetInteger("message_conv_type") == 1 && record.Get("msg_receiver").IsMap()) {
    Variant const& peer = record.GetBoolean("message_is_from_self") ? record.Get("msg_receiver") : sender;
    form.Set("msg_receiver", peer.GetString("nickname"));
    form.Set("private_chat_user_info", peer);
  }
  return form;
}

}  // namespace sim
