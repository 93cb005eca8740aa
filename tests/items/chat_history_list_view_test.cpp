// The chat panel's list view over the simulated meeting: batching, the
// reading position, rows refreshed in place, unread tip, copy.
#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QMenu>
#include <QMimeData>
#include <QImage>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <algorithm>

#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/view/chat/chat_image_item.h"
#include "chat/ui/desktop/view/chat/image_browser.h"
#include "chat/ui/desktop/view/chat/chat_open_app_item.h"
#include "chat/ui/desktop/view/chat/chat_text_item.h"
#include "chat/ui/desktop/view/chat/text_browser.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/journal/host_journal.h"
#include "framework/module/providers.h"
#include "items_fixture.h"

namespace items_test {
namespace {

class HistoryListViewTest : public MeetingTest {
 protected:
  void SetUp() override {
    MeetingTest::SetUp();
    runtime_.Activate();
  }

  void TearDown() override {
    if (view_) view_->Dispose();
    view_.reset();
    window_.reset();
    runtime_.Unactivate();
    MeetingTest::TearDown();
  }

  // The panel as the client shows it: the module's view model, the view in a window.
  void Open() {
    auto model = std::dynamic_pointer_cast<framework::StatefulViewModel>(
        runtime_.GetViewModelProvider()->CreateViewModel(chat::kViewModelPanelHistoryList));
    ASSERT_NE(model, nullptr);
    view_ = std::make_shared<QtView::ChattingPanelShowView>();
    view_->SetViewModel(model);
    window_ = std::make_unique<QWidget>();
    window_->resize(360, 480);
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(0, 0, 0, 0);
    Variant params(base::variant::kVariantTypeMap);
    ASSERT_TRUE(view_->Build(std::weak_ptr<AppBaseView>(), window_.get(), &params, true));
    layout->addWidget(view_->frame());
    window_->show();
    ASSERT_TRUE(talvex_test::WaitUntil([this] { return !view_->MessageIds().empty() && Settled(view_.get()); }));
  }

  void WaitSettled() { ASSERT_TRUE(talvex_test::WaitUntil([this] { return Settled(view_.get()); })); }

  std::vector<std::string> Seed(int count) {
    std::vector<std::string> ids;
    for (int i = 0; i < count; ++i) {
      Variant record = sim::TextRecord(meeting_.meeting().meeting_id(), kAvery, "message " + std::to_string(i));
      record.Set("message_time", 1700000000 + 10 * i);
      ids.push_back(meeting_.messages().Post(record));
    }
    return ids;
  }

  std::string PostOwn(std::string const& text) {
    Variant record = sim::TextRecord(meeting_.meeting().meeting_id(), {"u-self", "Alex Morgan"}, text, true);
    record.Set("message_status", 2);
    return meeting_.messages().Post(record);
  }

  ChatTextItem* TextRow(std::string const& id) {
    ChatMessageWidget* row = view_->RowWidgetOf(id);
    return row ? qobject_cast<ChatTextItem*>(row->item()) : nullptr;
  }

  int IndexOf(std::string const& id) {
    const auto ids = view_->MessageIds();
    return static_cast<int>(std::find(ids.begin(), ids.end(), id) - ids.begin());
  }

  int RowHeightOf(std::string const& id) {
    return view_->list()->ItemHeightAt(view_->list()->IndexOfItemWidget(view_->RowWidgetOf(id)));
  }

  QPoint MiddleOfRow(int index) {
    ChatMessageListWidget* list = view_->list();
    return QPoint(150, list->ItemTopForIndex(index) - list->ScrollValue() + list->ItemHeightAt(index) / 2);
  }

  // A press and a drag with the button held; the cursor follows, as the list reads it back.
  void PressAndDrag(QPoint from, QPoint to) {
    QWidget* viewport = view_->list()->viewport();
    QCursor::setPos(viewport->mapToGlobal(from));
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, from);
    QCursor::setPos(viewport->mapToGlobal(to));
    QMouseEvent move(QEvent::MouseMove, to, viewport->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
  }

