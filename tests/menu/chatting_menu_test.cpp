// The context menu of a message, through the simulated meeting: the items the
// rules allow for this message, this role and this meeting, and what the
// list's items do.
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <QStandardPaths>
#include <QGuiApplication>
#include <gtest/gtest.h>

#include "base/analytics/analytics.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/viewmodel/chatting_menu_view_model.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/private_chat_record.h"
#include "framework/resource/resource.h"
#include "framework/ui/ui_service.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace menu_test {
namespace {

using VM = chat::ChattingMenuViewModel;
using Types = std::vector<int>;
enum : int { kRecall = 0, kDelete = 1, kCopy = 2, kBlock = 4, kKick = 5 };

class MenuTest : public ::testing::Test {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    base::analytics::ClearRecordedEvents();
    ui_ = std::make_shared<framework::RecordingUIService>();
    framework::SetUIService(ui_);
    meeting_.Install();
    meeting_.meeting().Join();
    meeting_.members().AddMember(Variant::Map{{"user_id", "u2"}, {"app_uid", "u2"}, {"app_id", "1400"},
                                              {"nickname", "Sam"}, {"role", "member"}});
    meeting_.members().AddMember(Variant::Map{{"user_id", "u-co"}, {"app_uid", "u-co"}, {"app_id", "1400"},
                                              {"nickname", "Casey"}, {"role", "cohost"}});
    ASSERT_TRUE(runtime_.Activate());
    vm_ = std::make_shared<VM>();
    vm_->SetModuleParams(&runtime_);
    Variant none;
    vm_->DidCreated(&none);
    vm_->DidAttached(&none);
  }
  void TearDown() override {
    vm_->DidDetached();
    vm_.reset();
    runtime_.Unactivate();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
  }
  // A message of `from` as the backend delivers it, sent to everyone in
  // this meeting's group.
  std::string Post(std::string const& from, int chat_type = 0, bool own = false, int status = 2) {
    Variant content = Variant::Array{Variant::Map{{"text_elem_content", "hello there"}}};
    Variant record = sim::ChatRecord(meeting_.meeting().meeting_id(), sim::Sender(from, from), chat_type, content, own);
    record.Set("msg_text", "hello there");
    record["msg_sender"].Set("role_type", 0);
    record["in_meeting_info"].Set("group_id", "im-" + meeting_.meeting().meeting_id());
    record.Set("message_is_online_msg", false);
    record.Set("message_status", status);
    return meeting_.messages().Post(record);
  }
  void Act(uint32_t action, Variant params) { vm_->Handle(action, &params); }
  Types Menu(std::string const& msg_id, int scene = 1) {
    const size_t published = vm_->PropSetCount(VM::kPropChatMenuList);
    Act(VM::kActionShowChatMenu, Variant::Map{{"msg_id", msg_id}, {"scene", scene}});
    Types types;
    if (vm_->PropSetCount(VM::kPropChatMenuList) == published) return types;
    if (Variant const* list = vm_->GetPropValue(VM::kPropChatMenuList)) {
      for (auto const& item : list->AsArray()) types.push_back(item.GetInt32("type"));
    }
    return types;
  }
  void Click(int type) { Act(VM::kActionChatMenuItemClick, Variant::Map{{"type", type}}); }
  void BeHost() { meeting_.context().self_role = talvex::MeetingContext::kRoleHost; }

  sim::MeetingSimulator meeting_;
  chat::ChatModuleRuntime runtime_;
  std::shared_ptr<framework::RecordingUIService> ui_;
  std::shared_ptr<VM> vm_;
};

TEST_F(MenuTest, OwnSentMessagesCanBeRecalledInAMeetingOnly) {
  EXPECT_EQ(Menu(Post("u-self", 0, true)), (Types{kCopy, kDelete, kRecall}));
  EXPECT_EQ(Menu(Post("u-self", 0, true, 3)), (Types{kCopy, kDelete})) << "a failed send is not recalled";
  EXPECT_EQ(Menu(Post("u2")), (Types{kCopy, kDelete})) << "another's message";
  EXPECT_EQ(Menu(Post("u-self", 6, true)), (Types{kCopy, kDelete})) << "a notice";
  EXPECT_EQ(Menu(Post("u-self", 4, true)), (Types{6, 7, kDelete, kRecall})) << "a picture: save and copy it, not its text";
  const std::string elsewhere = Post("u-self", 0, true);
  meeting_.messages().Update(elsewhere, [](Variant& r) { r["in_meeting_info"].Set("group_id", "im-other"); });
  EXPECT_EQ(Menu(elsewhere), (Types{kCopy, kDelete})) << "sent to another group, as from a breakout room";
  EXPECT_EQ(Menu(Post("u-self", 0, true), 0), (Types{kCopy, kDelete})) << "no recall in a past meeting's record";
  meeting_.context().is_webinar = true;
  EXPECT_EQ(Menu(Post("u-self", 0, true)), (Types{kCopy, kDelete})) << "no recall in a webinar";
}

