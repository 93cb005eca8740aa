#include <QFile>
#include <gtest/gtest.h>

#include "framework/chat/chat_utils.h"
#include "framework/config/configure_service.h"
#include "framework/module/module_service.h"
#include "sim/chat_records.h"
#include "base/timer/tx_timer.h"
#include "framework/meeting/member_provider.h"
#include "sim/meeting_sim.h"
#include "sim/roster.h"
#include "support/test_util.h"

namespace {

TEST(MeetingSimTest, InstallMakesTheMeetingTheClientsApplication) {
  sim::MeetingSimulator meeting;
  EXPECT_EQ(framework::module::GetAppModuleModel(514), nullptr);
  meeting.Install();
  for (int id : {514, 517, 524, 641, 10014}) EXPECT_NE(framework::module::GetAppModuleModel(id), nullptr) << id;
  meeting.RemoveModel(641);
  EXPECT_EQ(framework::module::GetAppModuleModel(641), nullptr);
  meeting.Uninstall();
  EXPECT_EQ(framework::module::GetModuleService()->GetApplicationModule(), nullptr);
  EXPECT_EQ(framework::module::GetAppModuleModel(514), nullptr);
}

TEST(MeetingSimTest, MeetingStateAnswersAndAnnouncesJoinAndLeave) {
  sim::MeetingSimulator meeting;
  meeting.Install();
  std::vector<int> joins;
  meeting.meeting().Subscribe(1, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
                                joins.push_back(p->GetInt32("result"));
                              }));
  auto answer = [&](uint32_t method) {
    Variant result;
    EXPECT_TRUE(meeting.meeting().Invoke(method, nullptr, &result)) << method;
    return result;
  };
  EXPECT_FALSE(answer(0).AsBoolean());
  meeting.meeting().Join(5);
  EXPECT_FALSE(answer(0).AsBoolean()) << "a failed join leaves the meeting off";
  meeting.meeting().Join();
  EXPECT_EQ(joins, (std::vector<int>{5, 0}));
  EXPECT_TRUE(answer(3).AsBoolean());
  Variant state;
  EXPECT_FALSE(meeting.meeting().Invoke(999, nullptr, &state));
}

TEST(MeetingSimTest, MessageStoreServesTheChatHelpers) {
  sim::MeetingSimulator meeting;
  meeting.Install();
  Variant record(base::variant::kVariantTypeMap);
  record.Set("chat_type", 0);
  EXPECT_FALSE(meeting.messages().AddMessage(record)) << "no msg_id";
  EXPECT_FALSE(meeting.messages().AddMessage(Variant("m1")));
  record.Set("msg_id", "m1");
  ASSERT_TRUE(meeting.messages().AddMessage(record));
  auto found = talvex::ChatUtils::GetMsgInfoPtrById("m1");
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(*found, record);
  EXPECT_EQ(talvex::ChatUtils::GetMsgInfoPtrById(""), nullptr);

  std::vector<std::string> removed;
  meeting.messages().Subscribe(18, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
                                 removed.push_back(p->GetString("msg_id"));
                               }));
  meeting.messages().RemoveMessage("m2");
  meeting.messages().RemoveMessage("m1");
  EXPECT_EQ(removed, std::vector<std::string>{"m1"}) << "only a stored message is announced";
  EXPECT_EQ(talvex::ChatUtils::GetMsgInfoPtrById("m1"), nullptr);
  ASSERT_TRUE(meeting.messages().AddMessage(record));
  meeting.Uninstall();
  EXPECT_EQ(talvex::ChatUtils::GetMsgInfoPtrById("m1"), nullptr) << "no client model, no record";
}

TEST(MeetingSimTest, SidebarKeepsRegisteredAppsAndRefusesBadOnes) {
  sim::MeetingSimulator meeting;
  Variant app(base::variant::kVariantTypeMap);
  EXPECT_FALSE(meeting.sidebar().Invoke(19, &app, nullptr));
  EXPECT_FALSE(meeting.sidebar().Invoke(19, nullptr, nullptr));
  app.Set("open_app_id", "a1");
  EXPECT_TRUE(meeting.sidebar().Invoke(19, &app, nullptr));
  Variant id("a1");
  EXPECT_FALSE(meeting.sidebar().Invoke(20, &app, nullptr)) << "removal takes the id as a string";
  EXPECT_TRUE(meeting.sidebar().Invoke(20, &id, nullptr));
  EXPECT_TRUE(meeting.sidebar().apps().empty());
}

