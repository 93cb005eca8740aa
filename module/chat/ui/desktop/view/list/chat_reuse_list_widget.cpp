#include "chat/ui/desktop/view/list/chat_reuse_list_widget.h"

#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>

#include "base/log/log.h"
#include "chat/ui/desktop/view/list/chat_reuse_list_widget_delegate.h"

namespace {
constexpr int kAutoScrollStep = 5;
constexpr int kAutoScrollIntervalMs = 10;
}  // namespace

ChatReuseListWidget::ChatReuseListWidget(QWidget* parent) : QFScrollArea(parent) {
  auto* content = new QWidget(this);
  content->setMouseTracking(true);
  setWidget(content);
  content->setFixedHeight(0);
  setMouseTracking(true);
  viewport()->setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  // A press on the scroll bar ends a selection.
  verticalScrollBar()->installEventFilter(this);
}

ChatReuseListWidget::~ChatReuseListWidget() {
  StopAutoScroll();
  if (paint_rect_helper_) paint_rect_helper_->UnbindWidget();
}

QWidget* ChatReuseListWidget::ContentWidget() {
  if (!widget()) {
    auto* content = new QWidget(this);
    content->setMouseTracking(true);
    setWidget(content);
    int total = 0;
    for (int h : item_heights_) total += h;
    SetContentHeight(ComputeContentHeight(total));
  }
  return widget();
}

ChatReuseListWidgetDelegate* ChatReuseListWidget::Delegate() const {
  return (delegate_ && delegate_guard_) ? delegate_ : nullptr;
}

void ChatReuseListWidget::SetDelegate(QObject* guard_object, ChatReuseListWidgetDelegate* delegate) {
  delegate_guard_ = guard_object;
  delegate_ = delegate;
}

void ChatReuseListWidget::SetVisibleItemsChangedCallback(std::function<void()> callback) {
  visible_items_changed_callback_ = std::move(callback);
}

void ChatReuseListWidget::ForEachVisibleItem(std::function<bool(int, QFReuseWidget*)> const& fn) const {
  if (!fn || !Delegate()) return;
  for (int p = 0; p < used_items_.size(); ++p) {
    if (fn(start_index_ + p, used_items_[p])) break;
  }
}

void ChatReuseListWidget::SetItemSpacing(int spacing) {
  spacing = std::max(0, spacing);
  if (spacing == item_spacing_) return;
  item_spacing_ = spacing;
  ResetTopCache();
  if (total_count_ > 0) Reload(kKeepScrollPosition, 0);
}

void ChatReuseListWidget::SetMargins(QMargins const& margins) {
  if (margins == margins_) return;
  margins_ = margins;
  ResetTopCache();
  if (total_count_ > 0) Reload(kKeepScrollPosition, 0);
}

int ChatReuseListWidget::ListHeight() const { return viewport()->height(); }

int ChatReuseListWidget::ListWidth() const { return viewport()->width(); }

int ChatReuseListWidget::ItemHeightAt(int index) const {
  if (index < 0 || index >= static_cast<int>(item_heights_.size())) return 0;
  return item_heights_[index];
}

void ChatReuseListWidget::ResetTopCache() const {
  cached_index_ = 0;
  cached_top_ = margins_.top();
}

void ChatReuseListWidget::OnRowHeightChanged(int index, int delta) {
  if (index < cached_index_) cached_top_ += delta;
}

int ChatReuseListWidget::ItemTopForIndex(int index) const {
  const int count = static_cast<int>(item_heights_.size());
  index = std::max(0, std::min(index, count));
  if (cached_index_ > count) ResetTopCache();
  int i = cached_index_;
  int top = cached_top_;
  while (i < index) {
    top += item_heights_[i] + item_spacing_;
    ++i;
  }
  while (i > index) {
    --i;
    top -= item_heights_[i] + item_spacing_;
  }
  cached_index_ = i;
  cached_top_ = top;
  return top;
}

int ChatReuseListWidget::LocateRow(int y, int* out_top) const {
  const int count = static_cast<int>(item_heights_.size());
  if (cached_index_ > count) ResetTopCache();
  int i = cached_index_;
  int top = cached_top_;
  // Bottoms never decrease down the list, so the walk goes one way only.
  while (i > 0 && top - item_spacing_ >= y) {
    --i;
    top -= item_heights_[i] + item_spacing_;
  }
  while (i < count && top + item_heights_[i] < y) {
    top += item_heights_[i] + item_spacing_;
    ++i;
  }
  cached_index_ = i;
  cached_top_ = top;
  *out_top = top;
  return i;
}

int ChatReuseListWidget::ComputeContentHeight(int total) const {
  if (total_count_ <= 0) return total;
  return total + item_spacing_ * (total_count_ - 1) + margins_.top() + margins_.bottom();
}

