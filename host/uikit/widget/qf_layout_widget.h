#pragma once

#include "uikit/reuse/qf_widget.h"

// A kit widget that holds other kit widgets and places them itself; the
// frame of a floating view.
class QFLayoutWidget : public QFWidget {
  Q_OBJECT

 public:
  using QFWidget::QFWidget;
  // Told first, while the children are still whole (QObject::destroyed
  // comes only after they are gone).
  ~QFLayoutWidget() override { emit AboutToBeDestroyed(); }

 signals:
  void AboutToBeDestroyed();
};
