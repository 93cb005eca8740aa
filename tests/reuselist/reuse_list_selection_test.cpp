#include <QCursor>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTimer>

#include "list_fixture.h"
#include "support/test_util.h"

namespace reuselist_test {
namespace {

// The pointer as a user moves it with the left button held: the cursor goes
// along, since the list reads it back while it scrolls.
struct Pointer {
  explicit Pointer(QWidget* viewport) : viewport(viewport) {}
  void Press(QPoint pos) {
    QCursor::setPos(viewport->mapToGlobal(pos));
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, pos);
  }
  void Move(QPoint pos, Qt::MouseButtons buttons = Qt::LeftButton) {
    QCursor::setPos(viewport->mapToGlobal(pos));
    QMouseEvent event(QEvent::MouseMove, pos, viewport->mapToGlobal(pos), Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
  }
  void Release(QPoint pos) { QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, pos); }
  QPoint At() const { return viewport->mapFromGlobal(QCursor::pos()); }
  QWidget* viewport;
};

QPoint Row(ListHarness<> const& h, int index) { return QPoint(40, h.MiddleOf(index)); }

std::vector<int> SelectedRows(ListHarness<> const& h) {
  std::vector<int> rows;
  h.list->GetSelectionVecIndex(&rows);
  std::sort(rows.begin(), rows.end());
  return rows;
}

bool AutoScrolling(ChatReuseListWidget* list) {
  for (QTimer* timer : list->findChildren<QTimer*>()) {
    if (timer->isActive() && timer->interval() == 10) return true;
  }
  return false;
}

TEST(ReuseListSelectionTest, ADragSelectsTheRowsBetweenPressAndPointerWithTheirRecords) {
  QVector<SampleRow> rows = PlainRows(60);
  rows[3].kind = SampleRow::kTimeTip;  // can't be selected
  rows[3].text = "11:05";
  ListHarness<> h(rows);
  h.list->Reload(0, 0);
  h.list->SetSelectionEnabled(true);
  QSignalSpy changed(h.list.get(), &ChatReuseListWidget::OnSelectionChanged);
  Pointer pointer(h.list->viewport());

  const QPoint press = Row(h, 2);
  pointer.Press(press);
  EXPECT_EQ(h.list->SelectionState(), ChatReuseListWidget::kSelectionPressed);
  pointer.Move(Row(h, 4));
  EXPECT_EQ(h.list->SelectionState(), ChatReuseListWidget::kSelectionDragging);
  const QPoint end = Row(h, 5);
  pointer.Move(end);
  pointer.Release(end);
  EXPECT_EQ(h.list->SelectionState(), ChatReuseListWidget::kSelectionFinished);
  EXPECT_GE(changed.count(), 2);

  EXPECT_EQ(SelectedRows(h), std::vector<int>({2, 4, 5}));
  // The end rows carry the points in screen terms; the rows between are whole.
  const QPoint press_global = h.list->viewport()->mapToGlobal(press);
  const QPoint end_global = h.list->viewport()->mapToGlobal(end);
  Variant anchor = h.list->ItemSelectionRecord(2);
  EXPECT_TRUE(anchor.GetBoolean("is_first") && anchor.GetBoolean("is_down"));
  EXPECT_EQ(QPoint(anchor.GetInt32("p_x"), anchor.GetInt32("p_y")), press_global);
  EXPECT_FALSE(anchor.GetBoolean("select_all", true));
  EXPECT_TRUE(h.list->ItemSelectionRecord(4).GetBoolean("select_all"));
  EXPECT_FALSE(h.list->ItemSelectionRecord(4).Has("is_first"));
  Variant last = h.list->ItemSelectionRecord(5);
  EXPECT_FALSE(last.GetBoolean("select_all", true));
  EXPECT_EQ(QPoint(last.GetInt32("m_x"), last.GetInt32("m_y")), end_global);
  EXPECT_TRUE(h.list->ItemSelectionRecord(3).IsNull());
  EXPECT_TRUE(h.list->ItemSelectionRecord(6).IsNull());
  EXPECT_TRUE(h.RowAt(h.MiddleOf(4))->ShowsSelection());
  EXPECT_FALSE(h.RowAt(h.MiddleOf(1))->ShowsSelection());
  EXPECT_EQ(h.delegate->Selection().value("k5"), last);
}

TEST(ReuseListSelectionTest, DraggingBackPastTheAnchorFlipsTheDirectionAndDropsRowsLeftBehind) {
  ListHarness<> h(PlainRows(60));
  h.list->Reload(0, 0);
  h.list->SetSelectionEnabled(true);
  Pointer pointer(h.list->viewport());
  pointer.Press(Row(h, 4));
  pointer.Move(Row(h, 5));
  EXPECT_EQ(SelectedRows(h), std::vector<int>({4, 5}));
  pointer.Move(Row(h, 1));
  pointer.Release(Row(h, 1));

  EXPECT_EQ(SelectedRows(h), std::vector<int>({1, 2, 3, 4}));
  auto const& unselected = h.delegate->counters().unselected_rows;
  EXPECT_NE(std::find(unselected.begin(), unselected.end(), 5), unselected.end());
  EXPECT_FALSE(h.list->ItemSelectionRecord(1).GetBoolean("is_down", true));
  // The anchor keeps its press point and is an end row again.
  EXPECT_TRUE(h.list->ItemSelectionRecord(4).GetBoolean("is_first"));
  EXPECT_FALSE(h.list->ItemSelectionRecord(4).GetBoolean("select_all", true));
  EXPECT_TRUE(h.list->ItemSelectionRecord(2).GetBoolean("select_all"));
  EXPECT_FALSE(h.RowAt(h.MiddleOf(5))->ShowsSelection());
}

TEST(ReuseListSelectionTest, AClickAScrollBarPressOrAScrollClearsAFinishedSelection) {
  ListHarness<> h(PlainRows(60));
  h.list->Reload(0, 0);
  h.list->SetSelectionEnabled(true);
  Pointer pointer(h.list->viewport());
  auto drag = [&] {
    pointer.Press(Row(h, 1));
    pointer.Move(Row(h, 3));
    pointer.Release(Row(h, 3));
    ASSERT_TRUE(h.list->HasSelection());
  };

  drag();
  pointer.Press(Row(h, 2));
  pointer.Release(Row(h, 2));
  EXPECT_FALSE(h.list->HasSelection());
  EXPECT_EQ(h.list->SelectionState(), ChatReuseListWidget::kSelectionIdle);
  EXPECT_TRUE(h.delegate->Selection().isEmpty());
  EXPECT_FALSE(h.RowAt(h.MiddleOf(2))->ShowsSelection());

  drag();
  QTest::mousePress(h.bar(), Qt::LeftButton, Qt::NoModifier, QPoint(h.bar()->width() / 2, h.bar()->height() - 5));
  QTest::mouseRelease(h.bar(), Qt::LeftButton, Qt::NoModifier, QPoint(h.bar()->width() / 2, h.bar()->height() - 5));
  EXPECT_FALSE(h.list->HasSelection());

  h.bar()->setValue(0);
  drag();
  h.Wheel(-120, pointer.At());
  EXPECT_GT(h.bar()->value(), 0);
  EXPECT_FALSE(h.list->HasSelection());
  EXPECT_EQ(h.list->SelectionState(), ChatReuseListWidget::kSelectionFinished);

  // With selection off, a drag selects nothing.
  h.list->SetSelectionEnabled(false);
  const int calls = h.delegate->counters().selected_calls;
  pointer.Press(Row(h, 4));
  pointer.Move(Row(h, 6));
  pointer.Release(Row(h, 6));
  EXPECT_FALSE(h.list->HasSelection());
  EXPECT_EQ(h.delegate->counters().selected_calls, calls);
}

TEST(ReuseListSelectionTest, ADragLeavingTheListScrollsItInStepsOfFiveAndTheSelectionFollows) {
  ListHarness<> h(PlainRows(100));
  h.list->Reload(0, 0);
  h.list->SetSelectionEnabled(true);
  Pointer pointer(h.list->viewport());
  pointer.Press(Row(h, 1));
  pointer.Move(QPoint(40, h.ViewHeight() + 30));
  EXPECT_TRUE(AutoScrolling(h.list.get()));

  std::vector<int> seen;
  ASSERT_TRUE(talvex_test::WaitUntil([&] {
    seen.push_back(h.bar()->value());
    return h.bar()->value() >= 300;
  }));
  for (int value : seen) EXPECT_EQ(value % 5, 0) << value;
  // The selection runs from the anchor to the row at the bottom edge.
  const std::vector<int> rows = SelectedRows(h);
  ASSERT_FALSE(rows.empty());
  EXPECT_EQ(rows.front(), 1);
  EXPECT_EQ(rows.back(), h.list->IndexForPosition(h.bar()->value() + h.ViewHeight()));
  EXPECT_EQ(static_cast<int>(rows.size()), rows.back());

  // Back inside the list: the scrolling stops.
  pointer.Move(Row(h, h.list->StartIndex() + 2));
  EXPECT_FALSE(AutoScrolling(h.list.get()));
  const int value = h.bar()->value();

  // Above the list, it runs up to the top and stops there by itself.
  pointer.Move(QPoint(40, -20));
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return h.bar()->value() == 0 && !AutoScrolling(h.list.get()); }));
  EXPECT_LT(0, value);
  EXPECT_EQ(SelectedRows(h), std::vector<int>({0, 1}));
  pointer.Release(QPoint(40, -20));
  EXPECT_EQ(h.list->SelectionState(), ChatReuseListWidget::kSelectionFinished);
  EXPECT_TRUE(h.list->HasSelection());

  // A release outside the list ends the scrolling too.
  pointer.Press(Row(h, 2));
  pointer.Move(QPoint(40, h.ViewHeight() + 10));
  ASSERT_TRUE(AutoScrolling(h.list.get()));
  pointer.Release(QPoint(40, h.ViewHeight() + 10));
  EXPECT_FALSE(AutoScrolling(h.list.get()));
  EXPECT_TRUE(h.list->HasSelection());
}

