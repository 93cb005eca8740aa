#include "chat/web/meeting_chat_plugin_impl.h"

#include "base/log/log.h"
#include "framework/module/app_module.h"

namespace chat {

namespace {

// A page names a meeting or a member by a non-empty text or by a number.
bool HasIdParam(Variant const* params, char const* key) {
  if (!params || !params->IsMap()) return false;
  Variant const& value = params->Get(key);
  return (value.IsString() && !value.AsStr().empty()) || value.IsInteger();
}

Variant EmptyResult() { return Variant(base::variant::kVariantTypeMap); }

}  // namespace

template <typename Base>
MeetingChatPluginImpl<Base>::MeetingChatPluginImpl() {
  this->BindCommand("GetPublicChatMsgList", this, &MeetingChatPluginImpl::HandleGetMsgList);
  this->BindCommand("GetPrivateChatMsgList", this, &MeetingChatPluginImpl::HandleGetPrivateMsgList);
}

template <typename Base>
MeetingChatPluginImpl<Base>::~MeetingChatPluginImpl() {
  Unsubscribe();
}

template <typename Base>
void MeetingChatPluginImpl<Base>::OnAttached() {
  Base::OnAttached();
  // Attached again: the earlier subscription goes first.
  Unsubscribe();
  auto model = framework::module::GetAppModuleModel(kWebMeetingModelId);
  if (!model) {
    TXLOG_WARN << "no web meeting model to follow";
    return;
  }
  const uint64_t subscriber = framework::SubscriberId(this);
  model->Subscribe(kEventPublicMsgListComplete, subscriber,
                   std::make_shared<framework::EventHandler>(
                       [this](Variant const* payload) { OnGetPublicMsgListComplete(payload); }));
  model->Subscribe(kEventPrivateMsgListComplete, subscriber,
                   std::make_shared<framework::EventHandler>(
                       [this](Variant const* payload) { OnGetPrivateMsgListComplete(payload); }));
  web_meeting_model_ = model;
}

template <typename Base>
void MeetingChatPluginImpl<Base>::Unsubscribe() {
  if (auto model = web_meeting_model_.lock()) {
    const uint64_t subscriber = framework::SubscriberId(this);
    model->Unsubscribe(kEventPublicMsgListComplete, subscriber);
    model->Unsubscribe(kEventPrivateMsgListComplete, subscriber);
  }
  web_meeting_model_.reset();
}

template <typename Base>
void MeetingChatPluginImpl<Base>::HandleGetMsgList(Variant const* params) {
  HandleGetMsgList(params, true);
}

template <typename Base>
void MeetingChatPluginImpl<Base>::HandleGetPrivateMsgList(Variant const* params) {
  if (!HasIdParam(params, "privateAppUid") || !HasIdParam(params, "privateAppId")) {
    TXLOG_WARN << "param error.";
    this->DoCommonErrorCallBack(params, EmptyResult());
    return;
  }
  TXLOG_INFO << "privateAppUid:" << params->Get("privateAppUid").ToString();
  TXLOG_INFO << "privateAppId:" << params->Get("privateAppId").ToString();
  HandleGetMsgList(params, false);
}

template <typename Base>
void MeetingChatPluginImpl<Base>::HandleGetMsgList(Variant const* params, bool is_public) {
  if (!HasIdParam(params, "meetingId")) {
    TXLOG_WARN << "param error.";
    this->DoCommonErrorCallBack(params, EmptyResult());
    return;
  }
  TXLOG_INFO << "meetingId:" << params->Get("meetingId").ToString();
  auto model = framework::module::GetAppModuleModel(kWebMeetingModelId);
  if (!model) {
    TXLOG_WARN << "webview_meeting_model is nullptr";
    this->DoCommonErrorCallBack(params, EmptyResult());
    return;
  }
  Variant result;
  if (!model->Invoke(is_public ? kMethodGetPublicMsgList : kMethodGetPrivateMsgList, params, &result)) {
    TXLOG_WARN << "webview_meeting_model refused the " << (is_public ? "public" : "private") << " list";
    this->DoCommonErrorCallBack(params, EmptyResult());
    return;
  }
  // The request left; the list comes by event.
  this->DoCommonSuccessCallBack(params, EmptyResult());
}

template <typename Base>
void MeetingChatPluginImpl<Base>::OnGetPublicMsgListComplete(Variant const* payload) {
  TXLOG_INFO << "OnGetPublicMsgListComplete";
  DoSuccessGetMsgCallBack(payload);
}

template <typename Base>
void MeetingChatPluginImpl<Base>::OnGetPrivateMsgListComplete(Variant const* payload) {
  TXLOG_INFO << "OnGetPrivateMsgListComplete";
  DoSuccessGetMsgCallBack(payload);
}

template <typename Base>
void MeetingChatPluginImpl<Base>::DoSuccessGetMsgCallBack(Variant const* payload) {
  if (!payload || !payload->IsMap() || !payload->Get("callback_data").IsString()) {
    TXLOG_WARN << "msg list payload error: " << framework::VariantToString(payload);
    return;
  }
  std::string const& data = payload->Get("callback_data").AsStr();
  TXLOG_INFO << "native_call_js_data:" << data;
  Variant result(base::variant::kVariantTypeMap);
  result.Set("msgList", data);
  this->DoCommonSuccessCallBack(&payload->Get("request_param"), result);
}

template class MeetingChatPluginImpl<talvex::BaseWebPlugin>;
template class MeetingChatPluginImpl<talvex::WebviewPlugin>;

}  // namespace chat