TEST(MeetingSimTest, RemoteConfigurationFileOverridesDefaults) {
  sim::SimOptions options;
  options.data_dir = talvex_test::TempRoot() + "/sim-config";
  sim::MeetingSimulator meeting(options);
  QFile file(QString::fromStdString(options.data_dir + "/remote_config.json"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(R"({"im": {"msg_input_height": 120}})");
  file.close();
  meeting.Install();
  EXPECT_EQ(talvex_common::utils::QueryConfigureService("im", "msg_input_height", Variant(0)).AsInt32(), 120);
  EXPECT_EQ(talvex_common::utils::QueryConfigureService("im", "nothing", Variant(7)).AsInt32(), 7);
  meeting.Uninstall();
}

// What the floating chat hears of the meeting.
TEST(MeetingSimTest, ArrivingMessagesReachTheOverlayAsTheyCameOverTheWire) {
  talvex_test::IsolateUserDirectories();
  sim::MeetingSimulator meeting;
  meeting.Install();
  meeting.faces().Load();
  std::vector<Variant> arrived;
  meeting.messages().Subscribe(8, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
    arrived.push_back(p ? *p : Variant());
  }));
  const sim::Sender avery("u1", "Avery Quinn");
  // A converter of the panel rewrites the stored record (a single emoji
  // becomes a face message); the overlay still gets the text as sent.
  meeting.messages().SubscribePriority(40, 102, 1, std::make_shared<framework::PriorityEventHandler>(
      [](Variant const* record, bool&) { const_cast<Variant*>(record)->Set("chat_type", 1); }));
  const std::string id = meeting.messages().Post(sim::TextRecord(meeting.meeting().meeting_id(), avery, "[Smile]"));
  meeting.messages().Post(sim::TextRecord(meeting.meeting().meeting_id(), sim::Sender("u-self", "Me"), "mine", true));
  ASSERT_EQ(arrived.size(), 1u) << "one's own messages come back as send results";
  Variant const& form = arrived[0].Get("new_msg_list")[0];
  EXPECT_EQ(form.GetInt32("chat_type"), 0);
  EXPECT_EQ(form.Get("message_elem_array")[0].GetString("text_elem_content"), "[Smile]");
  EXPECT_EQ(form.GetString("nickname"), "Avery Quinn");
  EXPECT_EQ(form.GetString("app_uid"), "u1");
  EXPECT_EQ(form.GetString("message_unique_id"), form.GetString("local_msg_id"));
  EXPECT_EQ(meeting.messages().FindMessage(id)->GetInt32("chat_type"), 1);
  EXPECT_EQ(meeting.messages().webinar_unread(), 1u);
  meeting.messages().Invoke(12, nullptr, nullptr);
  EXPECT_EQ(meeting.messages().webinar_unread(), 0u);

  std::vector<Variant> recalled;
  meeting.messages().Subscribe(18, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
    recalled.push_back(*p);
  }));
  meeting.messages().Revoke(id);
  ASSERT_EQ(recalled.size(), 1u);
  EXPECT_EQ(recalled[0].GetInt32("message_status"), 6);
  EXPECT_EQ(recalled[0].GetString("message_unique_id"), form.GetString("message_unique_id"));
  meeting.messages().Unsubscribe(1);
  meeting.messages().UnsubscribePriority(1);
}

TEST(MeetingSimTest, OverlaySettingsPersistAndTheOverlaysModelsAnswer) {
  talvex_test::IsolateUserDirectories();
  {
    sim::MeetingSimulator meeting;
    meeting.Install();
    EXPECT_TRUE(meeting.bullet_settings().show_bullet());
    Variant fold(false);
    EXPECT_TRUE(meeting.bullet_settings().Invoke(13, &fold, nullptr));
    EXPECT_FALSE(meeting.bullet_settings().Invoke(13, nullptr, nullptr));
    meeting.Uninstall();
  }
  sim::MeetingSimulator next;  // the next meeting reads the same store
  next.Install();
  Variant shown;
  next.bullet_settings().Invoke(14, nullptr, &shown);
  EXPECT_FALSE(shown.GetBoolean("is_show_bullet_enabled", true));

  // Picture-in-picture, the tips database and the immersive mode's refusal.
  Variant state = Variant::Map{{"state", 0}, {"from", 1}};
  next.pic_in_pic().Invoke(12, &state, nullptr);
  Variant answer;
  next.pic_in_pic().Invoke(7, nullptr, &answer);
  EXPECT_EQ(answer.GetInt32("state"), 1 - 1);
  std::vector<Variant> tips;
  next.tips_db().Subscribe(1, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
    tips.push_back(p ? *p : Variant());
  }));
  Variant query = Variant::Map{{"tips_type", 101}};
  next.tips_db().Invoke(6, &query, nullptr);
  next.tips_db().Invoke(7, &query, nullptr);
  next.tips_db().Invoke(6, &query, nullptr);
  ASSERT_EQ(tips.size(), 2u);
  EXPECT_TRUE(tips[0].IsNull()) << "never shown";
  EXPECT_EQ(tips[1].Size(), 1u);
  next.meeting_settings().SubscribePriority(10, 101, 2, std::make_shared<framework::PriorityEventHandler>(
      [](Variant const* p, bool& stop) {
        const_cast<Variant*>(p)->Set("reason", "busy");
        stop = true;
      }));
  std::string reason;
  EXPECT_FALSE(next.meeting_settings().EnterImmersiveMode(&reason));
  EXPECT_EQ(reason, "busy");
  next.meeting_settings().UnsubscribePriority(2);
  EXPECT_TRUE(next.meeting_settings().EnterImmersiveMode(&reason));
  next.tips_db().Unsubscribe(1);
}

