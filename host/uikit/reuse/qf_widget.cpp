#include "uikit/reuse/qf_widget.h"

#include <QPainter>
#include <QStyleOption>

QFWidget::QFWidget(QWidget* parent) : QWidget(parent) {}

void QFWidget::SetPosition(int x, int y) {
  if (pos() != QPoint(x, y)) move(x, y);
}

void QFWidget::paintEvent(QPaintEvent* event) {
  // A plain QWidget subclass ignores "background" in a style sheet without this.
  QStyleOption option;
  option.initFrom(this);
  QPainter painter(this);
  style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
  QWidget::paintEvent(event);
}
