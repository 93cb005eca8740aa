// The meeting notice through the simulated meeting service on the test clock:
// reading and the read mark, a host's edit that holds off updates, sending,
// clearing and failing, the role lost while editing, and the notice's forms.
#include <gtest/gtest.h>

#include <QDateTime>

#include "base/analytics/analytics.h"
#include "chat/biz_model/meeting_notice_biz_model.h"
#include "chat/model/meeting_notice_model.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/util/utils.h"
#include "chat/viewmodel/meeting_notice_banner_view_model.h"
#include "chat/viewmodel/meeting_notice_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/navigation/routing.h"
#include "framework/resource/resource.h"
#include "sim/chat_records.h"
#include "framework/ui/ui_service.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace notice_test {
namespace {

using Biz = chat::MeetingNoticeBizModel;
using Notice = chat::MeetingNoticeModel;
using Role = talvex::MeetingContext::Role;

std::string Text(char const* name) { return talvex_common::utils::GetLocalizedString(framework::NameId(name)); }

class NoticeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    base::analytics::ClearRecordedEvents();
    ui_ = std::make_shared<framework::RecordingUIService>();
    framework::SetUIService(ui_);
    framework::NavigateService::Instance()->ClearOpened();
    meeting_.Install();
    chat::WriteLocalSetting(chat::MeetingNoticeViewModel::kBannerMemoryKey, Variant(""));
    meeting_.meeting_settings().SetSwitch("notice_enable", true);
    meeting_.members().AddMember(Variant::Map{{"user_id", "u-host"}, {"app_uid", "u-host"}, {"app_id", "1400"},
                                              {"nickname", "Riley Chen"}, {"role", "host"}});
    ASSERT_TRUE(runtime_.Activate());
    biz_ = std::dynamic_pointer_cast<Biz>(runtime_.ModelOf(chat::kMeetingNoticeBizModelId));
    ASSERT_NE(biz_, nullptr);
    auto collect = [](std::vector<Variant>& into) {
      return std::make_shared<framework::EventHandler>([&into](Variant const* p) { into.push_back(p ? *p : Variant()); });
    };
    biz_->Subscribe(Biz::kEventNoticeInfo, 5, collect(infos_));
    biz_->Subscribe(Biz::kEventSendFinished, 5, collect(sends_));
    biz_->Subscribe(Biz::kEventReadMarkChanged, 5, collect(reads_));
    meeting_.meeting().Join();
    clock_.Advance(100);
  }
  void TearDown() override {
    if (biz_) biz_->Unsubscribe(5);
    biz_.reset();
    runtime_.Unactivate();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
  }
  uint64_t MeetingId() { return meeting_.context().meeting_id; }
  void PublishByHost(std::string const& text, int type = 0) {
    meeting_.notices().PublishAs(MeetingId(), "u-host", "Riley Chen", type, text);
    clock_.Advance(100);
  }
  Variant Call(uint32_t method, Variant params = Variant()) {
    Variant result;
    biz_->Invoke(method, params.IsNull() ? nullptr : &params, &result);
    return result;
  }
  Variant Send(std::string const& text) {
    Variant result = Call(Biz::kSend, Variant(text));
    clock_.Advance(100);
    return result;
  }
  std::string Shown() const { return biz_->info().GetString("content_text"); }

  talvex_test::TestClock clock_;
  sim::MeetingSimulator meeting_;
  chat::ChatModuleRuntime runtime_;
  std::shared_ptr<Biz> biz_;
  std::vector<Variant> infos_, sends_, reads_;
  std::shared_ptr<framework::RecordingUIService> ui_;
};

TEST_F(NoticeTest, ANewNoticeArrivesUnreadAndOpeningItReadsIt) {
  EXPECT_EQ(biz_->info().GetInteger("notice_version"), 0);
  PublishByHost("Please keep your microphone muted.");
  ASSERT_FALSE(infos_.empty());
  Variant const info = infos_.back();
  EXPECT_EQ(info.GetInteger("notice_version"), 1);
  EXPECT_EQ(info.GetString("content_text"), "Please keep your microphone muted.");
  EXPECT_EQ(info.GetInt32("max_length"), 1000);
  EXPECT_FALSE(info.GetBoolean("can_edit"));
  EXPECT_EQ(info.Get("sender").GetString("nick_name"), "Riley Chen");
  EXPECT_EQ(info.Get("sender").GetString("avatar_name"), "RC");
  EXPECT_EQ(info.GetString("send_time_str").size(), 5u) << "today: hours and minutes";
  EXPECT_FALSE(Call(Biz::kGetReadMark).AsBoolean());
  ASSERT_FALSE(reads_.empty());
  EXPECT_FALSE(reads_.back().AsBoolean());

  Call(Biz::kGetAndReadNotice);
  clock_.Advance(100);
  EXPECT_TRUE(meeting_.notices().ReadBy(MeetingId(), "u-self"));
  EXPECT_TRUE(Call(Biz::kGetReadMark).AsBoolean());
  EXPECT_TRUE(reads_.back().AsBoolean());
  EXPECT_FALSE(biz_->is_edit()) << "a participant reads";
  EXPECT_EQ(meeting_.messages().InvocationsOf(48).size(), 1u) << "the chat list is told";
}

