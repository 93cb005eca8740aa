#include "chat/ui/desktop/view/rich_text/rich_text_source_normalizer.h"

#include "base/log/log.h"

void RichTextSourceNormalizer::Normalize(std::vector<RichTextBlock>& blocks) {
  for (auto& block : blocks) {
    if (block.size.width() < 0 || block.size.height() < 0) {
      TXLOG_NOTICE << "invalid block size, type:" << block.type << ", width:" << block.size.width()
                                   << ", height:" << block.size.height();
      block.size = QSize(qMax(block.size.width(), 0), qMax(block.size.height(), 0));
    }
    if (block.type == RichTextBlock::kText) NormalizeText(block);
    if (block.type == RichTextBlock::kImage) NormalizeImage(block);
  }
}

void RichTextSourceNormalizer::NormalizeText(RichTextBlock& block) {
  if (!block.text) {
    TXLOG_NOTICE << "text block without text property, laid out as empty text";
    block.text = std::make_shared<RichTextPropertyText>();
  }
  RichTextPropertyText& run = *block.text;
  // The "\r" left before each "\n" tells a paragraph end from a soft wrap.
  if (!run.content.contains(QStringLiteral("\r\n"))) {
    if (run.content.contains(QLatin1Char('\r'))) {
      run.content.replace(QLatin1Char('\r'), QStringLiteral("\r\n"));
    } else {
      run.content.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    }
  }
  run.ends_paragraph = false;
  run.source_block = &block;
  if (run.color.isEmpty()) {
    TXLOG_NOTICE << "invalid color for txt of:" << run.content.toStdString();
    run.color = QStringLiteral("black");
  }
  if (run.pixel_size < 1) {
    TXLOG_NOTICE << "invalid pixel size for txt of:" << run.content.toStdString();
    run.pixel_size = 12;
  }
}

void RichTextSourceNormalizer::NormalizeImage(RichTextBlock& block) {
  if (!block.pixmap) {
    TXLOG_NOTICE << "image block without pixmap property, laid out as an empty image";
    block.pixmap = std::make_shared<RichTextPropertyPixmap>();
  }
  RichTextPropertyPixmap& image = *block.pixmap;
  if (image.ellipsis_color.isEmpty()) image.ellipsis_color = QStringLiteral("black");
  if (image.ellipsis_pixel_size < 1) {
    TXLOG_NOTICE << "invalid ellipsis pixel size for img, size:" << image.ellipsis_pixel_size;
    image.ellipsis_pixel_size = 12;
  }
}
