#include <gtest/gtest.h>

#include "chat/runtime/chat_module_registration.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/controller/page_controller.h"
#include "framework/extension/extension.h"
#include "framework/journal/host_journal.h"
#include "framework/module/module_service.h"
#include "framework/navigation/routing.h"
#include "sim/meeting_sim.h"

namespace {

namespace reg = chat::registration;
using framework::HostJournal;
using Entries = std::vector<std::string>;

class ChatRegistrationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    meeting_.Install();
    HostJournal::Clear();
  }
  void TearDown() override {
    reg::UnloadUI();
    reg::UnloadNonUI();
    if (reg::HasRuntime()) reg::UnregisterModule();
    framework::UiModuleLoaderRegister::GetInstance()->Remove("chat");
    framework::extension::GetExtensionService()->Clear();
    meeting_.Uninstall();
  }
  sim::MeetingSimulator meeting_;
};

// What the host sees after a load and an unload is checked on the built
// library; here the order of the steps and what a repeated step does.
TEST_F(ChatRegistrationTest, UiLoadRegistersRoutesAndViewsAndUnloadTakesThemDownInOrder) {
  auto* views = framework::ExtensionViewService::Instance();
  reg::LoadUI(reg::Runtime());
  EXPECT_EQ(HostJournal::Entries("NavigateProxyService.RegisterRoute"),
            (Entries{"NavigateProxyService.RegisterRoute 0 talvex://page/chat_record_qt",
                     "NavigateProxyService.RegisterRoute 0 talvex://page/meeting_notice"}));
  ASSERT_NE(views->Find("contributes:app.chat_message", "extension:chat.text_message"), nullptr);
  EXPECT_NE(views->Find("contributes:app.chat_message", "extension:chat.text_message")(), nullptr);
  EXPECT_NE(views->Find("anything", "extension:chat.sidebar_tab_in_meeting"), nullptr) << "registered without a point";
  EXPECT_EQ(views->Find("contributes:app.toolbar", "extension:chat.text_message"), nullptr);

  // A second load keeps its managers and registers only the pages again.
  HostJournal::Clear();
  reg::LoadUI(reg::Runtime());
  EXPECT_TRUE(HostJournal::Entries("DesktopSchemeRouterManager").empty());
  EXPECT_TRUE(HostJournal::Entries("CreateNavigateProxyService").empty());
  EXPECT_TRUE(HostJournal::Entries("DesktopUIModuleLoader").empty());
  EXPECT_EQ(HostJournal::Entries("ControllerManager.IocRegister").size(), 4u);
  ASSERT_EQ(views->entries().size(), 18u);
  // The views go in the order the client expects them, which is not the
  // order the extensions are registered in.
  std::vector<std::string> view_order;
  for (size_t i = 0; i < 17; ++i) {
    auto const& entry = views->entries()[i];
    view_order.push_back(entry.extension_id.size() > 15 ? entry.extension_id.substr(15) : "");
  }
  EXPECT_EQ(view_order, (std::vector<std::string>{"bullet", "", "panel_history_list", "pane_input",
                                                  "record_panel_history_list", "send_file", "send_image",
                                                  "send_notice", "send_emoji", "tip_message", "text_message",
                                                  "image_message", "notice_message", "file_message",
                                                  "openapp_message", "face_message", "sidebar_tab_in_meeting"}));
  EXPECT_EQ(views->entries()[1].extension_id, "extension:chat");
  EXPECT_EQ(views->entries()[0].contributes_id, "contributes:app.inmeeting_float");
  EXPECT_EQ(views->entries()[16].contributes_id, "");
  // The floating chat again, under the client's key for the screen-share window.
  EXPECT_EQ(views->entries()[17].extension_id, "ScreenShareBulletView");
  EXPECT_NE(views->Find("", "ScreenShareBulletView"), nullptr);

  // The router goes before the navigator, the proxy before the loader.
  HostJournal::Clear();
  reg::UnloadUI();
  EXPECT_EQ(HostJournal::Entries(), (Entries{
                                        "DesktopSchemeRouterManager.UninitRouterManager",
                                        "NavigatorManager.UninitNavigatorManager",
                                        "DeleteNavigateProxyService",
                                        "DesktopUIModuleLoader.Unload",
                                        "ControllerManager.IocUnregister talvex://page/inmeeting/chat",
                                        "ControllerManager.IocUnregister talvex://page/inmeeting/emoji_bullet",
                                        "ControllerManager.IocUnregister talvex://page/chat_record_qt",
                                        "ControllerManager.IocUnregister talvex://page/meeting_notice",
                                    }));

  HostJournal::Clear();
  reg::UnloadUI();
  EXPECT_TRUE(HostJournal::Entries("DesktopSchemeRouterManager").empty()) << "nothing left to release";
  EXPECT_TRUE(HostJournal::Entries("DeleteNavigateProxyService").empty());
}

