#pragma once

#include <QHash>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QVector>
#include <utility>
#include <vector>

#include "chat/ui/desktop/view/list/chat_reuse_list_widget_delegate.h"
#include "devkit/sample_rows.h"

namespace devkit {

class SampleRowWidget;

// A delegate of sample rows for ChatReuseListWidget: texts of varying
// heights, recycled by kind ("sample.message", "sample.tip"). Time tips can't
// be selected. It also counts what the list asked of it, for tests and
// benchmarks.
class SampleTextListDelegate : public QObject, public ChatReuseListWidgetDelegate {
  Q_OBJECT

 public:
  // How ItemHeightAtIndex answers before a row was measured: from the text's
  // length (as a real model would), or by laying the text out at the list's
  // width.
  enum class Estimate { kRough, kExact };

  static constexpr char const* kMessageReuseId = "sample.message";
  static constexpr char const* kTipReuseId = "sample.tip";

  explicit SampleTextListDelegate(QVector<SampleRow> rows = {}, QObject* parent = nullptr);

  // --- the model -------------------------------------------------------------
  QVector<SampleRow> const& Rows() const { return rows_; }
  void SetRows(QVector<SampleRow> rows);
  void InsertRow(int index, SampleRow row);
  void RemoveRow(int index);
  void MoveRow(int from, int to);
  // New text; the row must be measured again.
  void SetText(int index, QString const& text);
  void SetEstimate(Estimate estimate) { estimate_ = estimate; }
  // Rows whose widget comes back null (a broken cell).
  void SetNullRows(QSet<int> rows) { null_rows_ = std::move(rows); }

  // --- what the list asked ----------------------------------------------------
  struct Counters {
    int widget_requests = 0;
    int widgets_created = 0;
    int height_requests = 0;
    int height_updates = 0;
    int visible_index_calls = 0;
    int scroll_value_calls = 0;
    int selected_calls = 0;
    std::vector<int> unselected_rows;
    // (row, whether a widget came with it)
    std::vector<std::pair<int, bool>> update_calls;
    std::pair<int, int> last_visible_range{-1, -1};
  };
  Counters const& counters() const { return counters_; }
  void ResetCounters() { counters_ = Counters(); }
  // Selection records by row key, as the list last gave them.
  QMap<QString, Variant> const& Selection() const { return selection_; }

  // --- ChatReuseListWidgetDelegate -------------------------------------------
  int ItemCount(ChatReuseListWidget* list) override;
  int ItemHeightAtIndex(ChatReuseListWidget* list, int index) override;
  QFReuseWidget* ItemWidgetAtIndex(ChatReuseListWidget* list, int index) override;
  void ListVerticalScrollValueChanged(int value) override;
  void OnVisibleIndexChanged(int start, int end) override;
  void UpdateItemAtIndex(ChatReuseListWidget* list, int index, QFReuseWidget* widget) override;
  void ItemSelectedAtIndex(ChatReuseListWidget* list, int index, Variant const& record) override;
  void ItemUnSelectedAtIndex(ChatReuseListWidget* list, int index) override;
  QString ItemUniStingAtIndex(ChatReuseListWidget const* list, int index) override;
  int ItemIndexAtUniSting(ChatReuseListWidget const* list, QString const& key) override;
  void UpdateItemHeight(int index, int height) override;

 private:
  int RoughHeight(SampleRow const& row) const;
  SampleRowWidget* VisibleWidget(ChatReuseListWidget* list, int index) const;

  QVector<SampleRow> rows_;
  // Measured heights by row; 0 until the row's widget was laid out.
  QVector<int> measured_;
  QHash<QString, int> index_of_key_;
  bool index_dirty_ = true;
  Estimate estimate_ = Estimate::kRough;
  QSet<int> null_rows_;
  Counters counters_;
  QMap<QString, Variant> selection_;
  int line_height_ = 0;
  int char_width_ = 0;
};

}  // namespace devkit
