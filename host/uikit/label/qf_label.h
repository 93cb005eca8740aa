#pragma once

#include <QLabel>
#include <functional>

// A label that reports presses and double clicks to its owner.
class QFLabel : public QLabel {
  Q_OBJECT

 public:
  using MouseCallback = std::function<void(QMouseEvent*)>;
  explicit QFLabel(QWidget* parent = nullptr);

  void SetPressCallback(MouseCallback callback) { press_callback_ = std::move(callback); }
  void SetDoubleClickCallback(MouseCallback callback) { double_click_callback_ = std::move(callback); }

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  MouseCallback press_callback_;
  MouseCallback double_click_callback_;
};
