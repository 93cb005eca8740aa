// The file page's view model through the simulated meeting's transfers on the
// test clock: the state table, a download from start to open, stopping,
// failing, the account not allowed to download, the file taken back, a chat
// record's file, and bad input on every handler.
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>

#include "base/analytics/analytics.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/viewmodel/file_preview_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/resource/resource.h"
#include "framework/ui/ui_service.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace files_test {
namespace {

using VM = chat::FilePreviewViewModel;
std::string Text(char const* name) { return talvex_common::utils::GetLocalizedString(framework::NameId(name)); }

class FilePreviewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    base::analytics::ClearRecordedEvents();
    ui_ = std::make_shared<framework::RecordingUIService>();
    framework::SetUIService(ui_);
    meeting_.Install();
    ASSERT_TRUE(runtime_.Activate());
    meeting_.meeting().Join();
    meeting_.files().set_step_ms(100);
    meeting_.files().set_steps(4);
  }
  void TearDown() override {
    if (vm_) vm_->DidDetached();
    vm_.reset();
    runtime_.Unactivate();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
  }
  std::string PostFile(std::string const& id, std::string const& name, int64_t size, int status = 5,
                       int security = 0) {
    Variant info = Variant::Map{{"id", id}, {"name", name}, {"size", size}, {"status", status}, {"progress", 0.0},
                                {"security", security}};
    return meeting_.messages().Post(sim::ChatRecord(meeting_.meeting().meeting_id(), sim::Sender("u-2", "Jordan Blake"),
                                                    8, Variant(), false, Variant::Map{{"file_info", info}}));
  }
  void Open(std::string const& msg_id, int template_type = 2) {
    Variant params = VM::ParamsOfMessage(msg_id, template_type);
    ASSERT_TRUE(params.IsMap());
    vm_ = std::dynamic_pointer_cast<VM>(runtime_.GetViewModelProvider()->CreateViewModel(chat::kViewModelFilePreview));
    ASSERT_NE(vm_, nullptr);
    vm_->DidCreated(nullptr);
    vm_->DidAttached(&params);
  }
  Variant UI() const { return vm_->PickPropValue(VM::kPropUIData); }
  std::string S(char const* key) const { return UI().GetString(std::string("FilePreviewUIDataFields_") + key); }
  bool B(char const* key) const { return UI().GetBoolean(std::string("FilePreviewUIDataFields_") + key); }
  // main, progress, cancel, state text
  std::string Shown() const {
    std::string shown;
    for (char const* key : {"kBooleanMainButtonVisible", "kBooleanFileProcessVisible", "kBooleanCancelButtonVisible",
                            "kBooleanStateTextVisible"}) {
      shown += B(key) ? '1' : '0';
    }
    return shown;
  }
  std::string LastToast() const { return ui_->toasts().empty() ? "" : ui_->toasts().back().text; }

  talvex_test::TestClock clock_;
  sim::MeetingSimulator meeting_;
  chat::ChatModuleRuntime runtime_;
  std::shared_ptr<framework::RecordingUIService> ui_;
  std::shared_ptr<VM> vm_;
};

TEST_F(FilePreviewTest, ADownloadRunsFromTheButtonToAFileOnDiskThatOpens) {
  const std::string id = PostFile("f-1", "Q3-roadmap.pdf", 4 * 1024 * 1024);
  Open(id);
  EXPECT_EQ(S("kStringFileTitle"), "Q3-roadmap.pdf");
  EXPECT_EQ(S("kStringFileSize"), "4.0 MB");
  EXPECT_EQ(Shown(), "1000");
  EXPECT_EQ(S("kStringMainButtonText"), Text("chat.file_preview.download"));

  vm_->Handle(VM::kActionMainButton);
  EXPECT_EQ(vm_->file_state(), 6);
  EXPECT_EQ(Shown(), "0110") << "progress and cancel while it waits";
  clock_.Advance(200);
  EXPECT_EQ(vm_->file_state(), 7);
  EXPECT_EQ(Shown(), "0110");
  EXPECT_DOUBLE_EQ(UI().GetDouble("FilePreviewUIDataFields_kDoubleFileProcessValue"), 0.5);
  EXPECT_EQ(S("kStringFileProcessText"), "2.0 MB / 4.0 MB");
  clock_.Advance(200);
  EXPECT_EQ(vm_->file_state(), 9);
  EXPECT_EQ(Shown(), "0000");
  const std::string path = S("kStringFilePath");
  EXPECT_EQ(QFileInfo(path.c_str()).fileName(), "Q3-roadmap.pdf");
  EXPECT_EQ(QFileInfo(path.c_str()).size(), 4 * 1024 * 1024) << "a real file of the file's size";

  vm_->Handle(VM::kActionMainButton);
  ASSERT_EQ(ui_->opened_paths().size(), 1u);
  EXPECT_EQ(ui_->opened_paths()[0], path);

  // Gone from disk: the page says so and offers the button again.
  QFile::remove(path.c_str());
  vm_->Handle(VM::kActionMainButton);
  EXPECT_EQ(ui_->opened_paths().size(), 1u);
  EXPECT_EQ(Shown(), "1000");
  EXPECT_EQ(S("kStringMainButtonText"), Text("chat.file_preview.open_failed"));
  const auto failed = base::analytics::RecordedEvents("open_file_failed");
  ASSERT_EQ(failed.size(), 1u);
  EXPECT_EQ(failed[0].properties.at("file_ext"), "pdf");
}

