#pragma once

#include <cstdint>

#include "framework/viewmodel/stateful_view_model.h"

namespace chat {

// The receiver line above the input: to whom a message goes, and what the
// chat permissions say about it. Follows the policies, the chosen receiver
// and the member list.
class ChatReceiverViewModel : public framework::StatefulViewModel {
 public:
  enum Prop : uint32_t {
    kPropAllowChatWording = 0x86ca9,
    kPropAuthorityInfo = 0xc4486,
    kPropReceiver = 0xf3039,
    kPropSendToText = 0x1081b6,
  };

  void InitStatelessData(Variant& data) override;
  void OnViewAttached(Variant const* params) override;

  void OnEventMembersChanged(Variant const* user_ids);
  void RefreshAuthority();
  void RefreshReceiver();
  void RefreshSendToText();
};

}  // namespace chat
