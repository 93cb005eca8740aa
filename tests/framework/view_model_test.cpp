#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/analytics/analytics.h"
#include "framework/model/model_impl.h"
#include "framework/ui/ui_service.h"
#include "framework/viewmodel/authorize_view_model.h"
#include "framework/viewmodel/extension_view_model.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "support/test_util.h"

namespace {

using framework::SubscriberId;
using Strings = std::vector<std::string>;
constexpr uint32_t kProp = framework::NameId("title");
constexpr uint32_t kEvent = 3;

// Writes every framework call it receives into `calls`.
class ProbeViewModel : public framework::StatefulViewModel {
 public:
  Strings calls;
  void OnViewCreated(Variant const* p) override { calls.push_back("created:" + (p ? p->GetString("k") : "")); }
  void OnViewAttached(Variant const*) override { calls.push_back("attached"); }
  void OnViewDetached() override {
    calls.push_back("detached");
    StatefulViewModel::OnViewDetached();
  }
  void OnViewModelHandleActionBefore(uint32_t a, Variant const*) override {
    calls.push_back("before:" + N(a) + " events=" + N(base::analytics::RecordedEvents("e#test#click").size()));
  }
  void HandleAction(uint32_t a, Variant const* p) override {
    calls.push_back("action:" + N(a));
    if (a == 99) StatefulViewModel::HandleAction(a, p);
  }
  void OnViewModelHandleActionAfter(uint32_t a, Variant const*) override { calls.push_back("after:" + N(a)); }
  void LifecycleStateChanged(int o, int n) override { calls.push_back("state:" + N(o) + ">" + N(n)); }
  void OnNewParams(Variant const* o, Variant const* n, bool) override {
    calls.push_back("params:" + o->ToString() + ">" + n->ToString());
  }
  void InitStatelessData(Variant& data) override { data.Set("init", true); }
  void OnCustomParamChanged(Variant const* o, Variant const* n) override {
    calls.push_back("custom:" + o->ToString() + ">" + n->ToString());
  }
  template <typename T>
  static std::string N(T n) { return std::to_string(n); }
};

struct Change {
  Variant now;
  bool had_old;
  Variant old;
};

// Binds kProp and keeps every notification.
std::shared_ptr<std::vector<Change>> BindRecorder(framework::ViewModel& vm, bool fire_now = false) {
  auto changes = std::make_shared<std::vector<Change>>();
  vm.BindProp(
      kProp,
      [changes](Variant const* n, Variant const* o) {
        changes->push_back({n ? *n : Variant("<no value>"), o != nullptr, o ? *o : Variant()});
      },
      fire_now);
  return changes;
}

framework::RecordingUIService* Ui() { return dynamic_cast<framework::RecordingUIService*>(framework::GetUIService()); }

Variant Map(Variant::Map fields) { return Variant(std::move(fields)); }

class ViewModelTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(Ui(), nullptr);
    Ui()->Clear();
    base::analytics::ClearRecordedEvents();
  }
};

// Each overload must keep its type: a C string must not turn into a bool.
TEST_F(ViewModelTest, EverySetPropValueFormReachesTheBindingWithItsType) {
  ProbeViewModel vm;
  auto c = BindRecorder(vm);
  const Variant map = Map({{"a", 1}});
  vm.SetPropValue(kProp, map);
  vm.SetPropValue(kProp, Variant("moved"));
  vm.SetPropValue(kProp, true);
  vm.SetPropValue(kProp, "text");
  vm.SetPropValue(kProp, std::string("string"));
  vm.SetPropValue(kProp, 2.5);
  vm.SetPropValue(kProp, 7);
  vm.SetPropValue(kProp, std::make_shared<Variant>("shared"));
  vm.SetPropValue(kProp, std::shared_ptr<Variant>());
  vm.SetPropValue(kProp, nullptr);

  std::vector<Variant> now;
  for (auto const& change : *c) now.push_back(change.now);
  EXPECT_EQ(now, (std::vector<Variant>{map, "moved", true, "text", "string", 2.5, 7, "shared", Variant(), Variant()}));
  EXPECT_FALSE((*c)[0].had_old);
  EXPECT_EQ((*c)[1].old, map);
  // A null prop is a signal: a second one fires again.
  EXPECT_TRUE((*c)[9].had_old && (*c)[9].old.IsNull());
  EXPECT_EQ(vm.PropSetCount(kProp), 10u);
}

