#pragma once

#include <cstdint>

#include "chat/viewmodel/chat_input_ids.h"
#include "framework/viewmodel/authorize_view_model.h"
#include "framework/viewmodel/extension_view_model.h"

namespace chat {

// Stands behind the chat input: whether typing is allowed, which send button
// shows, the saved shortcut and height, the tips beside the input, and the
// send requests of the view, which go to the send pipeline.
class ChatInputViewModel : public talvex::AuthorizeViewModelT<talvex::ExtensionViewModel>, public ChatInputIds {
 public:
  ChatInputViewModel();
  void OnViewAttached(Variant const* params) override;
  void OnViewDetached() override;
  void OnNewParams(Variant const* old_params, Variant const* new_params, bool flag) override;

  // Publishes a bool prop only when it differs from the one published.
  void SetBoolPropIfChanged(uint32_t prop, bool value);

  void OnEventButtonConfigChanged(Variant const* params);
  void OnEventFocusRequest(Variant const* params);
  void OnEventSendRefused(Variant const* params);
  void OnEventMixedSent(Variant const* params);
  void OnEventCheckShowGuideTips(Variant const* params);
  // The public-send reminder: asks the user before the held send goes.
  void ConfirmSend(Variant const* payload);

  bool is_expanded() const { return is_expanded_; }
  int template_type() const { return template_type_; }

 private:
  void ReadButtonConfig(Variant const& config);
  void UpdateSendButton();
  void UpdateDisableState();
  void UpdateNoticeButton();
  // The notice button: the notice's page, or a toast when notices are off.
  void ShowMeetingNotice();
  void CheckHostShowNoticeGuideTips();
  void ShowPrivateChatTip();
  void RestoreDraft();
  void Subscribe();
  void HandleSend(Variant const* params);
  void HandleSendMessage(Variant const* params);
  void HandleTextChanged(Variant const* params);
  void HandleSetInputHeight(Variant const* params);
  void DoSendMessage(Variant const* params);
  void HandleMatchTextToMsgItems(Variant const* params);
  void DoMatchTextComplete(Variant const& items, std::string const& match_id);
  bool InvokeSendModel(uint32_t method, Variant const* params);
  void SetShortcut(Variant const* params);

  bool has_text_ = false;
  bool show_more_ = false;
  bool red_dot_more_ = false;
  int32_t template_type_ = 2;
  bool is_expanded_ = false;
};

}  // namespace chat
