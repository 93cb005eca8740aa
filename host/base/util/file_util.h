#pragma once

#include <cstdint>
#include <string>

namespace util {
namespace file {

bool IsFileExist(std::string const& path);
// An existing regular file that can be opened for reading.
bool IsFileValid(std::string const& path);
bool IsDirectory(std::string const& path);
// Judged by content (the image header), not by extension.
bool IsImageFile(std::string const& path);
bool GetFileLength(std::string const& path, int64_t& length);
// Extension without the dot, as written ("report.PDF" -> "PDF"); "" when none.
std::string GetFileExtName(std::string const& path);
// Last path component.
bool GetFileFullName(std::string const& path, std::string& name);
// Directory part without a trailing separator; "" for a bare name.
std::string GetParentDir(std::string const& path);
std::string MakeFilePath(std::string const& dir, std::string const& name);
// `name` made safe as one component of a path: separators, ':' and NULs
// become '_', and "." or ".." (which would climb out of the folder) become
// "_" and "__". Never empty.
std::string SafePathComponent(std::string const& name);
// Joins and creates the child directory.
std::string MakeChildDirPath(std::string const& dir, std::string const& name);
// "dir/name.ext" -> dir, name (without extension), ext (without dot).
bool ParseFullPath(std::string const& path, std::string& dir, std::string& name, std::string& ext);
bool EnsureDirExist(std::string const& dir);
bool RemoveFile(std::string const& path);

// The user's directories (XDG rules, with the usual fallbacks under $HOME).
std::string UserCacheDir();
std::string UserConfigDir();
std::string UserStateDir();
std::string UserDataDir();

}  // namespace file
}  // namespace util
