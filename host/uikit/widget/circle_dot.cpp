#include "uikit/widget/circle_dot.h"

#include <QPainter>

CircleDot::CircleDot(QWidget* parent, QColor color) : QWidget(parent), color_(std::move(color)) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void CircleDot::SetColor(QColor color) {
  color_ = std::move(color);
  update();
}

void CircleDot::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color_);
  painter.drawEllipse(rect());
}
