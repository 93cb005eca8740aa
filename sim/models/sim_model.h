#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "framework/model/model_impl.h"

namespace sim {

// A client model of the simulated meeting: methods are handlers by number,
// and every call is kept so that a test can see what the module asked.
class SimModel : public framework::ModelImpl {
 public:
  using Method = std::function<bool(Variant const* params, Variant* result)>;
  struct Invocation {
    uint32_t method = 0;
    Variant params;
  };

  explicit SimModel(int id) : framework::ModelImpl(id) {}

  bool Invoke(uint32_t method, Variant const* params, Variant* result) override;

  // Defines (or replaces) a method. Parts of the simulated meeting that live
  // in files of their own add their methods to a model this way.
  void SetMethod(uint32_t method, Method handler) { methods_[method] = std::move(handler); }

  std::vector<Invocation> const& invocations() const { return invocations_; }
  // The calls of one method, in order.
  std::vector<Variant> InvocationsOf(uint32_t method) const;
  void ClearInvocations() { invocations_.clear(); }
  // Off: calls are no longer kept (a long storm would keep them all).
  void SetRecording(bool on) { recording_ = on; }

 private:
  std::map<uint32_t, Method> methods_;
  std::vector<Invocation> invocations_;
  bool recording_ = true;
};

}  // namespace sim
