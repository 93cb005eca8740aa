#include "chat/viewmodel/chat_menu_manager/chatting_menu_base_manager.h"

#include <QClipboard>
#include <QGuiApplication>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "chat/model/chat_message.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/member_provider.h"
#include "framework/meeting/member_utils.h"
#include "framework/module/app_module.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/ui_view_model.h"

namespace chat {

namespace {
namespace analytics = talvex_common::utils::analytics;
namespace webinar = talvex_common::utils::webinar;
namespace memberprovider = talvex_common::utils::memberprovider;

constexpr uint32_t kMethodChatKeyReady = 18;  // 524
constexpr uint32_t kMethodRecall = 65;        // 524
constexpr uint32_t kMethodDelete = 66;        // 524
constexpr uint32_t kMethodImGroupId = 45;     // 524
constexpr uint32_t kMethodAnyMember = 84;     // 508
constexpr uint32_t kMethodByUniqueId = 82;    // 508
constexpr uint32_t kMethodByAppIds = 47;      // 508
constexpr uint32_t kMethodKickOut = 60;       // 508 {user_id, allow_join}
constexpr uint32_t kMethodBlock = 2;          // 530
constexpr int kChatControlModel = 530;
constexpr int kReceiverBreakoutBroadcast = 8;
constexpr int kStatusSent = 2;

constexpr uint32_t kTextNoConnection = framework::NameId("chat.menu.no_connection");
constexpr uint32_t kTextDeleteTitle = framework::NameId("chat.menu.delete.title");
constexpr uint32_t kTextDeletePositive = framework::NameId("chat.menu.delete.positive");
constexpr uint32_t kTextDeleteNegative = framework::NameId("chat.menu.delete.negative");
constexpr uint32_t kTextBlockContent = framework::NameId("chat.menu.block.content");
constexpr uint32_t kTextBlockPositive = framework::NameId("chat.menu.block.positive");
constexpr uint32_t kTextBlockCheck = framework::NameId("chat.menu.block.check");
constexpr uint32_t kTextCancel = framework::NameId("chat.menu.delete.negative");
constexpr uint32_t kTextKickContent = framework::NameId("chat.menu.kick.content");
constexpr uint32_t kTextKickPositive = framework::NameId("chat.menu.kick.positive");
constexpr uint32_t kTextKickCheckMeeting = framework::NameId("chat.menu.kick.check_meeting");
constexpr uint32_t kTextKickCheckWebinar = framework::NameId("chat.menu.kick.check_webinar");

// A check box's answer: the Part's key, or the host's.
bool Checked(Variant const* data, char const* key, char const* host_key) {
  if (!data || !data->IsMap()) return false;
  return data->Has(key) ? data->GetBoolean(key) : data->GetBoolean(host_key);
}

std::string WebinarRole() {
  return talvex::ChatUtils::IsSelfHost() ? "1" : talvex::ChatUtils::IsSelfCoHost() ? "2" : "0";
}

std::string MessageTypeOf(int chat_type) { return std::to_string(chat_type); }

}  // namespace

ChattingMenuBaseManager::ChattingMenuBaseManager(std::weak_ptr<IChattingMenuManagerDelegate> delegate)
    : delegate_(std::move(delegate)) {
  static constexpr std::pair<MenuItemType, char const*> kTitles[] = {
      {MenuItemType::kRecall, "chat.menu.recall"},         {MenuItemType::kDelete, "chat.menu.delete"},
      {MenuItemType::kCopy, "chat.menu.copy"},             {MenuItemType::kBlockSender, "chat.menu.block"},
      {MenuItemType::kKickOut, "chat.menu.kick_out"},      {MenuItemType::kSaveImage, "chat.menu.save_image"},
      {MenuItemType::kCopyImage, "chat.menu.copy_image"},  {MenuItemType::kRetryUpload, "chat.menu.retry_upload"},
      {MenuItemType::kStopUpload, "chat.menu.stop_upload"}, {MenuItemType::kStopDownload, "chat.menu.stop_download"},
      {MenuItemType::kDownload, "chat.menu.download"},     {MenuItemType::kOpenFile, "chat.menu.open_file"},
      {MenuItemType::kOpenFolder, "chat.menu.open_folder"}, {MenuItemType::kSaveFileAs, "chat.menu.save_file_as"},
      {MenuItemType::kCopyFile, "chat.menu.copy_file"},    {MenuItemType::kPrivateChat, "chat.menu.private_chat"}};
  for (auto const& [type, name] : kTitles) type_title_map[ToInt(type)] = framework::NameId(name);
}

ChattingMenuBaseManager::~ChattingMenuBaseManager() {
  if (!subscribed_search_) return;
  if (auto provider = framework::module::GetAppModuleModel(memberprovider::kModelId)) {
    provider->Unsubscribe(memberprovider::kEventAllSearchUserList, framework::SubscriberId(this));
  }
}

bool ChattingMenuBaseManager::SetCurrentMessage(std::string const& msg_id) {
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(msg_id);
  if (!record) {
    TXLOG_WARN << "[chat menu] no message " << msg_id;
    return false;
  }
  SetCurrentMessageRecord(*record);
  return true;
}

void ChattingMenuBaseManager::SetCurrentMessageRecord(Variant record) {
  current_message_ = std::move(record);
  chat_type_ = current_message_.GetInt32(chat_key::kChatType, 0);
}

// --- the list ---------------------------------------------------------------------

bool ChattingMenuBaseManager::AddSubMenuItem(Variant& list, int type, bool enable) const {
  auto it = type_title_map.find(type);
  if (it == type_title_map.end()) {
    TXLOG_ERROR << "add sub menu item failed! item_type = " << type
                << " not exist in type_title_map! need check logic!";
    return false;
  }
  Variant item(base::variant::kVariantTypeMap);
  item.Set("type", type);
  item.Set("title", CallGetLocalizedString(it->second));
  item.Set("enable", enable);
  list.Add(std::move(item));
  return true;
}

void ChattingMenuBaseManager::AppendSubMenus(Variant const&, Variant& list) {
  if (IsCopyEnable()) AddSubMenuItem(list, ToInt(MenuItemType::kCopy), true);
  AddSubMenuItem(list, ToInt(MenuItemType::kDelete), true);
  if (IsBlockEnable()) AddSubMenuItem(list, ToInt(MenuItemType::kBlockSender), true);
  if (IsKickOutEnable() && IsKickoutUserExist()) AddSubMenuItem(list, ToInt(MenuItemType::kKickOut), true);
  if (IsRecallEnable()) AddSubMenuItem(list, ToInt(MenuItemType::kRecall), true);
}

bool ChattingMenuBaseManager::IsMenuListChanged(Variant const& old_list, Variant const& new_list) {
  return old_list != new_list;
}

void ChattingMenuBaseManager::UpdateMenuInfo(framework::UIViewModel*) {
  if (!current_message_.IsMap() || !current_message_.Has("is_from_self")) return;
  Variant list(base::variant::kVariantTypeArray);
  AppendSubMenus(current_message_, list);
  if (!IsMenuListChanged(menu_items_, list)) return;
  menu_items_ = list;
  CallSetPropValue(kPropChatMenuList, list);
}

// --- the rules --------------------------------------------------------------------

bool ChattingMenuBaseManager::CanOperate(Variant const& record) const {
  return !record.GetBoolean("message_is_online_msg", false);
}

bool ChattingMenuBaseManager::IsMsgFromSelf() const { return current_message_.GetBoolean("is_from_self"); }

bool ChattingMenuBaseManager::IsCopyEnable() const {
  return chat_type_ == ToInt(ChatType::kText) || chat_type_ == ToInt(ChatType::kFace) ||
         chat_type_ == ToInt(ChatType::kNotice) || chat_type_ == ToInt(ChatType::kMixed);
}

bool ChattingMenuBaseManager::IsRecallEnable() const {
  return CanOperate(current_message_) && !webinar::IsMeetingWebinar() &&
         !IsIgnoreRecallInBreakoutRoom(current_message_) && IsMsgFromSelf() && menu_scene_ != kSceneRecord &&
         current_message_.GetInt32("message_status") == kStatusSent && chat_type_ != ToInt(ChatType::kNotice) &&
         chat_type_ != ToInt(ChatType::kOpenApp);
}

bool ChattingMenuBaseManager::IsIgnoreRecallInBreakoutRoom(Variant const& record) const {
  const int receiver_type = record.Get("in_meeting_info").GetInt32("receiver_type", -1);
  const bool started = talvex_common::utils::breakoutroom::IsBreakoutRoomStarted();
  TXLOG_INFO << "is_breakout_room_started: " << started << " receiver_type: " << receiver_type;
  if (receiver_type == kReceiverBreakoutBroadcast) return !started;
  if (receiver_type == ToInt(ReceiverType::kEveryone)) {
    if (!CheckIsInMeetingIMGroup(record)) return true;
    return !started && talvex_common::utils::breakoutroom::IsInBreakoutRoomMeeting();
  }
  return false;
}

bool ChattingMenuBaseManager::CheckIsInMeetingIMGroup(Variant const& record) const {
  const std::string message_group = record.Get("in_meeting_info").GetString("group_id");
  const Variant answer = AskHostModel(kHostChatMessageModel, kMethodImGroupId, nullptr);
  const std::string meeting_group = answer.IsString() ? answer.AsStr() : std::string();
  if (message_group.empty()) {
    TXLOG_WARN << "message_group_id empty";
    return false;
  }
  if (meeting_group.empty()) {
    TXLOG_WARN << "meeting_group_id empty";
    return false;
  }
  const bool in_group = message_group == meeting_group;
  TXLOG_INFO << "message_group_id: " << message_group << " meeting_group_id: " << meeting_group
             << " is_in_group: " << in_group;
  return in_group;
}

bool ChattingMenuBaseManager::IsBlockEnable() const {
  Variant const& sender = current_message_.Get("msg_sender");
  return CanBlock(current_message_) && menu_scene_ == kSceneMeeting &&
         talvex_common::utils::member::IsSelfHostOrCoHost() && webinar::IsMeetingWebinar() && !IsMsgFromSelf() &&
         !sender.GetString("app_uid").empty() && sender.Has("role_type") &&
         current_message_.Get("in_meeting_info").GetInt32("receiver_type", -1) != ToInt(ReceiverType::kMember) &&
         chat_type_ != ToInt(ChatType::kNotice);
}

bool ChattingMenuBaseManager::IsUserHostOrCoHost(Variant const& sender, bool* found) const {
  Variant ask(base::variant::kVariantTypeMap);
  Variant member;
  const std::string unique_id = sender.GetString("unique_id");
  if (!unique_id.empty()) {
    ask.Set("unique_id", unique_id);
    member = AskHostModel(kHostMemberModel, kMethodByUniqueId, &ask);
  } else {
    ask.Set("app_uid", sender.GetString("app_uid"));
    ask.Set("app_id", sender.GetString("app_id"));
    member = AskHostModel(kHostMemberModel, kMethodByAppIds, &ask);
  }
  if (found) *found = member.IsMap();
  // A member who can't be found counts as a host: nobody is kicked blind.
  if (!member.IsMap()) return true;
  return member.GetBoolean("host") || member.GetBoolean("co_host");
}

bool ChattingMenuBaseManager::IsKickOutEnable() const {
  Variant const& sender = current_message_.Get("msg_sender");
  if (!CanKick(current_message_) || menu_scene_ != kSceneMeeting || sender.GetString("app_uid").empty() ||
      !sender.Has("role_type")) {
    return false;
  }
  bool found = false;
  const bool sender_is_host = IsUserHostOrCoHost(sender, &found);
  return talvex_common::utils::member::IsSelfHostOrCoHost() && !IsMsgFromSelf() && !sender_is_host &&
         (webinar::IsMeetingWebinar() || found) && chat_type_ != ToInt(ChatType::kNotice);
}

Variant ChattingMenuBaseManager::GetUserInfo(Variant const& sender) const {
  Variant ask(base::variant::kVariantTypeMap);
  const std::string unique_id = sender.GetString("unique_id");
  if (!unique_id.empty()) {
    ask.Set("unique_id", unique_id);
  } else {
    ask.Set("app_uid", sender.GetString("app_uid"));
    ask.Set("app_id", sender.GetString("app_id"));
  }
  Variant member = AskHostModel(kHostMemberModel, kMethodAnyMember, &ask);
  if (member.IsMap()) return member;
  if (kick_target_ && kick_target_->GetString("app_uid") == sender.GetString("app_uid") &&
      kick_target_->GetString("app_id") == sender.GetString("app_id")) {
    return *kick_target_;
  }
  return Variant();
}

bool ChattingMenuBaseManager::IsKickoutUserExist() const {
  if (!webinar::IsMeetingWebinar() || !talvex_common::utils::member::IsSelfHostOrCoHost()) return true;
  return GetUserInfo(current_message_.Get("msg_sender")).IsMap();
}

bool ChattingMenuBaseManager::IsChatKeyReady() const {
  return AskHostModel(kHostChatMessageModel, kMethodChatKeyReady, nullptr).AsBoolean();
}

// --- clicks -------------------------------------------------------------------------

void ChattingMenuBaseManager::HandleMenuItemClick(framework::UIViewModel* vm, int type) {
  if (HandleSubClassMenuItemClick(vm, type)) return;
  switch (static_cast<MenuItemType>(type)) {
    case MenuItemType::kRecall:
      HandleMenuItemClickForRecall(vm);
      break;
    case MenuItemType::kDelete:
      HandleMenuItemClickForDelete(vm);
      break;
    case MenuItemType::kCopy:
      HandleMenuItemClickForCopy(vm);
      break;
    case MenuItemType::kBlockSender:
      HandleMenuItemClickForShield(vm);
      break;
    case MenuItemType::kKickOut:
      HandleMenuItemClickForKickOut(vm);
      break;
    default:
      TXLOG_ERROR << "[chat menu] manager, handle menu item click failed! type = " << type;
      return;
  }
  OnMenuItemClickFinished();
}

void ChattingMenuBaseManager::HandleMenuItemClickForRecall(framework::UIViewModel* vm) {
  if (!IsChatKeyReady()) {
    if (vm) vm->ShowToast(0, CallGetLocalizedString(kTextNoConnection), 2000);
  } else if (current_message_.GetString(chat_key::kMsgId).empty()) {
    TXLOG_ERROR << "[chat menu] manager, recall message param is error!";
  } else {
    Variant msg_id(current_message_.GetString(chat_key::kMsgId));
    AskHostModel(kHostChatMessageModel, kMethodRecall, &msg_id);
    TXLOG_INFO << "[chat menu] manager, recall message. " << ", msgid=" << msg_id.AsStr();
    OnRecallMessageFinished();
  }
  analytics::LogEventWithProperty("meetingpage_impanel_null_message_recall_null_click", "message_type",
                                  MessageTypeOf(chat_type_));
}

void ChattingMenuBaseManager::HandleMenuItemClickForDelete(framework::UIViewModel* vm) {
  analytics::LogEventWithProperty("meetingpage_impanel_null_message_delete_null_click", "message_type",
                                  MessageTypeOf(chat_type_));
  if (!vm) return;
  const std::string msg_id = current_message_.GetString(chat_key::kMsgId);
  const int chat_type = chat_type_;
  std::weak_ptr<framework::ViewModel> alive = vm->shared_from_this();
  auto delegate = delegate_;
  framework::UIViewModel::AlertBuilder(vm)
      .SetTitle(CallGetLocalizedString(kTextDeleteTitle))
      .SetPositiveText(CallGetLocalizedString(kTextDeletePositive))
      .SetNegativeText(CallGetLocalizedString(kTextDeleteNegative))
      .SetInteractiveFunc([this, alive, delegate, msg_id, chat_type](long, int button, Variant*) {
        // Answered after the menu went: nothing to do.
        if (button != framework::kAlertButtonPositive || alive.expired() || delegate.expired()) return;
        TXLOG_INFO << "delete message. " << ", msgid=" << msg_id << ", chat_type = " << chat_type;
        Variant id(msg_id);
        AskHostModel(kHostChatMessageModel, kMethodDelete, &id);
        OnDeleteMessageFinished();
      })
      .Show();
}

void ChattingMenuBaseManager::HandleMenuItemClickForCopy(framework::UIViewModel*) {
  analytics::LogEvent("meetingpage_im_rightmenu_copy_null_null_null");
  if (!IsCopyEnable()) {
    TXLOG_INFO << "copy not enable";
    return;
  }
  Variant const& content = current_message_.Get("ui_msg_content");
  std::string text;
  if (chat_type_ == ToInt(ChatType::kMixed) || content.IsArray()) {
    if (!content.IsArray()) {
      TXLOG_ERROR << "copy message format not array ";
      return;
    }
    for (auto const& item : content.AsArray()) {
      text += item.GetInt32("item_type") == ToInt(ItemType::kEmoji) ? item.GetString("item_emoji_text")
                                                                     : item.GetString("item_content");
    }
  } else {
    if (!content.IsMap()) {
      TXLOG_ERROR << "copy message format not map ";
      return;
    }
    text = content.Has("item_emoji_text") ? content.GetString("item_emoji_text") : content.GetString("item_content");
  }
  QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

Variant ChattingMenuBaseManager::GetSenderInfo() const {
  Variant const& sender = current_message_.Get("msg_sender");
  Variant info(base::variant::kVariantTypeMap);
  for (char const* key : {"app_id", "app_uid", "av_uid"}) info.Set(key, sender.GetString(key));
  info.Set("instance_id", sender.GetInteger("instance_id", 1));
  info.Set("user_type", sender.GetInteger("user_type", 1));
  info.Set("group_id", current_message_.Get("in_meeting_info").GetString("group_id"));
  return info;
}

void ChattingMenuBaseManager::HandleMenuItemClickForShield(framework::UIViewModel* vm) {
  analytics::LogEvent("meetingpage_im_rightmenu_blockmessage_null_null_null");
  if (!vm) return;
  Variant const& sender = current_message_.Get("msg_sender");
  const std::string content = framework::StringFormatter(CallGetLocalizedString(kTextBlockContent))
                                  .Arg("nickname", sender.GetString("nickname"))
                                  .Arg("role_type", sender.GetInteger("role_type"))
                                  .Str();
  Variant params(base::variant::kVariantTypeMap);
  for (char const* key : {"message_seq", "message_server_time", "message_rand"}) {
    params.Set(key, current_message_.GetUint64(key));
  }
  params.Set("sender_info", GetSenderInfo());
  std::weak_ptr<framework::ViewModel> alive = vm->shared_from_this();
  framework::UIViewModel::AlertBuilder(vm)
      .SetType(2)
      .SetContent(content)
      .SetPositiveText(CallGetLocalizedString(kTextBlockPositive))
      .SetNegativeText(CallGetLocalizedString(kTextCancel))
      .setCheckStateText(CallGetLocalizedString(kTextBlockCheck))
      .setCheckState(false)
      .setCheckSecState(false)
      .SetInteractiveFunc([alive, params](long, int button, Variant* data) mutable {
        if (button != framework::kAlertButtonPositive || alive.expired()) return;
        if (!util::networkinfo::GetActiveNetworkInfo().available) {
          TXLOG_WARN << "network not connected";
          return;
        }
        if (!talvex_common::utils::member::IsSelfHostOrCoHost()) {
          TXLOG_WARN << "current user is not host";
          return;
        }
        const bool all = Checked(data, "checkbox_state", "check_state");
        params.Set("forbid", all);
        AskHostModel(kChatControlModel, kMethodBlock, &params);
        analytics::LogEventWithProperty("meetingpage_im_rightmenu_blockmessage_doublecheck_null_click",
                                        "webinar_role", WebinarRole());
        if (all) {
          analytics::LogEventWithProperty(
              "meetingpage_im_rightmenu_blockmessage_doublecheck_null_checkedblockallmessages", "webinar_role",
              WebinarRole());
        }
      })
      .Show();
}

void ChattingMenuBaseManager::HandleMenuItemClickForKickOut(framework::UIViewModel* vm) {
  Variant const& sender = current_message_.Get("msg_sender");
  if (webinar::IsMeetingWebinar()) {
    Variant member = AskHostModel(kHostMemberModel, kMethodAnyMember, &sender);
    if (!member.IsMap()) {
      if (vm) pending_kick_ = vm->shared_from_this();
      pending_kick_sender_ = sender;
      GetAudienceByNickNameInWebinar(Variant::Map{{"origin_message", sender}});
      return;
    }
    KickoutToastShow(vm, member);
    return;
  }
  Variant member = GetUserInfo(sender);
  if (!member.IsMap()) {
    TXLOG_WARN << "[chat menu] kick out: the member is gone";
    return;
  }
  KickoutToastShow(vm, member);
}

void ChattingMenuBaseManager::GetAudienceByNickNameInWebinar(Variant const& params) {
  Variant const& origin = params.Get("origin_message");
  if (!origin.IsMap()) {
    TXLOG_WARN << "no origin message";
    return;
  }
  const std::string nickname = origin.GetString("nickname");
  if (nickname.empty()) {
    TXLOG_WARN << "no nick name";
    return;
  }
  auto provider = framework::module::GetAppModuleModel(memberprovider::kModelId);
  if (!provider) {
    TXLOG_WARN << "[chat menu] no member provider for the attendee search";
    return;
  }
  if (!subscribed_search_) {
    subscribed_search_ = true;
    provider->Subscribe(memberprovider::kEventAllSearchUserList, framework::SubscriberId(this),
                        std::make_shared<framework::EventHandler>(
                            [this](Variant const* reply) { OnEventUpdateAllSearchUserList(reply); }));
  }
  Variant ask = Variant::Map{{"provider_id", memberprovider::kAttendeeMembersForImProvider}, {"search_str", nickname}};
  provider->Invoke(memberprovider::kMethodSearchAll, &ask, nullptr);
}

void ChattingMenuBaseManager::OnEventUpdateAllSearchUserList(Variant const* params) {
  if (!params) {
    TXLOG_WARN << "params is null";
    return;
  }
  if (!params->IsArray()) {
    TXLOG_WARN << "params is not array";
    return;
  }
  Variant const& sender = pending_kick_sender_;
  for (auto const& section : params->AsArray()) {
    for (auto const& user : section.Get("user_list").AsArray()) {
      // The same name is not enough: the ids must be the sender's too.
      if (!user.IsMap() || user.GetString("nickname") != sender.GetString("nickname") ||
          user.GetString("app_uid") != sender.GetString("app_uid") ||
          user.GetString("app_id") != sender.GetString("app_id")) {
        continue;
      }
      kick_target_ = user;
      break;
    }
  }
  auto vm = std::dynamic_pointer_cast<framework::UIViewModel>(pending_kick_.lock());
  pending_kick_.reset();
  if (!vm) return;
  if (!kick_target_ || kick_target_->GetString("app_uid") != sender.GetString("app_uid")) {
    TXLOG_WARN << "[chat menu] kick out: no attendee " << sender.GetString("nickname") << " found";
    return;
  }
  KickoutToastShow(vm.get(), *kick_target_);
}

void ChattingMenuBaseManager::KickoutToastShow(framework::UIViewModel* vm, Variant const& member) {
  analytics::LogEvent("im_null_null_out_null_null_click");
  if (!vm) return;
  const std::string user_id = member.GetString("user_id");
  std::weak_ptr<framework::ViewModel> alive = vm->shared_from_this();
  framework::UIViewModel::AlertBuilder(vm)
      .SetContent(framework::StringFormatter(CallGetLocalizedString(kTextKickContent))
                      .Arg("nickname", member.GetString("nickname"))
                      .Str())
      .SetPositiveText(CallGetLocalizedString(kTextKickPositive))
      .SetNegativeText(CallGetLocalizedString(kTextCancel))
      .setCheckStateText(CallGetLocalizedString(webinar::IsMeetingWebinar() ? kTextKickCheckWebinar
                                                                            : kTextKickCheckMeeting))
      .setCheckState(false)
      .SetInteractiveFunc([alive, user_id](long, int button, Variant* data) {
        if (button != framework::kAlertButtonPositive || alive.expired()) return;
        const bool checked = Checked(data, "checkbox_state", "check_state");
        TXLOG_INFO << "kickout " << user_id << ", allow_join=" << !checked;
        Variant params = Variant::Map{{"user_id", user_id}, {"allow_join", !checked}};
        AskHostModel(kHostMemberModel, kMethodKickOut, &params);
        analytics::LogEvent("im_null_null_outsuccess_null_null_click");
      })
      .Show();
}

// --- the delegate ---------------------------------------------------------------------

void ChattingMenuBaseManager::CallSetPropValue(uint32_t prop, Variant const& value) {
  auto delegate = delegate_.lock();
  if (!delegate) {
    TXLOG_ERROR << "CallSetPropValue" << "[chat menu] manager, call failed! delegate nullptr!";
    return;
  }
  delegate->SetMenuPropValue(prop, value);
}

void ChattingMenuBaseManager::CallSetPropValueForNullptr(uint32_t prop) {
  auto delegate = delegate_.lock();
  if (!delegate) {
    TXLOG_ERROR << "CallSetPropValueForNullptr" << "[chat menu] manager, call failed! delegate nullptr!";
    return;
  }
  delegate->SetMenuPropValueForNullptr(prop);
}

void ChattingMenuBaseManager::CallDisposeAlertAll() {
  auto delegate = delegate_.lock();
  if (!delegate) {
    TXLOG_ERROR << "CallDisposeAlertAll" << "[chat menu] manager, call failed! delegate nullptr!";
    return;
  }
  delegate->DisposeMenuAlerts();
}

std::string ChattingMenuBaseManager::CallGetLocalizedString(uint32_t id) const {
  auto delegate = delegate_.lock();
  if (!delegate) {
    TXLOG_ERROR << "CallGetLocalizedString" << "[chat menu] manager, call failed! delegate nullptr!" << " name = " << id;
    return {};
  }
  return delegate->GetMenuLocalizedString(id);
}

void ChattingMenuBaseManager::CallNavigateToFilePath(std::string const& path) {
  auto delegate = delegate_.lock();
  if (!delegate) {
    TXLOG_ERROR << "CallNavigateToFilePath" << "[chat menu] manager, call failed! delegate nullptr!";
    return;
  }
  delegate->NavigateToMenuFilePath(path);
}

}  // namespace chat