TEST(MeetingSimTest, RedPacketsKnowWhoIsTheLocalUser) {
  talvex_test::IsolateUserDirectories();
  sim::MeetingSimulator meeting;
  meeting.Install();
  std::vector<Variant> events;
  meeting.red_packets().Subscribe(0, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
    events.push_back(*p);
  }));
  const Variant self = Variant::Map{{"user_id", "u-self"}, {"nickname", "Alex"}};
  const Variant sam = Variant::Map{{"user_id", "u3"}, {"nickname", "Sam"}};
  const std::string ticket = meeting.red_packets().Send(sam);
  meeting.red_packets().Open(ticket, sam, self);
  ASSERT_EQ(events.size(), 2u);
  EXPECT_FALSE(events[0][0].GetBoolean("msg_is_self"));
  EXPECT_TRUE(events[1][0].GetBoolean("receiver_is_self"));
  EXPECT_FALSE(events[1][0].GetBoolean("sender_is_self"));
  EXPECT_EQ(events[1][0].GetString("ticket"), ticket);

  Variant me;
  meeting.members().Invoke(1, nullptr, &me);
  EXPECT_EQ(me.GetString("nickname"), "Alex Morgan");
  EXPECT_FALSE(me.GetBoolean("is_forbid_chat"));
  meeting.members().SetSelfForbidChat(true);
  meeting.members().Invoke(1, nullptr, &me);
  EXPECT_TRUE(me.GetBoolean("is_forbid_chat"));
  meeting.members().AddMember(Variant::Map{{"user_id", "anon-1"}, {"app_uid", "x"}, {"app_id", "1"},
                                           {"nickname", "Guest"}, {"real_name", "Jamie Lee"}});
  Variant ask = Variant::Map{{"unique_id", "anon-1"}};
  Variant real;
  EXPECT_TRUE(meeting.members().Invoke(83, &ask, &real));
  EXPECT_EQ(real.AsStr(), "Jamie Lee");
  meeting.red_packets().Unsubscribe(1);
}

}  // namespace

