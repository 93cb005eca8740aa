#include "chat/ui/desktop/view/rich_text/rich_text_hit_tester.h"

#include <QFontMetrics>
#include <QTextBoundaryFinder>
#include <QTextLayout>

#include "base/log/log.h"
#include "chat/ui/desktop/view/rich_text/rich_text_measure.h"
#include "uikit/label/tx_label_string_util.h"

namespace {

// Offsets a caret may stand at: never inside a character.
QVector<int> CaretStops(QString const& text) {
  QVector<int> stops{0};
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  for (int p = finder.toNextBoundary(); p != -1; p = finder.toNextBoundary()) {
    if (p > 0 && TXLabelStringUtil::IsSafeSplit(text, p)) stops.push_back(p);
  }
  if (stops.back() != text.size()) stops.push_back(text.size());
  return stops;
}

bool HasRightToLeft(QString const& text) {
  for (QChar const c : text) {
    switch (c.direction()) {
      case QChar::DirR:
      case QChar::DirAL:
      case QChar::DirRLE:
      case QChar::DirRLO:
      case QChar::DirRLI:
        return true;
      default:
        break;
    }
  }
  return false;
}

// Bidirectional text is hit-tested as it is painted: a right-to-left run
// shows its first character on the right, so prefix widths do not apply.
int VisualOffset(QString const& content, QFont const& font, int offset, int& x) {
  QTextLayout layout(content, font);
  QTextOption option;
  option.setTextDirection(Qt::LeftToRight);
  option.setWrapMode(QTextOption::NoWrap);
  layout.setTextOption(option);
  layout.beginLayout();
  QTextLine line = layout.createLine();
  line.setLineWidth(1e6);
  layout.endLayout();
  const int index = line.xToCursor(offset, QTextLine::CursorBetweenCharacters);
  x += qRound(line.cursorToX(index));
  return index;
}

}  // namespace

RichTextHitTester::RichTextHitTester(std::vector<RichTextLine> const& lines, QRect const& widget_rect,
                                     QFont const& font)
    : lines_(lines), widget_rect_(widget_rect), font_(font) {}

RichTextSelectPos RichTextHitTester::LastPlace() const {
  RichTextSelectPos place(static_cast<int>(lines_.size()) - 1, 0, 0, 0);
  GetLastBlockPositionOfLine(place.line, place.block, place.index, place.x);
  return place;
}

RichTextSelectPos RichTextHitTester::SearchTheNearestPosOfMouse(QPoint const& pos) const {
  if (lines_.empty()) {
    TXLOG_NOTICE << "this text does have any lines, select the first";
    return FirstPlace();
  }
  if (!widget_rect_.contains(pos)) {
    if (pos.y() <= widget_rect_.top()) return FirstPlace();
    if (pos.y() > widget_rect_.bottom()) return LastPlace();
    RichTextSelectPos place(LineByY(pos.y()), 0, 0, 0);
    if (pos.x() > widget_rect_.left()) {
      GetLastBlockPositionOfLine(place.line, place.block, place.index, place.x);
    }
    return place;
  }
  const int line_index = LineByY(pos.y());
  RichTextLine const& line = lines_[line_index];
  int x = line.rect.left();
  const int block_index = BlockByX(line, pos.x(), x);
  const int count = static_cast<int>(line.blocks.size());
  if (block_index < 0 || block_index >= count) {
    TXLOG_ERROR << "invalid block position, please call jorvelan, idx:" << block_index
                                << ", cnt:" << count;
    return LastPlace();
  }
  RichTextBlock const& block = line.blocks[block_index];
  if (block.type == RichTextBlock::kText && block.text) {
    const int index = OffsetInTextBlock(block, pos.x(), x);
    return RichTextSelectPos(line_index, block_index, index, x);
  }
  if (pos.x() - x < block.size.width() / 2.0) return RichTextSelectPos(line_index, block_index, 0, x);
  return RichTextSelectPos(line_index, block_index, 1, x + block.size.width());
}

int RichTextHitTester::LineByY(int y) const {
  const int count = static_cast<int>(lines_.size());
  if (count == 0) return 0;
  if (y < lines_.front().rect.bottom()) return 0;
  if (y >= lines_.back().rect.top()) return count - 1;
  // A row shared by two lines belongs to the lower one.
  int low = 0;
  int high = count;
  while (low <= high) {
    const int mid = qBound(0, (low + high) / 2, count - 1);
    QRect const& rect = lines_[mid].rect;
    if (rect.top() > y) {
      high = mid - 1;
    } else if (rect.bottom() > y) {
      return mid;
    } else {
      low = mid + 1;
    }
  }
  return qBound(0, low, count - 1);
}

int RichTextHitTester::BlockByX(RichTextLine const& line, int pointer_x, int& x) const {
  if (pointer_x <= line.rect.left()) return 0;
  const int count = static_cast<int>(line.blocks.size());
  for (int i = 0; i < count; ++i) {
    RichTextBlock const& block = line.blocks[i];
    const int span = block.margins.left() + block.size.width() + block.margins.right();
    if (pointer_x <= x) return qMax(i - 1, 0);
    if (pointer_x <= x + span) return i;
    if (i + 1 < count) x += span;
  }
  return count - 1;
}

