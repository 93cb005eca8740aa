#include "chat/viewmodel/chat_panel_history_list_view_model.h"

#include "base/log/log.h"
#include "chat/biz_model/chat_biz_model.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/chat_strings.h"
#include "framework/chat/chat_schema_keys.h"
#include "framework/chat/chat_utils.h"
#include "framework/module/app_module.h"
#include "chat/model/chat_message.h"

namespace chat {

namespace {
constexpr uint32_t kFileEventRefused = 1;
constexpr uint32_t kFileEventFailure = 2;
constexpr int kFileCodeTooMany = 21001;
constexpr int kFileCodeForbidden = 21009;
using ChatModel = TypedBizModel::Chat::ModelImpl;
}  // namespace

ChatPanelHistoryListViewModel::~ChatPanelHistoryListViewModel() = default;

void ChatPanelHistoryListViewModel::OnViewAttached(Variant const* params) {
  ChatHistoryListBaseViewModel::OnViewAttached(params);
  if (auto files = framework::module::GetAppModuleModel(kHostChatFileModel)) {
    const uint64_t self = framework::SubscriberId(this);
    RecordSubscribe(files, this);
    files->Subscribe(kFileEventRefused, self, std::make_shared<framework::EventHandler>([this](Variant const* p) {
                       OnEventFileRefused(p);
                     }));
    files->Subscribe(kFileEventFailure, self, std::make_shared<framework::EventHandler>([this](Variant const* p) {
                       OnEventFileFailure(p);
                     }));
  }
  Variant visible(true);
  InvokeChatBizModel(GetModuleRuntime4ATG(), ChatModel::kFireUnreadVisible, &visible);
}

void ChatPanelHistoryListViewModel::OnViewDetached() {
  if (auto files = framework::module::GetAppModuleModel(kHostChatFileModel)) {
    files->Unsubscribe(framework::SubscriberId(this));
  }
  Variant visible(false);
  InvokeChatBizModel(GetModuleRuntime4ATG(), ChatModel::kFireUnreadVisible, &visible);
  recv_msg_timer_.reset();
  ChatHistoryListBaseViewModel::OnViewDetached();
}

bool ChatPanelHistoryListViewModel::IsChatTypeShow(int chat_type) const {
  return !talvex::ChatUtils::IsRedPacketOrReceiptType(chat_type);
}

bool ChatPanelHistoryListViewModel::ScheduleRecvMsgs(bool immediately, bool count_unread) {
  if (recv_msg_timer_) return count_unread;
  if (immediately) {
    UpdateRecvMsgs(count_unread);
    return count_unread;
  }
  recv_msg_timer_ = talvex_common::utils::timer::CreateTimer([this, count_unread] { UpdateRecvMsgs(count_unread); });
  recv_msg_timer_->Start(kFlushIntervalMs, 0);
  return count_unread;
}

void ChatPanelHistoryListViewModel::UpdateRecvMsgs(bool count_unread) {
  Variant pending = TakePendingMessages();
  if (!is_snap_bottom() && count_unread) {
    for (auto const& item : pending.AsArray()) {
      const std::string id = item.GetString(ChatHistoryListMsgItemFields_kStringMsgItemMsgId);
      auto msg = talvex::ChatUtils::GetMsgInfoPtrById(id);
      if (!msg) {
        TXLOG_ERROR << "message not found, with msg_id=" << id;
        continue;
      }
      const MessageRecord record(*msg);
      if (!record.has_chat_type()) {
        TXLOG_ERROR << "msg is not found chat_type";
        continue;
      }
      CountUnread(id, record.chat_type());
    }
    UpdateUnreadTip();
  }
  UpdateMessageList(pending, kUpdateAppend);
  InvokeChatBizModel(GetModuleRuntime4ATG(), ChatModel::kFireScrollToBottom);
  // The timer may be the caller; a TXTimer may be deleted by its own callback.
  recv_msg_timer_.reset();
}

void ChatPanelHistoryListViewModel::OnEventFileRefused(Variant const*) {
  ShowToast(0, GetLocalizedString(kTextFileSendRefused), 2000, 0, "", "");
}

void ChatPanelHistoryListViewModel::OnEventFileFailure(Variant const* payload) {
  if (!payload || !payload->IsInteger()) {
    TXLOG_ERROR << "[chat file] failure event without a code";
    return;
  }
  const int64_t code = payload->AsInteger();
  if (code == kFileCodeTooMany) {
    ShowToast(0, GetLocalizedString(kTextFileTooManyTransfers), 2000, 0, "", "");
  } else if (code == kFileCodeForbidden) {
    ShowToast(0, GetLocalizedString(0x55b7e41f), 2000, 0, "", "");
  }
}

void ChatRecordPanelHistoryListViewModel::ParseInitParams(Variant const* params) {
  ChatHistoryListBaseViewModel::ParseInitParams(params);
  set_template_type(kTemplateRecord);
}

}  // namespace chat