TEST_F(NoticeTest, AnEmptyNoticeOpensInEditingForAHostAndReadsAsReadForOthers) {
  meeting_.context().self_role = Role::kRoleAttendee;
  Call(Biz::kGetAndReadNotice);
  EXPECT_FALSE(biz_->is_edit());
  EXPECT_TRUE(Call(Biz::kGetReadMark).AsBoolean());
  EXPECT_FALSE(Call(Biz::kStartEdit).GetBoolean("is_succeed"));

  meeting_.context().self_role = Role::kRoleHost;
  Call(Biz::kGetAndReadNotice);
  EXPECT_TRUE(biz_->is_edit()) << "straight to writing one";
  EXPECT_TRUE(infos_.back().GetBoolean("is_edit"));
}

TEST_F(NoticeTest, AnUpdateDuringAnEditWaitsUntilTheEditEnds) {
  meeting_.context().self_role = Role::kRoleHost;
  PublishByHost("Agenda: intro, roadmap, questions.");
  ASSERT_TRUE(Call(Biz::kStartEdit).GetBoolean("is_succeed"));
  EXPECT_TRUE(Call(Biz::kCompareWithCurrent, Variant("Agenda: intro, roadmap, questions.")).GetBoolean("is_succeed"));
  EXPECT_FALSE(Call(Biz::kCompareWithCurrent, Variant("Agenda: intro")).GetBoolean("is_succeed"));
  const size_t shown = infos_.size();
  meeting_.notices().PublishAs(MeetingId(), "u-co", "Casey Moore", 0, "Agenda changed: roadmap first.");
  clock_.Advance(100);
  EXPECT_EQ(infos_.size(), shown) << "nothing changes under a host who types";
  EXPECT_EQ(Shown(), "Agenda: intro, roadmap, questions.");
  EXPECT_TRUE(biz_->need_refresh());

  // The role is lost while editing: the block holds.
  meeting_.context().self_role = Role::kRoleMember;
  meeting_.members().FireEvent(6, Variant::Array{Variant("u-self")});
  EXPECT_EQ(Shown(), "Agenda: intro, roadmap, questions.");
  EXPECT_TRUE(biz_->need_refresh());

  Call(Biz::kCancelEdit);
  EXPECT_FALSE(biz_->is_edit());
  EXPECT_EQ(Shown(), "Agenda changed: roadmap first.") << "after cancel the newest shows";
  EXPECT_FALSE(biz_->info().GetBoolean("can_edit"));
}

TEST_F(NoticeTest, SendingPublishesTellsTheChatAndClearingDoesNot) {
  meeting_.context().self_role = Role::kRoleHost;
  Call(Biz::kGetAndReadNotice);
  ASSERT_TRUE(biz_->is_edit());
  Variant answer = Send("Slides: https://talvex-demo.org/slides and questions at the end");
  EXPECT_TRUE(answer.GetBoolean("is_succeed"));
  ASSERT_FALSE(sends_.empty());
  EXPECT_TRUE(sends_.back().GetBoolean("is_succeed"));
  EXPECT_FALSE(sends_.back().GetBoolean("is_clear_notice"));
  EXPECT_FALSE(biz_->is_edit());
  talvexsdk::MeetingNoticeInfo const stored = meeting_.notices().NoticeOf(MeetingId());
  EXPECT_EQ(stored.notice_type, 1) << "a text with a link goes as items";
  Variant const items = biz_->info().Get("notice_content");
  ASSERT_EQ(items.Size(), 3u);
  EXPECT_EQ(items[1].GetInt32("type"), 2);
  EXPECT_EQ(Shown(), "Slides: https://talvex-demo.org/slides and questions at the end");
  auto const messages = meeting_.messages().InvocationsOf(47);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].GetInt32("receiver_type"), 2);
  EXPECT_EQ(messages[0].GetInt32("notice_type"), 1);
  EXPECT_EQ(messages[0].GetInteger("notice_version"), static_cast<int64_t>(stored.notice_version));
  EXPECT_EQ(base::analytics::RecordedEvents("notice_send_result").size(), 1u);

  // Cleared: no message to the chat.
  ASSERT_TRUE(Call(Biz::kStartEdit).GetBoolean("is_succeed"));
  EXPECT_TRUE(Send("").GetBoolean("is_succeed"));
  EXPECT_TRUE(sends_.back().GetBoolean("is_clear_notice"));
  EXPECT_EQ(meeting_.messages().InvocationsOf(47).size(), 1u);
  EXPECT_EQ(biz_->info().GetInteger("notice_version"), 0);
}

