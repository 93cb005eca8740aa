#include "base/util/file_util.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

#include <unistd.h>

namespace util {
namespace file {

namespace {

namespace fs = std::filesystem;

// The last component of `path`, ignoring trailing separators.
std::string LastComponent(std::string const& path) {
  size_t end = path.find_last_not_of('/');
  if (end == std::string::npos) return std::string();
  size_t start = path.find_last_of('/', end);
  start = start == std::string::npos ? 0 : start + 1;
  return path.substr(start, end - start + 1);
}

// Position of the extension's dot in a file name; npos for none. A leading dot
// (".profile") starts a hidden name, not an extension.
size_t ExtensionDot(std::string const& name) {
  const size_t dot = name.find_last_of('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == name.size()) return std::string::npos;
  return dot;
}

std::string XdgDir(char const* variable, char const* fallback_under_home) {
  char const* value = std::getenv(variable);
  // The XDG rules ignore relative paths.
  if (value && value[0] == '/') return value;
  char const* home = std::getenv("HOME");
  std::string base = (home && home[0]) ? home : "/tmp";
  return MakeFilePath(base, fallback_under_home);
}

}  // namespace

bool IsFileExist(std::string const& path) {
  std::error_code ec;
  return !path.empty() && fs::exists(path, ec) && !fs::is_directory(path, ec);
}

bool IsFileValid(std::string const& path) {
  std::error_code ec;
  if (path.empty() || !fs::is_regular_file(path, ec)) return false;
  return ::access(path.c_str(), R_OK) == 0;
}

bool IsDirectory(std::string const& path) {
  std::error_code ec;
  return !path.empty() && fs::is_directory(path, ec);
}

bool IsImageFile(std::string const& path) {
  if (!IsFileValid(path)) return false;
  std::ifstream in(path, std::ios::binary);
  unsigned char h[12] = {};
  in.read(reinterpret_cast<char*>(h), sizeof(h));
  const std::streamsize n = in.gcount();
  auto starts = [&](char const* magic, size_t len, size_t at = 0) {
    return static_cast<size_t>(n) >= at + len && std::memcmp(h + at, magic, len) == 0;
  };
  return starts("\x89PNG\r\n\x1a\n", 8) ||                       // PNG
         starts("\xFF\xD8\xFF", 3) ||                              // JPEG
         starts("GIF87a", 6) || starts("GIF89a", 6) ||             // GIF
         starts("BM", 2) ||                                        // BMP
         (starts("RIFF", 4) && starts("WEBP", 4, 8)) ||            // WebP
         starts("II*\0", 4) || starts("MM\0*", 4) ||               // TIFF
         starts("\0\0\1\0", 4);                                    // ICO
}

bool GetFileLength(std::string const& path, int64_t& length) {
  std::error_code ec;
  if (path.empty() || !fs::is_regular_file(path, ec)) return false;
  const auto size = fs::file_size(path, ec);
  if (ec) return false;
  length = static_cast<int64_t>(size);
  return true;
}

std::string GetFileExtName(std::string const& path) {
  const std::string name = LastComponent(path);
  const size_t dot = ExtensionDot(name);
  return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

bool GetFileFullName(std::string const& path, std::string& name) {
  std::string last = LastComponent(path);
  if (last.empty()) return false;
  name = std::move(last);
  return true;
}

std::string GetParentDir(std::string const& path) {
  size_t end = path.find_last_not_of('/');
  if (end == std::string::npos) return path.empty() ? std::string() : "/";
  const size_t slash = path.find_last_of('/', end);
  if (slash == std::string::npos) return std::string();
  const size_t dir_end = path.find_last_not_of('/', slash);
  if (dir_end == std::string::npos) return "/";
  return path.substr(0, dir_end + 1);
}

std::string SafePathComponent(std::string const& name) {
  std::string safe = name;
  for (char& c : safe) {
    if (c == '/' || c == '\\' || c == ':' || c == '\0') c = '_';
  }
  if (safe.empty() || safe == "." || safe == "..") safe.assign(std::max<size_t>(1, safe.size()), '_');
  return safe;
}

std::string MakeFilePath(std::string const& dir, std::string const& name) {
  if (dir.empty()) return name;
  if (name.empty()) return dir;
  const bool dir_slash = dir.back() == '/';
  const bool name_slash = name.front() == '/';
  if (dir_slash && name_slash) return dir + name.substr(1);
  if (dir_slash || name_slash) return dir + name;
  return dir + "/" + name;
}

std::string MakeChildDirPath(std::string const& dir, std::string const& name) {
  const std::string path = MakeFilePath(dir, name);
  EnsureDirExist(path);
  return path;
}

bool ParseFullPath(std::string const& path, std::string& dir, std::string& name, std::string& ext) {
  std::string full;
  if (!GetFileFullName(path, full)) return false;
  dir = GetParentDir(path);
  const size_t dot = ExtensionDot(full);
  if (dot == std::string::npos) {
    name = full;
    ext.clear();
  } else {
    name = full.substr(0, dot);
    ext = full.substr(dot + 1);
  }
  return true;
}

bool EnsureDirExist(std::string const& dir) {
  if (dir.empty()) return false;
  std::error_code ec;
  fs::create_directories(dir, ec);
  return fs::is_directory(dir, ec);
}

bool RemoveFile(std::string const& path) {
  std::error_code ec;
  if (path.empty() || fs::is_directory(path, ec)) return false;
  return fs::remove(path, ec) && !ec;
}

std::string UserCacheDir() { return XdgDir("XDG_CACHE_HOME", ".cache"); }
std::string UserConfigDir() { return XdgDir("XDG_CONFIG_HOME", ".config"); }
std::string UserStateDir() { return XdgDir("XDG_STATE_HOME", ".local/state"); }
std::string UserDataDir() { return XdgDir("XDG_DATA_HOME", ".local/share"); }

}  // namespace file
}  // namespace util
