#include "uikit/label/qf_label.h"

#include <QMouseEvent>

QFLabel::QFLabel(QWidget* parent) : QLabel(parent) {}

void QFLabel::mousePressEvent(QMouseEvent* event) {
  if (press_callback_) press_callback_(event);
  QLabel::mousePressEvent(event);
}

void QFLabel::mouseDoubleClickEvent(QMouseEvent* event) {
  if (double_click_callback_) double_click_callback_(event);
  QLabel::mouseDoubleClickEvent(event);
}
