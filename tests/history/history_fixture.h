#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "chat/runtime/chat_module_runtime.h"
#include "chat/viewmodel/chat_panel_history_list_view_model.h"
#include "framework/chat/chat_schema_keys.h"
#include "framework/resource/resource.h"
#include "framework/ui/ui_service.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace history_test {

using List = chat::ChatHistoryListBaseViewModel;

inline const sim::Sender kAvery{"u-avery", "Avery Quinn"};
inline const sim::Sender kJordan{"u-jordan", "Jordan Blake"};
inline const sim::Sender kSelf{"u-self", "Alex Morgan"};
inline constexpr char kMeeting[] = "801234567";

// A record or payload written as JSON.
inline Variant Json(std::string const& text) {
  Variant v;
  EXPECT_TRUE(v.FromJsonStr(text.c_str())) << text;
  return v;
}

struct Update {
  int type = -1;
  std::vector<std::string> ids;
  std::vector<std::string> reuse_ids;
};

// The simulated meeting with the chat runtime active; Attach opens a chat
// list on it and records every prop the list publishes.
class HistoryFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    framework::SetUIService(ui_);
    meeting_.Install();
    meeting_.meeting().Join();
    runtime_.Activate();
  }
  void TearDown() override {
    if (list_) list_->DidDetached();
    list_.reset();
    runtime_.Unactivate();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
  }

  template <typename T = chat::ChatPanelHistoryListViewModel>
  void Attach(Variant params = Variant(base::variant::kVariantTypeMap)) {
    auto list = std::make_shared<T>();
    list->SetModuleParams(&runtime_);
    list->BindProp(List::kPropMessageList, [this](Variant const* value, Variant const*) {
      Update update;
      update.type = value->GetInt32(ChatHistoryListMsgListFields_kIntegerMsgListUpdateType, -1);
      for (auto const& item : value->Get(ChatHistoryListMsgListFields_kMsgListMsgList).AsArray()) {
        update.ids.push_back(item.GetString(ChatHistoryListMsgItemFields_kStringMsgItemMsgId));
        update.reuse_ids.push_back(item.GetString(ChatHistoryListMsgItemFields_kStringMsgItemReuseId));
      }
      updates_.push_back(update);
    });
    list->BindProp(List::kPropSnapToBottom, [this](Variant const*, Variant const*) { ++snaps_; });
    list->BindProp(List::kPropScrollToMessage, [this](Variant const* value, Variant const*) {
      scrolls_.push_back(value->GetString(ChatHistoryListScrollToMessageFields_kStringScrollToMessageMsgId));
    });
    list->BindProp(List::kPropUnreadTip, [this](Variant const* value, Variant const*) {
      tips_.push_back(value->GetString(ChatHistoryListShowUnreadMsgTipFields_kStringShowUnreadMsgTipUnreadMsgTips));
      tip_counts_.push_back(value->GetInt32(ChatHistoryListShowUnreadMsgTipFields_kIntegerShowUnreadMsgTipUnreadMsgCount));
    });
    list->DidCreated(&params);
    list->DidAttached(&params);
    list_ = list;
  }

  // Turns the event loop until the list has answered its history request.
  void WaitForPage() {
    ASSERT_TRUE(talvex_test::WaitUntil([this] { return !list_->is_getting_more(); }));
  }

  // Messages already in the meeting before the list opens, ten seconds apart.
  std::vector<std::string> Seed(int count) {
    std::vector<std::string> ids;
    for (int i = 0; i < count; ++i) {
      Variant record = sim::TextRecord(kMeeting, i % 2 ? kAvery : kJordan, "message " + std::to_string(i));
      record.Set("message_time", uint64_t(1700000000 + 10 * i));
      ids.push_back(meeting_.messages().Post(record));
    }
    return ids;
  }

  std::string Receive(sim::Sender const& from, std::string const& text, uint64_t time = 0, bool self = false) {
    Variant record = sim::TextRecord(kMeeting, from, text, self);
    if (time) record.Set("message_time", time);
    return meeting_.messages().Post(record);
  }

  static std::string Text(uint32_t id) { return framework::Resource::GetInstance()->GetString(id); }

  bool IsTip(std::string const& id) {
    auto record = meeting_.messages().FindMessage(id);
    return record && record->GetInt32("chat_type") == -1;
  }

  // First, so that every timer the meeting and the chat make runs on it.
  talvex_test::TestClock clock_;
  sim::MeetingSimulator meeting_;
  chat::ChatModuleRuntime runtime_;
  std::shared_ptr<framework::RecordingUIService> ui_ = std::make_shared<framework::RecordingUIService>();
  std::shared_ptr<List> list_;
  std::vector<Update> updates_;
  std::vector<std::string> scrolls_, tips_;
  std::vector<int> tip_counts_;
  int snaps_ = 0;
};

}  // namespace history_test
