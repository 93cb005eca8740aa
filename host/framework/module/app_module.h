#pragma once

#include <map>
#include <memory>
#include <vector>

#include "framework/model/model.h"

namespace framework {
namespace module {

// The client's application: its models, reached by id. The meeting behind
// them (here, the simulator) fills it; a module only reads it.
class ApplicationModule {
 public:
  // Replaces a model already registered under `id`.
  void RegisterModel(int id, ModelPtr model);
  void UnregisterModel(int id);
  ModelPtr GetModel(int id) const;
  std::vector<int> ModelIds() const;
  void Clear();

 private:
  std::map<int, ModelPtr> models_;
};

// The application model with that id, or null: null is a normal answer (no
// meeting yet, or a client without that model) and every caller handles it.
ModelPtr GetAppModuleModel(int id);

}  // namespace module
}  // namespace framework
