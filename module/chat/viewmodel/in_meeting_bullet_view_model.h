#pragma once

#include <cstdint>
#include <deque>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "base/timer/tx_timer.h"
#include "framework/viewmodel/authorize_view_model.h"
#include "framework/viewmodel/extension_view_model.h"

namespace chat {

// The floating chat over the meeting video. It turns the client's messages
// into short bullet records and paces them into the view (at most eight a
// second through a small queue), counts what the user has not seen, sends
// from the quick-reply bar, and decides at each moment how the overlay looks:
// folded or unfolded, immersive, in the waiting room, which replies work and
// which tips show. The view applies what it publishes without further thought.
//
// The message flow lives in in_meeting_bullet_view_model.cpp and
// in_meeting_bullet_conversion.cpp, the panel state and tips in
// in_meeting_bullet_panel_state.cpp.
class InMeetingBulletViewModel : public talvex::AuthorizeViewModelT<talvex::ExtensionViewModel> {
 public:
  using Base = talvex::AuthorizeViewModelT<talvex::ExtensionViewModel>;

  // --- props: the message flow ---
  static constexpr uint32_t kPropNewBulletMsg = framework::NameId("NewBulletMsg");
  static constexpr uint32_t kPropBulletDraftText = framework::NameId("BulletDraftText");
  static constexpr uint32_t kPropUnreadMsgShow = framework::NameId("UnreadMsgShow");
  static constexpr uint32_t kPropNewTextArrived = framework::NameId("NewTextArrived");
  static constexpr uint32_t kPropFlashUnfoldBtn = framework::NameId("FlashUnfoldBtn");
  static constexpr uint32_t kPropShieldCheck = framework::NameId("ShieldCheck");
  static constexpr uint32_t kPropUnreadDot = framework::NameId("UnreadDot");
  // --- props: panel state and tips ---
  static constexpr uint32_t kPropShowOrHideBulletMsg = framework::NameId("ShowOrHideBulletMsg");
  static constexpr uint32_t kPropUnfoldState = framework::NameId("UnfoldState");
  static constexpr uint32_t kPropUiData = framework::NameId("UiData");
  static constexpr uint32_t kPropPrivateChatAuthorityInfo = framework::NameId("PrivateChatAuthorityInfo");
  static constexpr uint32_t kPropQuickReplyDisable = framework::NameId("QuickReplyDisable");
  static constexpr uint32_t kPropShowQuickReplyEmoji = framework::NameId("ShowQuickReplyEmoji");
  static constexpr uint32_t kPropWelcomeTip = framework::NameId("WelcomeTip");
  static constexpr uint32_t kPropAnimatableTextItem = framework::NameId("AnimatableTextItem");
  static constexpr uint32_t kPropHideAnimatableTip = framework::NameId("HideAnimatableTip");
  static constexpr uint32_t kPropViewEnabled = framework::NameId("ViewEnabled");
  static constexpr uint32_t kPropWaitingRoomHide = framework::NameId("WaitingRoomHide");
  static constexpr uint32_t kPropPicInPicUidata = framework::NameId("PicInPicUidata");
  static constexpr uint32_t kPropDocIsEditState = framework::NameId("DocIsEditState");

