#pragma once

#include <QPointer>

#include "chat/ui/desktop/view/chat/image_asycn_browser.h"

#include "uikit/widget/rotate_image_widget.h"

// The image of a chat bubble: a placeholder until the file is there, a
// spinner while it decodes, then the image; save-as and copy.
class ImageBrowser : public ImageAsycnBrowser {
  Q_OBJECT

 public:
  static constexpr int kPlaceholderWidth = 200;
  static constexpr int kPlaceholderHeight = 120;

  explicit ImageBrowser(QWidget* parent = nullptr);

  void ShowPlaceholder(QString const& resource);
  QString const& placeholder() const { return placeholder_; }
  // Puts the image file on the clipboard as a local-file URL.
  void CopyImage();
  // Asks where to save a copy of the image.
  void OnSaveAs();
  static QString ProposedSaveName();
  RotateImageWidget* loading_widget() const { return loading_.data(); }

 protected:
  void OnLoadingChanged(bool loading) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QString placeholder_;
  QPointer<RotateImageWidget> loading_;
};
