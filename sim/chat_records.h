#pragma once

#include <string>
#include <utility>

#include "base/variant/variant.h"

namespace sim {

// Someone who sends in the simulated meeting.
struct Sender {
  Sender() = default;
  Sender(std::string id, std::string name, std::string uid = {}, std::string app = "1400", std::string picture = {})
      : user_id(std::move(id)),
        nickname(std::move(name)),
        app_uid(std::move(uid)),
        app_id(std::move(app)),
        avatar(std::move(picture)) {}

  std::string user_id;
  std::string nickname;
  std::string app_uid;
  std::string app_id = "1400";
  std::string avatar;
};

// Message records as the meeting's backend delivers them: the keys of the
// wire record and the short forms the client adds for its lists
// (`conv_id`, `conv_type`, `is_from_self`, `msg_sender`).
Variant ChatRecord(std::string const& meeting_id, Sender const& from, int chat_type, Variant msg_content,
                   bool from_self = false, Variant ext_content = Variant());
Variant TextRecord(std::string const& meeting_id, Sender const& from, std::string const& text,
                   bool from_self = false);
// A private message between `from` and `to`.
Variant PrivateTextRecord(std::string const& meeting_id, Sender const& from, Sender const& to,
                          std::string const& text, bool from_self = false);

// The record as the client's message events (received 8, send result 16,
// recall 18) carry it to the floating chat: flat, with the sender's names and
// ids at the top, `message_elem_array` for the content (`elem_type` 0 text,
// 6 face, 1 image, 4 file) and the id on the wire in `message_unique_id`.
Variant BulletFormOf(Variant const& record);

}  // namespace sim
