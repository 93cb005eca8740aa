// The floating chat's message flow: what arrives, the pacing queue, unread
// counting, shielding, red packets, sending from the quick-reply bar and the
// clicks on bullets.
#include "chat/viewmodel/in_meeting_bullet_view_model.h"

#include <algorithm>
#include <ctime>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "base/util/string_util.h"
#include "base/util/time_util.h"
#include "chat/biz_model/chat_biz_model.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/model/chat_message.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/chat_strings.h"
#include "chat/util/utils.h"
#include "chat/viewmodel/in_meeting_bullet_texts.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/meeting/member_utils.h"
#include "framework/meeting/private_chat_record.h"
#include "framework/meeting/sidebar_utils.h"
#include "framework/module/app_module.h"
#include "framework/navigation/routing.h"

namespace chat {

namespace {
namespace analytics = talvex_common::utils::analytics;
namespace webinar = talvex_common::utils::webinar;
using ChatModel = TypedBizModel::Chat::ModelImpl;
using namespace bullet_text;

constexpr int kRedPacketModel = 1000004;
constexpr int kChatControlModel = 530;
constexpr uint32_t kEventReceived = 8;
constexpr uint32_t kEventSendResult = 16;
constexpr uint32_t kEventRecall = 18;
constexpr uint32_t kEventUnreadChanged = 15;
constexpr uint32_t kEventUnreadChanged2 = 32;
constexpr int kMessagePriority = 101;
constexpr int kUnreadPriority = 1;
constexpr uint32_t kMethodWebinarUnread = 46;
constexpr uint32_t kMethodMarkWebinarRead = 12;
constexpr uint32_t kMethodShieldCheck = 4;
constexpr uint32_t kMethodPrivateConvId = 3;
// The chat state model's switch-to-private-chat flag.
constexpr uint32_t kGetSwitchToPrivate = ChatModel::kHasSecondMsgId;
constexpr uint32_t kSetSwitchToPrivate = ChatModel::kSetTipsPending;
constexpr int64_t kClickTargetLifeMs = 5000;
constexpr unsigned kToastMs = 2000;

constexpr char kChatSidebarApp[] = "extension:chat.sidebar_tab_in_meeting";
constexpr char kChatPage[] = "talvex://page/inmeeting/chat";


std::shared_ptr<framework::EventHandler> Handler(std::function<void(Variant const*)> fn) {
  return std::make_shared<framework::EventHandler>(std::move(fn));
}
}  // namespace

InMeetingBulletViewModel::InMeetingBulletViewModel() {
  OnAction(kActionSendMsg, [this](Variant const* params) { HandleSendMsg(params); });
  OnAction(kActionSetViewVisible, [this](Variant const* params) {
    if (params && params->IsBool())
      is_view_visible_ = params->AsBoolean();
    else
      TXLOG_ERROR << "SetViewVisible: param is not a bool";
  });
  OnAction(kActionRedPacketClick, [this](Variant const* params) {
    HandleRedPacketClick(kActionRedPacketClick, params, "red_packet_click_in_meeting_bullet");
  });
  OnAction(kActionRedPacketReceiptClick, [this](Variant const* params) {
    HandleRedPacketClick(kActionRedPacketReceiptClick, params, "red_packet_click_in_meeting_recipient_bullet");
  });
  OnAction(kActionBulletClick, [this](Variant const*) { HandleBulletClick(); });
  OnAction(kActionNoticeBulletClick, [this](Variant const*) { HandleNoticeBulletClick(); });
  OnAction(kActionCheckMsgShield, [this](Variant const* params) { HandleIsMsgShield(params); });
  OnAction(kActionScrollBottom, [this](Variant const* params) { HandleScrollBottom(params); });
  OnAction(kActionOpenChatPage, [this](Variant const* params) { HandleOpenChatPage(params); });
  OnAction(kActionCacheUnsendMessage, [this](Variant const* params) { HandleCacheBulletUnsendMessage(params); });
  OnAction(kActionNewMsgTipClick, [this](Variant const*) {
    analytics::LogEvent("im_null_null_barrage_new_null_click");
    SetPropValue(kPropUnreadMsgShow, nullptr);
  });
  OnAction(kActionBulletSlide, [](Variant const*) { analytics::LogEvent("im_null_null_barrage_null_null_slide"); });
  OnAction(kActionToggleBullet, [this](Variant const* params) { HandleToggleBullet(params); });
  OnAction(kActionHoverHotZone, [](Variant const*) { analytics::LogEvent("bullet_vm_pc_hover_barrage_hot_zone"); });
  OnAction(kActionQuickReplyTextClick, [this](Variant const*) { HandleQuickReplyTextClick(); });
  OnAction(kActionCloseQuickReplyText, [](Variant const*) { analytics::LogEvent("bullet_vm_close_quick_reply_text"); });
  OnAction(kActionQuickReplyEmojiClick, [this](Variant const*) { HandleQuickReplyEmojiClick(); });
  OnAction(kActionCloseQuickReplyEmoji, [this](Variant const*) {
    is_emoji_panel_open_ = false;
    analytics::LogEvent("bullet_vm_close_quick_reply_emoji");
  });
  OnAction(kActionEnablePicInPic, [this](Variant const* params) { HandleEnablePicInPic(params); });
  OnAction(kActionGetPicInPicTips, [this](Variant const* params) { HandleGetPicInPicTips(params); });
  OnAction(kActionSetChatPanelState, [this](Variant const* params) { HandleSetChatPanelState(params); });
  OnAction(kActionSetChatViewOpened, [this](Variant const* params) {
    if (params && params->IsBool())
      is_chat_view_opened_ = params->AsBoolean();
    else
      TXLOG_ERROR << "SetChatViewOpened: param is not a bool";
  });
}

InMeetingBulletViewModel::~InMeetingBulletViewModel() = default;

void InMeetingBulletViewModel::Subscribe() {
  const uint64_t self = framework::SubscriberId(this);
  if (auto messages = framework::module::GetAppModuleModel(kHostChatMessageModel)) {
    if (auto priority = std::dynamic_pointer_cast<framework::PriorityModel>(messages)) {
      RecordPrioritySubscribe(messages, this);
      auto take = [this](void (InMeetingBulletViewModel::*fn)(Variant const*, bool&)) {
        return std::make_shared<framework::PriorityEventHandler>(
            [this, fn](Variant const* p, bool& handled) { (this->*fn)(p, handled); });
      };
      priority->SubscribePriority(kEventReceived, kMessagePriority, self,
                                  take(&InMeetingBulletViewModel::OnReceiveMessage));
      priority->SubscribePriority(kEventSendResult, kMessagePriority, self,
                                  take(&InMeetingBulletViewModel::OnSendMessageResult));
      for (uint32_t event : {kEventUnreadChanged, kEventUnreadChanged2}) {
        priority->SubscribePriority(event, kUnreadPriority, self,
                                    std::make_shared<framework::PriorityEventHandler>(
                                        [this](Variant const*, bool&) { UpdateUnreadDot(); }));
      }
    }
    RecordSubscribe(messages, this);
    messages->Subscribe(kEventRecall, self, Handler([this](Variant const* p) { OnRecallMessage(p); }));
  }
  if (auto control = framework::module::GetAppModuleModel(kChatControlModel)) {
    RecordSubscribe(control, this);
    control->Subscribe(0, self, Handler([this](Variant const*) { SetPropValue(kPropShieldCheck, nullptr); }));
  }
  SubscribePanelEvents();
}

void InMeetingBulletViewModel::OnViewDetached() {
  if (upcast_timer_) upcast_timer_->Stop();
  StopSystemTimer();
  upcast_timer_.reset();
  retired_timer_.reset();
  system_timer_.reset();
  if (animatable_tip_timer_) animatable_tip_timer_->Stop();
  welcome_delay_timer_.reset();
  bullet_msg_list_.clear();
  queued_with_is_self_ = 0;
  published_ids_.clear();
  UnsubscribeAllEvent();
  Base::OnViewDetached();
}

void InMeetingBulletViewModel::HandleRedPacketClick(uint32_t action, Variant const* params, char const* event) {
  if (IsHitActionThreshold(action, params)) return;
  RecordLastAction4Threshold(action);
  analytics::LogEvent(event);
}

void InMeetingBulletViewModel::HandleScrollBottom(Variant const* params) {
  if (!params || !params->IsBool()) {
    TXLOG_ERROR << "ScrollBottom: param is not a bool";
    return;
  }
  is_scroll_bottom_ = params->AsBoolean();
  if (is_scroll_bottom_) {
    unread_msg_count_ = 0;
    handleUnreadMsg();
  }
}

void InMeetingBulletViewModel::HandleGetPicInPicTips(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "GetPicInPicTips: no map to answer in";
    return;
  }
  // The view hands over a map of its own for the answer.
  InvokeHostModel(kPipModel, kPipMethodTips, nullptr, const_cast<Variant*>(params));
}

