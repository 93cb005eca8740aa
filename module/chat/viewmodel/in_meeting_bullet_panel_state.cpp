// The floating chat's look at each moment: folded or unfolded, immersive,
// in the waiting room, which quick replies work, and its tips (welcome, the
// webinar's system tips, the animated join tips).
#include <QJsonDocument>
#include <QJsonObject>
#include <ctime>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "base/util/string_util.h"
#include "chat/model/chat_message.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/utils.h"
#include "chat/viewmodel/in_meeting_bullet_texts.h"
#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "framework/chat/chat_utils.h"
#include "framework/config/configure_service.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/meeting/member_utils.h"
#include "framework/meeting/security_control.h"
#include "framework/meeting/sidebar_utils.h"
#include "framework/module/app_module.h"

namespace chat {

namespace {
using namespace bullet_text;
namespace analytics = talvex_common::utils::analytics;
namespace webinar = talvex_common::utils::webinar;
namespace settings = talvex_common::utils::meetingsettings;
namespace member = talvex_common::utils::member;

constexpr uint32_t kLifecycleKey = 791421733;
constexpr int kSystemTipsType = 101;
constexpr int kMaxTips = 10;
constexpr int kWelcomeDelayMs = 15000;
constexpr int kTipIntervalMs = 1000;
constexpr int kUnfoldHintSeconds = 4;
constexpr char kFoldGuideKey[] = "chat.fold.bullet.guide.local";
constexpr char kMemberSidebarApp[] = "extension:member.sidebar_tab_in_meeting";
constexpr char kChatSidebarApp[] = "extension:chat.sidebar_tab_in_meeting";
constexpr char kInMeetingPage[] = "talvex://page/inmeeting";


bool IsOnlyHostPolicy(int policy) {
  using namespace talvex::PrivateChatAuthority;
  return policy == kAllowChatOnlyHost || policy == kPanelistOnlyHost || policy == kAttendeeOnlyHost;
}

Variant Remote(char const* key, Variant def) {
  return talvex_common::utils::QueryConfigureService("inmeeting", key, std::move(def));
}

// A nickname as the join tip shows it: the first character, the rest masked.
std::string MaskNickname(std::string const& nickname) {
  const std::wstring wide = util::stringhelp::StringToWString(nickname);
  if (wide.size() <= 1) return nickname;
  return util::stringhelp::UnicodeToUtf8(wide.substr(0, 1) + (wide.size() == 2 ? L"*" : L"**"));
}
}  // namespace

bool InMeetingBulletViewModel::IsUnderChatControl() const {
  return talvex_common::utils::security_control::IsUnderSecurityControl(talvex::SecurityControl::kControlItemChat);
}

std::string InMeetingBulletViewModel::ChatControlText() const {
  return talvex_common::utils::security_control::GetSecurityControlInfo(talvex::SecurityControl::kControlItemChat)
      .GetString("control_text");
}

// Only the host speaks, and the local user is not one of the hosts.
bool InMeetingBulletViewModel::OthersSilenced() const {
  return IsOnlyHostPolicy(settings::GetAllowChatPolicy()) && !member::IsSelfHostOrCoHost();
}

void InMeetingBulletViewModel::SubscribePanelEvents() {
  const uint64_t self = framework::SubscriberId(this);
  auto on = [this](int id, std::initializer_list<uint32_t> events, std::function<void(Variant const*)> fn) {
    SubscribeHostModel(this, id, events, std::move(fn));
  };
  on(kBulletSettingsModel, {8}, [this](Variant const* p) { OnEventMeetingShowBullet(p); });
  on(kBulletSettingsModel, {9}, [this](Variant const* p) { OnEventMeetingNewMsgBullet(p); });
  on(kBulletSettingsModel, {0}, [this](Variant const*) { UpdateQuickReplyDisable(); });
  on(kHostAuthorityModel, {0}, [this](Variant const*) { OnPrivateChatAuthorityChange(); });
  on(647, {13}, [this](Variant const* p) {
    TXLOG_INFO << "params = " << framework::VariantToString(p);
    SetPropValue(kPropDocIsEditState, p ? *p : Variant());
  });
  on(kHostMeetingSettingsModel, {10}, [this](Variant const*) {
    is_immersive_ = true;
    UpdateBulletPanel(false, 10);
  });
  on(kHostMeetingSettingsModel, {11}, [this](Variant const*) {
    is_immersive_ = false;
    UpdateBulletPanel(false, 11);
  });
  if (auto immersive = std::dynamic_pointer_cast<framework::PriorityModel>(
          framework::module::GetAppModuleModel(kHostMeetingSettingsModel))) {
    RecordPrioritySubscribe(framework::module::GetAppModuleModel(kHostMeetingSettingsModel), this);
    immersive->SubscribePriority(10, 101, self,
                                 std::make_shared<framework::PriorityEventHandler>(
                                     [this](Variant const* p, bool& stop) {
                                       bool allow = true;
                                       CheckEnterImmersive(p, allow);
                                       if (!allow) stop = true;
                                     }));
  }
  on(kHostMemberModel, {6, 7}, [this](Variant const*) { UpdateQuickReplyDisable(); });
  on(kHostMeetingModel, {1}, [this](Variant const* p) { OnEventJoinComplete(p); });
  on(kHostMeetingModel, {2}, [this](Variant const* p) { OnEventLeaveComplete(p); });
  on(kHostMeetingModel, {12}, [this](Variant const*) {
    UpdateButtonAbilityState();
    UpdateUiData();
    UpdateBulletPanel(false, 12);
  });
  on(kHostMeetingModel, {13, 14}, [this](Variant const*) { EnterWaitingRoom(); });
  on(kHostMeetingModel, {15}, [this](Variant const*) {
    SetPropValue(kPropWaitingRoomHide, false);
    UpdateBulletPanel(false, 15);
    UpdateUnfoldBtn();
  });
  on(622, {1}, [this](Variant const*) { SetPropValue(kPropViewEnabled, false); });
  on(622, {2}, [this](Variant const*) { SetPropValue(kPropViewEnabled, talvex::ChatUtils::IsMeetingSupportIM(0)); });
  on(591, {4}, [](Variant const* p) { TXLOG_INFO << "enter full screen " << framework::VariantToString(p); });
  on(590, {0}, [this](Variant const*) { RestoreUnsendMessage(); });
  on(kTipsDbModel, {1}, [this](Variant const* p) { OnEventQueryDBTipsInfo(p); });
  on(610, {0}, [this](Variant const*) {
    UpdateQuickReplyDisable();
    if (webinar::IsMeetingWebinar() && !webinar::SelfIsAttendee()) StopSystemTimer();
  });
  on(10054, {0}, [this](Variant const* p) { OnEventNotifyBanner(p); });
  on(kHostChatMessageModel, {31}, [this](Variant const* p) { OnEventReceiveBulletTip(p); });
  on(kHostChatMessageModel, {42}, [this](Variant const* p) {
    if (!p || !p->IsMap()) {
      TXLOG_ERROR << "param is null";
      return;
    }
    if (p->GetInt32("msg_type", -1) == 2) ShowChatJoinTipMsg(p);
  });
  on(kHostChatMessageModel, {44}, [this](Variant const* p) { OnEventIMSupportChanged(p); });
}

void InMeetingBulletViewModel::OnViewAttached(Variant const* params) {
  Base::OnViewAttached(params);
  Subscribe();
  ReadSystemTipConfig();
  Variant query(base::variant::kVariantTypeMap);
  query.Set("tips_type", kSystemTipsType);
  InvokeHostModel(kTipsDbModel, 6, &query, nullptr);
  UpdateButtonAbilityState();
  UpdatePicInPicUiData();
  if (framework::module::GetAppModuleModel(kBulletSettingsModel)) {
    const Variant show = AskHostModel(kBulletSettingsModel, 14);
    if (show.IsMap() && show.Has("is_show_bullet_enabled")) is_show_bullet_ = show.GetBoolean("is_show_bullet_enabled");
    const Variant fresh = AskHostModel(kBulletSettingsModel, 16);
    if (fresh.IsMap() && fresh.Has("is_new_msg_bullet_enabled")) {
      is_new_msg_bullet_ = fresh.GetBoolean("is_new_msg_bullet_enabled");
    }
  }
  fold_guide_flag_ = ReadLocalSetting(kFoldGuideKey, Variant(false)).AsBoolean();
  is_sidebar_member_open_ = talvex_common::utils::sidebar::IsAppOpened(kMemberSidebarApp);
  UpdateBulletPanel(false, 1);
  UpdateUnfoldBtn();
  UpdateUiData();
  OnPrivateChatAuthorityChange();
  last_fold_time_ = NowSeconds();
  if (auto red_packets = framework::module::GetAppModuleModel(1000004)) {
    RecordSubscribe(red_packets, this);
    red_packets->Subscribe(0, framework::SubscriberId(this),
                           std::make_shared<framework::EventHandler>([this](Variant const* p) { OnEventRedPacket(p); }));
  }
  animatable_tip_timer_ = talvex_common::utils::timer::CreateTimer([this] { UpdateBulletAnimationTextTip(); });
  UpdateWebinarRead();
}

void InMeetingBulletViewModel::LifecycleStateChanged(int old_state, int new_state) {
  Base::LifecycleStateChanged(old_state, new_state);
  talvex_common::utils::inmeeting::SetCurrentVmLifecycleState(kLifecycleKey, new_state);
}

// --- fold, unfold, immersive, waiting room ----------------------------------------

void InMeetingBulletViewModel::UpdateBulletPanel(bool fold_changed, int origin) {
  bool immersive = is_immersive_;
  const bool screen_share = AskHostModel(kScreenShareModel, 2).AsBoolean();
  // No immersive look while the local user shares the screen.
  if (screen_share) immersive = false;
  if (fold_changed && !is_show_bullet_) last_fold_time_ = NowSeconds();
  Variant panel(base::variant::kVariantTypeMap);
  panel.Set("show_bulletmsg_panel", is_show_bullet_);
  panel.Set("is_immersive", immersive);
  panel.Set("is_show_emoji", is_show_emoji_);
  panel.Set("is_show_chat", is_show_chat_);
  TXLOG_INFO << "UpdateBulletPanel[" << origin << "] is_show_emoji_->" << is_show_emoji_ << ", is_show_chat_->"
             << is_show_chat_ << ", is_immersive_->" << is_immersive_ << ", screen_share->" << screen_share;
  SetPropValue(kPropShowOrHideBulletMsg, std::move(panel));
  Variant unfolded(is_show_bullet_);
  InvokeHostModel(kPanelStateModel, 0, &unfolded, nullptr);
  SetPropValue(kPropViewEnabled, talvex::ChatUtils::IsMeetingSupportIM(0));
}

void InMeetingBulletViewModel::UpdateUnfoldBtn() {
  bool show = false;
  bool may_flash = true;
  const int64_t now = NowSeconds();
  if (!is_show_bullet_ && !bullet_msg_list_.empty() && now - last_msg_time_ < kUnfoldHintSeconds) {
    show = true;
  } else if (!is_show_bullet_ && now - last_fold_time_ < kUnfoldHintSeconds) {
    show = true;
    may_flash = false;
  }
  if (webinar::IsMeetingWebinar() || show == show_unfold_btn_) return;
  show_unfold_btn_ = show;
  Variant state(base::variant::kVariantTypeMap);
  state.Set("show_unfold_btn", show);
  SetPropValue(kPropUnfoldState, std::move(state));
  if (show && may_flash) SetPropValue(kPropFlashUnfoldBtn, nullptr);
}

void InMeetingBulletViewModel::HandleToggleBullet(Variant const* params) {
  bool want = !is_show_bullet_;
  if (params && params->IsBool()) {
    want = params->AsBoolean();
  } else if (params && !params->IsNull()) {
    TXLOG_ERROR << "ToggleBullet: param is not a bool";
    return;
  }
  if (!talvex::ChatUtils::IsMeetingSupportIM(0)) want = false;
  SetBulletEnabled(want);
  UpdateBulletPanel(true, 2);
  auto const& self = talvex::MeetingContext::Current();
  analytics::LogEventWithProperties(
      is_show_bullet_ ? "bullet_vm_click_the_expand_barrage_btn" : "bullet_vm_click_the_collapse_barrage_btn",
      {{"is_new_msg_bullet_show_visibility", is_new_msg_bullet_ ? "1" : "0"},
       {"screen_sharing", self.screen_sharing ? "1" : "0"},
       {"unread_msg_num", std::to_string(unread_msg_count_)},
       {"meeting_type", webinar::IsMeetingWebinar() ? "1" : "0"},
       {"screen_type", talvex_common::utils::inmeeting::IsInScreenShareMode() ? "0" : "1"}});
  UpdateWebinarRead();
}

void InMeetingBulletViewModel::SetBulletEnabled(bool want) {
  if (!want) is_chat_view_opened_ = false;
  if (is_show_bullet_ == want) return;
  is_show_bullet_ = want;
  Variant value(want);
  InvokeHostModel(kBulletSettingsModel, 13, &value, nullptr);
}

void InMeetingBulletViewModel::EnterWaitingRoom() {
  Variant panel(base::variant::kVariantTypeMap);
  panel.Set("show_bulletmsg_panel", false);
  panel.Set("is_immersive", false);
  panel.Set("is_show_emoji", is_show_emoji_);
  panel.Set("is_show_chat", is_show_chat_);
  SetPropValue(kPropShowOrHideBulletMsg, std::move(panel));
  if (!webinar::IsMeetingWebinar()) {
    Variant state(base::variant::kVariantTypeMap);
    state.Set("show_unfold_btn", false);
    SetPropValue(kPropUnfoldState, std::move(state));
  }
  SetPropValue(kPropWaitingRoomHide, true);
}

void InMeetingBulletViewModel::CheckEnterImmersive(Variant const* params, bool& allow) {
  // The asking model reads the refusal and its reason from the payload.
  auto* out = const_cast<Variant*>(params);
  auto refuse = [&](char const* reason) {
    if (out && out->IsMap()) {
      out->Set("can_enter_immersive_mode", false);
      out->Set("reason", reason);
    }
    allow = false;
  };
  if (is_emoji_panel_open_) refuse("BulletOpenEmojiSelectPanel");
  if (is_chat_view_opened_) refuse("BulletChatViewOpened");
}

// --- abilities, permissions, quick replies ---------------------------------------

void InMeetingBulletViewModel::UpdateButtonAbilityState() {
  if (IsUnderChatControl()) {
    quick_reply_text_enabled_ = quick_reply_emoji_enabled_ = false;
    is_show_chat_ = is_show_emoji_ = true;
    quick_reply_text_tips_ = quick_reply_emoji_tips_ = ChatControlText();
    return;
  }
  if (!talvex::ChatUtils::IsChatEnable()) {
    quick_reply_text_enabled_ = quick_reply_emoji_enabled_ = false;
    is_show_chat_ = true;
    is_show_emoji_ = false;
    quick_reply_text_tips_ = quick_reply_emoji_tips_ = GetLocalizedString(kChatOff);
    return;
  }
  Variant ask(base::variant::kVariantTypeMap);
  Variant abilities;
  if (!InvokeHostModel(kHostMeetingModel, 54, &ask, &abilities)) {
    TXLOG_ERROR << "get ability map call failed";
    return;
  }
  if (!abilities.IsMap() || abilities.Empty()) {
    TXLOG_ERROR << "get ability map failed";
    return;
  }
  auto apply = [&](char const* key, bool& enabled, bool& shown, std::string& tips) {
    Variant const& ability = abilities.Get(key);
    if (ability.IsNull()) {
      TXLOG_WARN << key << " is null";
      return;
    }
    if (!ability.Has("ability_state")) return;
    enabled = shown = talvex::ChatUtils::IsMeetingSupportIM(0);
    tips = GetLocalizedString(kAbilityDefault);
    Variant index(ability.Get("tips_res_index"));
    Variant text;
    if (InvokeHostModel(kTipResourceModel, 0, &index, &text) && text.IsString()) tips = text.AsStr();
  };
  apply("meeting_ability_chat", quick_reply_text_enabled_, is_show_chat_, quick_reply_text_tips_);
  apply("meeting_ability_emoji", quick_reply_emoji_enabled_, is_show_emoji_, quick_reply_emoji_tips_);
}

void InMeetingBulletViewModel::UpdateUiData() {
  Variant ui(base::variant::kVariantTypeMap);
  ui.Set("bullet_quick_reply_text_tips",
         quick_reply_text_enabled_ ? GetLocalizedString(kQuickReplyText) : quick_reply_text_tips_);
  ui.Set("bullet_quick_reply_text_enabled", quick_reply_text_enabled_);
  ui.Set("bullet_quick_reply_emoji_tips",
         quick_reply_emoji_enabled_ ? GetLocalizedString(kQuickReplyEmoji) : quick_reply_emoji_tips_);
  ui.Set("bullet_quick_reply_emoji_enabled", quick_reply_emoji_enabled_);
  ui.Set("bullet_display_view_visible", is_show_chat_ || is_show_emoji_);
  ui.Set("bullet_quick_fold_tips", GetLocalizedString(kFoldTips));
  ui.Set("bullet_quick_unfold_tips", GetLocalizedString(kUnfoldTips));
  ui.Set("bullet_quick_reply_text_default_edit_text", GetLocalizedString(kDefaultEditText));
  std::string placeholder = GetLocalizedString(kPlaceholder);
  if (IsUnderChatControl()) {
    placeholder = ChatControlText();
  } else if (!talvex::ChatUtils::IsChatEnable() || OthersSilenced()) {
    placeholder = GetLocalizedString(kPlaceholderDisabled);
  }
  ui.Set("chat_placeholder_text", placeholder);
  ui.Set("open_chat_btn_title", GetLocalizedString(kOpenChat));
  ui.Set("bullet_arrow_btn_title", GetLocalizedString(kArrowTitle));
  // A webinar's bullets stay until the queue pushes them out; a meeting's fade.
  const bool is_webinar = webinar::IsMeetingWebinar();
  ui.Set("bullet_is_auto_disappear", !is_webinar);
  ui.Set("is_meeting_webinar", is_webinar);
  TXLOG_INFO << "UpdateUiData " << framework::VariantToString(&ui);
  SetPropValue(kPropUiData, std::move(ui));
}

void InMeetingBulletViewModel::UpdateQuickReplyDisable() {
  if (!settings::IsChatPermissionControlReplyEmojiEnable() || !is_join_complete_) return;
  bool disable = false;
  std::string placeholder = GetLocalizedString(kPlaceholder);
  if (IsUnderChatControl()) {
    disable = true;
    placeholder = ChatControlText();
  } else if (!talvex::ChatUtils::IsChatEnable() || OthersSilenced()) {
    disable = true;
    placeholder = GetLocalizedString(kPlaceholderDisabled);
  }
  Variant state(base::variant::kVariantTypeMap);
  state.Set("disable", disable);
  state.Set("chat_placeholder_text", placeholder);
  SetPropValue(kPropQuickReplyDisable, std::move(state));
}

void InMeetingBulletViewModel::OnPrivateChatAuthorityChange() {
  UpdateQuickReplyDisable();
  Variant info(base::variant::kVariantTypeMap);
  bool only_host = false;
  std::string desc;
  const int policy = settings::GetAllowChatPolicy();
  if (IsOnlyHostPolicy(policy)) {
    if (!member::IsSelfHostOrCoHost()) {
      only_host = true;
      desc = GetLocalizedString(kOnlyHostDesc);
    }
  } else if (policy == talvex::PrivateChatAuthority::kAllowChatOnlyToHost) {
    std::string app_id;
    std::string app_uid;
    bool host_found = member::GetHostAppIdAndAppUid(app_id, app_uid);
    if (!host_found) {
      host_found = member::EnumInMeetingUsers(member::GetUserIndexList(1), [](Variant const& m) {
        return m.GetString("role") == "host";
      });
    }
    if (!host_found) {
      only_host = true;
      desc = GetLocalizedString(kNoHostDesc);
    }
  }
  bool forbid = false;
  if (IsUnderChatControl()) {
    forbid = true;
    desc = ChatControlText();
  } else if (!talvex::ChatUtils::IsChatEnable()) {
    forbid = true;
    desc = GetLocalizedString(kChatOff);
  } else {
    forbid = AskHostModel(kHostMemberModel, kMemberMethodSelf).GetBoolean("is_forbid_chat");
    if (forbid) desc = GetLocalizedString(kForbidden);
  }
  info.Set("allow_chat_only_host", only_host);
  info.Set("is_forbid_chat", forbid);
  info.Set("disable_chat_desc", desc);
  SetPropValue(kPropPrivateChatAuthorityInfo, std::move(info));
  UpdateButtonAbilityState();
  UpdateUiData();
}

void InMeetingBulletViewModel::HandleQuickReplyTextClick() {
  Variant const* info = GetPropValue(kPropPrivateChatAuthorityInfo);
  const bool only_host = info ? info->GetBoolean("allow_chat_only_host", true) : true;
  const bool forbid = info ? info->GetBoolean("is_forbid_chat", true) : true;
  const std::string desc = info ? info->GetString("disable_chat_desc") : std::string();
  if ((only_host || forbid) && !desc.empty()) {
    TXLOG_INFO << "quick reply refused: " << desc;
    ShowToast(0, desc, 3000);
    return;
  }
  if (is_sidebar_member_open_) talvex_common::utils::sidebar::OpenApp(kChatSidebarApp, Variant());
  auto const& self = talvex::MeetingContext::Current();
  std::map<std::string, std::string> properties = {{"meeting_type_flags", std::to_string(self.meeting_type_flags)}};
  if (self.trial && self.creator) properties["task_id"] = std::to_string(self.meeting_id);
  analytics::LogEventWithProperties("bullet_vm_click_quick_reply_text", properties);
}

void InMeetingBulletViewModel::HandleQuickReplyEmojiClick() {
  analytics::LogEvent("bullet_vm_click_quick_reply_emoji");
  is_emoji_panel_open_ = !is_emoji_panel_open_;
  if (!CanSendEmoji()) {
    std::string text;
    std::string target;
    const int policy = settings::GetAllowChatPolicy();
    if (IsUnderChatControl()) {
      text = ChatControlText();
    } else if (!settings::IsChatPermissionControlReplyEmojiEnable()) {
      text = GetLocalizedString(kEmojiOff);
    } else if (IsOnlyHostPolicy(policy)) {
      const bool forbid = AskHostModel(kHostMemberModel, kMemberMethodSelf).GetBoolean("is_forbid_chat");
      text = GetLocalizedString(forbid ? kForbidden : kEmojiHostOnly);
      if (!forbid) target = kInMeetingPage;
    } else {
      text = GetLocalizedString(kEmojiNotAllowed);
      target = kInMeetingPage;
    }
    ShowToast(0, text, 3000, 0, "", target);
    is_emoji_panel_open_ = false;
  }
  SetPropValue(kPropShowQuickReplyEmoji, is_emoji_panel_open_);
}

bool InMeetingBulletViewModel::CanSendEmoji() const {
  if (IsUnderChatControl()) return false;
  if (settings::IsChatPermissionControlReplyEmojiEnable()) {
    const Variant answer = AskHostModel(kHostAuthorityModel, 9);
    // The authority model answers with the local user's chat state.
    if (answer.IsBool()) return answer.AsBoolean();
    return answer.IsMap() && !answer.GetBoolean("disable_chat");
  }
  if (webinar::SelfIsAttendee()) return AskHostModel(kBulletSettingsModel, 1).GetBoolean("allow_emoji", true);
  return true;
}

void InMeetingBulletViewModel::HandleEnablePicInPic(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "param null";
    return;
  }
  Variant ask(base::variant::kVariantTypeMap);
  ask.Set("state", params->GetBoolean("switch_on") ? 0 : 1);
  ask.Set("from", 1);
  InvokeHostModel(kPipModel, kPipMethodSetState, &ask, nullptr);
  UpdatePicInPicUiData();
}