TEST_F(NoticeTest, AFailedOrRefusedSendKeepsTheEditAndSaysWhy) {
  meeting_.context().self_role = Role::kRoleHost;
  Call(Biz::kStartEdit);
  meeting_.notices().FailNextModify(500, "service busy");
  Send("Break at 11:00");
  ASSERT_FALSE(sends_.empty());
  EXPECT_FALSE(sends_.back().GetBoolean("is_succeed"));
  EXPECT_EQ(sends_.back().GetString("err_msg"), "service busy");
  EXPECT_TRUE(biz_->is_edit()) << "a failed send stays in edit";

  meeting_.meeting_settings().SetSwitch("notice_enable", false);
  Variant refused = Send("Break at 11:00");
  EXPECT_FALSE(refused.GetBoolean("is_succeed"));
  EXPECT_FALSE(refused.GetString("err_msg").empty());
  meeting_.meeting_settings().SetSwitch("notice_enable", true);
  meeting_.context().self_role = Role::kRoleMember;
  EXPECT_FALSE(Send("Break at 11:00").GetBoolean("is_succeed"));
  EXPECT_EQ(meeting_.notices().modify_count(), 1) << "refusals never reach the service";
}

TEST_F(NoticeTest, TheNoticesFormsAndTheRules) {
  // One link alone is items too: it is no plain text item.
  int type = -1;
  std::string content;
  Notice::EncodeNoticeContent("https://talvex-demo.org", type, content);
  EXPECT_EQ(type, 1);
  Notice::EncodeNoticeContent("plain words", type, content);
  EXPECT_EQ(type, 0);
  EXPECT_EQ(content, "plain words");

  // Items of other kinds are dropped, a negative one ends the list, and
  // content that is no JSON shows as the text it is.
  PublishByHost(R"([{"item_type":0,"item_content":"Read "},{"item_type":1,"item_content":"[Smile]"},)"
                R"({"item_type":2,"item_content":"https://a.example"},{"item_type":-1,"item_content":"x"},)"
                R"({"item_type":0,"item_content":"never"}])",
                1);
  EXPECT_EQ(Shown(), "Read https://a.example");
  EXPECT_EQ(biz_->info().Get("notice_content").Size(), 2u);
  PublishByHost("{not json", 1);
  EXPECT_EQ(Shown(), "{not json");

  for (auto const& [text, blank] : std::vector<std::pair<Variant, bool>>{
           {Variant(), true}, {Variant(3), true}, {Variant(""), true}, {Variant(" \n\r\t"), true}, {Variant(" a "), false}}) {
    EXPECT_EQ(Biz::IsBlank(&text), blank) << framework::VariantToString(&text);
  }
  const uint64_t noon = static_cast<uint64_t>(QDateTime(QDate(2026, 11, 25), QTime(12, 5)).toSecsSinceEpoch());
  EXPECT_EQ(Biz::FormatSendTime(noon, noon + 3600), "12:05");
  EXPECT_EQ(Biz::FormatSendTime(noon, noon + 86400), "2026-11-25 12:05");
  EXPECT_EQ(Call(Biz::kGetMaxLength).AsInteger(), 1000);

  // Calls of the wrong shape answer nothing and change nothing.
  auto notice = runtime_.ModelOf(chat::kMeetingNoticeModelId);
  for (Variant bad : {Variant(), Variant("1"), Variant(base::variant::kVariantTypeMap)}) {
    EXPECT_FALSE(notice->Invoke(Notice::kReadNotice, &bad, nullptr));
    EXPECT_FALSE(notice->Invoke(Notice::kGetHistoryNotice, &bad, nullptr));
  }
  Variant number(7);
  EXPECT_FALSE(notice->Invoke(Notice::kModifyNotice, &number, nullptr));
  EXPECT_FALSE(Call(Biz::kCompareWithCurrent, Variant(7)).GetBoolean("is_succeed"));
  EXPECT_EQ(meeting_.notices().modify_count(), 0);
}

