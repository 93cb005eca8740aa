// The member list from which a user picks a private receiver: sections, fold
// and order; search with its delay and its late answers; choosing; what the
// chat policy allows; and bad input on every action and event.
#include "members_fixture.h"

#include "framework/meeting/meeting_settings.h"
#include "framework/meeting/private_chat_record.h"

namespace members_test {
namespace {

namespace record = talvex_common::utils::privatechatrecord;

class MemberListTest : public MembersFixture {
 protected:
  void SetUp() override {
    MembersFixture::SetUp();
    meeting_.members().AddMembers({Person("u-host", "Riley Chen", "host"), Person("u-co", "Casey Moore", "cohost"),
                                   Person("u-b2", "Blake Ito"), Person("u-b1", "Blake Ito"),
                                   Person("u-ada", "Ada Lund"), Person("u-zoe", "Zoë Park")});
  }
};

TEST_F(MemberListTest, SectionsSortByRoleThenNameThenIdAndFoldAtFour) {
  Attach();
  EXPECT_EQ(Published(), 0u) << "nothing before the provider answers";
  Settle();
  // Hosts first by their key; then names in the locale's order; two Blake
  // Itos by user id.
  EXPECT_EQ(InMeeting(), (Strings{"#0", Text("chat.members.everyone"), "Riley Chen", "Casey Moore", "Ada Lund",
                                  "Blake Ito", "Blake Ito", "Zoë Park"}));
  Variant const info = List().Get("in_meeting_info");
  EXPECT_EQ(info.Get("user_list")[5].GetString("user_id"), "u-b1");
  EXPECT_EQ(info.Get("user_list")[6].GetString("user_id"), "u-b2");
  EXPECT_EQ(info.GetInt32("max_count"), VM::kFoldCount);
  EXPECT_EQ(info.GetString("show_more_desc"), "Show all 6");
  EXPECT_FALSE(info.GetBoolean("expanded"));
  EXPECT_EQ(info.Get("user_list")[0].GetString("title_expand_collapse_desc"), Text("chat.members.expand"));
  EXPECT_EQ(info.Get("user_list")[1].GetString("remark_color"), "#777777");
  EXPECT_EQ(RowOf(info, "u-host").GetString("remark"), Text("chat.members.role.host"));

  // Expanding changes the fold and nothing else.
  Variant expand = Variant::Map{{"title_type", VM::kTitleInMeeting}};
  vm_->Handle(VM::kActionExpandCollapse, &expand);
  Variant const expanded = List().Get("in_meeting_info");
  EXPECT_TRUE(expanded.GetBoolean("expanded"));
  EXPECT_EQ(Names(expanded), Names(info));
  EXPECT_EQ(expanded.GetString("show_more_desc"), info.GetString("show_more_desc"));
  auto clicks = base::analytics::RecordedEvents("meetingpage_im_null_search_null_null_click");
  ASSERT_EQ(clicks.size(), 1u);
  EXPECT_EQ(clicks[0].properties.at("ope_pos"), "1");

  // A participant has no waiting room: the second section is empty by its rule.
  Variant const waiting = List().Get("waiting_member_info");
  EXPECT_TRUE(waiting.Get("user_list").IsArray());
  EXPECT_TRUE(waiting.Get("user_list").Empty());
  EXPECT_EQ(waiting.GetString("show_more_desc"), "");
  EXPECT_EQ(waiting.GetString("section_desc"), Text("chat.members.empty"));
  EXPECT_EQ(waiting.GetInt32("max_count"), VM::kFoldCount);
}

TEST_F(MemberListTest, AHostSeesTheWaitingRoomAndMembersFollowJoinsAndLeaves) {
  meeting_.context().self_role = Role::kRoleHost;
  meeting_.members().AddMember(Person("u-w", "Wen Xu"));
  meeting_.members().SetInWaitingRoom("u-w", true);
  Attach();
  Settle();
  EXPECT_EQ(Second(), (Strings{"#1", "Wen Xu"}));
  Variant const waiting_row = RowOf(List().Get("waiting_member_info"), "u-w");
  EXPECT_EQ(waiting_row.GetInt32("type"), VM::kRowWaitingMember);
  EXPECT_EQ(waiting_row.GetInt32("receiver_type"), 6);
  EXPECT_EQ(waiting_row.GetString("allow_in_btn_desc"), Text("chat.members.waiting.admit"));
  EXPECT_TRUE(RowOf(List().Get("in_meeting_info"), "u-w").IsNull());

  meeting_.members().RemoveMember("u-zoe");
  meeting_.members().AddMember(Person("u-new", "Noor Haddad"));
  Settle();
  EXPECT_TRUE(RowOf(List().Get("in_meeting_info"), "u-zoe").IsNull());
  EXPECT_FALSE(RowOf(List().Get("in_meeting_info"), "u-new").IsNull());
}

TEST_F(MemberListTest, TypingAsksOnceAfterTheDelayAndLateAnswersOfAnotherModeAreIgnored) {
  Attach();
  Settle();
  auto& provider = meeting_.member_provider();
  provider.ClearInvocations();
  Type("B");
  clock_.Advance(300);
  Type("BLA");
  clock_.Advance(VM::kSearchDelayMs - 1);
  EXPECT_TRUE(provider.InvocationsOf(1).empty()) << "still typing";
  clock_.Advance(1);
  ASSERT_EQ(provider.InvocationsOf(1).size(), 1u);
  EXPECT_EQ(provider.InvocationsOf(1)[0].GetString("search_str"), "bla");
  Settle();
  EXPECT_TRUE(List().GetBoolean("is_searching"));
  EXPECT_EQ(InMeeting(), (Strings{"#0", "Blake Ito", "Blake Ito"})) << "no everyone row while searching";
  EXPECT_FALSE(List().Get("in_meeting_info").Get("user_list")[0].Has("title_expand_collapse_desc"));

  // Found nobody: the empty rule with the search's own text.
  Type("nobody");
  Settle();
  EXPECT_TRUE(List().Get("in_meeting_info").Get("user_list").Empty());
  EXPECT_EQ(List().Get("in_meeting_info").GetString("section_desc"), Text("chat.members.empty.search"));

  // Leave the search; an answer of the search that comes after is not shown.
  vm_->Handle(VM::kActionSearchCancel);
  Settle();
  EXPECT_FALSE(List().GetBoolean("is_searching"));
  const size_t published = Published();
  Variant late(base::variant::kVariantTypeArray);
  late.Add(Variant::Map{{"activate_id", vm_->activate_id()},
                        {"provider_id", talvex_common::utils::memberprovider::kInMeetingMembersForImProvider},
                        {"is_searching", true},
                        {"search_str", "nobody"},
                        {"user_list", Variant(base::variant::kVariantTypeArray)}});
  meeting_.member_provider().FireEvent(0, late);
  EXPECT_EQ(Published(), published);
  EXPECT_EQ(InMeeting().size(), 8u);
  EXPECT_EQ(Reported("private_chat_members_search_cancel"), 1u);
}

TEST_F(MemberListTest, ChoosingAMemberSetsThePrivateReceiverAndMovesTheTick) {
  Attach();
  Settle();
  Variant const everyone = List().Get("in_meeting_info").Get("user_list")[1];
  Variant const blake = RowOf(List().Get("in_meeting_info"), "u-b1");
  vm_->Handle(VM::kActionSelectMember, &blake);
  Variant const receiver = record::GetPrivateChatUserInfo();
  EXPECT_EQ(receiver.GetInt32("receiver_type"), 1);
  EXPECT_EQ(receiver.GetString("user_id"), "u-b1");
  EXPECT_EQ(receiver.GetString("nickname"), "Blake Ito");
  EXPECT_TRUE(RowOf(List().Get("in_meeting_info"), "u-b1").GetBoolean("checked"));
  EXPECT_FALSE(RowOf(List().Get("in_meeting_info"), "u-b2").GetBoolean("checked"));
  EXPECT_EQ(vm_->PickPropValue(VM::kPropReceiverText).AsStr(), "Blake Ito");
  EXPECT_EQ(vm_->PropSetCount(VM::kPropClose), 1u);
  auto selects = base::analytics::RecordedEvents("chatting_private_chat_select_user_click");
  ASSERT_EQ(selects.size(), 1u);
  EXPECT_EQ(selects[0].properties.at("sender_condition"), "0");
  EXPECT_EQ(selects[0].properties.at("receive_condition"), "0");
  EXPECT_EQ(Reported("private_chat_members_select_member"), 1u);

  // From the overlay, back to everyone.
  vm_->Handle(VM::kActionSelectMemberInBullet, &everyone);
  EXPECT_EQ(record::GetChatReceiverType(record::GetPrivateChatUserInfo()), 2);
  EXPECT_TRUE(List().Get("in_meeting_info").Get("user_list")[1].GetBoolean("checked"));
  EXPECT_EQ(Reported("private_chat_members_select_member_in_bullet"), 1u);
}

TEST_F(MemberListTest, ThePolicyGreysRowsAndShowsItsHint) {
  // Messages to the host only: a participant may pick hosts, nobody else.
  meeting_.authority().SetPolicy(2);
  meeting_.members().AddMember(Variant::Map{{"user_id", "u-room"}, {"app_uid", "u-room"}, {"nickname", "Room 4"},
                                            {"role", "member"}, {"instance_id", 5}});
  Attach();
  Settle();
  Variant const info = List().Get("in_meeting_info");
  EXPECT_TRUE(RowOf(info, "u-host").GetBoolean("enable"));
  EXPECT_TRUE(RowOf(info, "u-co").GetBoolean("enable"));
  Variant const ada = RowOf(info, "u-ada");
  EXPECT_FALSE(ada.GetBoolean("enable"));
  EXPECT_EQ(ada.GetString("title_color"), "#7C8083");
  EXPECT_EQ(ada.GetString("disable_reason"), Text("chat.members.disabled.only_to_host"));
  EXPECT_EQ(RowOf(info, "u-room").GetString("disable_reason"), Text("chat.members.disabled.no_chat"));
  Variant const hint = vm_->PickPropValue(VM::kPropAuthorityHint);
  EXPECT_FALSE(hint.GetBoolean("hidden"));
  EXPECT_EQ(hint.GetString("text"), Text("chat.members.hint.only_to_host"));
  // A greyed row can't be chosen.
  vm_->Handle(VM::kActionSelectMember, &ada);
  EXPECT_TRUE(record::GetPrivateChatUserInfo().IsNull());

  // The policy changes while the list is open.
  meeting_.authority().SetPolicy(3);
  EXPECT_TRUE(List().GetBoolean("hide_menu"));
  meeting_.authority().SetPolicy(0);
  EXPECT_FALSE(List().GetBoolean("hide_menu"));
  EXPECT_TRUE(RowOf(List().Get("in_meeting_info"), "u-ada").GetBoolean("enable"));
  EXPECT_TRUE(vm_->PickPropValue(VM::kPropAuthorityHint).GetBoolean("hidden"));
}

TEST_F(MemberListTest, OrientationFoldsAndTheWebinarsAnalyticsSayWhereAndWho) {
  meeting_.context().self_role = Role::kRoleHost;
  meeting_.members().AddMember(Person("u-w", "Wen Xu"));
  meeting_.members().SetInWaitingRoom("u-w", true);
  Attach(Variant(VM::kSourceBullet));
  Settle();
  // Only a known orientation rebuilds the list, and it goes out with it.
  const size_t published = Published();
  for (Variant bad : {Variant(Variant::Map{{"orientation", 0}}), Variant(Variant::Map{{"orientation", 9}}), Variant(1)}) {
    vm_->Handle(VM::kActionOrientation, &bad);
  }
  EXPECT_EQ(Published(), published);
  Variant landscape = Variant::Map{{"orientation", 2}};
  vm_->Handle(VM::kActionOrientation, &landscape);
  EXPECT_EQ(List().GetInt32("orientation"), 2);

  // The waiting room folds on its own; the second section's click reports "2".
  Variant waiting = Variant::Map{{"title_type", VM::kTitleWaiting}};
  vm_->Handle(VM::kActionExpandCollapse, &waiting);
  EXPECT_TRUE(List().Get("waiting_member_info").GetBoolean("expanded"));
  EXPECT_FALSE(List().Get("in_meeting_info").GetBoolean("expanded"));
  auto clicks = base::analytics::RecordedEvents("meetingpage_im_null_search_null_null_click");
  ASSERT_EQ(clicks.size(), 1u);
  EXPECT_EQ(clicks[0].properties.at("ope_pos"), "2");
  EXPECT_EQ(clicks[0].properties.at("ops_role"), "1");
  Variant attendees = Variant::Map{{"title_type", VM::kTitleAttendees}};
  vm_->Handle(VM::kActionExpandCollapse, &attendees);
  EXPECT_EQ(base::analytics::RecordedEvents("meetingpage_im_null_search_null_null_click").size(), 1u)
      << "the attendees' section has no fold";

  // In a webinar, showing and focusing report from the overlay ("2") with the role.
  meeting_.context().is_webinar = true;
  vm_->Handle(VM::kActionShow);
  vm_->Handle(VM::kActionSearchFocus);
  vm_->Handle(VM::kActionClose);
  auto shown = base::analytics::RecordedEvents("meetingpage_im_null_sendto_null_null_explore");
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0].properties.at("ope_pos"), "2");
  EXPECT_EQ(shown[0].properties.at("webinar_role"), "1");
  EXPECT_EQ(Reported("meetingpage_im_null_search_null_null_explore"), 1u);
  EXPECT_EQ(Reported("private_chat_members_close_in_bullet"), 1u);
}