void InMeetingBulletViewModel::HandleSetChatPanelState(Variant const* params) {
  if (!params || !params->IsInteger()) {
    TXLOG_ERROR << "SetChatPanelState: param is not a number";
    return;
  }
  chat_panel_state_ = params->AsUint32();
  if (chat_panel_state_ == 1) RestoreUnsendMessage();
}

// --- arriving messages --------------------------------------------------------

void InMeetingBulletViewModel::OnReceiveMessage(Variant const* params, bool&) {
  click_target_.reset();
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "param is null";
    return;
  }
  if (!is_view_visible_) {
    TXLOG_INFO << "view is not visible";
    return;
  }
  const int display_state = AskHostModel(kHostMeetingModel, kMeetingMethodDisplayState).AsInt32();
  Variant const& list = params->Get("new_msg_list");
  if (!list.IsArray()) {
    TXLOG_ERROR << "new_msg_list is not an array";
    return;
  }
  for (auto const& record : list.AsArray()) {
    if (!record.IsMap()) continue;
    int chat_type = record.GetInt32(chat_key::kChatType, -1);
    if (chat_type == ToInt(ChatType::kPlainText)) chat_type = ToInt(ChatType::kText);
    if (!IsBulletChatType(chat_type)) continue;
    if (display_state == 1 && (chat_type == ToInt(ChatType::kText) || chat_type == ToInt(ChatType::kImage))) continue;
    // A face always shows, whatever the new-message switch says.
    if (chat_type != ToInt(ChatType::kFace) && !is_new_msg_bullet_) continue;
    Variant bullet = ModelMsg2UIMsg(record, chat_type);
    bullet.Set("update_type", static_cast<int>(kUpdateNew));
    AddBulletMsg(std::move(bullet));
    if (record.GetInteger("message_conv_type") == ToInt(ConvType::kPrivate)) {
      Variant msg_id(record.GetString("msg_id"));
      InvokeChatBizModel(GetModuleRuntime4ATG(), ChatModel::kSetReminderMsgId, &msg_id);
    }
  }
  UpdateWebinarRead();
}

