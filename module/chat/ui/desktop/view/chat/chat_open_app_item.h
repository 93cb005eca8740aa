#pragma once

#include "chat/ui/desktop/view/chat/chat_item.h"

class FlexBoxWidget;
class QLabel;

// A card that an app posted into the chat: a title, a description, an image
// and the app's name; or a goods card with its picture and prices, drawn
// either in the fixed layout or in the layout the meeting's configuration
// describes. A click on the card opens its app.
class ChatOpenAppItem : public ChatItem {
  Q_OBJECT

 public:
  static constexpr int kCardWidth = 240;
  enum ContentLayout : int { kLayoutCommon = 0, kLayoutGoods = 1, kLayoutFlexGoods = 2 };

  explicit ChatOpenAppItem(QWidget* parent = nullptr);
  QWidget* card() const { return card_; }
  // The values a flexible goods card's layout may name: goods_name,
  // goods_image, original_price, current_price, has_discount,
  // app_info_name, app_info_icon, msg_content_title, title, description,
  // confirm_btn_text.
  static Variant FlexCardData(Variant const& message);

 protected:
  QWidget* CreateMsgContent(QWidget* parent) override;
  void UpdateMsgContentWithMessageInfo(Variant const& message) override;
  void OnCreateMessageContent() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* NewCard();
  void DropCard();
  // Shows `message` in the flexible card already built, when it has the
  // same layout; building one costs far more than filling it.
  bool RefillFlexGoods(Variant const& message);
  void BuildCommon(Variant const& message);
  void BuildGoods(Variant const& message);
  // False when the message carries no usable layout.
  bool BuildFlexGoods(Variant const& message);
  QLabel* AddLabel(char const* name, QString const& text, char const* color, int pixel_size);

  QWidget* holder_ = nullptr;
  QWidget* card_ = nullptr;
  Variant flex_layout_;
  QPoint press_pos_;
  bool pressed_ = false;
};
