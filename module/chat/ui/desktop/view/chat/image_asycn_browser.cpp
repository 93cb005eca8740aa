#include "chat/ui/desktop/view/chat/image_asycn_browser.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QMouseEvent>
#include <QPixmapCache>
#include <QPointer>
#include <QUrl>
#include <QVBoxLayout>

#include "base/log/log.h"
#include "base/threading/looper.h"
#include "uikit/label/qf_label.h"
#include "uikit/tx_qt_ui_util.h"

namespace {
constexpr char kFailedImage[] = ":/images/chat/im_icon_imagefail_normal";
constexpr int kThumbQuality = 50;
}  // namespace

ImageAsycnBrowser::ImageAsycnBrowser(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  label_ = new QFLabel(this);
  label_->setObjectName("Content");
  label_->setAccessibleName("content");
  label_->setScaledContents(true);
  label_->setWordWrap(true);
  label_->setAlignment(Qt::AlignCenter);
  label_->setContextMenuPolicy(Qt::CustomContextMenu);
  label_->SetPressCallback([this](QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) emit ImageClicked();
  });
  label_->SetDoubleClickCallback([this](QMouseEvent*) {
    if (!can_open_ || image_path_.isEmpty() || !is_image_loaded_) return;
    TXLOG_INFO << "OpenImageFile";
    QDesktopServices::openUrl(QUrl::fromLocalFile(image_path_));
  });
  layout->addWidget(label_);
}

ImageAsycnBrowser::~ImageAsycnBrowser() = default;

QString ImageAsycnBrowser::CacheKeyOf(QString const& path) { return QStringLiteral("chat_image:") + path; }

QString ImageAsycnBrowser::ThumbnailPathOf(QString const& path) {
  const QFileInfo info(path);
  return info.dir().filePath("local_thumb_" + info.fileName());
}

QImage ImageAsycnBrowser::LoadImage(QString const& path, bool* ok) {
  *ok = false;
  if (path.isEmpty() || !QFileInfo::exists(path)) return QImage(kFailedImage);
  const QString thumb = ThumbnailPathOf(path);
  const bool has_thumb = QFileInfo::exists(thumb);
  QImageReader reader(has_thumb ? thumb : path);
  reader.setAutoTransform(true);
  QSize size = reader.size();
  bool scaled = false;
  if (size.isValid()) {
    if (size.width() > kMaxImageSide) {
      size = QSize(kMaxImageSide, qMax(1, size.height() * kMaxImageSide / size.width()));
      scaled = true;
    }
    if (size.height() > kMaxImageSide) {
      size = QSize(qMax(1, size.width() * kMaxImageSide / size.height()), kMaxImageSide);
      scaled = true;
    }
    if (scaled) reader.setScaledSize(size);
  }
  // A picture whose size can't be read, or too large to decode, shows as broken.
  QImage image = TXQtUiUtil::ReadImageCapped(reader);
  if (image.isNull()) return QImage(kFailedImage);
  if (scaled && !has_thumb) {
    QImageWriter writer(thumb, "png");
    writer.setQuality(kThumbQuality);
    if (!writer.write(image)) TXLOG_WARN << "thumbnail not written: " << thumb.toStdString();
  }
  *ok = true;
  return image;
}

void ImageAsycnBrowser::SetImagePath(QString const& path) {
  image_path_ = path;
  is_image_loaded_ = false;
  // A picture shown a moment ago, in this row or another, shows again at
  // once: no placeholder, no change of height, no decoding.
  QPixmap decoded;
  if (QPixmapCache::find(CacheKeyOf(path), &decoded)) {
    AddImageToBrowser(path, decoded, true);
    return;
  }
  OnLoadingChanged(true);
  QPointer<ImageAsycnBrowser> self(this);
  auto main = base::threading::LooperThread::MainLooper();
  base::threading::LooperThread::FileLooper()->PostTask([self, path, main] {
    bool ok = false;
    QImage image = LoadImage(path, &ok);
    main->PostTask([self, path, image, ok] {
      if (!self) return;
      self->AddImageToBrowser(path, QPixmap::fromImage(image), ok);
    });
  });
}

void ImageAsycnBrowser::AddImageToBrowser(QString const& path, QPixmap const& pixmap, bool notify) {
  if (path != image_path_) {
    TXLOG_INFO << "image changed";
    return;
  }
  OnLoadingChanged(false);
  pixmap_width_ = pixmap.width();
  pixmap_height_ = pixmap.height();
  SetImageDisplaySize(pixmap_width_, pixmap_height_);
  label_->setPixmap(pixmap);
  label_->setCursor(Qt::PointingHandCursor);
  if (notify) QPixmapCache::insert(CacheKeyOf(path), pixmap);
  is_image_loaded_ = notify;
  if (notify) emit ImageLoaded(path);
}

void ImageAsycnBrowser::SetMaxWidth(int max_width) {
  if (max_width == max_width_) return;
  max_width_ = max_width;
  if (is_image_loaded_) SetImageDisplaySize(pixmap_width_, pixmap_height_);
}

QSize ImageAsycnBrowser::DisplaySizeFor(int width, int height, int max_width) {
  int box_width = kDefaultBox;
  int box_height = kDefaultBox;
  if (max_width > 0) {
    box_width = qMin(max_width, kMaxImageSide);
    box_height = box_width * 9 / 16;
  }
  int w = width;
  int h = height;
  if (w > box_width) {
    h = qMax(1, static_cast<int>(static_cast<qint64>(h) * box_width / w));
    w = box_width;
  }
  if (h > box_height) {
    const double ratio = static_cast<double>(height) / box_height;
    w = qMax(1, static_cast<int>(width / ratio));
    h = box_height;
  }
  return QSize(qMax(w, 1), qMax(h, 1));
}

void ImageAsycnBrowser::SetImageDisplaySize(int width, int height) {
  const QSize size = DisplaySizeFor(width, height, max_width_);
  const int old_height = label_->height();
  label_->setFixedSize(size);
  setFixedSize(size);
  if (old_height != size.height()) {
    if (layout()) layout()->invalidate();
    emit ChatItemSizeChanged();
  }
}
