#pragma once

#include <string>

#include "base/variant/variant.h"

namespace framework {
namespace module {

// What the client knows of a module before loading it.
struct ModuleManifest {
  std::string name;
  std::string version;
  // A digest of the module's build, written by the module itself.
  std::string version_digest;
  // The module's compiled Qt resource file and the directory it was loaded from.
  std::string resource_file;
  std::string module_path;
  Variant config;
};

}  // namespace module
}  // namespace framework

namespace talvex {
// The manifest the client holds for `name`; one with just the name when the
// client has none.
framework::module::ModuleManifest GetModuleConfigByName(std::string const& name);
// Client side: records the manifest of a module before it is activated.
void SetModuleConfig(framework::module::ModuleManifest const& manifest);
void ClearModuleConfigs();
}  // namespace talvex