  // --- actions: the message flow ---
  static constexpr uint32_t kActionSendMsg = framework::NameId("SendMsg");
  static constexpr uint32_t kActionSetViewVisible = framework::NameId("SetViewVisible");
  static constexpr uint32_t kActionRedPacketClick = framework::NameId("RedPacketClick");
  static constexpr uint32_t kActionRedPacketReceiptClick = framework::NameId("RedPacketReceiptClick");
  static constexpr uint32_t kActionBulletClick = framework::NameId("BulletClick");
  static constexpr uint32_t kActionNoticeBulletClick = framework::NameId("NoticeBulletClick");
  static constexpr uint32_t kActionCheckMsgShield = framework::NameId("CheckMsgShield");
  static constexpr uint32_t kActionScrollBottom = framework::NameId("ScrollBottom");
  static constexpr uint32_t kActionOpenChatPage = framework::NameId("OpenChatPage");
  static constexpr uint32_t kActionCacheUnsendMessage = framework::NameId("CacheUnsendMessage");
  static constexpr uint32_t kActionNewMsgTipClick = framework::NameId("NewMsgTipClick");
  static constexpr uint32_t kActionBulletSlide = framework::NameId("BulletSlide");
  // --- actions: panel state ---
  static constexpr uint32_t kActionToggleBullet = framework::NameId("ToggleBullet");
  static constexpr uint32_t kActionHoverHotZone = framework::NameId("HoverHotZone");
  static constexpr uint32_t kActionQuickReplyTextClick = framework::NameId("QuickReplyTextClick");
  static constexpr uint32_t kActionCloseQuickReplyText = framework::NameId("CloseQuickReplyText");
  static constexpr uint32_t kActionQuickReplyEmojiClick = framework::NameId("QuickReplyEmojiClick");
  static constexpr uint32_t kActionCloseQuickReplyEmoji = framework::NameId("CloseQuickReplyEmoji");
  static constexpr uint32_t kActionEnablePicInPic = framework::NameId("EnablePicInPic");
  static constexpr uint32_t kActionGetPicInPicTips = framework::NameId("GetPicInPicTips");
  static constexpr uint32_t kActionSetChatPanelState = framework::NameId("SetChatPanelState");
  static constexpr uint32_t kActionSetChatViewOpened = framework::NameId("SetChatViewOpened");

  // Keys of the payloads that carry their field names.
  static constexpr char kUnsendText[] = "InMeetingBulletCacheBulletUnsendMessageFields_kStringMsgText";
  static constexpr char kUnreadCount[] = "InMeetingBulletBulletUnreadMsgShowFields_kIntegerUnreadMsgCount";
  static constexpr char kUnreadTips[] = "InMeetingBulletBulletUnreadMsgShowFields_kStringUnreadMsgTips";
  static constexpr char kWelcomeTitle[] = "InMeetingBulletBulletTipFields_kStringWelcomTitle";
  static constexpr char kWelcomeContent[] = "InMeetingBulletBulletTipFields_kStringWelcomContent";
  static constexpr char kWelcomeBell[] = "InMeetingBulletBulletTipFields_kBooleanTipsBell";
  static constexpr char kAnimatableNickname[] = "InMeetingBulletAnimatableTextItemFields_kStringNickname";
  static constexpr char kAnimatableRole[] = "InMeetingBulletAnimatableTextItemFields_kStringUserRoleContent";
  static constexpr char kAnimatableColor[] = "InMeetingBulletAnimatableTextItemFields_kStringTextColor";
  static constexpr char kAnimatableTip[] = "InMeetingBulletAnimatableTextItemFields_kStringTip";
  static constexpr char kAnimatableTime[] = "InMeetingBulletAnimatableTextItemFields_kIntegerAnimatableTime";

  // `update_type` and `msg_type` of a bullet record.
  enum UpdateType : int { kUpdateNew = 0, kUpdateRecall = 1, kUpdateShield = 5, kUpdateBanner = 6 };
  enum BulletMsgType : int {
    kBulletPublic = 0,
    kBulletPrivate = 2,
    kBulletRedPacket = 3,
    kBulletRedPacketReceipt = 4,
    kBulletFace = 5,
  };

  static constexpr int kQueueBound = 15;
  static constexpr int kWebinarQueueBound = 50;
  static constexpr int kUpcastIntervalMs = 125;
  static constexpr int kFoldedRetentionSeconds = 30;
  static constexpr int kMaxTextUtf8Length = 3000;
  // How many of the last published bubbles a recall may still find: more
  // than the overlay ever keeps on screen.
  static constexpr size_t kPublishedMemory = 64;

  InMeetingBulletViewModel();
  ~InMeetingBulletViewModel() override;

  void OnViewAttached(Variant const* params) override;
  void OnViewDetached() override;
  void LifecycleStateChanged(int old_state, int new_state) override;