int ChatReuseListWidget::ContentHeight() const { return widget() ? widget()->height() : 0; }

void ChatReuseListWidget::SetContentHeight(int height) {
  QWidget* content = widget();
  if (!content) return;
  content->setFixedHeight(std::max(0, height));
  SyncScrollRange();
}

int ChatReuseListWidget::CalculateVisibleRange(int scroll_value, int* out_start) const {
  *out_start = -1;
  const int bottom = scroll_value + ListHeight();
  // Inclusive at both ends: a row that only touches an edge counts.
  int top = 0;
  int i = LocateRow(scroll_value, &top);
  int count = 0;
  for (; i < total_count_ && top <= bottom; ++i) {
    if (*out_start < 0) *out_start = i;
    ++count;
    top += item_heights_[i] + item_spacing_;
  }
  return count;
}

void ChatReuseListWidget::RecycleWidget(QFReuseWidget* widget) {
  if (!widget) return;
  if (widget->HideWhenRecycled() && !widget->isHidden()) widget->hide();
  if (QWidget* content = this->widget()) widget->SetPosition(widget->x(), content->maximumHeight());
  AppendItemToCache(widget->GetReuseID(), widget);
}

void ChatReuseListWidget::OnWidgetRecycled(QFReuseWidget* widget) {
  QFWidgetReusePolicy::OnWidgetRecycled(widget);
  if (!widget) return;
  // Parked below the content, where it can never be seen or hit.
  if (QWidget* content = this->widget()) widget->SetPosition(widget->x(), content->maximumHeight());
  if (widget->IsSelected()) widget->OnWidgetUnSelected();
}

void ChatReuseListWidget::PlaceWidget(QFReuseWidget* widget, int index, int y, int height) {
  QWidget* content = ContentWidget();
  if (widget->parentWidget() != content) widget->setParent(content);
  if (fix_item_width_) widget->setFixedWidth(ListWidth());
  if (widget->height() != height) widget->resize(widget->width(), height);
  widget->setVisible(true);
  widget->SetPosition(0, y);
  // A recycled widget may come back for the current row, or leave it.
  if (index == current_index_ && !widget->IsSelected()) {
    widget->OnWidgetSelected();
  } else if (index != current_index_ && widget->IsSelected()) {
    widget->OnWidgetUnSelected();
  }
}

int ChatReuseListWidget::DoHandleItem(AddMode mode, int index, int* y, int position) {
  ChatReuseListWidgetDelegate* delegate = Delegate();
  QFReuseWidget* widget = delegate ? delegate->ItemWidgetAtIndex(this, index) : nullptr;
  const int old_height = item_heights_[index];
  if (!widget) {
    TXLOG_ERROR << "add widget return nullptr, please check";
    // The row keeps its space and its place in the used list, so that the
    // rows after it stay where they belong and keep their widgets.
    *y += old_height + item_spacing_;
    if (mode == AddMode::kBack) {
      AppendItemToUsedList(nullptr);
    } else {
      InsertItemToUsedList(nullptr, position);
    }
    return 0;
  }
  if (widget->IsRecycled()) OnWidgetReused(widget);
  QWidget* content = ContentWidget();
  if (widget->parentWidget() != content) widget->setParent(content);
  if (fix_item_width_) widget->setFixedWidth(ListWidth());
  // The estimate only reserved space: the laid-out widget's own height wins.
  const int new_height = std::max(0, widget->sizeHint().height());
  if (new_height != old_height) {
    if (Delegate()) Delegate()->UpdateItemHeight(index, new_height);
    item_heights_[index] = new_height;
    OnRowHeightChanged(index, new_height - old_height);
  }
  PlaceWidget(widget, index, *y, new_height);
  *y += new_height + item_spacing_;
  if (mode == AddMode::kBack) {
    AppendItemToUsedList(widget);
  } else {
    InsertItemToUsedList(widget, position);
  }
  return new_height - old_height;
}

