#pragma once

#include <QString>
#include <vector>

#include "chat/ui/desktop/view/rich_text/rich_text_line.h"
#include "chat/ui/desktop/view/rich_text/rich_text_select_pos.h"

// Turns the laid-out text between two places into plain text: paragraph ends
// become line breaks, soft wraps join, images become their alt text.
class RichTextPlainTextWriter {
 public:
  // `from` must not be after `to`.
  static QString Write(std::vector<RichTextLine> const& lines, RichTextSelectPos const& from,
                       RichTextSelectPos const& to);
};
