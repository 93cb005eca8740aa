#pragma once

// A place in the laid-out text of a RichTextLabel. Ordered by line, then
// block, then index; `x` takes no part in the order.
struct RichTextSelectPos {
  int line = -1;
  int block = -1;
  // Character offset in a text block; for an image 0 before it, 1 after it.
  int index = -1;
  // Pixel x in the label.
  int x = -1;

  RichTextSelectPos() = default;
  RichTextSelectPos(int line_index, int block_index, int char_index, int pixel_x)
      : line(line_index), block(block_index), index(char_index), x(pixel_x) {}

  bool IsValid() const { return line >= 0 && block >= 0 && index >= 0 && x >= 0; }
  void Reset() { *this = RichTextSelectPos(); }

  bool operator<(RichTextSelectPos const& other) const;
  bool operator==(RichTextSelectPos const& other) const;
  bool operator!=(RichTextSelectPos const& other) const { return !(*this == other); }
  bool operator>(RichTextSelectPos const& other) const { return other < *this; }
};
