#include <gtest/gtest.h>

#include "chat/runtime/chat_ids.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/runtime/chat_ui_assistant_service.h"
#include "framework/extension/extension.h"
#include "framework/module/module_service.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace {

using talvex_test::LogCapture;

class ChatRuntimeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    framework::extension::GetExtensionService()->Clear();
    meeting_.Install();
  }
  void TearDown() override {
    if (runtime_.IsActivated()) runtime_.Unactivate();
    meeting_.Uninstall();
  }

  sim::MeetingSimulator meeting_;
  chat::ChatModuleRuntime runtime_;
};

TEST_F(ChatRuntimeTest, ActivationAddsTheSidebarAppAndUnactivateTakesItAllDown) {
  ASSERT_TRUE(runtime_.Activate());
  // The send and message models, the notice's rule model and the notice
  // model it stands on.
  EXPECT_EQ(runtime_.GetModelProvider()->ModelCount(), 4u);
  ASSERT_NE(runtime_.ModelOf(chat::kChatBizModelId), nullptr);
  // The chat state, the notice and its rules follow the meeting's join.
  EXPECT_EQ(meeting_.meeting().SubscriberCount(1), 3u);
  EXPECT_EQ(meeting_.cell_height().SubscriberCount(0), 1u);
  auto calls = meeting_.sidebar().InvocationsOf(19);
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].Size(), 11u);
  EXPECT_TRUE(calls[0].Get("min_width").IsInteger()) << "the sidebar reads sizes as integers";
  const std::string app_id = calls[0].GetString("open_app_id");
  EXPECT_EQ(meeting_.sidebar().apps().count(app_id), 1u);

  meeting_.sidebar().ClearInvocations();
  runtime_.Unactivate();
  EXPECT_FALSE(runtime_.IsActivated());
  EXPECT_EQ(meeting_.sidebar().SubscriberCount(3), 0u);
  EXPECT_EQ(meeting_.cell_height().SubscriberCount(0), 0u);
  EXPECT_EQ(meeting_.meeting().SubscriberCount(1), 0u) << "the chat state model left the meeting's models";
  auto removals = meeting_.sidebar().InvocationsOf(20);
  ASSERT_EQ(removals.size(), 1u);
  EXPECT_TRUE(removals[0].IsString()) << "removal takes the bare id";
  EXPECT_EQ(removals[0].AsStr(), app_id);
  EXPECT_TRUE(meeting_.sidebar().apps().empty());
  ASSERT_TRUE(runtime_.Activate());
  EXPECT_EQ(meeting_.sidebar().InvocationsOf(19).size(), 1u) << "a second activation builds everything again";
}

TEST_F(ChatRuntimeTest, ActivationSkipsMissingClientModels) {
  meeting_.RemoveModel(641);
  meeting_.RemoveModel(10014);
  ASSERT_TRUE(runtime_.Activate());
  EXPECT_EQ(runtime_.GetModelProvider()->ModelCount(), 4u);
  EXPECT_EQ(meeting_.cell_height().SubscriberCount(0), 0u);
  runtime_.Unactivate();
  EXPECT_TRUE(meeting_.sidebar().invocations().empty());

  // Before the meeting exists the notice model waits; the rest is built.
  meeting_.Uninstall();
  ASSERT_TRUE(runtime_.Activate());
  EXPECT_EQ(runtime_.GetModelProvider()->ModelCount(), 2u);
  EXPECT_NE(runtime_.ServiceOf(chat::kChatUIAssistantServiceId), nullptr);
}

TEST_F(ChatRuntimeTest, SidebarAskingForTheChatTabRegistersItsExtension) {
  ASSERT_TRUE(runtime_.Activate());
  auto* extensions = framework::extension::GetExtensionService();
  const std::string point = "contributes:sidebar.app_chat_window";
  LogCapture log;
  Variant not_a_map("extension:chat.sidebar_tab_in_meeting");
  Variant missing_keys(base::variant::kVariantTypeMap);
  meeting_.sidebar().FireEvent(3, nullptr);
  meeting_.sidebar().FireEvent(3, &not_a_map);
  meeting_.sidebar().FireEvent(3, &missing_keys);
  EXPECT_EQ(log.Count("load extension event param error!"), 2u);
  meeting_.sidebar().RequestExtension("other:extension", point);
  EXPECT_TRUE(extensions->Registrations().empty());

  // A decorated id still matches: the client may add to it.
  meeting_.sidebar().RequestExtension("extension:chat.sidebar_tab_in_meeting#2", point);
  ASSERT_EQ(extensions->Registrations().size(), 1u);
  EXPECT_EQ(extensions->Registrations()[0].contributes_id, point);
  EXPECT_EQ(extensions->Registrations()[0].info,
            framework::ExtensionInfo("extension:chat.sidebar_tab_in_meeting#2", "chat"));
}