TEST_F(MenuTest, AHostMayRemoveMembersButNotCoHostsOrStrangers) {
  BeHost();
  EXPECT_EQ(Menu(Post("u2")), (Types{kCopy, kDelete, kKick}));
  EXPECT_EQ(Menu(Post("u-co")), (Types{kCopy, kDelete})) << "a co-host stays";
  EXPECT_EQ(Menu(Post("u-gone")), (Types{kCopy, kDelete})) << "a member not found counts as a host";
  EXPECT_EQ(Menu(Post("u2", 6)), (Types{kCopy, kDelete})) << "a notice";
  meeting_.context().is_webinar = true;
  EXPECT_EQ(Menu(Post("u2")), (Types{kCopy, kDelete, kBlock, kKick})) << "a webinar's host blocks too";
  meeting_.context().self_role = talvex::MeetingContext::kRoleMember;
  EXPECT_EQ(Menu(Post("u2")), (Types{kCopy, kDelete}));
}

TEST_F(MenuTest, RecallDeleteAndCopyDoWhatTheySay) {
  const std::string own = Post("u-self", 0, true);
  Menu(own);
  meeting_.messages().SetChatKeyReady(false);
  Click(kRecall);
  EXPECT_EQ(meeting_.messages().FindMessage(own)->GetInt32("message_status"), 2);
  ASSERT_FALSE(ui_->toasts().empty()) << "no connection: the user is told";
  meeting_.messages().SetChatKeyReady(true);
  Click(kRecall);
  EXPECT_EQ(meeting_.messages().FindMessage(own)->GetInt32("message_status"), 6);
  EXPECT_EQ(base::analytics::RecordedEvents("meetingpage_impanel_null_message_recall_null_click").size(), 2u);

  const std::string other = Post("u2");
  Menu(other);
  Click(kDelete);
  auto const* alert = ui_->LastOpenAlert();
  ASSERT_NE(alert, nullptr);
  ui_->Answer(alert->id, framework::kAlertButtonNegative);
  EXPECT_EQ(meeting_.messages().FindMessage(other)->GetInt32("message_status"), 2) << "cancelled";
  Click(kDelete);
  ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonPositive);
  EXPECT_EQ(meeting_.messages().FindMessage(other)->GetInt32("message_status"), 4);

  Menu(Post("u2"));
  Click(kCopy);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "hello there");
}

TEST_F(MenuTest, BlockingAndRemovingAskFirstAndHonourTheirCheckBoxes) {
  BeHost();
  meeting_.context().is_webinar = true;
  Menu(Post("u2"));
  Click(kBlock);
  auto const* alert = ui_->LastOpenAlert();
  ASSERT_NE(alert, nullptr);
  EXPECT_TRUE(alert->request.has_check);
  EXPECT_NE(alert->request.content.find("u2"), std::string::npos) << "names the sender";
  ui_->Answer(alert->id, framework::kAlertButtonPositive, Variant::Map{{"check_state", true}});
  EXPECT_TRUE(meeting_.shield().shielded("u2"));
  EXPECT_EQ(meeting_.shield().forbidden(), (std::vector<std::string>{"u2"})) << "the box: chat stopped too";
  EXPECT_EQ(base::analytics::RecordedEvents(
                "meetingpage_im_rightmenu_blockmessage_doublecheck_null_checkedblockallmessages").size(), 1u);

  // Removing: cancelled, then confirmed with "don't let them back".
  meeting_.context().is_webinar = false;
  Menu(Post("u2"));
  Click(kKick);
  ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonNegative);
  EXPECT_FALSE(meeting_.members().members().empty());
  Click(kKick);
  ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonPositive, Variant::Map{{"check_state", true}});
  EXPECT_TRUE(meeting_.members().barred("u2"));
  meeting_.members().AddMember(Variant::Map{{"user_id", "u2"}, {"nickname", "Sam"}});
  Variant ask = Variant::Map{{"user_id", "u2"}};
  EXPECT_FALSE(meeting_.members().Invoke(2, &ask, nullptr)) << "not allowed back";
  EXPECT_EQ(base::analytics::RecordedEvents("im_null_null_outsuccess_null_null_click").size(), 1u);

  // A block answered after the host lost the role does nothing.
  meeting_.context().is_webinar = true;
  Menu(Post("u-co"));
  meeting_.members().AddMember(Variant::Map{{"user_id", "u4"}, {"app_uid", "u4"}, {"app_id", "1400"},
                                            {"nickname", "Drew"}, {"role", "attendee"}});
  Menu(Post("u4"));
  Click(kBlock);
  meeting_.context().self_role = talvex::MeetingContext::kRoleMember;
  ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonPositive);
  EXPECT_FALSE(meeting_.shield().shielded("u4"));
}