void InMeetingBulletViewModel::UpdateWebinarRead() {
  if (!webinar::IsMeetingWebinar()) return;
  if (!is_show_bullet_) {
    UpdateUnreadDot();
  } else {
    InvokeHostModel(kHostChatMessageModel, kMethodMarkWebinarRead, nullptr, nullptr);
  }
}

void InMeetingBulletViewModel::UpdateUnreadDot() {
  if (!webinar::IsMeetingWebinar()) return;
  SetPropValue(kPropUnreadDot, AskHostModel(kHostChatMessageModel, kMethodWebinarUnread).AsUint32() != 0);
}

void InMeetingBulletViewModel::OnSendMessageResult(Variant const* params, bool&) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "param is null";
    return;
  }
  const int chat_type = params->GetInt32(chat_key::kChatType, -1);
  const int64_t result = params->GetInteger("result", -1);
  if (result == 0) {
    if (!IsBulletChatType(chat_type) || chat_type == ToInt(ChatType::kPlainText)) return;
    if (chat_type != ToInt(ChatType::kFace) && !is_new_msg_bullet_) return;
    Variant bullet = ModelMsg2UIMsg(*params);
    bullet.Set("update_type", static_cast<int>(kUpdateNew));
    bullet.Set("is_self", true);
    AddBulletMsg(std::move(bullet));
    return;
  }
  const std::string error_msg = params->GetString("error_msg");
  std::string text;
  if (chat_type == ToInt(ChatType::kFace)) {
    text = ConvertSendErrorMessage(static_cast<int>(result), GetLocalizedString(kFaceSendFailed), kFaceSendBlocked);
    TXLOG_ERROR << "send face message faild." << ", errCode=" << result << ", errMsg=" << error_msg;
  } else {
    text = ConvertSendErrorMessage(static_cast<int>(result), GetLocalizedString(kSendFailed), kSendBlocked);
    TXLOG_ERROR << "send message faild. " << ", errCode=" << result << ", errMsg=" << error_msg
                << ", convert errmsg=" << text;
  }
  ShowToast(0, text, kToastMs);
}

