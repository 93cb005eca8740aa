#include "chat/viewmodel/chat_message_container_view_model.h"

#include "base/log/log.h"
#include "framework/chat/chat_utils.h"
#include "chat/model/chat_message.h"

namespace chat {

ChatMessageContainerViewModel::ChatMessageContainerViewModel() {
  SetContributesId(kContributesId);
  OnAction(kActionSetMsgId, [this](Variant const* params) {
    if (params && params->IsString()) {
      DoSetMsgId(params->AsStr());
    } else if (params && params->IsMap()) {
      DoSetMsgId(params->GetString("msg_id"));
    } else {
      TXLOG_ERROR << "<IM> set msg id: no id";
    }
  });
}

void ChatMessageContainerViewModel::DoSetMsgId(std::string const& msg_id) {
  if (extensions().empty()) {
    Variant info(base::variant::kVariantTypeMap);
    info.Set(chat_key::kMsgId, msg_id);
    if (auto record = talvex::ChatUtils::GetMsgInfoPtrById(msg_id)) info.Set(chat_key::kChatType, record->Get("chat_type"));
    ActivateExtensions(&info);
    UpdateContributesDataSource();
  }
  // Extensions that turned the message down stay inactive and show nothing.
  Variant shown(base::variant::kVariantTypeArray);
  for (auto const& extension : extensions()) {
    if (!extension->activated()) continue;
    for (auto const& item : items().AsArray()) {
      if (item.GetString("extension_id") == extension->GetExtensionId()) shown.Add(item);
    }
  }
  if (shown.Empty()) {
    FireP2PExtensionEvent("extension:chat.text_message", "ShowChatTextMessageEvent", nullptr, nullptr);
    Variant text_row(base::variant::kVariantTypeMap);
    text_row.Set("view_type", "extension:chat.text_message");
    SetPropValue(kPropViewType, std::move(text_row));
    return;
  }
  if (shown.Size() == 1) {
    Variant row(base::variant::kVariantTypeMap);
    row.Set("view_type", shown[0].GetString("extension_id"));
    row.Set("view_model_type", shown[0].GetInt32("view_model_type"));
    SetPropValue(kPropViewType, std::move(row));
    return;
  }
  TXLOG_ERROR << "<IM> view_type not exist, msg_id=" << msg_id;
}

}  // namespace chat
