#pragma once

#include <memory>

#include "framework/extension/extension.h"
#include "framework/viewmodel/stateful_view_model.h"

namespace talvex {

// A view model owned by an extension, on which it registers event handlers.
class ExtensionViewModel : public framework::StatefulViewModel {
 public:
  std::shared_ptr<framework::extension::ExtensionImpl> GetExtension() const { return extension_.lock(); }
  void SetExtension(std::weak_ptr<framework::extension::ExtensionImpl> extension) { extension_ = std::move(extension); }
  // Overriders call this first: it ties the extension back to this view model.
  void OnViewCreated(Variant const* params) override;

 private:
  std::weak_ptr<framework::extension::ExtensionImpl> extension_;
};

}  // namespace talvex
