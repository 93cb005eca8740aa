#pragma once

#include <string>

#include "sim/models/sim_model.h"

namespace sim {

// Model 502: the meeting's switches.
//   method 1 {key} -> the value, false when the key is unknown
// Keys: "notice_enable" (false), "notice_read" (true), "emoji_enable" (true),
// "im_file_and_picture" (true), "im" and "chat" (true: the meeting has chat,
// and chat is on), "chat_permission_reply_emoji" (false). Event 0 fires
// {key, value} after a change.
// Immersive mode is asked for with priority event 10 {can_enter_immersive_mode}:
// a priority handler may refuse it (setting the flag false with a `reason`);
// when none does, the plain handlers of 10 learn that it began. Event 11: it
// ended.
class MeetingSettingsModel : public SimModel {
 public:
  static constexpr int kId = 502;
  static constexpr uint32_t kEventChanged = 0;
  static constexpr uint32_t kEventEnterImmersive = 10;
  static constexpr uint32_t kEventLeaveImmersive = 11;
  MeetingSettingsModel();
  void SetSwitch(std::string const& key, bool value);
  // Asks for immersive mode; the refusal (empty when it began) in `reason`.
  bool EnterImmersiveMode(std::string* reason = nullptr);
  void LeaveImmersiveMode();
  bool immersive() const { return immersive_; }

 private:
  Variant values_{base::variant::kVariantTypeMap};
  bool immersive_ = false;
};

}  // namespace sim
