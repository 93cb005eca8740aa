// The whole module on screen (panel, overlay, notice, a file's page, the web
// bridge on both engines), then every event any of it follows, found through
// the models' own subscription records, is sent null, each scalar, an empty
// array and an empty map. Nothing may crash or throw, and no view model may
// publish a prop it did not have after the same event carried nothing.
#include <QApplication>
#include <QTest>
#include <map>
#include <set>
#include <sstream>

#include "chat/runtime/chat_module_registration.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/extension/chatting_panel_show_view.h"
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
namespace {

namespace reg = chat::registration;
using Snapshot = std::map<framework::ViewModel*, std::set<uint32_t>>;

Snapshot Props() {
  Snapshot snapshot;
  for (auto* vm : framework::ViewModel::LiveViewModels()) {
    auto props = vm->SetProps();
    snapshot[vm] = std::set<uint32_t>(props.begin(), props.end());
  }
  return snapshot;
}

class EventSweepTest : public items_test::MeetingTest {
 protected:
  void SetUp() override {
    MeetingTest::SetUp();
    meeting_.meeting_settings().SetSwitch("notice_enable", true);
    reg::RegisterRuntimeAndExtensions();
    ASSERT_TRUE(reg::Runtime()->Activate());
    reg::LoadUI(reg::Runtime());
  }
  void TearDown() override {
    pages_.clear();
    overlay_.reset();
    panel_.reset();
    reg::UnloadUI();
    if (reg::Runtime()->IsActivated()) reg::Runtime()->Unactivate();
    reg::UnregisterModule();
    framework::UiModuleLoaderRegister::GetInstance()->Remove("chat");
    framework::extension::GetExtensionService()->Clear();
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
      auto* list = dynamic_cast<QtView::ChattingPanelShowView*>(view.get());
      if (!list) continue;
      for (auto const& id : list->MessageIds()) {
        auto record = talvex::ChatUtils::GetMsgInfoPtrById(id);
        if (record && record->GetInt32("chat_type") == 8) list->ShowFilePreview(id);
      }
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
    auto* provider = dynamic_cast<framework::ModelProviderBaseImpl*>(reg::Runtime()->GetModelProvider());
    if (provider) {
      for (int id : provider->ModelIds()) models.emplace_back("module model " + std::to_string(id), provider->ModelOf(id));
    }
    return models;
  }

  std::unique_ptr<ExtensionHostWidget> panel_;
  std::unique_ptr<QWidget> stage_;
  std::unique_ptr<ExtensionHostWidget> overlay_;
  std::vector<std::unique_ptr<talvex::WebHost>> pages_;
};

TEST_F(EventSweepTest, EveryFollowedEventSurvivesEveryWrongPayloadAndPublishesNothingNew) {
  ShowEverything();
  const std::vector<std::pair<char const*, Variant>> payloads = {
      {"null", Variant()},
      {"true", Variant(true)},
      {"integer", Variant(-7)},
      {"double", Variant(3.5)},
      {"text", Variant("<b>x</b>")},
      {"empty array", Variant(Variant::Array{})},
      {"empty map", Variant(Variant::Map{})},
  };
  std::ostringstream gained;
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
        for (auto* vm : framework::ViewModel::LiveViewModels()) {
          auto it = before.find(vm);
          if (it == before.end()) continue;
          for (uint32_t prop : vm->SetProps()) {
            if (!it->second.count(prop)) {
              gained << name << " event " << event << " with " << kind << ": view model type " << vm->type()
                     << " published prop " << prop << "\n";
            }
          }
        }
      }
    }
  }
  EXPECT_EQ(gained.str(), "");
  // The sweep reaches what the module follows: far more than a handful.
  EXPECT_GE(swept, 60u);
  EXPECT_GE(models_followed.size(), 15u);
  std::printf("swept %zu events of %zu models\n", swept, models_followed.size());
}

}  // namespace
}  // namespace sweep_test
