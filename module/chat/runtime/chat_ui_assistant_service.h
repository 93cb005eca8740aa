#pragma once

#include "framework/model/model_impl.h"

namespace chat {

// Answers the client's questions about chat cells.
class ChatUIAssistantService : public framework::BaseServiceImpl {
 public:
  enum Method : uint32_t { kMethodGetChatCellViewHeight = 669604053 };  // 0x27e958d5
  // Fired with the request and its `message_info` when a cell is to be measured.
  enum Event : uint32_t { kEventGetChatCellViewHeight = 108273149 };  // 0x6741dfd

  bool Invoke(uint32_t method, Variant const* params, Variant* result) override;

  // True when the chat module answers (through its event); false for the
  // red-packet and receipt kinds, whose cells are the client's.
  bool InvokeGetChatCellViewHeight(Variant const* params, Variant* result);
};

}  // namespace chat
