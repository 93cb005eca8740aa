#pragma once

#include <QScrollArea>

// The kit's scroll area. Its content widget takes the viewport's width and
// keeps the height it is given; subclasses hear of scroll-value changes
// through two overridable hooks rather than by connecting signals.
class QFScrollArea : public QScrollArea {
  Q_OBJECT

 public:
  explicit QFScrollArea(QWidget* parent = nullptr);

  // Sets the vertical scroll bar's value (clamped to its range). The value
  // hooks run synchronously when it changes.
  void SetVerticalScrollValue(int value);
  void ScrollToBottom();
  bool IsScrollBottom() const;

  // Brings the scroll bars' ranges in line with the content widget's size
  // now, rather than when the pending resize event reaches the scroll area.
  void SyncScrollRange();

  bool eventFilter(QObject* watched, QEvent* event) override;

 signals:
  void VerticalScrollValueChanged(int value);
  void HorizontalScrollValueChanged(int value);

 protected:
  virtual void OnVerticalScrollValueChanged(int value);
  virtual void OnHorizontalScrollValueChanged(int value);
  void resizeEvent(QResizeEvent* event) override;
};
