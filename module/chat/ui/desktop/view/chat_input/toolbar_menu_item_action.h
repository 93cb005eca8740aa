#pragma once

#include <QAction>

// A checkable row of a toolbar button's menu.
class ToolbarMenuItemAction : public QAction {
  Q_OBJECT

 public:
  ToolbarMenuItemAction(QString const& text, int value, QObject* parent);
  // What choosing the row selects.
  int value() const { return value_; }

 private:
  int value_;
};
