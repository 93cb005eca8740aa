// Text, picture and mixed sends: what reaches the client's message model,
// what the user is told, and what waits for the public-send reminder.
#include "send_fixture.h"

#include <QDir>

#include "base/util/file_util.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/util/chat_strings.h"
#include "framework/chat/chat_utils.h"

namespace send_test {
namespace {

using talvex_test::LogCapture;
using talvex_test::WaitUntil;

class SendTextTest : public SendFixture {};

TEST_F(SendTextTest, BlankTextIsRefusedAloneAndDroppedInsideAMixedSend) {
  EXPECT_FALSE(SendText(TextParams(" \n \r\n  ")));
  EXPECT_EQ(RefusalTexts(), std::vector<std::string>{Text("chat.send.nothing_to_send")});
  EXPECT_EQ(AllSends(), 0u);

  refusals_.clear();
  Variant items(base::variant::kVariantTypeArray);
  items.Add(TextItem("  \n"));
  items.Add(TextItem("  hello there \r\n"));
  SendMixed(items);
  EXPECT_TRUE(refusals_.empty()) << "a blank piece of a mixed send is dropped silently";
  auto texts = Sends(7);
  ASSERT_EQ(texts.size(), 1u);
  EXPECT_EQ(texts[0].GetString("text_elem_content"), "hello there") << "trimmed at both ends";
  EXPECT_EQ(mixed_sent_.size(), 1u);

  LogCapture log;
  EXPECT_FALSE(SendText(TextParams("")));
  EXPECT_TRUE(log.Contains("<IM> msg text is empty!"));
  EXPECT_TRUE(refusals_.empty()) << "an empty text is no refusal the user sees";
}

TEST_F(SendTextTest, MixedTextUpTo3000CharactersGoesAndOneMoreStopsTheWholeList) {
  std::string at_limit;
  for (int i = 0; i < 3000; ++i) at_limit += "\xC3\xA9";  // two bytes, one character
  const std::string png = WriteFile("mixed.png", PngBytes());

  Variant items(base::variant::kVariantTypeArray);
  items.Add(TextItem(at_limit));
  items.Add(ImageItem(png));
  SendMixed(items);
  EXPECT_TRUE(refusals_.empty()) << ::testing::PrintToString(RefusalTexts());
  ASSERT_EQ(Sends(7).size(), 1u);
  EXPECT_TRUE(WaitUntil([&] { return Sends(30).size() == 1; }));
  EXPECT_EQ(mixed_sent_.size(), 1u);

  meeting_.messages().ClearInvocations();
  Variant too_long(base::variant::kVariantTypeArray);
  too_long.Add(TextItem("first piece"));
  too_long.Add(TextItem(at_limit + "x"));
  too_long.Add(ImageItem(png));
  SendMixed(too_long);
  EXPECT_EQ(RefusalTexts(), std::vector<std::string>{Text("chat.send.text_too_long")});
  talvex_test::SpinFor(100);
  EXPECT_EQ(AllSends(), 0u) << "nothing of the list goes out";
  EXPECT_EQ(mixed_sent_.size(), 1u);
}

TEST_F(SendTextTest, MixedPiecesGoOutInListOrderAndOtherSubscribersStillSeeTheList) {
  std::vector<Variant> seen;
  meeting_.messages().Subscribe(34, 99, Collect(seen));
  const std::string png = WriteFile("order.png", PngBytes());
  Variant items(base::variant::kVariantTypeArray);
  items.Add(TextItem("one"));
  items.Add(ImageItem(png));
  items.Add(TextItem("two"));
  SendMixed(items);
  ASSERT_TRUE(WaitUntil([&] { return meeting_.send_desk().sent_ids().size() == 3; }));
  EXPECT_EQ(seen.size(), 1u) << "the send model never stops the event";
  // Texts go at once, the picture once its copy is staged.
  auto texts = Sends(7);
  ASSERT_EQ(texts.size(), 2u);
  EXPECT_EQ(texts[0].GetString("text_elem_content"), "one");
  EXPECT_EQ(texts[1].GetString("text_elem_content"), "two");
  meeting_.messages().Unsubscribe(34, 99);
}

TEST_F(SendTextTest, ReceiverTypesPickTheConversationAndTheMethod) {
  meeting_.members().SetInWaitingRoom("u3", true);
  struct Case {
    Variant receiver;
    uint32_t method;
    int conv_type;
    std::string conv_id;
  };
  const std::vector<Case> cases = {
      {Receiver("u2", 1), 7, 1, "c2c_u2"},  {Receiver("u3", 6), 7, 1, "c2c_u3"},
      {Receiver("u3", 7), 7, 1, "c2c_u3"},  {GroupReceiver(2), 7, 2, ""},
      {GroupReceiver(3), 23, 2, ""},        {GroupReceiver(4), 7, 2, ""},
      {GroupReceiver(5), 7, 2, ""},         {Variant(), 7, 2, ""},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(framework::VariantToString(&c.receiver));
    meeting_.messages().ClearInvocations();
    ChooseReceiver(c.receiver);
    EXPECT_TRUE(SendText(TextParams("hi")));
    auto sent = Sends(c.method);
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].GetInteger("conv_type"), c.conv_type);
    EXPECT_EQ(sent[0].GetString("conv_id"), c.conv_id);
    EXPECT_EQ(sent[0].Has("conv_id"), c.conv_type == 1);
    EXPECT_EQ(sent[0].GetInteger("receiver_type"),
              talvex_common::utils::privatechatrecord::GetChatReceiverType(c.receiver));
    EXPECT_EQ(sent[0].GetInteger("message_send_from_type"), 2);
  }
  EXPECT_TRUE(refusals_.empty()) << ::testing::PrintToString(RefusalTexts());

