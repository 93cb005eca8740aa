// The meeting chat bridge as a web page uses it: through the client's web
// host, on both web engines, over the simulated meeting and its web meeting
// model, on the test clock.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "chat/runtime/chat_module_registration.h"
#include "chat/web/meeting_chat_web_plugin.h"
#include "chat/web/web_view_meeting_chat_plugin.h"
#include "framework/extension/extension.h"
#include "framework/web/web_host.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace web_test {
namespace {

using talvex::WebHost;
using Engine = WebHost::Engine;

constexpr char kScheme[] = "com.talvex.jsbridge.meetingchat";
constexpr char kPublic[] = "GetPublicChatMsgList";
constexpr char kPrivate[] = "GetPrivateChatMsgList";

const sim::Sender kSelf("u-self", "Alex Morgan", "u-self", "1400");
const sim::Sender kRiley("u-riley", "Riley Chen", "uid-riley", "1400");
const sim::Sender kJordan("u-jordan", "Jordan Lee", "uid-jordan", "1400");

void RegisterPlugins() { chat::registration::RegisterRuntimeAndExtensions(); }

void UnregisterPlugins() {
  if (chat::registration::HasRuntime()) chat::registration::UnregisterModule();
  framework::extension::GetExtensionService()->Clear();
  talvex::GetWebviewPluginEngine()->Clear();
  talvex::ClearWebPluginsEx();
}

Variant ParseList(WebHost::Callback const& callback) {
  Variant list;
  EXPECT_TRUE(callback.result.Get("msgList").IsString());
  EXPECT_TRUE(list.FromJsonStr(callback.result.Get("msgList").AsCStr())) << callback.result.ToJson();
  EXPECT_TRUE(list.IsArray());
  return list;
}

std::vector<std::string> Texts(Variant const& list) {
  std::vector<std::string> texts;
  for (auto const& entry : list.AsArray()) texts.push_back(entry.GetString("text"));
  return texts;
}

class MeetingChatWebPluginTest : public ::testing::TestWithParam<Engine> {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    meeting_.Install();
    meeting_.meeting().Join();
    RegisterPlugins();
    ASSERT_TRUE(page_.Attach(kScheme));
  }
  void TearDown() override {
    page_.Detach();
    UnregisterPlugins();
    meeting_.Uninstall();
  }
  std::string MeetingId() const { return std::to_string(talvex::MeetingContext::Current().meeting_id); }
  std::string Post(Variant record) { return meeting_.messages().Post(std::move(record)); }
  Variant PrivateParams(Variant meeting_id) const {
    return Variant::Map{{"privateAppUid", kRiley.app_uid}, {"privateAppId", kRiley.app_id}, {"meetingId", meeting_id}};
  }
  // Every answer so far must be a single error: nothing came before, and
  // nothing comes later.
  void ExpectOneErrorOnly(std::string const& what) {
    clock_.Advance(200);
    ASSERT_EQ(page_.callbacks().size(), 1u) << what;
    EXPECT_FALSE(page_.callbacks()[0].success) << what;
    EXPECT_TRUE(meeting_.web_meeting().invocations().empty()) << what;
    page_.ClearCallbacks();
  }

  talvex_test::TestClock clock_;
  sim::MeetingSimulator meeting_;
  WebHost page_{GetParam()};
};

