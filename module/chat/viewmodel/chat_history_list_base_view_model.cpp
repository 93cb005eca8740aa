#include "chat/viewmodel/chat_history_list_base_view_model.h"

#include <QDateTime>
#include <algorithm>
#include <array>
#include <ctime>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "base/util/time_util.h"
#include "chat/biz_model/chat_biz_model.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/model/chat_message.h"
#include "chat/viewmodel/chat_clipboard_export.h"
#include "chat/viewmodel/chat_send_error_text.h"
#include "chat/runtime/chat_ids.h"
#include "framework/chat/chat_schema_keys.h"
#include "framework/chat/chat_utils.h"
#include "framework/extension/extension.h"
#include "framework/meeting/meeting_context.h"
#include "framework/module/app_module.h"

namespace chat {

namespace {

constexpr int kNotificationModel = 525;
constexpr int kShieldModel = 530;
constexpr int kListRecordModel = 10016;

// Message model.
constexpr uint32_t kMethodGetHistory = 62;
constexpr uint32_t kEventSendResult = 16;
constexpr uint32_t kEventMessageAdded = 35;
constexpr uint32_t kEventMessageDeleted = 36;
constexpr uint32_t kEventMessageUpdated = 37;
constexpr uint32_t kEventOperationResult = 11;
constexpr uint32_t kEventMessageList = 39;
constexpr uint32_t kEventToast = 41;
constexpr int kSendResultPriority = 100;
// Notification, shield and meeting models.
constexpr uint32_t kEventListChanged = 9;
constexpr uint32_t kShieldMethodFilter = 4;
constexpr uint32_t kShieldMethodStart = 5;
constexpr uint32_t kShieldMethodStop = 6;
constexpr uint32_t kShieldEventInfo = 0;
constexpr uint32_t kMeetingMethodDisplayState = 11;
// List record model.
constexpr uint32_t kListMethodGetListId = 1039495232;
constexpr uint32_t kListMethodReset = 468035239;
constexpr uint32_t kListMethodAppend = 124265569;
constexpr uint32_t kListMethodRemove = 204832767;
constexpr uint32_t kListMethodCreateTip = 236764533;

// Texts.
constexpr uint32_t kTextUnreadCount = 0x3bbc3c82;
constexpr uint32_t kTextUnreadMention = 0xba4380ab;
constexpr uint32_t kTextOperationForbidden = 0xadf1fdc1;
constexpr uint32_t kTextOperationFailed = 0x31f70655;

constexpr char kEventTipExposure[] = "meetingpage_impanel_null_tips_null_null_exposure";
constexpr char kEventTipClick[] = "meetingpage_impanel_null_tips_null_null_click";

Variant Array() { return Variant(base::variant::kVariantTypeArray); }
Variant Map() { return Variant(base::variant::kVariantTypeMap); }

framework::ModelPtr Host(int id) { return framework::module::GetAppModuleModel(id); }

std::string ItemId(Variant const& item) { return item.GetString(ChatHistoryListMsgItemFields_kStringMsgItemMsgId); }

bool IsTip(Variant const& msg) { return MessageRecord(msg).IsTip(); }

}  // namespace

ChatHistoryListBaseViewModel::ChatHistoryListBaseViewModel() : pending_msg_list_(Array()), show_msg_ids_(Array()) {
  OnAction(kActionSetAnchor, [this](Variant const* params) {
    if (params && params->IsNumber()) pages_.set_anchor(params->AsUint64());
  });
  OnAction(kActionClickUnreadTip, [this](Variant const*) { HandleClickUnreadTip(); });
  OnAction(kActionGetMore, [this](Variant const* params) { HandleGetMoreMsgList(params); });
  OnAction(kActionScrollPosition, [this](Variant const* params) { HandleIsScrollBottom(params); });
  OnAction(kActionGetMimeData, [this](Variant const* params) { HandleGetMimeData(params); });
}

ChatHistoryListBaseViewModel::~ChatHistoryListBaseViewModel() {
  if (auto extension = GetExtension()) extension->UnRegisterEventHandler("SetPaneTypeEvent");
}

void ChatHistoryListBaseViewModel::OnViewCreated(Variant const* params) {
  talvex::ExtensionViewModel::OnViewCreated(params);
  ParseInitParams(params);
}

void ChatHistoryListBaseViewModel::ParseInitParams(Variant const* params) {
  Variant const& p = params ? *params : framework::GetEmptyVariant();
  message_conv_id_ = p.GetString("message_conv_id");
  if (message_conv_id_.empty()) {
    const uint64_t main_id = talvex_common::utils::breakoutroom::GetMainMeetingId();
    if (main_id) message_conv_id_ = std::to_string(main_id);
  }
  template_type_ = p.GetInt32(chat_key::kTemplateType, kTemplatePanel);
}

std::string ChatHistoryListBaseViewModel::CurrentMainMeetingId() const {
  if (talvex_common::utils::breakoutroom::IsInBreakoutRoomMeeting()) {
    const std::string main_id = std::to_string(talvex_common::utils::breakoutroom::GetMainMeetingId());
    TXLOG_INFO << "join in breakoutroom, main meeting_id: " << main_id;
    return main_id;
  }
  return talvex_common::utils::GetStrMeetingId();
}

void ChatHistoryListBaseViewModel::OnViewAttached(Variant const* params) {
  talvex::ExtensionViewModel::OnViewAttached(params);
  if (params && params->Get("router_params").Has("anchor_msg_id")) {
    pages_.set_anchor(params->Get("router_params").GetUint64("anchor_msg_id"));
    TXLOG_INFO << "<IM> anchor_msg_id_=" << pages_.anchor();
  }
  if (message_conv_id_.empty()) message_conv_id_ = talvex_common::utils::GetStrMeetingId();

  Variant pane = Map();
  pane.Set(ChatHistoryListGetChatPaneTypeFields_kStringGetChatPaneTypeMessageConvId, message_conv_id_);
  pane.Set(ChatHistoryListGetChatPaneTypeFields_kIntegerGetChatPaneTypeTemplateType, template_type_);
  SetPropValue(kPropChatPaneType, std::move(pane));

  if (list_id_.empty()) {
    if (auto lists = Host(kListRecordModel)) {
      Variant conv(message_conv_id_);
      Variant result;
      lists->Invoke(kListMethodGetListId, &conv, &result);
      if (result.IsString()) {
        list_id_ = result.AsStr();
      } else {
        TXLOG_ERROR << "<IM> list_id is empty";
      }
    }
  }
  Subscribe();
  meeting_id_ = CurrentMainMeetingId();
  if (talvex_common::utils::webinar::IsMeetingWebinar()) {
    if (auto shield = Host(kShieldModel)) shield->Invoke(kShieldMethodStart, nullptr, nullptr);
  }
  SetPropValue(kPropListAttached, nullptr);
  UpdateUnreadTip();
  GetHistoryMessage("");
}

void ChatHistoryListBaseViewModel::Subscribe() {
  const uint64_t self = framework::SubscriberId(this);
  auto bind = [this](void (ChatHistoryListBaseViewModel::*handler)(Variant const*)) {
    return std::make_shared<framework::EventHandler>([this, handler](Variant const* p) { (this->*handler)(p); });
  };
  if (auto messages = Host(kHostChatMessageModel)) {
    if (auto priority = std::dynamic_pointer_cast<framework::PriorityModel>(messages)) {
      RecordPrioritySubscribe(messages, this);
      priority->SubscribePriority(kEventSendResult, kSendResultPriority, self,
                                  std::make_shared<framework::PriorityEventHandler>(
                                      [this](Variant const* p, bool& stop) {
                                        bool keep_going = true;
                                        OnSendMessageResult(p, &keep_going);
                                        if (!keep_going) stop = true;
                                      }));
    }
    RecordSubscribe(messages, this);
    messages->Subscribe(kEventMessageAdded, self, bind(&ChatHistoryListBaseViewModel::OnMessageAdded));
    messages->Subscribe(kEventMessageDeleted, self, bind(&ChatHistoryListBaseViewModel::OnMessageDeleted));
    messages->Subscribe(kEventMessageUpdated, self, bind(&ChatHistoryListBaseViewModel::OnMessageUpdated));
    messages->Subscribe(kEventOperationResult, self, bind(&ChatHistoryListBaseViewModel::OnMessageOperationResult));
    messages->Subscribe(kEventMessageList, self, bind(&ChatHistoryListBaseViewModel::OnGetMessageList));
    messages->Subscribe(kEventToast, self, bind(&ChatHistoryListBaseViewModel::OnToastMessage));
  }
  if (auto notifications = Host(kNotificationModel)) {
    RecordSubscribe(notifications, this);
    notifications->Subscribe(kEventListChanged, self, bind(&ChatHistoryListBaseViewModel::OnMessageListChanged));
  }
  if (auto shield = Host(kShieldModel)) {
    RecordSubscribe(shield, this);
    shield->Subscribe(kShieldEventInfo, self, bind(&ChatHistoryListBaseViewModel::OnGetShieldInfo));
  }
  if (auto meeting = Host(kHostMeetingModel)) {
    RecordSubscribe(meeting, this);
    meeting->Subscribe(kMeetingEventJoined, self, bind(&ChatHistoryListBaseViewModel::OnJoinComplete));
  }
}

void ChatHistoryListBaseViewModel::Unsubscribe() {
  const uint64_t self = framework::SubscriberId(this);
  if (auto messages = Host(kHostChatMessageModel)) {
    messages->Unsubscribe(self);
    if (auto priority = std::dynamic_pointer_cast<framework::PriorityModel>(messages)) {
      priority->UnsubscribePriority(self);
    }
  }
  for (int id : {kNotificationModel, kShieldModel, static_cast<int>(kHostMeetingModel)}) {
    if (auto model = Host(id)) model->Unsubscribe(self);
  }
}

void ChatHistoryListBaseViewModel::OnViewDetached() {
  pending_msg_list_ = Array();
  show_msg_ids_ = Array();
  pages_.Reset();
  if (auto lists = Host(kListRecordModel)) {
    Variant params = Map();
    params.Set("list_id", list_id_);
    lists->Invoke(kListMethodReset, &params, nullptr);
  }
  Unsubscribe();
  if (template_type_ == kTemplatePanel) {
    if (auto shield = Host(kShieldModel)) shield->Invoke(kShieldMethodStop, nullptr, nullptr);
  }
  talvex::ExtensionViewModel::OnViewDetached();
}

// --- filters -------------------------------------------------------------------

bool ChatHistoryListBaseViewModel::IsShowMessage(Variant const& msg) const {
  Variant const& config = msg.Get("custom_config");
  // `chat_invisible` is a mask of the surfaces that show the message.
  if (config.Has("chat_invisible")) return (config.GetInteger("chat_invisible") & template_type_) != 0;
  const MessageRecord record(msg);
  if (record.has_chat_type()) return IsChatTypeShow(ToInt(record.chat_type()));
  return true;
}

bool ChatHistoryListBaseViewModel::IsInMeetingMsg(Variant const& msg) const {
  Variant const& info = msg.Get("in_meeting_info");
  return info.Has("meeting_id") && info.Get("meeting_id").ToString() == message_conv_id_;
}

bool ChatHistoryListBaseViewModel::IsInThisConversation(Variant const& msg) const {
  if (msg.Has("in_meeting_info")) {
    if (IsInMeetingMsg(msg)) return true;
    TXLOG_INFO << "<IM> message is not of this meeting, msg_id=" << msg.GetString(chat_key::kMsgId);
    return false;
  }
  if (msg.GetString("conv_id") == message_conv_id_) return true;
  TXLOG_INFO << "<IM> message is not of this conversation, msg_id=" << msg.GetString(chat_key::kMsgId);
  return false;
}

// --- building ------------------------------------------------------------------

Variant ChatHistoryListBaseViewModel::BuildListItem(Variant const& msg) const {
  const std::string msg_id = msg.GetString(chat_key::kMsgId);
  const MessageRecord record(msg);
  int item_type = ToInt(ChatType::kTip);
  if (record.has_status() && !record.IsRecalled() && record.has_chat_type()) item_type = ToInt(record.chat_type());
  std::string reuse_id = "reuse_id" + std::to_string(item_type) + "_" + std::to_string(template_type_);
  // Cards never recycle across messages.
  if (item_type == ToInt(ChatType::kOpenApp)) reuse_id = msg_id + "_" + reuse_id;
  Variant item = Map();
  item.Set(ChatHistoryListMsgItemFields_kStringMsgItemMsgId, msg_id);
  item.Set(ChatHistoryListMsgItemFields_kStringMsgItemReuseId, reuse_id);
  if (template_type_ == kTemplateBullet) item.Set("bulletmsg_addtime", static_cast<int>(time(nullptr)));
  return item;
}

void ChatHistoryListBaseViewModel::AddMessage(Variant const& msg, Variant& list, bool history) {
  InsertTimeTipIfNeeded(msg, list, history);
  list.Add(BuildListItem(msg));
}

void ChatHistoryListBaseViewModel::InsertTimeTipIfNeeded(Variant const& msg, Variant& list, bool history) {
  const uint64_t t = msg.GetUint64("message_time", 0);
  if (time_tips_.TipDue(t, history)) InsertTimeTip(t, list);
}

void ChatHistoryListBaseViewModel::InsertTimeTip(uint64_t seconds, Variant& list) {
  auto lists = Host(kListRecordModel);
  Variant params = Map();
  params.Set(chat_key::kChatType, ToInt(ChatType::kTip));
  params.Set("conv_id", message_conv_id_);
  params.Set(chat_key::kStatus, ToInt(MessageStatus::kLocalTip));
  params["msg_content"].Set("item_content", TimeTipText(seconds));
  Variant result;
  if (!lists || !lists->Invoke(kListMethodCreateTip, &params, &result) || !result.IsString()) {
    TXLOG_ERROR << "<IM> insert failed";
    return;
  }
  auto tip = talvex::ChatUtils::GetMsgInfoPtrById(result.AsStr());
  if (!tip) {
    TXLOG_ERROR << "<IM> insert failed";
    return;
  }
  list.Add(BuildListItem(*tip));
}

std::string ChatHistoryListBaseViewModel::TimeTipText(uint64_t seconds) {
  const QDateTime when = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds));
  const QDateTime now = QDateTime::fromSecsSinceEpoch(util::time::GetServerTimestamp(util::time::kClockTypeServer));
  if (when.date() == now.date()) return when.toString("hh:mm").toStdString();
  return when.toString("yyyy-MM-dd hh:mm").toStdString();
}

