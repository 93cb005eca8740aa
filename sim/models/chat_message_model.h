#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "framework/chat/chat_utils.h"
#include "sim/models/sim_model.h"

namespace sim {

// Model 524: the meeting's chat messages. Records are kept here by id and
// handed out by the chat helpers; the module holds ids only.
//   method 62 {limit, msg_id (local id; 0 the newest), meeting_id} asks for a
//             page of history; the answer is event 39 {meeting_id,
//             msg_id_list (oldest first), result, from_msg_id}, delivered on
//             a later turn of the event loop
//   method 32 {url, uuid, download_type, msg_id} downloads an image rendition
//   method 38 {local_msg_id (decimal text), meeting_id} -> the image download
//             states {thumb|large|orig}_download_status of that message
// Events: 35 added, 36 deleted, 37 updated (payload: the id), 11 the result
// of an operation {result, message_conv_type}, 41 a toast text.
// Event 18 fires {msg_id} when a message is removed, and the message's bullet
// form (status 6) when it is revoked.
// The floating chat's side: priority event 8 {new_msg_list: [bullet form]}
// fires for every message that arrives from someone else; method 46 -> the
// webinar's unread count (uint32), method 12 marks it read (event 15 then
// fires); events 31 (join tips), 42 (a service tip) and 44 (chat support
// changed) are the meeting's to fire.
// The message menus' side: method 18 -> bool, the chat connection is ready;
// 65 (msg_id) recalls a message, 66 (msg_id) deletes it for the local user;
// 45 -> the meeting's IM group id ("im-<meeting id>"). Priority
// event 40 is the conversion of an arriving record: handlers change the
// record in place (the chat module adds its UI form); a handler that stops it
// keeps the message off the chat.
class ChatMessageModel : public SimModel, public talvex::IChatMessageStore {
 public:
  static constexpr int kId = 524;
  enum Event : uint32_t {
    kEventOperationResult = 11,
    kEventSendResult = 16,
    kEventReceived = 8,
    kEventUnreadChanged = 15,
    kEventMessageRemoved = 18,
    kEventBulletTip = 31,
    kEventJoinTip = 42,
    kEventIMSupportChanged = 44,
    kEventMessageAdded = 35,
    kEventMessageDeleted = 36,
    kEventMessageUpdated = 37,
    kEventMessageList = 39,
    kEventConvertMessage = 40,
    kEventToast = 41,
  };

  ChatMessageModel();

  std::shared_ptr<Variant> FindMessage(std::string const& msg_id) const override;
  // Stores the record under its `msg_id` (a record without one is refused).
  bool AddMessage(Variant record);
  // A message arrives: stored, then converted. False when refused or when a
  // converter kept it off the chat.
  bool ReceiveMessage(Variant record);
  void SetImageDownloadState(uint64_t local_msg_id, Variant states);

  // A message reaches the meeting: it gets a local id and times where it has
  // none, is converted, stored and announced (event 35). Returns its id, ""
  // when it was refused or kept off the chat.
  std::string Post(Variant record);
  // Changes a stored record and announces it (event 37).
  bool Update(std::string const& msg_id, std::function<void(Variant&)> const& change);
  // The sender withdrew the message: status 6, announced as an update.
  bool Revoke(std::string const& msg_id);
  // The message is deleted: status 4, announced (event 36).
  bool Delete(std::string const& msg_id);
  // The next history page fails with this result code.
  void FailNextHistoryPage(int result) { fail_next_page_ = result; }
  // History pages answer at once instead of on the next loop turn.
  void SetHistorySynchronous(bool synchronous) { history_synchronous_ = synchronous; }
  int history_requests() const { return history_requests_; }
  void RemoveMessage(std::string const& msg_id);
  size_t size() const { return messages_.size(); }
  uint32_t webinar_unread() const { return webinar_unread_; }
  // The chat connection drops (or comes back): menus refuse to recall.
  void SetChatKeyReady(bool ready) { chat_key_ready_ = ready; }
  std::vector<std::string> const& order() const { return order_; }

 private:
  std::map<std::string, std::shared_ptr<Variant>> messages_;
  std::vector<std::string> order_;
  std::map<std::string, Variant> image_states_;
  uint64_t next_local_id_ = 1000;
  int fail_next_page_ = 0;
  bool history_synchronous_ = false;
  int history_requests_ = 0;
  uint32_t webinar_unread_ = 0;
  bool chat_key_ready_ = true;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);

  Variant HistoryPage(Variant const& params);
};

}  // namespace sim
