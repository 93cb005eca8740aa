#pragma once

#include "sim/models/sim_model.h"

namespace sim {

// Model 504: the client's connection.
//   method 9  -> bool, the network is up
//   method 10 -> int, the account's authorization (2 authorized: it may
//             download chat files)
class NetworkModel : public SimModel {
 public:
  static constexpr int kId = 504;
  NetworkModel();
  void SetNetworkUp(bool up) { up_ = up; }
  void SetAuthState(int state) { auth_state_ = state; }

 private:
  bool up_ = true;
  int auth_state_ = 2;
};

}  // namespace sim