// --- received messages ------------------------------------------------------------

void ChatHistoryListBaseViewModel::OnMessageAdded(Variant const* payload) {
  if (!payload || !payload->IsString()) {
    TXLOG_ERROR << "<IM> message added: payload is not an id";
    return;
  }
  if (template_type_ == kTemplateBullet) {
    if (auto meeting = Host(kHostMeetingModel)) {
      Variant state;
      if (meeting->Invoke(kMeetingMethodDisplayState, nullptr, &state) && state.AsInteger() == 1) return;
    }
  }
  const std::string id = payload->AsStr();
  auto msg = talvex::ChatUtils::GetMsgInfoPtrById(id);
  if (!msg) {
    TXLOG_ERROR << "<IM> message not found with msg_id=" << id;
    return;
  }
  const MessageRecord record(*msg);
  if (template_type_ == kTemplateBullet) {
    // The overlay shows a message once it is sent (9 is the client's own state).
    if (record.status() == MessageStatus::kSending || ToInt(record.status()) == 9) return;
  }
  if (!IsShowMessage(*msg)) {
    TXLOG_INFO << "<IM> message not show list template_type = " << template_type_;
    return;
  }
  if (!IsInThisConversation(*msg)) return;
  if (record.is_from_self()) {
    Variant list = Array();
    AddMessage(*msg, list, false);
    UpdateMessageList(list, kUpdateAppend);
    return;
  }
  if (record.IsPrivate()) {
    Variant private_id(id);
    InvokeChatBizModel(GetModuleRuntime4ATG(), TypedBizModel::Chat::ModelImpl::kSetReminderMsgId, &private_id);
  }
  AddMessage(*msg, pending_msg_list_, false);
  ScheduleRecvMsgs(false, true);
}

