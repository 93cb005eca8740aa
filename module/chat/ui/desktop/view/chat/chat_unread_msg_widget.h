#pragma once

#include "uikit/widget/qf_shadow_widget.h"

class QLabel;

// The floating "new messages" button over the bottom of the chat list. It is
// as wide as its text needs, never narrower than its designed 108 pixels and
// never wider than the room it is given; a text wider than that room is
// elided and shown whole in the tooltip.
class ChatUnreadMsgWidget : public QFShadowWidget {
  Q_OBJECT

 public:
  static constexpr int kContentWidth = 108;
  static constexpr int kContentHeight = 32;

  explicit ChatUnreadMsgWidget(QWidget* parent = nullptr);

  void SetText(QString const& text);
  QString const& text() const { return text_; }
  // The widest the button may be, shadow included; 0 for no limit.
  void SetMaxWidth(int max_width);
  QLabel* text_label() const { return text_lbl_; }

 private:
  void FitToText();

  QWidget* content_widget_ = nullptr;
  QLabel* icon_lbl_ = nullptr;
  QLabel* text_lbl_ = nullptr;
  QString text_;
  int max_width_ = 0;
};
