// Where files to send are staged, which may be sent, and how a message's
// file is found, opened and downloaded.
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include "base/util/file_util.h"
#include "chat/util/utils.h"
#include "framework/config/configure_service.h"
#include "framework/resource/resource.h"
#include "framework/ui/ui_service.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace {

using talvex_test::LogCapture;

std::string MakeSparseFile(std::string const& name, qint64 size) {
  const std::string path = talvex_test::TempRoot() + "/" + name;
  QFile file(QString::fromStdString(path));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
  EXPECT_TRUE(file.resize(size));  // sparse: costs no disk
  return path;
}

std::string Text(char const* name) { return framework::Resource::GetInstance()->GetString(framework::NameId(name)); }

class ChatFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    meeting_.Install();
    ui_ = std::make_shared<framework::RecordingUIService>();
    framework::SetUIService(ui_);
  }
  void TearDown() override {
    framework::SetUIService(nullptr);
    meeting_.Uninstall();
  }
  sim::MeetingSimulator meeting_;
  std::shared_ptr<framework::RecordingUIService> ui_;
};

TEST_F(ChatFileTest, StagingFoldersAreMadePerMeetingAndMillisecond) {
  const std::string dir = chat::MakeUniqueChatFileDirPath("m42");
  EXPECT_TRUE(util::file::IsDirectory(dir));
  QDir staged(QString::fromStdString(dir));
  EXPECT_GT(staged.dirName().toLongLong(), 0) << "named by the millisecond";
  EXPECT_TRUE(staged.cdUp() && staged.dirName() == "m42");

  LogCapture log;
  EXPECT_TRUE(util::file::IsDirectory(chat::MakeUniqueChatFileDirPath("")));
  EXPECT_TRUE(log.Contains("Fail to get current meeting id", base::log::kLogError));
}

TEST_F(ChatFileTest, SizeLimitIsInclusiveAndFoldersAreRefused) {
  std::string error;
  EXPECT_TRUE(chat::CheckFileValidity(MakeSparseFile("at_limit.bin", 524288000), error));
  EXPECT_TRUE(error.empty());
  EXPECT_FALSE(chat::CheckFileValidity(MakeSparseFile("over_limit.bin", 524288001), error));
  EXPECT_NE(error.find(Text("chat.file.max_size_desc")), std::string::npos) << error;
  EXPECT_EQ(error.find("{filesize}"), std::string::npos) << "the placeholder is filled";

  error.clear();
  LogCapture log;
  EXPECT_FALSE(chat::CheckFileValidity(talvex_test::TempRoot(), error));
  EXPECT_EQ(error, Text("chat.file.refuse_folder"));
  EXPECT_FALSE(log.Contains("maxSizeValue")) << "refused before the limit is read";

  // The meeting's configuration moves the limit and its description.
  auto* config = talvexsdk::utils::service::GetConfigureService();
  config->Set("chat", "send_file_max_size", 1000);
  config->Set("chat", "send_file_max_size_desc", "1 KB");
  EXPECT_TRUE(chat::CheckFileValidity(MakeSparseFile("small.bin", 1000), error));
  EXPECT_FALSE(chat::CheckFileValidity(MakeSparseFile("bigger.bin", 1001), error));
  EXPECT_NE(error.find("1 KB"), std::string::npos);
  EXPECT_TRUE(log.Contains("maxSizeValue: 1000, maxSizeDescValue: 1 KB"));
  config->LoadFile("");
}

TEST_F(ChatFileTest, PathOfAMessage) {
  std::string path = "stale";
  LogCapture log;
  EXPECT_FALSE(chat::GetFilePathByMsg(Variant("x"), path));
  EXPECT_TRUE(path.empty()) << "a refused message leaves no old path";
  EXPECT_FALSE(chat::GetFilePathByMsg(Variant(base::variant::kVariantTypeMap), path));
  EXPECT_EQ(log.Count("[chat file] msg data error! msg = "), 2u);

  Variant msg(base::variant::kVariantTypeMap);
  msg["file_info"].Set("path", "/a/b.txt");
  msg["msg_content"].Set("path", "/other");
  EXPECT_TRUE(chat::GetFilePathByMsg(msg, path));
  EXPECT_EQ(path, "/a/b.txt") << "file_info comes first";
  msg.Remove("file_info");
  EXPECT_TRUE(chat::GetFilePathByMsg(msg, path));
  EXPECT_EQ(path, "/other");
  msg["msg_content"].Remove("path");
  EXPECT_FALSE(chat::GetFilePathByMsg(msg, path));
}

