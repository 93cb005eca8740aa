#pragma once

#include <QString>

#include "base/variant/variant.h"

class ChatReuseListWidget;
class QFReuseWidget;

// What a ChatReuseListWidget asks of the owner of its rows. The list knows
// only numbers, widgets and keys; the rows' order and data live here.
class ChatReuseListWidgetDelegate {
 public:
  virtual ~ChatReuseListWidgetDelegate() = default;

  // Rows in the model.
  virtual int ItemCount(ChatReuseListWidget* list) = 0;
  // Height to reserve for a row before its widget is laid out.
  virtual int ItemHeightAtIndex(ChatReuseListWidget* list, int index) = 0;
  // A widget bound to the row, from the list's cache (GetReuseItem) or new.
  virtual QFReuseWidget* ItemWidgetAtIndex(ChatReuseListWidget* list, int index) = 0;
  virtual void ListVerticalScrollValueChanged(int value) {}
  // After every pass over the visible rows, changed or not.
  virtual void OnVisibleIndexChanged(int start, int end) {}
  // Rebinds a widget that stays on screen; `widget` may be null.
  virtual void UpdateItemAtIndex(ChatReuseListWidget* list, int index, QFReuseWidget* widget) {}
  virtual void ItemSelectedAtIndex(ChatReuseListWidget* list, int index, Variant const& record) = 0;
  virtual void ItemUnSelectedAtIndex(ChatReuseListWidget* list, int index) = 0;
  // A stable key of the row; empty for a row that can't be selected.
  virtual QString ItemUniStingAtIndex(ChatReuseListWidget const* list, int index) { return QString(); }
  virtual int ItemIndexAtUniSting(ChatReuseListWidget const* list, QString const& key) { return -1; }
  // The row's widget measured another height than ItemHeightAtIndex gave;
  // later reloads must use this one.
  virtual void UpdateItemHeight(int index, int height) = 0;
};
