#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVector>

// Text measuring helpers shared by the kit's labels.
class TXLabelStringUtil {
 public:
  // Breaks one paragraph into pieces that fit between x and `max_width`: the
  // first piece starts at `start`, each later one at x = `indent`, one line
  // (`line_height`, or the metrics' height when that is 0 or less) plus
  // `line_spacing` lower. Pieces end at Unicode line-break opportunities; a
  // word wider than a whole line is cut at grapheme boundaries. A surrogate
  // pair, a grapheme cluster (combining marks, emoji sequences, flags) is
  // never split. A trailing "\r" (paragraph end) is not measured and stays on
  // the last piece when the paragraph is laid out whole.
  //
  // Widths are measured with `font`, which `metrics` must have been made
  // from; rect widths are rounded advances, trailing white space included.
  //
  // `max_pieces` above 0 caps the number of pieces, 0 asks for one piece,
  // below 0 means no cap. `more` tells whether text was left over.
  static void CalculateMultiLineStringRects(QPoint const& start, int indent, int line_spacing, int max_width,
                                            int line_height, QFont const& font, QFontMetrics const& metrics,
                                            QString const& text, QStringList& out_strings,
                                            QVector<QRect>& out_rects, bool& more, int max_pieces);

  // True when `text` may be cut before `pos` without tearing a character
  // apart (a surrogate pair, a combining mark, a joiner, a modifier, a flag).
  static bool IsSafeSplit(QString const& text, int pos);
};
