#include "chat/viewmodel/private_chat_members_view_model.h"

#include <QString>
#include <algorithm>
#include <cstring>
#include <vector>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "base/util/string_util.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/chat_strings.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/meeting_context.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/meeting/member_provider.h"
#include "framework/meeting/member_utils.h"
#include "framework/meeting/private_chat_record.h"
#include "framework/module/app_module.h"
#include "framework/resource/resource.h"

namespace chat {

namespace {

namespace analytics = talvex_common::utils::analytics;
namespace mp = talvex_common::utils::memberprovider;
namespace settings = talvex_common::utils::meetingsettings;
namespace webinar = talvex_common::utils::webinar;
using talvex_common::utils::GetLocalizedString;

constexpr int kHostBulletSettingsModel = 523;
constexpr int kPriorityImmersive = 100;
constexpr char kColorEnabled[] = "#2D3033";
constexpr char kColorDisabled[] = "#7C8083";
constexpr char kColorRemark[] = "#777777";

std::string Text(char const* name) { return GetLocalizedString(framework::NameId(name)); }

std::string FormatCount(char const* name, size_t count) {
  return framework::StringFormatter(Text(name)).Arg("count", static_cast<int64_t>(count)).Str();
}

std::string Folded(std::string const& text) { return QString::fromStdString(text).toCaseFolded().toStdString(); }

bool IsHostRole(std::string const& role) { return role == "host" || role == "cohost"; }

// The receiver a row stands for, as the private chat record keeps it.
int ReceiverTypeOf(int row_type) {
  switch (row_type) {
    case PrivateChatMembersViewModel::kRowEveryone:
      return webinar::IsMeetingWebinar() ? 5 : 2;
    case PrivateChatMembersViewModel::kRowPanelists:
      return 4;
    case PrivateChatMembersViewModel::kRowWaitingMember:
      return 6;
    default:
      return 1;
  }
}

// The policy that governs the local user: a webinar keeps one for its
// panelists and one for its attendees.
int SelfPolicy() {
  if (!webinar::IsMeetingWebinar()) return settings::GetAllowChatPolicy();
  return webinar::SelfIsAttendee() ? settings::GetAttendeeChatPolicy() : settings::GetPanelistChatPolicy();
}

}  // namespace

// The rows of one section while they are built: each member row with what
// it sorts by, the name collated once.
struct PrivateChatMembersViewModel::Built {
  struct Entry {
    int sort_key;
    util::stringhelp::LocalizedSortKey name;
    std::string user_id;
    Variant row;
  };
  std::vector<Entry> entries;
};

PrivateChatMembersViewModel::PrivateChatMembersViewModel() {
  OnAction(kActionSelectMember, [this](Variant const* params) { HandleActionSelectMember(params, false); });
  OnAction(kActionSelectMemberInBullet, [this](Variant const* params) { HandleActionSelectMember(params, true); });
  OnAction(kActionClose, [this](Variant const*) {
    analytics::LogEvent(source_ == kSourceBullet ? "private_chat_members_close_in_bullet"
                                                 : "private_chat_members_close");
  });
  OnAction(kActionSearchTextChanged, [this](Variant const* params) { HandleActionSearchTextChanged(params); });
  OnAction(kActionSearchFocus, [this](Variant const*) { HandleActionSearchFocus(); });
  OnAction(kActionSearchCancel, [this](Variant const*) { HandleActionSearchCancel(); });
  OnAction(kActionExpandCollapse, [this](Variant const* params) { HandleActionChangeExpandCollapseStatus(params); });
  OnAction(kActionShow, [this](Variant const*) { HandleActionShow(); });
  OnAction(kActionOrientation, [this](Variant const* params) { HandleActionOrientationChanged(params); });
  OnAction(kActionClearScrollToTop, [this](Variant const*) { scroll_to_top_ = false; });
}

PrivateChatMembersViewModel::~PrivateChatMembersViewModel() {
  if (search_timer_) search_timer_->Stop();
}

void PrivateChatMembersViewModel::OnViewAttached(Variant const* params) {
  framework::StatefulViewModel::OnViewAttached(params);
  if (params && params->IsInteger()) source_ = params->AsInt32();
  const uint64_t self = framework::SubscriberId(this);
  auto on = [this](int id, std::initializer_list<uint32_t> events, std::function<void(Variant const*)> fn) {
    SubscribeHostModel(this, id, events, std::move(fn));
  };
  on(mp::kModelId, {mp::kEventSections, mp::kEventAllSearchUserList},
     [this](Variant const* p) { OnEventSections(p); });
  on(kHostAuthorityModel, {0}, [this](Variant const* p) { OnEventRefresh(p); });
  on(kHostMemberModel, {2}, [this](Variant const* p) { OnEventSelfChanged(p); });
  on(kHostBulletSettingsModel, {0}, [this](Variant const* p) { OnEventRefresh(p); });
  auto immersive = framework::module::GetAppModuleModel(kHostMeetingSettingsModel);
  if (auto priority = std::dynamic_pointer_cast<framework::PriorityModel>(immersive)) {
    RecordPrioritySubscribe(immersive, this);
    priority->SubscribePriority(10, kPriorityImmersive, self,
                                std::make_shared<framework::PriorityEventHandler>(
                                    [this](Variant const* p, bool& stop) { OnEventCanEnterImmersive(p, stop); }));
  }
  is_searching_ = false;
  search_text_.clear();
  if (activate_id_ != 0) {
    TXLOG_ERROR << " May attached twice with activate_id: " << activate_id_;
  } else {
    ActivateProvider();
  }
  SetPropValue(kPropReceiverText, std::string());
  PublishDisableChat();
  UpdateAuthorityHint();
}

void PrivateChatMembersViewModel::OnViewDetached() {
  if (search_timer_) search_timer_->Stop();
  if (activate_id_ != 0) {
    Variant stop = Variant::Map{{"activate_id", activate_id_}};
    InvokeHostModel(mp::kModelId, mp::kMethodDeactivate, &stop, nullptr);
    activate_id_ = 0;
  }
  UnsubscribeAllEvent();
  framework::StatefulViewModel::OnViewDetached();
}

void PrivateChatMembersViewModel::ActivateProvider() {
  Variant which(mp::kActivateForIm);
  Variant result;
  if (!InvokeHostModel(mp::kModelId, mp::kMethodActivate, &which, &result) || !result.IsMap() ||
      !result.Get("activate_id").IsInteger()) {
    TXLOG_ERROR << " active provider failed";
    return;
  }
  activate_id_ = result.GetInteger("activate_id");
}

void PrivateChatMembersViewModel::AskProvider() {
  if (activate_id_ == 0) return;
  Variant ask = Variant::Map{{"activate_id", activate_id_}, {"search_str", search_text_}};
  if (!InvokeHostModel(mp::kModelId, mp::kMethodSearch, &ask, nullptr)) {
    TXLOG_WARN << "search not taken by the member provider, search_str=" << search_text_;
  }
}

// --- actions -----------------------------------------------------------------------

void PrivateChatMembersViewModel::HandleActionSearchFocus() {
  analytics::LogEvent("private_chat_members_search_focus");
  if (webinar::IsMeetingWebinar()) {
    analytics::LogEventWith2Properties("meetingpage_im_null_search_null_null_explore", "ope_pos",
                                       source_ == kSourceBullet ? "2" : "1", "webinar_role", WebinarRole());
  }
}

void PrivateChatMembersViewModel::HandleActionSearchCancel() {
  analytics::LogEvent("private_chat_members_search_cancel");
  // Leaving the search is at once: there is nothing to wait for.
  if (search_timer_) search_timer_->Stop();
  const bool was_searching = is_searching_ || !search_text_.empty();
  search_text_.clear();
  is_searching_ = false;
  if (was_searching) {
    scroll_to_top_ = true;
    AskProvider();
  }
}

void PrivateChatMembersViewModel::HandleActionShow() {
  if (webinar::IsMeetingWebinar()) {
    analytics::LogEventWith2Properties("meetingpage_im_null_sendto_null_null_explore", "ope_pos",
                                       source_ == kSourceBullet ? "2" : "1", "webinar_role", WebinarRole());
  }
}

void PrivateChatMembersViewModel::HandleActionSelectMember(Variant const* params, bool in_bullet) {
  if (!params || !params->IsMap() || !params->Get("type").IsInteger()) {
    TXLOG_ERROR << "select member with invalid params: " << framework::VariantToString(params);
    return;
  }
  const int row_type = params->GetInt32("type");
  if (row_type == kRowTitle || row_type > kRowPanelists || row_type < 0) {
    TXLOG_ERROR << "select member on a row that is no member, type=" << row_type;
    return;
  }
  if (!params->GetBoolean("enable", true)) {
    TXLOG_INFO << "select member refused, the row is disabled: " << params->GetString("user_id");
    return;
  }
  Variant receiver(base::variant::kVariantTypeMap);
  receiver.Set("receiver_type", ReceiverTypeOf(row_type));
  if (row_type == kRowMember || row_type == kRowWaitingMember || row_type == kRowAttendee) {
    Variant const& user = params->Get("user");
    if (!user.IsMap() || (user.GetString("user_id").empty() && user.GetString("app_uid").empty())) {
      TXLOG_ERROR << "select member without ids: " << framework::VariantToString(params);
      return;
    }
    for (char const* key : {"user_id", "app_id", "app_uid", "nickname", "avatar", "role"}) {
      receiver.Set(key, user.GetString(key));
    }
  }
  analytics::LogEvent(in_bullet ? "private_chat_members_select_member_in_bullet"
                                : "private_chat_members_select_member");
  ReportSelect("chatting_private_chat_select_user_click", receiver);
  talvex_common::utils::privatechatrecord::SerPrivateChatUserInfo(&receiver);
  TXLOG_INFO << "<IM> private chat receiver chosen, receiver_type=" << receiver.GetInt32("receiver_type")
             << ", user_id=" << receiver.GetString("user_id");
  SetPropValue(kPropReceiverText, talvex::ChatUtils::GetReceiverNameAndHint().GetString("receiver_name"));
  MembersUpdate();
  SetPropValue(kPropClose, nullptr);
}

void PrivateChatMembersViewModel::ReportSelect(char const* event, Variant const& receiver) const {
  std::string sender_condition;
  std::string receive_condition;
  talvex::ChatUtils::GetChatCondition(receiver, sender_condition, receive_condition);
  analytics::LogEventWith2Properties(event, "sender_condition", sender_condition, "receive_condition",
                                     receive_condition);
}

void PrivateChatMembersViewModel::HandleActionSearchTextChanged(Variant const* params) {
  if (!params || !params->IsMap() || !params->Get("search_text").IsString()) {
    TXLOG_ERROR << "search text changed with invalid params: " << framework::VariantToString(params);
    return;
  }
  if (search_timer_) search_timer_->Stop();
  search_text_ = Folded(params->GetString("search_text"));
  if (!search_timer_) {
    search_timer_ = talvex_common::utils::timer::CreateTimer([this] {
      is_searching_ = !search_text_.empty();
      scroll_to_top_ = true;
      AskProvider();
    });
  }
  search_timer_->Start(kSearchDelayMs, 0);
}

void PrivateChatMembersViewModel::HandleActionChangeExpandCollapseStatus(Variant const* params) {
  if (!params || !params->IsMap() || !params->Get("title_type").IsInteger()) {
    TXLOG_ERROR << "invalid params";
    return;
  }
  const int title_type = params->GetInt32("title_type");
  char const* ope_pos = nullptr;
  if (title_type == kTitleInMeeting) {
    in_meeting_expanded_ = !in_meeting_expanded_;
    ope_pos = "1";
  } else if (title_type == kTitleWaiting) {
    waiting_expanded_ = !waiting_expanded_;
    ope_pos = "2";
  } else {
    TXLOG_ERROR << "invalid title type";
    return;
  }
  analytics::LogEventWithProperties(
      "meetingpage_im_null_search_null_null_click",
      {{"ope_pos", ope_pos},
       {"webinar_role", WebinarRole()},
       {"ops_role", talvex_common::utils::member::IsSelfHostOrCoHost() ? "1" : "0"}});
  MembersUpdate();
}

void PrivateChatMembersViewModel::HandleActionOrientationChanged(Variant const* params) {
  if (!params) {
    TXLOG_ERROR << "invalid params";
    return;
  }
  const int orientation = params->IsMap() && params->Get("orientation").IsInteger() ? params->GetInt32("orientation")
                                                                                     : talvex::PrivateChatMembers::kUndefined;
  if (orientation != talvex::PrivateChatMembers::kPortrait && orientation != talvex::PrivateChatMembers::kLandscape) {
    // Nothing to lay out for: the view said nothing usable.
    TXLOG_ERROR << "current_orientation_ != talvex::PrivateChatMembers::kUndefined";
    return;
  }
  current_orientation_ = orientation;
  MembersUpdate();
}

std::string PrivateChatMembersViewModel::WebinarRole() const {
  if (talvex::ChatUtils::IsSelfHost()) return "1";
  if (talvex::ChatUtils::IsSelfCoHost()) return "2";
  if (webinar::SelfIsPanelist()) return "3";
  return "4";
}

// --- events ------------------------------------------------------------------------

void PrivateChatMembersViewModel::OnEventSections(Variant const* sections) {
  if (!sections || !sections->IsArray()) {
    TXLOG_ERROR << "member sections are not an array: " << framework::VariantToString(sections);
    return;
  }
  // Another list's answer (a search of all attendees for a menu) or another
  // activation is not ours.
  for (auto const& section : sections->AsArray()) {
    if (!section.IsMap()) {
      TXLOG_ERROR << "param type error, need check logic!";
      return;
    }
    if (section.GetInteger("activate_id") != activate_id_ || activate_id_ == 0) return;
  }
  sections_ = *sections;
  MembersUpdate();
}

void PrivateChatMembersViewModel::OnEventRefresh(Variant const*) {
  PublishDisableChat();
  MembersUpdate();
}

void PrivateChatMembersViewModel::OnEventSelfChanged(Variant const* user_ids) {
  if (!user_ids || !user_ids->IsArray()) return;
  for (auto const& id : user_ids->AsArray()) {
    if (!id.IsString()) continue;
    const Variant member = talvex_common::utils::member::GetUserInfo(id.AsStr());
    if (member.GetBoolean("self")) {
      OnEventRefresh(nullptr);
      return;
    }
  }
}

void PrivateChatMembersViewModel::OnEventCanEnterImmersive(Variant const* query, bool& stop) {
  if (!visible() || source_ != kSourceBullet) return;
  if (auto* out = const_cast<Variant*>(query); out && out->IsMap()) {
    out->Set("can_enter_immersive_mode", false);
    out->Set("reason", "PrivateChatMembersViewModel visible");
  }
  stop = true;
}

// --- the list ----------------------------------------------------------------------

void PrivateChatMembersViewModel::RetireLater(Variant const& value) {
  retired_.push_back(value);
  if (!retire_timer_) retire_timer_ = talvex_common::utils::timer::CreateTimer([this] { retired_.clear(); });
  if (!retire_timer_->IsActive()) retire_timer_->Start(kRetireDelayMs, 0);
}

void PrivateChatMembersViewModel::PublishDisableChat() {
  SetPropValue(kPropDisableChat, talvex::ChatUtils::GetIMAuthorityInfo());
}

Variant PrivateChatMembersViewModel::GetAuthorityHintInfoForNormal(int policy, bool self_is_host) {
  static const char* const kTexts[] = {"", "chat.members.hint.only_public", "chat.members.hint.only_to_host",
                                       "chat.members.hint.only_host"};
  Variant hint = Variant::Map{{"hidden", true}, {"text", ""}};
  if (policy < 0 || policy > 3) {
    TXLOG_NOTICE << "<IM> allow_chat_policy value error, need check!";
    return hint;
  }
  if (self_is_host || policy == 0) return hint;
  hint.Set("hidden", false);
  hint.Set("text", Text(kTexts[policy]));
  return hint;
}

Variant PrivateChatMembersViewModel::GetAuthorityHintInfoForWebinar(int policy, bool self_is_host) {
  // Policies 4 to 10: the panelists' four scopes, then the attendees' three.
  static const std::vector<std::string> kTexts = {
      "",
      "chat.members.hint.webinar.panelist_scope_2",
      "chat.members.hint.webinar.panelist_scope_3",
      "chat.members.hint.webinar.panelist_scope_4",
      "chat.members.hint.webinar.attendee_scope_1",
      "chat.members.hint.webinar.attendee_scope_2",
      "chat.members.hint.webinar.attendee_scope_3",
  };
  Variant hint = Variant::Map{{"hidden", true}, {"text", ""}};
  if (self_is_host || policy == 4) return hint;
  if (policy < 4 || policy > 10) {
    TXLOG_NOTICE << "<IM> webinar allow_chat_policy value error, need check!";
    return hint;
  }
  hint.Set("hidden", false);
  hint.Set("text", Text(kTexts[static_cast<size_t>(policy - 4)].c_str()));
  return hint;
}

void PrivateChatMembersViewModel::UpdateAuthorityHint() {
  const bool self_is_host = talvex_common::utils::member::IsSelfHostOrCoHost();
  const int policy = SelfPolicy();
  SetPropValue(kPropAuthorityHint, webinar::IsMeetingWebinar() ? GetAuthorityHintInfoForWebinar(policy, self_is_host)
                                                               : GetAuthorityHintInfoForNormal(policy, self_is_host));
}

// What every row of one update shares, read once: the policy, the chosen
// receiver and the texts. The texts are Variants made once, so that each row
// shares them instead of holding copies.
struct PrivateChatMembersViewModel::RowContext {
  bool is_webinar = false;
  bool self_is_host = false;
  int policy = 0;
  int receiver_type = 0;
  std::string receiver_user_id;
  std::string receiver_app_uid;
  Variant enabled_colour{kColorEnabled};
  Variant disabled_colour{kColorDisabled};
  Variant remark_colour{kColorRemark};
  Variant no_remark{""};
  Variant host{Text("chat.members.role.host")};
  Variant cohost{Text("chat.members.role.cohost")};
  Variant panelist{Text("chat.members.role.panelist")};
  Variant no_chat{Text("chat.members.disabled.no_chat")};
  Variant only_public{Text("chat.members.disabled.only_public")};
  Variant only_to_host{Text("chat.members.disabled.only_to_host")};
  Variant remove{Text("chat.members.waiting.remove")};
  Variant admit{Text("chat.members.waiting.admit")};
  Variant loading{Text("chat.members.loading")};