  chat::ChatModuleRuntime runtime_;
  std::shared_ptr<QtView::ChattingPanelShowView> view_;
  std::unique_ptr<QWidget> window_;
};

TEST_F(HistoryListViewTest, NewMessagesFollowTheBottomOnlyWhenTheReaderWasThere) {
  const auto ids = Seed(40);
  Open();
  ChatMessageListWidget* list = view_->list();
  EXPECT_TRUE(list->IsScrollBottom());
  EXPECT_TRUE(view_->empty_label()->isHidden());
  ASSERT_NE(TextRow(ids.back()), nullptr);
  EXPECT_EQ(TextRow(ids.back())->browser()->plain_text(), "message 39");
  EXPECT_EQ(view_->RowWidgetOf(ids.front()), nullptr) << "rows far above have no widget";
  EXPECT_EQ(RowHeightOf(ids.back()), view_->RowWidgetOf(ids.back())->sizeHint().height()) << "not the estimate";
  const std::string at_bottom = Post(kAvery, "while at the bottom");
  WaitSettled();
  EXPECT_TRUE(list->IsScrollBottom());
  EXPECT_NE(TextRow(at_bottom), nullptr);

  // The reader scrolls up to read: new messages must not move the text.
  list->SetVerticalScrollValue(list->ScrollValue() / 2);
  const int reading_at = list->ScrollValue();
  int offset = 0;
  const std::string first_id = view_->MessageIds()[list->GetFirstFullyVisibleItem(&offset)];
  const std::string later = Post(kAvery, "while reading");
  WaitSettled();
  EXPECT_EQ(list->ScrollValue(), reading_at);
  EXPECT_EQ(view_->RowWidgetOf(later), nullptr);
  EXPECT_EQ(view_->MessageIds()[list->GetFirstFullyVisibleItem(&offset)], first_id);
  EXPECT_FALSE(view_->unread_widget()->isHidden()) << "the unread button counts it";

  // Its press brings the reader down to the new message.
  emit view_->unread_widget()->Pressed();
  WaitSettled();
  EXPECT_TRUE(list->IsScrollBottom());
  EXPECT_NE(TextRow(later), nullptr);
}

TEST_F(HistoryListViewTest, ABurstCostsOneReloadAndAStatusChangeNone) {
  Seed(5);
  Open();
  int reloads = view_->reload_count();
  const int layouts = view_->layout_count();
  std::vector<std::string> sent;
  // One's own messages reach the view at once, each as its own update.
  for (int i = 0; i < 10; ++i) sent.push_back(PostOwn("burst " + std::to_string(i)));
  EXPECT_TRUE(view_->HasPendingUpdates());
  WaitSettled();
  EXPECT_EQ(view_->layout_count() - layouts, 1) << "one layout for the burst";
  EXPECT_EQ(view_->reload_count(), reloads) << "rows added at the end lay out only themselves";
  for (auto const& id : sent) EXPECT_LT(IndexOf(id), static_cast<int>(view_->MessageIds().size()));
  EXPECT_TRUE(view_->list()->IsScrollBottom());

  // The same kind of row is refreshed in place, and measured again.
  const std::string id = sent.back();
  ASSERT_NE(TextRow(id), nullptr);
  EXPECT_TRUE(TextRow(id)->tail_label()->isHidden());
  const int sent_height = RowHeightOf(id);
  reloads = view_->reload_count();
  ASSERT_TRUE(meeting_.messages().Update(id, [](Variant& record) { record.Set("message_status", 3); }));
  WaitSettled();
  EXPECT_EQ(view_->reload_count(), reloads);
  ASSERT_NE(TextRow(id), nullptr);
  EXPECT_FALSE(TextRow(id)->tail_label()->isHidden()) << "a failed send says so under the bubble";
  EXPECT_TRUE(TextRow(id)->IsStatusIconShown());
  EXPECT_GT(RowHeightOf(id), sent_height);
  EXPECT_EQ(RowHeightOf(id), view_->RowWidgetOf(id)->sizeHint().height());

  // A recall turns the message into a tip: another kind of row, so a reload.
  ASSERT_TRUE(meeting_.messages().Revoke(id));
  WaitSettled();
  EXPECT_GT(view_->reload_count(), reloads);
  EXPECT_EQ(TextRow(id), nullptr);
  EXPECT_NE(view_->RowWidgetOf(id), nullptr);
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
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return view_->MessageIds().size() > first_page && Settled(view_.get()); }));
  int offset = 0;
  const int now = list->GetFirstFullyVisibleItem(&offset);
  EXPECT_GT(now, anchor) << "older rows came in above";
  EXPECT_EQ(view_->MessageIds()[now], anchor_id);
  EXPECT_EQ(offset, anchor_offset);
}

