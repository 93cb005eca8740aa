#include "chat/biz_model/meeting_notice_biz_model.h"

#include <QDateTime>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "base/util/time_util.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/model/meeting_notice_model.h"
#include "chat/util/chat_strings.h"
#include "chat/util/utils.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/meeting/member_utils.h"
#include "framework/module/app_module.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"

namespace chat {

namespace {
using Notice = MeetingNoticeModel;
constexpr uint32_t kMemberEventHostChanged = 6;
constexpr uint32_t kMemberEventCoHostChanged = 7;
constexpr uint32_t kMemberEventSelfInfo = 73;
constexpr int kNoticeStateModel = 1000001;
constexpr uint32_t kNoticeStateReadMark = 3;
constexpr uint32_t kNoticeStateEventRead = 2;
constexpr uint32_t kChatMethodSendNoticeMessage = 47;
constexpr uint32_t kChatMethodMarkNotice = 48;
constexpr uint32_t kTextNoticeNotHost = framework::NameId("chat.notice.not_host");

bool SelfHostOrCoHost() { return talvex_common::utils::member::IsSelfHostOrCoHost(); }
}  // namespace

MeetingNoticeBizModel::MeetingNoticeBizModel(framework::module::ModuleRuntime* runtime)
    : TypedBizModel::MeetingNotice::ModelImpl(kMeetingNoticeBizModelId), runtime_(runtime) {
  // An edit starts and a notice goes out only for a caller that takes the
  // answer (a result pointer).
  OnMethod(kGetAndReadNotice, [this](Variant const*, Variant*) {
    InvokeGetAndReadNotice();
    return true;
  });
  OnMethod(kStartEdit, [this](Variant const*, Variant* result) {
    if (result) *result = StartEdit();
    return true;
  });
  OnMethod(kCompareWithCurrent, [this](Variant const* params, Variant* result) {
    const bool same = params && params->IsString() && params->AsStr() == last_content_;
    if (!result) return true;
    *result = same ? Variant::Map{{"is_succeed", true}} : Variant::Map{{"is_succeed", false}, {"err_msg", ""}};
    return true;
  });
  OnMethod(kCancelEdit, [this](Variant const*, Variant*) {
    CancelEdit();
    return true;
  });
  OnMethod(kSend, [this](Variant const* params, Variant* result) {
    if (result) *result = InvokeSend(params);
    return true;
  });
  OnMethod(kGetReadMark, [this](Variant const*, Variant* result) {
    if (result) *result = is_notice_read_;
    return true;
  });
  OnMethod(kIsBlank, [](Variant const* params, Variant* result) {
    if (result) *result = IsBlank(params);
    return true;
  });
  OnMethod(kGetMaxLength, [](Variant const*, Variant* result) {
    if (result) *result = kMaxLength;
    return true;
  });
}

framework::ModelPtr MeetingNoticeBizModel::NoticeModel() const {
  return GetChatModuleModel(runtime_, kMeetingNoticeModelId);
}

void MeetingNoticeBizModel::Init() {
  TypedBizModel::MeetingNotice::ModelImpl::Init();
  const uint64_t self = framework::SubscriberId(this);
  auto on = [self](framework::ModelPtr const& model, std::initializer_list<uint32_t> events,
                   std::function<void(Variant const*)> fn) {
    if (!model) return;
    auto handler = std::make_shared<framework::EventHandler>(std::move(fn));
    for (uint32_t event : events) model->Subscribe(event, self, handler);
  };
  on(NoticeModel(), {Notice::kEventNoticeChanged}, [this](Variant const* p) { OnEventMeetingNoticeUpdated(p); });
  on(NoticeModel(), {Notice::kEventModifyFinished}, [this](Variant const* p) { OnEventModifyFinished(p); });
  on(NoticeModel(), {Notice::kEventReadMark}, [this](Variant const* p) {
    if (p && p->IsBool()) is_notice_read_ = *p;
    PublishReadMark();
  });
  auto meeting = framework::module::GetAppModuleModel(kHostMeetingModel);
  on(meeting, {kMeetingEventJoined, kMeetingEventRoomChanged}, [this](Variant const*) { RefreshNoticeInfo(true); });
  on(meeting, {kMeetingEventLeft}, [this](Variant const* p) { OnEventLeaveComplete(p); });
  auto members = framework::module::GetAppModuleModel(kHostMemberModel);
  on(members, {kMemberEventHostChanged, kMemberEventCoHostChanged}, [this](Variant const* p) { OnEventHostChanged(p); });
  on(members, {kMemberEventSelfInfo}, [this](Variant const* p) { OnEventSelfInfoUpdate(p); });
  on(framework::module::GetAppModuleModel(kNoticeStateModel), {kNoticeStateEventRead}, [this](Variant const* p) {
    if (p && p->IsBool()) is_notice_read_ = *p;
  });
}

void MeetingNoticeBizModel::UnInit() {
  const uint64_t self = framework::SubscriberId(this);
  if (auto notice = NoticeModel()) notice->Unsubscribe(self);
  for (int id : {static_cast<int>(kHostMeetingModel), static_cast<int>(kHostMemberModel), kNoticeStateModel}) {
    if (auto model = framework::module::GetAppModuleModel(id)) model->Unsubscribe(self);
  }
  TypedBizModel::MeetingNotice::ModelImpl::UnInit();
}

// --- the notice in UI form --------------------------------------------------------------

std::string MeetingNoticeBizModel::FormatSendTime(uint64_t send_time, uint64_t now) {
  const QDateTime sent = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(send_time));
  const QDateTime present = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(now));
  const bool same_day = sent.date().year() == present.date().year() &&
                        sent.date().dayOfYear() == present.date().dayOfYear();
  return sent.toString(same_day ? "hh:mm" : "yyyy-MM-dd hh:mm").toStdString();
}

