#pragma once

#include <memory>
#include <string>

#include "base/variant/variant.h"

namespace talvex {

// What the client's message model (application model 524) offers to the
// chat helpers: the records by id. Records stay with the client; a module
// holds ids and asks here when it draws.
class IChatMessageStore {
 public:
  virtual ~IChatMessageStore() = default;
  virtual std::shared_ptr<Variant> FindMessage(std::string const& msg_id) const = 0;
};

class ChatUtils {
 public:
  // The record, or null when the id is unknown or there is no message model.
  static std::shared_ptr<Variant> GetMsgInfoPtrById(std::string const& msg_id);
  // Red packets (chat type 2) and their receipts (chat type 3) have cells of
  // the client's own.
  static bool IsRedPacketOrReceiptType(int chat_type);
};

}  // namespace talvex
