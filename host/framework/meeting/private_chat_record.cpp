#include "framework/meeting/private_chat_record.h"

#include "framework/module/app_module.h"

namespace talvex_common {
namespace utils {
namespace privatechatrecord {

namespace {
constexpr int kPrivateChatModel = 528;
}

Variant GetPrivateChatUserInfo() {
  auto model = framework::module::GetAppModuleModel(kPrivateChatModel);
  if (!model) return Variant();
  Variant result;
  if (!model->Invoke(1, nullptr, &result)) return Variant();
  return result;
}

bool SerPrivateChatUserInfo(Variant const* info) {
  auto model = framework::module::GetAppModuleModel(kPrivateChatModel);
  if (!model) return false;
  Variant value = info ? *info : Variant();
  return model->Invoke(2, &value, nullptr);
}

int GetChatReceiverType(Variant const& info) {
  if (info.IsNull() || (info.IsMap() && info.Empty())) return 2;
  if (!info.IsMap()) return 0;
  if (info.Get("receiver_type").IsInteger()) return info.GetInt32("receiver_type");
  return info.GetString("app_uid").empty() && info.GetString("user_id").empty() ? 0 : 1;
}

bool IsCanSendImageMessage() {
  const int type = GetChatReceiverType(GetPrivateChatUserInfo());
  return type != 0 && type != 3 && type != 6 && type != 7;
}

}  // namespace privatechatrecord
}  // namespace utils
}  // namespace talvex_common
