#include "framework/navigation/routing.h"

#include <algorithm>

#include "base/log/log.h"
#include "framework/journal/host_journal.h"
#include "framework/module/module_runtime.h"

namespace framework {

ControllerManager* ControllerManager::Instance() {
  static ControllerManager manager;
  return &manager;
}

void ControllerManager::IocRegister(std::string const& scheme, ControllerFactory factory) {
  HostJournal::Record("ControllerManager.IocRegister " + scheme);
  entries_[scheme] = Entry{std::move(factory), nullptr};
}

void ControllerManager::IocUnregister(std::string const& scheme) {
  HostJournal::Record("ControllerManager.IocUnregister " + scheme);
  entries_.erase(scheme);
}

bool ControllerManager::HasUri(std::string const& scheme) const { return entries_.count(scheme) > 0; }

std::shared_ptr<Controller> ControllerManager::GetController(std::string const& scheme) {
  auto it = entries_.find(scheme);
  if (it == entries_.end()) return nullptr;
  if (!it->second.instance && it->second.factory) it->second.instance = it->second.factory();
  return it->second.instance;
}

std::vector<std::string> ControllerManager::Schemes() const {
  std::vector<std::string> out;
  for (auto const& [scheme, entry] : entries_) out.push_back(scheme);
  return out;
}

Navigator Navigator::Of(std::shared_ptr<Context const> context, PageStack stack) {
  return Navigator(std::move(context), stack);
}

bool Navigator::Push(std::string const& scheme, Variant params) const {
  auto controller = ControllerManager::Instance()->GetController(scheme);
  if (!controller) {
    TXLOG_WARN << "navigator: no page for " << scheme;
    return false;
  }
  HostJournal::Record("Navigator.Push " + scheme);
  if (!params.IsMap()) params = Variant(base::variant::kVariantTypeMap);
  params.Set("scheme", scheme);
  controller->Call("show", &params);
  return true;
}

bool Navigator::PopOther(std::string const& scheme) const {
  auto controller = ControllerManager::Instance()->GetController(scheme);
  if (!controller) return false;
  HostJournal::Record("Navigator.PopOther " + scheme);
  controller->Call("close", nullptr);
  return true;
}

RouterService* RouterService::Instance() {
  static RouterService service;
  return &service;
}

NavigateService* NavigateService::Instance() {
  static NavigateService service;
  return &service;
}

void NavigateService::Navigate(std::string const& url, Variant const& params) {
  HostJournal::Record("navigate " + url);
  Variant entry(base::variant::kVariantTypeMap);
  entry.Set("url", url);
  entry.Set("params", params);
  opened_.push_back(std::move(entry));
  // A route a module registered a page for opens that page.
  if (ControllerManager::Instance()->GetController(url)) Navigator::Of(nullptr, PageStack::kMain).Push(url, params);
}

void NavigateService::OpenWebDialog(Variant const& params) {
  const std::string url = params.GetString("url");
  HostJournal::Record("web dialog " + url);
  Variant entry(base::variant::kVariantTypeMap);
  entry.Set("url", url);
  entry.Set("params", params);
  opened_.push_back(std::move(entry));
}

ExtensionViewService* ExtensionViewService::Instance() {
  static ExtensionViewService service;
  return &service;
}

void ExtensionViewService::Register(std::string const& contributes_id, std::string const& extension_id,
                                    ViewFactory factory, void const* owner) {
  entries_.push_back({contributes_id, extension_id, std::move(factory), owner});
}

void ExtensionViewService::RemoveOwner(void const* owner) {
  entries_.erase(std::remove_if(entries_.begin(), entries_.end(), [&](Entry const& e) { return e.owner == owner; }),
                 entries_.end());
}

ExtensionViewService::ViewFactory ExtensionViewService::Find(std::string const& contributes_id,
                                                             std::string const& extension_id) const {
  for (auto const& e : entries_) {
    if (e.extension_id == extension_id && (e.contributes_id.empty() || e.contributes_id == contributes_id)) {
      return e.factory;
    }
  }
  return nullptr;
}

void NavigateProxyService::RegisterRoute(int method, std::string const& scheme) {
  HostJournal::Record("NavigateProxyService.RegisterRoute " + std::to_string(method) + " " + scheme);
  routes_.emplace_back(method, scheme);
}

NavigateProxyService* CreateNavigateProxyService(NavigateService* service) {
  HostJournal::Record("CreateNavigateProxyService");
  return new NavigateProxyService(service);
}

void DeleteNavigateProxyService(NavigateProxyService* service) {
  HostJournal::Record("DeleteNavigateProxyService");
  delete service;
}

void DesktopSchemeRouterManager::InitRouterManager() {
  if (inited_) return;
  inited_ = true;
  if (service_) service_->Attach(this);
  HostJournal::Record("DesktopSchemeRouterManager.InitRouterManager");
}

void DesktopSchemeRouterManager::UninitRouterManager() {
  if (!inited_) return;
  inited_ = false;
  if (service_) service_->Detach(this);
  HostJournal::Record("DesktopSchemeRouterManager.UninitRouterManager");
}

void SchemeRouterManager::InitRouterManager() {
  if (inited_) return;
  inited_ = true;
  if (service_) service_->Attach(this);
  HostJournal::Record("SchemeRouterManager.InitRouterManager");
}

void SchemeRouterManager::UninitRouterManager() {
  if (!inited_) return;
  inited_ = false;
  if (service_) service_->Detach(this);
  HostJournal::Record("SchemeRouterManager.UninitRouterManager");
}

void NavigatorManager::InitNavigatorManager() {
  if (inited_) return;
  inited_ = true;
  HostJournal::Record("NavigatorManager.InitNavigatorManager");
}

void NavigatorManager::UninitNavigatorManager() {
  if (!inited_) return;
  inited_ = false;
  HostJournal::Record("NavigatorManager.UninitNavigatorManager");
}

DesktopUIModuleLoader::~DesktopUIModuleLoader() { ExtensionViewService::Instance()->RemoveOwner(this); }

void DesktopUIModuleLoader::Load(module::ModuleRuntime* runtime) {
  runtime_ = runtime;
  HostJournal::Record("DesktopUIModuleLoader.Load " + (runtime ? runtime->name() : std::string("null")));
}

void DesktopUIModuleLoader::Unload() {
  ExtensionViewService::Instance()->RemoveOwner(this);
  runtime_ = nullptr;
  HostJournal::Record("DesktopUIModuleLoader.Unload");
}

void DesktopUIModuleLoader::RegisterGetExtensionViewFunc(std::string const& contributes_id,
                                                         std::string const& extension_id, ViewFactory factory) {
  HostJournal::Record("DesktopUIModuleLoader.RegisterGetExtensionViewFunc " + contributes_id + " " + extension_id);
  ExtensionViewService::Instance()->Register(contributes_id, extension_id, std::move(factory), this);
}

void DesktopUIModuleLoader::RegisterGetExtensionViewFunc(std::string const& extension_id, ViewFactory factory) {
  HostJournal::Record("DesktopUIModuleLoader.RegisterGetExtensionViewFunc " + extension_id);
  ExtensionViewService::Instance()->Register(std::string(), extension_id, std::move(factory), this);
}

UiModuleLoaderRegister* UiModuleLoaderRegister::GetInstance() {
  static UiModuleLoaderRegister instance;
  return &instance;
}

void UiModuleLoaderRegister::Register(std::string const& name, LoadFunc load, UnloadFunc unload) {
  HostJournal::Record("UiModuleLoaderRegister.Register " + name);
  loaders_[name] = Entry{std::move(load), std::move(unload)};
}

void UiModuleLoaderRegister::InitRuntimeLoader(std::string const& name, module::ModuleRuntime* runtime) {
  HostJournal::Record("UiModuleLoaderRegister.InitRuntimeLoader " + name);
  runtimes_[name] = runtime;
}

void UiModuleLoaderRegister::UnInitRuntimeLoader(std::string const& name) {
  HostJournal::Record("UiModuleLoaderRegister.UnInitRuntimeLoader " + name);
  runtimes_.erase(name);
}

module::ModuleRuntime* UiModuleLoaderRegister::RuntimeOf(std::string const& name) const {
  auto it = runtimes_.find(name);
  return it == runtimes_.end() ? nullptr : it->second;
}

bool UiModuleLoaderRegister::HasLoader(std::string const& name) const { return loaders_.count(name) > 0; }

bool UiModuleLoaderRegister::Load(std::string const& name, module::ModuleRuntime* runtime) {
  auto it = loaders_.find(name);
  if (it == loaders_.end() || !it->second.load) return false;
  LoadFunc load = it->second.load;
  load(runtime);
  return true;
}

bool UiModuleLoaderRegister::Unload(std::string const& name) {
  auto it = loaders_.find(name);
  if (it == loaders_.end() || !it->second.unload) return false;
  UnloadFunc unload = it->second.unload;
  unload();
  return true;
}

void UiModuleLoaderRegister::Remove(std::string const& name) {
  loaders_.erase(name);
  runtimes_.erase(name);
}

void ExtensionManager::InitExtensionManager(BuildViewFunc build) {
  build_ = std::move(build);
  HostJournal::Record("ExtensionManager.InitExtensionManager");
}

void ExtensionManager::UninitExtensionManager() {
  build_ = nullptr;
  HostJournal::Record("ExtensionManager.UninitExtensionManager");
}

std::shared_ptr<AppBaseView> ExtensionManager::BuildView(std::string const& extension_id) const {
  return build_ ? build_(extension_id) : nullptr;
}

}  // namespace framework
