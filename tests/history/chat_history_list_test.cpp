// A chat panel list fed by the simulated meeting: live messages, time tips,
// unread counting, deletions, meeting changes, send errors, and one's own
// messages sent through the send model and coming back.
#include "history_fixture.h"

#include <QDateTime>

#include "base/analytics/analytics.h"
#include "base/util/time_util.h"
#include "chat/biz_model/chat_send_message_biz_model.h"
#include "framework/meeting/meeting_context.h"

namespace history_test {
namespace {

using talvex_test::LogCapture;

class ChatPanelListTest : public HistoryFixture {
 protected:
  void SetUp() override {
    HistoryFixture::SetUp();
    Attach();
    WaitForPage();
    updates_.clear();
  }

  // Waits for the panel's 400 ms flush.
  void WaitForFlush() {
    auto* panel = static_cast<chat::ChatPanelHistoryListViewModel*>(list_.get());
    ASSERT_TRUE(talvex_test::WaitUntil([panel] { return !panel->flush_pending(); }));
  }
  void SetScrolledUp(bool up) {
    Variant flag = Json("{}");
    flag.Set(ChatHistoryListIsScrollBottomFields_kBooleanIsSnapBottom, !up);
    list_->Handle(List::kActionScrollPosition, &flag);
  }
};

TEST_F(ChatPanelListTest, AttachPublishesThePaneAndAsksForTheNewestPage) {
  auto requests = meeting_.messages().InvocationsOf(62);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0].GetUint64("msg_id"), 0u) << "from the newest message";
  EXPECT_EQ(requests[0].GetString("meeting_id"), kMeeting);
  auto pane = list_->PickPropValue(List::kPropChatPaneType);
  EXPECT_EQ(pane.GetString(ChatHistoryListGetChatPaneTypeFields_kStringGetChatPaneTypeMessageConvId), kMeeting);
  EXPECT_TRUE(list_->HasProp(List::kPropListAttached));
  EXPECT_EQ(meeting_.list_records().live_lists(), 1u);
}

TEST_F(ChatPanelListTest, OthersMessagesArriveTogetherAfterTheFlush) {
  const std::string a = Receive(kAvery, "one");
  const std::string b = Receive(kJordan, "two");
  EXPECT_TRUE(updates_.empty()) << "held for the flush";
  WaitForFlush();
  ASSERT_EQ(updates_.size(), 1u);
  EXPECT_EQ(updates_[0].type, List::kUpdateAppend);
  // The first message of an empty list opens with its time.
  ASSERT_EQ(updates_[0].ids.size(), 3u);
  EXPECT_TRUE(IsTip(updates_[0].ids[0]));
  EXPECT_EQ(updates_[0].ids[1], a);
  EXPECT_EQ(updates_[0].ids[2], b);
  EXPECT_EQ(updates_[0].reuse_ids, (std::vector<std::string>{"reuse_id-1_2", "reuse_id0_2", "reuse_id0_2"}));
  EXPECT_EQ(meeting_.list_records().List(list_->list_id()), updates_[0].ids);

  const std::string c = Receive(kAvery, "three");
  WaitForFlush();
  ASSERT_EQ(updates_.size(), 2u) << "a message after the flush starts a new timer";
  EXPECT_EQ(updates_[1].ids, std::vector<std::string>{c});
  const std::string own = Receive(kSelf, "mine", 0, true);
  ASSERT_EQ(updates_.size(), 3u) << "one's own message goes out at once";
  EXPECT_EQ(updates_[2].ids, std::vector<std::string>{own});
}

TEST_F(ChatPanelListTest, TimeTipsSeparateMessagesMoreThanThreeMinutesApart) {
  const uint64_t t0 = 1700000000;
  Receive(kSelf, "first", t0, true);
  const std::string same_gap = Receive(kSelf, "exactly 180 s later", t0 + 180, true);
  const std::string later = Receive(kSelf, "181 s later", t0 + 361, true);
  ASSERT_EQ(updates_.size(), 3u);
  EXPECT_EQ(updates_[0].ids.size(), 2u) << "the first message opens with a tip";
  EXPECT_TRUE(IsTip(updates_[0].ids[0]));
  EXPECT_EQ(updates_[1].ids, std::vector<std::string>{same_gap}) << "a gap of exactly 180 s gives none";
  ASSERT_EQ(updates_[2].ids.size(), 2u);
  EXPECT_TRUE(IsTip(updates_[2].ids[0]));
  EXPECT_EQ(updates_[2].reuse_ids[0], "reuse_id-1_2");
  EXPECT_EQ(updates_[2].ids[1], later);
  auto tip = meeting_.messages().FindMessage(updates_[2].ids[0]);
  EXPECT_EQ(tip->Get("msg_content").GetString("item_content"), List::TimeTipText(t0 + 361));
}

