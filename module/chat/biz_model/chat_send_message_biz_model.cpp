#include "chat/biz_model/chat_send_message_biz_model.h"

#include <map>
#include <memory>
#include <set>

#include "base/analytics/analytics.h"
#include "base/file/file_copyer.h"
#include "base/log/log.h"
#include "base/util/file_util.h"
#include "base/util/string_util.h"
#include "chat/biz_model/chat_biz_model.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/util/chat_strings.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_file_utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/config/configure_service.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/member_utils.h"
#include "framework/meeting/private_chat_record.h"
#include "framework/module/app_module.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"
#include "chat/model/chat_message.h"

namespace TypedBizModel {
namespace ChatSendMessage {
ModelImpl::ModelImpl(int type) : framework::ModelImpl(type) {
  OnMethod(kSendTextMessage,
           [this](Variant const* params, Variant* result) { return InvokeSendTextMessage(params, result); });
  OnMethod(kSendImageMessage,
           [this](Variant const* params, Variant* result) { return InvokeSendImageMessage(params, result); });
  OnMethod(kSendFileMessage,
           [this](Variant const* params, Variant* result) { return InvokeSendFileMessage(params, result); });
}
}  // namespace ChatSendMessage
}  // namespace TypedBizModel

namespace chat {

namespace {
namespace analytics = talvex_common::utils::analytics;
namespace privatechat = talvex_common::utils::privatechatrecord;
namespace member = talvex_common::utils::member;

constexpr uint32_t kMixedSendEvent = 34;
constexpr int kMixedSendPriority = 102;
constexpr uint32_t kFileMethodCheck = 14;
constexpr size_t kMaxMixedTextLength = 3000;
constexpr int kItemTypeText = 0;
constexpr int kItemTypeImage = 3;
constexpr int kDefaultTemplateType = 2;

bool IsPrivateReceiver(int receiver_type) {
  return receiver_type == ToInt(ReceiverType::kMember) || receiver_type == ToInt(ReceiverType::kWaitingRoomMember) ||
         receiver_type == ToInt(ReceiverType::kWaitingRoomListMember);
}

std::string Text(uint32_t id) { return talvex_common::utils::GetLocalizedString(id); }

bool ConfigBool(char const* section, char const* key, bool def) {
  const Variant v = talvex_common::utils::QueryConfigureService(section, key, Variant(def));
  return v.IsBool() ? v.AsBoolean() : def;
}

int TemplateTypeOf(Variant const& params) {
  Variant const& t = params.Get(chat_key::kTemplateType);
  return t.IsInteger() ? t.AsInt32() : kDefaultTemplateType;
}

bool IsBlank(char c) { return c == ' ' || c == '\n' || c == '\r'; }

std::string FileNameOf(std::string const& path) {
  std::string name;
  util::file::GetFileFullName(path, name);
  return name;
}
}  // namespace

ChatSendMessageBizModel::ChatSendMessageBizModel(framework::module::ModuleRuntime* runtime)
    : TypedBizModel::ChatSendMessage::ModelImpl(kChatSendMessageBizModelId),
      runtime_(runtime),
      alive_(std::make_shared<bool>(true)) {}

ChatSendMessageBizModel::~ChatSendMessageBizModel() { *alive_ = false; }

void ChatSendMessageBizModel::Init() {
  TypedBizModel::ChatSendMessage::ModelImpl::Init();
  auto messages = std::dynamic_pointer_cast<framework::PriorityModel>(
      framework::module::GetAppModuleModel(kHostChatMessageModel));
  if (!messages) {
    TXLOG_WARN << "<IM> no message model; mixed sends are not taken";
    return;
  }
  messages->SubscribePriority(kMixedSendEvent, kMixedSendPriority, framework::SubscriberId(this),
                              std::make_shared<framework::PriorityEventHandler>(
                                  [this](Variant const* items, bool&) { SendMixedMessage(items); }));
}

void ChatSendMessageBizModel::UnInit() {
  if (auto messages = std::dynamic_pointer_cast<framework::PriorityModel>(
          framework::module::GetAppModuleModel(kHostChatMessageModel))) {
    messages->UnsubscribePriority(kMixedSendEvent, framework::SubscriberId(this));
  }
  mixed_queue_.clear();
  TypedBizModel::ChatSendMessage::ModelImpl::UnInit();
}

void ChatSendMessageBizModel::Refuse(std::string const& text) {
  Variant payload(text);
  FireEvent(kEventSendRefused, &payload);
}

void ChatSendMessageBizModel::RefuseById(uint32_t text_id) { Refuse(Text(text_id)); }

void ChatSendMessageBizModel::ReportSendToWaitingRoom() {
  if (talvex::ChatUtils::IsSelfHost() || talvex::ChatUtils::IsSelfCoHost()) {
    const int type = privatechat::GetChatReceiverType(privatechat::GetPrivateChatUserInfo());
    if (type == ToInt(ReceiverType::kWaitingRoom)) {
      analytics::LogEventWithProperty("e#im#im_send_towaitingroom#click", "to_type", "1");
    } else if (type == ToInt(ReceiverType::kWaitingRoomMember)) {
      analytics::LogEventWithProperty("e#im#im_send_towaitingroom#click", "to_type", "0");
    }
  } else if (talvex::ChatUtils::IsWaitingRoom()) {
    analytics::LogEvent("e#waitingroom#im_send#click");
  }
}

bool ChatSendMessageBizModel::CheckReminderBeforeSend(Variant const& params, int send_type) {
  auto pending = InvokeChatBizModel(runtime_, TypedBizModel::Chat::ModelImpl::kHasReminder);
  if (!pending || !pending->AsBoolean()) return false;
  const int type = privatechat::GetChatReceiverType(privatechat::GetPrivateChatUserInfo());
  if (type == ToInt(ReceiverType::kEveryone) || type == ToInt(ReceiverType::kWebinarEveryone)) {
    Variant payload(base::variant::kVariantTypeMap);
    payload.Set("message_info", params);
    payload.Set("send_type", send_type);
    FireEvent(kEventSendReminder, &payload);
    return true;
  }
  Variant none("");
  InvokeChatBizModel(runtime_, TypedBizModel::Chat::ModelImpl::kSetReminderMsgId, &none);
  return false;
}

bool ChatSendMessageBizModel::PostToMessageModel(uint32_t method, Variant const& send, char const* what,
                                                 std::string* msg_id) {
  auto messages = framework::module::GetAppModuleModel(kHostChatMessageModel);
  if (!messages) {
    TXLOG_ERROR << "<IM> no message model, " << what << " not sent";
    return false;
  }
  Variant id;
  messages->Invoke(method, &send, &id);
  *msg_id = id.IsString() ? id.AsStr() : std::string();
  return true;
}

bool ChatSendMessageBizModel::CheckAuthorizeBeforeSendAction() {
  const Variant receiver = privatechat::GetPrivateChatUserInfo();
  const std::string app_uid = receiver.GetString("app_uid");
  if (app_uid.empty()) return true;
  const int type = privatechat::GetChatReceiverType(receiver);
  const std::string user_id = receiver.GetString("user_id");
  Variant found;
  auto match = [&](Variant const& m) {
    const bool same = user_id.empty() ? m.GetString("app_uid") == app_uid : m.GetString("user_id") == user_id;
    if (same) found = m;
    return same;
  };

  if (type == ToInt(ReceiverType::kWaitingRoomMember) || type == ToInt(ReceiverType::kWaitingRoomListMember)) {
    Variant list;
    if (auto members = framework::module::GetAppModuleModel(kHostMemberModel)) {
      members->Invoke(type == ToInt(ReceiverType::kWaitingRoomMember) ? kMemberMethodWaitingRoomList : kMemberMethodWaitingRoomMembers, nullptr, &list);
    }
    if (!member::EnumInRoomUsers(list, match)) {
      RefuseById(kTextSendMemberLeft);
      return false;
    }
    const int64_t instance = found.GetInteger("instance_id");
    if (found.GetInteger("user_type") == 1 && instance != 5 && instance != 8) return true;
    RefuseById(kTextSendMemberCannotReceive);
    return false;
  }

  const bool in_meeting = member::EnumInMeetingUsers(member::GetUserIndexList(0), match);
  if (!talvex_common::utils::webinar::IsAttendeeUser(receiver) && !in_meeting) {
    RefuseById(talvex_common::utils::webinar::IsMeetingWebinar() ? kTextSendMemberLeftWebinar : kTextSendMemberLeft);
    return false;
  }
  // An attendee may be missing from the meeting's list and still be
  // written to; only a member that was found is judged.
  if (!in_meeting) return true;
  if (found.GetInteger("user_type") != 1 || found.GetInteger("instance_id") == 5) {
    RefuseById(kTextSendMemberCannotReceive);
    return false;
  }
  if (found.GetInteger("instance_id") == 8) {
    RefuseById(kTextSendMemberRoomSystem);
    return false;
  }
  return true;
}

ChatSendMessageBizModel::Conversation ChatSendMessageBizModel::CurrentConversation(Variant const& receiver) const {
  Conversation conv;
  conv.receiver_type = privatechat::GetChatReceiverType(receiver);
  if (!IsPrivateReceiver(conv.receiver_type)) return conv;
  conv.conv_type = ToInt(ConvType::kPrivate);
  if (auto chats = framework::module::GetAppModuleModel(kHostPrivateChatModel)) {
    Variant id;
    if (chats->Invoke(3, &receiver, &id) && id.IsString()) conv.conv_id = id.AsStr();
  }
  return conv;
}

void ChatSendMessageBizModel::ReportWebinarSend(Variant const& receiver, int receiver_type) {
  if (!talvex_common::utils::webinar::IsMeetingWebinar()) return;
  const bool to_attendee = talvex_common::utils::webinar::IsAttendeeUser(receiver);
  const char* sendto = nullptr;
  if (receiver_type == ToInt(ReceiverType::kMember)) {
    sendto = "3";
  } else if (receiver_type == ToInt(ReceiverType::kWebinarEveryone)) {
    sendto = "1";
  } else if (receiver_type == ToInt(ReceiverType::kWebinarGroup)) {
    sendto = "2";
  }
  if (sendto) {
    analytics::LogEventWith2Properties("meetingpage_im_null_sendto_null_null_click", "sendto", sendto,
                                       "webinar_role", to_attendee ? "2" : "1");
  }
  if (to_attendee) {
    if (talvex::ChatUtils::IsSelfHost()) {
      analytics::LogEventWithProperty("meetingpage_im_null_send_null_null_click", "webinar_role", "1");
    } else if (talvex::ChatUtils::IsSelfCoHost()) {
      analytics::LogEventWithProperty("meetingpage_im_null_send_null_null_click", "webinar_role", "2");
    }
  }
}

void ChatSendMessageBizModel::ReportSend(char const* message_type, Conversation const& conv,
                                         Variant const& receiver) {
  auto const& self = talvex::MeetingContext::Current();
  analytics::LogEventWithProperties(
      "im_null_null_send_null_null_im",
      {{"message_type", message_type},
       {"meeting_type", talvex_common::utils::webinar::IsMeetingWebinar() ? "1" : "0"},
       {"chat_scale", conv.receiver_type == ToInt(ReceiverType::kMember) ? "1" : "0"},
       {"screen_type", talvex_common::utils::inmeeting::IsInScreenShareMode() ? "0" : "1"},
       {"chat_private", conv.conv_type == ToInt(ConvType::kPrivate) ? "1" : "0"},
       {"app_id", self.self_app_id},
       {"to_appid", receiver.GetString("app_id")},
       {"app_uid", self.self_app_uid},
       {"to_uid", receiver.GetString("app_uid")}});
}

bool ChatSendMessageBizModel::InvokeSendTextMessage(Variant const* params, Variant* result) {
  TXLOG_INFO << "<IM> send text, params=" << framework::VariantToString(params);
  ReportSendToWaitingRoom();
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "<IM> send text: params is not a map";
    return false;
  }
  if (CheckReminderBeforeSend(*params, 0)) return true;
  std::string text = params->GetString(kSendFieldText);
  if (text.empty()) {
    TXLOG_INFO << "<IM> msg text is empty!";
    return false;
  }
  size_t begin = 0;
  size_t end = text.size();
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
  text = text.substr(begin, end - begin);
  if (text.empty()) {
    // A blank piece of a mixed message is dropped without a word.
    if (!params->GetBoolean("is_mix_msg")) RefuseById(kTextSendNothing);
    return false;
  }
  const int template_type = TemplateTypeOf(*params);
  if ((template_type == ToInt(TemplateType::kBullet) || template_type == ToInt(TemplateType::kPanel)) && !CheckAuthorizeBeforeSendAction()) {
    TXLOG_INFO << "<IM> check authorize fail!";
    return false;
  }
  HandleSendTextMessage(text, template_type);
  return true;
}

