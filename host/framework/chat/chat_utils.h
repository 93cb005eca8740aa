#pragma once

#include <memory>
#include <string>

#include "base/variant/variant.h"

namespace framework {
class UIViewModel;
}

namespace talvex {

// What the client's message model (application model 524) offers to the
// chat helpers: the records by id. Records stay with the client; a module
// holds ids and asks here when it draws.
class IChatMessageStore {
 public:
  virtual ~IChatMessageStore() = default;
  virtual std::shared_ptr<Variant> FindMessage(std::string const& msg_id) const = 0;
};

// The client's chat helpers.
//
// A message's UI items are maps with `item_type` 0 (text: `item_content`),
// 1 (emoji: `item_emoji_index`, `item_emoji_text`, `item_emoji_path`) or
// 2 (link: `item_content`, the address as written).
class ChatUtils {
 public:
  // The record, or null when the id is unknown or there is no message model.
  static std::shared_ptr<Variant> GetMsgInfoPtrById(std::string const& msg_id);
  // Red packets (chat type 2) and their receipts (chat type 3) have cells of
  // the client's own.
  static bool IsRedPacketOrReceiptType(int chat_type);

  // Splits a text into text, link and emoji items. Emoji items are the face
  // shortcuts the face model (570) knows; without a face model the text is
  // split into text and links only. An empty text gives an empty array.
  static Variant ParseMessageContext(std::string const& text);
  // Splits a text into text and link items only.
  //
  // Links: "http://", "https://" (any case) and bare "www." hosts that start a
  // word. A link runs over printable ASCII but for spaces, quotes, angle
  // brackets and a "[" after the host (where a face shortcut begins).
  // Trailing . , ; : ! ? ' " and closing brackets without an opening one
  // inside the link stay text. A link never ends inside a grapheme cluster (a
  // combining mark or a keycap after its last letter stays with the letter,
  // as text).
  static Variant URLParseMessageContext(std::string const& text);
  // When `items` is one emoji item and `rewrite` is set, the record becomes a
  // face message (`chat_type` 1) and the result is that item alone; otherwise
  // the items are returned as they are.
  static Variant UpdateToFaceMesssageIfSingleEmojiItem(Variant& record, Variant const& items, bool rewrite = true);
  // The items of a message whose elements mix text (`text_elem_content`) and
  // faces (`face_elem_index`, `face_elem_buf`). A face the face model doesn't
  // know shows as its buffer text. With no element that gives an item,
  // `compatible_tip` becomes the one text item.
  static Variant ParseEmojiTextMixedMessage(Variant const& elements, std::string const& compatible_tip);

  // The image cache of a meeting: "<cache>/talvex/chat_images/<meeting_id>/
  // <thumb|large|orig>_<id>". Ids are made safe for a file name.
  static std::string GetThumbPicFileName(std::string const& id, std::string const& meeting_id);
  static std::string GetLargePicFileName(std::string const& id, std::string const& meeting_id);
  static std::string GetOriginalPicFileName(std::string const& id, std::string const& meeting_id);
  static bool CheckThumbPicFileExist(std::string const& id, std::string const& meeting_id);
  static bool CheckLargePicFileExist(std::string const& id, std::string const& meeting_id);
  static bool CheckOriginalPicFileExist(std::string const& id, std::string const& meeting_id);
  static std::string GetChatImageCacheDir(std::string const& meeting_id);

  // Fills the shared fields of a message row (the ChatMsgBaseInfoFields_*
  // keys and `chat_type`) from a message record: sender name and avatar, the
  // parts of the sender line (own and private messages read differently), the
  // time, the status with the tip under a failed message, and the tooltip of
  // the "more" button.
  static void ConvertMessageInfoToBaseInfo(framework::UIViewModel* view_model, Variant const& record, Variant* info);
  // The renditions a client downloads an image in.
  static std::string download_type_thumb() { return "thumb"; }
  static std::string download_type_large() { return "large"; }
  static std::string download_type_original() { return "original"; }

  // "hh:mm" of a Unix time in seconds, local time.
  static std::string FormatMessageTime(int64_t seconds);
  // --- sending (chat_utils_send.cpp) ---------------------------------------
  // The local user's chat state (chat authority model 526, method 9):
  // `disable_chat`, `need_show_icon`, `disable_chat_desc`,
  // `allow_chat_wording_show`, `allow_chat_wording_desc`, `allow_chat_policy`.
  // Chat is allowed when the client has no answer.
  static Variant GetIMAuthorityInfo();
  // The chosen receiver as the receiver line shows it: `receiver_type`,
  // `receiver_name`, `receiver_hint` (what the receiver will see of it), and
  // `is_private`.
  static Variant GetReceiverNameAndHint();
  // Whether the meeting allows pictures and files in chat.
  static bool IsMeetingSupportIMFileAndPicture();
  static bool GetMeetingNoticeIsRead();
  // Judged by the name, so it holds for a file that is not there.
  static bool IsWebp(std::string const& path);
  // By the file's first bytes: 1 JPEG, 2 GIF, 3 PNG, 4 BMP, 0 anything else.
  static int GetImageFormat(std::string const& path);
  // A fresh folder for a picture to send: "<image cache of the meeting>/send/
  // <millisecond>", created.
  static std::string MakeUniqueChatImageDirPath(std::string const& meeting_id);
  // Where the input keeps pictures pasted into it, created.
  static std::string GetMsgCacheSendImageDirPath();
  static bool IsSelfHost();
  static bool IsSelfCoHost();
  static bool IsWaitingRoom();
  // What the analytics of a private chat report about its two ends: the
  // sender's condition ("1" host, "2" co-host, "3" panelist, "4" attendee,
  // "5" in the waiting room, "0" a member) and the receiver's (the same
  // numbers for one member, read from its `role`; "6" everyone, "7" all in the
  // waiting room, "8" the panelists, "9" panelists and attendees).
  static void GetChatCondition(Variant const& receiver, std::string& sender_condition,
                               std::string& receive_condition);

  // --- the floating chat (chat_message_tools.cpp) ---------------------------
  // The layout a bullet of this content kind starts from: the kind itself,
  // with a plain text element (11) laid out as text (0).
  static int ConvertToLayoutType(int chat_type);
  // For a group message sent to part of the meeting (the waiting room, the
  // panelists, a webinar group), sets `msg_receiver` in `out` to the name of
  // that part; to everyone, or for a private message, it stays empty.
  // `flags` is reserved and 0.
  static void ResolveUIMsgGroupReceiver(Variant const& source, Variant& out, int flags);
  // Whether chat is on in this meeting (the meeting's switch "chat").
  static bool IsChatEnable();
  // Whether the meeting has chat at all (the meeting's switch "im");
  // `scene` is reserved and 0.
  static bool IsMeetingSupportIM(int scene);
};

// Texts of message records.
class ChatMessageTools {
 public:
  // The plain text of a record's content: for a notice (6) the notice's
  // text, for other kinds the text of its elements joined.
  static std::string ParseContent(int chat_type, Variant const& source);
  // Drops the link markup some clients wrap around addresses
  // ("<url>", "</url>", "[url]", "[/url]", any case), keeping the address.
  static std::string TrimUrlTag(std::string const& text);
};

}  // namespace talvex
