#include "chat/ui/desktop/view/chat/chat_image_item.h"

#include <QFileInfo>
#include <QVBoxLayout>

#include "chat/ui/desktop/view/chat/image_browser.h"
#include "chat/viewmodel/chat_image_message_view_model.h"
#include "uikit/label/qf_label.h"
#include "framework/chat/chat_schema_keys.h"

namespace {
constexpr char kImageLoading[] = ":/images/chat/im_icon_imageloading_normal";
constexpr char kImageMissing[] = ":/images/chat/im_icon_imagemissing_normal";
}  // namespace

ChatImageItem::ChatImageItem(QWidget* parent) : ChatItem(parent) {}

QWidget* ChatImageItem::CreateMsgContent(QWidget* parent) {
  auto* holder = new QWidget(parent);
  holder->setObjectName("ChatImageItem#msg_content");
  auto* layout = new QVBoxLayout(holder);
  layout->setContentsMargins(0, 2, 0, 0);
  layout->setSpacing(0);
  browser_ = new ImageBrowser(holder);
  layout->addWidget(browser_);
  connect(browser_, &ImageAsycnBrowser::ChatItemSizeChanged, this, &ChatItem::ChatItemSizeChanged);
  connect(browser_->label(), &QWidget::customContextMenuRequested, this, [this] { RequestContextMenu(false); });
  connect(browser_, &ImageAsycnBrowser::ImageClicked, this, [this] {
    if (browser_->is_image_loaded()) {
      RequestAction(chat::ChatImageMessageViewModel::kActionPreviewClicked);
    } else if (!is_from_self_ && browser_->placeholder() == kImageMissing) {
      // A picture that never arrived: a press fetches it again.
      Variant params(base::variant::kVariantTypeMap);
      params.Set(ChatImageMessageDownloadMsgFields_kStringMsgId, item_msg_id_);
      emit ActionRequested(chat::ChatImageMessageViewModel::kActionRefreshImage, params);
    }
  });
  return holder;
}

QString ChatImageItem::ImagePathOf(Variant const& message) {
  for (char const* key : {ChatImageMessageInfoFields_kStringInfoOrigPath, ChatImageMessageInfoFields_kStringInfoLargePath,
                          ChatImageMessageInfoFields_kStringInfoThumbPath,
                          ChatImageMessageInfoFields_kStringInfoSendOrigPath}) {
    const QString path = QString::fromStdString(message.GetString(key));
    if (!path.isEmpty() && QFileInfo::exists(path)) return path;
  }
  return QString();
}

void ChatImageItem::UpdateMsgContentWithMessageInfo(Variant const& message) {
  browser_->SetMaxWidth(GetMaxContentWidth());
  const QString path = ImagePathOf(message);
  if (path.isEmpty()) {
    const int status = message.GetInt32(ChatImageMessageInfoFields_kIntegerInfoOrigDownloadStatus, 0);
    browser_->ShowPlaceholder(!is_from_self_ && status == 1 ? kImageLoading : kImageMissing);
    return;
  }
  if (path != browser_->image_path()) {
    browser_->ShowPlaceholder(kImageLoading);
    browser_->SetImagePath(path);
  }
}

void ChatImageItem::resizeEvent(QResizeEvent* event) {
  ChatItem::resizeEvent(event);
  if (!browser_ || browser_->max_width() == GetMaxContentWidth()) return;
  browser_->SetMaxWidth(GetMaxContentWidth());
}

void ChatImageItem::CopyContent() { browser_->CopyImage(); }
