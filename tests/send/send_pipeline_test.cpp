// Text, picture and mixed sends: what reaches the client's message model,
// what the user is told, and what waits for the public-send reminder.
#include "send_fixture.h"

#include "base/util/file_util.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "framework/chat/chat_utils.h"

namespace send_test {
namespace {

using talvex_test::WaitUntil;
using Role = talvex::MeetingContext::Role;

class SendTextTest : public SendFixture {};

TEST_F(SendTextTest, BlankTextIsRefusedAloneAndDroppedInsideAMixedSend) {
  EXPECT_FALSE(SendText(TextParams(" \n \r\n  ")));
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.nothing_to_send")});
  EXPECT_FALSE(SendText(TextParams("")));
  EXPECT_TRUE(refusals_.empty()) << "an empty text is no refusal the user sees";
  EXPECT_EQ(AllSends(), 0u);

  SendMixed(Variant::Array{TextItem("  \n"), TextItem("  hello there \r\n")});
  EXPECT_TRUE(refusals_.empty()) << "a blank piece of a mixed send is dropped silently";
  EXPECT_EQ(SentTexts(), Strings{"hello there"}) << "trimmed at both ends";
  EXPECT_EQ(mixed_sent_.size(), 1u);

  // A list with nothing that can be sent sends nothing, and the box keeps its text.
  SendMixed(Variant::Array{});
  SendMixed(Variant::Array{Variant::Map{{chat::kSendFieldItemType, 7}}});
  EXPECT_EQ(mixed_sent_.size(), 1u);
}

TEST_F(SendTextTest, MixedPiecesGoInOrderUpTo3000CharactersAndOneMoreStopsTheWholeList) {
  std::vector<Variant> seen;
  meeting_.messages().Subscribe(34, 99, Collect(seen));
  std::string at_limit;
  for (int i = 0; i < 3000; ++i) at_limit += "\xC3\xA9";  // two bytes, one character
  const std::string png = WriteFile("mixed.png", PngBytes());

  SendMixed(Variant::Array{TextItem(at_limit), ImageItem(png), TextItem("two")});
  EXPECT_EQ(TakeRefusals(), Strings{});
  ASSERT_TRUE(WaitUntil([&] { return meeting_.send_desk().sent_ids().size() == 3; }));
  EXPECT_EQ(SentTexts(), (Strings{at_limit, "two"}));
  std::vector<int> kinds;
  for (auto const& id : meeting_.send_desk().sent_ids()) {
    kinds.push_back(meeting_.messages().FindMessage(id)->GetInt32("chat_type"));
  }
  EXPECT_EQ(kinds, (std::vector<int>{0, 4, 0})) << "the text after the picture waits for its copy";
  EXPECT_EQ(seen.size(), 1u) << "the send model never stops the event";
  meeting_.messages().Unsubscribe(34, 99);

  meeting_.messages().ClearInvocations();
  SendMixed(Variant::Array{TextItem("first piece"), TextItem(at_limit + "x"), ImageItem(png)});
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.text_too_long")});
  talvex_test::DrainLoopers();
  EXPECT_EQ(AllSends(), 0u) << "nothing of the list goes out";
  EXPECT_EQ(mixed_sent_.size(), 1u);
}

TEST_F(SendTextTest, ReceiverTypesPickTheConversationAndTheMethod) {
  meeting_.members().SetInWaitingRoom("u3", true);
  struct Case {
    Variant receiver;
    uint32_t method;
    std::string conv_id;  // empty: the group
  };
  const std::vector<Case> cases = {
      {Receiver("u2", 1), 7, "c2c_u2"}, {Receiver("u3", 6), 7, "c2c_u3"}, {Receiver("u3", 7), 7, "c2c_u3"},
      {GroupReceiver(2), 7, ""},        {GroupReceiver(3), 23, ""},       {GroupReceiver(4), 7, ""},
      {GroupReceiver(5), 7, ""},        {Variant(), 7, ""},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(framework::VariantToString(&c.receiver));
    meeting_.messages().ClearInvocations();
    ChooseReceiver(c.receiver);
    EXPECT_TRUE(SendText(TextParams("hi")));
    auto sent = Sends(c.method);
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].GetInteger("conv_type"), c.conv_id.empty() ? 2 : 1);
    EXPECT_EQ(sent[0].Has("conv_id"), !c.conv_id.empty());
    EXPECT_EQ(sent[0].GetString("conv_id"), c.conv_id);
    EXPECT_EQ(sent[0].GetInteger("message_send_from_type"), 2);
  }
  EXPECT_EQ(TakeRefusals(), Strings{});

