// The floating chat's conversion: a client record becomes a bullet record
// with its sender line, its labels and its content in one line.
#include <algorithm>
#include <cstdlib>

#include "base/log/log.h"
#include "chat/model/chat_message.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/utils.h"
#include "chat/viewmodel/in_meeting_bullet_texts.h"
#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/member_utils.h"
#include "framework/module/app_module.h"

namespace chat {

namespace {
using namespace bullet_text;
namespace member = talvex_common::utils::member;

// Line breaks and tabs become blanks; link markup goes. A text with neither
// is shared as it is.
Variant Sanitise(Variant const& value) {
  if (!value.IsString()) return Variant("");
  std::string_view view(value.AsStr());
  if (view.find_first_of("\n\r\t<[") == std::string_view::npos) return value;
  std::string text(view);
  for (char& c : text) {
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
  }
  return Variant(talvex::ChatMessageTools::TrimUrlTag(text));
}

// Copies a string key as the record holds it (a shared copy), or "".
void CopyString(Variant const& source, Variant& out, char const* key) {
  Variant const& value = source.Get(key);
  out.Set(key, value.IsString() ? value : Variant(""));
}

bool IsPrivate(Variant const& out) { return out.GetInt32("msg_type", -1) == InMeetingBulletViewModel::kBulletPrivate; }

void CopyConversation(Variant const& source, Variant& out) {
  CopyString(source, out, "message_conv_id");
  const int64_t conv_type = source.GetInteger("message_conv_type");
  out.Set("message_conv_type", conv_type);
  int msg_type = -1;
  if (conv_type == ToInt(ConvType::kGroup)) msg_type = InMeetingBulletViewModel::kBulletPublic;
  else if (conv_type == ToInt(ConvType::kPrivate)) msg_type = InMeetingBulletViewModel::kBulletPrivate;
  out.Set("msg_type", msg_type);
}
}  // namespace

Variant InMeetingBulletViewModel::SenderName(Variant const& source) const {
  Variant const& nickname = source.Get("nickname");
  if (nickname.IsString() && !nickname.AsStr().empty()) return nickname;
  Variant const& sender = source.Get("message_sender");
  return sender.IsString() ? sender : Variant("");
}

Variant InMeetingBulletViewModel::ModelMsg2UIMsg(Variant const& source, int chat_type) {
  Variant out(base::variant::kVariantTypeMap);
  Variant const& unique_id = source.Get("message_unique_id");
  out.Set("msg_id", unique_id.IsString() ? unique_id : Variant(""));
  out.Set("local_msg_id", static_cast<int64_t>(std::strtoull(source.GetCStr("local_msg_id"), nullptr, 10)));
  if (chat_type < 0) chat_type = source.GetInt32(chat_key::kChatType, ToInt(ChatType::kText));
  out.Set(chat_key::kChatType, chat_type);
  out.Set("layout_type", talvex::ChatUtils::ConvertToLayoutType(chat_type));
  for (char const* key : {"app_id", "app_uid"}) {
    if (source.Has(key)) CopyString(source, out, key);
  }
  out.Set("message_seq", source.GetUint64("message_seq"));
  out.Set("message_server_time", source.GetUint64("message_server_time"));
  out.Set("message_rand", source.GetUint64("message_rand"));
  CopyString(source, out, "chat_tips");
  if (source.Has("receiver_type")) out.Set("receiver_type", source.GetInt32("receiver_type"));
  CopyConversation(source, out);
  out.Set("is_waiting_room_msg", source.GetInt32("room_type") == 1);
  out.Set("self_is_host", member::IsSelfHostOrCoHost());
  out.Set("from_self", source.GetBoolean("message_is_from_self"));

  ModelFaceMsg2UIMsg(source, out);
  ModelNomalMsg2UIMsg(source, out);

  if (source.GetInt32("message_status") == ToInt(MessageStatus::kRecalled)) {
    std::string sender;
    if (source.GetBoolean("message_is_from_self")) {
      sender = GetLocalizedString(kYou);
    } else if (IsPrivate(out)) {
      sender = out.Get("private_chat_user_info").GetString("nickname");
    } else {
      sender = out.GetString("msg_sender");
    }
    if (IsPrivate(out)) sender += out.GetString("private_chat_label");
    out.Set("msg_sender", sender);
    out.Set("msg_content", GetLocalizedString(kRecalled));
  }
  if (talvex_common::utils::IsMeetingAnonymous() && member::IsSelfHostOrCoHost()) {
    Variant ask(base::variant::kVariantTypeMap);
    const std::string id = source.GetString("unique_id");
    if (!id.empty()) {
      ask.Set("unique_id", id);
    } else {
      ask.Set("app_id", source.GetString("app_id"));
      ask.Set("app_uid", source.GetString("app_uid"));
    }
    Variant real_name;
    if (InvokeHostModel(kHostMemberModel, kMemberMethodRealName, &ask, &real_name) && real_name.IsString()) {
      out.Set("msg_sender", real_name.AsStr());
    }
  }
  return out;
}

void InMeetingBulletViewModel::ResolvePrivatePeer(Variant const& source, Variant& info, std::string& receiver) {
  if (source.Has("msg_receiver") && source.Has("private_chat_user_info")) {
    info = source.Get("private_chat_user_info");
    receiver = source.GetString("msg_receiver");
    return;
  }
  Variant conv(source.GetString("message_conv_id"));
  const Variant peer = AskHostModel(kHostChatMessageModel, kMethodConvPeer, &conv);
  const std::string app_uid = peer.GetString("app_uid");
  const std::string app_id = peer.GetString("app_id");
  receiver = app_uid;
  member::EnumInMeetingUsers(member::GetUserIndexList(0), [&](Variant const& m) {
    if (m.GetString("app_uid") != app_uid || m.GetString("app_id") != app_id) return false;
    info = m;
    receiver = m.GetString("nickname");
    return true;
  });
}

std::string InMeetingBulletViewModel::PrivateChatLabel(Variant const& source, Variant const& out) const {
  if (source.GetBoolean("message_is_from_self")) return GetLocalizedString(kOwnPrivateLabel);
  const uint32_t word = out.GetBoolean("is_waiting_room_msg") ? kWaitingRoomWord : kPrivateWord;
  return "(" + GetLocalizedString(word) + ")";
}

void InMeetingBulletViewModel::HidePrivateContent(Variant const& source, Variant& out) const {
  if (!IsPrivate(out) || source.GetBoolean("message_is_from_self")) return;
  // What was said privately never floats over the video.
  out.Set("msg_sender", "");
  out.Set("msg_receiver", "");
  out.Set("you_label", "");
  out.Set("msg_content", GetLocalizedString(kPrivateHidden));
  out.Remove("msg_content_ex_list");
  if (out.GetInt32("layout_type") == ToInt(ChatType::kMixed)) out.Set("layout_type", ToInt(ChatType::kText));
}

Variant InMeetingBulletViewModel::LookUpFace(int index) const {
  Variant ask(index);
  Variant face;
  if (!InvokeHostModel(kHostFaceModel, kFaceMethodByIndex, &ask, &face) || !face.IsMap()) return Variant();
  return face;
}

void InMeetingBulletViewModel::ModelFaceMsg2UIMsg(Variant const& source, Variant& out) {
  if (out.GetInt32(chat_key::kChatType) != ToInt(ChatType::kFace)) return;
  int index = -1;
  std::string buffer;
  Variant const& elements = source.Get("message_elem_array");
  if (elements.IsArray() && !elements.Empty()) {
    index = elements[0].GetInt32("face_elem_index", -1);
    buffer = elements[0].GetString("face_elem_buf");
  }
  out.Set("face_elem_index", index);
  out.Set("face_elem_buf", buffer);
  // The conversation keys, `msg_type` among them, are in `out` already.
  const bool own = source.GetBoolean("message_is_from_self");
  if (IsPrivate(out)) {
    Variant info;
    std::string receiver;
    ResolvePrivatePeer(source, info, receiver);
    const std::string you = own ? GetLocalizedString(kYou) : std::string();
    const std::string label = PrivateChatLabel(source, out);
    out.Set("private_chat_user_info", info);
    out.Set("msg_receiver", receiver);
    out.Set("you_label", you);
    out.Set("private_chat_label", label);
    out.Set("from_self", own);
    out.Set("msg_sender", you + label + receiver + ":");
    if (!own) {
      HidePrivateContent(source, out);
      return;
    }
  }
  const Variant face = LookUpFace(index);
  if (!IsPrivate(out)) out.Set("msg_sender", SenderName(source));
  if (face.IsNull()) {
    // A face this client doesn't know shows as its text.
    out.Set("is_waiting_room_msg", source.GetInt32("room_type") == 1);
    out.Set("self_is_host", member::IsSelfHostOrCoHost());
    out.Set("from_self", own);
    out.Set("msg_content", buffer);
    out.Set("msg_type", kBulletPublic);
    out.Set("layout_type", ToInt(ChatType::kText));
    return;
  }
  out.Set("msg_type", kBulletFace);
  out.Set("face_elem_index", face.GetInt32("index", index));
  out.Set("face_elem_buf", face.GetString("face_type"));
  out.Set("bullet_image_path", face.GetString("path"));
}

void InMeetingBulletViewModel::ModelNomalMsg2UIMsg(Variant const& source, Variant& out) {
  const int chat_type = out.GetInt32(chat_key::kChatType);
  if (chat_type != ToInt(ChatType::kText) && chat_type != ToInt(ChatType::kImage) &&
      chat_type != ToInt(ChatType::kNotice) && chat_type != ToInt(ChatType::kFile) &&
      chat_type != ToInt(ChatType::kMixed)) {
    return;
  }
  // The conversation keys, `msg_type`, `is_waiting_room_msg` and
  // `self_is_host` are in `out` already.
  const bool own = source.GetBoolean("message_is_from_self");
  const std::string you = own ? GetLocalizedString(kYou) : std::string();
  if (IsPrivate(out)) {
    Variant info;
    std::string receiver;
    ResolvePrivatePeer(source, info, receiver);
    out.Set("private_chat_user_info", info);
    out.Set("msg_sender", SenderName(source));
    out.Set("msg_receiver", receiver);
    out.Set("you_label", own ? you : std::string());
    out.Set("private_chat_label", PrivateChatLabel(source, out));
  } else {
    talvex::ChatUtils::ResolveUIMsgGroupReceiver(source, group_receiver_, 0);
    const std::string group_name = group_receiver_.GetString("msg_receiver");
    if (!group_name.empty()) {
      out.Set("msg_receiver", GetLocalizedString(kToWord) + " " + group_name);
      out.Set("send_to_label", GetLocalizedString(kSendToLabel));
      out.Set("msg_sender", own ? Variant(you) : SenderName(source));
    } else {
      out.Set("msg_sender", SenderName(source));
    }
  }
  Variant const& elements = source.Get("message_elem_array");
  switch (static_cast<ChatType>(chat_type)) {
    case ChatType::kImage:
      out.Set("msg_content", GetLocalizedString(kImageText));
      break;
    case ChatType::kNotice:
      if (own) {
        out.Set("msg_sender", you);
        out.Set("you_label", you);
      }
      out.Set("msg_content", talvex::ChatMessageTools::ParseContent(chat_type, source));
      break;
    case ChatType::kFile:
      out.Set("msg_content", GetLocalizedString(own ? kFileOwn : IsPrivate(out) ? kFilePrivate : kFileOther));
      break;
    case ChatType::kMixed: {
      Variant items(base::variant::kVariantTypeArray);
      if (elements.IsArray()) {
        for (auto const& element : elements.AsArray()) {
          const int elem_type = element.GetInt32("elem_type", -1);
          Variant item(base::variant::kVariantTypeMap);
          if (elem_type == 6) {
            const Variant face = LookUpFace(element.GetInt32("face_elem_index", -1));
            if (face.IsMap()) {
              item.Set("item_type", ToInt(ItemType::kEmoji));
              item.Set("item_emoji_index", face.GetInt32("index"));
              item.Set("item_emoji_text", element.GetString("face_elem_buf"));
              item.Set("item_emoji_path", face.GetString("path"));
            } else {
              item.Set("item_type", ToInt(ItemType::kText));
              item.Set("item_content", element.GetString("face_elem_buf"));
            }
          } else if (elem_type == 0) {
            item.Set("item_type", ToInt(ItemType::kText));
            item.Set("item_content", Sanitise(element.Get("text_elem_content")));
          } else {
            TXLOG_WARN << "not support type " << elem_type;
            continue;
          }
          items.Add(std::move(item));
        }
      }
      out.Set("msg_content_ex_list", std::move(items));
      break;
    }
    default: {  // text
      const Variant text =
          Sanitise(elements.IsArray() && !elements.Empty() ? elements[0].Get("text_elem_content") : Variant(""));
      Variant items;
      if (ParseEmojiTextMixedContext(text, items)) {
        out.Set("msg_content_ex_list", std::move(items));
        out.Set("layout_type", ToInt(ChatType::kMixed));
      } else {
        out.Set("msg_content", text);
        out.Set("layout_type", ToInt(ChatType::kText));
      }
      break;
    }
  }
  HidePrivateContent(source, out);
}

bool InMeetingBulletViewModel::ParseEmojiTextMixedContext(Variant const& text, Variant& out) const {
  Variant ask(text);
  Variant items;
  if (!InvokeHostModel(kHostFaceModel, kFaceMethodSplitText, &ask, &items)) return false;
  out = Variant(base::variant::kVariantTypeArray);
  if (!items.IsArray()) return true;
  const auto& list = items.AsArray();
  if (std::all_of(list.begin(), list.end(), [](Variant const& item) {
        const int type = item.GetInt32("item_type", -1);
        return type == ToInt(ItemType::kText) || type == ToInt(ItemType::kEmoji);
      })) {
    out = std::move(items);
    return true;
  }
  for (auto const& item : list) {
    const int type = item.GetInt32("item_type", -1);
    if (type != ToInt(ItemType::kText) && type != ToInt(ItemType::kEmoji)) {
      TXLOG_WARN << "unsupport type: " << type;
      continue;
    }
    out.Add(item);
  }
  return true;
}

}  // namespace chat
