#include "framework/module/module_runtime.h"

#include "base/log/log.h"

namespace framework {
namespace module {

ModuleRuntimeBaseImpl::ModuleRuntimeBaseImpl(std::shared_ptr<ModuleManifest> manifest, Resource* resource)
    : manifest_(std::move(manifest)), resource_(resource) {}

ModuleRuntimeBaseImpl::~ModuleRuntimeBaseImpl() {
  if (activated_) ModuleRuntimeBaseImpl::Unactivate();
}

bool ModuleRuntimeBaseImpl::Activate() {
  if (activated_) return true;
  model_provider_ = CreateModelProvider();
  service_provider_ = CreateServiceProvider();
  view_model_provider_ = CreateViewModelProvider();
  extension_provider_ = CreateExtensionProvider();
  activated_ = true;
  OnProvidersCreated();
  // Services first: a model may call one while it initialises.
  if (service_provider_) service_provider_->Init();
  if (model_provider_) model_provider_->Init();
  if (view_model_provider_) view_model_provider_->Init();
  if (extension_provider_) extension_provider_->Init();
  return true;
}

void ModuleRuntimeBaseImpl::Unactivate() {
  if (!activated_) return;
  if (extension_provider_) extension_provider_->UnInit();
  if (view_model_provider_) view_model_provider_->UnInit();
  if (model_provider_) model_provider_->UnInit();
  if (service_provider_) service_provider_->UnInit();
  extension_provider_.reset();
  view_model_provider_.reset();
  model_provider_.reset();
  service_provider_.reset();
  activated_ = false;
}

ModelPtr ModuleRuntimeBaseImpl::ModelOf(int id) const {
  return model_provider_ ? model_provider_->ModelOf(id) : nullptr;
}

ServicePtr ModuleRuntimeBaseImpl::ServiceOf(int id) const {
  return service_provider_ ? service_provider_->ServiceOf(id) : nullptr;
}

}  // namespace module
}  // namespace framework
