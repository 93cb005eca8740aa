#pragma once

#include <cstdint>
#include <memory>

#include "base/variant/variant.h"
#include "framework/model/model.h"

namespace framework::module {
class ModuleRuntime;
}

namespace chat {

// How view models reach the chat state model: the answer on the heap, or
// null when the model is missing or refused the call.
std::unique_ptr<Variant> InvokeChatBizModel(framework::module::ModuleRuntime* runtime, uint32_t method,
                                            Variant const* params = nullptr);

// One of the module's own models by id, through the runtime's provider; null
// without a runtime.
framework::ModelPtr GetChatModuleModel(framework::module::ModuleRuntime* runtime, int id);

}  // namespace chat
