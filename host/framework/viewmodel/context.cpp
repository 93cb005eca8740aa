#include "framework/viewmodel/context.h"

namespace framework {

uint64_t Context::view_context() const {
  return view_params_.Get("navigator_params").Get("view_context").AsUint64();
}

}  // namespace framework
