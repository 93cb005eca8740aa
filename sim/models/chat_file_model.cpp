#include "sim/models/chat_file_model.h"

#include "base/log/log.h"
#include "framework/chat/chat_file_utils.h"
#include "sim/models/chat_message_model.h"

namespace sim {

ChatFileModel::ChatFileModel() : SimModel(kId) {
  SetMethod(4, [](Variant const* params, Variant*) {
    if (!params || !params->IsMap() || !params->Get("file_info").IsMap()) {
      TXLOG_ERROR << "[sim] download without file_info";
      return false;
    }
    return true;
  });
  SetMethod(5, [this](Variant const* message, Variant*) { return SetStatus(message, 10); });
  SetMethod(6, [this](Variant const* message, Variant*) { return SetStatus(message, 0) && SetStatus(message, 3); });
  SetMethod(7, [this](Variant const* message, Variant*) { return SetStatus(message, 2); });
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

bool ChatFileModel::SetStatus(Variant const* message, int status) {
  if (!messages_ || !message || !message->IsMap()) return false;
  const std::string msg_id = message->GetString("msg_id");
  const bool changed = messages_->Update(msg_id, [status](Variant& record) {
    Variant& info = record["ext_content"]["file_info"];
    info.Set("status", status);
  });
  if (!changed) return false;
  auto record = messages_->FindMessage(msg_id);
  Variant payload = Variant::Map{{"msg_id", msg_id}, {"file_info", record->Get("ext_content").Get("file_info")}};
  FireEvent(1, &payload);
  return true;
}

}  // namespace sim
