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

  // A message record as the client's store holds it.
  void AddMessage(std::string const& id, Variant chat_type) {
    Variant record(base::variant::kVariantTypeMap);
    record.Set("msg_id", id);
    if (!chat_type.IsNull()) record.Set("chat_type", chat_type);
    record.Set("msg_text", "hello");
    ASSERT_TRUE(meeting_.messages().AddMessage(record));
  }

  sim::MeetingSimulator meeting_;
  chat::ChatModuleRuntime runtime_;
};

TEST_F(ChatRuntimeTest, ActivationMakesTheSendAndMessageModelsAndRegistersTheSidebarApp) {
  ASSERT_TRUE(runtime_.Activate());
  EXPECT_EQ(runtime_.name(), "chat");
  // Made by the model provider's Init and by the runtime itself.
  EXPECT_EQ(runtime_.GetModelProvider()->ModelCount(), 3u);

  auto calls = meeting_.sidebar().InvocationsOf(19);
  ASSERT_EQ(calls.size(), 1u);
  Variant const& app = calls[0];
  EXPECT_EQ(app.GetString("open_app_id"), "native-367501737851965781");
  EXPECT_EQ(app.GetString("extension_id"), "extension:chat.sidebar_tab_in_meeting");
  EXPECT_EQ(app.GetString("contribute_id"), "contributes:sidebar.app_chat_window");
  EXPECT_EQ(app.GetUint32("min_width"), 500u);
  EXPECT_EQ(app.GetUint32("min_height"), 400u);
  EXPECT_EQ(app.GetInt32("support_position"), 3);
  EXPECT_EQ(app.GetInt32("position"), 2);
  EXPECT_EQ(app.GetUint32("default_width"), 600u);
  EXPECT_EQ(app.GetUint32("default_height"), 480u);
  EXPECT_TRUE(app.GetBoolean("is_topmost"));
  EXPECT_TRUE(app.GetBoolean("is_resident"));
  EXPECT_EQ(app.Size(), 11u);
  EXPECT_TRUE(app.Get("min_width").IsInteger());
  EXPECT_EQ(meeting_.sidebar().apps().count("native-367501737851965781"), 1u);

  EXPECT_EQ(meeting_.sidebar().SubscriberCount(3), 1u);
  EXPECT_EQ(meeting_.cell_height().SubscriberCount(0), 1u);
}

TEST_F(ChatRuntimeTest, ActivationWithoutSidebarOrCellHeightModelsSkipsThem) {
  meeting_.RemoveModel(641);
  meeting_.RemoveModel(10014);
  ASSERT_TRUE(runtime_.Activate());
  EXPECT_EQ(runtime_.GetModelProvider()->ModelCount(), 3u);
  EXPECT_TRUE(meeting_.sidebar().invocations().empty());
  EXPECT_EQ(meeting_.cell_height().SubscriberCount(0), 0u);
  runtime_.Unactivate();
  EXPECT_TRUE(meeting_.sidebar().invocations().empty());
}

TEST_F(ChatRuntimeTest, ActivationBeforeTheMeetingExistsBuildsOnlyTheProviders) {
  meeting_.Uninstall();
  ASSERT_EQ(framework::module::GetAppModuleModel(641), nullptr);
  ASSERT_TRUE(runtime_.Activate());
  // The send and message models exist; the notice model waits for the meeting.
  EXPECT_EQ(runtime_.GetModelProvider()->ModelCount(), 2u);
  EXPECT_NE(runtime_.ServiceOf(chat::kChatUIAssistantServiceId), nullptr);
  EXPECT_TRUE(meeting_.sidebar().invocations().empty());
}

