#pragma once

#include <QImage>
#include <QPixmap>
#include <QString>
#include <QWidget>

class QFLabel;

// Shows one image file, decoded and scaled off the main thread. Large images
// leave a thumbnail beside them ("local_thumb_" + name, at most 560 pixels
// long) so that the next display is cheap. A result that arrives for a path
// the browser no longer shows is dropped.
class ImageAsycnBrowser : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kMaxImageSide = 560;
  static constexpr int kDefaultBox = 200;

  explicit ImageAsycnBrowser(QWidget* parent = nullptr);
  ~ImageAsycnBrowser() override;

  // Starts decoding `path` on the file looper; the image shows when done.
  void SetImagePath(QString const& path);
  QString const& image_path() const { return image_path_; }
  bool is_image_loaded() const { return is_image_loaded_; }
  void SetCanOpen(bool can_open) { can_open_ = can_open; }
  // A loaded image is sized again for the new width.
  void SetMaxWidth(int max_width);
  int max_width() const { return max_width_; }
  QFLabel* label() const { return label_; }

  // Sizes the label for an image of `width` by `height` (see the box rule).
  void SetImageDisplaySize(int width, int height);
  // The display size of an image in a box of `max_width` (200 by 200 when 0).
  static QSize DisplaySizeFor(int width, int height, int max_width);
  // Decodes `path` (or its thumbnail), scaled to fit 560 by 560; writes the
  // thumbnail when it had to scale and none existed. Runs on any thread.
  static QImage LoadImage(QString const& path, bool* ok);
  static QString ThumbnailPathOf(QString const& path);
  // Decoded pictures stay in the application's pixmap cache under this key.
  static QString CacheKeyOf(QString const& path);

 signals:
  void ImageLoaded(QString path);
  void ImageClicked();
  void ChatItemSizeChanged();

 protected:
  // Main looper: shows the decoded image unless the browser moved on.
  void AddImageToBrowser(QString const& path, QPixmap const& pixmap, bool notify);
  virtual void OnLoadingChanged(bool loading) { Q_UNUSED(loading); }

  QFLabel* label_ = nullptr;
  QString image_path_;
  bool is_image_loaded_ = false;
  bool can_open_ = true;
  int max_width_ = 0;
  int pixmap_width_ = 0;
  int pixmap_height_ = 0;
};
