// The client's chat helpers: link and emoji splitting, the image cache, file
// kinds and sizes, member list walks.
#include <QDate>
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <random>

#include "base/util/file_util.h"
#include "framework/chat/chat_file_utils.h"
#include "framework/chat/chat_utils.h"
#include "base/timer/tx_timer.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/meeting/member_utils.h"
#include "framework/meeting/security_control.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace {

using talvex::ChatFileUtils;
using talvex::ChatUtils;
using Items = std::vector<std::string>;

// "t:hello" for text, "e:[Smile]" for emoji, "l:www.x.com" for links.
Items Describe(Variant const& items) {
  Items out;
  for (auto const& item : items.AsArray()) {
    const int type = item.GetInt32("item_type", -1);
    out.push_back(type == 0   ? "t:" + item.GetString("item_content")
                  : type == 1 ? "e:" + item.GetString("item_emoji_text")
                  : type == 2 ? "l:" + item.GetString("item_content")
                              : "?");
  }
  return out;
}

Items Links(std::string const& text) { return Describe(ChatUtils::URLParseMessageContext(text)); }

TEST(LinkSplittingTest, FindsLinksAndLeavesSentencePunctuationOut) {
  EXPECT_EQ(Links("see https://example.com/a?b=1&c=2."), (Items{"t:see ", "l:https://example.com/a?b=1&c=2", "t:."}));
  EXPECT_EQ(Links("HTTP://X.ORG, www.site.net; done"), (Items{"l:HTTP://X.ORG", "t:, ", "l:www.site.net", "t:; done"}));
  EXPECT_EQ(Links("(see http://a.io/x)"), (Items{"t:(see ", "l:http://a.io/x", "t:)"}));
  EXPECT_EQ(Links("wiki http://w.org/Foo_(bar) ok"), (Items{"t:wiki ", "l:http://w.org/Foo_(bar)", "t: ok"}));
  EXPECT_EQ(Links("http://[::1]:8080/x[Smile]"), (Items{"l:http://[::1]:8080/x", "t:[Smile]"}));
  EXPECT_EQ(Links("\"http://q.com/\"!"), (Items{"t:\"", "l:http://q.com/", "t:\"!"}));
  // Words that only look like links stay text.
  EXPECT_EQ(Links("xhttp://a.com and awww.b.com"), (Items{"t:xhttp://a.com and awww.b.com"}));
  EXPECT_EQ(Links("https:// www. http"), (Items{"t:https:// www. http"}));
  EXPECT_TRUE(Links("").empty());
}

TEST(LinkSplittingTest, KeepsEveryScriptAndEmojiSequenceWhole) {
  // Chinese and Japanese write links straight after their text.
  EXPECT_EQ(Links("看这个https://a.cn/x。谢谢"), (Items{"t:看这个", "l:https://a.cn/x", "t:。谢谢"}));
  EXPECT_EQ(Links("مرحبا www.example.com שלום"), (Items{"t:مرحبا ", "l:www.example.com", "t: שלום"}));
  // A family emoji (ZWJ sequence) and a flag next to a link stay in one piece.
  const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
  const std::string flag = "\U0001F1EF\U0001F1F5";
  EXPECT_EQ(Links(family + "www.a.com" + flag), (Items{"t:" + family, "l:www.a.com", "t:" + flag}));
  // A keycap or a combining accent after the link's last letter stays with it, as text.
  EXPECT_EQ(Links("www.a.com/1\uFE0F\u20E3"), (Items{"l:www.a.com/", "t:1\uFE0F\u20E3"}));
  EXPECT_EQ(Links("http://a.com/cafe\u0301 x"), (Items{"l:http://a.com/caf", "t:e\u0301 x"}));
}

TEST(LinkSplittingTest, AHundredThousandCharacterTextSplits) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "word https://s.io/" + std::to_string(i) + " ";
  EXPECT_EQ(ChatUtils::URLParseMessageContext(text).Size(), 10001u);
}

class FaceSplittingTest : public ::testing::Test {
 protected:
  void SetUp() override {
    meeting_.Install();
    meeting_.faces().Load();
  }
  sim::MeetingSimulator meeting_;
};

