#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <functional>

class QWidget;

// Watches a widget and reports whether it is on screen and where, so that
// work that needs a real layout can wait for the first paint.
class QTPaintRectHelper : public QObject {
  Q_OBJECT

 public:
  // What is reported: paints, show/hide/resize, or both.
  enum BindType { kBindPaint = 1, kBindVisibility = 2, kBindAll = 3 };
  // The widget, whether it is visible, and its visible rectangle in its own
  // coordinates (empty when hidden).
  using Callback = std::function<void(QWidget* widget, bool visible, QRect const& rect)>;

  explicit QTPaintRectHelper(QObject* parent = nullptr);
  ~QTPaintRectHelper() override;

  // Replaces any earlier binding.
  void BindWidget(QWidget* widget, Callback callback, int bind_type = kBindAll);
  void UnbindWidget();
  QWidget* BoundWidget() const { return widget_.data(); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Report();

  QPointer<QWidget> widget_;
  Callback callback_;
  int bind_type_ = kBindAll;
};
