#pragma once

#include <cstdint>

#include "framework/viewmodel/authorize_view_model.h"
#include "framework/viewmodel/extension_view_model.h"

namespace chat {

// Stands behind the chat input: whether typing is allowed, which send button
// shows, the saved shortcut and height, the tips beside the input, and the
// send requests of the view, which go to the send pipeline.
class ChatInputViewModel : public talvex::AuthorizeViewModelT<talvex::ExtensionViewModel> {
 public:
  enum Prop : uint32_t {
    kPropImageCacheDir = 0x49802,
    kPropSendShortcut = 0x7950e,
    kPropInputHeight = 0x102390,
    kPropInputStrings = 0x67156,
    kPropChatEnabled = 0xb3b8f,
    kPropDisabledIcon = 0x5253d,
    kPropDisabledText = 0x3c55f,
    kPropSendButtonVisible = 0x7ee01,
    kPropSendState = 0x45d89,
    kPropFocusRequest = 0x9aad7,
    kPropClearInput = 0x9611b,
    kPropGuideTip = 0x8ffd9,
    kPropNoticeButton = 0xb177e,
    kPropNoticeGuideTip = 0xe787d,
    kPropDraft = 0x265d0,
    kPropMatchResult = 0x25f04,
  };
  enum Action : uint32_t {
    kActionSend = 0x41a87,
    kActionMatchTextToMsgItems = 0xea6a3,
    kActionSendFile = 0xc9835,
    kActionSendImage = 0xec72a,
    kActionSaveDraft = 0x101c53,
    kActionTextChanged = 0x1c2ba,
    kActionSetShortcut = 0xce0cc,
    kActionSetInputHeight = 0x6601e,
    kActionSelectReceiver = 0x7b62d,
    kActionMoreClicked = 0x972af,
    kActionMoreClosed = 0xcb285,
    kActionMoreHidden = 0xdc50a,
    kActionAuthorityClicked = 0x45b83,
    kActionSelectUserClicked = 0x79c3b,
  };

  void OnViewAttached(Variant const* params) override;
  void OnViewDetached() override;
  void OnNewParams(Variant const* old_params, Variant const* new_params, bool flag) override;
  void HandleAction(uint32_t action, Variant const* params) override;

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
  void CheckHostShowNoticeGuideTips();
  void ShowPrivateChatTip();
  void RestoreDraft();
  void Subscribe();
  void HandleSendMessage(Variant const* params);
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
