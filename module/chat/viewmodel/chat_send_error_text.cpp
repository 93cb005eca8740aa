#include "chat/viewmodel/chat_send_error_text.h"

#include <algorithm>
#include <array>

#include "chat/model/chat_message.h"
#include "framework/meeting/meeting_context.h"
#include "framework/resource/resource.h"

namespace chat {

using talvex_common::utils::FormatString;
using talvex_common::utils::GetLocalizedString;

constexpr uint32_t kTextSendFailedCode = 0xc44d1d12;

namespace {

// When a row of the send error table applies, besides its code.
enum class SendErrorWhen { kAlways, kNetworkDown, kWebinar, kInvalidReceiver };

struct SendErrorRow {
  std::array<int, 3> codes;  // unused places are 0, which is never an error
  SendErrorWhen when;
  uint32_t text;
};

// How the panel words a failed send: the first row that matches wins.
constexpr SendErrorRow kSendErrorTexts[] = {
    {{121001}, SendErrorWhen::kAlways, 0x1d02d67e},
    {{6008}, SendErrorWhen::kAlways, 0xdf5b367f},
    {{8004, 6031}, SendErrorWhen::kNetworkDown, 0xdf5b367f},
    {{7004, 7006}, SendErrorWhen::kAlways, 0x5ea85d0},
    {{8004, 6031, 7005}, SendErrorWhen::kAlways, 0x215723ba},
    {{20006}, SendErrorWhen::kWebinar, 0xec54bfb9},
    {{60008}, SendErrorWhen::kWebinar, 0x52d7539a},
    {{10007}, SendErrorWhen::kWebinar, 0xc2d08c4d},
    {{10016}, SendErrorWhen::kWebinar, 0x75c30f57},
    {{10105}, SendErrorWhen::kWebinar, 0x2e0db0bb},
    {{80002}, SendErrorWhen::kAlways, 0x44932c62},
    {{10110, 10111}, SendErrorWhen::kAlways, 0x55b7e41f},
    {{6017}, SendErrorWhen::kInvalidReceiver, 0x4ac0e9c2},
};
// Blocked words: the text names the kind of message, with the reason.
constexpr int kSendErrorBlockedWords = 10104;

}  // namespace

std::string SendErrorText(int code, int chat_type, std::string const& error_msg) {
  if (code == kSendErrorBlockedWords) {
    const uint32_t format = chat_type == ToInt(ChatType::kImage)  ? 0xa6f80427
                            : chat_type == ToInt(ChatType::kFace) ? 0x4d19a04c
                                                                  : 0xa04932de;
    return FormatString(format).Arg("reason", GetLocalizedString(0x83003322)).Str();
  }
  const bool webinar = talvex_common::utils::webinar::IsMeetingWebinar();
  const bool network_up = util::networkinfo::GetActiveNetworkInfo().available;
  const auto applies = [&](SendErrorWhen when) {
    switch (when) {
      case SendErrorWhen::kAlways:
        return true;
      case SendErrorWhen::kNetworkDown:
        return !network_up;
      case SendErrorWhen::kWebinar:
        return webinar;
      case SendErrorWhen::kInvalidReceiver:
        return error_msg == "invalid receiver userid";
    }
    return false;
  };
  for (SendErrorRow const& row : kSendErrorTexts) {
    const bool listed = std::find(row.codes.begin(), row.codes.end(), code) != row.codes.end();
    if (listed && applies(row.when)) {
      return GetLocalizedString(row.text);
    }
  }
  return GetLocalizedString(kTextSendFailedCode) + std::to_string(code);
}

}  // namespace chat
