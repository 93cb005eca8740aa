#include "framework/web/web_plugin.h"

#include "framework/journal/host_journal.h"

namespace talvex {

BaseWebPlugin::~BaseWebPlugin() = default;
WebviewPlugin::~WebviewPlugin() = default;

void WebviewPluginEngine::RegisterPlugin(WebviewPluginEntry plugin) {
  framework::HostJournal::Record("WebviewPluginEngine.RegisterPlugin " + plugin.scheme_name);
  for (auto& existing : plugins_) {
    if (existing.scheme_name == plugin.scheme_name) {
      existing = std::move(plugin);
      return;
    }
  }
  plugins_.push_back(std::move(plugin));
}

WebviewPluginEntry const* WebviewPluginEngine::Find(std::string const& scheme_name) const {
  for (auto const& plugin : plugins_) {
    if (plugin.scheme_name == scheme_name) return &plugin;
  }
  return nullptr;
}

WebviewPluginEngine* GetWebviewPluginEngine() {
  static WebviewPluginEngine engine;
  return &engine;
}

namespace {
std::vector<tagWebPluginConfig>& ConfigsEx() {
  static std::vector<tagWebPluginConfig> configs;
  return configs;
}
}  // namespace

void RegisterWebPluginEx(tagWebPluginConfig const& config) {
  framework::HostJournal::Record("RegisterWebPluginEx " + config.name);
  for (auto& existing : ConfigsEx()) {
    if (existing.name == config.name) {
      existing = config;
      return;
    }
  }
  ConfigsEx().push_back(config);
}

std::vector<tagWebPluginConfig> const& RegisteredWebPluginsEx() { return ConfigsEx(); }

tagWebPluginConfig const* FindWebPluginEx(std::string const& name) {
  for (auto const& config : ConfigsEx()) {
    if (config.name == name) return &config;
  }
  return nullptr;
}

void ClearWebPluginsEx() { ConfigsEx().clear(); }

}  // namespace talvex