void ChatReuseListWidget::ReuseWidgetForValue(int value) {
  if (!Delegate()) return;
  scroll_value_ = value;
  const int old_visible_count = visible_count_;
  int new_start = -1;
  visible_count_ = CalculateVisibleRange(value, &new_start);
  const int new_end = new_start + visible_count_ - 1;

  int recycle_front = 0;
  int add_front = 0;
  int add_back = 0;
  int recycle_back = 0;
  if (start_index_ < new_start) recycle_front = start_index_ == -1 ? old_visible_count : new_start - start_index_;
  if (new_start < start_index_) add_front = start_index_ - new_start;
  if (end_index_ < new_end) add_back = end_index_ == -1 ? visible_count_ : new_end - end_index_;
  if (new_end < end_index_) recycle_back = end_index_ - new_end;

  for (int i = 0; i < recycle_front && !used_items_.isEmpty(); ++i) RecycleWidget(PopFirstItemFromUsedList());
  for (int i = 0; i < recycle_back && !used_items_.isEmpty(); ++i) RecycleWidget(PopLastItemFromUsedList());

  // A jump past every old row: nothing is kept, and at most the visible rows are added.
  add_front = std::min(add_front, visible_count_);
  add_back = std::min(add_back, visible_count_);

  int height_change = 0;
  int front_change = 0;
  if (add_front > 0) {
    int y = ItemTopForIndex(new_start);
    for (int i = 0; i < add_front; ++i) front_change += DoHandleItem(AddMode::kFront, new_start + i, &y, i);
    height_change += front_change;
    // Rows that came in above measured another height than estimated: the
    // rows already on screen move with them, so that none overlaps.
    if (front_change != 0) {
      for (int p = add_front; p < used_items_.size(); ++p) {
        QFReuseWidget* widget = used_items_[p];
        if (widget) widget->SetPosition(widget->x(), widget->y() + front_change);
      }
    }
  }
  if (add_back > 0) {
    const int first = new_end - add_back + 1;
    int y = ItemTopForIndex(first);
    for (int i = 0; i < add_back; ++i) height_change += DoHandleItem(AddMode::kBack, first + i, &y, -1);
  }

  // Stored before the content is resized: a resize that moves the scroll
  // value comes back here and must find the range that is laid out.
  start_index_ = new_start;
  end_index_ = new_end;
  if (height_change != 0) SetContentHeight(ContentHeight() + height_change);

  if (force_notify_ || recycle_front != 0 || recycle_back != 0 || add_front != 0 || add_back != 0) {
    force_notify_ = false;
    NotifyVisibleItemsChanged();
  }
  if (ChatReuseListWidgetDelegate* delegate = Delegate()) delegate->OnVisibleIndexChanged(start_index_, end_index_);

  // Rows without a widget (the delegate gave none) count as missing here.
  const int used_count = used_items_.size() - used_items_.count(nullptr);
  if (end_index_ + 1 - start_index_ != used_count) {
    TXLOG_WARN << "index and count mismatched, please check!"
                                  << " start index is " << start_index_ << ", end index is " << end_index_
                                  << ", used item count is " << used_count << ", start value is " << value;
  }

  // The rows on screen moved by front_change in the content: the view moves
  // with them, so that the reader sees nothing jump while scrolling up.
  if (front_change != 0 && !in_update_) {
    in_update_ = true;
    SetVerticalScrollValue(value + front_change);
    in_update_ = false;
    if (verticalScrollBar()->value() != scroll_value_) ReuseWidgetForValue(verticalScrollBar()->value());
  }

  // The range was chosen from the heights before measuring: rows that came
  // out shorter leave the bottom of the view bare, taller ones push rows out
  // of it. Measured heights stay, so one more pass settles it.
  if (height_change != 0 && relayout_depth_ < kMaxRelayoutPasses) {
    int start = -1;
    const int count = CalculateVisibleRange(scroll_value_, &start);
    if (start != start_index_ || count != visible_count_) {
      ++relayout_depth_;
      ReuseWidgetForValue(scroll_value_);
      --relayout_depth_;
    }
  }
}

void ChatReuseListWidget::NotifyVisibleItemsChanged() {
  if (visible_items_changed_callback_) visible_items_changed_callback_();
}

void ChatReuseListWidget::UpdateVisibleItems(bool force) {
  int start = -1;
  const int count = CalculateVisibleRange(scroll_value_, &start);
  force_notify_ = force_notify_ || force;
  if (force_notify_ || count != visible_count_) ReuseWidgetForValue(scroll_value_);
}

void ChatReuseListWidget::ResyncWithScrollBar() {
  // Measuring may have moved the scroll bar under a pass that ran with
  // in_update_ set; the rows must match what is on screen.
  if (isVisible() && scroll_value_ != verticalScrollBar()->value()) ReuseWidgetForValue(verticalScrollBar()->value());
}

void ChatReuseListWidget::Reload(int target_index, int offset) {
  ChatReuseListWidgetDelegate* delegate = Delegate();
  if (!delegate) return;
  total_count_ = std::max(0, delegate->ItemCount(this));
  item_heights_.assign(total_count_, 0);
  ResetTopCache();
  int total = 0;
  for (int i = 0; i < total_count_; ++i) {
    item_heights_[i] = std::max(0, delegate->ItemHeightAtIndex(this, i));
    total += item_heights_[i];
  }
  // A row that is no longer there keeps the position.
  if (target_index >= total_count_) target_index = kKeepScrollPosition;
  if (current_index_ >= total_count_) current_index_ = -1;

  ContentWidget();
  SetContentHeight(ComputeContentHeight(total));
  start_index_ = -1;
  end_index_ = -1;
  in_update_ = true;
  RecycleUsedWidget();

  QScrollBar* bar = verticalScrollBar();
  if (target_index >= 0) {
    SetVerticalScrollValue(ItemTopForIndex(target_index) - offset);
    ReuseWidgetForValue(bar->value());
  } else if (target_index == kStickToBottom && !HasSelection()) {
    const int bottom_value = ContentHeight() - ListHeight();
    int value = 0;
    if (bar->value() == bottom_value) {
      value = std::max(0, bottom_value);
    } else {
      ScrollToBottom();
      value = bar->value();
    }
    ReuseWidgetForValue(value);
    // Measuring may have grown the content.
    ScrollToBottom();
  } else {
    ReuseWidgetForValue(bar->value());
  }
  in_update_ = false;
  ResyncWithScrollBar();
  CheckVisible();
}

