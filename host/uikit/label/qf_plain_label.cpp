#include "uikit/label/qf_plain_label.h"

QFPlainLabel::QFPlainLabel(QWidget* parent) : QLabel(parent) {
  setFocusPolicy(Qt::NoFocus);
  setOpenExternalLinks(false);
  setTextInteractionFlags(Qt::NoTextInteraction);
}