  // An attendee writing to a webinar group uses the attendees' method; the
  // bullet surface marks its sends as its own.
  meeting_.context().is_webinar = true;
  meeting_.context().self_role = talvex::MeetingContext::kRoleAttendee;
  meeting_.messages().ClearInvocations();
  ChooseReceiver(GroupReceiver(4));
  EXPECT_TRUE(SendText(TextParams("to the panel", 1)));
  ASSERT_EQ(Sends(40).size(), 1u);
  EXPECT_EQ(Sends(40)[0].GetInteger("message_send_from_type"), 1);
  EXPECT_EQ(base::analytics::RecordedEvents("bullet_vm_send_text_msg").size(), 1u);
  auto sendto = base::analytics::RecordedEvents("meetingpage_im_null_sendto_null_null_click");
  ASSERT_FALSE(sendto.empty());
  EXPECT_EQ(sendto.back().properties["sendto"], "2");

  ChooseReceiver(GroupReceiver(0));
  LogCapture log;
  meeting_.messages().ClearInvocations();
  EXPECT_TRUE(SendText(TextParams("nobody", 7)));
  EXPECT_TRUE(log.Contains("invalid receiver type", base::log::kLogError));
  EXPECT_EQ(AllSends(), 0u);
}

TEST_F(SendTextTest, TheSendComesBackAsAServerRoundTripAndIsReported) {
  std::vector<Variant> results, added;
  meeting_.messages().Subscribe(16, 5, Collect(results));
  meeting_.messages().Subscribe(35, 5, Collect(added));
  ChooseReceiver(Receiver("u2"));
  EXPECT_TRUE(SendText(TextParams("private hello")));
  // The sending message is announced at once, by its id; the result follows.
  ASSERT_EQ(added.size(), 1u);
  EXPECT_TRUE(added[0].IsString());
  EXPECT_TRUE(results.empty());
  ASSERT_TRUE(WaitUntil([&] { return results.size() == 1; }));
  EXPECT_EQ(results[0].GetString("msg_id"), added[0].AsStr());
  EXPECT_EQ(results[0].GetInteger("result"), 0);
  const std::string id = results[0].GetString("msg_id");
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(id);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->GetInteger("message_status"), 2);
  EXPECT_EQ(record->GetString("message_conv_id"), "c2c_u2");

  auto reports = base::analytics::RecordedEvents("im_null_null_send_null_null_im");
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].properties["message_type"], "1");
  EXPECT_EQ(reports[0].properties["chat_private"], "1");
  EXPECT_EQ(reports[0].properties["chat_scale"], "1");
  EXPECT_EQ(reports[0].properties["to_uid"], "uid-u2");
  EXPECT_EQ(reports[0].properties["meeting_type"], "0");

  // A failure code from the server marks the record failed.
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
  EXPECT_EQ(RefusalTexts(), std::vector<std::string>{Text("chat.send.member_left")});
  meeting_.messages().Unsubscribe(5);
}

