// The floating chat's message flow through the simulated meeting: what a
// message becomes, how the queue paces it, what is counted unread, and what
// happens to a text sent from the quick-reply bar.
#include "bullet_fixture.h"

#include "chat/biz_model/chat_biz_model.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/util/chat_strings.h"
#include "chat/viewmodel/in_meeting_bullet_texts.h"
#include "framework/navigation/routing.h"
#include "framework/journal/host_journal.h"
#include "framework/viewmodel/authorize_view_model.h"

namespace bullet_test {
namespace {

namespace text = chat::bullet_text;

Variant Face(int index, std::string const& buffer) {
  return Variant::Array{Variant::Map{{"face_elem_index", index}, {"face_elem_buf", buffer}}};
}

class BulletFlowTest : public BulletFixture {
 protected:
  void SetUp() override {
    BulletFixture::SetUp();
    JoinAndAttach();
  }
  std::string PostFace(int who, int index, std::string const& buffer) {
    return meeting_.messages().Post(sim::ChatRecord(meeting_.meeting().meeting_id(), People(who), 1, Face(index, buffer)));
  }
  std::string PostKind(int who, int chat_type) {
    Variant content = Variant::Array{Variant::Map{{"item_type", 0}, {"item_content", "Agenda: intros, demo, Q&A"}}};
    Variant ext;
    if (chat_type == 8) ext = Variant::Map{{"file_info", Variant::Map{{"name", "slides.pdf"}, {"size", 1024}}}};
    return meeting_.messages().Post(
        sim::ChatRecord(meeting_.meeting().meeting_id(), People(who), chat_type, content, false, ext));
  }
  // Lets the pacing queue run dry.
  void Drain() { Advance(VM::kUpcastIntervalMs * 60); }
  std::vector<std::string> ShownTexts() {
    std::vector<std::string> texts;
    for (auto const& b : Bullets()) texts.push_back(TextOf(b));
    return texts;
  }
  void Choose(Variant receiver) { meeting_.private_chats().SetReceiver(std::move(receiver)); }
  void Send(std::string const& text) { Act(VM::kActionSendMsg, Variant::Map{{"msg_text", text}}); }
};

TEST_F(BulletFlowTest, AMessageBecomesOneLineWithItsSenderEmojiAndNoLineBreaks) {
  meeting_.faces().Load();
  Say(2, "Hello\tall\n<url>www.talvex-demo.org</url> [Smile]");
  ASSERT_TRUE(Bullets().empty()) << "nothing reaches the view before the first tick";
  Advance(VM::kUpcastIntervalMs);
  ASSERT_EQ(Bullets().size(), 1u);
  Variant const& bullet = Bullets()[0];
  EXPECT_EQ(bullet.GetString("msg_sender"), "Member u2");
  EXPECT_EQ(bullet.GetInt32("update_type"), VM::kUpdateNew);
  EXPECT_EQ(bullet.GetInt32("msg_type"), VM::kBulletPublic);
  EXPECT_EQ(bullet.GetInt32("layout_type"), 12);
  Variant const& items = bullet.Get("msg_content_ex_list");
  ASSERT_EQ(items.Size(), 2u);
  EXPECT_EQ(items[0].GetString("item_content"), "Hello all www.talvex-demo.org ");
  EXPECT_EQ(items[1].GetInt32("item_type"), 1);
  EXPECT_FALSE(items[1].GetString("item_emoji_path").empty());
  EXPECT_FALSE(bullet.GetString("msg_id").empty());
  EXPECT_GT(bullet.GetInteger("bulletmsg_addtime"), 0);
  EXPECT_TRUE(Last(VM::kPropNewTextArrived).AsBoolean());
}

TEST_F(BulletFlowTest, FacesPassTheNewMessageSwitchAndUnknownFacesShowAsText) {
  meeting_.faces().Load();
  meeting_.bullet_settings().SetNewMsgBullet(false);
  Say(2, "this text stays off the video");
  PostFace(3, 5, "[ThumbsUp]");
  PostFace(3, 999, "[Unicorn]");
  Drain();
  ASSERT_EQ(Bullets().size(), 2u);
  EXPECT_EQ(Bullets()[0].GetInt32("msg_type"), VM::kBulletFace);
  EXPECT_FALSE(Bullets()[0].GetString("bullet_image_path").empty());
  EXPECT_EQ(Bullets()[1].GetInt32("msg_type"), VM::kBulletPublic);
  EXPECT_EQ(Bullets()[1].GetInt32("layout_type"), 0);
  EXPECT_EQ(Bullets()[1].GetString("msg_content"), "[Unicorn]");
  EXPECT_TRUE(Published(VM::kPropNewTextArrived).size() == 1) << "a face is no text";
}

TEST_F(BulletFlowTest, DisplayStateOneKeepsTextAndPicturesOffButNotNoticesFilesOrFaces) {
  meeting_.faces().Load();
  meeting_.meeting().SetDisplayState(1);
  Say(2, "hidden");
  PostKind(2, 4);
  PostKind(2, 6);
  PostKind(2, 8);
  PostFace(2, 0, "[Smile]");
  Drain();
  std::vector<int> types;
  for (auto const& b : Bullets()) types.push_back(b.GetInt32("chat_type"));
  ASSERT_EQ(types, (std::vector<int>{6, 8, 1}));
  EXPECT_EQ(Bullets()[0].GetString("msg_content"), "Agenda: intros, demo, Q&A");
  EXPECT_EQ(Bullets()[1].GetString("msg_content"), Text(text::kFileOther));
}

TEST_F(BulletFlowTest, PrivateMessagesNeverShowWhatWasSaidToYou) {
  meeting_.members().AddMember(Member("u-self"));
  sim::Sender self("u-self", "Alex Morgan", "uid-u-self");
  meeting_.messages().Post(
      sim::PrivateTextRecord(meeting_.meeting().meeting_id(), People(2), self, "my secret salary"));
  Drain();
  ASSERT_EQ(Bullets().size(), 1u);
  Variant const& incoming = Bullets()[0];
  EXPECT_EQ(incoming.GetInt32("msg_type"), VM::kBulletPrivate);
  EXPECT_EQ(incoming.GetString("msg_sender"), "");
  EXPECT_EQ(incoming.GetString("msg_receiver"), "");
  EXPECT_EQ(incoming.GetString("msg_content"), Text(text::kPrivateHidden));
  EXPECT_EQ(incoming.GetString("private_chat_label"), "(" + Text(text::kPrivateWord) + ")");

  // One's own private send comes back as "You privately to <name>:", with the
  // peer found through the conversation.
  Choose(Variant::Map{{"user_id", "u3"}, {"app_uid", "uid-u3"}, {"app_id", "1400"}, {"receiver_type", 1}});
  Forget();
  Send("see you at 3");
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return !Bullets().empty(); }, 2000));
  Variant const& own = Bullets()[0];
  EXPECT_TRUE(own.GetBoolean("is_self"));
  EXPECT_EQ(own.GetString("msg_receiver"), "Member u3");
  EXPECT_EQ(TextOf(own), "see you at 3");
  EXPECT_EQ(own.Get("private_chat_user_info").GetString("user_id"), "u3");
}

