#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QRegion>
#include <map>
#include <utility>
#include <vector>

#include "chat/ui/desktop/view/rich_text/rich_text_block.h"
#include "chat/ui/desktop/view/rich_text/rich_text_line.h"

// What a layout pass produces for a RichTextLabel.
struct RichTextLayoutResult {
  std::vector<RichTextLine> lines;
  // The widest line, never more than the render width.
  int rendered_width = 0;
  bool reach_max_lines = false;
  QRegion click_region;
  // Clickable pieces with the source block they came from, in layout order.
  std::vector<std::pair<RichTextBlock const*, QRect>> click_blocks;
};

// Lays a normalised source list out into lines for one render width and line
// limit. All measuring of the label happens in here.
class RichTextLayoutEngine {
 public:
  RichTextLayoutEngine(QFont const& font, int max_render_width, int max_lines);

  RichTextLayoutResult CalculateItemSize(std::vector<RichTextBlock> const& source);

 private:
  bool CheckCurrentLinesIsLimit(RichTextLine const& line);
  void SaveAndBuildNextLine(RichTextLine& line);
  void CalculateForLineBreak(RichTextLine& line, RichTextBlock const& block);
  void CalculateForImageType(RichTextLine& line, RichTextBlock const& block);
  void CalculateForTextType(RichTextLine& line, RichTextBlock& block);

  static void RaiseHeight(RichTextLine& line, int height);
  static void Append(RichTextLine& line, RichTextBlock block);
  static void DistributeHeight(RichTextBlock& block, int line_height);
  static RichTextBlock MakeEllipsis(RichTextPropertyPixmap const& image);
  QFontMetrics const& MetricsFor(QFont const& font, RichTextPropertyText const& run);

  QFont font_;
  int max_render_width_;
  int max_lines_;
  RichTextLayoutResult result_;
  std::map<std::pair<int, bool>, QFontMetrics> metrics_;
};
