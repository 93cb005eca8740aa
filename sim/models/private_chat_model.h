#pragma once

#include "sim/models/sim_model.h"

namespace sim {

// Model 528: private conversations.
//   method 1 -> the receiver chosen in the chat panel (null until chosen)
//   method 2 (receiver or null) chooses; event 0 fires with it
//   method 3 (receiver) -> the conversation id with that member,
//            "c2c_<user_id>" (or the app_uid without a user id); false for
//            a receiver without either
class PrivateChatModel : public SimModel {
 public:
  static constexpr int kId = 528;
  PrivateChatModel();
  Variant const& receiver() const { return receiver_; }
  void SetReceiver(Variant receiver);

 private:
  Variant receiver_;
};

}  // namespace sim
