#include "framework/viewmodel/extension_view_model.h"

namespace talvex {

void ExtensionViewModel::OnViewCreated(Variant const* params) {
  if (auto extension = extension_.lock()) {
    extension->SetViewModel(std::static_pointer_cast<framework::ViewModel>(shared_from_this()));
  }
  framework::StatefulViewModel::OnViewCreated(params);
}

}  // namespace talvex
