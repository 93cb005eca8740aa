#pragma once

#include <string>

#include "sim/models/sim_model.h"

namespace sim {

// Model 514: whether the meeting is on and joined, and its display state.
//   method 0  -> bool, the meeting is on
//   method 3  -> bool, the meeting is joined
//   method 11 -> int, display state (1 keeps text and images off the video)
//   method 54 -> map of the meeting's abilities
// Events: 1 joined {result}, 2 left {result}, 12 the abilities changed,
// 13 (and 14) the local user was moved to the waiting room, 15 admitted from
// it, 18 room changed {result}.
class MeetingStateModel : public SimModel {
 public:
  static constexpr int kId = 514;
  enum Event : uint32_t {
    kEventJoined = 1,
    kEventLeft = 2,
    kEventAbilitiesChanged = 12,
    kEventEnterWaitingRoom = 13,
    kEventMoved = 14,
    kEventFocus = 15,
    kEventRoomChanged = 18
  };

  MeetingStateModel();

  void Join(int result = 0);
  void Leave(int result = 0);
  void MoveToWaitingRoom();
  void SetDisplayState(int state) { display_state_ = state; }
  // The meeting's abilities change; event 12 tells.
  void SetAbilities(Variant abilities) {
    abilities_ = std::move(abilities);
    FireEvent(kEventAbilitiesChanged, nullptr);
  }
  void EnterWaitingRoom() { FireEvent(kEventEnterWaitingRoom, nullptr); }
  void LeaveWaitingRoom() { FireEvent(kEventFocus, nullptr); }
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
