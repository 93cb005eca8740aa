#include "chat/viewmodel/chat_menu_manager/chatting_menu_manager_for_image.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "base/util/file_util.h"
#include "chat/model/chat_message.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/utils.h"
#include "framework/viewmodel/ui_view_model.h"
#include "uikit/tx_qt_ui_util.h"

namespace chat {

namespace {
constexpr uint32_t kMeetingMethodDisplayState = 11;
constexpr uint32_t kTextImageSaved = framework::NameId("chat.menu.image_saved");
constexpr uint32_t kTextImageMissing = framework::NameId("chat.menu.image_missing");
}  // namespace

void ChattingMenuManagerForImage::AppendSubMenus(Variant const&, Variant& list) {
  const bool on_disk = !GetImageInfo().empty();
  AddSubMenuItem(list, ToInt(MenuItemType::kSaveImage), on_disk);
  AddSubMenuItem(list, ToInt(MenuItemType::kCopyImage), on_disk);
  AddSubMenuItem(list, ToInt(MenuItemType::kDelete), true);
  if (IsBlockEnable()) AddSubMenuItem(list, ToInt(MenuItemType::kBlockSender), true);
  if (IsKickOutEnable() && IsKickoutUserExist()) AddSubMenuItem(list, ToInt(MenuItemType::kKickOut), true);
  if (IsRecallEnable()) AddSubMenuItem(list, ToInt(MenuItemType::kRecall), true);
}

std::string ChattingMenuManagerForImage::GetImageInfo() const {
  Variant const& content = current_message_.Get("ui_msg_content");
  if (!current_message_.Has("msg_content") || !content.IsMap()) {
    TXLOG_ERROR << "invalid image msg! " << current_message_.GetString(chat_key::kMsgId);
    return {};
  }
  // The original first, then what one sent, then the pictures downloaded.
  for (char const* key : {"orig_path", "send_orig_path", "image_path", "large_path", "thumb_path"}) {
    const std::string path = content.GetString(key);
    if (!path.empty() && util::file::IsFileExist(path)) return path;
  }
  return {};
}

std::string ChattingMenuManagerForImage::Situation() const {
  if (menu_scene_ != kSceneMeeting) return "2";
  return AskHostModel(kHostMeetingModel, kMeetingMethodDisplayState).AsInt32() == 1 ? "3" : "2";
}

bool ChattingMenuManagerForImage::HandleSubClassMenuItemClick(framework::UIViewModel* vm, int type) {
  if (type == ToInt(MenuItemType::kSaveImage)) {
    SaveImage(vm);
    return true;
  }
  if (type == ToInt(MenuItemType::kCopyImage)) {
    CopyImage(vm);
    return true;
  }
  return false;
}

void ChattingMenuManagerForImage::SaveImage(framework::UIViewModel* vm) {
  talvex_common::utils::analytics::LogEventWith2Properties("meetingpage_impanel_null_photomessage_save_null_click",
                                                           "situation", Situation(), "message_type",
                                                           std::to_string(chat_type_));
  const std::string path = GetImageInfo();
  if (path.empty()) {
    if (vm) vm->ShowToast(0, CallGetLocalizedString(kTextImageMissing), 2000);
    return;
  }
  // Into the user's downloads, under a name of its own, then shown there.
  const std::string target = CopyToDownloads(path);
  if (target.empty()) return;
  if (vm) vm->ShowToast(0, CallGetLocalizedString(kTextImageSaved), 2000);
  CallNavigateToFilePath(target);
}

void ChattingMenuManagerForImage::CopyImage(framework::UIViewModel* vm) {
  QImageReader reader(QString::fromStdString(GetImageInfo()));
  reader.setAutoTransform(true);
  const QImage image = TXQtUiUtil::ReadImageCapped(reader);
  if (image.isNull()) {
    if (vm) vm->ShowToast(0, CallGetLocalizedString(kTextImageMissing), 2000);
    return;
  }
  QGuiApplication::clipboard()->setImage(image);
}

}  // namespace chat
