#include "framework/viewmodel/view_model.h"

#include <unordered_set>

#include "base/analytics/analytics.h"
#include "base/log/log.h"

namespace framework {

namespace {
constexpr int kDefaultActionThresholdMs = 500;

std::unordered_set<ViewModel*>& Live() {
  static auto* live = new std::unordered_set<ViewModel*>();
  return *live;
}
}  // namespace

ViewModel::ViewModel() { Live().insert(this); }

ViewModel::~ViewModel() {
  Live().erase(this);
  UnsubscribeAllEvent();
}

std::vector<ViewModel*> ViewModel::LiveViewModels() { return {Live().begin(), Live().end()}; }

std::vector<uint32_t> ViewModel::SetProps() const {
  std::vector<uint32_t> props;
  for (auto const& [id, slot] : props_) {
    if (slot.set) props.push_back(id);
  }
  return props;
}

std::string ViewModel::ToJson() const { return {}; }

bool ViewModel::FromJson(std::string const&) { return false; }

void ViewModel::BindProp(uint32_t prop, PropBinding binding, bool fire_now) {
  bindings_[prop] = std::move(binding);
  if (fire_now) {
    auto it = props_.find(prop);
    if (it != props_.end() && it->second.set && bindings_[prop]) bindings_[prop](&it->second.value, nullptr);
  }
}

void ViewModel::UnbindProp(uint32_t prop) { bindings_.erase(prop); }

void ViewModel::UnbindAllProps() { bindings_.clear(); }

void ViewModel::BindPropSetResult(uint32_t prop, PropSetResultBinding binding) {
  result_bindings_[prop] = std::move(binding);
}

void ViewModel::UnbindPropSetResult(uint32_t prop) { result_bindings_.erase(prop); }

void ViewModel::UnbindAllPropsSetResult() { result_bindings_.clear(); }

void ViewModel::DidCreated(Variant const* params) {
  params_ = params ? *params : Variant();
  context_ = std::make_shared<Context const>(params_);
  OnViewCreated(params);
}

void ViewModel::DidAttached(Variant const* params) {
  if (attached_) return;
  attached_ = true;
  OnViewAttached(params);
}

void ViewModel::DidDetached() {
  if (!attached_) return;
  OnViewDetached();
  UnsubscribeAllEvent();
  attached_ = false;
}

void ViewModel::DidDependenciesChanged(Variant const* params) { OnDependenciesChanged(params); }

void ViewModel::DidChangeLifecycleState(int state) {
  const int old_state = lifecycle_state_;
  lifecycle_state_ = state;
  if (old_state != state) LifecycleStateChanged(old_state, state);
}

void ViewModel::SetNewParams(Variant const* params) {
  Variant old_params = params_;
  params_ = params ? *params : Variant();
  OnNewParams(&old_params, &params_, false);
}

void ViewModel::Handle(uint32_t action, Variant const* params) {
  if (params && params->IsMap() && params->Has("statistics_report_id")) {
    Variant const& report = params->Get("statistics_report_id");
    const std::string name = report.IsString() ? report.AsStr() : report.ToString();
    if (!name.empty()) talvex_common::utils::analytics::LogEvent(name);
  }
  if (params && params->IsMap() && !params->Empty()) action_samples_[action] = *params;
  OnViewModelHandleActionBefore(action, params);
  HandleAction(action, params);
  OnViewModelHandleActionAfter(action, params);
}

void ViewModel::HandleAction(uint32_t action, Variant const* params) {
  if (auto handler = actions_.Find(action)) {
    (*handler)(params);
    return;
  }
  TXLOG_NOTICE << "unhandled action " << action << " of view model type " << type_;
}

void ViewModel::OnAction(uint32_t action, ActionHandler handler) { actions_.Set(action, std::move(handler)); }

std::vector<uint32_t> ViewModel::Actions() const { return actions_.Ids(); }

Variant ViewModel::SampleParams(uint32_t action) const {
  auto it = action_samples_.find(action);
  return it == action_samples_.end() ? Variant() : it->second;
}

void ViewModel::Publish(uint32_t prop, Variant value) {
  PropSlot& slot = props_[prop];
  Variant old_value = std::move(slot.value);
  const bool had_value = slot.set;
  slot.value = std::move(value);
  slot.set = true;
  ++slot.count;
  auto it = bindings_.find(prop);
  if (it == bindings_.end() || !it->second) return;
  // The binding may rebind or publish again; call a copy with a copy of the value.
  PropBinding binding = it->second;
  Variant current = props_[prop].value;
  binding(&current, had_value ? &old_value : nullptr);
}

void ViewModel::SetPropValue(uint32_t prop, Variant const& value) { Publish(prop, value); }

void ViewModel::SetPropValue(uint32_t prop, Variant&& value) { Publish(prop, std::move(value)); }

void ViewModel::SetPropValue(uint32_t prop, std::shared_ptr<Variant> const& value) {
  Publish(prop, value ? *value : Variant());
}

void ViewModel::SetPropValueForResult(uint32_t prop, Variant const* value, PropAnswer answer) {
  Variant stored = value ? *value : Variant();
  PropSlot& slot = props_[prop];
  slot.value = stored;
  slot.set = true;
  ++slot.count;
  auto it = result_bindings_.find(prop);
  if (it == result_bindings_.end() || !it->second) {
    if (answer) answer(nullptr);
    return;
  }
  PropSetResultBinding binding = it->second;
  binding(&stored, std::move(answer));
}

Variant const* ViewModel::GetPropValue(uint32_t prop) const {
  auto it = props_.find(prop);
  return it != props_.end() && it->second.set ? &it->second.value : nullptr;
}

Variant ViewModel::PickPropValue(uint32_t prop) const {
  Variant const* value = GetPropValue(prop);
  return value ? *value : Variant();
}

bool ViewModel::HasProp(uint32_t prop) const { return GetPropValue(prop) != nullptr; }

size_t ViewModel::PropSetCount(uint32_t prop) const {
  auto it = props_.find(prop);
  return it == props_.end() ? 0 : it->second.count;
}

void ViewModel::Record(ModelPtr const& model, bool priority, uint64_t subscriber) {
  if (!model) return;
  for (auto const& s : subscriptions_) {
    if (s.priority == priority && s.subscriber == subscriber && s.model.lock() == model) return;
  }
  subscriptions_.push_back({model, priority, subscriber});
}

void ViewModel::UnsubscribeAllEvent() {
  for (auto const& s : subscriptions_) {
    auto model = s.model.lock();
    if (!model) continue;
    if (s.priority) {
      if (auto* priority_model = dynamic_cast<PriorityModel*>(model.get())) {
        priority_model->UnsubscribePriority(s.subscriber);
      }
    } else {
      model->Unsubscribe(s.subscriber);
    }
  }
  subscriptions_.clear();
}

bool ViewModel::IsHitActionThreshold(uint32_t action, Variant const* params) const {
  auto it = last_actions_.find(action);
  if (it == last_actions_.end()) return false;
  int threshold = kDefaultActionThresholdMs;
  if (params && params->IsMap() && params->Has("threshold_ms")) threshold = params->GetInt32("threshold_ms");
  const auto elapsed = std::chrono::steady_clock::now() - it->second;
  return elapsed < std::chrono::milliseconds(threshold);
}

void ViewModel::RecordLastAction4Threshold(uint32_t action) {
  last_actions_[action] = std::chrono::steady_clock::now();
}

}  // namespace framework
