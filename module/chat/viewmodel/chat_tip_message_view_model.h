#pragma once

#include "chat/viewmodel/chat_message_item_view_model.h"

namespace chat {

// A tip row: a time tip, or the line left where a message was withdrawn.
class ChatTipMessageViewModel : public ChatMessageItemViewModel {
 public:
  static constexpr uint32_t kPropInfo = 0xd7c94;

 protected:
  bool FillInfo(Variant const& record, Variant const* params, Variant& info) override;
  uint32_t info_prop() const override { return kPropInfo; }
  bool wants_base_info() const override { return false; }
};

}  // namespace chat