TEST_F(MembersFixture, WhileSearchingAWebinarAttendeesStillLoadingAreNotShownHalf) {
  meeting_.context().is_webinar = true;
  meeting_.context().self_role = Role::kRoleHost;
  sim::RosterOptions roster;
  roster.attendees = 3000;
  sim::PopulateRoster(meeting_, roster);
  meeting_.member_provider().set_chunk_size(500);
  Attach();
  Settle();
  Type("a");  // most of them
  clock_.Advance(VM::kSearchDelayMs + 20);  // the first chunk of the answer
  EXPECT_TRUE(List().GetBoolean("is_attendee_loading"));
  EXPECT_TRUE(List().Get("waiting_member_info").Get("user_list").Empty()) << "not half a result";
  Settle();
  EXPECT_FALSE(List().GetBoolean("is_attendee_loading"));
  EXPECT_GT(List().Get("waiting_member_info").Get("user_list").Size(), 500u);
  EXPECT_TRUE(List().GetBoolean("scroll_to_top"));
  vm_->Handle(VM::kActionClearScrollToTop);
  meeting_.members().AddMember(Person("a-new", "Ana Lopes", "attendee"));
  Settle();
  EXPECT_FALSE(List().GetBoolean("scroll_to_top")) << "the one-shot is spent";
}