TEST_F(ChatPanelListTest, TimeTipTextNamesTheDayWhenItIsNotToday) {
  const std::string today = List::TimeTipText(static_cast<uint64_t>(util::time::GetServerTimestamp()));
  ASSERT_EQ(today.size(), 5u) << today;
  EXPECT_EQ(today[2], ':');
  const std::string long_ago = List::TimeTipText(946684800);  // 2000-01-01
  EXPECT_EQ(long_ago.substr(0, 8), QDateTime::fromSecsSinceEpoch(946684800).toString("yyyy-MM-").toStdString());
  EXPECT_EQ(long_ago.size(), 16u) << long_ago;
}

TEST_F(ChatPanelListTest, UnreadTipCountsUpToNinetyNineThenAddsAPlus) {
  base::analytics::ClearRecordedEvents();
  SetScrolledUp(true);
  Receive(kAvery, "first", 1700000000);
  WaitForFlush();
  ASSERT_FALSE(tips_.empty());
  EXPECT_EQ(tip_counts_.back(), 1);
  for (int i = 1; i < 99; ++i) Receive(kAvery, "m" + std::to_string(i), 1700000000 + i);
  WaitForFlush();
  EXPECT_EQ(tip_counts_.back(), 99);
  EXPECT_EQ(tips_.back(), "99 new messages");
  Receive(kAvery, "one more", 1700000100);
  WaitForFlush();
  EXPECT_EQ(tip_counts_.back(), 100);
  EXPECT_EQ(tips_.back(), "99+ new messages");
  EXPECT_EQ(snaps_, 0) << "a reader above the bottom stays where they are";
  EXPECT_EQ(base::analytics::RecordedEvents("meetingpage_impanel_null_tips_null_null_exposure").size(), 1u)
      << "the first unread message is reported once";

  SetScrolledUp(false);
  EXPECT_EQ(tip_counts_.back(), 0) << "back at the bottom the count clears";
  EXPECT_EQ(tips_.back(), "");
}

TEST_F(ChatPanelListTest, MentionTipAndItsClickKeepLaterMessagesCounted) {
  SetScrolledUp(true);
  Receive(kAvery, "before 1");
  Receive(kAvery, "before 2");
  Variant mention = sim::TextRecord(kMeeting, kJordan, "@Alex look");
  mention.Set("chat_type", 6);
  const std::string mention_id = meeting_.messages().Post(mention);
  WaitForFlush();
  Receive(kAvery, "after 1");
  Receive(kAvery, "after 2");
  WaitForFlush();
  EXPECT_EQ(tips_.back(), Text(0xba4380ab));
  EXPECT_EQ(tip_counts_.back(), 5);

  base::analytics::ClearRecordedEvents();
  list_->Handle(List::kActionClickUnreadTip, nullptr);
  ASSERT_FALSE(scrolls_.empty());
  EXPECT_EQ(scrolls_.back(), mention_id);
  EXPECT_EQ(tip_counts_.back(), 2) << "the two messages after the mention stay counted";
  EXPECT_EQ(tips_.back(), "2 new messages");
  EXPECT_EQ(base::analytics::RecordedEvents("meetingpage_impanel_null_tips_null_null_click").size(), 1u);

  // Without a mention the click goes to the bottom.
  const int snaps = snaps_;
  const size_t published = tips_.size();
  list_->Handle(List::kActionClickUnreadTip, nullptr);
  EXPECT_EQ(snaps_, snaps + 1);
  EXPECT_EQ(tips_.size(), published) << "no new tip prop";
}