std::optional<ChatSendMessageBizModel::SendRequest> ChatSendMessageBizModel::BeginSend() {
  SendRequest request;
  request.receiver = privatechat::GetPrivateChatUserInfo();
  request.receiver_type = privatechat::GetChatReceiverType(request.receiver);
  ReportWebinarSend(request.receiver, request.receiver_type);
  if (request.receiver_type == ToInt(ReceiverType::kNone)) {
    TXLOG_ERROR << "invalid receiver type";
    return std::nullopt;
  }
  request.conv = CurrentConversation(request.receiver);
  request.params = Variant(base::variant::kVariantTypeMap);
  if (request.conv.conv_type == ToInt(ConvType::kPrivate)) request.params.Set("conv_id", request.conv.conv_id);
  request.params.Set(chat_key::kConvType, request.conv.conv_type);
  request.params.Set(chat_key::kReceiverType, request.receiver_type);
  return request;
}

// Pictures and files are staged in folders named by the millisecond.
std::string ChatSendMessageBizModel::UniqueTarget(std::string const& dir, std::string const& name) {
  std::string target = util::file::MakeFilePath(dir, name);
  std::string stem = name;
  std::string ext;
  const auto dot = name.rfind('.');
  if (dot != std::string::npos && dot > 0) {
    stem = name.substr(0, dot);
    ext = name.substr(dot);
  }
  for (int n = 1; reserved_targets_.count(target) || util::file::IsFileExist(target); ++n) {
    target = util::file::MakeFilePath(dir, stem + " (" + std::to_string(n) + ")" + ext);
  }
  reserved_targets_.insert(target);
  return target;
}

