#include "chat/ui/desktop/view/rich_text/rich_text_painter.h"

#include <QPainter>
#include <utility>

#include "chat/ui/desktop/view/rich_text/rich_text_measure.h"
#include "chat/ui/desktop/view/rich_text/rich_text_selection.h"

void RichTextPainter::Paint(std::vector<RichTextLine> const& lines, RichTextSelection const* selection,
                            QRect const& exposed) {
  painter_.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
  RichTextSelectPos first;
  RichTextSelectPos last;
  QColor selection_color;
  if (selection) {
    first = selection->start();
    last = selection->end();
    if (last < first) std::swap(first, last);
    selection_color = QColor(selection->select_bg_color());
  }
  for (int l = 0; l < static_cast<int>(lines.size()); ++l) {
    RichTextLine const& line = lines[l];
    // Images may be wider than their narrowed line: only rows are compared.
    if (line.rect.bottom() < exposed.top()) continue;
    if (line.rect.top() > exposed.bottom()) break;
    painter_.save();
    painter_.translate(line.rect.topLeft());
    if (selection && l >= first.line && l <= last.line) PaintSelection(l, line, first, last, selection_color);
    for (auto const& block : line.blocks) {
      painter_.translate(block.margins.left(), 0);
      PaintBlock(block);
      painter_.translate(block.size.width() + block.margins.right(), 0);
    }
    painter_.restore();
  }
}

void RichTextPainter::PaintSelection(int line_index, RichTextLine const& line, RichTextSelectPos const& first,
                                     RichTextSelectPos const& last, QColor const& color) {
  painter_.save();
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(color);
  painter_.setRenderHint(QPainter::Antialiasing, false);
  if (line.rect.isEmpty()) {
    // An empty paragraph still shows that it is part of the selection.
    painter_.drawRect(QRect(0, 0, 10, line.rect.height()));
  } else {
    int from = line_index == first.line ? first.x - line.rect.left() : 0;
    int to = line_index == last.line ? last.x - line.rect.left() : line.rect.right();
    // Within a right-to-left run the logically earlier place is on the right.
    if (first.line == last.line && to < from) std::swap(from, to);
    if (to >= from) painter_.drawRect(QRect(from, 0, to - from + 1, line.rect.height()));
  }
  painter_.restore();
}

void RichTextPainter::PaintBlock(RichTextBlock const& block) {
  // Drawn at the left margin once more: the margin counts twice on screen
  // and once in layout.
  const QRect target(QPoint(block.margins.left(), block.margins.top()), block.size);
  if (block.type == RichTextBlock::kText && block.text) {
    painter_.setFont(RichTextMeasure::FontFor(font_, *block.text));
    QFont font = painter_.font();
    font.setUnderline(block.text->underline);
    painter_.setFont(font);
    painter_.setPen(QColor(block.text->color));
    // Glyphs that overhang their advance are not cut at the piece's edge.
    painter_.drawText(target, Qt::AlignVCenter | Qt::TextDontClip, block.text->content);
  } else if (block.type == RichTextBlock::kImage && block.pixmap) {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(Qt::NoBrush);
    painter_.drawPixmap(target, block.pixmap->pixmap);
  }
}
