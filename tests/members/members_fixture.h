// A joined meeting with people in it, on the test clock, and the member list's
// view model attached to it as a view would.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/analytics/analytics.h"
#include "base/timer/tx_timer.h"
#include "chat/viewmodel/private_chat_members_view_model.h"
#include "framework/meeting/member_provider.h"
#include "framework/resource/resource.h"
#include "framework/ui/ui_service.h"
#include "sim/meeting_sim.h"
#include "sim/roster.h"
#include "support/test_util.h"

namespace members_test {

using VM = chat::PrivateChatMembersViewModel;
using Role = talvex::MeetingContext::Role;
using Strings = std::vector<std::string>;

inline std::string Text(char const* name) {
  return framework::Resource::GetInstance()->GetString(framework::NameId(name));
}
inline Variant Person(std::string const& id, std::string const& nickname, std::string const& role = "member") {
  return Variant::Map{{"user_id", id}, {"app_uid", id}, {"app_id", "1400"}, {"nickname", nickname}, {"role", role}};
}

class MembersFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    base::analytics::ClearRecordedEvents();
    framework::SetUIService(std::make_shared<framework::RecordingUIService>());
    meeting_.Install();
    meeting_.meeting().Join();
  }
  void TearDown() override {
    Detach();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
  }
  void Attach(Variant params = Variant()) {
    vm_ = std::make_shared<VM>();
    vm_->DidCreated(nullptr);
    vm_->DidAttached(&params);
  }
  void Detach() {
    if (vm_) vm_->DidDetached();
    vm_.reset();
  }
  // Lets the provider answer (and the search delay run out).
  void Settle(int ms = 1000) { clock_.Advance(ms); }
  Variant List() const { return vm_->PickPropValue(VM::kPropMemberList); }
  size_t Published() const { return vm_->PropSetCount(VM::kPropMemberList); }
  // The names of a section's rows; title rows as "#<title_type>".
  static Strings Names(Variant const& info) {
    Strings names;
    for (auto const& row : info.Get("user_list").AsArray()) {
      names.push_back(row.GetInt32("type") == VM::kRowTitle ? "#" + std::to_string(row.GetInt32("title_type"))
                                                             : row.GetString("nickname"));
    }
    return names;
  }
  Strings InMeeting() const { return Names(List().Get("in_meeting_info")); }
  Strings Second() const { return Names(List().Get("waiting_member_info")); }
  // The row of a member in a section, null when absent.
  static Variant RowOf(Variant const& info, std::string const& user_id) {
    for (auto const& row : info.Get("user_list").AsArray()) {
      if (row.GetString("user_id") == user_id) return row;
    }
    return Variant();
  }
  void Type(std::string const& text) {
    Variant params = Variant::Map{{"search_text", text}};
    vm_->Handle(VM::kActionSearchTextChanged, &params);
  }
  size_t Reported(char const* event) const { return base::analytics::RecordedEvents(event).size(); }

  talvex_common::utils::timer::ManualTimerClock clock_;
  sim::MeetingSimulator meeting_;
  std::shared_ptr<VM> vm_;
};

}  // namespace members_test
