#pragma once

#include "base/variant/variant.h"

namespace sim {

// The goods card layouts the simulated meeting's configuration carries for
// the desktop client ("im_goods_card_layout_qt"): a map from layout key to
// description, "default" among them.
Variant GoodsCardLayouts();

}  // namespace sim
