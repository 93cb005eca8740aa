#include "framework/viewmodel/stateful_view_model.h"

namespace framework {

void StatefulViewModel::BindStateful(StateBinding binding, bool fire_now) {
  state_binding_ = std::move(binding);
  if (fire_now && state_binding_) state_binding_(state_, &stateful_data_);
}

void StatefulViewModel::BindStateless(StatelessBinding binding, bool fire_now) {
  stateless_binding_ = std::move(binding);
  if (fire_now && stateless_binding_) stateless_binding_(&stateless_data_);
}

void StatefulViewModel::SetStatefulData(int state, Variant const* data) {
  state_ = state;
  stateful_data_ = data ? *data : Variant();
  if (state_binding_) {
    StateBinding binding = state_binding_;
    binding(state_, &stateful_data_);
  }
}

void StatefulViewModel::SetCustomParam(Variant const* params) {
  Variant old_params = custom_params_;
  custom_params_ = params ? *params : Variant();
  OnCustomParamChanged(&old_params, &custom_params_);
}

void StatefulViewModel::DidCreated(Variant const* params) {
  InitStatelessData(stateless_data_);
  UIViewModel::DidCreated(params);
}

}  // namespace framework
