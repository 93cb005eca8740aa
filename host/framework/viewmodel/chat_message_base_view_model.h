#pragma once

#include <cstdint>

#include "framework/viewmodel/authorize_view_model.h"
#include "framework/viewmodel/extension_view_model.h"

namespace talvex {

// The base of the view models behind chat rows. A row is bound to a message
// by its `msg_id`: in the view parameters when the row attaches, or later
// through the bind action; both end in HandleMsgInfo.
class ChatMessageBaseViewModel : public AuthorizeViewModelT<ExtensionViewModel> {
 public:
  // Binds the row to another message: payload a map with `msg_id` (and
  // `template_type`).
  static constexpr uint32_t kActionBindMessage = framework::NameId("ChatMessageBase.BindMessage");

  ChatMessageBaseViewModel();

  void OnViewAttached(Variant const* params) override;

  // Fills the row's content from the message `params` name.
  virtual void HandleMsgInfo(Variant const* params) {}

  // Copies `source[source_key]` to `target[target_key]` when present.
  static void CopyFields(Variant& target, char const* target_key, Variant const& source, char const* source_key);

  // Layout type by `template_type`: 0 to 3 as they are; `above` beyond.
  static int LayoutTypeOf(Variant const* params, int above);
};

}  // namespace talvex
