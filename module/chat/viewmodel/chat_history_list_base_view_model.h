#pragma once

#include <cstdint>
#include <string>

#include "framework/viewmodel/extension_view_model.h"
#include "chat/model/chat_message.h"
#include "chat/viewmodel/chat_history_list_parts.h"

namespace chat {

// Decides which messages a chat list shows and in which order: pages older
// messages in, puts time tips between messages far apart, counts unread
// messages, tells the user why a send failed, and keeps the client's record of
// the list in step. The list holds message ids; records stay with the client.
class ChatHistoryListBaseViewModel : public talvex::ExtensionViewModel {
 public:
  // Props.
  static constexpr uint32_t kPropMessageList = 0xd4340;
  static constexpr uint32_t kPropScrollToMessage = 0x273a8;
  static constexpr uint32_t kPropSnapToBottom = 0x800a6;
  static constexpr uint32_t kPropUnreadTip = 0xc9454;
  static constexpr uint32_t kPropChatPaneType = 0xa3714;
  static constexpr uint32_t kPropListAttached = 0x41385;
  // The text of several messages for the clipboard: an array of maps with
  // "nickname", "text", "html", "img" and "tail".
  static constexpr uint32_t kPropMimeData = framework::NameId("ChatHistoryList.MimeData");
  // Actions.
  static constexpr uint32_t kActionSetAnchor = 0x6863a;
  static constexpr uint32_t kActionClickUnreadTip = 0xd66e8;
  static constexpr uint32_t kActionGetMore = 0xe44d9;
  static constexpr uint32_t kActionScrollPosition = 0xeb43c;
  // Payload: the array of message ids to copy, in list order.
  static constexpr uint32_t kActionGetMimeData = framework::NameId("ChatHistoryList.GetMimeData");
  // Update types of the list prop.
  enum UpdateType : int {
    kUpdateAppend = 0,
    kUpdateReplaceOne = 1,
    kUpdateOlderPage = 2,
    kUpdateReset = 3,
    kUpdateChanged = 4,
    kUpdateRemoved = 5,
  };
  // Surfaces a list is for.
  enum : int {
    kTemplateUnset = ToInt(chat::TemplateType::kUnset),
    kTemplateBullet = ToInt(chat::TemplateType::kBullet),
    kTemplatePanel = ToInt(chat::TemplateType::kPanel),
    kTemplateRecord = ToInt(chat::TemplateType::kRecord),
  };
  static constexpr int kHistoryPageLimit = 51;
  static constexpr uint64_t kTimeTipGapSeconds = 180;

  ChatHistoryListBaseViewModel();
  ~ChatHistoryListBaseViewModel() override;

  void OnViewCreated(Variant const* params) override;
  void OnViewAttached(Variant const* params) override;
  void OnViewDetached() override;

  // Client events.
  void OnSendMessageResult(Variant const* payload, bool* keep_going);
  void OnMessageAdded(Variant const* payload);
  void OnMessageDeleted(Variant const* payload);
  void OnMessageUpdated(Variant const* payload);
  void OnMessageOperationResult(Variant const* payload);
  void OnGetMessageList(Variant const* payload);
  void OnToastMessage(Variant const* payload);
  void OnMessageListChanged(Variant const* payload);
  void OnGetShieldInfo(Variant const* payload);
  virtual void OnJoinComplete(Variant const* payload);

  // Asks the client for a page older than `msg_id` (the newest page for "").
  // False when no request went out.
  virtual bool GetHistoryMessage(std::string const& msg_id);

  // "hh:mm" on the day of the server's clock, else "yyyy-MM-dd hh:mm".
  static std::string TimeTipText(uint64_t seconds);

  int template_type() const { return template_type_; }
  std::string const& message_conv_id() const { return message_conv_id_; }
  bool is_getting_more() const { return pages_.requesting(); }
  int unread_msg_count() const { return unread_.unread(); }
  int at_msg_count() const { return unread_.mentions(); }
  Variant const& show_msg_ids() const { return show_msg_ids_; }
  std::string const& list_id() const { return list_id_; }

 protected:
  // Called with (immediately, count_unread); returns count_unread. The panel
  // batches received messages here.
  virtual bool ScheduleRecvMsgs(bool immediately, bool count_unread) { return count_unread; }
  virtual void ParseInitParams(Variant const* params);
  virtual bool IsChatTypeShow(int chat_type) const { return true; }
  virtual void OnJoinCompleted() {}
  // True when the subclass dealt with the code and no toast is due.
  virtual bool HandleSendError(int code) { return false; }

  bool IsShowMessage(Variant const& msg) const;
  bool IsInMeetingMsg(Variant const& msg) const;
  // The meeting or conversation test; logs and answers false on a mismatch.
  bool IsInThisConversation(Variant const& msg) const;
  void AddMessage(Variant const& msg, Variant& list, bool history);
  Variant BuildListItem(Variant const& msg) const;
  void InsertTimeTipIfNeeded(Variant const& msg, Variant& list, bool history);
  void InsertTimeTip(uint64_t seconds, Variant& list);
  void UpdateMessageList(Variant const& items, int type);
  void RecordShownMessages(Variant const& items, int type);
  void DeleteShowMessage(Variant const& items, int type);
  void UpdateUnreadTip();
  void HandleClickUnreadTip();
  void HandleIsScrollBottom(Variant const* params);
  void HandleGetMoreMsgList(Variant const* params);
  void HandleGetMimeData(Variant const* params);
  void ShowSendError(int code, int chat_type, std::string const& error_msg);
  void Toast(std::string const& text);
  // The meeting id to keep the list for: the main meeting in a breakout room.
  std::string CurrentMainMeetingId() const;
  void CallListRecord(uint32_t method, Variant const& ids);

  // Received messages waiting for the next append, taken all at once.
  Variant TakePendingMessages();
  bool is_snap_bottom() const { return is_snap_bottom_; }
  // Counts a received message the reader has not seen: every kind but tips
  // and plain-text lines, and a notice also as a mention to jump to.
  void CountUnread(std::string const& msg_id, ChatType chat_type);
  void set_template_type(int32_t type) { template_type_ = type; }

 private:
  void Subscribe();
  void Unsubscribe();

  Variant pending_msg_list_;
  bool is_snap_bottom_ = true;
  UnreadCounter unread_;
  std::string message_conv_id_;
  std::string list_id_;
  int32_t template_type_ = kTemplatePanel;
  TimeTipMarks time_tips_{kTimeTipGapSeconds};
  HistoryPages pages_;
  std::string meeting_id_;
  Variant show_msg_ids_;
};

}  // namespace chat
