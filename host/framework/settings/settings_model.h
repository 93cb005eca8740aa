#pragma once

#include <string>

#include "framework/model/model_impl.h"

namespace framework {

// The client's local key/value store (application model 517), kept in a JSON
// file under the user's config directory.
//   method 3: read  {key, def_value} -> the stored value, or def_value
//   method 4: write {key, value}     -> stored and saved at once
//   method 1: all values as a map
// Event 0 fires with {key, value} after a write that changed something.
class SettingsModel : public ModelImpl {
 public:
  static constexpr int kModelId = 517;
  enum Method : uint32_t { kMethodAll = 1, kMethodRead = 3, kMethodWrite = 4 };
  enum Event : uint32_t { kEventChanged = 0 };

  // Empty path: "<config dir>/talvex/settings.json".
  explicit SettingsModel(std::string path = {});
  bool Invoke(uint32_t method, Variant const* params, Variant* result) override;
  std::string const& path() const { return path_; }
  void Reload();

 private:
  bool Save() const;
  std::string path_;
  Variant values_{base::variant::kVariantTypeMap};
};

}  // namespace framework
