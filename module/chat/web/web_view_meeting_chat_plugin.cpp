#include "chat/web/web_view_meeting_chat_plugin.h"

namespace chat {

WebViewMeetingChatPlugin::~WebViewMeetingChatPlugin() = default;

}  // namespace chat
