#pragma once

#include "chat/web/meeting_chat_plugin_impl.h"

namespace chat {

// The meeting chat bridge for pages in the external browser.
class MeetingChatWebPlugin final : public MeetingChatPluginImpl<talvex::BaseWebPlugin> {
 public:
  ~MeetingChatWebPlugin() override;
};

}  // namespace chat
