#include "chat/ui/desktop/view/chat/chat_unread_msg_widget.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>

#include "uikit/tx_qt_ui_util.h"

namespace {
constexpr int kShadow = 6;
constexpr int kSideInset = 8;
constexpr int kLeadSpace = 5;
constexpr int kIconSize = 16;
constexpr int kTextPadding = 4;
}  // namespace

ChatUnreadMsgWidget::ChatUnreadMsgWidget(QWidget* parent) : QFShadowWidget(parent) {
  setObjectName("ChatUnreadMsgWidget");
  SetNineSliceImage(TXQtUiUtil::GetHdpiImage(":/images/chat/unread_msg_btn_bg"), 22);
  auto* outer = new QHBoxLayout(this);
  outer->setContentsMargins(kShadow, kShadow - 2, kShadow, kShadow + 2);
  content_widget_ = new QWidget(this);
  content_widget_->setObjectName("content_widget");
  content_widget_->setStyleSheet("QWidget#content_widget { background: transparent; }");
  content_widget_->setFixedSize(kContentWidth, kContentHeight);
  auto* layout = new QHBoxLayout(content_widget_);
  layout->setContentsMargins(kSideInset, 0, kSideInset, 0);
  layout->setSpacing(0);
  layout->addSpacing(kLeadSpace);
  icon_lbl_ = new QLabel(content_widget_);
  icon_lbl_->setObjectName("icon_lbl_");
  icon_lbl_->setFixedSize(kIconSize, kIconSize);
  icon_lbl_->setScaledContents(true);
  icon_lbl_->setPixmap(TXQtUiUtil::GetHdpiImage(":/images/chat/unread_msg_btn"));
  text_lbl_ = new QLabel(content_widget_);
  text_lbl_->setObjectName("text_lbl_");
  text_lbl_->setStyleSheet(
      QString("QLabel#text_lbl_ { color: #198CFF; font-size: 12px; padding-left: %1px; }").arg(kTextPadding));
  layout->addWidget(icon_lbl_);
  layout->addWidget(text_lbl_, 1);
  outer->addWidget(content_widget_);
  setFixedSize(kContentWidth + 2 * kShadow, kContentHeight + 2 * kShadow);
}

void ChatUnreadMsgWidget::SetText(QString const& text) {
  text_ = text;
  FitToText();
}

void ChatUnreadMsgWidget::SetMaxWidth(int max_width) {
  if (max_width == max_width_) return;
  max_width_ = max_width;
  FitToText();
}

void ChatUnreadMsgWidget::FitToText() {
  // The label's font comes from its sheet.
  text_lbl_->ensurePolished();
  const QFontMetrics metrics(text_lbl_->font());
  const int chrome = 2 * kSideInset + kLeadSpace + kIconSize + kTextPadding;
  // One pixel spare: advances are rounded.
  int content = std::max(kContentWidth, chrome + metrics.horizontalAdvance(text_) + 1);
  if (max_width_ > 0) content = std::max(chrome, std::min(content, max_width_ - 2 * kShadow));
  const QString shown = metrics.elidedText(text_, Qt::ElideRight, content - chrome);
  text_lbl_->setText(shown);
  setToolTip(shown == text_ ? QString() : text_);
  setAccessibleName(text_);
  content_widget_->setFixedSize(content, kContentHeight);
  setFixedSize(content + 2 * kShadow, kContentHeight + 2 * kShadow);
}
