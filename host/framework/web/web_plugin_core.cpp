#include "framework/web/web_plugin_core.h"

#include "base/log/log.h"

namespace talvex {

std::string WebCallbackIdOf(Variant const* params) {
  if (!params || !params->IsMap()) return {};
  Variant const& id = params->Get(kWebCallbackIdKey);
  return id.IsString() || id.IsInteger() ? id.ToString() : std::string();
}

WebPluginCore::~WebPluginCore() = default;

void WebPluginCore::OnAttached() { attached_ = true; }

bool WebPluginCore::HandleCommand(std::string const& command, Variant const* params) {
  const std::string callback_id = WebCallbackIdOf(params);
  if (!callback_id.empty()) requests_.insert(callback_id);
  auto it = commands_.find(command);
  if (it == commands_.end()) {
    TXLOG_WARN << "[web] " << engine_name_ << ": unknown command " << command;
    DoCommonErrorCallBack(params, Variant(base::variant::kVariantTypeMap));
    return false;
  }
  it->second(params);
  return true;
}

bool WebPluginCore::HasCommand(std::string const& command) const { return commands_.count(command) > 0; }

std::vector<std::string> WebPluginCore::Commands() const {
  std::vector<std::string> names;
  for (auto const& [name, handler] : commands_) names.push_back(name);
  return names;
}

void WebPluginCore::DoCommonErrorCallBack(Variant const* params, Variant const& result) {
  Answer(false, params, result);
}

void WebPluginCore::DoCommonSuccessCallBack(Variant const* params, Variant const& result) {
  Answer(true, params, result);
}

void WebPluginCore::Answer(bool success, Variant const* params, Variant const& result) {
  WebPluginAnswer answer;
  answer.success = success;
  answer.callback_id = WebCallbackIdOf(params);
  if (!answer.callback_id.empty() && !requests_.count(answer.callback_id)) {
    TXLOG_INFO << "[web] " << engine_name_ << ": answer to request " << answer.callback_id
               << " of another page dropped";
    return;
  }
  if (!sink_) {
    TXLOG_INFO << "[web] " << engine_name_ << ": no page to answer, dropped";
    return;
  }
  if (params) answer.params = *params;
  answer.result = result;
  // The sink may detach the page; it is called from a copy.
  AnswerSink sink = sink_;
  sink(answer);
}

}  // namespace talvex
