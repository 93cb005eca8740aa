#pragma once

#include "sim/models/sim_model.h"

namespace sim {

// Model 10009: chat file transfers.
//   method 4  {file_info, msg_id, download_file_from} starts a download
//   method 5 (message) stops its download: status 10 (canceled)
//   method 6 (message) uploads it again: status 0 (waiting), then 3
//   method 7 (message) stops its upload: status 2 (canceled)
//   method 14 {file_path} -> {file_path, is_inhibit}: executables and scripts may not be
//             sent (talvex::ChatFileUtils::IsInhibitedExtension)
//   method 16 {file_name} -> {is_support}: whether the client opens the kind
//             (everything but the inhibited kinds)
// Events: 1 an upload was refused, 2 {integer code} a transfer failed.
class ChatFileModel : public SimModel {
 public:
  static constexpr int kId = 10009;
  ChatFileModel();
  // Where the file states live: the message store's records.
  void set_messages(class ChatMessageModel* messages) { messages_ = messages; }
  void RefuseUpload() { FireEvent(1, nullptr); }
  void FailTransfer(int code) {
    Variant payload(code);
    FireEvent(2, &payload);
  }

 private:
  bool SetStatus(Variant const* message, int status);
  class ChatMessageModel* messages_ = nullptr;
};

}  // namespace sim
