#pragma once

#include <QString>

#include "uikit/reuse/qf_widget.h"

class QFReuseWidgetDelegate;
class QFWidgetReusePolicy;

// A row widget that a list recycles: while out of view it waits in its
// policy's cache under its reuse id until a row of the same kind needs it.
class QFReuseWidget : public QFWidget {
  Q_OBJECT

 public:
  explicit QFReuseWidget(QString reuse_id, QWidget* parent = nullptr);
  ~QFReuseWidget() override;

  QString const& GetReuseID() const { return reuse_id_; }
  bool IsRecycled() const { return recycled_; }
  // Whether the list hides the widget while it waits in the cache.
  virtual bool HideWhenRecycled() const { return hide_when_recycled_; }
  void SetHideWhenRecycled(bool hide) { hide_when_recycled_ = hide; }

  // The key of the row the widget last showed; a row coming back into view
  // prefers the widget that still shows it.
  QString const& ReuseKey() const { return reuse_key_; }
  void SetReuseKey(QString const& key) { reuse_key_ = key; }

  void SetDelegate(QFReuseWidgetDelegate* delegate) { delegate_ = delegate; }
  QFReuseWidgetDelegate* GetDelegate() const { return delegate_; }

  bool IsSelected() const { return selected_; }

  virtual void OnWidgetReused();
  virtual void OnWidgetRecycled();
  virtual void OnWidgetDeleted();
  virtual void OnWidgetSelected();
  virtual void OnWidgetUnSelected();

 private:
  friend class QFWidgetReusePolicy;

  QString reuse_id_;
  QString reuse_key_;
  bool recycled_ = false;
  bool hide_when_recycled_ = true;
  bool selected_ = false;
  QFReuseWidgetDelegate* delegate_ = nullptr;
  // The policy that holds the widget in its used list or its cache.
  QFWidgetReusePolicy* policy_ = nullptr;
};
