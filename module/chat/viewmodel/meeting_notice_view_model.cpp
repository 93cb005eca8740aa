#include "chat/viewmodel/meeting_notice_view_model.h"

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/biz_model/meeting_notice_biz_model.h"
#include "chat/model/meeting_notice_model.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/meeting_context.h"
#include "framework/navigation/routing.h"
#include "framework/ui/ui_service.h"

namespace chat {

namespace {
namespace analytics = talvex_common::utils::analytics;
using Biz = MeetingNoticeBizModel;

constexpr char kInfoVersion[] = "MeetingNoticeMeetingNoticeInfoFields_kIntegerNoticeVersion";
constexpr char kInfoMaxLength[] = "MeetingNoticeMeetingNoticeInfoFields_kIntegerMaxLength";
constexpr char kInfoSendTime[] = "MeetingNoticeMeetingNoticeInfoFields_kStringSendTimeStr";
constexpr char kInfoCanEdit[] = "MeetingNoticeMeetingNoticeInfoFields_kBooleanCanEdit";
constexpr char kInfoIsEdit[] = "MeetingNoticeMeetingNoticeInfoFields_kBooleanIsEdit";
constexpr char kInfoHaveContent[] = "MeetingNoticeMeetingNoticeInfoFields_kBooleanHaveNoticeContent";
constexpr char kInfoContent[] = "MeetingNoticeMeetingNoticeInfoFields_kArrayNoticeContent";
constexpr char kInfoContentType[] = "MeetingNoticeMeetingNoticeInfoFields_kIntegerNoticeContentType";
constexpr char kInfoContentText[] = "MeetingNoticeMeetingNoticeInfoFields_kStringNoticeContentContent";

std::string Text(char const* name) { return talvex_common::utils::GetLocalizedString(framework::NameId(name)); }

// Items of `type`/`content` (or `item_type`/`item_content`) as the dialog reads them.
Variant SchemaItems(Variant const& items, char const* type_key, char const* content_key) {
  Variant out(base::variant::kVariantTypeArray);
  if (!items.IsArray()) return out;
  for (auto const& item : items.AsArray()) {
    if (!item.IsMap()) continue;
    out.Add(Variant::Map{{kInfoContentType, item.GetInt32(type_key)}, {kInfoContentText, item.GetString(content_key)}});
  }
  return out;
}
}  // namespace

MeetingNoticeViewModel::MeetingNoticeViewModel() {
  OnAction(kActionStartEdit, [this](Variant const*) { HandleStartEdit(); });
  OnAction(kActionCancelEdit, [this](Variant const* params) { HandleCancelEdit(params); });
  OnAction(kActionSend, [this](Variant const* params) { HandleSend(params); });
  OnAction(kActionShowWebView, [this](Variant const* params) { HandleShowWebView(params); });
}
MeetingNoticeViewModel::~MeetingNoticeViewModel() = default;

Variant MeetingNoticeViewModel::CallBiz(uint32_t method, Variant const* params) {
  auto biz = GetChatModuleModel(GetModuleRuntime4ATG(), kMeetingNoticeBizModelId);
  Variant result;
  if (!biz || !biz->Invoke(method, params, &result)) {
    TXLOG_WARN << "[notice] the notice's rule model did not answer method " << method;
    return Variant();
  }
  return result;
}

void MeetingNoticeViewModel::OnViewAttached(Variant const* params) {
  framework::StatefulViewModel::OnViewAttached(params);
  SetPropValue(kPropUiData, Variant::Map{{"MeetingNoticeUiDataFields_kStringTitleStr", Text("chat.notice.title")},
                                         {"MeetingNoticeUiDataFields_kStringCancelStr", Text("chat.notice.cancel")},
                                         {"MeetingNoticeUiDataFields_kStringEditStr", Text("chat.notice.edit")},
                                         {"MeetingNoticeUiDataFields_kStringSendStr", Text("chat.notice.send")},
                                         {"MeetingNoticeUiDataFields_kStringPlaceholderStr",
                                          Text("chat.notice.placeholder")},
                                         {"MeetingNoticeUiDataFields_kStringSetTopDisplayStr",
                                          Text("chat.notice.set_top")},
                                         {"empty_notice_tips", Text("chat.notice.empty")},
                                         {"notice_len_over_limit_tips", Text("chat.notice.too_long")}});
  if (auto biz = GetChatModuleModel(GetModuleRuntime4ATG(), kMeetingNoticeBizModelId)) {
    RecordSubscribe(biz, this);
    const uint64_t self = framework::SubscriberId(this);
    biz->Subscribe(Biz::kEventNoticeInfo, self,
                   std::make_shared<framework::EventHandler>([this](Variant const* p) { OnEventNoticeInfo(p); }));
    biz->Subscribe(Biz::kEventSendFinished, self, std::make_shared<framework::EventHandler>([this](Variant const* p) {
                     OnEventSendNoticeComplete(p);
                   }));
  }
  CallBiz(Biz::kGetAndReadNotice);
}

void MeetingNoticeViewModel::OnViewDetached() {
  if (close_timer_) close_timer_->Stop();
  framework::StatefulViewModel::OnViewDetached();
}

void MeetingNoticeViewModel::OnEventNoticeInfo(Variant const* info) {
  if (!info || !info->IsMap()) return;
  Variant const& items = info->Get("notice_content");
  has_notice_content_ = items.IsArray() && !items.Empty();
  Variant out = Variant::Map{{kInfoVersion, info->GetInteger("notice_version")},
                             {kInfoMaxLength, info->GetInt32("max_length", Biz::kMaxLength)},
                             {kInfoSendTime, info->GetString("send_time_str")},
                             {kInfoCanEdit, info->GetBoolean("can_edit")},
                             {kInfoIsEdit, info->GetBoolean("is_edit")},
                             {kInfoHaveContent, has_notice_content_},
                             {kInfoContent, SchemaItems(items, "type", "content")}};
  if (info->Has("sender")) out.Set("sender", info->Get("sender"));
  SetPropValue(kPropNoticeInfo, std::move(out));
}

void MeetingNoticeViewModel::HandleStartEdit() {
  TXLOG_INFO << " user click edit";
  const Variant answer = CallBiz(Biz::kStartEdit);
  if (!answer.GetBoolean("is_succeed")) {
    ShowToast(0, answer.GetString("err_msg"), 3000, 1, "", "");
    return;
  }
  analytics::LogEvent("inmeeting_im_null_notice_null_null_edit");
}

void MeetingNoticeViewModel::HandleCancelEdit(Variant const* text) {
  TXLOG_INFO << " user click cancel";
  Variant current = text && text->IsString() ? *text : Variant("");
  if (CallBiz(Biz::kCompareWithCurrent, &current).GetBoolean("is_succeed")) {
    analytics::LogEvent("inmeeting_im_null_notice_null_null_cancel");
    CallBiz(Biz::kCancelEdit);
    return;
  }
  // Changes would be lost: ask first.
  std::weak_ptr<framework::ViewModel> alive = weak_from_this();
  AlertBuilder(this)
      .SetType(2)
      .SetTitle(Text("chat.notice.cancel_confirm"))
      .SetPositiveText(Text("chat.notice.cancel_exit"))
      .SetNegativeText(Text("chat.notice.cancel_stay"))
      .SetCustomViewData(Variant::Map{{"center_top_level", true}})
      .SetInteractiveFunc([this, alive](long, int button, Variant*) {
        if (button != framework::kAlertButtonPositive || alive.expired()) return;
        TXLOG_INFO << " user click cancel -> exit";
        analytics::LogEvent("inmeeting_im_null_notice_null_null_cancel");
        CallBiz(Biz::kCancelEdit);
      })
      .Show();
}

void MeetingNoticeViewModel::HandleSend(Variant const* text) {
  if (!text || !text->IsString()) {
    TXLOG_ERROR << "user send notice content is null or varient type is not string";
    return;
  }
  std::string content = text->AsStr();
  if (CallBiz(Biz::kIsBlank, text).AsBoolean()) {
    if (!has_notice_content_) {
      // Nothing to clear.
      TXLOG_INFO << "notice content is cannot empty";
      ShowToast(0, Text("chat.notice.empty"), 3000, 1, "", "");
      return;
    }
    TXLOG_INFO << "last notice is not empty, and send notice is empty, so clear";
    content.clear();
  }
  Confirm(content);
}

void MeetingNoticeViewModel::Confirm(std::string const& text) {
  const bool clear = text.empty();
  std::weak_ptr<framework::ViewModel> alive = weak_from_this();
  AlertBuilder(this)
      .SetType(2)
      .SetTitle(Text(clear ? "chat.notice.clear_confirm" : "chat.notice.send_confirm"))
      .SetPositiveText(Text(clear ? "chat.notice.clear" : "chat.notice.send"))
      .SetNegativeText(Text("chat.notice.cancel"))
      .SetCustomViewData(Variant::Map{{"center_top_level", true}})
      .SetUseElideText(false)
      .SetInteractiveFunc([this, alive, text](long, int button, Variant*) {
        if (button != framework::kAlertButtonPositive || alive.expired()) return;
        TXLOG_INFO << " user click send -> comfirm";
        Variant content(text);
        const Variant answer = CallBiz(Biz::kSend, &content);
        if (answer.GetBoolean("is_succeed")) {
          analytics::LogEvent("inmeeting_im_null_notice_null_null_release");
          ShowLoading("");
        } else {
          ShowToast(0, answer.GetString("err_msg"), 3000, 1, "", "");
        }
      })
      .Show();
}

void MeetingNoticeViewModel::OnEventSendNoticeComplete(Variant const* result) {
  DisposeLoading();
  if (!result || !result->IsMap()) return;
  const bool succeeded = result->GetBoolean("is_succeed");
  const bool clear = result->GetBoolean("is_clear_notice");
  TXLOG_INFO << " send notice complete with: ret=" << succeeded << ", is_clear_notice=" << clear;
  if (!succeeded) {
    std::string text = result->GetString("err_msg");
    if (text.empty()) text = Text(clear ? "chat.notice.clear_failed" : "chat.notice.send_failed");
    ShowToast(0, text, 3000, 1, "", "");
    return;
  }
  ShowToast(0, Text(clear ? "chat.notice.cleared" : "chat.notice.sent"), 3000, 1, "", "");
  Variant record;
  if (auto notice = GetChatModuleModel(GetModuleRuntime4ATG(), kMeetingNoticeModelId)) {
    notice->Invoke(MeetingNoticeModel::kGetNotice, nullptr, &record);
  }
  WriteBannerMemory(true, record.GetInteger("notice_version"));
  if (close_timer_) close_timer_->Stop();
  std::weak_ptr<framework::ViewModel> alive = weak_from_this();
  close_timer_ = talvex_common::utils::timer::CreateTimer([this, alive] {
    if (!alive.expired()) SetPropValue(kPropClose, nullptr);
  });
  close_timer_->Start(kCloseDelayMs, 0);
}

void MeetingNoticeViewModel::HandleShowWebView(Variant const* url) {
  if (!url || !url->IsString()) return;
  TXLOG_INFO << " show url in notice content, url=" << url->AsStr();
  // Only web addresses open; anything else in a notice is text.
  const std::string address = WebAddressOf(url->AsStr());
  if (address.empty()) return;
  framework::NavigateService::Instance()->OpenWebDialog(Variant::Map{{"url", address}});
}

Variant MeetingNoticeViewModel::ReadBannerMemory() {
  const std::string meeting = talvex_common::utils::GetStrMeetingId();
  if (meeting.empty() || meeting == "0") return Variant();
  const Variant stored = ReadLocalSetting(kBannerMemoryKey, Variant(""));
  Variant map;
  if (!stored.IsString() || !map.FromJsonStr(stored.AsStr().c_str()) || !map.IsMap()) return Variant();
  return map.Get(meeting);
}

void MeetingNoticeViewModel::WriteBannerMemory(bool should_show, int64_t notice_version) {
  const std::string meeting = talvex_common::utils::GetStrMeetingId();
  if (meeting.empty() || meeting == "0") return;
  const Variant stored = ReadLocalSetting(kBannerMemoryKey, Variant(""));
  Variant map(base::variant::kVariantTypeMap);
  if (stored.IsString() && !stored.AsStr().empty()) {
    Variant parsed;
    if (parsed.FromJsonStr(stored.AsStr().c_str()) && parsed.IsMap()) map = parsed;
  }
  map.Set(meeting, Variant::Map{{"should_show_top_notice", should_show}, {"notice_version", notice_version}});
  WriteLocalSetting(kBannerMemoryKey, Variant(map.ToJson()));
}

// --- a notice of the chat's history ------------------------------------------------------

void HistoryMeetingNoticeViewModel::OnViewAttached(Variant const* params) {
  framework::StatefulViewModel::OnViewAttached(params);
  if (params && params->IsMap() && params->Get("msg_id").IsString()) UpdateNoticeInfo(params->GetString("msg_id"));
}

void HistoryMeetingNoticeViewModel::UpdateNoticeInfo(std::string const& msg_id) {
  auto notice = GetChatModuleModel(GetModuleRuntime4ATG(), kMeetingNoticeModelId);
  Variant ask = Variant::Map{{"msg_id", msg_id}};
  Variant answer;
  if (!notice || !notice->Invoke(MeetingNoticeModel::kGetHistoryNotice, &ask, &answer)) {
    TXLOG_ERROR << "model func return false.";
    return;
  }
  if (!talvex::ChatUtils::GetMsgInfoPtrById(msg_id)) {
    TXLOG_ERROR << "message not found, with msg_id=" << msg_id;
    return;
  }
  Variant const& items = answer.Get("msg_content");
  SetPropValue(kPropNoticeInfo, Variant::Map{{kInfoMaxLength, answer.GetInt32("max_len")},
                                             {kInfoSendTime, answer.GetString("message_time")},
                                             {kInfoCanEdit, false},
                                             {kInfoIsEdit, false},
                                             {kInfoHaveContent, items.IsArray() && !items.Empty()},
                                             {kInfoContent, SchemaItems(items, "item_type", "item_content")},
                                             {"sender", answer.Get("sender")}});
}

}  // namespace chat
