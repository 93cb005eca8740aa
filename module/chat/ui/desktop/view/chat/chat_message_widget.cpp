#include "chat/ui/desktop/view/chat/chat_message_widget.h"

#include "base/log/log.h"
#include "chat/ui/desktop/view/chat/chat_face_item.h"
#include "chat/ui/desktop/view/chat/chat_file_item.h"
#include "chat/ui/desktop/view/chat/chat_image_item.h"
#include "chat/ui/desktop/view/chat/chat_notice_item.h"
#include "chat/ui/desktop/view/chat/chat_open_app_item.h"
#include "chat/ui/desktop/view/chat/chat_text_item.h"
#include "chat/ui/desktop/view/chat/chat_tips_item.h"
#include "chat/model/chat_message.h"

ChatMessageWidget::ChatMessageWidget(QString reuse_id, QWidget* parent) : QFReuseWidget(std::move(reuse_id), parent) {
  setObjectName("ChatMessageWidget");
}

ChatItem* ChatMessageWidget::CreateItem(int chat_type, QWidget* parent) {
  switch (chat_type) {
    case -1:
      return new ChatTipsItem(parent);
    case 0:
    case 12:
      return new ChatTextItem(parent);
    case 1:
      return new ChatFaceItem(parent);
    case 4:
      return new ChatImageItem(parent);
    case 6:
      return new ChatNoticeItem(parent);
    case 7:
      return new ChatOpenAppItem(parent);
    case 8:
      return new ChatFileItem(parent);
    default:
      TXLOG_ERROR << "<IM> no chat item for chat_type " << chat_type;
      return nullptr;
  }
}

void ChatMessageWidget::SetMessageInfo(Variant const& message) {
  const int chat_type = ToInt(chat::MessageRecord(message).chat_type());
  // A row bound again to what it shows (a reload hands every row on screen
  // back its own widget) has nothing to lay out again.
  if (item_ && item_chat_type_ == chat_type && item_->message() == message) return;
  if (item_ && item_chat_type_ != chat_type) {
    // A row's kind is fixed by its reuse id; a different kind gets a new item.
    item_->deleteLater();
    item_ = nullptr;
  }
  if (!item_) {
    item_ = CreateItem(chat_type, this);
    if (!item_) return;
    item_chat_type_ = chat_type;
    item_->setGeometry(rect());
    connect(item_, &ChatItem::ChatItemSizeChanged, this, &ChatMessageWidget::SizeChanged);
    connect(item_, &ChatItem::OnCustomContextMenuRequested, this, &ChatMessageWidget::ContextMenuRequested);
    connect(item_, &ChatItem::ChatItemMenuRequested, this, &ChatMessageWidget::AvatarMenuRequested);
    connect(item_, &ChatItem::ActionRequested, this, &ChatMessageWidget::ActionRequested);
    connect(item_, &ChatItem::FilePreviewRequested, this, &ChatMessageWidget::FilePreviewRequested);
    item_->show();
  }
  item_->SetMessageInfo(message);
}

QSize ChatMessageWidget::sizeHint() const {
  if (!item_) return QSize(width(), 0);
  // The list fixes the width just before it asks: the item follows it first.
  if (item_->width() != width()) item_->resize(width(), item_->height());
  return QSize(width(), item_->sizeHint().height());
}

void ChatMessageWidget::resizeEvent(QResizeEvent* event) {
  QFReuseWidget::resizeEvent(event);
  if (item_) item_->setGeometry(rect());
}
