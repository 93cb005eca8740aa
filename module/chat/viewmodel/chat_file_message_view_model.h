#pragma once

#include "chat/viewmodel/chat_message_item_view_model.h"

namespace chat {

// A file row: name, kind, size and state line, progress.
class ChatFileMessageViewModel : public ChatMessageItemViewModel {
 public:
  static constexpr uint32_t kPropInfo = framework::NameId("ChatFileMessageViewModel.Info");
  static constexpr uint32_t kActionOpenFile = framework::NameId("ChatFileMessageViewModel.Open");
  static constexpr uint32_t kActionDownloadFile = framework::NameId("ChatFileMessageViewModel.Download");
  static constexpr uint32_t kActionStopDownload = framework::NameId("ChatFileMessageViewModel.StopDownload");

  ChatFileMessageViewModel();

 protected:
  bool FillInfo(Variant const& record, Variant const* params, Variant& info) override;
  uint32_t info_prop() const override { return kPropInfo; }
};

}  // namespace chat
