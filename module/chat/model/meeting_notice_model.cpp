#include "chat/model/meeting_notice_model.h"

#include "base/log/log.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/meeting_context.h"
#include "framework/module/app_module.h"
#include "framework/viewmodel/view_model.h"

namespace chat {

namespace {
constexpr uint32_t kMeetingMethodJoined = 3;
constexpr uint32_t kMemberMethodByUniqueId = 82;
constexpr uint32_t kMemberMethodByAppIds = 47;
constexpr int kNoticeMaxLength = 1000;
}  // namespace

MeetingNoticeModel::MeetingNoticeModel() : framework::ModelImpl(kMeetingNoticeModelId) {
  OnMethod(kGetNotice, [this](Variant const*, Variant* result) {
    if (result) *result = RecordMap();
    return true;
  });
  OnMethod(kReadNotice, [this](Variant const* params, Variant*) { return ReadNotice(params); });
  OnMethod(kModifyNotice, [this](Variant const* params, Variant*) { return ModifyNotice(params); });
  OnMethod(kGetHistoryNotice,
           [this](Variant const* params, Variant* result) { return GetHistoryNotice(params, result); });
}

MeetingNoticeModel::~MeetingNoticeModel() {
  if (auto* service = Service()) service->SetDelegate(nullptr);
}

talvexsdk::IMeetingNotice* MeetingNoticeModel::Service() {
  auto* meeting = talvexsdk::utils::service::GetMeetingService();
  return meeting ? meeting->GetMeetingNotice() : nullptr;
}

void MeetingNoticeModel::Init() {
  framework::ModelImpl::Init();
  const uint64_t self = framework::SubscriberId(this);
  if (auto meeting = framework::module::GetAppModuleModel(kHostMeetingModel)) {
    auto moved = std::make_shared<framework::EventHandler>([this](Variant const* p) { OnEventJoinedOrMoved(p); });
    meeting->Subscribe(kMeetingEventJoined, self, moved);
    meeting->Subscribe(kMeetingEventRoomChanged, self, moved);
    meeting->Subscribe(kMeetingEventLeft, self,
                       std::make_shared<framework::EventHandler>([this](Variant const* p) { OnEventLeft(p); }));
  }
  auto* service = Service();
  if (!service) {
    TXLOG_WARN << "[notice] no meeting service: the notice stays empty";
    return;
  }
  service->SetDelegate(this);
  if (AskHostModel(kHostMeetingModel, kMeetingMethodJoined, nullptr).AsBoolean()) FollowMeeting();
}

void MeetingNoticeModel::UnInit() {
  if (auto meeting = framework::module::GetAppModuleModel(kHostMeetingModel)) {
    meeting->Unsubscribe(framework::SubscriberId(this));
  }
  if (auto* service = Service()) service->SetDelegate(nullptr);
  framework::ModelImpl::UnInit();
}

void MeetingNoticeModel::FollowMeeting() {
  auto* service = Service();
  if (!service) return;
  // A breakout room reads the notice of its main meeting.
  service->SetMeetingId(talvex_common::utils::breakoutroom::GetMainMeetingId());
  service->RequestMeetingNotice();
}

void MeetingNoticeModel::OnEventJoinedOrMoved(Variant const* params) {
  if (params && params->IsMap() && params->GetInt32("result") != 0) return;
  FollowMeeting();
}

void MeetingNoticeModel::OnEventLeft(Variant const*) {
  record_ = talvexsdk::MeetingNoticeInfo();
  if (auto* service = Service()) service->SetMeetingId(0);
}

// --- the service's answers ----------------------------------------------------------

void MeetingNoticeModel::OnMeetingNoticeUpdated(talvexsdk::MeetingNoticeInfo const& info) {
  record_ = info;
  FireEvent(kEventNoticeChanged, RecordMap());
}

void MeetingNoticeModel::OnModifyMeetingNoticeComplete(int ret, std::string const& msg,
                                                       talvexsdk::MeetingNoticeInfo const& info) {
  if (ret == 0) {
    record_ = info;
    FireEvent(kEventNoticeChanged, RecordMap());
    FireEvent(kEventReadMark, Variant(record_.is_read));
  }
  FireEvent(kEventModifyFinished, Variant::Map{{"code", ret}, {"err_msg", msg}});
}

void MeetingNoticeModel::OnReadMeetingNoticeComplete(int ret, std::string const& msg) {
  if (ret != 0) TXLOG_WARN << " read notice failed. code: " << ret << ", err_msg: " << msg;
}

// --- calls ---------------------------------------------------------------------------

bool MeetingNoticeModel::ReadNotice(Variant const* params) {
  auto* service = Service();
  if (!service || !params || !params->IsInteger()) return false;
  if (service->ReadMeetingNotice(params->AsUint64()) != 0) return false;
  record_.is_read = true;
  FireEvent(kEventReadMark, Variant(true));
  return true;
}

bool MeetingNoticeModel::ModifyNotice(Variant const* params) {
  auto* service = Service();
  if (!service || !params || !params->IsString()) return false;
  talvexsdk::MeetingNoticeInfo info = record_;
  EncodeNoticeContent(params->AsStr(), info.notice_type, info.notice_content);
  return service->ModifyMeetingNotice(info) == 0;
}

Variant MeetingNoticeModel::DecodeNoticeContent(std::string const& content, int& type) {
  if (type == 0) return Variant(content);
  Variant parsed;
  if (!parsed.FromJsonStr(content.c_str(), static_cast<std::ptrdiff_t>(content.size())) || !parsed.IsArray()) {
    TXLOG_ERROR << " decode notice content failed: \n" << content;
    type = 0;
    return Variant(content);
  }
  return parsed;
}

void MeetingNoticeModel::EncodeNoticeContent(std::string const& text, int& type, std::string& content) {
  if (text.empty()) {
    type = 0;
    content.clear();
    return;
  }
  const Variant items = talvex::ChatUtils::URLParseMessageContext(text);
  if (items.IsArray() && items.Size() == 1 && items[0].GetInt32("item_type", -1) == 0) {
    type = 0;
    content = items[0].GetString("item_content");
    return;
  }
  // A text with links: its items.
  type = 1;
  content = items.ToJson();
}

Variant MeetingNoticeModel::SenderOf(talvexsdk::MeetingNoticeInfo const& info) const {
  Variant sender = Variant::Map{{"app_id", info.app_id},
                                {"app_uid", info.app_uid},
                                {"nick_name", info.nickname},
                                {"device_type", 1},
                                {"user_type", 1},
                                {"avatar_type", 1},
                                {"avatar_name", talvex_common::utils::GetNicknameAvatar(info.nickname)}};
  // A sender who is still in the meeting shows as they are now.
  Variant member;
  if (!info.user_id.empty()) {
    Variant ask = Variant::Map{{"unique_id", info.user_id}};
    member = AskHostModel(kHostMemberModel, kMemberMethodByUniqueId, &ask);
  } else {
    Variant ask = Variant::Map{{"app_uid", info.app_uid}, {"app_id", info.app_id}};
    member = AskHostModel(kHostMemberModel, kMemberMethodByAppIds, &ask);
  }
  if (member.IsMap()) {
    sender.Set("nick_name", member.GetString("nickname"));
    sender.Set("user_type", member.GetInt32("user_type", 1));
    sender.Set("device_type", member.GetInt32("device_type", 1));
    sender.Set("instance_id", member.GetInt32("instance_id", 1));
    sender.Set("avatar_type", member.GetInt32("avatar_type", 1));
    sender.Set("avatar_name", talvex_common::utils::GetNicknameAvatar(member.GetString("nickname")));
    sender.Set("avatar_token", member.GetString("avatar_token"));
  }
  return sender;
}

Variant MeetingNoticeModel::RecordMap() const {
  int type = record_.notice_type;
  Variant content = DecodeNoticeContent(record_.notice_content, type);
  return Variant::Map{{"notice_version", record_.notice_version},
                      {"notice_content", std::move(content)},
                      {"notice_type", type},
                      {"app_id", record_.app_id},
                      {"app_uid", record_.app_uid},
                      {"unique_id", record_.user_id},
                      {"instance_id", record_.instance_id},
                      {"user_type", record_.user_type},
                      {"device_type", record_.device_type},
                      {"nickname", record_.nickname},
                      {"send_time", record_.send_time},
                      {"is_read", record_.is_read},
                      {"sender", SenderOf(record_)}};
}

bool MeetingNoticeModel::GetHistoryNotice(Variant const* params, Variant* result) const {
  if (!params || !params->IsMap() || !params->Get("msg_id").IsString()) return false;
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(params->GetString("msg_id"));
  if (!record) return false;
  Variant sender = record->Get("msg_sender");
  if (!sender.IsMap()) sender = Variant(base::variant::kVariantTypeMap);
  const std::string nickname = sender.GetString("nickname");
  sender.Set("nick_name", nickname);
  sender.Set("avatar_name", talvex_common::utils::GetNicknameAvatar(nickname));
  if (result) {
    *result = Variant::Map{{"max_len", kNoticeMaxLength},
                           {"message_time", record->GetString("msg_format_time")},
                           {"msg_content", record->Get("msg_content")},
                           {"sender", std::move(sender)}};
  }
  return true;
}

}  // namespace chat