TEST_F(FaceSplittingTest, ShortcutsTheFaceModelKnowsBecomeEmojiItems) {
  Variant items = ChatUtils::ParseMessageContext("hi [Smile] see www.x.com[Nope][Party]");
  EXPECT_EQ(Describe(items), (Items{"t:hi ", "e:[Smile]", "t: see ", "l:www.x.com", "t:[Nope]", "e:[Party]"}));
  EXPECT_EQ(items[1].GetInt32("item_emoji_index"), 0);
  EXPECT_TRUE(util::file::IsFileValid(items[1].GetString("item_emoji_path"))) << "a real image on disk";
  EXPECT_TRUE(ChatUtils::ParseMessageContext("").Empty());

  meeting_.faces().Unload();
  EXPECT_EQ(Describe(ChatUtils::ParseMessageContext("a [Smile]")), (Items{"t:a [Smile]"}));
  meeting_.RemoveModel(570);
  EXPECT_EQ(Describe(ChatUtils::ParseMessageContext("[Smile] www.b.com")), (Items{"t:[Smile] ", "l:www.b.com"}));
}

TEST_F(FaceSplittingTest, TextsShapedToMakeTheSplittersGoBackSplitAsShortOnesDo) {
  // Brackets the link never opened are trimmed however many there are.
  const std::string closers(30000, ')');
  EXPECT_EQ(Links("www." + closers), (Items{"t:www." + closers}));
  EXPECT_EQ(Links("see http://w.org/a_(b)" + closers + "."),
            (Items{"t:see ", "l:http://w.org/a_(b)", "t:" + closers + "."}));
  // Many "[" before one shortcut, and many with none closed.
  const std::string openers(100000, '[');
  EXPECT_EQ(Describe(ChatUtils::ParseMessageContext(openers + "[Smile]")), (Items{"t:" + openers, "e:[Smile]"}));
  EXPECT_EQ(Describe(ChatUtils::ParseMessageContext(openers + "x")), (Items{"t:" + openers + "x"}));
  // Links back to back, each found, with a grapheme cluster at the very end.
  std::string links;
  for (int i = 0; i < 2000; ++i) links += "http://a.io/ ";
  links += "http://a.io/e\u0301";
  const Variant items = ChatUtils::ParseMessageContext(links);
  ASSERT_EQ(items.Size(), 4002u);
  EXPECT_EQ(items[4000].GetString("item_content"), "http://a.io/");
  EXPECT_EQ(items[4001].GetString("item_content"), "e\u0301");
}

TEST_F(FaceSplittingTest, RandomTextsSplitWithoutLosingOrDoublingACharacter) {
  const std::vector<std::string> pieces = {"http://", "https://", "www.", "a.io", "/p", "(", ")", "[", "]", "[Smile]",
                                           "[Heart]", ".", ",", " ", "\n", "x", "\u6587", "\U0001F600", "e\u0301",
                                           "\uFE0F\u20E3", "HTTP://", "wWw."};
  std::mt19937 random(1124);
  for (int round = 0; round < 500; ++round) {
    std::string text;
    for (int i = 0, n = 1 + static_cast<int>(random() % 40); i < n; ++i) text += pieces[random() % pieces.size()];
    const Variant items = ChatUtils::ParseMessageContext(text);
    std::string joined;
    int previous = -1;
    for (auto const& item : items.AsArray()) {
      const int type = item.GetInt32("item_type", -1);
      joined += type == 1 ? item.GetString("item_emoji_text") : item.GetString("item_content");
      if (type == 2) {
        const std::string link = item.GetString("item_content");
        EXPECT_TRUE(link.rfind("http", 0) == 0 || link.rfind("HTTP", 0) == 0 || link.rfind("www", 0) == 0 ||
                    link.rfind("wWw", 0) == 0)
            << link;
      }
      EXPECT_FALSE(type == 0 && previous == 0) << "two text pieces side by side in " << text;
      previous = type;
    }
    ASSERT_EQ(joined, text);
  }
}

