#include "devkit/sample_text_list_delegate.h"

#include <QApplication>
#include <QFontMetrics>
#include <algorithm>

#include "chat/ui/desktop/view/list/chat_reuse_list_widget.h"
#include "devkit/sample_row_widget.h"

namespace devkit {

SampleTextListDelegate::SampleTextListDelegate(QVector<SampleRow> rows, QObject* parent) : QObject(parent) {
  const QFontMetrics metrics(QApplication::font());
  line_height_ = metrics.height();
  char_width_ = std::max(1, metrics.averageCharWidth());
  SetRows(std::move(rows));
}

void SampleTextListDelegate::SetRows(QVector<SampleRow> rows) {
  rows_ = std::move(rows);
  measured_ = QVector<int>(rows_.size(), 0);
  index_dirty_ = true;
}

void SampleTextListDelegate::InsertRow(int index, SampleRow row) {
  index = std::max(0, std::min(index, static_cast<int>(rows_.size())));
  rows_.insert(index, std::move(row));
  measured_.insert(index, 0);
  index_dirty_ = true;
}

void SampleTextListDelegate::RemoveRow(int index) {
  if (index < 0 || index >= rows_.size()) return;
  selection_.remove(rows_[index].key);
  rows_.removeAt(index);
  measured_.removeAt(index);
  index_dirty_ = true;
}

void SampleTextListDelegate::MoveRow(int from, int to) {
  if (from < 0 || from >= rows_.size() || to < 0 || to >= rows_.size()) return;
  rows_.move(from, to);
  measured_.move(from, to);
  index_dirty_ = true;
}

void SampleTextListDelegate::SetText(int index, QString const& text) {
  if (index < 0 || index >= rows_.size()) return;
  rows_[index].text = text;
  measured_[index] = 0;
}

int SampleTextListDelegate::RoughHeight(SampleRow const& row) const {
  if (row.kind == SampleRow::kTimeTip) return 26;
  // A guess from the length, as a model that never laid the text out would
  // make: about 320 pixels of text a line, with the header and paddings.
  const int chars_per_line = std::max(1, 320 / char_width_);
  const int lines = std::max(1, (static_cast<int>(row.text.size()) + chars_per_line - 1) / chars_per_line);
  return 4 + 8 + line_height_ + 2 + lines * line_height_ + 8 + 4;
}

int SampleTextListDelegate::ItemCount(ChatReuseListWidget* list) { return rows_.size(); }

int SampleTextListDelegate::ItemHeightAtIndex(ChatReuseListWidget* list, int index) {
  ++counters_.height_requests;
  if (index < 0 || index >= rows_.size()) return 0;
  if (measured_[index] > 0) return measured_[index];
  if (estimate_ == Estimate::kExact && list) {
    return SampleRowWidget::MeasureHeight(rows_[index], list->ContentWidget()->font(), list->viewport()->width());
  }
  return RoughHeight(rows_[index]);
}

QFReuseWidget* SampleTextListDelegate::ItemWidgetAtIndex(ChatReuseListWidget* list, int index) {
  ++counters_.widget_requests;
  if (!list || index < 0 || index >= rows_.size() || null_rows_.contains(index)) return nullptr;
  SampleRow const& row = rows_[index];
  const QString reuse_id = row.kind == SampleRow::kTimeTip ? kTipReuseId : kMessageReuseId;
  auto* widget = static_cast<SampleRowWidget*>(list->GetReuseItem(reuse_id, row.key));
  if (!widget) {
    widget = new SampleRowWidget(reuse_id, list->ContentWidget());
    ++counters_.widgets_created;
  }
  widget->SetReuseKey(row.key);
  // A row that comes back reads its selection from the list: the widget it
  // had may show another row by now.
  widget->Bind(index, row, list->ItemSelectionRecord(index));
  return widget;
}

void SampleTextListDelegate::ListVerticalScrollValueChanged(int value) { ++counters_.scroll_value_calls; }

void SampleTextListDelegate::OnVisibleIndexChanged(int start, int end) {
  ++counters_.visible_index_calls;
  counters_.last_visible_range = {start, end};
}

void SampleTextListDelegate::UpdateItemAtIndex(ChatReuseListWidget* list, int index, QFReuseWidget* widget) {
  counters_.update_calls.emplace_back(index, widget != nullptr);
  if (auto* row_widget = qobject_cast<SampleRowWidget*>(widget)) {
    if (index >= 0 && index < rows_.size()) row_widget->Bind(index, rows_[index], list->ItemSelectionRecord(index));
  }
}

SampleRowWidget* SampleTextListDelegate::VisibleWidget(ChatReuseListWidget* list, int index) const {
  return list ? qobject_cast<SampleRowWidget*>(list->ItemWidgetForIndex(index)) : nullptr;
}

void SampleTextListDelegate::ItemSelectedAtIndex(ChatReuseListWidget* list, int index, Variant const& record) {
  ++counters_.selected_calls;
  if (index < 0 || index >= rows_.size()) return;
  selection_[rows_[index].key] = record;
  if (SampleRowWidget* widget = VisibleWidget(list, index)) widget->SetSelection(record);
}

void SampleTextListDelegate::ItemUnSelectedAtIndex(ChatReuseListWidget* list, int index) {
  counters_.unselected_rows.push_back(index);
  if (index < 0 || index >= rows_.size()) return;
  selection_.remove(rows_[index].key);
  if (SampleRowWidget* widget = VisibleWidget(list, index)) widget->SetSelection(Variant());
}

QString SampleTextListDelegate::ItemUniStingAtIndex(ChatReuseListWidget const* list, int index) {
  if (index < 0 || index >= rows_.size() || rows_[index].kind == SampleRow::kTimeTip) return QString();
  return rows_[index].key;
}

int SampleTextListDelegate::ItemIndexAtUniSting(ChatReuseListWidget const* list, QString const& key) {
  if (index_dirty_) {
    index_of_key_.clear();
    index_of_key_.reserve(rows_.size());
    for (int i = 0; i < rows_.size(); ++i) index_of_key_.insert(rows_[i].key, i);
    index_dirty_ = false;
  }
  return index_of_key_.value(key, -1);
}

void SampleTextListDelegate::UpdateItemHeight(int index, int height) {
  ++counters_.height_updates;
  if (index >= 0 && index < measured_.size()) measured_[index] = height;
}

}  // namespace devkit
