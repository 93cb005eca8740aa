#include "framework/viewmodel/contributes_view_model.h"

namespace talvex {

ContributesViewModel::ContributesViewModel(std::string const& contributes_id) {
  if (!contributes_id.empty()) SetContributesId(contributes_id);
}

void ContributesViewModel::OnViewDetached() {
  UnActivateExtensions();
  framework::StatefulViewModel::OnViewDetached();
}

void ContributesViewModel::OnContributesDataSourceChanged() { SetPropValue(kPropItems, items()); }

}  // namespace talvex
