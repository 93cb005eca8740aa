#pragma once

#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include "framework/navigation/routing.h"

namespace framework::extension {
class ExtensionImpl;
}

namespace chat {

// One extension of the module: where it is contributed, its class and its
// view. Every table the module gives the client (the extensions registered
// at activation, the extension classes, the extension views) is read from
// these rows, so an extension id is written once.
struct ChatContribution {
  std::string_view extension_id;
  // The contribution point of its registration at activation and of its
  // view; empty for an extension registered on demand or built on request.
  std::string_view point;
  // Its place among the registrations at activation, and among the view
  // registrations, from 1; 0 when it has none.
  int registration_order = 0;
  int view_order = 0;
  std::shared_ptr<framework::extension::ExtensionImpl> (*make_extension)() = nullptr;
  std::shared_ptr<AppBaseView> (*make_view)() = nullptr;
};

// The extensions registered with the client at activation, in order.
std::vector<ChatContribution const*> RegisteredExtensions();
// The extensions with a view, in the order the views are registered.
std::vector<ChatContribution const*> ExtensionViews();
// The row of an extension id, or null.
ChatContribution const* FindContribution(std::string_view extension_id);

}  // namespace chat
