#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "framework/web/web_plugin_core.h"

namespace talvex {

// A plugin of the external browser bridge; registered with RegisterWebPluginEx.
class BaseWebPlugin : public WebPluginCore {
 public:
  ~BaseWebPlugin() override;

 protected:
  BaseWebPlugin() : WebPluginCore("bridge") {}
};

// A plugin of the embedded web view; registered on GetWebviewPluginEngine().
class WebviewPlugin : public WebPluginCore {
 public:
  ~WebviewPlugin() override;

 protected:
  WebviewPlugin() : WebPluginCore("webview") {}
};

using WebviewPluginFactory = std::function<std::shared_ptr<WebviewPlugin>()>;
using BaseWebPluginFactory = std::function<std::shared_ptr<BaseWebPlugin>()>;

// A plugin the embedded web view offers its pages under a scheme name.
struct WebviewPluginEntry {
  std::string scheme_name;
  std::vector<std::string> class_list;
  WebviewPluginFactory factory;
};

// The embedded web view's plugin table.
class WebviewPluginEngine {
 public:
  // Replaces an entry of the same scheme name.
  void RegisterPlugin(WebviewPluginEntry plugin);
  std::vector<WebviewPluginEntry> const& plugins() const { return plugins_; }
  WebviewPluginEntry const* Find(std::string const& scheme_name) const;
  void Clear() { plugins_.clear(); }

 private:
  std::vector<WebviewPluginEntry> plugins_;
};

WebviewPluginEngine* GetWebviewPluginEngine();

struct tagWebPluginConfig {
  std::string name;
  BaseWebPluginFactory factory;
  std::vector<std::string> class_list;
};

// The external browser bridge's plugin table. A config replaces one of the
// same name.
void RegisterWebPluginEx(tagWebPluginConfig const& config);
std::vector<tagWebPluginConfig> const& RegisteredWebPluginsEx();
tagWebPluginConfig const* FindWebPluginEx(std::string const& name);
void ClearWebPluginsEx();

}  // namespace talvex
