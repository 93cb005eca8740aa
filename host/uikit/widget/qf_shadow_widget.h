#pragma once

#include <QPixmap>
#include <QWidget>

// A floating widget drawn from a nine-slice image (its corners kept, its
// edges and middle stretched), with a soft shadow baked into the image.
// Reports presses, so that it can serve as a button.
class QFShadowWidget : public QWidget {
  Q_OBJECT

 public:
  explicit QFShadowWidget(QWidget* parent = nullptr);

  // `border` is the width of the slice kept unstretched at each edge.
  void SetNineSliceImage(QPixmap const& image, int border);

 signals:
  void Pressed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  QPixmap image_;
  int border_ = 0;
};
