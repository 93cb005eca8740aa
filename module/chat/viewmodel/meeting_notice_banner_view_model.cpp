#include "chat/viewmodel/meeting_notice_banner_view_model.h"

#include "base/log/log.h"
#include "base/util/time_util.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/biz_model/meeting_notice_biz_model.h"
#include "chat/model/meeting_notice_model.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/chat_strings.h"
#include "chat/viewmodel/meeting_notice_view_model.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/module/app_module.h"
#include "framework/navigation/routing.h"
#include "framework/resource/resource.h"

namespace chat {

namespace {
std::string Text(char const* name) { return talvex_common::utils::GetLocalizedString(framework::NameId(name)); }

std::shared_ptr<framework::EventHandler> Handler(std::function<void(Variant const*)> fn) {
  return std::make_shared<framework::EventHandler>(std::move(fn));
}
}  // namespace

MeetingNoticeBannerViewModel::MeetingNoticeBannerViewModel() {
  OnAction(kActionOpen, [this](Variant const*) { Open(); });
  OnAction(kActionDismiss, [this](Variant const*) { Dismiss(); });
}

void MeetingNoticeBannerViewModel::OnViewAttached(Variant const* params) {
  framework::StatefulViewModel::OnViewAttached(params);
  const uint64_t self = framework::SubscriberId(this);
  if (auto notice = GetChatModuleModel(GetModuleRuntime4ATG(), kMeetingNoticeModelId)) {
    RecordSubscribe(notice, this);
    notice->Subscribe(MeetingNoticeModel::kEventNoticeChanged, self, Handler([this](Variant const* record) {
                        Refresh(record ? *record : Variant());
                      }));
  } else {
    TXLOG_WARN << "[notice] no notice model; the banner stays hidden";
  }
  if (auto meeting = framework::module::GetAppModuleModel(kHostMeetingModel)) {
    RecordSubscribe(meeting, this);
    meeting->Subscribe(kMeetingEventJoined, self, Handler([this](Variant const*) { RefreshFromModel(); }));
    meeting->Subscribe(kMeetingEventRoomChanged, self, Handler([this](Variant const*) { RefreshFromModel(); }));
    meeting->Subscribe(kMeetingEventLeft, self, Handler([this](Variant const*) { Refresh(Variant()); }));
  }
  RefreshFromModel();
}

void MeetingNoticeBannerViewModel::RefreshFromModel() {
  Variant record;
  if (auto notice = GetChatModuleModel(GetModuleRuntime4ATG(), kMeetingNoticeModelId)) {
    notice->Invoke(MeetingNoticeModel::kGetNotice, nullptr, &record);
  }
  Refresh(record);
}

void MeetingNoticeBannerViewModel::Refresh(Variant const& record) {
  if (!record.IsNull() && !record.IsMap()) {
    TXLOG_WARN << "[notice] banner: the notice record is not a map";
    return;
  }
  std::string text;
  const bool has_content = !MeetingNoticeBizModel::ShownItems(record, &text).Empty();
  version_ = has_content ? record.GetInteger("notice_version") : 0;
  bool visible = has_content && talvex_common::utils::meetingsettings::IsMeetingNoticeEnable();
  if (visible) {
    // Hidden by the user for exactly this version of this meeting's notice?
    const Variant memory = MeetingNoticeViewModel::ReadBannerMemory();
    visible = !(memory.IsMap() && !memory.GetBoolean("should_show_top_notice", true) &&
                memory.GetInteger("notice_version") == version_);
  }
  if (!visible) {
    Publish(Variant::Map{{"visible", false}});
    return;
  }
  Publish(Variant::Map{
      {"visible", true},
      {"title", Text("chat.notice.title")},
      {"text", text},
      {"sender", record.Get("sender").GetString("nick_name")},
      {"time", MeetingNoticeBizModel::FormatSendTime(record.GetUint64("send_time"),
                                                      static_cast<uint64_t>(util::time::GetServerTimestamp()))},
      {"updated", version_ > 1},
      {"updated_text", Text("chat.notice.banner.updated")},
      {"open_tips", Text("chat.notice.banner.open")},
      {"close_tips", Text("chat.notice.banner.hide")}});
}

void MeetingNoticeBannerViewModel::Publish(Variant banner) {
  Variant const* current = GetPropValue(kPropBanner);
  if (current && *current == banner) return;
  SetPropValue(kPropBanner, std::move(banner));
}

void MeetingNoticeBannerViewModel::Dismiss() {
  if (version_ <= 0) return;
  TXLOG_INFO << "[notice] banner hidden for notice_version=" << version_;
  MeetingNoticeViewModel::WriteBannerMemory(false, version_);
  Publish(Variant::Map{{"visible", false}});
}

void MeetingNoticeBannerViewModel::Open() {
  if (!talvex_common::utils::meetingsettings::IsMeetingNoticeEnable()) {
    ShowToast(0, talvex_common::utils::GetLocalizedString(kTextNoticeDisabled), 2000);
    return;
  }
  framework::NavigateService::Instance()->Navigate(kMeetingNoticePage);
}

}  // namespace chat
