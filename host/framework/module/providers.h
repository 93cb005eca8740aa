#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "framework/model/model_impl.h"

namespace framework {

class ViewModel;
class RouterService;
class NavigateService;
class ExtensionViewService;

namespace extension {
class ExtensionImpl;
}

namespace module {
class ModuleRuntime;
}

// A module's own models by id, each made on the first ModelOf and kept until
// UnInit, which takes them down newest first.
class ModelProviderBaseImpl {
 public:
  virtual ~ModelProviderBaseImpl();
  virtual void Init() {}
  virtual void UnInit();
  virtual ModelPtr ModelOf(int id);
  size_t ModelCount() const { return models_.size(); }
  // The ids of the models built so far.
  std::vector<int> ModelIds() const;

 protected:
  virtual ModelPtr Build(int id) = 0;

 private:
  std::map<int, ModelPtr> models_;
  std::vector<int> order_;
};

// A module's services by id, made and initialised on the first ServiceOf.
class ServiceProviderBaseImpl {
 public:
  virtual ~ServiceProviderBaseImpl();
  virtual void Init() {}
  virtual void UnInit();
  virtual ServicePtr ServiceOf(int id);
  virtual RouterService* GetRouterService();
  virtual NavigateService* GetNavigateService();
  virtual ExtensionViewService* GetExtensionViewService();

 protected:
  virtual ServicePtr Build(int id) = 0;

 private:
  std::map<int, ServicePtr> services_;
  std::vector<int> order_;
};

// Makes view models by number at the client's request.
class ViewModelProviderBaseImpl {
 public:
  explicit ViewModelProviderBaseImpl(module::ModuleRuntime* runtime) : runtime_(runtime) {}
  virtual ~ViewModelProviderBaseImpl();
  virtual void Init() {}
  virtual void UnInit() {}
  // Null for a number the module doesn't know.
  std::shared_ptr<ViewModel> CreateViewModel(int type);
  module::ModuleRuntime* runtime() const { return runtime_; }

 protected:
  virtual std::shared_ptr<ViewModel> Build(int type) = 0;

 private:
  module::ModuleRuntime* runtime_;
};

// Makes a module's extensions from their ids.
class ExtensionProviderBaseImpl {
 public:
  virtual ~ExtensionProviderBaseImpl();
  virtual void Init() {}
  virtual void UnInit() {}
  std::shared_ptr<extension::ExtensionImpl> CreateExtension(std::string const& extension_id);

 protected:
  virtual std::shared_ptr<extension::ExtensionImpl> Build(std::string const& extension_id) = 0;
};

}  // namespace framework