// Which items a message's menu has, as one table: the local user's role, the
// meeting's kind, the message's sender, kind, status and audience, and where
// the menu was asked.
TEST_F(MenuTest, TheItemsFollowRoleMeetingMessageAndTarget) {
  enum : int { kSaveImage = 6, kCopyImage = 7, kPrivate = 18 };
  enum Kind { kMeeting, kWebinar, kBreakout };
  using R = talvex::MeetingContext::Role;
  struct Case {
    char const* what;
    R role;
    Kind kind;
    bool waiting;
    std::string from;  // "u-self", "u2" (a member), "u-co" (a co-host)
    int chat_type;
    int status;
    int receiver_type;
    std::string group;  // "" the meeting's own chat group
    int target;
    Types expected;
  };
  meeting_.members().AddMember(Variant::Map{{"user_id", "a1"}, {"app_uid", "a1"}, {"app_id", "1400"},
                                            {"nickname", "Ana"}, {"role", "attendee"}});
  const std::vector<Case> cases = {
      {"own text", R::kRoleMember, kMeeting, false, "u-self", 0, 2, 2, "", 0, {kCopy, kDelete, kRecall}},
      {"own text not sent", R::kRoleMember, kMeeting, false, "u-self", 0, 3, 2, "", 0, {kCopy, kDelete}},
      {"another's text", R::kRoleMember, kMeeting, false, "u2", 0, 2, 2, "", 0, {kCopy, kDelete}},
      {"own notice", R::kRoleMember, kMeeting, false, "u-self", 6, 2, 2, "", 0, {kCopy, kDelete}},
      {"own picture", R::kRoleMember, kMeeting, false, "u-self", 4, 2, 2, "", 0,
       {kSaveImage, kCopyImage, kDelete, kRecall}},
      {"host, a member's text", R::kRoleHost, kMeeting, false, "u2", 0, 2, 2, "", 0, {kCopy, kDelete, kKick}},
      {"co-host, a member's text", R::kRoleCoHost, kMeeting, false, "u2", 0, 2, 2, "", 0,
       {kCopy, kDelete, kKick}},
      {"co-host, another co-host's text", R::kRoleCoHost, kMeeting, false, "u-co", 0, 2, 2, "", 0,
       {kCopy, kDelete}},
      {"host, a member's notice", R::kRoleHost, kMeeting, false, "u2", 6, 2, 2, "", 0, {kCopy, kDelete}},
      {"webinar host, an attendee's text", R::kRoleHost, kWebinar, false, "a1", 0, 2, 5, "", 0,
       {kCopy, kDelete, kBlock, kKick}},
      {"webinar host, a private text", R::kRoleHost, kWebinar, false, "a1", 0, 2, 1, "", 0,
       {kCopy, kDelete, kKick}},
      {"webinar panelist, an attendee's text", R::kRolePanelist, kWebinar, false, "a1", 0, 2, 5, "", 0,
       {kCopy, kDelete}},
      {"webinar attendee, own text", R::kRoleAttendee, kWebinar, false, "u-self", 0, 2, 4, "", 0,
       {kCopy, kDelete}},
      {"waiting room, own text", R::kRoleMember, kMeeting, true, "u-self", 0, 2, 3, "", 0,
       {kCopy, kDelete, kRecall}},
      {"breakout room, own text here", R::kRoleMember, kBreakout, false, "u-self", 0, 2, 2, "", 0,
       {kCopy, kDelete, kRecall}},
      {"breakout room, own text of the main room", R::kRoleMember, kBreakout, false, "u-self", 0, 2, 2,
       "im-main", 0, {kCopy, kDelete}},
      {"avatar of a member", R::kRoleMember, kMeeting, false, "u2", 0, 2, 2, "", 1, {kPrivate}},
      {"host, avatar of a member", R::kRoleHost, kMeeting, false, "u2", 0, 2, 2, "", 1, {kPrivate, kKick}},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.what);
    auto& context = meeting_.context();
    context.self_role = c.role;
    context.is_webinar = c.kind == kWebinar;
    context.breakout_started = context.in_breakout_room = c.kind == kBreakout;
    context.in_waiting_room = c.waiting;
    const std::string msg = Post(c.from, c.chat_type, c.from == "u-self", c.status);
    meeting_.messages().Update(msg, [&](Variant& r) {
      r["in_meeting_info"].Set("receiver_type", c.receiver_type);
      if (!c.group.empty()) r["in_meeting_info"].Set("group_id", c.group);
      if (c.receiver_type == 1) r.Set("conv_type", 1);
    });
    Types got;
    const size_t published = vm_->PropSetCount(VM::kPropChatMenuList);
    Act(VM::kActionShowChatMenu, Variant::Map{{"msg_id", msg}, {"target", c.target}});
    if (vm_->PropSetCount(VM::kPropChatMenuList) != published) {
      for (auto const& item : vm_->GetPropValue(VM::kPropChatMenuList)->AsArray()) {
        got.push_back(item.GetInt32("type"));
      }
    }
    EXPECT_EQ(got, c.expected);
  }
}

