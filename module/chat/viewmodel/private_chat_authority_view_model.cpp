#include "chat/viewmodel/private_chat_authority_view_model.h"

#include <map>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/chat_strings.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/config/configure_service.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/meeting/member_utils.h"
#include "framework/module/app_module.h"
#include "framework/navigation/routing.h"

namespace chat {

namespace {
namespace analytics = talvex_common::utils::analytics;
namespace settings = talvex_common::utils::meetingsettings;

constexpr int kHostSettingsEventModel = 523;
constexpr int kHostChatControlModel = 530;
constexpr uint32_t kChatControlManualCheckState = 8;
constexpr uint32_t kChatControlSensitiveWords = 9;
constexpr char kTitleColor[] = "#8A8F99";
constexpr char kOptionColor[] = "#1F2329";
constexpr char kFirstTipKey[] = "im.chat_btn_tips_show";
constexpr char kManualCheckPage[] = "talvex://page/chat_control/manual_check";
}  // namespace

uint32_t PrivateChatAuthorityViewModel::GetWordingStrIDByPolicy(int id) {
  static const std::map<int, uint32_t> table = [] {
    static constexpr char const* kNames[] = {
        "chat.authority.policy.0",  "chat.authority.policy.1",  "chat.authority.policy.2",
        "chat.authority.policy.3",  "chat.authority.policy.4",  "chat.authority.policy.5",
        "chat.authority.policy.6",  "chat.authority.policy.7",  "chat.authority.policy.8",
        "chat.authority.policy.9",  "chat.authority.policy.10", "chat.authority.policy.11",
        "chat.authority.policy.12", "chat.authority.policy.13"};
    std::map<int, uint32_t> t;
    for (int i = 0; i < 14; ++i) t[i] = framework::NameId(kNames[i]);
    return t;
  }();
  auto it = table.find(id);
  if (it == table.end()) {
    TXLOG_ERROR << "need check param policy=" << id << ", no exist";
    return 0;
  }
  return it->second;
}

PrivateChatAuthorityViewModel::PrivateChatAuthorityViewModel() {
  OnAction(kActionSelectAllowChat, [this](Variant const* params) { HandleSelectAllowChat(params); });
  OnAction(kActionCancelSelect, [](Variant const*) { analytics::LogEvent("private_chat_authority_select_cancel"); });
  OnAction(kActionExploreMenu,
           [](Variant const*) { analytics::LogEvent("meetingpage_im_null_chatsetting_null_null_explore"); });
}

void PrivateChatAuthorityViewModel::OnViewAttached(Variant const* params) {
  framework::StatefulViewModel::OnViewAttached(params);
  auto handler = std::make_shared<framework::EventHandler>([this](Variant const* p) { OnEventRebuild(p); });
  const uint64_t self = framework::SubscriberId(this);
  if (auto host_settings = framework::module::GetAppModuleModel(kHostSettingsEventModel)) {
    RecordSubscribe(host_settings, this);
    host_settings->Subscribe(0, self, handler);
  }
  if (auto members = framework::module::GetAppModuleModel(kHostMemberModel)) {
    RecordSubscribe(members, this);
    members->Subscribe(6, self, handler);
    members->Subscribe(7, self, handler);
  }
  BuildMenu();
  ShowFirstTip();
}

void PrivateChatAuthorityViewModel::OnEventRebuild(Variant const*) { BuildMenu(); }

void PrivateChatAuthorityViewModel::AddTitle(Variant& list, int title_type, uint32_t text_id) const {
  if (!list.Empty()) {
    Variant separator(base::variant::kVariantTypeMap);
    separator.Set("type", kItemSeparator);
    list.Add(std::move(separator));
  }
  Variant title(base::variant::kVariantTypeMap);
  title.Set("type", kItemTitle);
  title.Set("title_type", title_type);
  title.Set("wording", GetLocalizedString(text_id));
  title.Set("color", kTitleColor);
  list.Add(std::move(title));
}

void PrivateChatAuthorityViewModel::AddOption(Variant& list, int id, int checked_policy) const {
  Variant item(base::variant::kVariantTypeMap);
  item.Set("id", id);
  item.Set("wording", GetLocalizedString(GetWordingStrIDByPolicy(id)));
  item.Set("checked", id == checked_policy);
  item.Set("type", kItemOption);
  item.Set("color", kOptionColor);
  list.Add(std::move(item));
}

void PrivateChatAuthorityViewModel::BuildMenu() {
  Variant list(base::variant::kVariantTypeArray);
  if (talvex_common::utils::member::IsSelfHostOrCoHost()) {
    if (!talvex_common::utils::webinar::IsMeetingWebinar()) {
      const int policy = settings::GetAllowChatPolicy();
      AddTitle(list, kTitleScope, kTextAuthorityTitleScope);
      for (int id = 0; id <= 3; ++id) AddOption(list, id, policy);
      AddTitle(list, kTitleWaitingRoom, kTextAuthorityTitleWaitingRoom);
      AddOption(list, kMenuWaitingRoom, settings::GetWaitingRoomChatPolicy() == 1 ? kMenuWaitingRoom : -1);
    } else {
      const int panelist = settings::GetPanelistChatPolicy();
      AddOption(list, kMenuSensitiveWords, panelist);
      const Variant manual_check =
          talvex_common::utils::QueryConfigureService("meeting", "meeting-ability-chat-manual-check", Variant(2));
      if (manual_check.IsInteger() && manual_check.AsInteger() == 1) {
        AddOption(list, kMenuManualCheck, panelist);
        if (auto control = framework::module::GetAppModuleModel(kHostChatControlModel)) {
          control->Invoke(kChatControlManualCheckState, nullptr, nullptr);
        }
      }
      AddTitle(list, kTitlePanelists, kTextAuthorityTitlePanelists);
      for (int id = 4; id <= 7; ++id) AddOption(list, id, panelist);
      AddTitle(list, kTitleAttendees, kTextAuthorityTitleAttendees);
      const int attendee = settings::GetAttendeeChatPolicy();
      for (int id = 8; id <= 10; ++id) AddOption(list, id, attendee);
    }
  }
  if (list.Empty()) {
    SetPropValue(kPropMenuEmpty, nullptr);
    return;
  }
  SetPropValue(kPropMenuList, std::move(list));
}

void PrivateChatAuthorityViewModel::ShowFirstTip() {
  if (!talvex_common::utils::webinar::IsMeetingWebinar()) return;
  if (ReadLocalSetting(kFirstTipKey, Variant(false)).AsBoolean()) return;
  SetPropValue(kPropFirstTip, GetLocalizedString(kTextAuthorityFirstTip));
  WriteLocalSetting(kFirstTipKey, Variant(true));
}

void PrivateChatAuthorityViewModel::ReportScope(int id) {
  static const std::map<int, char const*> kMeetingEvents = {
      {0, "private_chat_authority_select_normal"},
      {1, "private_chat_authority_select_only_public"},
      {2, "private_chat_authority_select_only_to_host"},
      {3, "private_chat_authority_select_only_host"}};
  // Kept as the client has always reported it: a host reports "2", and "1"
  // never goes out.
  std::string webinar_role = "0";
  if (talvex::ChatUtils::IsSelfHost()) webinar_role = "1";
  if (talvex::ChatUtils::IsSelfHost()) webinar_role = "2";
  if (id >= 4 && id <= 7) {
    analytics::LogEventWith2Properties("meetingpage_im_null_chatsetting_null_panelist_click", "ope_type",
                                       std::to_string(id - 3), "webinar_role", webinar_role);
  } else if (id >= 8 && id <= 10) {
    analytics::LogEventWith2Properties("meetingpage_im_null_chatsetting_null_attendee_click", "attendee_IM_range",
                                       std::to_string(id - 7), "webinar_role", webinar_role);
  } else if (auto it = kMeetingEvents.find(id); it != kMeetingEvents.end()) {
    analytics::LogEvent(it->second);
  }
}

void PrivateChatAuthorityViewModel::HandleSelectAllowChat(Variant const* params) {
  if (!params) {
    TXLOG_ERROR << "params is null, need check!";
    return;
  }
  if (!params->IsMap() || !params->Get("id").IsInteger()) {
    TXLOG_ERROR << "select allow chat without an id: " << framework::VariantToString(params);
    return;
  }
  const int id = params->GetInt32("id");
  switch (id) {
    case kMenuWaitingRoom: {
      const uint32_t stored = settings::GetWaitingRoomChatPolicy();
      const uint32_t value = stored == 0 ? 1 : stored == 1 ? 0 : stored;
      settings::SetWaitingRoomChatPolicy(value);
      analytics::LogEventWithProperty(
          "meetingpage_im_null_authorityset_authorityset_waittingroomsprivatechat_click", "set_result",
          std::to_string(value));
      break;
    }
    case kMenuSensitiveWords: {
      Variant data;
      if (auto control = framework::module::GetAppModuleModel(kHostChatControlModel)) {
        control->Invoke(kChatControlSensitiveWords, nullptr, &data);
      }
      Variant dialog(base::variant::kVariantTypeMap);
      dialog.Set("url", data.IsMap() ? data.GetString("url") : std::string());
      dialog.Set("show_max_btn", false);
      dialog.Set("fix_size", true);
      dialog.Set("wnd_size_width", 380);
      dialog.Set("wnd_size_height", 300);
      dialog.Set("web_view_title", GetLocalizedString(kTextAuthoritySensitiveWordsTitle));
      dialog.Set("medium_window_level", true);
      dialog.Set("hide_toolbar", true);
      framework::NavigateService::Instance()->OpenWebDialog(dialog);
      analytics::LogEvent("meetingpage_im_setting_sensitivewords_click");
      return;
    }
    case kMenuManualCheck:
      framework::NavigateService::Instance()->Navigate(kManualCheckPage);
      return;
    default:
      ReportScope(id);
      settings::SetAllowChatPolicy(id);
      analytics::LogEvent("chatting_private_chat_authority_click");
      break;
  }
  // The tick follows the choice at once.
  BuildMenu();
}

}  // namespace chat