TEST_F(FaceSplittingTest, SingleEmojiBecomesAFaceMessage) {
  Variant record(Variant::Map{{"chat_type", 0}});
  Variant one = ChatUtils::ParseMessageContext("[Heart]");
  Variant face = ChatUtils::UpdateToFaceMesssageIfSingleEmojiItem(record, one, true);
  EXPECT_EQ(face.GetString("item_emoji_text"), "[Heart]");
  EXPECT_EQ(record.GetInt32("chat_type"), 1);

  Variant other(Variant::Map{{"chat_type", 0}});
  Variant two = ChatUtils::ParseMessageContext("[Heart] ");
  EXPECT_TRUE(ChatUtils::UpdateToFaceMesssageIfSingleEmojiItem(other, two, true).IsArray());
  EXPECT_TRUE(ChatUtils::UpdateToFaceMesssageIfSingleEmojiItem(other, one, false).IsArray());
  EXPECT_EQ(other.GetInt32("chat_type"), 0);
}

TEST_F(FaceSplittingTest, MixedElementsAndTheCompatibleTip) {
  const Variant elements(Variant::Array{Variant::Map{{"text_elem_content", "go to www.a.com "}},
                                        Variant::Map{{"face_elem_index", 5}},
                                        Variant::Map{{"face_elem_index", 999}, {"face_elem_buf", "[Old]"}},
                                        "not a map"});
  EXPECT_EQ(Describe(ChatUtils::ParseEmojiTextMixedMessage(elements, "tip")),
            (Items{"t:go to ", "l:www.a.com", "t: ", "e:[ThumbsUp]", "t:[Old]"}));
  EXPECT_EQ(Describe(ChatUtils::ParseEmojiTextMixedMessage(Variant(base::variant::kVariantTypeArray), "update")),
            (Items{"t:update"}));
  EXPECT_TRUE(ChatUtils::ParseEmojiTextMixedMessage(Variant("x"), "").Empty());
}

TEST(ImageCacheTest, FilesLiveInAFolderOfTheMeeting) {
  talvex_test::IsolateUserDirectories();
  const std::string thumb = ChatUtils::GetThumbPicFileName("img/1", "m1");
  EXPECT_EQ(thumb, ChatUtils::GetChatImageCacheDir("m1") + "/thumb_img_1");
  EXPECT_NE(ChatUtils::GetLargePicFileName("img/1", "m1"), thumb);
  EXPECT_NE(ChatUtils::GetOriginalPicFileName("img/1", "m2").find("/m2/orig_img_1"), std::string::npos);
  EXPECT_EQ(ChatUtils::GetThumbPicFileName("", "m1"), "");
  EXPECT_FALSE(ChatUtils::CheckThumbPicFileExist("img/1", "m1"));
  ASSERT_TRUE(util::file::EnsureDirExist(ChatUtils::GetChatImageCacheDir("m1")));
  QFile file(QString::fromStdString(thumb));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("png");
  file.close();
  EXPECT_TRUE(ChatUtils::CheckThumbPicFileExist("img/1", "m1"));
  EXPECT_FALSE(ChatUtils::CheckLargePicFileExist("img/1", "m1"));
  EXPECT_FALSE(ChatUtils::CheckThumbPicFileExist("img/1", "m2"));
}

