#include "chat/ui/desktop/view/rich_text/rich_text_block.h"

#include "base/log/log.h"

RichTextBlock::RichTextBlock(int16_t block_type) : type(block_type) {
  if (type == kText) text = std::make_shared<RichTextPropertyText>();
  if (type == kImage) pixmap = std::make_shared<RichTextPropertyPixmap>();
}

RichTextBlock::RichTextBlock(int16_t block_type, int16_t block_alignment, QSize const& block_size)
    : RichTextBlock(block_type) {
  alignment = block_alignment;
  size = block_size;
}

RichTextBlock::RichTextBlock(QPixmap const& image, QMargins const& block_margins, QSize const& block_size)
    : RichTextBlock(kImage) {
  margins = block_margins;
  pixmap->pixmap = image;
  size = block_size.isEmpty() ? image.size() : block_size;
}

RichTextBlock::RichTextBlock(RichTextBlock const& other) { CopyFrom(other); }

RichTextBlock& RichTextBlock::operator=(RichTextBlock const& other) {
  if (this == &other || !AcceptsTypeOf(other)) return *this;
  CopyFrom(other);
  return *this;
}

RichTextBlock& RichTextBlock::operator=(RichTextBlock&& other) noexcept {
  if (this == &other || !AcceptsTypeOf(other)) return *this;
  type = other.type;
  alignment = other.alignment;
  margins = other.margins;
  size = other.size;
  text = std::move(other.text);
  pixmap = std::move(other.pixmap);
  return *this;
}

RichTextBlock RichTextBlock::Text(QString const& content, int pixel_size, QString const& color) {
  RichTextBlock block(kText);
  block.text->content = content;
  block.text->pixel_size = pixel_size;
  block.text->color = color;
  return block;
}

bool RichTextBlock::AcceptsTypeOf(RichTextBlock const& other) const {
  if (type == kEmpty || type == other.type) return true;
  TXLOG_ERROR << "rich text type is not match, myself:" << type << ", other:" << other.type;
  return false;
}

void RichTextBlock::CopyFrom(RichTextBlock const& other) {
  type = other.type;
  alignment = other.alignment;
  margins = other.margins;
  size = other.size;
  text = other.text ? std::make_shared<RichTextPropertyText>(*other.text) : nullptr;
  pixmap = other.pixmap ? std::make_shared<RichTextPropertyPixmap>(*other.pixmap) : nullptr;
}
