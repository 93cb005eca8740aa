#include <QLineEdit>
#include <QVBoxLayout>
#include <functional>
#include <numeric>
#include <random>

#include "list_fixture.h"
#include "support/test_util.h"

namespace reuselist_test {
namespace {

using Estimate = SampleTextListDelegate::Estimate;

TEST(ReuseListLayoutTest, RowsStackWithSpacingAndMarginsAtTheListsWidth) {
  ListHarness<> empty({});
  empty.list->SetMargins(QMargins(0, 10, 0, 30));
  empty.list->Reload(ChatReuseListWidget::kStickToBottom, 0);
  EXPECT_EQ(empty.list->ContentHeight(), 0) << "margins do not make an empty list tall";
  EXPECT_EQ(empty.delegate->counters().widget_requests, 0);
  EXPECT_EQ(empty.list->GetFirstFullyVisibleItem(nullptr), -1);

  QVector<SampleRow> rows = PlainRows(40);
  rows[1].text = LongText(40);
  rows[3].kind = SampleRow::kTimeTip;
  rows[3].text = "10:42";
  ListHarness<> h(rows);
  h.list->SetItemSpacing(6);
  h.list->SetMargins(QMargins(0, 10, 0, 30));
  h.list->Reload(ChatReuseListWidget::kKeepScrollPosition, 0);
  int sum = 0;
  for (int i = 0; i < 40; ++i) sum += h.list->ItemHeightAt(i);
  EXPECT_EQ(h.list->ContentHeight(), sum + 6 * 39 + 10 + 30);
  EXPECT_EQ(h.list->ItemTopForIndex(40), 10 + sum + 6 * 40) << "past the end: where a next row would start";
  EXPECT_GT(h.list->ItemHeightAt(1), h.list->ItemHeightAt(0));
  EXPECT_EQ(h.bar()->maximum(), h.list->ContentHeight() - h.ViewHeight());
  h.ExpectConsistentLayout();
  EXPECT_EQ(h.TextAt(12), "row 0");
  EXPECT_EQ(h.TextAt(5), "") << "the top margin";
  EXPECT_EQ(h.list->EndIndex(), h.list->IndexForPosition(h.ViewHeight())) << "only rows in view have widgets";
}

TEST(ReuseListLayoutTest, TheLaidOutHeightWinsOverTheEstimate) {
  QVector<SampleRow> rows = PlainRows(300);
  for (int i = 0; i < rows.size(); i += 3) rows[i].text = LongText(5 + i % 60);
  ListHarness<> h(rows, Estimate::kRough);
  std::vector<int> estimates;
  for (int i = 0; i < 300; ++i) estimates.push_back(h.delegate->ItemHeightAtIndex(nullptr, i));
  h.list->Reload(0, 0);
  auto content_is_the_sum = [&] {
    int sum = 0;
    for (int i = 0; i < 300; ++i) sum += h.list->ItemHeightAt(i);
    EXPECT_EQ(h.list->ContentHeight(), sum);
  };

  const QFont font = h.list->ContentWidget()->font();
  bool any_corrected = false;
  for (int i = h.list->StartIndex(); i <= h.list->EndIndex(); ++i) {
    const int measured = SampleRowWidget::MeasureHeight(rows[i], font, h.list->viewport()->width());
    EXPECT_EQ(h.list->ItemHeightAt(i), measured) << "row " << i;
    // The delegate was told, so a later reload starts from the measure.
    EXPECT_EQ(h.delegate->ItemHeightAtIndex(nullptr, i), measured) << "row " << i;
    any_corrected = any_corrected || measured != estimates[i];
  }
  EXPECT_TRUE(any_corrected) << "the sample should estimate some rows wrong";
  EXPECT_EQ(h.list->ItemHeightAt(299), estimates[299]) << "rows never seen keep their estimate";
  content_is_the_sum();

  // Scrolling on measures as it goes and keeps the rows butted together.
  for (int step = 0; step < 30; ++step) {
    h.Wheel(-120);
    h.ExpectConsistentLayout();
  }
  content_is_the_sum();
}

TEST(ReuseListLayoutTest, RowsShorterThanTheirReservedHeightStillFillTheView) {
  // Heights kept from an earlier look, before a picture went back to its placeholder.
  ListHarness<> h(PlainRows(60));
  for (int i = 0; i < 60; ++i) h.delegate->UpdateItemHeight(i, 300);
  for (int target : {0, 30}) {
    SCOPED_TRACE(target);
    h.list->Reload(target, 0);
    h.ExpectConsistentLayout();
    EXPECT_FALSE(h.TextAt(h.ViewHeight() - 4).isEmpty()) << "the bottom of the view shows a row";
  }
}

TEST(ReuseListLayoutTest, ScrollingUpIntoRowsTallerThanEstimatedMovesNothingOnScreen) {
  QVector<SampleRow> rows = PlainRows(400);
  for (int i = 0; i < rows.size(); i += 2) rows[i].text = LongText(12 + i % 50);
  ListHarness<> h(rows, Estimate::kRough);
  h.list->Reload(300, 0);
  const int step_px = QApplication::wheelScrollLines() * h.bar()->singleStep() / 3;
  for (int step = 0; step < 60; ++step) {
    SampleRowWidget* under = h.RowAt(200);
    ASSERT_NE(under, nullptr);
    const int index = under->BoundIndex();
    const int screen_y = under->y() - h.bar()->value();
    h.Wheel(40);  // one third of a notch up
    h.ExpectConsistentLayout();
    // The row that was under the probe moved by the wheel's step only.
    if (auto* same = qobject_cast<SampleRowWidget*>(h.list->ItemWidgetForIndex(index))) {
      EXPECT_EQ(same->y() - h.bar()->value() - screen_y, step_px) << "step " << step;
    }
  }
}

TEST(ReuseListLayoutTest, ScrollingRecyclesRowsByKindAndKeepsTheLiveWidgetsBounded) {
  // The most row widgets on screen at once, and the widgets made, over a long scroll.
  auto run = [](int row_count) {
    ListHarness<> h(devkit::MakeSampleRows(row_count), Estimate::kRough);
    h.list->Reload(0, 0);
    int live_max = 0;
    auto scroll = [&](int times, std::function<void()> const& step) {
      for (int i = 0; i < times; ++i) {
        step();
        live_max = std::max(live_max, h.LiveVisibleWidgets());
        h.ExpectConsistentLayout();
      }
    };
    scroll(40, [&] { h.Wheel(-120); });
    scroll(10, [&] { h.bar()->triggerAction(QAbstractSlider::SliderPageStepAdd); });
    scroll(1, [&] { h.bar()->setValue(h.bar()->maximum() / 2); });
    scroll(1, [&] { h.bar()->setValue(h.bar()->maximum()); });
    scroll(20, [&] { h.Wheel(120); });
    // Every row widget the list ever made is either on screen or in the cache.
    EXPECT_EQ(h.AllRowWidgets(), h.list->GetUsedItems().size() + h.list->CachedCount());
    return std::make_pair(live_max, h.delegate->counters().widgets_created);
  };
  const auto small = run(500);
  const auto large = run(100000);
  // A row is at least a time tip (26 px) tall: the viewport holds at most
  // 400 / 26 + 2 of them, whatever the length of the list.
  EXPECT_LE(small.first, 400 / 26 + 2);
  EXPECT_LE(large.first, 400 / 26 + 2);
  EXPECT_LE(large.second, 2 * (400 / 26 + 2));
  EXPECT_LE(large.second, small.second + 4);
}

TEST(ReuseListLayoutTest, AJumpPastEveryRowRebuildsTheViewFromTheCache) {
  ListHarness<> h(PlainRows(10000), Estimate::kExact);
  h.list->Reload(0, 0);
  const int created = h.delegate->counters().widgets_created;
  std::vector<QFReuseWidget*> before(h.list->GetUsedItems().begin(), h.list->GetUsedItems().end());

  // One pixel into a row, so that as many rows show as at the top.
  h.bar()->setValue(h.list->ItemTopForIndex(5000) + 1);
  h.ExpectConsistentLayout();
  EXPECT_EQ(h.list->StartIndex(), 5000);
  EXPECT_EQ(h.TextAt(h.MiddleOf(5001)), "row 5001");
  // The widgets came back out of the cache; none was made.
  EXPECT_EQ(h.delegate->counters().widgets_created, created);
  for (QFReuseWidget* w : h.list->GetUsedItems()) {
    EXPECT_NE(std::find(before.begin(), before.end(), w), before.end());
  }
  h.bar()->setValue(0);
  h.ExpectConsistentLayout();
  EXPECT_EQ(h.TextAt(h.MiddleOf(0)), "row 0");
}

TEST(ReuseListLayoutTest, ReloadPlacesATargetRowKeepsThePositionOrSticksToTheBottom) {
  ListHarness<> h(PlainRows(200));
  h.list->Reload(50, 30);
  EXPECT_EQ(h.list->ItemTopForIndex(50) - h.bar()->value(), 30);
  EXPECT_EQ(h.TextAt(30 + 5), "row 50");
  h.ExpectConsistentLayout();

  // -1: the same place, with the new texts.
  const int value = h.bar()->value();
  h.delegate->SetText(51, "edited");
  h.list->Reload(ChatReuseListWidget::kKeepScrollPosition, 0);
  EXPECT_EQ(h.bar()->value(), value);
  EXPECT_EQ(h.TextAt(h.MiddleOf(51)), "edited");

  // A row that is gone keeps the place as well.
  h.list->Reload(5000, 0);
  EXPECT_EQ(h.bar()->value(), value);

  // -2: the bottom, even when the last rows measure taller than estimated.
  h.delegate->SetEstimate(Estimate::kRough);
  for (int i = 190; i < 200; ++i) h.delegate->SetText(i, LongText(50));
  h.list->Reload(ChatReuseListWidget::kStickToBottom, 0);
  EXPECT_EQ(h.bar()->value(), h.bar()->maximum());
  EXPECT_EQ(h.list->EndIndex(), 199);
  h.ExpectConsistentLayout();
  EXPECT_EQ(h.list->ItemTopForIndex(199) + h.list->ItemHeightAt(199) - h.bar()->value(), h.ViewHeight());

  // Going back to the top of a list the content fits in.
  ListHarness<> small(PlainRows(3));
  small.list->Reload(ChatReuseListWidget::kStickToBottom, 0);
  EXPECT_EQ(small.bar()->value(), 0);
  EXPECT_EQ(small.list->EndIndex(), 2);
  small.ExpectConsistentLayout();
}

TEST(ReuseListLayoutTest, ReloadItemsAboveTheViewportKeepsTheVisibleTextStill) {
  ListHarness<> h(PlainRows(200));
  h.list->Reload(100, 0);
  auto texts_on_screen = [&h] {
    QStringList texts;
    for (int y : {3, 120, 250, 395}) texts << h.TextAt(y);
    return texts;
  };
  const QStringList before = texts_on_screen();
  const int value = h.bar()->value();
  const int content = h.list->ContentHeight();

  std::vector<int> rows(11);
  std::iota(rows.begin(), rows.end(), 10);
  for (int i : rows) h.delegate->SetText(i, LongText(30));
  h.list->ReloadItems(rows);
  const int grown = h.list->ContentHeight() - content;
  EXPECT_GT(grown, 0);
  EXPECT_EQ(h.bar()->value(), value + grown);
  EXPECT_EQ(texts_on_screen(), before);
  h.ExpectConsistentLayout();

  // Rows below the viewport grow without moving it; out-of-range rows are ignored.
  h.delegate->SetText(180, LongText(30));
  h.list->ReloadItems({180, -1, 100000});
  EXPECT_EQ(h.bar()->value(), value + grown);
  EXPECT_EQ(texts_on_screen(), before);

  // At the bottom, a grown row keeps the list at the bottom.
  h.bar()->setValue(h.bar()->maximum());
  h.delegate->SetText(199, LongText(40));
  h.list->ReloadItems({199});
  EXPECT_EQ(h.bar()->value(), h.bar()->maximum());
  EXPECT_EQ(h.TextAt(h.ViewHeight() - 5), LongText(40));
  h.ExpectConsistentLayout();
}

TEST(ReuseListLayoutTest, PositionsMapToRowsWithTheSpacingBelongingToTheRowAbove) {
  QVector<SampleRow> rows = PlainRows(120);
  for (int i = 0; i < rows.size(); i += 4) rows[i].text = LongText(10 + i % 20);
  ListHarness<> h(rows);
  h.list->SetItemSpacing(4);
  h.list->SetMargins(QMargins(0, 8, 0, 8));
  h.list->Reload(40, 17);

  auto expected = [&](int y) {
    for (int i = 0; i < 120; ++i) {
      const int top = h.TopBySum(i);
      if (top < y && y <= top + h.list->ItemHeightAt(i) + 4) return i;
    }
    return 119;
  };
  const int value = h.bar()->value();
  // Inside the viewport (the used rows) and far outside it (the whole list).
  for (int y = value + 1; y <= value + h.ViewHeight(); y += 7) EXPECT_EQ(h.list->IndexForPosition(y), expected(y));
  const int bottom_60 = h.list->ItemTopForIndex(60) + h.list->ItemHeightAt(60);
  for (int y : {9, 300, 2000, bottom_60 + 2, bottom_60 + 5, value + h.ViewHeight() + 500}) {
    EXPECT_EQ(h.list->IndexForPosition(y), expected(y)) << "y " << y;
  }
  EXPECT_EQ(h.list->IndexForPosition(-3), -1);
  EXPECT_EQ(h.list->IndexForPosition(h.list->ContentHeight() + 100), 119);

  // Row tops stay right in any order of asking, across re-measured rows.
  std::mt19937 rng(5);
  for (int round = 0; round < 200; ++round) {
    if (round % 20 == 0) {
      const int row = static_cast<int>(rng() % 120);
      h.delegate->SetText(row, LongText(1 + rng() % 40));
      h.list->ReloadItems({row});
    }
    if (round % 7 == 0) h.bar()->setValue(static_cast<int>(rng() % (h.bar()->maximum() + 1)));
    const int index = static_cast<int>(rng() % 121);
    ASSERT_EQ(h.list->ItemTopForIndex(index), h.TopBySum(index)) << "row " << index << ", round " << round;
  }
  h.ExpectConsistentLayout();
}

TEST(ReuseListLayoutTest, FullyVisibleRowsAreThoseWhoseWholeHeightIsInView) {
  ListHarness<> h(PlainRows(100));
  h.list->Reload(0, 0);
  h.bar()->setValue(h.list->ItemTopForIndex(20) + h.list->ItemHeightAt(20) / 2);
  int offset = 12345;
  EXPECT_EQ(h.list->GetFirstFullyVisibleItem(&offset), 21);
  EXPECT_EQ(offset, h.list->ItemTopForIndex(21) - h.bar()->value());
  EXPECT_FALSE(h.list->IsItemFullyVisible(h.list->ItemWidgetForIndex(20)));
  EXPECT_TRUE(h.list->IsItemFullyVisible(h.list->ItemWidgetForIndex(21)));
  EXPECT_FALSE(h.list->IsItemFullyVisible(h.list->ItemWidgetForIndex(h.list->EndIndex())));

  // A reload at that row and offset gives the same picture back.
  const QString text_at_100 = h.TextAt(100);
  h.list->Reload(21, offset);
  EXPECT_EQ(h.TextAt(100), text_at_100);

  ListHarness<> tall({PlainRow("a", LongText(400))});
  tall.list->Reload(0, 0);
  EXPECT_EQ(tall.list->GetFirstFullyVisibleItem(&offset), -1) << "a row taller than the view is never fully in it";
}

TEST(ReuseListLayoutTest, ArrowKeysMoveTheCurrentRowAndScrollItIntoView) {
  QWidget window;
  auto* layout = new QVBoxLayout(&window);
  layout->addWidget(new QLineEdit(&window));
  SampleTextListDelegate delegate(PlainRows(60));
  auto* list = new ChatReuseListWidget(&window);
  list->SetDelegate(&delegate, &delegate);
  layout->addWidget(list);
  window.resize(320, 460);
  window.show();
  QApplication::processEvents();
  list->Reload(0, 0);
  list->setFocus();
  auto press = [list](Qt::Key key, int times = 1) {
    for (int i = 0; i < times; ++i) QTest::keyClick(list, key);
    int selected = 0;
    for (auto* w : list->ContentWidget()->findChildren<SampleRowWidget*>()) {
      selected += w->isVisible() && w->IsSelected();
    }
    EXPECT_EQ(selected, 1) << "only the current row shows as selected";
    QFReuseWidget* current = list->ItemWidgetForIndex(list->GetCurrentIndex());
    EXPECT_TRUE(current && current->IsSelected());
    return list->GetCurrentIndex();
  };

  EXPECT_EQ(press(Qt::Key_Down), 0);
  EXPECT_EQ(press(Qt::Key_Down, 15), 15);
  // Moving down brings the row in at the bottom edge, moving up at the top edge.
  QFReuseWidget* current = list->ItemWidgetForIndex(15);
  ASSERT_NE(current, nullptr);
  EXPECT_EQ(current->y() + current->height(), list->verticalScrollBar()->value() + list->viewport()->height());
  EXPECT_EQ(press(Qt::Key_Up, 12), 3);
  EXPECT_EQ(list->ItemWidgetForIndex(3)->y(), list->verticalScrollBar()->value());
  EXPECT_EQ(press(Qt::Key_End), 59);
  EXPECT_EQ(list->verticalScrollBar()->value(), list->verticalScrollBar()->maximum());
  EXPECT_EQ(press(Qt::Key_Down), 59);
  EXPECT_EQ(press(Qt::Key_Home), 0);
  QTest::keyClick(list, Qt::Key_Tab);
  EXPECT_EQ(window.focusWidget(), list) << "Tab stays in the list";

  list->SetCurrentIndex(1000, false);
  EXPECT_EQ(list->GetCurrentIndex(), 59) << "clamped";
  list->SetCurrentIndex(-7, true);
  EXPECT_EQ(list->GetCurrentIndex(), 0);
}

TEST(ReuseListLayoutTest, AListReloadedWhileHiddenLaysOutWhenShown) {
  SampleTextListDelegate delegate(PlainRows(80));
  ChatReuseListWidget list;
  list.SetDelegate(&delegate, &delegate);
  list.resize(320, 400);
  list.Reload(10, 0);
  list.resize(320, 600);
  list.show();
  QApplication::processEvents();
  // The viewport's real height decides the rows, not the one at reload time.
  const int bottom = list.verticalScrollBar()->value() + list.viewport()->height();
  const int end = list.EndIndex();
  EXPECT_GE(list.ItemTopForIndex(end) + list.ItemHeightAt(end), bottom);
  // Row 9 ends exactly at the top edge, and a row touching an edge counts.
  EXPECT_EQ(list.StartIndex(), 9);
  EXPECT_EQ(list.ItemTopForIndex(10), list.verticalScrollBar()->value());
  EXPECT_EQ(list.GetUsedItems().size(), end - 9 + 1);
}

TEST(ReuseListLayoutTest, ADeadDelegateMakesEveryOperationANoOp) {
  ListHarness<> h(PlainRows(100));
  h.list->Reload(0, 0);
  const int start = h.list->StartIndex();
  const int end = h.list->EndIndex();
  const int content = h.list->ContentHeight();
  h.delegate.reset();
  h.list->Reload(ChatReuseListWidget::kStickToBottom, 0);
  h.list->ReloadItems({1, 2});
  QFDiffResult diff;
  diff.AddDelete(0);
  h.list->DiffUpdate(diff);
  h.bar()->setValue(300);
  h.list->SetCurrentIndex(5, true);
  h.list->SetSelectionEnabled(true);
  QTest::mousePress(h.list->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(40, 20));
  QTest::mouseMove(h.list->viewport(), QPoint(40, 200));
  QTest::mouseRelease(h.list->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(40, 200));
  EXPECT_EQ(h.list->StartIndex(), start);
  EXPECT_EQ(h.list->EndIndex(), end);
  EXPECT_EQ(h.list->ContentHeight(), content);
  EXPECT_EQ(h.list->GetCurrentIndex(), -1);
  EXPECT_FALSE(h.list->HasSelection());
  EXPECT_EQ(h.list->ItemWidgetForIndex(start), nullptr);
  EXPECT_EQ(h.list->GetFirstFullyVisibleItem(nullptr), -1);
  EXPECT_TRUE(h.list->ItemSelectionRecord(start).IsNull());
}

TEST(ReuseListLayoutTest, ANullRowWidgetCostsOnlyThatRow) {
  ListHarness<> h(PlainRows(50));
  h.delegate->SetNullRows({2});
  talvex_test::LogCapture log;
  h.list->Reload(0, 0);
  EXPECT_TRUE(log.Contains("add widget return nullptr, please check", base::log::kLogError));
  // The rows around it are where they belong, and row 2 keeps its space.
  EXPECT_EQ(h.TextAt(h.MiddleOf(1)), "row 1");
  EXPECT_EQ(h.TextAt(h.MiddleOf(2)), "");
  EXPECT_EQ(h.TextAt(h.MiddleOf(3)), "row 3");
  // Scrolling on still shows the right rows.
  h.delegate->SetNullRows({});
  h.bar()->setValue(h.list->ItemTopForIndex(20));
  EXPECT_EQ(h.TextAt(h.MiddleOf(21)), "row 21");
}

}  // namespace
}  // namespace reuselist_test
