#pragma once

#include <cstdint>

#include "framework/viewmodel/contributes_view_model.h"

namespace chat {

// The buttons beside the input (file, picture, notice, emoji), contributed
// by extensions at kContributesId. Each learns the send button configuration
// through the extension event "ResolveButtonStateEvent", at once and on every
// change; the container also shows the chat permissions.
class ChatSendButtonContainerViewModel : public talvex::ContributesViewModel {
 public:
  static constexpr char kContributesId[] = "contributes:chat.send_buttons";
  static constexpr char kResolveButtonStateEvent[] = "ResolveButtonStateEvent";
  static constexpr uint32_t kPropAuthorityInfo = 121863403;
  static constexpr uint32_t kActionAuthorityClicked = 1068682322;

  ChatSendButtonContainerViewModel();
  void OnViewAttached(Variant const* params) override;

  void OnEventButtonConfigChanged(Variant const* config);
  int template_type() const { return template_type_; }

 private:
  void PublishAuthority();
  int template_type_ = 0;
};

}  // namespace chat
