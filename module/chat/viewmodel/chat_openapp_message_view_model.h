#pragma once

#include "chat/viewmodel/chat_message_item_view_model.h"

namespace chat {

// A mini-app card; a goods card when its app carries goods data. Clicking
// opens the app in the sidebar.
class ChatOpenappMessageViewModel : public ChatMessageItemViewModel {
 public:
  static constexpr uint32_t kPropInfo = 0xf618e;
  static constexpr uint32_t kActionClickOpenApp = 0xe9f45;
  static constexpr int kLayoutChatRecord = 3;
  // Names of the goods card's dynamic layouts: the one every client reads,
  // and the one drawn by this desktop client's flexible card.
  static constexpr char kGoodsCardLayout[] = "im_goods_card_layout";
  static constexpr char kGoodsCardLayoutQt[] = "im_goods_card_layout_qt";

  ChatOpenappMessageViewModel();
  bool HandleClickOpenAppMsg(Variant const* params);

 protected:
  bool FillInfo(Variant const& record, Variant const* params, Variant& info) override;
  uint32_t info_prop() const override { return kPropInfo; }
};

}  // namespace chat
