#include "chat/web/web_view_meeting_chat_plugin.h"

#include "base/log/log.h"

namespace chat {

bool WebViewMeetingChatPlugin::HandleCommand(std::string const& command, Variant const*, Variant*) {
  TXLOG_NOTICE << "<IM> web plugin: unknown command " << command;
  return false;
}

}  // namespace chat
