#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <string>

#include "base/variant/variant.h"

namespace framework {
class StatefulViewModel;
}

// The base of every view: a view binds its view model's props, builds
// widgets, and sends user actions back. It never touches a model.
class AppBaseView : public std::enable_shared_from_this<AppBaseView> {
 public:
  AppBaseView();
  virtual ~AppBaseView();
  AppBaseView(AppBaseView const&) = delete;
  AppBaseView& operator=(AppBaseView const&) = delete;

  virtual void Deactivate();
  // Unbinds and detaches the view model and destroys the frame. A disposed
  // view is never built again.
  virtual void Dispose();
  virtual void OnDeactivate() {}
  virtual void OnDispose() {}

  virtual void OnViewModelBound(framework::StatefulViewModel* view_model);
  virtual void DestroyFrame() {}
  virtual void SetVisible(bool visible) { visible_ = visible; }
  virtual int ViewType() const { return 0; }
  // Bind props here, one BindProp a prop.
  virtual void OnViewModelBoundEx(framework::StatefulViewModel* view_model) {}
  virtual void OnActivate() {}
  // Another view's event; true when handled.
  virtual bool HandleViewEvent(AppBaseView* source, int event, Variant const* params, Variant* result) {
    return false;
  }

  virtual void ActiveViewModel(bool active, Variant const* params);
  virtual void DisposeViewModel();

  // To the parent view (the view's `view_context`); false when there is none
  // or it didn't handle the event.
  bool FireViewEvent(int event, Variant const* params, Variant* result);
  bool FireViewEvent(AppBaseView* target, int event, Variant const* params, Variant* result);

  void SetViewModel(std::shared_ptr<framework::StatefulViewModel> view_model);
  std::shared_ptr<framework::StatefulViewModel> const& view_model() const { return view_model_; }
  AppBaseView* parent_view() const { return parent_view_.lock().get(); }
  void SetParentView(std::weak_ptr<AppBaseView> parent) { parent_view_ = std::move(parent); }
  bool disposed() const { return disposed_; }
  bool visible() const { return visible_; }

 protected:
  void BindViewModel(Variant const* params);
  bool disposed_ = false;

 private:
  std::shared_ptr<framework::StatefulViewModel> view_model_;
  std::weak_ptr<AppBaseView> parent_view_;
  bool visible_ = true;
  bool view_model_bound_ = false;
};

// A view over a Qt widget frame.
class AppBaseQTView : public AppBaseView {
 public:
  ~AppBaseQTView() override;

  // Builds the frame under `parent_frame` and binds the view model. Refuses a
  // disposed view. `params` may carry `navigator_params` with `view_context`
  // (the parent view's address).
  bool Build(std::weak_ptr<AppBaseView> parent, QWidget* parent_frame, Variant const* params, bool activate_now);

  QWidget* frame() const { return frame_.data(); }
  QWidget* parent_frame() const { return parent_frame_.data(); }
  virtual bool IsNativeView() const { return false; }
  void DestroyFrame() override;
  void SetVisible(bool visible) override;

  // From a view: the same toast service as a view model's.
  void ShowToast(std::string const& text, int type = 0, int duration_ms = 2000, bool top_most = false,
                 unsigned flags = 0);

 protected:
  // Makes and returns the widget.
  virtual QWidget* BuildFrame(QWidget* parent, Variant* params) = 0;
  virtual void OnFrameCreated(QWidget* frame) {}
  virtual void OnFrameDestoryed(QWidget* frame) {}

 private:
  QPointer<QWidget> frame_;
  QPointer<QWidget> parent_frame_;
};

class AppQTView : public AppBaseQTView {};

// Ties a widget to the view that made it.
class WidgetView {
 public:
  virtual ~WidgetView() = default;
  void SetWidgetView(std::shared_ptr<AppBaseView> view) { view_ = view; }
  std::shared_ptr<AppBaseView> GetWidgetView() const { return view_.lock(); }

 private:
  std::weak_ptr<AppBaseView> view_;
};