void ChatReuseListWidget::ReloadItems(std::vector<int> const& indices) {
  ChatReuseListWidgetDelegate* delegate = Delegate();
  if (!delegate) return;
  std::vector<int> rows;
  for (int index : indices) {
    if (index >= 0 && index < total_count_) rows.push_back(index);
  }
  if (rows.empty()) return;

  QScrollBar* bar = verticalScrollBar();
  const bool was_at_bottom = IsScrollBottom();
  const int value = bar->value();
  int content_height = ContentHeight();

  // Every old top first, before any height changes.
  std::vector<int> old_tops;
  old_tops.reserve(rows.size());
  for (int index : rows) old_tops.push_back(ItemTopForIndex(index));

  int delta_above = 0;
  for (size_t i = 0; i < rows.size(); ++i) {
    const int index = rows[i];
    const int new_height = std::max(0, delegate->ItemHeightAtIndex(this, index));
    const int change = new_height - item_heights_[index];
    item_heights_[index] = new_height;
    OnRowHeightChanged(index, change);
    content_height += change;
    if (old_tops[i] < value) delta_above += change;
  }

  SetContentHeight(content_height);
  start_index_ = -1;
  end_index_ = -1;
  in_update_ = true;
  RecycleUsedWidget();
  if (!was_at_bottom) {
    if (delta_above != 0) SetVerticalScrollValue(value + delta_above);
    ReuseWidgetForValue(bar->value() + delta_above);
  } else {
    const int bottom_value = content_height - ListHeight();
    if (value != bottom_value) ScrollToBottom();
    ReuseWidgetForValue(std::max(0, bottom_value));
  }
  in_update_ = false;
  ResyncWithScrollBar();
  CheckVisible();
}

void ChatReuseListWidget::DiffUpdate(QFDiffResult const& diff) {
  ChatReuseListWidgetDelegate* delegate = Delegate();
  if (!delegate) {
    TXLOG_NOTICE << "no delegate to handle list update.";
    return;
  }
  if (diff.IsEmpty()) {
    TXLOG_NOTICE << "no changes in this list.";
    return;
  }
  TXLOG_INFO << "list update with " << diff.deletes().size() << " delete(s), "
                             << diff.inserts().size() << " insert(s), " << diff.moves().size() << " move(s), "
                             << diff.updates().size() << " update(s).";
  in_update_ = true;
  DiffContext context;
  context.start_index = start_index_;
  context.visible_items = used_items_;
  auto position_of = [&context](int index) { return index - context.start_index; };
  auto on_screen = [&context](int position) { return position >= 0 && position < context.visible_items.size(); };

  // Moved rows keep their widget and height: capture both by old row first.
  QList<QPair<int, int>> moves;
  for (auto const& move : diff.moves()) {
    if (move.first < 0 || move.first >= total_count_) continue;
    moves.append(move);
    context.moved_heights.push_back(item_heights_[move.first]);
    const int position = position_of(move.first);
    context.moved_items.append(on_screen(position) ? context.visible_items[position] : nullptr);
  }

  items_total_height_ = total_count_ < 1 ? 0
                                         : ContentHeight() - item_spacing_ * (total_count_ - 1) - margins_.top() -
                                               margins_.bottom();

  // Highest first, so that the lower rows keep their indices.
  for (auto it = diff.deletes().rbegin(); it != diff.deletes().rend(); ++it) {
    const int index = *it;
    if (index < 0 || index >= total_count_) continue;
    const int position = position_of(index);
    if (on_screen(position)) context.visible_items.removeAt(position);
    if (index < context.start_index) --context.start_index;
    if (index == current_index_) {
      current_index_ = -1;
    } else if (index < current_index_) {
      --current_index_;
    }
    items_total_height_ -= item_heights_[index];
    item_heights_.erase(item_heights_.begin() + index);
    --total_count_;
  }

  for (int index : diff.inserts()) {
    if (index < 0) continue;
    const int height = std::max(0, delegate->ItemHeightAtIndex(this, index));
    if (index < total_count_) {
      item_heights_.insert(item_heights_.begin() + index, height);
    } else {
      item_heights_.push_back(height);
    }
    items_total_height_ += height;
    ++total_count_;
    if (index < context.start_index) ++context.start_index;
    if (current_index_ >= 0 && index <= current_index_) ++current_index_;
    const int position = position_of(index);
    if (on_screen(position)) context.visible_items.insert(position, nullptr);
  }

  for (int k = 0; k < moves.size(); ++k) {
    const int to = moves[k].second;
    if (to < 0 || to >= total_count_) continue;
    item_heights_[to] = context.moved_heights[k];
    const int position = position_of(to);
    if (!on_screen(position)) continue;
    QFReuseWidget* widget = context.moved_items[k];
    // A widget shows one row: a move given without the delete of its old
    // row must not leave it in two places.
    if (widget) {
      const int other = context.visible_items.indexOf(widget);
      if (other >= 0 && other != position) context.visible_items[other] = nullptr;
    }
    context.visible_items[position] = widget;
  }

  for (auto it = diff.updates().rbegin(); it != diff.updates().rend(); ++it) {
    const int index = *it;
    if (index < 0 || index >= total_count_) continue;
    const int height = std::max(0, delegate->ItemHeightAtIndex(this, index));
    items_total_height_ += height - item_heights_[index];
    item_heights_[index] = height;
    const int position = position_of(index);
    if (on_screen(position)) delegate->UpdateItemAtIndex(this, index, context.visible_items[position]);
  }

  // Rows came and went anywhere: lookups start over from the top.
  ResetTopCache();
  SetContentHeight(ComputeContentHeight(items_total_height_));
  FixVisibleItems(&context);
  UpdateVisibleItems(true);
  in_update_ = false;
}

