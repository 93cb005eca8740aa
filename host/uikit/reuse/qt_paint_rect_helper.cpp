#include "uikit/reuse/qt_paint_rect_helper.h"

#include <QEvent>
#include <QWidget>

QTPaintRectHelper::QTPaintRectHelper(QObject* parent) : QObject(parent) {}

QTPaintRectHelper::~QTPaintRectHelper() { UnbindWidget(); }

void QTPaintRectHelper::BindWidget(QWidget* widget, Callback callback, int bind_type) {
  UnbindWidget();
  if (!widget) return;
  widget_ = widget;
  callback_ = std::move(callback);
  bind_type_ = bind_type;
  widget->installEventFilter(this);
}

void QTPaintRectHelper::UnbindWidget() {
  if (widget_) widget_->removeEventFilter(this);
  widget_.clear();
  callback_ = nullptr;
}

bool QTPaintRectHelper::eventFilter(QObject* watched, QEvent* event) {
  if (watched != widget_.data()) return false;
  switch (event->type()) {
    case QEvent::Paint:
      if (bind_type_ & kBindPaint) Report();
      break;
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::Resize:
      if (bind_type_ & kBindVisibility) Report();
      break;
    default:
      break;
  }
  return false;
}

void QTPaintRectHelper::Report() {
  // The callback may unbind or delete this helper: work on copies.
  Callback callback = callback_;
  QPointer<QWidget> widget = widget_;
  if (!callback || !widget) return;
  const bool visible = widget->isVisible();
  const QRect rect = visible ? widget->visibleRegion().boundingRect() : QRect();
  callback(widget.data(), visible, rect);
}
