#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/variant/variant.h"

namespace talvex {

// A plugin through which a web page calls into a module.
class WebPluginBase {
 public:
  virtual ~WebPluginBase() = default;
  // Runs a page's command; false for an unknown one.
  virtual bool HandleCommand(std::string const& command, Variant const* params, Variant* result) = 0;
};

using WebPluginFactory = std::function<std::shared_ptr<WebPluginBase>()>;

struct WebviewPlugin {
  std::string scheme_name;
  std::vector<std::string> class_list;
  WebPluginFactory factory;
};

// The embedded web view's plugin table.
class WebviewPluginEngine {
 public:
  void RegisterPlugin(WebviewPlugin plugin);
  std::vector<WebviewPlugin> const& plugins() const { return plugins_; }
  WebviewPlugin const* Find(std::string const& scheme_name) const;
  void Clear() { plugins_.clear(); }

 private:
  std::vector<WebviewPlugin> plugins_;
};

WebviewPluginEngine* GetWebviewPluginEngine();

struct tagWebPluginConfig {
  std::string name;
  WebPluginFactory factory;
  std::vector<std::string> class_list;
};

// The second plugin table, of the external browser bridge.
void RegisterWebPluginEx(tagWebPluginConfig const& config);
std::vector<tagWebPluginConfig> const& RegisteredWebPluginsEx();
void ClearWebPluginsEx();

}  // namespace talvex
