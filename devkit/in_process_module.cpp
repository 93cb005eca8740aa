#include "devkit/in_process_module.h"

#include "chat/runtime/chat_module_registration.h"
#include "chat/runtime/chat_module_runtime.h"
#include "framework/extension/extension.h"
#include "framework/navigation/routing.h"

namespace reg = chat::registration;

InProcessChatModule::InProcessChatModule() {
  reg::RegisterRuntimeAndExtensions();
  activated_ = reg::Runtime()->Activate();
  if (activated_) reg::LoadUI(reg::Runtime());
}

InProcessChatModule::~InProcessChatModule() {
  reg::UnloadUI();
  if (reg::Runtime()->IsActivated()) reg::Runtime()->Unactivate();
  reg::UnregisterModule();
  framework::UiModuleLoaderRegister::GetInstance()->Remove("chat");
  framework::extension::GetExtensionService()->Clear();
}
