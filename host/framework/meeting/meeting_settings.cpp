#include "framework/meeting/meeting_settings.h"

#include "base/log/log.h"
#include "framework/module/app_module.h"

namespace talvex_common {
namespace utils {
namespace meetingsettings {

namespace {
constexpr int kAuthorityModel = 526;
constexpr int kMeetingSettingsModel = 502;

Variant AskAuthority(uint32_t method, Variant const* params = nullptr) {
  auto model = framework::module::GetAppModuleModel(kAuthorityModel);
  if (!model) return Variant();
  Variant result;
  if (!model->Invoke(method, params, &result)) return Variant();
  return result;
}

bool WritePolicy(uint32_t method, int64_t policy) {
  auto model = framework::module::GetAppModuleModel(kAuthorityModel);
  if (!model) {
    TXLOG_WARN << "no chat authority model; policy " << policy << " not written";
    return false;
  }
  Variant params(base::variant::kVariantTypeMap);
  params.Set("policy", policy);
  return model->Invoke(method, &params, nullptr);
}

}  // namespace

int GetAllowChatPolicy() {
  const Variant v = AskAuthority(1);
  return v.IsInteger() ? v.AsInt32() : talvex::PrivateChatAuthority::kAllowChatNormal;
}
bool SetAllowChatPolicy(int policy) { return WritePolicy(2, policy); }
uint32_t GetWaitingRoomChatPolicy() {
  const Variant v = AskAuthority(6);
  return v.IsInteger() ? v.AsUint32() : 0u;
}
bool SetWaitingRoomChatPolicy(uint32_t policy) { return WritePolicy(3, policy); }
int GetPanelistChatPolicy() {
  const Variant v = AskAuthority(4);
  return v.IsInteger() ? v.AsInt32() : talvex::PrivateChatAuthority::kPanelistScope1;
}
int GetAttendeeChatPolicy() {
  const Variant v = AskAuthority(5);
  return v.IsInteger() ? v.AsInt32() : talvex::PrivateChatAuthority::kAttendeeScope1;
}

bool GetMeetingSwitch(char const* key, bool def) {
  auto model = framework::module::GetAppModuleModel(kMeetingSettingsModel);
  if (!model) return def;
  Variant params(base::variant::kVariantTypeMap);
  params.Set("key", key);
  Variant result;
  if (!model->Invoke(1, &params, &result) || !result.IsBool()) return def;
  return result.AsBoolean();
}

bool IsMeetingNoticeEnable() { return GetMeetingSwitch("notice_enable", false); }
bool IsEmojiEnable() { return GetMeetingSwitch("emoji_enable", true); }
bool IsChatPermissionControlReplyEmojiEnable() { return GetMeetingSwitch("chat_permission_reply_emoji", false); }

}  // namespace meetingsettings
}  // namespace utils
}  // namespace talvex_common
