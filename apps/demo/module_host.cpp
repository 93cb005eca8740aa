#include "module_host.h"

#include <dlfcn.h>

#include <QFileInfo>

#include "base/log/log.h"
#include "framework/module/module_manifest.h"
#include "framework/module/module_runtime.h"
#include "framework/module/module_service.h"
#include "framework/navigation/routing.h"

namespace {
constexpr char kModuleName[] = "chat";
}

ModuleHost::~ModuleHost() { Unload(); }

bool ModuleHost::Load(QString const& library_path) {
  framework::module::ModuleManifest manifest;
  manifest.name = kModuleName;
  manifest.version = "1.0";
  manifest.module_path = QFileInfo(library_path).absolutePath().toStdString();
  manifest.resource_file = "chat_module.rcc";
  talvex::SetModuleConfig(manifest);

  // The module's code stays mapped until the process ends: the client keeps
  // function objects that live in it.
  handle_ = dlopen(library_path.toUtf8().constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (!handle_) {
    error_ = QString::fromUtf8(dlerror());
    return false;
  }
  auto activate = reinterpret_cast<void (*)()>(dlsym(handle_, "Activate"));
  deactivate_ = reinterpret_cast<void (*)()>(dlsym(handle_, "Deactivate"));
  if (!activate || !deactivate_) {
    error_ = "the library does not export Activate and Deactivate";
    return false;
  }
  activate();

  auto* modules = framework::module::GetModuleService();
  if (!modules->ActivateModule(kModuleName)) {
    error_ = "the module did not register its runtime";
    return false;
  }
  framework::module::ModuleRuntime* runtime = modules->GetRuntime(kModuleName);
  framework::UiModuleLoaderRegister::GetInstance()->Load(kModuleName, runtime);
  modules->LoadModule(kModuleName);
  loaded_ = true;
  TXLOG_INFO << "[demo] chat module loaded from " << library_path.toStdString();
  return true;
}

void ModuleHost::Unload() {
  if (!loaded_) return;
  loaded_ = false;
  auto* modules = framework::module::GetModuleService();
  framework::UiModuleLoaderRegister::GetInstance()->Unload(kModuleName);
  modules->UnloadModule(kModuleName);
  modules->DeactivateModule(kModuleName);
  if (deactivate_) deactivate_();
  TXLOG_INFO << "[demo] chat module unloaded";
}
