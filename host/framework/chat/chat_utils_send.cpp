// The chat helpers a client offers for sending: who the user writes to, what
// the meeting allows, and where pictures are staged.
#include <QFile>
#include <cctype>

#include "base/util/file_util.h"
#include "base/util/time_util.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/private_chat_record.h"
#include "framework/module/app_module.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"

namespace talvex {

namespace {
constexpr int kAuthorityModel = 526;


std::string Text(char const* name) {
  return framework::Resource::GetInstance()->GetString(framework::NameId(name));
}
}  // namespace

Variant ChatUtils::GetIMAuthorityInfo() {
  Variant info(base::variant::kVariantTypeMap);
  info.Set("disable_chat", false);
  info.Set("need_show_icon", false);
  info.Set("disable_chat_desc", "");
  info.Set("allow_chat_wording_show", false);
  info.Set("allow_chat_wording_desc", "");
  auto model = framework::module::GetAppModuleModel(kAuthorityModel);
  if (!model) return info;
  Variant result;
  if (!model->Invoke(9, nullptr, &result) || !result.IsMap()) return info;
  for (auto const& [key, value] : result.AsMap()) info.Set(key, value);
  return info;
}

Variant ChatUtils::GetReceiverNameAndHint() {
  using namespace talvex_common::utils::privatechatrecord;
  const Variant receiver = GetPrivateChatUserInfo();
  const int type = GetChatReceiverType(receiver);
  Variant out(base::variant::kVariantTypeMap);
  out.Set("receiver_type", type);
  std::string name;
  std::string hint;
  switch (type) {
    case 1:
    case 6:
    case 7:
      name = receiver.GetString("nickname");
      hint = Text("host.chat.receiver.private_hint");
      break;
    case 3:
      name = Text("host.chat.receiver.waiting_room");
      break;
    case 4:
      name = Text("host.chat.receiver.panelists");
      break;
    case 5:
      name = Text("host.chat.receiver.panelists_attendees");
      break;
    case 2:
      name = Text("host.chat.receiver.everyone");
      break;
    default:
      name = Text("host.chat.receiver.none");
      break;
  }
  out.Set("receiver_name", name);
  out.Set("receiver_hint", hint);
  out.Set("is_private", type == 1 || type == 6 || type == 7);
  return out;
}

bool ChatUtils::IsMeetingSupportIMFileAndPicture() {
  return talvex_common::utils::meetingsettings::GetMeetingSwitch("im_file_and_picture", true);
}

bool ChatUtils::GetMeetingNoticeIsRead() {
  return talvex_common::utils::meetingsettings::GetMeetingSwitch("notice_read", true);
}

bool ChatUtils::IsWebp(std::string const& path) {
  std::string ext = util::file::GetFileExtName(path);
  for (auto& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (!ext.empty() && ext[0] == '.') ext.erase(0, 1);
  return ext == "webp";
}

int ChatUtils::GetImageFormat(std::string const& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) return 0;
  const QByteArray head = file.read(8);
  if (head.startsWith("\xFF\xD8\xFF")) return 1;
  if (head.startsWith("GIF87a") || head.startsWith("GIF89a")) return 2;
  if (head.startsWith("\x89PNG\r\n\x1a\n")) return 3;
  if (head.startsWith("BM")) return 4;
  return 0;
}

std::string ChatUtils::MakeUniqueChatImageDirPath(std::string const& meeting_id) {
  std::string dir = util::file::MakeFilePath(GetChatImageCacheDir(meeting_id), "send");
  dir = util::file::MakeFilePath(dir, std::to_string(util::time::GetTimestampMsec()));
  util::file::EnsureDirExist(dir);
  return dir;
}

std::string ChatUtils::GetMsgCacheSendImageDirPath() {
  const std::string dir = util::file::MakeFilePath(util::file::UserCacheDir(), "talvex/chat_images/send_cache");
  util::file::EnsureDirExist(dir);
  return dir;
}

bool ChatUtils::IsSelfHost() { return MeetingContext::Current().self_role == MeetingContext::kRoleHost; }
bool ChatUtils::IsSelfCoHost() { return MeetingContext::Current().self_role == MeetingContext::kRoleCoHost; }
bool ChatUtils::IsWaitingRoom() { return MeetingContext::Current().in_waiting_room; }

namespace {
std::string RoleCondition(std::string const& role) {
  if (role == "host") return "1";
  if (role == "cohost") return "2";
  if (role == "panelist") return "3";
  if (role == "attendee") return "4";
  return "0";
}
}  // namespace

void ChatUtils::GetChatCondition(Variant const& receiver, std::string& sender_condition,
                                 std::string& receive_condition) {
  auto const& self = MeetingContext::Current();
  static const char* const kSelfRoles[] = {"0", "1", "2", "3", "4"};
  const int role = static_cast<int>(self.self_role);
  sender_condition = self.in_waiting_room ? "5" : (role >= 0 && role <= 4 ? kSelfRoles[role] : "0");
  switch (talvex_common::utils::privatechatrecord::GetChatReceiverType(receiver)) {
    case 2:
      receive_condition = "6";
      break;
    case 3:
      receive_condition = "7";
      break;
    case 4:
      receive_condition = "8";
      break;
    case 5:
      receive_condition = "9";
      break;
    case 6:
    case 7:
      receive_condition = "5";
      break;
    default:
      receive_condition = RoleCondition(receiver.GetString("role"));
      break;
  }
}

}  // namespace talvex
