#pragma once

#include <cstdint>
#include <string>

#include "base/variant/variant.h"
#include "framework/viewmodel/stateful_view_model.h"

namespace util {
namespace applifecycle {
// Told when the application goes to the background and comes back.
class IAppLifecycleListener {
 public:
  virtual ~IAppLifecycleListener() = default;
  virtual void OnResume() {}
  virtual void OnPause() {}
};
}  // namespace applifecycle
}  // namespace util

namespace talvex {

// Whether the signed-in user may act now, as the client knows it: false while
// the connection is down or the account was signed out.
class AuthorizeState {
 public:
  enum State : int { kAuthorized = 0, kReconnecting = 1, kNetworkBroken = 2, kLoggedOut = 3 };
  static State Current();
  static void Set(State state);
  // The text a user sees when an action is refused in `state`.
  static std::string RefusalText(State state);
};

// A view model whose actions need an authorised user. CheckAuthorizeBeforeAction
// says whether the user may act, and tells the user (a toast) when not.
template <typename B>
class AuthorizeViewModelT : public B, public util::applifecycle::IAppLifecycleListener {
 public:
  explicit AuthorizeViewModelT(unsigned int id = 0) : authorize_id_(id) {}

  bool CheckAuthorizeBeforeAction() {
    const AuthorizeState::State state = AuthorizeState::Current();
    if (state == AuthorizeState::kAuthorized) return true;
    this->ShowToast(0, AuthorizeState::RefusalText(state), 2000, 0, "", "");
    return false;
  }

  void OnViewAttached(Variant const* params) override { B::OnViewAttached(params); }
  void OnViewDetached() override { B::OnViewDetached(); }

  virtual void OnAuthorizeStateUpdate() {}
  virtual void OnReconnectSuccess() {}
  virtual void OnReconnectFailed() {}
  virtual void OnNotifyLogout() {}
  virtual void OnAuthFailed() {}
  virtual void OnReconnecting() {}
  virtual void OnNetworkBreakup() {}
  virtual void OnReconnectStop() {}
  virtual void OnNotifyViolationLogout() {}
  virtual void HandleAuthFailed() {}
  virtual void HandleInMeetingAuthViolation() {}
  virtual void HandleDeviceConflictAlert() {}
  virtual bool IsViewContextFromQt() const { return true; }

  unsigned int authorize_id() const { return authorize_id_; }

 private:
  unsigned int authorize_id_;
};

}  // namespace talvex
