// The reuse list against QListView on the same 100,000 chat texts, word
// wrapped, in one run: the first load (Reload(ChatReuseListWidget::kStickToBottom, 0) against the view's first
// layout), one scroll step in the middle, and the widgets each keeps alive.
//   bench_reuselist [--benchmark_filter=...]
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QListView>
#include <QScrollBar>
#include <QStringListModel>
#include <algorithm>
#include <climits>
#include <map>
#include <memory>

#include "chat/ui/desktop/view/list/chat_reuse_list_widget.h"
#include "devkit/sample_row_widget.h"
#include "devkit/sample_rows.h"
#include "devkit/sample_text_list_delegate.h"
#include "qt_bench_main.h"

namespace {

constexpr int kWidth = 320;
constexpr int kHeight = 400;
// One wheel notch: three lines of 20 px.
constexpr int kStep = 60;

QVector<devkit::SampleRow> const& Rows(int count) {
  static std::map<int, QVector<devkit::SampleRow>> rows;
  auto it = rows.find(count);
  if (it == rows.end()) it = rows.emplace(count, devkit::MakeSampleRows(count)).first;
  return it->second;
}

// The texts as the list view shows them: the sender over the message.
QStringList const& Texts(int count) {
  static std::map<int, QStringList> texts;
  auto it = texts.find(count);
  if (it == texts.end()) {
    QStringList list;
    list.reserve(count);
    for (auto const& row : Rows(count)) list << (row.sender.isEmpty() ? row.text : row.sender + "\n" + row.text);
    it = texts.emplace(count, list).first;
  }
  return it->second;
}

struct ReuseList {
  explicit ReuseList(int count)
      : delegate(std::make_unique<devkit::SampleTextListDelegate>(Rows(count))),
        list(std::make_unique<ChatReuseListWidget>()) {
    list->resize(kWidth, kHeight);
    list->show();
    QApplication::processEvents();
    list->SetDelegate(delegate.get(), delegate.get());
  }
  int RowWidgets() const { return list->findChildren<QFReuseWidget*>().size(); }
  int AllWidgets() const { return list->findChildren<QWidget*>().size() + 1; }

  std::unique_ptr<devkit::SampleTextListDelegate> delegate;
  std::unique_ptr<ChatReuseListWidget> list;
};

struct ListView {
  explicit ListView(int count) : model(std::make_unique<QStringListModel>(Texts(count))), view(std::make_unique<QListView>()) {
    view->setWordWrap(true);
    view->setUniformItemSizes(false);
    view->setResizeMode(QListView::Adjust);
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->resize(kWidth, kHeight);
    view->show();
    QApplication::processEvents();
  }
  void Load() {
    view->setModel(model.get());
    view->doItemsLayout();
    view->scrollToBottom();
  }
  int AllWidgets() const { return view->findChildren<QWidget*>().size() + 1; }
  // Wrapped rows differ in height; a sanity check that the view wraps.
  std::pair<int, int> RowHeightRange(int rows) const {
    int low = INT_MAX, high = 0;
    for (int i = 0; i < rows && i < model->rowCount(); ++i) {
      const int h = view->visualRect(model->index(i)).height();
      low = std::min(low, h);
      high = std::max(high, h);
    }
    return {low, high};
  }

  std::unique_ptr<QStringListModel> model;
  std::unique_ptr<QListView> view;
};

void BM_ReuseList_FirstLoad(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  Rows(count);
  int row_widgets = 0;
  int widgets = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto fixture = std::make_unique<ReuseList>(count);
    state.ResumeTiming();
    fixture->list->Reload(ChatReuseListWidget::kStickToBottom, 0);
    state.PauseTiming();
    row_widgets = fixture->RowWidgets();
    widgets = fixture->AllWidgets();
    fixture.reset();
    state.ResumeTiming();
  }
  state.counters["row_widgets"] = row_widgets;
  state.counters["widgets"] = widgets;
}
BENCHMARK(BM_ReuseList_FirstLoad)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_QListView_FirstLayout(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  Texts(count);
  int widgets = 0;
  std::pair<int, int> heights;
  for (auto _ : state) {
    state.PauseTiming();
    auto fixture = std::make_unique<ListView>(count);
    state.ResumeTiming();
    fixture->Load();
    state.PauseTiming();
    widgets = fixture->AllWidgets();
    heights = fixture->RowHeightRange(300);
    fixture.reset();
    state.ResumeTiming();
  }
  state.counters["widgets"] = widgets;
  state.counters["min_row_h"] = heights.first;
  state.counters["max_row_h"] = heights.second;
}
BENCHMARK(BM_QListView_FirstLayout)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3);

// Walks 200 notches down from the middle, then 200 up, and so on.
class Walker {
 public:
  explicit Walker(QScrollBar* bar) : bar_(bar) { bar_->setValue(bar_->maximum() / 2); }
  void Step() {
    if (++steps_ % 200 == 0) direction_ = -direction_;
    bar_->setValue(bar_->value() + direction_ * kStep);
  }

 private:
  QScrollBar* bar_;
  int steps_ = 0;
  int direction_ = 1;
};

void BM_ReuseList_ScrollStep(benchmark::State& state) {
  ReuseList fixture(100000);
  fixture.list->Reload(ChatReuseListWidget::kStickToBottom, 0);
  Walker walker(fixture.list->verticalScrollBar());
  const bool paint = state.range(0) != 0;
  for (auto _ : state) {
    walker.Step();
    if (paint) fixture.list->viewport()->repaint();
  }
  state.counters["row_widgets"] = fixture.RowWidgets();
  state.counters["widgets"] = fixture.AllWidgets();
}
BENCHMARK(BM_ReuseList_ScrollStep)->ArgName("paint")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void BM_QListView_ScrollStep(benchmark::State& state) {
  ListView fixture(100000);
  fixture.Load();
  Walker walker(fixture.view->verticalScrollBar());
  const bool paint = state.range(0) != 0;
  for (auto _ : state) {
    walker.Step();
    if (paint) fixture.view->viewport()->repaint();
  }
  state.counters["widgets"] = fixture.AllWidgets();
}
BENCHMARK(BM_QListView_ScrollStep)->ArgName("paint")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) { return RunQtBenchmarks(argc, argv); }
