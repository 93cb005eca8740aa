#pragma once

#include <QPixmap>
#include <QWidget>

class QTimer;

// Shows one image, still or turning about its centre: the kit's spinner.
class RotateImageWidget : public QWidget {
  Q_OBJECT

 public:
  explicit RotateImageWidget(QWidget* parent = nullptr);

  void SetImage(QPixmap const& image);
  QPixmap const& image() const { return image_; }
  // Turns `speed` full turns a second; 0 or less stands still.
  void startWithInterval(double speed);
  void stop();
  bool IsRotating() const;
  double angle() const { return angle_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QPixmap image_;
  QTimer* timer_ = nullptr;
  double speed_ = 0;
  double angle_ = 0;
};