void ChatReuseListWidget::FixVisibleItems(DiffContext* context) {
  ChatReuseListWidgetDelegate* delegate = Delegate();
  const int start = context->start_index;
  QList<QFReuseWidget*>& items = context->visible_items;
  if (start + items.size() > total_count_) {
    const int keep = std::min(std::max(total_count_ - start, 0), static_cast<int>(items.size()));
    items = items.mid(0, keep);
  }

  int y = ItemTopForIndex(start);
  const int limit = y + ListHeight();
  int kept = 0;
  for (int position = 0; position < items.size() && y <= limit; ++position) {
    const int row = start + position;
    if (row < 0 || row >= total_count_) break;
    QFReuseWidget* widget = items[position];
    if (!widget || widget->IsRecycled()) {
      widget = delegate ? delegate->ItemWidgetAtIndex(this, row) : nullptr;
      if (widget) {
        OnWidgetReused(widget);
      } else {
        TXLOG_ERROR << "item must not be nullptr here, please check & fix it!";
      }
      items[position] = widget;
    }
    if (widget) PlaceWidget(widget, row, y, item_heights_[row]);
    y += item_heights_[row] + item_spacing_;
    ++kept;
  }
  if (kept < items.size()) items.erase(items.begin() + kept, items.end());

  const QList<QFReuseWidget*> old_used = used_items_;
  for (QFReuseWidget* widget : old_used) {
    if (widget && !items.contains(widget)) {
      used_items_.removeAll(widget);
      RecycleWidget(widget);
    }
  }

  start_index_ = start;
  end_index_ = start + kept - 1;
  used_items_.clear();
  for (QFReuseWidget* widget : items) AppendItemToUsedList(widget);
  scroll_value_ = verticalScrollBar()->value();
}

int ChatReuseListWidget::IndexForPosition(int y) const {
  if (y < 0) return -1;
  if (y == scroll_value_) return start_index_;
  // Fast path for a pointer inside the viewport: only the used rows.
  if (y > scroll_value_ && y <= scroll_value_ + ListHeight()) {
    QFReuseWidget* first = ItemWidgetForIndex(start_index_);
    if (first && first->y() >= 0) {
      int top = first->y();
      for (int i = start_index_; i <= end_index_ && i < total_count_; ++i) {
        const int height = item_heights_[i];
        if (top < y && y <= top + height + item_spacing_) return i;
        top += height + item_spacing_;
      }
    }
  }
  int top = margins_.top();
  int i = 0;
  for (; i < total_count_; ++i) {
    const int height = item_heights_[i];
    if (top < y && y <= top + height + item_spacing_) return i;
    top += height + item_spacing_;
  }
  return total_count_ > 0 ? std::min(i, total_count_ - 1) : i;
}

QFReuseWidget* ChatReuseListWidget::ItemWidgetForIndex(int index) const {
  if (!Delegate() || start_index_ < 0 || index < start_index_ || index > end_index_) return nullptr;
  const int position = index - start_index_;
  return position < used_items_.size() ? used_items_[position] : nullptr;
}

