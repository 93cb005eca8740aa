#pragma once

#include <string>

#include "base/variant/variant.h"

namespace framework {

// The remote configuration: values by section and key, read from a JSON file
// ({"section": {"key": value}}) laid over built-in defaults. The meeting
// pushes new files; a reload takes them.
class ConfigureService {
 public:
  // The file's values win over the defaults; a missing or malformed file
  // leaves the defaults (the malformed one is logged).
  bool LoadFile(std::string const& path);
  void SetDefaults(Variant defaults);
  // Null when neither the file nor the defaults have it.
  Variant Query(std::string const& section, std::string const& key) const;
  void Set(std::string const& section, std::string const& key, Variant value);
  std::string const& file() const { return file_; }

 private:
  Variant defaults_{base::variant::kVariantTypeMap};
  Variant values_{base::variant::kVariantTypeMap};
  std::string file_;
};

}  // namespace framework

namespace talvexsdk {
namespace utils {
namespace service {
framework::ConfigureService* GetConfigureService();
}
}  // namespace utils
}  // namespace talvexsdk

namespace talvex_common {
namespace utils {
// The configured value, or `def` when there is none of the same kind.
Variant QueryConfigureService(std::string const& section, std::string const& key, Variant const& def = Variant());
}  // namespace utils
}  // namespace talvex_common