void ChatHistoryListBaseViewModel::OnMessageDeleted(Variant const* payload) {
  if (!payload || !payload->IsString()) {
    TXLOG_ERROR << "<IM> message deleted: payload is not an id";
    return;
  }
  auto msg = talvex::ChatUtils::GetMsgInfoPtrById(payload->AsStr());
  if (!msg) {
    TXLOG_ERROR << "<IM> message not found with msg_id=" << payload->AsStr();
    return;
  }
  if (!IsShowMessage(*msg)) {
    TXLOG_INFO << "<IM> message not show list template_type = " << template_type_;
    return;
  }
  if (!IsInThisConversation(*msg)) return;
  Variant list = Array();
  list.Add(BuildListItem(*msg));
  UpdateMessageList(list, kUpdateRemoved);
}

void ChatHistoryListBaseViewModel::OnMessageUpdated(Variant const* payload) {
  if (!payload || !payload->IsString()) {
    TXLOG_ERROR << "<IM> message updated: payload is not an id";
    return;
  }
  const std::string id = payload->AsStr();
  auto msg = talvex::ChatUtils::GetMsgInfoPtrById(id);
  if (!msg) {
    TXLOG_ERROR << "<IM> message not found with msg_id=" << id;
    return;
  }
  const MessageStatus status = MessageRecord(*msg).status();
  if (status == MessageStatus::kDeleted) {
    OnMessageDeleted(payload);
    return;
  }
  if (!IsShowMessage(*msg)) return;
  auto shown = [&] {
    for (auto const& s : show_msg_ids_.AsArray()) {
      if (s.AsStr() == id) return true;
    }
    return false;
  };
  Variant list = Array();
  if (msg->Has("in_meeting_info")) {
    if (!IsInMeetingMsg(*msg)) return;
    if (template_type_ == kTemplateBullet) {
      if (status == MessageStatus::kRecalled && shown()) {
        list.Add(BuildListItem(*msg));
        UpdateMessageList(list, kUpdateChanged);
      } else if (status == MessageStatus::kSent && !shown()) {
        AddMessage(*msg, list, false);
        UpdateMessageList(list, kUpdateAppend);
      }
      return;
    }
    TXLOG_INFO << "<IM> update";
  } else {
    if (!msg->Has("conv_id")) {
      TXLOG_ERROR << "<IM> convId not found";
      return;
    }
    if (msg->GetString("conv_id") != message_conv_id_) return;
  }
  list.Add(BuildListItem(*msg));
  UpdateMessageList(list, kUpdateChanged);
}

