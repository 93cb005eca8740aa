#include "framework/module/module_manifest.h"

#include <map>

namespace talvex {
namespace {
std::map<std::string, framework::module::ModuleManifest>& Configs() {
  static std::map<std::string, framework::module::ModuleManifest> configs;
  return configs;
}
}  // namespace

framework::module::ModuleManifest GetModuleConfigByName(std::string const& name) {
  auto it = Configs().find(name);
  if (it != Configs().end()) return it->second;
  framework::module::ModuleManifest manifest;
  manifest.name = name;
  return manifest;
}

void SetModuleConfig(framework::module::ModuleManifest const& manifest) { Configs()[manifest.name] = manifest; }

void ClearModuleConfigs() { Configs().clear(); }

}  // namespace talvex
