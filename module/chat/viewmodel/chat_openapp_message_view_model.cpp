#include "chat/viewmodel/chat_openapp_message_view_model.h"

#include <cstdio>
#include <cstdlib>
#include <map>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "chat/util/chat_strings.h"
#include "framework/chat/chat_schema_keys.h"
#include "framework/chat/chat_utils.h"
#include "framework/config/configure_model.h"
#include "framework/config/configure_service.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/sidebar_utils.h"

namespace chat {

namespace {

std::string Price(framework::UIViewModel const* vm, Variant const& value) {
  char text[32];
  std::snprintf(text, sizeof(text), "%.2f", value.IsString() ? std::atof(value.AsCStr()) : value.AsDouble());
  return vm->FormatString(kTextGoodsPrice).Arg("price", text).Str();
}

// The goods card's look comes from the meeting's configuration when it has
// one: the layouts found join the card's data under their names.
void AddDynamicLayouts(Variant const& goods, Variant& ext) {
  Variant ask(base::variant::kVariantTypeMap);
  ask.Set("dyna_layout_key", goods.GetString("dyna_layout_key"));
  Variant keys(base::variant::kVariantTypeArray);
  keys.Add(ChatOpenappMessageViewModel::kGoodsCardLayout);
  keys.Add(ChatOpenappMessageViewModel::kGoodsCardLayoutQt);
  ask.Set("keys", std::move(keys));
  ask.Set("use_default_layout", goods.GetBoolean("use_default_layout", true));
  Variant layouts;
  framework::Model* config = talvexsdk::utils::service::GetConfigureModel();
  if (!config || !config->Invoke(framework::ConfigureModel::kMethodGetDynamicLayout, &ask, &layouts)) return;
  for (char const* key : {ChatOpenappMessageViewModel::kGoodsCardLayout, ChatOpenappMessageViewModel::kGoodsCardLayoutQt}) {
    if (layouts.Has(key)) ext.Set(key, layouts.Get(key));
  }
}

}  // namespace

bool ChatOpenappMessageViewModel::FillInfo(Variant const& record, Variant const* params, Variant& info) {
  Variant const& card = ContentOf(record);
  info.Set(ChatOpenappMessageInfoFields_kIntegerInfoLayoutType, LayoutTypeOf(params, 1));
  CopyFields(info, ChatOpenappMessageInfoFields_kStringInfoDescription, card, "description");
  CopyFields(info, ChatOpenappMessageInfoFields_kStringInfoImage, card, "image");
  CopyFields(info, ChatOpenappMessageInfoFields_kStringInfoIconName, card, "icon_name");
  CopyFields(info, ChatOpenappMessageInfoFields_kStringInfoIconUrl, card, "icon_url");
  CopyFields(info, ChatOpenappMessageInfoFields_kStringInfoTitle, card, "title");
  CopyFields(info, ChatOpenappMessageInfoFields_kStringInfoConfirmBtn, card, "confirm_btn_text");
  CopyFields(info, ChatOpenappMessageInfoFields_kStringInfoNotifyDesc, card, "notify_desc");
  CopyFields(info, ChatOpenappMessageInfoFields_kBooleanInfoCustomTitle, card, "is_custom_title");
  CopyFields(info, ChatOpenappMessageInfoFields_kIntegerInfoContentLayoutType, card, "card_layout_type");

  Variant const& app_info = card.Get("app_info");
  if (app_info.Has("ext_data")) {
    Variant const& goods = app_info.Get("ext_data");
    Variant ext(base::variant::kVariantTypeMap);
    CopyFields(ext, ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoGoodsName, goods, "goods_name");
    CopyFields(ext, ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoGoodsImage, goods, "goods_image");
    if (goods.Has("original_price")) {
      ext.Set(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoOriginalPrice, Price(this, goods.Get("original_price")));
    }
    if (goods.Has("current_price")) {
      ext.Set(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoCurrentPrice, Price(this, goods.Get("current_price")));
    }
    ext.Set(ChatOpenappMessageGoodsInfoFields_kBooleanGoodsInfoHasDiscount, goods.GetInt32("discount_type") != 0);
    AddDynamicLayouts(goods, ext);
    ext.Set("app_info_name", app_info.GetString("name"));
    ext.Set("app_info_icon", app_info.GetString("icon"));
    ext.Set("msg_content_title", card.GetString("title"));
    info.Set(ChatOpenappMessageInfoFields_kPtrInfoExtData, std::move(ext));
  }
  return true;
}

ChatOpenappMessageViewModel::ChatOpenappMessageViewModel() {
  OnAction(kActionClickOpenApp, [this](Variant const* params) { HandleClickOpenAppMsg(params); });
}

bool ChatOpenappMessageViewModel::HandleClickOpenAppMsg(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "handle click open app msg failed! params error!";
    return false;
  }
  const std::string msg_id = params->Has("msg_id") ? params->GetString("msg_id") : msg_id_;
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(msg_id);
  if (!record || (!record->Has("msg_content") && !record->Has("ui_msg_content"))) {
    TXLOG_ERROR << "<IM> msg content not found";
    return false;
  }
  Variant const& app_info = ContentOf(*record).Get("app_info");
  if (!app_info.Has("open_app_id")) {
    TXLOG_ERROR << "handle click open app msg failed! no open_app_id in params";
    return false;
  }
  const std::string open_app_id = app_info.GetString("open_app_id");
  std::map<std::string, std::string> properties{{"open_app_id", open_app_id},
                                                {"corp_id", app_info.GetString("corp_id")},
                                                {"show_reason", app_info.GetString("show_reason")},
                                                {"bind_type", app_info.GetString("bind_type")}};
  Variant open(base::variant::kVariantTypeMap);
  if (template_type_ == kLayoutChatRecord) {
    talvex_common::utils::analytics::LogEventWithProperties("openappshare_chathistory_null_imcard_null_null_click",
                                                            properties);
    open.Set("scene", "historyMeetingDetail");
    talvex_common::utils::sidebar::OpenAppWithAppInfo(app_info, open);
    Variant extra(base::variant::kVariantTypeMap);
    extra.Set("sub_meeting_id", params->GetString("sub_meeting_id"));
    extra.Set("period_id", params->GetString("period_id"));
    talvex_common::utils::sidebar::ReportWebAppOpened(open_app_id, 5, extra);
    return true;
  }
  talvex_common::utils::analytics::LogEventWithProperties("openappshare_null_null_imcard_null_null_click", properties);
  open.Set("inline", talvex_common::utils::QueryConfigureService("meeting-ability", "sign_in_app_inline_switch",
                                                                 Variant(false))
                         .AsBoolean());
  open.Set("full_screen", app_info.GetBoolean("is_full_screen_show"));
  open.Set("in_waiting_room", talvex::MeetingContext::Current().in_waiting_room);
  talvex_common::utils::sidebar::OpenAppWithAppInfo(app_info, open);
  talvex_common::utils::sidebar::ReportWebAppOpenedWithCurrentMeetingId(open_app_id, 2);
  return true;
}

}  // namespace chat
