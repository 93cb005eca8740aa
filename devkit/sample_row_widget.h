#pragma once

#include "base/variant/variant.h"
#include "devkit/sample_rows.h"
#include "uikit/reuse/qf_reuse_widget.h"

namespace devkit {

// A recycled row of the sample list: a message bubble with its sender, or a
// centred time tip. Its height follows its width, like a real chat cell.
class SampleRowWidget : public QFReuseWidget {
  Q_OBJECT

 public:
  SampleRowWidget(QString reuse_id, QWidget* parent);

  // Shows `row` (at list index `index`) with its selection record, if any.
  void Bind(int index, SampleRow const& row, Variant const& selection);
  void SetSelection(Variant const& selection);

  int BoundIndex() const { return index_; }
  QString const& BoundKey() const { return row_.key; }
  QString const& Text() const { return row_.text; }
  // True while a drag selection covers the row.
  bool ShowsSelection() const { return selection_.IsMap(); }
  Variant const& Selection() const { return selection_; }

  QSize sizeHint() const override;
  // The height of `row` laid out at `width` with `font`.
  static int MeasureHeight(SampleRow const& row, QFont const& font, int width);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int index_ = -1;
  SampleRow row_;
  Variant selection_;
};

}  // namespace devkit
