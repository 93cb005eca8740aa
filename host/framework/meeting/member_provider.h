#pragma once

#include <cstdint>

// The client's member provider (model 638): the lists from which a user picks
// the receiver of a private message, streamed by provider.
//
//   method 0, params the integer kActivateForIm -> {activate_id}: starts the
//            providers for chat; their sections follow as event 0
//   method 1 {activate_id, search_str} -> true: the providers answer again,
//            for the names that contain `search_str` (any case); an empty
//            text leaves the search
//   method 2 {activate_id}: the providers stop
//   method 3 {provider_id, search_str}: one search of all members of a
//            provider, answered once by event 1
//
// Event 0 is an array of sections, one per provider; each section is a map of
// `activate_id`, `provider_id`, `is_searching`, `search_str`, `is_loading`
// (more of the section is still coming: a large list arrives in chunks, each
// event carrying all that arrived so far), `total_count`, and `user_list`.
// Event 1 is the answer of method 3: an array of sections of the same form.
//
// A member of `user_list` is a map of `user_id`, `app_id`, `app_uid`,
// `nickname`, `avatar`, `role` ("host", "cohost", "panelist", "attendee",
// "member"), `sort_key` (16 bits: greater keys come first), `can_receive_chat`
// (false for devices without chat), and `is_full_data`.
namespace talvex_common {
namespace utils {
namespace memberprovider {

constexpr int kModelId = 638;
enum Method : uint32_t { kMethodActivate = 0, kMethodSearch = 1, kMethodDeactivate = 2, kMethodSearchAll = 3 };
enum Event : uint32_t { kEventSections = 0, kEventAllSearchUserList = 1 };
constexpr int kActivateForIm = 3;

constexpr char kInMeetingMembersForImProvider[] = "InMeetingMembersForImProvider";
constexpr char kWaitingMembersProvider[] = "WaitingMembersProvider";
constexpr char kAttendeeMembersForImProvider[] = "AttendeeMembersForImProvider";

// Sort keys of the roles; greater first.
enum SortKey : uint16_t {
  kSortKeyHost = 0xF000,
  kSortKeyCoHost = 0xE000,
  kSortKeyPanelist = 0xC000,
  kSortKeyMember = 0x8000,
  kSortKeyAttendee = 0x4000,
};

}  // namespace memberprovider
}  // namespace utils
}  // namespace talvex_common

namespace talvex {
// How the member list is laid out: beside the chat (portrait) or over a
// wide window (landscape). A view tells the list its orientation.
struct PrivateChatMembers {
  enum Orientation : int { kUndefined = 0, kPortrait = 1, kLandscape = 2 };
};
}  // namespace talvex
