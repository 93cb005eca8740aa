#pragma once

#include <string>

#include "sim/models/sim_model.h"

namespace sim {

// Model 514: whether the meeting is on and joined, and its display state.
//   method 0  -> bool, the meeting is on
//   method 3  -> bool, the meeting is joined
//   method 11 -> int, display state (1 keeps text and images off the video)
//   method 54 -> map of the meeting's abilities
// Events: 1 joined {result}, 2 left {result}, 14 and 15 focus changes,
// 18 room changed {result}.
class MeetingStateModel : public SimModel {
 public:
  static constexpr int kId = 514;
  enum Event : uint32_t { kEventJoined = 1, kEventLeft = 2, kEventMoved = 14, kEventFocus = 15, kEventRoomChanged = 18 };

  MeetingStateModel();

  void Join(int result = 0);
  void Leave(int result = 0);
  void MoveToWaitingRoom();
  void SetDisplayState(int state) { display_state_ = state; }
  void SetAbilities(Variant abilities) { abilities_ = std::move(abilities); }
  bool on() const { return on_; }
  std::string const& meeting_id() const { return meeting_id_; }
  void set_meeting_id(std::string id) { meeting_id_ = std::move(id); }

 private:
  bool on_ = false;
  int display_state_ = 0;
  std::string meeting_id_ = "801234567";
  Variant abilities_{base::variant::kVariantTypeMap};
};

}  // namespace sim
