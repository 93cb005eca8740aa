#pragma once

#include "chat/ui/desktop/view/chat/chat_item.h"

class QLabel;

// A card that an app posted into the chat: a title, a description, an
// image and the app's name; or a goods card with its picture and prices.
class ChatOpenAppItem : public ChatItem {
  Q_OBJECT

 public:
  static constexpr int kCardWidth = 240;
  enum ContentLayout : int { kLayoutCommon = 0, kLayoutGoods = 1, kLayoutFlexGoods = 2 };

  explicit ChatOpenAppItem(QWidget* parent = nullptr);
  QWidget* card() const { return card_; }

 protected:
  QWidget* CreateMsgContent(QWidget* parent) override;
  void UpdateMsgContentWithMessageInfo(Variant const& message) override;
  void OnCreateMessageContent() override;

 private:
  void BuildCommon(Variant const& message);
  void BuildGoods(Variant const& message, bool flexible);
  QLabel* AddLabel(char const* name, QString const& text, char const* color, int pixel_size);

  QWidget* holder_ = nullptr;
  QWidget* card_ = nullptr;
};