void ChatSendMessageBizModel::HandleSendTextMessage(std::string const& text, int template_type) {
  std::optional<SendRequest> request = BeginSend();
  if (!request) return;
  const int type = request->receiver_type;
  Variant& send = request->params;
  send.Set("text_elem_content", text);
  // The surface a text is sent from: the overlay, the panel, or another.
  const bool from_surface = template_type == ToInt(TemplateType::kBullet) || template_type == ToInt(TemplateType::kPanel);
  send.Set("message_send_from_type", from_surface ? template_type : -1);
  uint32_t method = 7;
  if (type == ToInt(ReceiverType::kWaitingRoom)) {
    method = 23;
  } else if (type == ToInt(ReceiverType::kWebinarGroup) && talvex_common::utils::webinar::SelfIsAttendee()) {
    method = 40;
  }
  std::string msg_id;
  if (!PostToMessageModel(method, send, "text", &msg_id)) return;
  TXLOG_INFO << "<IM> send message conv_type = " << request->conv.conv_type
             << ", content=" << framework::VariantToString(&send);
  ReportSend("1", request->conv, request->receiver);
  if (template_type == ToInt(TemplateType::kBullet)) {
    auto const& self = talvex::MeetingContext::Current();
    analytics::LogEventWithProperties(
        "bullet_vm_send_text_msg",
        {{"meeting_type_flags", std::to_string(self.meeting_type_flags)},
         {"meeting_type", talvex_common::utils::webinar::IsMeetingWebinar() ? "1" : "0"},
         {"chat_scale", type == ToInt(ReceiverType::kMember) ? "1" : "0"},
         {"screen_type", talvex_common::utils::inmeeting::IsInScreenShareMode() ? "0" : "1"},
         {"chat_private", request->conv.conv_type == ToInt(ConvType::kPrivate) ? "1" : "0"},
         {"app_id", self.self_app_id},
         {"to_appid", request->receiver.GetString("app_id")},
         {"app_uid", self.self_app_uid},
         {"to_uid", request->receiver.GetString("app_uid")},
         {"task_id", msg_id}});
  }
}

