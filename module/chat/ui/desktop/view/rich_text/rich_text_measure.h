#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVector>

struct RichTextPropertyText;

// Every text measurement of the rich text label goes through here, so that a
// test can tell that painting measures nothing.
class RichTextMeasure {
 public:
  // The font a run is measured and drawn with: the label's font at the run's
  // pixel size and weight.
  static QFont FontFor(QFont const& base, RichTextPropertyText const& run);
  static int Advance(QFontMetrics const& metrics, QString const& text);
  static void SplitParagraph(QPoint const& start, int max_width, int line_height, QFont const& font,
                             QFontMetrics const& metrics, QString const& paragraph, QStringList& strings,
                             QVector<QRect>& rects, bool& more, int max_pieces);

  // Measurements made since the last reset.
  static long Count();
  static void ResetCount();
};
