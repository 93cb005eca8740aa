#pragma once

#include <cstdint>

#include "framework/viewmodel/stateful_view_model.h"

namespace chat {

// The menu with which host and co-host decide who may chat with whom: the
// chat scope and the waiting room's switch in a meeting; sensitive words,
// manual check and the panelists' and attendees' scopes in a webinar. The
// rules live with the client; this offers the choices and writes them.
class PrivateChatAuthorityViewModel : public framework::StatefulViewModel {
 public:
  static constexpr uint32_t kPropMenuList = framework::NameId("AuthorityMenuList");
  static constexpr uint32_t kPropMenuEmpty = framework::NameId("AuthorityMenuEmpty");
  static constexpr uint32_t kPropFirstTip = framework::NameId("AuthorityFirstTip");
  static constexpr uint32_t kActionSelectAllowChat = framework::NameId("SelectAllowChat");
  static constexpr uint32_t kActionCancelSelect = framework::NameId("CancelSelect");
  static constexpr uint32_t kActionExploreMenu = framework::NameId("ExploreMenu");

  // Menu item `type`s and section `title_type`s.
  enum ItemType : int { kItemTitle = 0, kItemOption = 1, kItemSeparator = 3 };
  enum TitleType : int { kTitleScope = 0, kTitleWaitingRoom = 1, kTitlePanelists = 2, kTitleAttendees = 3 };
  // Menu-only ids beside the policies 0 to 10.
  enum MenuId : int { kMenuWaitingRoom = 11, kMenuSensitiveWords = 12, kMenuManualCheck = 13 };

  PrivateChatAuthorityViewModel();
  void OnViewAttached(Variant const* params) override;

  void OnEventRebuild(Variant const* params);
  void HandleSelectAllowChat(Variant const* params);
  // The text id of a menu entry; 0 (and an error line) for an unknown one.
  static uint32_t GetWordingStrIDByPolicy(int id);

 private:
  void BuildMenu();
  void AddTitle(Variant& list, int title_type, uint32_t text_id) const;
  void AddOption(Variant& list, int id, int checked_policy) const;
  void ShowFirstTip();
  void ReportScope(int id);
};

}  // namespace chat