void InMeetingBulletViewModel::UpdatePicInPicUiData() {
  const Variant state = AskHostModel(kPipModel, kPipMethodState);
  Variant ui(base::variant::kVariantTypeMap);
  ui.Set("tool_tips", "");
  ui.Set("enable", state.IsMap() && state.Has("state") && state.GetInt32("state") == 0);
  SetPropValue(kPropPicInPicUidata, std::move(ui));
}

// --- settings and meeting events ------------------------------------------------

void InMeetingBulletViewModel::OnEventMeetingShowBullet(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "param is null";
    return;
  }
  is_show_bullet_ = params->GetBoolean("is_show_bullet_enabled", is_show_bullet_);
  UpdateBulletPanel(true, 8);
}

void InMeetingBulletViewModel::OnEventMeetingNewMsgBullet(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "param is null";
    return;
  }
  is_new_msg_bullet_ = params->GetBoolean("is_new_msg_bullet_enabled", is_new_msg_bullet_);
}

void InMeetingBulletViewModel::OnEventNotifyBanner(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "param is null";
    return;
  }
  if (params->GetInt32("notify_type", -1) != 10 || params->GetString("sync_bullet") == "0") return;
  Variant banner(base::variant::kVariantTypeMap);
  banner.Set("banner_id", params->GetInt32("banner_id"));
  banner.Set("update_type", static_cast<int>(kUpdateBanner));
  banner.Set("notify_title", params->GetString("bullet_title"));
  banner.Set("notify_content", params->GetString("bullet_content"));
  SetPropValue(kPropNewBulletMsg, std::move(banner));
}

