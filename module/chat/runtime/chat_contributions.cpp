#include "chat/runtime/chat_contributions.h"

#include <algorithm>

#include "chat/runtime/chat_extensions.h"
#include "chat/ui/desktop/extension/chat_extension_views.h"
#include "chat/ui/desktop/view/bullet/in_meeting_bullet_qt_view.h"

namespace chat {
namespace {

template <typename Extension>
std::shared_ptr<framework::extension::ExtensionImpl> MakeExtension() {
  return std::make_shared<Extension>();
}

template <typename View>
std::shared_ptr<AppBaseView> MakeView() {
  return std::make_shared<View>();
}

using namespace QtView;

constexpr char kToolbar[] = "contributes:app.toolbar";
constexpr char kSendPlus[] = "contributes:app.chat_sendp+";  // the plus sign is the point's own
constexpr char kMessage[] = "contributes:app.chat_message";
constexpr char kFull[] = "contributes:app.chat_full";

// In the order of registration at activation; the view order is its own.
const ChatContribution kContributions[] = {
    {"extension:chat", kToolbar, 1, 2, MakeExtension<ChatExtension>, MakeView<ChatIconExtensionView>},
    {"extension:chat.chat_broadcast", "contributes:app.breakout_room_toolbar", 2, 0,
     MakeExtension<ChatBroadcastExtension>, nullptr},
    {"extension:chat.bullet", "contributes:app.inmeeting_float", 3, 1, MakeExtension<InMeetingBulletExtension>,
     MakeView<InMeetingBulletQTView>},
    {"extension:chat.send_image", kSendPlus, 4, 7, MakeExtension<ChatSendCommonExtension>,
     MakeView<ChatPanelSendImageIconView>},
    {"extension:chat.send_file", kSendPlus, 5, 6, MakeExtension<ChatSendCommonExtension>,
     MakeView<ChatPanelSendFileIconView>},
    {"extension:chat.send_emoji", kSendPlus, 6, 9, MakeExtension<ChatSendCommonExtension>,
     MakeView<ChatPanelSendEmojiView>},
    {"extension:chat.send_notice", kSendPlus, 7, 8, MakeExtension<ChatSendCommonExtension>,
     MakeView<ChatPanelSendNoticeView>},
    {"extension:chat.notice_message", kMessage, 8, 13, MakeExtension<ChatNoticeMessageExtension>,
     MakeView<ChatNoticeMessageView>},
    {"extension:chat.openapp_message", kMessage, 9, 15, MakeExtension<ChatOpenappMessageExtension>,
     MakeView<ChatOpenappMessageView>},
    {"extension:chat.file_message", kMessage, 10, 14, MakeExtension<ChatFileMessageExtension>,
     MakeView<ChatFileMessageView>},
    {"extension:chat.face_message", kMessage, 11, 16, MakeExtension<ChatFaceMessageExtension>,
     MakeView<ChatFaceMessageView>},
    {"extension:chat.text_message", kMessage, 12, 11, MakeExtension<ChatTextMessageExtension>,
     MakeView<ChatTextMessageView>},
    {"extension:chat.image_message", kMessage, 13, 12, MakeExtension<ChatImageMessageExtension>,
     MakeView<ChatImageMessageView>},
    {"extension:chat.panel_history_list", kFull, 14, 3, MakeExtension<ChatPanelHistoryListExtension>,
     MakeView<ChattingPanelShowView>},
    {"extension:chat.pane_input", kFull, 15, 4, MakeExtension<ChatPanelInputExtension>, MakeView<ChatInputView>},
    {"extension:chat.tip_message", kMessage, 16, 10, MakeExtension<ChatTipMessageExtension>,
     MakeView<ChatTipMessageView>},
    {"extension:chat.record_panel_history_list", "contributes:app.chat_record", 17, 5,
     MakeExtension<ChatRecordPanelHistoryListExtension>, MakeView<ChattingPanelShowView>},
    // Registered on demand under the point the sidebar names; its view is
    // registered without a point.
    {"extension:chat.sidebar_tab_in_meeting", "", 0, 17, MakeExtension<ChatTabForSidebarExtension>,
     MakeView<SidebarChatExtensionView>},
    // Built on request only.
    {"extension:chat.private_talk_in_quick_operation_menu", "", 0, 0,
     MakeExtension<PrivateTalkQuickOperationMenuExtension>, nullptr},
    {"extension:chat.chat_permissions_talk_in_quick_operation_menu", "", 0, 0,
     MakeExtension<ChatPermissionsQuickOperationMenuExtension>, nullptr},
    {"extension:chat.history_message_in_quick_operation_menu", "", 0, 0,
     MakeExtension<HistoryMessageQuickOperationMenuExtension>, nullptr},
};

std::vector<ChatContribution const*> RowsBy(int ChatContribution::*order) {
  std::vector<ChatContribution const*> rows;
  for (auto const& row : kContributions) {
    if (row.*order > 0) rows.push_back(&row);
  }
  std::sort(rows.begin(), rows.end(), [order](auto* a, auto* b) { return a->*order < b->*order; });
  return rows;
}

}  // namespace

std::vector<ChatContribution const*> RegisteredExtensions() { return RowsBy(&ChatContribution::registration_order); }

std::vector<ChatContribution const*> ExtensionViews() { return RowsBy(&ChatContribution::view_order); }

ChatContribution const* FindContribution(std::string_view extension_id) {
  for (auto const& row : kContributions) {
    if (row.extension_id == extension_id) return &row;
  }
  return nullptr;
}

}  // namespace chat
