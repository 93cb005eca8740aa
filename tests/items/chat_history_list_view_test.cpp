// The chat panel's list view over the simulated meeting: batching, the
// reading position, rows refreshed in place, unread tip, copy.
#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QTest>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>

#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/extension/chatting_panel_show_view.h"
#include "chat/ui/desktop/view/chat/chat_message_widget.h"
#include "chat/ui/desktop/view/chat/chat_open_app_item.h"
#include "chat/ui/desktop/view/chat/chat_text_item.h"
#include "chat/ui/desktop/view/chat/text_browser.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "chat/viewmodel/chat_panel_history_list_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/journal/host_journal.h"
#include "framework/module/providers.h"
#include "framework/ui/ui_service.h"
#include "items_fixture.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace items_test {
namespace {

const sim::Sender kAvery{"u-avery", "Avery Quinn"};
const sim::Sender kSelf{"u-self", "Alex Morgan"};
constexpr char kMeeting[] = "801234567";

class HistoryListViewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    InitChatResources();
    talvex_test::IsolateUserDirectories();
    ui_ = std::make_shared<framework::RecordingUIService>();
    framework::SetUIService(ui_);
    meeting_.Install();
    meeting_.meeting().Join();
    runtime_.Activate();
  }

  void TearDown() override {
    if (view_) view_->Dispose();
    view_.reset();
    window_.reset();
    runtime_.Unactivate();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
  }

  // The panel as the client shows it: the view model from the module's
  // provider, the view built into a window.
  void Open(int height = 480) {
    auto model = std::dynamic_pointer_cast<framework::StatefulViewModel>(
        runtime_.GetViewModelProvider()->CreateViewModel(chat::kViewModelPanelHistoryList));
    ASSERT_NE(model, nullptr);
    view_ = std::make_shared<QtView::ChattingPanelShowView>();
    view_->SetViewModel(model);
    window_ = std::make_unique<QWidget>();
    window_->resize(360, height);
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(0, 0, 0, 0);
    Variant params(base::variant::kVariantTypeMap);
    ASSERT_TRUE(view_->Build(std::weak_ptr<AppBaseView>(), window_.get(), &params, true));
    layout->addWidget(view_->frame());
    window_->show();
    ASSERT_TRUE(talvex_test::WaitUntil([this] { return !view_->MessageIds().empty() && Settled(); }));
  }

  bool Settled() const {
    auto* panel = static_cast<chat::ChatPanelHistoryListViewModel*>(view_->view_model().get());
    return !view_->HasPendingUpdates() && !panel->flush_pending() && !panel->is_getting_more();
  }

  void WaitSettled() { ASSERT_TRUE(talvex_test::WaitUntil([this] { return Settled(); })); }

  std::vector<std::string> Seed(int count) {
    std::vector<std::string> ids;
    for (int i = 0; i < count; ++i) {
      Variant record = sim::TextRecord(kMeeting, kAvery, "message " + std::to_string(i));
      record.Set("message_time", 1700000000 + 10 * i);
      ids.push_back(meeting_.messages().Post(record));
    }
    return ids;
  }

  std::string PostOwn(std::string const& text, int status = 2) {
    Variant record = sim::TextRecord(kMeeting, kSelf, text, true);
    record.Set("message_status", status);
    return meeting_.messages().Post(record);
  }

  ChatTextItem* TextRow(std::string const& id) {
    ChatMessageWidget* row = view_->RowWidgetOf(id);
    return row ? qobject_cast<ChatTextItem*>(row->item()) : nullptr;
  }

  QPoint MiddleOfRow(int index) {
    ChatMessageListWidget* list = view_->list();
    return QPoint(150, list->ItemTopForIndex(index) - list->ScrollValue() + list->ItemHeightAt(index) / 2);
  }

  // Presses in the list and drags to `to` with the button held, the cursor
  // following, as a reader selecting text does.
  void PressAndDrag(QPoint from, QPoint to) {
    QWidget* viewport = view_->list()->viewport();
    QCursor::setPos(viewport->mapToGlobal(from));
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, from);
    QCursor::setPos(viewport->mapToGlobal(to));
    QMouseEvent move(QEvent::MouseMove, to, viewport->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
  }

  sim::MeetingSimulator meeting_;
  chat::ChatModuleRuntime runtime_;
  std::shared_ptr<framework::RecordingUIService> ui_;
  std::shared_ptr<QtView::ChattingPanelShowView> view_;
  std::unique_ptr<QWidget> window_;
};

