#pragma once

#include "chat/viewmodel/chat_message_item_view_model.h"

namespace chat {

// A text row: text, link and emoji pieces.
class ChatTextMessageViewModel : public ChatMessageItemViewModel {
 public:
  static constexpr uint32_t kPropInfo = 0xecbb0;

 protected:
  bool FillInfo(Variant const& record, Variant const* params, Variant& info) override;
  uint32_t info_prop() const override { return kPropInfo; }
};

}  // namespace chat
