#include "framework/viewmodel/authorize_view_model.h"

#include <atomic>

namespace talvex {
namespace {
std::atomic<int> g_state{AuthorizeState::kAuthorized};
}

AuthorizeState::State AuthorizeState::Current() { return static_cast<State>(g_state.load()); }

void AuthorizeState::Set(State state) { g_state.store(state); }

std::string AuthorizeState::RefusalText(State state) {
  switch (state) {
    case kReconnecting:
      return "Reconnecting. Try again in a moment.";
    case kNetworkBroken:
      return "The network is unavailable. Check your connection.";
    case kLoggedOut:
      return "You have been signed out.";
    default:
      return {};
  }
}

}  // namespace talvex