int ChatReuseListWidget::IndexOfItemWidget(QFReuseWidget* widget) const {
  if (!widget || !Delegate()) return -1;
  const int position = used_items_.indexOf(widget);
  return position < 0 ? -1 : start_index_ + position;
}

bool ChatReuseListWidget::IsItemFullyVisible(QWidget* widget) const {
  if (!widget) return false;
  const int value = verticalScrollBar()->value();
  return widget->y() >= value && widget->y() <= value + ListHeight() - widget->height();
}

int ChatReuseListWidget::GetFirstFullyVisibleItem(int* out_offset) const {
  if (!Delegate()) return -1;
  const int value = verticalScrollBar()->value();
  const int bottom = value + ListHeight();
  int top = 0;
  // Rows before this one end above the view.
  for (int i = LocateRow(value, &top); i < total_count_; ++i) {
    if (top > bottom) break;
    const int height = item_heights_[i];
    if (value <= top && top + height < bottom) {
      if (out_offset) *out_offset = top - value;
      return i;
    }
    top += height + item_spacing_;
  }
  return -1;
}

void ChatReuseListWidget::SetCurrentIndex(int index, bool align_top) {
  if (!Delegate() || total_count_ <= 0) return;
  index = std::max(0, std::min(index, total_count_ - 1));
  const int old_index = current_index_;
  QFReuseWidget* old_widget = ItemWidgetForIndex(old_index);
  QFReuseWidget* new_widget = ItemWidgetForIndex(index);
  if (!IsItemFullyVisible(new_widget)) {
    const int top = ItemTopForIndex(index);
    if (align_top) {
      SetVerticalScrollValue(top);
    } else {
      SetVerticalScrollValue(top - ListHeight() + item_heights_[index]);
    }
    // Scrolling laid the rows out again: both widgets may have changed.
    new_widget = ItemWidgetForIndex(index);
    old_widget = ItemWidgetForIndex(old_index);
  }
  current_index_ = index;
  if (old_widget && old_widget != new_widget && old_widget->IsSelected()) old_widget->OnWidgetUnSelected();
  if (new_widget && !new_widget->IsSelected()) new_widget->OnWidgetSelected();
}

void ChatReuseListWidget::MoveToPreviousIndex() { SetCurrentIndex(current_index_ - 1, true); }

void ChatReuseListWidget::MoveToNextIndex() { SetCurrentIndex(current_index_ + 1, false); }

void ChatReuseListWidget::keyPressEvent(QKeyEvent* event) {
  // Tab does not leave the list, not even through the parent it would
  // otherwise propagate to.
  if (event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab) {
    event->accept();
    return;
  }
  if (event->matches(QKeySequence::SelectAll) && selection_enabled_) {
    SelectAll();
    event->accept();
    return;
  }
  if (!Delegate() || total_count_ <= 0) {
    QFScrollArea::keyPressEvent(event);
    return;
  }
  const bool no_current = current_index_ < 0;
  int first_visible = GetFirstFullyVisibleItem(nullptr);
  if (first_visible < 0) first_visible = std::max(start_index_, 0);
  switch (event->key()) {
    case Qt::Key_Up:
      // Without a current row, the keys start from what the user sees.
      if (no_current) {
        SetCurrentIndex(first_visible, true);
      } else {
        MoveToPreviousIndex();
      }
      break;
    case Qt::Key_Down:
      if (no_current) {
        SetCurrentIndex(first_visible, true);
      } else {
        MoveToNextIndex();
      }
      break;
    case Qt::Key_Home:
      SetCurrentIndex(0, true);
      break;
    case Qt::Key_End:
      SetCurrentIndex(total_count_ - 1, false);
      break;
    default:
      QFScrollArea::keyPressEvent(event);
      return;
  }
  event->accept();
}

bool ChatReuseListWidget::focusNextPrevChild(bool next) { return false; }

void ChatReuseListWidget::resizeEvent(QResizeEvent* event) {
  QFScrollArea::resizeEvent(event);
  if (fix_item_width_) {
    const int width = ListWidth();
    for (QFReuseWidget* widget : used_items_) {
      if (widget) widget->setFixedWidth(width);
    }
  }
  if (update_on_resize_) UpdateVisibleItems(false);
}

bool ChatReuseListWidget::eventFilter(QObject* watched, QEvent* event) {
  if (watched == verticalScrollBar() && event->type() == QEvent::MouseButtonPress) ClearSelection();
  return QFScrollArea::eventFilter(watched, event);
}

void ChatReuseListWidget::OnHorizontalScrollValueChanged(int value) {
  QFScrollArea::OnHorizontalScrollValueChanged(value);
}