  // An attendee writing to a webinar group uses the attendees' method; the
  // bullet surface marks its sends as its own.
  meeting_.context().is_webinar = true;
  meeting_.context().self_role = Role::kRoleAttendee;
  meeting_.messages().ClearInvocations();
  ChooseReceiver(GroupReceiver(4));
  EXPECT_TRUE(SendText(TextParams("to the panel", 1)));
  ASSERT_EQ(Sends(40).size(), 1u);
  EXPECT_EQ(Sends(40)[0].GetInteger("message_send_from_type"), 1);

  ChooseReceiver(GroupReceiver(0));
  meeting_.messages().ClearInvocations();
  EXPECT_TRUE(SendText(TextParams("nobody", 7)));
  EXPECT_EQ(AllSends(), 0u) << "an unknown receiver type sends nothing";
}

TEST_F(SendTextTest, TheSendComesBackAsAServerRoundTripAndIsReported) {
  std::vector<Variant> results, added;
  meeting_.messages().Subscribe(16, 5, Collect(results));
  meeting_.messages().Subscribe(35, 5, Collect(added));
  ChooseReceiver(Receiver("u2"));
  EXPECT_TRUE(SendText(TextParams("private hello")));
  // The sending message is announced at once, by its id; the result follows.
  ASSERT_EQ(added.size(), 1u);
  EXPECT_TRUE(results.empty());
  ASSERT_TRUE(WaitUntil([&] { return results.size() == 1; }));
  EXPECT_EQ(results[0].GetString("msg_id"), added[0].AsStr());
  EXPECT_EQ(results[0].GetInteger("result"), 0);
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(added[0].AsStr());
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->GetInteger("message_status"), 2);
  EXPECT_EQ(record->GetString("message_conv_id"), "c2c_u2");
  EXPECT_EQ(base::analytics::RecordedEvents("im_null_null_send_null_null_im").at(0).properties["to_uid"], "uid-u2");

  meeting_.send_desk().FailNextSends(10017);
  EXPECT_TRUE(SendText(TextParams("this one fails")));
  ASSERT_TRUE(WaitUntil([&] { return results.size() == 2; }));
  EXPECT_EQ(results[1].GetInteger("result"), 10017);
  EXPECT_EQ(talvex::ChatUtils::GetMsgInfoPtrById(results[1].GetString("msg_id"))->GetInteger("message_status"), 3);

  // The receiver leaves while the message is on its way: it fails, and the
  // next one is refused before it goes.
  meeting_.send_desk().LeaveDuringNextSend("u2");
  EXPECT_TRUE(SendText(TextParams("are you there?")));
  ASSERT_TRUE(WaitUntil([&] { return results.size() == 3; }));
  EXPECT_EQ(results[2].GetInteger("result"), sim::ChatSendDesk::kErrorReceiverLeft);
  const size_t before = AllSends();
  EXPECT_FALSE(SendText(TextParams("hello?")));
  EXPECT_EQ(AllSends(), before);
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.member_left")});
  meeting_.messages().Unsubscribe(5);
}

class AuthorizeTest : public SendFixture {
 protected:
  // The member as it stands in the lists, with its kind of user and device.
  void Reshape(std::string const& id, int user_type, int instance_id, bool waiting = false) {
    Variant m = Member(id);
    m.Set("user_type", user_type);
    m.Set("instance_id", instance_id);
    m.Set("in_waiting_room", waiting);
    meeting_.members().AddMember(m);
  }
  std::string Outcome(Variant const& receiver) {
    refusals_.clear();
    ChooseReceiver(receiver);
    const bool allowed = send_->CheckAuthorizeBeforeSendAction();
    const Strings said = TakeRefusals();
    if (allowed) return said.empty() ? "allowed" : "allowed with a refusal?";
    return said.size() == 1 ? said[0] : "refused without one text";
  }
};

TEST_F(AuthorizeTest, MeetingWalkTellsGoneUnreachableAndRoomSystemsApart) {
  EXPECT_EQ(Outcome(Variant()), "allowed") << "everyone";
  EXPECT_EQ(Outcome(GroupReceiver(5)), "allowed");
  EXPECT_EQ(Outcome(Receiver("u2")), "allowed");
  EXPECT_EQ(Outcome(Receiver("gone")), Text("chat.send.member_left"));
  for (auto [user_type, instance, text] : {std::tuple{2, 1, "chat.send.member_cannot_receive"},
                                           {1, 5, "chat.send.member_cannot_receive"},
                                           {1, 8, "chat.send.member_room_system"}}) {
    Reshape("u2", user_type, instance);
    EXPECT_EQ(Outcome(Receiver("u2")), Text(text)) << user_type << "/" << instance;
  }
  // Without a user id the member is found by app_uid.
  EXPECT_EQ(Outcome(Variant::Map{{"app_uid", "uid-u3"}, {"receiver_type", 1}}), "allowed");
  EXPECT_EQ(Outcome(Variant::Map{{"app_uid", "uid-nobody"}, {"receiver_type", 1}}), Text("chat.send.member_left"));

  // A webinar says it in its own words; an attendee missing from the list may
  // still be written to.
  meeting_.context().is_webinar = true;
  EXPECT_EQ(Outcome(Receiver("gone")), Text("chat.send.member_left_webinar"));
  EXPECT_EQ(Outcome(Receiver("gone-attendee", 1, "attendee")), "allowed");
}