void InMeetingBulletViewModel::OnEventIMSupportChanged(Variant const*) {
  if (talvex::ChatUtils::IsMeetingSupportIM(0)) {
    is_show_bullet_ = is_new_msg_bullet_ = is_show_chat_ = is_show_emoji_ = true;
  }
  UpdateBulletPanel(false, 44);
}

void InMeetingBulletViewModel::OnEventJoinComplete(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "param is null";
    return;
  }
  if (!talvex::ChatUtils::IsMeetingSupportIM(0)) {
    is_show_bullet_ = is_new_msg_bullet_ = is_show_chat_ = is_show_emoji_ = false;
  }
  if (params->GetInteger("result", -1) != 0) return;
  UpdateBulletPanel(false, 3);
  is_join_complete_ = true;
  UpdateQuickReplyDisable();
  if (!webinar::IsMeetingWebinar()) return;
  UpdateUiData();
  SetBulletEnabled(true);
  const std::string meeting_id = talvex_common::utils::GetStrMeetingId();
  TXLOG_INFO << "join complete, old_meeting_id = " << meeting_id_ << ", new_meeting_id = " << meeting_id;
  if (meeting_id == meeting_id_) return;
  meeting_id_ = meeting_id;
  if (Remote("show_webinar_welcom_tip", Variant(false)).AsBoolean()) ShowWebinarWelcomTips();
  if (Remote("self_join_webinar_barrage_tip", Variant(true)).AsBoolean()) {
    bulletSelfTip();
    if (show_times_ == -1 || (is_join_complete_ && can_show_system_tip_)) CreateSystemTimer();
  }
  if (Remote("show_webinar_welcom_tip_service_delay", Variant(true)).AsBoolean()) {
    welcome_delay_timer_ = talvex_common::utils::timer::CreateTimer([this] {
      ShowWebinarWelcomTips();
      welcome_delay_running_ = false;
      // Dropped on a later turn: the timer is in its own callback here.
      if (welcome_delay_timer_) welcome_delay_timer_->Stop();
    });
    welcome_delay_timer_->Start(kWelcomeDelayMs, 0);
    welcome_delay_running_ = true;
  }
}

