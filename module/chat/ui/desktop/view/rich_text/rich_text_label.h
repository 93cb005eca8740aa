#pragma once

#include <QRegion>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "chat/ui/desktop/view/rich_text/rich_text_block.h"
#include "chat/ui/desktop/view/rich_text/rich_text_line.h"
#include "chat/ui/desktop/view/rich_text/rich_text_selection.h"

// Lays out and paints a flat list of rich text blocks (text runs, images and
// line breaks) into lines. Layout runs when the content or the rule (render
// width, line limit) changes; the label then has a fixed size equal to what
// it needs, and painting only walks the stored lines.
class RichTextLabel : public QWidget {
  Q_OBJECT

 public:
  using MouseCallback = std::function<void(RichTextLabel*, QMouseEvent*)>;

  explicit RichTextLabel(QWidget* parent = nullptr);
  ~RichTextLabel() override;

  // Replaces the source. `max_lines` 0 or less is no limit.
  void SetRichText(std::vector<RichTextBlock> const& blocks, int max_render_width, int max_lines);
  // Applies a new rule to the same source; an unchanged rule is skipped
  // unless `force`. Owners call it on each width change.
  void UpdateRichText(int max_render_width, int max_lines, bool force = false);

  bool HasClickableText() const { return !click_region_.isEmpty(); }
  bool IsReachMaxLines() const { return reach_max_lines_; }

  void SetMousePressCallback(MouseCallback callback) { press_callback_ = std::move(callback); }
  void SetMouseMoveCallback(MouseCallback callback) { move_callback_ = std::move(callback); }
  void SetMouseReleaseCallback(MouseCallback callback) { release_callback_ = std::move(callback); }

  // Selection.
  void SetContentSelectable(bool selectable, bool use_native, QString const& bg_color);
  QString CopyContentSelection() { return selection_.CopyContentSelection(); }
  bool HasContentSelection() const { return selection_.HasContentSelection(); }
  void ClearContentSelection() { selection_.ClearContentSelection(); }
  // `kind`: 1 start, 2 move, 3 release (RichTextSelection::StateKind).
  void UpdateSelectionState(int kind, QPoint const& global_pos, bool is_down);
  void SelectContent(QPoint const& from, QPoint const& to, bool select_all);
  RichTextSelection const& selection() const { return selection_; }

  std::vector<RichTextLine> const& lines() const { return lines_; }
  std::vector<RichTextBlock> const& source_blocks() const { return source_blocks_; }
  int max_render_width() const { return max_render_width_; }
  int max_lines() const { return max_lines_; }
  int rendered_width() const { return rendered_width_; }

 signals:
  void ClickText(RichTextBlock rich_block, QString clicked_txt);

 protected:
  void PreCalculateItemSize();
  void CalculateItemSize();

  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  // A font set later (a style sheet applies its fonts on polish) lays the
  // text out again, so that layout and painting measure with the same font.
  void changeEvent(QEvent* event) override;
  void enterEvent(QEvent* event) override;
  // Clicking or tabbing elsewhere drops a native selection; a context menu
  // taking the focus keeps it.
  void focusOutEvent(QFocusEvent* event) override;
  // Copy and select-all from the keyboard, for a label selected natively.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void UpdateMouseTracking();
  void UpdateCursor(QPoint const& pos);
  // The source block of the clickable piece under both the press and `pos`.
  RichTextBlock const* ClickedBlock(QPoint const& pos) const;

  MouseCallback press_callback_;
  MouseCallback move_callback_;
  MouseCallback release_callback_;
  int max_render_width_ = 200;
  int rendered_width_ = 0;
  int max_lines_ = -1;
  bool reach_max_lines_ = false;

  QRegion click_region_;
  bool has_press_pos_ = false;
  QPoint press_pos_;
  std::vector<std::pair<RichTextBlock const*, QRect>> click_blocks_;

  RichTextSelection selection_;
  std::vector<RichTextBlock> source_blocks_;
  std::vector<RichTextLine> lines_;
};