// --- history pages ---------------------------------------------------------------

bool ChatHistoryListBaseViewModel::GetHistoryMessage(std::string const& msg_id) {
  auto messages = Host(kHostChatMessageModel);
  if (!messages) {
    TXLOG_ERROR << "<IM> chat model is nullptr";
    return false;
  }
  Variant params = Map();
  params.Set("limit", kHistoryPageLimit);
  uint64_t from = 0;
  const std::string& cursor = !msg_id.empty() ? msg_id : pages_.oldest_id();
  if (!cursor.empty()) {
    auto record = talvex::ChatUtils::GetMsgInfoPtrById(cursor);
    if (record && record->Has("local_msg_id")) {
      from = record->GetUint64("local_msg_id");
    } else {
      TXLOG_ERROR << "<IM> local_msg_id is not found";
    }
  }
  params.Set(chat_key::kMsgId, from);
  if (!pages_.Begin()) {
    TXLOG_INFO << "<IM> getting more message";
    return false;
  }
  params.Set("meeting_id",
             template_type_ == kTemplateRecord ? message_conv_id_ : talvex_common::utils::GetStrMeetingId());
  messages->Invoke(kMethodGetHistory, &params, nullptr);
  return true;
}

void ChatHistoryListBaseViewModel::HandleGetMoreMsgList(Variant const* params) {
  if (params && params->Get(ChatHistoryListGetMoreMsgListFields_kStringMsgId).IsString()) {
    pages_.set_oldest_id(params->GetString(ChatHistoryListGetMoreMsgListFields_kStringMsgId));
  }
  TXLOG_INFO << "<IM> chatting msg_id:" << pages_.oldest_id();
  GetHistoryMessage(pages_.oldest_id());
}

