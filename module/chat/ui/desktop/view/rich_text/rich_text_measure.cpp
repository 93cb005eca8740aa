#include "chat/ui/desktop/view/rich_text/rich_text_measure.h"

#include "chat/ui/desktop/view/rich_text/rich_text_property_text.h"
#include "uikit/label/tx_label_string_util.h"

namespace {
long measure_count = 0;
}

QFont RichTextMeasure::FontFor(QFont const& base, RichTextPropertyText const& run) {
  QFont font(base);
  if (run.pixel_size > 0) font.setPixelSize(run.pixel_size);
  font.setBold(run.bold);
  return font;
}

int RichTextMeasure::Advance(QFontMetrics const& metrics, QString const& text) {
  ++measure_count;
  return metrics.horizontalAdvance(text);
}

void RichTextMeasure::SplitParagraph(QPoint const& start, int max_width, int line_height, QFont const& font,
                                     QFontMetrics const& metrics, QString const& paragraph, QStringList& strings,
                                     QVector<QRect>& rects, bool& more, int max_pieces) {
  ++measure_count;
  TXLabelStringUtil::CalculateMultiLineStringRects(start, 0, 0, max_width, line_height, font, metrics, paragraph,
                                                   strings, rects, more, max_pieces);
}

long RichTextMeasure::Count() { return measure_count; }

void RichTextMeasure::ResetCount() { measure_count = 0; }
