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
// Event 18 fires {msg_id} when a message is revoked or removed.
class ChatMessageModel : public SimModel, public talvex::IChatMessageStore {
 public:
  static constexpr int kId = 524;
  enum Event : uint32_t { kEventMessageRemoved = 18 };

  ChatMessageModel();

  std::shared_ptr<Variant> FindMessage(std::string const& msg_id) const override;
  // Stores the record under its `msg_id` (a record without one is refused).
  bool AddMessage(Variant record);
  void RemoveMessage(std::string const& msg_id);
  size_t size() const { return messages_.size(); }
  std::vector<std::string> const& order() const { return order_; }

 private:
  std::map<std::string, std::shared_ptr<Variant>> messages_;
  std::vector<std::string> order_;
};

}  // namespace sim
