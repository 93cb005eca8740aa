#include "chat/runtime/chat_extension_provider.h"

#include "base/log/log.h"
#include "chat/runtime/chat_extensions.h"

namespace chat {

std::shared_ptr<framework::extension::ExtensionImpl> ChatExtensionProvider::Build(std::string const& id) {
  if (id == "extension:chat") return std::make_shared<ChatExtension>();
  if (id == "extension:chat.sidebar_tab_in_meeting") return std::make_shared<ChatTabForSidebarExtension>();
  if (id == "extension:chat.chat_broadcast") return std::make_shared<ChatBroadcastExtension>();
  if (id == "extension:chat.bullet") return std::make_shared<InMeetingBulletExtension>();
  if (id == "extension:chat.send_image" || id == "extension:chat.send_notice" || id == "extension:chat.send_file" ||
      id == "extension:chat.send_emoji") {
    return std::make_shared<ChatSendCommonExtension>();
  }
  if (id == "extension:chat.notice_message") return std::make_shared<ChatNoticeMessageExtension>();
  if (id == "extension:chat.openapp_message") return std::make_shared<ChatOpenappMessageExtension>();
  if (id == "extension:chat.file_message") return std::make_shared<ChatFileMessageExtension>();
  if (id == "extension:chat.face_message") return std::make_shared<ChatFaceMessageExtension>();
  if (id == "extension:chat.tip_message") return std::make_shared<ChatTipMessageExtension>();
  if (id == "extension:chat.text_message") return std::make_shared<ChatTextMessageExtension>();
  if (id == "extension:chat.image_message") return std::make_shared<ChatImageMessageExtension>();
  if (id == "extension:chat.panel_history_list") return std::make_shared<ChatPanelHistoryListExtension>();
  if (id == "extension:chat.record_panel_history_list") return std::make_shared<ChatRecordPanelHistoryListExtension>();
  if (id == "extension:chat.pane_input") return std::make_shared<ChatPanelInputExtension>();
  if (id == "extension:chat.private_talk_in_quick_operation_menu") {
    return std::make_shared<PrivateTalkQuickOperationMenuExtension>();
  }
  if (id == "extension:chat.chat_permissions_talk_in_quick_operation_menu") {
    return std::make_shared<ChatPermissionsQuickOperationMenuExtension>();
  }
  if (id == "extension:chat.history_message_in_quick_operation_menu") {
    return std::make_shared<HistoryMessageQuickOperationMenuExtension>();
  }
  TXLOG_ERROR << "extension_id: " << id;
  return nullptr;
}

}  // namespace chat
