#include <gtest/gtest.h>

#include "base/analytics/analytics.h"
#include "chat/biz_model/chat_biz_model.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/runtime/chat_ids.h"
#include "chat/runtime/chat_module_runtime.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace {

using Model = TypedBizModel::Chat::ModelImpl;
using talvex_test::LogCapture;

class ChatBizModelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    meeting_.Install();
    meeting_.meeting().Join();
    model_.Init();
    model_.Subscribe(Model::kEventUnreadVisible, 1, Record(unread_events_));
    model_.Subscribe(Model::kEventScrollToBottom, 1, Record(scroll_events_));
    model_.Subscribe(Model::kEventTipsPending, 1, Record(tips_events_));
  }
  void TearDown() override {
    model_.UnInit();
    meeting_.Uninstall();
  }

  static std::shared_ptr<framework::EventHandler> Record(std::vector<Variant>& into) {
    return std::make_shared<framework::EventHandler>([&into](Variant const* p) { into.push_back(p ? *p : Variant()); });
  }

  bool Call(uint32_t method, Variant const* params = nullptr) { return model_.Invoke(method, params, &result_); }
  bool Call(uint32_t method, Variant const& params) { return model_.Invoke(method, &params, &result_); }

  bool HasReminder() {
    EXPECT_TRUE(Call(Model::kHasReminder));
    return result_.AsBoolean();
  }
  bool HasSecond() {
    EXPECT_TRUE(Call(Model::kHasSecondMsgId));
    return result_.AsBoolean();
  }

  sim::MeetingSimulator meeting_;
  chat::ChatBizModel model_;
  Variant result_;
  std::vector<Variant> unread_events_, scroll_events_, tips_events_;
};

TEST_F(ChatBizModelTest, EventMethodsFireTheirEventsAndPendingTipsFireOnce) {
  EXPECT_TRUE(Call(Model::kFireUnreadVisible, Variant(true)));
  EXPECT_TRUE(Call(Model::kFireUnreadVisible, Variant(false)));
  ASSERT_EQ(unread_events_.size(), 2u);
  EXPECT_TRUE(unread_events_[0].IsBool() && unread_events_[0].AsBoolean());
  EXPECT_FALSE(unread_events_[1].AsBoolean());
  EXPECT_TRUE(Call(Model::kFireScrollToBottom));
  ASSERT_EQ(scroll_events_.size(), 1u);
  EXPECT_TRUE(scroll_events_[0].IsNull());

  base::analytics::ClearRecordedEvents();
  EXPECT_TRUE(Call(Model::kFlushTipsPending));
  EXPECT_TRUE(tips_events_.empty()) << "nothing pending";
  EXPECT_TRUE(Call(Model::kSetTipsPending, Variant(true)));
  EXPECT_TRUE(Call(Model::kFlushTipsPending));
  EXPECT_TRUE(Call(Model::kFlushTipsPending));
  EXPECT_EQ(tips_events_.size(), 1u);
  EXPECT_EQ(base::analytics::RecordedEvents("inmeeting_im_null_null_tips_null_exp").size(), 1u);
}

TEST_F(ChatBizModelTest, ReminderNeedsAnIdAndNoDisable) {
  EXPECT_FALSE(HasReminder());
  EXPECT_TRUE(Call(Model::kSetReminderMsgId, Variant("m1")));
  EXPECT_TRUE(HasReminder());
  EXPECT_TRUE(Call(Model::kSetReminderDisabled, Variant(true)));
  EXPECT_FALSE(HasReminder());
  EXPECT_TRUE(Call(Model::kSetReminderDisabled, Variant(false)));
  EXPECT_TRUE(HasReminder());

  // The meeting's state reset clears both the disable and the id.
  EXPECT_TRUE(Call(Model::kSetReminderDisabled, Variant(true)));
  meeting_.meeting().Join();
  EXPECT_FALSE(HasReminder());
  EXPECT_TRUE(Call(Model::kSetReminderMsgId, Variant("m2")));
  EXPECT_TRUE(HasReminder()) << "the disable was cleared too";
}

TEST_F(ChatBizModelTest, RemovedMessageIsNoLongerRemindedOrSecond) {
  ASSERT_TRUE(Call(Model::kSetReminderMsgId, Variant("m1")));
  ASSERT_TRUE(Call(Model::kSetSecondMsgId, Variant("m1")));
  for (char const* id : {"m2", "m1"}) {
    Variant record(base::variant::kVariantTypeMap);
    record.Set("msg_id", id);
    meeting_.messages().AddMessage(record);
    meeting_.messages().RemoveMessage(id);
    EXPECT_EQ(HasReminder(), id == std::string("m2")) << id;
    EXPECT_EQ(HasSecond(), id == std::string("m2")) << id;
  }
}

