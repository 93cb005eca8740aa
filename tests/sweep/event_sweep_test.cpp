// Every event the module follows, found through the models' own subscription
// records, is sent null, each scalar, an empty array and an empty map, and
// the map it carried in the scripted meeting with one key at a time of
// another type. Nothing may crash or throw, and no view model may publish a
// prop it did not have after the same event carried nothing, or carried its
// well-formed map.
#include <QApplication>
#include <cstdio>
#include <set>
#include <string>

#include "sweep_fixture.h"

namespace sweep_test {
namespace {

using EventSweepTest = SweepTest;

TEST_F(EventSweepTest, EveryFollowedEventSurvivesEveryWrongPayloadAndPublishesNothingNew) {
  ShowEverything();
  const std::vector<Payload> payloads = WrongPayloads();
  std::string gained;
  size_t swept = 0;
  std::set<std::string> models_followed;
  for (auto const& [name, model] : Models()) {
    auto impl = std::dynamic_pointer_cast<framework::ModelImpl>(model);
    if (!impl) continue;
    for (uint32_t event : impl->SubscribedEvents()) {
      models_followed.insert(name);
      ++swept;
      // What the event does as a bare signal is its own business.
      impl->FireEvent(event, nullptr);
      QApplication::processEvents();
      for (auto const& [kind, payload] : payloads) {
        const Snapshot before = Props();
        impl->FireEvent(event, &payload);
        QApplication::processEvents();
        gained += Gained(before, name + " event " + std::to_string(event) + " with " + kind);
      }
    }
  }
  EXPECT_EQ(gained, "");
  // The sweep reaches what the module follows: far more than a handful.
  EXPECT_GE(swept, 60u);
  EXPECT_GE(models_followed.size(), 15u);
  std::printf("swept %zu events of %zu models\n", swept, models_followed.size());
}

TEST_F(EventSweepTest, AnEventsOwnMapWithOneKeyOfAnotherTypePublishesNothingTheMapDidNot) {
  ShowEverything();
  // The maps the scripted meeting's events carried, taken before the sweep
  // fires anything of its own.
  struct Sampled {
    std::string name;
    std::shared_ptr<framework::ModelImpl> model;
    uint32_t event;
    Variant sample;
  };
  std::vector<Sampled> sampled;
  size_t followed = 0;
  for (auto const& [name, model] : Models()) {
    auto impl = std::dynamic_pointer_cast<framework::ModelImpl>(model);
    if (!impl) continue;
    for (uint32_t event : impl->SubscribedEvents()) {
      ++followed;
      Variant sample = impl->SamplePayload(event);
      if (sample.IsMap() && !sample.Empty()) sampled.push_back({name, impl, event, sample});
    }
  }
  std::string gained;
  size_t fired = 0;
  for (auto const& [name, model, event, sample] : sampled) {
    if (model->SubscriberCount(event) == 0) continue;
    // The baseline: what the well-formed map itself publishes.
    model->FireEvent(event, &sample);
    QApplication::processEvents();
    const Snapshot baseline = Props();
    for (auto const& [kind, payload] : MistypedKeys(sample)) {
      ++fired;
      model->FireEvent(event, &payload);
      QApplication::processEvents();
      gained += Gained(baseline, name + " event " + std::to_string(event) + " with " + kind);
    }
  }
  EXPECT_EQ(gained, "");
  std::printf("%zu of %zu followed events had a sample; %zu mistyped copies fired\n", sampled.size(), followed,
              fired);
  // The scripted meeting's maps: the message model's (received, removed,
  // converted, ...), the meeting's, the members', and the notice's own.
  EXPECT_GE(sampled.size(), 8u);
  EXPECT_GE(fired, 444u);
}

}  // namespace
}  // namespace sweep_test
