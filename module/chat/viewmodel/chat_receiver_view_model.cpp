#include "chat/viewmodel/chat_receiver_view_model.h"

#include "base/log/log.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/chat_strings.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/member_utils.h"
#include "framework/module/app_module.h"

namespace chat {

namespace {

template <typename Fn>
std::shared_ptr<framework::EventHandler> Handler(Fn fn) {
  return std::make_shared<framework::EventHandler>(std::move(fn));
}
}  // namespace

void ChatReceiverViewModel::InitStatelessData(Variant& data) {
  if (!data.IsMap()) data = Variant(base::variant::kVariantTypeMap);
  data.Set("send_to_text", GetLocalizedString(kTextSendToInitial));
}

void ChatReceiverViewModel::OnViewAttached(Variant const* params) {
  framework::StatefulViewModel::OnViewAttached(params);
  const uint64_t self = framework::SubscriberId(this);
  if (auto authority = framework::module::GetAppModuleModel(kHostAuthorityModel)) {
    RecordSubscribe(authority, this);
    authority->Subscribe(0, self, Handler([this](Variant const*) {
                           RefreshAuthority();
                           RefreshReceiver();
                         }));
  }
  if (auto chats = framework::module::GetAppModuleModel(kHostPrivateChatModel)) {
    RecordSubscribe(chats, this);
    chats->Subscribe(0, self, Handler([this](Variant const*) { RefreshReceiver(); }));
  }
  if (auto members = framework::module::GetAppModuleModel(kHostMemberModel)) {
    RecordSubscribe(members, this);
    members->Subscribe(2, self, Handler([this](Variant const* ids) { OnEventMembersChanged(ids); }));
    for (uint32_t event : {45u, 46u, 47u}) {
      members->Subscribe(event, self, Handler([this](Variant const*) { RefreshReceiver(); }));
    }
  }
  // The line is right from the first frame, before any event comes.
  RefreshAuthority();
  RefreshReceiver();
  RefreshSendToText();
}

void ChatReceiverViewModel::OnEventMembersChanged(Variant const* user_ids) {
  if (!user_ids || !user_ids->IsArray()) {
    TXLOG_WARN << "<IM> member change without a list of ids";
    return;
  }
  for (auto const& id : user_ids->AsArray()) {
    if (!id.IsString()) continue;
    if (talvex_common::utils::member::GetUserInfo(id.AsStr()).GetBoolean("self")) {
      RefreshAuthority();
      return;
    }
  }
}

void ChatReceiverViewModel::RefreshAuthority() {
  Variant info = talvex::ChatUtils::GetIMAuthorityInfo();
  SetPropValue(kPropAllowChatWording,
               info.GetBoolean("allow_chat_wording_show") ? info.GetString("allow_chat_wording_desc") : std::string());
  info.Set("tips", GetLocalizedString(kTextAuthorityTips));
  SetPropValue(kPropAuthorityInfo, std::move(info));
}

void ChatReceiverViewModel::RefreshReceiver() { SetPropValue(kPropReceiver, talvex::ChatUtils::GetReceiverNameAndHint()); }

void ChatReceiverViewModel::RefreshSendToText() {
  Variant data(base::variant::kVariantTypeMap);
  data.Set("ChatReceiverUIDataFields_kStringUIDataSendToText", GetLocalizedString(kTextSendTo));
  SetPropValue(kPropSendToText, std::move(data));
}

}  // namespace chat
