#include "framework/config/configure_model.h"

#include "base/log/log.h"

namespace framework {

bool ConfigureModel::Invoke(uint32_t method, Variant const* params, Variant* result) {
  if (method != kMethodGetDynamicLayout) return false;
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "dynamic layout asked without params";
    return false;
  }
  return GetDynamicLayout(*params, result);
}

bool ConfigureModel::GetDynamicLayout(Variant const& params, Variant* result) const {
  const std::string wanted = params.GetString("dyna_layout_key");
  const bool use_default = params.GetBoolean("use_default_layout", true);
  Variant found(base::variant::kVariantTypeMap);
  for (auto const& name : params.Get("keys").AsArray()) {
    if (!name.IsString() || name.AsStr().empty()) continue;
    const Variant layouts = service_->Query(kLayoutSection, name.AsStr());
    Variant const* layout = wanted.empty() ? nullptr : &layouts.Get(wanted);
    if ((!layout || layout->IsNull()) && use_default) layout = &layouts.Get(kDefaultLayoutKey);
    if (layout && !layout->IsNull()) found.Set(name.AsStr(), *layout);
  }
  if (found.Empty()) {
    TXLOG_INFO << "no dynamic layout for key \"" << wanted << "\"";
    return false;
  }
  if (result) *result = std::move(found);
  return true;
}

}  // namespace framework

namespace talvexsdk {
namespace utils {
namespace service {
framework::Model* GetConfigureModel() {
  static framework::ConfigureModel model(GetConfigureService());
  return &model;
}
}  // namespace service
}  // namespace utils
}  // namespace talvexsdk
