#include "chat/ui/desktop/view/rich_text/rich_text_layout_engine.h"

#include <sstream>

#include "base/log/log.h"
#include "chat/ui/desktop/view/rich_text/rich_text_measure.h"

namespace {
// Room kept for a "..." beside an image on the last allowed line.
constexpr int kEllipsisRoom = 12;
constexpr int kPlaceholderSize = 12;
}  // namespace

RichTextLayoutEngine::RichTextLayoutEngine(QFont const& font, int max_render_width, int max_lines)
    : font_(font), max_render_width_(max_render_width), max_lines_(max_lines) {}

RichTextLayoutResult RichTextLayoutEngine::CalculateItemSize(std::vector<RichTextBlock> const& source) {
  result_ = RichTextLayoutResult();
  RichTextLine line;
  line.rect = QRect(0, 0, 0, 0);
  for (auto const& source_block : source) {
    if (result_.reach_max_lines || CheckCurrentLinesIsLimit(line)) {
      result_.reach_max_lines = true;
      break;
    }
    // Layout works on a copy, so that a new rule starts from the source again.
    RichTextBlock block(source_block);
    block.margins = QMargins(qMax(block.margins.left(), 0), qMax(block.margins.top(), 0),
                             qMax(block.margins.right(), 0), qMax(block.margins.bottom(), 0));
    switch (block.type) {
      case RichTextBlock::kLineBreak:
        CalculateForLineBreak(line, block);
        break;
      case RichTextBlock::kImage:
        if (block.pixmap && block.pixmap->fill_width) block.size.setWidth(result_.rendered_width);
        CalculateForImageType(line, block);
        break;
      case RichTextBlock::kText:
        if (block.text) CalculateForTextType(line, block);
        break;
      default:
        break;
    }
  }
  if (!line.rect.isEmpty()) SaveAndBuildNextLine(line);
  if (result_.lines.empty()) {
    std::ostringstream types;
    types << "[ ";
    for (auto const& block : source) types << block.type << " ";
    types << "]";
    TXLOG_NOTICE << "no split lines found, please check the source, type:" << types.str();
    SaveAndBuildNextLine(line);
  }
  return std::move(result_);
}

bool RichTextLayoutEngine::CheckCurrentLinesIsLimit(RichTextLine const& line) {
  if (max_lines_ <= 0) return false;
  const int saved = static_cast<int>(result_.lines.size());
  if (saved > max_lines_) {
    TXLOG_ERROR << "line count:" << saved << " is max than restricted lines " << max_lines_;
    return true;
  }
  return saved == max_lines_ && line.rect.isEmpty();
}

void RichTextLayoutEngine::SaveAndBuildNextLine(RichTextLine& line) {
  if (line.blocks.empty()) {
    TXLOG_ERROR << "empty rich blocks in lines, please call jorvelan";
    RichTextBlock placeholder(RichTextBlock::kText, RichTextBlock::kAlignBottom,
                              QSize(kPlaceholderSize, kPlaceholderSize));
    placeholder.text->color = QStringLiteral("black");
    placeholder.text->pixel_size = kPlaceholderSize;
    line.blocks.push_back(std::move(placeholder));
    RaiseHeight(line, kPlaceholderSize);
  }
  for (auto& block : line.blocks) DistributeHeight(block, line.rect.height());
  if (line.rect.width() > max_render_width_) line.rect.setWidth(max_render_width_);
  result_.rendered_width = qMin(max_render_width_, qMax(result_.rendered_width, line.rect.width()));
  const int next_top = line.rect.bottom();
  result_.lines.push_back(std::move(line));
  // QRect::bottom() is top + height - 1: consecutive lines share a pixel row.
  line.blocks.clear();
  line.ends_with_break = false;
  line.rect = QRect(0, next_top, 0, 0);
}

void RichTextLayoutEngine::DistributeHeight(RichTextBlock& block, int line_height) {
  const int extra = line_height - block.size.height();
  QMargins& m = block.margins;
  switch (block.alignment) {
    case RichTextBlock::kAlignByMargins:
      if (m.top() == m.bottom()) {
        m.setTop(extra / 2);
        m.setBottom(extra - extra / 2);
      } else if (extra == 0) {
        m.setTop(0);
        m.setBottom(0);
      } else {
        const int top = m.top() * extra / (m.top() + m.bottom());
        m.setTop(top);
        m.setBottom(extra - top);
      }
      break;
    case RichTextBlock::kAlignBottom:
      m.setTop(qMax(extra - m.bottom(), 0));
      break;
    case RichTextBlock::kAlignCenter:
      m.setTop(extra / 2);
      m.setBottom(extra / 2);
      break;
    default:
      break;
  }
}

void RichTextLayoutEngine::CalculateForLineBreak(RichTextLine& line, RichTextBlock const& block) {
  // Breaks on an empty line would only make blank lines.
  if (line.blocks.empty()) return;
  RaiseHeight(line, block.size.height());
  line.ends_with_break = true;
  SaveAndBuildNextLine(line);
}

void RichTextLayoutEngine::CalculateForImageType(RichTextLine& line, RichTextBlock const& block) {
  const int total = block.size.height() + block.margins.top() + block.margins.bottom();
  const int remaining = max_render_width_ - line.rect.width();
  const bool last_line = max_lines_ > 0 && static_cast<int>(result_.lines.size()) >= max_lines_ - 1;
  const int width = block.margins.left() + block.size.width();
  if (remaining < width) {
    if (!line.blocks.empty()) {
      if (last_line) {
        result_.reach_max_lines = true;
        Append(line, MakeEllipsis(*block.pixmap));
      }
      SaveAndBuildNextLine(line);
      if (result_.reach_max_lines) return;
    }
    // Starts the next line, or stands alone on an empty one however wide.
    RaiseHeight(line, total);
    Append(line, block);
    return;
  }
  RaiseHeight(line, total);
  if (remaining < width + kEllipsisRoom && last_line) {
    result_.reach_max_lines = true;
    Append(line, MakeEllipsis(*block.pixmap));
  } else {
    Append(line, block);
  }
}