TEST_F(ViewModelTest, PropsAreReadByPointerOrCopyAndBoundWithFireNow) {
  ProbeViewModel vm;
  EXPECT_EQ(vm.GetPropValue(kProp), nullptr);
  auto early = BindRecorder(vm, true);
  EXPECT_TRUE(early->empty()) << "nothing to deliver yet";

  vm.SetPropValue(kProp, "v1");
  EXPECT_EQ(vm.PickPropValue(kProp), Variant("v1"));

  auto late = BindRecorder(vm, true);
  ASSERT_EQ(late->size(), 1u);
  EXPECT_EQ((*late)[0].now.AsStr(), "v1");
  EXPECT_FALSE((*late)[0].had_old);
  auto quiet = BindRecorder(vm, false);
  EXPECT_TRUE(quiet->empty());

  vm.UnbindProp(kProp);
  vm.SetPropValue(kProp, "v2");
  EXPECT_EQ(late->size(), 1u);
  EXPECT_TRUE(quiet->empty());
  EXPECT_EQ(vm.GetPropValue(kProp)->AsStr(), "v2");
}

TEST_F(ViewModelTest, SetPropValueForResultAsksTheViewOrAnswersNull) {
  ProbeViewModel vm;
  Strings answers;
  auto collect = [&](Variant const* a) { answers.push_back(a ? a->ToString() : "null"); };
  Variant question("q");

  vm.SetPropValueForResult(kProp, &question, collect);
  EXPECT_EQ(vm.GetPropValue(kProp)->AsStr(), "q");

  framework::ViewModel::PropAnswer later;
  vm.BindPropSetResult(kProp, [&](Variant const* v, framework::ViewModel::PropAnswer answer) {
    answers.push_back("asked:" + v->ToString());
    later = std::move(answer);
  });
  vm.SetPropValueForResult(kProp, nullptr, collect);
  ASSERT_TRUE(later);
  Variant reply("yes");
  later(&reply);
  vm.UnbindPropSetResult(kProp);
  vm.SetPropValueForResult(kProp, &question, collect);
  EXPECT_EQ(answers, (Strings{"null", "asked:", "yes", "null"}));
}

TEST_F(ViewModelTest, HandleLogsTheReportIdThenRunsBeforeActionAfter) {
  ProbeViewModel vm;
  Variant params = Map({{"statistics_report_id", "e#test#click"}});
  vm.Handle(5, &params);
  EXPECT_EQ(vm.calls, (Strings{"before:5 events=1", "action:5", "after:5"}));

  // Without a usable report id nothing is logged, and the action still runs.
  vm.calls.clear();
  Variant other = Map({{"x", 1}}), not_a_map("statistics_report_id"), empty_id = Map({{"statistics_report_id", ""}});
  for (Variant const* p : std::initializer_list<Variant const*>{&other, &not_a_map, &empty_id, nullptr}) vm.Handle(6, p);
  EXPECT_EQ(vm.calls.size(), 12u);
  EXPECT_EQ(base::analytics::RecordedEvents().size(), 1u);

  // A number is logged as its text; the base reports an action nobody knows.
  talvex_test::LogCapture log;
  Variant numeric = Map({{"statistics_report_id", 1234}});
  vm.Handle(99, &numeric);
  EXPECT_EQ(base::analytics::RecordedEvents("1234").size(), 1u);
  EXPECT_TRUE(log.Contains("unhandled action 99"));
}

// Answers actions 1 and 2 through the framework's table; 2 asks to be
// handed a new handler while it runs.
class TableBaseViewModel : public framework::StatefulViewModel {
 public:
  Strings calls;
  TableBaseViewModel() {
    OnAction(1, [this](Variant const* p) { calls.push_back("base 1:" + (p ? p->ToString() : "null")); });
    OnAction(2, [this](Variant const*) { calls.push_back("base 2"); });
  }
  void Replace(uint32_t action, ActionHandler handler) { OnAction(action, std::move(handler)); }
};

// Takes over action 2 of its base and adds 3.
class TableViewModel : public TableBaseViewModel {
 public:
  TableViewModel() {
    OnAction(2, [this](Variant const*) { calls.push_back("sub 2"); });
    OnAction(3, [this](Variant const*) { calls.push_back("sub 3"); });
  }
  void OnViewModelHandleActionBefore(uint32_t a, Variant const*) override { calls.push_back("before " + N(a)); }
  void OnViewModelHandleActionAfter(uint32_t a, Variant const*) override { calls.push_back("after " + N(a)); }
  static std::string N(uint32_t n) { return std::to_string(n); }
};