TEST_P(MeetingChatWebPluginTest, PublicListIsAcceptedAtOnceAndArrivesLaterWithTheMeetingsMessages) {
  Post(sim::TextRecord(MeetingId(), kRiley, "Welcome, everyone"));
  const std::string withdrawn = Post(sim::TextRecord(MeetingId(), kJordan, "wrong room"));
  Post(sim::PrivateTextRecord(MeetingId(), kRiley, kSelf, "just for you"));
  Post(sim::TextRecord("999000111", kJordan, "another meeting"));
  Post(sim::TextRecord(MeetingId(), kSelf, "Thanks, glad to be here", true));
  meeting_.messages().Revoke(withdrawn);
  talvex_test::LogCapture log;

  const std::string id = page_.Call(kPublic, Variant::Map{{"meetingId", MeetingId()}});
  ASSERT_EQ(page_.callbacks().size(), 1u);
  WebHost::Callback const accepted = page_.callbacks()[0];
  EXPECT_TRUE(accepted.success);
  EXPECT_EQ(accepted.callback_id, id);
  EXPECT_TRUE(accepted.result.Empty()) << "the first answer only says the request left";
  EXPECT_TRUE(log.Contains("meetingId:" + MeetingId(), base::log::kLogInfo));
  ASSERT_EQ(meeting_.web_meeting().InvocationsOf(0).size(), 1u);
  EXPECT_EQ(meeting_.web_meeting().InvocationsOf(0)[0].GetString("meetingId"), MeetingId());

  clock_.Advance(100);
  ASSERT_EQ(page_.callbacks().size(), 2u);
  WebHost::Callback const data = page_.callbacks()[1];
  EXPECT_TRUE(data.success);
  EXPECT_EQ(data.callback_id, id);
  EXPECT_EQ(data.params.GetString("meetingId"), MeetingId()) << "the request comes back as the params";
  const Variant list = ParseList(data);
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"Welcome, everyone", "Thanks, glad to be here"}));
  Variant const& first = list[0];
  EXPECT_EQ(first.Get("sender").GetString("nickname"), "Riley Chen");
  EXPECT_EQ(first.Get("sender").GetString("appUid"), "uid-riley");
  EXPECT_EQ(first.GetInt32("type"), 0);
  EXPECT_GT(first.GetInteger("time"), 0);
  EXPECT_FALSE(first.GetBoolean("isFromSelf"));
  EXPECT_TRUE(list[1].GetBoolean("isFromSelf"));
  EXPECT_TRUE(log.Contains("native_call_js_data:" + data.result.GetString("msgList"), base::log::kLogInfo));

  // A page that names the meeting by number gets the same list; another
  // meeting's id gets an empty one.
  page_.ClearCallbacks();
  const std::string by_number =
      page_.Call(kPublic, Variant::Map{{"meetingId", talvex::MeetingContext::Current().meeting_id}});
  const std::string other = page_.Call(kPublic, Variant::Map{{"meetingId", "12345"}});
  clock_.Advance(100);
  ASSERT_EQ(page_.CallbacksFor(by_number).size(), 2u);
  EXPECT_EQ(Texts(ParseList(page_.CallbacksFor(by_number)[1])).size(), 2u);
  ASSERT_EQ(page_.CallbacksFor(other).size(), 2u);
  EXPECT_EQ(page_.CallbacksFor(other)[1].result.GetString("msgList"), "[]");
}

TEST_P(MeetingChatWebPluginTest, PrivateListHoldsOnlyTheConversationWithThatMember) {
  Post(sim::PrivateTextRecord(MeetingId(), kSelf, kRiley, "Could you share the slides?", true));
  Post(sim::PrivateTextRecord(MeetingId(), kRiley, kSelf, "Sure, after the call"));
  Post(sim::PrivateTextRecord(MeetingId(), kJordan, kSelf, "Lunch later?"));
  Post(sim::TextRecord(MeetingId(), kRiley, "To everyone"));
  talvex_test::LogCapture log;

  const std::string id = page_.Call(kPrivate, PrivateParams(MeetingId()));
  ASSERT_EQ(page_.callbacks().size(), 1u);
  EXPECT_TRUE(page_.callbacks()[0].success);
  EXPECT_TRUE(log.Contains("privateAppUid:uid-riley"));
  EXPECT_TRUE(log.Contains("privateAppId:1400"));
  EXPECT_EQ(meeting_.web_meeting().InvocationsOf(1).size(), 1u);
  EXPECT_TRUE(meeting_.web_meeting().InvocationsOf(0).empty());

  clock_.Advance(100);
  ASSERT_EQ(page_.CallbacksFor(id).size(), 2u);
  WebHost::Callback const data = page_.CallbacksFor(id)[1];
  EXPECT_TRUE(data.success);
  EXPECT_EQ(data.params.GetString("privateAppUid"), "uid-riley");
  const Variant list = ParseList(data);
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"Could you share the slides?", "Sure, after the call"}));
  EXPECT_EQ(list[0].Get("receiver").GetString("nickname"), "Riley Chen");
  EXPECT_EQ(list[1].Get("receiver").GetString("userId"), "u-self");

  const std::string other = page_.Call(kPrivate, PrivateParams(Variant("12345")));
  clock_.Advance(100);
  ASSERT_EQ(page_.CallbacksFor(other).size(), 2u);
  EXPECT_EQ(page_.CallbacksFor(other)[1].result.GetString("msgList"), "[]");
}

