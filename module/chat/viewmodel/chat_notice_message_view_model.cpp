#include "chat/viewmodel/chat_notice_message_view_model.h"

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/chat_strings.h"
#include "framework/chat/chat_schema_keys.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/navigation/routing.h"
#include "chat/model/chat_message.h"

namespace chat {

bool ChatNoticeMessageViewModel::FillInfo(Variant const& record, Variant const* params, Variant& info) {
  Variant const& content = ContentOf(record);
  info.Set(ChatNoticeMessageInfoFields_kIntegerInfoLayoutType, LayoutTypeOf(params, 1));
  Variant items(base::variant::kVariantTypeArray);
  for (auto const& element : content.AsArray()) {
    const int type = element.GetInt32("item_type", -1);
    if (type != ToInt(ItemType::kText) && type != ToInt(ItemType::kLink)) continue;
    Variant item(base::variant::kVariantTypeMap);
    item.Set(ChatNoticeMessageItemFields_kIntegerItemType, type);
    item.Set(ChatNoticeMessageItemFields_kStringItemContent, element.GetString("item_content"));
    items.Add(std::move(item));
  }
  info.Set(ChatNoticeMessageInfoFields_kPtrInfoArrayItem, std::move(items));
  return true;
}

ChatNoticeMessageViewModel::ChatNoticeMessageViewModel() {
  OnAction(kActionShowMeetingNotice, [this](Variant const*) { HandleShowMeetingNotice(); });
}

void ChatNoticeMessageViewModel::HandleShowMeetingNotice() {
  if (!talvex_common::utils::meetingsettings::IsMeetingNoticeEnable()) {
    ShowToast(0, GetLocalizedString(kTextNoticeDisabled), 2000, 0, "", "");
    return;
  }
  if (!GetPropValue(kPropInfo)) {
    TXLOG_ERROR << "msg info is null";
    return;
  }
  auto navigator = framework::Navigator::Of(context(), framework::PageStack::kSecondary);
  navigator.PopOther(kMeetingNoticePage);
  Variant params(base::variant::kVariantTypeMap);
  params.Set(chat_key::kTemplateType, template_type_);
  params.Set(chat_key::kMsgId, msg_id_);
  navigator.Push(kMeetingNoticePage, params);
  const bool host_or_cohost =
      talvex_common::utils::webinar::SelfIsHost() || talvex_common::utils::webinar::SelfIsCoHost();
  talvex_common::utils::analytics::LogEventWithProperty("inmeeting_im_null_notice_null_null_ark", "operation_role",
                                                        host_or_cohost ? "1" : "0");
}

}  // namespace chat
