#pragma once

#include "chat/runtime/chat_ids.h"
#include "framework/model/model_impl.h"

namespace chat {

// Chat of a live-streamed meeting.
class ChatInLiveBizModel : public framework::ModelImpl {
 public:
  ChatInLiveBizModel() : framework::ModelImpl(kChatInLiveBizModelId) {}
};

}  // namespace chat
