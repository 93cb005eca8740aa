#pragma once

#include "sim/models/sim_model.h"

namespace sim {

// Model 10009: chat file transfers.
//   method 4  {file_info, msg_id, download_file_from} starts a download
//   method 14 {file_path} -> {file_path, is_inhibit}: executables and scripts may not be
//             sent (talvex::ChatFileUtils::IsInhibitedExtension)
//   method 16 {file_name} -> {is_support}: whether the client opens the kind
//             (everything but the inhibited kinds)
// Events: 1 an upload was refused, 2 {integer code} a transfer failed.
class ChatFileModel : public SimModel {
 public:
  static constexpr int kId = 10009;
  ChatFileModel();
  void RefuseUpload() { FireEvent(1, nullptr); }
  void FailTransfer(int code) {
    Variant payload(code);
    FireEvent(2, &payload);
  }
};

}  // namespace sim
