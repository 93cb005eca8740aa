#pragma once

#include <string>
#include <vector>

namespace framework {

// The client's record of what modules asked of it, in order ("class.operation
// argument"). The loader, router and navigator stand-ins write here, so that a
// test or the demo's transcript can see the order of registration and
// tear-down.
class HostJournal {
 public:
  static void Record(std::string entry);
  static std::vector<std::string> Entries();
  // Entries that start with `prefix`, in order.
  static std::vector<std::string> Entries(std::string const& prefix);
  static void Clear();
};

}  // namespace framework
