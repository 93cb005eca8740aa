#pragma once

#include "chat/runtime/chat_ids.h"
#include "framework/model/model_impl.h"

namespace chat {

// The send button's configuration (which key sends, which options show).
class SendButtonConfigModel : public framework::ModelImpl {
 public:
  SendButtonConfigModel() : framework::ModelImpl(kSendButtonConfigModelId) {}
};

}  // namespace chat
