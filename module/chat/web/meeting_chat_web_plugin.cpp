#include "chat/web/meeting_chat_web_plugin.h"

namespace chat {

MeetingChatWebPlugin::~MeetingChatWebPlugin() = default;

}  // namespace chat