TEST(MemberListHint, TablesForMeetingsAndWebinars) {
  for (int policy = 0; policy <= 3; ++policy) {
    EXPECT_TRUE(VM::GetAuthorityHintInfoForNormal(policy, true).GetBoolean("hidden")) << policy;
    EXPECT_EQ(VM::GetAuthorityHintInfoForNormal(policy, false).GetBoolean("hidden"), policy == 0) << policy;
  }
  EXPECT_TRUE(VM::GetAuthorityHintInfoForNormal(9, false).GetBoolean("hidden"));
  Strings texts;
  for (int policy = 4; policy <= 10; ++policy) {
    Variant const hint = VM::GetAuthorityHintInfoForWebinar(policy, false);
    EXPECT_EQ(hint.GetBoolean("hidden"), policy == 4) << policy;
    EXPECT_TRUE(VM::GetAuthorityHintInfoForWebinar(policy, true).GetBoolean("hidden")) << policy;
    if (policy > 4) texts.push_back(hint.GetString("text"));
  }
  for (auto const& text : texts) EXPECT_FALSE(text.empty());
  EXPECT_TRUE(VM::GetAuthorityHintInfoForWebinar(2, false).GetBoolean("hidden"));
}

TEST_F(MemberListTest, AttachingTwiceKeepsTheFirstProviderAndDetachingStopsIt) {
  Attach();
  const int64_t first = vm_->activate_id();
  EXPECT_NE(first, 0);
  vm_->DidAttached(nullptr);
  EXPECT_EQ(vm_->activate_id(), first);
  EXPECT_EQ(meeting_.member_provider().active_count(), 1u);
  Detach();
  EXPECT_EQ(meeting_.member_provider().active_count(), 0u);

  // No provider in the client: the list stays empty, and says why in the log.
  meeting_.RemoveModel(talvex_common::utils::memberprovider::kModelId);
  Attach();
  EXPECT_EQ(vm_->activate_id(), 0);
  Settle();
  EXPECT_EQ(Published(), 0u);
}

