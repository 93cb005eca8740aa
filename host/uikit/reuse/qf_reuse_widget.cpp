#include "uikit/reuse/qf_reuse_widget.h"

#include "uikit/reuse/qf_reuse_widget_delegate.h"
#include "uikit/reuse/qf_widget_reuse_policy.h"

QFReuseWidget::QFReuseWidget(QString reuse_id, QWidget* parent) : QFWidget(parent), reuse_id_(std::move(reuse_id)) {}

QFReuseWidget::~QFReuseWidget() {
  // The policy must never hand out a widget that is gone.
  if (policy_) policy_->OnWidgetDeleted(this);
  OnWidgetDeleted();
}

void QFReuseWidget::OnWidgetReused() {
  recycled_ = false;
  if (delegate_) delegate_->OnWidgetReused(this);
}

void QFReuseWidget::OnWidgetRecycled() {
  recycled_ = true;
  if (delegate_) delegate_->OnWidgetRecycled(this);
}

void QFReuseWidget::OnWidgetDeleted() {
  if (delegate_) delegate_->OnWidgetDeleted(this);
}

void QFReuseWidget::OnWidgetSelected() {
  selected_ = true;
  if (delegate_) delegate_->OnWidgetSelected(this);
  update();
}

void QFReuseWidget::OnWidgetUnSelected() {
  selected_ = false;
  if (delegate_) delegate_->OnWidgetUnSelected(this);
  update();
}
