#include "framework/viewmodel/chat_message_base_view_model.h"

namespace talvex {

ChatMessageBaseViewModel::ChatMessageBaseViewModel() : AuthorizeViewModelT<ExtensionViewModel>(0) {
  OnAction(kActionBindMessage, [this](Variant const* params) { HandleMsgInfo(params); });
}

void ChatMessageBaseViewModel::OnViewAttached(Variant const* params) {
  AuthorizeViewModelT<ExtensionViewModel>::OnViewAttached(params);
  if (params && params->IsMap() && params->Has("msg_id")) HandleMsgInfo(params);
}

void ChatMessageBaseViewModel::CopyFields(Variant& target, char const* target_key, Variant const& source,
                                          char const* source_key) {
  if (source.Has(source_key)) target.Set(target_key, source.Get(source_key));
}

int ChatMessageBaseViewModel::LayoutTypeOf(Variant const* params, int above) {
  const int type = params ? params->GetInt32("template_type", 0) : 0;
  if (type < 0) return 0;
  return type <= 3 ? type : above;
}

}  // namespace talvex
