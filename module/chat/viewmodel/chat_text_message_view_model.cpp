#include "chat/viewmodel/chat_text_message_view_model.h"

#include "base/log/log.h"
#include "framework/chat/chat_schema_keys.h"
#include "chat/model/chat_message.h"

namespace chat {

bool ChatTextMessageViewModel::FillInfo(Variant const& record, Variant const* params, Variant& info) {
  if (!record.Has("ui_msg_content") && !record.Has("msg_content")) {
    TXLOG_ERROR << "<IM> msg info not msg_content";
    return false;
  }
  Variant const& content = ContentOf(record);
  if (!content.IsArray()) {
    TXLOG_ERROR << "<IM> msg_content not found, with msg_id=" << msg_id_;
    return false;
  }
  info.Set(ChatTextMessageInfoFields_kIntegerInfoTextLayoutType, LayoutTypeOf(params, 1));
  Variant items(base::variant::kVariantTypeArray);
  for (auto const& element : content.AsArray()) {
    const int type = element.GetInt32("item_type", -1);
    Variant item(base::variant::kVariantTypeMap);
    if (type == ToInt(ItemType::kText) || type == ToInt(ItemType::kLink)) {
      item.Set(ChatTextMessageItemFields_kIntegerItemType, type);
      item.Set(ChatTextMessageItemFields_kStringItemContent, element.GetString("item_content"));
    } else if (type == ToInt(ItemType::kEmoji)) {
      item.Set(ChatTextMessageItemFields_kIntegerItemType, type);
      item.Set(ChatTextMessageItemFields_kIntegerItemEmojiIndex, element.GetInt32("item_emoji_index", -1));
      item.Set(ChatTextMessageItemFields_kStringItemEmojiPath, element.GetString("item_emoji_path"));
      item.Set(ChatTextMessageItemFields_kStringItemEmojiText, element.GetString("item_emoji_text"));
    } else {
      continue;
    }
    items.Add(std::move(item));
  }
  info.Set(ChatTextMessageInfoFields_kPtrInfoArrayItem, std::move(items));
  return true;
}

}  // namespace chat