std::string InMeetingBulletViewModel::ConvertSendErrorMessage(int code, std::string const& prefix,
                                                              uint32_t format_id) const {
  if (uint32_t own = SendErrorTextOf(code)) return GetLocalizedString(own);
  if (code == kErrorBlockedWords) {
    return FormatString(format_id).Arg("reason", GetLocalizedString(kBlockedWordsReason)).Str();
  }
  return prefix + std::to_string(code);
}

void InMeetingBulletViewModel::OnRecallMessage(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "param is null";
    return;
  }
  // A recall only changes a bubble that shows or is about to. When a long
  // meeting's client lets go of its oldest messages it fires this for each of
  // them; queueing those would hold up every new bubble behind them, eight a
  // second, and grow the queue without end.
  const std::string id = params->GetString("message_unique_id");
  if (id.empty() || !MayBeOnScreen(id)) return;
  Variant bullet = ModelMsg2UIMsg(*params);
  bullet.Set("update_type", static_cast<int>(kUpdateRecall));
  AddBulletMsg(std::move(bullet));
}

bool InMeetingBulletViewModel::MayBeOnScreen(std::string const& msg_id) const {
  if (std::find(published_ids_.begin(), published_ids_.end(), msg_id) != published_ids_.end()) return true;
  return std::any_of(bullet_msg_list_.begin(), bullet_msg_list_.end(),
                     [&](Variant const& record) { return record.GetString("msg_id") == msg_id; });
}

void InMeetingBulletViewModel::RememberPublished(Variant const& record) {
  if (record.GetInt32("update_type", -1) != kUpdateNew) return;
  Variant const& id = record.Get("msg_id");
  if (!id.IsString() || id.AsStr().empty()) return;
  if (published_ids_.size() >= kPublishedMemory) published_ids_.pop_front();
  published_ids_.push_back(id.AsStr());
}

// --- the queue ------------------------------------------------------------------

void InMeetingBulletViewModel::AddBulletMsg(Variant record) {
  if (!record.IsMap()) {
    TXLOG_ERROR << "bullet record is not a map";
    return;
  }
  const int update_type = record.GetInt32("update_type", -1);
  if (update_type == kUpdateShield) {
    SetPropValue(kPropNewBulletMsg, std::move(record));
    return;
  }
  if (update_type == kUpdateNew) {
    if (record.GetInt32("msg_type", -1) != kBulletFace) SetPropValue(kPropNewTextArrived, true);
    TrimBulletQueue();
  }
  last_msg_time_ = NowSeconds();
  record.Set("bulletmsg_addtime", static_cast<int64_t>(last_msg_time_));
  if (record.Has("is_self")) ++queued_with_is_self_;
  bullet_msg_list_.push_back(std::move(record));
  if (bullet_msg_list_.size() >= 32 && queued_with_is_self_ > 0 && update_type != kUpdateRecall) {
    // Drops the first queued echo of another's send. Conversion only ever
    // marks `is_self` true, so this normally removes nothing.
    for (auto it = bullet_msg_list_.begin(); it != bullet_msg_list_.end(); ++it) {
      if (!it->Has("is_self") || it->GetBoolean("is_self")) continue;
      const Variant victim = *it;
      const size_t before = bullet_msg_list_.size();
      bullet_msg_list_.remove(victim);
      queued_with_is_self_ -= before - bullet_msg_list_.size();
      break;
    }
  }
  if (!webinar::IsMeetingWebinar() && show_unfold_btn_) SetPropValue(kPropFlashUnfoldBtn, nullptr);
  CreateUpcastTimer();
}

void InMeetingBulletViewModel::TrimBulletQueue() {
  const size_t bound = webinar::IsMeetingWebinar() ? kWebinarQueueBound : kQueueBound;
  if (bullet_msg_list_.size() >= bound) PopFront();
}

void InMeetingBulletViewModel::PopFront() {
  if (bullet_msg_list_.front().Has("is_self")) --queued_with_is_self_;
  bullet_msg_list_.pop_front();
}

