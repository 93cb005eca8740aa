// The chat panel as a client hosts it: the contribution point built from
// what the module registered, fed by the scripted participants; and the
// text the view model gives for a copy of several messages.
#include <QFileInfo>
#include <QTest>
#include <algorithm>
#include <memory>

#include "chat/runtime/chat_module_registration.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/extension/chatting_panel_show_view.h"
#include "chat/ui/desktop/view/chat_input/chat_input_view.h"
#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"
#include "uikit/richedit/rich_edit.h"
#include "chat/viewmodel/chat_panel_history_list_view_model.h"
#include "framework/chat/chat_utils.h"
#include "framework/extension/extension.h"
#include "framework/navigation/routing.h"
#include "framework/ui/ui_service.h"
#include "items_fixture.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "sim/scripted_participants.h"
#include "support/test_util.h"
#include "uikit/extension/extension_host_widget.h"

namespace items_test {
namespace {

namespace reg = chat::registration;

class PanelHostTest : public ::testing::Test {
 protected:
  void SetUp() override {
    InitChatResources();
    talvex_test::IsolateUserDirectories();
    ui_ = std::make_shared<framework::RecordingUIService>();
    framework::SetUIService(ui_);
    meeting_.Install();
    meeting_.meeting().Join();
    reg::RegisterRuntimeAndExtensions();
    ASSERT_TRUE(reg::Runtime()->Activate());
    reg::LoadUI(reg::Runtime());
  }

  void TearDown() override {
    host_.reset();
    reg::UnloadUI();
    if (reg::Runtime()->IsActivated()) reg::Runtime()->Unactivate();
    reg::UnregisterModule();
    framework::UiModuleLoaderRegister::GetInstance()->Remove("chat");
    framework::extension::GetExtensionService()->Clear();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
  }

  QtView::ChattingPanelShowView* Panel() const {
    for (auto const& view : host_->views()) {
      if (auto* panel = dynamic_cast<QtView::ChattingPanelShowView*>(view.get())) return panel;
    }
    return nullptr;
  }

  bool Settled(QtView::ChattingPanelShowView* panel) const {
    auto* model = static_cast<chat::ChatPanelHistoryListViewModel*>(panel->view_model().get());
    return !panel->HasPendingUpdates() && !model->flush_pending() && !model->is_getting_more();
  }

  sim::MeetingSimulator meeting_;
  std::shared_ptr<framework::RecordingUIService> ui_;
  std::unique_ptr<ExtensionHostWidget> host_;
};

TEST_F(PanelHostTest, TheChatPointShowsTheHistoryBoundToThePanelViewModel) {
  host_ = std::make_unique<ExtensionHostWidget>("contributes:app.chat_full");
  host_->resize(380, 600);
  EXPECT_GE(host_->Populate(), 1);
  auto const& built = host_->built_extensions();
  EXPECT_NE(std::find(built.begin(), built.end(), "extension:chat.panel_history_list"), built.end());
  QtView::ChattingPanelShowView* panel = Panel();
  ASSERT_NE(panel, nullptr);
  ASSERT_NE(dynamic_cast<chat::ChatPanelHistoryListViewModel*>(panel->view_model().get()), nullptr);
  EXPECT_EQ(panel->frame()->parentWidget(), host_.get());
  EXPECT_FALSE(panel->frame()->styleSheet().isEmpty()) << "the module's style sheet is applied";
  host_->show();

  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Settled(panel); }));
  EXPECT_FALSE(panel->empty_label()->isHidden()) << "an empty chat says so";
  const std::string id = meeting_.messages().Post(
      sim::TextRecord(meeting_.meeting().meeting_id(), {"u-avery", "Avery Quinn"}, "hello from the panel"));
  ASSERT_TRUE(talvex_test::WaitUntil([&] {
    auto ids = panel->MessageIds();
    return std::find(ids.begin(), ids.end(), id) != ids.end() && Settled(panel);
  }));
  EXPECT_TRUE(panel->empty_label()->isHidden());
  EXPECT_NE(panel->RowWidgetOf(id), nullptr);

  // Given back before the module goes: the list leaves the client's records.
  EXPECT_EQ(meeting_.list_records().live_lists(), 1u);
  host_->Clear();
  EXPECT_TRUE(host_->views().empty());
  EXPECT_EQ(meeting_.list_records().live_lists(), 0u);
}

