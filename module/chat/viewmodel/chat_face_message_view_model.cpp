#include "chat/viewmodel/chat_face_message_view_model.h"

#include "framework/chat/chat_schema_keys.h"

namespace chat {

bool ChatFaceMessageViewModel::FillInfo(Variant const& record, Variant const* params, Variant& info) {
  Variant const& face = ContentOf(record);
  info.Set(ChatFaceMessageInfoFields_kIntegerInfoLayoutType, LayoutTypeOf(params, 1));
  info.Set(ChatFaceMessageInfoFields_kIntegerInfoEmojiIndex, face.GetInt32("item_emoji_index", -1));
  info.Set(ChatFaceMessageInfoFields_kStringInfoEmojiText, face.GetString("item_emoji_text"));
  info.Set(ChatFaceMessageInfoFields_kStringInfoEmojiPath, face.GetString("item_emoji_path"));
  return true;
}

}  // namespace chat