void InMeetingBulletViewModel::CreateUpcastTimer() {
  if (upcast_timer_) return;
  retired_timer_.reset();
  upcast_timer_ = talvex_common::utils::timer::CreateTimer([this] { OnUpcastTick(); });
  upcast_timer_->Start(kUpcastIntervalMs, 1);
}

void InMeetingBulletViewModel::OnUpcastTick() {
  if (!bullet_msg_list_.empty()) {
    if (!is_show_bullet_) {
      // Folded: nothing shows; what waited too long is let go, one a tick.
      if (NowSeconds() - bullet_msg_list_.front().GetInteger("bulletmsg_addtime") > kFoldedRetentionSeconds) {
        PopFront();
      }
    } else {
      Variant record = bullet_msg_list_.front();
      PopFront();
      if (!is_scroll_bottom_ && record.GetInt32("update_type", -1) == kUpdateNew && !record.GetBoolean("is_self")) {
        ++unread_msg_count_;
        handleUnreadMsg();
      }
      RememberPublished(record);
      SetPropValue(kPropNewBulletMsg, std::move(record));
    }
  }
  UpdateUnfoldBtn();
  if (bullet_msg_list_.empty() && upcast_timer_) {
    // The timer goes with the queue; it is freed outside its own tick.
    upcast_timer_->Stop();
    retired_timer_ = std::move(upcast_timer_);
  }
}

void InMeetingBulletViewModel::handleUnreadMsg() {
  std::string tips;
  if (unread_msg_count_ >= 1) {
    tips = FormatString(kUnreadTipsFormat)
               .Arg("msg_count", static_cast<int64_t>(std::min(unread_msg_count_, 99)))
               .Arg("msg_marks", unread_msg_count_ > 99 ? "+" : "")
               .Str();
  }
  TXLOG_INFO << "handleUnreadMsg tips = " << tips;
  Variant payload(base::variant::kVariantTypeMap);
  payload.Set(kUnreadCount, unread_msg_count_);
  payload.Set(kUnreadTips, tips);
  SetPropValue(kPropUnreadMsgShow, std::move(payload));
}

// --- shielding ------------------------------------------------------------------

void InMeetingBulletViewModel::HandleIsMsgShield(Variant const* list) {
  if (!list || !list->IsArray()) {
    TXLOG_ERROR << "CheckMsgShield: param is not an array";
    return;
  }
  Variant ask(base::variant::kVariantTypeMap);
  ask.Set("msg_list", *list);
  const Variant shown = AskHostModel(kChatControlModel, kMethodShieldCheck, &ask);
  if (!bullet_msg_list_.empty()) {
    Variant queued(base::variant::kVariantTypeArray);
    for (auto const& record : bullet_msg_list_) queued.Add(record);
    Variant ask_queued(base::variant::kVariantTypeMap);
    ask_queued.Set("msg_list", std::move(queued));
    Variant const answer = AskHostModel(kChatControlModel, kMethodShieldCheck, &ask_queued);
    Variant const& shielded = answer.Get("shield_msg_list");
    if (shielded.IsArray() && !shielded.Empty()) {
      bullet_msg_list_.remove_if([&](Variant const& record) {
        const std::string id = record.GetString("msg_id");
        const bool shield = std::any_of(shielded.AsArray().begin(), shielded.AsArray().end(),
                                        [&](Variant const& entry) { return entry.GetString("msg_id") == id; });
        if (shield && record.Has("is_self")) --queued_with_is_self_;
        return shield;
      });
    }
  }
  Variant const& shown_shielded = shown.Get("shield_msg_list");
  if (shown_shielded.IsArray() && !shown_shielded.Empty()) {
    Variant remove(base::variant::kVariantTypeMap);
    remove.Set("update_type", static_cast<int>(kUpdateShield));
    remove.Set("msg_list", shown_shielded);
    AddBulletMsg(std::move(remove));
  }
}

// --- red packets ------------------------------------------------------------------

void InMeetingBulletViewModel::OnEventRedPacket(Variant const* params) {
  if (!params || !params->IsArray()) {
    TXLOG_ERROR << "param is null";
    return;
  }
  for (auto const& item : params->AsArray()) {
    const int type = item.GetInt32("msg_type", -1);
    if (type == kBulletRedPacket) OnEventRedPacketMsgReceived(item);
    else if (type == kBulletRedPacketReceipt) OnEventRedPacketReceiptMsgReceived(item);
  }
}