TEST_F(ChatRuntimeTest, UnactivateLeavesTheClientsModelsAndRemovesTheSidebarApp) {
  ASSERT_TRUE(runtime_.Activate());
  ASSERT_NE(runtime_.ModelOf(chat::kChatBizModelId), nullptr);
  EXPECT_EQ(meeting_.meeting().SubscriberCount(1), 1u);
  meeting_.sidebar().ClearInvocations();
  runtime_.Unactivate();
  EXPECT_FALSE(runtime_.IsActivated());
  EXPECT_EQ(meeting_.sidebar().SubscriberCount(3), 0u);
  EXPECT_EQ(meeting_.cell_height().SubscriberCount(0), 0u);
  auto removals = meeting_.sidebar().InvocationsOf(20);
  ASSERT_EQ(removals.size(), 1u);
  EXPECT_TRUE(removals[0].IsString());
  EXPECT_EQ(removals[0].AsStr(), "native-367501737851965781");
  EXPECT_TRUE(meeting_.sidebar().apps().empty());
  // The chat state model left the meeting's models with the provider.
  EXPECT_EQ(meeting_.meeting().SubscriberCount(1), 0u);
  // A second activation builds everything again.
  ASSERT_TRUE(runtime_.Activate());
  EXPECT_EQ(meeting_.sidebar().InvocationsOf(19).size(), 1u);
}

TEST_F(ChatRuntimeTest, SidebarAskingForTheChatTabRegistersItsExtension) {
  ASSERT_TRUE(runtime_.Activate());
  auto* extensions = framework::extension::GetExtensionService();
  meeting_.sidebar().RequestExtension("other:extension", "contributes:sidebar.app_chat_window");
  EXPECT_TRUE(extensions->Registrations().empty());
  // A decorated id still matches: the client may add to it.
  meeting_.sidebar().RequestExtension("extension:chat.sidebar_tab_in_meeting#2", "contributes:sidebar.app_chat_window");
  ASSERT_EQ(extensions->Registrations().size(), 1u);
  EXPECT_EQ(extensions->Registrations()[0].contributes_id, "contributes:sidebar.app_chat_window");
  EXPECT_EQ(extensions->Registrations()[0].info.extension_id, "extension:chat.sidebar_tab_in_meeting#2");
  EXPECT_EQ(extensions->Registrations()[0].info.module_name, "chat");
}

TEST_F(ChatRuntimeTest, SidebarEventWithBadPayloadIsLoggedAndIgnored) {
  ASSERT_TRUE(runtime_.Activate());
  LogCapture log;
  Variant not_a_map("extension:chat.sidebar_tab_in_meeting");
  meeting_.sidebar().FireEvent(3, nullptr);
  meeting_.sidebar().FireEvent(3, &not_a_map);
  EXPECT_EQ(log.Count("load extension event param error!"), 2u);
  Variant missing_keys(base::variant::kVariantTypeMap);
  meeting_.sidebar().FireEvent(3, &missing_keys);
  EXPECT_TRUE(framework::extension::GetExtensionService()->Registrations().empty());
}

TEST_F(ChatRuntimeTest, CellHeightRequestsAreAnsweredThroughTheServiceEvent) {
  ASSERT_TRUE(runtime_.Activate());
  auto service = runtime_.ServiceOf(chat::kChatUIAssistantServiceId);
  ASSERT_NE(service, nullptr);
  std::vector<Variant> fired;
  service->Subscribe(108273149, 1, std::make_shared<framework::EventHandler>([&](Variant const* p) {
                       fired.push_back(p ? *p : Variant());
                     }));
  AddMessage("m-text", 0);
  AddMessage("m-packet", 2);
  AddMessage("m-receipt", 3);
  AddMessage("m-untyped", Variant());

  LogCapture log;
  // An ordinary message is answered by the module's event; the client's event goes on.
  EXPECT_FALSE(meeting_.cell_height().AskCellHeight("m-text"));
  ASSERT_EQ(fired.size(), 1u);
  EXPECT_EQ(fired[0].GetString("msg_id"), "m-text");
  EXPECT_EQ(fired[0].Get("message_info").GetString("msg_text"), "hello");

  // Red packets and receipts are the client's: no answer, the event stops here.
  EXPECT_TRUE(meeting_.cell_height().AskCellHeight("m-packet"));
  EXPECT_TRUE(meeting_.cell_height().AskCellHeight("m-receipt"));
  EXPECT_EQ(fired.size(), 1u);

  // Unknown: logged, answered, nothing fired.
  EXPECT_FALSE(meeting_.cell_height().AskCellHeight("m-missing"));
  EXPECT_TRUE(log.Contains("<IM> msg is not found", base::log::kLogError));
  EXPECT_EQ(fired.size(), 1u);

  // No chat type: logged, treated as text.
  EXPECT_FALSE(meeting_.cell_height().AskCellHeight("m-untyped"));
  EXPECT_TRUE(log.Contains("<IM> msg is not found chat_type", base::log::kLogError));
  EXPECT_EQ(fired.size(), 2u);

  // Null and non-map payloads find no message.
  Variant text("m-text");
  EXPECT_FALSE(meeting_.cell_height().FireEvent(0, nullptr));
  EXPECT_FALSE(meeting_.cell_height().FireEvent(0, &text));
  EXPECT_EQ(fired.size(), 2u);
}

