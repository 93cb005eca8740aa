#include "chat/ui/desktop/view/chat/chat_notice_item.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QVBoxLayout>

#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "chat/viewmodel/chat_notice_message_view_model.h"
#include "framework/chat/chat_schema_keys.h"
#include "uikit/tx_qt_ui_util.h"

ChatNoticeItem::ChatNoticeItem(QWidget* parent) : ChatItem(parent) {
  connect(this, &ChatNoticeItem::ViewDetailClicked, this,
          [this] { RequestAction(chat::ChatNoticeMessageViewModel::kActionShowMeetingNotice); });
}

QWidget* ChatNoticeItem::CreateMsgContent(QWidget* parent) {
  auto* container = new QWidget(parent);
  container->setObjectName("Container");
  container->setAttribute(Qt::WA_StyledBackground);
  container->setProperty("chat-card", "notice");
  auto* layout = new QVBoxLayout(container);
  layout->setContentsMargins(12, 10, 12, 10);
  layout->setSpacing(6);

  auto* head = new QHBoxLayout();
  head->setSpacing(6);
  auto* icon = new QLabel(container);
  icon->setObjectName("notice_icon");
  icon->setFixedSize(16, 16);
  icon->setScaledContents(true);
  icon->setPixmap(TXQtUiUtil::GetHdpiImage(":/images/chat/meeting_notice"));
  head->addWidget(icon, 0, Qt::AlignTop);
  content_ = new RichTextLabel(container);
  content_->setObjectName("notice_content");
  head->addWidget(content_, 1);
  layout->addLayout(head);

  detail_row_ = new QWidget(container);
  detail_row_->setObjectName("notice_view_detail_row");
  detail_row_->setCursor(Qt::PointingHandCursor);
  auto* detail = new QHBoxLayout(detail_row_);
  detail->setContentsMargins(22, 0, 0, 0);
  detail->setSpacing(2);
  auto* text = new QLabel(QCoreApplication::translate("ChatNoticeItem", "View details"), detail_row_);
  text->setObjectName("notice_view_detail");
  auto* arrow = new QLabel(detail_row_);
  arrow->setObjectName("notice_view_detail_arrow_icon");
  arrow->setFixedSize(12, 12);
  arrow->setScaledContents(true);
  arrow->setPixmap(TXQtUiUtil::GetHdpiImage(":/images/chat/im_icon_announce_arrow"));
  detail->addWidget(text);
  detail->addWidget(arrow);
  detail->addStretch(1);
  detail_row_->installEventFilter(this);
  detail_row_->hide();
  layout->addWidget(detail_row_);
  container->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(container, &QWidget::customContextMenuRequested, this, [this] { RequestContextMenu(false); });
  return container;
}

void ChatNoticeItem::UpdateMsgContentWithMessageInfo(Variant const& message) {
  std::vector<RichTextBlock> blocks;
  for (auto const& item : message.Get(ChatNoticeMessageInfoFields_kPtrInfoArrayItem).AsArray()) {
    const int type = item.GetInt32(ChatNoticeMessageItemFields_kIntegerItemType, 0);
    RichTextBlock block =
        RichTextBlock::Text(QString::fromStdString(item.GetString(ChatNoticeMessageItemFields_kStringItemContent)),
                            14, type == 2 ? "#006FFF" : "black");
    block.text->max_lines = -1;
    if (type == 2) block.text->underline = true;
    blocks.push_back(std::move(block));
  }
  content_->SetRichText(blocks, kContentWidth, kMaxLines);
  detail_row_->setVisible(content_->IsReachMaxLines());
}

bool ChatNoticeItem::eventFilter(QObject* watched, QEvent* event) {
  if (watched == detail_row_ && event->type() == QEvent::MouseButtonRelease &&
      static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
    emit ViewDetailClicked();
    return true;
  }
  return ChatItem::eventFilter(watched, event);
}