void ChatReuseListWidget::OnVerticalScrollValueChanged(int value) {
  if (!in_update_) ReuseWidgetForValue(value);
  QFScrollArea::OnVerticalScrollValueChanged(value);
  if (ChatReuseListWidgetDelegate* delegate = Delegate()) delegate->ListVerticalScrollValueChanged(value);
  if (selection_state_ == kSelectionDragging) {
    move_pos_ = viewport()->mapFromGlobal(QCursor::pos());
    UpdateSelection();
  } else if (selection_state_ == kSelectionFinished) {
    // Scrolling a finished selection drops it.
    ClearSelection();
  }
}

void ChatReuseListWidget::CheckVisible() {
  if (!isVisible()) {
    // A hidden list has no meaningful geometry: lay out again on first paint.
    need_relayout_on_paint_ = true;
    if (!paint_rect_helper_) {
      paint_rect_helper_ = std::make_unique<QTPaintRectHelper>();
      paint_rect_helper_->BindWidget(
          this,
          [this](QWidget*, bool visible, QRect const&) {
            if (!visible || !need_relayout_on_paint_) return;
            need_relayout_on_paint_ = false;
            ReuseWidgetForValue(verticalScrollBar()->value());
            DropPaintRectHelper();
          },
          QTPaintRectHelper::kBindAll);
    }
  } else if (paint_rect_helper_) {
    DropPaintRectHelper();
  }
}

void ChatReuseListWidget::DropPaintRectHelper() {
  if (!paint_rect_helper_) return;
  paint_rect_helper_->UnbindWidget();
  // It may be in the middle of its own callback.
  paint_rect_helper_.release()->deleteLater();
}

// --- selection -------------------------------------------------------------

void ChatReuseListWidget::SetSelectionEnabled(bool enabled) {
  selection_enabled_ = enabled;
  if (!enabled) {
    ClearSelection();
    selection_state_ = kSelectionIdle;
  }
}

QPoint ChatReuseListWidget::ToContentPoint(QPoint const& pos) const {
  const int y = std::max(0, std::min(pos.y(), ListHeight()));
  return QPoint(pos.x(), y + verticalScrollBar()->value());
}

void ChatReuseListWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    QFScrollArea::mousePressEvent(event);
    return;
  }
  if (selection_enabled_) {
    ClearSelection();
    selection_state_ = kSelectionPressed;
    press_pos_ = event->pos();
    move_pos_ = event->pos();
    selection_start_key_.clear();
  }
  event->accept();
}

void ChatReuseListWidget::mouseMoveEvent(QMouseEvent* event) {
  if ((selection_state_ == kSelectionPressed || selection_state_ == kSelectionDragging) &&
      (event->buttons() & Qt::LeftButton)) {
    selection_state_ = kSelectionDragging;
    move_pos_ = event->pos();
    UpdateSelection();
    AutoScrollForSelection();
    event->accept();
    return;
  }
  QFScrollArea::mouseMoveEvent(event);
}

void ChatReuseListWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    QFScrollArea::mouseReleaseEvent(event);
    return;
  }
  if (selection_state_ == kSelectionDragging) {
    selection_state_ = kSelectionFinished;
    move_pos_ = event->pos();
    // The pointer left the edge with the button: no more scrolling.
    StopAutoScroll();
    UpdateSelection();
  } else {
    // A click without a drag clears.
    ClearSelection();
    selection_state_ = kSelectionIdle;
  }
  event->accept();
}

void ChatReuseListWidget::AutoScrollForSelection() {
  QScrollBar* bar = verticalScrollBar();
  const int value = bar->value();
  int next = value;
  if (move_pos_.y() < 1 && value > bar->minimum()) {
    next = std::max(bar->minimum(), value - kAutoScrollStep);
  } else if (move_pos_.y() >= ListHeight() && value < bar->maximum()) {
    next = std::min(bar->maximum(), value + kAutoScrollStep);
  } else {
    StopAutoScroll();
    return;
  }
  if (!auto_scroll_timer_) {
    auto_scroll_timer_ = new QTimer(this);
    auto_scroll_timer_->setInterval(kAutoScrollIntervalMs);
    connect(auto_scroll_timer_, &QTimer::timeout, this, [this] { AutoScrollForSelection(); });
  }
  if (!auto_scroll_timer_->isActive()) auto_scroll_timer_->start();
  SetVerticalScrollValue(next);
}

void ChatReuseListWidget::StopAutoScroll() {
  if (!auto_scroll_timer_) return;
  auto_scroll_timer_->stop();
  // Stopping may happen inside the timer's own timeout.
  auto_scroll_timer_->deleteLater();
  auto_scroll_timer_ = nullptr;
}

