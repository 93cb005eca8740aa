#include "uikit/widget/qf_shadow_widget.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

QFShadowWidget::QFShadowWidget(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TranslucentBackground);
  setCursor(Qt::PointingHandCursor);
}

void QFShadowWidget::SetNineSliceImage(QPixmap const& image, int border) {
  image_ = image;
  border_ = border;
  update();
}

void QFShadowWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (image_.isNull()) {
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
    return;
  }
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const qreal dpr = image_.devicePixelRatio();
  const int b = border_;
  const int sb = qRound(b * dpr);
  const int sw = image_.width();
  const int sh = image_.height();
  const int w = width();
  const int h = height();
  // Source and target rectangles of the nine slices, row by row.
  const int sx[4] = {0, sb, sw - sb, sw};
  const int sy[4] = {0, sb, sh - sb, sh};
  const int tx[4] = {0, b, w - b, w};
  const int ty[4] = {0, b, h - b, h};
  for (int row = 0; row < 3; ++row) {
    for (int col = 0; col < 3; ++col) {
      const QRect source(sx[col], sy[row], sx[col + 1] - sx[col], sy[row + 1] - sy[row]);
      const QRect target(tx[col], ty[row], tx[col + 1] - tx[col], ty[row + 1] - ty[row]);
      if (source.isEmpty() || target.isEmpty()) continue;
      painter.drawPixmap(target, image_, source);
    }
  }
}

void QFShadowWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit Pressed();
  QWidget::mousePressEvent(event);
}