TEST_F(NoticeTest, LeavingForgetsTheNoticeAndABreakoutRoomReadsTheMainMeetings) {
  PublishByHost("Welcome!");
  meeting_.meeting().Leave();
  EXPECT_EQ(biz_->info().GetInteger("notice_version"), 0);
  EXPECT_TRUE(Call(Biz::kGetReadMark).AsBoolean());
  EXPECT_EQ(meeting_.notices().meeting_id(), 0u);

  auto& context = meeting_.context();
  const uint64_t main = context.meeting_id;
  context.main_meeting_id = main;
  context.breakout_started = context.in_breakout_room = true;
  context.meeting_id = main + 1;
  meeting_.meeting().Join();
  clock_.Advance(100);
  EXPECT_EQ(meeting_.notices().meeting_id(), main);
  EXPECT_EQ(Shown(), "Welcome!");
}

// The notice dialog's view model as the dialog drives it.
class NoticeDialogTest : public NoticeTest {
 protected:
  using VM = chat::MeetingNoticeViewModel;
  void Open(int type = chat::kViewModelMeetingNotice, Variant params = Variant()) {
    vm_ = runtime_.GetViewModelProvider()->CreateViewModel(type);
    ASSERT_NE(vm_, nullptr);
    vm_->DidCreated(nullptr);
    vm_->DidAttached(&params);
  }
  void TearDown() override {
    if (vm_) vm_->DidDetached();
    vm_.reset();
    NoticeTest::TearDown();
  }
  void Act(uint32_t action, Variant params) { vm_->Handle(action, &params); }
  Variant Info() const { return vm_->PickPropValue(VM::kPropNoticeInfo); }
  std::string LastToast() const { return ui_->toasts().empty() ? "" : ui_->toasts().back().text; }
  std::shared_ptr<framework::ViewModel> vm_;
};

TEST_F(NoticeDialogTest, AHostPublishesWithConfirmationAndTheDialogClosesItself) {
  meeting_.context().self_role = Role::kRoleHost;
  Open();
  EXPECT_TRUE(Info().GetBoolean("MeetingNoticeMeetingNoticeInfoFields_kBooleanIsEdit")) << "empty: straight to editing";
  EXPECT_FALSE(vm_->PickPropValue(VM::kPropUiData).GetString("MeetingNoticeUiDataFields_kStringSendStr").empty());

  // Blank with nothing to clear: said, not asked.
  Act(VM::kActionSend, Variant("   "));
  EXPECT_EQ(ui_->LastOpenAlert(), nullptr);
  EXPECT_FALSE(LastToast().empty());

  Act(VM::kActionSend, Variant("Slides after the call."));
  auto const* alert = ui_->LastOpenAlert();
  ASSERT_NE(alert, nullptr);
  ASSERT_TRUE(ui_->Answer(alert->id, framework::kAlertButtonPositive));
  EXPECT_EQ(ui_->loadings().size(), 1u) << "publishing shows progress";
  clock_.Advance(100);
  EXPECT_EQ(LastToast(), Text("chat.notice.sent"));
  EXPECT_EQ(biz_->info().GetInteger("notice_version"), 1) << "the dialog is closing; the rules hold the new notice";
  EXPECT_EQ(Shown(), "Slides after the call.");
  Variant const memory = VM::ReadBannerMemory();
  EXPECT_TRUE(memory.GetBoolean("should_show_top_notice"));
  EXPECT_EQ(memory.GetInteger("notice_version"), 1);
  EXPECT_EQ(vm_->PropSetCount(VM::kPropClose), 0u);
  clock_.Advance(VM::kCloseDelayMs);
  EXPECT_EQ(vm_->PropSetCount(VM::kPropClose), 1u);

  // Blank over a notice: a clear, asked as one.
  Act(VM::kActionStartEdit, Variant());
  Act(VM::kActionSend, Variant(" \n"));
  ASSERT_NE(ui_->LastOpenAlert(), nullptr);
  EXPECT_EQ(ui_->LastOpenAlert()->request.title, Text("chat.notice.clear_confirm"));
  ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonPositive);
  clock_.Advance(100);
  EXPECT_EQ(LastToast(), Text("chat.notice.cleared"));
  EXPECT_EQ(meeting_.messages().InvocationsOf(47).size(), 1u) << "only the publish told the chat";
}