bool ChatSendMessageBizModel::IsPrivateChatCanSendImage(bool notify) {
  if (privatechat::IsCanSendImageMessage()) return true;
  if (notify) RefuseById(kTextSendPrivateNoImage);
  return false;
}

bool ChatSendMessageBizModel::IsEnterpriseCanSendImageMessage(bool notify) {
  const bool can = ConfigBool("meeting-ability", "account_setting_send_pic", true);
  TXLOG_INFO << (can ? "<IM> can" : "<IM> can not") << " send image";
  if (!can && notify) RefuseById(kTextSendEnterpriseNoImage);
  return can;
}

bool ChatSendMessageBizModel::IsEnterpriseCanSendFileMessage() {
  const bool can = ConfigBool("meeting-ability", "account_setting_send_file", true);
  TXLOG_INFO << (can ? "<IM> can" : "<IM> can not") << " send file";
  if (!can) RefuseById(kTextSendEnterpriseNoFile);
  return can;
}

bool ChatSendMessageBizModel::CheckSendImage(std::string const& path, Variant const& params) {
  const int template_type = TemplateTypeOf(params);
  if ((template_type == ToInt(TemplateType::kBullet) || template_type == ToInt(TemplateType::kPanel)) && !CheckAuthorizeBeforeSendAction()) {
    TXLOG_INFO << "<IM> check authorize fail!";
    return false;
  }
  if (talvex::ChatUtils::IsWebp(path)) {
    RefuseById(kTextSendWebp);
    TXLOG_ERROR << "<IM> image file is webp format!";
    return false;
  }
  if (!util::file::IsFileExist(path)) {
    RefuseById(kTextSendImageMissing);
    TXLOG_INFO << "<IM> image file is not exist!";
    return false;
  }
  return true;
}

