#include "framework/meeting/member_utils.h"

#include "framework/meeting/meeting_context.h"
#include "framework/module/app_module.h"

namespace talvex_common {
namespace utils {
namespace member {

namespace {
constexpr int kMemberModel = 508;
constexpr uint32_t kMethodIndexList = 1;
constexpr uint32_t kMethodUserInfo = 2;
}  // namespace

bool EnumInRoomUsers(Variant const& list, std::function<bool(Variant const& member)> const& visit) {
  if (!list.IsArray() || !visit) return false;
  for (auto const& member : list.AsArray()) {
    if (member.IsMap() && visit(member)) return true;
  }
  return false;
}

Variant GetUserIndexList(int list_type) {
  Variant list(base::variant::kVariantTypeArray);
  auto members = framework::module::GetAppModuleModel(kMemberModel);
  if (!members) return list;
  Variant params(base::variant::kVariantTypeMap);
  params.Set("list_type", list_type);
  Variant result;
  if (members->Invoke(kMethodIndexList, &params, &result) && result.IsArray()) list = std::move(result);
  return list;
}

bool EnumInMeetingUsers(Variant const& index_list, std::function<bool(Variant const& member)> const& visit) {
  if (!index_list.IsArray() || !visit) return false;
  for (auto const& id : index_list.AsArray()) {
    if (!id.IsString()) continue;
    Variant info = GetUserInfo(id.AsStr());
    if (info.IsMap() && visit(info)) return true;
  }
  return false;
}

Variant GetUserInfo(std::string const& user_id) {
  auto members = framework::module::GetAppModuleModel(kMemberModel);
  if (!members || user_id.empty()) return Variant();
  Variant params(base::variant::kVariantTypeMap);
  params.Set("user_id", user_id);
  Variant result;
  if (!members->Invoke(kMethodUserInfo, &params, &result) || !result.IsMap()) return Variant();
  return result;
}

bool IsSelfHostOrCoHost() {
  const auto role = talvex::MeetingContext::Current().self_role;
  return role == talvex::MeetingContext::kRoleHost || role == talvex::MeetingContext::kRoleCoHost;
}

bool GetHostAppIdAndAppUid(std::string& app_id, std::string& app_uid) {
  auto model = framework::module::GetAppModuleModel(508);
  Variant host;
  if (!model || !model->Invoke(12, nullptr, &host) || !host.IsMap()) return false;
  app_id = host.GetString("app_id");
  app_uid = host.GetString("app_uid");
  return !app_id.empty() && !app_uid.empty();
}

}  // namespace member

namespace webinar {
bool IsAttendeeUser(Variant const& user_info) {
  return user_info.IsMap() && user_info.GetString("role") == "attendee";
}
}  // namespace webinar

}  // namespace utils
}  // namespace talvex_common