void ChatReuseListWidget::UpdateSelection() {
  if (selection_state_ != kSelectionDragging && selection_state_ != kSelectionFinished) return;
  ChatReuseListWidgetDelegate* delegate = Delegate();
  bool is_first = false;
  if (selection_start_key_.isEmpty()) {
    // The anchor is fixed by key on the first drag step, so that it survives
    // recycling and index changes.
    const int row = IndexForPosition(ToContentPoint(press_pos_).y());
    if (delegate && row != -1 && row < total_count_) {
      is_first = true;
      selection_start_key_ = delegate->ItemUniStingAtIndex(this, row);
    }
  }
  const int start =
      (delegate && !selection_start_key_.isEmpty()) ? delegate->ItemIndexAtUniSting(this, selection_start_key_) : -1;
  int end = IndexForPosition(ToContentPoint(move_pos_).y());
  if (end < 0) end = 0;
  if (total_count_ > 0 && end >= total_count_) end = total_count_ - 1;
  if (start >= 0 && start < total_count_ && end < total_count_) ApplySelection(start, end, is_first);
}

void ChatReuseListWidget::ApplySelection(int first, int last, bool is_first) {
  ChatReuseListWidgetDelegate* delegate = Delegate();
  if (!delegate) return;
  const int anchor = is_first ? first : -1;
  const bool is_down = first <= last;
  if (!is_down) std::swap(first, last);
  QMap<QString, Variant> stale = selection_map_;
  const QPoint press_global = viewport()->mapToGlobal(press_pos_);
  const QPoint move_global = viewport()->mapToGlobal(move_pos_);
  for (int row = first; row <= last && row < total_count_; ++row) {
    const QString key = delegate->ItemUniStingAtIndex(this, row);
    if (key.isEmpty()) continue;
    stale.remove(key);
    Variant& record = selection_map_[key];
    if (row == anchor) {
      record["is_first"] = true;
      record["p_x"] = press_global.x();
      record["p_y"] = press_global.y();
    }
    const bool end_row = row == first || row == last;
    record["select_all"] = !end_row;
    if (end_row) {
      record["is_down"] = is_down;
      record["m_x"] = move_global.x();
      record["m_y"] = move_global.y();
    }
    delegate->ItemSelectedAtIndex(this, row, record);
  }
  for (auto it = stale.constBegin(); it != stale.constEnd(); ++it) {
    selection_map_.remove(it.key());
    const int row = delegate->ItemIndexAtUniSting(this, it.key());
    if (row >= 0) delegate->ItemUnSelectedAtIndex(this, row);
  }
  emit OnSelectionChanged();
}

void ChatReuseListWidget::ClearSelection() {
  if (!selection_map_.isEmpty()) {
    // Emptied first, so that a row repainting from ItemSelectionRecord reads nothing.
    const QMap<QString, Variant> old = selection_map_;
    selection_map_.clear();
    if (ChatReuseListWidgetDelegate* delegate = Delegate()) {
      for (auto it = old.constBegin(); it != old.constEnd(); ++it) {
        delegate->ItemUnSelectedAtIndex(this, delegate->ItemIndexAtUniSting(this, it.key()));
      }
    }
    emit OnSelectionChanged();
  }
  StopAutoScroll();
}

void ChatReuseListWidget::SelectAll() {
  ChatReuseListWidgetDelegate* delegate = Delegate();
  if (!selection_enabled_ || !delegate || total_count_ <= 0) return;
  StopAutoScroll();
  // Not a finished drag: the reader may scroll through what Ctrl+A selected.
  selection_state_ = kSelectionIdle;
  selection_start_key_.clear();
  Variant whole(base::variant::kVariantTypeMap);
  whole["select_all"] = true;
  for (int row = 0; row < total_count_; ++row) {
    const QString key = delegate->ItemUniStingAtIndex(this, row);
    if (key.isEmpty()) continue;
    selection_map_[key] = whole;
    delegate->ItemSelectedAtIndex(this, row, whole);
  }
  emit OnSelectionChanged();
}

Variant ChatReuseListWidget::ItemSelectionRecord(int index) const {
  ChatReuseListWidgetDelegate* delegate = Delegate();
  if (selection_map_.isEmpty() || !delegate || index < 0 || index >= total_count_) return Variant();
  return selection_map_.value(delegate->ItemUniStingAtIndex(this, index));
}

void ChatReuseListWidget::GetSelectionVecIndex(std::vector<int>* out_indices) const {
  ChatReuseListWidgetDelegate* delegate = Delegate();
  if (!out_indices || selection_map_.isEmpty() || !delegate) return;
  const size_t before = out_indices->size();
  for (auto it = selection_map_.constBegin(); it != selection_map_.constEnd(); ++it) {
    const int row = delegate->ItemIndexAtUniSting(this, it.key());
    if (row >= 0) out_indices->push_back(row);
  }
  TXLOG_INFO << "origin select count:" << selection_map_.size()
                             << ", real select count:" << (out_indices->size() - before);
}
