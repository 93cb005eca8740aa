#pragma once

#include "chat/runtime/chat_ids.h"
#include "framework/model/model_impl.h"

namespace chat {

// Checks and sends text, image, file and mixed messages.
class ChatSendMessageBizModel : public framework::ModelImpl {
 public:
  ChatSendMessageBizModel() : framework::ModelImpl(kChatSendMessageBizModelId) {}
};

}  // namespace chat
