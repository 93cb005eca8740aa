#pragma once

#include "framework/module/providers.h"

namespace framework::module {
class ModuleRuntime;
}

namespace chat {

// The chat module's own models by id.
class ChatModelProvider : public framework::ModelProviderBaseImpl {
 public:
  explicit ChatModelProvider(framework::module::ModuleRuntime* runtime) : runtime_(runtime) {}
  // The send and message models exist before anything else asks for them.
  void Init() override;

 protected:
  framework::ModelPtr Build(int id) override;

 private:
  framework::module::ModuleRuntime* runtime_;
};

}  // namespace chat