Variant MeetingNoticeBizModel::ShownItems(Variant const& record, std::string* text) {
  Variant items(base::variant::kVariantTypeArray);
  std::string joined;
  Variant const& content = record.Get("notice_content");
  if (content.IsString()) {
    if (!content.AsStr().empty()) {
      items.Add(Variant::Map{{"type", 0}, {"content", content.AsStr()}});
      joined = content.AsStr();
    }
  } else if (content.IsArray()) {
    for (auto const& element : content.AsArray()) {
      const int type = element.GetInt32("item_type", -1);
      if (type < 0) break;
      // Text and links are kept; other kinds of item are not shown.
      if (type != 0 && type != 2) continue;
      const std::string piece = element.GetString("item_content");
      items.Add(Variant::Map{{"type", type}, {"content", piece}});
      joined += piece;
    }
  }
  if (text) *text = std::move(joined);
  return items;
}

void MeetingNoticeBizModel::ConvertNoticeInfo(Variant const& record, Variant& out) {
  is_host_or_cohost_ = SelfHostOrCoHost();
  out = Variant(base::variant::kVariantTypeMap);
  out.Set("can_edit", is_host_or_cohost_);
  out.Set("is_edit", is_edit_);
  out.Set("max_length", kMaxLength);
  out.Set("notice_type", record.GetUint32("notice_type"));
  std::string text;
  Variant items = ShownItems(record, &text);
  out.Set("content_text", text);
  last_content_ = text;
  if (!items.Empty()) {
    out.Set("notice_version", record.GetInteger("notice_version"));
    out.Set("send_time_str",
            FormatSendTime(record.GetUint64("send_time"), static_cast<uint64_t>(util::time::GetServerTimestamp())));
    is_notice_read_ = Variant(record.GetBoolean("is_read"));
    out.Set("sender", record.Get("sender"));
  } else {
    out.Set("notice_version", 0);
    out.Set("send_time_str", "");
    out.Set("content_text", "");
    last_content_.clear();
    is_notice_read_ = Variant(true);
  }
  out.Set("notice_content", std::move(items));
}

void MeetingNoticeBizModel::PublishReadMark() {
  FireEvent(kEventReadMarkChanged, is_notice_read_);
  Variant mark = is_notice_read_;
  InvokeHostModel(kNoticeStateModel, kNoticeStateReadMark, &mark, nullptr);
}

void MeetingNoticeBizModel::RefreshNoticeInfo(bool fire) {
  if (is_edit_) {
    TXLOG_INFO << " block refresh notice when is_edit=true";
    need_refresh_ = true;
    return;
  }
  need_refresh_ = false;
  Variant record;
  if (auto notice = NoticeModel()) notice->Invoke(Notice::kGetNotice, nullptr, &record);
  ConvertNoticeInfo(record, info_);
  if (fire) FireEvent(kEventNoticeInfo, info_);
  PublishReadMark();
}

void MeetingNoticeBizModel::OnEventMeetingNoticeUpdated(Variant const* record) {
  if (is_edit_) {
    // Never under a host who is typing.
    TXLOG_INFO << " block notice update when is_edit=true";
    need_refresh_ = true;
    return;
  }
  ConvertNoticeInfo(record ? *record : Variant(), info_);
  PublishReadMark();
  FireEvent(kEventNoticeInfo, info_);
}

// --- reading and editing ------------------------------------------------------------------

void MeetingNoticeBizModel::InvokeGetAndReadNotice() {
  const int64_t version = info_.GetInteger("notice_version");
  if (version > 0 && !is_notice_read_.AsBoolean()) {
    TXLOG_INFO << " call read notice, notice_version=" << version;
    if (auto notice = NoticeModel()) {
      Variant ask(version);
      notice->Invoke(Notice::kReadNotice, &ask, nullptr);
    }
  } else if (!is_notice_read_.AsBoolean()) {
    // A meeting without a notice reads as read.
    is_notice_read_ = Variant(true);
    PublishReadMark();
  } else {
    TXLOG_INFO << " read notice before";
  }
  if (!info_.Has("notice_content")) {
    is_edit_ = false;
    RefreshNoticeInfo(true);
  }
  // A host who opens an empty notice goes straight to writing one.
  is_edit_ = info_.Get("notice_content").Empty() && SelfHostOrCoHost();
  info_.Set("is_edit", is_edit_);
  FireEvent(kEventNoticeInfo, info_);
  InvokeHostModel(kHostChatMessageModel, kChatMethodMarkNotice, nullptr, nullptr);
}