TEST_F(BulletFlowTest, TheQueuePacesEightASecondAndKeepsTheNewestFifteen) {
  for (int i = 0; i < 16; ++i) Say(2, "burst " + std::to_string(i));
  EXPECT_EQ(vm_->queued_count(), 15u);
  for (int tick = 1; tick <= 15; ++tick) {
    Advance(VM::kUpcastIntervalMs);
    EXPECT_EQ(Bullets().size(), static_cast<size_t>(tick));
  }
  EXPECT_EQ(ShownTexts().front(), "burst 1") << "the oldest is dropped";
  EXPECT_EQ(ShownTexts().back(), "burst 15");
  EXPECT_FALSE(vm_->has_upcast_timer()) << "the timer goes with the last record";
  Say(2, "later");
  EXPECT_TRUE(vm_->has_upcast_timer());
  Drain();
  EXPECT_EQ(ShownTexts().back(), "later");
}

TEST_F(BulletFlowTest, AWebinarQueueHoldsFiftyAndAFoldedOneLetsGoAfterThirtySeconds) {
  meeting_.context().is_webinar = true;
  for (int i = 0; i < 70; ++i) Say(2, "w" + std::to_string(i));
  EXPECT_EQ(vm_->queued_count(), 50u);
  Drain();
  Forget();

  Act(VM::kActionToggleBullet, Variant(false));
  Say(2, "kept while folded");
  Advance(20000);
  EXPECT_TRUE(Bullets().empty()) << "a folded overlay shows nothing";
  EXPECT_EQ(vm_->queued_count(), 1u);
  Act(VM::kActionToggleBullet, Variant(true));
  Advance(VM::kUpcastIntervalMs);
  EXPECT_EQ(ShownTexts(), (std::vector<std::string>{"kept while folded"}));

  Act(VM::kActionToggleBullet, Variant(false));
  Say(2, "too old");
  Advance(29000);
  EXPECT_EQ(vm_->queued_count(), 1u);
  Advance(2000);
  EXPECT_EQ(vm_->queued_count(), 0u) << "lost without a word";
  EXPECT_EQ(ShownTexts().size(), 1u);
}

