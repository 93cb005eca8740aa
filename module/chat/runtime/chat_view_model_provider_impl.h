#pragma once

#include <functional>
#include <map>

#include "framework/module/providers.h"

namespace chat {

// Makes the chat view models the client asks for by number. Each kind of
// view model registers its maker here as it joins the module.
class ChatViewModelProviderImpl : public framework::ViewModelProviderBaseImpl {
 public:
  using Maker = std::function<std::shared_ptr<framework::ViewModel>()>;
  explicit ChatViewModelProviderImpl(framework::module::ModuleRuntime* runtime);
  bool Knows(int type) const { return makers_.count(type) > 0; }

 protected:
  std::shared_ptr<framework::ViewModel> Build(int type) override;

 private:
  std::map<int, Maker> makers_;
};

}  // namespace chat
