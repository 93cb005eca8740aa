#include "chat/ui/desktop/view/chat/chat_unread_msg_widget.h"

#include <QHBoxLayout>
#include <QLabel>

#include "uikit/tx_qt_ui_util.h"

namespace {
constexpr int kShadow = 6;
}

ChatUnreadMsgWidget::ChatUnreadMsgWidget(QWidget* parent) : QFShadowWidget(parent) {
  setObjectName("ChatUnreadMsgWidget");
  SetNineSliceImage(TXQtUiUtil::GetHdpiImage(":/images/chat/unread_msg_btn_bg"), 22);
  auto* outer = new QHBoxLayout(this);
  outer->setContentsMargins(kShadow, kShadow - 2, kShadow, kShadow + 2);
  content_widget_ = new QWidget(this);
  content_widget_->setObjectName("content_widget");
  content_widget_->setStyleSheet("QWidget#content_widget { background: transparent; }");
  content_widget_->setFixedSize(108, 32);
  auto* layout = new QHBoxLayout(content_widget_);
  layout->setContentsMargins(8, 0, 8, 0);
  layout->setSpacing(0);
  layout->addSpacing(5);
  icon_lbl_ = new QLabel(content_widget_);
  icon_lbl_->setObjectName("icon_lbl_");
  icon_lbl_->setFixedSize(16, 16);
  icon_lbl_->setScaledContents(true);
  icon_lbl_->setPixmap(TXQtUiUtil::GetHdpiImage(":/images/chat/unread_msg_btn"));
  text_lbl_ = new QLabel(content_widget_);
  text_lbl_->setObjectName("text_lbl_");
  text_lbl_->setStyleSheet("QLabel#text_lbl_ { color: #198CFF; font-size: 12px; padding-left: 4px; }");
  layout->addWidget(icon_lbl_);
  layout->addWidget(text_lbl_, 1);
  outer->addWidget(content_widget_);
  setFixedSize(108 + 2 * kShadow, 32 + 2 * kShadow);
}

void ChatUnreadMsgWidget::SetText(QString const& text) { text_lbl_->setText(text); }