bool ChatSendMessageBizModel::InvokeSendImageMessage(Variant const* params, Variant* result) {
  bool copying = false;
  return SendImage(params, nullptr, &copying);
}

bool ChatSendMessageBizModel::SendImage(Variant const* params, std::function<void()> after_copy, bool* copying) {
  *copying = false;
  TXLOG_INFO << "<IM> send image, params=" << framework::VariantToString(params);
  ReportSendToWaitingRoom();
  if (!talvex::ChatUtils::IsMeetingSupportIMFileAndPicture()) {
    RefuseById(kTextSendNoFileAndPicture);
    return false;
  }
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "<IM> send image: params is not a map";
    return false;
  }
  const std::string source = params->GetString(kSendFieldImagePath);
  if (source.empty()) {
    TXLOG_ERROR << "<IM> send image: no path";
    return false;
  }
  if (!IsPrivateChatCanSendImage(true) || !IsEnterpriseCanSendImageMessage(true)) return false;
  if (CheckReminderBeforeSend(*params, 1)) return true;
  if (!CheckSendImage(source, *params)) return false;

  const int template_type = TemplateTypeOf(*params);
  const std::string dir = talvex::ChatUtils::MakeUniqueChatImageDirPath(talvex_common::utils::GetStrMeetingId());
  util::file::EnsureDirExist(dir);
  const std::string target = UniqueTarget(dir, FileNameOf(source));
  std::weak_ptr<bool> alive = alive_;
  const Variant held = *params;
  *copying = true;
  base::file::FileCopyer::FileCopy(
      source, target,
      [this, alive, held, target, template_type, after_copy](bool ok) {
        if (alive.expired()) return;
        if (ok) {
          HandleSendImageMessage(target, held, template_type);
        } else {
          TXLOG_ERROR << "<IM> image copy failed: " << target;
          RefuseById(kTextSendCopyFailed);
        }
        if (after_copy) after_copy();
      },
      base::threading::LooperThread::FileLooper(), base::threading::LooperThread::CurrentLooper());
  return true;
}

void ChatSendMessageBizModel::HandleSendImageMessage(std::string const& path, Variant const& params,
                                                     int template_type) {
  int64_t format = talvex::ChatUtils::GetImageFormat(path);
  if (params.Get(kSendFieldImageFormat).IsInteger()) format = params.GetInteger(kSendFieldImageFormat);
  std::optional<SendRequest> request = BeginSend();
  if (!request) return;
  Variant& send = request->params;
  send.Set("image_elem_orig_path", path);
  send.Set("image_elem_level", params.GetInt32(kSendFieldImageLevel, 0));
  send.Set("image_elem_format", format);
  std::string msg_id;
  if (!PostToMessageModel(request->receiver_type == ToInt(ReceiverType::kWaitingRoom) ? 31 : 30, send, "image", &msg_id)) return;
  TXLOG_INFO << "<IM> send message." << ", msgid=" << msg_id
             << " image_elem_orig_path =" << path;
  if (template_type == ToInt(TemplateType::kPanel)) ReportSend("2", request->conv, request->receiver);
}

