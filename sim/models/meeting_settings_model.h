#pragma once

#include <string>

#include "sim/models/sim_model.h"

namespace sim {

// Model 502: the meeting's switches.
//   method 1 {key} -> the value, false when the key is unknown
// Keys: "notice_enable" (false), "notice_read" (true), "emoji_enable" (true),
// "im_file_and_picture" (true). Event 10 fires {key, value} after a change.
class MeetingSettingsModel : public SimModel {
 public:
  static constexpr int kId = 502;
  static constexpr uint32_t kEventChanged = 10;
  MeetingSettingsModel();
  void SetSwitch(std::string const& key, bool value);

 private:
  Variant values_{base::variant::kVariantTypeMap};
};

}  // namespace sim
