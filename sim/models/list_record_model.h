#pragma once

#include <map>
#include <string>
#include <vector>

#include "sim/models/sim_model.h"

namespace sim {

class ChatMessageModel;

// Model 10016: the client's record of what each chat list shows, and the
// maker of local tip messages.
//   1039495232 (conversation id) -> a list id
//   468035239  {list_id, msg_id_list} resets the list; {list_id} alone releases it
//   124265569  {list_id, msg_id_list} appends
//   204832767  {list_id, msg_id_list} removes
//   236764533  {chat_type -1, conv_id, message_status -1, msg_content {item_content}}
//              -> the id of a new local tip message, stored with the chat messages
class ListRecordModel : public SimModel {
 public:
  static constexpr int kId = 10016;
  explicit ListRecordModel(ChatMessageModel& messages);
  // The ids a list holds now; empty for an unknown or released list.
  std::vector<std::string> List(std::string const& list_id) const;
  size_t live_lists() const { return lists_.size(); }
  int tips_made() const { return next_tip_ - 1; }

 private:
  ChatMessageModel& messages_;
  std::map<std::string, std::vector<std::string>> lists_;
  int next_list_ = 1;
  int next_tip_ = 1;
};

// Model 525: message notifications. Event 9: the message list changed and
// lists should read it again.
class MessageNotificationModel : public SimModel {
 public:
  static constexpr int kId = 525;
  MessageNotificationModel() : SimModel(kId) {}
  void NotifyListChanged() { FireEvent(9, nullptr); }
};

// Model 530: chat control.
//   2 {forbid, message_seq, message_server_time, message_rand, sender_info
//     {app_uid, ...}} blocks the sender's messages (and chat, with `forbid`)
//   4 {msg_list [{msg_id, app_uid, ...}]} -> {shield_msg_list [{msg_id}]}: the
//     entries whose sender is shielded (blocked)
//   5 starts watching shields (webinars), 6 stops
//   8 -> bool, the host checks messages by hand before they show (off)
//   9 -> {url}: where the sensitive-words page is
// Event 0 fires when a sender is shielded.
class ShieldModel : public SimModel {
 public:
  static constexpr int kId = 530;
  ShieldModel();
  void ShieldSender(std::string const& app_uid);
  bool shielded(std::string const& app_uid) const;
  std::vector<std::string> const& forbidden() const { return forbidden_; }
  bool watching() const { return watching_; }

 private:
  std::vector<std::string> shielded_;
  std::vector<std::string> forbidden_;
  bool watching_ = false;
};

}  // namespace sim
