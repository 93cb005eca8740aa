#pragma once

#include <QMargins>
#include <QMetaType>
#include <QPixmap>
#include <QSize>
#include <cstdint>
#include <memory>

#include "chat/ui/desktop/view/rich_text/rich_text_property_pixmap.h"
#include "chat/ui/desktop/view/rich_text/rich_text_property_text.h"

// One unit of rich text: a line break, a text run or an image. The source of
// a RichTextLabel is a flat list of them, and so is each laid-out line.
//
// Copying a block copies its property object, so that two pieces never share
// their text. A block of type 0 takes any type on assignment; any other block
// only takes a block of its own type.
class RichTextBlock {
 public:
  enum Type : int16_t { kEmpty = 0, kLineBreak = 1, kText = 2, kImage = 3 };
  // Vertical placement inside the line.
  enum Alignment : int16_t { kAlignByMargins = 0, kAlignNone = 1, kAlignBottom = 2, kAlignCenter = 3 };

  RichTextBlock() = default;
  explicit RichTextBlock(int16_t block_type);
  RichTextBlock(int16_t block_type, int16_t block_alignment, QSize const& block_size);
  // An image block; its size is the pixmap's unless `block_size` is not empty.
  RichTextBlock(QPixmap const& image, QMargins const& block_margins, QSize const& block_size);

  RichTextBlock(RichTextBlock const& other);
  RichTextBlock(RichTextBlock&& other) noexcept = default;
  RichTextBlock& operator=(RichTextBlock const& other);
  RichTextBlock& operator=(RichTextBlock&& other) noexcept;
  ~RichTextBlock() = default;

  // A text block with its run filled in.
  static RichTextBlock Text(QString const& content, int pixel_size = 14, QString const& color = "black");

  int16_t type = kEmpty;
  int16_t alignment = kAlignByMargins;
  QMargins margins;
  // Zero, not Qt's invalid size: a text block takes its size from layout.
  QSize size{0, 0};
  std::shared_ptr<RichTextPropertyText> text;
  std::shared_ptr<RichTextPropertyPixmap> pixmap;

 private:
  bool AcceptsTypeOf(RichTextBlock const& other) const;
  void CopyFrom(RichTextBlock const& other);
};

Q_DECLARE_METATYPE(RichTextBlock)
