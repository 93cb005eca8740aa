#include "chat/viewmodel/chat_file_message_view_model.h"

#include "chat/model/chat_message.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_utils.h"

namespace chat {

namespace {
constexpr int kDownloadFromRow = 1;
}

bool ChatFileMessageViewModel::FillInfo(Variant const& record, Variant const* params, Variant& info) {
  Variant const& file = ContentOf(record);
  if (!file.IsMap()) return false;
  info.Set("layout_type", LayoutTypeOf(params, 1));
  for (char const* key : {"title", "sub_title", "path", "icon_type", "size", "status", "progress", "err_code",
                          "err_msg", "security", "id"}) {
    CopyFields(info, key, file, key);
  }
  const int status = file.GetInt32("status", -1);
  info.Set("progress_visible", status == kFileUploading || status == kFileDownloading);
  return true;
}

ChatFileMessageViewModel::ChatFileMessageViewModel() {
  OnAction(kActionOpenFile, [this](Variant const*) {
    if (auto record = talvex::ChatUtils::GetMsgInfoPtrById(msg_id_)) {
      Variant msg(base::variant::kVariantTypeMap);
      msg.Set("msg_content", ContentOf(*record));
      OpenFileByMsg(this, msg);
    }
  });
  OnAction(kActionDownloadFile, [this](Variant const*) { DownloadFileByMsgId(msg_id_, kDownloadFromRow); });
  OnAction(kActionStopDownload, [this](Variant const*) {
    Variant message = Variant::Map{{chat_key::kMsgId, msg_id_}};
    InvokeHostModel(kHostChatFileModel, kFileMethodStopDownload, &message, nullptr);
  });
}

}  // namespace chat
