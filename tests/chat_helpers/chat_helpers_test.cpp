// The client's chat helpers: link and emoji splitting, the image cache, file
// kinds and sizes, member list walks.
#include <QDate>
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include "base/util/file_util.h"
#include "framework/chat/chat_file_utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/member_utils.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace {

using talvex::ChatFileUtils;
using talvex::ChatUtils;

// "t:hello" for text, "l:www.x.com" for links, "e:[Smile]" for emoji.
std::vector<std::string> Describe(Variant const& items) {
  std::vector<std::string> out;
  for (auto const& item : items.AsArray()) {
    switch (item.GetInt32("item_type", -1)) {
      case 0:
        out.push_back("t:" + item.GetString("item_content"));
        break;
      case 1:
        out.push_back("e:" + item.GetString("item_emoji_text"));
        break;
      case 2:
        out.push_back("l:" + item.GetString("item_content"));
        break;
      default:
        out.push_back("?");
    }
  }
  return out;
}

using Items = std::vector<std::string>;

TEST(LinkSplittingTest, FindsLinksAndLeavesSentencePunctuationOut) {
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("see https://example.com/a?b=1&c=2.")),
            (Items{"t:see ", "l:https://example.com/a?b=1&c=2", "t:."}));
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("HTTP://X.ORG, www.site.net; done")),
            (Items{"l:HTTP://X.ORG", "t:, ", "l:www.site.net", "t:; done"}));
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("(see http://a.io/x)")),
            (Items{"t:(see ", "l:http://a.io/x", "t:)"}));
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("wiki http://w.org/Foo_(bar) ok")),
            (Items{"t:wiki ", "l:http://w.org/Foo_(bar)", "t: ok"}));
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("http://[::1]:8080/x[Smile]")),
            (Items{"l:http://[::1]:8080/x", "t:[Smile]"}));
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("\"http://q.com/\"!")),
            (Items{"t:\"", "l:http://q.com/", "t:\"!"}));
}

TEST(LinkSplittingTest, WordsThatOnlyLookLikeLinksStayText) {
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("xhttp://a.com and awww.b.com")),
            (Items{"t:xhttp://a.com and awww.b.com"}));
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("https:// www. http")), (Items{"t:https:// www. http"}));
  EXPECT_TRUE(ChatUtils::URLParseMessageContext("").Empty());
}

TEST(LinkSplittingTest, KeepsEveryScriptAndEmojiSequenceWhole) {
  // Chinese and Japanese write links straight after their text.
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("看这个https://a.cn/x。谢谢")),
            (Items{"t:看这个", "l:https://a.cn/x", "t:。谢谢"}));
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("مرحبا www.example.com שלום")),
            (Items{"t:مرحبا ", "l:www.example.com", "t: שלום"}));
  // A family emoji (ZWJ sequence) and a flag next to a link stay in one piece.
  const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
  const std::string flag = "\U0001F1EF\U0001F1F5";
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext(family + "www.a.com" + flag)),
            (Items{"t:" + family, "l:www.a.com", "t:" + flag}));
  // A keycap or a combining accent after the link's last letter stays with it, as text.
  const std::string keycap = "www.a.com/1\uFE0F\u20E3";
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext(keycap)), (Items{"l:www.a.com/", "t:1\uFE0F\u20E3"}));
  EXPECT_EQ(Describe(ChatUtils::URLParseMessageContext("http://a.com/cafe\u0301 x")),
            (Items{"l:http://a.com/caf", "t:e\u0301 x"}));
}

TEST(LinkSplittingTest, AHundredThousandCharacterTextSplits) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "word https://s.io/" + std::to_string(i) + " ";
  Variant items = ChatUtils::URLParseMessageContext(text);
  EXPECT_EQ(items.Size(), 10001u);
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
  Variant const& smile = items[1];
  EXPECT_EQ(smile.GetInt32("item_emoji_index"), 0);
  EXPECT_TRUE(util::file::IsFileValid(smile.GetString("item_emoji_path"))) << "a real image on disk";
  EXPECT_TRUE(ChatUtils::ParseMessageContext("").Empty());

  meeting_.faces().Unload();
  EXPECT_EQ(Describe(ChatUtils::ParseMessageContext("a [Smile]")), (Items{"t:a [Smile]"}));
  meeting_.RemoveModel(570);
  EXPECT_EQ(Describe(ChatUtils::ParseMessageContext("[Smile] www.b.com")), (Items{"t:[Smile] ", "l:www.b.com"}));
}

