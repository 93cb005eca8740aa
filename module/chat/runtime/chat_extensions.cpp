#include "chat/runtime/chat_extensions.h"

#include "base/log/log.h"

namespace chat {

void ChatExtension::InnerHandleItem(Variant* item) {
  if (item) item->Set("visible", GetItemIsVisible(false));
}

void ChatMessageExtension::InnerHandleItem(Variant* item) {
  if (item) item->Set("visible", true);
}

void ChatMessageExtension::OnContributesActivate(long view, Variant const* params) {
  if (!params || !params->IsMap() || !params->Has("msg_id")) {
    TXLOG_INFO << "not msg_id";
    return;
  }
  const int chat_type = ToInt(MessageRecord(*params).chat_type(ChatType::kTip));
  if (!chat_types_.empty() && chat_types_.count(chat_type) == 0) return;
  ChatModuleExtension::OnContributesActivate(view, params);
}

}  // namespace chat
