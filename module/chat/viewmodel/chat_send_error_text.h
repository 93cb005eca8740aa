#pragma once

#include <string>

namespace chat {

// How the panel words a failed send: by the error code, some codes only in
// a webinar, without a network or with a given error message; blocked words
// name the kind of message; any other code is the generic text and the code.
std::string SendErrorText(int code, int chat_type, std::string const& error_msg);

}  // namespace chat