TEST_F(ChatPanelListTest, DeletingTheOnlyMessageUnderATipTakesTheTipToo) {
  const std::string first = Receive(kSelf, "alone", 1700000000, true);
  ASSERT_EQ(updates_.back().ids.size(), 2u);
  const std::string tip = updates_.back().ids[0];
  updates_.clear();
  meeting_.messages().Delete(first);
  ASSERT_EQ(updates_.size(), 2u);
  EXPECT_EQ(updates_[0].type, List::kUpdateRemoved);
  EXPECT_EQ(updates_[0].ids, std::vector<std::string>{first});
  EXPECT_EQ(updates_[1].ids, std::vector<std::string>{tip});
  EXPECT_TRUE(meeting_.list_records().List(list_->list_id()).empty());
  EXPECT_EQ(list_->show_msg_ids().Size(), 0u);

  // With two messages under the tip, deleting one keeps it.
  Receive(kSelf, "a", 1700001000, true);
  const std::string b = Receive(kSelf, "b", 1700001010, true);
  updates_.clear();
  meeting_.messages().Delete(b);
  ASSERT_EQ(updates_.size(), 1u);
  EXPECT_EQ(updates_[0].ids, std::vector<std::string>{b});
  EXPECT_EQ(list_->show_msg_ids().Size(), 2u);
}

TEST_F(ChatPanelListTest, DeletionsOutsideThisListLeaveItAlone) {
  // A message of another meeting that is deleted never reaches this list.
  const std::string elsewhere = meeting_.messages().Post(sim::TextRecord("999", kAvery, "elsewhere"));
  updates_.clear();
  meeting_.messages().Delete(elsewhere);
  EXPECT_TRUE(updates_.empty());

  // Only a following message protects a tip: a record without a kind does not.
  const std::string alone = Receive(kSelf, "alone", 1700000000, true);
  const std::string tip = updates_.back().ids[0];
  Variant bare = Json(R"({"msg_id": "bare", "message_status": 2, "is_from_self": true, "conv_id": "801234567"})");
  meeting_.messages().AddMessage(bare);
  Variant added("bare");
  meeting_.messages().FireEvent(35, &added);
  ASSERT_EQ(list_->show_msg_ids().Size(), 3u);
  updates_.clear();
  meeting_.messages().Delete(alone);
  ASSERT_EQ(updates_.size(), 2u);
  EXPECT_EQ(updates_[0].ids, std::vector<std::string>{alone});
  EXPECT_EQ(updates_[1].ids, std::vector<std::string>{tip}) << "the tip goes with the last message it stood over";
}

TEST_F(ChatPanelListTest, UpdatesAndWithdrawalsReplaceTheRow) {
  const std::string id = Receive(kSelf, "typo", 0, true);
  updates_.clear();
  meeting_.messages().Revoke(id);
  ASSERT_EQ(updates_.size(), 1u);
  EXPECT_EQ(updates_[0].type, List::kUpdateChanged);
  EXPECT_EQ(updates_[0].reuse_ids, std::vector<std::string>{"reuse_id-1_2"}) << "a withdrawn message is a tip row";
}

TEST_F(ChatPanelListTest, MessagesOfOtherMeetingsAndHiddenKindsStayOut) {
  meeting_.messages().Post(sim::TextRecord("999", kAvery, "elsewhere"));
  // The panel leaves red packets to the client even when announced.
  Variant packet = sim::TextRecord(kMeeting, kAvery, "red packet");
  packet.Set("chat_type", 2);
  packet.Set("msg_id", "packet");
  packet.Set("message_status", 2);
  meeting_.messages().AddMessage(packet);
  Variant payload("packet");
  meeting_.messages().FireEvent(35, &payload);
  std::string shown_id;
  for (int invisible : {1, 3}) {  // 1: bullets only; 3: the panel too
    Variant record = sim::TextRecord(kMeeting, kAvery, "masked");
    record["custom_config"].Set("chat_invisible", invisible);
    shown_id = meeting_.messages().Post(record);
  }
  WaitForFlush();
  ASSERT_EQ(updates_.size(), 1u);
  EXPECT_EQ(updates_[0].ids.back(), shown_id);
  EXPECT_EQ(updates_[0].ids.size(), 2u) << "a leading time tip and the one message";
}

TEST_F(ChatPanelListTest, RejoiningTheSameMainMeetingKeepsTheList) {
  Receive(kSelf, "kept", 0, true);
  updates_.clear();
  meeting_.meeting().Join();
  EXPECT_TRUE(updates_.empty());
  // A breakout room of the same meeting keeps it too; another meeting clears it.
  auto& context = meeting_.context();
  context.in_breakout_room = true;
  context.main_meeting_id = context.meeting_id;
  context.meeting_id = 5550001;
  Variant ok = Json(R"({"result":0})");
  meeting_.meeting().FireEvent(1, &ok);
  EXPECT_TRUE(updates_.empty());
  context.in_breakout_room = false;
  meeting_.meeting().FireEvent(1, &ok);
  ASSERT_EQ(updates_.size(), 1u);
  EXPECT_EQ(updates_[0].type, List::kUpdateReset);
  EXPECT_TRUE(updates_[0].ids.empty());
  ok.Set("result", 3);
  meeting_.meeting().FireEvent(1, &ok);
  EXPECT_EQ(updates_.size(), 1u) << "a failed join changes nothing";
}