void RichTextLayoutEngine::CalculateForTextType(RichTextLine& line, RichTextBlock& block) {
  RichTextPropertyText& run = *block.text;
  const QFont font = RichTextMeasure::FontFor(font_, run);
  QFontMetrics const& metrics = MetricsFor(font, run);

  int x = line.rect.width() + block.margins.left();
  bool wrap = max_render_width_ <= x;
  if (!wrap && run.max_lines == 0) {
    // A run that wants one piece moves whole to the next line when its whole
    // content does not fit the rest of this one.
    run.max_lines = 1;
    wrap = max_render_width_ - x < RichTextMeasure::Advance(metrics, run.content);
  }
  if (wrap && !line.blocks.empty()) {
    SaveAndBuildNextLine(line);
    x = 0;
    block.margins.setLeft(0);
    if (CheckCurrentLinesIsLimit(line)) {
      result_.reach_max_lines = true;
      return;
    }
  }

  // A single-piece run that starts a new line is still one piece.
  if (run.max_lines == 0) run.max_lines = 1;
  int allowed = run.max_lines;
  int budget = 0;
  if (max_lines_ > 0) {
    budget = max_lines_ - static_cast<int>(result_.lines.size());
    allowed = run.max_lines <= 0 ? budget : qMin(run.max_lines, budget);
  }
  QStringList strings;
  QVector<QRect> rects;
  const QStringList paragraphs = run.content.split(QLatin1Char('\n'));
  for (int i = 0; i < paragraphs.size(); ++i) {
    QStringList piece_strings;
    QVector<QRect> piece_rects;
    bool more = false;
    RichTextMeasure::SplitParagraph(QPoint(x, 0), max_render_width_, block.size.height(), font, metrics,
                                    paragraphs[i], piece_strings, piece_rects, more, allowed);
    if (max_lines_ > 0 && allowed == budget && more) {
      TXLOG_VERBOSE << "text has reach to maxlines and left content";
      result_.reach_max_lines = true;
    }
    x = 0;
    strings += piece_strings;
    rects += piece_rects;
    allowed -= piece_strings.size();
    if (allowed == 0) {
      if (i + 1 < paragraphs.size()) result_.reach_max_lines = true;
      break;
    }
  }

  for (int i = 0; i < strings.size(); ++i) {
    const bool last = i + 1 == strings.size();
    QString piece_text = strings[i];
    QSize piece_size = rects[i].size();
    const bool ends_paragraph = piece_text.endsWith(QLatin1Char('\r'));
    if (ends_paragraph) piece_text.chop(1);
    if (result_.reach_max_lines && last) {
      // The "..." goes in only where it fits; it never replaces characters.
      const int width = RichTextMeasure::Advance(metrics, piece_text);
      if (line.rect.width() + width + run.pixel_size <= max_render_width_) {
        piece_text += QStringLiteral("...");
        piece_size.setWidth(RichTextMeasure::Advance(metrics, piece_text));
      }
    }
    RichTextBlock piece(block);
    piece.text->content = piece_text;
    piece.text->ends_paragraph = ends_paragraph;
    piece.size = piece_size;
    if (i > 0) piece.margins.setLeft(0);
    if (!last) piece.margins.setRight(0);
    RaiseHeight(line, piece.size.height() + block.margins.top() + block.margins.bottom());
    if (run.clickable) {
      const QRect click(line.rect.topRight() + QPoint(block.margins.top(), block.margins.bottom()), piece.size);
      result_.click_region += click;
      result_.click_blocks.emplace_back(run.source_block, click);
    }
    Append(line, std::move(piece));
    if ((strings.size() > 1 && !last) || ends_paragraph) SaveAndBuildNextLine(line);
  }
}

void RichTextLayoutEngine::RaiseHeight(RichTextLine& line, int height) {
  if (height > line.rect.height()) line.rect.setHeight(height);
}

void RichTextLayoutEngine::Append(RichTextLine& line, RichTextBlock block) {
  line.rect.setWidth(line.rect.width() + block.margins.left() + block.size.width() + block.margins.right());
  line.blocks.push_back(std::move(block));
}

RichTextBlock RichTextLayoutEngine::MakeEllipsis(RichTextPropertyPixmap const& image) {
  const int pixel_size = image.ellipsis_pixel_size;
  RichTextBlock ellipsis(RichTextBlock::kText, RichTextBlock::kAlignBottom, QSize(pixel_size, pixel_size));
  ellipsis.text->content = QStringLiteral("...");
  ellipsis.text->color = image.ellipsis_color;
  ellipsis.text->pixel_size = pixel_size;
  ellipsis.text->ends_paragraph = false;
  return ellipsis;
}

QFontMetrics const& RichTextLayoutEngine::MetricsFor(QFont const& font, RichTextPropertyText const& run) {
  const auto key = std::make_pair(run.pixel_size, run.bold);
  auto it = metrics_.find(key);
  if (it == metrics_.end()) it = metrics_.emplace(key, QFontMetrics(font)).first;
  return it->second;
}
