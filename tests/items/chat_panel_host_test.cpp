// The chat panel as a client hosts it: the contribution point built from
// what the module registered, the scripted participants, and the text the
// view model gives for a copy of several messages.
#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <QTest>
#include <set>

#include "chat/runtime/chat_module_registration.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/controller/page_controller.h"
#include "chat/ui/desktop/view/chat_input/chat_input_view.h"
#include "chat/ui/desktop/view/chat/chat_file_item.h"
#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"
#include "chat/ui/desktop/view/file/file_preview_view.h"
#include "devkit/in_process_module.h"
#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "framework/chat/chat_utils.h"
#include "framework/extension/extension.h"
#include "framework/navigation/routing.h"
#include "items_fixture.h"
#include "sim/scripted_participants.h"
#include "uikit/extension/extension_host_widget.h"
#include "uikit/richedit/rich_edit.h"

namespace items_test {
namespace {

namespace reg = chat::registration;

class PanelHostTest : public MeetingTest {
 protected:
  void SetUp() override {
    MeetingTest::SetUp();
    module_ = std::make_unique<InProcessChatModule>();
    ASSERT_TRUE(module_->activated());
  }

  void TearDown() override {
    host_.reset();
    module_.reset();
    MeetingTest::TearDown();
  }

  // The client's chat point, built and shown.
  QtView::ChattingPanelShowView* ShowChatPoint() {
    host_ = std::make_unique<ExtensionHostWidget>("contributes:app.chat_full");
    host_->resize(380, 600);
    EXPECT_EQ(host_->Populate(), 2) << "the list and the input";
    host_->show();
    return View<QtView::ChattingPanelShowView>();
  }

  template <typename T>
  T* View() const {
    for (auto const& view : host_->views()) {
      if (auto* found = dynamic_cast<T*>(view.get())) return found;
    }
    return nullptr;
  }

  std::unique_ptr<InProcessChatModule> module_;
  std::unique_ptr<ExtensionHostWidget> host_;
};

// What a user types under the list goes out through the input's view model
// and the send model, and comes back into the list above it.
TEST_F(PanelHostTest, TheChatPointShowsTheHistoryAndSendsWhatIsTyped) {
  QtView::ChattingPanelShowView* panel = ShowChatPoint();
  ASSERT_NE(panel, nullptr);
  ASSERT_NE(dynamic_cast<chat::ChatPanelHistoryListViewModel*>(panel->view_model().get()), nullptr);
  EXPECT_EQ(panel->frame()->parentWidget(), host_.get());
  EXPECT_FALSE(panel->frame()->styleSheet().isEmpty()) << "the module's style sheet is applied";
  auto* input = View<QtView::ChatInputView>();
  ASSERT_TRUE(input && input->widget());
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Settled(panel); }));
  EXPECT_FALSE(panel->empty_label()->isHidden()) << "an empty chat says so";

  RichEdit* edit = input->widget()->edit();
  edit->setFocus();
  QTest::keyClicks(edit, "Can everyone see my screen?");
  QTest::keyClick(edit, Qt::Key_Return);
  std::string sent_id;
  ASSERT_TRUE(talvex_test::WaitUntil([&] {
    for (auto const& id : panel->MessageIds()) {
      auto record = talvex::ChatUtils::GetMsgInfoPtrById(id);
      if (record && record->GetBoolean("is_from_self") && record->GetInt32("message_status") == 2) sent_id = id;
    }
    return !sent_id.empty() && Settled(panel);
  }));
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(sent_id);
  EXPECT_EQ(record->Get("ui_msg_content")[0].GetString("item_content"), "Can everyone see my screen?");
  EXPECT_NE(panel->RowWidgetOf(sent_id), nullptr);
  EXPECT_TRUE(panel->empty_label()->isHidden());
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return edit->toPlainText().isEmpty(); })) << "the box clears after the send";

  // Given back before the module goes: the list leaves the client's records.
  EXPECT_EQ(meeting_.list_records().live_lists(), 1u);
  host_->Clear();
  EXPECT_TRUE(host_->views().empty());
  EXPECT_EQ(meeting_.list_records().live_lists(), 0u);
}

