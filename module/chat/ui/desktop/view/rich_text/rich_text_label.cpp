#include "chat/ui/desktop/view/rich_text/rich_text_label.h"

#include <QApplication>
#include <QClipboard>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "base/log/log.h"
#include "chat/ui/desktop/view/rich_text/rich_text_layout_engine.h"
#include "chat/ui/desktop/view/rich_text/rich_text_painter.h"
#include "chat/ui/desktop/view/rich_text/rich_text_source_normalizer.h"

RichTextLabel::RichTextLabel(QWidget* parent) : QWidget(parent), selection_(this) {
  static const int registered = qRegisterMetaType<RichTextBlock>("RichTextBlock");
  Q_UNUSED(registered);
  setObjectName(QStringLiteral("RichTextLabel"));
}

RichTextLabel::~RichTextLabel() = default;

void RichTextLabel::SetRichText(std::vector<RichTextBlock> const& blocks, int max_render_width, int max_lines) {
  // Built afresh and swapped in: assignment between blocks of different
  // types is refused, so the old list is never assigned over.
  std::vector<RichTextBlock> copy(blocks);
  source_blocks_.swap(copy);
  if (source_blocks_.empty()) TXLOG_ERROR << "empty rich resource";
  PreCalculateItemSize();
  UpdateRichText(max_render_width, max_lines, true);
  UpdateMouseTracking();
}

void RichTextLabel::UpdateRichText(int max_render_width, int max_lines, bool force) {
  // Per layout: debug level, or the log fills with one line a bubble.
  TXLOG_VERBOSE << "update rich text info, source_count:" << source_blocks_.size()
                                << " max render width : " << max_render_width << ", max lines : " << max_lines
                                << ", force:" << force;
  if (!force && max_render_width == max_render_width_ && max_lines == max_lines_) {
    TXLOG_VERBOSE << "skip update for same render rule";
    return;
  }
  if (max_render_width < 0) {
    TXLOG_ERROR << "invalid max render width, please check";
    max_render_width = qMax(12, width());
  }
  max_render_width_ = max_render_width;
  max_lines_ = max_lines;
  rendered_width_ = 0;
  reach_max_lines_ = false;
  click_region_ = QRegion();
  has_press_pos_ = false;
  click_blocks_.clear();
  selection_.Reset();
  lines_.clear();
  CalculateItemSize();
  update();
}

void RichTextLabel::PreCalculateItemSize() { RichTextSourceNormalizer::Normalize(source_blocks_); }

void RichTextLabel::CalculateItemSize() {
  RichTextLayoutEngine engine(font(), max_render_width_, max_lines_);
  RichTextLayoutResult result = engine.CalculateItemSize(source_blocks_);
  lines_.swap(result.lines);
  rendered_width_ = result.rendered_width;
  reach_max_lines_ = result.reach_max_lines;
  click_region_ = result.click_region;
  click_blocks_.swap(result.click_blocks);
  setFixedSize(rendered_width_, lines_.back().rect.bottom());
}

void RichTextLabel::SetContentSelectable(bool selectable, bool use_native, QString const& bg_color) {
  selection_.SetContentSelectable(selectable, use_native, bg_color);
  UpdateMouseTracking();
}

void RichTextLabel::UpdateSelectionState(int kind, QPoint const& global_pos, bool is_down) {
  selection_.UpdateSelectionState(kind, global_pos, is_down);
}

void RichTextLabel::SelectContent(QPoint const& from, QPoint const& to, bool select_all) {
  selection_.SelectContent(from, to, select_all);
}

void RichTextLabel::paintEvent(QPaintEvent* event) {
  if (lines_.empty()) {
    QWidget::paintEvent(event);
    return;
  }
  QPainter painter(this);
  RichTextPainter(painter, font())
      .Paint(lines_, selection_.HasContentSelection() ? &selection_ : nullptr, event->rect());
}

