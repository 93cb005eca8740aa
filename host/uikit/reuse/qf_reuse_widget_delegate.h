#pragma once

class QFReuseWidget;

// Told what happens to a reusable widget: taken from the cache, given back,
// destroyed, selected as the list's current row or unselected.
class QFReuseWidgetDelegate {
 public:
  virtual ~QFReuseWidgetDelegate() = default;
  virtual void OnWidgetReused(QFReuseWidget* widget) {}
  virtual void OnWidgetRecycled(QFReuseWidget* widget) {}
  virtual void OnWidgetDeleted(QFReuseWidget* widget) {}
  virtual void OnWidgetSelected(QFReuseWidget* widget) {}
  virtual void OnWidgetUnSelected(QFReuseWidget* widget) {}
};
