#include "chat/ui/desktop/view/chat/chat_face_item.h"

#include <QLabel>
#include <QPixmap>

#include "framework/chat/chat_schema_keys.h"

ChatFaceItem::ChatFaceItem(QWidget* parent) : ChatItem(parent) {}

QWidget* ChatFaceItem::CreateMsgContent(QWidget* parent) {
  face_ = new QLabel(parent);
  face_->setObjectName("ChatFaceItem#msg_content");
  face_->setFixedSize(kFaceSize, kFaceSize);
  face_->setScaledContents(true);
  face_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(face_, &QWidget::customContextMenuRequested, this, [this] {
    Variant extra(base::variant::kVariantTypeMap);
    extra.Set("face_type", message_.GetString(ChatFaceMessageInfoFields_kStringInfoEmojiText));
    extra.Set("index", message_.GetInt32(ChatFaceMessageInfoFields_kIntegerInfoEmojiIndex, -1));
    RequestContextMenu(false, extra);
  });
  return face_;
}

void ChatFaceItem::UpdateMsgContentWithMessageInfo(Variant const& message) {
  QPixmap face(QString::fromStdString(message.GetString(ChatFaceMessageInfoFields_kStringInfoEmojiPath)));
  face_->setPixmap(face);
  face_->setToolTip(QString::fromStdString(message.GetString(ChatFaceMessageInfoFields_kStringInfoEmojiText)));
}
