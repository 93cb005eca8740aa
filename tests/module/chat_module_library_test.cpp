// The built libchat_module.so, loaded as a client loads it.
#include <dlfcn.h>

#include <QProcess>
#include <QStringList>
#include <gtest/gtest.h>

#include "framework/extension/extension.h"
#include "framework/journal/host_journal.h"
#include "framework/module/module_runtime.h"
#include "framework/module/module_service.h"
#include "framework/navigation/routing.h"
#include "framework/web/web_plugin.h"
#include "sim/meeting_sim.h"
#include "unload_order.h"

namespace {

using framework::HostJournal;

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

// One walk through a client's whole use of the module: the library's
// registrations, the load functions, the unload functions in their order, a
// second load, and the unregistration when the library goes.
TEST(ChatModuleLibraryTest, ActivateLoadUnloadAndUnregister) {
  sim::MeetingSimulator meeting;
  meeting.Install();
  HostJournal::Clear();
  auto* modules = framework::module::GetModuleService();
  auto* extensions = framework::extension::GetExtensionService();
  extensions->Clear();

  void* handle = dlopen(LibraryPath().c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(handle, nullptr) << dlerror();
  auto activate = reinterpret_cast<void (*)()>(dlsym(handle, "Activate"));
  auto deactivate = reinterpret_cast<void (*)()>(dlsym(handle, "Deactivate"));
  ASSERT_NE(activate, nullptr);
  ASSERT_NE(deactivate, nullptr);
  EXPECT_EQ(dlsym(handle, "_ZN4chat17ChatModuleRuntime8ActivateEv"), nullptr) << "internals stay hidden";

  activate();
  EXPECT_TRUE(modules->IsModuleRegistered("chat"));
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"contributes:app.toolbar", "extension:chat"},
      {"contributes:app.breakout_room_toolbar", "extension:chat.chat_broadcast"},
      {"contributes:app.inmeeting_float", "extension:chat.bullet"},
      {"contributes:app.chat_sendp+", "extension:chat.send_image"},
      {"contributes:app.chat_sendp+", "extension:chat.send_file"},
      {"contributes:app.chat_sendp+", "extension:chat.send_emoji"},
      {"contributes:app.chat_sendp+", "extension:chat.send_notice"},
      {"contributes:app.chat_message", "extension:chat.notice_message"},
      {"contributes:app.chat_message", "extension:chat.openapp_message"},
      {"contributes:app.chat_message", "extension:chat.file_message"},
      {"contributes:app.chat_message", "extension:chat.face_message"},
      {"contributes:app.chat_message", "extension:chat.text_message"},
      {"contributes:app.chat_message", "extension:chat.image_message"},
      {"contributes:app.chat_full", "extension:chat.panel_history_list"},
      {"contributes:app.chat_full", "extension:chat.pane_input"},
      {"contributes:app.chat_message", "extension:chat.tip_message"},
      {"contributes:app.chat_record", "extension:chat.record_panel_history_list"},
  };
  ASSERT_EQ(extensions->Registrations().size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(extensions->Registrations()[i].contributes_id, expected[i].first) << i;
    EXPECT_EQ(extensions->Registrations()[i].info.extension_id, expected[i].second) << i;
    EXPECT_EQ(extensions->Registrations()[i].info.module_name, "chat") << i;
  }
  auto const* plugin = talvex::GetWebviewPluginEngine()->Find("com.talvex.jsbridge.meetingchat");
  ASSERT_NE(plugin, nullptr);
  EXPECT_EQ(plugin->class_list, std::vector<std::string>{"WebViewMeetingChatPlugin"});
  ASSERT_TRUE(plugin->factory);
  EXPECT_NE(plugin->factory(), nullptr);
  ASSERT_EQ(talvex::RegisteredWebPluginsEx().size(), 1u);
  EXPECT_EQ(talvex::RegisteredWebPluginsEx()[0].name, "com.talvex.jsbridge.meetingchat");
  EXPECT_EQ(talvex::RegisteredWebPluginsEx()[0].class_list, std::vector<std::string>{"WebViewMeetingChatPlugin"});
  EXPECT_TRUE(framework::UiModuleLoaderRegister::GetInstance()->HasLoader("chat"));
  EXPECT_EQ(modules->LoaderCount("chat"), 1u);
  EXPECT_FALSE(framework::ControllerManager::Instance()->HasUri("talvex://page/inmeeting/chat"))
      << "Activate only registers";

  // The client loads: runtime, UI load, non-UI load.
  ASSERT_TRUE(modules->ActivateModule("chat"));
  framework::module::ModuleRuntime* runtime = modules->GetRuntime("chat");
  ASSERT_NE(runtime, nullptr);
  EXPECT_TRUE(runtime->IsActivated());
  EXPECT_EQ(meeting.sidebar().apps().size(), 1u);
  ASSERT_TRUE(framework::UiModuleLoaderRegister::GetInstance()->Load("chat", runtime));
  ASSERT_TRUE(modules->LoadModule("chat"));
  for (char const* scheme : {"talvex://page/inmeeting/chat", "talvex://page/inmeeting/emoji_bullet",
                             "talvex://page/chat_record_qt", "talvex://page/meeting_notice"}) {
    EXPECT_TRUE(framework::ControllerManager::Instance()->HasUri(scheme)) << scheme;
  }
  EXPECT_EQ(framework::ExtensionViewService::Instance()->entries().size(), 17u);
  EXPECT_EQ(framework::UiModuleLoaderRegister::GetInstance()->RuntimeOf("chat"), runtime);

  // The client unloads: UI, then non-UI, then the runtime.
  HostJournal::Clear();
  framework::UiModuleLoaderRegister::GetInstance()->Unload("chat");
  modules->UnloadModule("chat");
  modules->DeactivateModule("chat");
  deactivate();
  std::vector<std::string> expected_unload = unload_order::UiUnload();
  expected_unload.insert(expected_unload.end(), unload_order::NonUiUnload().begin(), unload_order::NonUiUnload().end());
  EXPECT_EQ(HostJournal::Entries(), expected_unload);
  EXPECT_FALSE(runtime->IsActivated());
  EXPECT_TRUE(meeting.sidebar().apps().empty());
  EXPECT_TRUE(modules->IsModuleRegistered("chat")) << "Deactivate does nothing";

  // A second load builds the UI side again; the non-UI side reuses its proxy.
  HostJournal::Clear();
  ASSERT_TRUE(modules->ActivateModule("chat"));
  ASSERT_TRUE(framework::UiModuleLoaderRegister::GetInstance()->Load("chat", runtime));
  ASSERT_TRUE(modules->LoadModule("chat"));
  EXPECT_EQ(HostJournal::Entries("CreateNavigateProxyService").size(), 1u) << "one for the UI side only";
  EXPECT_EQ(HostJournal::Entries("DesktopUIModuleLoader.RegisterGetExtensionViewFunc").size(), 17u);
  framework::UiModuleLoaderRegister::GetInstance()->Unload("chat");
  modules->UnloadModule("chat");
  modules->DeactivateModule("chat");

  // Before a client unloads a library it drops the functions it holds from it;
  // the library's going unregisters the module.
  framework::UiModuleLoaderRegister::GetInstance()->Remove("chat");
  talvex::GetWebviewPluginEngine()->Clear();
  talvex::ClearWebPluginsEx();
  extensions->Clear();
  ASSERT_EQ(dlclose(handle), 0);
  EXPECT_FALSE(modules->IsModuleRegistered("chat"));
  meeting.Uninstall();
}

}  // namespace