TEST(ChatFileUtilsTest, KindsSizesAndFolders) {
  const std::pair<char const*, int> icons[] = {
      {"Report.PDF", ChatFileUtils::kFileIconPdf},         {"/a.b/notes.docx", ChatFileUtils::kFileIconDocument},
      {"clip.MOV", ChatFileUtils::kFileIconVideo},         {"setup.exe", ChatFileUtils::kFileIconExecutable},
      {"README", ChatFileUtils::kFileIconUnknown},         {".bashrc", ChatFileUtils::kFileIconUnknown},
  };
  for (auto const& [name, icon] : icons) EXPECT_EQ(ChatFileUtils::FileIconType(name), icon) << name;
  EXPECT_EQ(ChatFileUtils::GetFileLowerExtName("dir.v2/archive.TAR.GZ"), "gz");
  EXPECT_EQ(ChatFileUtils::GetFileLowerExtName("dir.v2/name"), "");

  const std::pair<int64_t, char const*> sizes[] = {
      {-5, "0 B"},         {1023, "1023 B"},        {1024, "1.0 KB"},           {1536, "1.5 KB"},
      {1048575, "1.0 MB"} /* never 1024.0 KB */,    {524288000, "500.0 MB"},    {int64_t(3) << 30, "3.0 GB"},
  };
  for (auto const& [bytes, text] : sizes) EXPECT_EQ(ChatFileUtils::DisplayFileSize(bytes), text) << bytes;

  EXPECT_TRUE(ChatFileUtils::IsInhibitedExtension("x.SH"));
  EXPECT_TRUE(ChatFileUtils::IsInhibitedExtension("run.bat"));
  EXPECT_FALSE(ChatFileUtils::IsInhibitedExtension("notes.txt"));

  talvex_test::IsolateUserDirectories();
  const std::string dir = ChatFileUtils::GetChatFileDateDirPath();
  EXPECT_TRUE(util::file::IsDirectory(dir));
  EXPECT_EQ(QDir(QString::fromStdString(dir)).dirName(), QDate::currentDate().toString("yyyy-MM-dd"));
}

TEST(MemberWalkTest, StopsAtTheFirstMatchAndSkipsWhatIsNoMember) {
  Variant list(base::variant::kVariantTypeArray);
  for (char const* id : {"u1", "u2", "u3"}) {
    list.Add(Variant(Variant::Map{{"user_id", id}}));
    list.Add(Variant(7));
  }
  std::vector<std::string> seen;
  EXPECT_TRUE(talvex_common::utils::member::EnumInRoomUsers(list, [&](Variant const& m) {
    seen.push_back(m.GetString("user_id"));
    return m.GetString("user_id") == "u2";
  }));
  EXPECT_EQ(seen, (std::vector<std::string>{"u1", "u2"}));
  EXPECT_FALSE(talvex_common::utils::member::EnumInRoomUsers(Variant("x"), [](Variant const&) { return true; }));
}

// The helpers the floating chat reads a record and the meeting with.
TEST(BulletHelpersTest, LinkMarkupGoesAndTheAddressStays) {
  using talvex::ChatMessageTools;
  EXPECT_EQ(ChatMessageTools::TrimUrlTag("see <URL>www.x.org</url> and [url]y.org[/Url]"), "see www.x.org and y.org");
  EXPECT_EQ(ChatMessageTools::TrimUrlTag("a <b>bold</b> [Smile] stays"), "a <b>bold</b> [Smile] stays");
  EXPECT_EQ(ChatMessageTools::TrimUrlTag("<url"), "<url") << "a tag cut short is text";
  EXPECT_EQ(ChatMessageTools::TrimUrlTag(""), "");
}

TEST(BulletHelpersTest, ContentLayoutAndGroupReceiverOfARecord) {
  using talvex::ChatMessageTools;
  using talvex::ChatUtils;
  EXPECT_EQ(ChatUtils::ConvertToLayoutType(11), 0);
  EXPECT_EQ(ChatUtils::ConvertToLayoutType(12), 12);
  const Variant plain = Variant::Map{{"ext_content", Variant::Map{{"notice_content", "Mute please"}}}};
  EXPECT_EQ(ChatMessageTools::ParseContent(6, plain), "Mute please");
  const Variant rich = Variant::Map{{"ext_content", Variant::Map{{"notice_type", 1},
      {"notice_content", R"([{"item_type":0,"item_content":"Slides: "},{"item_type":2,"item_content":"x.org"}])"}}}};
  EXPECT_EQ(ChatMessageTools::ParseContent(6, rich), "Slides: x.org");
  const Variant elements = Variant::Map{{"message_elem_array", Variant::Array{
      Variant::Map{{"text_elem_content", "one "}}, Variant::Map{{"text_elem_content", "two"}}}}};
  EXPECT_EQ(ChatMessageTools::ParseContent(0, elements), "one two");
  EXPECT_EQ(ChatMessageTools::ParseContent(6, Variant(3)), "");

  talvex_test::IsolateUserDirectories();
  sim::MeetingSimulator meeting;
  meeting.Install();
  Variant out;
  ChatUtils::ResolveUIMsgGroupReceiver(Variant::Map{{"message_conv_type", 2}, {"receiver_type", 3}}, out, 0);
  EXPECT_EQ(out.GetString("msg_receiver"), "Waiting room");
  ChatUtils::ResolveUIMsgGroupReceiver(Variant::Map{{"message_conv_type", 2}, {"receiver_type", 2}}, out, 0);
  EXPECT_EQ(out.GetString("msg_receiver"), "") << "to everyone names nobody";
  ChatUtils::ResolveUIMsgGroupReceiver(Variant::Map{{"message_conv_type", 1}, {"receiver_type", 3}}, out, 0);
  EXPECT_EQ(out.GetString("msg_receiver"), "") << "a private message has no group";
  meeting.Uninstall();
}

