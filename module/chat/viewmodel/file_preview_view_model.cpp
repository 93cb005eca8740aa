#include "chat/viewmodel/file_preview_view_model.h"

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "base/util/file_util.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_file_utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/module/app_module.h"
#include "framework/resource/resource.h"

namespace chat {

namespace {
constexpr char kTitle[] = "FilePreviewUIDataFields_kStringFileTitle";
constexpr char kSize[] = "FilePreviewUIDataFields_kStringFileSize";
constexpr char kIconType[] = "FilePreviewUIDataFields_kIntegerFileIconType";
constexpr char kProcessVisible[] = "FilePreviewUIDataFields_kBooleanFileProcessVisible";
constexpr char kProcessValue[] = "FilePreviewUIDataFields_kDoubleFileProcessValue";
constexpr char kProcessText[] = "FilePreviewUIDataFields_kStringFileProcessText";
constexpr char kMainVisible[] = "FilePreviewUIDataFields_kBooleanMainButtonVisible";
constexpr char kMainText[] = "FilePreviewUIDataFields_kStringMainButtonText";
constexpr char kCancelVisible[] = "FilePreviewUIDataFields_kBooleanCancelButtonVisible";
constexpr char kCancelText[] = "FilePreviewUIDataFields_kStringCancelButtonText";
constexpr char kStateVisible[] = "FilePreviewUIDataFields_kBooleanStateTextVisible";
constexpr char kStateText[] = "FilePreviewUIDataFields_kStringStateText";
constexpr char kFilePath[] = "FilePreviewUIDataFields_kStringFilePath";

constexpr int kAuthorized = 2;
constexpr int kToastMs = 2000;
constexpr int kTemplateChatRecord = 3;

std::string Text(char const* name) { return talvex_common::utils::GetLocalizedString(framework::NameId(name)); }

}  // namespace

FilePreviewViewModel::FilePreviewViewModel() {
  OnAction(kActionMainButton, [this](Variant const*) { HandleMainButton(); });
  OnAction(kActionCancel, [this](Variant const*) { HandleStopDownload(); });
  OnAction(kActionOpenFailed, [this](Variant const*) { HandleOpenFileFailed(); });
}

Variant FilePreviewViewModel::ParamsOfMessage(std::string const& msg_id, int template_type) {
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(msg_id);
  if (!record || !record->IsMap()) return Variant();
  Variant file = record->Get("ui_msg_content");
  if (!file.IsMap()) file = record->Get("ext_content").Get("file_info");
  if (!file.IsMap()) return Variant();
  const int status = file.GetInt32("status", -1);
  file.Set("progress_value", file.GetDouble("progress"));
  file.Set("progress_visible", status == kFileDownloadWaiting || status == kFileDownloading);
  if (!file.Has("id")) file.Set("id", record->Get("ext_content").Get("file_info").GetString("id"));
  Variant params = *record;
  params.Set("file_info", std::move(file));
  params.Set("template_type", template_type);
  return params;
}

void FilePreviewViewModel::OnViewAttached(Variant const* params) {
  framework::StatefulViewModel::OnViewAttached(params);
  SubscribeHostModel(this, kHostChatFileModel, {kFileEventMsgChanged},
                     [this](Variant const* p) { OnEventFileMsgUIDataChanged(p); });
  SubscribeHostModel(this, kHostChatFileModel, {kFileEventRecordMsgChanged},
                     [this](Variant const* p) { OnEventChattingRecordMsgUIDataChanged(p); });
  SubscribeHostModel(this, kHostChatFileModel, {kFileEventRevoked},
                     [this](Variant const* p) { OnEventChattingFileRevoked(p); });
  InitFileParam(params);
  UpdateUI();
}

void FilePreviewViewModel::HandleMainButton() {
  if (file_state_ == kFileNotDownloaded || file_state_ == kFileDownloadWaiting || file_state_ == kFileDownloadFailed ||
      file_state_ == kFileDownloadCanceled) {
    HandleDownloadFile();
    return;
  }
  // Anything else is a file to open.
  if (path_.empty() || !util::file::IsFileExist(path_)) {
    HandleOpenFileFailed();
  } else if (IsSupportToOpen()) {
    NavigateToOpenFile(path_);
  } else {
    ShowToast(0, Text("chat.file_preview.not_supported"), kToastMs, 0, "", "");
  }
}

void FilePreviewViewModel::InitFileParam(Variant const* params) {
  TXLOG_INFO << "init param:" << (params ? params->ToJson() : std::string("null"));
  if (!params || !params->IsMap()) return;
  msg_ = *params;
  // The UI form when the page has it, else the client's.
  Variant const& info = params->Get("file_info").IsMap() ? params->Get("file_info")
                                                          : params->Get("ext_content").Get("file_info");
  file_name_ = info.GetString("title", info.GetString("name"));
  file_size_ = info.GetInteger("size");
  file_id_ = info.GetString("id");
  file_state_ = info.GetInt32("status", -1);
  progress_ = info.GetDouble("progress_value", info.GetDouble("progress"));
  path_ = info.GetString("path");
  ui_data_ = Variant(base::variant::kVariantTypeMap);
  ui_data_.Set(kTitle, file_name_);
  ui_data_.Set(kSize, talvex::ChatFileUtils::DisplayFileSize(file_size_));
  ui_data_.Set(kIconType, info.GetInt32("icon_type", talvex::ChatFileUtils::FileIconType(file_name_)));
  ui_data_.Set(kProcessVisible, info.GetBoolean("progress_visible"));
  ui_data_.Set(kProcessValue, progress_);
  ui_data_.Set(kProcessText, "");
  SetMainButton(true, Text("chat.file_preview.download"));
  ui_data_.Set(kCancelVisible, false);
  ui_data_.Set(kCancelText, Text("chat.file_preview.cancel"));
  ui_data_.Set(kStateVisible, false);
  ui_data_.Set(kStateText, Text("chat.file_preview.unavailable"));
  ui_data_.Set(kFilePath, path_);
  if (info.GetInt32("security") != 0) {
    // The data stay: the page says why nothing can be done with them.
    ShowToast(0, Text("chat.file_preview.blocked"), kToastMs, 0, "", "");
  }
}

void FilePreviewViewModel::SetMainButton(bool visible, std::string const& text) {
  ui_data_.Set(kMainVisible, visible);
  if (visible) ui_data_.Set(kMainText, text);
}

void FilePreviewViewModel::UpdateUI() {
  TXLOG_INFO << "file_state:" << file_state_ << ", file_size:" << file_size_ << ", progress:" << progress_;
  auto process_text = [this] {
    const auto done = static_cast<int64_t>(static_cast<double>(file_size_) * ProgressFraction(progress_));
    return talvex_common::utils::FormatString(framework::NameId("chat.file_preview.process"))
        .Arg("size", talvex::ChatFileUtils::DisplayFileSize(done))
        .Arg("total_size", talvex::ChatFileUtils::DisplayFileSize(file_size_))
        .Str();
  };
  auto show = [this](bool main, bool progress, bool cancel, bool state) {
    ui_data_.Set(kMainVisible, main);
    ui_data_.Set(kProcessVisible, progress);
    ui_data_.Set(kCancelVisible, cancel);
    ui_data_.Set(kStateVisible, state);
  };
  switch (file_state_) {
    case kFileNotDownloaded:
    case kFileDownloadCanceled:
      show(true, false, false, false);
      ui_data_.Set(kMainText, Text("chat.file_preview.download"));
      break;
    case kFileDownloadWaiting:
    case kFileDownloading:
      show(false, true, true, false);
      ui_data_.Set(kProcessValue, progress_);
      ui_data_.Set(kProcessText, process_text());
      break;
    case kFileDownloadFailed:
      show(true, false, false, false);
      ui_data_.Set(kMainText, Text("chat.file_preview.retry"));
      break;
    case kFileDownloaded:
      show(false, false, false, false);
      ui_data_.Set(kProcessText, process_text());
      break;
    case kFileExpired:
      show(true, false, false, false);
      ui_data_.Set(kMainText, Text("chat.file_preview.open_failed"));
      break;
    case kFileUnavailable:
      show(false, false, false, true);
      break;
    default:
      break;
  }
  Publish();
}

void FilePreviewViewModel::Publish() {
  ui_data_.Set(kFilePath, path_);
  SetPropValue(kPropUIData, ui_data_);
}

void FilePreviewViewModel::TakeFileInfo(Variant const& file_info) {
  file_state_ = file_info.GetInt32("status", file_state_);
  progress_ = file_info.GetDouble("progress", file_info.GetDouble("progress_value", progress_));
  if (file_info.Has("path")) path_ = file_info.GetString("path");
  if (file_info.Has("size")) file_size_ = file_info.GetInteger("size", file_size_);
  for (Variant* kept : {&msg_["file_info"], &msg_["ext_content"]["file_info"]}) {
    kept->Set("status", file_state_);
    kept->Set("progress", progress_);
    kept->Set("path", path_);
  }
  msg_["file_info"].Set("progress_value", progress_);
}

void FilePreviewViewModel::OnEventFileMsgUIDataChanged(Variant const* payload) {
  if (!payload || !payload->IsMap() || !payload->Get("file_message").IsMap()) {
    TXLOG_WARN << "no file msg";
    return;
  }
  Variant const& file_info = payload->Get("file_info");
  if (!file_info.IsMap()) {
    TXLOG_WARN << "no file info";
    return;
  }
  if (file_info.GetString("id") != file_id_) {
    TXLOG_INFO << "not this file, just ignore";
    return;
  }
  TakeFileInfo(file_info);
  if (file_state_ == kFileDownloadFailed) {
    msg_["file_info"].Set("err_code", file_info.GetInt32("err_code"));
    msg_["file_info"].Set("err_msg", file_info.GetString("err_msg"));
  }
  UpdateUI();
  if (file_state_ == kFileDownloadFailed) HandleDownloadFail();
}

void FilePreviewViewModel::HandleDownloadFail() {
  std::string text = msg_.Get("file_info").GetString("err_msg");
  if (text.empty()) text = Text("chat.file_preview.download_failed");
  ShowToast(0, text, kToastMs, 0, "", "");
}

void FilePreviewViewModel::OnEventChattingRecordMsgUIDataChanged(Variant const* payload) {
  if (!payload || !payload->IsMap() || !payload->Has("msg_list")) {
    TXLOG_WARN << "chatting record msg ui data has no msg_list";
    return;
  }
  Variant const& list = payload->Get("msg_list");
  if (!list.IsArray() || list.Empty()) {
    TXLOG_WARN << "chatting record msg_list is empty";
    return;
  }
  if (!list[0].Has("message_elem_array")) {
    TXLOG_WARN << "chatting record msg_list has no message_elem_array";
    return;
  }
  Variant const& elements = list[0].Get("message_elem_array");
  if (!elements.IsArray() || elements.Empty()) {
    TXLOG_WARN << "chatting record message_elem_array is empty";
    return;
  }
  Variant ext = elements[0].Get("custom_elem_ext");
  if (ext.IsString()) {
    Variant parsed;
    if (parsed.FromJsonStr(ext.AsStr().c_str())) ext = parsed;
  }
  if (!ext.IsMap()) {
    TXLOG_WARN << "chatting record message_elem_array_item has no custom_elem_ext";
    return;
  }
  Variant const& file_info = ext.Get("file_info").IsMap() ? ext.Get("file_info") : ext;
  if (file_info.GetString("id") != file_id_) {
    TXLOG_INFO << "not this file, just ignore";
    return;
  }
  TakeFileInfo(file_info);
  TXLOG_INFO << "chatting record begin to update ui, progress_" << progress_ << "status " << file_state_;
  UpdateUI();
  if (file_state_ == kFileDownloadFailed) HandleChattingRecordDownloadFail(file_info);
}

void FilePreviewViewModel::HandleChattingRecordDownloadFail(Variant const& file_info) {
  const std::string err = file_info.GetString("err_msg");
  ShowToast(0, err.empty() ? Text("chat.file_preview.download_failed") : err, kToastMs, 0, "", "");
}

void FilePreviewViewModel::OnEventChattingFileRevoked(Variant const* payload) {
  const std::string id = payload && payload->IsMap() ? payload->GetString("file_id")
                         : payload && payload->IsString() ? payload->AsStr()
                                                          : std::string();
  TXLOG_INFO << "revoke file id:" << id << ", this file id:" << file_id_;
  if (id.empty() || id != file_id_) {
    TXLOG_INFO << "not this file";
    return;
  }
  // The page stays, empty: the file is no longer there to show.
  for (char const* key : {kTitle, kSize, kProcessText, kMainText, kCancelText, kStateText, kFilePath}) {
    ui_data_.Set(key, "");
  }
  for (char const* key : {kProcessVisible, kMainVisible, kCancelVisible, kStateVisible}) ui_data_.Set(key, false);
  ui_data_.Set(kProcessValue, 0.0);
  SetPropValue(kPropUIData, ui_data_);
}

void FilePreviewViewModel::HandleDownloadFile() {
  auto files = framework::module::GetAppModuleModel(kHostChatFileModel);
  if (!files) {
    TXLOG_ERROR << "chat file model is nullptr";
    return;
  }
  auto auth = framework::module::GetAppModuleModel(kHostNetworkModel);
  if (!auth) {
    TXLOG_ERROR << "auth model is nullptr";
    return;
  }
  Variant answer;
  auth->Invoke(10, nullptr, &answer);
  const int auth_state = answer.IsMap() ? answer.GetInt32("auth_state", -1) : answer.IsNumber() ? answer.AsInt32() : -1;
  TXLOG_INFO << "auth state: " << auth_state;
  if (auth_state != kAuthorized) {
    ShowToast(0, Text("chat.file_preview.not_authorized"), kToastMs, 0, "", "");
    return;
  }
  files->Invoke(kFileMethodStartDownload, &msg_, nullptr);
}

void FilePreviewViewModel::HandleStopDownload() {
  auto files = framework::module::GetAppModuleModel(kHostChatFileModel);
  if (!files) {
    TXLOG_ERROR << "chat file model is nullptr";
    return;
  }
  files->Invoke(kFileMethodStopDownload, &msg_, nullptr);
}

void FilePreviewViewModel::HandleOpenFileFailed() {
  TXLOG_INFO << "open file failed, path:" << path_;
  SetMainButton(true, Text("chat.file_preview.open_failed"));
  ui_data_.Set(kProcessVisible, false);
  ui_data_.Set(kCancelVisible, false);
  ui_data_.Set(kStateVisible, false);
  Publish();
  talvex_common::utils::analytics::LogEventWithProperty("open_file_failed", "file_ext",
                                                        talvex::ChatFileUtils::GetFileLowerExtName(file_name_));
}

bool FilePreviewViewModel::IsSupportToOpen() {
  Variant ask = Variant::Map{{"file_name", file_name_}};
  const bool support = AskHostModel(kHostChatFileModel, kFileMethodIsSupport, &ask).GetBoolean("is_support");
  TXLOG_INFO << "is support:" << support;
  return support;
}

std::string FilePreviewViewModel::UpdateChatRecordRequestParam() const {
  Variant const& sender = msg_.Get("msg_sender");
  Variant const& file = msg_.Get("file_info");
  Variant desc = Variant::Map{{"chat_type", msg_.GetInt32("chat_type", 8)},
                              {"group_id", msg_.GetString("group_id")},
                              {"receiver_type", msg_.GetInt32("receiver_type")},
                              {"app_id", sender.GetString("app_id")},
                              {"instance_id", sender.GetInt32("instance_id")},
                              {"user_type", sender.GetInt32("user_type")},
                              {"role_type", sender.GetInt32("role_type")},
                              {"av_uid", sender.GetString("av_uid")},
                              {"app_uid", sender.GetString("app_uid")}};
  Variant info = Variant::Map{{"item_type", 6},
                              {"path", path_},
                              {"name", file_name_},
                              {"id", file_id_},
                              {"size", file_size_},
                              {"status", file_state_},
                              {"progress", progress_},
                              {"err_code", file.GetInt32("err_code")},
                              {"err_msg", file.GetString("err_msg")},
                              {"security", file.GetInt32("security")}};
  Variant element = Variant::Map{{"elem_type", msg_.GetInt32("elem_type", 3)},
                                 {"sub_type", msg_.GetInt32("sub_type")},
                                 {"custom_elem_data", sender.ToJson()},
                                 {"custom_elem_desc", desc.ToJson()},
                                 {"custom_elem_ext", Variant(Variant::Map{{"file_info", info}}).ToJson()}};
  return element.ToJson();
}

}  // namespace chat