TEST_F(SendTextTest, SendsIntoTheWaitingRoomAndToAttendeesAreReported) {
  meeting_.members().SetInWaitingRoom("u3", true);
  meeting_.context().self_role = talvex::MeetingContext::kRoleCoHost;
  ChooseReceiver(GroupReceiver(3));
  SendText(TextParams("welcome, all"));
  ChooseReceiver(Receiver("u3", 6));
  SendText(TextParams("welcome, you"));
  ChooseReceiver(Receiver("u3", 7));
  SendText(TextParams("not counted"));
  auto to_room = base::analytics::RecordedEvents("e#im#im_send_towaitingroom#click");
  ASSERT_EQ(to_room.size(), 2u);
  EXPECT_EQ(to_room[0].properties["to_type"], "1");
  EXPECT_EQ(to_room[1].properties["to_type"], "0");

  meeting_.context().self_role = talvex::MeetingContext::kRoleMember;
  meeting_.context().in_waiting_room = true;
  ChooseReceiver(Variant());
  SendText(TextParams("hello from the waiting room"));
  EXPECT_EQ(base::analytics::RecordedEvents("e#waitingroom#im_send#click").size(), 1u);

  // In a webinar a host writing to an attendee reports both.
  meeting_.context().in_waiting_room = false;
  meeting_.context().is_webinar = true;
  meeting_.context().self_role = talvex::MeetingContext::kRoleHost;
  meeting_.members().AddMember(Member("a1", "attendee"));
  ChooseReceiver(Receiver("a1", 1, "attendee"));
  EXPECT_TRUE(SendText(TextParams("thanks for asking")));
  auto sendto = base::analytics::RecordedEvents("meetingpage_im_null_sendto_null_null_click");
  ASSERT_EQ(sendto.size(), 1u);
  EXPECT_EQ(sendto[0].properties["sendto"], "3");
  EXPECT_EQ(sendto[0].properties["webinar_role"], "2");
  auto send = base::analytics::RecordedEvents("meetingpage_im_null_send_null_null_click");
  ASSERT_EQ(send.size(), 1u);
  EXPECT_EQ(send[0].properties["webinar_role"], "1");
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
    if (allowed) return refusals_.empty() ? "allowed" : "allowed with a refusal?";
    return refusals_.size() == 1 && refusals_[0].IsString() ? refusals_[0].AsStr() : "refused without a text";
  }
};

