#pragma once

#include <cstdint>

namespace talvex {
namespace PrivateChatAuthority {
// Who may chat with whom, as the client stores it.
enum AllowChatPolicy : int {
  kAllowChatNormal = 0,       // everyone, public and private
  kAllowChatOnlyPublic = 1,   // public chat only
  kAllowChatOnlyToHost = 2,   // messages only to the host
  kAllowChatOnlyHost = 3,     // only the host speaks
  kPanelistScope1 = 4,        // webinar panelists: no limit
  kPanelistScope2 = 5,
  kPanelistScope3 = 6,
  kPanelistOnlyHost = 7,      // only host and co-host speak
  kAttendeeScope1 = 8,        // webinar attendees
  kAttendeeScope2 = 9,
  kAttendeeOnlyHost = 10,     // only host and co-host speak
};
enum AllowChatWaitingRoom : uint32_t { kWaitingRoomChatOff = 0, kWaitingRoomChatOn = 1 };
}  // namespace PrivateChatAuthority
}  // namespace talvex

namespace talvex_common {
namespace utils {
namespace meetingsettings {

// A switch of the meeting's settings (model 502, method 1 with `key`); `def`
// when the client has no answer.
bool GetMeetingSwitch(char const* key, bool def);

// The chat policies live with the chat authority model (526):
//   method 1 -> the meeting's policy (0 to 3)
//   method 2 {policy} writes a policy; 4 to 7 are the panelists', 8 to 10 the
//            attendees', 0 to 3 the meeting's
//   method 3 {policy} writes the waiting room's switch
//   method 4 -> the panelists' policy, 5 -> the attendees', 6 -> the waiting
//   room's switch; method 9 -> the local user's chat state
// Event 0 fires after any change.
int GetAllowChatPolicy();
bool SetAllowChatPolicy(int policy);
uint32_t GetWaitingRoomChatPolicy();
bool SetWaitingRoomChatPolicy(uint32_t policy);
int GetPanelistChatPolicy();
int GetAttendeeChatPolicy();

// The meeting's switches (meeting settings model 502, method 1 {key}).
bool IsMeetingNoticeEnable();
bool IsEmojiEnable();
// Whether the chat permissions also govern the quick emoji replies of the
// floating chat (switch "chat_permission_reply_emoji", off by default).
bool IsChatPermissionControlReplyEmojiEnable();

}  // namespace meetingsettings
}  // namespace utils
}  // namespace talvex_common
