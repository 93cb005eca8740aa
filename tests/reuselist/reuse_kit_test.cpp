#include <gtest/gtest.h>

#include <QApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <memory>
#include <set>
#include <vector>

#include "uikit/reuse/qf_diff_result.h"
#include "uikit/reuse/qf_reuse_widget.h"
#include "uikit/reuse/qf_reuse_widget_delegate.h"
#include "uikit/reuse/qf_scroll_area.h"
#include "uikit/reuse/qf_widget_reuse_policy.h"
#include "uikit/reuse/qt_paint_rect_helper.h"

namespace {

struct Journal : QFReuseWidgetDelegate {
  void OnWidgetReused(QFReuseWidget*) override { events.push_back("reused"); }
  void OnWidgetRecycled(QFReuseWidget*) override { events.push_back("recycled"); }
  void OnWidgetDeleted(QFReuseWidget*) override { events.push_back("deleted"); }
  void OnWidgetSelected(QFReuseWidget*) override { events.push_back("selected"); }
  void OnWidgetUnSelected(QFReuseWidget*) override { events.push_back("unselected"); }
  std::vector<std::string> events;
};

TEST(ReuseKitTest, ThePolicyRecyclesWidgetsByReuseIdAndHidesThem) {
  Journal journal;
  QWidget parent;
  QFWidgetReusePolicy policy;
  auto* a = new QFReuseWidget("text", &parent);
  auto* b = new QFReuseWidget("text", &parent);
  auto* c = new QFReuseWidget("tip", &parent);
  a->SetDelegate(&journal);
  for (auto* w : {a, b, c}) {
    w->show();
    policy.AppendItemToUsedList(w);
  }
  policy.RecycleUsedWidget();
  EXPECT_TRUE(policy.UsedItems().isEmpty());
  EXPECT_TRUE(a->isHidden() && b->isHidden() && c->isHidden());
  EXPECT_EQ(policy.GetReuseItem("image"), nullptr);
  EXPECT_EQ(policy.GetReuseItem("tip"), c);
  EXPECT_EQ(policy.GetReuseItem("tip"), nullptr) << "taken out of the cache";
  EXPECT_EQ(policy.GetReuseItem("text"), b);
  EXPECT_EQ(policy.GetReuseItem("text"), a);
  EXPECT_EQ(journal.events, std::vector<std::string>({"recycled", "reused"}));
}

TEST(ReuseKitTest, TheCachePrefersTheWidgetThatLastShowedTheRowAndForgetsDeletedOnes) {
  QWidget parent;
  QFWidgetReusePolicy policy;
  std::vector<QFReuseWidget*> widgets;
  for (int i = 0; i < 4; ++i) {
    widgets.push_back(new QFReuseWidget("text", &parent));
    widgets.back()->SetReuseKey(QString("row%1").arg(i));
    policy.AppendItemToCache("text", widgets.back());
  }
  EXPECT_EQ(policy.GetReuseItem("text", "row1"), widgets[1]);
  EXPECT_EQ(policy.GetReuseItem("text", "nobody"), widgets[3]);

  Journal journal;
  widgets[2]->SetDelegate(&journal);  // gone before the journal
  delete widgets[2];
  EXPECT_EQ(journal.events, std::vector<std::string>({"deleted"}));
  EXPECT_EQ(policy.CachedCount(), 1);
  EXPECT_EQ(policy.GetReuseItem("text", "row2"), widgets[0]);
  EXPECT_EQ(policy.GetReuseItem("text"), nullptr);

  // A widget in use that is deleted leaves the used list too.
  policy.AppendItemToUsedList(widgets[1]);
  delete widgets[1];
  EXPECT_TRUE(policy.UsedItems().isEmpty());
}

TEST(ReuseKitTest, WidgetsMayOutliveTheirPolicy) {
  QWidget parent;
  auto* widget = new QFReuseWidget("text", &parent);
  Journal journal;
  widget->SetDelegate(&journal);
  {
    QFWidgetReusePolicy policy;
    policy.AppendItemToCache("text", widget);
  }
  // Destroying the widget now must not reach the policy that is gone (the
  // sanitizer build catches a use after free); its own delegate still hears.
  delete widget;
  EXPECT_EQ(journal.events, std::vector<std::string>({"recycled", "deleted"}));
}

class RecordingScrollArea : public QFScrollArea {
 public:
  std::vector<int> values;