  // --- the message flow ---
  void OnReceiveMessage(Variant const* params, bool& handled);
  void OnSendMessageResult(Variant const* params, bool& handled);
  void OnRecallMessage(Variant const* params);
  void UpdateUnreadDot();
  void OnEventRedPacket(Variant const* params);
  void OnEventRedPacketMsgReceived(Variant const& params);
  void OnEventRedPacketReceiptMsgReceived(Variant const& params);

  // A host record as a bullet record; `chat_type` is the record's, normalised
  // by the caller (-1: read it from the record).
  Variant ModelMsg2UIMsg(Variant const& source, int chat_type = -1);
  void AddBulletMsg(Variant record);
  void HandleIsMsgShield(Variant const* list);
  void HandleSendMsg(Variant const* params);
  void HandleBulletClick();
  void HandleNoticeBulletClick();
  void HandleOpenChatPage(Variant const* params);
  void HandleCacheBulletUnsendMessage(Variant const* params);
  void HandleRedPacketClick(uint32_t action, Variant const* params, char const* event);
  void HandleScrollBottom(Variant const* params);
  void HandleGetPicInPicTips(Variant const* params);
  void HandleSetChatPanelState(Variant const* params);
  void RestoreUnsendMessage();
  std::string ConvertSendErrorMessage(int code, std::string const& prefix, uint32_t format_id) const;

  // --- panel state and tips ---
  void UpdateBulletPanel(bool fold_changed = false, int origin = 0);
  void UpdateUnfoldBtn();
  void HandleToggleBullet(Variant const* params);
  void SetBulletEnabled(bool want);
  void EnterWaitingRoom();
  void CheckEnterImmersive(Variant const* params, bool& allow);
  void UpdateButtonAbilityState();
  void UpdateUiData();
  void UpdateQuickReplyDisable();
  void OnPrivateChatAuthorityChange();
  void HandleQuickReplyTextClick();
  void HandleQuickReplyEmojiClick();
  bool CanSendEmoji() const;
  void HandleEnablePicInPic(Variant const* params);
  void UpdatePicInPicUiData();
  void OnEventNotifyBanner(Variant const* params);
  void OnEventIMSupportChanged(Variant const* params);
  void OnEventJoinComplete(Variant const* params);
  void OnEventLeaveComplete(Variant const* params);
  void OnEventMeetingShowBullet(Variant const* params);
  void OnEventMeetingNewMsgBullet(Variant const* params);
  void OnEventQueryDBTipsInfo(Variant const* params);
  void OnEventReceiveBulletTip(Variant const* params);
  void ShowChatJoinTipMsg(Variant const* params);
  void ShowWebinarWelcomTips();
  void CreateSystemTimer();
  void SystemBulletMsg();
  void bulletSelfTip();
  void UpdateBulletAnimationTextTip();
  void FirePropForBulletTipList(Variant const* tip);
  void HiddenJoinTip();

  // --- what tests and the view's owner may read ---
  size_t queued_count() const { return bullet_msg_list_.size(); }
  bool has_upcast_timer() const { return upcast_timer_ != nullptr; }
  bool has_system_timer() const { return system_timer_ != nullptr && system_timer_->IsActive(); }
  bool is_show_bullet() const { return is_show_bullet_; }
  bool is_new_msg_bullet() const { return is_new_msg_bullet_; }
  int32_t unread_msg_count() const { return unread_msg_count_; }
  size_t tip_count() const { return tip_list_.size(); }
  bool is_timer_start() const { return is_timer_start_; }
  bool welcome_delay_running() const { return welcome_delay_running_; }

 private:
  // The three halves of ModelMsg2UIMsg (in_meeting_bullet_conversion.cpp).
  void ModelFaceMsg2UIMsg(Variant const& source, Variant& out);
  void ModelNomalMsg2UIMsg(Variant const& source, Variant& out);
  void ResolvePrivatePeer(Variant const& source, Variant& info, std::string& receiver);
  std::string PrivateChatLabel(Variant const& source, Variant const& out) const;
  void HidePrivateContent(Variant const& source, Variant& out) const;
  bool ParseEmojiTextMixedContext(Variant const& text, Variant& out) const;
  Variant LookUpFace(int index) const;
  Variant SenderName(Variant const& source) const;