TEST_F(ChatBizModelTest, DraftsAreKeptOnlyWhileTheMeetingIsOn) {
  Variant draft(base::variant::kVariantTypeMap);
  draft.Set("text", "half a thought");
  EXPECT_FALSE(Call(Model::kGetInputDraft)) << "nothing stored yet";
  EXPECT_TRUE(Call(Model::kSetInputDraft, draft));
  ASSERT_TRUE(Call(Model::kGetInputDraft));
  EXPECT_EQ(result_, draft);

  EXPECT_TRUE(Call(Model::kSetBulletDraft, Variant("wave")));
  ASSERT_TRUE(Call(Model::kGetBulletDraft));
  ASSERT_EQ(result_.AsStr(), "wave");

  // Moving rooms drops the bullet draft only; leaving drops both.
  meeting_.meeting().MoveToWaitingRoom();
  ASSERT_TRUE(Call(Model::kGetBulletDraft));
  EXPECT_TRUE(result_.IsNull());
  EXPECT_TRUE(Call(Model::kGetInputDraft));
  EXPECT_TRUE(Call(Model::kSetBulletDraft, Variant("again")));
  meeting_.meeting().Leave();
  EXPECT_FALSE(Call(Model::kGetInputDraft));
  ASSERT_TRUE(Call(Model::kGetBulletDraft));
  EXPECT_TRUE(result_.IsNull());

  // With the meeting off nothing is stored, and the bullet draft is reset.
  EXPECT_FALSE(Call(Model::kSetInputDraft, draft));
  EXPECT_FALSE(Call(Model::kGetInputDraft));
  EXPECT_FALSE(Call(Model::kSetBulletDraft, Variant("late")));

  // A null draft resets at any time.
  meeting_.meeting().Join();
  EXPECT_TRUE(Call(Model::kSetInputDraft, draft));
  EXPECT_TRUE(Call(Model::kSetInputDraft, nullptr));
  EXPECT_FALSE(Call(Model::kGetInputDraft));
}

TEST_F(ChatBizModelTest, WrongPayloadsAreLoggedAndChangeNothing) {
  ASSERT_TRUE(Call(Model::kSetReminderMsgId, Variant("keep")));
  ASSERT_TRUE(Call(Model::kSetSecondMsgId, Variant("keep")));
  LogCapture log;
  Variant a_map(base::variant::kVariantTypeMap);
  for (Variant const* bad : {static_cast<Variant const*>(nullptr), static_cast<Variant const*>(&a_map)}) {
    EXPECT_FALSE(Call(Model::kFireUnreadVisible, bad));
    EXPECT_FALSE(Call(Model::kSetReminderDisabled, bad));
    EXPECT_FALSE(Call(Model::kSetReminderMsgId, bad));
    EXPECT_FALSE(Call(Model::kSetTipsPending, bad));
    EXPECT_FALSE(Call(Model::kSetSecondMsgId, bad));
  }
  EXPECT_TRUE(unread_events_.empty());
  EXPECT_TRUE(HasReminder());
  EXPECT_TRUE(HasSecond());
  EXPECT_GE(log.Count("<IM> chat biz model"), 10u);
  for (auto const& r : log.records()) EXPECT_EQ(r.level, base::log::kLogError) << r.text;

  // Event payloads without a map or an id leave the ids alone.
  meeting_.messages().FireEvent(18, nullptr);
  meeting_.messages().FireEvent(18, &a_map);
  Variant text("keep");
  meeting_.messages().FireEvent(18, &text);
  EXPECT_TRUE(HasReminder());
  EXPECT_TRUE(HasSecond());

  EXPECT_FALSE(Call(12345)) << "unknown method";
}

TEST_F(ChatBizModelTest, UnInitLeavesTheClientsModels) {
  EXPECT_EQ(meeting_.meeting().SubscriberCount(1), 1u);
  EXPECT_EQ(meeting_.messages().SubscriberCount(18), 1u);
  model_.UnInit();
  for (int event : {1, 2, 14}) EXPECT_EQ(meeting_.meeting().SubscriberCount(event), 0u) << event;
  EXPECT_EQ(meeting_.messages().SubscriberCount(18), 0u);
}

TEST(ChatBizModelHelperTest, YieldsTheAnswerOrNull) {
  sim::MeetingSimulator meeting;
  meeting.Install();
  EXPECT_EQ(chat::InvokeChatBizModel(nullptr, Model::kHasReminder), nullptr) << "no runtime";
  chat::ChatModuleRuntime runtime;
  EXPECT_EQ(chat::InvokeChatBizModel(&runtime, Model::kHasReminder), nullptr) << "not activated";
  ASSERT_TRUE(runtime.Activate());
  auto answer = chat::InvokeChatBizModel(&runtime, Model::kHasReminder);
  ASSERT_NE(answer, nullptr);
  EXPECT_FALSE(answer->AsBoolean());
  EXPECT_EQ(chat::InvokeChatBizModel(&runtime, Model::kGetInputDraft), nullptr) << "the model said no";
  Variant id("m9");
  ASSERT_NE(chat::InvokeChatBizModel(&runtime, Model::kSetReminderMsgId, &id), nullptr);
  EXPECT_TRUE(chat::InvokeChatBizModel(&runtime, Model::kHasReminder)->AsBoolean());
  runtime.Unactivate();
}

}  // namespace
