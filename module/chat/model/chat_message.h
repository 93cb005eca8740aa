#pragma once

#include <cstdint>
#include <string>

#include "base/variant/variant.h"

// The chat's vocabulary in names: the numbered kinds and states that cross
// between the client and the module, and a typed reading of the client's
// message record. The record itself stays the client's `Variant`.
namespace chat {

// `chat_type`: what a message holds. kTip is a local line of the list
// (a time, a notice that someone recalled a message).
enum class ChatType : int {
  kTip = -1,
  kText = 0,
  kFace = 1,
  kImage = 4,
  kControl = 5,
  kNotice = 6,
  kOpenApp = 7,
  kFile = 8,
  kPlainText = 11,
  kMixed = 12,
};

// `message_status`: where a message's send stands, and what became of it.
// The client also uses 7 and 9, whose meaning it does not give.
enum class MessageStatus : int {
  kLocalTip = -1,
  kSending = 1,
  kSent = 2,
  kFailed = 3,
  kDeleted = 4,
  kRecalled = 6,
};

// `conv_type` / `message_conv_type`.
enum class ConvType : int { kPrivate = 1, kGroup = 2 };

// What the chosen receiver is, from the receiver lookup.
enum class ReceiverType : int {
  kNone = 0,
  kMember = 1,
  kEveryone = 2,
  kWaitingRoom = 3,
  kWebinarGroup = 4,
  kWebinarEveryone = 5,
  kWaitingRoomMember = 6,
  kWaitingRoomListMember = 7,
};

// `item_type` of a UI item.
enum class ItemType : int { kText = 0, kEmoji = 1, kLink = 2, kImage = 3, kOpenApp = 4, kFile = 6 };

// `template_type`: the surface a list or a send belongs to.
enum class TemplateType : int { kUnset = 0, kBullet = 1, kPanel = 2, kRecord = 3 };

// A message menu's items; 3, 12 and 13 are not assigned.
enum class MenuItemType : int {
  kRecall = 0,
  kDelete = 1,
  kCopy = 2,
  kBlockSender = 4,
  kKickOut = 5,
  kSaveImage = 6,
  kCopyImage = 7,
  kRetryUpload = 8,
  kStopUpload = 9,
  kStopDownload = 10,
  kDownload = 11,
  kOpenFile = 14,
  kOpenFolder = 15,
  kSaveFileAs = 16,
  kCopyFile = 17,
  kPrivateChat = 18,
};

constexpr int ToInt(ChatType v) { return static_cast<int>(v); }
constexpr int ToInt(MessageStatus v) { return static_cast<int>(v); }
constexpr int ToInt(ConvType v) { return static_cast<int>(v); }
constexpr int ToInt(ReceiverType v) { return static_cast<int>(v); }
constexpr int ToInt(ItemType v) { return static_cast<int>(v); }
constexpr int ToInt(TemplateType v) { return static_cast<int>(v); }
constexpr int ToInt(MenuItemType v) { return static_cast<int>(v); }

// Keys the module reads and writes in records and in parameters.
namespace chat_key {
inline constexpr char kMsgId[] = "msg_id";
inline constexpr char kChatType[] = "chat_type";
inline constexpr char kStatus[] = "message_status";
inline constexpr char kConvType[] = "conv_type";
inline constexpr char kIsFromSelf[] = "is_from_self";
inline constexpr char kSender[] = "msg_sender";
inline constexpr char kTemplateType[] = "template_type";
inline constexpr char kReceiverType[] = "receiver_type";
}  // namespace chat_key

// A typed reading of a message record. Reads never fail: a missing key or
// one of another type reads as the default each accessor names, exactly as
// the record's own typed reads do (numbers of any kind convert; a string
// never does). The record must outlive the reader.
class MessageRecord {
 public:
  explicit MessageRecord(Variant const& record) : record_(record) {}

  std::string msg_id() const { return record_.GetString(chat_key::kMsgId); }
  bool has_chat_type() const { return record_.Has(chat_key::kChatType); }
  // kText when absent or not a number, unless another default is given.
  ChatType chat_type(ChatType def = ChatType::kText) const {
    return static_cast<ChatType>(record_.GetInt32(chat_key::kChatType, ToInt(def)));
  }
  // A local line of the list: `chat_type` present and kTip.
  bool IsTip() const { return has_chat_type() && chat_type() == ChatType::kTip; }
  bool has_status() const { return record_.Has(chat_key::kStatus); }
  // 0 (no status) when absent or not a number, unless another default is given.
  MessageStatus status(MessageStatus def = static_cast<MessageStatus>(0)) const {
    return static_cast<MessageStatus>(record_.GetInt32(chat_key::kStatus, ToInt(def)));
  }
  bool IsRecalled() const { return status() == MessageStatus::kRecalled; }
  // A failed send; a record without a status counts as sent.
  bool IsFailed() const { return status(MessageStatus::kSent) == MessageStatus::kFailed; }
  bool is_from_self() const { return record_.GetBoolean(chat_key::kIsFromSelf); }
  // A private conversation; a record without `conv_type` is a group one.
  bool IsPrivate() const { return record_.GetInt32(chat_key::kConvType, ToInt(ConvType::kGroup)) == ToInt(ConvType::kPrivate); }
  Variant const& sender() const { return record_.Get(chat_key::kSender); }
  Variant const& raw() const { return record_; }

 private:
  Variant const& record_;
};

}  // namespace chat
