#include "sim/models/sidebar_app_model.h"

#include "base/log/log.h"

namespace sim {

SidebarAppModel::SidebarAppModel() : SimModel(kId) {
  SetMethod(19, [this](Variant const* params, Variant*) {
    if (!params || !params->IsMap() || params->GetString("open_app_id").empty()) {
      TXLOG_ERROR << "[sim] sidebar app without open_app_id";
      return false;
    }
    apps_[params->GetString("open_app_id")] = *params;
    return true;
  });
  SetMethod(20, [this](Variant const* params, Variant*) {
    if (!params || !params->IsString()) return false;
    return apps_.erase(params->AsStr()) > 0;
  });
}

void SidebarAppModel::RequestExtension(std::string const& extension_id, std::string const& contribute_id) {
  Variant payload(base::variant::kVariantTypeMap);
  payload.Set("extension_id", extension_id);
  payload.Set("contribute_id", contribute_id);
  FireEvent(kEventRegisterExtension, &payload);
}

bool CellHeightModel::AskCellHeight(std::string const& msg_id) {
  Variant payload(base::variant::kVariantTypeMap);
  payload.Set("msg_id", msg_id);
  return FireEvent(0, &payload);
}

}  // namespace sim
