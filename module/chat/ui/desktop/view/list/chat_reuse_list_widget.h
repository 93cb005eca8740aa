#pragma once

#include <QMap>
#include <QMargins>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

#include "base/variant/variant.h"
#include "uikit/reuse/qf_diff_result.h"
#include "uikit/reuse/qf_reuse_widget.h"
#include "uikit/reuse/qf_scroll_area.h"
#include "uikit/reuse/qf_widget_reuse_policy.h"
#include "uikit/reuse/qt_paint_rect_helper.h"

class ChatReuseListWidgetDelegate;
class QTimer;
class QKeyEvent;
class QMouseEvent;

// A vertical list of any length that holds widgets only for the rows the
// viewport shows. Every row has one integer height; rows entering the view
// get a widget from the delegate (usually out of the cache of recycled
// widgets), rows leaving it give theirs back. Diffs apply without a reload,
// and a drag selects across rows, kept by row key so that it survives
// recycling.
//
// Coordinates: "list" coordinates are the viewport's; the list's width and
// height are the viewport's, so rows never run under the scroll bar.
class ChatReuseListWidget : public QFScrollArea, public QFWidgetReusePolicy {
  Q_OBJECT

 public:
  enum SelectionState { kSelectionIdle = 0, kSelectionPressed = 1, kSelectionDragging = 2, kSelectionFinished = 3 };

  explicit ChatReuseListWidget(QWidget* parent = nullptr);
  ~ChatReuseListWidget() override;

  // Reload targets other than a row.
  static constexpr int kKeepScrollPosition = -1;
  static constexpr int kStickToBottom = -2;

  // Rebuilds every row. target_index >= 0 puts that row's top `offset`
  // pixels below the viewport's top (offset as GetFirstFullyVisibleItem
  // gives it); kKeepScrollPosition keeps the scroll position;
  // kStickToBottom sticks to the bottom.
  virtual void Reload(int target_index, int offset);
  // Re-measures the given rows; what is on screen stays where it is.
  virtual void ReloadItems(std::vector<int> const& indices);
  // Lays out the rows visible at scroll value `value`, recycling the rest.
  virtual void ReuseWidgetForValue(int value);
  virtual void NotifyVisibleItemsChanged();

  // `guard_object` tells whether the delegate still lives.
  void SetDelegate(QObject* guard_object, ChatReuseListWidgetDelegate* delegate);
  void SetVisibleItemsChangedCallback(std::function<void()> callback);
  // Calls fn(index, widget) for the used rows from the first; stops at true.
  // The widget is null for a row the delegate gave none.
  void ForEachVisibleItem(std::function<bool(int, QFReuseWidget*)> const& fn) const;
  // Spacing and margins lay the rows out again at once.
  void SetItemSpacing(int spacing);
  int GetItemSpacing() const { return item_spacing_; }
  QList<QFReuseWidget*> const& GetUsedItems() const { return used_items_; }
  // Only top and bottom count; they belong to the content height.
  void SetMargins(QMargins const& margins);
  QMargins const& GetMargins() const { return margins_; }
  // The widget of a row on screen, or null.
  QFReuseWidget* ItemWidgetForIndex(int index) const;
  // The row of a used widget, or -1.
  int IndexOfItemWidget(QFReuseWidget* widget) const;
  bool IsItemFullyVisible(QWidget* widget) const;

  void SetCurrentIndex(int index, bool align_top);
  void MoveToPreviousIndex();
  void MoveToNextIndex();
  int GetCurrentIndex() const { return current_index_; }
  // The first row whose whole height is in view, or -1; its top minus the
  // scroll value goes to `out_offset`.
  int GetFirstFullyVisibleItem(int* out_offset) const;

  void DiffUpdate(QFDiffResult const& diff);

  void SetSelectionEnabled(bool enabled);
  bool IsSelectionEnabled() const { return selection_enabled_; }
  int SelectionState() const { return selection_state_; }
  bool HasSelection() const { return !selection_map_.isEmpty(); }
  // The selection record of a row, null when the row is not selected.
  Variant ItemSelectionRecord(int index) const;
  // Rows of the selected keys, in key order.
  void GetSelectionVecIndex(std::vector<int>* out_indices) const;
  void ClearSelection();
  // Selects every row whole, as Ctrl+A does; scrolling keeps it, a press drops it.
  void SelectAll();

