// The chat authority menu: who sees it, how it is built for a meeting and a
// webinar, and what each choice writes and reports.
#include "send_fixture.h"

#include "chat/util/utils.h"
#include "chat/viewmodel/private_chat_authority_view_model.h"
#include "framework/navigation/routing.h"

namespace send_test {
namespace {

using VM = chat::PrivateChatAuthorityViewModel;
using talvex_test::LogCapture;

class AuthorityMenuTest : public SendFixture {
 protected:
  void SetUp() override {
    SendFixture::SetUp();
    framework::NavigateService::Instance()->ClearOpened();
  }
  void TearDown() override {
    if (vm_) vm_->DidDetached();
    vm_.reset();
    talvexsdk::utils::service::GetConfigureService()->Set("meeting", "meeting-ability-chat-manual-check", Variant());
    SendFixture::TearDown();
  }
  void Attach(talvex::MeetingContext::Role role, bool webinar = false) {
    meeting_.context().self_role = role;
    meeting_.context().is_webinar = webinar;
    vm_ = std::make_shared<VM>();
    vm_->DidCreated(nullptr);
    vm_->DidAttached(nullptr);
  }
  Variant Menu() const { return vm_->PickPropValue(VM::kPropMenuList); }
  // The menu in short: "t<title_type>", "-", or "<id>" with "*" when ticked.
  std::vector<std::string> Shape() const {
    std::vector<std::string> shape;
    Variant const menu = Menu();
    for (auto const& item : menu.AsArray()) {
      switch (item.GetInt32("type", -1)) {
        case VM::kItemTitle:
          shape.push_back("t" + std::to_string(item.GetInteger("title_type")));
          break;
        case VM::kItemSeparator:
          shape.push_back("-");
          break;
        default:
          shape.push_back(std::to_string(item.GetInteger("id")) + (item.GetBoolean("checked") ? "*" : ""));
      }
    }
    return shape;
  }
  void Select(Variant id) {
    Variant params(base::variant::kVariantTypeMap);
    params.Set("id", std::move(id));
    vm_->Handle(VM::kActionSelectAllowChat, &params);
  }
  std::shared_ptr<VM> vm_;
};

using Items = std::vector<std::string>;

TEST_F(AuthorityMenuTest, AParticipantGetsTheEmptyPropAndNoItems) {
  Attach(talvex::MeetingContext::kRoleMember);
  EXPECT_TRUE(vm_->HasProp(VM::kPropMenuEmpty));
  EXPECT_FALSE(vm_->HasProp(VM::kPropMenuList));
  Attach(talvex::MeetingContext::kRoleAttendee, true);
  EXPECT_TRUE(vm_->HasProp(VM::kPropMenuEmpty));
  EXPECT_FALSE(vm_->HasProp(VM::kPropFirstTip)) << "no menu, no tip about it";
}

TEST_F(AuthorityMenuTest, AMeetingMenuTicksThePolicyAndTheWaitingRoomSwitch) {
  for (auto role : {talvex::MeetingContext::kRoleHost, talvex::MeetingContext::kRoleCoHost}) {
    for (int policy = 0; policy <= 3; ++policy) {
      SCOPED_TRACE(std::to_string(role) + "/" + std::to_string(policy));
      meeting_.authority().SetPolicy(policy);
      Attach(role);
      Items expected = {"t0", "0", "1", "2", "3", "-", "t1", "11"};
      expected[1 + policy] += "*";
      EXPECT_EQ(Shape(), expected);
      vm_->DidDetached();
    }
  }
  meeting_.authority().SetWaitingRoomPolicy(1);
  Attach(talvex::MeetingContext::kRoleHost);
  EXPECT_EQ(Shape().back(), "11*");
  Variant const menu = Menu();
  EXPECT_EQ(menu[1].GetString("wording"), Text("chat.authority.policy.0"));
  EXPECT_EQ(menu[0].GetString("wording"), Text("chat.authority.title.scope"));
  EXPECT_NE(menu[0].GetString("color"), menu[1].GetString("color")) << "titles and options differ";
  EXPECT_EQ(menu[5].Size(), 1u) << "a separator carries its type only";
}

TEST_F(AuthorityMenuTest, AWebinarMenuHasItsScopesAndManualCheckOnlyWhenConfigured) {
  meeting_.authority().SetPolicy(6);
  meeting_.authority().SetPolicy(9);
  Attach(talvex::MeetingContext::kRoleHost, true);
  EXPECT_EQ(Shape(), (Items{"12", "-", "t2", "4", "5", "6*", "7", "-", "t3", "8", "9*", "10"}));
  EXPECT_TRUE(meeting_.model(530).InvocationsOf(8).empty());

  talvexsdk::utils::service::GetConfigureService()->Set("meeting", "meeting-ability-chat-manual-check", 1);
  meeting_.authority().SetPolicy(7);
  meeting_.model(523).FireEvent(0, Variant());
  EXPECT_EQ(Shape(), (Items{"12", "13", "-", "t2", "4", "5", "6", "7*", "-", "t3", "8", "9*", "10"}));
  EXPECT_EQ(meeting_.model(530).InvocationsOf(8).size(), 1u);
}

TEST_F(AuthorityMenuTest, RoleChangesRebuildTheMenu) {
  Attach(talvex::MeetingContext::kRoleMember);
  EXPECT_FALSE(vm_->HasProp(VM::kPropMenuList));
  // The local user is made co-host: the member model says so with event 7.
  meeting_.context().self_role = talvex::MeetingContext::kRoleCoHost;
  meeting_.members().AddMember(Member("u-self"));
  meeting_.members().AddMember(Member("u-self", "cohost"));
  EXPECT_EQ(Shape().size(), 8u);
  meeting_.context().self_role = talvex::MeetingContext::kRoleMember;
  const size_t empties = vm_->PropSetCount(VM::kPropMenuEmpty);
  meeting_.members().FireEvent(6, Variant());
  EXPECT_EQ(vm_->PropSetCount(VM::kPropMenuEmpty), empties + 1);
  vm_->DidDetached();
  meeting_.members().FireEvent(6, Variant());
  EXPECT_EQ(vm_->PropSetCount(VM::kPropMenuEmpty), empties + 1) << "no events after detach";
}

TEST_F(AuthorityMenuTest, SelectingAScopeWritesItAndReportsIt) {
  Attach(talvex::MeetingContext::kRoleHost);
  Select(2);
  EXPECT_EQ(meeting_.authority().policy(), 2);
  EXPECT_EQ(Shape()[3], "2*") << "the tick follows the choice";
  EXPECT_EQ(base::analytics::RecordedEvents("private_chat_authority_select_only_to_host").size(), 1u);
  EXPECT_EQ(base::analytics::RecordedEvents("chatting_private_chat_authority_click").size(), 1u);

  // In a webinar a host reports webinar_role "2" and a co-host "0".
  meeting_.context().is_webinar = true;
  Select(5);
  EXPECT_EQ(meeting_.authority().panelist_policy(), 5);
  auto panelist = base::analytics::RecordedEvents("meetingpage_im_null_chatsetting_null_panelist_click");
  ASSERT_EQ(panelist.size(), 1u);
  EXPECT_EQ(panelist[0].properties["ope_type"], "2");
  EXPECT_EQ(panelist[0].properties["webinar_role"], "2");
  meeting_.context().self_role = talvex::MeetingContext::kRoleCoHost;
  Select(10);
  EXPECT_EQ(meeting_.authority().attendee_policy(), 10);
  auto attendee = base::analytics::RecordedEvents("meetingpage_im_null_chatsetting_null_attendee_click");
  ASSERT_EQ(attendee.size(), 1u);
  EXPECT_EQ(attendee[0].properties["attendee_IM_range"], "3");
  EXPECT_EQ(attendee[0].properties["webinar_role"], "0");
  EXPECT_EQ(base::analytics::RecordedEvents("chatting_private_chat_authority_click").size(), 3u);
}

TEST_F(AuthorityMenuTest, TheWaitingRoomSwitchFlipsZeroAndOneAndKeepsOtherValues) {
  Attach(talvex::MeetingContext::kRoleHost);
  Select(11);
  EXPECT_EQ(meeting_.authority().waiting_room_policy(), 1u);
  Select(11);
  EXPECT_EQ(meeting_.authority().waiting_room_policy(), 0u);
  meeting_.authority().SetWaitingRoomPolicy(7);
  meeting_.authority().ClearInvocations();
  Select(11);
  auto writes = meeting_.authority().InvocationsOf(3);
  ASSERT_EQ(writes.size(), 1u);
  EXPECT_EQ(writes[0].GetInteger("policy"), 7) << "written back unchanged";
  auto events = base::analytics::RecordedEvents(
      "meetingpage_im_null_authorityset_authorityset_waittingroomsprivatechat_click");
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(events[0].properties["set_result"], "1");
  EXPECT_EQ(events[1].properties["set_result"], "0");
  EXPECT_EQ(events[2].properties["set_result"], "7");
  EXPECT_TRUE(meeting_.authority().InvocationsOf(2).empty()) << "menu ids never become a policy";
}

TEST_F(AuthorityMenuTest, SensitiveWordsOpenAWebDialogAndManualCheckItsPage) {
  Attach(talvex::MeetingContext::kRoleHost, true);
  Select(12);
  Select(13);
  auto const& opened = framework::NavigateService::Instance()->opened();
  ASSERT_EQ(opened.size(), 2u);
  Variant const& dialog = opened[0].Get("params");
  EXPECT_EQ(opened[0].GetString("url"), "https://meeting.example/chat_control/sensitive_words");
  EXPECT_EQ(dialog.GetInteger("wnd_size_width"), 380);
  EXPECT_EQ(dialog.GetInteger("wnd_size_height"), 300);
  EXPECT_FALSE(dialog.GetBoolean("show_max_btn", true));
  EXPECT_TRUE(dialog.GetBoolean("fix_size"));
  EXPECT_TRUE(dialog.GetBoolean("hide_toolbar"));
  EXPECT_EQ(dialog.GetString("web_view_title"), Text("chat.authority.sensitive_words_title"));
  EXPECT_EQ(opened[1].GetString("url"), "talvex://page/chat_control/manual_check");
  EXPECT_TRUE(meeting_.authority().InvocationsOf(2).empty());
  EXPECT_FALSE(base::analytics::RecordedEvents("meetingpage_im_setting_sensitivewords_click").empty());
}

TEST_F(AuthorityMenuTest, TheFirstTipShowsOnceInAWebinar) {
  Attach(talvex::MeetingContext::kRoleHost);
  EXPECT_FALSE(vm_->HasProp(VM::kPropFirstTip)) << "not in a plain meeting";
  Attach(talvex::MeetingContext::kRoleHost, true);
  EXPECT_EQ(vm_->PickPropValue(VM::kPropFirstTip).AsStr(), Text("chat.authority.first_tip"));
  EXPECT_TRUE(chat::ReadLocalSetting("im.chat_btn_tips_show", Variant(false)).AsBoolean());
  Attach(talvex::MeetingContext::kRoleHost, true);
  EXPECT_FALSE(vm_->HasProp(VM::kPropFirstTip));
}

TEST_F(AuthorityMenuTest, BadSelectionsWriteNothingAndOtherActionsReport) {
  Attach(talvex::MeetingContext::kRoleHost);
  LogCapture log;
  vm_->Handle(VM::kActionSelectAllowChat, nullptr);
  EXPECT_TRUE(log.Contains("params is null, need check!"));
  const Variant number(3);
  vm_->Handle(VM::kActionSelectAllowChat, &number);
  Select("2");
  Variant no_id(base::variant::kVariantTypeMap);
  vm_->Handle(VM::kActionSelectAllowChat, &no_id);
  EXPECT_TRUE(meeting_.authority().InvocationsOf(2).empty());
  EXPECT_TRUE(meeting_.authority().InvocationsOf(3).empty());

  EXPECT_EQ(VM::GetWordingStrIDByPolicy(14), 0u);
  EXPECT_TRUE(log.Contains("need check param policy=14, no exist", base::log::kLogError));
  EXPECT_EQ(VM::GetWordingStrIDByPolicy(13), framework::NameId("chat.authority.policy.13"));

  Variant report(base::variant::kVariantTypeMap);
  report.Set("statistics_report_id", "chat_authority_menu_report");
  vm_->Handle(VM::kActionCancelSelect, &report);
  vm_->Handle(VM::kActionExploreMenu);
  EXPECT_EQ(base::analytics::RecordedEvents("chat_authority_menu_report").size(), 1u);
  EXPECT_EQ(base::analytics::RecordedEvents("private_chat_authority_select_cancel").size(), 1u);
  EXPECT_EQ(base::analytics::RecordedEvents("meetingpage_im_null_chatsetting_null_null_explore").size(), 1u);
}

}  // namespace
}  // namespace send_test
