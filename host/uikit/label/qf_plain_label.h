#pragma once

#include <QLabel>

// A label that never takes the focus or opens links itself: sender lines,
// tips and captions. Its style hooks off the "label-style" property.
class QFPlainLabel : public QLabel {
  Q_OBJECT

 public:
  explicit QFPlainLabel(QWidget* parent = nullptr);
};
