#pragma once

#include <cstdint>

#include "framework/config/configure_service.h"
#include "framework/model/model_impl.h"

namespace framework {

// The configure service as the model modules call by number.
//
// Method 7 hands out dynamic layouts: descriptions of how a card looks that
// the meeting's configuration carries, so that a card can change its look
// without a new client. Layouts live in the section "dyna_layout": under
// each layout name (such as "im_goods_card_layout_qt") a map from a layout
// key to its description, with "default" as the fallback.
//
//   params  `dyna_layout_key`: the layout the card asks for (may be empty);
//           `keys`: the layout names wanted, an array of strings;
//           `use_default_layout`: whether "default" may stand in when the
//           asked-for key is empty or unknown.
//   result  a map from each layout name found to its description.
//   The call is false when the params are not a map or no layout is found.
class ConfigureModel : public ModelImpl {
 public:
  static constexpr uint32_t kMethodGetDynamicLayout = 7;
  static constexpr char kLayoutSection[] = "dyna_layout";
  static constexpr char kDefaultLayoutKey[] = "default";

  explicit ConfigureModel(ConfigureService* service) : service_(service) {}

  bool Invoke(uint32_t method, Variant const* params, Variant* result) override;

 private:
  bool GetDynamicLayout(Variant const& params, Variant* result) const;

  ConfigureService* service_;
};

}  // namespace framework

namespace talvexsdk {
namespace utils {
namespace service {
// The host's config model, over GetConfigureService().
framework::Model* GetConfigureModel();
}  // namespace service
}  // namespace utils
}  // namespace talvexsdk
