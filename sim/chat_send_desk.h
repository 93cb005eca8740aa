#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/variant/variant.h"

namespace sim {

class ChatMessageModel;
class ChatFileModel;
class MemberModel;

// The sending side of the message model (524), as a server round trip looks
// to the client:
//   text  7 (default), 23 (waiting room), 40 (webinar attendee to a group)
//         {conv_id, conv_type, receiver_type, text_elem_content,
//          message_send_from_type}
//   image 30, 31 (waiting room) {..., image_elem_orig_path, image_elem_level,
//         image_elem_format}
//   file  52, 57 (waiting room) {..., file_elem_file_path, file_size, ...}
//   59    [items]: fires priority event 34 with the items; whoever takes it
//         sends the pieces
// A send answers the new message id at once, stores the record as sending
// (`message_status` 1) and announces it (event 35 with the id); after the
// latency the result follows: event 16 {msg_id, result, chat_type,
// message_info} then event 37 with the id, with status 2 (sent) or 3 (failed,
// `result` the error code). A file's record moves
// through upload states 0 to 3 (or 4) in `ext_content.file_info.status`,
// each step also fired as event 1 {msg_id, file_info} of the file model.
class ChatSendDesk {
 public:
  enum Event : uint32_t {
    kEventMixedSend = 34,
    kEventSendResult = 16,
    kEventMessageAdded = 35,
    kEventMessageUpdated = 37,
  };
  // A private message to a member who is not in the meeting any more.
  static constexpr int kErrorReceiverLeft = 20009;

  ChatSendDesk(ChatMessageModel& messages, MemberModel& members, ChatFileModel& files);
  ChatSendDesk(ChatSendDesk const&) = delete;
  ChatSendDesk& operator=(ChatSendDesk const&) = delete;
  ~ChatSendDesk();

  // Milliseconds between a send and its result (0: on the next turn of the
  // event loop).
  void set_latency_ms(int ms) { latency_ms_ = ms; }
  // The next `count` sends fail with `code`.
  void FailNextSends(int code, int count = 1) {
    fail_code_ = code;
    fail_count_ = count;
  }
  // The member leaves right after the next send to them went out.
  void LeaveDuringNextSend(std::string const& user_id) { leaving_user_id_ = user_id; }
  // Ids of the messages sent, in order.
  std::vector<std::string> const& sent_ids() const { return sent_ids_; }

 private:
  bool Send(uint32_t method, int chat_type, Variant const* params, Variant* result);
  void Complete(std::string const& msg_id, int code);
  void StepUpload(std::string const& msg_id, int status, int final_status);

  ChatMessageModel& messages_;
  MemberModel& members_;
  ChatFileModel& files_;
  int latency_ms_ = 50;
  int fail_code_ = 0;
  int fail_count_ = 0;
  std::string leaving_user_id_;
  uint64_t next_id_ = 1;
  std::vector<std::string> sent_ids_;
  // Pending timers check it, so a desk that went does nothing.
  std::shared_ptr<bool> alive_;
};

}  // namespace sim