  void Subscribe();
  void SubscribePanelEvents();
  void TrimBulletQueue();
  bool MayBeOnScreen(std::string const& msg_id) const;
  void RememberPublished(Variant const& record);
  void PopFront();
  void CreateUpcastTimer();
  void OnUpcastTick();
  void handleUnreadMsg();
  void UpdateWebinarRead();
  void SendPrivateMessage(Variant const& user, std::string const& text, int receiver_type);
  void SendPublicMessage(Variant const& user, std::string const& text, int receiver_type);
  bool PostSend(uint32_t method, Variant const& params, std::string* msg_id);
  void ReportSendMsg(int conv_type, Variant const& user, int receiver_type);
  void PutBackDraft(std::string const& text);
  void ReadSystemTipConfig();
  void StartTipTimer();
  void StopSystemTimer();
  bool IsUnderChatControl() const;
  std::string ChatControlText() const;
  bool OthersSilenced() const;

  // --- message flow ---
  std::list<Variant> bullet_msg_list_;
  // The ids of the last kPublishedMemory new bubbles, oldest first.
  std::deque<std::string> published_ids_;
  // How many queued records carry `is_self` at all: the only candidates of
  // the 32-record rule, so that a queue without any is not walked.
  size_t queued_with_is_self_ = 0;
  std::unique_ptr<talvex_common::utils::timer::TXTimer> upcast_timer_;
  // A timer that went empty inside its own tick; freed on the next turn.
  std::unique_ptr<talvex_common::utils::timer::TXTimer> retired_timer_;
  bool is_view_visible_ = true;
  bool is_show_bullet_ = true;
  bool is_new_msg_bullet_ = true;
  bool is_scroll_bottom_ = true;
  int32_t unread_msg_count_ = 0;
  int64_t last_msg_time_ = 0;
  // The member a click on a bullet would switch the private chat to; kept
  // for its contract, nothing fills it today.
  std::optional<Variant> click_target_;
  // The group receiver's answer, kept between conversions so that a storm
  // does not build a map for each message.
  Variant group_receiver_{base::variant::kVariantTypeMap};
  int64_t click_target_time_ms_ = 0;

  // --- panel state ---
  bool is_sidebar_member_open_ = false;
  bool is_immersive_ = false;
  bool is_show_chat_ = true;
  bool is_show_emoji_ = true;
  bool is_chat_view_opened_ = false;
  bool quick_reply_text_enabled_ = true;
  bool quick_reply_emoji_enabled_ = true;
  std::string quick_reply_text_tips_;
  std::string quick_reply_emoji_tips_;
  std::string meeting_id_;
  int64_t last_fold_time_ = 0;
  bool show_unfold_btn_ = false;
  bool is_emoji_panel_open_ = false;
  uint32_t chat_panel_state_ = 0;
  bool fold_guide_flag_ = false;

  // --- tips ---
  std::list<Variant> tip_list_;
  std::unique_ptr<talvex_common::utils::timer::TXTimer> animatable_tip_timer_;
  bool is_timer_start_ = false;
  int tip_tick_count_ = 0;
  int tip_shown_count_ = 0;
  int tip_idle_count_ = 0;
  Variant system_tip_config_{base::variant::kVariantTypeMap};
  std::unique_ptr<talvex_common::utils::timer::TXTimer> system_timer_;
  int64_t show_times_ = 0;
  int64_t show_times_in_meeting_ = 0;
  int64_t shown_in_meeting_ = 0;
  int64_t play_duration_ = 0;
  bool can_show_system_tip_ = false;
  bool is_join_complete_ = false;
  std::unique_ptr<talvex_common::utils::timer::TXTimer> welcome_delay_timer_;
  bool welcome_delay_running_ = false;
  bool is_welcome_shown_ = false;
};

}  // namespace chat