TEST_F(BulletFlowTest, UnreadCountsOnlyWhileScrolledAwayAndCapsAtNinetyNine) {
  Say(2, "seen");
  Drain();
  EXPECT_TRUE(Published(VM::kPropUnreadMsgShow).empty());
  Act(VM::kActionScrollBottom, Variant(false));
  for (int round = 0; round < 7; ++round) {
    for (int i = 0; i < 15; ++i) Say(2, "unseen");
    Drain();
  }
  Variant const tip = Last(VM::kPropUnreadMsgShow);
  EXPECT_EQ(tip.GetInt32(VM::kUnreadCount), 105);
  EXPECT_EQ(tip.GetString(VM::kUnreadTips), "99+ new");
  Act(VM::kActionScrollBottom, Variant(true));
  EXPECT_EQ(Last(VM::kPropUnreadMsgShow).GetInt32(VM::kUnreadCount), 0);
  EXPECT_EQ(Last(VM::kPropUnreadMsgShow).GetString(VM::kUnreadTips), "");
  Act(VM::kActionNewMsgTipClick, Variant());
  EXPECT_TRUE(Last(VM::kPropUnreadMsgShow).IsNull());
  EXPECT_EQ(Reported("im_null_null_barrage_new_null_click"), 1u);
}

TEST_F(BulletFlowTest, ARecallFollowsTheMessageAndShieldingRemovesShownAndQueuedOnes) {
  const std::string id = Say(2, "oops");
  Drain();
  const std::string shown_id = Bullets().back().GetString("msg_id");
  meeting_.messages().Revoke(id);
  Drain();
  Variant const& recall = Bullets().back();
  EXPECT_EQ(recall.GetInt32("update_type"), VM::kUpdateRecall);
  EXPECT_EQ(recall.GetString("msg_id"), shown_id);
  EXPECT_EQ(recall.GetString("msg_content"), Text(text::kRecalled));

  // The host blocks u3: the view is asked to check, and answers with what it shows.
  Say(3, "spam on screen");
  Drain();
  Say(3, "spam in the queue");
  Say(2, "fine");
  meeting_.shield().ShieldSender("uid-u3");
  EXPECT_EQ(Published(VM::kPropShieldCheck).size(), 1u);
  Variant shown = Variant::Array{Bullets().back()};
  Forget();
  Act(VM::kActionCheckMsgShield, shown);
  ASSERT_EQ(Bullets().size(), 1u) << "the removal skips the queue";
  EXPECT_EQ(Bullets()[0].GetInt32("update_type"), VM::kUpdateShield);
  EXPECT_EQ(Bullets()[0].Get("msg_list")[0].GetString("msg_id"), shown[0].GetString("msg_id"));
  Drain();
  EXPECT_EQ(ShownTexts().back(), "fine");
  EXPECT_EQ(Bullets().size(), 2u) << "the queued spam never showed";
}

