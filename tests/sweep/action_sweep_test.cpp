// With the whole module on screen, every action of every live view model
// (found through the framework's action tables) is sent null, each scalar, an
// empty array, an empty map, and the map a view handed it in the scripted
// meeting with one key at a time of another type; every method of the
// module's own models is called with the same wrong payloads. Nothing may
// crash, open a modal window or trip a sanitizer; a wrongly typed payload
// makes a view model publish nothing it had not published before; a refused
// call leaves the caller's result alone.
#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <typeinfo>

#include "chat/viewmodel/chat_history_list_base_view_model.h"
#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "sweep_fixture.h"

namespace sweep_test {
namespace {

using ActionSweepTest = SweepTest;

// The few sweep payloads that are an action's own type, so that what they
// publish is the action doing its work, with why.
const std::map<std::pair<uint32_t, std::string>, char const*>& WellTypedForTheAction() {
  using List = chat::ChatHistoryListBaseViewModel;
  using Bullet = chat::InMeetingBulletViewModel;
  static const std::map<std::pair<uint32_t, std::string>, char const*> payloads = {
      {{List::kActionGetMore, "no payload"}, "what the list sends at its top: the page before the oldest shown"},
      {{List::kActionGetMimeData, "empty array"}, "an array of ids, of none: an empty clipboard, which the view drops"},
      {{Bullet::kActionScrollBottom, "true"}, "the reader reached the bottom: the unread tip goes"},
      {{Bullet::kActionQuickReplyEmojiClick, "no payload"}, "a click, which carries nothing: the emoji bar opens"},
  };
  return payloads;
}

// The payloads of the wrong type, a null pointer first.
std::vector<std::pair<std::string, Variant const*>> WronglyTyped(std::vector<Payload> const& payloads) {
  std::vector<std::pair<std::string, Variant const*>> out = {{"no payload", nullptr}};
  for (auto const& p : payloads) out.emplace_back(p.kind, &p.value);
  return out;
}

// Closes a modal window an action opened, and says which.
std::string CloseModal(std::string const& what) {
  QWidget* modal = QApplication::activeModalWidget();
  if (!modal) return "";
  const std::string name = modal->metaObject()->className();
  modal->close();
  QApplication::processEvents();
  return what + ": opened the modal " + name + "\n";
}

std::string NameOf(framework::ViewModel const& vm) {
  return std::string(typeid(vm).name()) + " (type " + std::to_string(vm.type()) + ")";
}

// A view model to sweep: the actions it answers, and the maps its views
// handed it before the sweep began.
struct Target {
  std::weak_ptr<framework::ViewModel> vm;
  std::string name;
  std::vector<uint32_t> actions;
  std::map<uint32_t, Variant> samples;
};

TEST_F(ActionSweepTest, EveryActionOfEveryLiveViewModelSurvivesWrongPayloads) {
  ShowEverything();
  const std::vector<Payload> wrong = WrongPayloads();
  std::string problems;
  size_t live = 0, without_actions = 0, swept_models = 0;
  size_t actions = 0, calls = 0, sampled = 0, gone = 0;
  std::set<std::pair<std::string, uint32_t>> kind_actions;
  // Kinds of view model swept so far. An action may open a page in place of
  // one on screen (the notice's, for one): the next pass sweeps the kinds
  // that came up new, until none does.
  std::set<std::string> kinds_swept;
  std::set<framework::ViewModel const*> seen;
  for (int pass = 0; pass < 3; ++pass) {
    std::vector<Target> targets;
    std::set<std::string> kinds;
    for (auto* vm : framework::ViewModel::LiveViewModels()) {
      if (!seen.insert(vm).second || kinds_swept.count(NameOf(*vm))) continue;
      ++live;
      auto owner = vm->weak_from_this();
      ASSERT_FALSE(owner.expired()) << NameOf(*vm) << " is not held by a shared pointer";
      Target target{owner, NameOf(*vm), vm->Actions(), {}};
      kinds.insert(target.name);
      if (target.actions.empty()) {
        ++without_actions;
        continue;
      }
      for (uint32_t action : target.actions) {
        Variant sample = vm->SampleParams(action);
        if (!sample.IsNull()) target.samples[action] = sample;
      }
      targets.push_back(std::move(target));
    }
    if (kinds.empty()) break;
    // In a fixed order, so that a page one action replaces is the same page
    // from run to run.
    std::stable_sort(targets.begin(), targets.end(), [](Target const& a, Target const& b) { return a.name < b.name; });
    for (auto const& kind : kinds) {
      if (std::none_of(targets.begin(), targets.end(), [&](Target const& t) { return t.name == kind; })) {
        kinds_swept.insert(kind);
      }
    }

    for (auto const& target : targets) {
      const size_t calls_before = calls;
      for (uint32_t action : target.actions) {
        const size_t action_calls = calls;
        const std::string what = target.name + " action " + std::to_string(action);
        auto send = [&](std::string const& kind, Variant const* payload, bool typed_wrong) {
          auto vm = target.vm.lock();
          // A view model whose view went (a page the sweep replaced) gets no
          // more actions from anybody.
          if (!vm || !vm->attached()) {
            ++gone;
            return;
          }
          ++calls;
          const PropSet before = PropsOf(*vm);
          vm->Handle(action, payload);
          QApplication::processEvents();
          problems += CloseModal(what + " with " + kind);
          if (!typed_wrong || WellTypedForTheAction().count({action, kind})) return;
          for (uint32_t prop : PropsOf(*vm)) {
            if (!before.count(prop)) {
              problems += what + " with " + kind + ": published prop " + std::to_string(prop) + "\n";
            }
          }
        };
        for (auto const& [kind, payload] : WronglyTyped(wrong)) send(kind, payload, true);
        auto sample = target.samples.find(action);
        if (sample != target.samples.end()) {
          ++sampled;
          for (auto const& [kind, payload] : MistypedKeys(sample->second)) send(kind, &payload, false);
        }
        if (calls != action_calls) {
          ++actions;
          kind_actions.insert({target.name, action});
        }
      }
      if (calls == calls_before) continue;
      kinds_swept.insert(target.name);
      ++swept_models;
    }
  }
  EXPECT_EQ(problems, "");
  std::set<std::string> kinds_with_actions;
  for (auto const& [kind, action] : kind_actions) kinds_with_actions.insert(kind);
  std::printf("swept %zu actions (%zu of %zu kinds of view model) on %zu view models (%zu live, %zu without "
              "actions); %zu calls, %zu actions with a sample, %zu calls skipped for a view model that went\n",
              actions, kind_actions.size(), kinds_with_actions.size(), swept_models, live, without_actions,
              calls, sampled, gone);
  // What the module shows in a meeting: the list and its rows, a message's
  // menu, the input and its member list, the overlay, the notice page and
  // banner, a file's page. Rows of one kind share their actions.
  EXPECT_GE(kind_actions.size(), 74u);
  EXPECT_GE(kinds_with_actions.size(), 12u);
  EXPECT_GE(swept_models, 15u);
}

TEST_F(ActionSweepTest, EveryMethodOfTheModulesModelsSurvivesWrongPayloadsAndARefusalLeavesTheResult) {
  ShowEverything();
  const std::vector<Payload> wrong = WrongPayloads();
  std::string problems;
  size_t models = 0, methods = 0, calls = 0;
  for (auto const& [id, model] : ModuleModels()) {
    auto impl = std::dynamic_pointer_cast<framework::ModelImpl>(model);
    ASSERT_NE(impl, nullptr) << "module model " << id;
    if (impl->Methods().empty()) continue;
    ++models;
    for (uint32_t method : impl->Methods()) {
      ++methods;
      for (auto const& [kind, payload] : WronglyTyped(wrong)) {
        const std::string what = "model " + std::to_string(id) + " method " + std::to_string(method) + " with " + kind;
        const Variant untouched("untouched");
        Variant result = untouched;
        const bool taken = impl->Invoke(method, payload, &result);
        if (!taken && result != untouched && !result.IsNull()) {
          problems += what + ": refused but wrote " + result.ToJson() + "\n";
        }
        impl->Invoke(method, payload, nullptr);
        calls += 2;
        QApplication::processEvents();
        problems += CloseModal(what);
      }
    }
  }
  EXPECT_EQ(problems, "");
  std::printf("swept %zu methods of %zu module models; %zu calls\n", methods, models, calls);
  EXPECT_GE(models, 5u);
  EXPECT_GE(methods, 31u);
}

}  // namespace
}  // namespace sweep_test
