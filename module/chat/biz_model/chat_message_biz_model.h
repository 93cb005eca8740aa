#pragma once

#include "chat/runtime/chat_ids.h"
#include "framework/model/model_impl.h"

namespace chat {

// Turns the client's message records into their UI form as they arrive.
class ChatMessageBizModel : public framework::ModelImpl {
 public:
  ChatMessageBizModel() : framework::ModelImpl(kChatMessageBizModelId) {}
};

}  // namespace chat
