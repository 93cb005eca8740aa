// File sends: every check of the batch before the first copy, the staged
// copies, the upload states and the report.
#include "send_fixture.h"

#include "base/util/file_util.h"
#include "framework/chat/chat_file_utils.h"

namespace send_test {
namespace {

using talvex_test::WaitUntil;

class SendFileTest : public SendFixture {
 protected:
  std::vector<std::string> Files(int n, std::string const& stem) {
    std::vector<std::string> paths;
    for (int i = 0; i < n; ++i) paths.push_back(WriteFile(stem + std::to_string(i) + ".txt", "notes"));
    return paths;
  }
  std::vector<int64_t> StatusesOf(std::vector<Variant> const& states) {
    std::vector<int64_t> seen;
    for (auto const& s : states) seen.push_back(s.Get("file_info").GetInteger("status"));
    return seen;
  }
};

TEST_F(SendFileTest, FiveFilesGoAndSixAreRefusedByCount) {
  EXPECT_TRUE(SendFiles(FileParams(Files(5, "five"))));
  ASSERT_TRUE(WaitUntil([&] { return Sends(52).size() == 5; }));
  EXPECT_EQ(TakeRefusals(), Strings{});

  meeting_.messages().ClearInvocations();
  EXPECT_FALSE(SendFiles(FileParams(Files(6, "six"))));
  const Strings six = TakeRefusals();
  ASSERT_EQ(six.size(), 1u);
  EXPECT_NE(six[0].find('5'), std::string::npos) << six[0];

  // The meeting's configuration sets the limit.
  Configure("chat", "send_file_max_concurrency", 2);
  EXPECT_FALSE(SendFiles(FileParams(Files(3, "three"))));
  const Strings three = TakeRefusals();
  ASSERT_EQ(three.size(), 1u);
  EXPECT_NE(three[0].find('2'), std::string::npos) << three[0];
  talvex_test::DrainLoopers();
  EXPECT_EQ(AllSends(), 0u);
}

TEST_F(SendFileTest, OneBadFileRefusesTheWholeBatchBeforeAnyCopy) {
  const std::string good = WriteFile("report.txt", "quarterly numbers");
  const std::string tool = WriteFile("tool.exe", "MZ");
  const std::string no_ext = WriteFile("README", "read me");
  // The file at the size limit passes its check: that batch is refused for
  // the file after it, not for its size.
  const std::string at_limit = WriteFile("at_limit.dat", "", 524288000);
  const std::vector<std::pair<std::vector<std::string>, char const*>> cases = {
      {{good, tool}, "chat.send.inhibited_plural"},
      {{tool}, "chat.send.inhibited"},
      {{no_ext}, "chat.send.no_extension"},
      {{good, no_ext}, "chat.send.no_extension_plural"},
      {{at_limit, no_ext}, "chat.send.no_extension_plural"},
      {{good, WriteFile("empty.txt", "")}, "chat.send.empty_file"},
      {{good, talvex_test::TempRoot()}, "chat.file.refuse_folder"},
  };
  for (auto const& [paths, text] : cases) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(SendFiles(FileParams(paths)));
    EXPECT_EQ(TakeRefusals(), Strings{Text(text)});
  }
  EXPECT_FALSE(SendFiles(FileParams({WriteFile("over_limit.dat", "", 524288001)})));
  const Strings over = TakeRefusals();
  ASSERT_EQ(over.size(), 1u);
  EXPECT_NE(over[0].find(Text("chat.file.max_size_desc")), std::string::npos) << over[0];
  talvex_test::DrainLoopers();
  EXPECT_EQ(AllSends(), 0u) << "the good file of a refused batch stays too";
}

TEST_F(SendFileTest, AStagedFileMovesThroughTheUploadStatesAndIsReported) {
  std::vector<Variant> states;
  meeting_.files().Subscribe(1, 5, Collect(states));
  const std::string source = WriteFile("plan.TXT", "the plan, in full");
  Variant params = FileParams({source});
  params.Set("action_source", 3);
  ChooseReceiver(Receiver("u2"));
  EXPECT_TRUE(SendFiles(params));
  ASSERT_TRUE(WaitUntil([&] { return Sends(52).size() == 1; }));
  const Variant sent = Sends(52)[0];
  const std::string staged = sent.GetString("file_elem_file_path");
  EXPECT_EQ(staged.find(talvex::ChatFileUtils::GetChatFileDateDirPath()), 0u) << staged;
  EXPECT_EQ(sent.GetString("conv_id"), "c2c_u2");

  ASSERT_TRUE(WaitUntil([&] { return StatusesOf(states) == std::vector<int64_t>{0, 1, 3}; }))
      << ::testing::PrintToString(StatusesOf(states));
  EXPECT_EQ(states[0].Get("file_info").GetString("path"), staged) << "the upload reads the staged copy";
  auto reports = base::analytics::RecordedEvents("inmeeting_im_null_file_null_null_send");
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].properties["action_source"], "3");
  EXPECT_EQ(reports[0].properties["report_conv_type"], "5");
  EXPECT_EQ(reports[0].properties["report_file_type"], "txt") << "the extension in lower case";

  // To the whole waiting room a file goes by its own method, and fails
  // visibly when the server says so.
  states.clear();
  ChooseReceiver(GroupReceiver(3));
  meeting_.send_desk().FailNextSends(30001);
  EXPECT_TRUE(SendFiles(FileParams({source})));
  ASSERT_TRUE(WaitUntil([&] { return !states.empty() && StatusesOf(states).back() == 4; }));
  ASSERT_EQ(Sends(57).size(), 1u);
  EXPECT_EQ(Sends(57)[0].GetString("report_conv_type"), "4");
  meeting_.files().Unsubscribe(5);
}

TEST_F(SendFileTest, SameNamesInOneBatchLandOnSeparateCopies) {
  const std::string a = WriteFile("same.txt", "first");
  util::file::EnsureDirExist(talvex_test::TempRoot() + "/other");
  EXPECT_TRUE(SendFiles(FileParams({a, WriteFile("other/same.txt", "second, longer"), a})));
  ASSERT_TRUE(WaitUntil([&] { return Sends(52).size() == 3; }));
  std::set<std::string> staged;
  for (auto const& s : Sends(52)) staged.insert(s.GetString("file_elem_file_path"));
  EXPECT_EQ(staged.size(), 3u);
}

TEST_F(SendFileTest, SwitchesOfTheMeetingAndTheOrganizationStopFiles) {
  const std::string path = WriteFile("x.txt", "x");
  Configure("chat", "send_file_enable", false);
  EXPECT_FALSE(SendFiles(FileParams({path})));
  EXPECT_EQ(TakeRefusals(), Strings{}) << "switched off files are not offered, so nothing is said";
  Configure("chat", "send_file_enable", true);
  Configure("meeting-ability", "account_setting_send_file", false);
  EXPECT_FALSE(SendFiles(FileParams({path})));
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.enterprise_no_file")});
  Configure("meeting-ability", "account_setting_send_file", true);
  ChooseReceiver(Receiver("gone"));
  EXPECT_FALSE(SendFiles(FileParams({path})));
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.member_left")});
  talvex_test::DrainLoopers();
  EXPECT_EQ(AllSends(), 0u);
}

}  // namespace
}  // namespace send_test