TEST_F(AuthorizeTest, WaitingRoomWalkRefusesInstances5And8Alike) {
  Reshape("u3", 1, 1, true);
  EXPECT_EQ(Outcome(Receiver("u3", 6)), "allowed");
  EXPECT_EQ(Outcome(Receiver("u3", 7)), "allowed");
  EXPECT_EQ(Outcome(Receiver("u2", 6)), Text("chat.send.member_left")) << "not in the waiting room";
  for (auto [user_type, instance, receiver_type] : {std::tuple{1, 5, 6}, {1, 8, 7}, {3, 1, 6}}) {
    Reshape("u3", user_type, instance, true);
    EXPECT_EQ(Outcome(Receiver("u3", receiver_type)), Text("chat.send.member_cannot_receive"))
        << user_type << "/" << instance;
  }
  // The host stands in the list of method 37, not in that of 35.
  EXPECT_EQ(Outcome(Receiver("u-host", 7)), "allowed");
  EXPECT_EQ(Outcome(Receiver("u-host", 6)), Text("chat.send.member_left"));
}

TEST_F(AuthorizeTest, SurfacesOtherThanChatAndBulletSkipTheCheck) {
  ChooseReceiver(Receiver("gone"));
  EXPECT_FALSE(SendText(TextParams("hi", 2)));
  EXPECT_FALSE(SendText(TextParams("hi", 1)));
  EXPECT_EQ(AllSends(), 0u);
  EXPECT_TRUE(SendText(TextParams("from the record", 3)));
  EXPECT_EQ(Sends(7).size(), 1u);
}

TEST_F(SendTextTest, APublicSendWaitsForTheReminderAndAPrivateOneClearsIt) {
  Variant id("m-private-1");
  chat::InvokeChatBizModel(&runtime_, TypedBizModel::Chat::ModelImpl::kSetReminderMsgId, &id);
  auto pending = [&] {
    auto r = chat::InvokeChatBizModel(&runtime_, TypedBizModel::Chat::ModelImpl::kHasReminder);
    return r && r->AsBoolean();
  };
  ChooseReceiver(GroupReceiver(2));
  EXPECT_TRUE(SendText(TextParams("to everyone")));
  ASSERT_EQ(reminders_.size(), 1u);
  EXPECT_EQ(reminders_[0].Get("message_info").GetString(chat::kSendFieldText), "to everyone");
  EXPECT_TRUE(pending()) << "held until the user answers";

  const std::string png = WriteFile("held.png", PngBytes());
  ChooseReceiver(GroupReceiver(5));
  EXPECT_TRUE(SendImage(ImageParams(png)));
  EXPECT_TRUE(SendFiles(FileParams({png})));
  SendMixed(Variant::Array{TextItem("mixed")});
  ASSERT_EQ(reminders_.size(), 4u);
  for (int type = 0; type < 4; ++type) EXPECT_EQ(reminders_[type].GetInteger("send_type"), type);
  EXPECT_TRUE(reminders_[3].Get("message_info").IsArray());
  EXPECT_TRUE(mixed_sent_.empty());
  talvex_test::DrainLoopers();
  EXPECT_EQ(AllSends(), 0u);

  ChooseReceiver(Receiver("u2"));
  EXPECT_TRUE(SendText(TextParams("just to you")));
  EXPECT_FALSE(pending());
  EXPECT_EQ(Sends(7).size(), 1u);
  EXPECT_EQ(reminders_.size(), 4u);
}

class SendImageTest : public SendFixture {};

