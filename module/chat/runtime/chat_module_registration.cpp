#include "chat/runtime/chat_module_registration.h"

#include <memory>

#include "base/log/log.h"
#include "chat/runtime/chat_contributions.h"
#include "chat/runtime/chat_ids.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/chat_resources.h"
#include "chat/ui/desktop/controller/page_controller.h"
#include "chat/ui/desktop/view/bullet/in_meeting_bullet_qt_view.h"
#include "chat/web/meeting_chat_web_plugin.h"
#include "chat/web/web_view_meeting_chat_plugin.h"
#include "framework/extension/extension.h"
#include "framework/module/module_service.h"
#include "framework/navigation/routing.h"
#include "framework/web/web_plugin.h"
#include "uikit/tx_qt_ui_util.h"

namespace chat {

const std::array<char const*, 4> kChatPageSchemes = {
    "talvex://page/inmeeting/chat",
    "talvex://page/inmeeting/emoji_bullet",
    "talvex://page/chat_record_qt",
    "talvex://page/meeting_notice",
};

namespace registration {
namespace {

constexpr char kVersionDigest[] = "844c8e37d042ab0bb506e4abb570f888";

ChatModuleRuntime*& RuntimeSlot() {
  static ChatModuleRuntime* runtime = nullptr;
  return runtime;
}

// The UI side's managers.
struct UiState {
  framework::module::ModuleRuntime* runtime = nullptr;
  std::shared_ptr<framework::DesktopSchemeRouterManager> router;
  std::shared_ptr<framework::NavigatorManager> navigator;
  std::shared_ptr<framework::DesktopUIModuleLoader> loader;
  framework::NavigateProxyService* proxy = nullptr;
};

// The non-UI side's managers; its proxy service is made once and kept as
// long as the library is loaded.
struct NonUiState {
  ~NonUiState() {
    if (proxy) framework::DeleteNavigateProxyService(proxy);
  }
  framework::module::ModuleRuntime* runtime = nullptr;
  std::shared_ptr<framework::SchemeRouterManager> router;
  std::shared_ptr<framework::NavigatorManager> navigator;
  std::shared_ptr<framework::ExtensionManager> extensions;
  framework::NavigateProxyService* proxy = nullptr;
};

UiState& Ui() {
  static UiState state;
  return state;
}

NonUiState& NonUi() {
  static NonUiState state;
  return state;
}

framework::RouterService* RouterOf(framework::module::ModuleRuntime* runtime) {
  auto* services = runtime ? runtime->GetServiceProvider() : nullptr;
  return services ? services->GetRouterService() : framework::RouterService::Instance();
}

framework::NavigateService* NavigateOf(framework::module::ModuleRuntime* runtime) {
  auto* services = runtime ? runtime->GetServiceProvider() : nullptr;
  return services ? services->GetNavigateService() : framework::NavigateService::Instance();
}

constexpr char kScreenShareBulletView[] = "ScreenShareBulletView";

void RegisterExtensionViews(framework::DesktopUIModuleLoader& loader) {
  for (ChatContribution const* row : ExtensionViews()) {
    const std::string extension_id(row->extension_id);
    if (row->point.empty()) {
      loader.RegisterGetExtensionViewFunc(extension_id, row->make_view);
    } else {
      loader.RegisterGetExtensionViewFunc(std::string(row->point), extension_id, row->make_view);
    }
  }
  // The floating chat beside the screen-share toolbar is the same view, under
  // the client's own key.
  loader.RegisterGetExtensionViewFunc(kScreenShareBulletView,
                                      [] { return std::make_shared<QtView::InMeetingBulletQTView>(); });
}

// The non-UI side builds an extension's view from the same table the UI
// loader registered.
std::shared_ptr<AppBaseView> BuildExtensionView(std::string const& extension_id) {
  const std::string point = framework::extension::GetExtensionService()->FindContributesId(extension_id);
  auto factory = framework::ExtensionViewService::Instance()->Find(point, extension_id);
  return factory ? factory() : nullptr;
}

// Each web engine makes its own kind of the chat plugin, one per page.
std::shared_ptr<talvex::WebviewPlugin> MakeWebviewPlugin() { return std::make_shared<WebViewMeetingChatPlugin>(); }
std::shared_ptr<talvex::BaseWebPlugin> MakeBridgePlugin() { return std::make_shared<MeetingChatWebPlugin>(); }

}  // namespace

ChatModuleRuntime* Runtime() {
  ChatModuleRuntime*& runtime = RuntimeSlot();
  if (!runtime) runtime = new ChatModuleRuntime();
  return runtime;
}

bool HasRuntime() { return RuntimeSlot() != nullptr; }

void FillManifest() {
  auto& manifest = ChatModuleManifest();
  *manifest = talvex::GetModuleConfigByName(kModuleName);
  manifest->version_digest = kVersionDigest;
}

void RegisterRuntimeAndExtensions() {
  framework::module::GetModuleService()->RegisterModule(kModuleName, [] { return Runtime(); });
  auto* extensions = framework::extension::GetExtensionService();
  for (ChatContribution const* row : RegisteredExtensions()) {
    extensions->Register(std::string(row->point), framework::ExtensionInfo(std::string(row->extension_id), kModuleName));
  }
  talvex::WebviewPluginEntry plugin;
  plugin.scheme_name = WebViewMeetingChatPlugin::kSchemeName;
  plugin.class_list = {WebViewMeetingChatPlugin::kClassName};
  plugin.factory = MakeWebviewPlugin;
  talvex::GetWebviewPluginEngine()->RegisterPlugin(plugin);

  talvex::tagWebPluginConfig config;
  config.name = MeetingChatWebPlugin::kSchemeName;
  config.factory = MakeBridgePlugin;
  config.class_list = {MeetingChatWebPlugin::kClassName};
  talvex::RegisterWebPluginEx(config);
}

void RegisterUILoader() {
  InitChatResources();
  auto const& manifest = ChatModuleManifest();
  TXQtUiUtil::LoadQtModuleResource(manifest->resource_file, manifest->module_path);
  framework::UiModuleLoaderRegister::GetInstance()->Register(kModuleName, LoadUI, UnloadUI);
}

void RegisterModuleLoader() {
  framework::module::GetModuleService()->RegisterModuleLoader(kModuleName, LoadNonUI, UnloadNonUI);
}

void LoadUI(framework::module::ModuleRuntime* runtime) {
  UiState& ui = Ui();
  ui.runtime = runtime;
  if (!ui.router) {
    ui.router = std::make_shared<framework::DesktopSchemeRouterManager>(RouterOf(runtime));
    ui.router->InitRouterManager();
  }
  if (!ui.navigator) {
    ui.proxy = framework::CreateNavigateProxyService(NavigateOf(runtime));
    ui.navigator = std::make_shared<framework::NavigatorManager>(ui.proxy);
    ui.navigator->InitNavigatorManager();
  }
  // An unloaded loader from an earlier load is replaced.
  if (ui.loader && !ui.loader->loaded()) ui.loader.reset();
  if (!ui.loader) {
    ui.loader = std::make_shared<framework::DesktopUIModuleLoader>();
    ui.loader->Load(runtime);
    RegisterExtensionViews(*ui.loader);
  }
  auto* controllers = framework::ControllerManager::Instance();
  controllers->IocRegister(kChatPageSchemes[0], [] { return std::make_shared<ChatController>(); });
  controllers->IocRegister(kChatPageSchemes[1], [] { return std::make_shared<QtView::EmojiBulletController>(); });
  controllers->IocRegister(kChatPageSchemes[2], [] { return std::make_shared<ChatRecordQTController>(); });
  controllers->IocRegister(kChatPageSchemes[3], [runtime] { return std::make_shared<MeetingNoticeContoller>(runtime); });
  if (ui.proxy) {
    ui.proxy->RegisterRoute(0, "talvex://page/chat_record_qt");
    ui.proxy->RegisterRoute(0, "talvex://page/meeting_notice");
  }
}

void UnloadUI() {
  UiState& ui = Ui();
  if (ui.router) {
    ui.router->UninitRouterManager();
    ui.router.reset();
  }
  if (ui.navigator) {
    ui.navigator->UninitNavigatorManager();
    ui.navigator.reset();
  }
  if (ui.proxy) {
    framework::DeleteNavigateProxyService(ui.proxy);
    ui.proxy = nullptr;
  }
  // The loader stays allocated until the next load or process end.
  if (ui.loader) ui.loader->Unload();
  auto* controllers = framework::ControllerManager::Instance();
  for (char const* scheme : kChatPageSchemes) controllers->IocUnregister(scheme);
}

void LoadNonUI(framework::module::ModuleRuntime* runtime) {
  NonUiState& state = NonUi();
  state.runtime = runtime;
  state.router = std::make_shared<framework::SchemeRouterManager>(RouterOf(runtime));
  state.router->InitRouterManager();
  if (!state.proxy) state.proxy = framework::CreateNavigateProxyService(NavigateOf(runtime));
  state.navigator = std::make_shared<framework::NavigatorManager>(state.proxy);
  state.navigator->InitNavigatorManager();
  state.extensions = std::make_shared<framework::ExtensionManager>(runtime);
  state.extensions->InitExtensionManager(BuildExtensionView);
  framework::UiModuleLoaderRegister::GetInstance()->InitRuntimeLoader(kModuleName, runtime);
}

void UnloadNonUI() {
  NonUiState& state = NonUi();
  if (state.router) {
    state.router->UninitRouterManager();
    state.router.reset();
  }
  if (state.extensions) {
    state.extensions->UninitExtensionManager();
    state.extensions.reset();
  }
  if (state.navigator) {
    state.navigator->UninitNavigatorManager();
    state.navigator.reset();
  }
  framework::UiModuleLoaderRegister::GetInstance()->UnInitRuntimeLoader(kModuleName);
}

void UnregisterModule() {
  framework::module::GetModuleService()->UnregisterModule(kModuleName);
  ChatModuleRuntime*& runtime = RuntimeSlot();
  delete runtime;
  runtime = nullptr;
}

}  // namespace registration
}  // namespace chat
