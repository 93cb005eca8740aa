#pragma once

#include <string>

#include "chat/viewmodel/chat_menu_manager/chatting_menu_base_manager.h"

namespace chat {

// The menu of a picture: save it, copy it, and the message's own items.
class ChattingMenuManagerForImage : public ChattingMenuBaseManager {
 public:
  using ChattingMenuBaseManager::ChattingMenuBaseManager;

  // The best local file of the picture ("" when none is on disk).
  std::string GetImageInfo() const;

 protected:
  void AppendSubMenus(Variant const& params, Variant& list) override;
  bool HandleSubClassMenuItemClick(framework::UIViewModel* vm, int type) override;

 private:
  void SaveImage(framework::UIViewModel* vm);
  void CopyImage(framework::UIViewModel* vm);
  std::string Situation() const;
};

}  // namespace chat
