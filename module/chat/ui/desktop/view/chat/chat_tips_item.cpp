#include "chat/ui/desktop/view/chat/chat_tips_item.h"

#include <QHBoxLayout>
#include <QLabel>

#include "framework/chat/chat_schema_keys.h"

namespace {
constexpr int kSideRoom = 32;
}

ChatTipsItem::ChatTipsItem(QWidget* parent) : ChatItem(parent) {}

QWidget* ChatTipsItem::CreateMsgContent(QWidget* parent) {
  auto* container = new QWidget(parent);
  container->setObjectName("MsgTipsContainer");
  auto* layout = new QHBoxLayout(container);
  layout->setContentsMargins(0, 0, 0, 0);
  tips_ = new QLabel(container);
  tips_->setObjectName("MsgTips");
  tips_->setAlignment(Qt::AlignCenter);
  tips_->setWordWrap(true);
  layout->addWidget(tips_);
  return container;
}

void ChatTipsItem::UpdateMsgContentWithMessageInfo(Variant const& message) {
  tips_->setText(QString::fromStdString(message.GetString(ChatTipMessageInfoFields_kStringInfoTipContent)));
  tips_->setMaximumWidth(qMax(40, width() - kSideRoom));
}

void ChatTipsItem::resizeEvent(QResizeEvent* event) {
  ChatItem::resizeEvent(event);
  if (tips_) tips_->setMaximumWidth(qMax(40, width() - kSideRoom));
}