TEST_F(ChatRegistrationTest, NonUiLoadKeepsItsProxyForEver) {
  chat::ChatModuleRuntime* runtime = reg::Runtime();
  reg::LoadNonUI(runtime);
  EXPECT_EQ(HostJournal::Entries("CreateNavigateProxyService").size(), 1u);

  HostJournal::Clear();
  reg::UnloadNonUI();
  EXPECT_EQ(HostJournal::Entries(), (Entries{
                                        "SchemeRouterManager.UninitRouterManager",
                                        "ExtensionManager.UninitExtensionManager",
                                        "NavigatorManager.UninitNavigatorManager",
                                        "UiModuleLoaderRegister.UnInitRuntimeLoader chat",
                                    }));

  HostJournal::Clear();
  reg::LoadNonUI(runtime);
  EXPECT_TRUE(HostJournal::Entries("CreateNavigateProxyService").empty()) << "the proxy is made once";
  EXPECT_EQ(HostJournal::Entries("SchemeRouterManager.InitRouterManager").size(), 1u);
}

TEST_F(ChatRegistrationTest, UnregistrationDropsTheRuntime) {
  reg::RegisterRuntimeAndExtensions();
  auto* modules = framework::module::GetModuleService();
  EXPECT_EQ(modules->GetRuntime("chat"), reg::Runtime()) << "the factory yields the singleton";
  reg::UnregisterModule();
  EXPECT_FALSE(modules->IsModuleRegistered("chat"));
  EXPECT_FALSE(reg::HasRuntime());
  EXPECT_NE(reg::Runtime(), nullptr) << "a new runtime is made on the next use";
}

TEST_F(ChatRegistrationTest, PagesOpenThroughTheNavigator) {
  reg::LoadUI(reg::Runtime());
  auto navigator = framework::Navigator::Of(nullptr, framework::PageStack::kMain);
  auto controller_of = [](char const* scheme) {
    return std::dynamic_pointer_cast<chat::PageController>(
        framework::ControllerManager::Instance()->GetController(scheme));
  };
  ASSERT_TRUE(navigator.Push("talvex://page/inmeeting/chat"));
  auto controller = controller_of("talvex://page/inmeeting/chat");
  ASSERT_NE(controller, nullptr);
  ASSERT_NE(controller->view(), nullptr);
  QWidget* first = controller->view()->frame();
  ASSERT_NE(first, nullptr);
  EXPECT_TRUE(first->isVisible());
  EXPECT_EQ(first->windowTitle().toStdString(), "Chat") << "titled from the client's string table";
  ASSERT_TRUE(navigator.Push("talvex://page/inmeeting/chat"));
  EXPECT_EQ(controller->view()->frame(), first) << "a second show raises the same window";
  ASSERT_TRUE(navigator.PopOther("talvex://page/inmeeting/chat"));
  EXPECT_EQ(controller->view(), nullptr);

  // The record page starts fresh on every show.
  ASSERT_TRUE(navigator.Push("talvex://page/chat_record_qt"));
  auto record = controller_of("talvex://page/chat_record_qt");
  ASSERT_NE(record, nullptr);
  auto first_view = record->view();
  ASSERT_TRUE(navigator.Push("talvex://page/chat_record_qt"));
  EXPECT_NE(record->view(), first_view);
  EXPECT_TRUE(first_view->disposed());
}

}  // namespace