// In a large webinar the client's member list doesn't know attendees: one is
// found by name among the attendees, and only with the sender's own ids.
TEST_F(MenuTest, AWebinarAttendeeIsFoundByNameForRemoval) {
  BeHost();
  meeting_.context().is_webinar = true;
  meeting_.members().set_attendees_listed(false);
  meeting_.member_provider().set_latency_ms(0);
  Variant attendee = Variant::Map{{"user_id", "a-7"}, {"app_uid", "a-7"}, {"app_id", "1400"}, {"nickname", "a-7"},
                                  {"role", "attendee"}};
  Variant namesake = attendee;
  namesake.Set("user_id", "a-8");
  namesake.Set("app_uid", "a-8");
  meeting_.members().AddMembers({namesake, attendee});
  const std::string msg = Post("a-7");
  EXPECT_EQ(Menu(msg), (Types{kCopy, kDelete, kBlock})) << "not found yet: no kick";
  Click(kKick);
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return ui_->LastOpenAlert() != nullptr; }));
  ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonPositive, Variant::Map{{"check_state", false}});
  bool a7_left = true;
  bool a8_stays = false;
  for (auto const& m : meeting_.members().members()) {
    if (m.GetString("user_id") == "a-7") a7_left = false;
    if (m.GetString("user_id") == "a-8") a8_stays = true;
  }
  EXPECT_TRUE(a7_left);
  EXPECT_TRUE(a8_stays) << "the namesake with other ids stays";
  EXPECT_FALSE(meeting_.members().barred("a-7")) << "allowed back";

  // A broken answer of the search asks nothing.
  const size_t alerts = ui_->alerts().size();
  for (Variant junk : {Variant(), Variant(3), Variant(Variant::Map{{"user_list", 1}})}) {
    meeting_.member_provider().FireEvent(1, junk);
  }
  Variant wrong(base::variant::kVariantTypeArray);
  wrong.Add(Variant::Map{{"user_list", Variant::Array{Variant(5), Variant::Map{{"nickname", 7}}}}});
  meeting_.member_provider().FireEvent(1, wrong);
  EXPECT_EQ(ui_->alerts().size(), alerts);
}