// A long webinar's client lets go of its oldest messages as new ones come;
// each goes with a removal event. Those must not queue behind the new ones.
TEST_F(BulletFlowTest, MessagesTheClientLetsGoOfNeitherQueueNorHoldUpNewBubbles) {
  meeting_.context().is_webinar = true;
  constexpr size_t kKept = 500;
  std::vector<std::string> ids;
  for (size_t i = 0; i < kKept; ++i) ids.push_back(Say(2, "old " + std::to_string(i)));
  Drain();
  Forget();
  // Sixty seconds at fifty a second, every new message evicting the oldest
  // kept one (ten seconds old), announced with its whole record.
  for (int second = 0; second < 60; ++second) {
    for (int k = 0; k < 50; ++k) {
      ids.push_back(Say(3, "new " + std::to_string(second) + "." + std::to_string(k)));
      const std::string oldest = ids[ids.size() - kKept - 1];
      Variant removed = sim::BulletFormOf(*meeting_.messages().FindMessage(oldest));
      meeting_.messages().FireEvent(18, &removed);
      meeting_.messages().RemoveMessage(oldest);
    }
    Advance(1000);
    ASSERT_LE(vm_->queued_count(), static_cast<size_t>(VM::kWebinarQueueBound));
  }
  size_t recalls = 0;
  for (auto const& bullet : Bullets()) recalls += bullet.GetInt32("update_type") == VM::kUpdateRecall;
  EXPECT_EQ(recalls, 0u) << "nothing evicted was on screen any more";
  EXPECT_EQ(Bullets().size(), 60u * 8u) << "eight new bubbles a second, every second";

  // A message still waiting in the queue is recalled as before.
  Drain();
  Forget();
  const std::string waiting = Say(2, "waiting");
  meeting_.messages().Revoke(waiting);
  Drain();
  ASSERT_EQ(Bullets().size(), 2u);
  EXPECT_EQ(Bullets()[1].GetInt32("update_type"), VM::kUpdateRecall);
  EXPECT_EQ(Bullets()[1].GetString("msg_id"), Bullets()[0].GetString("msg_id"));
}

TEST_F(BulletFlowTest, RedPacketsAndTheirReceiptsReadForWhomTheyAre) {
  auto& packets = meeting_.red_packets();
  const Variant riley = Variant::Map{{"user_id", "u-host"}, {"nickname", "Riley"}};
  const Variant sam = Variant::Map{{"user_id", "u3"}, {"nickname", "Sam"}};
  const Variant self = Variant::Map{{"user_id", "u-self"}, {"nickname", "Alex Morgan"}};
  const std::string ticket = packets.Send(riley);
  packets.Open(ticket, riley, sam);   // between two others: none of ours
  packets.Open(ticket, riley, self);  // we opened Riley's
  packets.Open(packets.Send(self), self, sam);
  packets.FireEvent(0, Variant(Variant::Array{Variant::Map{{"msg_type", 9}}, Variant(3)}));
  Drain();
  ASSERT_EQ(Bullets().size(), 4u);
  EXPECT_EQ(Bullets()[0].GetString("msg_sender"), "Riley ");
  EXPECT_EQ(Bullets()[0].GetInt32("chat_type"), 2);
  EXPECT_EQ(Bullets()[0].GetString("ticket"), ticket);
  EXPECT_EQ(Bullets()[1].GetString("msg_sender"), "You from Riley");
  EXPECT_EQ(Bullets()[1].GetInt32("desc_click_range_start"), 1);
  EXPECT_EQ(Bullets()[2].GetString("msg_sender"), "You ");
  EXPECT_EQ(Bullets()[3].GetString("msg_sender"), "Sam ");
  EXPECT_EQ(Bullets()[3].GetInt32("desc_click_range_end"), 7);
  Act(VM::kActionRedPacketClick, Variant());
  Act(VM::kActionRedPacketClick, Variant());
  EXPECT_EQ(Reported("red_packet_click_in_meeting_bullet"), 1u) << "a double click counts once";
}