TEST(ReuseListSelectionTest, ASelectedRowScrolledAwayAndBackShowsItsSelectionAgain) {
  ListHarness<> h(PlainRows(200));
  h.list->Reload(0, 0);
  h.list->SetSelectionEnabled(true);
  Pointer pointer(h.list->viewport());
  pointer.Press(Row(h, 1));
  pointer.Move(Row(h, 3));
  ASSERT_EQ(SelectedRows(h), std::vector<int>({1, 2, 3}));
  const int pointer_y = h.MiddleOf(3);

  // With the button held, the wheel takes the rows far away and back.
  for (int i = 0; i < 10; ++i) h.Wheel(-120, pointer.At(), Qt::LeftButton);
  ASSERT_GT(h.list->StartIndex(), 4);
  for (auto* w : h.list->ContentWidget()->findChildren<SampleRowWidget*>()) {
    if (!w->isVisible()) continue;
    // Every row on screen lies between the anchor and the pointer now.
    EXPECT_EQ(w->ShowsSelection(), w->BoundIndex() <= h.list->IndexForPosition(h.bar()->value() + pointer_y))
        << "row " << w->BoundIndex();
  }
  for (int i = 0; i < 10; ++i) h.Wheel(120, pointer.At(), Qt::LeftButton);
  ASSERT_EQ(h.bar()->value(), 0);
  EXPECT_EQ(SelectedRows(h), std::vector<int>({1, 2, 3}));
  SampleRowWidget* anchor = h.RowAt(h.MiddleOf(1));
  ASSERT_NE(anchor, nullptr);
  EXPECT_TRUE(anchor->ShowsSelection());
  EXPECT_TRUE(anchor->Selection().GetBoolean("is_first"));
  EXPECT_TRUE(h.RowAt(h.MiddleOf(2))->Selection().GetBoolean("select_all"));
  EXPECT_FALSE(h.RowAt(h.MiddleOf(4))->ShowsSelection());
  EXPECT_FALSE(h.RowAt(h.MiddleOf(0))->ShowsSelection());
  pointer.Release(Row(h, 3));
}

