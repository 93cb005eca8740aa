#include "uikit/widget/rotate_image_widget.h"

#include <QPainter>
#include <QTimer>

namespace {
constexpr int kFrameMs = 33;
}

RotateImageWidget::RotateImageWidget(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TranslucentBackground);
  timer_ = new QTimer(this);
  timer_->setInterval(kFrameMs);
  connect(timer_, &QTimer::timeout, this, [this] {
    angle_ += 360.0 * speed_ * kFrameMs / 1000.0;
    if (angle_ >= 360.0) angle_ -= 360.0;
    update();
  });
}

void RotateImageWidget::SetImage(QPixmap const& image) {
  image_ = image;
  update();
}

void RotateImageWidget::startWithInterval(double speed) {
  speed_ = speed;
  angle_ = 0;
  if (speed_ > 0) {
    timer_->start();
  } else {
    timer_->stop();
  }
  update();
}

void RotateImageWidget::stop() {
  timer_->stop();
  angle_ = 0;
  update();
}

bool RotateImageWidget::IsRotating() const { return timer_->isActive(); }

void RotateImageWidget::paintEvent(QPaintEvent*) {
  if (image_.isNull()) return;
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  painter.translate(width() / 2.0, height() / 2.0);
  painter.rotate(angle_);
  const QRectF target(-width() / 2.0, -height() / 2.0, width(), height());
  painter.drawPixmap(target, image_, QRectF(image_.rect()));
}
