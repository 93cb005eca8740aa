#include "fuzz_support.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <cstdio>
#include <memory>

#include "base/log/log.h"
#include "devkit/scratch_home.h"
#include "finding.h"

namespace fuzz {

namespace {

// Keys of the host's message records and of what they nest.
constexpr char const* kKeys[] = {
    "chat_type", "msg_content", "ext_content", "msg_sender", "ui_msg_content", "message_status",
    "compatible_tip", "meeting_id", "local_msg_id", "message_unique_id", "message_conv_id",
    "message_conv_type", "message_sender", "message_is_from_self", "message_seq", "message_server_time",
    "message_rand", "message_time", "msg_receiver", "private_chat_user_info", "nickname", "app_id", "app_uid",
    "unique_id", "room_type", "receiver_type", "chat_tips", "text_elem_content", "face_elem_index",
    "face_elem_buf", "elem_type", "image_elem_thumb_url", "image_elem_thumb_id", "image_elem_thumb_pic_width",
    "image_elem_thumb_pic_height", "image_elem_large_url", "image_elem_large_id", "image_elem_large_pic_width",
    "image_elem_large_pic_height", "image_elem_orig_url", "image_elem_orig_id", "image_elem_orig_path",
    "image_elem_orig_pic_width", "image_elem_orig_pic_height", "file_info", "name", "size", "status", "progress",
    "path", "download_result", "err_code", "err_msg", "notice_content", "notice_type", "notice_version",
    "open_app_id", "app_info", "title", "description", "icon", "card_layout_type", "item_type", "item_content",
    "item_emoji_index", "item_emoji_text", "item_emoji_path", "index", "face_type", "content", "type",
    "security", "in_meeting_info", "is_custom_title", "notify_desc", "role", "user_id", "avatar",
    "message_elem_array", "report_conv_type", "report_file_type", "path_prefix_length", "is_read", "send_time"};

constexpr int kChatTypes[] = {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 11, 12};

std::unique_ptr<QTemporaryDir> g_root;
// Never destroyed: at exit the host's registries may go first.
QApplication* g_app = nullptr;

std::string RandomText(FuzzedDataProvider& in) {
  // Now and then a text the code looks for: a link or a face shortcut.
  switch (in.ConsumeIntegralInRange<int>(0, 7)) {
    case 0:
      return "https://" + in.ConsumeRandomLengthString(24);
    case 1:
      return "[Smile]" + in.ConsumeRandomLengthString(16);
    default:
      return in.ConsumeRandomLengthString(48);
  }
}

}  // namespace

void InitProcess() {
  if (g_app) return;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  g_root = std::make_unique<QTemporaryDir>(QDir::tempPath() + "/talvex-fuzz-XXXXXX");
  devkit::UseScratchHome(g_root->path());
  base::log::LogOptions options;
  options.write_file = false;
  options.stderr_level = 0;
  base::log::InitLogging(options);
  // Error lines are still formatted (that code sees the bad input too).
  base::log::SetLogLevel(base::log::kLogError);
  static int argc = 1;
  static char name[] = "fuzz";
  static char* argv[] = {name, nullptr};
  g_app = new QApplication(argc, argv);
}

Variant RandomValue(FuzzedDataProvider& in, int depth) {
  const int kind = in.ConsumeIntegralInRange<int>(0, depth < 4 ? 9 : 6);
  switch (kind) {
    case 0:
      return Variant();
    case 1:
      return Variant(in.ConsumeBool());
    case 2:
      return Variant(in.ConsumeIntegralInRange<int>(-2, 20));
    case 3:
      return Variant(in.ConsumeIntegral<int64_t>());
    case 4:
      return Variant(in.ConsumeFloatingPoint<double>());
    case 5:
      return Variant(in.ConsumeIntegral<uint64_t>());
    case 6:
      return Variant(RandomText(in));
    case 7: {
      Variant array(base::variant::kVariantTypeArray);
      const int n = in.ConsumeIntegralInRange<int>(0, 4);
      for (int i = 0; i < n && in.remaining_bytes() > 0; ++i) array.Add(RandomValue(in, depth + 1));
      return array;
    }
    default: {
      Variant map(base::variant::kVariantTypeMap);
      const int n = in.ConsumeIntegralInRange<int>(0, 8);
      for (int i = 0; i < n && in.remaining_bytes() > 0; ++i) {
        map.Set(in.PickValueInArray(kKeys), RandomValue(in, depth + 1));
      }
      return map;
    }
  }
}

Variant RecordFromBytes(uint8_t const* data, size_t size) {
  if (size > 0 && data[0] == '{') {
    Variant parsed;
    if (parsed.FromJsonStr(reinterpret_cast<char const*>(data), static_cast<std::ptrdiff_t>(size)) &&
        parsed.IsMap()) {
      return parsed;
    }
  }
  FuzzedDataProvider in(data, size);
  Variant record(base::variant::kVariantTypeMap);
  // Mostly a kind the host sends, as an integer; sometimes anything.
  if (in.ConsumeIntegralInRange<int>(0, 7) != 0) {
    record.Set("chat_type", in.PickValueInArray(kChatTypes));
  } else {
    record.Set("chat_type", RandomValue(in, 3));
  }
  while (in.remaining_bytes() > 0 && record.Size() < 16) {
    record.Set(in.PickValueInArray(kKeys), RandomValue(in, 1));
  }
  return record;
}

std::string JoinItems(Variant const& items) {
  std::string text;
  for (auto const& item : items.AsArray()) {
    text += item.GetInt32("item_type") == 1 ? item.GetString("item_emoji_text") : item.GetString("item_content");
  }
  return text;
}

namespace {
// Printable ASCII as it is, every other byte as \xNN.
std::string Escaped(std::string const& bytes) {
  std::string out;
  char hex[8];
  for (unsigned char c : bytes) {
    if (c >= 0x20 && c < 0x7f && c != '\\') {
      out += static_cast<char>(c);
    } else {
      std::snprintf(hex, sizeof hex, "\\x%02x", c);
      out += hex;
    }
  }
  return out;
}
}  // namespace

void CheckEqual(std::string const& what, std::string const& expected, std::string const& actual) {
  if (expected == actual) return;
  fuzz::Finding("%s\n  expected (%zu bytes): %s\n  actual   (%zu bytes): %s", what.c_str(), expected.size(),
               Escaped(expected).c_str(), actual.size(), Escaped(actual).c_str());
}

}  // namespace fuzz
