#include "sim/models/meeting_settings_model.h"

namespace sim {

MeetingSettingsModel::MeetingSettingsModel() : SimModel(kId) {
  values_.Set("notice_enable", false);
  values_.Set("notice_read", true);
  values_.Set("emoji_enable", true);
  values_.Set("im_file_and_picture", true);
  SetMethod(1, [this](Variant const* params, Variant* result) {
    if (!params || !params->IsMap() || !values_.Has(params->GetString("key"))) return false;
    if (result) *result = values_.Get(params->GetString("key"));
    return true;
  });
}

void MeetingSettingsModel::SetSwitch(std::string const& key, bool value) {
  if (values_.Has(key) && values_.Get(key) == Variant(value)) return;
  values_.Set(key, value);
  Variant payload(base::variant::kVariantTypeMap);
  payload.Set("key", key);
  payload.Set("value", value);
  FireEvent(kEventChanged, &payload);
}

bool MeetingSettingsModel::EnterImmersiveMode(std::string* reason) {
  Variant ask(base::variant::kVariantTypeMap);
  ask.Set("can_enter_immersive_mode", true);
  const bool refused = FireEvent(kEventEnterImmersive, &ask);
  if (reason) *reason = refused ? ask.GetString("reason") : std::string();
  immersive_ = !refused;
  return immersive_;
}

void MeetingSettingsModel::LeaveImmersiveMode() {
  if (!immersive_) return;
  immersive_ = false;
  FireEvent(kEventLeaveImmersive, nullptr);
}

}  // namespace sim
