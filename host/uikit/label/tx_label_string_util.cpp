#include "uikit/label/tx_label_string_util.h"

#include <QHash>
#include <QTextBoundaryFinder>
#include <climits>
#include <memory>

namespace {

uint CodePointAt(QString const& text, int pos) {
  const QChar c = text.at(pos);
  if (c.isHighSurrogate() && pos + 1 < text.size() && text.at(pos + 1).isLowSurrogate()) {
    return QChar::surrogateToUcs4(c, text.at(pos + 1));
  }
  return c.unicode();
}

uint CodePointBefore(QString const& text, int pos) {
  const QChar c = text.at(pos - 1);
  if (c.isLowSurrogate() && pos >= 2 && text.at(pos - 2).isHighSurrogate()) {
    return QChar::surrogateToUcs4(text.at(pos - 2), c);
  }
  return c.unicode();
}

bool IsRegionalIndicator(uint cp) { return cp >= 0x1F1E6 && cp <= 0x1F1FF; }

// Characters that belong to the character before them.
bool ExtendsPrevious(uint cp) {
  return QChar::isMark(cp) || cp == 0x200D || (cp >= 0xFE00 && cp <= 0xFE0F) || (cp >= 0x1F3FB && cp <= 0x1F3FF) ||
         (cp >= 0xE0020 && cp <= 0xE007F) || (cp >= 0xE0100 && cp <= 0xE01EF);
}

// Characters whose advance does not depend on their neighbours (apart from
// kerning): Latin, Greek, Cyrillic, CJK, kana, Hangul syllables, full-width
// forms. Everything else, marks and joiners included, is shaped in context.
bool NeedsNoShaping(QChar c) {
  const ushort u = c.unicode();
  if (u < 0x20 || (u >= 0x7F && u < 0xA0) || u == 0xAD) return false;
  if (u < 0x0300) return true;
  if (u >= 0x0370 && u < 0x0483) return true;
  if (u >= 0x3000 && u < 0xA000) return !(u >= 0x302A && u <= 0x302F) && u != 0x3099 && u != 0x309A;
  if (u >= 0xAC00 && u < 0xD7A4) return true;
  return u >= 0xFF01 && u < 0xFF61;
}

// Widths of runs of one paragraph, fractional so that sums do not drift.
// Shaping a string is what layout spends its time on. Chat text is mostly
// made of characters that need none: their advances come from a table kept
// per font. Other runs (words of complex scripts, emoji sequences) are
// shaped once and remembered, since chat repeats its words.
class TextMeasurer {
 public:
  TextMeasurer(QFont const& font, QString const& text) : metrics_(font), text_(text), known_(KnownFor(font)) {}

  qreal Width(int from, int to) {
    qreal sum = 0;
    for (int i = from; i < to; ++i) {
      const QChar c = text_.at(i);
      if (!NeedsNoShaping(c)) return Shaped(from, to);
      sum += AdvanceOf(c);
    }
    return sum;
  }

  bool IsPlain() const {
    for (QChar const c : text_) {
      if (!NeedsNoShaping(c)) return false;
    }
    return true;
  }

 private:
  static constexpr int kLongestKnownRun = 48;
  static constexpr int kMostKnownRuns = 8192;

  struct Known {
    QHash<ushort, qreal> characters;
    QHash<QString, qreal> runs;
  };

  qreal Shaped(int from, int to) {
    const QString run = text_.mid(from, to - from);
    if (run.size() > kLongestKnownRun) return metrics_.horizontalAdvance(run);
    const auto it = known_->runs.constFind(run);
    if (it != known_->runs.constEnd()) return *it;
    const qreal width = metrics_.horizontalAdvance(run);
    if (known_->runs.size() >= kMostKnownRuns) known_->runs.clear();
    known_->runs.insert(run, width);
    return width;
  }

  qreal AdvanceOf(QChar c) {
    const auto it = known_->characters.constFind(c.unicode());
    if (it != known_->characters.constEnd()) return *it;
    const qreal advance = metrics_.horizontalAdvance(c);
    known_->characters.insert(c.unicode(), advance);
    return advance;
  }

  static Known* KnownFor(QFont const& font) {
    thread_local QHash<QString, Known> fonts;
    if (fonts.size() > 64) fonts.clear();
    // Values of a QHash stay where they are when other keys come and go.
    return &fonts[font.key()];
  }