// The toolbar's Chat button opens the chat page: the panel in a window of its
// own, which goes with the module.
TEST_F(PanelHostTest, TheFloatingPointGetsTheOverlaysViewModelAttached) {
  host_ = std::make_unique<ExtensionHostWidget>("contributes:app.inmeeting_float");
  ASSERT_EQ(host_->Populate(), 1);
  auto model = std::dynamic_pointer_cast<chat::InMeetingBulletViewModel>(host_->views()[0]->view_model());
  ASSERT_NE(model, nullptr) << "extension:chat.bullet names the overlay's view model";
  EXPECT_TRUE(model->attached());
  EXPECT_TRUE(model->HasProp(chat::InMeetingBulletViewModel::kPropShowOrHideBulletMsg));
}

TEST_F(PanelHostTest, TheChatPageShowsThePanelAndClosesWithTheModule) {
  ASSERT_TRUE(framework::Navigator::Of(nullptr, framework::PageStack::kMain).Push("talvex://page/inmeeting/chat"));
  auto controller = std::dynamic_pointer_cast<chat::PageController>(
      framework::ControllerManager::Instance()->GetController("talvex://page/inmeeting/chat"));
  ASSERT_TRUE(controller && controller->view());
  QPointer<QWidget> window = controller->view()->frame();
  ASSERT_TRUE(window && window->isVisible());
  auto* page = dynamic_cast<chat::ChatPageView*>(controller->view().get());
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(page->panel()->built_extensions(),
            (std::vector<std::string>{"extension:chat.panel_history_list", "extension:chat.pane_input"}));
  EXPECT_NE(window->findChild<QWidget*>("ChatHistoryList"), nullptr);
  auto* edit = window->findChild<RichEdit*>("chat_input_edit");
  ASSERT_NE(edit, nullptr);
  EXPECT_TRUE(edit->isVisible());
  controller.reset();

  reg::UnloadUI();
  EXPECT_TRUE(window.isNull()) << "the window goes with the module";
}

TEST_F(PanelHostTest, ScriptedParticipantsPlayEveryKindOfMessage) {
  sim::ScriptedParticipants participants(meeting_);
  participants.Start(1);
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return participants.finished(); }, 10000));
  std::set<int> kinds;
  std::multiset<int> statuses;
  std::string file_id;
  for (auto const& id : participants.posted()) {
    auto record = talvex::ChatUtils::GetMsgInfoPtrById(id);
    ASSERT_TRUE(record) << id;
    kinds.insert(record->GetInt32("chat_type"));
    statuses.insert(record->GetInt32("message_status"));
    Variant const& content = record->Get("ui_msg_content");
    // Pictures and downloaded files are real files where the client keeps them.
    if (record->GetInt32("chat_type") == 4) {
      EXPECT_TRUE(QFileInfo::exists(content.GetString("orig_path").c_str()));
    }
    if (record->GetInt32("chat_type") == 8) {
      EXPECT_EQ(content.GetInt32("status"), 5) << "a file waits to be downloaded";
      file_id = id;
    }
  }
  // Downloaded, it is a real file of its size where the client keeps chat files.
  ASSERT_FALSE(file_id.empty());
  meeting_.files().set_step_ms(2);
  Variant ask = Variant::Map{{"msg_id", file_id},
                             {"file_info", talvex::ChatUtils::GetMsgInfoPtrById(file_id)->Get("ext_content").Get("file_info")}};
  ASSERT_TRUE(meeting_.files().Invoke(4, &ask, nullptr));
  ASSERT_TRUE(talvex_test::WaitUntil([&] {
    return talvex::ChatUtils::GetMsgInfoPtrById(file_id)->Get("ui_msg_content").GetInt32("status") == 9;
  }));
  const QFileInfo file(talvex::ChatUtils::GetMsgInfoPtrById(file_id)->Get("ui_msg_content").GetString("path").c_str());
  EXPECT_TRUE(file.exists());
  EXPECT_EQ(file.fileName(), "Q3-roadmap.pdf");
  EXPECT_EQ(file.size(), 3 * 1024 * 1024 + 400 * 1024);
  for (int kind : {0, 4, 6, 7, 8}) EXPECT_EQ(kinds.count(kind), 1u) << kind;
  EXPECT_EQ(statuses.count(6), 1u) << "one recall";
  EXPECT_EQ(statuses.count(3), 1u) << "one failed send";
}