TEST_F(FilePreviewTest, StoppingFailingAndARefusedAccountEachLeaveTheRightButton) {
  const std::string id = PostFile("f-2", "notes.txt", 1000);
  Open(id);
  vm_->Handle(VM::kActionMainButton);
  clock_.Advance(100);
  ASSERT_TRUE(meeting_.files().transferring(id));
  vm_->Handle(VM::kActionCancel);
  EXPECT_FALSE(meeting_.files().transferring(id));
  EXPECT_EQ(vm_->file_state(), 10);
  EXPECT_EQ(Shown(), "1000");
  EXPECT_EQ(S("kStringMainButtonText"), Text("chat.file_preview.download"));

  meeting_.files().FailNextDownload(21009, "The disk is full");
  vm_->Handle(VM::kActionMainButton);
  clock_.Advance(400);
  EXPECT_EQ(vm_->file_state(), 8);
  EXPECT_EQ(S("kStringMainButtonText"), Text("chat.file_preview.retry"));
  EXPECT_EQ(LastToast(), "The disk is full");

  // An account that may not download never reaches the file model.
  meeting_.network().SetAuthState(1);
  vm_->Handle(VM::kActionMainButton);
  EXPECT_FALSE(meeting_.files().transferring(id));
  EXPECT_EQ(LastToast(), Text("chat.file_preview.not_authorized"));
  EXPECT_EQ(vm_->file_state(), 8);
}

TEST_F(FilePreviewTest, TheStateTableAndATakenBackFileEmptyingThePage) {
  const std::string id = PostFile("f-3", "slides.pptx", 2048);
  Open(id);
  struct Row {
    int state;
    char const* shown;
    char const* main_text;
  };
  for (Row row : {Row{5, "1000", "chat.file_preview.download"}, Row{10, "1000", "chat.file_preview.download"},
                  Row{6, "0110", nullptr}, Row{7, "0110", nullptr}, Row{8, "1000", "chat.file_preview.retry"},
                  Row{9, "0000", nullptr}, Row{11, "1000", "chat.file_preview.open_failed"},
                  Row{12, "0001", nullptr}}) {
    meeting_.files().Advance(id, row.state, 0.25);
    EXPECT_EQ(Shown(), row.shown) << "state " << row.state;
    if (row.main_text) EXPECT_EQ(S("kStringMainButtonText"), Text(row.main_text)) << "state " << row.state;
  }
  // A state the page doesn't know changes nothing.
  const Variant before = UI();
  meeting_.files().Advance(id, 3, 1.0);
  EXPECT_EQ(UI(), before);

  // Someone else's file taken back leaves the page; this one empties it.
  Variant other = Variant::Map{{"file_id", "f-other"}};
  vm_->OnEventChattingFileRevoked(&other);
  EXPECT_EQ(S("kStringFileTitle"), "slides.pptx");
  meeting_.files().RevokeFile(id);
  EXPECT_EQ(S("kStringFileTitle"), "");
  EXPECT_EQ(S("kStringFileSize"), "");
  EXPECT_EQ(Shown(), "0000");
  EXPECT_DOUBLE_EQ(UI().GetDouble("FilePreviewUIDataFields_kDoubleFileProcessValue"), 0.0);
}

