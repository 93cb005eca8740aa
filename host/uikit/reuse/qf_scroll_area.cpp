#include "uikit/reuse/qf_scroll_area.h"

#include <QEvent>
#include <QScrollBar>

QFScrollArea::QFScrollArea(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this](int value) { OnVerticalScrollValueChanged(value); });
  connect(horizontalScrollBar(), &QScrollBar::valueChanged, this,
          [this](int value) { OnHorizontalScrollValueChanged(value); });
}

void QFScrollArea::SetVerticalScrollValue(int value) { verticalScrollBar()->setValue(value); }

void QFScrollArea::ScrollToBottom() {
  SyncScrollRange();
  verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

bool QFScrollArea::IsScrollBottom() const {
  return verticalScrollBar()->value() == verticalScrollBar()->maximum();
}

void QFScrollArea::SyncScrollRange() {
  // QScrollArea lays out its widget and scroll bars on a layout request.
  QEvent request(QEvent::LayoutRequest);
  QScrollArea::event(&request);
}

bool QFScrollArea::eventFilter(QObject* watched, QEvent* event) { return QScrollArea::eventFilter(watched, event); }

void QFScrollArea::OnVerticalScrollValueChanged(int value) { emit VerticalScrollValueChanged(value); }

void QFScrollArea::OnHorizontalScrollValueChanged(int value) { emit HorizontalScrollValueChanged(value); }

void QFScrollArea::resizeEvent(QResizeEvent* event) { QScrollArea::resizeEvent(event); }
