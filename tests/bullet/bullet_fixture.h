// A joined meeting with the chat module running, the floating chat's view
// model attached as the client attaches it, and every publication of its
// props recorded. Timers run on the test clock.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/analytics/analytics.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/config/configure_service.h"
#include "framework/extension/extension.h"
#include "framework/journal/host_journal.h"
#include "framework/meeting/meeting_context.h"
#include "framework/resource/resource.h"
#include "framework/ui/ui_service.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace bullet_test {

using VM = chat::InMeetingBulletViewModel;

inline std::string Text(char const* name) {
  return framework::Resource::GetInstance()->GetString(framework::NameId(name));
}
inline std::string Text(uint32_t id) { return framework::Resource::GetInstance()->GetString(id); }
inline Variant Member(std::string const& id, std::string const& role = "member") {
  return Variant::Map{{"user_id", id}, {"app_uid", "uid-" + id}, {"app_id", "1400"},
                      {"nickname", "Member " + id}, {"role", role}};
}
inline void Configure(char const* section, char const* key, Variant value) {
  talvexsdk::utils::service::GetConfigureService()->Set(section, key, std::move(value));
}

class BulletFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    clock_ = std::make_unique<talvex_test::TestClock>();
    framework::extension::GetExtensionService()->Clear();
    base::analytics::ClearRecordedEvents();
    framework::HostJournal::Clear();
    ui_ = std::make_shared<framework::RecordingUIService>();
    framework::SetUIService(ui_);
    meeting_.Install();
    // The settings file outlives a test; what one test stored must not decide the next.
    for (char const* key : {sim::BulletSettingsModel::kShowKey, sim::BulletSettingsModel::kNewMsgKey}) {
      Variant reset = Variant::Map{{"key", key}, {"value", Variant()}};
      meeting_.settings().Invoke(4, &reset, nullptr);
    }
    for (char const* id : {"u2", "u3"}) meeting_.members().AddMember(Member(id));
    meeting_.members().AddMember(Member("u-host", "host"));
    ASSERT_TRUE(runtime_.Activate());
  }
  void TearDown() override {
    if (vm_) vm_->DidDetached();
    vm_.reset();
    if (runtime_.IsActivated()) runtime_.Unactivate();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
    for (auto [section, key] : {std::pair{"inmeeting", "show_webinar_welcom_tip"},
                                {"inmeeting", "self_join_webinar_barrage_tip"},
                                {"inmeeting", "show_webinar_welcom_tip_service_delay"},
                                {"inmeeting", "welcom-message"}}) {
      Configure(section, key, Variant());
    }
    clock_.reset();
  }

  // As the client does: by number from the module's provider, then attached.
  void Attach() {
    vm_ = std::dynamic_pointer_cast<VM>(
        runtime_.GetViewModelProvider()->CreateViewModel(chat::kViewModelInMeetingBullet));
    ASSERT_NE(vm_, nullptr);
    for (uint32_t prop : kProps) {
      vm_->BindProp(prop, [this, prop](Variant const* value, Variant const*) {
        published_[prop].push_back(value ? *value : Variant());
      });
    }
    Variant none;
    vm_->DidCreated(&none);
    vm_->DidAttached(&none);
  }
  void JoinAndAttach() {
    Attach();
    meeting_.meeting().Join();
  }
  // What a bullet reads: its content, or its items joined.
  static std::string TextOf(Variant const& bullet) {
    if (!bullet.Has("msg_content_ex_list")) return bullet.GetString("msg_content");
    std::string text;
    for (auto const& item : bullet.Get("msg_content_ex_list").AsArray()) {
      text += item.GetInt32("item_type") == 1 ? item.GetString("item_emoji_text") : item.GetString("item_content");
    }
    return text;
  }

  std::vector<Variant>& Published(uint32_t prop) { return published_[prop]; }
  Variant Last(uint32_t prop) { return published_[prop].empty() ? Variant() : published_[prop].back(); }
  void Forget() { published_.clear(); }
  // The bullets the view was given, oldest first.
  std::vector<Variant>& Bullets() { return published_[VM::kPropNewBulletMsg]; }
  void Advance(int ms) { clock_->Advance(ms); }

  std::string Say(int who, std::string const& text) {
    return meeting_.messages().Post(sim::TextRecord(meeting_.meeting().meeting_id(), People(who), text));
  }
  sim::Sender People(int who) {
    return sim::Sender("u" + std::to_string(who), "Member u" + std::to_string(who), "uid-u" + std::to_string(who));
  }
  std::vector<std::string> Toasts() const {
    std::vector<std::string> texts;
    for (auto const& t : ui_->toasts()) texts.push_back(t.text);
    return texts;
  }
  size_t Reported(char const* event) { return base::analytics::RecordedEvents(event).size(); }
  void Act(uint32_t action, Variant const& params) { vm_->Handle(action, &params); }

  static constexpr uint32_t kProps[] = {
      VM::kPropNewBulletMsg,      VM::kPropBulletDraftText,   VM::kPropUnreadMsgShow,
      VM::kPropNewTextArrived,    VM::kPropFlashUnfoldBtn,    VM::kPropShieldCheck,
      VM::kPropUnreadDot,         VM::kPropShowOrHideBulletMsg, VM::kPropUnfoldState,
      VM::kPropUiData,            VM::kPropPrivateChatAuthorityInfo, VM::kPropQuickReplyDisable,
      VM::kPropShowQuickReplyEmoji, VM::kPropWelcomeTip,      VM::kPropAnimatableTextItem,
      VM::kPropHideAnimatableTip, VM::kPropViewEnabled,       VM::kPropWaitingRoomHide,
      VM::kPropPicInPicUidata,    VM::kPropDocIsEditState};

  std::unique_ptr<talvex_test::TestClock> clock_;
  sim::MeetingSimulator meeting_;
  chat::ChatModuleRuntime runtime_;
  std::shared_ptr<framework::RecordingUIService> ui_;
  std::shared_ptr<VM> vm_;
  std::map<uint32_t, std::vector<Variant>> published_;
};

}  // namespace bullet_test
