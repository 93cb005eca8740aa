#include "framework/web/web_host.h"

#include "base/log/log.h"

namespace talvex {

namespace {
std::string NextRequestName() {
  static uint64_t next = 1;
  return "cb-" + std::to_string(next++);
}
}  // namespace

WebHost::WebHost(Engine engine) : engine_(engine) {}

WebHost::~WebHost() { Detach(); }

bool WebHost::Attach(std::string const& scheme_name) {
  Detach();
  std::shared_ptr<WebPluginCore> plugin;
  if (engine_ == Engine::kWebview) {
    auto const* entry = GetWebviewPluginEngine()->Find(scheme_name);
    if (entry && entry->factory) plugin = entry->factory();
  } else {
    auto const* config = FindWebPluginEx(scheme_name);
    if (config && config->factory) plugin = config->factory();
  }
  if (!plugin) {
    TXLOG_WARN << "[web] no plugin registered as " << scheme_name;
    return false;
  }
  plugin_ = std::move(plugin);
  plugin_->SetAnswerSink([this](WebPluginAnswer const& answer) { Receive(answer); });
  plugin_->OnAttached();
  return true;
}

void WebHost::Detach() {
  if (!plugin_) return;
  // A plugin someone else still holds must not reach this page any more.
  plugin_->SetAnswerSink({});
  plugin_.reset();
}

std::string WebHost::Call(std::string const& command, Variant params) {
  std::string callback_id;
  if (params.IsMap()) {
    callback_id = WebCallbackIdOf(&params);
    if (callback_id.empty()) {
      callback_id = NextRequestName();
      params.Set(kWebCallbackIdKey, callback_id);
    }
  }
  if (plugin_) {
    // The plugin lives through its own command even when an answer detaches the page.
    std::shared_ptr<WebPluginCore> plugin = plugin_;
    plugin->HandleCommand(command, &params);
  }
  return callback_id;
}

void WebHost::Call(std::string const& command) {
  if (!plugin_) return;
  std::shared_ptr<WebPluginCore> plugin = plugin_;
  plugin->HandleCommand(command, nullptr);
}

std::vector<WebHost::Callback> WebHost::CallbacksFor(std::string const& callback_id) const {
  std::vector<Callback> found;
  for (auto const& callback : callbacks_) {
    if (callback.callback_id == callback_id) found.push_back(callback);
  }
  return found;
}

void WebHost::Receive(WebPluginAnswer const& answer) {
  callbacks_.push_back(Callback{answer.success, answer.callback_id, answer.params, answer.result});
  if (!observer_) return;
  const Callback kept = callbacks_.back();
  observer_(kept);
}

}  // namespace talvex
