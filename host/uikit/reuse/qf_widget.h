#pragma once

#include <QWidget>

// The kit's base widget: a QWidget that draws its style-sheet background and
// is placed by its owner rather than by a layout.
class QFWidget : public QWidget {
  Q_OBJECT

 public:
  explicit QFWidget(QWidget* parent = nullptr);

  // Moves the widget to (x, y) in its parent's coordinates.
  void SetPosition(int x, int y);

 protected:
  void paintEvent(QPaintEvent* event) override;
};