TEST_F(HistoryListViewTest, OpensAtTheBottomWithRowsBoundToTheirMessages) {
  const auto ids = Seed(30);
  Open();
  ChatMessageListWidget* list = view_->list();
  EXPECT_TRUE(list->IsScrollBottom());
  EXPECT_TRUE(view_->empty_label()->isHidden());
  ChatTextItem* last = TextRow(ids.back());
  ASSERT_NE(last, nullptr) << "the newest message is on screen";
  EXPECT_EQ(last->browser()->plain_text(), "message 29");
  EXPECT_EQ(view_->RowWidgetOf(ids.front()), nullptr) << "rows far above have no widget";
  // Rows are laid out at their own height, not the estimate.
  const int index = list->IndexOfItemWidget(view_->RowWidgetOf(ids.back()));
  EXPECT_EQ(list->ItemHeightAt(index), view_->RowWidgetOf(ids.back())->sizeHint().height());
  EXPECT_EQ(view_->ItemHeightAtIndex(list, -1), 0);
  EXPECT_EQ(view_->ItemWidgetAtIndex(list, 10000), nullptr);
}

TEST_F(HistoryListViewTest, ABurstOfMessagesCostsOneReload) {
  Seed(5);
  Open();
  const int before = view_->reload_count();
  std::vector<std::string> sent;
  // One's own messages reach the view at once, each as its own update.
  for (int i = 0; i < 10; ++i) sent.push_back(PostOwn("burst " + std::to_string(i)));
  EXPECT_TRUE(view_->HasPendingUpdates());
  WaitSettled();
  EXPECT_EQ(view_->reload_count() - before, 1);
  const auto ids = view_->MessageIds();
  for (auto const& id : sent) EXPECT_NE(std::find(ids.begin(), ids.end(), id), ids.end());
  EXPECT_TRUE(view_->list()->IsScrollBottom());
  ASSERT_NE(TextRow(sent.back()), nullptr);
  EXPECT_TRUE(TextRow(sent.back())->is_from_self());
}

TEST_F(HistoryListViewTest, NewMessagesFollowTheBottomOnlyWhenTheReaderWasThere) {
  Seed(40);
  Open();
  ChatMessageListWidget* list = view_->list();
  const std::string at_bottom = meeting_.messages().Post(sim::TextRecord(kMeeting, kAvery, "while at the bottom"));
  WaitSettled();
  EXPECT_TRUE(list->IsScrollBottom());
  EXPECT_NE(TextRow(at_bottom), nullptr);

  // The reader scrolls up to read: new messages must not move the text.
  list->SetVerticalScrollValue(list->ScrollValue() / 2);
  const int reading_at = list->ScrollValue();
  int offset = 0;
  const int first = list->GetFirstFullyVisibleItem(&offset);
  const std::string first_id = view_->MessageIds()[first];
  const std::string later = meeting_.messages().Post(sim::TextRecord(kMeeting, kAvery, "while reading"));
  WaitSettled();
  EXPECT_EQ(list->ScrollValue(), reading_at);
  EXPECT_FALSE(list->IsScrollBottom());
  EXPECT_EQ(view_->RowWidgetOf(later), nullptr);
  EXPECT_EQ(view_->MessageIds()[list->GetFirstFullyVisibleItem(&offset)], first_id);
  EXPECT_FALSE(view_->unread_widget()->isHidden()) << "the unread button counts it";
  EXPECT_FALSE(view_->unread_widget()->text_label()->text().isEmpty());

  // Its press brings the reader down to the new message.
  emit view_->unread_widget()->Pressed();
  WaitSettled();
  EXPECT_TRUE(list->IsScrollBottom());
  EXPECT_NE(TextRow(later), nullptr);
}

TEST_F(HistoryListViewTest, LoadingOlderMessagesKeepsTheFirstVisibleRowInPlace) {
  Seed(120);
  Open();
  ChatMessageListWidget* list = view_->list();
  const size_t first_page = view_->MessageIds().size();
  ASSERT_LT(first_page, 110u) << "the history opens with its newest page";
  list->SetVerticalScrollValue(0);
  int anchor_offset = 0;
  const int anchor = list->GetFirstFullyVisibleItem(&anchor_offset);
  ASSERT_GE(anchor, 0);
  const std::string anchor_id = view_->MessageIds()[anchor];
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return view_->MessageIds().size() > first_page && Settled(); }));
  int offset = 0;
  const int now = list->GetFirstFullyVisibleItem(&offset);
  ASSERT_GE(now, 0);
  EXPECT_GT(now, anchor) << "older rows came in above";
  EXPECT_EQ(view_->MessageIds()[now], anchor_id);
  EXPECT_EQ(offset, anchor_offset);
}