TEST_P(MeetingChatWebPluginTest, PrivateRequestWithoutBothMemberIdsFailsBeforeTheMeetingIsRead) {
  for (char const* missing : {"privateAppId", "privateAppUid"}) {
    talvex_test::LogCapture log;
    Variant params = PrivateParams(MeetingId());
    params.Remove(missing);
    page_.Call(kPrivate, params);
    EXPECT_TRUE(log.Contains("param error.", base::log::kLogWarning)) << missing;
    EXPECT_FALSE(log.Contains("meetingId:")) << missing;
    ExpectOneErrorOnly(missing);
  }
}

TEST_P(MeetingChatWebPluginTest, WithoutTheWebMeetingModelOrWhenItRefusesThePageGetsOneError) {
  meeting_.web_meeting().SetRefusing(true);
  const std::string refused = page_.Call(kPublic, Variant::Map{{"meetingId", MeetingId()}});
  clock_.Advance(200);
  ASSERT_EQ(page_.callbacks().size(), 1u);
  EXPECT_FALSE(page_.callbacks()[0].success);
  EXPECT_EQ(page_.callbacks()[0].callback_id, refused);
  page_.ClearCallbacks();
  meeting_.web_meeting().SetRefusing(false);
  meeting_.web_meeting().ClearInvocations();

  meeting_.RemoveModel(sim::WebMeetingModel::kId);
  for (auto const& [command, params] : {std::make_pair(kPublic, Variant(Variant::Map{{"meetingId", MeetingId()}})),
                                         std::make_pair(kPrivate, PrivateParams(MeetingId()))}) {
    talvex_test::LogCapture log;
    page_.Call(command, params);
    EXPECT_TRUE(log.Contains("webview_meeting_model is nullptr", base::log::kLogWarning)) << command;
    ExpectOneErrorOnly(command);
  }
}

TEST_P(MeetingChatWebPluginTest, BadParamsAreAnsweredWithOneErrorOnEveryCommand) {
  const std::vector<Variant> bad = {
      Variant(),
      Variant("meetingId=1"),
      Variant(42),
      Variant(Variant::Array{Variant(MeetingId())}),
      Variant(Variant::Map{}),
      Variant(Variant::Map{{"meetingId", ""}}),
      Variant(Variant::Map{{"meetingId", true}}),
      Variant(Variant::Map{{"meetingId", 8.5}}),
      Variant(Variant::Map{{"meetingId", Variant::Map{{"id", MeetingId()}}}}),
  };
  for (char const* command : {kPublic, kPrivate}) {
    page_.Call(command);
    ExpectOneErrorOnly(std::string(command) + " without params");
    for (Variant const& params : bad) {
      Variant with_member = params;
      if (std::string(command) == kPrivate && params.IsMap()) {
        with_member.Set("privateAppUid", kRiley.app_uid);
        with_member.Set("privateAppId", kRiley.app_id);
      }
      page_.Call(command, with_member);
      ExpectOneErrorOnly(std::string(command) + " " + with_member.ToJson());
    }
  }
  // The member's ids are checked as strictly.
  for (Variant const& uid : {Variant(""), Variant(Variant::Array{}), Variant(1.5)}) {
    Variant params = PrivateParams(MeetingId());
    params.Set("privateAppUid", uid);
    page_.Call(kPrivate, params);
    ExpectOneErrorOnly("privateAppUid " + uid.ToJson());
  }
  page_.Call("GetChatMsgList", Variant::Map{{"meetingId", MeetingId()}});
  ExpectOneErrorOnly("unknown command");
}