// An avatar's menu: a private chat as the meeting's rules allow, and
// removing the sender for a host.
TEST_F(MenuTest, AnAvatarOffersAPrivateChatAsThePolicyAllows) {
  enum : int { kPrivate = 18 };
  auto avatar = [&](std::string const& msg_id) {
    const size_t published = vm_->PropSetCount(VM::kPropChatMenuList);
    Act(VM::kActionShowChatMenu, Variant::Map{{"msg_id", msg_id}, {"target", 1}});
    std::vector<std::pair<int, bool>> items;
    // Each menu starts empty: an empty one is not published at all.
    if (vm_->PropSetCount(VM::kPropChatMenuList) == published) return items;
    for (auto const& item : vm_->GetPropValue(VM::kPropChatMenuList)->AsArray()) {
      items.emplace_back(item.GetInt32("type"), item.GetBoolean("enable"));
    }
    return items;
  };
  using Items = std::vector<std::pair<int, bool>>;
  const std::string sam = Post("u2");
  EXPECT_EQ(avatar(sam), (Items{{kPrivate, true}}));
  EXPECT_EQ(avatar(Post("u-self", 0, true)), (Items{})) << "no private chat with oneself";
  EXPECT_EQ(avatar(Post("u-gone")), (Items{{kPrivate, false}})) << "left the meeting";
  meeting_.authority().SetPolicy(3);
  EXPECT_EQ(avatar(sam), (Items{{kPrivate, false}})) << "only the host speaks";
  EXPECT_EQ(avatar(Post("u-co")), (Items{{kPrivate, false}})) << "not even to a co-host";
  meeting_.authority().SetPolicy(2);
  EXPECT_EQ(avatar(sam), (Items{{kPrivate, false}}));
  EXPECT_EQ(avatar(Post("u-co")), (Items{{kPrivate, true}})) << "only to the hosts";
  BeHost();
  EXPECT_EQ(avatar(sam), (Items{{kPrivate, true}, {kKick, true}})) << "a host writes to anyone and removes";

  // Choosing it makes the sender the receiver.
  avatar(sam);
  Click(kPrivate);
  const Variant receiver = talvex_common::utils::privatechatrecord::GetPrivateChatUserInfo();
  EXPECT_EQ(receiver.GetString("user_id"), "u2");
  EXPECT_EQ(talvex_common::utils::privatechatrecord::GetChatReceiverType(receiver), 1);

  // A webinar's attendee writes privately to the hosts only, and never under
  // policy 10.
  meeting_.context().self_role = talvex::MeetingContext::kRoleAttendee;
  meeting_.context().is_webinar = true;
  EXPECT_EQ(avatar(Post("u-co")), (Items{{kPrivate, true}}));
  EXPECT_EQ(avatar(sam), (Items{{kPrivate, false}}));
  meeting_.authority().SetPolicy(10);
  EXPECT_EQ(avatar(Post("u-co")), (Items{{kPrivate, false}}));
  avatar(Post("u-co"));
  const size_t toasts = ui_->toasts().size();
  Click(kPrivate);
  EXPECT_EQ(ui_->toasts().size(), toasts + 1) << "refused with a word";
}

TEST_F(MenuTest, APicturesMenuSavesAndCopiesThePictureOnDisk) {
  const std::string file = talvex_test::TempRoot() + "/view.png";
  QImage picture(12, 8, QImage::Format_RGB32);
  picture.fill(Qt::darkGreen);
  ASSERT_TRUE(picture.save(QString::fromStdString(file)));
  const std::string id = Post("u2", 4);
  meeting_.messages().Update(id, [&](Variant& r) {
    r.Set("ui_msg_content", Variant::Map{{"item_type", 3}, {"orig_path", file}});
  });
  EXPECT_EQ(Menu(id), (Types{6, 7, kDelete})) << "the row of a picture shows the picture's menu";
  Click(7);
  EXPECT_EQ(QGuiApplication::clipboard()->image().size(), QSize(12, 8));
  Click(6);
  const QString saved = QDir(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation)).filePath("view.png");
  EXPECT_TRUE(QFile::exists(saved)) << saved.toStdString();
  Click(6);
  EXPECT_TRUE(QFile::exists(QFileInfo(saved).dir().filePath("view (1).png"))) << "a second save takes a new name";
  EXPECT_EQ(base::analytics::RecordedEvents("meetingpage_impanel_null_photomessage_save_null_click").size(), 2u);

  // Not downloaded yet: both are offered greyed.
  const std::string missing = Post("u2", 4);
  Act(VM::kActionShowChatMenu, Variant::Map{{"msg_id", missing}, {"target", 2}});
  auto const& items = vm_->GetPropValue(VM::kPropChatMenuList)->AsArray();
  ASSERT_GE(items.size(), 2u);
  EXPECT_FALSE(items[0].GetBoolean("enable"));
  EXPECT_FALSE(items[1].GetBoolean("enable"));
}

