#pragma once

#include <vector>

#include "chat/ui/desktop/view/rich_text/rich_text_block.h"

// Brings a label's source list into the form the layout relies on: every
// paragraph of a text run ends in "\r\n", runs point back to their source
// block, and bad colours and sizes are repaired with a log line.
class RichTextSourceNormalizer {
 public:
  static void Normalize(std::vector<RichTextBlock>& blocks);

 private:
  static void NormalizeText(RichTextBlock& block);
  static void NormalizeImage(RichTextBlock& block);
};
