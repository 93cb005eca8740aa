#pragma once

#include <QFont>
#include <vector>

#include "chat/ui/desktop/view/rich_text/rich_text_line.h"
#include "chat/ui/desktop/view/rich_text/rich_text_select_pos.h"

class QPainter;
class RichTextSelection;

// Paints laid-out lines. It only walks what layout stored: no measuring.
class RichTextPainter {
 public:
  RichTextPainter(QPainter& painter, QFont const& font) : painter_(painter), font_(font) {}

  // `selection` is null when nothing is selected. Lines outside `exposed`
  // are skipped: a very long text repaints only what is shown.
  void Paint(std::vector<RichTextLine> const& lines, RichTextSelection const* selection, QRect const& exposed);

 private:
  void PaintSelection(int line_index, RichTextLine const& line, RichTextSelectPos const& first,
                      RichTextSelectPos const& last, QColor const& color);
  void PaintBlock(RichTextBlock const& block);

  QPainter& painter_;
  QFont font_;
};