void InMeetingBulletViewModel::OnEventLeaveComplete(Variant const*) {
  if (!webinar::IsMeetingWebinar()) return;
  TXLOG_INFO << "leave complete, the join tips stop";
  if (animatable_tip_timer_) animatable_tip_timer_->Stop();
  is_timer_start_ = false;
}

// --- welcome and system tips ----------------------------------------------------

void InMeetingBulletViewModel::ShowWebinarWelcomTips() {
  if (is_welcome_shown_) return;
  const std::string text = talvex_common::utils::QueryConfigureService("inmeeting", "welcom-message", Variant("")).ToString();
  const QJsonDocument json = QJsonDocument::fromJson(QByteArray::fromStdString(text));
  if (!json.isObject()) {
    TXLOG_WARN << "welcome message is no JSON object";
    return;
  }
  const QJsonObject object = json.object();
  Variant tip(base::variant::kVariantTypeMap);
  tip.Set(kWelcomeTitle, object.value("join_welcom_title").toString().toStdString());
  tip.Set(kWelcomeContent, object.value("Join_welcom_content").toString().toStdString());
  TXLOG_INFO << "welcom :" << framework::VariantToString(&tip);
  SetPropValue(kPropWelcomeTip, std::move(tip));
  is_welcome_shown_ = true;
}

