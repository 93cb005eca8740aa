// The built libchat_module.so, loaded as a client loads it.
#include <dlfcn.h>

#include <QProcess>
#include <QStringList>
#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "framework/extension/extension.h"
#include "framework/module/module_runtime.h"
#include "framework/module/module_service.h"
#include "framework/navigation/routing.h"
#include "framework/web/web_host.h"
#include "sim/meeting_sim.h"

namespace {

std::string LibraryPath() {
  const QByteArray dir = qgetenv("TALVEX_TEST_BIN_DIR");
  return (dir.isEmpty() ? std::string(".") : dir.toStdString()) + "/libchat_module.so";
}

TEST(ChatModuleLibraryTest, ExportsOnlyTheTwoEntryPoints) {
  QProcess nm;
  nm.start("nm", {"-D", "--defined-only", QString::fromStdString(LibraryPath())});
  ASSERT_TRUE(nm.waitForFinished(30000));
  ASSERT_EQ(nm.exitCode(), 0) << nm.readAllStandardError().toStdString();
  QStringList symbols;
  for (QString const& line : QString::fromUtf8(nm.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts)) {
    symbols << line.section(' ', -1);
  }
  symbols.sort();
  EXPECT_EQ(symbols, (QStringList{"Activate", "Deactivate"}));
}

// A client's whole use of the library: Activate, load, unload, a second load,
// and the unregistration when the library goes.
TEST(ChatModuleLibraryTest, ActivateLoadUnloadAndUnregister) {
  sim::MeetingSimulator meeting;
  meeting.Install();
  auto* modules = framework::module::GetModuleService();
  auto* extensions = framework::extension::GetExtensionService();
  auto* loaders = framework::UiModuleLoaderRegister::GetInstance();
  auto* controllers = framework::ControllerManager::Instance();
  const std::vector<std::string> pages = {"talvex://page/inmeeting/chat", "talvex://page/inmeeting/emoji_bullet",
                                          "talvex://page/chat_record_qt", "talvex://page/meeting_notice"};
  extensions->Clear();

  void* handle = dlopen(LibraryPath().c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(handle, nullptr) << dlerror();
  auto activate = reinterpret_cast<void (*)()>(dlsym(handle, "Activate"));
  auto deactivate = reinterpret_cast<void (*)()>(dlsym(handle, "Deactivate"));
  ASSERT_NE(activate, nullptr);
  ASSERT_NE(deactivate, nullptr);

  activate();
  EXPECT_TRUE(modules->IsModuleRegistered("chat"));
  EXPECT_TRUE(loaders->HasLoader("chat"));
  EXPECT_EQ(modules->LoaderCount("chat"), 1u);
  EXPECT_EQ(extensions->FindContributesId("extension:chat"), "contributes:app.toolbar");
  auto const* plugin = talvex::GetWebviewPluginEngine()->Find("com.talvex.jsbridge.meetingchat");
  ASSERT_TRUE(plugin && plugin->factory);
  EXPECT_NE(plugin->factory(), nullptr);
  ASSERT_EQ(talvex::RegisteredWebPluginsEx().size(), 1u);
  EXPECT_EQ(talvex::RegisteredWebPluginsEx()[0].name, "com.talvex.jsbridge.meetingchat");
  // A page of either engine reaches the library's plugin: a request that
  // names no meeting is refused at once.
  for (auto engine : {talvex::WebHost::Engine::kWebview, talvex::WebHost::Engine::kBrowserBridge}) {
    talvex::WebHost page(engine);
    ASSERT_TRUE(page.Attach("com.talvex.jsbridge.meetingchat"));
    page.Call("GetPublicChatMsgList", Variant::Map{});
    ASSERT_EQ(page.callbacks().size(), 1u);
    EXPECT_FALSE(page.callbacks()[0].success);
  }
  EXPECT_FALSE(controllers->HasUri(pages[0])) << "Activate only registers";

  ASSERT_TRUE(modules->ActivateModule("chat"));
  framework::module::ModuleRuntime* runtime = modules->GetRuntime("chat");
  ASSERT_NE(runtime, nullptr);
  EXPECT_EQ(meeting.sidebar().apps().size(), 1u);
  // Every registered extension is one the module's runtime can build.
  std::set<std::string> ids;
  for (auto const& r : extensions->Registrations()) {
    EXPECT_EQ(r.info.module_name, "chat") << r.info.extension_id;
    EXPECT_TRUE(ids.insert(r.info.extension_id).second) << "registered twice: " << r.info.extension_id;
    auto built = extensions->CreateExtension(r.info.extension_id);
    ASSERT_NE(built, nullptr) << r.info.extension_id;
    EXPECT_EQ(built->GetContributesId(), r.contributes_id);
  }
  EXPECT_EQ(ids.size(), 17u);
  std::vector<std::string> order;
  for (auto const& r : extensions->Registrations()) order.push_back(r.info.extension_id);
  EXPECT_EQ(order, (std::vector<std::string>{
                       "extension:chat", "extension:chat.chat_broadcast", "extension:chat.bullet",
                       "extension:chat.send_image", "extension:chat.send_file", "extension:chat.send_emoji",
                       "extension:chat.send_notice", "extension:chat.notice_message",
                       "extension:chat.openapp_message", "extension:chat.file_message",
                       "extension:chat.face_message", "extension:chat.text_message",
                       "extension:chat.image_message", "extension:chat.panel_history_list",
                       "extension:chat.pane_input", "extension:chat.tip_message",
                       "extension:chat.record_panel_history_list"}));

  ASSERT_TRUE(loaders->Load("chat", runtime));
  ASSERT_TRUE(modules->LoadModule("chat"));
  for (auto const& page : pages) EXPECT_TRUE(controllers->HasUri(page)) << page;
  // Seventeen extension views and the floating chat's screen-share window.
  EXPECT_EQ(framework::ExtensionViewService::Instance()->entries().size(), 18u);
  EXPECT_EQ(loaders->RuntimeOf("chat"), runtime);

  loaders->Unload("chat");
  modules->UnloadModule("chat");
  modules->DeactivateModule("chat");
  deactivate();
  for (auto const& page : pages) EXPECT_FALSE(controllers->HasUri(page)) << page;
  EXPECT_TRUE(framework::ExtensionViewService::Instance()->entries().empty());
  EXPECT_EQ(loaders->RuntimeOf("chat"), nullptr);
  EXPECT_FALSE(runtime->IsActivated());
  EXPECT_TRUE(meeting.sidebar().apps().empty());
  EXPECT_TRUE(modules->IsModuleRegistered("chat")) << "Deactivate does nothing";

  // A second load through the host works as the first.
  ASSERT_TRUE(modules->ActivateModule("chat"));
  ASSERT_TRUE(loaders->Load("chat", runtime));
  ASSERT_TRUE(modules->LoadModule("chat"));
  for (auto const& page : pages) EXPECT_TRUE(controllers->HasUri(page)) << page;
  loaders->Unload("chat");
  modules->UnloadModule("chat");
  modules->DeactivateModule("chat");

  // Before a client unloads a library it drops the functions it holds from it;
  // the library's going unregisters the module.
  loaders->Remove("chat");
  talvex::GetWebviewPluginEngine()->Clear();
  talvex::ClearWebPluginsEx();
  extensions->Clear();
  ASSERT_EQ(dlclose(handle), 0);
  EXPECT_FALSE(modules->IsModuleRegistered("chat"));
  meeting.Uninstall();
}

}  // namespace
