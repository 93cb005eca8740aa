#include "sim/goods_card_layout.h"

namespace sim {

namespace {

// The shop's name over the offer, the picture beside the goods, the price in
// red with the crossed-out price of a discount, and the shop's call to act.
constexpr char kDefaultLayout[] = R"json({
  "type": "box", "name": "goods_card", "direction": "column", "padding": [12, 10, 12, 12], "spacing": 8,
  "background": "#FFFFFF", "border": "#EBEDF2", "radius": 8,
  "children": [
    {"type": "box", "direction": "row", "spacing": 6, "align": "center", "children": [
      {"type": "image", "name": "app_icon", "source": "{{app_info_icon}}", "width": 16, "height": 16, "radius": 4,
       "placeholder": "#DDE1E5"},
      {"type": "text", "name": "app_name", "text": "{{app_info_name}}", "color": "#7B818F", "font_size": 12,
       "max_lines": 1, "grow": 1}
    ]},
    {"type": "text", "name": "title", "text": "{{msg_content_title}}", "color": "#000000", "font_size": 14,
     "bold": true, "max_lines": 2},
    {"type": "box", "direction": "row", "spacing": 10, "children": [
      {"type": "image", "name": "goods_image", "source": "{{goods_image}}", "width": 72, "height": 72, "radius": 6,
       "placeholder": "#F2F3F5"},
      {"type": "box", "direction": "column", "spacing": 4, "grow": 1, "children": [
        {"type": "text", "name": "goods_name", "text": "{{goods_name}}", "color": "#1F2329", "font_size": 13,
         "max_lines": 2},
        {"type": "spacer", "grow": 1},
        {"type": "box", "direction": "row", "spacing": 6, "align": "end", "children": [
          {"type": "text", "name": "current_price", "text": "{{current_price}}", "color": "#F25555",
           "font_size": 16, "bold": true},
          {"type": "text", "name": "original_price", "text": "{{original_price}}", "color": "#A3A8B3",
           "font_size": 12, "strike": true, "visible": "has_discount"},
          {"type": "spacer", "grow": 1}
        ]}
      ]}
    ]},
    {"type": "box", "direction": "row", "justify": "end", "visible": "confirm_btn_text", "children": [
      {"type": "box", "padding": [12, 4, 12, 4], "background": "#198CFF", "radius": 12, "children": [
        {"type": "text", "name": "confirm", "text": "{{confirm_btn_text}}", "color": "#FFFFFF", "font_size": 12,
         "max_lines": 1}
      ]}
    ]}
  ]
})json";

}  // namespace

Variant GoodsCardLayouts() {
  Variant layout;
  layout.FromJsonStr(kDefaultLayout);
  Variant layouts(base::variant::kVariantTypeMap);
  layouts.Set("default", std::move(layout));
  return layouts;
}

}  // namespace sim
