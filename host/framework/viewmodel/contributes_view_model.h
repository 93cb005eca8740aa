#pragma once

#include <cstdint>
#include <string>

#include "framework/extension/extension.h"
#include "framework/viewmodel/stateful_view_model.h"

namespace talvex {

// A view model that owns a contribution point: the view shows the items of
// the extensions registered there. The items are published on kPropItems
// whenever the point's data source changes; the extensions go down with the
// view.
class ContributesViewModel : public framework::StatefulViewModel,
                             public framework::extension::ExtensionContributesImpl {
 public:
  static constexpr uint32_t kPropItems = framework::NameId("ContributesItems");

  explicit ContributesViewModel(std::string const& contributes_id = {});
  void OnViewDetached() override;
  void OnContributesDataSourceChanged() override;
};

}  // namespace talvex