TEST_F(ChatFileTest, OpeningAFileByItsKind) {
  auto view_model = std::make_shared<framework::StatefulViewModel>();
  Variant msg(base::variant::kVariantTypeMap);
  LogCapture log;
  EXPECT_FALSE(chat::OpenFileByMsg(nullptr, msg));
  EXPECT_TRUE(log.Contains("[chat file] view_model param error! data msg = "));
  EXPECT_FALSE(chat::OpenFileByMsg(view_model.get(), msg));
  EXPECT_TRUE(log.Contains("[chat file] open file by msg failed! file path exception."));

  msg["file_info"].Set("path", MakeSparseFile("notes.txt", 10));
  EXPECT_TRUE(chat::OpenFileByMsg(view_model.get(), msg));
  ASSERT_EQ(ui_->opened_paths().size(), 1u);
  EXPECT_EQ(ui_->opened_paths()[0], msg.Get("file_info").GetString("path"));
  EXPECT_EQ(meeting_.files().InvocationsOf(16)[0].GetString("file_name"), "notes.txt");

  msg["file_info"].Set("path", MakeSparseFile("setup.sh", 10));
  EXPECT_TRUE(chat::OpenFileByMsg(view_model.get(), msg));
  EXPECT_EQ(ui_->opened_paths().size(), 1u);
  ASSERT_EQ(ui_->toasts().size(), 1u);
  EXPECT_EQ(ui_->toasts()[0].text, Text("chat.file.cannot_open"));
  EXPECT_EQ(ui_->toasts()[0].duration_ms, 2000u);

  msg["file_info"].Set("path", talvex_test::TempRoot() + "/gone.txt");
  EXPECT_TRUE(chat::OpenFileByMsg(view_model.get(), msg));
  EXPECT_EQ(ui_->opened_paths().size(), 1u) << "a missing file opens nothing";
  EXPECT_EQ(ui_->toasts().size(), 1u);
}

TEST_F(ChatFileTest, DownloadAsksTheClientsFileModel) {
  LogCapture log;
  EXPECT_FALSE(chat::DownloadFileByMsgId("missing", 1));
  Variant record(base::variant::kVariantTypeMap);
  record.Set("msg_id", "f1");
  meeting_.messages().AddMessage(record);
  EXPECT_FALSE(chat::DownloadFileByMsgId("f1", 1));
  EXPECT_TRUE(log.Contains("<IM> msg content not found", base::log::kLogError));
  record["ext_content"]["file_info"].Set("name", "a.pdf");
  meeting_.messages().AddMessage(record);
  EXPECT_FALSE(chat::DownloadFileByMsgId("f1", 1));
  EXPECT_TRUE(log.Contains("<IM> params error! status not exist!", base::log::kLogError));
  EXPECT_TRUE(meeting_.files().InvocationsOf(4).empty());

  record["ext_content"]["file_info"].Set("status", 5);
  meeting_.messages().AddMessage(record);
  EXPECT_TRUE(chat::DownloadFileByMsgId("f1", 2));
  auto calls = meeting_.files().InvocationsOf(4);
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].GetString("msg_id"), "f1");
  EXPECT_EQ(calls[0].GetInt32("download_file_from"), 2);
  EXPECT_EQ(calls[0].Get("file_info").GetString("name"), "a.pdf");

  meeting_.RemoveModel(10009);
  EXPECT_FALSE(chat::DownloadFileByMsgId("f1", 2));
}

TEST_F(ChatFileTest, WaitingRoomMembership) {
  EXPECT_FALSE(chat::UserIsInWaitingRoom("u1"));
  for (auto [id, role, waiting] :
       {std::tuple{"u1", "member", true}, std::tuple{"u2", "member", false}, std::tuple{"h1", "host", false}}) {
    Variant m(base::variant::kVariantTypeMap);
    m.Set("user_id", id);
    m.Set("role", role);
    m.Set("in_waiting_room", waiting);
    meeting_.members().AddMember(m);
  }
  EXPECT_TRUE(chat::UserIsInWaitingRoom("u1"));
  EXPECT_FALSE(chat::UserIsInWaitingRoom("u2"));
  EXPECT_FALSE(chat::UserIsInWaitingRoom("h1"));
  EXPECT_TRUE(chat::UserIsInWaitingRoomMemberList("h1")) << "hosts stand in the waiting room's own list";
  EXPECT_TRUE(chat::UserIsInWaitingRoomMemberList("u1"));
  EXPECT_FALSE(chat::UserIsInWaitingRoomMemberList("u2"));
  meeting_.RemoveModel(508);
  EXPECT_FALSE(chat::UserIsInWaitingRoom("u1"));
}

}  // namespace