  QFontMetricsF metrics_;
  QString const& text_;
  Known* known_;
};

// Breaks one paragraph, piece by piece, into the output lists.
class ParagraphBreaker {
 public:
  ParagraphBreaker(QPoint const& start, int indent, int line_spacing, int max_width, int height,
                   TextMeasurer& measurer, QString const& body, QStringList& strings, QVector<QRect>& rects, int limit)
      : measurer_(measurer),
        body_(body),
        strings_(strings),
        rects_(rects),
        x_(start.x()),
        y_(start.y()),
        indent_(indent),
        line_spacing_(line_spacing),
        max_width_(max_width),
        height_(height),
        limit_(limit) {}

  // Returns false when the piece limit stopped it with text left over.
  bool Run() {
    CollectBreaks();
    const int size = body_.size();
    int piece_start = 0;
    qreal piece_width = 0;
    int seg_start = 0;
    int bi = 0;
    bool cutting = false;
    while (seg_start < size) {
      const int seg_end = breaks_[bi];
      const int avail = Available();
      const int full = max_width_ - indent_;
      if (!cutting) {
        qreal fit_width = 0;
        const qreal seg_width = MeasureSegment(seg_start, seg_end, &fit_width);
        if (piece_width + fit_width <= avail) {
          piece_width += seg_width;
          seg_start = seg_end;
          ++bi;
          if (mandatory_[bi - 1] && seg_start < size) {
            if (!Emit(piece_start, seg_start, piece_width)) return false;
            piece_start = seg_start;
            piece_width = 0;
          }
          continue;
        }
        if (seg_start > piece_start) {
          if (!Emit(piece_start, seg_start, piece_width)) return false;
          piece_start = seg_start;
          piece_width = 0;
          continue;
        }
        // A word that would fit a line of its own goes to the next line.
        if (avail < full && fit_width <= full) {
          if (!Emit(piece_start, piece_start, 0)) return false;
          continue;
        }
        cutting = true;
      }
      qreal used = 0;
      int cut = FitGraphemes(seg_start, seg_end, avail - piece_width, &used);
      if (cut == seg_end) {
        piece_width += used;
        seg_start = seg_end;
        ++bi;
        cutting = false;
        continue;
      }
      if (cut == seg_start) {
        if (avail < full) {
          if (!Emit(piece_start, piece_start, 0)) return false;
          continue;
        }
        // Not even one character fits a whole line: it stands alone.
        cut = NextGrapheme(seg_start, seg_end);
        used = measurer_.Width(seg_start, cut);
      }
      if (!Emit(piece_start, cut, piece_width + used)) return false;
      piece_start = seg_start = cut;
      piece_width = 0;
    }
    if (piece_start < size) {
      if (!Emit(piece_start, size, piece_width)) return false;
    }
    return true;
  }

 private:
  int Available() const { return (emitted_ == 0 ? max_width_ - x_ : max_width_ - indent_); }

  void CollectBreaks() {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Line, body_);
    for (int p = finder.toNextBoundary(); p != -1; p = finder.toNextBoundary()) {
      if (p <= 0) continue;
      if (p < body_.size() && !TXLabelStringUtil::IsSafeSplit(body_, p)) continue;
      breaks_.push_back(p);
      mandatory_.push_back((finder.boundaryReasons() & QTextBoundaryFinder::MandatoryBreak) != 0);
    }
    if (breaks_.isEmpty() || breaks_.back() != body_.size()) {
      breaks_.push_back(body_.size());
      mandatory_.push_back(false);
    }
  }

  // The advance of [from, to); `fit_width` without its trailing white space,
  // which may hang past the line's end.
  qreal MeasureSegment(int from, int to, qreal* fit_width) {
    int trimmed_end = to;
    while (trimmed_end > from && body_.at(trimmed_end - 1).isSpace()) --trimmed_end;
    *fit_width = trimmed_end > from ? measurer_.Width(from, trimmed_end) : 0;
    if (trimmed_end == to) return *fit_width;
    return *fit_width + measurer_.Width(trimmed_end, to);
  }

  QTextBoundaryFinder& Graphemes() {
    if (!graphemes_) graphemes_.reset(new QTextBoundaryFinder(QTextBoundaryFinder::Grapheme, body_));
    return *graphemes_;
  }

