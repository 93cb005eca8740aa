#pragma once

#include "base/variant/variant.h"

namespace talvex_common {
namespace utils {
namespace privatechatrecord {

// The receiver the user chose in the chat panel, kept by the private chat
// model (528: method 1 reads it, method 2 writes it and fires event 0).
// A map with `receiver_type`, and for one member `user_id`, `app_uid`,
// `app_id`, `nickname` and `role`. Null until a choice is made.
Variant GetPrivateChatUserInfo();
bool SerPrivateChatUserInfo(Variant const* info);
// 0 none, 1 one member, 2 all, 3 all in the waiting room, 4 a webinar group,
// 5 a webinar group of all, 6 and 7 one member of a waiting-room list. No
// choice yet means all; a member without a type means one member; anything
// but a map means none.
int GetChatReceiverType(Variant const& info);
// Pictures go to the meeting, its groups and its members, never into the
// waiting room.
bool IsCanSendImageMessage();

}  // namespace privatechatrecord
}  // namespace utils
}  // namespace talvex_common