TEST_F(ViewModelTest, RegisteredActionsAreListedAndDispatchedWithSubclassesTakingOverTheirBase) {
  TableViewModel vm;
  EXPECT_EQ(vm.Actions(), (std::vector<uint32_t>{1, 2, 3}));
  talvex_test::LogCapture log;
  Variant seven(7);
  vm.Handle(1, &seven);
  vm.Handle(2);
  vm.HandleAction(3, nullptr);
  EXPECT_EQ(vm.calls, (Strings{"before 1", "base 1:7", "after 1", "before 2", "sub 2", "after 2", "sub 3"}));
  EXPECT_FALSE(log.Contains("unhandled action"));

  // An action without a handler still reaches the hooks and is reported.
  vm.calls.clear();
  vm.Handle(4);
  EXPECT_EQ(vm.calls, (Strings{"before 4", "after 4"}));
  EXPECT_TRUE(log.Contains("unhandled action 4"));

  // A handler may replace itself while it runs; a null handler removes the
  // action from the table.
  vm.Replace(1, [&vm](Variant const*) {
    vm.calls.push_back("old 1");
    vm.Replace(1, [&vm](Variant const*) { vm.calls.push_back("new 1"); });
    vm.calls.push_back("old 1 still running");
  });
  vm.calls.clear();
  vm.HandleAction(1, nullptr);
  vm.HandleAction(1, nullptr);
  EXPECT_EQ(vm.calls, (Strings{"old 1", "old 1 still running", "new 1"}));
  vm.Replace(3, nullptr);
  EXPECT_EQ(vm.Actions(), (std::vector<uint32_t>{1, 2}));
}

TEST_F(ViewModelTest, HandleKeepsTheLastNonEmptyMapOfEachActionAsItsSample) {
  TableViewModel vm;
  EXPECT_TRUE(vm.SampleParams(1).IsNull());
  Variant first = Map({{"msg_id", "m1"}, {"template_type", 2}});
  vm.Handle(1, &first);
  EXPECT_EQ(vm.SampleParams(1), first);
  EXPECT_TRUE(vm.SampleParams(1).SharesStorageWith(first)) << "a sample is a shared copy, not a deep one";

  // Payloads that are not maps, or empty ones, say nothing about the keys.
  Variant text("m2"), empty(Variant::Map{});
  for (Variant const* p : std::initializer_list<Variant const*>{&text, &empty, nullptr}) vm.Handle(1, p);
  EXPECT_EQ(vm.SampleParams(1), first);

  // The sender's later changes stay its own.
  first.Set("msg_id", "changed");
  EXPECT_EQ(vm.SampleParams(1).GetString("msg_id"), "m1");

  // Samples are kept per action, for unknown actions too; a direct
  // HandleAction is no view traffic and keeps none.
  Variant second = Map({{"x", 1}});
  vm.Handle(4, &second);
  vm.HandleAction(2, &second);
  EXPECT_EQ(vm.SampleParams(4), second);
  EXPECT_TRUE(vm.SampleParams(2).IsNull());
  vm.Handle(1, &second);
  EXPECT_EQ(vm.SampleParams(1), second);
}

std::shared_ptr<framework::EventHandler> Count(int* calls) {
  return std::make_shared<framework::EventHandler>([calls](Variant const*) { ++*calls; });
}

// Its framework base is not its first base: it subscribes with its own
// address, which is not that of its ViewModel part.
class SideInterface {
 public:
  virtual ~SideInterface() = default;
  int side_value = 0;
};
class MixedViewModel : public SideInterface, public framework::StatefulViewModel {};

