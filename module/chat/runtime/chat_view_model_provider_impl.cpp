#include "chat/runtime/chat_view_model_provider_impl.h"

#include "base/log/log.h"
#include "chat/viewmodel/chat_input_view_model.h"
#include "chat/viewmodel/view_model_types.h"

namespace chat {

ChatViewModelProviderImpl::ChatViewModelProviderImpl(framework::module::ModuleRuntime* runtime)
    : framework::ViewModelProviderBaseImpl(runtime) {
  makers_[kViewModelPanelInput] = [] { return std::make_shared<ChatInputViewModel>(); };
}

std::shared_ptr<framework::ViewModel> ChatViewModelProviderImpl::Build(int type) {
  auto it = makers_.find(type);
  if (it == makers_.end()) {
    TXLOG_WARN << "<IM> no chat view model of type " << type;
    return nullptr;
  }
  return it->second();
}

}  // namespace chat