class SendErrorTest : public ChatPanelListTest {
 protected:
  std::string ToastFor(int code, int chat_type = 0, std::string const& error_msg = "") {
    Variant result =
        Json(R"({"result":)" + std::to_string(code) + R"(,"chat_type":)" + std::to_string(chat_type) + "}");
    result.Set("error_msg", error_msg);
    const size_t before = ui_->toasts().size();
    meeting_.messages().FireEvent(16, &result);
    if (ui_->toasts().size() != before + 1) return "<no toast>";
    EXPECT_EQ(ui_->toasts().back().duration_ms, 2000u);
    return ui_->toasts().back().text;
  }
};

// One case for each way a code finds its text.
TEST_F(SendErrorTest, EveryKindOfCodeHasItsText) {
  EXPECT_EQ(ToastFor(0), "<no toast>");
  EXPECT_EQ(ToastFor(7004), Text(0x5ea85d0));
  EXPECT_EQ(ToastFor(7006), Text(0x5ea85d0));
  EXPECT_EQ(ToastFor(10110), Text(0x55b7e41f));
  EXPECT_EQ(ToastFor(6017, 0, "invalid receiver userid"), Text(0x4ac0e9c2));
  EXPECT_EQ(ToastFor(6017, 0, "other"), Text(0xc44d1d12) + "6017");
  EXPECT_EQ(ToastFor(10104, 4), "The image wasn't sent: " + Text(0x83003322));
  EXPECT_EQ(ToastFor(10104, 0), "The message wasn't sent: " + Text(0x83003322));
  // Webinar-only codes are plain failures outside a webinar.
  EXPECT_EQ(ToastFor(20006), Text(0xc44d1d12) + "20006");
  meeting_.context().is_webinar = true;
  EXPECT_EQ(ToastFor(20006), Text(0xec54bfb9));
  meeting_.context().is_webinar = false;
  // Without a network the network codes say so.
  EXPECT_EQ(ToastFor(8004), Text(0x215723ba));
  util::networkinfo::SetActiveNetworkInfo({false, 0});
  EXPECT_EQ(ToastFor(8004), Text(0xdf5b367f));
  EXPECT_EQ(ToastFor(7005), Text(0x215723ba)) << "not a network code";
  util::networkinfo::SetActiveNetworkInfo({true, 1});
}

TEST_F(SendErrorTest, ThePanelSpeaksForTheListsBelowIt) {
  int lower = 0;
  meeting_.messages().SubscribePriority(16, 50, 99, std::make_shared<framework::PriorityEventHandler>(
                                                        [&](Variant const*, bool&) { ++lower; }));
  ToastFor(7004);
  EXPECT_EQ(lower, 0) << "the failure stopped at the panel";
  ToastFor(0);
  EXPECT_EQ(lower, 1) << "a success goes on";
}

TEST_F(SendErrorTest, OperationResultsAndFileFeedback) {
  auto operation = [&](int code, int conv_type) {
    Variant result =
        Json(R"({"result":)" + std::to_string(code) + R"(,"message_conv_type":)" + std::to_string(conv_type) + "}");
    const size_t before = ui_->toasts().size();
    meeting_.messages().FireEvent(11, &result);
    return ui_->toasts().size() == before ? std::string("<no toast>") : ui_->toasts().back().text;
  };
  EXPECT_EQ(operation(0, 2), "<no toast>");
  EXPECT_EQ(operation(10031, 2), Text(0xadf1fdc1));
  EXPECT_EQ(operation(20016, 1), Text(0xadf1fdc1));
  EXPECT_EQ(operation(10031, 1), Text(0x31f70655) + "10031");
  EXPECT_EQ(operation(77, 3), Text(0x31f70655) + "77");

  const size_t before = ui_->toasts().size();
  meeting_.files().RefuseUpload();
  meeting_.files().FailTransfer(21009);
  meeting_.files().FailTransfer(21001);
  meeting_.files().FailTransfer(500);
  ASSERT_EQ(ui_->toasts().size(), before + 3);
  EXPECT_EQ(ui_->toasts()[before + 1].text, Text(0x55b7e41f));

  Variant text("The host muted chat");
  meeting_.messages().FireEvent(41, &text);
  EXPECT_EQ(ui_->toasts().back().text, "The host muted chat");
}

