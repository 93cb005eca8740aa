#include "chat/viewmodel/chat_send_button_container_view_model.h"

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/model/send_button_config_model.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/chat_strings.h"
#include "framework/chat/chat_utils.h"
#include "framework/module/app_module.h"
#include "chat/model/chat_message.h"

namespace chat {

ChatSendButtonContainerViewModel::ChatSendButtonContainerViewModel() : talvex::ContributesViewModel(kContributesId) {
  OnAction(kActionAuthorityClicked,
           [](Variant const*) { talvex_common::utils::analytics::LogEvent("chatting_private_chat_authority_click"); });
}

void ChatSendButtonContainerViewModel::OnViewAttached(Variant const* params) {
  talvex::ContributesViewModel::OnViewAttached(params);
  template_type_ = params && params->IsMap() ? params->GetInt32("template_type", 0) : 0;
  Variant activation(base::variant::kVariantTypeMap);
  activation.Set(chat_key::kTemplateType, template_type_);
  ActivateExtensions(&activation);
  SortByExtensionsId({"extension:chat.send_file", "extension:chat.send_image", "extension:chat.send_notice",
                      "extension:chat.send_emoji"});
  UpdateContributesDataSource();

  const uint64_t self = framework::SubscriberId(this);
  if (auto config = GetChatModuleModel(GetModuleRuntime4ATG(), kSendButtonConfigModelId)) {
    RecordSubscribe(config, this);
    config->Subscribe(SendButtonConfigModel::kEventConfigChanged, self,
                      std::make_shared<framework::EventHandler>(
                          [this](Variant const* p) { OnEventButtonConfigChanged(p); }));
    Variant current;
    if (config->Invoke(SendButtonConfigModel::kGetConfig, nullptr, &current)) {
      FireExtensionEvent(kResolveButtonStateEvent, &current, nullptr);
    }
  } else {
    TXLOG_WARN << "<IM> no send button configuration; buttons keep their defaults";
  }
  if (auto authority = framework::module::GetAppModuleModel(kHostAuthorityModel)) {
    RecordSubscribe(authority, this);
    authority->Subscribe(0, self, std::make_shared<framework::EventHandler>([this](Variant const*) {
                           PublishAuthority();
                         }));
  }
  PublishAuthority();
}

void ChatSendButtonContainerViewModel::OnEventButtonConfigChanged(Variant const* config) {
  if (!config || !config->IsMap()) {
    TXLOG_WARN << "<IM> send button config is not a map";
    return;
  }
  FireExtensionEvent(kResolveButtonStateEvent, config, nullptr);
}

void ChatSendButtonContainerViewModel::PublishAuthority() {
  Variant info = talvex::ChatUtils::GetIMAuthorityInfo();
  info.Set("tips", GetLocalizedString(kTextAuthorityTips));
  SetPropValue(kPropAuthorityInfo, std::move(info));
}

}  // namespace chat
