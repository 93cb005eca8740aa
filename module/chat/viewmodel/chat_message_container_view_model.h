#pragma once

#include <memory>
#include <string>

#include "framework/extension/extension.h"
#include "framework/viewmodel/stateful_view_model.h"

namespace chat {

// Chooses the row a message takes: it activates the message extensions for
// the message and publishes the view type the one that took it asks for.
class ChatMessageContainerViewModel : public framework::StatefulViewModel,
                                      public framework::extension::ExtensionContributesImpl {
 public:
  static constexpr uint32_t kActionSetMsgId = 0x8191f;
  static constexpr uint32_t kPropViewType = framework::NameId("ChatMessageContainer.ViewType");
  static constexpr char kContributesId[] = "contributes:app.chat_message";

  ChatMessageContainerViewModel();
  void DoSetMsgId(std::string const& msg_id);
};

}  // namespace chat