TEST_F(FaceSplittingTest, SingleEmojiBecomesAFaceMessage) {
  Variant record(base::variant::kVariantTypeMap);
  record.Set("chat_type", 0);
  Variant one = ChatUtils::ParseMessageContext("[Heart]");
  Variant face = ChatUtils::UpdateToFaceMesssageIfSingleEmojiItem(record, one, true);
  EXPECT_TRUE(face.IsMap());
  EXPECT_EQ(face.GetString("item_emoji_text"), "[Heart]");
  EXPECT_EQ(record.GetInt32("chat_type"), 1);

  Variant other(base::variant::kVariantTypeMap);
  other.Set("chat_type", 0);
  Variant two = ChatUtils::ParseMessageContext("[Heart] ");
  EXPECT_TRUE(ChatUtils::UpdateToFaceMesssageIfSingleEmojiItem(other, two, true).IsArray());
  EXPECT_TRUE(ChatUtils::UpdateToFaceMesssageIfSingleEmojiItem(other, one, false).IsArray());
  EXPECT_EQ(other.GetInt32("chat_type"), 0);
}

TEST_F(FaceSplittingTest, MixedElementsAndTheCompatibleTip) {
  Variant elements(base::variant::kVariantTypeArray);
  Variant text(base::variant::kVariantTypeMap);
  text.Set("text_elem_content", "go to www.a.com ");
  elements.Add(text);
  Variant face(base::variant::kVariantTypeMap);
  face.Set("face_elem_index", 5);
  elements.Add(face);
  Variant unknown(base::variant::kVariantTypeMap);
  unknown.Set("face_elem_index", 999);
  unknown.Set("face_elem_buf", "[Old]");
  elements.Add(unknown);
  elements.Add(Variant("not a map"));
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
  EXPECT_EQ(ChatFileUtils::FileIconType("Report.PDF"), ChatFileUtils::kFileIconPdf);
  EXPECT_EQ(ChatFileUtils::FileIconType("/a.b/notes.docx"), ChatFileUtils::kFileIconDocument);
  EXPECT_EQ(ChatFileUtils::FileIconType("clip.MOV"), ChatFileUtils::kFileIconVideo);
  EXPECT_EQ(ChatFileUtils::FileIconType("setup.exe"), ChatFileUtils::kFileIconExecutable);
  EXPECT_EQ(ChatFileUtils::FileIconType("README"), ChatFileUtils::kFileIconUnknown);
  EXPECT_EQ(ChatFileUtils::FileIconType(".bashrc"), ChatFileUtils::kFileIconUnknown);
  EXPECT_EQ(ChatFileUtils::GetFileLowerExtName("dir.v2/archive.TAR.GZ"), "gz");
  EXPECT_EQ(ChatFileUtils::GetFileLowerExtName("dir.v2/name"), "");
  EXPECT_EQ(ChatFileUtils::GetFileLowerExtName("name."), "");

  EXPECT_EQ(ChatFileUtils::DisplayFileSize(-5), "0 B");
  EXPECT_EQ(ChatFileUtils::DisplayFileSize(0), "0 B");
  EXPECT_EQ(ChatFileUtils::DisplayFileSize(1023), "1023 B");
  EXPECT_EQ(ChatFileUtils::DisplayFileSize(1024), "1.0 KB");
  EXPECT_EQ(ChatFileUtils::DisplayFileSize(1536), "1.5 KB");
  EXPECT_EQ(ChatFileUtils::DisplayFileSize(1048575), "1.0 MB") << "never 1024.0 KB";
  EXPECT_EQ(ChatFileUtils::DisplayFileSize(524288000), "500.0 MB");
  EXPECT_EQ(ChatFileUtils::DisplayFileSize(int64_t(3) << 30), "3.0 GB");

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
    Variant m(base::variant::kVariantTypeMap);
    m.Set("user_id", id);
    list.Add(m);
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

}  // namespace
