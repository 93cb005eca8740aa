#pragma once

#include <QRect>
#include <vector>

#include "chat/ui/desktop/view/rich_text/rich_text_block.h"

// One laid-out line of a RichTextLabel, in label coordinates.
struct RichTextLine {
  std::vector<RichTextBlock> blocks;
  QRect rect;
  // Ended by a line break block of the source, which itself takes no place
  // in the line; copy writes it back as a line break.
  bool ends_with_break = false;
};
