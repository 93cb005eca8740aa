// The chat authority menu: who sees it, how it is built for a meeting and a
// webinar, and what each choice writes and reports.
#include "send_fixture.h"

#include "chat/util/utils.h"
#include "chat/viewmodel/private_chat_authority_view_model.h"
#include "framework/navigation/routing.h"

namespace send_test {
namespace {

using VM = chat::PrivateChatAuthorityViewModel;
using Role = talvex::MeetingContext::Role;

class AuthorityMenuTest : public SendFixture {
 protected:
  void SetUp() override {
    SendFixture::SetUp();
    framework::NavigateService::Instance()->ClearOpened();
  }
  void TearDown() override {
    if (vm_) vm_->DidDetached();
    vm_.reset();
    SendFixture::TearDown();
  }
  void Attach(Role role, bool webinar = false) {
    meeting_.context().self_role = role;
    meeting_.context().is_webinar = webinar;
    vm_ = std::make_shared<VM>();
    vm_->DidCreated(nullptr);
    vm_->DidAttached(nullptr);
  }
  // The menu in short: "t<title_type>", "-", or "<id>" with "*" when ticked.
  Strings Shape() const {
    Strings shape;
    for (auto const& item : vm_->PickPropValue(VM::kPropMenuList).AsArray()) {
      const int type = item.GetInt32("type", -1);
      shape.push_back(type == VM::kItemTitle       ? "t" + std::to_string(item.GetInteger("title_type"))
                      : type == VM::kItemSeparator ? "-"
                                                   : std::to_string(item.GetInteger("id")) +
                                                         (item.GetBoolean("checked") ? "*" : ""));
    }
    return shape;
  }
  void Select(Variant id) {
    Variant params = Variant::Map{{"id", std::move(id)}};
    vm_->Handle(VM::kActionSelectAllowChat, &params);
  }
  std::shared_ptr<VM> vm_;
};

TEST_F(AuthorityMenuTest, AMeetingMenuTicksThePolicyAndTheWaitingRoomSwitch) {
  for (auto role : {Role::kRoleHost, Role::kRoleCoHost}) {
    for (int policy = 0; policy <= 3; ++policy) {
      SCOPED_TRACE(std::to_string(role) + "/" + std::to_string(policy));
      meeting_.authority().SetPolicy(policy);
      Attach(role);
      Strings expected = {"t0", "0", "1", "2", "3", "-", "t1", "11"};
      expected[1 + policy] += "*";
      EXPECT_EQ(Shape(), expected);
      vm_->DidDetached();
    }
  }
  meeting_.authority().SetWaitingRoomPolicy(1);
  Attach(Role::kRoleHost);
  EXPECT_EQ(Shape().back(), "11*");
  Variant const menu = vm_->PickPropValue(VM::kPropMenuList);
  EXPECT_EQ(menu[1].GetString("wording"), Text("chat.authority.policy.0"));
  EXPECT_NE(menu[0].GetString("color"), menu[1].GetString("color")) << "titles and options differ";
}

TEST_F(AuthorityMenuTest, AWebinarMenuHasItsScopesAndManualCheckOnlyWhenConfigured) {
  meeting_.authority().SetPolicy(6);
  meeting_.authority().SetPolicy(9);
  Attach(Role::kRoleHost, true);
  EXPECT_EQ(Shape(), (Strings{"12", "-", "t2", "4", "5", "6*", "7", "-", "t3", "8", "9*", "10"}));
  EXPECT_TRUE(meeting_.model(530).InvocationsOf(8).empty());

  Configure("meeting", "meeting-ability-chat-manual-check", 1);
  meeting_.authority().SetPolicy(7);
  meeting_.model(523).FireEvent(0, Variant());
  EXPECT_EQ(Shape(), (Strings{"12", "13", "-", "t2", "4", "5", "6", "7*", "-", "t3", "8", "9*", "10"}));
  EXPECT_EQ(meeting_.model(530).InvocationsOf(8).size(), 1u);
}

TEST_F(AuthorityMenuTest, AParticipantGetsNoMenuUntilMadeCoHost) {
  Attach(Role::kRoleAttendee, true);
  EXPECT_TRUE(vm_->HasProp(VM::kPropMenuEmpty));
  EXPECT_TRUE(vm_->HasProp(VM::kPropFirstTip)) << "the first-use tip comes once to every role of a webinar";
  Attach(Role::kRoleMember);
  EXPECT_TRUE(vm_->HasProp(VM::kPropMenuEmpty));
  EXPECT_FALSE(vm_->HasProp(VM::kPropMenuList));
  // The local user is made co-host: the member model says so with event 7.
  meeting_.context().self_role = Role::kRoleCoHost;
  meeting_.members().AddMember(Member("u-self"));
  meeting_.members().AddMember(Member("u-self", "cohost"));
  EXPECT_EQ(Shape().size(), 8u);
  meeting_.context().self_role = Role::kRoleMember;
  const size_t empties = vm_->PropSetCount(VM::kPropMenuEmpty);
  meeting_.members().FireEvent(6, Variant());
  EXPECT_EQ(vm_->PropSetCount(VM::kPropMenuEmpty), empties + 1);
  vm_->DidDetached();
  meeting_.members().FireEvent(6, Variant());
  EXPECT_EQ(vm_->PropSetCount(VM::kPropMenuEmpty), empties + 1) << "no events after detach";
}

TEST_F(AuthorityMenuTest, SelectingAScopeWritesItAndReportsIt) {
  Attach(Role::kRoleHost);
  Select(2);
  EXPECT_EQ(meeting_.authority().policy(), 2);
  EXPECT_EQ(Shape()[3], "2*") << "the tick follows the choice";

  // In a webinar a host reports webinar_role "2" and a co-host "0".
  meeting_.context().is_webinar = true;
  Select(5);
  EXPECT_EQ(meeting_.authority().panelist_policy(), 5);
  auto panelist = base::analytics::RecordedEvents("meetingpage_im_null_chatsetting_null_panelist_click");
  ASSERT_EQ(panelist.size(), 1u);
  EXPECT_EQ(panelist[0].properties["webinar_role"], "2");
  meeting_.context().self_role = Role::kRoleCoHost;
  Select(10);
  EXPECT_EQ(meeting_.authority().attendee_policy(), 10);
  auto attendee = base::analytics::RecordedEvents("meetingpage_im_null_chatsetting_null_attendee_click");
  ASSERT_EQ(attendee.size(), 1u);
  EXPECT_EQ(attendee[0].properties["attendee_IM_range"], "3");
  EXPECT_EQ(attendee[0].properties["webinar_role"], "0");
  EXPECT_EQ(Reported("chatting_private_chat_authority_click"), 3u);
}

TEST_F(AuthorityMenuTest, TheWaitingRoomSwitchFlipsZeroAndOneAndKeepsOtherValues) {
  Attach(Role::kRoleHost);
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
  EXPECT_TRUE(meeting_.authority().InvocationsOf(2).empty()) << "menu ids never become a policy";
}

TEST_F(AuthorityMenuTest, SensitiveWordsOpenAWebDialogAndManualCheckItsPage) {
  Attach(Role::kRoleHost, true);
  Select(12);
  Select(13);
  auto const& opened = framework::NavigateService::Instance()->opened();
  ASSERT_EQ(opened.size(), 2u);
  EXPECT_EQ(opened[0].GetString("url"), "https://meeting.example/chat_control/sensitive_words");
  EXPECT_EQ(opened[0].Get("params").GetString("web_view_title"), Text("chat.authority.sensitive_words_title"));
  EXPECT_EQ(opened[1].GetString("url"), "talvex://page/chat_control/manual_check");
  EXPECT_TRUE(meeting_.authority().InvocationsOf(2).empty());
}

TEST_F(AuthorityMenuTest, TheFirstTipShowsOnceInAWebinar) {
  Attach(Role::kRoleHost);
  EXPECT_FALSE(vm_->HasProp(VM::kPropFirstTip)) << "not in a plain meeting";
  Attach(Role::kRoleHost, true);
  EXPECT_EQ(vm_->PickPropValue(VM::kPropFirstTip).AsStr(), Text("chat.authority.first_tip"));
  EXPECT_TRUE(chat::ReadLocalSetting("im.chat_btn_tips_show", Variant(false)).AsBoolean());
  Attach(Role::kRoleHost, true);
  EXPECT_FALSE(vm_->HasProp(VM::kPropFirstTip));
}

TEST_F(AuthorityMenuTest, BadSelectionsWriteNothing) {
  Attach(Role::kRoleHost);
  const Variant number(3), no_id(base::variant::kVariantTypeMap);
  vm_->Handle(VM::kActionSelectAllowChat, nullptr);
  vm_->Handle(VM::kActionSelectAllowChat, &number);
  vm_->Handle(VM::kActionSelectAllowChat, &no_id);
  Select("2");
  EXPECT_TRUE(meeting_.authority().InvocationsOf(2).empty());
  EXPECT_TRUE(meeting_.authority().InvocationsOf(3).empty());
  EXPECT_EQ(VM::GetWordingStrIDByPolicy(14), 0u);

  // A cancel reports under the id its caller gives.
  Variant report = Variant::Map{{"statistics_report_id", "chat_authority_menu_report"}};
  vm_->Handle(VM::kActionCancelSelect, &report);
  EXPECT_EQ(Reported("chat_authority_menu_report"), 1u);
}

}  // namespace
}  // namespace send_test
