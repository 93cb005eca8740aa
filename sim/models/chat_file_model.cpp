#include "sim/models/chat_file_model.h"

#include "base/log/log.h"
#include "framework/chat/chat_file_utils.h"

namespace sim {

ChatFileModel::ChatFileModel() : SimModel(kId) {
  SetMethod(4, [](Variant const* params, Variant*) {
    if (!params || !params->IsMap() || !params->Get("file_info").IsMap()) {
      TXLOG_ERROR << "[sim] download without file_info";
      return false;
    }
    return true;
  });
  SetMethod(14, [](Variant const* params, Variant* result) {
    if (!params || !params->IsMap()) return false;
    Variant answer(base::variant::kVariantTypeMap);
    answer.Set("file_path", params->GetString("file_path"));
    answer.Set("is_inhibit", talvex::ChatFileUtils::IsInhibitedExtension(params->GetString("file_path")));
    if (result) *result = std::move(answer);
    return true;
  });
  SetMethod(16, [](Variant const* params, Variant* result) {
    if (!params || !params->IsMap()) return false;
    Variant answer(base::variant::kVariantTypeMap);
    answer.Set("is_support", !talvex::ChatFileUtils::IsInhibitedExtension(params->GetString("file_name")));
    if (result) *result = std::move(answer);
    return true;
  });
}

}  // namespace sim
