#include "chat/biz_model/chat_biz_model.h"

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "chat/runtime/chat_ids.h"
#include "framework/module/app_module.h"
#include "framework/viewmodel/view_model.h"

namespace chat {

namespace {
constexpr uint32_t kMeetingMethodIsOn = 0;
constexpr uint32_t kMeetingEventStateReset = 1;
constexpr uint32_t kMeetingEventEnded = 2;
constexpr uint32_t kMeetingEventMoved = 14;
constexpr uint32_t kMessageEventRemoved = 18;

template <typename Handler>
std::shared_ptr<framework::EventHandler> Bind(ChatBizModel* self, Handler handler) {
  return std::make_shared<framework::EventHandler>([self, handler](Variant const* p) { (self->*handler)(p); });
}
}  // namespace

ChatBizModel::ChatBizModel() : TypedBizModel::Chat::ModelImpl(kChatBizModelId) {
  OnMethod(kFireUnreadVisible, [this](Variant const* params, Variant*) { return FireUnreadVisible(params); });
  OnMethod(kFireScrollToBottom, [this](Variant const*, Variant*) {
    FireEvent(kEventScrollToBottom, nullptr);
    return true;
  });
  OnMethod(kSetReminderDisabled, [this](Variant const* params, Variant*) {
    return ReadBool(params, "set reminder disabled", reminder_disabled_);
  });
  OnMethod(kSetReminderMsgId, [this](Variant const* params, Variant*) {
    return ReadString(params, "set reminder: msg id is not a string", reminder_msg_id_);
  });
  OnMethod(kHasReminder, [this](Variant const*, Variant* result) {
    return Answer(result, !reminder_disabled_ && !reminder_msg_id_.empty());
  });
  OnMethod(kSetTipsPending,
           [this](Variant const* params, Variant*) { return ReadBool(params, "set tips pending", tips_pending_); });
  OnMethod(kFlushTipsPending, [this](Variant const*, Variant*) {
    FlushTipsPending();
    return true;
  });
  OnMethod(kSetSecondMsgId, [this](Variant const* params, Variant*) {
    return ReadString(params, "set second msg id: not a string", second_msg_id_);
  });
  OnMethod(kHasSecondMsgId,
           [this](Variant const*, Variant* result) { return Answer(result, !second_msg_id_.empty()); });
  OnMethod(kSetInputDraft, [this](Variant const* params, Variant*) { return SetInputDraft(params); });
  OnMethod(kGetInputDraft,
           [this](Variant const*, Variant* result) { return !first_.IsNull() && Answer(result, first_); });
  OnMethod(kSetBulletDraft, [this](Variant const* params, Variant*) { return SetBulletDraft(params); });
  OnMethod(kGetBulletDraft, [this](Variant const*, Variant* result) { return Answer(result, second_); });
  OnMethod(kSetSharedValue, [this](Variant const* params, Variant*) {
    third_ = params ? *params : Variant();
    return true;
  });
  OnMethod(kGetSharedValue, [this](Variant const*, Variant* result) { return Answer(result, third_); });
}

void ChatBizModel::Init() {
  TypedBizModel::Chat::ModelImpl::Init();
  const uint64_t self = framework::SubscriberId(this);
  if (auto meeting = framework::module::GetAppModuleModel(kHostMeetingModel)) {
    framework::ViewModel::RecordSubscribe(meeting, this);
    meeting->Subscribe(kMeetingEventStateReset, self, Bind(this, &ChatBizModel::OnEventMeetingStateReset));
    meeting->Subscribe(kMeetingEventEnded, self, Bind(this, &ChatBizModel::OnEventMeetingEnded));
    meeting->Subscribe(kMeetingEventMoved, self, Bind(this, &ChatBizModel::OnEventMeetingMoved));
  }
  if (auto messages = framework::module::GetAppModuleModel(kHostChatMessageModel)) {
    framework::ViewModel::RecordSubscribe(messages, this);
    messages->Subscribe(kMessageEventRemoved, self, Bind(this, &ChatBizModel::OnEventMessageRemoved));
  }
}

void ChatBizModel::UnInit() {
  const uint64_t self = framework::SubscriberId(this);
  if (auto meeting = framework::module::GetAppModuleModel(kHostMeetingModel)) meeting->Unsubscribe(self);
  if (auto messages = framework::module::GetAppModuleModel(kHostChatMessageModel)) messages->Unsubscribe(self);
  TypedBizModel::Chat::ModelImpl::UnInit();
}

bool ChatBizModel::ReadBool(Variant const* params, char const* method, bool& out) const {
  if (!params || !params->IsBool()) {
    TXLOG_ERROR << "<IM> chat biz model " << method << ": param is not a bool";
    return false;
  }
  out = params->AsBoolean();
  return true;
}

bool ChatBizModel::IsMeetingOn() const {
  auto meeting = framework::module::GetAppModuleModel(kHostMeetingModel);
  if (!meeting) return false;
  Variant on;
  return meeting->Invoke(kMeetingMethodIsOn, nullptr, &on) && on.AsBoolean();
}

bool ChatBizModel::ReadString(Variant const* params, char const* what, std::string& out) {
  if (!params || !params->IsString()) {
    TXLOG_ERROR << "<IM> chat biz model " << what;
    return false;
  }
  out = params->AsStr();
  return true;
}

bool ChatBizModel::Answer(Variant* result, Variant const& value) {
  if (result) *result = value;
  return true;
}

bool ChatBizModel::FireUnreadVisible(Variant const* params) {
  bool visible = false;
  if (!ReadBool(params, "fire unread visible", visible)) return false;
  Variant payload(visible);
  FireEvent(kEventUnreadVisible, &payload);
  return true;
}

void ChatBizModel::FlushTipsPending() {
  if (!tips_pending_) return;
  FireEvent(kEventTipsPending, nullptr);
  tips_pending_ = false;
  talvex_common::utils::analytics::LogEvent("inmeeting_im_null_null_tips_null_exp");
}

bool ChatBizModel::SetInputDraft(Variant const* params) {
  if (!params || params->IsNull()) {
    first_.Reset();
    return true;
  }
  if (!IsMeetingOn()) return false;
  first_ = *params;
  return true;
}

bool ChatBizModel::SetBulletDraft(Variant const* params) {
  if (params && !params->IsNull() && IsMeetingOn()) {
    second_ = *params;
    return true;
  }
  second_.Reset();
  return false;
}

void ChatBizModel::OnEventMeetingStateReset(Variant const*) {
  reminder_disabled_ = false;
  reminder_msg_id_.clear();
}

void ChatBizModel::OnEventMeetingEnded(Variant const*) {
  first_.Reset();
  second_.Reset();
}

void ChatBizModel::OnEventMeetingMoved(Variant const*) { second_.Reset(); }

void ChatBizModel::OnEventMessageRemoved(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "<IM> message removed: params is not a map";
    return;
  }
  const std::string msg_id = params->GetString("msg_id");
  if (msg_id.empty()) return;
  // A revoked or removed message can no longer be the reminded one.
  if (reminder_msg_id_ == msg_id) reminder_msg_id_.clear();
  if (second_msg_id_ == msg_id) second_msg_id_.clear();
}

}  // namespace chat
