#include "chat/viewmodel/chat_tip_message_view_model.h"

#include "base/log/log.h"
#include "framework/chat/chat_schema_keys.h"
#include "chat/model/chat_message.h"

namespace chat {

namespace {
constexpr uint32_t kTextYou = 0xd0acbded;
constexpr uint32_t kTextWithdrewMessage = 0x7baf9134;
}  // namespace

bool ChatTipMessageViewModel::FillInfo(Variant const& record, Variant const* params, Variant& info) {
  if (record.Has(chat_key::kMsgId)) {
    info.Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgId, record.GetString(chat_key::kMsgId));
  } else {
    TXLOG_ERROR << "message info not found msg_id";
    info.Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgId, "");
  }
  info.Set(ChatTipMessageInfoFields_kIntegerInfoLayoutType, LayoutTypeOf(params, 1));
  const MessageRecord message(record);
  info.Set(ChatTipMessageInfoFields_kIntegerInfoChatType, ToInt(message.chat_type(ChatType::kTip)));
  std::string tip;
  if (message.IsRecalled()) {
    if (!record.Has(chat_key::kSender)) TXLOG_ERROR << "msg info not msg_sender";
    const std::string who =
        message.is_from_self() ? GetLocalizedString(kTextYou) : message.sender().GetString("nickname");
    tip = who + GetLocalizedString(kTextWithdrewMessage);
  } else {
    if (!record.Has("msg_content") && !record.Has("ui_msg_content")) TXLOG_ERROR << "msg info not msg_content";
    Variant const& content = ContentOf(record);
    tip = content.IsArray() && !content.Empty() ? content[0].GetString("item_content")
                                                : content.GetString("item_content");
  }
  info.Set(ChatTipMessageInfoFields_kStringInfoTipContent, tip);
  return true;
}

}  // namespace chat
