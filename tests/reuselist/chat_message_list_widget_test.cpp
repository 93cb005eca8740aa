#include <QSignalSpy>

#include "chat/ui/desktop/view/list/chat_message_list_widget.h"
#include "list_fixture.h"

namespace reuselist_test {
namespace {

using Estimate = SampleTextListDelegate::Estimate;
using MessageList = ListHarness<ChatMessageListWidget>;

int LastRowBottomOnScreen(MessageList const& h) {
  const int last = h.list->TotalCount() - 1;
  return h.list->ItemTopForIndex(last) + h.list->ItemHeightAt(last) - h.bar()->value();
}

TEST(ChatMessageListWidgetTest, TheHistoryOpensAndStaysAtTheBottomAboveItsBottomMargin) {
  MessageList h(devkit::MakeSampleRows(500), Estimate::kRough);
  QSignalSpy bottom(h.list.get(), &ChatMessageListWidget::ScrollToBottomSignal);
  h.list->Reload(ChatReuseListWidget::kStickToBottom, 0);
  EXPECT_TRUE(h.list->IsAtBottom());
  EXPECT_EQ(h.bar()->value(), h.bar()->maximum());
  EXPECT_GE(bottom.count(), 1);
  // The last message ends 24 px above the viewport's bottom edge.
  EXPECT_EQ(LastRowBottomOnScreen(h), h.ViewHeight() - 24);

  // New messages keep a reader at the bottom there.
  for (int i = 0; i < 5; ++i) {
    h.delegate->InsertRow(h.delegate->Rows().size(), PlainRow(QString("new%1").arg(i), LongText(10 + 15 * i)));
    h.list->Reload(ChatReuseListWidget::kStickToBottom, 0);
    EXPECT_EQ(h.bar()->value(), h.bar()->maximum()) << "message " << i;
    EXPECT_EQ(h.TextAt(h.ViewHeight() - 24 - 10), LongText(10 + 15 * i)) << "message " << i;
  }
  // Also when the message came while the list was hidden.
  h.list->hide();
  h.delegate->InsertRow(h.delegate->Rows().size(), PlainRow("late", "arrived while hidden"));
  h.list->Reload(ChatReuseListWidget::kStickToBottom, 0);
  h.list->show();
  QApplication::processEvents();
  EXPECT_EQ(h.bar()->value(), h.bar()->maximum());
  EXPECT_EQ(h.TextAt(h.ViewHeight() - 24 - 10), "arrived while hidden");
}

TEST(ChatMessageListWidgetTest, ScrollingTellsWhereTheReaderIsAndAResizeKeepsThePlace) {
  MessageList h(devkit::MakeSampleRows(300), Estimate::kRough);
  h.list->Reload(ChatReuseListWidget::kStickToBottom, 0);
  QSignalSpy bottom(h.list.get(), &ChatMessageListWidget::ScrollToBottomSignal);
  QSignalSpy moved(h.list.get(), &ChatMessageListWidget::ScrollPosChangedSignal);
  QSignalSpy top(h.list.get(), &ChatMessageListWidget::ScrollToTopSignal);
  h.Wheel(120);
  EXPECT_FALSE(h.list->IsAtBottom());
  EXPECT_GE(moved.count(), 1);
  EXPECT_EQ(bottom.count(), 0);
  h.bar()->setValue(0);
  EXPECT_EQ(top.count(), 1);
  h.bar()->setValue(h.bar()->maximum());
  EXPECT_EQ(bottom.count(), 1);

  // At the bottom a resize keeps the bottom in view ...
  for (int height : {250, 520}) {
    h.list->resize(320, height);
    QApplication::processEvents();
    EXPECT_EQ(h.bar()->value(), h.bar()->maximum()) << height;
  }
  h.ExpectConsistentLayout();
  // ... and a reader who scrolled up is not pulled down by one.
  h.bar()->setValue(h.bar()->maximum() / 3);
  const int value = h.bar()->value();
  h.list->resize(320, 300);
  QApplication::processEvents();
  EXPECT_EQ(h.bar()->value(), value);
}

TEST(ChatMessageListWidgetTest, JumpingToTheBottomThroughRowsNeverMeasuredLandsOnTheRealBottom) {
  MessageList h(devkit::MakeSampleRows(300), Estimate::kRough);
  h.list->Reload(0, 0);
  const int estimated_max = h.bar()->maximum();
  QSignalSpy bottom(h.list.get(), &ChatMessageListWidget::ScrollToBottomSignal);
  h.bar()->setValue(h.bar()->maximum());
  // The sample's estimates are short of the laid-out heights: the content grew.
  EXPECT_GT(h.bar()->maximum(), estimated_max);
  EXPECT_TRUE(h.list->IsAtBottom());
  EXPECT_EQ(h.bar()->value(), h.bar()->maximum());
  EXPECT_EQ(LastRowBottomOnScreen(h), h.ViewHeight() - 24);
  EXPECT_EQ(bottom.count(), 1);
  h.ExpectConsistentLayout();
}

}  // namespace
}  // namespace reuselist_test