namespace {
Variant RedPacketRecord(int msg_type, int chat_type, std::string const& sender, std::string const& desc, int start,
                        int end, std::string const& ticket) {
  Variant r(base::variant::kVariantTypeMap);
  r.Set("msg_type", msg_type);
  r.Set(chat_key::kChatType, chat_type);
  r.Set("msg_sender", sender);
  r.Set("desc", desc);
  r.Set("desc_click_range_start", start);
  r.Set("desc_click_range_end", end);
  r.Set("ticket", ticket);
  r.Set("update_type", 0);
  r.Set("layout_type", talvex::ChatUtils::ConvertToLayoutType(chat_type));
  return r;
}
}  // namespace

void InMeetingBulletViewModel::OnEventRedPacketMsgReceived(Variant const& params) {
  const std::string sender = params.GetBoolean("msg_is_self") ? GetLocalizedString(kYou) + " "
                                                               : params.Get("sender_info").GetString("nickname") + " ";
  Variant r = RedPacketRecord(kBulletRedPacket, 2, sender, GetLocalizedString(kRedPacketDesc), 2, 4,
                              params.GetString("ticket"));
  r.Set("desc_send", GetLocalizedString(kRedPacketSend));
  r.Set("desc_redpacket", GetLocalizedString(kRedPacketWord));
  r.Set("desc_usemobile", GetLocalizedString(kRedPacketUseMobile));
  AddBulletMsg(std::move(r));
}

void InMeetingBulletViewModel::OnEventRedPacketReceiptMsgReceived(Variant const& params) {
  const bool receiver_is_self = params.GetBoolean("receiver_is_self");
  const bool sender_is_self = params.GetBoolean("sender_is_self");
  std::string sender;
  uint32_t desc = 0;
  int start = 0;
  int end = 0;
  if (!receiver_is_self && !sender_is_self) {
    TXLOG_INFO << "none of my business";
    return;
  }
  if (!receiver_is_self) {
    sender = params.Get("receiver_info").GetString("nickname") + " ";
    desc = kReceiptTextA;
    start = 5;
    end = 7;
  } else if (!sender_is_self) {
    sender = GetLocalizedString(kYou) + " " +
             FormatString(kReceiptFromFormat).Arg("nickname", params.Get("sender_info").GetString("nickname")).Str();
    desc = kReceiptTextB;
    start = 1;
    end = 3;
  } else {
    sender = GetLocalizedString(kYou) + " ";
    desc = kReceiptTextC;
    start = 7;
    end = 9;
  }
  AddBulletMsg(RedPacketRecord(kBulletRedPacketReceipt, 3, sender, GetLocalizedString(desc), start, end,
                               params.GetString("ticket")));
}

// --- sending -------------------------------------------------------------------

void InMeetingBulletViewModel::PutBackDraft(std::string const& text) { SetPropValue(kPropBulletDraftText, text); }

void InMeetingBulletViewModel::HandleSendMsg(Variant const* params) {
  if (!params || !params->IsMap() || !params->Get("msg_text").IsString()) {
    TXLOG_ERROR << "SendMsg: no msg_text";
    return;
  }
  const std::string text = params->GetString("msg_text");
  if (text.empty()) return;
  if (::GetUtf8Length(text) > kMaxTextUtf8Length) {
    // The text stays in the input.
    ShowToast(0, GetLocalizedString(kTooLong), kToastMs);
    return;
  }
  if (text.find_first_not_of("\r\n ") == std::string::npos) {
    ShowToast(0, GetLocalizedString(kBlankText), kToastMs);
    PutBackDraft(text);
    return;
  }
  if (!CheckAuthorizeBeforeAction()) {
    PutBackDraft(text);
    return;
  }
  namespace record = talvex_common::utils::privatechatrecord;
  const Variant user = record::GetPrivateChatUserInfo();
  const int receiver_type = record::GetChatReceiverType(user);
  if (webinar::IsMeetingWebinar()) {
    const bool attendee = talvex_common::utils::webinar::IsAttendeeUser(user);
    std::string sendto = "0";
    if (receiver_type == ToInt(ReceiverType::kMember)) sendto = "3";
    else if (receiver_type == ToInt(ReceiverType::kWebinarEveryone)) sendto = "1";
    else if (receiver_type == ToInt(ReceiverType::kWebinarGroup)) sendto = "2";
    std::string role = "0";
    if (receiver_type == ToInt(ReceiverType::kMember)) role = attendee ? "2" : "1";
    analytics::LogEventWith2Properties("meetingpage_im_null_sendto_null_null_click", "sendto", sendto,
                                       "webinar_role", role);
    if (attendee) {
      const std::string self_role = webinar::SelfIsHost() ? "1" : webinar::SelfIsCoHost() ? "2" : "0";
      analytics::LogEventWithProperty("meetingpage_im_null_send_null_null_click", "webinar_role", self_role);
    }
  }
  if (receiver_type == ToInt(ReceiverType::kMember) || receiver_type == ToInt(ReceiverType::kWaitingRoomMember)) {
    SendPrivateMessage(user, text, receiver_type);
  } else {
    SendPublicMessage(user, text, receiver_type);
  }
}

