#include <QFile>
#include <gtest/gtest.h>

#include "framework/chat/chat_utils.h"
#include "framework/config/configure_service.h"
#include "framework/module/module_service.h"
#include "sim/meeting_sim.h"
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

}  // namespace
