#include "chat/viewmodel/chat_clipboard_export.h"

#include "chat/model/chat_message.h"
#include "framework/chat/chat_utils.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"

namespace chat {

Variant ClipboardEntries(Variant const& ids) {
  using talvex_common::utils::GetLocalizedString;
  const auto Map = [] { return Variant(base::variant::kVariantTypeMap); };
  Variant entries(base::variant::kVariantTypeArray);
  for (auto const& id : ids.AsArray()) {
    auto record = talvex::ChatUtils::GetMsgInfoPtrById(id.IsString() ? id.AsStr() : id.ToString());
    if (!record) continue;
    const MessageRecord message(*record);
    const ChatType chat_type = message.chat_type();
    const bool recalled = message.IsRecalled();
    Variant const& content = record->Has("ui_msg_content") ? record->Get("ui_msg_content") : record->Get("msg_content");
    Variant entry = Map();
    if (chat_type != ChatType::kTip && !recalled) {
      Variant const& sender = record->Has("msg_sender") ? record->Get("msg_sender") : record->Get("message_sender");
      entry.Set("nickname", sender.GetString("nickname"));
    }
    std::string text;
    if (recalled) {
      continue;
    } else if (chat_type == ChatType::kImage) {
      for (char const* key : {"orig_path", "large_path", "thumb_path", "send_orig_path"}) {
        const std::string path = content.GetString(key);
        if (!path.empty()) {
          entry.Set("img", path);
          break;
        }
      }
      text = GetLocalizedString(framework::NameId("chat.message.image"));
      if (text.empty()) text = "[Image]";
    } else if (chat_type == ChatType::kFile) {
      text = content.GetString("title", content.GetString("name"));
    } else if (content.IsArray()) {
      for (auto const& item : content.AsArray()) {
        const bool emoji = item.GetInt32("item_type", ToInt(ItemType::kText)) == ToInt(ItemType::kEmoji);
        text += emoji ? item.GetString("item_emoji_text") : item.GetString("item_content");
      }
    } else if (content.IsMap()) {
      text = content.GetString("item_content", content.GetString("item_emoji_text"));
    }
    entry.Set("text", text);
    if (message.IsFailed()) {
      entry.Set("tail", GetLocalizedString(framework::NameId("chat.message.not_sent")));
    }
    entries.Add(std::move(entry));
  }
  return entries;
}

}  // namespace chat
