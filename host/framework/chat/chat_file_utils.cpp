#include "framework/chat/chat_file_utils.h"

#include <QDate>
#include <QString>
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <map>
#include <set>

#include "base/util/file_util.h"

namespace talvex {

namespace {

std::map<std::string, int> const& IconTable() {
  static const std::map<std::string, int> table = [] {
    std::map<std::string, int> t;
    auto add = [&t](int kind, std::initializer_list<char const*> extensions) {
      for (char const* e : extensions) t[e] = kind;
    };
    add(ChatFileUtils::kFileIconDocument, {"doc", "docx", "odt", "rtf", "pages", "wps"});
    add(ChatFileUtils::kFileIconSpreadsheet, {"xls", "xlsx", "ods", "csv", "numbers", "et"});
    add(ChatFileUtils::kFileIconPresentation, {"ppt", "pptx", "odp", "key", "dps"});
    add(ChatFileUtils::kFileIconPdf, {"pdf"});
    add(ChatFileUtils::kFileIconText, {"txt", "md", "log", "json", "xml", "yaml", "yml", "ini"});
    add(ChatFileUtils::kFileIconImage, {"png", "jpg", "jpeg", "gif", "bmp", "webp", "svg", "heic", "tif", "tiff"});
    add(ChatFileUtils::kFileIconVideo, {"mp4", "mov", "avi", "mkv", "webm", "wmv", "flv", "m4v"});
    add(ChatFileUtils::kFileIconAudio, {"mp3", "wav", "aac", "flac", "ogg", "m4a", "wma", "opus"});
    add(ChatFileUtils::kFileIconArchive, {"zip", "rar", "7z", "tar", "gz", "bz2", "xz", "tgz"});
    add(ChatFileUtils::kFileIconCode, {"c", "cc", "cpp", "h", "hpp", "py", "js", "ts", "java", "go", "rs", "sh", "rb",
                                       "php", "cs", "swift", "kt"});
    add(ChatFileUtils::kFileIconExecutable,
        {"exe", "msi", "bat", "cmd", "com", "app", "dmg", "apk", "deb", "rpm", "bin", "run"});
    return t;
  }();
  return table;
}

}  // namespace

std::string ChatFileUtils::GetFileLowerExtName(std::string const& file_name) {
  const size_t slash = file_name.find_last_of("/\\");
  const std::string base = slash == std::string::npos ? file_name : file_name.substr(slash + 1);
  const size_t dot = base.rfind('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == base.size()) return {};
  std::string ext = base.substr(dot + 1);
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
  return ext;
}

int ChatFileUtils::FileIconType(std::string const& file_name) {
  auto const& table = IconTable();
  auto it = table.find(GetFileLowerExtName(file_name));
  return it == table.end() ? kFileIconUnknown : it->second;
}

bool ChatFileUtils::IsInhibitedExtension(std::string const& file_name) {
  static const std::set<std::string> inhibited = {"exe", "msi", "bat", "cmd", "com", "scr", "pif", "vbs", "js",
                                                  "jse", "wsf", "ps1", "sh", "run", "bin", "app", "apk", "jar"};
  return inhibited.count(GetFileLowerExtName(file_name)) > 0;
}

std::string ChatFileUtils::DisplayFileSize(int64_t bytes) {
  if (bytes < 0) bytes = 0;
  if (bytes < 1024) return std::to_string(bytes) + " B";
  static char const* const kUnits[] = {"KB", "MB", "GB", "TB"};
  double value = static_cast<double>(bytes) / 1024.0;
  int unit = 0;
  // Round first, so that 1023.96 KB reads "1.0 MB" rather than "1024.0 KB".
  while (unit < 3 && value >= 1023.95) {
    value /= 1024.0;
    ++unit;
  }
  char text[32];
  std::snprintf(text, sizeof(text), "%.1f %s", value, kUnits[unit]);
  return text;
}

std::string ChatFileUtils::GetChatFileDateDirPath() {
  const std::string root = util::file::MakeFilePath(util::file::UserDataDir(), "talvex/chat_files");
  const std::string dir = util::file::MakeFilePath(root, QDate::currentDate().toString("yyyy-MM-dd").toStdString());
  util::file::EnsureDirExist(dir);
  return dir;
}

}  // namespace talvex
