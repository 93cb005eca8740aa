#pragma once

#include <string>

#include "chat/viewmodel/chat_menu_manager/chatting_menu_base_manager.h"

namespace chat {

// The menu of a file: by the transfer's state and who sent it, download or
// stop it, upload it again or stop the upload, open it, its folder, save it
// elsewhere or copy it as a file; then the message's own items.
class ChattingMenuManagerForFile : public ChattingMenuBaseManager {
 public:
  using ChattingMenuBaseManager::ChattingMenuBaseManager;

  // The message's `file_info`, null (with a log line) when it has none.
  Variant GetFileInfo() const;
  // The file's local path when it is on disk, else "".
  std::string LocalFile() const;

 protected:
  void AppendSubMenus(Variant const& params, Variant& list) override;
  bool HandleSubClassMenuItemClick(framework::UIViewModel* vm, int type) override;
  void OnRecallMessageFinished() override;
  void OnDeleteMessageFinished() override;

 private:
  // False when the file is blocked and a toast said so.
  bool AppendSubMenusForDesktopFileMessage(Variant& list);
  void ResetChatFileInfo();
  void Report(char const* action) const;
  void SaveAs(framework::UIViewModel* vm);
  void CopyFile();
  void AskFileModel(uint32_t method, framework::UIViewModel* vm, uint32_t toast);
};

}  // namespace chat
