// The floating chat's look through the simulated meeting: folding and its
// hint, immersive mode, the waiting room, what the quick replies allow, and
// the webinar's welcome, system and join tips.
#include "bullet_fixture.h"

#include "chat/viewmodel/in_meeting_bullet_texts.h"
#include "framework/meeting/meeting_settings.h"

namespace bullet_test {
namespace {

namespace text = chat::bullet_text;

class BulletPanelTest : public BulletFixture {
 protected:
  bool Folded() { return !Last(VM::kPropShowOrHideBulletMsg).GetBoolean("show_bulletmsg_panel", true); }
  std::vector<bool> UnfoldStates() {
    std::vector<bool> states;
    for (auto const& s : Published(VM::kPropUnfoldState)) states.push_back(s.GetBoolean("show_unfold_btn"));
    return states;
  }
  void BecomeWebinarAttendee() {
    meeting_.context().is_webinar = true;
    meeting_.context().self_role = talvex::MeetingContext::kRoleAttendee;
  }
  std::vector<std::string> WelcomeTitles() {
    std::vector<std::string> titles;
    for (auto const& tip : Published(VM::kPropWelcomeTip)) titles.push_back(tip.GetString(VM::kWelcomeTitle));
    return titles;
  }
};

TEST_F(BulletPanelTest, FoldingShowsAQuietHintForFourSecondsAndAMessageBringsItBackFlashing) {
  JoinAndAttach();
  EXPECT_FALSE(Folded());
  Act(VM::kActionToggleBullet, Variant());
  EXPECT_TRUE(Folded());
  EXPECT_FALSE(meeting_.bullet_settings().show_bullet()) << "the choice is kept for the next meeting";
  EXPECT_EQ(Reported("bullet_vm_click_the_collapse_barrage_btn"), 1u);
  // Back from the waiting room just after folding: the hint, quietly.
  meeting_.meeting().LeaveWaitingRoom();
  EXPECT_EQ(UnfoldStates(), (std::vector<bool>{true}));
  EXPECT_EQ(Published(VM::kPropFlashUnfoldBtn).size(), 0u);

  Say(2, "while the hint shows");
  EXPECT_EQ(Published(VM::kPropFlashUnfoldBtn).size(), 1u) << "a message flashes the hint";
  Advance(5000);
  EXPECT_EQ(UnfoldStates(), (std::vector<bool>{true, false})) << "four seconds after the last message";
  Say(2, "a while later");
  Advance(VM::kUpcastIntervalMs);
  EXPECT_EQ(UnfoldStates(), (std::vector<bool>{true, false, true}));
  EXPECT_EQ(Published(VM::kPropFlashUnfoldBtn).size(), 2u);

  Act(VM::kActionToggleBullet, Variant(true));
  EXPECT_FALSE(Folded());
  EXPECT_TRUE(meeting_.bullet_settings().show_bullet());
  EXPECT_EQ(Reported("bullet_vm_click_the_expand_barrage_btn"), 1u);
}

TEST_F(BulletPanelTest, AWebinarHasNoHintAndAMeetingWithoutChatCannotUnfold) {
  BecomeWebinarAttendee();
  JoinAndAttach();
  Act(VM::kActionToggleBullet, Variant(false));
  Say(2, "x");
  Advance(2000);
  EXPECT_TRUE(Published(VM::kPropUnfoldState).empty());
  meeting_.meeting_settings().SetSwitch("im", false);
  Act(VM::kActionToggleBullet, Variant(true));
  EXPECT_TRUE(Folded());
  EXPECT_FALSE(Last(VM::kPropViewEnabled).AsBoolean());
}

TEST_F(BulletPanelTest, ImmersiveModeIsRefusedWhileThePanelOrTheChatIsOpenAndNeverLooksImmersiveWhileSharing) {
  JoinAndAttach();
  auto& settings = meeting_.meeting_settings();
  std::string reason;
  Act(VM::kActionQuickReplyEmojiClick, Variant());
  EXPECT_TRUE(Last(VM::kPropShowQuickReplyEmoji).AsBoolean());
  EXPECT_FALSE(settings.EnterImmersiveMode(&reason));
  EXPECT_EQ(reason, "BulletOpenEmojiSelectPanel");
  Act(VM::kActionSetChatViewOpened, Variant(true));
  EXPECT_FALSE(settings.EnterImmersiveMode(&reason));
  EXPECT_EQ(reason, "BulletChatViewOpened") << "the open chat wins";
  Act(VM::kActionCloseQuickReplyEmoji, Variant());
  Act(VM::kActionSetChatViewOpened, Variant(false));
  EXPECT_TRUE(settings.EnterImmersiveMode(&reason));
  EXPECT_TRUE(Last(VM::kPropShowOrHideBulletMsg).GetBoolean("is_immersive"));
  meeting_.screen_share().SetSelfSharing(true);
  meeting_.meeting().SetAbilities(Variant::Map{});
  EXPECT_FALSE(Last(VM::kPropShowOrHideBulletMsg).GetBoolean("is_immersive"));
  settings.LeaveImmersiveMode();
  EXPECT_FALSE(Last(VM::kPropShowOrHideBulletMsg).GetBoolean("is_immersive"));
}

TEST_F(BulletPanelTest, TheWaitingRoomHidesTheOverlayAndLeavingItRestoresTheEarlierLook) {
  JoinAndAttach();
  meeting_.meeting().EnterWaitingRoom();
  EXPECT_TRUE(Folded());
  EXPECT_TRUE(Last(VM::kPropWaitingRoomHide).AsBoolean());
  EXPECT_FALSE(UnfoldStates().back());
  meeting_.meeting().LeaveWaitingRoom();
  EXPECT_FALSE(Folded());
  EXPECT_FALSE(Last(VM::kPropWaitingRoomHide).AsBoolean());
  meeting_.model(622).FireEvent(1, Variant());
  EXPECT_FALSE(Last(VM::kPropViewEnabled).AsBoolean());
  meeting_.model(622).FireEvent(2, Variant());
  EXPECT_TRUE(Last(VM::kPropViewEnabled).AsBoolean());
}

TEST_F(BulletPanelTest, TheQuickRepliesFollowControlChatSwitchAbilitiesAndPolicy) {
  meeting_.meeting().SetAbilities(Variant::Map{
      {"meeting_ability_emoji", Variant::Map{{"ability_state", 0}, {"tips_res_index", 1}}}});
  JoinAndAttach();
  Variant ui = Last(VM::kPropUiData);
  EXPECT_TRUE(ui.GetBoolean("bullet_quick_reply_text_enabled"));
  EXPECT_EQ(ui.GetString("bullet_quick_reply_text_tips"), Text(text::kQuickReplyText));
  EXPECT_TRUE(ui.GetBoolean("bullet_is_auto_disappear"));
  EXPECT_EQ(ui.GetString("chat_placeholder_text"), Text(text::kPlaceholder));

  meeting_.meeting_settings().SetSwitch("chat", false);
  meeting_.authority().SetPolicy(0);  // any authority change re-reads it all
  ui = Last(VM::kPropUiData);
  EXPECT_FALSE(ui.GetBoolean("bullet_quick_reply_text_enabled"));
  EXPECT_EQ(ui.GetString("bullet_quick_reply_text_tips"), Text(text::kChatOff));
  EXPECT_EQ(ui.GetString("chat_placeholder_text"), Text(text::kPlaceholderDisabled));
  EXPECT_TRUE(Last(VM::kPropPrivateChatAuthorityInfo).GetBoolean("is_forbid_chat"));

  meeting_.context().security_controls[3] = "Chat is blocked by your organization.";
  meeting_.authority().SetPolicy(0);
  ui = Last(VM::kPropUiData);
  EXPECT_EQ(ui.GetString("bullet_quick_reply_emoji_tips"), "Chat is blocked by your organization.");
  EXPECT_EQ(ui.GetString("chat_placeholder_text"), "Chat is blocked by your organization.");
  EXPECT_TRUE(ui.GetBoolean("bullet_display_view_visible"));
}

TEST_F(BulletPanelTest, OnlyTheHostSpeaksSilencesMembersButNotTheHost) {
  meeting_.meeting_settings().SetSwitch("chat_permission_reply_emoji", true);
  JoinAndAttach();
  meeting_.authority().SetPolicy(3);
  Variant info = Last(VM::kPropPrivateChatAuthorityInfo);
  EXPECT_TRUE(info.GetBoolean("allow_chat_only_host"));
  EXPECT_EQ(info.GetString("disable_chat_desc"), Text(text::kOnlyHostDesc));
  EXPECT_TRUE(Last(VM::kPropQuickReplyDisable).GetBoolean("disable"));
  Act(VM::kActionQuickReplyTextClick, Variant());
  EXPECT_EQ(Toasts().back(), Text(text::kOnlyHostDesc));
  EXPECT_EQ(ui_->toasts().back().duration_ms, 3000u);
  EXPECT_EQ(Reported("bullet_vm_click_quick_reply_text"), 0u);

  meeting_.context().self_role = talvex::MeetingContext::kRoleHost;
  meeting_.authority().SetPolicy(3);
  EXPECT_FALSE(Last(VM::kPropPrivateChatAuthorityInfo).GetBoolean("allow_chat_only_host"));
  EXPECT_FALSE(Last(VM::kPropQuickReplyDisable).GetBoolean("disable"));
  Act(VM::kActionQuickReplyTextClick, Variant());
  EXPECT_EQ(Reported("bullet_vm_click_quick_reply_text"), 1u);

  // Only to the host, with no host in the meeting: nobody can be written to.
  meeting_.context().self_role = talvex::MeetingContext::kRoleMember;
  meeting_.members().RemoveMember("u-host");
  meeting_.authority().SetPolicy(2);
  EXPECT_TRUE(Last(VM::kPropPrivateChatAuthorityInfo).GetBoolean("allow_chat_only_host"));
  meeting_.members().AddMember(Member("u-host", "host"));
  meeting_.authority().SetPolicy(2);
  EXPECT_FALSE(Last(VM::kPropPrivateChatAuthorityInfo).GetBoolean("allow_chat_only_host"));
}

TEST_F(BulletPanelTest, TheEmojiButtonExplainsWhyItCannotOpen) {
  JoinAndAttach();
  meeting_.context().security_controls[3] = "Blocked by policy";
  Act(VM::kActionQuickReplyEmojiClick, Variant());
  EXPECT_FALSE(Last(VM::kPropShowQuickReplyEmoji).AsBoolean());
  EXPECT_EQ(Toasts().back(), "Blocked by policy");
  meeting_.context().security_controls.clear();

  BecomeWebinarAttendee();
  meeting_.bullet_settings().SetAllowEmoji(false);
  Act(VM::kActionQuickReplyEmojiClick, Variant());
  EXPECT_EQ(Toasts().back(), Text(text::kEmojiOff));
  meeting_.bullet_settings().SetAllowEmoji(true);
  Act(VM::kActionQuickReplyEmojiClick, Variant());
  EXPECT_TRUE(Last(VM::kPropShowQuickReplyEmoji).AsBoolean());
  Act(VM::kActionQuickReplyEmojiClick, Variant());
  EXPECT_FALSE(Last(VM::kPropShowQuickReplyEmoji).AsBoolean()) << "a second click closes it";
  EXPECT_EQ(Reported("bullet_vm_click_quick_reply_emoji"), 4u);
}

TEST_F(BulletPanelTest, AWebinarWelcomesOncePerMeetingAndTheServiceReplacesTheDelayedWelcome) {
  BecomeWebinarAttendee();
  Configure("inmeeting", "show_webinar_welcom_tip", true);
  Configure("inmeeting", "self_join_webinar_barrage_tip", false);
  Configure("inmeeting", "welcom-message", R"({"join_welcom_title":"Welcome!","Join_welcom_content":"Enjoy"})");
  JoinAndAttach();
  EXPECT_EQ(WelcomeTitles(), (std::vector<std::string>{"Welcome!"}));
  EXPECT_EQ(Last(VM::kPropWelcomeTip).GetString(VM::kWelcomeContent), "Enjoy");
  EXPECT_TRUE(vm_->welcome_delay_running());
  meeting_.meeting().Join();  // back from a breakout room: the same meeting
  Advance(16000);
  EXPECT_EQ(WelcomeTitles().size(), 1u);

  // A new meeting, welcomed by the service before the delay runs out.
  vm_->DidDetached();
  Forget();
  meeting_.meeting().set_meeting_id("801999000");
  Configure("inmeeting", "show_webinar_welcom_tip", false);
  Attach();
  meeting_.meeting().Join();
  EXPECT_TRUE(vm_->welcome_delay_running());
  meeting_.messages().FireEvent(42, Variant(Variant::Map{{"msg_type", 2}, {"join_welcom_title", "Hi from the host"},
                                                         {"join_welcom_content", ""}}));
  EXPECT_FALSE(vm_->welcome_delay_running());
  Advance(16000);
  EXPECT_EQ(WelcomeTitles(), (std::vector<std::string>{"Hi from the host"}));
}

TEST_F(BulletPanelTest, SystemTipsPlayOnTheirTimerAndStopAfterTheirShowings) {
  BecomeWebinarAttendee();
  Configure("inmeeting", "self_join_webinar_barrage_tip", true);
  Configure("inmeeting", "show_webinar_welcom_tip_service_delay", false);
  meeting_.tips_db().SetConfig(Variant::Map{{"show_times", -1}, {"show_times_in_meeting", 1}, {"play_duration", 2},
                                            {"theme1", "Ask"}, {"theme2", "Vote"}, {"theme3", "Share"}});
  JoinAndAttach();
  EXPECT_TRUE(vm_->has_system_timer()) << "show_times -1 starts it at join, whatever the database says";
  Forget();
  Advance(2 * 60000);
  EXPECT_EQ(WelcomeTitles(), (std::vector<std::string>{"Ask", "Vote", "Share"}));
  EXPECT_TRUE(Last(VM::kPropWelcomeTip).GetBoolean(VM::kWelcomeBell));
  EXPECT_FALSE(vm_->has_system_timer()) << "one showing in this meeting";
  EXPECT_EQ(Reported("meetingpage_manualim_null_im_null_null_explore"), 1u);
  EXPECT_EQ(meeting_.tips_db().shown_count(), 0u) << "an unlimited tip is not counted";
}

TEST_F(BulletPanelTest, JoinTipsQueueElevenMaskNamesAndHide) {
  BecomeWebinarAttendee();
  Configure("inmeeting", "show_webinar_welcom_tip_service_delay", false);
  meeting_.context().nickname = "Al";
  JoinAndAttach();
  EXPECT_TRUE(vm_->is_timer_start());
  EXPECT_EQ(Last(VM::kPropAnimatableTextItem).GetString(VM::kAnimatableNickname), "A*");
  Variant tips(base::variant::kVariantTypeArray);
  for (int i = 0; i < 12; ++i) tips.Add(Variant::Map{{"nickname", "N" + std::to_string(i)}});
  meeting_.messages().FireEvent(31, tips);
  EXPECT_EQ(vm_->tip_count(), 11u);
  Advance(1000);
  EXPECT_EQ(Published(VM::kPropAnimatableTextItem).size(), 1u) << "the first tip stands two seconds";
  Advance(10000);
  EXPECT_EQ(Published(VM::kPropAnimatableTextItem).size(), 11u);
  EXPECT_EQ(Last(VM::kPropAnimatableTextItem).GetString(VM::kAnimatableNickname), "N9");
  Advance(1000);
  EXPECT_EQ(Published(VM::kPropHideAnimatableTip).size(), 1u) << "the eleventh shown is the last";
  EXPECT_EQ(vm_->tip_count(), 0u);
  EXPECT_FALSE(vm_->is_timer_start());
}

TEST_F(BulletPanelTest, BannersPictureInPictureAndSettingsEventsReachTheView) {
  JoinAndAttach();
  meeting_.banners().Notify(5, "Poll", "Vote now");
  meeting_.banners().Notify(6, "Poll", "Not over the video", false);
  ASSERT_EQ(Bullets().size(), 1u) << "a banner skips the queue";
  EXPECT_EQ(Bullets()[0].GetInt32("update_type"), VM::kUpdateBanner);
  EXPECT_EQ(Bullets()[0].GetString("notify_content"), "Vote now");

  EXPECT_FALSE(Last(VM::kPropPicInPicUidata).GetBoolean("enable"));
  Act(VM::kActionEnablePicInPic, Variant::Map{{"switch_on", true}});
  EXPECT_TRUE(Last(VM::kPropPicInPicUidata).GetBoolean("enable"));
  Variant tips(base::variant::kVariantTypeMap);
  vm_->Handle(VM::kActionGetPicInPicTips, &tips);
  EXPECT_FALSE(tips.GetString("tips").empty());

  meeting_.bullet_settings().SetShowBullet(false);
  EXPECT_TRUE(Folded());
  meeting_.bullet_settings().SetNewMsgBullet(false);
  EXPECT_FALSE(vm_->is_new_msg_bullet());
  meeting_.model(647).FireEvent(13, Variant(true));
  EXPECT_TRUE(Last(VM::kPropDocIsEditState).AsBoolean());
  vm_->DidChangeLifecycleState(2);
  EXPECT_EQ(talvex_common::utils::inmeeting::GetCurrentVmLifecycleState(791421733), 2);
}

}  // namespace
}  // namespace bullet_test
