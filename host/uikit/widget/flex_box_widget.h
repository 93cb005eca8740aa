#pragma once

#include <QString>
#include <QWidget>
#include <vector>

#include "base/variant/variant.h"

// A widget laid out from a description rather than from code: a tree of boxes
// that stack their children in a row or a column, with texts and pictures as
// leaves. Whoever configures a card can change its look without a new client.
// Texts and picture sources may name values of a data map as "{{key}}";
// SetData fills them in and may be called again for the next record.
//
// The description is JSON, or the Variant of it:
//
// every node  "type" ("box", "text", "image" or "spacer"); "name", the object
//             name of its widget; "grow", its share of the spare room along
//             its box; "width" and "height", fixed sizes in pixels;
//             "visible", a data key whose value must be true, non-zero or
//             non-empty for the node to show ("!key" inverts it).
// "box"       "direction" ("row" or "column", the default); "spacing";
//             "padding" (one number, or [left, top, right, bottom]); "align",
//             where children sit across the box ("stretch", the default,
//             "start", "center" or "end"); "justify", where they sit along it
//             ("start", "center", "end" or "space-between"); "background"
//             and "border" (colours); "radius"; "children". Across the box,
//             "stretch" lets children that can grow fill it and centres the
//             ones of fixed size.
// "text"      "text"; "color"; "font_size" (pixels); "bold"; "strike";
//             "max_lines" (the last line shown ends in an ellipsis; 0, the
//             default, shows every line); "align" ("left", "center",
//             "right"). A text that comes out empty takes no room; the
//             text is also the widget's accessible name.
// "image"     "source" (a file path, ":/..." or "qrc:/..."); "radius";
//             "placeholder", the colour shown while there is no picture.
//             Pictures fill their box, cropped to it, keeping proportions.
// "spacer"    empty room; with "grow" it takes the spare room.
class FlexBoxWidget : public QWidget {
  Q_OBJECT

 public:
  // Limits that keep a hostile or broken description from building without end.
  static constexpr int kMaxDepth = 12;
  static constexpr int kMaxNodes = 200;

  explicit FlexBoxWidget(QWidget* parent = nullptr);
  ~FlexBoxWidget() override;

  // Builds the tree, replacing any earlier one. A description that is not a
  // JSON object, names an unknown type, nests deeper than kMaxDepth or holds
  // more than kMaxNodes nodes builds nothing: the reason is logged, kept in
  // error() and the call returns false.
  bool SetLayoutTemplate(Variant const& layout);
  bool SetLayoutTemplate(QString const& json);
  bool HasLayout() const;
  QString const& error() const { return error_; }

  // Fills the placeholders and the visibility of every node from `data`.
  void SetData(Variant const& data);
  Variant const& data() const { return data_; }

  bool hasHeightForWidth() const override;
  int heightForWidth(int width) const override;
  // At a fixed width, the height that width needs.
  QSize sizeHint() const override;

 private:
  struct Binding;
  class Builder;

  void Clear();
  void ApplyData();

  QWidget* root_ = nullptr;
  std::vector<Binding> bindings_;
  Variant data_{base::variant::kVariantTypeMap};
  QString error_;
};
