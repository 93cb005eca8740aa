#pragma once

#include "uikit/widget/qf_shadow_widget.h"

class QLabel;

// The floating "new messages" button over the bottom of the chat list.
class ChatUnreadMsgWidget : public QFShadowWidget {
  Q_OBJECT

 public:
  explicit ChatUnreadMsgWidget(QWidget* parent = nullptr);

  void SetText(QString const& text);
  QLabel* text_label() const { return text_lbl_; }

 private:
  QWidget* content_widget_ = nullptr;
  QLabel* icon_lbl_ = nullptr;
  QLabel* text_lbl_ = nullptr;
};
