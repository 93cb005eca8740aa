#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "framework/module/app_module.h"

namespace framework {
namespace module {

class ModuleRuntime;

// The factory yields the module's runtime; the module keeps ownership.
using RuntimeFactory = std::function<ModuleRuntime*()>;
using ModuleLoadFunc = std::function<void(ModuleRuntime*)>;
using ModuleUnloadFunc = std::function<void()>;

// The client's registry of modules.
//
// Module side: RegisterModule, RegisterModuleLoader, UnregisterModule.
// Client side: the rest, in the order a client loads a module:
//   ActivateModule (factory, runtime Activate) -> LoadModule (load functions)
//   ... UnloadModule (unload functions, newest first) -> DeactivateModule
//   (runtime Unactivate).
class ModuleService {
 public:
  bool RegisterModule(std::string const& name, RuntimeFactory factory);
  void UnregisterModule(std::string const& name);
  bool IsModuleRegistered(std::string const& name) const;
  std::vector<std::string> RegisteredModules() const;

  void RegisterModuleLoader(std::string const& name, ModuleLoadFunc load, ModuleUnloadFunc unload);
  size_t LoaderCount(std::string const& name) const;

  // The application, or null before the client has one.
  ApplicationModule* GetApplicationModule() const { return application_.get(); }
  void SetApplicationModule(std::shared_ptr<ApplicationModule> application) { application_ = std::move(application); }

  // The runtime of a registered module, made by its factory on first use.
  ModuleRuntime* GetRuntime(std::string const& name);
  bool ActivateModule(std::string const& name);
  void DeactivateModule(std::string const& name);
  bool LoadModule(std::string const& name);
  void UnloadModule(std::string const& name);

 private:
  struct Entry {
    RuntimeFactory factory;
    std::vector<std::pair<ModuleLoadFunc, ModuleUnloadFunc>> loaders;
  };
  std::map<std::string, Entry> modules_;
  std::shared_ptr<ApplicationModule> application_;
};

ModuleService* GetModuleService();

}  // namespace module
}  // namespace framework
