#include <random>

#include "list_fixture.h"

namespace reuselist_test {
namespace {

QStringList Keys(SampleTextListDelegate const& delegate) {
  QStringList keys;
  for (auto const& row : delegate.Rows()) keys << row.key;
  return keys;
}

// Changes the rows and hands the list the diff of their keys.
template <typename Change>
void DiffUpdate(ListHarness<>& h, Change change) {
  const QStringList old_keys = Keys(*h.delegate);
  change(*h.delegate);
  h.list->DiffUpdate(QFDiffResult::FromKeys(old_keys, Keys(*h.delegate)));
}

// What the user sees, top to bottom: the text of every row widget on screen.
QStringList ScreenTexts(ListHarness<> const& h) {
  QList<SampleRowWidget*> rows;
  for (auto* w : h.list->ContentWidget()->findChildren<SampleRowWidget*>()) {
    const int top = w->y() - h.bar()->value();
    if (w->isVisible() && top + w->height() > 0 && top < h.ViewHeight()) rows << w;
  }
  std::sort(rows.begin(), rows.end(), [](auto* a, auto* b) { return a->y() < b->y(); });
  QStringList texts;
  for (auto* w : rows) texts << w->Text();
  return texts;
}

// The texts a fresh reload at the same scroll value would show.
QStringList ExpectedTexts(ListHarness<> const& h) {
  QStringList texts;
  const int value = h.bar()->value();
  for (int i = 0; i < h.list->TotalCount(); ++i) {
    const int top = h.list->ItemTopForIndex(i);
    const int bottom = top + h.list->ItemHeightAt(i);
    if (bottom > value && top < value + h.ViewHeight()) texts << h.delegate->Rows()[i].text;
  }
  return texts;
}

TEST(ReuseListDiffTest, DeletesInsertsAndUpdatesApplyWithoutAReload) {
  ListHarness<> h(PlainRows(50));
  h.list->Reload(0, 0);
  QFReuseWidget* kept = h.list->ItemWidgetForIndex(0);
  h.delegate->ResetCounters();
  const QStringList old_keys = Keys(*h.delegate);
  h.delegate->RemoveRow(2);
  h.delegate->InsertRow(3, PlainRow("new", LongText(25)));
  h.delegate->SetText(0, "row 0, edited");
  const QFDiffResult diff = QFDiffResult::FromKeys(old_keys, Keys(*h.delegate), {"k0"});
  ASSERT_EQ(diff.deletes(), std::set<int>({2}));
  ASSERT_EQ(diff.inserts(), std::set<int>({3}));
  ASSERT_EQ(diff.updates(), std::set<int>({0}));
  h.list->DiffUpdate(diff);
  EXPECT_EQ(h.list->TotalCount(), 50);
  EXPECT_EQ(ScreenTexts(h), ExpectedTexts(h));
  EXPECT_EQ(h.TextAt(h.MiddleOf(0)), "row 0, edited");
  EXPECT_EQ(h.TextAt(h.MiddleOf(3)), LongText(25));
  EXPECT_EQ(h.list->ItemWidgetForIndex(0), kept);
  h.ExpectConsistentLayout();
  // Only the inserted and the updated rows were asked for a height.
  EXPECT_EQ(h.delegate->counters().height_requests, 2);
  EXPECT_EQ(h.delegate->counters().update_calls, (std::vector<std::pair<int, bool>>{{0, true}}));
  int sum = 0;
  for (int i = 0; i < 50; ++i) sum += h.list->ItemHeightAt(i);
  EXPECT_EQ(h.list->ContentHeight(), sum);
}

TEST(ReuseListDiffTest, MovesKeepTheirWidgetAndHeightAndOffScreenOnesAreFilledFromTheDelegate) {
  QVector<SampleRow> rows = PlainRows(60);
  rows[40].text = LongText(30);
  ListHarness<> h(rows);
  h.list->Reload(0, 0);
  const int height_40 = h.list->ItemHeightAt(40);
  QFReuseWidget* widget_1 = h.list->ItemWidgetForIndex(1);
  h.delegate->ResetCounters();

  // Row 40 (off screen) moves to 3; row 1 (on screen) moves to 30 (off screen).
  const QStringList old_keys = Keys(*h.delegate);
  h.delegate->MoveRow(40, 3);
  h.delegate->MoveRow(1, 30);
  const QFDiffResult diff = QFDiffResult::FromKeys(old_keys, Keys(*h.delegate));
  ASSERT_EQ(diff.moves().size(), 2);
  h.list->DiffUpdate(diff);
  EXPECT_EQ(ScreenTexts(h), ExpectedTexts(h));
  EXPECT_EQ(h.TextAt(h.MiddleOf(2)), LongText(30));
  EXPECT_EQ(h.list->ItemHeightAt(2), height_40);
  // The off-screen row's entry came back empty and the delegate filled it.
  EXPECT_GE(h.delegate->counters().widget_requests, 1);
  h.ExpectConsistentLayout();
  // The widget of the row that left the screen was given back or shows another row now.
  EXPECT_TRUE(widget_1->IsRecycled() || static_cast<SampleRowWidget*>(widget_1)->BoundKey() != "k1");
  h.bar()->setValue(h.list->ItemTopForIndex(30));
  EXPECT_EQ(h.TextAt(h.MiddleOf(30)), "row 1");

  // An on-screen row moving within the screen keeps its widget.
  h.bar()->setValue(0);
  QFReuseWidget* widget_0 = h.list->ItemWidgetForIndex(0);
  DiffUpdate(h, [](auto& rows) { rows.MoveRow(0, 4); });
  EXPECT_EQ(h.list->ItemWidgetForIndex(4), widget_0);
  EXPECT_EQ(ScreenTexts(h), ExpectedTexts(h));
  h.ExpectConsistentLayout();
}

TEST(ReuseListDiffTest, UpdatesOffScreenChangeHeightsButRebindNothing) {
  ListHarness<> h(PlainRows(100));
  h.list->Reload(0, 0);
  const QStringList screen = ScreenTexts(h);
  const int content = h.list->ContentHeight();
  const int old_height = h.list->ItemHeightAt(80);
  h.delegate->ResetCounters();

  QFDiffResult diff;
  for (int i = 80; i <= 85; ++i) {
    h.delegate->SetText(i, LongText(40));
    diff.AddUpdate(i);
  }
  h.list->DiffUpdate(diff);
  EXPECT_TRUE(h.delegate->counters().update_calls.empty());
  const int grown = h.list->ItemHeightAt(80) - old_height;
  EXPECT_GT(grown, 0);
  EXPECT_EQ(h.list->ContentHeight(), content + 6 * grown);
  EXPECT_EQ(ScreenTexts(h), screen);
  h.bar()->setValue(h.list->ItemTopForIndex(82));
  EXPECT_EQ(h.TextAt(h.MiddleOf(82)), LongText(40));
  h.ExpectConsistentLayout();
}

TEST(ReuseListDiffTest, AnyReorderingEndsAsAReloadWould) {
  std::mt19937 rng(11);
  QVector<SampleRow> rows = PlainRows(80);
  for (int i = 0; i < rows.size(); i += 5) rows[i].text = LongText(8 + i % 30);
  ListHarness<> h(rows);
  h.list->Reload(20, 10);
  int next_key = 1000;
  for (int round = 0; round < 25; ++round) {
    const QStringList old_keys = Keys(*h.delegate);
    const int changes = 1 + static_cast<int>(rng() % 6);
    for (int c = 0; c < changes; ++c) {
      const int n = h.delegate->Rows().size();
      switch (rng() % 3) {
        case 0:
          if (n > 10) h.delegate->RemoveRow(static_cast<int>(rng() % n));
          break;
        case 1:
          h.delegate->InsertRow(static_cast<int>(rng() % (n + 1)),
                                PlainRow(QString("n%1").arg(next_key++), LongText(1 + rng() % 20)));
          break;
        default:
          h.delegate->MoveRow(static_cast<int>(rng() % n), static_cast<int>(rng() % n));
      }
    }
    h.list->DiffUpdate(QFDiffResult::FromKeys(old_keys, Keys(*h.delegate)));
    ASSERT_EQ(h.list->TotalCount(), h.delegate->Rows().size()) << "round " << round;
    for (int i = 0; i < h.list->TotalCount(); ++i) {
      ASSERT_EQ(h.list->ItemHeightAt(i), h.delegate->ItemHeightAtIndex(h.list.get(), i))
          << "row " << i << ", round " << round;
    }
    EXPECT_EQ(ScreenTexts(h), ExpectedTexts(h)) << "round " << round;
    h.ExpectConsistentLayout();
    if (HasFailure()) return;
  }
}

TEST(ReuseListDiffTest, EmptyingAndRefillingTheListByDiffs) {
  ListHarness<> h(PlainRows(5));
  h.list->Reload(ChatReuseListWidget::kStickToBottom, 0);
  DiffUpdate(h, [](auto& rows) { rows.SetRows({}); });
  EXPECT_EQ(h.list->TotalCount(), 0);
  EXPECT_EQ(h.list->ContentHeight(), 0);
  EXPECT_EQ(h.LiveVisibleWidgets(), 0);

  DiffUpdate(h, [](auto& rows) { rows.SetRows(PlainRows(3)); });
  EXPECT_EQ(h.list->TotalCount(), 3);
  EXPECT_EQ(ScreenTexts(h), QStringList({"row 0", "row 1", "row 2"}));
  h.ExpectConsistentLayout();

  // A row whose widget comes back null keeps its space.
  DiffUpdate(h, [](auto& rows) {
    rows.InsertRow(1, PlainRow("broken", "never drawn"));
    rows.SetNullRows({1});
  });
  EXPECT_EQ(h.TextAt(h.MiddleOf(0)), "row 0");
  EXPECT_EQ(h.TextAt(h.MiddleOf(1)), "");
  EXPECT_EQ(h.TextAt(h.MiddleOf(2)), "row 1");
  h.delegate->SetNullRows({});
  DiffUpdate(h, [](auto& rows) { rows.RemoveRow(1); });

  // Indices out of range are ignored.
  QFDiffResult bad;
  bad.AddDelete(-4);
  bad.AddDelete(77);
  bad.AddUpdate(12);
  bad.AddMove(99, 1);
  h.list->DiffUpdate(bad);
  EXPECT_EQ(h.list->TotalCount(), 3);
  EXPECT_EQ(ScreenTexts(h), QStringList({"row 0", "row 1", "row 2"}));
}

}  // namespace
}  // namespace reuselist_test