bool ChatSendMessageBizModel::InvokeSendFileMessage(Variant const* params, Variant* result) {
  ReportSendToWaitingRoom();
  if (!talvex::ChatUtils::IsMeetingSupportIMFileAndPicture()) {
    RefuseById(kTextSendNoFileAndPicture);
    return false;
  }
  if (CheckReminderBeforeSend(params ? *params : Variant(), 2)) return true;
  Variant const& list = params ? params->Get("msg_file_paths") : Variant();
  if (!ConfigBool("chat", "send_file_enable", true)) {
    TXLOG_INFO << "<IM> not allow send file " << framework::VariantToString(&list);
    return false;
  }
  if (!params || !params->IsMap() || !params->Has("msg_file_paths") || !list.IsArray()) {
    TXLOG_ERROR << "<IM> [chat file] send file failed! params error!";
    return false;
  }
  if (!CheckAuthorizeBeforeSendAction() || !IsEnterpriseCanSendFileMessage()) return false;

  const Variant limit_value =
      talvex_common::utils::QueryConfigureService("chat", "send_file_max_concurrency", Variant(5));
  const int64_t limit = limit_value.IsInteger() ? limit_value.AsInteger() : 5;
  if (static_cast<int64_t>(list.Size()) > limit) {
    Refuse(talvex_common::utils::FormatString(kTextSendTooManyFiles).Arg("count", limit).Str());
    return false;
  }
  std::vector<std::string> paths;
  for (auto const& p : list.AsArray()) paths.push_back(p.IsString() ? p.AsStr() : std::string());
  std::vector<std::string> staged;
  if (!GenerateNewFilePath(staged, paths)) return false;

  const std::string meeting_id = talvex_common::utils::GetStrMeetingId();
  const Variant held = *params;
  std::weak_ptr<bool> alive = alive_;
  for (auto const& source : staged) {
    if (source.empty()) {
      TXLOG_ERROR << "<IM> [chat file] send path empty!";
      continue;
    }
    const std::string dir = MakeUniqueChatFileDirPath(meeting_id);
    util::file::EnsureDirExist(dir);
    const std::string target = UniqueTarget(dir, FileNameOf(source));
    base::file::FileCopyer::FileCopy(
        source, target,
        [this, alive, held, target](bool ok) {
          if (alive.expired()) return;
          if (!ok) {
            TXLOG_ERROR << "<IM> [chat file] copy failed: " << target;
            RefuseById(kTextSendCopyFailed);
            return;
          }
          HandleSendFileMessage(held, target);
        },
        base::threading::LooperThread::FileLooper(), base::threading::LooperThread::CurrentLooper());
  }
  return true;
}

bool ChatSendMessageBizModel::GenerateNewFilePath(std::vector<std::string>& paths_out,
                                                  std::vector<std::string> const& paths) {
  const bool plural = paths.size() >= 2;
  auto files = framework::module::GetAppModuleModel(kHostChatFileModel);
  for (auto const& path : paths) {
    if (path.empty()) {
      TXLOG_ERROR << "<IM> [chat file] send path empty!";
      continue;
    }
    std::string message;
    if (!CheckFileValidity(path, message)) {
      Refuse(message);
      return false;
    }
    Variant ask(base::variant::kVariantTypeMap);
    ask.Set("file_name", "");
    ask.Set("file_path", path);
    Variant checked;
    if (files) files->Invoke(kFileMethodCheck, &ask, &checked);
    const std::string checked_path = checked.Get("file_path").IsString() ? checked.GetString("file_path") : path;
    if (talvex::ChatFileUtils::GetFileLowerExtName(checked_path).empty()) {
      RefuseById(plural ? kTextSendNoExtensionPlural : kTextSendNoExtension);
      return false;
    }
    if (checked.GetBoolean("is_inhibit")) {
      RefuseById(plural ? kTextSendInhibitedPlural : kTextSendInhibited);
      return false;
    }
    int64_t length = 0;
    util::file::GetFileLength(path, length);
    if (length == 0) {
      RefuseById(kTextSendEmptyFile);
      return false;
    }
    auto found = std::find(paths_out.begin(), paths_out.end(), checked_path);
    if (found == paths_out.end()) {
      paths_out.push_back(checked_path);
    } else if (checked_path != path) {
      paths_out.push_back(path);
    } else {
      const auto index = found - paths_out.begin();
      paths_out.push_back(checked_path);
      paths_out[index] = path;
    }
  }
  return true;
}