TEST_F(ChatRuntimeTest, CellHeightRequestsAreAnsweredThroughTheServiceEvent) {
  ASSERT_TRUE(runtime_.Activate());
  auto service = runtime_.ServiceOf(chat::kChatUIAssistantServiceId);
  ASSERT_NE(service, nullptr);
  std::vector<Variant> fired;
  service->Subscribe(108273149, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
                       fired.push_back(p ? *p : Variant());
                     }));
  for (auto [id, chat_type] : {std::pair{"m-text", 0}, {"m-packet", 2}, {"m-receipt", 3}, {"m-untyped", -1}}) {
    Variant record(base::variant::kVariantTypeMap);
    record.Set("msg_id", id);
    if (chat_type >= 0) record.Set("chat_type", chat_type);
    record.Set("msg_text", "hello");
    ASSERT_TRUE(meeting_.messages().AddMessage(record));
  }

  LogCapture log;
  // An ordinary message is answered by the module's event; the client's event goes on.
  EXPECT_FALSE(meeting_.cell_height().AskCellHeight("m-text"));
  ASSERT_EQ(fired.size(), 1u);
  EXPECT_EQ(fired[0].GetString("msg_id"), "m-text");
  EXPECT_EQ(fired[0].Get("message_info").GetString("msg_text"), "hello");

  // Red packets and receipts are the client's: no answer, the event stops here.
  EXPECT_TRUE(meeting_.cell_height().AskCellHeight("m-packet"));
  EXPECT_TRUE(meeting_.cell_height().AskCellHeight("m-receipt"));
  EXPECT_FALSE(meeting_.cell_height().AskCellHeight("m-missing"));
  EXPECT_TRUE(log.Contains("<IM> msg is not found", base::log::kLogError));
  EXPECT_EQ(fired.size(), 1u);

  // No chat type: logged, treated as text.
  EXPECT_FALSE(meeting_.cell_height().AskCellHeight("m-untyped"));
  EXPECT_TRUE(log.Contains("<IM> msg is not found chat_type", base::log::kLogError));
  EXPECT_EQ(fired.size(), 2u);

  Variant text("m-text");
  EXPECT_FALSE(meeting_.cell_height().FireEvent(0, nullptr));
  EXPECT_FALSE(meeting_.cell_height().FireEvent(0, &text));
  EXPECT_EQ(fired.size(), 2u) << "null and non-map payloads find no message";
}

TEST_F(ChatRuntimeTest, ProvidersAnswerForEveryIdTheyKnow) {
  ASSERT_TRUE(runtime_.Activate());
  for (int id : {22544178, 215793732, 321749439, 632276380, 841113345, 894662031, 1144207436}) {
    auto model = runtime_.ModelOf(id);
    ASSERT_NE(model, nullptr) << id;
    EXPECT_EQ(model->type(), id);
    EXPECT_EQ(runtime_.ModelOf(id), model) << "one instance per id";
  }
  EXPECT_EQ(runtime_.ModelOf(1), nullptr);
  EXPECT_EQ(runtime_.ModelOf(524), nullptr) << "client ids are not the module's";

  LogCapture log;
  EXPECT_EQ(runtime_.ServiceOf(7), nullptr);
  EXPECT_TRUE(log.Contains("invalid service type", base::log::kLogWarning));
  chat::ChatUIAssistantService service;
  Variant params(base::variant::kVariantTypeMap);
  EXPECT_FALSE(service.Invoke(1, &params, nullptr));
  EXPECT_TRUE(service.Invoke(669604053, &params, nullptr));

  // The registered extensions are built in the library test; these the client asks for by name alone.
  auto* provider = runtime_.GetExtensionProvider();
  for (char const* id : {"extension:chat.sidebar_tab_in_meeting", "extension:chat.private_talk_in_quick_operation_menu",
                         "extension:chat.chat_permissions_talk_in_quick_operation_menu",
                         "extension:chat.history_message_in_quick_operation_menu"}) {
    EXPECT_NE(provider->CreateExtension(id), nullptr) << id;
  }
  EXPECT_EQ(provider->CreateExtension("extension:chat.unknown"), nullptr);
  EXPECT_TRUE(log.Contains("extension_id: extension:chat.unknown", base::log::kLogError));
}

TEST_F(ChatRuntimeTest, MessageExtensionsActivateOnlyForTheirKindOfMessage) {
  ASSERT_TRUE(runtime_.Activate());
  auto file = runtime_.GetExtensionProvider()->CreateExtension("extension:chat.file_message");
  ASSERT_NE(file, nullptr);
  Variant message(base::variant::kVariantTypeMap);
  file->OnContributesActivate(0, nullptr);
  file->OnContributesActivate(0, &message);
  EXPECT_FALSE(file->activated()) << "no message id";
  message.Set("msg_id", "a");
  message.Set("chat_type", 0);
  file->OnContributesActivate(0, &message);
  EXPECT_FALSE(file->activated());
  message.Set("chat_type", 8);
  file->OnContributesActivate(0, &message);
  EXPECT_TRUE(file->activated());

  // The toolbar item stays hidden until the client says otherwise.
  auto toolbar = std::dynamic_pointer_cast<talvex::ModuleExtension>(
      runtime_.GetExtensionProvider()->CreateExtension("extension:chat"));
  ASSERT_NE(toolbar, nullptr);
  Variant item;
  toolbar->HandleGetItemInfo(nullptr, &item);
  EXPECT_FALSE(item.GetBoolean("visible", true));
  EXPECT_NE(item.GetInt32("view_model_type"), 0);
}

}  // namespace
