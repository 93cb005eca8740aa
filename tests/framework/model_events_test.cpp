#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "framework/model/model_impl.h"
#include "framework/module/app_module.h"
#include "framework/module/module_service.h"

namespace {

using framework::EventHandler;
using framework::PriorityEventHandler;
using Strings = std::vector<std::string>;

// Subscriber ids are addresses; any distinct numbers do for the hub.
constexpr uint64_t kA = 0xA0, kB = 0xB0, kC = 0xC0, kD = 0xD0, kE = 0xE0;
constexpr uint32_t kEvent = 7;

std::shared_ptr<EventHandler> Plain(std::function<void(Variant const*)> f) {
  return std::make_shared<EventHandler>(std::move(f));
}
std::shared_ptr<PriorityEventHandler> Prio(std::function<void(Variant const*, bool&)> f) {
  return std::make_shared<PriorityEventHandler>(std::move(f));
}

// Echoes method 1 and knows no other.
class EchoModel : public framework::ModelImpl {
 public:
  EchoModel() : ModelImpl(42) {
    OnMethod(1, [](Variant const* params, Variant* result) {
      if (result) *result = params ? *params : Variant("none");
      return true;
    });
  }
  void Replace(uint32_t method, MethodHandler handler) { OnMethod(method, std::move(handler)); }
};

// Takes over its base's method 1 (refusing strings) and adds 5.
class StrictEchoModel : public EchoModel {
 public:
  StrictEchoModel() {
    OnMethod(5, [](Variant const*, Variant* result) {
      if (result) *result = 5;
      return true;
    });
    OnMethod(1, [](Variant const* params, Variant* result) {
      if (params && params->IsString()) return false;
      if (result) *result = "strict";
      return true;
    });
  }
};

class ModelEventsTest : public testing::Test {
 protected:
  Strings calls_;
  auto Log(std::string name) {
    return Plain([this, name](Variant const*) { calls_.push_back(name); });
  }
  auto LogPrio(std::string name, bool stop = false) {
    return Prio([this, name, stop](Variant const*, bool& s) {
      calls_.push_back(name);
      s = stop;
    });
  }
  // The calls made since the last look.
  Strings Take() { return std::exchange(calls_, {}); }
};

TEST_F(ModelEventsTest, PriorityHandlersRunHighestFirstThenPlainInSubscriptionOrder) {
  framework::ModelImpl model;
  std::vector<std::string> payloads;
  model.Subscribe(kEvent, kA, Plain([&](Variant const* v) {
    calls_.push_back("plain-a");
    payloads.push_back(v ? v->ToString() : "null");
  }));
  model.SubscribePriority(kEvent, 1, kB, LogPrio("p1-b"));
  model.Subscribe(kEvent, kC, Log("plain-c"));
  model.SubscribePriority(kEvent, 5, kD, LogPrio("p5-d"));
  model.SubscribePriority(kEvent, 1, kE, LogPrio("p1-e"));
  model.Subscribe(kEvent + 1, kA, Log("other-event"));

  EXPECT_FALSE(model.FireEvent(kEvent, Variant(1)));
  EXPECT_EQ(Take(), (Strings{"p5-d", "p1-b", "p1-e", "plain-a", "plain-c"}));
  model.FireEvent(kEvent, nullptr);
  EXPECT_EQ(payloads, (Strings{"1", "null"}));
}

TEST_F(ModelEventsTest, StopFlagEndsDeliveryForEveryLaterHandler) {
  framework::ModelImpl model;
  model.SubscribePriority(kEvent, 9, kA, LogPrio("first"));
  model.SubscribePriority(kEvent, 5, kB, LogPrio("stopper", true));
  model.SubscribePriority(kEvent, 1, kC, LogPrio("low"));
  model.Subscribe(kEvent, kD, Log("plain"));

  EXPECT_TRUE(model.FireEvent(kEvent, nullptr));
  EXPECT_EQ(Take(), (Strings{"first", "stopper"}));
  model.UnsubscribePriority(kEvent, kB);
  EXPECT_FALSE(model.FireEvent(kEvent, nullptr));
  EXPECT_EQ(Take(), (Strings{"first", "low", "plain"}));
}

TEST_F(ModelEventsTest, HandlersMayUnsubscribeAndSubscribeDuringDelivery) {
  framework::ModelImpl model;
  // On the first event a removes b (plain) and e (priority, not yet run)
  // and adds c.
  bool first = true;
  model.SubscribePriority(kEvent, 3, kA, Prio([&](Variant const*, bool&) {
    calls_.push_back("a");
    if (!first) return;
    first = false;
    model.Unsubscribe(kEvent, kB);
    model.UnsubscribePriority(kEvent, kE);
    model.Subscribe(kEvent, kC, Log("c"));
  }));
  model.SubscribePriority(kEvent, 1, kE, LogPrio("e"));
  model.Subscribe(kEvent, kB, Log("b"));
  // d removes itself: it runs now and never again.
  model.Subscribe(kEvent, kD, Plain([&](Variant const*) {
    calls_.push_back("d");
    model.Unsubscribe(kEvent, kD);
  }));

  model.FireEvent(kEvent, nullptr);
  EXPECT_EQ(Take(), (Strings{"a", "d"}));
  model.FireEvent(kEvent, nullptr);
  EXPECT_EQ(Take(), (Strings{"a", "c"}));
}

TEST_F(ModelEventsTest, UnInitDuringDeliveryStopsTheRemainingHandlers) {
  framework::ModelImpl model;
  model.Subscribe(kEvent, kA, Plain([&](Variant const*) {
    calls_.push_back("a");
    model.UnInit();
  }));
  model.Subscribe(kEvent, kB, Log("b"));
  model.FireEvent(kEvent, nullptr);
  model.FireEvent(kEvent, nullptr);
  EXPECT_EQ(calls_, (Strings{"a"}));
  EXPECT_EQ(model.SubscriberCount(kEvent), 0u);
}

TEST_F(ModelEventsTest, EachUnsubscribeRemovesOnlyItsKindOrEverythingOfASubscriber) {
  framework::ModelImpl model;
  model.Subscribe(kEvent, kA, Log("plain"));
  model.SubscribePriority(kEvent, 1, kA, LogPrio("prio"));
  model.Unsubscribe(kEvent, kA);
  model.FireEvent(kEvent, nullptr);
  EXPECT_EQ(Take(), (Strings{"prio"}));

  model.Subscribe(kEvent, kA, Log("plain"));
  model.UnsubscribePriority(kA);
  model.FireEvent(kEvent, nullptr);
  EXPECT_EQ(Take(), (Strings{"plain"}));

  model.Subscribe(kEvent + 1, kA, Log("a-other"));
  model.SubscribePriority(kEvent, 2, kA, LogPrio("a-prio"));
  model.Subscribe(kEvent, kB, Log("b"));
  model.Unsubscribe(kA);
  EXPECT_FALSE(model.HasSubscriber(kA));
  model.FireEvent(kEvent, nullptr);
  model.FireEvent(kEvent + 1, nullptr);
  EXPECT_EQ(Take(), (Strings{"b"}));
}

TEST_F(ModelEventsTest, ASecondSubscriptionReplacesTheFirstAndNullHandlersAreIgnored) {
  framework::ModelImpl model;
  model.Subscribe(kEvent, kA, Log("old"));
  model.SubscribeWithLocation(kEvent, kA, Log("new"), "here");
  model.Subscribe(kEvent, kB, nullptr);
  model.SubscribePriority(kEvent, 1, kC, nullptr);
  model.FireEvent(kEvent, nullptr);
  EXPECT_EQ(calls_, (Strings{"new"}));
  EXPECT_EQ(model.SubscriberCount(kEvent), 1u);
}

TEST_F(ModelEventsTest, PointToPointAndAsyncCallsGoThroughInvoke) {
  EchoModel model;
  Variant params("p"), result;
  EXPECT_TRUE(model.P2PCall(1, kB, &params, &result));
  EXPECT_EQ(result.AsStr(), "p");
  EXPECT_FALSE(model.P2PCall(2, kB, &params, &result));
  EXPECT_EQ(model.AsyncCall(1, nullptr).get().AsStr(), "none");
  EXPECT_TRUE(model.AsyncCall(9, &params).get().IsNull()) << "a refused call yields null";
}

TEST_F(ModelEventsTest, RegisteredMethodsAreListedAndAnUnknownOneIsRefusedLeavingTheResult) {
  StrictEchoModel model;
  EXPECT_EQ(model.Methods(), (std::vector<uint32_t>{1, 5}));
  Variant text("t"), number(3), result("untouched");
  EXPECT_FALSE(model.Invoke(1, &text, &result));
  EXPECT_EQ(result.AsStr(), "untouched");
  EXPECT_TRUE(model.Invoke(1, &number, &result));
  EXPECT_EQ(result.AsStr(), "strict");
  EXPECT_TRUE(model.Invoke(5, nullptr, nullptr)) << "a caller may want no answer";
  result = "untouched";
  EXPECT_FALSE(model.Invoke(2, &number, &result));
  EXPECT_EQ(result.AsStr(), "untouched");
  EXPECT_EQ(model.AsyncCall(5, nullptr).get().AsInt32(), 5);

  // A handler may replace itself while it runs; a null handler removes it.
  model.Replace(5, [&model](Variant const*, Variant* r) {
    model.Replace(5, [](Variant const*, Variant* r2) {
      if (r2) *r2 = "second";
      return true;
    });
    if (r) *r = "first";
    return true;
  });
  EXPECT_TRUE(model.Invoke(5, nullptr, &result));
  EXPECT_EQ(result.AsStr(), "first");
  EXPECT_TRUE(model.Invoke(5, nullptr, &result));
  EXPECT_EQ(result.AsStr(), "second");
  model.Replace(5, nullptr);
  EXPECT_EQ(model.Methods(), (std::vector<uint32_t>{1}));
  EXPECT_FALSE(model.Invoke(5, nullptr, &result));
}

TEST_F(ModelEventsTest, FiringKeepsTheLastNonEmptyMapOfEachEventAsItsSample) {
  framework::ModelImpl model(9);
  EXPECT_TRUE(model.SamplePayload(kEvent).IsNull());
  // Kept whether or not anybody follows the event: a follower may come later.
  Variant record(Variant::Map{{"msg_id", "m1"}, {"chat_type", 1}});
  model.FireEvent(kEvent, &record);
  EXPECT_EQ(model.SamplePayload(kEvent), record);
  EXPECT_TRUE(model.SamplePayload(kEvent).SharesStorageWith(record));

  model.Subscribe(kEvent, kA, Log("a"));
  Variant empty(Variant::Map{}), scalar(1), list(Variant::Array{record});
  for (Variant const* p : std::initializer_list<Variant const*>{&empty, &scalar, &list, nullptr}) {
    model.FireEvent(kEvent, p);
  }
  EXPECT_EQ(Take().size(), 4u);
  EXPECT_EQ(model.SamplePayload(kEvent), record) << "only non-empty maps are samples";

  // A handler that changes the payload in place (a converter) changes the
  // sender's value, not the sample.
  model.SubscribePriority(kEvent, 1, kB, Prio([](Variant const* p, bool&) {
                            const_cast<Variant*>(p)->Set("ui_msg_content", "converted");
                          }));
  Variant next(Variant::Map{{"msg_id", "m2"}});
  model.FireEvent(kEvent, &next);
  EXPECT_EQ(next.GetString("ui_msg_content"), "converted");
  EXPECT_EQ(model.SamplePayload(kEvent).GetString("msg_id"), "m2");
  EXPECT_FALSE(model.SamplePayload(kEvent).Has("ui_msg_content"));
  EXPECT_TRUE(model.SamplePayload(kEvent + 1).IsNull());
}

TEST(AppModuleTest, ModelsAreFoundByIdUntilUnregistered) {
  using framework::module::GetAppModuleModel;
  auto* modules = framework::module::GetModuleService();
  modules->SetApplicationModule(nullptr);
  EXPECT_EQ(GetAppModuleModel(517), nullptr);

  auto app = std::make_shared<framework::module::ApplicationModule>();
  modules->SetApplicationModule(app);
  auto model = std::make_shared<EchoModel>();
  app->RegisterModel(517, model);
  app->RegisterModel(517, nullptr);  // ignored: the model stays
  EXPECT_EQ(GetAppModuleModel(517), model);

  app->UnregisterModel(517);
  EXPECT_EQ(GetAppModuleModel(517), nullptr);
  app->RegisterModel(1, model);
  app->Clear();
  EXPECT_EQ(GetAppModuleModel(1), nullptr);
  modules->SetApplicationModule(nullptr);
}

}  // namespace
