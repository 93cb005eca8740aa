#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <string>

#include "framework/navigation/routing.h"
#include "framework/view/app_view.h"
#include "uikit/extension/extension_host_widget.h"

namespace chat {

// A page reached by its scheme: "show" builds the page's view (or raises the
// one on screen), "close" disposes it. With `fresh_on_show` every show
// starts a new view.
class PageController : public framework::Controller {
 public:
  using ViewMaker = std::function<std::shared_ptr<AppBaseQTView>()>;
  PageController(std::string scheme, ViewMaker maker, bool fresh_on_show = false);
  ~PageController() override;

  std::string GetSchemeView() const override { return scheme_; }
  void Call(std::string const& name, Variant const* params) override;
  std::shared_ptr<AppBaseQTView> const& view() const { return view_; }

 private:
  void Show(Variant const* params);
  void Close();

  std::string scheme_;
  ViewMaker maker_;
  bool fresh_on_show_;
  std::shared_ptr<AppBaseQTView> view_;
};

// A page window: a top-level frame titled by a string of the client's table.
class PageWindowView : public AppQTView {
 public:
  PageWindowView(std::string object_name, uint32_t title_id, int width, int height);
  void OnActivate() override;

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override;

 private:
  std::string object_name_;
  uint32_t title_id_;
  int width_;
  int height_;
};

// The chat page: a window of its own holding the whole chat panel, the list
// and the input, built from what the module contributes to the client's chat
// point. Disposing the page disposes the panel's views and view models.
class ChatPageView : public PageWindowView {
 public:
  using PageWindowView::PageWindowView;
  ExtensionHostWidget* panel() const { return panel_.data(); }

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override;
  void OnDispose() override;

 private:
  QPointer<ExtensionHostWidget> panel_;
};

}  // namespace chat

class ChatController : public chat::PageController {
 public:
  ChatController();
};

class ChatRecordQTController : public chat::PageController {
 public:
  ChatRecordQTController();
};

// Each show of the notice builds a fresh dialog on the module's view model.
class MeetingNoticeContoller : public chat::PageController {
 public:
  explicit MeetingNoticeContoller(framework::module::ModuleRuntime* runtime = nullptr);
};

namespace QtView {
class EmojiBulletController : public chat::PageController {
 public:
  EmojiBulletController();
};
}  // namespace QtView
