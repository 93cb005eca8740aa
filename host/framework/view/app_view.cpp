#include "framework/view/app_view.h"

#include "base/log/log.h"
#include "framework/ui/ui_service.h"
#include "framework/viewmodel/stateful_view_model.h"

AppBaseView::AppBaseView() = default;

AppBaseView::~AppBaseView() = default;

void AppBaseView::Deactivate() { OnDeactivate(); }

void AppBaseView::Dispose() {
  if (disposed_) return;
  OnDispose();
  DisposeViewModel();
  DestroyFrame();
  disposed_ = true;
}

void AppBaseView::OnViewModelBound(framework::StatefulViewModel* view_model) { OnViewModelBoundEx(view_model); }

void AppBaseView::ActiveViewModel(bool active, Variant const* params) {
  if (!view_model_) return;
  if (active) {
    view_model_->DidAttached(params);
  } else {
    view_model_->DidDetached();
  }
}

void AppBaseView::DisposeViewModel() {
  if (!view_model_) return;
  view_model_->DidDetached();
  view_model_->UnbindAllProps();
  view_model_->UnbindAllPropsSetResult();
  view_model_.reset();
  view_model_bound_ = false;
}

bool AppBaseView::FireViewEvent(int event, Variant const* params, Variant* result) {
  AppBaseView* parent = parent_view();
  return parent ? parent->HandleViewEvent(this, event, params, result) : false;
}

bool AppBaseView::FireViewEvent(AppBaseView* target, int event, Variant const* params, Variant* result) {
  return target ? target->HandleViewEvent(this, event, params, result) : false;
}

void AppBaseView::SetViewModel(std::shared_ptr<framework::StatefulViewModel> view_model) {
  if (view_model_ == view_model) return;
  DisposeViewModel();
  view_model_ = std::move(view_model);
}

void AppBaseView::BindViewModel(Variant const* params) {
  if (!view_model_ || view_model_bound_) return;
  view_model_bound_ = true;
  if (!view_model_->context()) view_model_->DidCreated(params);
  OnViewModelBound(view_model_.get());
  view_model_->DidAttached(params);
}

AppBaseQTView::~AppBaseQTView() {
  // The frame may outlive the view only under a parent that owns it.
  if (frame_ && !frame_->parent()) delete frame_.data();
}

bool AppBaseQTView::Build(std::weak_ptr<AppBaseView> parent, QWidget* parent_frame, Variant const* params,
                          bool activate_now) {
  if (disposed_) {
    TXLOG_ERROR << "not support reuse view, please check";
    Q_ASSERT_X(false, "AppBaseQTView::Build", "not support reuse view, please check");
    return false;
  }
  SetParentView(std::move(parent));
  parent_frame_ = parent_frame;
  Variant build_params = params ? *params : Variant(base::variant::kVariantTypeMap);
  if (!frame_) {
    frame_ = BuildFrame(parent_frame, &build_params);
    if (!frame_) {
      TXLOG_ERROR << "view built no frame";
      return false;
    }
    OnFrameCreated(frame_);
  }
  BindViewModel(&build_params);
  if (activate_now) OnActivate();
  return true;
}

void AppBaseQTView::DestroyFrame() {
  if (!frame_) return;
  QWidget* frame = frame_.data();
  OnFrameDestoryed(frame);
  frame_.clear();
  delete frame;
}

void AppBaseQTView::SetVisible(bool visible) {
  AppBaseView::SetVisible(visible);
  if (frame_) frame_->setVisible(visible);
}

void AppBaseQTView::ShowToast(std::string const& text, int type, int duration_ms, bool top_most, unsigned flags) {
  framework::ToastRequest request;
  request.type = type;
  request.text = text;
  request.duration_ms = static_cast<unsigned>(duration_ms);
  request.flags = flags;
  request.owner = framework::SubscriberId(this);
  if (auto* service = framework::GetUIService()) service->ShowToast(request);
}
