#pragma once

#include <map>
#include <string>

#include "sim/models/sim_model.h"

namespace sim {

// Model 641: the sidebar's apps.
//   method 19 {open_app_id, extension_id, contribute_id, ...} registers an app
//   method 20 "open_app_id" removes it
// Event 3 {extension_id, contribute_id} asks a module for an app's extension.
class SidebarAppModel : public SimModel {
 public:
  static constexpr int kId = 641;
  enum Event : uint32_t { kEventRegisterExtension = 3 };

  SidebarAppModel();
  // The sidebar opens an app: asks for its extension.
  void RequestExtension(std::string const& extension_id, std::string const& contribute_id);
  std::map<std::string, Variant> const& apps() const { return apps_; }

 private:
  std::map<std::string, Variant> apps_;
};

// Model 10014: asks the modules for a chat cell's height through its
// priority event 0 ({msg_id}); a handler that stops it has answered.
class CellHeightModel : public SimModel {
 public:
  static constexpr int kId = 10014;
  CellHeightModel() : SimModel(kId) {}
  // True when a handler stopped the event.
  bool AskCellHeight(std::string const& msg_id);
};

}  // namespace sim
