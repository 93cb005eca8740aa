#include "uikit/widget/qf_image_push_button.h"

#include <QPainter>

#include "uikit/tx_qt_ui_util.h"

QFImagePushButton::QFImagePushButton(QWidget* parent) : QPushButton(parent) {
  setFlat(true);
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::TabFocus);
}

void QFImagePushButton::SetImages(QString const& normal, QString const& flash) {
  normal_path_ = normal;
  normal_ = TXQtUiUtil::GetHdpiImage(normal);
  hover_ = TXQtUiUtil::GetHdpiImage(normal + "_hover");
  pressed_ = TXQtUiUtil::GetHdpiImage(normal + "_pressed");
  disabled_ = TXQtUiUtil::GetHdpiImage(normal + "_disable");
  flash_image_ = flash.isEmpty() ? QPixmap() : TXQtUiUtil::GetHdpiImage(flash);
  update();
}

void QFImagePushButton::SetImagePair(QString const& normal, QString const& hover) {
  normal_path_ = normal;
  normal_ = TXQtUiUtil::GetHdpiImage(normal);
  hover_ = TXQtUiUtil::GetHdpiImage(hover);
  pressed_ = QPixmap();
  disabled_ = QPixmap();
  update();
}

void QFImagePushButton::SetFlash(int value) {
  value = qBound(0, value, 100);
  if (value == flash_) return;
  flash_ = value;
  update();
}

QSize QFImagePushButton::sizeHint() const {
  if (normal_.isNull()) return QPushButton::sizeHint();
  return normal_.size() / normal_.devicePixelRatio();
}

QPixmap const& QFImagePushButton::Current() const {
  if (!isEnabled() && !disabled_.isNull()) return disabled_;
  if (isDown() && !pressed_.isNull()) return pressed_;
  if (hovered_ && !hover_.isNull()) return hover_;
  return normal_;
}

void QFImagePushButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  QPixmap const& picture = Current();
  if (picture.isNull()) {
    // No picture: the text, so that the button is never invisible.
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawText(rect(), Qt::AlignCenter, text());
    return;
  }
  painter.drawPixmap(rect(), picture);
  if (flash_ > 0 && !flash_image_.isNull()) {
    painter.setOpacity(flash_ / 100.0);
    painter.drawPixmap(rect(), flash_image_);
  }
}

void QFImagePushButton::enterEvent(QEvent* event) {
  hovered_ = true;
  update();
  QPushButton::enterEvent(event);
}

void QFImagePushButton::leaveEvent(QEvent* event) {
  hovered_ = false;
  update();
  QPushButton::leaveEvent(event);
}
