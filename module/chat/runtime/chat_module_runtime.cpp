#include "chat/runtime/chat_module_runtime.h"

#include "base/log/log.h"
#include "chat/runtime/chat_extension_provider.h"
#include "chat/runtime/chat_ids.h"
#include "chat/runtime/chat_model_provider.h"
#include "chat/runtime/chat_service_provider.h"
#include "chat/runtime/chat_view_model_provider_impl.h"
#include "framework/extension/extension.h"
#include "framework/module/module_service.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"

namespace chat {

namespace {
constexpr uint32_t kSidebarEventRegisterExtension = 3;
constexpr uint32_t kSidebarMethodRegisterApp = 19;
constexpr uint32_t kSidebarMethodRemoveApp = 20;
constexpr uint32_t kCellHeightEvent = 0;
constexpr uint32_t kInvokeGetChatCellViewHeight = 669604053;
constexpr char kChatSidebarAppId[] = "native-367501737851965781";
constexpr char kChatSidebarExtensionId[] = "extension:chat.sidebar_tab_in_meeting";

framework::ModelPtr HostModel(int id) { return framework::module::GetAppModuleModel(id); }
}  // namespace

std::shared_ptr<framework::module::ModuleManifest>& ChatModuleManifest() {
  static std::shared_ptr<framework::module::ModuleManifest> manifest =
      std::make_shared<framework::module::ModuleManifest>();
  return manifest;
}

ChatModuleRuntime::ChatModuleRuntime()
    : ModuleRuntimeBaseImpl(ChatModuleManifest(), framework::Resource::GetInstance()) {}

ChatModuleRuntime::~ChatModuleRuntime() {
  if (IsActivated()) ChatModuleRuntime::Unactivate();
}

std::string ChatModuleRuntime::name() const { return kModuleName; }

std::unique_ptr<framework::ModelProviderBaseImpl> ChatModuleRuntime::CreateModelProvider() {
  return std::make_unique<ChatModelProvider>(this);
}

std::unique_ptr<framework::ServiceProviderBaseImpl> ChatModuleRuntime::CreateServiceProvider() {
  return std::make_unique<ChatServiceProvider>();
}

std::unique_ptr<framework::ViewModelProviderBaseImpl> ChatModuleRuntime::CreateViewModelProvider() {
  return std::make_unique<ChatViewModelProviderImpl>(this);
}

std::unique_ptr<framework::ExtensionProviderBaseImpl> ChatModuleRuntime::CreateExtensionProvider() {
  return std::make_unique<ChatExtensionProvider>();
}

bool ChatModuleRuntime::Activate() {
  ModuleRuntimeBaseImpl::Activate();
  if (!framework::module::GetModuleService()->GetApplicationModule()) return true;

  if (auto sidebar = HostModel(kHostSidebarAppModel)) {
    framework::ViewModel::RecordSubscribe(sidebar, this);
    sidebar->Subscribe(kSidebarEventRegisterExtension, framework::SubscriberId(this),
                       std::make_shared<framework::EventHandler>(
                           [this](Variant const* params) { OnEventRegisterSidebarAppExtension(params); }));
  }
  auto cell_height = std::dynamic_pointer_cast<framework::PriorityModel>(HostModel(kHostCellHeightModel));
  if (cell_height) {
    framework::ViewModel::RecordPrioritySubscribe(cell_height, this);
    cell_height->SubscribePriority(kCellHeightEvent, 0, framework::SubscriberId(this),
                                   std::make_shared<framework::PriorityEventHandler>(
                                       [this](Variant const* params, bool& handled) {
                                         OnPriorityEventGetCellViewHeight(params, handled);
                                       }));
  }
  ModelOf(kMeetingNoticeBizModelId);
  RegisterSidebarApp();
  return true;
}

void ChatModuleRuntime::RegisterSidebarApp() {
  auto sidebar = HostModel(kHostSidebarAppModel);
  if (!sidebar) return;
  Variant app(base::variant::kVariantTypeMap);
  app.Set("open_app_id", kChatSidebarAppId);
  app.Set("extension_id", kChatSidebarExtensionId);
  app.Set("contribute_id", "contributes:sidebar.app_chat_window");
  app.Set("min_width", 500u);
  app.Set("min_height", 400u);
  app.Set("support_position", 3);
  app.Set("position", 2);
  app.Set("default_width", 600u);
  app.Set("default_height", 480u);
  app.Set("is_topmost", true);
  app.Set("is_resident", true);
  sidebar->Invoke(kSidebarMethodRegisterApp, &app, nullptr);
}

void ChatModuleRuntime::Unactivate() {
  const uint64_t self = framework::SubscriberId(this);
  if (auto sidebar = HostModel(kHostSidebarAppModel)) sidebar->Unsubscribe(self);
  if (auto cell_height = std::dynamic_pointer_cast<framework::PriorityModel>(HostModel(kHostCellHeightModel))) {
    cell_height->UnsubscribePriority(self);
  }
  if (auto sidebar = HostModel(kHostSidebarAppModel)) {
    Variant app_id(kChatSidebarAppId);
    sidebar->Invoke(kSidebarMethodRemoveApp, &app_id, nullptr);
  }
  ModuleRuntimeBaseImpl::Unactivate();
}

void ChatModuleRuntime::OnEventRegisterSidebarAppExtension(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "load extension event param error!";
    return;
  }
  const std::string extension_id = params->GetString("extension_id");
  // A substring match: the client may decorate the id.
  if (extension_id.find(kChatSidebarExtensionId) == std::string::npos) return;
  const std::string contribute_id = params->GetString("contribute_id");
  framework::extension::GetExtensionService()->Register(contribute_id,
                                                        framework::ExtensionInfo(extension_id, name()));
}

void ChatModuleRuntime::OnPriorityEventGetCellViewHeight(Variant const* params, bool& handled) {
  auto service = ServiceOf(kChatUIAssistantServiceId);
  if (!service) return;
  const bool answered = service->Invoke(kInvokeGetChatCellViewHeight, params, nullptr);
  handled = !answered;
}

}  // namespace chat
