#include "framework/module/app_module.h"

#include "framework/module/module_service.h"

namespace framework {
namespace module {

void ApplicationModule::RegisterModel(int id, ModelPtr model) {
  if (!model) return;
  models_[id] = std::move(model);
}

void ApplicationModule::UnregisterModel(int id) { models_.erase(id); }

ModelPtr ApplicationModule::GetModel(int id) const {
  auto it = models_.find(id);
  return it == models_.end() ? nullptr : it->second;
}

std::vector<int> ApplicationModule::ModelIds() const {
  std::vector<int> ids;
  ids.reserve(models_.size());
  for (auto const& [id, model] : models_) ids.push_back(id);
  return ids;
}

void ApplicationModule::Clear() { models_.clear(); }

ModelPtr GetAppModuleModel(int id) {
  ApplicationModule* application = GetModuleService()->GetApplicationModule();
  return application ? application->GetModel(id) : nullptr;
}

}  // namespace module
}  // namespace framework