TEST_F(NoticeDialogTest, LeavingAnEditWithChangesAsksFirst) {
  meeting_.context().self_role = Role::kRoleHost;
  PublishByHost("Agenda: intro.");
  Open();
  Act(VM::kActionStartEdit, Variant());
  ASSERT_TRUE(biz_->is_edit());
  Act(VM::kActionCancelEdit, Variant("Agenda: intro."));
  EXPECT_FALSE(biz_->is_edit()) << "unchanged: no question";
  EXPECT_EQ(ui_->LastOpenAlert(), nullptr);

  Act(VM::kActionStartEdit, Variant());
  Act(VM::kActionCancelEdit, Variant("Agenda: intro, then questions."));
  ASSERT_NE(ui_->LastOpenAlert(), nullptr);
  ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonNegative);
  EXPECT_TRUE(biz_->is_edit()) << "kept editing";
  Act(VM::kActionCancelEdit, Variant("Agenda: intro, then questions."));
  ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonPositive);
  EXPECT_FALSE(biz_->is_edit());

  // A participant can't start editing; the reason shows.
  meeting_.context().self_role = Role::kRoleMember;
  const size_t toasts = ui_->toasts().size();
  Act(VM::kActionStartEdit, Variant());
  EXPECT_EQ(ui_->toasts().size(), toasts + 1);
  EXPECT_FALSE(biz_->is_edit());
}

TEST_F(NoticeDialogTest, LinksOpenOnlyOnTheWebAndBadInputDoesNothing) {
  Open();
  Act(VM::kActionShowWebView, Variant("javascript:alert(1)"));
  Act(VM::kActionShowWebView, Variant(5));
  EXPECT_TRUE(framework::NavigateService::Instance()->opened().empty());
  Act(VM::kActionShowWebView, Variant("https://talvex-demo.org/agenda"));
  ASSERT_EQ(framework::NavigateService::Instance()->opened().size(), 1u);
  for (Variant bad : {Variant(), Variant(3), Variant(base::variant::kVariantTypeMap)}) {
    Act(VM::kActionSend, bad);
    vm_->Handle(VM::kActionCancelEdit, nullptr);
  }
  EXPECT_EQ(ui_->LastOpenAlert(), nullptr);
  EXPECT_EQ(meeting_.notices().modify_count(), 0);
}

TEST_F(NoticeDialogTest, AHistoryNoticeIsReadOnlyWhateverTheRole) {
  meeting_.context().self_role = Role::kRoleHost;
  Variant content = Variant::Array{Variant::Map{{"item_type", 0}, {"item_content", "Old agenda: "}},
                                   Variant::Map{{"item_type", 2}, {"item_content", "https://a.example"}}};
  Variant record = sim::ChatRecord(meeting_.meeting().meeting_id(), sim::Sender("u-host", "Riley Chen"), 6, content);
  record.Set("msg_format_time", "09:30");
  const std::string msg_id = meeting_.messages().Post(record);
  Open(chat::kViewModelHistoryMeetingNotice, Variant::Map{{"msg_id", msg_id}});
  Variant const info = Info();
  EXPECT_FALSE(info.GetBoolean("MeetingNoticeMeetingNoticeInfoFields_kBooleanCanEdit"));
  EXPECT_FALSE(info.GetBoolean("MeetingNoticeMeetingNoticeInfoFields_kBooleanIsEdit"));
  EXPECT_EQ(info.GetString("MeetingNoticeMeetingNoticeInfoFields_kStringSendTimeStr"), "09:30");
  ASSERT_EQ(info.Get("MeetingNoticeMeetingNoticeInfoFields_kArrayNoticeContent").Size(), 2u);
  EXPECT_EQ(info.Get("MeetingNoticeMeetingNoticeInfoFields_kArrayNoticeContent")[1].GetInt32(
                "MeetingNoticeMeetingNoticeInfoFields_kIntegerNoticeContentType"),
            2);
  EXPECT_EQ(info.Get("sender").GetString("nick_name"), "Riley Chen");

  vm_->DidDetached();
  Open(chat::kViewModelHistoryMeetingNotice, Variant::Map{{"msg_id", "no-such-message"}});
  EXPECT_FALSE(vm_->HasProp(VM::kPropNoticeInfo));
}

