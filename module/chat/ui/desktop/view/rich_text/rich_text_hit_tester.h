#pragma once

#include <QFont>
#include <QPoint>
#include <QRect>
#include <utility>
#include <vector>

#include "chat/ui/desktop/view/rich_text/rich_text_line.h"
#include "chat/ui/desktop/view/rich_text/rich_text_select_pos.h"

// Answers "which place of the text is nearest to this point" for the lines
// of a label, without changing them.
class RichTextHitTester {
 public:
  RichTextHitTester(std::vector<RichTextLine> const& lines, QRect const& widget_rect, QFont const& font);

  RichTextSelectPos SearchTheNearestPosOfMouse(QPoint const& pos) const;
  RichTextSelectPos FirstPlace() const { return RichTextSelectPos(0, 0, 0, 0); }
  RichTextSelectPos LastPlace() const;
  // The word under `pos` (or the run of spaces or punctuation there, or the
  // image) as its first and last place; invalid places when there is none.
  std::pair<RichTextSelectPos, RichTextSelectPos> WordAt(QPoint const& pos) const;
  // The place after the last block of `line`; the outputs stay as they are
  // for a line that does not exist or has no blocks.
  void GetLastBlockPositionOfLine(int line, int& out_block, int& out_index, int& out_x) const;

  int LineByY(int y) const;
  int BlockByX(RichTextLine const& line, int pointer_x, int& x) const;
  int OffsetInTextBlock(RichTextBlock const& block, int pointer_x, int& x) const;

 private:
  // The place before character `index` of text block `block` of `line`.
  RichTextSelectPos PlaceInText(int line, int block, int index) const;

 private:
  std::vector<RichTextLine> const& lines_;
  QRect widget_rect_;
  QFont font_;
};
