// A message sent through the send model comes back into the chat panel's
// list through the simulated meeting: at once as sending, then updated with
// its result; a failed send stays in the list and the user reads why.
#include "history_fixture.h"

#include "chat/biz_model/chat_send_message_biz_model.h"

namespace history_test {
namespace {

class SendRoundTripTest : public HistoryFixture {
 protected:
  void SetUp() override {
    HistoryFixture::SetUp();
    Attach();
    WaitForPage();
    updates_.clear();
    send_ = runtime_.ModelOf(chat::kChatSendMessageBizModelId);
    ASSERT_NE(send_, nullptr);
  }

  bool SendText(std::string const& text) {
    Variant params(base::variant::kVariantTypeMap);
    params.Set(chat::kSendFieldText, text);
    params.Set("template_type", 2);
    return send_->Invoke(TypedBizModel::ChatSendMessage::ModelImpl::kSendTextMessage, &params, nullptr);
  }

  framework::ModelPtr send_;
};

TEST_F(SendRoundTripTest, ASentTextShowsAtOnceAndIsUpdatedByItsResult) {
  ASSERT_TRUE(SendText("hello everyone"));
  ASSERT_EQ(updates_.size(), 1u) << "one's own message skips the flush";
  EXPECT_EQ(updates_[0].type, List::kUpdateAppend);
  const std::string id = updates_[0].ids.back();
  auto record = meeting_.messages().FindMessage(id);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->GetInt32("message_status"), 1);
  EXPECT_EQ(record->Get("ui_msg_content")[0].GetString("item_content"), "hello everyone");

  ASSERT_TRUE(talvex_test::WaitUntil([&] { return updates_.size() == 2; }));
  EXPECT_EQ(updates_[1].type, List::kUpdateChanged);
  EXPECT_EQ(updates_[1].ids, std::vector<std::string>{id});
  EXPECT_EQ(meeting_.messages().FindMessage(id)->GetInt32("message_status"), 2);
  EXPECT_TRUE(ui_->toasts().empty());
}

TEST_F(SendRoundTripTest, AFailedSendStaysWithItsStatusAndTheUserReadsWhy) {
  meeting_.send_desk().FailNextSends(7004);
  ASSERT_TRUE(SendText("too fast"));
  const std::string id = updates_.at(0).ids.back();
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return !ui_->toasts().empty(); }));
  EXPECT_EQ(ui_->toasts().back().text, Text(0x5ea85d0));
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return updates_.size() == 2; }));
  EXPECT_EQ(updates_[1].ids, std::vector<std::string>{id});
  EXPECT_EQ(meeting_.messages().FindMessage(id)->GetInt32("message_status"), 3);
}

}  // namespace
}  // namespace history_test
