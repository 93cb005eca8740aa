#include "chat/viewmodel/chat_menu_manager/chatting_menu_manager_for_avatar.h"

#include "base/log/log.h"
#include "chat/model/chat_message.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/utils.h"
#include "chat/util/chat_strings.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/meeting/member_utils.h"
#include "framework/meeting/private_chat_record.h"
#include "framework/module/app_module.h"
#include "framework/viewmodel/ui_view_model.h"

namespace chat {

namespace {
namespace webinar = talvex_common::utils::webinar;
namespace settings = talvex_common::utils::meetingsettings;
using talvex_common::utils::member::IsSelfHostOrCoHost;

constexpr uint32_t kMemberMethodSelf = 1;
constexpr int kStatusInWaitingRoom = 6;
constexpr uint32_t kTextPrivateNotAllowed = framework::NameId("chat.menu.private_not_allowed");
constexpr uint32_t kTextPrivateNotAllowedWaitingRoom = framework::NameId("chat.menu.private_not_allowed_waiting_room");


bool SameIds(Variant const& a, Variant const& b) {
  return a.GetString("app_uid") == b.GetString("app_uid") && a.GetString("app_id") == b.GetString("app_id");
}

// Hosts, co-hosts and panelists speak on a webinar's panel.
bool IsWebinarPanelist(int64_t role_type) { return role_type >= 1 && role_type <= 3; }
bool IsHostRole(int64_t role_type) { return role_type == 1 || role_type == 2; }
}  // namespace

void ChattingMenuManagerForAvatar::AppendSubMenus(Variant const&, Variant& list) {
  const int exist = GetUserInMeetingExistType();
  if (!IsMsgFromSelf()) {
    AddSubMenuItem(list, ToInt(MenuItemType::kPrivateChat), exist == kInMeeting && IsUserAllowPrivateChat());
  }
  if (IsKickOutEnable()) AddSubMenuItem(list, ToInt(MenuItemType::kKickOut), exist == kInMeeting);
}

Variant ChattingMenuManagerForAvatar::FindInWaitingRoomList() const {
  Variant const& sender = current_message_.Get("msg_sender");
  const Variant list = AskHostModel(kHostMemberModel, kMemberMethodWaitingRoomMembers);
  if (!list.IsArray()) return Variant();
  for (auto const& entry : list.AsArray()) {
    if (SameIds(entry, sender)) return entry;
  }
  return Variant();
}

int ChattingMenuManagerForAvatar::GetUserInMeetingExistType() const {
  if (GetUserInfo(current_message_.Get("msg_sender")).IsMap()) return kInMeeting;
  const bool waiting_room = talvex::ChatUtils::IsWaitingRoom();
  if (!webinar::IsMeetingWebinar() && !waiting_room) return kNotInMeeting;
  TXLOG_INFO << "cant judge attendee in meeting";
  if (waiting_room && FindInWaitingRoomList().IsMap()) return kInMeeting;
  return IsSelfHostOrCoHost() ? kNotInMeeting : kUnjudged;
}

bool ChattingMenuManagerForAvatar::IsUserForbidChat() const {
  if (!talvex::ChatUtils::IsChatEnable()) {
    TXLOG_INFO << "chat unable, forbid chat";
    return true;
  }
  const bool forbid = AskHostModel(kHostMemberModel, kMemberMethodSelf).GetBoolean("is_forbid_chat");
  if (forbid) TXLOG_INFO << "user chat forbid";
  return forbid;
}

bool ChattingMenuManagerForAvatar::IsUserAllowPrivateChat() const {
  if (webinar::IsMeetingWebinar()) return IsUserAllowPrivateChatInWebinar();
  if (talvex::ChatUtils::IsWaitingRoom()) return IsUserAllowPrivateChatInWaitingRoom();
  return IsUserAllowPrivateChatInMeeting();
}

bool ChattingMenuManagerForAvatar::IsUserAllowPrivateChatInMeeting() const {
  if (IsSelfHostOrCoHost()) {
    TXLOG_INFO << "enable private chat because self is host or co_host";
    return true;
  }
  if (IsUserForbidChat()) return false;
  const int policy = settings::GetAllowChatPolicy();
  if (policy == talvex::PrivateChatAuthority::kAllowChatNormal) {
    TXLOG_INFO << "enable private chat";
    return true;
  }
  if (policy == talvex::PrivateChatAuthority::kAllowChatOnlyPublic ||
      policy == talvex::PrivateChatAuthority::kAllowChatOnlyToHost) {
    const Variant member = GetUserInfo(current_message_.Get("msg_sender"));
    if (!member.IsMap() || !member.Has("role_type")) {
      TXLOG_INFO << "get_user_info_result = " << member.IsMap() << " , forbid chat";
      return false;
    }
    const bool host = IsHostRole(member.GetInteger("role_type"));
    TXLOG_INFO << "enable private chat by is_user_host = " << host;
    return host;
  }
  TXLOG_INFO << "unable private chat";
  return false;
}

bool ChattingMenuManagerForAvatar::IsUserAllowPrivateChatInWaitingRoom() const {
  if (IsUserForbidChat()) return false;
  if (settings::GetWaitingRoomChatPolicy() != talvex::PrivateChatAuthority::kWaitingRoomChatOn) {
    TXLOG_INFO << "waitingRoom unable private chat";
    return false;
  }
  const Variant entry = FindInWaitingRoomList();
  const int64_t host_type = entry.GetInteger("host_type");
  const bool host = host_type == 1 || host_type == 2;
  TXLOG_INFO << "enable private chat by is_user_host = " << host;
  return host;
}

bool ChattingMenuManagerForAvatar::IsUserAllowPrivateChatInWebinar() const {
  if (IsSelfHostOrCoHost()) return true;
  if (IsUserForbidChat()) return false;
  const Variant member = GetUserInfo(current_message_.Get("msg_sender"));
  if (!member.IsMap() || !member.Has("role_type")) {
    TXLOG_INFO << "get_user_info_result = " << member.IsMap() << " , forbid chat";
    return false;
  }
  const int64_t role_type = member.GetInteger("role_type");
  if (webinar::SelfIsPanelist()) {
    bool allow = false;
    switch (settings::GetPanelistChatPolicy()) {
      case talvex::PrivateChatAuthority::kPanelistScope1:
        allow = IsWebinarPanelist(role_type);
        break;
      case talvex::PrivateChatAuthority::kPanelistScope2:
      case talvex::PrivateChatAuthority::kPanelistScope3:
        allow = IsHostRole(role_type);
        break;
      default:
        TXLOG_INFO << "panelist unable private chat";
        return false;
    }
    TXLOG_INFO << "panelist enable_private_chat = " << allow;
    return allow;
  }
  if (webinar::SelfIsAttendee()) {
    if (settings::GetAttendeeChatPolicy() == talvex::PrivateChatAuthority::kAttendeeOnlyHost || !IsHostRole(role_type)) {
      TXLOG_INFO << "attendee unable private chat";
      return false;
    }
    TXLOG_INFO << "attendee enable private chat to host";
    return true;
  }
  TXLOG_INFO << "attendee unknown member type, unable private chat";
  return false;
}

bool ChattingMenuManagerForAvatar::HandleSubClassMenuItemClick(framework::UIViewModel* vm, int type) {
  if (type == ToInt(MenuItemType::kPrivateChat)) {
    HandleMenuItemClickForPrivateChat(vm);
    return true;
  }
  if (type == ToInt(MenuItemType::kKickOut) && GetUserInMeetingExistType() == kNotInMeeting) {
    if (vm) vm->ShowToast(0, CallGetLocalizedString(kTextSendMemberLeft), 2000);
    return true;
  }
  return false;
}

void ChattingMenuManagerForAvatar::HandleMenuItemClickForPrivateChat(framework::UIViewModel* vm) {
  if (GetUserInMeetingExistType() == kNotInMeeting) {
    if (vm) vm->ShowToast(0, CallGetLocalizedString(kTextSendMemberLeft), 2000);
    return;
  }
  const bool waiting_room = talvex::ChatUtils::IsWaitingRoom();
  if (!IsUserAllowPrivateChat()) {
    if (vm) {
      vm->ShowToast(0, CallGetLocalizedString(waiting_room ? kTextPrivateNotAllowedWaitingRoom : kTextPrivateNotAllowed),
                    2000);
    }
    return;
  }
  Variant const& sender = current_message_.Get("msg_sender");
  Variant receiver;
  if (waiting_room) {
    receiver = FindInWaitingRoomList();
  } else {
    receiver = GetUserInfo(sender);
    // A member who waits in the waiting room is written to there.
    const Variant waiting = AskHostModel(kHostMemberModel, kMemberMethodWaitingRoomList);
    if (waiting.IsArray()) {
      for (auto const& entry : waiting.AsArray()) {
        if (SameIds(entry, sender)) receiver.Set("status", kStatusInWaitingRoom);
      }
    }
  }
  if (!receiver.IsMap()) {
    receiver = Variant(base::variant::kVariantTypeMap);
    const std::string unique_id = sender.GetString("unique_id");
    if (!unique_id.empty()) {
      receiver.Set("unique_id", unique_id);
    } else {
      receiver.Set("app_uid", sender.GetString("app_uid"));
      receiver.Set("app_id", sender.GetString("app_id"));
    }
  }
  talvex_common::utils::privatechatrecord::SerPrivateChatUserInfo(&receiver);
}

}  // namespace chat
