#include "chat/runtime/chat_service_provider.h"

#include "base/log/log.h"
#include "chat/runtime/chat_ids.h"
#include "chat/runtime/chat_ui_assistant_service.h"

namespace chat {

void ChatServiceProvider::Init() {
  framework::ServiceProviderBaseImpl::Init();
  TXLOG_INFO << "chat service init";
  ServiceOf(kChatUIAssistantServiceId);
}

void ChatServiceProvider::UnInit() {
  TXLOG_INFO << "chat service unInit";
  framework::ServiceProviderBaseImpl::UnInit();
}

framework::ServicePtr ChatServiceProvider::Build(int id) {
  if (id == kChatUIAssistantServiceId) return std::make_shared<ChatUIAssistantService>();
  TXLOG_WARN << "invalid service type";
  return nullptr;
}

}  // namespace chat