TEST_F(ViewModelTest, RecordedSubscriptionsEndOnDetachOrDestruction) {
  auto model = std::make_shared<framework::ModelImpl>(500);
  auto vm = std::make_shared<MixedViewModel>();
  const uint64_t id = SubscriberId(vm.get());
  int vm_calls = 0, other_calls = 0;
  vm->DidAttached(nullptr);
  framework::ViewModel::RecordSubscribe(model, vm.get());
  framework::ViewModel::RecordSubscribe(model, vm.get());
  framework::ViewModel::RecordPrioritySubscribe(model, vm.get());
  model->Subscribe(kEvent, id, Count(&vm_calls));
  model->Subscribe(kEvent + 1, id, Count(&vm_calls));
  model->SubscribePriority(kEvent, 1, id, std::make_shared<framework::PriorityEventHandler>([](Variant const*, bool&) {}));
  // A listener that is no view model: nothing records it, nothing drops it.
  SideInterface listener;
  framework::ViewModel::RecordSubscribe(model, &listener);
  model->Subscribe(kEvent, SubscriberId(&listener), Count(&other_calls));
  EXPECT_EQ(vm->RecordedSubscriptionCount(), 2u) << "one record per model and kind";

  model->FireEvent(kEvent, nullptr);
  vm->DidDetached();
  model->FireEvent(kEvent, nullptr);
  model->FireEvent(kEvent + 1, nullptr);
  EXPECT_EQ(vm_calls, 1);
  EXPECT_FALSE(model->HasSubscriber(id));
  EXPECT_EQ(other_calls, 2);

  // A view model that goes without a detach leaves nothing behind either.
  auto gone = std::make_shared<ProbeViewModel>();
  const uint64_t gone_id = SubscriberId(gone.get());
  framework::ViewModel::RecordSubscribe(model, gone.get());
  model->Subscribe(kEvent, gone_id, Count(&vm_calls));
  gone.reset();
  EXPECT_FALSE(model->HasSubscriber(gone_id));

  // A model that went first is skipped.
  auto short_lived = std::make_shared<framework::ModelImpl>(502);
  framework::ViewModel::RecordSubscribe(short_lived, vm.get());
  framework::ViewModel::RecordSubscribe(framework::ModelPtr(), vm.get());
  short_lived.reset();
  vm->UnsubscribeAllEvent();
  EXPECT_EQ(vm->RecordedSubscriptionCount(), 0u);
}

TEST_F(ViewModelTest, ActionThresholdHitsOnlyRightAfterARecordedAction) {
  ProbeViewModel vm;
  Variant long_wait = Map({{"threshold_ms", 60000}}), no_wait = Map({{"threshold_ms", 0}}),
          short_wait = Map({{"threshold_ms", 1}});
  EXPECT_FALSE(vm.IsHitActionThreshold(1, &long_wait)) << "never recorded";
  vm.RecordLastAction4Threshold(1);
  EXPECT_TRUE(vm.IsHitActionThreshold(1, &long_wait));
  EXPECT_TRUE(vm.IsHitActionThreshold(1, nullptr)) << "the default window";
  EXPECT_FALSE(vm.IsHitActionThreshold(1, &no_wait));
  EXPECT_FALSE(vm.IsHitActionThreshold(2, &long_wait)) << "per action";
  talvex_test::SpinFor(10);
  EXPECT_FALSE(vm.IsHitActionThreshold(1, &short_wait));
}

TEST_F(ViewModelTest, LifecycleCallsArriveInOrderAndAttachOnlyOnce) {
  ProbeViewModel vm;
  Variant params = Map({{"k", "v"}});
  params["navigator_params"].Set("view_context", static_cast<uint64_t>(0x1234));
  vm.DidCreated(&params);
  vm.DidAttached(&params);
  vm.DidAttached(&params);
  EXPECT_TRUE(vm.attached());
  vm.DidChangeLifecycleState(2);
  vm.DidChangeLifecycleState(2);
  Variant fresh("new");
  vm.SetNewParams(&fresh);
  vm.DidDetached();
  vm.DidDetached();
  EXPECT_EQ(vm.calls,
            (Strings{"created:v", "attached", "state:0>2", "params:" + params.ToString() + ">new", "detached"}));
  ASSERT_NE(vm.context(), nullptr);
  EXPECT_EQ(vm.context()->view_params().GetString("k"), "v");
  EXPECT_EQ(vm.view_context(), 0x1234u);

  ProbeViewModel unattached;
  unattached.DidDetached();  // never attached: nothing to undo
  EXPECT_TRUE(unattached.calls.empty());
  EXPECT_EQ(unattached.view_context(), 0u);
}

TEST_F(ViewModelTest, AlertCarriesItsSettingsAndIsAnsweredOnceThroughItsCallback) {
  ProbeViewModel vm;
  Strings answers;
  const long id = framework::UIViewModel::AlertBuilder(&vm)
                      .SetAutoDismiss(false)
                      .setCheckState(true)
                      .setCheckStateText("Remember")
                      .setCheckSecState(false)
                      .setCheckSecStateText("Also")
                      .SetInteractiveFunc([&](long alert, int button, Variant* data) {
                        answers.push_back(std::to_string(alert) + "/" + std::to_string(button) + "/" +
                                          (data ? data->ToString() : "null"));
                      })
                      .Show();
  auto const* alert = Ui()->LastOpenAlert();
  ASSERT_NE(alert, nullptr);
  auto const& r = alert->request;
  EXPECT_EQ(alert->id, id);
  EXPECT_EQ(std::make_tuple(r.auto_dismiss, r.owner), std::make_tuple(false, SubscriberId(&vm)));
  // The two check boxes must not be confused with each other.
  EXPECT_EQ(std::make_tuple(r.has_check, r.check_state, r.check_state_text), std::make_tuple(true, true, "Remember"));
  EXPECT_EQ(std::make_tuple(r.has_second_check, r.check_sec_state, r.check_sec_state_text),
            std::make_tuple(true, false, "Also"));

  Variant data = Map({{"check_state", false}});
  EXPECT_TRUE(Ui()->Answer(id, framework::kAlertButtonPositive, data));
  EXPECT_FALSE(Ui()->Answer(id, framework::kAlertButtonNegative)) << "already answered";
  EXPECT_EQ(answers, Strings{std::to_string(id) + "/1/" + data.ToString()});

  // An alert without a callback is still answered.
  const long bare = framework::UIViewModel::AlertBuilder(&vm).Show();
  EXPECT_NE(bare, id);
  EXPECT_TRUE(Ui()->Answer(bare, framework::kAlertButtonClosed));
  EXPECT_EQ(answers.size(), 1u);
}