Variant MeetingNoticeBizModel::StartEdit() {
  if (!SelfHostOrCoHost()) return Variant::Map{{"is_succeed", false}, {"err_msg", ""}};
  is_edit_ = true;
  info_.Set("is_edit", true);
  FireEvent(kEventNoticeInfo, info_);
  return Variant::Map{{"is_succeed", true}};
}

void MeetingNoticeBizModel::CancelEdit() {
  is_edit_ = false;
  info_.Set("is_edit", false);
  if (need_refresh_) {
    RefreshNoticeInfo(true);
  } else {
    FireEvent(kEventNoticeInfo, info_);
  }
}

bool MeetingNoticeBizModel::IsBlank(Variant const* text) {
  if (!text || !text->IsString()) return true;
  return text->AsStr().find_first_not_of(" \n\r\t") == std::string::npos;
}

Variant MeetingNoticeBizModel::InvokeSend(Variant const* text) {
  if (!talvex_common::utils::meetingsettings::IsMeetingNoticeEnable()) {
    TXLOG_INFO << " send notice failed, notice disable";
    return Variant::Map{{"is_succeed", false}, {"err_msg", talvex_common::utils::GetLocalizedString(kTextNoticeDisabled)}};
  }
  if (!SelfHostOrCoHost()) {
    TXLOG_INFO << " send notice failed, user not host or cohost";
    return Variant::Map{{"is_succeed", false}, {"err_msg", talvex_common::utils::GetLocalizedString(kTextNoticeNotHost)}};
  }
  const std::string content = text && text->IsString() ? text->AsStr() : std::string();
  is_clear_notice_ = content.empty();
  bool sent = false;
  if (auto notice = NoticeModel()) {
    Variant ask(content);
    sent = notice->Invoke(Notice::kModifyNotice, &ask, nullptr);
  }
  return Variant::Map{{"is_succeed", sent}, {"err_msg", ""}};
}

void MeetingNoticeBizModel::OnEventModifyFinished(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << " modify finished without a result";
    return;
  }
  const int code = params->GetInt32("code", -1);
  talvex_common::utils::analytics::LogEventWithProperty("notice_send_result", "code", std::to_string(code));
  const bool succeeded = code == 0;
  if (succeeded && is_edit_) {
    is_edit_ = false;
    info_.Set("is_edit", false);
    if (need_refresh_) RefreshNoticeInfo(false);
  }
  FireEvent(kEventSendFinished, Variant::Map{{"is_succeed", succeeded},
                                             {"err_msg", params->GetString("err_msg")},
                                             {"is_clear_notice", is_clear_notice_}});
  if (succeeded) SendNoticeMessageIfNeed();
}

void MeetingNoticeBizModel::SendNoticeMessageIfNeed() {
  // The change came back through the notice model's update first.
  Variant record;
  if (auto notice = NoticeModel()) notice->Invoke(Notice::kGetNotice, nullptr, &record);
  const int64_t version = record.GetInteger("notice_version");
  Variant const& content = record.Get("notice_content");
  if (content.IsNull() || (content.IsString() && content.AsStr().empty()) || (content.IsArray() && content.Empty())) {
    TXLOG_INFO << " no need send notice massage. notice_version: " << version;
    return;
  }
  TXLOG_INFO << " need send notice massage. notice_version: " << version;
  const int type = record.GetInt32("notice_type");
  Variant params = Variant::Map{
      {"conv_type", 2},
      {"receiver_type", talvex_common::utils::webinar::IsMeetingWebinar() ? 5 : 2},
      {"notice_version", version},
      {"notice_type", type},
      {"notice_content", type == 0 ? Variant(info_.GetString("content_text")) : Variant(content.ToJson())}};
  InvokeHostModel(kHostChatMessageModel, kChatMethodSendNoticeMessage, &params, nullptr);
}

// --- the meeting and the role -------------------------------------------------------------

void MeetingNoticeBizModel::OnEventHostChanged(Variant const*) {
  const bool now = SelfHostOrCoHost();
  if (now == is_host_or_cohost_) return;
  TXLOG_INFO << " self host change, old=" << is_host_or_cohost_ << ", new=" << now;
  RefreshNoticeInfo(true);
}

void MeetingNoticeBizModel::OnEventSelfInfoUpdate(Variant const* params) {
  if (!params || !params->IsMap()) return;
  const bool now = params->GetBoolean("is_host") || params->GetBoolean("is_cohost");
  if (now == is_host_or_cohost_) return;
  TXLOG_INFO << " self host change, old=" << is_host_or_cohost_ << ", new=" << now;
  RefreshNoticeInfo(true);
}

void MeetingNoticeBizModel::OnEventLeaveComplete(Variant const*) {
  info_ = Variant(base::variant::kVariantTypeMap);
  last_content_.clear();
  is_notice_read_ = Variant(true);
  is_edit_ = false;
  need_refresh_ = false;
}

}  // namespace chat
