#include <gtest/gtest.h>

#include <QLabel>
#include <QPointer>
#include <QWidget>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "framework/view/app_view.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "support/test_util.h"

namespace {

using Strings = std::vector<std::string>;
constexpr uint32_t kTitle = framework::NameId("title");

class TitleViewModel : public framework::StatefulViewModel {
 public:
  Strings calls;
  void OnViewCreated(Variant const* p) override {
    calls.push_back("created " + (p ? p->Get("navigator_params").GetString("scheme") : "(null)"));
  }
  void OnViewAttached(Variant const*) override { calls.push_back("attached"); }
  void OnViewDetached() override {
    calls.push_back("detached");
    StatefulViewModel::OnViewDetached();
  }
};

// A frame with one label that shows the "title" prop.
class TitleView : public AppQTView {
 public:
  Strings calls;
  framework::StatefulViewModel* bound = nullptr;
  QPointer<QLabel> label;
  bool make_frame = true;
  std::string last_event;

  bool HandleViewEvent(AppBaseView* source, int event, Variant const* params, Variant* result) override {
    last_event = std::to_string(event) + (source ? " from a view" : "") + " " + (params ? params->ToString() : "");
    if (result) *result = Variant("handled");
    return event == 1;
  }

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override {
    calls.push_back("frame " + params->Get("navigator_params").GetString("scheme"));
    if (!make_frame) return nullptr;
    auto* frame = new QWidget(parent);
    label = new QLabel(frame);
    return frame;
  }
  void OnFrameCreated(QWidget*) override { calls.push_back("frame created"); }
  void OnFrameDestoryed(QWidget*) override { calls.push_back("frame destroyed"); }
  void OnViewModelBoundEx(framework::StatefulViewModel* vm) override {
    bound = vm;
    calls.push_back(std::string("bound, created=") + (vm->context() ? "yes" : "no"));
    vm->BindProp(kTitle, [this](Variant const* now, Variant const*) {
      if (label) label->setText(QString::fromStdString(now->AsStr()));
    });
  }
  void OnActivate() override { calls.push_back("activate"); }
  void OnDispose() override { calls.push_back("dispose"); }
};

Variant NavigatorParams(std::string const& scheme) {
  Variant params(base::variant::kVariantTypeMap);
  params["navigator_params"].Set("scheme", scheme);
  return params;
}

TEST(AppViewTest, BuildMakesTheFrameAndBindsTheViewModel) {
  QWidget parent;
  auto view = std::make_shared<TitleView>();
  auto vm = std::make_shared<TitleViewModel>();
  view->SetViewModel(vm);
  Variant params = NavigatorParams("talvex://page/test");
  ASSERT_TRUE(view->Build({}, &parent, &params, true));

  ASSERT_NE(view->frame(), nullptr);
  EXPECT_EQ(view->frame()->parentWidget(), &parent);
  EXPECT_EQ(view->bound, vm.get());
  EXPECT_EQ(view->calls, (Strings{"frame talvex://page/test", "frame created", "bound, created=yes", "activate"}));
  EXPECT_EQ(vm->calls, (Strings{"created talvex://page/test", "attached"}));

  vm->SetPropValue(kTitle, "Chat");
  EXPECT_EQ(view->label->text(), "Chat");

  // Building again without a dispose changes nothing.
  EXPECT_TRUE(view->Build({}, &parent, &params, false));
  EXPECT_EQ(vm->calls.size(), 2u);
  EXPECT_EQ(view->calls.size(), 4u);

  view->SetVisible(false);
  EXPECT_FALSE(view->frame()->isVisibleTo(&parent));
}

TEST(AppViewTest, AViewModelCreatedBeforeTheViewIsNotCreatedAgain) {
  auto view = std::make_shared<TitleView>();
  auto vm = std::make_shared<TitleViewModel>();
  Variant early = NavigatorParams("early");
  vm->DidCreated(&early);
  view->SetViewModel(vm);
  Variant params = NavigatorParams("late");
  ASSERT_TRUE(view->Build({}, nullptr, &params, false));
  EXPECT_EQ(vm->calls, (Strings{"created early", "attached"}));
  EXPECT_EQ(view->calls, (Strings{"frame late", "frame created", "bound, created=yes"}));
  // A frame without a parent widget goes with the view.
  QPointer<QWidget> frame = view->frame();
  view.reset();
  EXPECT_TRUE(frame.isNull());
  EXPECT_EQ(vm->calls.back(), "attached");
}

TEST(AppViewTest, DisposeDetachesTheViewModelDeletesTheFrameAndForbidsReuse) {
  QWidget parent;
  auto view = std::make_shared<TitleView>();
  auto vm = std::make_shared<TitleViewModel>();
  view->SetViewModel(vm);
  ASSERT_TRUE(view->Build({}, &parent, nullptr, false));
  QPointer<QWidget> frame = view->frame();
  QPointer<QLabel> label = view->label;

  view->Dispose();
  view->Dispose();
  EXPECT_TRUE(frame.isNull());
  EXPECT_TRUE(label.isNull());
  EXPECT_EQ(view->view_model(), nullptr);
  EXPECT_FALSE(vm->attached());
  EXPECT_EQ(vm->calls.back(), "detached");
  EXPECT_EQ(view->calls.back(), "frame destroyed");
  EXPECT_EQ(std::count(view->calls.begin(), view->calls.end(), "dispose"), 1);
  vm->SetPropValue(kTitle, "after");  // the binding is gone: nothing to reach

  talvex_test::LogCapture log;
  EXPECT_FALSE(view->Build({}, &parent, nullptr, true));
  EXPECT_TRUE(log.Contains("not support reuse view, please check", base::log::kLogError));
  EXPECT_EQ(view->frame(), nullptr);
}

TEST(AppViewTest, AViewWithoutAFrameIsNotBuilt) {
  auto view = std::make_shared<TitleView>();
  auto vm = std::make_shared<TitleViewModel>();
  view->make_frame = false;
  view->SetViewModel(vm);
  talvex_test::LogCapture log;
  EXPECT_FALSE(view->Build({}, nullptr, nullptr, true));
  EXPECT_TRUE(log.Contains("view built no frame"));
  EXPECT_TRUE(vm->calls.empty());
  EXPECT_EQ(view->bound, nullptr);
}

TEST(AppViewTest, ReplacingOrDeactivatingTheViewModelDetachesIt) {
  auto view = std::make_shared<TitleView>();
  auto first = std::make_shared<TitleViewModel>();
  view->SetViewModel(first);
  ASSERT_TRUE(view->Build({}, nullptr, nullptr, false));
  view->ActiveViewModel(false, nullptr);
  view->ActiveViewModel(true, nullptr);
  auto second = std::make_shared<TitleViewModel>();
  view->SetViewModel(second);
  EXPECT_EQ(first->calls, (Strings{"created ", "attached", "detached", "attached", "detached"}));
  view->Dispose();
  EXPECT_TRUE(second->calls.empty());  // never bound, so never attached
}

TEST(AppViewTest, ViewEventsGoToTheParentOrToTheTarget) {
  auto parent = std::make_shared<TitleView>();
  auto child = std::make_shared<TitleView>();
  ASSERT_TRUE(parent->Build({}, nullptr, nullptr, false));
  ASSERT_TRUE(child->Build(parent, parent->frame(), nullptr, false));

  Variant params("p"), result;
  EXPECT_TRUE(child->FireViewEvent(1, &params, &result));
  EXPECT_EQ(parent->last_event, "1 from a view p");
  EXPECT_EQ(result.AsStr(), "handled");
  EXPECT_FALSE(child->FireViewEvent(2, nullptr, nullptr));  // delivered, not handled
  EXPECT_EQ(parent->last_event, "2 from a view ");

  EXPECT_TRUE(parent->FireViewEvent(child.get(), 1, nullptr, nullptr));
  EXPECT_EQ(child->last_event, "1 from a view ");
  EXPECT_FALSE(parent->FireViewEvent(nullptr, 1, nullptr, nullptr));
  EXPECT_FALSE(parent->FireViewEvent(1, nullptr, nullptr));  // no parent of its own

  child->Dispose();
  parent.reset();
  EXPECT_FALSE(child->FireViewEvent(1, nullptr, nullptr));
}

}  // namespace
