#pragma once

#include "chat/viewmodel/chat_menu_manager/chatting_menu_base_manager.h"

namespace chat {

// The menu of a sender's avatar: a private chat with them, when the meeting's
// chat rules allow it, and removing them, for a host.
class ChattingMenuManagerForAvatar : public ChattingMenuBaseManager {
 public:
  // Whether the sender is in the meeting now.
  enum ExistType : int { kNotInMeeting = 0, kInMeeting = 1, kUnjudged = 2 };

  using ChattingMenuBaseManager::ChattingMenuBaseManager;

  int GetUserInMeetingExistType() const;
  bool IsUserAllowPrivateChat() const;

 protected:
  void AppendSubMenus(Variant const& params, Variant& list) override;
  bool HandleSubClassMenuItemClick(framework::UIViewModel* vm, int type) override;

 private:
  bool IsUserForbidChat() const;
  bool IsUserAllowPrivateChatInMeeting() const;
  bool IsUserAllowPrivateChatInWaitingRoom() const;
  bool IsUserAllowPrivateChatInWebinar() const;
  // The sender's entry in the waiting room's own list (hosts among them).
  Variant FindInWaitingRoomList() const;
  void HandleMenuItemClickForPrivateChat(framework::UIViewModel* vm);
};

}  // namespace chat
