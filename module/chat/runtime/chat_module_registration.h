#pragma once

#include <array>

namespace framework::module {
class ModuleRuntime;
}

namespace chat {

class ChatModuleRuntime;

// The schemes of the module's pages, in the order their controllers register.
extern const std::array<char const*, 4> kChatPageSchemes;

// The module's registration with the client, step by step. The exported
// Activate runs the first three; the rest are given to the client to call.
namespace registration {

// The manifest, with the digest of this build.
void FillManifest();
// Module "chat", its seventeen extensions and both web plugin tables.
void RegisterRuntimeAndExtensions();
// The Qt resources and the UI loader.
void RegisterUILoader();
// The non-UI load/unload pair under "chat".
void RegisterModuleLoader();

void LoadUI(framework::module::ModuleRuntime* runtime);
void UnloadUI();
void LoadNonUI(framework::module::ModuleRuntime* runtime);
void UnloadNonUI();

// Unregisters "chat" and deletes the runtime.
void UnregisterModule();

// The runtime, made on first use.
ChatModuleRuntime* Runtime();
bool HasRuntime();

}  // namespace registration
}  // namespace chat
