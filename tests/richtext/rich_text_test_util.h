#pragma once

#include <QApplication>
#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QMouseEvent>
#include <QPixmap>
#include <memory>
#include <vector>

#include "chat/ui/desktop/view/rich_text/rich_text_label.h"

namespace richtext_test {

// A font with one advance for every Latin character, so that places can be
// computed from character counts.
inline QFont MonoFont() { return QFont(QStringLiteral("DejaVu Sans Mono")); }

inline int Advance(QString const& text, int pixel_size = 14) {
  QFont font = MonoFont();
  font.setPixelSize(pixel_size);
  return QFontMetrics(font).horizontalAdvance(text);
}

// A text run that wraps freely (a run's own limit of -1 is none).
inline RichTextBlock Text(QString const& content, int pixel_size = 14, int max_lines = -1) {
  RichTextBlock block = RichTextBlock::Text(content, pixel_size);
  block.text->max_lines = max_lines;
  return block;
}

inline RichTextBlock Image(QSize const& size, QColor const& color, QString const& alt = QString()) {
  QPixmap pixmap(size);
  pixmap.fill(color);
  RichTextBlock block(pixmap, QMargins(), QSize());
  block.pixmap->alt_text = alt;
  return block;
}

inline RichTextBlock Break(int height = 0) {
  return RichTextBlock(RichTextBlock::kLineBreak, RichTextBlock::kAlignByMargins, QSize(0, height));
}

inline std::unique_ptr<RichTextLabel> MakeLabel(std::vector<RichTextBlock> const& blocks, int width,
                                                int max_lines = -1) {
  auto label = std::make_unique<RichTextLabel>();
  label->setFont(MonoFont());
  label->SetRichText(blocks, width, max_lines);
  return label;
}

// The text a line shows, images as "#".
inline QString LineText(RichTextLine const& line) {
  QString out;
  for (auto const& block : line.blocks) {
    if (block.type == RichTextBlock::kText) out += block.text->content;
    if (block.type == RichTextBlock::kImage) out += QLatin1Char('#');
  }
  return out;
}

inline void SendMouse(QWidget* widget, QEvent::Type type, QPoint const& pos, Qt::MouseButton button,
                      Qt::MouseButtons buttons) {
  QMouseEvent event(type, pos, widget->mapToGlobal(pos), button, buttons, Qt::NoModifier);
  QApplication::sendEvent(widget, &event);
}

// A left-button drag from `from` to `to`, as the window system delivers it.
inline void Drag(QWidget* widget, QPoint const& from, QPoint const& to) {
  SendMouse(widget, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
  SendMouse(widget, QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::LeftButton);
  SendMouse(widget, QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
  SendMouse(widget, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
}

inline void RightClick(QWidget* widget, QPoint const& pos) {
  SendMouse(widget, QEvent::MouseButtonPress, pos, Qt::RightButton, Qt::RightButton);
  SendMouse(widget, QEvent::MouseButtonRelease, pos, Qt::RightButton, Qt::NoButton);
}

inline QImage Grab(QWidget* widget) { return widget->grab().toImage().convertToFormat(QImage::Format_RGB32); }

}  // namespace richtext_test