TEST(ReuseListSelectionTest, DeletingTheAnchorRowStopsTheSelectionUntilANewPress) {
  ListHarness<> h(PlainRows(60));
  h.list->Reload(0, 0);
  h.list->SetSelectionEnabled(true);
  Pointer pointer(h.list->viewport());
  pointer.Press(Row(h, 2));
  pointer.Move(Row(h, 4));
  ASSERT_EQ(SelectedRows(h), std::vector<int>({2, 3, 4}));

  QFDiffResult diff;
  diff.AddDelete(2);
  h.delegate->RemoveRow(2);
  h.list->DiffUpdate(diff);
  const int calls = h.delegate->counters().selected_calls;
  pointer.Move(Row(h, 6));
  pointer.Move(Row(h, 7));
  EXPECT_EQ(h.delegate->counters().selected_calls, calls);
  pointer.Release(Row(h, 7));
  // The rows that are left keep what they had; the gone key counts for nothing.
  EXPECT_EQ(SelectedRows(h), std::vector<int>({2, 3}));

  pointer.Press(Row(h, 1));
  pointer.Move(Row(h, 3));
  pointer.Release(Row(h, 3));
  EXPECT_GT(h.delegate->counters().selected_calls, calls);
  EXPECT_EQ(SelectedRows(h), std::vector<int>({1, 2, 3}));
  EXPECT_EQ(h.delegate->Selection().keys(), QStringList({"k1", "k3", "k4"}));
}

}  // namespace
}  // namespace reuselist_test