TEST_F(AuthorizeTest, MeetingWalkTellsGoneUnreachableAndRoomSystemsApart) {
  EXPECT_EQ(Outcome(Variant()), "allowed") << "everyone";
  EXPECT_EQ(Outcome(GroupReceiver(5)), "allowed");
  EXPECT_EQ(Outcome(Receiver("u2")), "allowed");
  EXPECT_EQ(Outcome(Receiver("gone")), Text("chat.send.member_left"));
  Reshape("u2", 2, 1);
  EXPECT_EQ(Outcome(Receiver("u2")), Text("chat.send.member_cannot_receive"));
  Reshape("u2", 1, 5);
  EXPECT_EQ(Outcome(Receiver("u2")), Text("chat.send.member_cannot_receive"));
  Reshape("u2", 1, 8);
  EXPECT_EQ(Outcome(Receiver("u2")), Text("chat.send.member_room_system"));

  // Without a user id the member is found by app_uid.
  Variant by_uid(base::variant::kVariantTypeMap);
  by_uid.Set("app_uid", "uid-u3");
  by_uid.Set("receiver_type", 1);
  EXPECT_EQ(Outcome(by_uid), "allowed");
  by_uid.Set("app_uid", "uid-nobody");
  EXPECT_EQ(Outcome(by_uid), Text("chat.send.member_left"));

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
  Reshape("u3", 1, 5, true);
  EXPECT_EQ(Outcome(Receiver("u3", 6)), Text("chat.send.member_cannot_receive"));
  Reshape("u3", 1, 8, true);
  EXPECT_EQ(Outcome(Receiver("u3", 7)), Text("chat.send.member_cannot_receive"));
  Reshape("u3", 3, 1, true);
  EXPECT_EQ(Outcome(Receiver("u3", 6)), Text("chat.send.member_cannot_receive"));
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

class ReminderTest : public SendFixture {
 protected:
  void SetReminder(std::string const& msg_id) {
    Variant id(msg_id);
    chat::InvokeChatBizModel(&runtime_, TypedBizModel::Chat::ModelImpl::kSetReminderMsgId, &id);
  }
  bool ReminderPending() {
    auto r = chat::InvokeChatBizModel(&runtime_, TypedBizModel::Chat::ModelImpl::kHasReminder);
    return r && r->AsBoolean();
  }
};

TEST_F(ReminderTest, APublicSendWaitsAndAPrivateOneClearsTheReminder) {
  SetReminder("m-private-1");
  ChooseReceiver(GroupReceiver(2));
  EXPECT_TRUE(SendText(TextParams("to everyone")));
  ASSERT_EQ(reminders_.size(), 1u);
  EXPECT_EQ(reminders_[0].GetInteger("send_type"), 0);
  EXPECT_EQ(reminders_[0].Get("message_info").GetString(chat::kSendFieldText), "to everyone");
  EXPECT_EQ(AllSends(), 0u);
  EXPECT_TRUE(ReminderPending()) << "held until the user answers";

  const std::string png = WriteFile("held.png", PngBytes());
  ChooseReceiver(GroupReceiver(5));
  EXPECT_TRUE(SendImage(ImageParams(png)));
  EXPECT_TRUE(SendFiles(FileParams({png})));
  Variant items(base::variant::kVariantTypeArray);
  items.Add(TextItem("mixed"));
  SendMixed(items);
  ASSERT_EQ(reminders_.size(), 4u);
  EXPECT_EQ(reminders_[1].GetInteger("send_type"), 1);
  EXPECT_EQ(reminders_[2].GetInteger("send_type"), 2);
  EXPECT_EQ(reminders_[3].GetInteger("send_type"), 3);
  EXPECT_TRUE(reminders_[3].Get("message_info").IsArray());
  EXPECT_TRUE(mixed_sent_.empty());
  talvex_test::SpinFor(50);
  EXPECT_EQ(AllSends(), 0u);

  ChooseReceiver(Receiver("u2"));
  EXPECT_TRUE(SendText(TextParams("just to you")));
  EXPECT_FALSE(ReminderPending());
  EXPECT_EQ(Sends(7).size(), 1u);
  EXPECT_EQ(reminders_.size(), 4u);
}

class SendImageTest : public SendFixture {};

TEST_F(SendImageTest, APictureIsStagedAndTheClientOnlySeesTheCopy) {
  const std::string png = WriteFile("photo.png", PngBytes());
  Variant params = ImageParams(png);
  params.Set(chat::kSendFieldImageLevel, 1);
  EXPECT_TRUE(SendImage(params));
  EXPECT_EQ(Sends(30).size(), 0u) << "nothing goes before the copy";
  ASSERT_TRUE(WaitUntil([&] { return Sends(30).size() == 1; }));
  const Variant sent = Sends(30)[0];
  const std::string staged = sent.GetString("image_elem_orig_path");
  EXPECT_NE(staged, png);
  EXPECT_EQ(staged.find(talvex::ChatUtils::GetChatImageCacheDir("801234567")), 0u) << staged;
  QFile copy(QString::fromStdString(staged));
  ASSERT_TRUE(copy.open(QIODevice::ReadOnly));
  EXPECT_EQ(copy.readAll(), PngBytes());
  EXPECT_EQ(sent.GetInteger("image_elem_format"), 3) << "read from the file";
  EXPECT_EQ(sent.GetInteger("image_elem_level"), 1);
  EXPECT_EQ(base::analytics::RecordedEvents("im_null_null_send_null_null_im").back().properties["message_type"], "2");

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
  EXPECT_EQ(RefusalTexts(), std::vector<std::string>{Text("chat.send.private_no_image")});
}

TEST_F(SendImageTest, RefusalsComeInOrderAndWebpIsRefusedBeforeTheDiskIsAsked) {
  LogCapture log;
  EXPECT_FALSE(SendImage(ImageParams(talvex_test::TempRoot() + "/nowhere/sticker.WEBP")));
  EXPECT_EQ(RefusalTexts(), std::vector<std::string>{Text("chat.send.webp")});
  EXPECT_TRUE(log.Contains("<IM> image file is webp format!", base::log::kLogError));
  EXPECT_FALSE(log.Contains("<IM> image file is not exist!"));

  refusals_.clear();
  EXPECT_FALSE(SendImage(ImageParams(talvex_test::TempRoot() + "/nowhere/photo.png")));
  EXPECT_EQ(RefusalTexts(), std::vector<std::string>{Text("chat.send.image_missing")});

  const std::string png = WriteFile("ok.png", PngBytes());
  refusals_.clear();
  talvexsdk::utils::service::GetConfigureService()->Set("meeting-ability", "account_setting_send_pic", false);
  EXPECT_FALSE(SendImage(ImageParams(png)));
  EXPECT_EQ(RefusalTexts(), std::vector<std::string>{Text("chat.send.enterprise_no_image")});

  refusals_.clear();
  meeting_.meeting_settings().SetSwitch("im_file_and_picture", false);
  EXPECT_FALSE(SendImage(ImageParams(png)));
  EXPECT_FALSE(SendFiles(FileParams({png})));
  EXPECT_EQ(RefusalTexts(), std::vector<std::string>(2, Text("chat.send.no_file_and_picture")));
  talvex_test::SpinFor(50);
  EXPECT_EQ(AllSends(), 0u);

  // A mixed send with a refused picture sends none of its text either.
  meeting_.meeting_settings().SetSwitch("im_file_and_picture", true);
  refusals_.clear();
  Variant items(base::variant::kVariantTypeArray);
  items.Add(TextItem("look"));
  items.Add(ImageItem(png));
  SendMixed(items);
  EXPECT_EQ(RefusalTexts(), std::vector<std::string>{Text("chat.send.enterprise_no_image")});
  EXPECT_EQ(AllSends(), 0u);
}

TEST_F(SendImageTest, ACopyThatFailsTellsTheUserAndSendsNothing) {
  // The meeting's staging folder can't be made: a file stands in its place.
  meeting_.meeting().set_meeting_id("900000001");
  meeting_.meeting().Join();
  const std::string cache = talvex::ChatUtils::GetChatImageCacheDir("900000001");
  util::file::EnsureDirExist(cache);
  WriteFile("placeholder", "x");
  QFile::copy(QString::fromStdString(talvex_test::TempRoot() + "/placeholder"),
              QString::fromStdString(cache + "/send"));
  EXPECT_TRUE(SendImage(ImageParams(WriteFile("blocked.png", PngBytes()))));
  ASSERT_TRUE(WaitUntil([&] { return !refusals_.empty(); }));
  EXPECT_EQ(RefusalTexts(), std::vector<std::string>{Text("chat.send.copy_failed")});
  EXPECT_EQ(Sends(30).size(), 0u);
}

TEST_F(SendImageTest, PayloadsOfTheWrongShapeAreLoggedAndIgnored) {
  LogCapture log;
  const Variant number(42);
  const Variant text("hello");
  Variant no_keys(base::variant::kVariantTypeMap);
  Variant wrong_types(base::variant::kVariantTypeMap);
  wrong_types.Set(chat::kSendFieldText, 5);
  wrong_types.Set(chat::kSendFieldImagePath, true);
  for (Variant const* p : std::vector<Variant const*>{nullptr, &number, &text, &no_keys, &wrong_types}) {
    EXPECT_FALSE(send_->Invoke(SendModel::kSendTextMessage, p, nullptr));
    EXPECT_FALSE(send_->Invoke(SendModel::kSendImageMessage, p, nullptr));
    EXPECT_FALSE(send_->Invoke(SendModel::kSendFileMessage, p, nullptr));
  }
  Variant paths_not_array(base::variant::kVariantTypeMap);
  paths_not_array.Set("msg_file_paths", "a.txt");
  EXPECT_FALSE(SendFiles(paths_not_array));
  EXPECT_TRUE(log.Contains("<IM> [chat file] send file failed! params error!", base::log::kLogError));
  send_->SendMixedMessage(nullptr);
  send_->SendMixedMessage(&no_keys);
  meeting_.messages().FireEvent(34, &text);
  Variant odd_items(base::variant::kVariantTypeArray);
  odd_items.Add(7);
  odd_items.Add(no_keys);
  SendMixed(odd_items);
  EXPECT_EQ(mixed_sent_.size(), 1u) << "only the list that was a list went through";
  EXPECT_FALSE(send_->Invoke(12345, &no_keys, nullptr));
  talvex_test::SpinFor(50);
  EXPECT_EQ(AllSends(), 0u);
  EXPECT_TRUE(refusals_.empty()) << ::testing::PrintToString(RefusalTexts());
}

}  // namespace
}  // namespace send_test
