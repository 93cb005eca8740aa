#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/variant/variant.h"

class AppBaseView;

namespace framework {

class Context;

namespace module {
class ModuleRuntime;
}

// --- page controllers -------------------------------------------------------

// The controller of a page reached by its "talvex://..." scheme.
class Controller {
 public:
  virtual ~Controller() = default;
  virtual std::string GetSchemeView() const { return {}; }
  // "show" and "close" are what the navigator sends.
  virtual void Call(std::string const& name, Variant const* params) {}
  virtual bool CallHasResult(std::string const& name, Variant const* params, Variant* result) { return false; }
};

using ControllerFactory = std::function<std::shared_ptr<Controller>()>;

// Controllers by scheme; one instance a scheme, made on first use.
class ControllerManager {
 public:
  static ControllerManager* Instance();
  void IocRegister(std::string const& scheme, ControllerFactory factory);
  void IocUnregister(std::string const& scheme);
  bool HasUri(std::string const& scheme) const;
  std::shared_ptr<Controller> GetController(std::string const& scheme);
  std::vector<std::string> Schemes() const;

 private:
  struct Entry {
    ControllerFactory factory;
    std::shared_ptr<Controller> instance;
  };
  std::map<std::string, Entry> entries_;
};

enum class PageStack : int { kMain = 0, kSecondary = 1 };

// Opens and closes pages by scheme.
class Navigator {
 public:
  static Navigator Of(std::shared_ptr<Context const> context, PageStack stack);
  static Navigator Of(std::shared_ptr<Context const> context, int stack) {
    return Of(std::move(context), static_cast<PageStack>(stack));
  }
  // Sends "show" to the scheme's controller; false when no controller has it.
  bool Push(std::string const& scheme, Variant params = Variant()) const;
  // Sends "close" to the scheme's controller on the other side of the stack.
  bool PopOther(std::string const& scheme) const;

 private:
  Navigator(std::shared_ptr<Context const> context, PageStack stack) : context_(std::move(context)), stack_(stack) {}
  std::shared_ptr<Context const> context_;
  PageStack stack_;
};

// --- services the routing managers sit on --------------------------------------

class RouterService {
 public:
  static RouterService* Instance();
  void Attach(void const* manager) { ++managers_; }
  void Detach(void const* manager) { --managers_; }
  int manager_count() const { return managers_; }

 private:
  int managers_ = 0;
};

class NavigateService {
 public:
  static NavigateService* Instance();
  // Opens a page by its route (the page a module registered under it, if
  // any); the client's journal keeps "navigate <url>".
  void Navigate(std::string const& url, Variant const& params = Variant());
  // Opens a web page in a dialog (`url`, `web_view_title`, `wnd_size_width`,
  // `wnd_size_height`, ...); the journal keeps "web dialog <url>".
  void OpenWebDialog(Variant const& params);
  // What was opened, newest last: maps with `url` and `params`.
  std::vector<Variant> const& opened() const { return opened_; }
  void ClearOpened() { opened_.clear(); }

 private:
  std::vector<Variant> opened_;
};

// The client side of extension views: factories by point and extension id.
class ExtensionViewService {
 public:
  using ViewFactory = std::function<std::shared_ptr<AppBaseView>()>;
  static ExtensionViewService* Instance();
  void Register(std::string const& contributes_id, std::string const& extension_id, ViewFactory factory,
                void const* owner);
  // Removes what `owner` registered.
  void RemoveOwner(void const* owner);
  // The factory for the pair; a registration without a point matches any point.
  ViewFactory Find(std::string const& contributes_id, std::string const& extension_id) const;
  struct Entry {
    std::string contributes_id;
    std::string extension_id;
    ViewFactory factory;
    void const* owner = nullptr;
  };
  std::vector<Entry> const& entries() const { return entries_; }

 private:
  std::vector<Entry> entries_;
};

// Routes a module gives to the client's page navigation.
class NavigateProxyService {
 public:
  explicit NavigateProxyService(NavigateService* service) : service_(service) {}
  void RegisterRoute(int method, std::string const& scheme);
  std::vector<std::pair<int, std::string>> const& routes() const { return routes_; }

 private:
  NavigateService* service_;
  std::vector<std::pair<int, std::string>> routes_;
};

NavigateProxyService* CreateNavigateProxyService(NavigateService* service);
void DeleteNavigateProxyService(NavigateProxyService* service);

class DesktopSchemeRouterManager {
 public:
  explicit DesktopSchemeRouterManager(RouterService* service) : service_(service) {}
  void InitRouterManager();
  void UninitRouterManager();

 private:
  RouterService* service_;
  bool inited_ = false;
};

class SchemeRouterManager {
 public:
  explicit SchemeRouterManager(RouterService* service) : service_(service) {}
  void InitRouterManager();
  void UninitRouterManager();

 private:
  RouterService* service_;
  bool inited_ = false;
};

class NavigatorManager {
 public:
  explicit NavigatorManager(NavigateProxyService* service) : service_(service) {}
  void InitNavigatorManager();
  void UninitNavigatorManager();

 private:
  NavigateProxyService* service_;
  bool inited_ = false;
};

// The UI side of a module's loader: the views of its extensions.
class DesktopUIModuleLoader {
 public:
  using ViewFactory = ExtensionViewService::ViewFactory;
  ~DesktopUIModuleLoader();
  void Load(module::ModuleRuntime* runtime);
  // Drops the loader's view factories.
  void Unload();
  void RegisterGetExtensionViewFunc(std::string const& contributes_id, std::string const& extension_id,
                                    ViewFactory factory);
  void RegisterGetExtensionViewFunc(std::string const& extension_id, ViewFactory factory);
  bool loaded() const { return runtime_ != nullptr; }

 private:
  module::ModuleRuntime* runtime_ = nullptr;
};

// The client's table of UI loaders by module name.
class UiModuleLoaderRegister {
 public:
  using LoadFunc = std::function<void(module::ModuleRuntime*)>;
  using UnloadFunc = std::function<void()>;
  static UiModuleLoaderRegister* GetInstance();
  void Register(std::string const& name, LoadFunc load, UnloadFunc unload);
  void InitRuntimeLoader(std::string const& name, module::ModuleRuntime* runtime);
  void UnInitRuntimeLoader(std::string const& name);
  module::ModuleRuntime* RuntimeOf(std::string const& name) const;
  bool HasLoader(std::string const& name) const;
  // Client side: runs the module's UI load or unload function.
  bool Load(std::string const& name, module::ModuleRuntime* runtime);
  bool Unload(std::string const& name);
  void Remove(std::string const& name);

 private:
  struct Entry {
    LoadFunc load;
    UnloadFunc unload;
  };
  std::map<std::string, Entry> loaders_;
  std::map<std::string, module::ModuleRuntime*> runtimes_;
};

// Builds extension views for a module on the non-UI side.
class ExtensionManager {
 public:
  using BuildViewFunc = std::function<std::shared_ptr<AppBaseView>(std::string const& extension_id)>;
  explicit ExtensionManager(module::ModuleRuntime* runtime) : runtime_(runtime) {}
  void InitExtensionManager(BuildViewFunc build);
  void UninitExtensionManager();
  std::shared_ptr<AppBaseView> BuildView(std::string const& extension_id) const;

 private:
  module::ModuleRuntime* runtime_;
  BuildViewFunc build_;
};

}  // namespace framework
