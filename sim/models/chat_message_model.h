#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "framework/chat/chat_utils.h"
#include "sim/models/sim_model.h"

namespace sim {

// Model 524: the meeting's chat messages. Records are kept here by id and
// handed out by the chat helpers; the module holds ids only.
//   method 38 {local_msg_id (decimal text), meeting_id} -> the image download
//             states {thumb|large|orig}_download_status of that message
// Event 18 fires {msg_id} when a message is revoked or removed. Priority
// event 40 is the conversion of an arriving record: handlers change the
// record in place (the chat module adds its UI form); a handler that stops it
// keeps the message off the chat.
class ChatMessageModel : public SimModel, public talvex::IChatMessageStore {
 public:
  static constexpr int kId = 524;
  enum Event : uint32_t { kEventMessageRemoved = 18, kEventConvertMessage = 40 };

  ChatMessageModel();

  std::shared_ptr<Variant> FindMessage(std::string const& msg_id) const override;
  // Stores the record under its `msg_id` (a record without one is refused).
  bool AddMessage(Variant record);
  // A message arrives: stored, then converted. False when refused or when a
  // converter kept it off the chat.
  bool ReceiveMessage(Variant record);
  void SetImageDownloadState(uint64_t local_msg_id, Variant states);
  void RemoveMessage(std::string const& msg_id);
  size_t size() const { return messages_.size(); }
  std::vector<std::string> const& order() const { return order_; }

 private:
  std::map<std::string, std::shared_ptr<Variant>> messages_;
  std::vector<std::string> order_;
  std::map<std::string, Variant> image_states_;
};

}  // namespace sim
