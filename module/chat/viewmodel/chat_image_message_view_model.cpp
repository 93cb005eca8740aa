#include "chat/viewmodel/chat_image_message_view_model.h"

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "chat/runtime/chat_ids.h"
#include "framework/chat/chat_schema_keys.h"
#include "framework/chat/chat_utils.h"
#include "framework/module/app_module.h"
#include "chat/model/chat_message.h"

namespace chat {

namespace {
constexpr uint32_t kMessageMethodDownloadImage = 32;
constexpr char kMessageTypeImage[] = "photo";
constexpr char kDefaultSituation[] = "2";

struct FieldCopy {
  char const* target;
  char const* source;
};
constexpr FieldCopy kImageFields[] = {
    {ChatImageMessageInfoFields_kStringInfoThumbUrl, "thumb_url"},
    {ChatImageMessageInfoFields_kStringInfoOrigUrl, "orig_url"},
    {ChatImageMessageInfoFields_kStringInfoLargeUrl, "large_url"},
    {ChatImageMessageInfoFields_kIntegerInfoThumbWidth, "thumb_width"},
    {ChatImageMessageInfoFields_kIntegerInfoThumbHeight, "thumb_height"},
    {ChatImageMessageInfoFields_kIntegerInfoOrigWidth, "orig_width"},
    {ChatImageMessageInfoFields_kIntegerInfoOrigHeight, "orig_height"},
    {ChatImageMessageInfoFields_kIntegerInfoLargeWidth, "large_width"},
    {ChatImageMessageInfoFields_kIntegerInfoLargeHeight, "large_height"},
    {ChatImageMessageInfoFields_kStringInfoThumbId, "thumb_id"},
    {ChatImageMessageInfoFields_kStringInfoLargeId, "large_id"},
    {ChatImageMessageInfoFields_kStringInfoOrigId, "orig_id"},
    {ChatImageMessageInfoFields_kStringInfoThumbPath, "thumb_path"},
    {ChatImageMessageInfoFields_kStringInfoLargePath, "large_path"},
    {ChatImageMessageInfoFields_kStringInfoOrigPath, "orig_path"},
    {ChatImageMessageInfoFields_kStringInfoSendOrigPath, "send_orig_path"},
    {ChatImageMessageInfoFields_kIntegerInfoThumbDownloadStatus, "thumb_download_status"},
    {ChatImageMessageInfoFields_kIntegerInfoLargeDownloadStatus, "large_download_status"},
    {ChatImageMessageInfoFields_kIntegerInfoOrigDownloadStatus, "orig_download_status"},
    {ChatImageMessageInfoFields_kDoubleInfoProgress, "progress"},
};

std::string TextOf(Variant const* params, char const* key, char const* def) {
  if (!params || !params->Has(key)) return def;
  Variant const& value = params->Get(key);
  return value.IsString() ? value.AsStr() : value.ToString();
}

void ReportPictureClick(char const* event, Variant const* params) {
  talvex_common::utils::analytics::LogEventWith2Properties(
      event, "situation", TextOf(params, "situation", kDefaultSituation), "message_type",
      TextOf(params, "message_type", kMessageTypeImage));
}
}  // namespace

bool ChatImageMessageViewModel::FillInfo(Variant const& record, Variant const* params, Variant& info) {
  Variant const& content = ContentOf(record);
  info.Set(ChatImageMessageInfoFields_kIntegerInfoLayoutType, LayoutTypeOf(params, 0));
  for (auto const& field : kImageFields) CopyFields(info, field.target, content, field.source);
  return true;
}

ChatImageMessageViewModel::ChatImageMessageViewModel() {
  OnAction(kActionDownloadImage, [this](Variant const* params) { DownloadThumb(params); });
  OnAction(kActionRefreshImage, [this](Variant const* params) {
    talvex_common::utils::analytics::LogEventWithProperty("meetingpage_impanel_null_message_refresh_null_click",
                                                          "message_type", kMessageTypeImage);
    DownloadThumb(params);
  });
  OnAction(kActionPreviewClicked, [](Variant const* params) {
    ReportPictureClick("meetingpage_impanel_null_photomessage_preview_null_click", params);
  });
  OnAction(kActionSaveClicked, [](Variant const* params) {
    ReportPictureClick("meetingpage_impanel_null_photomessage_save_null_click", params);
  });
}

bool ChatImageMessageViewModel::DownloadThumb(Variant const* params) {
  const std::string msg_id =
      params && params->IsMap() ? params->GetString(ChatImageMessageDownloadMsgFields_kStringMsgId) : std::string();
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(msg_id);
  Variant const& content = record ? ContentOf(*record) : framework::GetEmptyVariant();
  return HandleDownloadImageMessage(content.GetString("thumb_url"), content.GetString("thumb_id"), msg_id,
                                    talvex::ChatUtils::download_type_thumb());
}

bool ChatImageMessageViewModel::HandleDownloadImageMessage(std::string const& url, std::string const& uuid,
                                                           std::string const& msg_id,
                                                           std::string const& download_type) {
  if (url.empty() || uuid.empty()) {
    TXLOG_ERROR << "HandleDownloadImageMessage param error. url= " << url << " uuid= " << uuid
                << ", msg_id= " << msg_id;
    return false;
  }
  auto messages = framework::module::GetAppModuleModel(kHostChatMessageModel);
  if (!messages) return false;
  Variant params(base::variant::kVariantTypeMap);
  params.Set("url", url);
  params.Set("uuid", uuid);
  params.Set(chat_key::kMsgId, msg_id);
  params.Set("download_type", download_type.empty() ? talvex::ChatUtils::download_type_original() : download_type);
  return messages->Invoke(kMessageMethodDownloadImage, &params, nullptr);
}

}  // namespace chat