TEST_F(BulletFlowTest, RefusedSendsKeepTheUsersText) {
  Send(std::string(3001, 'x'));
  EXPECT_EQ(Toasts().back(), Text(text::kTooLong));
  EXPECT_TRUE(Published(VM::kPropBulletDraftText).empty()) << "the text never left the input";
  Send(std::string(3000, 'x'));
  EXPECT_EQ(meeting_.messages().InvocationsOf(7).size(), 1u);

  Send(" \r\n ");
  EXPECT_EQ(Last(VM::kPropBulletDraftText).AsStr(), " \r\n ");
  talvex::AuthorizeState::Set(talvex::AuthorizeState::kNetworkBroken);
  Send("while offline");
  talvex::AuthorizeState::Set(talvex::AuthorizeState::kAuthorized);
  EXPECT_EQ(Last(VM::kPropBulletDraftText).AsStr(), "while offline");

  Choose(Variant::Map{{"user_id", "u-gone"}, {"app_uid", "uid-gone"}, {"receiver_type", 1}});
  Send("are you there?");
  EXPECT_EQ(Toasts().back(), Text(chat::kTextSendMemberLeft));
  EXPECT_EQ(Last(VM::kPropBulletDraftText).AsStr(), "are you there?");

  Choose(Variant::Map{{"user_id", "u-gone"}, {"receiver_type", 6}});
  const size_t drafts = Published(VM::kPropBulletDraftText).size();
  Send("waiting room?");
  EXPECT_EQ(Published(VM::kPropBulletDraftText).size(), drafts) << "a waiting-room refusal keeps nothing back";
  EXPECT_EQ(meeting_.messages().InvocationsOf(7).size(), 1u);
  Send("");
  EXPECT_EQ(meeting_.messages().InvocationsOf(7).size(), 1u);
}

TEST_F(BulletFlowTest, SendsGoByTheReceiverAndFailuresSayWhy) {
  Choose(Variant::Map{{"receiver_type", 3}});
  Send("to the waiting room");
  ASSERT_EQ(meeting_.messages().InvocationsOf(23).size(), 1u);
  Variant const sent = meeting_.messages().InvocationsOf(23)[0];
  EXPECT_EQ(sent.GetInt32("conv_type"), 2);
  EXPECT_EQ(sent.GetInt32("message_send_from_type"), 1);
  meeting_.context().is_webinar = true;
  meeting_.context().self_role = talvex::MeetingContext::kRoleAttendee;
  Choose(Variant::Map{{"receiver_type", 4}});
  Send("question for the panel");
  EXPECT_EQ(meeting_.messages().InvocationsOf(40).size(), 1u);
  auto events = base::analytics::RecordedEvents("meetingpage_im_null_sendto_null_null_click");
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0].properties["sendto"], "2");
  EXPECT_EQ(base::analytics::RecordedEvents("bullet_vm_send_text_msg").size(), 2u);

  Forget();
  Variant failed = Variant::Map{{"chat_type", 0}, {"result", 80002}, {"error_msg", "too long"}};
  meeting_.messages().FireEvent(16, failed);
  failed.Set("result", 4242);
  meeting_.messages().FireEvent(16, failed);
  failed.Set("chat_type", 1);
  failed.Set("result", 10104);
  meeting_.messages().FireEvent(16, failed);
  auto toasts = Toasts();
  ASSERT_GE(toasts.size(), 3u);
  EXPECT_EQ(toasts[toasts.size() - 3], Text(text::kTooLong));
  EXPECT_EQ(toasts[toasts.size() - 2], Text(text::kSendFailed) + "4242");
  EXPECT_NE(toasts.back().find(Text(text::kBlockedWordsReason)), std::string::npos);
  Drain();
  EXPECT_TRUE(Bullets().empty()) << "a failed send never floats";
}

