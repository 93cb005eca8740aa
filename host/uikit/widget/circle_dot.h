#pragma once

#include <QColor>
#include <QWidget>

// A small filled circle, such as the red dot of something unread.
class CircleDot : public QWidget {
  Q_OBJECT

 public:
  explicit CircleDot(QWidget* parent = nullptr, QColor color = QColor("#FF3C33"));
  void SetColor(QColor color);
  QColor const& color() const { return color_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor color_;
};
