#pragma once

#include "chat/ui/desktop/view/chat/chat_item.h"

class QLabel;

// A message of one large emoji, drawn without a bubble.
class ChatFaceItem : public ChatItem {
  Q_OBJECT

 public:
  static constexpr int kFaceSize = 64;
  explicit ChatFaceItem(QWidget* parent = nullptr);
  QLabel* face_label() const { return face_; }

 protected:
  QWidget* CreateMsgContent(QWidget* parent) override;
  void UpdateMsgContentWithMessageInfo(Variant const& message) override;

 private:
  QLabel* face_ = nullptr;
};