TEST_F(BulletFlowTest, TheDraftIsCachedAndRestoredAndClicksOpenTheChat) {
  Act(VM::kActionCacheUnsendMessage, Variant::Map{{VM::kUnsendText, "half a thought"}});
  meeting_.model(590).FireEvent(0, Variant());
  EXPECT_EQ(Last(VM::kPropBulletDraftText).AsStr(), "half a thought");
  Act(VM::kActionCacheUnsendMessage, Variant::Map{{VM::kUnsendText, ""}});
  Act(VM::kActionSetChatPanelState, Variant(1));
  EXPECT_EQ(Last(VM::kPropBulletDraftText).AsStr(), "");

  Act(VM::kActionBulletClick, Variant());
  EXPECT_EQ(framework::HostJournal::Entries("sidebar.OpenApp extension:chat.sidebar_tab_in_meeting").size(), 1u);
  EXPECT_EQ(Reported("inmeeting_im_null_barrage_null_null_click"), 1u);
  Act(VM::kActionNoticeBulletClick, Variant());
  EXPECT_EQ(Toasts().back(), Text(chat::kTextNoticeDisabled));
  meeting_.meeting_settings().SetSwitch("notice_enable", true);
  auto* navigate = framework::NavigateService::Instance();
  navigate->ClearOpened();
  Act(VM::kActionNoticeBulletClick, Variant());
  Act(VM::kActionOpenChatPage, Variant::Map{{"update_type", 6}, {"banner_id", 17}});
  ASSERT_EQ(navigate->opened().size(), 2u);
  EXPECT_EQ(navigate->opened()[0].GetString("url"), "talvex://page/meeting_notice");
  EXPECT_EQ(navigate->opened()[1].GetString("url"), "talvex://page/inmeeting/chat");
  auto banner = base::analytics::RecordedEvents("e#meeting#barrage_notification#click");
  ASSERT_EQ(banner.size(), 1u);
  EXPECT_EQ(banner[0].properties["task_id"], "17");
}

// Records the backend sends in forms the scripted participants do not.
TEST_F(BulletFlowTest, MixedNoticeFileAndAnonymousRecordsConvertAsTheyRead) {
  meeting_.faces().Load();
  talvex_test::LogCapture log;
  Variant mixed = Variant::Map{
      {"chat_type", 12}, {"message_conv_type", 2}, {"nickname", "Sam"}, {"message_unique_id", "77"},
      {"message_elem_array", Variant::Array{Variant::Map{{"elem_type", 0}, {"text_elem_content", "Go\tteam"}},
                                            Variant::Map{{"elem_type", 6}, {"face_elem_index", 6},
                                                         {"face_elem_buf", "[Clap]"}},
                                            Variant::Map{{"elem_type", 6}, {"face_elem_index", 999},
                                                         {"face_elem_buf", "[Gone]"}},
                                            Variant::Map{{"elem_type", 3}}}}};
  Variant bullet = vm_->ModelMsg2UIMsg(mixed);
  EXPECT_EQ(bullet.GetString("msg_id"), "77");
  EXPECT_EQ(TextOf(bullet), "Go team[Clap][Gone]");
  EXPECT_EQ(bullet.Get("msg_content_ex_list")[1].GetInt32("item_type"), 1);
  EXPECT_EQ(bullet.Get("msg_content_ex_list")[2].GetInt32("item_type"), 0) << "an unknown face is its text";
  EXPECT_TRUE(log.Contains("not support type 3"));

  Variant notice = Variant::Map{{"chat_type", 6}, {"message_conv_type", 2}, {"message_is_from_self", true},
                                {"ext_content", Variant::Map{{"notice_content", "Cameras on, please"}}}};
  bullet = vm_->ModelMsg2UIMsg(notice);
  EXPECT_EQ(bullet.GetString("msg_sender"), Text(text::kYou));
  EXPECT_EQ(bullet.GetString("msg_content"), "Cameras on, please");

  Variant file = Variant::Map{{"chat_type", 8}, {"message_conv_type", 2}, {"nickname", "Sam"}};
  EXPECT_EQ(vm_->ModelMsg2UIMsg(file).GetString("msg_content"), Text(text::kFileOther));
  file.Set("message_is_from_self", true);
  EXPECT_EQ(vm_->ModelMsg2UIMsg(file).GetString("msg_content"), Text(text::kFileOwn));

  // To the waiting room: the sender line names the group.
  Variant grouped = Variant::Map{{"chat_type", 4}, {"message_conv_type", 2}, {"receiver_type", 3},
                                 {"nickname", "Riley"}};
  bullet = vm_->ModelMsg2UIMsg(grouped);
  EXPECT_EQ(bullet.GetString("msg_receiver"), Text(text::kToWord) + " Waiting room");
  EXPECT_EQ(bullet.GetString("msg_content"), Text(text::kImageText));

  // An anonymous meeting shows its host who really wrote.
  meeting_.members().AddMember(Variant::Map{{"user_id", "anon"}, {"app_uid", "a"}, {"app_id", "1"},
                                            {"nickname", "Guest 1"}, {"real_name", "Jamie Lee"}});
  meeting_.context().anonymous = true;
  Variant anonymous = Variant::Map{{"chat_type", 0}, {"message_conv_type", 2}, {"nickname", "Guest 1"},
                                   {"unique_id", "anon"}};
  EXPECT_EQ(vm_->ModelMsg2UIMsg(anonymous).GetString("msg_sender"), "Guest 1") << "a member sees the alias";
  meeting_.context().self_role = talvex::MeetingContext::kRoleHost;
  EXPECT_EQ(vm_->ModelMsg2UIMsg(anonymous).GetString("msg_sender"), "Jamie Lee");

  // One's own private message recalled reads "You" and the label.
  Variant recalled = Variant::Map{{"chat_type", 0}, {"message_conv_type", 1}, {"message_is_from_self", true},
                                  {"message_status", 6}, {"msg_receiver", "Sam"},
                                  {"private_chat_user_info", Variant::Map{{"nickname", "Sam"}}}};
  bullet = vm_->ModelMsg2UIMsg(recalled);
  EXPECT_EQ(bullet.GetString("msg_sender"), Text(text::kYou) + Text(text::kOwnPrivateLabel));
  EXPECT_EQ(bullet.GetString("msg_content"), Text(text::kRecalled));
}

