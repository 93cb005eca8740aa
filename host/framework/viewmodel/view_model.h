#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "base/variant/variant.h"
#include "framework/model/handler_table.h"
#include "framework/model/model.h"
#include "framework/viewmodel/context.h"

namespace framework {

namespace module {
class ModuleRuntime;
}

// Props and actions are numbers. Named ones take the hash of their name, so a
// view and its view model agree on a name without a shared table.
constexpr uint32_t NameId(char const* name) {
  uint32_t hash = 2166136261u;  // FNV-1a
  for (; *name; ++name) hash = (hash ^ static_cast<uint8_t>(*name)) * 16777619u;
  return hash;
}

// A view model publishes props and takes actions; it never touches a widget.
//
// Lifecycle, in the order the framework calls it: construction, DidCreated
// (-> OnViewCreated), DidAttached (-> OnViewAttached: subscribe here), any
// number of Handle / SetNewParams / DidChangeLifecycleState, DidDetached
// (-> OnViewDetached, then every recorded subscription is dropped),
// destruction.
class ViewModel : public std::enable_shared_from_this<ViewModel> {
 public:
  using PropBinding = std::function<void(Variant const* new_value, Variant const* old_value)>;
  using PropAnswer = std::function<void(Variant const* answer)>;
  using PropSetResultBinding = std::function<void(Variant const* value, PropAnswer answer)>;

  ViewModel();
  virtual ~ViewModel();

  virtual bool IsSerialized() const { return false; }
  virtual std::string ToJson() const;
  virtual bool FromJson(std::string const& text);

  // --- binding (the view's side) ---------------------------------------------
  // `fire_now` delivers the current value at once when there is one.
  virtual void BindProp(uint32_t prop, PropBinding binding, bool fire_now = false);
  virtual void UnbindProp(uint32_t prop);
  virtual void UnbindAllProps();
  virtual void BindPropSetResult(uint32_t prop, PropSetResultBinding binding);
  virtual void UnbindPropSetResult(uint32_t prop);
  virtual void UnbindAllPropsSetResult();

  // --- lifecycle (the framework's side) ---------------------------------------
  virtual void DidCreated(Variant const* params);
  virtual void DidAttached(Variant const* params);
  virtual void DidDetached();
  virtual void DidDependenciesChanged(Variant const* params);
  virtual void DidChangeLifecycleState(int state);
  virtual void LifecycleStateChanged(int old_state, int new_state) {}
  virtual void SetNewParams(Variant const* params);
  virtual void SetType(int type) { type_ = type; }
  virtual int type() const { return type_; }

  virtual void OnViewCreated(Variant const* params) {}
  virtual void OnViewAttached(Variant const* params) {}
  virtual void OnViewDetached() {}
  virtual void OnDependenciesChanged(Variant const* params) {}
  virtual void OnNewParams(Variant const* old_params, Variant const* new_params, bool flag) {}

  virtual void OnViewModelHandleActionBefore(uint32_t action, Variant const* params) {}
  virtual void OnViewModelHandleActionAfter(uint32_t action, Variant const* params) {}

  // A view's action: statistics, before, HandleAction, after. When `params`
  // is a map with `statistics_report_id`, that value is logged as an event
  // first. A non-empty map is kept as the action's sample (SampleParams).
  void Handle(uint32_t action, Variant const* params = nullptr);
  // Runs the handler registered for `action` (OnAction); logs an action that
  // has none. An overrider ends in the base for actions it doesn't know.
  virtual void HandleAction(uint32_t action, Variant const* params);
  // The actions this view model has handlers for, in ascending order.
  std::vector<uint32_t> Actions() const;
  // The last non-empty map a view handed to `action`, sharing its storage;
  // null when the action never carried one. What a well-formed payload looks
  // like, for diagnostics and tests.
  Variant SampleParams(uint32_t action) const;

