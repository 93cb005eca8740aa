#pragma once

#include <cstdint>

#include "base/timer/tx_timer.h"
#include "framework/viewmodel/view_model.h"

// The floating chat's texts and the client's numbers it speaks in.
namespace chat {
namespace bullet_text {

// --- the client's models and methods beyond the shared ones ---
constexpr uint32_t kMeetingMethodDisplayState = 11;  // 514: 1 keeps text and pictures off the video
constexpr uint32_t kMethodSendText = 7;              // 524
constexpr uint32_t kMethodSendWaitingRoom = 23;      // 524: to the waiting room
constexpr uint32_t kMethodSendAttendee = 40;         // 524: an attendee to a webinar group
constexpr uint32_t kMethodConvPeer = 16;             // 524: the peer of a private conversation
constexpr uint32_t kFaceMethodByIndex = 1;           // 570
constexpr uint32_t kFaceMethodSplitText = 7;         // 570
constexpr uint32_t kMemberMethodSelf = 1;            // 508 without params: the local user
constexpr uint32_t kMemberMethodRealName = 83;       // 508: the real name behind an anonymous sender
constexpr int kBulletSettingsModel = 523;
constexpr int kPanelStateModel = 1000020;
constexpr int kScreenShareModel = 1000021;
constexpr int kTipResourceModel = 571;
constexpr int kPipModel = 597;
constexpr uint32_t kPipMethodState = 7;
constexpr uint32_t kPipMethodTips = 8;
constexpr uint32_t kPipMethodSetState = 12;
constexpr int kTipsDbModel = 690;

// Seconds on the host's wall clock, which follows the test clock.
inline int64_t NowSeconds() { return talvex_common::utils::timer::WallClockMs() / 1000; }

// The kinds of content the overlay shows.
constexpr bool IsBulletChatType(int chat_type) {
  return chat_type == 0 || chat_type == 1 || chat_type == 4 || chat_type == 6 || chat_type == 8 || chat_type == 12;
}

// Send errors with a text of their own.
constexpr int kErrorBlockedWords = 10104;
constexpr uint32_t SendErrorTextOf(int code) {
  switch (code) {
    case 10007: return 0xc2d08c4d;
    case 10016: return 0x75c30f57;
    case 10105: return 0x2e0db0bb;
    case 20006: return 0xec54bfb9;
    case 60008: return 0x52d7539a;
    case 80002: return 0x44932c62;  // the over-length text
    default: return 0;
  }
}
constexpr uint32_t kBlockedWordsReason = 0x83003322;
constexpr uint32_t kSendBlocked = 0xa04932de;      // "{reason}" for a text
constexpr uint32_t kFaceSendBlocked = 0x4d19a04c;  // "{reason}" for a face
constexpr uint32_t kTooLong = 0x44932c62;

constexpr uint32_t kSendFailed = framework::NameId("chat.bullet.send_failed");
constexpr uint32_t kFaceSendFailed = framework::NameId("chat.bullet.face_send_failed");
constexpr uint32_t kBlankText = framework::NameId("chat.bullet.blank_text");
constexpr uint32_t kUnreadTipsFormat = framework::NameId("chat.bullet.unread_tips");
constexpr uint32_t kYou = framework::NameId("chat.bullet.you");
constexpr uint32_t kPrivateWord = framework::NameId("chat.bullet.private");
constexpr uint32_t kWaitingRoomWord = framework::NameId("chat.bullet.waiting_room");
constexpr uint32_t kOwnPrivateLabel = framework::NameId("chat.bullet.own_private");
constexpr uint32_t kPrivateHidden = framework::NameId("chat.bullet.private_hidden");
constexpr uint32_t kRecalled = framework::NameId("chat.bullet.recalled");
constexpr uint32_t kToWord = framework::NameId("chat.bullet.to");
constexpr uint32_t kSendToLabel = framework::NameId("chat.bullet.send_to");
constexpr uint32_t kImageText = framework::NameId("chat.bullet.image");
constexpr uint32_t kFileOwn = framework::NameId("chat.bullet.file_own");
constexpr uint32_t kFilePrivate = framework::NameId("chat.bullet.file_private");
constexpr uint32_t kFileOther = framework::NameId("chat.bullet.file");
constexpr uint32_t kRedPacketDesc = framework::NameId("chat.bullet.red_packet.desc");
constexpr uint32_t kRedPacketSend = framework::NameId("chat.bullet.red_packet.send");
constexpr uint32_t kRedPacketWord = framework::NameId("chat.bullet.red_packet.word");
constexpr uint32_t kRedPacketUseMobile = framework::NameId("chat.bullet.red_packet.use_mobile");
constexpr uint32_t kReceiptTextA = framework::NameId("chat.bullet.receipt.yours_opened");
constexpr uint32_t kReceiptTextB = framework::NameId("chat.bullet.receipt.you_opened");
constexpr uint32_t kReceiptTextC = framework::NameId("chat.bullet.receipt.own_opened");
constexpr uint32_t kReceiptFromFormat = framework::NameId("chat.bullet.receipt.from");

// Panel state and tips.
constexpr uint32_t kQuickReplyText = framework::NameId("chat.bullet.quick_reply_text");
constexpr uint32_t kQuickReplyEmoji = framework::NameId("chat.bullet.quick_reply_emoji");
constexpr uint32_t kFoldTips = framework::NameId("chat.bullet.fold");
constexpr uint32_t kUnfoldTips = framework::NameId("chat.bullet.unfold");
constexpr uint32_t kDefaultEditText = framework::NameId("chat.bullet.default_edit_text");
constexpr uint32_t kPlaceholder = framework::NameId("chat.bullet.placeholder");
constexpr uint32_t kPlaceholderDisabled = framework::NameId("chat.bullet.placeholder_disabled");
constexpr uint32_t kOpenChat = framework::NameId("chat.bullet.open_chat");
constexpr uint32_t kArrowTitle = framework::NameId("chat.bullet.arrow");
constexpr uint32_t kChatOff = framework::NameId("chat.bullet.chat_off");
constexpr uint32_t kAbilityDefault = framework::NameId("chat.bullet.ability_off");
constexpr uint32_t kOnlyHostDesc = framework::NameId("chat.bullet.only_host");
constexpr uint32_t kNoHostDesc = framework::NameId("chat.bullet.no_host");
constexpr uint32_t kForbidden = framework::NameId("chat.bullet.forbidden");
constexpr uint32_t kEmojiOff = framework::NameId("chat.bullet.emoji_off");
constexpr uint32_t kEmojiHostOnly = framework::NameId("chat.bullet.emoji_host_only");
constexpr uint32_t kEmojiNotAllowed = framework::NameId("chat.bullet.emoji_not_allowed");
constexpr uint32_t kJoinTip = framework::NameId("chat.bullet.join_tip");

}  // namespace bullet_text
}  // namespace chat
