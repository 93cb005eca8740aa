#include "chat/util/utils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

#include "base/log/log.h"
#include "base/util/file_util.h"
#include "base/util/time_util.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/chat_strings.h"
#include "framework/chat/chat_file_utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/config/configure_service.h"
#include "framework/meeting/member_utils.h"
#include "framework/module/app_module.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/ui_view_model.h"
#include "chat/model/chat_message.h"

namespace chat {

namespace {
constexpr int64_t kDefaultSendFileMaxSize = 524288000;

bool UserIsInList(uint32_t method, std::string const& user_id) {
  auto members = framework::module::GetAppModuleModel(kHostMemberModel);
  if (!members) return false;
  Variant empty;
  Variant list;
  if (!members->Invoke(method, &empty, &list)) return false;
  return talvex_common::utils::member::EnumInRoomUsers(
      list, [&](Variant const& member) { return member.GetString("user_id") == user_id; });
}
}  // namespace

std::string MakeUniqueChatFileDirPath(std::string const& meeting_id) {
  std::string dir = talvex::ChatFileUtils::GetChatFileDateDirPath();
  if (meeting_id.empty()) {
    TXLOG_ERROR << "Fail to get current meeting id";
  } else {
    // One folder under the day's, whatever the id holds.
    dir = util::file::MakeFilePath(dir, util::file::SafePathComponent(meeting_id));
  }
  dir = util::file::MakeFilePath(dir, std::to_string(util::time::GetTimestampMsec()));
  util::file::EnsureDirExist(dir);
  return dir;
}

bool CheckFileValidity(std::string const& path, std::string& error_text) {
  if (util::file::IsDirectory(path)) {
    error_text = talvex_common::utils::GetLocalizedString(kTextFileIsFolder);
    return false;
  }
  int64_t length = 0;
  util::file::GetFileLength(path, length);
  const int64_t max_size =
      talvex_common::utils::QueryConfigureService("chat", "send_file_max_size", Variant(kDefaultSendFileMaxSize))
          .AsInteger();
  const std::string max_size_desc =
      talvex_common::utils::QueryConfigureService(
          "chat", "send_file_max_size_desc",
          Variant(talvex_common::utils::GetLocalizedString(kTextFileMaxSizeDesc)))
          .AsStr();
  TXLOG_INFO << "maxSizeValue: " << max_size << ", maxSizeDescValue: " << max_size_desc;
  if (length <= max_size) return true;
  error_text = talvex_common::utils::FormatString(kTextFileTooLarge).Arg("filesize", max_size_desc).Str();
  return false;
}

bool GetFilePathByMsg(Variant const& msg, std::string& path) {
  path.clear();
  if (!msg.IsMap() || (!msg.Has("file_info") && !msg.Has("msg_content"))) {
    TXLOG_ERROR << "[chat file] msg data error! msg = " << framework::VariantToString(&msg);
    return false;
  }
  Variant const& info = msg.Has("file_info") ? msg.Get("file_info") : msg.Get("msg_content");
  if (info.Has("path")) path = info.GetString("path");
  return !path.empty();
}

bool OpenFileByMsg(framework::UIViewModel* view_model, Variant const& msg) {
  if (!view_model) {
    TXLOG_ERROR << "[chat file] view_model param error! data msg = " << framework::VariantToString(&msg);
    return false;
  }
  std::string path;
  if (!GetFilePathByMsg(msg, path)) {
    TXLOG_ERROR << "[chat file] open file by msg failed! file path exception.";
    return false;
  }
  if (!util::file::IsFileExist(path)) return true;
  std::string file_name;
  util::file::GetFileFullName(path, file_name);
  bool is_support = false;
  if (auto files = framework::module::GetAppModuleModel(kHostChatFileModel)) {
    Variant params(base::variant::kVariantTypeMap);
    params.Set("file_name", file_name);
    Variant result;
    if (files->Invoke(kFileMethodIsSupport, &params, &result)) {
      is_support = result.IsMap() ? result.GetBoolean("is_support") : result.AsBoolean();
    }
  }
  if (is_support) {
    view_model->NavigateToOpenFile(path);
  } else {
    view_model->ShowToast(0, view_model->GetLocalizedString(kTextFileCannotOpen), 2000, 0, "", "");
  }
  return true;
}

bool DownloadFileByMsgId(std::string const& msg_id, int download_file_from) {
  auto msg = talvex::ChatUtils::GetMsgInfoPtrById(msg_id);
  if (!msg) return false;
  Variant const* content = nullptr;
  if (msg->Get("ext_content").Has("file_info")) {
    content = &msg->Get("ext_content");
  } else if (msg->Get("ui_msg_content").Has("status")) {
    content = &msg->Get("ui_msg_content");
  }
  if (!content) {
    TXLOG_ERROR << "<IM> msg content not found";
    return false;
  }
  Variant const& file_info = content->Has("file_info") ? content->Get("file_info") : *content;
  if (!file_info.Has("status")) {
    TXLOG_ERROR << "<IM> params error! status not exist!";
    return false;
  }
  auto files = framework::module::GetAppModuleModel(kHostChatFileModel);
  if (!files) return false;
  Variant params(base::variant::kVariantTypeMap);
  params.Set("file_info", file_info);
  params.Set(chat_key::kMsgId, msg_id);
  params.Set("download_file_from", download_file_from);
  return files->Invoke(kFileMethodStartDownload, &params, nullptr);
}

bool UserIsInWaitingRoom(std::string const& user_id) { return UserIsInList(kMemberMethodWaitingRoomList, user_id); }

bool UserIsInWaitingRoomMemberList(std::string const& user_id) {
  return UserIsInList(kMemberMethodWaitingRoomMembers, user_id);
}

void SubscribeHostModel(framework::UIViewModel* view_model, int model_id, std::initializer_list<uint32_t> events,
                        std::function<void(Variant const*)> handler) {
  auto model = framework::module::GetAppModuleModel(model_id);
  if (!model || !view_model) return;
  framework::ViewModel::RecordSubscribe(model, view_model);
  auto shared = std::make_shared<framework::EventHandler>(std::move(handler));
  for (uint32_t event : events) model->Subscribe(event, framework::SubscriberId(view_model), shared);
}

bool InvokeHostModel(int model, uint32_t method, Variant const* params, Variant* result) {
  auto host = framework::module::GetAppModuleModel(model);
  return host && host->Invoke(method, params, result);
}

Variant AskHostModel(int model, uint32_t method, Variant const* params) {
  Variant result;
  return InvokeHostModel(model, method, params, &result) ? result : Variant();
}

std::string WebAddressOf(std::string const& link) {
  const QString text = QString::fromStdString(link).trimmed();
  if (text.isEmpty()) return {};
  QUrl url(text, QUrl::StrictMode);
  // No scheme at all: a bare address, read as a web one.
  if (url.scheme().isEmpty() && !text.contains("://") && !text.contains(':')) {
    url = QUrl("https://" + text, QUrl::StrictMode);
  }
  const QString scheme = url.scheme().toLower();
  if (!url.isValid() || (scheme != "http" && scheme != "https") || url.host().isEmpty()) {
    TXLOG_WARN << "<IM> not a web address, not opened: " << link;
    return {};
  }
  return url.toString(QUrl::FullyEncoded).toStdString();
}

double ProgressFraction(double progress) {
  const double fraction = progress > 1.0 ? progress / 100.0 : progress;
  return fraction < 0 ? 0 : (fraction > 1 ? 1 : fraction);
}

std::string CopyToDownloads(std::string const& path) {
  const QFileInfo source(QString::fromStdString(path));
  if (!source.exists()) return {};
  QString dir = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
  if (dir.isEmpty()) dir = QDir::homePath();
  QDir().mkpath(dir);
  const QString suffix = source.suffix().isEmpty() ? QString() : "." + source.suffix();
  QString target = QDir(dir).filePath(source.fileName());
  for (int n = 1; QFile::exists(target); ++n) {
    target = QDir(dir).filePath(QString("%1 (%2)%3").arg(source.completeBaseName()).arg(n).arg(suffix));
  }
  if (!QFile::copy(source.filePath(), target)) {
    TXLOG_ERROR << "copy to downloads failed: " << target.toStdString();
    return {};
  }
  return target.toStdString();
}

Variant ReadLocalSetting(std::string const& key, Variant const& def) {
  auto settings = framework::module::GetAppModuleModel(kHostSettingsModel);
  if (!settings) return def;
  Variant params(base::variant::kVariantTypeMap);
  params.Set("key", key);
  params.Set("def_value", def);
  Variant result;
  if (!settings->Invoke(3, &params, &result) || result.IsNull()) return def;
  return result;
}

bool WriteLocalSetting(std::string const& key, Variant const& value) {
  auto settings = framework::module::GetAppModuleModel(kHostSettingsModel);
  if (!settings) return false;
  Variant params(base::variant::kVariantTypeMap);
  params.Set("key", key);
  params.Set("value", value);
  return settings->Invoke(4, &params, nullptr);
}

}  // namespace chat
