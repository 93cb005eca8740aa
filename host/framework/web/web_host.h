#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "framework/web/web_plugin.h"

namespace talvex {

// A web page in one of the client's web engines, as far as a plugin sees
// it: it attaches a plugin by its scheme name from the engine's table,
// calls commands with params, and keeps every answer it receives, in order.
// Detaching, or the page going, ends the plugin.
class WebHost {
 public:
  enum class Engine { kWebview, kBrowserBridge };
  struct Callback {
    bool success = false;
    std::string callback_id;
    Variant params;
    Variant result;
  };

  explicit WebHost(Engine engine = Engine::kWebview);
  ~WebHost();
  WebHost(WebHost const&) = delete;
  WebHost& operator=(WebHost const&) = delete;

  // Makes the plugin registered under `scheme_name` and attaches it; an
  // attached plugin goes first. False when the engine has none by that name.
  bool Attach(std::string const& scheme_name);
  void Detach();
  bool attached() const { return plugin_ != nullptr; }
  WebPluginCore* plugin() const { return plugin_.get(); }
  Engine engine() const { return engine_; }

  // The page calls a command. Params that are a map and name no request get
  // a fresh name, unique among all pages (plugins of several pages may hear
  // the same answers); returns the name the answers will carry, "" for params
  // that are no map. Without a plugin nothing is called.
  std::string Call(std::string const& command, Variant params);
  // A call without params.
  void Call(std::string const& command);

  std::vector<Callback> const& callbacks() const { return callbacks_; }
  // The answers to one request, in order.
  std::vector<Callback> CallbacksFor(std::string const& callback_id) const;
  void ClearCallbacks() { callbacks_.clear(); }
  // Told of every answer as it arrives (after it was kept).
  void SetCallbackObserver(std::function<void(Callback const&)> observer) { observer_ = std::move(observer); }

 private:
  void Receive(WebPluginAnswer const& answer);

  Engine engine_;
  std::shared_ptr<WebPluginCore> plugin_;
  std::vector<Callback> callbacks_;
  std::function<void(Callback const&)> observer_;
};

}  // namespace talvex
