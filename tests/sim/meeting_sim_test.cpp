#include <QFile>
#include <gtest/gtest.h>

#include "framework/chat/chat_utils.h"
#include "framework/config/configure_service.h"
#include "framework/module/module_service.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace {

TEST(MeetingSimTest, InstallMakesTheMeetingTheClientsApplication) {
  sim::SimOptions options;
  options.data_dir = talvex_test::TempRoot() + "/sim-install";
  sim::MeetingSimulator meeting(options);
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
  std::vector<Variant> joined;
  meeting.meeting().Subscribe(1, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
                                joined.push_back(*p);
                              }));
  Variant on;
  ASSERT_TRUE(meeting.meeting().Invoke(0, nullptr, &on));
  EXPECT_FALSE(on.AsBoolean());
  meeting.meeting().Join(5);
  ASSERT_EQ(joined.size(), 1u);
  EXPECT_EQ(joined[0].GetInt32("result"), 5);
  ASSERT_TRUE(meeting.meeting().Invoke(0, nullptr, &on));
  EXPECT_FALSE(on.AsBoolean()) << "a failed join leaves the meeting off";
  meeting.meeting().Join();
  ASSERT_TRUE(meeting.meeting().Invoke(3, nullptr, &on));
  EXPECT_TRUE(on.AsBoolean());
  meeting.meeting().SetDisplayState(1);
  Variant state;
  ASSERT_TRUE(meeting.meeting().Invoke(11, nullptr, &state));
  EXPECT_EQ(state.AsInt32(), 1);
  EXPECT_FALSE(meeting.meeting().Invoke(999, nullptr, &state));
  EXPECT_EQ(meeting.meeting().InvocationsOf(0).size(), 2u);
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
  EXPECT_EQ(talvex::ChatUtils::GetMsgInfoPtrById("m2"), nullptr);
  EXPECT_EQ(talvex::ChatUtils::GetMsgInfoPtrById(""), nullptr);

  std::vector<std::string> removed;
  meeting.messages().Subscribe(18, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
                                 removed.push_back(p->GetString("msg_id"));
                               }));
  meeting.messages().RemoveMessage("m2");
  meeting.messages().RemoveMessage("m1");
  EXPECT_EQ(removed, std::vector<std::string>{"m1"});
  EXPECT_EQ(talvex::ChatUtils::GetMsgInfoPtrById("m1"), nullptr);
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
  const std::string dir = talvex_test::TempRoot() + "/sim-config";
  sim::SimOptions options;
  options.data_dir = dir;
  sim::MeetingSimulator meeting(options);
  QFile file(QString::fromStdString(dir + "/remote_config.json"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(R"({"im": {"msg_input_height": 120}})");
  file.close();
  meeting.Install();
  EXPECT_EQ(talvex_common::utils::QueryConfigureService("im", "msg_input_height", Variant(0)).AsInt32(), 120);
  EXPECT_EQ(talvex_common::utils::QueryConfigureService("im", "nothing", Variant(7)).AsInt32(), 7);
  meeting.Uninstall();
}

}  // namespace
