#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "base/variant/variant.h"
#include "framework/ui/ui_service.h"
#include "framework/viewmodel/view_model.h"

namespace framework {
class UIViewModel;
}

namespace chat {

// What a menu manager needs of the view model it serves: texts, props and
// alerts. The managers never touch a view.
class IChattingMenuManagerDelegate {
 public:
  virtual ~IChattingMenuManagerDelegate() = default;
  virtual void SetMenuPropValue(uint32_t prop, Variant const& value) = 0;
  virtual void SetMenuPropValueForNullptr(uint32_t prop) = 0;
  virtual void DisposeMenuAlerts() = 0;
  virtual std::string GetMenuLocalizedString(uint32_t id) const = 0;
  virtual void NavigateToMenuFilePath(std::string const& path) = 0;
  // The view model that shows toasts and alerts for the menu.
  virtual framework::UIViewModel* MenuViewModel() = 0;
};

// Decides which context-menu items a message gets (recall, delete, copy,
// block the sender, kick out) and runs the chosen one. The managers by click
// target (avatar, file, image, the list) add and handle their own items.
class ChattingMenuBaseManager {
 public:
  static constexpr uint32_t kPropChatMenuList = framework::NameId("ChatMenuList");
  enum Scene : int { kSceneRecord = 0, kSceneMeeting = 1 };

  explicit ChattingMenuBaseManager(std::weak_ptr<IChattingMenuManagerDelegate> delegate);
  virtual ~ChattingMenuBaseManager();

  // The message the menu is for, by its id; false when it is unknown.
  bool SetCurrentMessage(std::string const& msg_id);
  void SetCurrentMessageRecord(Variant record);
  void set_menu_scene(int scene) { menu_scene_ = scene; }
  int menu_scene() const { return menu_scene_; }
  Variant const& menu_items() const { return menu_items_; }
  Variant const& current_message() const { return current_message_; }

  // Builds the list for the current message and publishes it when it changed.
  void UpdateMenuInfo(framework::UIViewModel* vm);
  void HandleMenuItemClick(framework::UIViewModel* vm, int type);

 protected:
  virtual bool HandleSubClassMenuItemClick(framework::UIViewModel* vm, int type) { return false; }
  virtual bool IsMenuShow() const { return true; }
  virtual void OnMenuItemClickFinished() {}
  virtual void OnRecallMessageFinished() {}
  virtual void OnDeleteMessageFinished() {}
  virtual void AppendSubMenus(Variant const& params, Variant& list);
  // Whether an operation may touch the message: not one still arriving.
  virtual bool CanOperate(Variant const& record) const;
  virtual bool CanBlock(Variant const& record) const { return CanOperate(record); }
  virtual bool CanKick(Variant const& record) const { return CanOperate(record); }

  bool AddSubMenuItem(Variant& list, int type, bool enable) const;
  bool IsMsgFromSelf() const;
  bool IsCopyEnable() const;
  bool IsRecallEnable() const;
  bool IsIgnoreRecallInBreakoutRoom(Variant const& record) const;
  bool CheckIsInMeetingIMGroup(Variant const& record) const;
  bool IsBlockEnable() const;
  bool IsKickOutEnable() const;
  bool IsKickoutUserExist() const;
  bool IsUserHostOrCoHost(Variant const& sender, bool* found) const;
  bool IsChatKeyReady() const;
  Variant GetUserInfo(Variant const& sender) const;
  static bool IsMenuListChanged(Variant const& old_list, Variant const& new_list);

  void HandleMenuItemClickForRecall(framework::UIViewModel* vm);
  void HandleMenuItemClickForDelete(framework::UIViewModel* vm);
  void HandleMenuItemClickForCopy(framework::UIViewModel* vm);
  void HandleMenuItemClickForShield(framework::UIViewModel* vm);
  void HandleMenuItemClickForKickOut(framework::UIViewModel* vm);
  void KickoutToastShow(framework::UIViewModel* vm, Variant const& member);
  // A webinar's attendee is found by nickname among the attendees (the
  // member provider's search of all); the answer comes as an event, and the
  // kick's alert follows it.
  void GetAudienceByNickNameInWebinar(Variant const& params);
  void OnEventUpdateAllSearchUserList(Variant const* params);
  // The sender as the chat control model names a blocked member.
  Variant GetSenderInfo() const;

  // The delegate's calls; each is a log line when the delegate is gone.
  void CallSetPropValue(uint32_t prop, Variant const& value);
  void CallSetPropValueForNullptr(uint32_t prop);
  void CallDisposeAlertAll();
  std::string CallGetLocalizedString(uint32_t id) const;
  void CallNavigateToFilePath(std::string const& path);

  std::weak_ptr<IChattingMenuManagerDelegate> delegate_;
  Variant current_message_;
  std::optional<Variant> kick_target_;
  // The view model whose kick waits for the attendee search.
  std::weak_ptr<framework::ViewModel> pending_kick_;
  Variant pending_kick_sender_;
  bool subscribed_search_ = false;
  Variant menu_items_{base::variant::kVariantTypeArray};
  int menu_scene_ = kSceneMeeting;
  int chat_type_ = 0;
  std::map<int, uint32_t> type_title_map;
};

// The message list's own menu: the base list, nothing added.
class ChattingMenuManagerForListView : public ChattingMenuBaseManager {
 public:
  using ChattingMenuBaseManager::ChattingMenuBaseManager;
};

}  // namespace chat