TEST_F(HistoryListViewTest, CopyingSelectedRowsPutsTextAndHtmlOnTheClipboard) {
  Seed(2);
  const std::string a = Post(kAvery, "first <line>");
  const std::string b = Post(kAvery, "second & last");
  Open();
  QWidget* viewport = view_->list()->viewport();
  PressAndDrag(MiddleOfRow(IndexOf(a)), MiddleOfRow(IndexOf(b)));
  QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, MiddleOfRow(IndexOf(b)));
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
  emit view_->RowWidgetOf(view_->MessageIds()[IndexOf(a) - 1])->ContextMenuRequested(menu);
  EXPECT_FALSE(view_->list()->HasSelection());

  // Text selected within one row copies as that text alone.
  const QPoint left(2, MiddleOfRow(IndexOf(b)).y()), right(350, left.y());
  PressAndDrag(left, right);
  QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, right);
  QApplication::clipboard()->clear();
  view_->CopySelection();
  EXPECT_EQ(QApplication::clipboard()->text(), "second & last");
}

TEST_F(HistoryListViewTest, ARightClickOpensTheMessagesMenuAndItsItemsRun) {
  Seed(1);
  const std::string own = PostOwn("my point");
  Open();
  Variant request = Variant::Map{{"from_more", false}};
  emit view_->RowWidgetOf(own)->ContextMenuRequested(request);
  QMenu* menu = view_->last_menu();
  ASSERT_NE(menu, nullptr);
  QStringList titles;
  for (QAction* action : menu->actions()) titles << action->text();
  EXPECT_EQ(titles, (QStringList{"Copy", "Delete"})) << "a message still arriving is not recalled";
  menu->actions()[1]->trigger();
  auto* ui = static_cast<framework::RecordingUIService*>(framework::GetUIService());
  ASSERT_NE(ui->LastOpenAlert(), nullptr) << "delete asks first";
  ui->Answer(ui->LastOpenAlert()->id, framework::kAlertButtonPositive);
  EXPECT_EQ(meeting_.messages().FindMessage(own)->GetInt32("message_status"), 4);
  // A target the client doesn't know: said so, and no menu.
  talvex_test::LogCapture log;
  view_->ShowMessageMenu(own, 9);
  EXPECT_TRUE(log.Contains("no menu manager for target 9"));
}

// A picture one sent, as the meeting gives it back: the sender's own file.
TEST_F(HistoryListViewTest, PicturesOnScreenKeepTheirRowsWhenTheListIsMeasuredAgain) {
  Seed(3);
  QTemporaryDir dir;
  std::vector<std::string> pictures;
  for (QColor color : {QColor(Qt::red), QColor(Qt::blue)}) {
    QImage image(320, 200, QImage::Format_RGB32);
    image.fill(color);
    const QString path = dir.filePath(color.name().mid(1) + ".png");
    ASSERT_TRUE(image.save(path));
    Variant element(base::variant::kVariantTypeMap);
    element.Set("image_elem_orig_path", path.toStdString());
    Variant content(base::variant::kVariantTypeArray);
    content.Add(element);
    pictures.push_back(meeting_.messages().Post(
        sim::ChatRecord(meeting_.meeting().meeting_id(), {"u-self", "Alex Morgan"}, 4, content, true)));
  }
  PostOwn("under the pictures");
  Open();
  auto browser = [this](std::string const& id) -> ImageBrowser* {
    ChatMessageWidget* row = view_->RowWidgetOf(id);
    auto* item = row ? qobject_cast<ChatImageItem*>(row->item()) : nullptr;
    return item ? item->browser() : nullptr;
  };
  auto loaded = [&](std::string const& id) { return browser(id) && browser(id)->is_image_loaded(); };
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return loaded(pictures[0]) && loaded(pictures[1]) && Settled(view_.get()); }));
  ChatMessageWidget* first = view_->RowWidgetOf(pictures[0]);
  ChatMessageWidget* second = view_->RowWidgetOf(pictures[1]);

  // What every re-measure does: the rows on screen laid out again.
  talvex_test::LogCapture log;
  const int reloads = view_->reload_count();
  view_->list()->ReloadItems({IndexOf(pictures[0]), IndexOf(pictures[1])});
  EXPECT_EQ(view_->RowWidgetOf(pictures[0]), first) << "each message keeps its widget";
  EXPECT_EQ(view_->RowWidgetOf(pictures[1]), second);
  EXPECT_TRUE(loaded(pictures[0]) && loaded(pictures[1])) << "no placeholder in between";
  talvex_test::SpinFor(300);
  EXPECT_FALSE(log.Contains("image changed")) << "no picture decoded for a row that moved on";
  EXPECT_EQ(view_->reload_count(), reloads);
  EXPECT_TRUE(Settled(view_.get()));
  EXPECT_TRUE(view_->list()->IsScrollBottom());
}