TEST_F(BulletFlowTest, BadPayloadsAreLoggedAndChangeNothing) {
  Say(2, "before");
  Drain();
  const auto before = published_;
  Variant bad[] = {Variant(), Variant(7), Variant("text"), Variant(true), Variant(Variant::Array{}),
                         Variant(Variant::Map{}), Variant(Variant::Map{{"msg_text", 5}, {"switch_on", "yes"}})};
  const uint32_t actions[] = {VM::kActionSendMsg, VM::kActionSetViewVisible, VM::kActionCheckMsgShield,
                              VM::kActionScrollBottom, VM::kActionCacheUnsendMessage, VM::kActionEnablePicInPic,
                              VM::kActionGetPicInPicTips, VM::kActionSetChatPanelState,
                              VM::kActionSetChatViewOpened};
  for (auto& payload : bad) {
    for (uint32_t action : actions) {
      if (payload.IsBool() && (action == VM::kActionSetViewVisible || action == VM::kActionScrollBottom ||
                               action == VM::kActionSetChatViewOpened)) {
        continue;  // a bool is what these take
      }
      vm_->Handle(action, &payload);
      vm_->Handle(action, nullptr);
    }
    for (uint32_t event : {8u, 16u, 18u}) meeting_.messages().FireEvent(event, &payload);
    meeting_.model(1000004).FireEvent(0, &payload);
    meeting_.model(10054).FireEvent(0, &payload);
    meeting_.model(690).FireEvent(1, &payload);
    meeting_.messages().FireEvent(31, &payload);
    meeting_.messages().FireEvent(42, &payload);
  }
  Drain();
  for (auto const& [prop, values] : published_) {
    if (prop == VM::kPropNewBulletMsg || prop == VM::kPropPicInPicUidata) continue;
    EXPECT_EQ(values.size(), before.count(prop) ? before.at(prop).size() : 0u) << "prop " << prop;
  }
  // A recall payload without a message matches nothing on screen: nothing goes to the view.
  EXPECT_EQ(Bullets().size(), before.at(VM::kPropNewBulletMsg).size());
}

}  // namespace
}  // namespace bullet_test
