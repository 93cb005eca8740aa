#pragma once

#include <cstdint>
#include <memory>

#include "base/variant/variant.h"

namespace framework::module {
class ModuleRuntime;
}

namespace chat {

// How view models reach the chat state model: the answer on the heap, or
// null when the model is missing or refused the call.
std::unique_ptr<Variant> InvokeChatBizModel(framework::module::ModuleRuntime* runtime, uint32_t method,
                                            Variant const* params = nullptr);

}  // namespace chat