TEST_F(HistoryListViewTest, AStatusChangeRefreshesItsRowWithoutAReload) {
  Seed(3);
  Open();
  const std::string id = PostOwn("did it go?", 3);
  WaitSettled();
  ChatTextItem* row = TextRow(id);
  ASSERT_NE(row, nullptr);
  EXPECT_FALSE(row->tail_label()->isHidden()) << "a failed send says so under the bubble";
  EXPECT_TRUE(row->IsStatusIconShown());
  const int reloads = view_->reload_count();

  ASSERT_TRUE(meeting_.messages().Update(id, [](Variant& record) { record.Set("message_status", 2); }));
  WaitSettled();
  EXPECT_EQ(view_->reload_count(), reloads);
  ChatTextItem* now = TextRow(id);
  ASSERT_NE(now, nullptr);
  EXPECT_TRUE(now->tail_label()->isHidden());
  EXPECT_FALSE(now->IsStatusIconShown());
  // Without its tail the row is shorter, and the list measured it again.
  ChatMessageListWidget* list = view_->list();
  ChatMessageWidget* widget = view_->RowWidgetOf(id);
  EXPECT_EQ(list->ItemHeightAt(list->IndexOfItemWidget(widget)), widget->sizeHint().height());
  EXPECT_LT(widget->sizeHint().height(), 24 + 16 + 26 + now->browser()->sizeHint().height());

  // A recall turns the message into a tip: another kind of row, so a reload.
  ASSERT_TRUE(meeting_.messages().Revoke(id));
  WaitSettled();
  EXPECT_GT(view_->reload_count(), reloads);
  EXPECT_EQ(TextRow(id), nullptr);
  ASSERT_NE(view_->RowWidgetOf(id), nullptr);
}

TEST_F(HistoryListViewTest, CopyingSeveralRowsPutsTextAndHtmlOnTheClipboard) {
  Seed(2);
  const std::string a = meeting_.messages().Post(sim::TextRecord(kMeeting, kAvery, "first <line>"));
  const std::string b = meeting_.messages().Post(sim::TextRecord(kMeeting, kAvery, "second & last"));
  Open();
  const auto ids = view_->MessageIds();
  const int ia = static_cast<int>(std::find(ids.begin(), ids.end(), a) - ids.begin());
  const int ib = static_cast<int>(std::find(ids.begin(), ids.end(), b) - ids.begin());
  PressAndDrag(MiddleOfRow(ia), MiddleOfRow(ib));
  QTest::mouseRelease(view_->list()->viewport(), Qt::LeftButton, Qt::NoModifier, MiddleOfRow(ib));
  std::vector<int> selected;
  view_->list()->GetSelectionVecIndex(&selected);
  ASSERT_EQ(selected.size(), 2u);
  EXPECT_TRUE(TextRow(a)->is_selected());

  view_->CopySelection();
  QMimeData const* mime = QApplication::clipboard()->mimeData();
  ASSERT_NE(mime, nullptr);
  EXPECT_EQ(mime->text(), "Avery Quinn\nfirst <line>\n\nAvery Quinn\nsecond & last\n");
  EXPECT_EQ(mime->html(),
            "<html><body>Avery Quinn<br />first &lt;line&gt;<br /><br />Avery Quinn<br />second &amp; last<br />"
            "</body></html>");

  // A right click on a row outside the selection drops the selection.
  Variant menu(base::variant::kVariantTypeMap);
  menu.Set("from_more", false);
  emit view_->RowWidgetOf(ids[ia - 1])->ContextMenuRequested(menu);
  EXPECT_FALSE(view_->list()->HasSelection());
}

TEST_F(HistoryListViewTest, ANarrowerPanelWrapsRowsAgainAndStaysAtTheBottom) {
  Seed(20);
  const std::string long_id = meeting_.messages().Post(sim::TextRecord(
      kMeeting, kAvery, "A longer message that wraps onto more lines when the panel gets narrower than it was"));
  Open();
  ChatMessageListWidget* list = view_->list();
  ChatMessageWidget* row = view_->RowWidgetOf(long_id);
  ASSERT_NE(row, nullptr);
  const int wide_height = list->ItemHeightAt(list->IndexOfItemWidget(row));
  window_->resize(260, window_->height());
  ASSERT_TRUE(talvex_test::WaitUntil([&] {
    ChatMessageWidget* now = view_->RowWidgetOf(long_id);
    return now && now->width() == list->viewport()->width() && Settled();
  }));
  QCoreApplication::processEvents();
  row = view_->RowWidgetOf(long_id);
  const int narrow_height = list->ItemHeightAt(list->IndexOfItemWidget(row));
  EXPECT_GT(narrow_height, wide_height);
  EXPECT_EQ(narrow_height, row->sizeHint().height());
  EXPECT_EQ(view_->ItemHeightAtIndex(list, list->IndexOfItemWidget(row)), narrow_height)
      << "a reload keeps the height measured at this width";
  EXPECT_TRUE(list->IsScrollBottom());
}