// The banner over the chat panel, as its view model publishes it.
class NoticeBannerTest : public NoticeDialogTest {
 protected:
  using Banner = chat::MeetingNoticeBannerViewModel;
  Variant Shown() const { return vm_->PickPropValue(Banner::kPropBanner); }
  bool Visible() const { return Shown().GetBoolean("visible"); }
};

TEST_F(NoticeBannerTest, ANewOrChangedNoticeShowsUntilHiddenAndHidingHoldsForThatVersion) {
  Open(chat::kViewModelMeetingNoticeBanner);
  EXPECT_FALSE(Visible()) << "no notice, no banner";
  PublishByHost("Please keep your microphone muted.");
  ASSERT_TRUE(Visible());
  EXPECT_EQ(Shown().GetString("text"), "Please keep your microphone muted.");
  EXPECT_EQ(Shown().GetString("sender"), "Riley Chen");
  EXPECT_EQ(Shown().GetString("time").size(), 5u);
  EXPECT_FALSE(Shown().GetBoolean("updated")) << "a first notice is new, not updated";

  Act(Banner::kActionOpen, Variant());
  ASSERT_EQ(framework::NavigateService::Instance()->opened().size(), 1u);
  EXPECT_EQ(framework::NavigateService::Instance()->opened()[0].GetString("url"), chat::kMeetingNoticePage);
  EXPECT_TRUE(Visible()) << "reading the notice leaves the banner";

  Act(Banner::kActionDismiss, Variant());
  EXPECT_FALSE(Visible());
  Variant const memory = VM::ReadBannerMemory();
  EXPECT_FALSE(memory.GetBoolean("should_show_top_notice", true));
  EXPECT_EQ(memory.GetInteger("notice_version"), 1);
  // The same version again (a room change re-reads it; a new banner view is built): still hidden.
  meeting_.meeting().FireEvent(chat::kMeetingEventRoomChanged, Variant());
  vm_->DidDetached();
  Open(chat::kViewModelMeetingNoticeBanner);
  EXPECT_FALSE(Visible());

  PublishByHost("Slides are in the shared folder.");
  ASSERT_TRUE(Visible()) << "a changed notice shows again";
  EXPECT_TRUE(Shown().GetBoolean("updated"));
  EXPECT_EQ(Shown().GetString("text"), "Slides are in the shared folder.");

  PublishByHost("");
  EXPECT_FALSE(Visible()) << "a cleared notice takes the banner away";
  PublishByHost("Back after the break.");
  ASSERT_TRUE(Visible());
  meeting_.meeting().Leave();
  EXPECT_FALSE(Visible()) << "leaving takes it away";
}

TEST_F(NoticeBannerTest, TheBannerShowsOnlyTextAndLinksAndBadInputChangesNothing) {
  Open(chat::kViewModelMeetingNoticeBanner);
  PublishByHost(R"([{"item_type":0,"item_content":"Agenda: "},{"item_type":2,"item_content":"https://a.example"},)"
                R"({"item_type":7,"item_content":"??"}])",
                1);
  ASSERT_TRUE(Visible());
  EXPECT_EQ(Shown().GetString("text"), "Agenda: https://a.example") << "an item of unknown type is left out";
  const size_t published = vm_->PropSetCount(Banner::kPropBanner);
  auto banner = std::dynamic_pointer_cast<Banner>(vm_);
  for (Variant bad : {Variant(3), Variant("text"), Variant(Variant::Array{}), Variant(true)}) banner->Refresh(bad);
  EXPECT_EQ(vm_->PropSetCount(Banner::kPropBanner), published) << "nothing published for a record that is no map";
  EXPECT_TRUE(Visible());
  std::dynamic_pointer_cast<Notice>(runtime_.ModelOf(chat::kMeetingNoticeModelId))->FireEvent(Notice::kEventNoticeChanged, Variant(12));
  EXPECT_TRUE(Visible());

  // Notices turned off: no banner, and opening says why.
  meeting_.meeting_settings().SetSwitch("notice_enable", false);
  banner->Refresh(Variant());
  EXPECT_FALSE(Visible());
  Act(Banner::kActionOpen, Variant());
  EXPECT_EQ(LastToast(), Text("chat.notice.disabled"));
  EXPECT_TRUE(framework::NavigateService::Instance()->opened().empty());
  // Hiding with nothing shown writes no memory.
  Act(Banner::kActionDismiss, Variant());
  EXPECT_TRUE(VM::ReadBannerMemory().IsNull());
}

}  // namespace
}  // namespace notice_test