void ChatHistoryListBaseViewModel::OnMessageListChanged(Variant const*) { GetHistoryMessage(""); }

void ChatHistoryListBaseViewModel::OnGetMessageList(Variant const* payload) {
  if (!payload || !payload->IsMap()) {
    TXLOG_ERROR << "<IM> message list: payload is not a map";
    return;
  }
  if (payload->GetString("meeting_id") != message_conv_id_) {
    TXLOG_INFO << "<IM> meeting_id is defferent.";
    return;
  }
  Variant const& ids = payload->Get("msg_id_list");
  // A failed page leaves the request flag set until the next answer.
  if (!ids.IsArray() || payload->GetInteger("result") != 0) return;
  const uint64_t from = payload->GetUint64("from_msg_id", 0);
  const int type = from != 0 ? kUpdateOlderPage : kUpdateReset;
  if (from == 0) pages_.DropHeld();
  Variant items = Array();
  if (ids.Empty()) {
    pages_.End();
    UpdateMessageList(items, type);
    TXLOG_INFO << "<IM> msg_id_list is empty, prop=" << kPropMessageList;
    return;
  }
  Variant::Array const& id_list = ids.AsArray();
  if (id_list.front().IsString()) {
    pages_.set_oldest_id(id_list.front().AsStr());
  } else {
    TXLOG_ERROR << "<IM> message not have local_msg_id";
  }
  auto first = talvex::ChatUtils::GetMsgInfoPtrById(id_list.front().AsStr());
  time_tips_.StartPage(first ? first->GetUint64("message_time", 0) : 0);
  if (!time_tips_.has_newest()) {
    auto last = talvex::ChatUtils::GetMsgInfoPtrById(id_list.back().AsStr());
    if (last) time_tips_.set_newest(last->GetUint64("message_time", 0));
  }

  // Usable messages, oldest first.
  std::string anchor_found;
  bool anchor_missing = false;
  for (auto const& id : id_list) {
    if (!id.IsString()) continue;
    auto msg = talvex::ChatUtils::GetMsgInfoPtrById(id.AsStr());
    if (!msg || !IsShowMessage(*msg) || !IsInThisConversation(*msg)) continue;
    // 7 is a state of the client's own that the list never shows.
    const MessageStatus status = MessageRecord(*msg).status();
    if (ToInt(status) == 7 || status == MessageStatus::kDeleted) continue;
    AddMessage(*msg, items, true);
    if (pages_.anchor() != 0) {
      if (msg->GetUint64("local_msg_id") == pages_.anchor()) {
        TXLOG_INFO << "<IM> anchor_msg_id is found";
        anchor_found = id.AsStr();
        anchor_missing = false;
      } else if (anchor_found.empty()) {
        anchor_missing = true;
      }
    }
  }

  // One id beyond a page of 50 tells that older messages exist.
  const bool has_more = id_list.size() > 50;
  if (pages_.anchor() != 0 && has_more && anchor_missing) {
    pages_.End();
    pages_.HoldBack(items);
    GetHistoryMessage("");
    TXLOG_INFO << "<IM> auto load next page message";
    return;
  }
  pages_.AppendHeldTo(items);
  if (!items.Empty()) {
    if (!has_more) {
      // The top of the history opens with a tip.
      if (first && first->Has("message_time")) {
        Variant with_tip = Array();
        InsertTimeTip(first->GetUint64("message_time"), with_tip);
        for (auto const& item : items.AsArray()) with_tip.Add(item);
        items = std::move(with_tip);
      } else {
        TXLOG_ERROR << "<IM> message_time is not found";
      }
    }
    TXLOG_INFO << "<IM> get more message size=" << items.Size() << ",prop=" << kPropMessageList;
    UpdateMessageList(items, type);
    pages_.End();
    if (pages_.anchor() != 0) {
      Variant scroll = Map();
      scroll.Set(ChatHistoryListScrollToMessageFields_kStringScrollToMessageMsgId, anchor_found);
      SetPropValue(kPropScrollToMessage, std::move(scroll));
    }
  }
  pages_.set_anchor(0);
}

