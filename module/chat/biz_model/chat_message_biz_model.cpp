#include "chat/biz_model/chat_message_biz_model.h"

#include "base/log/log.h"
#include "base/util/file_util.h"
#include "chat/util/chat_strings.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_file_utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/module/app_module.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"
#include "chat/model/chat_message.h"

namespace chat {

namespace {

constexpr uint32_t kFaceMethodByIndex = 1;
constexpr uint32_t kMessageMethodImageState = 38;
// The built-in icon of the meeting assistant's cards.
constexpr char kAssistantAppId[] = "18260119019";
constexpr char kAssistantIconUrl[] = "qrc:/images/chat/openapp_assistant_icon.png";


Variant MapValue() { return Variant(base::variant::kVariantTypeMap); }

Variant TextItem(std::string const& text) {
  Variant item = MapValue();
  item.Set("item_type", ToInt(ItemType::kText));
  item.Set("item_content", text);
  return item;
}

// A text longer than this is split into links and emoji only as far as any
// view shows it as such: the bubble shows a long text's first thousand
// characters, and the reader and the clipboard take it as plain text. The
// rest stays one text item, so that a message of megabytes, or one packed
// with thousands of links, costs what its head costs.
constexpr size_t kSplitTextLimit = 64 * 1024;

Variant ParseTextContext(std::string const& text) {
  if (text.size() <= kSplitTextLimit) return talvex::ChatUtils::ParseMessageContext(text);
  // Cut after a space, where no link or shortcut can run on, or else at the
  // limit but never inside a character.
  size_t cut = text.find_last_of(" \t\n", kSplitTextLimit - 1);
  if (cut == std::string::npos || cut + 1024 < kSplitTextLimit) {
    cut = kSplitTextLimit;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
  } else {
    ++cut;
  }
  Variant items = talvex::ChatUtils::ParseMessageContext(text.substr(0, cut));
  items.Add(TextItem(text.substr(cut)));
  return items;
}

// One size pair goes in only when both sides are known.
void SetSizePair(Variant& result, char const* width_key, char const* height_key, int width, int height) {
  if (width == 0 || height == 0) return;
  result.Set(width_key, width);
  result.Set(height_key, height);
}

std::string Text(uint32_t id) { return talvex_common::utils::GetLocalizedString(id); }

}  // namespace

void ChatMessageBizModel::Init() {
  TypedBizModel::ChatMessage::ModelImpl::Init();
  auto messages = std::dynamic_pointer_cast<framework::PriorityModel>(
      framework::module::GetAppModuleModel(kHostChatMessageModel));
  if (!messages) return;
  framework::ViewModel::RecordPrioritySubscribe(messages, this);
  messages->SubscribePriority(kConvertEvent, kConvertPriority, framework::SubscriberId(this),
                              std::make_shared<framework::PriorityEventHandler>(
                                  [this](Variant const* record, bool& stop) { OnEventConvertToUIMsg(record, stop); }));
}

void ChatMessageBizModel::UnInit() {
  auto messages = std::dynamic_pointer_cast<framework::PriorityModel>(
      framework::module::GetAppModuleModel(kHostChatMessageModel));
  if (messages) messages->UnsubscribePriority(framework::SubscriberId(this));
  TypedBizModel::ChatMessage::ModelImpl::UnInit();
}

void ChatMessageBizModel::OnEventConvertToUIMsg(Variant const* record_in, bool& stop) {
  stop = false;
  if (!record_in || !record_in->IsMap()) {
    TXLOG_ERROR << "<IM> convert to ui msg: record is not a map";
    return;
  }
  // The client hands its record to be changed in place.
  Variant& record = const_cast<Variant&>(*record_in);
  Variant const& content = record.Get("msg_content");
  Variant::Array const& elements = content.AsArray();
  Variant const ext = record.Get("ext_content");
  const std::string compatible_tip = record.GetString("compatible_tip");
  const ChatType chat_type = MessageRecord(record).chat_type();
  Variant result;

  switch (chat_type) {
    case ChatType::kText:
      if (!elements.empty() && elements.front().IsMap()) {
        Variant items = ParseTextContext(elements.front().GetString("text_elem_content"));
        result = talvex::ChatUtils::UpdateToFaceMesssageIfSingleEmojiItem(record, items, true);
      }
      break;
    case ChatType::kFace: {
      if (elements.empty()) break;
      Variant index(elements.front().GetInt32("face_elem_index", -1));
      Variant face = MapValue();
      auto faces = framework::module::GetAppModuleModel(kHostFaceModel);
      if (!faces || !faces->Invoke(kFaceMethodByIndex, &index, &face) || !face.IsMap()) {
        TXLOG_INFO << "face not load: " << index.AsInt32();
        result = Variant(base::variant::kVariantTypeArray);
        result.Add(TextItem(elements.front().GetString("face_elem_buf")));
        record.Set(chat_key::kChatType, ToInt(ChatType::kText));
        break;
      }
      result = MapValue();
      result.Set("item_type", ToInt(ItemType::kEmoji));
      result.Set("item_emoji_path", face.Get("path"));
      result.Set("item_emoji_text", face.Get("face_type"));
      result.Set("item_emoji_index", face.Get("index"));
      break;
    }
    case ChatType::kImage:
      if (!elements.empty()) {
        result = MapValue();
        ParseImageMessageContent(elements.front(), ext, result, record.GetString("meeting_id"),
                                 record.GetUint64("local_msg_id", 0));
      }
      break;
    case ChatType::kControl:
      TXLOG_ERROR << "<IM> chat control msg no need to display on ui";
      break;
    case ChatType::kNotice:
      ParseNoticeMessageContent(ext, result);
      break;
    case ChatType::kOpenApp:
      result = MapValue();
      ParseOpenAppMessage(ext, result);
      break;
    case ChatType::kFile:
      ParseFileMessageContent(ext, result);
      break;
    case ChatType::kPlainText:
      if (!elements.empty() && elements.front().IsMap()) {
        result = MapValue();
        result.Set("item_content", elements.front().GetString("text_elem_content"));
      }
      break;
    case ChatType::kMixed: {
      Variant items = talvex::ChatUtils::ParseEmojiTextMixedMessage(content, compatible_tip);
      result = talvex::ChatUtils::UpdateToFaceMesssageIfSingleEmojiItem(record, items, true);
      break;
    }
    default:
      stop = true;
      return;
  }
  if (!result.IsNull()) record.Set("ui_msg_content", std::move(result));
}

void ChatMessageBizModel::ParseImageMessageContent(Variant const& element, Variant const& ext, Variant& result,
                                                   std::string const& meeting_id, uint64_t local_msg_id) {
  const std::string thumb_url = element.GetString("image_elem_thumb_url");
  const std::string large_url = element.GetString("image_elem_large_url");
  const std::string orig_url = element.GetString("image_elem_orig_url");
  const std::string thumb_id = element.GetString("image_elem_thumb_id");
  const std::string large_id = element.GetString("image_elem_large_id");
  const std::string orig_id = element.GetString("image_elem_orig_id");
  const std::string orig_path = element.GetString("image_elem_orig_path");

  result.Set("item_type", ToInt(ItemType::kImage));
  result.Set("thumb_url", thumb_url);
  result.Set("thumb_id", thumb_id);
  result.Set("orig_url", orig_url);
  result.Set("orig_id", orig_id);
  result.Set("large_url", large_url);
  result.Set("large_id", large_id);
  SetSizePair(result, "thumb_width", "thumb_height", element.GetInt32("image_elem_thumb_pic_width"),
              element.GetInt32("image_elem_thumb_pic_height"));
  SetSizePair(result, "orig_width", "orig_height", element.GetInt32("image_elem_orig_pic_width"),
              element.GetInt32("image_elem_orig_pic_height"));
  SetSizePair(result, "large_width", "large_height", element.GetInt32("image_elem_large_pic_width"),
              element.GetInt32("image_elem_large_pic_height"));

  Variant states;
  if (auto messages = framework::module::GetAppModuleModel(kHostChatMessageModel)) {
    Variant params = MapValue();
    params.Set("local_msg_id", std::to_string(local_msg_id));
    params.Set("meeting_id", meeting_id);
    messages->Invoke(kMessageMethodImageState, &params, &states);
  }

  if (!orig_path.empty() && util::file::IsFileExist(orig_path) && util::file::IsFileValid(orig_path)) {
    result.Set("send_orig_path", orig_path);
  }

  struct Size {
    char const* name;
    std::string const& url;
    std::string const& id;
    bool (*exists)(std::string const&, std::string const&);
    std::string (*path)(std::string const&, std::string const&);
  };
  const Size sizes[] = {
      {"thumb", thumb_url, thumb_id, &talvex::ChatUtils::CheckThumbPicFileExist,
       &talvex::ChatUtils::GetThumbPicFileName},
      {"large", large_url, large_id, &talvex::ChatUtils::CheckLargePicFileExist,
       &talvex::ChatUtils::GetLargePicFileName},
      {"orig", orig_url, orig_id, &talvex::ChatUtils::CheckOriginalPicFileExist,
       &talvex::ChatUtils::GetOriginalPicFileName},
  };
  for (auto const& size : sizes) {
    const std::string status_key = std::string(size.name) + "_download_status";
    if (!size.url.empty() && !size.id.empty() && size.exists(size.id, meeting_id)) {
      result.Set(std::string(size.name) + "_path", size.path(size.id, meeting_id));
      result.Set(status_key, 2);
    } else {
      result.Set(status_key, states.GetInt32(status_key, 0));
    }
  }

  if (ext.IsMap()) {
    result.Set("progress", ext.Get("progress"));
    if (ext.Has("download_result")) {
      result.Set("download_result", ext.Get("download_result"));
      result.Set("download_type", ext.Get("download_type"));
    }
  }
}

void ChatMessageBizModel::ParseNoticeMessageContent(Variant const& ext, Variant& result) {
  if (!ext.Has("notice_version") || !ext.Has("notice_content")) return;
  const int type = ext.GetInt32("notice_type", 0);
  if (type == 0) {
    result = Variant(base::variant::kVariantTypeArray);
    result.Add(TextItem(ext.GetString("notice_content")));
    return;
  }
  const std::string json = ext.GetString("notice_content");
  Variant entries;
  if (!entries.FromJsonStr(json.data(), static_cast<std::ptrdiff_t>(json.size())) || !entries.IsArray()) {
    TXLOG_ERROR << "<IM> notice content is not a JSON array";
    return;
  }
  std::string text;
  for (auto const& entry : entries.AsArray()) {
    const int entry_type = entry.GetInt32("type", -1);
    if ((entry_type == 0 || entry_type == 2) && entry.Has("content")) text += entry.GetString("content");
  }
  result = Variant(base::variant::kVariantTypeArray);
  result.Add(TextItem(text));
}

void ChatMessageBizModel::ParseOpenAppMessage(Variant const& ext, Variant& result) {
  result.Set("item_type", ToInt(ItemType::kOpenApp));
  if (ext.Has("description")) {
    result.Set("description", ext.Get("description"));
  } else {
    TXLOG_ERROR << "message no 'description' field";
    result.Set("description", "");
  }
  result.Set("image", ext.Has("image") ? ext.Get("image") : Variant(""));

  Variant app_info = MapValue();
  const std::string app_json = ext.GetString("app_info");
  if (!app_json.empty() && !app_info.FromJsonStr(app_json.data(), static_cast<std::ptrdiff_t>(app_json.size()))) {
    TXLOG_ERROR << "<IM> open app card: app_info is not JSON";
  }
  result.Set("app_info", app_info);
  result.Set("icon_name", app_info.GetString("name"));
  const std::string open_app_id =
      app_info.Has("open_app_id") ? app_info.GetString("open_app_id") : ext.GetString("open_app_id");
  result.Set("icon_url", open_app_id == kAssistantAppId ? std::string(kAssistantIconUrl) : app_info.GetString("icon"));

  for (char const* key : {"title", "confirm_btn_text"}) {
    if (ext.Has(key)) {
      result.Set(key, ext.Get(key));
    } else {
      TXLOG_ERROR << "message no 'title' field";
      result.Set(key, "");
    }
  }
  if (ext.Has("notify_desc")) {
    result.Set("notify_desc", ext.Get("notify_desc"));
  } else {
    TXLOG_ERROR << "message no 'notify_desc' field";
    result.Set("notify_desc", "");
  }
  result.Set("is_custom_title", ext.GetBoolean("is_custom_title"));
  if (ext.Has("card_layout_type")) result.Set("card_layout_type", ext.GetInteger("card_layout_type"));
}

std::string ChatMessageBizModel::FileStatusText(Variant const& info) {
  const int status = info.GetInt32("status", -1);
  if (info.GetInt32("security") != 0 && (status == kFileNotDownloaded || status == kFileDownloaded)) {
    return Text(kTextFileSecurityBlocked);
  }
  const int64_t size = info.GetInteger("size");
  // The text starts with the size and a blank; a transfer shows how much of
  // it is done in place of the size.
  const std::string total = talvex::ChatFileUtils::DisplayFileSize(size);
  switch (status) {
    case kFileUploading:
    case kFileDownloading: {
      const auto done = static_cast<int64_t>(static_cast<double>(size) * info.GetDouble("progress"));
      return talvex::ChatFileUtils::DisplayFileSize(done) + "/" + total + " ";
    }
    case kFileUploadCanceled:
      return total + " " + Text(kTextFileUploadCanceled);
    case kFileUploadFailed: {
      const int code = info.GetInt32("err_code");
      if (code == 21002 || code == 21003 || code == 21006) return total + " " + info.GetString("err_msg");
      return total + " " + Text(kTextFileUploadFailed);
    }
    case kFileDownloadFailed:
      return total + " " + Text(kTextFileDownloadFailed);
    case kFileDownloadCanceled:
      return total + " " + Text(kTextFileDownloadCanceled);
    case kFileUnavailable:
      return total + " " + Text(kTextFileUnavailable);
    default:
      return total + " ";
  }
}

void ChatMessageBizModel::ParseFileMessageContent(Variant const& ext, Variant& result) {
  if (!ext.IsMap() || !ext.Get("file_info").IsMap()) return;
  Variant const& info = ext.Get("file_info");
  const std::string name = info.GetString("name");
  result = MapValue();
  result.Set("item_type", ToInt(ItemType::kFile));
  result.Set("path", info.GetString("path"));
  result.Set("title", name);
  result.Set("name", name);
  result.Set("sub_title", FileStatusText(info));
  result.Set("icon_type", talvex::ChatFileUtils::FileIconType(name));
  result.Set("id", info.GetString("id"));
  result.Set("size", info.GetInteger("size"));
  result.Set("status", info.GetInt32("status"));
  result.Set("err_code", info.GetInt32("err_code", 0));
  result.Set("err_msg", info.GetString("err_msg"));
  result.Set("security", info.GetInt32("security", 0));
  result.Set("progress", info.GetDouble("progress"));
  result.Set("report_conv_type", info.Get("report_conv_type"));
  result.Set("report_file_type", info.Get("report_file_type"));
  result.Set("path_prefix_length", info.GetInt32("path_prefix_length", 0));
}

}  // namespace chat
