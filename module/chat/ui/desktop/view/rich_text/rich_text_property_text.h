#pragma once

#include <QString>

class RichTextBlock;

// What a text run of a rich text block carries.
struct RichTextPropertyText {
  bool bold = false;
  bool underline = false;
  bool clickable = false;
  int pixel_size = 12;
  // 0: the run wants a single piece; moved whole to the next line if it does
  // not fit the rest of the current one.
  int max_lines = 0;
  QString content;
  // A colour name or a hexadecimal colour.
  QString color = QStringLiteral("black");
  // Drawn for the reader's eye only (a "..." or a "Show all"): never part of
  // copied text.
  bool decoration = false;
  // Set while laying out: the piece closes a paragraph of its source.
  bool ends_paragraph = false;
  // The block of the label's source list that this run (or piece) came from.
  RichTextBlock const* source_block = nullptr;
};