// The member provider (638): sections by provider for who the local user is,
// search in any case, large lists in chunks, the search of all attendees, and
// answers again when members come and go.
TEST(MeetingSimTest, TheMemberProviderStreamsSectionsAndSearches) {
  namespace mp = talvex_common::utils::memberprovider;
  talvex_common::utils::timer::ManualTimerClock clock;
  sim::MeetingSimulator meeting;
  meeting.Install();
  meeting.context().is_webinar = true;
  meeting.context().self_role = talvex::MeetingContext::kRoleHost;
  sim::RosterOptions roster;
  roster.panelists = 2;
  roster.attendees = 2500;
  roster.waiting = 1;
  sim::PopulateRoster(meeting, roster);
  meeting.members().AddMember(Variant::Map{{"user_id", "u-self"}, {"nickname", "Alex Morgan"}, {"role", "host"}});
  auto& provider = meeting.member_provider();
  provider.set_chunk_size(1000);
  std::vector<Variant> events;
  std::vector<Variant> all_search;
  provider.Subscribe(mp::kEventSections, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
                       events.push_back(*p);
                     }));
  provider.Subscribe(mp::kEventAllSearchUserList, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
                       all_search.push_back(*p);
                     }));
  auto section = [](Variant const& sections, char const* id) {
    for (auto const& s : sections.AsArray()) {
      if (s.GetString("provider_id") == id) return s;
    }
    return Variant();
  };

  Variant which(2);
  EXPECT_FALSE(provider.Invoke(mp::kMethodActivate, &which, nullptr)) << "only the chat's providers";
  which = Variant(mp::kActivateForIm);
  Variant activated;
  ASSERT_TRUE(provider.Invoke(mp::kMethodActivate, &which, &activated));
  const int64_t id = activated.GetInteger("activate_id");
  EXPECT_TRUE(events.empty()) << "answers come on the host's timers";
  clock.Advance(200);
  ASSERT_EQ(events.size(), 3u) << "2,500 attendees in chunks of 1,000";
  Variant const first = section(events[0], mp::kAttendeeMembersForImProvider);
  EXPECT_TRUE(first.GetBoolean("is_loading"));
  EXPECT_EQ(first.Get("user_list").Size(), 1000u);
  EXPECT_EQ(first.GetInteger("total_count"), 2500);
  Variant const last = section(events.back(), mp::kAttendeeMembersForImProvider);
  EXPECT_FALSE(last.GetBoolean("is_loading"));
  EXPECT_EQ(last.Get("user_list").Size(), 2500u);
  Variant const in_meeting = section(events.back(), mp::kInMeetingMembersForImProvider);
  EXPECT_EQ(in_meeting.Get("user_list").Size(), 2u) << "the panelists; never the local user";
  EXPECT_EQ(in_meeting.Get("user_list")[0].GetInteger("sort_key"), mp::kSortKeyPanelist);
  EXPECT_EQ(section(events.back(), mp::kWaitingMembersProvider).Get("user_list").Size(), 1u);
  EXPECT_EQ(last.GetInteger("activate_id"), id);

  // Search, in any case.
  events.clear();
  const std::string name = sim::RosterName(700);
  Variant ask = Variant::Map{{"activate_id", id}, {"search_str", QString::fromStdString(name).toUpper().toStdString()}};
  ASSERT_TRUE(provider.Invoke(mp::kMethodSearch, &ask, nullptr));
  clock.Advance(100);
  ASSERT_FALSE(events.empty());
  Variant const found = section(events.back(), mp::kAttendeeMembersForImProvider);
  EXPECT_TRUE(found.GetBoolean("is_searching"));
  ASSERT_GE(found.Get("user_list").Size(), 1u);
  for (auto const& user : found.Get("user_list").AsArray()) EXPECT_EQ(user.GetString("nickname"), name);

  // A member who leaves is gone from the next answer.
  events.clear();
  ask.Set("search_str", "");
  provider.Invoke(mp::kMethodSearch, &ask, nullptr);
  meeting.members().RemoveMember("p-0");
  clock.Advance(200);
  EXPECT_EQ(section(events.back(), mp::kInMeetingMembersForImProvider).Get("user_list").Size(), 1u);

  // One search of all attendees, answered once.
  Variant all = Variant::Map{{"provider_id", mp::kAttendeeMembersForImProvider}, {"search_str", name}};
  ASSERT_TRUE(provider.Invoke(mp::kMethodSearchAll, &all, nullptr));
  clock.Advance(100);
  ASSERT_EQ(all_search.size(), 1u);
  EXPECT_GE(all_search[0][0].Get("user_list").Size(), 1u);

  // An attendee is shown no attendees; stopped, nothing more comes.
  Variant stop = Variant::Map{{"activate_id", id}};
  EXPECT_TRUE(provider.Invoke(mp::kMethodDeactivate, &stop, nullptr));
  EXPECT_EQ(provider.active_count(), 0u);
  meeting.context().self_role = talvex::MeetingContext::kRoleAttendee;
  events.clear();
  provider.Invoke(mp::kMethodActivate, &which, nullptr);
  clock.Advance(100);
  ASSERT_EQ(events.size(), 1u);
  EXPECT_TRUE(section(events[0], mp::kAttendeeMembersForImProvider).IsNull());
  EXPECT_TRUE(section(events[0], mp::kWaitingMembersProvider).IsNull());
  provider.Unsubscribe(1);
}

TEST(MeetingSimTest, ChatConditionsNameBothEnds) {
  sim::MeetingSimulator meeting;
  meeting.Install();
  meeting.context().self_role = talvex::MeetingContext::kRoleCoHost;
  std::string sender;
  std::string receiver;
  const std::vector<std::pair<Variant, std::string>> cases = {
      {Variant(), "6"},
      {Variant::Map{{"receiver_type", 3}}, "7"},
      {Variant::Map{{"receiver_type", 4}}, "8"},
      {Variant::Map{{"receiver_type", 5}}, "9"},
      {Variant::Map{{"receiver_type", 6}, {"user_id", "w"}}, "5"},
      {Variant::Map{{"receiver_type", 1}, {"user_id", "p"}, {"role", "panelist"}}, "3"},
      {Variant::Map{{"receiver_type", 1}, {"user_id", "a"}, {"role", "attendee"}}, "4"},
      {Variant::Map{{"receiver_type", 1}, {"user_id", "m"}}, "0"},
  };
  for (auto const& [to, expected] : cases) {
    talvex::ChatUtils::GetChatCondition(to, sender, receiver);
    EXPECT_EQ(sender, "2");
    EXPECT_EQ(receiver, expected) << framework::VariantToString(&to);
  }
  meeting.context().in_waiting_room = true;
  talvex::ChatUtils::GetChatCondition(Variant(), sender, receiver);
  EXPECT_EQ(sender, "5");
}
