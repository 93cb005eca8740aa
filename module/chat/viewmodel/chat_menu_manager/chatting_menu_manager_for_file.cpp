#include "chat/viewmodel/chat_menu_manager/chatting_menu_manager_for_file.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "base/util/file_util.h"
#include "chat/model/chat_message.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/viewmodel/ui_view_model.h"

namespace chat {

namespace {
constexpr uint32_t kFileMethodRetryUpload = 6;
constexpr uint32_t kFileMethodStopUpload = 7;
constexpr int kDownloadFromMenu = 2;
constexpr uint32_t kTextDownloadStopped = framework::NameId("chat.menu.download_stopped");
constexpr uint32_t kTextFileBlocked = framework::NameId("chat.file.status.security_blocked");
constexpr uint32_t kTextFileSaved = framework::NameId("chat.menu.file_saved");
}  // namespace

Variant ChattingMenuManagerForFile::GetFileInfo() const {
  Variant const& ext = current_message_.Get("ext_content");
  if (!current_message_.IsMap() || !ext.IsMap()) {
    TXLOG_ERROR << "invalid file msg! " << current_message_.GetString(chat_key::kMsgId);
    return Variant();
  }
  return ext.Get("file_info").IsMap() ? ext.Get("file_info") : Variant();
}

std::string ChattingMenuManagerForFile::LocalFile() const {
  const Variant info = GetFileInfo();
  Variant wrapped = Variant::Map{{"file_info", info}};
  std::string path;
  if (!info.IsMap() || !GetFilePathByMsg(wrapped, path) || !util::file::IsFileExist(path)) return {};
  return path;
}

void ChattingMenuManagerForFile::AppendSubMenus(Variant const&, Variant& list) {
  if (!AppendSubMenusForDesktopFileMessage(list)) return;
  AddSubMenuItem(list, ToInt(MenuItemType::kDelete), true);
  if (IsBlockEnable()) AddSubMenuItem(list, ToInt(MenuItemType::kBlockSender), true);
  if (IsKickOutEnable() && IsKickoutUserExist()) AddSubMenuItem(list, ToInt(MenuItemType::kKickOut), true);
}

bool ChattingMenuManagerForFile::AppendSubMenusForDesktopFileMessage(Variant& list) {
  const Variant info = GetFileInfo();
  if (!info.IsMap()) {
    TXLOG_ERROR << "[chat file] append sub menus failed! file info nullptr!";
    return true;
  }
  const int status = info.GetInt32("status", -1);
  const bool own = IsMsgFromSelf() || current_message_.GetBoolean("msg_is_self");
  const bool on_disk = !LocalFile().empty();
  auto file_items = [&] {
    AddSubMenuItem(list, ToInt(MenuItemType::kOpenFile), on_disk);
    AddSubMenuItem(list, ToInt(MenuItemType::kOpenFolder), on_disk);
    if (own && IsRecallEnable()) AddSubMenuItem(list, ToInt(MenuItemType::kRecall), true);
    AddSubMenuItem(list, ToInt(MenuItemType::kSaveFileAs), on_disk);
    AddSubMenuItem(list, ToInt(MenuItemType::kCopyFile), on_disk);
  };
  if (!own) {
    if (info.GetInteger("security") != 0) {
      if (auto delegate = delegate_.lock()) {
        if (auto* vm = delegate->MenuViewModel()) vm->ShowToast(0, CallGetLocalizedString(kTextFileBlocked), 2000);
      }
      return false;
    }
    if (status == kFileNotDownloaded || status == kFileDownloadFailed || status == kFileDownloadCanceled) {
      AddSubMenuItem(list, ToInt(MenuItemType::kDownload), true);
    } else if (status == kFileDownloadWaiting || status == kFileDownloading) {
      AddSubMenuItem(list, ToInt(MenuItemType::kStopDownload), true);
    } else if (status == kFileDownloaded) {
      file_items();
    }
  } else {
    if (menu_scene_ == kSceneMeeting && (status == kFileUploadWaiting || status == kFileUploading)) {
      AddSubMenuItem(list, ToInt(MenuItemType::kStopUpload), true);
    } else if (menu_scene_ == kSceneMeeting && (status == kFileUploadCanceled || status == kFileUploadFailed)) {
      AddSubMenuItem(list, ToInt(MenuItemType::kRetryUpload), true);
    } else if (status == kFileUploaded || status == kFileDownloaded) {
      file_items();
    }
  }
  if ((status == kFileUploaded || status == kFileDownloaded) && !on_disk) ResetChatFileInfo();
  return true;
}

// A finished file that is no longer on disk is offered for download again.
void ChattingMenuManagerForFile::ResetChatFileInfo() {
  Variant ext = current_message_.Get("ext_content");
  Variant info = ext.Get("file_info");
  info.Set("status", kFileNotDownloaded);
  info.Set("path", "");
  ext.Set("file_info", std::move(info));
  current_message_.Set("ext_content", std::move(ext));
}

void ChattingMenuManagerForFile::Report(char const* action) const {
  const bool record = menu_scene_ == kSceneRecord;
  talvex_common::utils::analytics::LogEventWith2Properties(
      record ? "inmeeting_im_null_file_pc_null_record" : "inmeeting_im_null_file_pc_null_im", "action", action,
      "origin", record ? "pc_record" : "pc_im");
}

void ChattingMenuManagerForFile::AskFileModel(uint32_t method, framework::UIViewModel* vm, uint32_t toast) {
  if (!InvokeHostModel(kHostChatFileModel, method, &current_message_, nullptr)) return;
  if (toast && vm) vm->ShowToast(0, CallGetLocalizedString(toast), 2000);
}

bool ChattingMenuManagerForFile::HandleSubClassMenuItemClick(framework::UIViewModel* vm, int type) {
  switch (static_cast<MenuItemType>(type)) {
    case MenuItemType::kRetryUpload:
      Report("retry_upload");
      AskFileModel(kFileMethodRetryUpload, vm, 0);
      return true;
    case MenuItemType::kStopUpload:
      if (!IsChatKeyReady()) {
        TXLOG_ERROR << "[chat file] stop upload file message error! is_chat_key_ready = " << false;
        return true;
      }
      Report("stop_upload");
      AskFileModel(kFileMethodStopUpload, vm, 0);
      return true;
    case MenuItemType::kStopDownload:
      Report("stop_download");
      AskFileModel(kFileMethodStopDownload, vm, kTextDownloadStopped);
      return true;
    case MenuItemType::kDownload:
      Report("download");
      DownloadFileByMsgId(current_message_.GetString(chat_key::kMsgId), kDownloadFromMenu);
      return true;
    case MenuItemType::kOpenFile:
      TXLOG_INFO << "[chat file] handle open file";
      Report("open");
      OpenFileByMsg(vm, Variant::Map{{"file_info", GetFileInfo()}});
      return true;
    case MenuItemType::kOpenFolder:
      TXLOG_INFO << "[chat file] handle open dir";
      Report("open_dir");
      if (!LocalFile().empty()) CallNavigateToFilePath(LocalFile());
      return true;
    case MenuItemType::kSaveFileAs:
      TXLOG_INFO << "handle file save as";
      Report("save_as");
      SaveAs(vm);
      return true;
    case MenuItemType::kCopyFile:
      TXLOG_INFO << "handle copy file";
      Report("copy");
      CopyFile();
      return true;
    default:
      return false;
  }
}

void ChattingMenuManagerForFile::SaveAs(framework::UIViewModel* vm) {
  const std::string target = CopyToDownloads(LocalFile());
  if (target.empty()) return;
  if (vm) vm->ShowToast(0, CallGetLocalizedString(kTextFileSaved), 2000);
  CallNavigateToFilePath(target);
}

void ChattingMenuManagerForFile::CopyFile() {
  const std::string path = LocalFile();
  if (path.empty()) return;
  auto* mime = new QMimeData();
  mime->setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
  QGuiApplication::clipboard()->setMimeData(mime);
}

void ChattingMenuManagerForFile::OnRecallMessageFinished() {
  const std::string path = LocalFile();
  TXLOG_INFO << "handle revoke file menu, file path = " << path;
  if (!path.empty()) QFile::remove(QString::fromStdString(path));
}

void ChattingMenuManagerForFile::OnDeleteMessageFinished() {
  TXLOG_INFO << "delete file." << ", msgid=" << current_message_.GetString(chat_key::kMsgId);
  if (!GetFileInfo().IsMap()) TXLOG_ERROR << "[chat file] delete msg failed! file_info not exist!";
}

}  // namespace chat
