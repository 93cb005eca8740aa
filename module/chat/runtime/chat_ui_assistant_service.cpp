#include "chat/runtime/chat_ui_assistant_service.h"

#include "base/log/log.h"
#include "framework/chat/chat_utils.h"
#include "chat/model/chat_message.h"

namespace chat {

bool ChatUIAssistantService::Invoke(uint32_t method, Variant const* params, Variant* result) {
  if (method == kMethodGetChatCellViewHeight) return InvokeGetChatCellViewHeight(params, result);
  return false;
}

bool ChatUIAssistantService::InvokeGetChatCellViewHeight(Variant const* params, Variant* result) {
  const std::string msg_id = params ? params->GetString("msg_id") : std::string();
  auto message = talvex::ChatUtils::GetMsgInfoPtrById(msg_id);
  if (!message) {
    TXLOG_ERROR << "<IM> msg is not found";
    return true;
  }
  const MessageRecord record(*message);
  const int chat_type = ToInt(record.chat_type());
  if (!record.has_chat_type()) {
    TXLOG_ERROR << "<IM> msg is not found chat_type";
  }
  if (talvex::ChatUtils::IsRedPacketOrReceiptType(chat_type)) return false;
  Variant request = params && params->IsMap() ? *params : Variant(base::variant::kVariantTypeMap);
  request.Set("message_info", *message);
  FireEvent(kEventGetChatCellViewHeight, &request);
  return true;
}

}  // namespace chat
