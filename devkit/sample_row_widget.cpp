#include "devkit/sample_row_widget.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <climits>

namespace devkit {
namespace {
constexpr int kOuterX = 12;
constexpr int kOuterY = 4;
constexpr int kPad = 8;
constexpr int kTipHeight = 26;
constexpr int kMinWidth = 80;

QRect TextBox(int width) { return QRect(0, 0, std::max(kMinWidth, width) - 2 * (kOuterX + kPad), INT_MAX / 2); }
}  // namespace

SampleRowWidget::SampleRowWidget(QString reuse_id, QWidget* parent) : QFReuseWidget(std::move(reuse_id), parent) {}

int SampleRowWidget::MeasureHeight(SampleRow const& row, QFont const& font, int width) {
  if (row.kind == SampleRow::kTimeTip) return kTipHeight;
  QFontMetrics metrics(font);
  const QRect text = metrics.boundingRect(TextBox(width), Qt::TextWordWrap, row.text);
  return kOuterY + kPad + metrics.height() + 2 + text.height() + kPad + kOuterY;
}

void SampleRowWidget::Bind(int index, SampleRow const& row, Variant const& selection) {
  index_ = index;
  row_ = row;
  selection_ = selection;
  updateGeometry();
  update();
}

void SampleRowWidget::SetSelection(Variant const& selection) {
  selection_ = selection;
  update();
}

QSize SampleRowWidget::sizeHint() const { return QSize(width(), MeasureHeight(row_, font(), width())); }

void SampleRowWidget::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (IsSelected()) painter.fillRect(rect(), QColor(0, 120, 215, 28));
  if (row_.kind == SampleRow::kTimeTip) {
    painter.setPen(QColor(130, 130, 140));
    painter.drawText(rect(), Qt::AlignCenter, row_.text);
    return;
  }
  QFontMetrics metrics(font());
  const QRect box = TextBox(width());
  const QRect text = metrics.boundingRect(box, Qt::TextWordWrap, row_.text);
  const int bubble_width = std::max(text.width(), metrics.horizontalAdvance(row_.sender)) + 2 * kPad;
  const QRect bubble(kOuterX, kOuterY, bubble_width, height() - 2 * kOuterY);
  QPainterPath path;
  path.addRoundedRect(bubble, 8, 8);
  painter.fillPath(path, ShowsSelection() ? QColor(178, 212, 255) : QColor(236, 239, 244));
  painter.setPen(QColor(60, 90, 160));
  painter.drawText(QPoint(bubble.left() + kPad, bubble.top() + kPad + metrics.ascent()), row_.sender);
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(
      QRect(bubble.left() + kPad, bubble.top() + kPad + metrics.height() + 2, box.width(), text.height()),
      Qt::TextWordWrap, row_.text);
}

}  // namespace devkit