void InMeetingBulletViewModel::SendPrivateMessage(Variant const& user, std::string const& text, int receiver_type) {
  namespace member = talvex_common::utils::member;
  if (receiver_type == ToInt(ReceiverType::kMember)) {
    const std::string user_id = user.GetString("user_id");
    const std::string app_uid = user.GetString("app_uid");
    const bool found = member::EnumInMeetingUsers(member::GetUserIndexList(0), [&](Variant const& m) {
      return user_id.empty() ? m.GetString("app_uid") == app_uid : m.GetString("user_id") == user_id;
    });
    if (!found && !talvex_common::utils::webinar::IsAttendeeUser(user)) {
      ShowToast(0, GetLocalizedString(webinar::IsMeetingWebinar() ? kTextSendMemberLeftWebinar : kTextSendMemberLeft),
                kToastMs);
      PutBackDraft(text);
      return;
    }
  } else if (!UserIsInWaitingRoom(user.GetString("user_id"))) {
    // Unlike a member who left, the text is not put back here.
    ShowToast(0, GetLocalizedString(kTextSendMemberLeft), kToastMs);
    return;
  }
  Variant conv_id;
  const bool answered = InvokeHostModel(kHostPrivateChatModel, kMethodPrivateConvId, &user, &conv_id);
  const int64_t instance = user.GetInteger("instance_id", 1);
  if (!answered || user.GetInteger("user_type", 1) != 1 || instance == 5 || instance == 8) {
    ShowToast(0, GetLocalizedString(kTextSendMemberCannotReceive), kToastMs);
    PutBackDraft(text);
    return;
  }
  Variant params(base::variant::kVariantTypeMap);
  params.Set("conv_id", conv_id.IsString() ? conv_id.AsStr() : std::string());
  params.Set("conv_type", ToInt(ConvType::kPrivate));
  params.Set("receiver_type", receiver_type);
  params.Set("text_elem_content", text);
  params.Set("message_send_from_type", 1);
  std::string msg_id;
  PostSend(kMethodSendText, params, &msg_id);
  TXLOG_INFO << "send message conv_type = " << framework::VariantToString(&params) << ", msgid=" << msg_id;
  ReportSendMsg(ToInt(ConvType::kPrivate), user, receiver_type);
}

void InMeetingBulletViewModel::SendPublicMessage(Variant const& user, std::string const& text, int receiver_type) {
  Variant params(base::variant::kVariantTypeMap);
  params.Set("conv_type", ToInt(ConvType::kGroup));
  params.Set("receiver_type", receiver_type);
  params.Set("text_elem_content", text);
  params.Set("message_send_from_type", 1);
  uint32_t method = kMethodSendText;
  if (receiver_type == ToInt(ReceiverType::kWaitingRoom)) {
    method = kMethodSendWaitingRoom;
  } else if (receiver_type == ToInt(ReceiverType::kWebinarGroup) && webinar::SelfIsAttendee()) {
    method = kMethodSendAttendee;
  }
  std::string msg_id;
  PostSend(method, params, &msg_id);
  TXLOG_INFO << "send message conv_type = " << framework::VariantToString(&params) << ", msgid=" << msg_id;
  ReportSendMsg(ToInt(ConvType::kGroup), user, receiver_type);
}

bool InMeetingBulletViewModel::PostSend(uint32_t method, Variant const& params, std::string* msg_id) {
  Variant result;
  const bool ok = InvokeHostModel(kHostChatMessageModel, method, &params, &result);
  if (msg_id) *msg_id = result.IsString() ? result.AsStr() : std::string();
  if (!ok) TXLOG_ERROR << "send method " << method << " was not taken";
  return ok;
}

