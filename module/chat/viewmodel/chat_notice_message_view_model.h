#pragma once

#include "chat/viewmodel/chat_message_item_view_model.h"

namespace chat {

// A meeting notice in the list; clicking it opens the notice page.
class ChatNoticeMessageViewModel : public ChatMessageItemViewModel {
 public:
  static constexpr uint32_t kPropInfo = 0x2f45b;
  static constexpr uint32_t kActionShowMeetingNotice = 0x8316d;

  ChatNoticeMessageViewModel();
  void HandleShowMeetingNotice();

 protected:
  bool FillInfo(Variant const& record, Variant const* params, Variant& info) override;
  uint32_t info_prop() const override { return kPropInfo; }
};

}  // namespace chat