TEST_F(PanelHostTest, CopyTextOfSeveralMessagesNamesSendersAndSkipsRecalls) {
  const std::string text = Post(kAvery, "plain");
  Variant own = sim::TextRecord(meeting_.meeting().meeting_id(), {"u-self", "Alex Morgan"}, "not sent", true);
  own.Set("message_status", 3);
  const std::string failed = meeting_.messages().Post(own);
  const std::string gone = Post({"u-jordan", "Jordan"}, "oops");
  meeting_.messages().Revoke(gone);

  auto list = std::make_shared<chat::ChatPanelHistoryListViewModel>();
  list->SetModuleParams(reg::Runtime());
  Variant result;
  list->BindProp(chat::ChatHistoryListBaseViewModel::kPropMimeData,
                 [&](Variant const* value, Variant const*) { result = *value; });
  Variant ids(base::variant::kVariantTypeArray);
  for (auto const& id : {text, gone, failed}) ids.Add(id);
  list->Handle(chat::ChatHistoryListBaseViewModel::kActionGetMimeData, &ids);
  ASSERT_EQ(result.Size(), 2u) << "a recalled message is not copied";
  EXPECT_EQ(result[0].GetString("nickname"), "Avery Quinn");
  EXPECT_EQ(result[0].GetString("text"), "plain");
  EXPECT_FALSE(result[0].Has("tail"));
  EXPECT_EQ(result[1].GetString("text"), "not sent");
  EXPECT_FALSE(result[1].GetString("tail").empty()) << "a failed send carries its note";

  Variant not_ids("m1");
  result = Variant();
  list->Handle(chat::ChatHistoryListBaseViewModel::kActionGetMimeData, &not_ids);
  EXPECT_TRUE(result.IsNull()) << "a bad payload publishes nothing";
}

// The notice as a participant meets it in the panel: the banner over the
// messages and the red dot on the input's notice button, both leading to
// the notice's page; hiding the banner lasts until the notice changes.
TEST_F(PanelHostTest, ANewNoticeShowsItsBannerAndTheNoticeButtonsRedDot) {
  meeting_.meeting_settings().SetSwitch("notice_enable", true);
  QtView::ChattingPanelShowView* panel = ShowChatPoint();
  ASSERT_NE(panel, nullptr);
  MeetingNoticeBanner* banner = panel->notice_banner();
  ASSERT_NE(banner, nullptr);
  ChatInputWidget* input = View<QtView::ChatInputView>()->widget();
  EXPECT_TRUE(banner->isHidden());
  EXPECT_TRUE(input->notice_red_dot()->isHidden());
  EXPECT_TRUE(input->notice_button()->property("notice_enabled").toBool());

  const std::string long_text =
      "Please keep your microphone muted while others present. Questions go in the chat; we will take them at the "
      "end of each section, and the slides follow by mail after the call.";
  meeting_.notices().PublishAs(meeting_.context().meeting_id, "u-host", "Riley <b>Chen</b>", 0, long_text);
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return banner->isVisible(); }));
  EXPECT_EQ(banner->full_text().toStdString(), long_text);
  EXPECT_TRUE(banner->full_meta().startsWith("Riley <b>Chen</b>")) << "the name is shown as text";
  EXPECT_EQ(banner->text_label()->textFormat(), Qt::PlainText);
  const QString shown = banner->text_label()->text();
  EXPECT_LE(shown.count('\n'), 1) << "two lines at most";
  EXPECT_TRUE(shown.endsWith(QString::fromUtf8("\u2026"))) << "a long notice is cut with an ellipsis";
  EXPECT_LT(banner->height(), panel->frame()->height() / 4);
  EXPECT_FALSE(banner->updated_label()->isVisible()) << "a first notice is new";
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return input->notice_red_dot()->isVisible(); })) << "unread";

  // The strip opens the notice; reading it takes the red dot away.
  QTest::mouseClick(banner, Qt::LeftButton, Qt::NoModifier, QPoint(40, 10));
  auto controller = std::dynamic_pointer_cast<chat::PageController>(
      framework::ControllerManager::Instance()->GetController("talvex://page/meeting_notice"));
  ASSERT_TRUE(controller && controller->view() && controller->view()->frame());
  QPointer<QWidget> dialog = controller->view()->frame();
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return input->notice_red_dot()->isHidden(); }));
  dialog->close();

  QTest::mouseClick(banner->close_button(), Qt::LeftButton);
  EXPECT_TRUE(banner->isHidden());
  meeting_.notices().PublishAs(meeting_.context().meeting_id, "u-host", "Riley Chen", 0, "Back in five minutes.");
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return banner->isVisible(); })) << "a changed notice shows again";
  EXPECT_TRUE(banner->updated_label()->isVisible());

  // The notice button opens the same page; with notices off it says why.
  framework::NavigateService::Instance()->ClearOpened();
  QTest::mouseClick(input->notice_button(), Qt::LeftButton);
  ASSERT_EQ(framework::NavigateService::Instance()->opened().size(), 1u);
  EXPECT_EQ(framework::NavigateService::Instance()->opened()[0].GetString("url"), "talvex://page/meeting_notice");
  meeting_.meeting_settings().SetSwitch("notice_enable", false);
  meeting_.model(539).FireEvent(1, Variant());
  EXPECT_FALSE(input->notice_button()->toolTip().isEmpty());
  EXPECT_FALSE(input->notice_button()->property("notice_enabled").toBool());
  QTest::mouseClick(input->notice_button(), Qt::LeftButton);
  EXPECT_EQ(framework::NavigateService::Instance()->opened().size(), 1u) << "nothing opens";
}