TEST_F(MemberListTest, OpenFromTheOverlayItRefusesImmersiveMode) {
  Attach(Variant(VM::kSourceBullet));
  vm_->SetVisible(true);
  std::string reason;
  EXPECT_FALSE(meeting_.meeting_settings().EnterImmersiveMode(&reason));
  EXPECT_EQ(reason, "PrivateChatMembersViewModel visible");
  vm_->SetVisible(false);
  EXPECT_TRUE(meeting_.meeting_settings().EnterImmersiveMode(&reason));
  Detach();
  Attach(Variant(1));  // from the panel: no refusal
  vm_->SetVisible(true);
  EXPECT_TRUE(meeting_.meeting_settings().EnterImmersiveMode(&reason));
}

TEST_F(MemberListTest, BadInputOnEveryActionAndEventChangesNothing) {
  Attach();
  Settle();
  const Variant before = List();
  const size_t published = Published();
  const std::vector<Variant> bad = {Variant(), Variant(true), Variant(7), Variant(2.5), Variant("text"),
                                    Variant(base::variant::kVariantTypeArray),
                                    Variant(base::variant::kVariantTypeMap),
                                    Variant::Map{{"type", "2"}, {"title_type", "0"}, {"search_text", 3},
                                                 {"orientation", "wide"}}};
  for (uint32_t action : {1u, 2u, 4u, 7u, 9u}) {
    for (auto const& params : bad) {
      vm_->Handle(action, &params);
      vm_->Handle(action, nullptr);
    }
  }
  for (auto const& payload : bad) meeting_.member_provider().FireEvent(0, payload);
  Variant junk_section(base::variant::kVariantTypeArray);
  junk_section.Add(7);
  meeting_.member_provider().FireEvent(1, junk_section);
  Settle();
  EXPECT_EQ(Published(), published);
  EXPECT_EQ(List(), before);
  EXPECT_TRUE(record::GetPrivateChatUserInfo().IsNull());
  EXPECT_TRUE(meeting_.member_provider().InvocationsOf(1).empty()) << "no search from junk";
}