void InMeetingBulletViewModel::ShowChatJoinTipMsg(Variant const* params) {
  // The service's own welcome replaces the delayed local one.
  welcome_delay_timer_.reset();
  welcome_delay_running_ = false;
  if (is_welcome_shown_ || !params || !params->IsMap()) return;
  const std::string title = params->GetString("join_welcom_title");
  const std::string content = params->GetString("join_welcom_content");
  if (title.empty() && content.empty()) return;
  Variant tip(base::variant::kVariantTypeMap);
  tip.Set(kWelcomeTitle, title);
  tip.Set(kWelcomeContent, content);
  TXLOG_INFO << "welcom :" << framework::VariantToString(&tip);
  SetPropValue(kPropWelcomeTip, std::move(tip));
}

void InMeetingBulletViewModel::ReadSystemTipConfig() {
  const Variant config = AskHostModel(kTipsDbModel, 3);
  if (!config.IsMap()) return;
  show_times_ = config.GetInteger("show_times", 0);
  show_times_in_meeting_ = config.GetInteger("show_times_in_meeting", 1);
  play_duration_ = config.GetInteger("play_duration", 1);
  system_tip_config_ = config;
}

void InMeetingBulletViewModel::OnEventQueryDBTipsInfo(Variant const* params) {
  can_show_system_tip_ = false;
  if (show_times_ == 0) return;
  if (!params || params->IsNull()) {
    can_show_system_tip_ = true;
  } else if (params->IsArray() && params->Size() > 1) {
    TXLOG_INFO << "[webinar trail tips] params:" << framework::VariantToString(params);
    int64_t count = 0;
    bool usable = true;
    for (auto const& tip : params->AsArray()) {
      const int type = tip.GetInt32("tips_type", -1);
      if (type != kSystemTipsType) {
        TXLOG_WARN << "[webinar trail tips] bullet tips_type:" << type;
        usable = false;
        break;
      }
      ++count;
    }
    if ((usable && count < show_times_) || show_times_ == -1) can_show_system_tip_ = true;
  }
  if (is_join_complete_ && can_show_system_tip_) CreateSystemTimer();
}

