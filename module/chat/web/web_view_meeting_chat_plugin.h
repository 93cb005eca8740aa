#pragma once

#include "framework/web/web_plugin.h"

namespace chat {

// The bridge through which web pages of the meeting read chat.
class WebViewMeetingChatPlugin : public talvex::WebPluginBase {
 public:
  static constexpr char kSchemeName[] = "com.talvex.jsbridge.meetingchat";
  static constexpr char kClassName[] = "WebViewMeetingChatPlugin";
  bool HandleCommand(std::string const& command, Variant const* params, Variant* result) override;
};

}  // namespace chat