void ChatSendMessageBizModel::HandleSendFileMessage(Variant const& params, std::string const& path) {
  int64_t size = 0;
  const bool exists = util::file::IsFileExist(path) && util::file::GetFileLength(path, size);
  TXLOG_INFO << "<IM> [chat file] send file path :" << path;
  TXLOG_INFO << "<IM> InvokeSendFileMessage -> file_path is " << path << " file_size is " << size;
  if (!exists || size == 0) {
    Refuse(talvex_common::utils::FormatString(kTextSendFileUnreadable).Arg("filename", FileNameOf(path)).Str());
    return;
  }
  const Variant receiver = privatechat::GetPrivateChatUserInfo();
  const Conversation conv = CurrentConversation(receiver);
  if (conv.receiver_type == ToInt(ReceiverType::kNone)) {
    TXLOG_ERROR << "invalid receiver type";
    return;
  }
  const std::string display_size = talvex::ChatFileUtils::DisplayFileSize(size);
  const std::string report_conv_type = conv.conv_type == ToInt(ConvType::kPrivate) ? "5" : "4";
  const std::string file_type = talvex::ChatFileUtils::GetFileLowerExtName(path);
  Variant send(base::variant::kVariantTypeMap);
  if (conv.conv_type == ToInt(ConvType::kPrivate)) send.Set("conv_id", conv.conv_id);
  send.Set(chat_key::kConvType, conv.conv_type);
  send.Set(chat_key::kReceiverType, conv.receiver_type);
  send.Set("file_elem_file_path", path);
  send.Set("file_size", display_size);
  std::string action_source;
  if (params.Get("action_source").IsInteger()) {
    action_source = std::to_string(params.GetInteger("action_source"));
    send.Set("action_source", action_source);
  }
  send.Set("report_conv_type", report_conv_type);
  send.Set("report_file_type", file_type);
  std::string msg_id;
  if (!PostToMessageModel(conv.receiver_type == ToInt(ReceiverType::kWaitingRoom) ? 57 : 52, send, "file", &msg_id)) return;
  TXLOG_INFO << "<IM> [chat file] send file msg id :" << msg_id
             << ", path = " << path;
  analytics::LogEventWithProperties("inmeeting_im_null_file_null_null_send", {{"action_source", action_source},
                                                                             {"report_conv_type", report_conv_type},
                                                                             {"report_file_type", file_type},
                                                                             {"file_size", display_size}});
}

void ChatSendMessageBizModel::SendMixedMessage(Variant const* items) {
  TXLOG_INFO << "<IM> send mixed message " << framework::VariantToString(items);
  if (!items || !items->IsArray()) {
    TXLOG_ERROR << "<IM> mixed message is not a list";
    return;
  }
  if (CheckReminderBeforeSend(*items, 3)) return;
  for (auto const& item : items->AsArray()) {
    if (item.GetInteger(kSendFieldItemType, -1) != kItemTypeImage) continue;
    if (!IsPrivateChatCanSendImage(true) || !IsEnterpriseCanSendImageMessage(true)) return;
  }
  for (auto const& item : items->AsArray()) {
    if (item.GetInteger(kSendFieldItemType, -1) != kItemTypeText) continue;
    if (::GetUtf8Length(item.GetString(kSendFieldText)) > kMaxMixedTextLength) {
      Refuse(framework::StringProvider::GetInstance()->GetString(kTextSendTextTooLong));
      return;
    }
  }
  size_t pieces = 0;
  for (auto const& item : items->AsArray()) {
    const int64_t type = item.GetInteger(kSendFieldItemType, -1);
    if (type == kItemTypeText || type == kItemTypeImage) {
      mixed_queue_.push_back(item);
      ++pieces;
    }
  }
  if (pieces == 0) {
    // Nothing went out: what the user typed stays in the box.
    TXLOG_WARN << "<IM> mixed message has nothing to send";
    return;
  }
  SendQueuedMixedPieces();
  FireEvent(kEventMixedSent, nullptr);
}

void ChatSendMessageBizModel::SendQueuedMixedPieces() {
  while (!mixed_copy_in_flight_ && !mixed_queue_.empty()) {
    Variant piece = std::move(mixed_queue_.front());
    mixed_queue_.pop_front();
    if (piece.GetInteger(kSendFieldItemType, -1) == kItemTypeText) {
      piece.Set("is_mix_msg", true);
      InvokeSendTextMessage(&piece, nullptr);
      continue;
    }
    // The text after a picture waits for it, so that the meeting reads the
    // pieces in the order they were written.
    SendImage(
        &piece,
        [this] {
          mixed_copy_in_flight_ = false;
          SendQueuedMixedPieces();
        },
        &mixed_copy_in_flight_);
  }
}

}  // namespace chat
