#include "framework/module/module_service.h"

#include "base/log/log.h"
#include "framework/module/module_runtime.h"

namespace framework {
namespace module {

bool ModuleService::RegisterModule(std::string const& name, RuntimeFactory factory) {
  if (name.empty() || !factory) {
    TXLOG_ERROR << "register module refused, name=" << name;
    return false;
  }
  modules_[name].factory = std::move(factory);
  TXLOG_INFO << "module registered: " << name;
  return true;
}

void ModuleService::UnregisterModule(std::string const& name) {
  if (modules_.erase(name) > 0) TXLOG_INFO << "module unregistered: " << name;
}

bool ModuleService::IsModuleRegistered(std::string const& name) const {
  auto it = modules_.find(name);
  return it != modules_.end() && it->second.factory;
}

std::vector<std::string> ModuleService::RegisteredModules() const {
  std::vector<std::string> names;
  for (auto const& [name, entry] : modules_) {
    if (entry.factory) names.push_back(name);
  }
  return names;
}

void ModuleService::RegisterModuleLoader(std::string const& name, ModuleLoadFunc load, ModuleUnloadFunc unload) {
  modules_[name].loaders.emplace_back(std::move(load), std::move(unload));
}

size_t ModuleService::LoaderCount(std::string const& name) const {
  auto it = modules_.find(name);
  return it == modules_.end() ? 0 : it->second.loaders.size();
}

ModuleRuntime* ModuleService::GetRuntime(std::string const& name) {
  auto it = modules_.find(name);
  if (it == modules_.end() || !it->second.factory) return nullptr;
  return it->second.factory();
}

bool ModuleService::ActivateModule(std::string const& name) {
  ModuleRuntime* runtime = GetRuntime(name);
  if (!runtime) {
    TXLOG_ERROR << "activate: no module " << name;
    return false;
  }
  return runtime->Activate();
}

void ModuleService::DeactivateModule(std::string const& name) {
  if (ModuleRuntime* runtime = GetRuntime(name)) runtime->Unactivate();
}

bool ModuleService::LoadModule(std::string const& name) {
  ModuleRuntime* runtime = GetRuntime(name);
  auto it = modules_.find(name);
  if (!runtime || it == modules_.end()) return false;
  // The loaders may register more modules; iterate over a copy.
  auto loaders = it->second.loaders;
  for (auto const& [load, unload] : loaders) {
    if (load) load(runtime);
  }
  return true;
}

void ModuleService::UnloadModule(std::string const& name) {
  auto it = modules_.find(name);
  if (it == modules_.end()) return;
  auto loaders = it->second.loaders;
  for (auto r = loaders.rbegin(); r != loaders.rend(); ++r) {
    if (r->second) r->second();
  }
}

ModuleService* GetModuleService() {
  static ModuleService service;
  return &service;
}

}  // namespace module
}  // namespace framework
