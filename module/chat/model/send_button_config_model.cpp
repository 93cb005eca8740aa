#include "chat/model/send_button_config_model.h"

#include "chat/runtime/chat_ids.h"
#include "framework/config/configure_service.h"
#include "framework/module/app_module.h"

namespace chat {

namespace {

bool ConfigBool(char const* key, bool def) {
  const Variant v = talvex_common::utils::QueryConfigureService("chat", key, Variant(def));
  return v.IsBool() ? v.AsBoolean() : def;
}
}  // namespace

SendButtonConfigModel::SendButtonConfigModel() : framework::ModelImpl(kSendButtonConfigModelId) {
  OnMethod(kGetConfig, [this](Variant const*, Variant* result) {
    Variant config = Refresh();
    if (result) *result = std::move(config);
    return true;
  });
}

void SendButtonConfigModel::Init() {
  framework::ModelImpl::Init();
  last_ = Refresh();
  if (auto meeting = framework::module::GetAppModuleModel(kHostMeetingModel)) {
    meeting->Subscribe(kMeetingEventJoined, framework::SubscriberId(this),
                       std::make_shared<framework::EventHandler>([this](Variant const*) { Refresh(); }));
  }
}

void SendButtonConfigModel::UnInit() {
  if (auto meeting = framework::module::GetAppModuleModel(kHostMeetingModel)) {
    meeting->Unsubscribe(framework::SubscriberId(this));
  }
  framework::ModelImpl::UnInit();
}

Variant SendButtonConfigModel::Refresh() {
  Variant config(base::variant::kVariantTypeMap);
  config.Set("show_more", ConfigBool("send_button_show_more", true));
  config.Set("red_dot_more", ConfigBool("send_button_red_dot_more", false));
  if (!last_.IsNull() && !(last_ == config)) {
    last_ = config;
    FireEvent(kEventConfigChanged, &config);
  }
  last_ = config;
  return config;
}

}  // namespace chat
