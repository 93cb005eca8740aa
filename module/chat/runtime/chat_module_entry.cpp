// The two functions the client finds in libchat_module.so.
#include "chat/runtime/chat_module_registration.h"

#define CHAT_MODULE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {
// When the library goes (unloaded, or at process exit) the module leaves the
// client's registry and its runtime is deleted. Made during the first
// Activate, after the client's registry exists, so it goes first.
struct ModuleLifetime {
  ~ModuleLifetime() {
    if (chat::registration::HasRuntime()) chat::registration::UnregisterModule();
  }
};
}  // namespace

CHAT_MODULE_EXPORT void Activate() {
  chat::registration::FillManifest();
  chat::registration::RegisterRuntimeAndExtensions();
  static ModuleLifetime lifetime;
  chat::registration::RegisterUILoader();
  chat::registration::RegisterModuleLoader();
}

// Deliberately empty: tear-down runs through the unload functions given to
// the client, the runtime's Unactivate and the module's unregistration.
CHAT_MODULE_EXPORT void Deactivate() {}
