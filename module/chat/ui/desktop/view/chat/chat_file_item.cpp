#include "chat/ui/desktop/view/chat/chat_file_item.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

#include "chat/model/chat_message.h"
#include "chat/util/utils.h"
#include "chat/viewmodel/chat_file_message_view_model.h"
#include "uikit/tx_qt_ui_util.h"

namespace {
constexpr int kIconSize = 36;
const char* const kIconNames[] = {"file_unknown", "file_doc",  "file_xls",   "file_ppt",  "file_pdf",  "file_txt",
                                  "file_image",   "file_video", "file_audio", "file_zip", "file_code", "file_exe"};
}  // namespace

ChatFileItem::ChatFileItem(QWidget* parent) : ChatItem(parent) {}

QString ChatFileItem::IconOf(int icon_type) {
  const int count = static_cast<int>(sizeof(kIconNames) / sizeof(kIconNames[0]));
  const int index = icon_type >= 0 && icon_type < count ? icon_type : 0;
  return QString(":images/chat/file_transfer/%1").arg(kIconNames[index]);
}

QString ChatFileItem::OperationIconOf(int status) {
  switch (status) {
    case chat::kFileUploadWaiting:
    case chat::kFileUploading:
    case chat::kFileDownloadWaiting:
    case chat::kFileDownloading:
      return "icon_cancel";
    case chat::kFileNotDownloaded:
    case chat::kFileDownloadCanceled:
      return "icon_download";
    case chat::kFileUploadFailed:
    case chat::kFileDownloadFailed:
      return "icon_fail";
    default:
      return QString();
  }
}

QWidget* ChatFileItem::CreateMsgContent(QWidget* parent) {
  container_ = new QWidget(parent);
  container_->setObjectName("Container");
  container_->setAttribute(Qt::WA_StyledBackground);
  container_->setFixedSize(kCardWidth, kCardHeight);
  container_->setProperty("chat-card", "file");
  progress_ = new QWidget(container_);
  progress_->setObjectName("Progress");
  progress_->setAttribute(Qt::WA_StyledBackground);
  progress_->hide();

  auto* layout = new QHBoxLayout(container_);
  layout->setContentsMargins(12, 12, 12, 12);
  layout->setSpacing(10);
  icon_ = new QLabel(container_);
  icon_->setObjectName("file_icon");
  icon_->setFixedSize(kIconSize, kIconSize);
  icon_->setScaledContents(true);
  auto* texts = new QVBoxLayout();
  texts->setContentsMargins(0, 0, 0, 0);
  texts->setSpacing(2);
  title_ = new QLabel(container_);
  title_->setObjectName("file_title");
  sub_title_ = new QLabel(container_);
  sub_title_->setObjectName("file_sub_title");
  // Sizes in code as well: the title is elided by these metrics.
  QFont title_font = title_->font();
  title_font.setPixelSize(14);
  title_->setFont(title_font);
  QFont sub_font = sub_title_->font();
  sub_font.setPixelSize(12);
  sub_title_->setFont(sub_font);
  texts->addWidget(title_);
  texts->addWidget(sub_title_);
  operation_ = new QPushButton(container_);
  operation_->setObjectName("file_operation");
  operation_->setFixedSize(20, 20);
  operation_->setIconSize(QSize(20, 20));
  operation_->setCursor(Qt::PointingHandCursor);
  connect(operation_, &QPushButton::clicked, this, [this] {
    emit OperationClicked(status_);
    if (status_ == chat::kFileDownloadWaiting || status_ == chat::kFileDownloading) {
      RequestAction(chat::ChatFileMessageViewModel::kActionStopDownload);
    } else if (status_ == chat::kFileNotDownloaded || status_ == chat::kFileDownloadCanceled ||
               status_ == chat::kFileDownloadFailed) {
      RequestAction(chat::ChatFileMessageViewModel::kActionDownloadFile);
    }
  });
  container_->installEventFilter(this);
  container_->setCursor(Qt::PointingHandCursor);
  layout->addWidget(icon_);
  layout->addLayout(texts, 1);
  layout->addWidget(operation_);
  container_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(container_, &QWidget::customContextMenuRequested, this, [this] { RequestContextMenu(false); });
  return container_;
}

void ChatFileItem::UpdateMsgContentWithMessageInfo(Variant const& message) {
  status_ = message.GetInt32("status", -1);
  icon_->setPixmap(TXQtUiUtil::GetHdpiImage(IconOf(message.GetInt32("icon_type", 0))));
  const QString title = QString::fromStdString(message.GetString("title"));
  const int text_room = kCardWidth - 24 - kIconSize - 10 - 20 - 10;
  title_->setText(title_->fontMetrics().elidedText(title, Qt::ElideMiddle, text_room));
  title_->setToolTip(TXQtUiUtil::PlainToolTip(title));
  sub_title_->setText(QString::fromStdString(message.GetString("sub_title")));
  const QString operation = OperationIconOf(status_);
  operation_->setVisible(!operation.isEmpty());
  if (!operation.isEmpty()) {
    operation_->setIcon(QIcon(TXQtUiUtil::GetHdpiImage(":/images/chat/file_transfer/" + operation)));
  }
  progress_visible_ = message.GetBoolean("progress_visible", false);
  progress_value_ = message.GetDouble("progress", 0.0);
  UpdateProgress();
}

bool ChatFileItem::eventFilter(QObject* watched, QEvent* event) {
  if (watched == container_ && event->type() == QEvent::MouseButtonRelease) {
    auto* release = static_cast<QMouseEvent*>(event);
    if (release->button() == Qt::LeftButton && container_->rect().contains(release->pos())) {
      Variant params(base::variant::kVariantTypeMap);
      params.Set(chat::chat_key::kMsgId, item_msg_id());
      emit FilePreviewRequested(params);
    }
  }
  return ChatItem::eventFilter(watched, event);
}

void ChatFileItem::UpdateProgress() {
  if (!progress_visible_) {
    progress_->hide();
    return;
  }
  const double fraction = chat::ProgressFraction(progress_value_);
  progress_->setGeometry(0, 0, static_cast<int>(kCardWidth * fraction), kCardHeight);
  progress_->show();
  progress_->lower();
}

void ChatFileItem::CopyContent() {
  const QString path = QString::fromStdString(message_.GetString("path"));
  if (path.isEmpty()) return;
  auto* mime = new QMimeData();
  mime->setUrls({QUrl::fromLocalFile(path)});
  QApplication::clipboard()->setMimeData(mime);
}
