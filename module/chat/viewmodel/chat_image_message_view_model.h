#pragma once

#include <string>

#include "chat/viewmodel/chat_message_item_view_model.h"

namespace chat {

// An image row: the sizes and paths of its three renditions, their download
// states, and the actions on it.
class ChatImageMessageViewModel : public ChatMessageItemViewModel {
 public:
  static constexpr uint32_t kPropInfo = 0x8c389;
  static constexpr uint32_t kActionDownloadImage = 0xea73a;
  static constexpr uint32_t kActionRefreshImage = 0x8699a;
  static constexpr uint32_t kActionPreviewClicked = 0x975b6;
  static constexpr uint32_t kActionSaveClicked = 0xcd1f5;

  ChatImageMessageViewModel();
  // Asks the client to download one rendition; false when `url` or `uuid` is empty.
  bool HandleDownloadImageMessage(std::string const& url, std::string const& uuid, std::string const& msg_id,
                                  std::string const& download_type = "");

 protected:
  bool FillInfo(Variant const& record, Variant const* params, Variant& info) override;
  uint32_t info_prop() const override { return kPropInfo; }
  int layout_above() const override { return 0; }

 private:
  bool DownloadThumb(Variant const* params);
};

}  // namespace chat