  int NextGrapheme(int from, int limit) {
    QTextBoundaryFinder& finder = Graphemes();
    finder.setPosition(from);
    for (int p = finder.toNextBoundary(); p != -1 && p < limit; p = finder.toNextBoundary()) {
      if (TXLabelStringUtil::IsSafeSplit(body_, p)) return p;
    }
    return limit;
  }

  // The furthest grapheme boundary in (from, to] whose text from `from` fits
  // in `room`; `from` when not even one cluster does.
  int FitGraphemes(int from, int to, qreal room, qreal* used) {
    int best = from;
    qreal width = 0;
    int cluster_start = from;
    QTextBoundaryFinder& finder = Graphemes();
    finder.setPosition(from);
    for (int p = finder.toNextBoundary(); p != -1 && p <= to; p = finder.toNextBoundary()) {
      if (p < to && !TXLabelStringUtil::IsSafeSplit(body_, p)) continue;
      width += measurer_.Width(cluster_start, p);
      cluster_start = p;
      if (width > room) break;
      best = p;
      *used = width;
      if (p == to) break;
    }
    return best;
  }

  // `width_sum` is the advance of [from, to), summed while breaking.
  bool Emit(int from, int to, qreal width_sum) {
    if (emitted_ >= limit_) return false;
    const int avail = Available();
    const int width = to > from ? qMin(qRound(width_sum), qMax(avail, 0)) : 0;
    strings_ << body_.mid(from, to - from);
    rects_ << QRect(x_, y_, width, height_);
    ++emitted_;
    x_ = indent_;
    y_ += height_ + line_spacing_;
    return true;
  }

  TextMeasurer& measurer_;
  QString const& body_;
  QStringList& strings_;
  QVector<QRect>& rects_;
  int x_;
  int y_;
  int indent_;
  int line_spacing_;
  int max_width_;
  int height_;
  int limit_;
  int emitted_ = 0;
  QVector<int> breaks_;
  QVector<bool> mandatory_;
  std::unique_ptr<QTextBoundaryFinder> graphemes_;
};

}  // namespace

bool TXLabelStringUtil::IsSafeSplit(QString const& text, int pos) {
  if (pos <= 0 || pos >= text.size()) return true;
  if (text.at(pos).isLowSurrogate() && text.at(pos - 1).isHighSurrogate()) return false;
  const uint after = CodePointAt(text, pos);
  const uint before = CodePointBefore(text, pos);
  if (ExtendsPrevious(after) || before == 0x200D) return false;
  if (IsRegionalIndicator(before) && IsRegionalIndicator(after)) {
    // Flags are pairs: a cut is safe only after an even run of indicators.
    int run = 0;
    int p = pos;
    while (p >= 2 && IsRegionalIndicator(CodePointBefore(text, p))) {
      ++run;
      p -= 2;
    }
    return run % 2 == 0;
  }
  return true;
}

void TXLabelStringUtil::CalculateMultiLineStringRects(QPoint const& start, int indent, int line_spacing,
                                                      int max_width, int line_height, QFont const& font,
                                                      QFontMetrics const& metrics, QString const& text,
                                                      QStringList& out_strings, QVector<QRect>& out_rects,
                                                      bool& more, int max_pieces) {
  more = false;
  QString body = text;
  const bool paragraph_end = body.endsWith(QLatin1Char('\r'));
  if (paragraph_end) body.chop(1);
  const int height = line_height > 0 ? line_height : metrics.height();
  const int limit = max_pieces > 0 ? max_pieces : (max_pieces == 0 ? 1 : INT_MAX);
  const int first_piece = out_strings.size();

  TextMeasurer measurer(font, body);
  // Plain text is measured whole at little cost; other text is measured word
  // by word, and a paragraph that fits still comes out as one piece.
  const bool plain = measurer.IsPlain();
  const int whole = body.isEmpty() || !plain ? 0 : qRound(measurer.Width(0, body.size()));
  if (body.isEmpty() || (plain && whole <= max_width - start.x())) {
    out_strings << body;
    out_rects << QRect(start, QSize(whole, height));
  } else {
    ParagraphBreaker breaker(start, indent, line_spacing, max_width, height, measurer, body, out_strings, out_rects,
                             limit);
    more = !breaker.Run();
  }
  if (paragraph_end && !more && out_strings.size() > first_piece) out_strings.last().append(QLatin1Char('\r'));
}