  // --- props -----------------------------------------------------------------
  void SetPropValue(uint32_t prop, Variant const& value);
  void SetPropValue(uint32_t prop, Variant&& value);
  void SetPropValue(uint32_t prop, bool value) { SetPropValue(prop, Variant(value)); }
  void SetPropValue(uint32_t prop, char const* value) { SetPropValue(prop, Variant(value)); }
  void SetPropValue(uint32_t prop, std::string const& value) { SetPropValue(prop, Variant(value)); }
  // A null prop: a signal that carries no value; the binding still fires.
  void SetPropValue(uint32_t prop, std::nullptr_t) { SetPropValue(prop, Variant()); }
  void SetPropValue(uint32_t prop, double value) { SetPropValue(prop, Variant(value)); }
  void SetPropValue(uint32_t prop, int value) { SetPropValue(prop, Variant(value)); }
  void SetPropValue(uint32_t prop, std::shared_ptr<Variant> const& value);
  // Delivers the value to the view's result binding, which answers through
  // `answer` (at once or later). Without a binding the answer is null, at once.
  void SetPropValueForResult(uint32_t prop, Variant const* value, PropAnswer answer);
  // Null when the prop was never set.
  Variant const* GetPropValue(uint32_t prop) const;
  Variant PickPropValue(uint32_t prop) const;
  bool HasProp(uint32_t prop) const;
  // How many times the prop was published (tests and diagnostics).
  size_t PropSetCount(uint32_t prop) const;
  // The props that hold a value now, in ascending order.
  std::vector<uint32_t> SetProps() const;
  // Every view model alive in the process (user-interface thread only), for
  // diagnostics: counting them over a long meeting, sweeping their inputs.
  static std::vector<ViewModel*> LiveViewModels();

  // --- subscriptions -------------------------------------------------------------
  // Notes that `subscriber` subscribed to `model`, so that the framework drops
  // the subscription when the view model goes. A subscriber that is no view
  // model is skipped: it unsubscribes by itself.
  template <typename T>
  static void RecordSubscribe(ModelPtr const& model, T* subscriber) {
    RecordIfViewModel(model, subscriber, false);
  }
  template <typename T>
  static void RecordPrioritySubscribe(ModelPtr const& model, T* subscriber) {
    RecordIfViewModel(model, subscriber, true);
  }
  virtual void UnsubscribeAllEvent();
  size_t RecordedSubscriptionCount() const { return subscriptions_.size(); }

  // --- debounce ------------------------------------------------------------------
  // True when `action` comes within the threshold of the last recorded one.
  // The threshold is `threshold_ms` of `params` when given, else 500 ms.
  bool IsHitActionThreshold(uint32_t action, Variant const* params) const;
  void RecordLastAction4Threshold(uint32_t action);

  // --- misc -----------------------------------------------------------------------
  virtual void SetVisible(bool visible) { visible_ = visible; }
  virtual bool visible() const { return visible_; }
  module::ModuleRuntime* GetModuleRuntime4ATG() const { return runtime_; }
  void SetModuleParams(module::ModuleRuntime* runtime) { runtime_ = runtime; }
  std::shared_ptr<Context const> context() const { return context_; }
  uint64_t view_context() const { return context_ ? context_->view_context() : 0; }
  bool attached() const { return attached_; }
  int lifecycle_state() const { return lifecycle_state_; }

 protected:
  using ActionHandler = HandlerTable<void(Variant const* params)>::Handler;
  // Makes `handler` the answer to `action`. Constructors register theirs, so
  // a subclass registering an action of its base takes it over.
  void OnAction(uint32_t action, ActionHandler handler);

 private:
  template <typename T>
  static void RecordIfViewModel(ModelPtr const& model, T* subscriber, bool priority) {
    if constexpr (std::is_polymorphic_v<T>) {
      // The subscriber subscribed under its own address, which is not that of
      // its ViewModel part when ViewModel is not its first base.
      if (auto* view_model = dynamic_cast<ViewModel*>(subscriber)) {
        view_model->Record(model, priority, SubscriberId(subscriber));
      }
    }
  }
  void Record(ModelPtr const& model, bool priority, uint64_t subscriber);
  void Publish(uint32_t prop, Variant value);

  struct Subscription {
    std::weak_ptr<Model> model;
    bool priority = false;
    uint64_t subscriber = 0;
  };
  struct PropSlot {
    Variant value;
    bool set = false;
    size_t count = 0;
  };

  int type_ = 0;
  bool visible_ = true;
  bool attached_ = false;
  int lifecycle_state_ = 0;
  Variant params_;
  module::ModuleRuntime* runtime_ = nullptr;
  std::shared_ptr<Context const> context_;
  std::map<uint32_t, PropSlot> props_;
  std::map<uint32_t, PropBinding> bindings_;
  std::map<uint32_t, PropSetResultBinding> result_bindings_;
  std::vector<Subscription> subscriptions_;
  std::map<uint32_t, std::chrono::steady_clock::time_point> last_actions_;
  // Shared, so that a handler that registers again while it runs stays alive.
  HandlerTable<void(Variant const* params)> actions_;
  std::map<uint32_t, Variant> action_samples_;
};

}  // namespace framework