TEST_F(MenuTest, AFilesMenuFollowsItsTransferAndItsOwner) {
  enum : int { kRetry = 8, kStopUp = 9, kStopDown = 10, kDownload = 11, kOpen = 14, kFolder = 15, kSaveAs = 16,
               kCopyFile = 17 };
  const std::string path = talvex_test::TempRoot() + "/agenda.txt";
  {
    QFile file(QString::fromStdString(path));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("agenda");
  }
  auto file_message = [&](std::string const& from, bool own, int status, int security = 0) {
    const std::string id = Post(from, 8, own);
    meeting_.messages().Update(id, [&](Variant& r) {
      r["ext_content"].Set("file_info", Variant::Map{{"name", "agenda.txt"}, {"path", path}, {"size", 6},
                                                     {"status", status}, {"security", security}});
    });
    return id;
  };
  auto status_of = [&](std::string const& id) {
    return meeting_.messages().FindMessage(id)->Get("ext_content").Get("file_info").GetInt32("status");
  };
  EXPECT_EQ(Menu(file_message("u2", false, 5)), (Types{kDownload, kDelete}));
  const std::string downloading = file_message("u2", false, 7);
  EXPECT_EQ(Menu(downloading), (Types{kStopDown, kDelete}));
  Click(kStopDown);
  EXPECT_EQ(status_of(downloading), 10);
  EXPECT_FALSE(ui_->toasts().empty());
  EXPECT_EQ(Menu(file_message("u2", false, 9)), (Types{kOpen, kFolder, kSaveAs, kCopyFile, kDelete}));
  Click(kSaveAs);
  EXPECT_TRUE(QFile::exists(QDir(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation))
                                .filePath("agenda.txt")));
  Click(kCopyFile);
  ASSERT_FALSE(QGuiApplication::clipboard()->mimeData()->urls().isEmpty());
  EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->urls()[0].toLocalFile().toStdString(), path);

  const size_t toasts = ui_->toasts().size();
  EXPECT_EQ(Menu(file_message("u2", false, 9, 1)), (Types{})) << "a blocked file has no menu";
  EXPECT_EQ(ui_->toasts().size(), toasts + 1) << "but a word why";

  const std::string uploading = file_message("u-self", true, 1);
  EXPECT_EQ(Menu(uploading), (Types{kStopUp, kDelete}));
  Click(kStopUp);
  EXPECT_EQ(status_of(uploading), 2);
  EXPECT_EQ(Menu(uploading), (Types{kRetry, kDelete}));
  Click(kRetry);
  EXPECT_EQ(status_of(uploading), 3);
  EXPECT_EQ(Menu(uploading), (Types{kOpen, kFolder, kRecall, kSaveAs, kCopyFile, kDelete}));
  EXPECT_EQ(base::analytics::RecordedEvents("inmeeting_im_null_file_pc_null_im").size(), 5u);
}

TEST_F(MenuTest, BadRequestsAndUnknownItemsAreLoggedAndShowNothing) {
  talvex_test::LogCapture log;
  for (Variant bad : {Variant(), Variant(3), Variant(Variant::Map{{"msg_id", 7}}),
                      Variant(Variant::Map{{"msg_id", "no-such-message"}})}) {
    vm_->Handle(VM::kActionShowChatMenu, &bad);
    vm_->Handle(VM::kActionChatMenuItemClick, &bad);
  }
  EXPECT_FALSE(vm_->HasProp(VM::kPropChatMenuList));
  Act(VM::kActionShowChatMenu, Variant::Map{{"msg_id", Post("u2")}, {"target", 9}});
  EXPECT_TRUE(log.Contains("no menu manager for target 9"));
  Menu(Post("u2"));
  Click(12);
  EXPECT_TRUE(log.Contains("[chat menu] manager, handle menu item click failed! type = 12"));
}

}  // namespace
}  // namespace menu_test
