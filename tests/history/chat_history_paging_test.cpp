// History pages: the newest page, older pages, the 51-id probe for more, the
// leading tip at the top of the history, the anchor hunt, failed pages.
#include "history_fixture.h"

namespace history_test {
namespace {

using talvex_test::LogCapture;

class PagingTest : public HistoryFixture {
 protected:
  // The client's answer to a history request, announced as a list change.
  void FirePage(std::string const& meeting_id) {
    Variant page = Json(R"({"result":0,"msg_id_list":[],"meeting_id":")" + meeting_id + R"("})");
    meeting_.messages().FireEvent(39, &page);
  }
  std::vector<std::string> ShownMessages(Update const& update) {
    std::vector<std::string> shown;
    for (auto const& id : update.ids) {
      if (!IsTip(id)) shown.push_back(id);
    }
    return shown;
  }
};

TEST_F(PagingTest, AnEmptyFirstPageClearsTheListWithoutATip) {
  Attach();
  WaitForPage();
  ASSERT_EQ(updates_.size(), 1u);
  EXPECT_EQ(updates_[0].type, List::kUpdateReset);
  EXPECT_TRUE(updates_[0].ids.empty());
  EXPECT_EQ(meeting_.list_records().tips_made(), 0);
}

TEST_F(PagingTest, FiftyMessagesAreTheWholeHistoryAndOpenWithATip) {
  auto ids = Seed(50);
  Attach();
  WaitForPage();
  ASSERT_EQ(updates_.size(), 1u);
  EXPECT_EQ(updates_[0].type, List::kUpdateReset);
  ASSERT_EQ(updates_[0].ids.size(), 51u);
  EXPECT_TRUE(IsTip(updates_[0].ids[0])) << "the top of the history";
  EXPECT_EQ(updates_[0].ids[1], ids[0]);
  EXPECT_EQ(updates_[0].ids.back(), ids.back());
  EXPECT_EQ(meeting_.list_records().List(list_->list_id()).size(), 51u);
}

TEST_F(PagingTest, FiftyOneMessagesMeanMoreAboveAndNoTip) {
  auto ids = Seed(60);
  Attach();
  WaitForPage();
  ASSERT_EQ(updates_.size(), 1u);
  ASSERT_EQ(updates_[0].ids.size(), 51u) << "the probe message stays shown";
  EXPECT_FALSE(IsTip(updates_[0].ids[0]));
  EXPECT_EQ(updates_[0].ids[0], ids[9]);

  // Scrolling up asks for the page before the oldest shown message.
  list_->Handle(List::kActionGetMore, nullptr);
  auto requests = meeting_.messages().InvocationsOf(62);
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_EQ(requests[1].GetUint64("msg_id"), meeting_.messages().FindMessage(ids[9])->GetUint64("local_msg_id"));
  WaitForPage();
  ASSERT_EQ(updates_.size(), 2u);
  EXPECT_EQ(updates_[1].type, List::kUpdateOlderPage);
  ASSERT_EQ(updates_[1].ids.size(), 10u) << "nine older messages under a leading tip";
  EXPECT_TRUE(IsTip(updates_[1].ids[0]));
  EXPECT_EQ(updates_[1].ids[1], ids[0]);
  EXPECT_EQ(meeting_.list_records().List(list_->list_id()).size(), 51u) << "older pages are not reported";
}

TEST_F(PagingTest, ASecondRequestWhileOneRunsIsDropped) {
  Seed(3);
  Attach();
  LogCapture log;
  EXPECT_TRUE(list_->is_getting_more());
  EXPECT_FALSE(list_->GetHistoryMessage(""));
  list_->Handle(List::kActionGetMore, nullptr);
  EXPECT_EQ(meeting_.messages().InvocationsOf(62).size(), 1u);
  EXPECT_EQ(log.Count("<IM> getting more message"), 2u);
  WaitForPage();
  EXPECT_EQ(updates_.size(), 1u);
}

TEST_F(PagingTest, AFailedPageLeavesTheRequestStanding) {
  Seed(3);
  meeting_.messages().FailNextHistoryPage(7);
  Attach();
  talvex_test::SpinFor(50);
  EXPECT_TRUE(list_->is_getting_more()) << "a failed page blocks paging until the next answer";
  EXPECT_TRUE(updates_.empty());
  EXPECT_FALSE(list_->GetHistoryMessage(""));

  // The client's next list change brings a page through, unless it is another meeting's.
  meeting_.messages().SetHistorySynchronous(true);
  LogCapture log;
  FirePage("424242");
  EXPECT_TRUE(log.Contains("<IM> meeting_id is defferent."));
  EXPECT_TRUE(list_->is_getting_more());
  FirePage(kMeeting);
  EXPECT_FALSE(list_->is_getting_more());
}

TEST_F(PagingTest, TheAnchorThreePagesBackComesAsOneUpdateThenTheScroll) {
  auto ids = Seed(130);
  const uint64_t anchor = meeting_.messages().FindMessage(ids[5])->GetUint64("local_msg_id");
  Variant params(base::variant::kVariantTypeMap);
  params["router_params"].Set("anchor_msg_id", anchor);
  Attach(params);
  ASSERT_TRUE(talvex_test::WaitUntil([this] { return !scrolls_.empty(); }));
  EXPECT_EQ(meeting_.messages().InvocationsOf(62).size(), 3u);
  ASSERT_EQ(updates_.size(), 1u) << "nothing reaches the view while the anchor is hunted";
  EXPECT_EQ(updates_[0].type, List::kUpdateOlderPage) << "the last page answered was an older one";
  // Oldest page first: the messages read in time order from the top.
  const std::vector<std::string> messages = ShownMessages(updates_[0]);
  ASSERT_GE(messages.size(), 130u);
  EXPECT_EQ(messages.front(), ids[0]);
  EXPECT_EQ(messages.back(), ids[129]);
  for (size_t i = 1; i < messages.size(); ++i) {
    EXPECT_LE(meeting_.messages().FindMessage(messages[i - 1])->GetUint64("message_time"),
              meeting_.messages().FindMessage(messages[i])->GetUint64("message_time"));
  }
  EXPECT_EQ(scrolls_, std::vector<std::string>{ids[5]});
}

TEST_F(PagingTest, MessagesBeingSentOrDeletedStayOutOfPages) {
  auto ids = Seed(4);
  meeting_.messages().Update(ids[1], [](Variant& r) { r.Set("message_status", 7); });
  meeting_.messages().Update(ids[2], [](Variant& r) { r.Set("message_status", 4); });
  Attach();
  WaitForPage();
  ASSERT_EQ(updates_.size(), 1u);
  EXPECT_EQ(ShownMessages(updates_[0]), (std::vector<std::string>{ids[0], ids[3]}));
}

TEST_F(PagingTest, TheRecordListReadsThePastMeetingsHistory) {
  Seed(2);
  Attach<chat::ChatRecordPanelHistoryListViewModel>(Json(R"({"message_conv_id":")" + std::string(kMeeting) + R"("})"));
  WaitForPage();
  EXPECT_EQ(list_->template_type(), 3);
  EXPECT_EQ(meeting_.messages().InvocationsOf(62).back().GetString("meeting_id"), kMeeting);
  ASSERT_EQ(updates_.size(), 1u);
  EXPECT_EQ(updates_[0].reuse_ids.back(), "reuse_id0_3");
}

}  // namespace
}  // namespace history_test
