#pragma once

#include <cstdint>
#include <memory>

#include "base/variant/variant.h"

namespace framework {

// What a view model was created with: the view's parameters, among them
// `navigator_params` with the parent view under `view_context`.
class Context {
 public:
  Context() = default;
  explicit Context(Variant view_params) : view_params_(std::move(view_params)) {}
  Variant const& view_params() const { return view_params_; }
  // The parent view's address, 0 when there is none.
  uint64_t view_context() const;

 private:
  Variant view_params_;
};

}  // namespace framework