  explicit RowContext(Variant const& receiver)
      : is_webinar(webinar::IsMeetingWebinar()),
        self_is_host(talvex_common::utils::member::IsSelfHostOrCoHost()),
        policy(settings::GetAllowChatPolicy()),
        receiver_type(talvex_common::utils::privatechatrecord::GetChatReceiverType(receiver)),
        receiver_user_id(receiver.GetString("user_id")),
        receiver_app_uid(receiver.GetString("app_uid")) {}

  Variant const& Remark(std::string const& role) const {
    return role == "host" ? host : role == "cohost" ? cohost : role == "panelist" ? panelist : no_remark;
  }
  // Whether the policy lets the local user write to `user`; `reason` says
  // why not.
  bool Allows(Variant const& user, Variant const** reason) const {
    if (!user.GetBoolean("can_receive_chat", true)) {
      *reason = &no_chat;
      return false;
    }
    if (is_webinar || self_is_host) return true;
    if (policy == 1) {
      *reason = &only_public;
      return false;
    }
    if (policy == 2 && !IsHostRole(user.GetString("role"))) {
      *reason = &only_to_host;
      return false;
    }
    return true;
  }
  bool Checked(int row_receiver_type, Variant const& row) const {
    if (receiver_type != row_receiver_type) return false;
    if (receiver_type != 1 && receiver_type != 6 && receiver_type != 7) return true;
    return !receiver_user_id.empty() ? receiver_user_id == row.Get("user_id").AsStr()
                                     : !receiver_app_uid.empty() && receiver_app_uid == row.Get("user").GetString("app_uid");
  }
};

Variant PrivateChatMembersViewModel::AddTitleItem(int title_type, size_t count) const {
  static const char* const kTitles[] = {"chat.members.section.in_meeting", "chat.members.section.waiting",
                                        "chat.members.section.attendees"};
  if (title_type < 0 || title_type > 2) {
    TXLOG_ERROR << "no such title type:" << title_type;
    return Variant();
  }
  Variant title = Variant::Map{{"type", kRowTitle},
                               {"title_type", title_type},
                               {"title", FormatCount(kTitles[title_type], count)},
                               {"user_index", -1},
                               {"is_full_data", true},
                               {"checked", false}};
  if (!is_searching_ && title_type != kTitleAttendees) {
    const bool expanded = title_type == kTitleInMeeting ? in_meeting_expanded_ : waiting_expanded_;
    title.Set("title_expand_collapse_desc", Text(expanded ? "chat.members.collapse" : "chat.members.expand"));
  }
  return title;
}

void PrivateChatMembersViewModel::AddUserItems(Variant const& users, int row_type, RowContext const& context,
                                               Built& built) const {
  if (!users.IsArray()) return;
  built.entries.reserve(built.entries.size() + users.Size());
  const int receiver_type = ReceiverTypeOf(row_type);
  static const Variant kEmpty{""};
  auto string_of = [](Variant const& user, char const* key) -> Variant const& {
    Variant const& value = user.Get(key);
    return value.IsString() ? value : kEmpty;
  };
  for (auto const& user : users.AsArray()) {
    if (!user.IsMap()) {
      TXLOG_ERROR << "param type error, need check logic!";
      continue;
    }
    Variant const* reason = nullptr;
    const bool enable = context.Allows(user, &reason);
    Variant const& role = string_of(user, "role");
    // The member's strings are shared with the provider's answer, not copied.
    Variant::Map fields;
    fields.emplace("type", row_type);
    fields.emplace("receiver_type", receiver_type);
    // Name and id for the list; the member as the provider gave it (shared,
    // not copied) for the rest: ids, role, avatar.
    fields.emplace("user_id", string_of(user, "user_id"));
    fields.emplace("nickname", string_of(user, "nickname"));
    fields.emplace("user", user);
    fields.emplace("remark", context.Remark(role.AsStr()));
    fields.emplace("status", !user.GetBoolean("can_receive_chat", true) ? kStatusNoChat
                             : row_type == kRowWaitingMember          ? kStatusWaiting
                                                                      : kStatusInMeeting);
    fields.emplace("enable", enable);
    fields.emplace("title_color", enable ? context.enabled_colour : context.disabled_colour);
    fields.emplace("remark_color", context.remark_colour);
    fields.emplace("is_full_data", user.GetBoolean("is_full_data", true));
    if (reason) fields.emplace("disable_reason", *reason);
    if (row_type == kRowWaitingMember) {
      fields.emplace("remove_out_btn_desc", context.remove);
      fields.emplace("allow_in_btn_desc", context.admit);
      fields.emplace("loading_wording", context.loading);
    }
    Variant row(std::move(fields));
    row.Set("checked", context.Checked(receiver_type, row));
    const int sort_key = static_cast<int>(user.GetInteger("sort_key") & 0xFFFF);
    built.entries.push_back({sort_key, util::stringhelp::LocalizedSortKey(row.Get("nickname").AsStr()),
                             row.Get("user_id").AsStr(), std::move(row)});
  }
}

Variant PrivateChatMembersViewModel::BuildSection(Built& built, RowContext const& context, int title_type,
                                                  bool with_everyone, bool expanded) const {
  using Entry = Built::Entry;
  std::sort(built.entries.begin(), built.entries.end(), [](Entry const& a, Entry const& b) {
    if (a.sort_key != b.sort_key) return a.sort_key > b.sort_key;
    if (const int by_name = a.name.Compare(b.name); by_name != 0) return by_name < 0;
    return std::strcmp(a.user_id.c_str(), b.user_id.c_str()) < 0;
  });
  Variant info(base::variant::kVariantTypeMap);
  info.Set("max_count", kFoldCount);
  info.Set("collapse_desc", Text("chat.members.collapse"));
  info.Set("expanded", expanded || is_searching_);
  const size_t members = built.entries.size();
  if (members == 0 && !with_everyone) {
    // The empty-section rule.
    info.Set("user_list", Variant(base::variant::kVariantTypeArray));
    info.Set("show_more_desc", "");
    info.Set("section_desc", Text(is_searching_ ? "chat.members.empty.search" : "chat.members.empty"));
    return info;
  }
  Variant::Array list;
  list.reserve(members + 2);
  Variant title = AddTitleItem(title_type, members);
  if (!title.IsNull()) list.push_back(std::move(title));
  if (with_everyone) {
    const bool is_webinar = webinar::IsMeetingWebinar();
    Variant everyone = Variant::Map{{"type", kRowEveryone},
                                    {"receiver_type", ReceiverTypeOf(kRowEveryone)},
                                    {"nickname", Text(is_webinar ? "chat.members.everyone_webinar"
                                                                 : "chat.members.everyone")},
                                    {"user_index", 0},
                                    {"is_full_data", true},
                                    {"status", kStatusInMeeting},
                                    {"enable", true},
                                    {"title_color", kColorEnabled},
                                    {"remark_color", kColorRemark}};
    everyone.Set("checked", context.Checked(ReceiverTypeOf(kRowEveryone), everyone));
    list.push_back(std::move(everyone));
  }
  int index = with_everyone ? 1 : 0;
  for (auto& entry : built.entries) {
    entry.row.Set("user_index", index++);
    list.push_back(std::move(entry.row));
  }
  info.Set("user_list", Variant(std::move(list)));
  info.Set("section_desc", FormatCount("chat.members.section.count", members));
  info.Set("show_more_desc", members > static_cast<size_t>(kFoldCount)
                                 ? FormatCount("chat.members.show_more", members)
                                 : std::string());
  return info;
}

void PrivateChatMembersViewModel::MembersUpdate() {
  if (!sections_.IsArray() || sections_.Empty()) return;
  // An answer of the other mode (searching or not) came late: not for now.
  for (auto const& section : sections_.AsArray()) {
    if (!section.IsMap()) continue;
    if (section.GetBoolean("is_searching") != is_searching_) return;
    if (is_searching_ && section.GetString("search_str") != search_text_) return;
  }
  const bool self_is_host = talvex_common::utils::member::IsSelfHostOrCoHost();
  const bool is_webinar = webinar::IsMeetingWebinar();
  const int policy = settings::GetAllowChatPolicy();
  const RowContext context(talvex_common::utils::privatechatrecord::GetPrivateChatUserInfo());

  Built in_meeting;
  Built waiting;
  bool attendees_in_waiting_slot = false;
  is_attendee_loading_ = false;
  for (auto const& section : sections_.AsArray()) {
    if (!section.IsMap()) {
      TXLOG_ERROR << "param type error, need check logic!";
      continue;
    }
    const std::string provider = section.GetString("provider_id");
    Variant const& users = section.Get("user_list");
    if (provider == mp::kInMeetingMembersForImProvider) {
      AddUserItems(users, kRowMember, context, in_meeting);
    } else if (provider == mp::kWaitingMembersProvider) {
      if (!attendees_in_waiting_slot) AddUserItems(users, kRowWaitingMember, context, waiting);
    } else if (provider == mp::kAttendeeMembersForImProvider) {
      is_attendee_loading_ = section.GetBoolean("is_loading");
      if (!is_searching_) {
        AddUserItems(users, kRowAttendee, context, in_meeting);
      } else if (!(is_webinar && is_attendee_loading_)) {
        // While searching a webinar, the attendees found take the second section.
        waiting.entries.clear();
        attendees_in_waiting_slot = true;
        AddUserItems(users, kRowAttendee, context, waiting);
      }
    } else {
      TXLOG_ERROR << " provider not supprot : " << provider;
      return;
    }
  }

  Variant list(base::variant::kVariantTypeMap);
  list.Set("is_searching", is_searching_);
  list.Set("is_attendee_loading", is_attendee_loading_);
  list.Set("hide_menu", !self_is_host && policy == 3 && !is_webinar);
  list.Set("disable_search", false);
  list.Set("search_placeholder_text", Text(is_webinar ? "chat.members.search.webinar" : "chat.members.search"));
  list.Set("is_webinar", is_webinar);
  list.Set("search_panel_title", Text("chat.members.title"));
  list.Set("orientation", current_orientation_);
  list.Set("scroll_to_top", scroll_to_top_);
  list.Set("in_meeting_info",
           BuildSection(in_meeting, context, kTitleInMeeting, !is_searching_, in_meeting_expanded_));
  list.Set("waiting_member_info",
           BuildSection(waiting, context, attendees_in_waiting_slot ? kTitleAttendees : kTitleWaiting, false,
                        waiting_expanded_));
  UpdateAuthorityHint();
  // The list that goes is let go of after the new one is shown: with ten
  // thousand rows its freeing is longer than building the answer of a search.
  if (Variant const* previous = GetPropValue(kPropMemberList)) RetireLater(*previous);
  SetPropValue(kPropMemberList, std::move(list));
}

}  // namespace chat