void InMeetingBulletViewModel::CreateSystemTimer() {
  if (system_timer_ || play_duration_ <= 0 || show_times_ == 0 || !webinar::SelfIsAttendee()) return;
  system_timer_ = talvex_common::utils::timer::CreateTimer([this] { SystemBulletMsg(); });
  system_timer_->Start(static_cast<int>(play_duration_ * 60000), 1);
}

void InMeetingBulletViewModel::StopSystemTimer() {
  if (system_timer_) system_timer_->Stop();
}

void InMeetingBulletViewModel::SystemBulletMsg() {
  if (show_times_ > 0) {
    Variant record(base::variant::kVariantTypeMap);
    record.Set("meeting_id", talvex_common::utils::GetStrMeetingId());
    record.Set("role_type", webinar::SelfRoleType());
    record.Set("tips_type", kSystemTipsType);
    InvokeHostModel(kTipsDbModel, 7, &record, nullptr);
  }
  ++shown_in_meeting_;
  for (char const* theme : {"theme1", "theme2", "theme3"}) {
    Variant tip(base::variant::kVariantTypeMap);
    tip.Set(kWelcomeTitle, system_tip_config_.GetString(theme));
    tip.Set(kWelcomeContent, "");
    tip.Set(kWelcomeBell, true);
    TXLOG_INFO << "[webinar trail tips] system tips:" << framework::VariantToString(&tip);
    SetPropValue(kPropWelcomeTip, std::move(tip));
  }
  analytics::LogEventWith2Properties("meetingpage_manualim_null_im_null_null_explore", "meeting_id",
                                     talvex_common::utils::GetStrMeetingId(), "userid",
                                     talvex_common::utils::GetSelfAppUid());
  if (show_times_in_meeting_ != -1 && show_times_in_meeting_ <= shown_in_meeting_) StopSystemTimer();
}

