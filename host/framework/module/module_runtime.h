#pragma once

#include <memory>
#include <string>

#include "framework/module/module_manifest.h"
#include "framework/module/providers.h"

namespace framework {
class Resource;

namespace module {

// A loaded module as the client sees it: its name, its providers, and the
// activation that builds them.
class ModuleRuntime {
 public:
  virtual ~ModuleRuntime() = default;
  virtual std::string name() const = 0;
  virtual ModelProviderBaseImpl* GetModelProvider() const = 0;
  virtual ServiceProviderBaseImpl* GetServiceProvider() const = 0;
  virtual ViewModelProviderBaseImpl* GetViewModelProvider() const = 0;
  virtual ExtensionProviderBaseImpl* GetExtensionProvider() const = 0;
  virtual bool IsActivated() const = 0;
  virtual bool Activate() = 0;
  virtual void Unactivate() = 0;
};

// Activation builds the four providers through the factories and initialises
// them (models, services, view models, extensions); Unactivate takes them down
// in reverse. A second Activate without Unactivate does nothing.
class ModuleRuntimeBaseImpl : public ModuleRuntime {
 public:
  ModuleRuntimeBaseImpl(std::shared_ptr<ModuleManifest> manifest, Resource* resource);
  ~ModuleRuntimeBaseImpl() override;

  ModelProviderBaseImpl* GetModelProvider() const override { return model_provider_.get(); }
  ServiceProviderBaseImpl* GetServiceProvider() const override { return service_provider_.get(); }
  ViewModelProviderBaseImpl* GetViewModelProvider() const override { return view_model_provider_.get(); }
  ExtensionProviderBaseImpl* GetExtensionProvider() const override { return extension_provider_.get(); }
  bool IsActivated() const override { return activated_; }
  bool Activate() override;
  void Unactivate() override;

  std::shared_ptr<ModuleManifest> const& manifest() const { return manifest_; }
  Resource* resource() const { return resource_; }

  // Shortcuts through the providers; null before activation.
  ModelPtr ModelOf(int id) const;
  ServicePtr ServiceOf(int id) const;

 protected:
  virtual void OnProvidersCreated() {}
  virtual std::unique_ptr<ModelProviderBaseImpl> CreateModelProvider() = 0;
  virtual std::unique_ptr<ServiceProviderBaseImpl> CreateServiceProvider() = 0;
  virtual std::unique_ptr<ViewModelProviderBaseImpl> CreateViewModelProvider() = 0;
  virtual std::unique_ptr<ExtensionProviderBaseImpl> CreateExtensionProvider() = 0;

 private:
  std::shared_ptr<ModuleManifest> manifest_;
  Resource* resource_;
  bool activated_ = false;
  std::unique_ptr<ModelProviderBaseImpl> model_provider_;
  std::unique_ptr<ServiceProviderBaseImpl> service_provider_;
  std::unique_ptr<ViewModelProviderBaseImpl> view_model_provider_;
  std::unique_ptr<ExtensionProviderBaseImpl> extension_provider_;
};

}  // namespace module
}  // namespace framework
