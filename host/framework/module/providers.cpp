#include "framework/module/providers.h"

#include "base/log/log.h"
#include "framework/extension/extension.h"
#include "framework/navigation/routing.h"
#include "framework/viewmodel/view_model.h"

namespace framework {

ModelProviderBaseImpl::~ModelProviderBaseImpl() = default;

ModelPtr ModelProviderBaseImpl::ModelOf(int id) {
  auto it = models_.find(id);
  if (it != models_.end()) return it->second;
  ModelPtr model = Build(id);
  if (!model) return nullptr;
  models_.emplace(id, model);
  order_.push_back(id);
  model->Init();
  return model;
}

void ModelProviderBaseImpl::UnInit() {
  // Newest first: a model may rely on one made before it. A model that asks
  // for one never made while going down gets it, and it goes down last.
  while (!order_.empty()) {
    const std::vector<int> order = std::move(order_);
    order_.clear();
    for (auto r = order.rbegin(); r != order.rend(); ++r) {
      auto it = models_.find(*r);
      if (it != models_.end()) it->second->UnInit();
    }
  }
  models_.clear();
}

ServiceProviderBaseImpl::~ServiceProviderBaseImpl() = default;

ServicePtr ServiceProviderBaseImpl::ServiceOf(int id) {
  auto it = services_.find(id);
  if (it != services_.end()) return it->second;
  ServicePtr service = Build(id);
  if (!service) return nullptr;
  services_.emplace(id, service);
  order_.push_back(id);
  service->Initialize();
  return service;
}

void ServiceProviderBaseImpl::UnInit() {
  // As for models: newest first, late ones last.
  while (!order_.empty()) {
    const std::vector<int> order = std::move(order_);
    order_.clear();
    for (auto r = order.rbegin(); r != order.rend(); ++r) {
      auto it = services_.find(*r);
      if (it != services_.end()) it->second->UnInitialize();
    }
  }
  services_.clear();
}

RouterService* ServiceProviderBaseImpl::GetRouterService() { return RouterService::Instance(); }
NavigateService* ServiceProviderBaseImpl::GetNavigateService() { return NavigateService::Instance(); }
ExtensionViewService* ServiceProviderBaseImpl::GetExtensionViewService() { return ExtensionViewService::Instance(); }

ViewModelProviderBaseImpl::~ViewModelProviderBaseImpl() = default;

std::vector<int> ModelProviderBaseImpl::ModelIds() const {
  std::vector<int> ids;
  for (auto const& [id, model] : models_) ids.push_back(id);
  return ids;
}

std::shared_ptr<ViewModel> ViewModelProviderBaseImpl::CreateViewModel(int type) {
  auto view_model = Build(type);
  if (!view_model) {
    TXLOG_WARN << "no view model of type " << type;
    return nullptr;
  }
  view_model->SetType(type);
  view_model->SetModuleParams(runtime_);
  return view_model;
}

ExtensionProviderBaseImpl::~ExtensionProviderBaseImpl() = default;

std::shared_ptr<extension::ExtensionImpl> ExtensionProviderBaseImpl::CreateExtension(
    std::string const& extension_id) {
  return Build(extension_id);
}

}  // namespace framework
