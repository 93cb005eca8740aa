#pragma once

#include <cstdint>
#include <string>

namespace talvex {

// The client's helpers for chat files.
class ChatFileUtils {
 public:
  // File kinds by extension, for the icon of a file message:
  enum FileIconKind : int {
    kFileIconUnknown = 0,
    kFileIconDocument = 1,      // doc docx odt rtf pages wps
    kFileIconSpreadsheet = 2,   // xls xlsx ods csv numbers et
    kFileIconPresentation = 3,  // ppt pptx odp key dps
    kFileIconPdf = 4,           // pdf
    kFileIconText = 5,          // txt md log json xml yaml yml ini
    kFileIconImage = 6,         // png jpg jpeg gif bmp webp svg heic tif tiff
    kFileIconVideo = 7,         // mp4 mov avi mkv webm wmv flv m4v
    kFileIconAudio = 8,         // mp3 wav aac flac ogg m4a wma opus
    kFileIconArchive = 9,       // zip rar 7z tar gz bz2 xz tgz
    kFileIconCode = 10,         // c cc cpp h hpp py js ts java go rs sh rb php cs swift kt
    kFileIconExecutable = 11,   // exe msi bat cmd com app dmg apk deb rpm bin run
  };
  // Judged by the extension, case-insensitively.
  static int FileIconType(std::string const& file_name);
  // "0 B", "999 B", "1.0 KB", "12.3 MB", "2.0 GB": binary units, one decimal
  // from KB on; negative sizes read as 0.
  static std::string DisplayFileSize(int64_t bytes);
  // Today's folder for chat files: "<data>/talvex/chat_files/yyyy-MM-dd",
  // created when missing.
  static std::string GetChatFileDateDirPath();
  // The extension in lower case without the dot; "" when none.
  static std::string GetFileLowerExtName(std::string const& file_name);
  // Kinds a client refuses to send or open: executables and scripts.
  static bool IsInhibitedExtension(std::string const& file_name);
};

}  // namespace talvex