TEST_F(HistoryListViewTest, AClickOnACardOpensItsAppThroughTheRowsViewModel) {
  Seed(3);
  Variant ext(base::variant::kVariantTypeMap);
  ext.Set("title", "Shop");
  ext.Set("card_layout_type", 2);
  ext.Set("app_info", R"({"name":"Shop","icon":"/i/s.png","open_app_id":"77","ext_data":{"goods_name":"Mug"}})");
  const std::string id = meeting_.messages().Post(sim::ChatRecord(kMeeting, kAvery, 7, Variant(), false, ext));
  Open();
  ChatMessageWidget* row = view_->RowWidgetOf(id);
  ASSERT_NE(row, nullptr);
  auto* item = qobject_cast<ChatOpenAppItem*>(row->item());
  ASSERT_NE(item, nullptr);
  ASSERT_EQ(item->card()->objectName(), "CommonGoodCard_FlexBox") << "the meeting configures the goods layout";
  EXPECT_EQ(view_->list()->ItemHeightAt(static_cast<int>(view_->MessageIds().size()) - 1), row->sizeHint().height());

  framework::HostJournal::Clear();
  QTest::mouseClick(item->card(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
  EXPECT_EQ(framework::HostJournal::Entries("sidebar.OpenApp 77").size(), 1u);
}

TEST_F(HistoryListViewTest, ASelectedTextRowScrolledAwayAndBackShowsItsSelectionAgain) {
  const auto ids = Seed(40);
  Open();
  const std::string a = ids[ids.size() - 3];
  const std::string b = ids[ids.size() - 2];
  auto index_of = [this](std::string const& id) {
    const auto shown = view_->MessageIds();
    return static_cast<int>(std::find(shown.begin(), shown.end(), id) - shown.begin());
  };
  QWidget* viewport = view_->list()->viewport();
  // From the left of the first row's text to the right of the second's.
  auto text_line = [this, viewport](std::string const& id, int x) {
    RichTextLabel* label = TextRow(id)->browser()->label();
    return QPoint(x, viewport->mapFromGlobal(label->mapToGlobal(label->rect().center())).y());
  };
  const QPoint press = text_line(a, 2);
  const QPoint pointer = text_line(b, 350);
  PressAndDrag(press, pointer);
  ASSERT_NE(TextRow(a), nullptr);
  const QString selected_a = TextRow(a)->browser()->label()->CopyContentSelection();
  const QString selected_b = TextRow(b)->browser()->label()->CopyContentSelection();
  ASSERT_EQ(selected_a.toStdString(), "message " + std::to_string(ids.size() - 3));
  ASSERT_EQ(selected_b.toStdString(), "message " + std::to_string(ids.size() - 2));

  // With the button still held, the wheel takes both rows out of view (their
  // widgets go back to the cache and show other messages), then back.
  auto wheel = [viewport, pointer](int delta) {
    QWheelEvent event(QPointF(pointer), QPointF(viewport->mapToGlobal(pointer)), QPoint(), QPoint(0, delta),
                      Qt::LeftButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewport, &event);
  };
  for (int steps = 0; TextRow(a) && steps < 40; ++steps) wheel(120);
  ASSERT_EQ(TextRow(a), nullptr) << "the row left the view";
  // Rows measured on the way up may have moved the bottom: wheel until it stops.
  for (int steps = 0, before = -1; view_->list()->ScrollValue() != before && steps < 80; ++steps) {
    before = view_->list()->ScrollValue();
    wheel(-120);
  }

  ChatTextItem* back = TextRow(a);
  ASSERT_NE(back, nullptr);
  EXPECT_TRUE(back->is_selected());
  EXPECT_EQ(back->browser()->label()->CopyContentSelection(), selected_a);
  EXPECT_EQ(TextRow(b)->browser()->label()->CopyContentSelection(), selected_b);
  ChatTextItem* below = TextRow(ids.back());
  ASSERT_NE(below, nullptr);
  EXPECT_FALSE(below->is_selected()) << "rows the pointer passed on the way hold no selection now";
  QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, pointer);
}

TEST_F(HistoryListViewTest, OneSelectedRowCopiesItsOwnText) {
  Seed(1);
  const std::string a = meeting_.messages().Post(sim::TextRecord(kMeeting, kAvery, "just this one"));
  Open();
  const auto ids = view_->MessageIds();
  const int ia = static_cast<int>(std::find(ids.begin(), ids.end(), a) - ids.begin());
  QWidget* viewport = view_->list()->viewport();
  const QPoint left(2, MiddleOfRow(ia).y());
  const QPoint right(350, MiddleOfRow(ia).y());
  PressAndDrag(left, right);
  QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, right);
  QApplication::clipboard()->clear();
  view_->CopySelection();
  EXPECT_EQ(QApplication::clipboard()->text(), "just this one");
}

}  // namespace
}  // namespace items_test
