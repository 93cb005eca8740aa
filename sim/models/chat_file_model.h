#pragma once

#include <map>
#include <memory>
#include <string>

#include "base/timer/tx_timer.h"
#include "sim/models/sim_model.h"

namespace sim {

class ChatMessageModel;

// Model 10009: chat file transfers.
//   method 4  {file_info, msg_id, download_file_from} downloads a message's
//             file: 6 (waiting), then 7 with progress in `steps` chunks, one
//             every `step_ms`, written to a ".part" file in today's chat
//             folder, then 9 with the file under its own name there
//             ("name (n).ext" when taken). A failure knob ends it in 8.
//   method 5 (message) stops its download: the part goes, status 10
//   method 6 (message) uploads it again: status 0 (waiting), then 3
//   method 7 (message) stops its upload: status 2 (canceled)
//   method 14 {file_path} -> {file_path, is_inhibit}: executables and scripts may not be
//             sent (talvex::ChatFileUtils::IsInhibitedExtension)
//   method 16 {file_name} -> {is_support}: whether the client opens the kind
//             (everything but the inhibited kinds)
// Events: 0 {file_message, file_info} a file's transfer moved; 1 an upload
// was refused; 2 {integer code} a transfer failed; 4 {file_id} a file was
// taken back.
class ChatFileModel : public SimModel {
 public:
  static constexpr int kId = 10009;
  ChatFileModel();
  ~ChatFileModel() override;
  // Where the file states live: the message store's records.
  void set_messages(ChatMessageModel* messages) { messages_ = messages; }
  void RefuseUpload() { FireEvent(1, nullptr); }
  void FailTransfer(int code) {
    Variant payload(code);
    FireEvent(2, &payload);
  }
  void set_step_ms(int ms) { step_ms_ = ms; }
  void set_steps(int steps) { steps_ = steps > 0 ? steps : 1; }
  // The next download fails half-way with this code and text.
  void FailNextDownload(int code, std::string message);
  // The sender takes the file back: its message is recalled.
  void RevokeFile(std::string const& msg_id);
  // Moves a message's file to `status` at `progress` (0 to 1), with its
  // local `path` once there is one, and tells who follows the transfer.
  bool Advance(std::string const& msg_id, int status, double progress, std::string const& path = std::string(),
               int err_code = 0, std::string const& err_msg = std::string());
  bool transferring(std::string const& msg_id) const { return transfers_.count(msg_id) > 0; }

 private:
  struct Transfer;
  bool StartDownload(Variant const* params);
  void Step(std::string const& msg_id);
  void EndTransfer(std::string const& msg_id, bool remove_part);
  bool SetStatus(Variant const* message, int status);

  ChatMessageModel* messages_ = nullptr;
  int step_ms_ = 200;
  int steps_ = 10;
  int fail_code_ = 0;
  std::string fail_message_;
  std::map<std::string, std::unique_ptr<Transfer>> transfers_;
};

}  // namespace sim