  void SetFixItemWidth(bool fix) { fix_item_width_ = fix; }
  void SetUpdateOnResize(bool update) { update_on_resize_ = update; }

  // Geometry, as laid out.
  int TotalCount() const { return total_count_; }
  int StartIndex() const { return start_index_; }
  int EndIndex() const { return end_index_; }
  int VisibleCount() const { return visible_count_; }
  int ScrollValue() const { return scroll_value_; }
  int ItemHeightAt(int index) const;
  // Top of a row in content coordinates; past the end, the position after the last row.
  int ItemTopForIndex(int index) const;
  int ContentHeight() const;
  // The row at content coordinate y; the spacing under a row belongs to it.
  int IndexForPosition(int y) const;
  // Created again when it went missing.
  QWidget* ContentWidget();

 signals:
  void OnSelectionChanged();

 protected:
  void OnVerticalScrollValueChanged(int value) override;
  void OnHorizontalScrollValueChanged(int value) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void OnWidgetRecycled(QFReuseWidget* widget) override;

  // Re-evaluates the visible range for scroll_value_; a pass runs when the
  // number of visible rows changed or `force` (or a pending force) is set.
  void UpdateVisibleItems(bool force);
  void CheckVisible();
  int ListHeight() const;
  int ListWidth() const;

 private:
  enum class AddMode { kFront, kBack };
  struct DiffContext {
    int start_index = -1;
    QList<QFReuseWidget*> visible_items;
    QList<QFReuseWidget*> moved_items;
    std::vector<int> moved_heights;
  };

  ChatReuseListWidgetDelegate* Delegate() const;
  int CalculateVisibleRange(int scroll_value, int* out_start) const;
  int DoHandleItem(AddMode mode, int index, int* y, int position);
  void RecycleWidget(QFReuseWidget* widget);
  // Width, height, visibility, position and the current-row mark of a laid-out row.
  void PlaceWidget(QFReuseWidget* widget, int index, int y, int height);
  void DropPaintRectHelper();
  void SetContentHeight(int height);
  int ComputeContentHeight(int total) const;
  void FixVisibleItems(DiffContext* context);
  void ResyncWithScrollBar();
  // The first row whose bottom reaches content y (total_count_ when none),
  // with its top in `out_top`.
  int LocateRow(int y, int* out_top) const;
  // A remembered (row, top) pair lets lookups walk from the last place asked
  // rather than from row 0: a scroll step costs the rows it passes.
  void ResetTopCache() const;
  void OnRowHeightChanged(int index, int delta);

  QPoint ToContentPoint(QPoint const& pos) const;
  void UpdateSelection();
  void ApplySelection(int first, int last, bool is_first);
  void AutoScrollForSelection();
  void StopAutoScroll();

  int total_count_ = 0;
  int scroll_value_ = 0;
  int visible_count_ = 0;
  int start_index_ = -1;
  int end_index_ = -1;
  int item_spacing_ = 0;
  QMargins margins_;
  int current_index_ = -1;
  bool force_notify_ = false;
  bool in_update_ = false;
  bool need_relayout_on_paint_ = false;
  std::vector<int> item_heights_;
  int items_total_height_ = 0;
  mutable int cached_index_ = 0;
  mutable int cached_top_ = 0;
  ChatReuseListWidgetDelegate* delegate_ = nullptr;
  QPointer<QObject> delegate_guard_;
  std::function<void()> visible_items_changed_callback_;
  std::unique_ptr<QTPaintRectHelper> paint_rect_helper_;
  bool fix_item_width_ = true;
  bool update_on_resize_ = true;
  bool selection_enabled_ = false;
  int selection_state_ = kSelectionIdle;
  // Passes laid out again because measuring changed the visible range.
  static constexpr int kMaxRelayoutPasses = 8;
  int relayout_depth_ = 0;
  QPoint press_pos_;
  QString selection_start_key_;
  QPoint move_pos_;
  QTimer* auto_scroll_timer_ = nullptr;
  QMap<QString, Variant> selection_map_;
};