// A received file followed on its page from the click on its card to the
// file opening: the progress moves with the simulated transfer.
TEST_F(PanelHostTest, AFilesCardOpensItsPageWhichDownloadsAndOpensIt) {
  meeting_.files().set_step_ms(20);
  meeting_.files().set_steps(5);
  QtView::ChattingPanelShowView* panel = ShowChatPoint();
  ASSERT_NE(panel, nullptr);
  Variant info = Variant::Map{{"id", "f-9"}, {"name", "agenda.pdf"}, {"size", 500000}, {"status", 5}};
  const std::string id = meeting_.messages().Post(sim::ChatRecord(meeting_.meeting().meeting_id(), kAvery, 8,
                                                                  Variant(), false, Variant::Map{{"file_info", info}}));
  ChatFileItem* card = nullptr;
  ASSERT_TRUE(talvex_test::WaitUntil([&] {
    auto* row = panel->RowWidgetOf(id);
    card = row ? row->findChild<ChatFileItem*>() : nullptr;
    return card && card->isVisible();
  }));
  QWidget* container = card->findChild<QWidget*>("Container");
  ASSERT_NE(container, nullptr);
  QTest::mouseClick(container, Qt::LeftButton, Qt::NoModifier, QPoint(30, 20));
  ASSERT_TRUE(panel->file_preview() && panel->file_preview()->view());
  auto* page = dynamic_cast<QtView::FilePreviewView*>(panel->file_preview()->view().get());
  ASSERT_TRUE(page && page->widget());
  FilePreviewWidget* widget = page->widget();
  EXPECT_TRUE(widget->window()->isVisible());
  EXPECT_EQ(widget->name_label()->text(), "agenda.pdf");
  ASSERT_TRUE(widget->main_button()->isVisible());
  EXPECT_FALSE(widget->open_button()->isVisible());

  QTest::mouseClick(widget->main_button(), Qt::LeftButton);
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return widget->progress_bar()->isVisible(); }));
  EXPECT_TRUE(widget->cancel_button()->isVisible());
  int seen = 0;
  ASSERT_TRUE(talvex_test::WaitUntil([&] {
    seen = std::max(seen, widget->progress_bar()->value());
    return widget->open_button()->isVisible();
  }));
  EXPECT_GT(seen, 0) << "the bar moved on the way";
  EXPECT_FALSE(widget->progress_bar()->isVisible());
  EXPECT_FALSE(widget->main_button()->isVisible());
  QTest::mouseClick(widget->open_button(), Qt::LeftButton);
  auto* ui = dynamic_cast<framework::RecordingUIService*>(framework::GetUIService());
  ASSERT_TRUE(ui);
  ASSERT_EQ(ui->opened_paths().size(), 1u);
  EXPECT_EQ(QFileInfo(ui->opened_paths()[0].c_str()).size(), 500000);
  EXPECT_EQ(card->sub_title_label()->text().trimmed().toStdString(), "488.3 KB") << "the row follows the same transfer";
}

}  // namespace
}  // namespace items_test