// --- animated join tips -----------------------------------------------------------

void InMeetingBulletViewModel::StartTipTimer() {
  if (is_timer_start_ || !animatable_tip_timer_) return;
  TXLOG_INFO << "bullet_animatable_tip_timer_ start";
  animatable_tip_timer_->Start(kTipIntervalMs, 1);
  is_timer_start_ = true;
  UpdateBulletAnimationTextTip();
}

void InMeetingBulletViewModel::OnEventReceiveBulletTip(Variant const* params) {
  if (!params || !params->IsArray() || !webinar::IsMeetingWebinar()) return;
  if (tip_list_.size() >= kMaxTips + 1) return;
  for (auto const& tip : params->AsArray()) {
    if (tip_list_.size() > kMaxTips) break;
    tip_list_.push_back(tip);
  }
  if (!params->Empty()) StartTipTimer();
}

void InMeetingBulletViewModel::bulletSelfTip() {
  const std::string nickname = AskHostModel(kHostMemberModel, kMemberMethodSelf).GetString("nickname");
  Variant tip(base::variant::kVariantTypeMap);
  tip.Set("nickname", MaskNickname(nickname));
  tip_list_.push_back(std::move(tip));
  StartTipTimer();
}

void InMeetingBulletViewModel::UpdateBulletAnimationTextTip() {
  if (!is_timer_start_) {
    TXLOG_INFO << "is_timer_start_ = " << is_timer_start_;
    return;
  }
  ++tip_tick_count_;
  if (!tip_list_.empty()) {
    tip_idle_count_ = 0;
    // The first tip stands two seconds.
    if (tip_shown_count_ == 1 && tip_tick_count_ == 2) return;
    if (tip_shown_count_ < kMaxTips + 1) {
      Variant tip = std::move(tip_list_.front());
      tip_list_.pop_front();
      ++tip_shown_count_;
      FirePropForBulletTipList(&tip);
    } else {
      tip_list_.clear();
      HiddenJoinTip();
    }
    return;
  }
  if (++tip_idle_count_ == 3) {
    tip_idle_count_ = 0;
    HiddenJoinTip();
  }
}

void InMeetingBulletViewModel::FirePropForBulletTipList(Variant const* tip) {
  if (!tip || tip->IsNull()) {
    TXLOG_ERROR << "params is nullptr !!!";
    return;
  }
  Variant item(base::variant::kVariantTypeMap);
  item.Set(kAnimatableNickname, tip->GetString("nickname"));
  item.Set(kAnimatableRole, "");
  item.Set(kAnimatableColor, "");
  item.Set(kAnimatableTip, GetLocalizedString(kJoinTip));
  item.Set(kAnimatableTime, 1);
  SetPropValue(kPropAnimatableTextItem, std::move(item));
}

void InMeetingBulletViewModel::HiddenJoinTip() {
  TXLOG_INFO << "hide the join tips";
  tip_tick_count_ = 0;
  tip_shown_count_ = 0;
  SetPropValue(kPropHideAnimatableTip, nullptr);
  if (animatable_tip_timer_) animatable_tip_timer_->Stop();
  is_timer_start_ = false;
}

}  // namespace chat
