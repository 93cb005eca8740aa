#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/timer/tx_timer.h"
#include "sim/models/chat_message_model.h"
#include "sim/models/sim_model.h"

namespace sim {

// Model 584: the meeting as the client's web pages read it.
//   method 0 {meetingId} asks for the meeting's public messages
//   method 1 {meetingId, privateAppUid, privateAppId} asks for the private
//            messages between the local user and that member
// A request without its ids is refused (false). The answer comes on the
// host's timers, `latency_ms` later, as event 0 (public) or 1 (private):
//   {request_param: the request as given, callback_data: JSON text}
// callback_data is an array of the messages, oldest first:
//   [{"msgId": "msg-1000", "type": 0, "text": "Hello", "time": 1700000000,
//     "isFromSelf": false,
//     "sender": {"userId", "appUid", "appId", "nickname"},
//     "receiver": {the same keys; private messages only}}]
// `type` is the message's chat_type and `time` its time in seconds; `text`
// is its text elements in order. Deleted and withdrawn messages, chat
// controls and the client's local tips are left out. Another meeting id
// answers an empty list.
class WebMeetingModel : public SimModel {
 public:
  static constexpr int kId = 584;
  enum Event : uint32_t {
    kEventPublicMsgList = 0,
    kEventPrivateMsgList = 1,
  };

  explicit WebMeetingModel(ChatMessageModel& messages);
  ~WebMeetingModel() override;

  void set_latency_ms(int ms) { latency_ms_ = ms; }
  // The meeting's web service is down: every request is refused.
  void SetRefusing(bool refusing) { refusing_ = refusing; }

  // The JSON text of a list, as the events carry it.
  std::string PublicListJson(std::string const& meeting_id) const;
  std::string PrivateListJson(std::string const& meeting_id, std::string const& app_uid,
                              std::string const& app_id) const;

 private:
  bool Request(uint32_t event, Variant const* params, bool is_private);
  void Later(std::function<void()> task);

  ChatMessageModel& messages_;
  int latency_ms_ = 20;
  bool refusing_ = false;
  std::vector<std::unique_ptr<talvex_common::utils::timer::TXTimer>> pending_;
};

}  // namespace sim
