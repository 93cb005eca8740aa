#include "chat/ui/desktop/view/chat/image_browser.h"

#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMimeData>
#include <QUrl>

#include "base/log/log.h"
#include "uikit/label/qf_label.h"
#include "uikit/tx_qt_ui_util.h"
#include "uikit/widget/rotate_image_widget.h"

namespace {
constexpr char kLoadingImage[] = ":/images/loading/Loading40_40";
constexpr int kLoadingSize = 40;
constexpr double kLoadingSpeed = 0.8;
}  // namespace

ImageBrowser::ImageBrowser(QWidget* parent) : ImageAsycnBrowser(parent) {}

void ImageBrowser::ShowPlaceholder(QString const& resource) {
  placeholder_ = resource;
  image_path_.clear();
  label_->setPixmap(TXQtUiUtil::GetHdpiImage(resource));
  label_->setFixedSize(kPlaceholderWidth, kPlaceholderHeight);
  setFixedSize(kPlaceholderWidth, kPlaceholderHeight);
  label_->setCursor(Qt::ArrowCursor);
  is_image_loaded_ = false;
}

void ImageBrowser::OnLoadingChanged(bool loading) {
  if (loading) {
    if (!loading_) {
      loading_ = new RotateImageWidget(this);
      loading_->setObjectName("loading");
      loading_->setFixedSize(kLoadingSize, kLoadingSize);
      loading_->SetImage(TXQtUiUtil::GetHdpiImage(kLoadingImage));
    }
    loading_->startWithInterval(kLoadingSpeed);
    TXQtUiUtil::CenterToWidget(loading_, this);
    loading_->show();
    loading_->raise();
  } else if (loading_) {
    loading_->stop();
    loading_->hide();
    loading_->deleteLater();
    loading_.clear();
  }
}

void ImageBrowser::resizeEvent(QResizeEvent* event) {
  ImageAsycnBrowser::resizeEvent(event);
  if (loading_) TXQtUiUtil::CenterToWidget(loading_, this);
}

void ImageBrowser::CopyImage() {
  if (image_path_.isEmpty() || image_path_ == placeholder_) return;
  auto* mime = new QMimeData();
  mime->setUrls({QUrl::fromLocalFile(image_path_)});
  QApplication::clipboard()->setMimeData(mime);
}

QString ImageBrowser::ProposedSaveName() {
  return QDir::homePath() + "/" + QCoreApplication::translate("ChatImageItem", "talvex image") + "_" +
         QDateTime::currentDateTime().toString("yyyyMMddhhmmsszzz") + ".png";
}

void ImageBrowser::OnSaveAs() {
  if (image_path_.isEmpty() || !is_image_loaded_) return;
  auto* dialog = new QFileDialog(window(), QCoreApplication::translate("ChatImageItem", "Save As"),
                                 ProposedSaveName(),
                                 QCoreApplication::translate("ChatImageItem", "Images (*.png *.jpg)"));
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  const QString source = image_path_;
  connect(dialog, &QFileDialog::fileSelected, this, [source](QString const& target) {
    if (target.isEmpty()) return;
    QFile::remove(target);
    if (!QFile::copy(source, target)) TXLOG_WARN << "image not saved: " << target.toStdString();
  });
  dialog->open();
}
