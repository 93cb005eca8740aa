#pragma once

#include <QPoint>
#include <QPointer>
#include <QWidget>
#include <vector>

// The widgets floating over the meeting that the client must treat as part
// of its window: while the pointer is over one of them the client keeps its
// toolbars up, as if the pointer were over the video.
class QTUIMonitorHelper {
 public:
  static void AddMonitorRectWidget(QWidget* widget);
  static void RemoveMonitorRectWidget(QWidget* widget);
  // The visible monitored widgets (those deleted since drop out).
  static std::vector<QWidget*> MonitoredWidgets();
  // Whether a global point falls on a visible monitored widget.
  static bool IsMonitoredPoint(QPoint const& global_pos);

 private:
  static std::vector<QPointer<QWidget>>& Widgets();
};
