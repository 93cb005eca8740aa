#pragma once

// The whole module on screen (panel, overlay, notice, a file's page, the web
// bridge on both engines) over a scripted meeting, for the sweeps that send
// its inputs every wrong kind of payload.
#include <QApplication>
#include <QMenu>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "chat/runtime/chat_module_registration.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/extension/chatting_panel_show_view.h"
#include "chat/ui/desktop/view/chat_input/chat_input_view.h"
#include "devkit/in_process_module.h"
#include "framework/extension/extension.h"
#include "framework/model/model_impl.h"
#include "framework/module/app_module.h"
#include "framework/module/providers.h"
#include "framework/navigation/routing.h"
#include "framework/viewmodel/view_model.h"
#include "framework/web/web_host.h"
#include "items_fixture.h"
#include "sim/scripted_participants.h"
#include "uikit/extension/extension_host_widget.h"

namespace sweep_test {

namespace reg = chat::registration;
using PropSet = std::set<uint32_t>;
using Snapshot = std::map<framework::ViewModel*, PropSet>;

inline PropSet PropsOf(framework::ViewModel const& vm) {
  auto props = vm.SetProps();
  return PropSet(props.begin(), props.end());
}

// The props each live view model holds now.
inline Snapshot Props() {
  Snapshot snapshot;
  for (auto* vm : framework::ViewModel::LiveViewModels()) snapshot[vm] = PropsOf(*vm);
  return snapshot;
}

// One line per prop a view model still alive holds now and did not in `before`.
inline std::string Gained(Snapshot const& before, std::string const& what) {
  std::string lines;
  for (auto* vm : framework::ViewModel::LiveViewModels()) {
    auto it = before.find(vm);
    if (it == before.end()) continue;
    for (uint32_t prop : vm->SetProps()) {
      if (!it->second.count(prop)) {
        lines += what + ": view model type " + std::to_string(vm->type()) + " published prop " +
                 std::to_string(prop) + "\n";
      }
    }
  }
  return lines;
}

// A payload of every kind but the one a caller expects.
struct Payload {
  std::string kind;
  Variant value;
};

inline std::vector<Payload> WrongPayloads() {
  return {
      {"null", Variant()},
      {"true", Variant(true)},
      {"integer", Variant(-7)},
      {"double", Variant(3.5)},
      {"text", Variant("<b>x</b>")},
      {"empty array", Variant(Variant::Array{})},
      {"empty map", Variant(Variant::Map{})},
  };
}

// Copies of the map `sample` with one key at a time holding a value of
// another type, named "key as kind".
inline std::vector<Payload> MistypedKeys(Variant const& sample) {
  std::vector<Payload> copies;
  if (!sample.IsMap()) return copies;
  static const std::vector<Payload> kinds = WrongPayloads();
  for (auto const& [key, value] : sample.AsMap()) {
    for (auto const& kind : kinds) {
      if (kind.value.type() == value.type()) continue;
      Variant copy = sample;
      copy.Set(key, kind.value);
      copies.push_back({key + " as " + kind.kind, std::move(copy)});
    }
  }
  return copies;
}

class SweepTest : public items_test::MeetingTest {
 protected:
  void SetUp() override {
    MeetingTest::SetUp();
    meeting_.meeting_settings().SetSwitch("notice_enable", true);
    module_ = std::make_unique<InProcessChatModule>();
    ASSERT_TRUE(module_->activated());
  }
  void TearDown() override {
    pages_.clear();
    overlay_.reset();
    panel_.reset();
    module_.reset();
    MeetingTest::TearDown();
  }

  // Everything the module can put on screen in a meeting, with a chat behind it.
  void ShowEverything() {
    panel_ = std::make_unique<ExtensionHostWidget>("contributes:app.chat_full");
    panel_->resize(380, 640);
    ASSERT_EQ(panel_->Populate(), 2);
    panel_->show();
    stage_ = std::make_unique<QWidget>();
    stage_->resize(900, 600);
    stage_->show();
    overlay_ = std::make_unique<ExtensionHostWidget>("contributes:app.inmeeting_float");
    overlay_->SetFloatingParent(stage_.get());
    ASSERT_EQ(overlay_->Populate(), 1);
    sim::ScriptedParticipants participants(meeting_);
    participants.Start(1);
    ASSERT_TRUE(talvex_test::WaitUntil([&] { return participants.finished(); }, 10000));
    framework::NavigateService::Instance()->Navigate("talvex://page/meeting_notice");
    for (auto const& view : panel_->views()) {
      if (auto* input = dynamic_cast<QtView::ChatInputView*>(view.get())) input->ShowMemberSelect();
      auto* list = dynamic_cast<QtView::ChattingPanelShowView*>(view.get());
      if (!list) continue;
      for (auto const& id : list->MessageIds()) {
        auto record = talvex::ChatUtils::GetMsgInfoPtrById(id);
        if (record && record->GetInt32("chat_type") == 8) list->ShowFilePreview(id);
      }
      // A message's context menu: its view model stays with the list.
      if (!list->MessageIds().empty()) list->ShowMessageMenu(list->MessageIds().back(), 0);
      if (list->last_menu()) list->last_menu()->close();
    }
    for (auto engine : {talvex::WebHost::Engine::kWebview, talvex::WebHost::Engine::kBrowserBridge}) {
      pages_.push_back(std::make_unique<talvex::WebHost>(engine));
      ASSERT_TRUE(pages_.back()->Attach("com.talvex.jsbridge.meetingchat"));
    }
    QApplication::processEvents();
  }

  // The models the module follows: the client's, and the module's own.
  std::vector<std::pair<std::string, framework::ModelPtr>> Models() const {
    std::vector<std::pair<std::string, framework::ModelPtr>> models;
    auto app = meeting_.application();
    for (int id : app->ModelIds()) models.emplace_back("client model " + std::to_string(id), app->GetModel(id));
    for (auto const& [id, model] : ModuleModels()) models.emplace_back("module model " + std::to_string(id), model);
    return models;
  }

  // The module's own models and biz models, as its provider made them.
  std::vector<std::pair<int, framework::ModelPtr>> ModuleModels() const {
    std::vector<std::pair<int, framework::ModelPtr>> models;
    auto* provider = dynamic_cast<framework::ModelProviderBaseImpl*>(reg::Runtime()->GetModelProvider());
    if (!provider) return models;
    for (int id : provider->ModelIds()) models.emplace_back(id, provider->ModelOf(id));
    return models;
  }

  std::unique_ptr<InProcessChatModule> module_;
  std::unique_ptr<ExtensionHostWidget> panel_;
  std::unique_ptr<QWidget> stage_;
  std::unique_ptr<ExtensionHostWidget> overlay_;
  std::vector<std::unique_ptr<talvex::WebHost>> pages_;
};

}  // namespace sweep_test
