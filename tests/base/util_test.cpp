#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

#include "base/util/file_util.h"
#include "base/util/string_util.h"
#include "base/util/time_util.h"
#include "support/test_util.h"

namespace f = util::file;

namespace {

void WriteFile(std::string const& path, std::string const& data) { std::ofstream(path, std::ios::binary) << data; }

// Sets an environment variable for the life of the object.
class ScopedEnv {
 public:
  ScopedEnv(char const* name, char const* value) : name_(name) {
    if (char const* old = std::getenv(name)) old_ = old, had_ = true;
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  ~ScopedEnv() { had_ ? setenv(name_, old_.c_str(), 1) : unsetenv(name_); }

 private:
  char const* name_;
  std::string old_;
  bool had_ = false;
};

}  // namespace

TEST(FileUtil, InspectsRealFiles) {
  const std::string dir = f::MakeChildDirPath(talvex_test::TempRoot(), "file-util/inner");
  ASSERT_TRUE(f::IsDirectory(dir));
  const std::string text = f::MakeFilePath(dir, "notes.png");  // named like an image, holds text
  const std::string png = f::MakeFilePath(dir, "picture.dat");
  const std::string jpeg = f::MakeFilePath(dir, "photo");
  WriteFile(text, "just text");
  WriteFile(png, std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
  WriteFile(jpeg, "\xFF\xD8\xFF\xE0 rest");

  EXPECT_TRUE(f::IsFileExist(text));
  EXPECT_FALSE(f::IsFileExist(dir));
  EXPECT_FALSE(f::IsFileExist(dir + "/missing"));
  EXPECT_TRUE(f::IsFileValid(text));
  EXPECT_FALSE(f::IsFileValid(dir));
  EXPECT_FALSE(f::IsDirectory(text));
  // Images are told by their first bytes, not by their names.
  EXPECT_FALSE(f::IsImageFile(text));
  EXPECT_TRUE(f::IsImageFile(png));
  EXPECT_TRUE(f::IsImageFile(jpeg));
  EXPECT_FALSE(f::IsImageFile(dir + "/missing.png"));

  int64_t length = -1;
  EXPECT_TRUE(f::GetFileLength(text, length));
  EXPECT_EQ(length, 9);
  EXPECT_FALSE(f::GetFileLength(dir + "/missing", length));
  EXPECT_EQ(length, 9);

  EXPECT_TRUE(f::RemoveFile(text));
  EXPECT_FALSE(f::IsFileExist(text));
  EXPECT_FALSE(f::RemoveFile(text));
  EXPECT_FALSE(f::RemoveFile(dir));
  EXPECT_TRUE(f::IsDirectory(dir));

  const std::string deep = dir + "/a/b/c";
  EXPECT_TRUE(f::EnsureDirExist(deep));
  EXPECT_TRUE(f::EnsureDirExist(deep));
  EXPECT_TRUE(f::IsDirectory(deep));
  EXPECT_FALSE(f::EnsureDirExist(png + "/sub"));  // under a file
}

TEST(FileUtil, TakesPathsApart) {
  const std::pair<std::string, std::string> cases[] = {
      {f::GetFileExtName("/tmp/report.PDF"), "PDF"}, {f::GetFileExtName("archive.tar.gz"), "gz"},
      {f::GetFileExtName("/home/u/.profile"), ""},   {f::GetFileExtName("/dir.d/README"), ""},
      {f::GetFileExtName("name."), ""},              {f::GetParentDir("/a/b/c.txt"), "/a/b"},
      {f::GetParentDir("/a//c.txt"), "/a"},          {f::GetParentDir("/c.txt"), "/"},
      {f::GetParentDir("c.txt"), ""},                {f::MakeFilePath("/a/", "b.txt"), "/a/b.txt"},
      {f::MakeFilePath("/a/", "/b.txt"), "/a/b.txt"}, {f::MakeFilePath("", "b.txt"), "b.txt"},
  };
  for (auto const& [got, want] : cases) EXPECT_EQ(got, want);

  std::string name;
  EXPECT_TRUE(f::GetFileFullName("/a/b/c d.txt", name));
  EXPECT_EQ(name, "c d.txt");
  EXPECT_TRUE(f::GetFileFullName("/a/b/", name));
  EXPECT_EQ(name, "b");
  EXPECT_FALSE(f::GetFileFullName("", name));

  std::string dir, base, ext;
  EXPECT_TRUE(f::ParseFullPath("/data/files/Q3 report.final.xlsx", dir, base, ext));
  EXPECT_EQ(dir + "|" + base + "|" + ext, "/data/files|Q3 report.final|xlsx");
  EXPECT_TRUE(f::ParseFullPath("Makefile", dir, base, ext));
  EXPECT_EQ(dir + "|" + base + "|" + ext, "|Makefile|");
  EXPECT_FALSE(f::ParseFullPath("", dir, base, ext));
}

TEST(FileUtil, UserDirectoriesFollowTheXdgRules) {
  ScopedEnv home("HOME", "/home/ann");
  {
    ScopedEnv state("XDG_STATE_HOME", "/custom/state");
    ScopedEnv cache("XDG_CACHE_HOME", "relative/ignored");
    ScopedEnv config("XDG_CONFIG_HOME", nullptr);
    EXPECT_EQ(f::UserStateDir(), "/custom/state");
    EXPECT_EQ(f::UserCacheDir(), "/home/ann/.cache");
    EXPECT_EQ(f::UserConfigDir(), "/home/ann/.config");
  }
  ScopedEnv state("XDG_STATE_HOME", nullptr);
  EXPECT_EQ(f::UserStateDir(), "/home/ann/.local/state");
}

TEST(TimeUtil, ServerClockCarriesTheOffset) {
  util::time::SetServerClockOffsetMsec(-90 * 1000);
  const int64_t local = util::time::GetTimestampMsec();
  const int64_t server = util::time::GetServerTimestampMsec();
  const int64_t local_again = util::time::GetServerTimestampMsec(util::time::kClockTypeLocal);
  EXPECT_GE(local_again, local);
  // Between the readings only a moment passes; the offset dominates.
  EXPECT_LE(server, local_again - 89000);
  EXPECT_GE(server, local - 90000);
  EXPECT_LE(std::llabs(util::time::GetServerTimestamp() - server / 1000), 1);
  util::time::SetServerClockOffsetMsec(0);
  EXPECT_LE(std::llabs(util::time::GetServerTimestamp() - util::time::GetTimestampMsec() / 1000), 1);
}

TEST(TimeUtil, MakeTimeFormatsLocalTime) {
  ScopedEnv tz("TZ", "UTC");
  tzset();
  EXPECT_EQ(util::time::MakeTime(0), "1970-01-01 00:00:00");
  EXPECT_EQ(util::time::MakeTime(1700000000), "2023-11-14 22:13:20");
  {
    ScopedEnv shanghai("TZ", "CST-8");  // POSIX form: eight hours east, no zone database needed
    tzset();
    EXPECT_EQ(util::time::MakeTime(1700000000), "2023-11-15 06:13:20");
  }
  tzset();
}

TEST(StringUtil, CountsCodePointsCjkAndGraphemes) {
  const std::string emoji = "\xF0\x9F\x98\x80";                                                // 😀
  const std::string family = "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";  // ZWJ
  const std::string flag = "\xF0\x9F\x87\xA8\xF0\x9F\x87\xB3";
  const std::string thumbs = "\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD";  // with a skin tone
  const std::string accent = "e\xCC\x81";                        // e + combining acute

  EXPECT_EQ(GetUtf8Length(""), 0u);
  EXPECT_EQ(GetUtf8Length("中文ok"), 4u);
  EXPECT_EQ(GetUtf8Length(emoji), 1u);
  EXPECT_EQ(GetUtf8Length(family), 5u);
  EXPECT_EQ(GetUtf8Length(accent), 2u);
  EXPECT_EQ(GetUtf8Length("a\xFF\xFE" "b"), 4u);     // stray bytes count one each
  EXPECT_EQ(GetUtf8Length("\xE4\xB8"), 2u);           // a truncated sequence
  EXPECT_EQ(GetUtf8Length("\xED\xA0\x80"), 3u);       // an encoded surrogate is not a character
  EXPECT_EQ(GetUtf8Length("\xC0\xAF"), 2u);           // overlong

  EXPECT_EQ(GetChineseStringCount("abc中文def日本"), 4u);
  EXPECT_EQ(GetChineseStringCount("\xF0\xA0\x80\x80"), 1u);  // U+20000, extension B
  EXPECT_EQ(GetChineseStringCount("ひらがな、カタカナ，한국어"), 0u);
  EXPECT_EQ(GetChineseStringCount(emoji + "\xE4\xB8"), 0u);

  EXPECT_EQ(GetStringCharCount(""), 0u);
  EXPECT_EQ(GetStringCharCount("abc"), 3u);
  EXPECT_EQ(GetStringCharCount("中文" + emoji), 3u);
  EXPECT_EQ(GetStringCharCount(family), 1u);
  EXPECT_EQ(GetStringCharCount(flag), 1u);
  EXPECT_EQ(GetStringCharCount(flag + flag), 2u);
  EXPECT_EQ(GetStringCharCount("a" + thumbs + "b"), 3u);
  EXPECT_EQ(GetStringCharCount(accent + "x"), 2u);
  EXPECT_EQ(GetStringCharCount("\r\n"), 1u);
}

TEST(StringUtil, ComparesAndConverts) {
  using namespace util::stringhelp;
  EXPECT_TRUE(Equals("Chat", "Chat"));
  EXPECT_FALSE(Equals("Chat", "chat"));
  EXPECT_TRUE(Equals("Chat", "cHAT", true));
  EXPECT_TRUE(Equals("ÄRGER", "ärger", true));
  EXPECT_FALSE(Equals("Chat", "Chats", true));
  EXPECT_TRUE(StartsWith("talvex://page/chat", "talvex://"));
  EXPECT_FALSE(StartsWith("talvex://page/chat", "TALVEX://"));
  EXPECT_TRUE(StartsWith("talvex://page/chat", "TALVEX://", true));
  EXPECT_FALSE(StartsWith("ab", "abc"));
  EXPECT_TRUE(StartsWith("ab", ""));

  EXPECT_LT(CompareLocalizedString("apple", "banana"), 0);
  EXPECT_GT(CompareLocalizedString("banana", "apple"), 0);
  EXPECT_EQ(CompareLocalizedString("same", "same"), 0);
  // Keys made once order as the comparison does, equal texts equal.
  const std::vector<std::string> names = {"Zoë Park", "Ada Lund", "Blake Ito", "Blake Ito", "Émile Roy", "bo"};
  for (auto const& a : names) {
    for (auto const& b : names) {
      const int by_keys = LocalizedSortKey(a).Compare(LocalizedSortKey(b));
      const int by_text = CompareLocalizedString(a, b);
      EXPECT_EQ(by_keys < 0, by_text < 0) << a << " / " << b;
      EXPECT_EQ(by_keys == 0, by_text == 0) << a << " / " << b;
    }
  }

  const std::string mixed = "李雷 says hi 😀";
  const std::wstring wide = StringToWString(mixed);
  EXPECT_EQ(wide.size(), 12u);  // one wchar_t per code point
  EXPECT_EQ(wide[0], L'\u674E');
  EXPECT_EQ(static_cast<uint32_t>(wide.back()), 0x1F600u);
  EXPECT_EQ(UnicodeToUtf8(wide), mixed);
}