TEST_F(ChatPanelListTest, BadPayloadsAreLoggedAndChangeNothing) {
  LogCapture log;
  Variant number(42), map(base::variant::kVariantTypeMap), unknown("no-such-message");
  for (uint32_t event : {35u, 36u, 37u, 11u, 16u, 39u}) {
    for (Variant const* bad : std::initializer_list<Variant const*>{nullptr, &number, &map, &unknown}) {
      meeting_.messages().FireEvent(event, bad);
    }
  }
  meeting_.meeting().FireEvent(1, nullptr);
  meeting_.meeting().FireEvent(1, &number);
  list_->Handle(List::kActionScrollPosition, nullptr);
  list_->Handle(List::kActionScrollPosition, &number);
  list_->Handle(List::kActionSetAnchor, &map);
  list_->Handle(List::kActionGetMore, &number);
  WaitForPage();
  EXPECT_TRUE(updates_.empty() || (updates_.size() == 1 && updates_[0].type == List::kUpdateReset));
  EXPECT_TRUE(ui_->toasts().empty());
  EXPECT_TRUE(log.Contains("<IM> message not found with msg_id=no-such-message", base::log::kLogError));
}

TEST_F(ChatPanelListTest, DetachReleasesTheListAndLeavesTheClientsModels) {
  const uint64_t self = framework::SubscriberId(list_.get());
  ASSERT_TRUE(meeting_.messages().HasSubscriber(self));
  list_->DidDetached();
  EXPECT_EQ(meeting_.list_records().live_lists(), 0u);
  EXPECT_FALSE(meeting_.messages().HasSubscriber(self));
  EXPECT_FALSE(meeting_.meeting().HasSubscriber(self));
  EXPECT_FALSE(meeting_.files().HasSubscriber(self));
  EXPECT_FALSE(meeting_.shield().HasSubscriber(self));
  EXPECT_FALSE(meeting_.notifications().HasSubscriber(self));
  Receive(kAvery, "after detach");
  talvex_test::SpinFor(450);
  EXPECT_TRUE(updates_.empty());
  list_.reset();
}

// A message sent through the send model shows at once as sending and is
// updated by its result; a failed send stays in the list and the user reads why.
TEST_F(ChatPanelListTest, ASentTextShowsAtOnceAndIsUpdatedByItsResult) {
  auto send = runtime_.ModelOf(chat::kChatSendMessageBizModelId);
  ASSERT_NE(send, nullptr);
  auto send_text = [&](std::string const& text) {
    Variant params(base::variant::kVariantTypeMap);
    params.Set(chat::kSendFieldText, text);
    params.Set("template_type", 2);
    EXPECT_TRUE(send->Invoke(TypedBizModel::ChatSendMessage::ModelImpl::kSendTextMessage, &params, nullptr));
    EXPECT_EQ(updates_.size(), 1u) << "one's own message skips the flush";
    EXPECT_EQ(updates_.at(0).type, List::kUpdateAppend);
    return updates_.at(0).ids.back();
  };
  const std::string id = send_text("hello everyone");
  auto record = meeting_.messages().FindMessage(id);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->GetInt32("message_status"), 1);
  EXPECT_EQ(record->Get("ui_msg_content")[0].GetString("item_content"), "hello everyone");
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return updates_.size() == 2; }));
  EXPECT_EQ(updates_[1].type, List::kUpdateChanged);
  EXPECT_EQ(updates_[1].ids, std::vector<std::string>{id});
  EXPECT_EQ(meeting_.messages().FindMessage(id)->GetInt32("message_status"), 2);
  EXPECT_TRUE(ui_->toasts().empty());

  updates_.clear();
  meeting_.send_desk().FailNextSends(7004);
  const std::string failed = send_text("too fast");
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return !ui_->toasts().empty() && updates_.size() == 2; }));
  EXPECT_EQ(ui_->toasts().back().text, Text(0x5ea85d0));
  EXPECT_EQ(updates_[1].ids, std::vector<std::string>{failed});
  EXPECT_EQ(meeting_.messages().FindMessage(failed)->GetInt32("message_status"), 3);
}

}  // namespace
}  // namespace history_test
