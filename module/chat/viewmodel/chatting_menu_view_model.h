#pragma once

#include <memory>

#include "chat/viewmodel/chat_menu_manager/chatting_menu_base_manager.h"
#include "framework/viewmodel/stateful_view_model.h"

namespace chat {

// The context menu of a message: asked for a message and a click target, it
// publishes the items the rules allow (`ChatMenuList`), and runs the item the
// user picks. The rules live in the menu managers; this is their delegate.
class ChattingMenuViewModel : public framework::StatefulViewModel {
 public:
  static constexpr uint32_t kPropChatMenuList = ChattingMenuBaseManager::kPropChatMenuList;
  // {msg_id, target (0 the list, 1 an avatar, 2 a picture, 3 a file), scene}
  static constexpr uint32_t kActionShowChatMenu = framework::NameId("ShowChatMenu");
  // {type}
  static constexpr uint32_t kActionChatMenuItemClick = framework::NameId("ChatMenuItemClick");
  enum Target : int { kTargetList = 0, kTargetAvatar = 1, kTargetImage = 2, kTargetFile = 3 };

  ChattingMenuViewModel();
  ~ChattingMenuViewModel() override;

  ChattingMenuBaseManager* current_manager() const { return manager_.get(); }

 private:
  class Delegate;
  void HandleShowChatMenu(Variant const* params);
  void HandleMenuItemClick(Variant const* params);

  std::shared_ptr<Delegate> delegate_;
  std::unique_ptr<ChattingMenuBaseManager> manager_;
};

}  // namespace chat
