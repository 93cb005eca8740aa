#pragma once

#include <QPixmap>
#include <QPushButton>
#include <QString>

// A button drawn from pictures instead of a style: the normal picture, and
// "<path>_hover", "<path>_pressed" and "<path>_disable" beside it when they
// exist (each at the screen's pixel ratio). A second picture can be blended
// over the first through the animatable property "flash" (0 to 100), for a
// button that wants to be noticed.
class QFImagePushButton : public QPushButton {
  Q_OBJECT
  Q_PROPERTY(int flash READ flash WRITE SetFlash)

 public:
  explicit QFImagePushButton(QWidget* parent = nullptr);

  void SetImages(QString const& normal, QString const& flash = QString());
  // Two pictures: the normal one and the one under the pointer.
  void SetImagePair(QString const& normal, QString const& hover);
  QString const& image_path() const { return normal_path_; }

  int flash() const { return flash_; }
  void SetFlash(int value);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  QPixmap const& Current() const;

  QString normal_path_;
  QPixmap normal_;
  QPixmap hover_;
  QPixmap pressed_;
  QPixmap disabled_;
  QPixmap flash_image_;
  int flash_ = 0;
  bool hovered_ = false;
};
