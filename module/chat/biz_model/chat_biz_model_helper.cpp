#include "chat/biz_model/chat_biz_model_helper.h"

#include "base/log/log.h"
#include "chat/runtime/chat_ids.h"
#include "framework/module/module_runtime.h"

namespace chat {

std::unique_ptr<Variant> InvokeChatBizModel(framework::module::ModuleRuntime* runtime, uint32_t method,
                                            Variant const* params) {
  auto* provider = runtime ? runtime->GetModelProvider() : nullptr;
  auto model = provider ? provider->ModelOf(kChatBizModelId) : nullptr;
  if (!model) {
    TXLOG_WARN << "<IM> chat biz model not available, method=" << method;
    return nullptr;
  }
  auto result = std::make_unique<Variant>();
  if (!model->Invoke(method, params, result.get())) return nullptr;
  return result;
}

framework::ModelPtr GetChatModuleModel(framework::module::ModuleRuntime* runtime, int id) {
  auto* provider = runtime ? runtime->GetModelProvider() : nullptr;
  return provider ? provider->ModelOf(id) : nullptr;
}

}  // namespace chat
