#pragma once

#include <cstdint>
#include <memory>

#include "framework/model/model.h"
#include "framework/web/web_plugin.h"

namespace chat {

// The meeting chat bridge of web pages, on either web engine: `Base` is the
// engine's plugin class, through which the answers go; the rest is the same.
//
// A page asks for a meeting's public list, or for the private list between
// the local user and one member. The client's web meeting model takes the
// request and answers it later by event, so a page hears twice of one
// request: that it left (an empty result), then the list itself.
template <typename Base>
class MeetingChatPluginImpl : public Base {
 public:
  static constexpr char kSchemeName[] = "com.talvex.jsbridge.meetingchat";
  static constexpr char kClassName[] = "WebViewMeetingChatPlugin";

  // The client's web meeting model: method 0 asks for the public list,
  // method 1 for a private one; events 0 and 1 carry their answers.
  static constexpr int kWebMeetingModelId = 584;
  static constexpr uint32_t kMethodGetPublicMsgList = 0;
  static constexpr uint32_t kMethodGetPrivateMsgList = 1;
  static constexpr uint32_t kEventPublicMsgListComplete = 0;
  static constexpr uint32_t kEventPrivateMsgListComplete = 1;

  MeetingChatPluginImpl();
  ~MeetingChatPluginImpl() override;

  // Follows the web meeting model's answers from now until the plugin goes.
  void OnAttached() override;

 private:
  // "GetPublicChatMsgList" {meetingId}
  void HandleGetMsgList(Variant const* params);
  void HandleGetMsgList(Variant const* params, bool is_public);
  // "GetPrivateChatMsgList" {privateAppUid, privateAppId, meetingId}
  void HandleGetPrivateMsgList(Variant const* params);

  void OnGetPublicMsgListComplete(Variant const* payload);
  void OnGetPrivateMsgListComplete(Variant const* payload);
  // {request_param, callback_data (text)}: the list goes to the page that asked.
  void DoSuccessGetMsgCallBack(Variant const* payload);

  void Unsubscribe();

  std::weak_ptr<framework::Model> web_meeting_model_;
};

}  // namespace chat
