#include "uikit/qt_ui_monitor_helper.h"

#include <algorithm>

std::vector<QPointer<QWidget>>& QTUIMonitorHelper::Widgets() {
  static std::vector<QPointer<QWidget>> widgets;
  widgets.erase(std::remove_if(widgets.begin(), widgets.end(), [](QPointer<QWidget> const& w) { return w.isNull(); }),
                widgets.end());
  return widgets;
}

void QTUIMonitorHelper::AddMonitorRectWidget(QWidget* widget) {
  if (!widget) return;
  auto& widgets = Widgets();
  if (std::find(widgets.begin(), widgets.end(), widget) == widgets.end()) widgets.emplace_back(widget);
}

void QTUIMonitorHelper::RemoveMonitorRectWidget(QWidget* widget) {
  auto& widgets = Widgets();
  widgets.erase(std::remove(widgets.begin(), widgets.end(), widget), widgets.end());
}

std::vector<QWidget*> QTUIMonitorHelper::MonitoredWidgets() {
  std::vector<QWidget*> out;
  for (auto const& widget : Widgets()) {
    if (widget->isVisible()) out.push_back(widget.data());
  }
  return out;
}

bool QTUIMonitorHelper::IsMonitoredPoint(QPoint const& global_pos) {
  for (QWidget* widget : MonitoredWidgets()) {
    if (QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size()).contains(global_pos)) return true;
  }
  return false;
}