// --- sending an update -------------------------------------------------------------

void ChatHistoryListBaseViewModel::UpdateMessageList(Variant const& items, int type) {
  Variant update = Map();
  update.Set(ChatHistoryListMsgListFields_kIntegerMsgListUpdateType, type);
  update.Set(ChatHistoryListMsgListFields_kMsgListMsgList, items);
  SetPropValue(kPropMessageList, std::move(update));
  if (type == kUpdateAppend || type == kUpdateOlderPage || type == kUpdateReset) {
    RecordShownMessages(items, type);
  } else if (type == kUpdateRemoved) {
    DeleteShowMessage(items, type);
  }
}

void ChatHistoryListBaseViewModel::CallListRecord(uint32_t method, Variant const& ids) {
  auto lists = Host(kListRecordModel);
  if (!lists) return;
  Variant params = Map();
  params.Set("list_id", list_id_);
  params.Set("msg_id_list", ids);
  lists->Invoke(method, &params, nullptr);
}

void ChatHistoryListBaseViewModel::RecordShownMessages(Variant const& items, int type) {
  if (type == kUpdateReset) show_msg_ids_ = Array();
  Variant host_ids = Array();
  for (auto const& item : items.AsArray()) {
    const std::string id = ItemId(item);
    if (type == kUpdateAppend || type == kUpdateReset) host_ids.Add(id);
    show_msg_ids_.Add(id);
    if (type != kUpdateAppend) continue;
    auto msg = talvex::ChatUtils::GetMsgInfoPtrById(id);
    if (msg && (MessageRecord(*msg).is_from_self() || is_snap_bottom_)) {
      unread_.ClearCounts();
      SetPropValue(kPropSnapToBottom, nullptr);
    }
  }
  if (!host_ids.Empty()) CallListRecord(type == kUpdateAppend ? kListMethodAppend : kListMethodReset, host_ids);
}

