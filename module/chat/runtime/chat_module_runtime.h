#pragma once

#include <memory>

#include "framework/module/module_runtime.h"

namespace chat {

// The chat module as the client sees it. Activation builds the providers,
// makes the send and message models, follows the sidebar and cell-height
// requests of the client, and registers the chat sidebar app.
class ChatModuleRuntime : public framework::module::ModuleRuntimeBaseImpl {
 public:
  ChatModuleRuntime();
  ~ChatModuleRuntime() override;

  std::string name() const override;
  bool Activate() override;
  void Unactivate() override;

  // Event 3 of the sidebar app model: the client asks for the chat tab's extension.
  void OnEventRegisterSidebarAppExtension(Variant const* params);
  // Priority event 0 of model 10014: a cell's height is asked for.
  void OnPriorityEventGetCellViewHeight(Variant const* params, bool& handled);

 protected:
  std::unique_ptr<framework::ModelProviderBaseImpl> CreateModelProvider() override;
  std::unique_ptr<framework::ServiceProviderBaseImpl> CreateServiceProvider() override;
  std::unique_ptr<framework::ViewModelProviderBaseImpl> CreateViewModelProvider() override;
  std::unique_ptr<framework::ExtensionProviderBaseImpl> CreateExtensionProvider() override;

 private:
  void RegisterSidebarApp();
};

// The module manifest, one for the process.
std::shared_ptr<framework::module::ModuleManifest>& ChatModuleManifest();

}  // namespace chat
