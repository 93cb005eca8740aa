#include <gtest/gtest.h>

#include <algorithm>

#include "chat/runtime/chat_module_registration.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/controller/page_controller.h"
#include "framework/extension/extension.h"
#include "framework/journal/host_journal.h"
#include "framework/module/module_service.h"
#include "framework/navigation/routing.h"
#include "sim/meeting_sim.h"
#include "unload_order.h"

namespace {

namespace reg = chat::registration;
using framework::HostJournal;

std::vector<std::string> Without(std::vector<std::string> entries, std::string const& prefix) {
  entries.erase(std::remove_if(entries.begin(), entries.end(),
                               [&](std::string const& e) { return e.rfind(prefix, 0) == 0; }),
                entries.end());
  return entries;
}

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

TEST_F(ChatRegistrationTest, UiLoadAndUnloadRunInTheirOrder) {
  reg::LoadUI(reg::Runtime());
  EXPECT_EQ(Without(HostJournal::Entries(), "DesktopUIModuleLoader.RegisterGetExtensionViewFunc"),
            (std::vector<std::string>{
                "DesktopSchemeRouterManager.InitRouterManager",
                "CreateNavigateProxyService",
                "NavigatorManager.InitNavigatorManager",
                "DesktopUIModuleLoader.Load chat",
                "ControllerManager.IocRegister talvex://page/inmeeting/chat",
                "ControllerManager.IocRegister talvex://page/inmeeting/emoji_bullet",
                "ControllerManager.IocRegister talvex://page/chat_record_qt",
                "ControllerManager.IocRegister talvex://page/meeting_notice",
                "NavigateProxyService.RegisterRoute 0 talvex://page/chat_record_qt",
                "NavigateProxyService.RegisterRoute 0 talvex://page/meeting_notice",
            }));
  EXPECT_EQ(HostJournal::Entries("DesktopUIModuleLoader.RegisterGetExtensionViewFunc").size(), 17u);
  auto* views = framework::ExtensionViewService::Instance();
  ASSERT_TRUE(views->Find("contributes:app.chat_record", "extension:chat.record_panel_history_list"));
  auto view = views->Find("contributes:app.chat_message", "extension:chat.text_message")();
  ASSERT_NE(view, nullptr);
  EXPECT_NE(views->Find("anything", "extension:chat.sidebar_tab_in_meeting"), nullptr);
  EXPECT_EQ(views->Find("contributes:app.toolbar", "extension:chat.text_message"), nullptr);

  HostJournal::Clear();
  reg::UnloadUI();
  EXPECT_EQ(HostJournal::Entries(), unload_order::UiUnload());
  EXPECT_TRUE(views->entries().empty());
  EXPECT_FALSE(framework::ControllerManager::Instance()->HasUri("talvex://page/inmeeting/chat"));

  // A second unload finds nothing to release.
  HostJournal::Clear();
  reg::UnloadUI();
  EXPECT_EQ(HostJournal::Entries("DesktopSchemeRouterManager").size(), 0u);
  EXPECT_EQ(HostJournal::Entries("DeleteNavigateProxyService").size(), 0u);
}

TEST_F(ChatRegistrationTest, SecondUiLoadReusesItsManagers) {
  reg::LoadUI(reg::Runtime());
  HostJournal::Clear();
  reg::LoadUI(reg::Runtime());
  EXPECT_TRUE(HostJournal::Entries("DesktopSchemeRouterManager").empty());
  EXPECT_TRUE(HostJournal::Entries("CreateNavigateProxyService").empty());
  EXPECT_TRUE(HostJournal::Entries("DesktopUIModuleLoader").empty());
  EXPECT_EQ(HostJournal::Entries("ControllerManager.IocRegister").size(), 4u);
  EXPECT_EQ(framework::ExtensionViewService::Instance()->entries().size(), 17u);
}

TEST_F(ChatRegistrationTest, NonUiLoadKeepsItsProxyForEver) {
  chat::ChatModuleRuntime* runtime = reg::Runtime();
  reg::LoadNonUI(runtime);
  EXPECT_EQ(HostJournal::Entries(), (std::vector<std::string>{
                                        "SchemeRouterManager.InitRouterManager",
                                        "CreateNavigateProxyService",
                                        "NavigatorManager.InitNavigatorManager",
                                        "ExtensionManager.InitExtensionManager",
                                        "UiModuleLoaderRegister.InitRuntimeLoader chat",
                                    }));
  EXPECT_EQ(framework::UiModuleLoaderRegister::GetInstance()->RuntimeOf("chat"), runtime);

  HostJournal::Clear();
  reg::UnloadNonUI();
  EXPECT_EQ(HostJournal::Entries(), unload_order::NonUiUnload());
  EXPECT_EQ(framework::UiModuleLoaderRegister::GetInstance()->RuntimeOf("chat"), nullptr);

  HostJournal::Clear();
  reg::LoadNonUI(runtime);
  EXPECT_TRUE(HostJournal::Entries("CreateNavigateProxyService").empty()) << "the proxy is made once";
  EXPECT_EQ(HostJournal::Entries("SchemeRouterManager.InitRouterManager").size(), 1u);
}

TEST_F(ChatRegistrationTest, RegistrationAndUnregistration) {
  reg::FillManifest();
  EXPECT_EQ(chat::ChatModuleManifest()->version_digest, "844c8e37d042ab0bb506e4abb570f888");
  EXPECT_EQ(chat::ChatModuleManifest()->name, "chat");

  reg::RegisterRuntimeAndExtensions();
  auto* modules = framework::module::GetModuleService();
  ASSERT_TRUE(modules->IsModuleRegistered("chat"));
  chat::ChatModuleRuntime* runtime = reg::Runtime();
  EXPECT_EQ(modules->GetRuntime("chat"), runtime) << "the factory yields the singleton";
  EXPECT_EQ(framework::extension::GetExtensionService()->Registrations().size(), 17u);

  reg::RegisterModuleLoader();
  EXPECT_EQ(modules->LoaderCount("chat"), 1u);

  reg::UnregisterModule();
  EXPECT_FALSE(modules->IsModuleRegistered("chat"));
  EXPECT_FALSE(reg::HasRuntime());
  EXPECT_NE(reg::Runtime(), nullptr) << "a new runtime is made on the next use";
}

TEST_F(ChatRegistrationTest, PagesOpenThroughTheNavigator) {
  reg::LoadUI(reg::Runtime());
  auto navigator = framework::Navigator::Of(nullptr, framework::PageStack::kMain);
  ASSERT_TRUE(navigator.Push("talvex://page/inmeeting/chat"));
  auto controller = std::dynamic_pointer_cast<chat::PageController>(
      framework::ControllerManager::Instance()->GetController("talvex://page/inmeeting/chat"));
  ASSERT_NE(controller, nullptr);
  ASSERT_NE(controller->view(), nullptr);
  QWidget* first = controller->view()->frame();
  ASSERT_NE(first, nullptr);
  EXPECT_TRUE(first->isVisible());
  EXPECT_EQ(first->windowTitle().toStdString(), "Chat") << "titled from the client's string table";
  // A second show raises the same window.
  ASSERT_TRUE(navigator.Push("talvex://page/inmeeting/chat"));
  EXPECT_EQ(controller->view()->frame(), first);
  ASSERT_TRUE(navigator.PopOther("talvex://page/inmeeting/chat"));
  EXPECT_EQ(controller->view(), nullptr);

  // The record page starts fresh on every show.
  ASSERT_TRUE(navigator.Push("talvex://page/chat_record_qt"));
  auto record = std::dynamic_pointer_cast<chat::PageController>(
      framework::ControllerManager::Instance()->GetController("talvex://page/chat_record_qt"));
  ASSERT_NE(record, nullptr);
  auto first_view = record->view();
  ASSERT_TRUE(navigator.Push("talvex://page/chat_record_qt"));
  EXPECT_NE(record->view(), first_view);
  EXPECT_TRUE(first_view->disposed());
}

}  // namespace
