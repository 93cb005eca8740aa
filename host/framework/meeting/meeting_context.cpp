#include "framework/meeting/meeting_context.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <vector>

namespace talvex {

MeetingContext& MeetingContext::Current() {
  static MeetingContext context;
  return context;
}

void MeetingContext::Reset() { Current() = MeetingContext(); }

}  // namespace talvex

namespace talvex_common {
namespace utils {

namespace {
talvex::MeetingContext const& Ctx() { return talvex::MeetingContext::Current(); }
}  // namespace

uint64_t GetMeetingId() { return Ctx().meeting_id; }
std::string GetStrMeetingId() { return Ctx().meeting_id ? std::to_string(Ctx().meeting_id) : std::string(); }
uint32_t GetMeetingTypeFlags() { return Ctx().meeting_type_flags; }
std::string GetSelfAppUid() { return Ctx().self_app_uid; }
void GetNicknameAvatar(std::string& nickname, std::string& avatar) {
  nickname = Ctx().nickname;
  avatar = Ctx().avatar;
}
std::string GetNicknameAvatar(std::string const& nickname) {
  QString letters;
  for (QString const& word : QString::fromStdString(nickname).split(' ', Qt::SkipEmptyParts)) {
    letters += word.at(0).toUpper();
    if (letters.size() == 2) break;
  }
  return letters.isEmpty() ? std::string("?") : letters.toStdString();
}

bool IsInInternalMeeting() { return Ctx().internal; }
bool IsMeetingAnonymous() { return Ctx().anonymous; }
bool IsMeetingCreator() { return Ctx().creator; }
bool IsMeetingTrail() { return Ctx().trial; }

namespace webinar {
bool IsMeetingWebinar() { return Ctx().is_webinar; }
bool SelfIsAttendee() { return Ctx().is_webinar && Ctx().self_role == talvex::MeetingContext::kRoleAttendee; }
bool SelfIsHost() { return Ctx().self_role == talvex::MeetingContext::kRoleHost; }
bool SelfIsCoHost() { return Ctx().self_role == talvex::MeetingContext::kRoleCoHost; }
bool SelfIsPanelist() { return Ctx().is_webinar && Ctx().self_role == talvex::MeetingContext::kRolePanelist; }
int SelfRoleType() { return Ctx().self_role; }
}  // namespace webinar

namespace breakoutroom {
uint64_t GetMainMeetingId() {
  return Ctx().in_breakout_room && Ctx().main_meeting_id ? Ctx().main_meeting_id : Ctx().meeting_id;
}
bool IsBreakoutRoomStarted() { return Ctx().breakout_started; }
bool IsInBreakoutRoomMeeting() { return Ctx().in_breakout_room; }
bool IsSelfBreakoutRoomHost() { return Ctx().breakout_host; }
}  // namespace breakoutroom

namespace inmeeting {
bool IsInScreenShareMode() { return Ctx().screen_share_mode; }
bool IsScreenSharing() { return Ctx().screen_sharing; }
namespace {
std::map<uint32_t, int>& VmLifecycleStates() {
  static std::map<uint32_t, int> states;
  return states;
}
}  // namespace
void SetCurrentVmLifecycleState(uint32_t key, int state) { VmLifecycleStates()[key] = state; }
int GetCurrentVmLifecycleState(uint32_t key) {
  auto it = VmLifecycleStates().find(key);
  return it == VmLifecycleStates().end() ? -1 : it->second;
}
}  // namespace inmeeting

}  // namespace utils
}  // namespace talvex_common

namespace util {
namespace networkinfo {

namespace {
NetworkInfo& Active() {
  static NetworkInfo info;
  return info;
}
std::vector<INetworkListener*>& Listeners() {
  static std::vector<INetworkListener*> listeners;
  return listeners;
}
}  // namespace

NetworkInfo GetActiveNetworkInfo() { return Active(); }

void AddNetworkListener(INetworkListener* listener) {
  if (listener && std::find(Listeners().begin(), Listeners().end(), listener) == Listeners().end()) {
    Listeners().push_back(listener);
  }
}

void RemoveNetworkListener(INetworkListener* listener) {
  Listeners().erase(std::remove(Listeners().begin(), Listeners().end(), listener), Listeners().end());
}

void SetActiveNetworkInfo(NetworkInfo const& info) {
  Active() = info;
  auto listeners = Listeners();
  for (auto* listener : listeners) listener->OnNetworkChanged(info);
}

}  // namespace networkinfo
}  // namespace util
