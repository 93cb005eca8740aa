#pragma once

#include <cstdint>
#include <string>

#include "framework/viewmodel/stateful_view_model.h"

namespace chat {

// The page of one chat file, of the running chat or of a chat record: its
// name, size and kind, the transfer's progress, and a main and a cancel
// button whose meaning follows the file's state. It keeps a copy of the
// message and follows the client's file events.
class FilePreviewViewModel : public framework::StatefulViewModel {
 public:
  static constexpr uint32_t kPropUIData = framework::NameId("FilePreviewUIData");
  // Download, retry, or open a file on disk (through the client), by state.
  static constexpr uint32_t kActionMainButton = framework::NameId("FilePreviewMainButton");
  static constexpr uint32_t kActionCancel = framework::NameId("FilePreviewCancel");
  // The client could not open the file.
  static constexpr uint32_t kActionOpenFailed = framework::NameId("FilePreviewOpenFailed");

  // The message (with its `file_info` in UI form, and `ext_content` for the
  // client's form) comes as the view's params; `template_type` 3 marks a
  // chat record's file.
  FilePreviewViewModel();
  void OnViewAttached(Variant const* params) override;
  // The page's params for a file message of the chat: the record with its
  // file in UI form as `file_info`; null for no such file message.
  static Variant ParamsOfMessage(std::string const& msg_id, int template_type);

  void InitFileParam(Variant const* params);
  void UpdateUI();
  void OnEventFileMsgUIDataChanged(Variant const* payload);
  void OnEventChattingRecordMsgUIDataChanged(Variant const* payload);
  void OnEventChattingFileRevoked(Variant const* payload);
  // Download, retry or open, by the file's state.
  void HandleMainButton();
  void HandleDownloadFile();
  void HandleStopDownload();
  void HandleOpenFileFailed();
  bool IsSupportToOpen();
  // The message's record element as a chat record request gives it back.
  std::string UpdateChatRecordRequestParam() const;

  int file_state() const { return file_state_; }
  Variant const& ui_data() const { return ui_data_; }
  Variant const& msg() const { return msg_; }

 private:
  void SetMainButton(bool visible, std::string const& text);
  void Publish();
  void HandleDownloadFail();
  void HandleChattingRecordDownloadFail(Variant const& elements);
  // Copies a new state and progress into the kept message.
  void TakeFileInfo(Variant const& file_info);

  Variant msg_{base::variant::kVariantTypeMap};
  int file_state_ = -1;
  int64_t file_size_ = 0;
  double progress_ = 0;
  std::string path_;
  std::string file_name_;
  std::string file_id_;
  Variant ui_data_{base::variant::kVariantTypeMap};
};

}  // namespace chat
