#include "sim/models/sim_model.h"

namespace sim {

bool SimModel::Invoke(uint32_t method, Variant const* params, Variant* result) {
  if (recording_) invocations_.push_back({method, params ? *params : Variant()});
  auto it = methods_.find(method);
  if (it == methods_.end()) return false;
  Method handler = it->second;
  return handler(params, result);
}

std::vector<Variant> SimModel::InvocationsOf(uint32_t method) const {
  std::vector<Variant> out;
  for (auto const& call : invocations_) {
    if (call.method == method) out.push_back(call.params);
  }
  return out;
}

}  // namespace sim