TEST_F(FilePreviewTest, AChatRecordsFileFollowsItsOwnEventsWithALineForEachGap) {
  const std::string id = PostFile("f-4", "minutes.docx", 4096);
  Open(id, 3);
  talvex_test::LogCapture log;
  auto fire = [&](Variant payload) { meeting_.files().FireEvent(3, &payload); };
  fire(Variant::Map{});
  fire(Variant::Map{{"msg_list", Variant::Array{}}});
  fire(Variant::Map{{"msg_list", Variant::Array{Variant::Map{}}}});
  fire(Variant::Map{{"msg_list", Variant::Array{Variant::Map{{"message_elem_array", Variant::Array{}}}}}});
  fire(Variant::Map{{"msg_list", Variant::Array{Variant::Map{{"message_elem_array", Variant::Array{Variant::Map{}}}}}}});
  for (char const* line : {"chatting record msg ui data has no msg_list", "chatting record msg_list is empty",
                           "chatting record msg_list has no message_elem_array",
                           "chatting record message_elem_array is empty",
                           "chatting record message_elem_array_item has no custom_elem_ext"}) {
    EXPECT_TRUE(log.Contains(line)) << line;
  }
  auto element = [](Variant info) {
    return Variant::Map{{"msg_list", Variant::Array{Variant::Map{
                                         {"message_elem_array",
                                          Variant::Array{Variant::Map{
                                              {"custom_elem_ext", Variant(Variant::Map{{"file_info", info}}).ToJson()}}}}}}}};
  };
  fire(element(Variant::Map{{"id", "f-4"}, {"status", 7}, {"progress", 0.5}}));
  EXPECT_EQ(Shown(), "0110");
  EXPECT_EQ(S("kStringFileProcessText"), "2.0 KB / 4.0 KB");
  fire(element(Variant::Map{{"id", "f-4"}, {"status", 8}, {"err_msg", "The link expired"}}));
  EXPECT_EQ(LastToast(), "The link expired");

  // The record element the chat record asks again with.
  Variant request;
  ASSERT_TRUE(request.FromJsonStr(vm_->UpdateChatRecordRequestParam().c_str()));
  Variant ext;
  ASSERT_TRUE(ext.FromJsonStr(request.GetString("custom_elem_ext").c_str()));
  EXPECT_EQ(ext.Get("file_info").GetInt32("item_type"), 6);
  EXPECT_EQ(ext.Get("file_info").GetString("name"), "minutes.docx");
  EXPECT_EQ(ext.Get("file_info").GetInt32("status"), 8);
}

TEST_F(FilePreviewTest, BadPayloadsAndOtherFilesChangeNothingAndABlockedFileSaysSo) {
  const std::string id = PostFile("f-5", "tool.zip", 100, 5, 1);
  Open(id);
  EXPECT_EQ(LastToast(), Text("chat.file_preview.blocked"));
  EXPECT_EQ(S("kStringFileTitle"), "tool.zip") << "a blocked file's data stay";
  const size_t published = vm_->PropSetCount(VM::kPropUIData);
  talvex_test::LogCapture log;
  for (Variant bad : {Variant(), Variant(3), Variant("x"), Variant(Variant::Array{}), Variant(Variant::Map{}),
                      Variant(Variant::Map{{"file_message", 1}}),
                      Variant(Variant::Map{{"file_message", Variant::Map{}}}),
                      Variant(Variant::Map{{"file_message", Variant::Map{}}, {"file_info", "x"}})}) {
    vm_->OnEventFileMsgUIDataChanged(&bad);
    vm_->OnEventChattingRecordMsgUIDataChanged(&bad);
    vm_->OnEventChattingFileRevoked(&bad);
  }
  vm_->OnEventFileMsgUIDataChanged(nullptr);
  vm_->OnEventChattingRecordMsgUIDataChanged(nullptr);
  vm_->OnEventChattingFileRevoked(nullptr);
  Variant other = Variant::Map{{"file_message", Variant::Map{{"msg_id", "m"}}},
                               {"file_info", Variant::Map{{"id", "f-other"}, {"status", 9}}}};
  vm_->OnEventFileMsgUIDataChanged(&other);
  EXPECT_EQ(vm_->PropSetCount(VM::kPropUIData), published);
  EXPECT_TRUE(log.Contains("no file msg"));
  EXPECT_TRUE(log.Contains("no file info"));
  EXPECT_TRUE(log.Contains("not this file, just ignore"));
  EXPECT_EQ(vm_->file_state(), 5);

  // Without the client's file or authorization model nothing starts.
  meeting_.application()->UnregisterModel(10009);
  vm_->Handle(VM::kActionMainButton);
  vm_->Handle(VM::kActionCancel);
  EXPECT_EQ(log.Count("chat file model is nullptr"), 2u);
  EXPECT_FALSE(VM::ParamsOfMessage("no-such-message", 2).IsMap());
}

}  // namespace
}  // namespace files_test