TEST_F(ChatRuntimeTest, UiAssistantServiceKnowsOneMethod) {
  chat::ChatUIAssistantService service;
  Variant params(base::variant::kVariantTypeMap);
  EXPECT_FALSE(service.Invoke(1, &params, nullptr));
  EXPECT_TRUE(service.Invoke(669604053, &params, nullptr));
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
}

TEST_F(ChatRuntimeTest, ExtensionProviderBuildsEveryChatExtension) {
  ASSERT_TRUE(runtime_.Activate());
  auto* provider = runtime_.GetExtensionProvider();
  for (char const* id :
       {"extension:chat", "extension:chat.sidebar_tab_in_meeting", "extension:chat.chat_broadcast",
        "extension:chat.bullet", "extension:chat.send_image", "extension:chat.send_notice",
        "extension:chat.send_file", "extension:chat.send_emoji", "extension:chat.notice_message",
        "extension:chat.openapp_message", "extension:chat.file_message", "extension:chat.face_message",
        "extension:chat.tip_message", "extension:chat.text_message", "extension:chat.image_message",
        "extension:chat.panel_history_list", "extension:chat.record_panel_history_list",
        "extension:chat.pane_input", "extension:chat.private_talk_in_quick_operation_menu",
        "extension:chat.chat_permissions_talk_in_quick_operation_menu",
        "extension:chat.history_message_in_quick_operation_menu"}) {
    EXPECT_NE(provider->CreateExtension(id), nullptr) << id;
  }
  LogCapture log;
  EXPECT_EQ(provider->CreateExtension("extension:chat.unknown"), nullptr);
  EXPECT_TRUE(log.Contains("extension_id: extension:chat.unknown", base::log::kLogError));
}

TEST_F(ChatRuntimeTest, MessageExtensionsActivateOnlyForTheirKindOfMessage) {
  ASSERT_TRUE(runtime_.Activate());
  auto file = runtime_.GetExtensionProvider()->CreateExtension("extension:chat.file_message");
  ASSERT_NE(file, nullptr);
  LogCapture log;
  file->OnContributesActivate(0, nullptr);
  Variant no_id(base::variant::kVariantTypeMap);
  file->OnContributesActivate(0, &no_id);
  EXPECT_EQ(log.Count("not msg_id"), 2u);
  EXPECT_FALSE(file->activated());

  Variant text(base::variant::kVariantTypeMap);
  text.Set("msg_id", "a");
  text.Set("chat_type", 0);
  file->OnContributesActivate(0, &text);
  EXPECT_FALSE(file->activated());
  Variant file_message = text;
  file_message.Set("chat_type", 8);
  file->OnContributesActivate(0, &file_message);
  EXPECT_TRUE(file->activated());

  // The toolbar item shows what the client last said, hidden before.
  auto toolbar = std::dynamic_pointer_cast<talvex::ModuleExtension>(
      runtime_.GetExtensionProvider()->CreateExtension("extension:chat"));
  ASSERT_NE(toolbar, nullptr);
  Variant item;
  toolbar->HandleGetItemInfo(nullptr, &item);
  EXPECT_FALSE(item.GetBoolean("visible", true));
  toolbar->UpdateItemStatus(true);
  toolbar->HandleGetItemInfo(nullptr, &item);
  EXPECT_TRUE(item.GetBoolean("visible"));
  EXPECT_NE(item.GetInt32("view_model_type"), 0);
}

}  // namespace