 protected:
  void OnVerticalScrollValueChanged(int value) override {
    values.push_back(value);
    QFScrollArea::OnVerticalScrollValueChanged(value);
  }
};

TEST(ReuseKitTest, TheScrollAreaReportsValuesAndKnowsItsBottom) {
  RecordingScrollArea area;
  auto* content = new QWidget;
  area.setWidget(content);
  area.resize(200, 100);
  area.show();
  QApplication::processEvents();
  QSignalSpy spy(&area, &QFScrollArea::VerticalScrollValueChanged);

  // A height given while the content is hidden counts at once.
  const int view = area.viewport()->height();
  content->setFixedHeight(500);
  area.SyncScrollRange();
  EXPECT_EQ(area.verticalScrollBar()->maximum(), 500 - view);
  EXPECT_EQ(content->width(), area.viewport()->width());
  EXPECT_FALSE(area.IsScrollBottom());
  area.SetVerticalScrollValue(120);
  area.SetVerticalScrollValue(100000);  // clamped
  EXPECT_TRUE(area.IsScrollBottom());
  content->setFixedHeight(900);
  area.ScrollToBottom();
  EXPECT_EQ(area.values, std::vector<int>({120, 500 - view, 900 - view}));
  EXPECT_EQ(spy.count(), 3);
}

TEST(ReuseKitTest, ThePaintRectHelperReportsVisibilityUntilUnbound) {
  QWidget widget;
  widget.resize(120, 80);
  std::vector<std::pair<bool, QRect>> reports;
  auto helper = std::make_unique<QTPaintRectHelper>();
  helper->BindWidget(&widget, [&](QWidget* w, bool visible, QRect const& rect) {
    EXPECT_EQ(w, &widget);
    reports.emplace_back(visible, rect);
  });
  widget.show();
  QApplication::processEvents();
  ASSERT_FALSE(reports.empty());
  EXPECT_EQ(reports.back(), std::make_pair(true, QRect(0, 0, 120, 80)));
  widget.hide();
  EXPECT_EQ(reports.back(), std::make_pair(false, QRect()));

  helper->UnbindWidget();
  const size_t count = reports.size();
  widget.show();
  widget.resize(130, 90);
  QApplication::processEvents();
  EXPECT_EQ(reports.size(), count);

  // A helper may be dropped from its own callback.
  QTPaintRectHelper* raw = new QTPaintRectHelper;
  int calls = 0;
  raw->BindWidget(&widget, [&](QWidget*, bool, QRect const&) {
    ++calls;
    delete raw;
  }, QTPaintRectHelper::kBindVisibility);
  widget.resize(140, 100);
  widget.resize(150, 110);
  EXPECT_EQ(calls, 1);
}

// Correctness of key diffs is checked through the list in the diff tests; here
// only that they stay small.
TEST(ReuseKitTest, ADiffFromKeysMovesOneRowOverManyInOneMove) {
  const QFDiffResult one = QFDiffResult::FromKeys({"a", "b", "c", "d", "e"}, {"b", "c", "d", "e", "a"}, {"c"});
  EXPECT_EQ(one.moves(), (QList<QPair<int, int>>{qMakePair(0, 4)}));
  EXPECT_EQ(one.deletes(), std::set<int>({0}));
  EXPECT_EQ(one.inserts(), std::set<int>({4}));
  EXPECT_EQ(one.updates(), std::set<int>({1}));
  EXPECT_TRUE(QFDiffResult::FromKeys({"a", "b"}, {"a", "b"}).IsEmpty());
}

}  // namespace