TEST_F(SendImageTest, APictureIsStagedAndTheClientOnlySeesTheCopy) {
  const std::string png = WriteFile("photo.png", PngBytes());
  Variant params = ImageParams(png);
  EXPECT_TRUE(SendImage(params));
  EXPECT_EQ(Sends(30).size(), 0u) << "nothing goes before the copy";
  ASSERT_TRUE(WaitUntil([&] { return Sends(30).size() == 1; }));
  const Variant sent = Sends(30)[0];
  const std::string staged = sent.GetString("image_elem_orig_path");
  EXPECT_EQ(staged.find(talvex::ChatUtils::GetChatImageCacheDir("801234567")), 0u) << staged;
  QFile copy(QString::fromStdString(staged));
  ASSERT_TRUE(copy.open(QIODevice::ReadOnly));
  EXPECT_EQ(copy.readAll(), PngBytes());
  EXPECT_EQ(sent.GetInteger("image_elem_format"), 3) << "read from the file";

  // The input's format wins over the file's; two of one name never share a
  // staged path.
  params.Set(chat::kSendFieldImageFormat, 1);
  EXPECT_TRUE(SendImage(params));
  EXPECT_TRUE(SendImage(params));
  ASSERT_TRUE(WaitUntil([&] { return Sends(30).size() == 3; }));
  EXPECT_EQ(Sends(30)[1].GetInteger("image_elem_format"), 1);
  EXPECT_NE(Sends(30)[1].GetString("image_elem_orig_path"), Sends(30)[2].GetString("image_elem_orig_path"));

  meeting_.members().SetInWaitingRoom("u3", true);
  ChooseReceiver(GroupReceiver(3));
  EXPECT_FALSE(SendImage(params)) << "no pictures into the waiting room";
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.private_no_image")});
}

TEST_F(SendImageTest, RefusalsComeInOrderAndWebpIsRefusedBeforeTheDiskIsAsked) {
  EXPECT_FALSE(SendImage(ImageParams(talvex_test::TempRoot() + "/nowhere/sticker.WEBP")));
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.webp")});
  EXPECT_FALSE(SendImage(ImageParams(talvex_test::TempRoot() + "/nowhere/photo.png")));
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.image_missing")});

  const std::string png = WriteFile("ok.png", PngBytes());
  Configure("meeting-ability", "account_setting_send_pic", false);
  EXPECT_FALSE(SendImage(ImageParams(png)));
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.enterprise_no_image")});
  // A mixed send with a refused picture sends none of its text either.
  SendMixed(Variant::Array{TextItem("look"), ImageItem(png)});
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.enterprise_no_image")});

  meeting_.meeting_settings().SetSwitch("im_file_and_picture", false);
  EXPECT_FALSE(SendImage(ImageParams(png)));
  EXPECT_FALSE(SendFiles(FileParams({png})));
  EXPECT_EQ(TakeRefusals(), Strings(2, Text("chat.send.no_file_and_picture")));
  talvex_test::DrainLoopers();
  EXPECT_EQ(AllSends(), 0u);
}

TEST_F(SendImageTest, ACopyThatFailsTellsTheUserAndSendsNothing) {
  // The meeting's staging folder can't be made: a file stands in its place.
  meeting_.meeting().set_meeting_id("900000001");
  meeting_.meeting().Join();
  const std::string cache = talvex::ChatUtils::GetChatImageCacheDir("900000001");
  util::file::EnsureDirExist(cache);
  QFile::copy(QString::fromStdString(WriteFile("placeholder", "x")), QString::fromStdString(cache + "/send"));
  EXPECT_TRUE(SendImage(ImageParams(WriteFile("blocked.png", PngBytes()))));
  ASSERT_TRUE(WaitUntil([&] { return !refusals_.empty(); }));
  EXPECT_EQ(TakeRefusals(), Strings{Text("chat.send.copy_failed")});
  EXPECT_EQ(Sends(30).size(), 0u);
}

TEST_F(SendImageTest, PayloadsOfTheWrongShapeAreIgnored) {
  const Variant number(42), text("hello"), no_keys(base::variant::kVariantTypeMap);
  const Variant wrong_types = Variant::Map{{chat::kSendFieldText, 5}, {chat::kSendFieldImagePath, true}};
  const Variant paths_not_a_list = Variant::Map{{"msg_file_paths", "a.txt"}};
  for (Variant const* p : {static_cast<Variant const*>(nullptr), &number, &text, &no_keys, &wrong_types,
                           &paths_not_a_list}) {
    for (uint32_t method : std::initializer_list<uint32_t>{SendModel::kSendTextMessage, SendModel::kSendImageMessage,
                                                           SendModel::kSendFileMessage, 12345}) {
      EXPECT_FALSE(send_->Invoke(method, p, nullptr));
    }
  }
  send_->SendMixedMessage(nullptr);
  send_->SendMixedMessage(&no_keys);
  meeting_.messages().FireEvent(34, &text);
  SendMixed(Variant::Array{7, no_keys});
  EXPECT_TRUE(mixed_sent_.empty()) << "a list of nothing sendable is no send: the box keeps its text";
  talvex_test::DrainLoopers();
  EXPECT_EQ(AllSends(), 0u);
  EXPECT_EQ(TakeRefusals(), Strings{});
}

}  // namespace
}  // namespace send_test
