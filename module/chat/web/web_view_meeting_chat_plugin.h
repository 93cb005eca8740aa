#pragma once

#include "chat/web/meeting_chat_plugin_impl.h"

namespace chat {

// The meeting chat bridge for pages in the embedded web view.
class WebViewMeetingChatPlugin final : public MeetingChatPluginImpl<talvex::WebviewPlugin> {
 public:
  ~WebViewMeetingChatPlugin() override;
};

}  // namespace chat
