#include "chat/viewmodel/chat_message_item_view_model.h"

#include "base/log/log.h"
#include "framework/chat/chat_utils.h"

namespace chat {

Variant const& ChatMessageItemViewModel::ContentOf(Variant const& record) {
  return record.Has("ui_msg_content") ? record.Get("ui_msg_content") : record.Get("msg_content");
}

void ChatMessageItemViewModel::HandleMsgInfo(Variant const* params) {
  const std::string msg_id = params ? params->GetString("msg_id") : std::string();
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(msg_id);
  if (!record) {
    TXLOG_ERROR << "<IM> message not found, with msg_id=" << msg_id;
    return;
  }
  const int template_type = params->GetInt32("template_type", template_type_);
  const std::string conv_id = params->GetString("message_conv_id");
  // The host replaces or copies a record when it changes it, so the same
  // storage is the same message.
  if (msg_id == msg_id_ && template_type == template_type_ && conv_id == bound_conv_id_ &&
      record->SharesStorageWith(bound_record_)) {
    return;
  }
  msg_id_ = msg_id;
  template_type_ = template_type;
  bound_record_ = Variant();
  Variant info(base::variant::kVariantTypeMap);
  if (wants_base_info()) talvex::ChatUtils::ConvertMessageInfoToBaseInfo(this, *record, &info);
  if (!FillInfo(*record, params, info)) return;
  SetPropValue(info_prop(), std::move(info));
  bound_record_ = *record;
  bound_conv_id_ = conv_id;
}

}  // namespace chat