int RichTextHitTester::OffsetInTextBlock(RichTextBlock const& block, int pointer_x, int& x) const {
  int offset = pointer_x - x;
  if (offset <= block.margins.left()) return 0;
  offset -= block.margins.left();
  QString const& content = block.text->content;
  const QFont font = RichTextMeasure::FontFor(font_, *block.text);
  if (HasRightToLeft(content)) return VisualOffset(content, font, offset, x);
  const QFontMetrics metrics(font);
  // Prefixes are taken at caret stops, so a place never falls inside a
  // surrogate pair or a cluster; for plain text every offset is a stop.
  const QVector<int> stops = CaretStops(content);
  auto width_of = [&](int stop) { return RichTextMeasure::Advance(metrics, content.left(stops[stop])); };
  const int size = stops.size() - 1;
  int low = 0;
  int high = size;
  int n = -1;
  while (low <= high) {
    const int mid = (low + high) / 2;
    const int width = width_of(mid);
    if (width > offset) {
      high = mid - 1;
    } else if (width == offset) {
      n = mid;
      break;
    } else {
      low = mid + 1;
    }
  }
  if (n < 0) n = qMin(low, size);
  int width = width_of(n);
  if (width > offset && n > 0) {
    const int before = width_of(n - 1);
    if (offset <= (before + width) / 2.0) {
      --n;
      width = before;
    }
  } else if (width < offset && n < size - 1) {
    const int after = width_of(n + 1);
    if (offset > (width + after) / 2.0) {
      ++n;
      width = after;
    }
  }
  x += width;
  return stops[n];
}

std::pair<RichTextSelectPos, RichTextSelectPos> RichTextHitTester::WordAt(QPoint const& pos) const {
  const RichTextSelectPos place = SearchTheNearestPosOfMouse(pos);
  if (!place.IsValid() || lines_.empty()) return {};
  RichTextLine const& line = lines_[place.line];
  if (place.block >= static_cast<int>(line.blocks.size())) return {};
  RichTextBlock const& block = line.blocks[place.block];
  if (block.type == RichTextBlock::kImage) {
    int x = line.rect.left();
    for (int i = 0; i < place.block; ++i) {
      x += line.blocks[i].margins.left() + line.blocks[i].size.width() + line.blocks[i].margins.right();
    }
    return {RichTextSelectPos(place.line, place.block, 0, x),
            RichTextSelectPos(place.line, place.block, 1, x + block.size.width())};
  }
  if (block.type != RichTextBlock::kText || !block.text || block.text->content.isEmpty()) return {};
  QString const& content = block.text->content;
  // The character under the pointer: the nearest place may be just behind it.
  int at = qMin(place.index, content.size() - 1);
  if (at > 0 && at == place.index && content.at(at).isSpace() && !content.at(at - 1).isSpace()) --at;
  QTextBoundaryFinder words(QTextBoundaryFinder::Word, content);
  int from = 0;
  int to = content.size();
  for (int p = words.toNextBoundary(); p != -1; p = words.toNextBoundary()) {
    if (p <= at) {
      from = p;
    } else {
      to = p;
      break;
    }
  }
  return {PlaceInText(place.line, place.block, from), PlaceInText(place.line, place.block, to)};
}

RichTextSelectPos RichTextHitTester::PlaceInText(int line, int block, int index) const {
  RichTextLine const& target = lines_[line];
  int x = target.rect.left();
  for (int i = 0; i < block; ++i) {
    x += target.blocks[i].margins.left() + target.blocks[i].size.width() + target.blocks[i].margins.right();
  }
  RichTextBlock const& text_block = target.blocks[block];
  QString const& content = text_block.text->content;
  const QFont font = RichTextMeasure::FontFor(font_, *text_block.text);
  if (HasRightToLeft(content)) {
    QTextLayout layout(content, font);
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine text_line = layout.createLine();
    text_line.setLineWidth(1e6);
    layout.endLayout();
    return RichTextSelectPos(line, block, index, x + qRound(text_line.cursorToX(index)));
  }
  return RichTextSelectPos(line, block, index, x + RichTextMeasure::Advance(QFontMetrics(font), content.left(index)));
}

void RichTextHitTester::GetLastBlockPositionOfLine(int line, int& out_block, int& out_index, int& out_x) const {
  if (line < 0 || line >= static_cast<int>(lines_.size())) {
    TXLOG_ERROR << "invalid line position:" << line << ", call jorvelan";
    return;
  }
  RichTextLine const& target = lines_[line];
  out_block = static_cast<int>(target.blocks.size()) - 1;
  if (out_block < 0) {
    TXLOG_NOTICE << "this line does have any blocks, last line index:" << line;
    return;
  }
  out_x = target.rect.isEmpty() ? 0 : target.rect.right();
  RichTextBlock const& block = target.blocks[out_block];
  // After a last image the place keeps index 0, like a place before it.
  out_index = (block.type == RichTextBlock::kText && block.text) ? block.text->content.size() : 0;
}
