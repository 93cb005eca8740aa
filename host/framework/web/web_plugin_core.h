#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/variant/variant.h"

namespace talvex {

// The member of a request's params under which the page names the request.
// A plugin hands the request's params back with every answer, so the name
// travels with them, also through models that answer later by event.
constexpr char kWebCallbackIdKey[] = "callbackId";

// One answer on its way to a page.
struct WebPluginAnswer {
  bool success = false;
  // The request's name (empty when the params carry none).
  std::string callback_id;
  // The params of the request being answered, as the plugin gave them back.
  Variant params;
  Variant result;
};

// What the plugins of both web engines share: the commands a page may call,
// the moment a page attaches the plugin, and the road back to that page.
//
// A plugin serves one page. Answers whose params name a request this page
// never made belong to another page and are dropped, so that a plugin that
// hears every answer of a shared model still answers only its own page.
class WebPluginCore {
 public:
  using AnswerSink = std::function<void(WebPluginAnswer const&)>;

  WebPluginCore(WebPluginCore const&) = delete;
  WebPluginCore& operator=(WebPluginCore const&) = delete;
  virtual ~WebPluginCore();

  // The host attached the plugin to a page. An override calls the base first.
  virtual void OnAttached();

  // Runs a page's command. An unknown command is answered with an error and
  // yields false.
  bool HandleCommand(std::string const& command, Variant const* params);
  bool HasCommand(std::string const& command) const;
  std::vector<std::string> Commands() const;

  // The host: where the answers go. An empty sink drops them (the page left).
  void SetAnswerSink(AnswerSink sink) { sink_ = std::move(sink); }
  bool attached() const { return attached_; }
  // "bridge" or "webview", for logs.
  char const* engine_name() const { return engine_name_; }

  // Answers the page that made the request `params` came with.
  void DoCommonErrorCallBack(Variant const* params, Variant const& result);
  void DoCommonSuccessCallBack(Variant const* params, Variant const& result);

 protected:
  explicit WebPluginCore(char const* engine_name) : engine_name_(engine_name) {}

  // Binds `command` to a member handler of the plugin; called from the
  // plugin's constructor.
  template <typename T>
  void BindCommand(std::string const& command, T* plugin, void (T::*handler)(Variant const*)) {
    commands_[command] = [plugin, handler](Variant const* params) { (plugin->*handler)(params); };
  }

 private:
  void Answer(bool success, Variant const* params, Variant const& result);

  char const* engine_name_;
  std::map<std::string, std::function<void(Variant const*)>, std::less<>> commands_;
  // The names of the requests this page made.
  std::set<std::string> requests_;
  AnswerSink sink_;
  bool attached_ = false;
};

// The name of the request `params` belong to; empty when they name none.
std::string WebCallbackIdOf(Variant const* params);

}  // namespace talvex
