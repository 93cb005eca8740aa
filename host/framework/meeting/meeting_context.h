#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace talvex {

// What the client knows of the meeting it is in and of its own user. The
// client (here, the simulated meeting) keeps it current; the meeting queries
// below read it.
struct MeetingContext {
  enum Role : int { kRoleMember = 0, kRoleHost = 1, kRoleCoHost = 2, kRolePanelist = 3, kRoleAttendee = 4 };

  uint64_t meeting_id = 0;
  uint32_t meeting_type_flags = 0;
  bool joined = false;
  bool is_webinar = false;
  bool in_waiting_room = false;
  bool internal = false;
  bool anonymous = false;
  bool creator = false;
  bool trial = false;

  // The local user.
  std::string self_user_id;
  std::string self_app_id;
  std::string self_app_uid;
  std::string nickname;
  std::string avatar;
  Role self_role = kRoleMember;

  // Breakout rooms: `meeting_id` is the room while in one, `main_meeting_id`
  // the meeting the rooms belong to.
  bool breakout_started = false;
  bool in_breakout_room = false;
  bool breakout_host = false;
  uint64_t main_meeting_id = 0;

  bool screen_share_mode = false;
  bool screen_sharing = false;

  // Items of the account's security control that are under control, with
  // the text a user reads about each.
  std::map<int, std::string> security_controls;

  static MeetingContext& Current();
  // Back to a client outside any meeting.
  static void Reset();
};

}  // namespace talvex

namespace talvex_common {
namespace utils {

uint64_t GetMeetingId();
std::string GetStrMeetingId();
uint32_t GetMeetingTypeFlags();
std::string GetSelfAppUid();
// The local user's nickname and avatar address.
void GetNicknameAvatar(std::string& nickname, std::string& avatar);
// The letters an avatar without a picture shows for a name: the first letter
// of its first two words ("Riley Chen" -> "RC"), "?" for an empty name.
std::string GetNicknameAvatar(std::string const& nickname);
bool IsInInternalMeeting();
bool IsMeetingAnonymous();
bool IsMeetingCreator();
bool IsMeetingTrail();

namespace webinar {
bool IsMeetingWebinar();
bool SelfIsAttendee();
bool SelfIsHost();
bool SelfIsCoHost();
bool SelfIsPanelist();
int SelfRoleType();
}  // namespace webinar

namespace breakoutroom {
// The main meeting's id; the meeting's own id outside breakout rooms.
uint64_t GetMainMeetingId();
bool IsBreakoutRoomStarted();
bool IsInBreakoutRoomMeeting();
bool IsSelfBreakoutRoomHost();
}  // namespace breakoutroom

namespace inmeeting {
bool IsInScreenShareMode();
bool IsScreenSharing();
// The client's record of the lifecycle state of the view models it tracks,
// by the key a module gives each (-1 for one never told).
void SetCurrentVmLifecycleState(uint32_t key, int state);
int GetCurrentVmLifecycleState(uint32_t key);
}  // namespace inmeeting

}  // namespace utils
}  // namespace talvex_common

namespace util {
namespace networkinfo {

struct NetworkInfo {
  bool available = true;
  // 0 none, 1 wired, 2 wireless, 3 mobile.
  int type = 1;
};

class INetworkListener {
 public:
  virtual ~INetworkListener() = default;
  virtual void OnNetworkChanged(NetworkInfo const& info) = 0;
};

NetworkInfo GetActiveNetworkInfo();
void AddNetworkListener(INetworkListener* listener);
void RemoveNetworkListener(INetworkListener* listener);
// Client side: the network changed; listeners are told.
void SetActiveNetworkInfo(NetworkInfo const& info);

}  // namespace networkinfo
}  // namespace util
