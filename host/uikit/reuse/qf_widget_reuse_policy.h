#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

class QFReuseWidget;

// Keeps the widgets of a virtualised list: the used list (widgets on screen,
// in row order) and a cache of recycled widgets by reuse id.
//
// Widgets stay owned by their Qt parent; the policy only points at them and
// forgets a widget the moment it is destroyed.
class QFWidgetReusePolicy {
 public:
  QFWidgetReusePolicy() = default;
  virtual ~QFWidgetReusePolicy();
  QFWidgetReusePolicy(QFWidgetReusePolicy const&) = delete;
  QFWidgetReusePolicy& operator=(QFWidgetReusePolicy const&) = delete;

  // Null when the used list is empty (or the entry holds no widget).
  QFReuseWidget* PopFirstItemFromUsedList();
  QFReuseWidget* PopLastItemFromUsedList();
  // A null widget keeps the place of a row that has none, so that the used
  // list stays in step with the rows.
  void AppendItemToUsedList(QFReuseWidget* widget);
  // `position` is clamped to the used list.
  void InsertItemToUsedList(QFReuseWidget* widget, int position);
  // Puts the widget in the cache of `reuse_id` and marks it recycled.
  void AppendItemToCache(QString const& reuse_id, QFReuseWidget* widget);
  // A cached widget of `reuse_id`, taken out of the cache and marked in use,
  // or null. One that last showed `key` is preferred.
  QFReuseWidget* GetReuseItem(QString const& reuse_id, QString const& key = QString());
  // Every used widget into the cache (hidden when it asks to be); the used
  // list is left empty.
  void RecycleUsedWidget();

  // A widget enters use (out of the cache, or new).
  virtual void OnWidgetReused(QFReuseWidget* widget);
  // A widget went into the cache.
  virtual void OnWidgetRecycled(QFReuseWidget* widget);
  // A widget is being destroyed: it leaves the used list and the cache.
  virtual void OnWidgetDeleted(QFReuseWidget* widget);

  QList<QFReuseWidget*> const& UsedItems() const { return used_items_; }
  int CachedCount() const;
  int CachedCount(QString const& reuse_id) const;

 protected:
  QList<QFReuseWidget*> used_items_;

 private:
  void Adopt(QFReuseWidget* widget);

  QHash<QString, QList<QFReuseWidget*>> cache_;
  // Every widget that points back at this policy, in use or not.
  QSet<QFReuseWidget*> adopted_;
};
