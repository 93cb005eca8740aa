#pragma once

#include "chat/ui/desktop/view/chat/chat_item.h"

class QLabel;

// A system line in the list (a time, a recall, a notice of the meeting),
// centred, without avatar or bubble.
class ChatTipsItem : public ChatItem {
  Q_OBJECT

 public:
  explicit ChatTipsItem(QWidget* parent = nullptr);
  QLabel* tips_label() const { return tips_; }

 protected:
  QWidget* CreateMsgContent(QWidget* parent) override;
  void UpdateMsgContentWithMessageInfo(Variant const& message) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QLabel* tips_ = nullptr;
};