void ChatHistoryListBaseViewModel::DeleteShowMessage(Variant const& items, int) {
  Variant host_ids = Array();
  for (auto const& item : items.AsArray()) {
    const std::string id = ItemId(item);
    host_ids.Add(id);
    auto& shown = show_msg_ids_.AsArray();
    auto it = std::find_if(shown.begin(), shown.end(), [&](Variant const& s) { return s.AsStr() == id; });
    if (it == shown.end()) continue;
    it = shown.erase(it);
    if (shown.empty() || it == shown.begin()) continue;
    if (it != shown.end()) {
      auto next = talvex::ChatUtils::GetMsgInfoPtrById(it->AsStr());
      if (!next) {
        TXLOG_ERROR << "<IM> message not found with msg_id=" << it->AsStr();
        continue;
      }
      // Only a following message protects the tip; a record without a kind does not.
      if (next->Has("chat_type") && !IsTip(*next)) continue;
    }
    // A tip left with nothing after it, or followed by another tip, goes too.
    auto before = std::prev(it);
    auto tip = talvex::ChatUtils::GetMsgInfoPtrById(before->AsStr());
    if (!tip || !IsTip(*tip)) continue;
    const std::string tip_id = before->AsStr();
    shown.erase(before);
    Variant tip_items = Array();
    tip_items.Add(BuildListItem(*tip));
    Variant update = Map();
    update.Set(ChatHistoryListMsgListFields_kIntegerMsgListUpdateType, kUpdateRemoved);
    update.Set(ChatHistoryListMsgListFields_kMsgListMsgList, tip_items);
    SetPropValue(kPropMessageList, std::move(update));
    host_ids.Add(tip_id);
  }
  CallListRecord(kListMethodRemove, host_ids);
}

// --- unread tip -----------------------------------------------------------------------

Variant ChatHistoryListBaseViewModel::TakePendingMessages() {
  Variant pending = std::move(pending_msg_list_);
  pending_msg_list_ = Array();
  return pending;
}

void ChatHistoryListBaseViewModel::CountUnread(std::string const& msg_id, ChatType chat_type) {
  unread_.Count(msg_id, chat_type);
}

void ChatHistoryListBaseViewModel::UpdateUnreadTip() {
  std::string text;
  const int unread = unread_.unread();
  if (unread >= 1) {
    if (unread_.mentions() < 1) {
      text = FormatString(kTextUnreadCount)
                 .Arg("msg_count", static_cast<int64_t>(std::min(unread, 99)))
                 .Arg("msg_marks", unread > 99 ? "+" : "")
                 .Str();
      if (unread == 1) talvex_common::utils::analytics::LogEvent(kEventTipExposure);
    } else {
      text = GetLocalizedString(kTextUnreadMention);
    }
  }
  Variant tip = Map();
  tip.Set(ChatHistoryListShowUnreadMsgTipFields_kIntegerShowUnreadMsgTipUnreadMsgCount, unread);
  tip.Set(ChatHistoryListShowUnreadMsgTipFields_kStringShowUnreadMsgTipUnreadMsgTips, text);
  SetPropValue(kPropUnreadTip, std::move(tip));
}

void ChatHistoryListBaseViewModel::HandleClickUnreadTip() {
  talvex_common::utils::analytics::LogEvent(kEventTipClick);
  if (unread_.mentions() < 1) {
    unread_.ClearCounts();
    SetPropValue(kPropSnapToBottom, nullptr);
    return;
  }
  Variant scroll = Map();
  scroll.Set(ChatHistoryListScrollToMessageFields_kStringScrollToMessageMsgId, unread_.JumpToMention());
  SetPropValue(kPropScrollToMessage, std::move(scroll));
  UpdateUnreadTip();
}

void ChatHistoryListBaseViewModel::HandleIsScrollBottom(Variant const* params) {
  if (!params || !params->IsMap() || !params->Get(ChatHistoryListIsScrollBottomFields_kBooleanIsSnapBottom).IsBool()) {
    TXLOG_ERROR << "<IM> scroll position: no snap flag";
    return;
  }
  is_snap_bottom_ = params->GetBoolean(ChatHistoryListIsScrollBottomFields_kBooleanIsSnapBottom);
  if (!is_snap_bottom_) return;
  unread_.Clear();
  UpdateUnreadTip();
}

// --- results and errors ---------------------------------------------------------------

void ChatHistoryListBaseViewModel::Toast(std::string const& text) { ShowToast(0, text, 2000, 0, "", ""); }

void ChatHistoryListBaseViewModel::OnToastMessage(Variant const* payload) {
  if (payload && payload->IsString()) Toast(payload->AsStr());
}