TEST_F(MembersFixture, AWebinarOfTenThousandStreamsInChunksAndSearchesAttendeesApart) {
  meeting_.context().is_webinar = true;
  meeting_.context().self_role = Role::kRoleHost;
  sim::RosterOptions roster;
  roster.panelists = 3;
  roster.attendees = 10000;
  sim::PopulateRoster(meeting_, roster);
  meeting_.member_provider().set_chunk_size(4000);
  Attach();
  std::vector<bool> loading;
  vm_->BindProp(VM::kPropMemberList, [&](Variant const* list, Variant const*) {
    loading.push_back(list->GetBoolean("is_attendee_loading"));
  });
  Settle(200);
  EXPECT_EQ(loading, (std::vector<bool>{true, true, false}));
  Variant const info = List().Get("in_meeting_info");
  ASSERT_EQ(info.Get("user_list").Size(), 2u + 3u + 10000u);
  EXPECT_EQ(info.Get("user_list")[1].GetString("nickname"), Text("chat.members.everyone_webinar"));
  EXPECT_EQ(info.Get("user_list")[1].GetInt32("receiver_type"), 5);
  EXPECT_EQ(info.Get("user_list")[2].Get("user").GetString("role"), "panelist") << "panelists before attendees";

  // Searching: panelists found stay first, attendees found take the second
  // section under their own title.
  const std::string name = sim::RosterName(5000);
  Type(name.substr(0, 6));
  Settle();
  Variant const list = List();
  EXPECT_TRUE(list.GetBoolean("is_searching"));
  Strings attendees = Names(list.Get("waiting_member_info"));
  ASSERT_FALSE(attendees.empty());
  EXPECT_EQ(attendees[0], "#2");
  EXPECT_NE(std::find(attendees.begin(), attendees.end(), name), attendees.end());
  for (auto const& row : list.Get("waiting_member_info").Get("user_list").AsArray()) {
    if (row.GetInt32("type") != VM::kRowTitle) {
      EXPECT_EQ(row.GetInt32("type"), VM::kRowAttendee);
    }
  }
  Variant const attendee = list.Get("waiting_member_info").Get("user_list")[1];
  vm_->Handle(VM::kActionSelectMember, &attendee);
  auto selects = base::analytics::RecordedEvents("chatting_private_chat_select_user_click");
  ASSERT_EQ(selects.size(), 1u);
  EXPECT_EQ(selects[0].properties.at("sender_condition"), "1");
  EXPECT_EQ(selects[0].properties.at("receive_condition"), "4");
}

}  // namespace
}  // namespace members_test
