#include "uikit/reuse/qf_widget_reuse_policy.h"

#include "uikit/reuse/qf_reuse_widget.h"

QFWidgetReusePolicy::~QFWidgetReusePolicy() {
  // Widgets usually outlive the policy by a moment (they die with the list's
  // QWidget base): they must not call back into it.
  for (QFReuseWidget* widget : adopted_) {
    if (widget->policy_ == this) widget->policy_ = nullptr;
  }
}

void QFWidgetReusePolicy::Adopt(QFReuseWidget* widget) {
  if (widget->policy_ && widget->policy_ != this) widget->policy_->OnWidgetDeleted(widget);
  widget->policy_ = this;
  adopted_.insert(widget);
}

QFReuseWidget* QFWidgetReusePolicy::PopFirstItemFromUsedList() {
  return used_items_.isEmpty() ? nullptr : used_items_.takeFirst();
}

QFReuseWidget* QFWidgetReusePolicy::PopLastItemFromUsedList() {
  return used_items_.isEmpty() ? nullptr : used_items_.takeLast();
}

void QFWidgetReusePolicy::AppendItemToUsedList(QFReuseWidget* widget) {
  if (widget) Adopt(widget);
  used_items_.append(widget);
}

void QFWidgetReusePolicy::InsertItemToUsedList(QFReuseWidget* widget, int position) {
  if (widget) Adopt(widget);
  used_items_.insert(qBound(0, position, used_items_.size()), widget);
}

void QFWidgetReusePolicy::AppendItemToCache(QString const& reuse_id, QFReuseWidget* widget) {
  if (!widget) return;
  Adopt(widget);
  QList<QFReuseWidget*>& list = cache_[reuse_id];
  if (!list.contains(widget)) list.append(widget);
  OnWidgetRecycled(widget);
}

QFReuseWidget* QFWidgetReusePolicy::GetReuseItem(QString const& reuse_id, QString const& key) {
  auto it = cache_.find(reuse_id);
  if (it == cache_.end() || it->isEmpty()) return nullptr;
  int found = it->size() - 1;
  if (!key.isEmpty()) {
    for (int i = it->size() - 1; i >= 0; --i) {
      if (it->at(i)->ReuseKey() == key) {
        found = i;
        break;
      }
    }
  }
  QFReuseWidget* widget = it->takeAt(found);
  OnWidgetReused(widget);
  return widget;
}

void QFWidgetReusePolicy::RecycleUsedWidget() {
  const QList<QFReuseWidget*> used = used_items_;
  used_items_.clear();
  for (QFReuseWidget* widget : used) {
    if (!widget) continue;
    if (widget->HideWhenRecycled() && !widget->isHidden()) widget->hide();
    AppendItemToCache(widget->GetReuseID(), widget);
  }
}

void QFWidgetReusePolicy::OnWidgetReused(QFReuseWidget* widget) {
  if (!widget) return;
  Adopt(widget);
  auto it = cache_.find(widget->GetReuseID());
  if (it != cache_.end()) it->removeAll(widget);
  if (widget->IsRecycled()) widget->OnWidgetReused();
}

void QFWidgetReusePolicy::OnWidgetRecycled(QFReuseWidget* widget) {
  if (widget && !widget->IsRecycled()) widget->OnWidgetRecycled();
}

void QFWidgetReusePolicy::OnWidgetDeleted(QFReuseWidget* widget) {
  used_items_.removeAll(widget);
  for (auto& list : cache_) list.removeAll(widget);
  adopted_.remove(widget);
  if (widget && widget->policy_ == this) widget->policy_ = nullptr;
}

int QFWidgetReusePolicy::CachedCount() const {
  int count = 0;
  for (auto const& list : cache_) count += list.size();
  return count;
}

int QFWidgetReusePolicy::CachedCount(QString const& reuse_id) const {
  return cache_.value(reuse_id).size();
}
