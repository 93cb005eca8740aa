#pragma once

#include <functional>

#include "framework/viewmodel/ui_view_model.h"

namespace framework {

// A view model with a current state and its data, which a view can follow.
class StatefulViewModel : public UIViewModel {
 public:
  using StateBinding = std::function<void(int state, Variant const* data)>;
  using StatelessBinding = std::function<void(Variant const* data)>;

  void BindStateful(StateBinding binding, bool fire_now = false);
  void BindStateless(StatelessBinding binding, bool fire_now = false);
  void SetStatefulData(int state, Variant const* data);
  Variant const* GetStatefulData() const { return &stateful_data_; }
  int GetCurrentState() const { return state_; }
  void SetCustomParam(Variant const* params);
  // Called once when the view model comes up, to fill its initial data.
  virtual void InitStatelessData(Variant& data) {}
  virtual void OnCustomParamChanged(Variant const* old_params, Variant const* new_params) {}

  void DidCreated(Variant const* params) override;

 private:
  int state_ = 0;
  Variant stateful_data_;
  Variant stateless_data_;
  Variant custom_params_;
  StateBinding state_binding_;
  StatelessBinding stateless_binding_;
};

}  // namespace framework
