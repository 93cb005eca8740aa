#include "chat/ui/desktop/view/rich_text/rich_text_plain_text_writer.h"

QString RichTextPlainTextWriter::Write(std::vector<RichTextLine> const& lines, RichTextSelectPos const& from,
                                       RichTextSelectPos const& to) {
  QString out;
  const int last_line = qMin(to.line, static_cast<int>(lines.size()) - 1);
  for (int l = from.line; l <= last_line; ++l) {
    auto const& blocks = lines[l].blocks;
    const int first_block = l == from.line ? from.block : 0;
    const int last_block = l == to.line ? qMin(to.block, static_cast<int>(blocks.size()) - 1)
                                        : static_cast<int>(blocks.size()) - 1;
    for (int b = first_block; b <= last_block; ++b) {
      RichTextBlock const& block = blocks[b];
      const bool first = l == from.line && b == from.block;
      const bool last = l == to.line && b == to.block;
      if (block.type == RichTextBlock::kLineBreak) {
        out += QLatin1Char('\n');
      } else if (block.type == RichTextBlock::kImage) {
        // A selection that starts behind an image leaves it out; at the end
        // the image goes in whichever side the pointer stood.
        if (first && from.index >= 1) continue;
        const QString alt = block.pixmap ? block.pixmap->alt_text : QString();
        out += alt.isEmpty() ? QStringLiteral("[img]") : alt;
      } else if (block.type == RichTextBlock::kText && block.text && !block.text->decoration) {
        QString const& content = block.text->content;
        const int begin = first ? from.index : 0;
        const int end = last ? to.index : content.size();
        out += content.mid(begin, qMax(end - begin, 0));
        if (block.text->ends_paragraph && end == content.size()) out += QLatin1Char('\n');
      }
    }
    if (lines[l].ends_with_break && l < to.line) out += QLatin1Char('\n');
  }
  return out;
}