TEST_F(HistoryListViewTest, CtrlASelectsEveryMessageAndCtrlCCopiesThem) {
  const auto ids = Seed(30);
  Open();
  QApplication::setActiveWindow(window_.get());
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  ChatMessageListWidget* list = view_->list();
  list->setFocus();
  QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
  std::vector<int> selected;
  list->GetSelectionVecIndex(&selected);
  EXPECT_EQ(selected.size(), view_->MessageIds().size());
  ASSERT_NE(TextRow(ids.back()), nullptr);
  EXPECT_TRUE(TextRow(ids.back())->is_selected()) << "the rows on screen show it";

  // Scrolling through keeps it; rows coming into view show it too.
  list->SetVerticalScrollValue(0);
  ASSERT_NE(TextRow(ids.front()), nullptr);
  EXPECT_TRUE(TextRow(ids.front())->is_selected());
  QApplication::clipboard()->clear();
  QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
  const QString copied = QApplication::clipboard()->text();
  EXPECT_TRUE(copied.contains("message 0\n")) << copied.toStdString();
  EXPECT_TRUE(copied.contains("message 29\n"));
}

TEST_F(HistoryListViewTest, ANarrowerPanelWrapsRowsAgainAndStaysAtTheBottom) {
  Seed(20);
  const std::string long_id =
      Post(kAvery, "A longer message that wraps onto more lines when the panel gets narrower than it was");
  Open();
  ChatMessageListWidget* list = view_->list();
  ASSERT_NE(view_->RowWidgetOf(long_id), nullptr);
  const int wide_height = RowHeightOf(long_id);
  window_->resize(260, window_->height());
  ASSERT_TRUE(talvex_test::WaitUntil([&] {
    ChatMessageWidget* now = view_->RowWidgetOf(long_id);
    return now && now->width() == list->viewport()->width() && Settled(view_.get());
  }));
  QCoreApplication::processEvents();
  const int narrow_height = RowHeightOf(long_id);
  EXPECT_GT(narrow_height, wide_height);
  EXPECT_EQ(narrow_height, view_->RowWidgetOf(long_id)->sizeHint().height());
  EXPECT_EQ(view_->ItemHeightAtIndex(list, IndexOf(long_id)), narrow_height)
      << "a reload keeps the height measured at this width";
  EXPECT_TRUE(list->IsScrollBottom());
}

TEST_F(HistoryListViewTest, AClickOnACardOpensItsAppThroughTheRowsViewModel) {
  Seed(3);
  Variant ext(base::variant::kVariantTypeMap);
  ext.Set("title", "Shop");
  ext.Set("card_layout_type", 2);
  ext.Set("app_info", R"({"name":"Shop","icon":"/i/s.png","open_app_id":"77","ext_data":{"goods_name":"Mug"}})");
  const std::string id =
      meeting_.messages().Post(sim::ChatRecord(meeting_.meeting().meeting_id(), kAvery, 7, Variant(), false, ext));
  Open();
  ASSERT_NE(view_->RowWidgetOf(id), nullptr);
  auto* item = qobject_cast<ChatOpenAppItem*>(view_->RowWidgetOf(id)->item());
  ASSERT_NE(item, nullptr);
  ASSERT_EQ(item->card()->objectName(), "CommonGoodCard_FlexBox") << "the meeting configures the goods layout";

  framework::HostJournal::Clear();
  QTest::mouseClick(item->card(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
  EXPECT_EQ(framework::HostJournal::Entries("sidebar.OpenApp 77").size(), 1u);
}

TEST_F(HistoryListViewTest, ASelectedTextRowScrolledAwayAndBackShowsItsSelectionAgain) {
  const auto ids = Seed(40);
  Open();
  const std::string a = ids[ids.size() - 3];
  const std::string b = ids[ids.size() - 2];
  QWidget* viewport = view_->list()->viewport();
  auto text_line = [this, viewport](std::string const& id, int x) {
    RichTextLabel* label = TextRow(id)->browser()->label();
    return QPoint(x, viewport->mapFromGlobal(label->mapToGlobal(label->rect().center())).y());
  };
  // From the left of the first row's text to the right of the second's.
  const QPoint pointer = text_line(b, 350);
  PressAndDrag(text_line(a, 2), pointer);
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
  ASSERT_NE(TextRow(ids.back()), nullptr);
  EXPECT_FALSE(TextRow(ids.back())->is_selected()) << "rows the pointer passed on the way hold no selection now";
  QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, pointer);
}

}  // namespace
}  // namespace items_test
