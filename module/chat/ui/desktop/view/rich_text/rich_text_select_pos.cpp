#include "chat/ui/desktop/view/rich_text/rich_text_select_pos.h"

#include <tuple>

bool RichTextSelectPos::operator<(RichTextSelectPos const& other) const {
  return std::tie(line, block, index) < std::tie(other.line, other.block, other.index);
}

bool RichTextSelectPos::operator==(RichTextSelectPos const& other) const {
  return line == other.line && block == other.block && index == other.index;
}