// What a user types under the list goes out through the input's view model
// and the send model, and comes back into the list above it.
TEST_F(PanelHostTest, ATypedMessageIsSentAndArrivesInTheListAbove) {
  host_ = std::make_unique<ExtensionHostWidget>("contributes:app.chat_full");
  host_->resize(380, 600);
  EXPECT_EQ(host_->Populate(), 2) << "the list and the input";
  QtView::ChattingPanelShowView* panel = Panel();
  ASSERT_NE(panel, nullptr);
  QtView::ChatInputView* input = nullptr;
  for (auto const& view : host_->views()) {
    if (auto* candidate = dynamic_cast<QtView::ChatInputView*>(view.get())) input = candidate;
  }
  ASSERT_NE(input, nullptr);
  ASSERT_NE(input->widget(), nullptr);
  host_->show();
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Settled(panel); }));

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
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return edit->toPlainText().isEmpty(); })) << "the box clears after the send";
  host_->Clear();
}

TEST_F(PanelHostTest, ScriptedParticipantsPlayEveryKindOfMessage) {
  sim::ScriptedParticipants participants(meeting_);
  participants.Start(1);
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return participants.finished(); }, 10000));
  std::vector<int> kinds;
  int recalled = 0;
  int failed = 0;
  for (auto const& id : participants.posted()) {
    auto record = talvex::ChatUtils::GetMsgInfoPtrById(id);
    ASSERT_TRUE(record) << id;
    kinds.push_back(record->GetInt32("chat_type"));
    recalled += record->GetInt32("message_status") == 6;
    failed += record->GetInt32("message_status") == 3;
    if (record->GetInt32("chat_type") == 4) {
      // The picture is a real file where the client keeps chat images.
      const std::string path = record->Get("ui_msg_content").GetString("orig_path");
      EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(path))) << path;
    }
    if (record->GetInt32("chat_type") == 8) {
      Variant const& file = record->Get("ui_msg_content");
      EXPECT_EQ(file.GetInt32("status"), 9) << "the download finished";
      EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(file.GetString("path"))));
    }
  }
  for (int kind : {0, 4, 6, 7, 8}) EXPECT_NE(std::find(kinds.begin(), kinds.end(), kind), kinds.end()) << kind;
  EXPECT_EQ(recalled, 1);
  EXPECT_EQ(failed, 1);
}

TEST_F(PanelHostTest, CopyTextOfSeveralMessagesNamesSendersAndSkipsRecalls) {
  const std::string meeting_id = meeting_.meeting().meeting_id();
  const std::string text = meeting_.messages().Post(sim::TextRecord(meeting_id, {"u-avery", "Avery Quinn"}, "plain"));
  Variant own = sim::TextRecord(meeting_id, {"u-self", "Alex Morgan"}, "not sent", true);
  own.Set("message_status", 3);
  const std::string failed = meeting_.messages().Post(own);
  const std::string gone = meeting_.messages().Post(sim::TextRecord(meeting_id, {"u-jordan", "Jordan"}, "oops"));
  meeting_.messages().Revoke(gone);

  auto list = std::make_shared<chat::ChatPanelHistoryListViewModel>();
  list->SetModuleParams(reg::Runtime());
  Variant result;
  list->BindProp(chat::ChatHistoryListBaseViewModel::kPropMimeData,
                 [&](Variant const* value, Variant const*) { result = *value; });
  Variant ids(base::variant::kVariantTypeArray);
  for (auto const& id : {text, gone, failed}) ids.Add(id);
  list->Handle(chat::ChatHistoryListBaseViewModel::kActionGetMimeData, &ids);
  ASSERT_TRUE(result.IsArray());
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

}  // namespace
}  // namespace items_test