TEST_F(ViewModelTest, DisposingAlertsClosesOnlyTheOwnersAndDetachDisposesThem) {
  ProbeViewModel mine, theirs;
  int answered = 0;
  auto count = [&](long, int, Variant*) { ++answered; };
  const long a = framework::UIViewModel::AlertBuilder(&mine).SetTitle("a").SetInteractiveFunc(count).Show();
  const long b = framework::UIViewModel::AlertBuilder(&theirs).SetTitle("b").SetInteractiveFunc(count).Show();
  mine.DisposeAlertAll();
  EXPECT_FALSE(Ui()->Answer(a, framework::kAlertButtonPositive));
  EXPECT_EQ(Ui()->LastOpenAlert()->id, b);

  theirs.DidAttached(nullptr);
  theirs.DidDetached();
  EXPECT_EQ(Ui()->LastOpenAlert(), nullptr);
  EXPECT_FALSE(Ui()->Answer(b, framework::kAlertButtonPositive));
  EXPECT_EQ(answered, 0);
}

TEST_F(ViewModelTest, StatefulDataAndStatelessDataReachTheirBindings) {
  ProbeViewModel vm;
  Strings seen;
  vm.BindStateful([&](int state, Variant const* d) { seen.push_back(std::to_string(state) + ":" + d->ToString()); },
                  true);
  Variant data = Map({{"n", 1}});
  vm.SetStatefulData(2, &data);
  vm.SetStatefulData(3, nullptr);
  EXPECT_EQ(seen, (Strings{"0:", "2:" + data.ToString(), "3:"}));
  EXPECT_EQ(vm.GetCurrentState(), 3);
  EXPECT_TRUE(vm.GetStatefulData()->IsNull());

  vm.DidCreated(nullptr);
  Variant stateless;
  vm.BindStateless([&](Variant const* d) { stateless = *d; }, true);
  EXPECT_TRUE(stateless.GetBoolean("init"));

  Variant custom("c1");
  vm.SetCustomParam(&custom);
  vm.SetCustomParam(nullptr);
  EXPECT_EQ(vm.calls.back(), "custom:c1>");
}

TEST_F(ViewModelTest, UnauthorisedActionsAreRefusedWithAToast) {
  talvex::AuthorizeViewModelT<framework::StatefulViewModel> vm(7);
  EXPECT_TRUE(vm.CheckAuthorizeBeforeAction());
  EXPECT_TRUE(Ui()->toasts().empty());
  talvex::AuthorizeState::Set(talvex::AuthorizeState::kNetworkBroken);
  EXPECT_FALSE(vm.CheckAuthorizeBeforeAction());
  talvex::AuthorizeState::Set(talvex::AuthorizeState::kAuthorized);
  ASSERT_EQ(Ui()->toasts().size(), 1u);
  EXPECT_EQ(Ui()->toasts()[0].text, talvex::AuthorizeState::RefusalText(talvex::AuthorizeState::kNetworkBroken));
  EXPECT_FALSE(Ui()->toasts()[0].text.empty());
  EXPECT_EQ(Ui()->toasts()[0].owner, SubscriberId(&vm));
}

TEST_F(ViewModelTest, AnExtensionViewModelTiesItselfToItsExtensionWhenCreated) {
  auto extension = std::make_shared<framework::extension::ExtensionImpl>();
  auto vm = std::make_shared<talvex::ExtensionViewModel>();
  vm->SetExtension(extension);
  EXPECT_EQ(extension->GetViewModel(), nullptr);
  vm->DidCreated(nullptr);
  EXPECT_EQ(extension->GetViewModel(), vm);
}

}  // namespace