TEST(BulletHelpersTest, ChatSwitchesSecurityControlAndTheHost) {
  using talvex::ChatUtils;
  namespace control = talvex_common::utils::security_control;
  talvex_test::IsolateUserDirectories();
  EXPECT_TRUE(ChatUtils::IsChatEnable()) << "a client without settings keeps chat on";
  EXPECT_TRUE(ChatUtils::IsMeetingSupportIM(0));
  sim::MeetingSimulator meeting;
  meeting.Install();
  meeting.meeting_settings().SetSwitch("chat", false);
  EXPECT_FALSE(ChatUtils::IsChatEnable());
  EXPECT_FALSE(talvex_common::utils::meetingsettings::IsChatPermissionControlReplyEmojiEnable());
  meeting.meeting_settings().SetSwitch("chat_permission_reply_emoji", true);
  EXPECT_TRUE(talvex_common::utils::meetingsettings::IsChatPermissionControlReplyEmojiEnable());

  EXPECT_FALSE(control::IsUnderSecurityControl(talvex::SecurityControl::kControlItemChat));
  meeting.context().security_controls[talvex::SecurityControl::kControlItemChat] = "Blocked by policy";
  const Variant info = control::GetSecurityControlInfo(talvex::SecurityControl::kControlItemChat);
  EXPECT_TRUE(info.GetBoolean("is_under_control"));
  EXPECT_EQ(info.GetString("control_text"), "Blocked by policy");
  EXPECT_FALSE(control::IsUnderSecurityControl(talvex::SecurityControl::kControlItemFile));

  std::string app_id, app_uid;
  EXPECT_FALSE(talvex_common::utils::member::GetHostAppIdAndAppUid(app_id, app_uid));
  meeting.members().AddMember(Variant::Map{{"user_id", "h"}, {"app_uid", "uid-h"}, {"app_id", "1400"},
                                           {"role", "host"}});
  EXPECT_TRUE(talvex_common::utils::member::GetHostAppIdAndAppUid(app_id, app_uid));
  EXPECT_EQ(app_uid, "uid-h");
  meeting.Uninstall();
}

TEST(BulletHelpersTest, TheWallClockKeepsStepWithTheTestClock) {
  namespace timer = talvex_common::utils::timer;
  const int64_t before = timer::WallClockMs();
  {
    timer::ManualTimerClock clock;
    const int64_t start = timer::WallClockMs();
    EXPECT_EQ(start % 1000, 0) << "on a whole second";
    EXPECT_LE(std::llabs(start - before), 1000);
    clock.Advance(30000);
    EXPECT_EQ(timer::WallClockMs(), start + 30000);
  }
  EXPECT_LT(timer::WallClockMs() - before, 5000) << "real time again without the clock";
  talvex_common::utils::inmeeting::SetCurrentVmLifecycleState(7, 3);
  EXPECT_EQ(talvex_common::utils::inmeeting::GetCurrentVmLifecycleState(7), 3);
  EXPECT_EQ(talvex_common::utils::inmeeting::GetCurrentVmLifecycleState(8), -1);
}

}  // namespace