void RichTextLabel::mousePressEvent(QMouseEvent* event) {
  if (press_callback_) press_callback_(this, event);
  if (event->isAccepted()) {
    if (event->button() == Qt::LeftButton) {
      if (click_region_.contains(event->pos())) {
        has_press_pos_ = true;
        press_pos_ = event->pos();
      }
      selection_.OnMousePressed(event->pos(), true);
    } else if (event->button() == Qt::RightButton) {
      selection_.OnMouseRightClick(event->pos(), true);
    }
    QWidget::mousePressEvent(event);
  }
}

void RichTextLabel::mouseMoveEvent(QMouseEvent* event) {
  if (move_callback_) move_callback_(this, event);
  if (event->isAccepted()) {
    UpdateCursor(event->pos());
    if (event->buttons() & Qt::LeftButton) selection_.OnMouseMove(event->pos(), true);
    QWidget::mouseMoveEvent(event);
  }
}

void RichTextLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (release_callback_) release_callback_(this, event);
  if (!event->isAccepted()) {
    has_press_pos_ = false;
    return;
  }
  if (event->button() == Qt::LeftButton && (HasClickableText() || selection_.selectable())) {
    if (RichTextBlock const* block = ClickedBlock(event->pos())) {
      selection_.Reset();
      // A copy: a slot may replace the source while others still run.
      const RichTextBlock clicked(*block);
      const QString text = clicked.text ? clicked.text->content : QString();
      has_press_pos_ = false;
      emit ClickText(clicked, text);
    } else {
      selection_.OnMouseRelease(event->pos(), true);
    }
  }
  has_press_pos_ = false;
  if (event->isAccepted()) QWidget::mouseReleaseEvent(event);
}

void RichTextLabel::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && selection_.SelectWordAt(event->pos())) return;
  QWidget::mouseDoubleClickEvent(event);
}

void RichTextLabel::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange && !lines_.empty()) UpdateRichText(max_render_width_, max_lines_, true);
  QWidget::changeEvent(event);
}

void RichTextLabel::focusOutEvent(QFocusEvent* event) {
  const Qt::FocusReason reason = event->reason();
  if (reason == Qt::MouseFocusReason || reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) {
    ClearContentSelection();
  }
  QWidget::focusOutEvent(event);
}

void RichTextLabel::enterEvent(QEvent* event) {
  selection_.OnEnter();
  QWidget::enterEvent(event);
}

void RichTextLabel::keyPressEvent(QKeyEvent* event) {
  if (selection_.selectable() && selection_.use_native()) {
    if (event->matches(QKeySequence::Copy) && HasContentSelection()) {
      QApplication::clipboard()->setText(CopyContentSelection());
      return;
    }
    if (event->matches(QKeySequence::SelectAll)) {
      SelectContent(QPoint(), QPoint(), true);
      return;
    }
  }
  QWidget::keyPressEvent(event);
}

RichTextBlock const* RichTextLabel::ClickedBlock(QPoint const& pos) const {
  if (!has_press_pos_ || !click_region_.contains(press_pos_)) return nullptr;
  for (auto const& [block, rect] : click_blocks_) {
    if (rect.contains(pos)) return rect.contains(press_pos_) ? block : nullptr;
  }
  return nullptr;
}

void RichTextLabel::UpdateMouseTracking() {
  setMouseTracking(HasClickableText() || selection_.selectable());
  // Natively selected text takes focus on a click, so that it can be copied.
  setFocusPolicy(selection_.selectable() && selection_.use_native() ? Qt::ClickFocus : Qt::NoFocus);
}

void RichTextLabel::UpdateCursor(QPoint const& pos) {
  if (!HasClickableText() && !selection_.selectable()) return;
  Qt::CursorShape shape = Qt::ArrowCursor;
  if (click_region_.contains(pos)) {
    shape = Qt::PointingHandCursor;
  } else if (selection_.selectable()) {
    shape = Qt::IBeamCursor;
  }
  if (cursor().shape() != shape) setCursor(shape);
}