void ChatHistoryListBaseViewModel::OnSendMessageResult(Variant const* payload, bool* keep_going) {
  if (!payload || !payload->IsMap()) {
    TXLOG_ERROR << "<IM> send result: payload is not a map";
    return;
  }
  const int code = payload->GetInt32("result");
  if (code == 0) return;
  const std::string error_msg = payload->GetString("error_msg");
  const bool webinar = talvex_common::utils::webinar::IsMeetingWebinar();
  TXLOG_ERROR << "<IM> send message faild. " << payload->GetString("msg_id") << ", errCode=" << code
              << ", errMsg=" << error_msg << " is webinar=" << webinar;
  // The panel tells the user; lists below it keep quiet.
  if ((template_type_ == kTemplatePanel || template_type_ == kTemplateUnset) && keep_going) *keep_going = false;
  ShowSendError(code, payload->GetInt32("chat_type"), error_msg);
}

void ChatHistoryListBaseViewModel::ShowSendError(int code, int chat_type, std::string const& error_msg) {
  if (HandleSendError(code)) return;
  Toast(SendErrorText(code, chat_type, error_msg));
}

void ChatHistoryListBaseViewModel::OnMessageOperationResult(Variant const* payload) {
  if (!payload || !payload->IsMap()) {
    TXLOG_ERROR << "<IM> operation result: payload is not a map";
    return;
  }
  const int code = payload->GetInt32("result");
  if (code == 0) return;
  const int conv_type = payload->GetInt32("message_conv_type");
  const bool forbidden = (conv_type == ToInt(ConvType::kGroup) && code == 10031) ||
                         (conv_type == ToInt(ConvType::kPrivate) && code == 20016);
  Toast(forbidden ? GetLocalizedString(kTextOperationForbidden)
                  : GetLocalizedString(kTextOperationFailed) + std::to_string(code));
}

void ChatHistoryListBaseViewModel::OnGetShieldInfo(Variant const*) {
  Variant list = Array();
  for (auto const& id : show_msg_ids_.AsArray()) {
    auto msg = talvex::ChatUtils::GetMsgInfoPtrById(id.AsStr());
    if (!msg) continue;
    if (ToInt(MessageRecord(*msg).chat_type()) < 0) {
      TXLOG_INFO << "<IM> local message";
      continue;
    }
    Variant const& sender = msg->Get("msg_sender");
    Variant entry = Map();
    entry.Set(chat_key::kMsgId, id.AsStr());
    entry.Set("app_id", sender.GetString("app_id"));
    entry.Set("app_uid", sender.GetString("app_uid"));
    entry.Set(chat_key::kReceiverType, msg->Get("in_meeting_info").GetInt32(chat_key::kReceiverType, 0));
    entry.Set("message_server_time", msg->Get("message_server_time"));
    entry.Set("message_seq", msg->Get("message_seq"));
    entry.Set("message_rand", msg->Get("message_rand"));
    list.Add(std::move(entry));
  }
  auto shield = Host(kShieldModel);
  if (!shield) return;
  Variant params = Map();
  params.Set("msg_list", list);
  Variant result;
  shield->Invoke(kShieldMethodFilter, &params, &result);
  TXLOG_INFO << "<IM> remove msg list " << result.Get("shield_msg_list").Size();
  Variant const& shielded = result.Get("shield_msg_list");
  if (!shielded.IsArray() || shielded.Empty()) return;
  Variant items = Array();
  for (auto const& entry : shielded.AsArray()) {
    auto msg = talvex::ChatUtils::GetMsgInfoPtrById(entry.GetString(chat_key::kMsgId));
    if (msg) items.Add(BuildListItem(*msg));
  }
  if (!items.Empty()) UpdateMessageList(items, kUpdateRemoved);
}

void ChatHistoryListBaseViewModel::OnJoinComplete(Variant const* payload) {
  if (!payload || !payload->IsMap() || payload->GetInteger("result", -1) != 0) return;
  const std::string new_id = CurrentMainMeetingId();
  TXLOG_INFO << "<IM> join complete, old_meeting_id = " << meeting_id_ << ", new_meeting_id = " << new_id;
  if (new_id != meeting_id_) {
    meeting_id_ = new_id;
    UpdateMessageList(Array(), kUpdateReset);
  }
  OnJoinCompleted();
}

}  // namespace chat

namespace chat {

void ChatHistoryListBaseViewModel::HandleGetMimeData(Variant const* params) {
  if (!params || !params->IsArray()) {
    TXLOG_ERROR << "<IM> mime data wants an array of message ids";
    return;
  }
  SetPropValue(kPropMimeData, ClipboardEntries(*params));
}

}  // namespace chat