void InMeetingBulletViewModel::ReportSendMsg(int conv_type, Variant const& user, int receiver_type) {
  auto const& self = talvex::MeetingContext::Current();
  std::map<std::string, std::string> properties = {
      {"meeting_type_flags", std::to_string(self.meeting_type_flags)},
      {"meeting_type", webinar::IsMeetingWebinar() ? "1" : "0"},
      {"chat_scale", receiver_type == ToInt(ReceiverType::kMember) ? "1" : "0"},
      {"screen_type", talvex_common::utils::inmeeting::IsInScreenShareMode() ? "0" : "1"},
      {"chat_private", conv_type == ToInt(ConvType::kPrivate) ? "1" : "0"}};
  if (user.IsMap()) {
    properties["to_appid"] = user.GetString("app_id");
    properties["to_uid"] = user.GetString("app_uid");
  }
  if (self.trial && self.creator) properties["task_id"] = std::to_string(self.meeting_id);
  analytics::LogEventWithProperties("bullet_vm_send_text_msg", properties);
}

void InMeetingBulletViewModel::HandleCacheBulletUnsendMessage(Variant const* params) {
  if (!params || !params->IsMap() || !params->Get(kUnsendText).IsString()) {
    TXLOG_ERROR << "CacheUnsendMessage: no text";
    return;
  }
  Variant text(params->GetString(kUnsendText));
  TXLOG_INFO << "cache bullet unsend msg:" << text.AsStr();
  InvokeChatBizModel(GetModuleRuntime4ATG(), ChatModel::kSetBulletDraft, &text);
}

void InMeetingBulletViewModel::RestoreUnsendMessage() {
  auto stored = InvokeChatBizModel(GetModuleRuntime4ATG(), ChatModel::kGetBulletDraft, nullptr);
  PutBackDraft(stored && stored->IsString() ? stored->AsStr() : std::string());
}

// --- clicks ----------------------------------------------------------------------

void InMeetingBulletViewModel::HandleBulletClick() {
  auto* runtime = GetModuleRuntime4ATG();
  if (click_target_ && click_target_->IsMap() &&
      talvex_common::utils::timer::WallClockMs() - click_target_time_ms_ < kClickTargetLifeMs) {
    auto flag = InvokeChatBizModel(runtime, kGetSwitchToPrivate, nullptr);
    const std::string user_id = click_target_->GetString("user_id");
    if (flag && flag->AsBoolean() && !user_id.empty() &&
        (talvex_common::utils::member::GetUserInfo(user_id).IsMap() || UserIsInWaitingRoom(user_id))) {
      talvex_common::utils::privatechatrecord::SerPrivateChatUserInfo(&*click_target_);
      Variant yes(true);
      InvokeChatBizModel(runtime, kSetSwitchToPrivate, &yes);
    }
  }
  talvex_common::utils::sidebar::OpenApp(kChatSidebarApp, Variant());
  analytics::LogEventWithProperty("inmeeting_im_null_barrage_null_null_click", "barrage", "1");
}

void InMeetingBulletViewModel::HandleNoticeBulletClick() {
  if (!talvex_common::utils::meetingsettings::IsMeetingNoticeEnable()) {
    ShowToast(0, GetLocalizedString(kTextNoticeDisabled), kToastMs);
    return;
  }
  framework::NavigateService::Instance()->Navigate(kMeetingNoticePage);
  analytics::LogEventWithProperty("inmeeting_im_null_notice_null_null_barrage", "operation_role",
                                  talvex_common::utils::member::IsSelfHostOrCoHost() ? "0" : "1");
}

void InMeetingBulletViewModel::HandleOpenChatPage(Variant const* params) {
  framework::NavigateService::Instance()->Navigate(kChatPage);
  analytics::LogEvent("im_null_null_barrage_all_null_click");
  if (params && params->IsMap() && params->GetInt32("update_type", -1) == kUpdateBanner &&
      params->GetInteger("banner_id") > 0) {
    analytics::LogEventWithProperty("e#meeting#barrage_notification#click", "task_id",
                                    std::to_string(params->GetInteger("banner_id")));
  }
}

}  // namespace chat