TEST_P(MeetingChatWebPluginTest, AnswersReachOnlyThePageThatAskedAndEndWithThePlugin) {
  auto& model = meeting_.web_meeting();
  WebHost other(GetParam());
  ASSERT_TRUE(other.Attach(kScheme));
  EXPECT_EQ(model.SubscriberCount(0), 2u);
  EXPECT_EQ(model.SubscriberCount(1), 2u);

  const std::string id = page_.Call(kPublic, Variant::Map{{"meetingId", MeetingId()}});
  clock_.Advance(100);
  EXPECT_EQ(page_.CallbacksFor(id).size(), 2u);
  EXPECT_TRUE(other.callbacks().empty()) << "another page's answer";

  // The page goes while its list is on the way: nobody hears of it, and the
  // answer reaches no plugin that is gone.
  other.Call(kPrivate, PrivateParams(MeetingId()));
  ASSERT_EQ(other.callbacks().size(), 1u);
  other.Detach();
  EXPECT_EQ(model.SubscriberCount(0), 1u);
  EXPECT_EQ(model.SubscriberCount(1), 1u);
  page_.ClearCallbacks();
  clock_.Advance(100);
  EXPECT_EQ(other.callbacks().size(), 1u);
  EXPECT_TRUE(page_.callbacks().empty()) << "another page's answer";

  page_.Detach();
  EXPECT_EQ(model.SubscriberCount(0), 0u);
  EXPECT_EQ(model.SubscriberCount(1), 0u);
  model.FireEvent(0, Variant(Variant::Map{{"request_param", Variant::Map{}}, {"callback_data", "[]"}}));
  EXPECT_TRUE(page_.callbacks().empty());
}

TEST_P(MeetingChatWebPluginTest, AMalformedAnswerOfTheModelIsIgnored) {
  auto& model = meeting_.web_meeting();
  const Variant request = Variant::Map{{"meetingId", MeetingId()}};
  for (Variant const& payload : {Variant(), Variant("[]"), Variant(Variant::Map{{"request_param", request}}),
                                 Variant(Variant::Map{{"request_param", request}, {"callback_data", 7}})}) {
    model.FireEvent(0, payload);
    model.FireEvent(1, payload);
  }
  model.FireEvent(0, nullptr);
  EXPECT_TRUE(page_.callbacks().empty());
  // A well-formed one for a request that names no page goes to this page.
  model.FireEvent(1, Variant(Variant::Map{{"request_param", request}, {"callback_data", "[]"}}));
  ASSERT_EQ(page_.callbacks().size(), 1u);
  EXPECT_EQ(page_.callbacks()[0].result.GetString("msgList"), "[]");
}

INSTANTIATE_TEST_SUITE_P(BothEngines, MeetingChatWebPluginTest, ::testing::Values(Engine::kWebview, Engine::kBrowserBridge),
                         [](auto const& info) { return info.param == Engine::kWebview ? "Webview" : "Bridge"; });

// Each engine's table holds the scheme with its own kind of plugin.
TEST(MeetingChatWebPluginRegistrationTest, BothEnginesOfferTheBridgeUnderItsScheme) {
  sim::MeetingSimulator meeting;
  meeting.Install();
  RegisterPlugins();
  auto const* entry = talvex::GetWebviewPluginEngine()->Find(kScheme);
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->class_list, std::vector<std::string>{"WebViewMeetingChatPlugin"});
  auto const* config = talvex::FindWebPluginEx(kScheme);
  ASSERT_NE(config, nullptr);
  EXPECT_EQ(config->class_list, std::vector<std::string>{"WebViewMeetingChatPlugin"});

  WebHost view(Engine::kWebview), bridge(Engine::kBrowserBridge);
  ASSERT_TRUE(view.Attach(kScheme));
  ASSERT_TRUE(bridge.Attach(kScheme));
  EXPECT_NE(dynamic_cast<chat::WebViewMeetingChatPlugin*>(view.plugin()), nullptr);
  EXPECT_NE(dynamic_cast<chat::MeetingChatWebPlugin*>(bridge.plugin()), nullptr);
  for (WebHost* page : {&view, &bridge}) {
    EXPECT_EQ(page->plugin()->Commands(), (std::vector<std::string>{kPrivate, kPublic}));
    EXPECT_TRUE(page->plugin()->attached());
  }
  EXPECT_FALSE(view.Attach("com.talvex.jsbridge.unknown"));
  EXPECT_FALSE(view.attached());
  view.Call(kPublic);
  EXPECT_TRUE(view.callbacks().empty()) << "no plugin, no answer";
  bridge.Detach();
  UnregisterPlugins();
  EXPECT_FALSE(bridge.Attach(kScheme));
  meeting.Uninstall();
}

}  // namespace
}  // namespace web_test
