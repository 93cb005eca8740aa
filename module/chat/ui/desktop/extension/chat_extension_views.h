#pragma once

#include "chat/ui/desktop/extension/chatting_panel_show_view.h"
#include "chat/ui/desktop/view/chat_input/chat_input_view.h"
#include "chat/ui/desktop/view/extension_frame_view.h"

// The views the module gives the client's extension points, one class each,
// so that the client can tell them apart. The input (ChatInputView) has its
// own files.
namespace QtView {

#define CHAT_EXTENSION_VIEW(Name)                       \
  class Name : public ExtensionFrameView {              \
   public:                                              \
    Name() : ExtensionFrameView(#Name) {}               \
  }

CHAT_EXTENSION_VIEW(ChatIconExtensionView);
CHAT_EXTENSION_VIEW(ChatPanelSendFileIconView);
CHAT_EXTENSION_VIEW(ChatPanelSendImageIconView);
CHAT_EXTENSION_VIEW(ChatPanelSendNoticeView);
CHAT_EXTENSION_VIEW(ChatPanelSendEmojiView);
CHAT_EXTENSION_VIEW(ChatTipMessageView);
CHAT_EXTENSION_VIEW(ChatTextMessageView);
CHAT_EXTENSION_VIEW(ChatImageMessageView);
CHAT_EXTENSION_VIEW(ChatNoticeMessageView);
CHAT_EXTENSION_VIEW(ChatFileMessageView);
CHAT_EXTENSION_VIEW(ChatOpenappMessageView);
CHAT_EXTENSION_VIEW(ChatFaceMessageView);
CHAT_EXTENSION_VIEW(SidebarChatExtensionView);

#undef CHAT_EXTENSION_VIEW

}  // namespace QtView
