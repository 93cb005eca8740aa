#include "chat/viewmodel/chatting_menu_view_model.h"

#include "base/log/log.h"
#include "chat/model/chat_message.h"
#include "framework/chat/chat_utils.h"
#include "chat/viewmodel/chat_menu_manager/chatting_menu_manager_for_avatar.h"
#include "chat/viewmodel/chat_menu_manager/chatting_menu_manager_for_file.h"
#include "chat/viewmodel/chat_menu_manager/chatting_menu_manager_for_image.h"

namespace chat {

// The menu managers' window on this view model. It goes with the view model,
// so a manager that outlives it only logs.
class ChattingMenuViewModel::Delegate : public IChattingMenuManagerDelegate {
 public:
  explicit Delegate(ChattingMenuViewModel* owner) : owner_(owner) {}
  void SetMenuPropValue(uint32_t prop, Variant const& value) override { owner_->SetPropValue(prop, value); }
  void SetMenuPropValueForNullptr(uint32_t prop) override { owner_->SetPropValue(prop, nullptr); }
  void DisposeMenuAlerts() override { owner_->DisposeAlertAll(); }
  std::string GetMenuLocalizedString(uint32_t id) const override { return owner_->GetLocalizedString(id); }
  void NavigateToMenuFilePath(std::string const& path) override { owner_->NavigateToFilePath(path); }
  framework::UIViewModel* MenuViewModel() override { return owner_; }

 private:
  ChattingMenuViewModel* owner_;
};

ChattingMenuViewModel::ChattingMenuViewModel() : delegate_(std::make_shared<Delegate>(this)) {
  OnAction(kActionShowChatMenu, [this](Variant const* params) { HandleShowChatMenu(params); });
  OnAction(kActionChatMenuItemClick, [this](Variant const* params) { HandleMenuItemClick(params); });
}

ChattingMenuViewModel::~ChattingMenuViewModel() = default;

void ChattingMenuViewModel::HandleShowChatMenu(Variant const* params) {
  if (!params || !params->IsMap() || !params->Get("msg_id").IsString()) {
    TXLOG_ERROR << "[chat menu] show menu without a msg_id";
    return;
  }
  int target = params->GetInt32("target", kTargetList);
  // A picture's row menu is the picture's menu.
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(params->GetString("msg_id"));
  if (target == kTargetList && record && record->GetInt32("chat_type") == ToInt(ChatType::kImage)) {
    target = kTargetImage;
  } else if (target == kTargetList && record && record->GetInt32("chat_type") == ToInt(ChatType::kFile)) {
    target = kTargetFile;
  }
  if (target == kTargetList) {
    manager_ = std::make_unique<ChattingMenuManagerForListView>(delegate_);
  } else if (target == kTargetAvatar) {
    manager_ = std::make_unique<ChattingMenuManagerForAvatar>(delegate_);
  } else if (target == kTargetImage) {
    manager_ = std::make_unique<ChattingMenuManagerForImage>(delegate_);
  } else if (target == kTargetFile) {
    manager_ = std::make_unique<ChattingMenuManagerForFile>(delegate_);
  } else {
    TXLOG_WARN << "[chat menu] no menu manager for target " << target;
    return;
  }
  manager_->set_menu_scene(params->GetInt32("scene", ChattingMenuBaseManager::kSceneMeeting));
  if (!manager_->SetCurrentMessage(params->GetString("msg_id"))) return;
  manager_->UpdateMenuInfo(this);
}

void ChattingMenuViewModel::HandleMenuItemClick(Variant const* params) {
  if (!params || !params->IsMap() || !params->Get("type").IsInteger()) {
    TXLOG_ERROR << "[chat menu] item click without a type";
    return;
  }
  if (!manager_) {
    TXLOG_ERROR << "[chat menu] item click without a menu";
    return;
  }
  manager_->HandleMenuItemClick(this, params->GetInt32("type"));
}

}  // namespace chat
