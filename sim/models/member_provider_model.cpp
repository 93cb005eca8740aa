#include "sim/models/member_provider_model.h"

#include <QString>
#include <algorithm>
#include <cstdint>

#include "framework/meeting/meeting_context.h"
#include "framework/model/event_hub.h"

namespace sim {

namespace mp = talvex_common::utils::memberprovider;

namespace {

constexpr int kInMeeting = 0;
constexpr int kWaiting = 1;
constexpr int kAttendee = 2;
constexpr char const* kProviderIds[] = {mp::kInMeetingMembersForImProvider, mp::kWaitingMembersProvider,
                                        mp::kAttendeeMembersForImProvider};

std::string Folded(std::string const& text) { return QString::fromStdString(text).toCaseFolded().toStdString(); }

int SortKey(std::string const& role) {
  if (role == "host") return mp::kSortKeyHost;
  if (role == "cohost") return mp::kSortKeyCoHost;
  if (role == "panelist") return mp::kSortKeyPanelist;
  if (role == "attendee") return mp::kSortKeyAttendee;
  return mp::kSortKeyMember;
}

// Which providers the local user is given.
bool Provides(int provider) {
  auto const& self = talvex::MeetingContext::Current();
  const bool self_host = self.self_role == talvex::MeetingContext::kRoleHost ||
                         self.self_role == talvex::MeetingContext::kRoleCoHost;
  switch (provider) {
    case kWaiting:
      return self_host;
    case kAttendee:
      return self.is_webinar && self.self_role != talvex::MeetingContext::kRoleAttendee;
    default:
      return true;
  }
}

uint64_t Subscriber(void const* self) { return reinterpret_cast<uintptr_t>(self); }

}  // namespace

MemberProviderModel::MemberProviderModel(MemberModel& members) : SimModel(kId), members_(members) {
  SetMethod(mp::kMethodActivate, [this](Variant const* params, Variant* result) { return Activate(params, result); });
  SetMethod(mp::kMethodSearch, [this](Variant const* params, Variant*) { return Search(params); });
  SetMethod(mp::kMethodDeactivate, [this](Variant const* params, Variant*) { return Deactivate(params); });
  SetMethod(mp::kMethodSearchAll, [this](Variant const* params, Variant*) { return SearchAll(params); });
  auto changed = std::make_shared<framework::EventHandler>([this](Variant const*) {
    entries_dirty_ = true;
    for (auto& [id, activation] : activations_) Schedule(activation);
  });
  for (uint32_t event : {2u, 45u, 46u}) members_.Subscribe(event, Subscriber(this), changed);
}

MemberProviderModel::~MemberProviderModel() { members_.Unsubscribe(Subscriber(this)); }

std::vector<MemberProviderModel::Entry> const& MemberProviderModel::Entries() {
  if (!entries_dirty_) return entries_;
  entries_dirty_ = false;
  entries_.clear();
  const std::string self_id = talvex::MeetingContext::Current().self_user_id;
  for (auto const& member : members_.members()) {
    const std::string id = member.GetString("user_id");
    if (id == self_id) continue;
    const std::string role = member.GetString("role");
    Entry entry;
    entry.provider = member.GetBoolean("in_waiting_room") ? kWaiting : role == "attendee" ? kAttendee : kInMeeting;
    const int instance = member.GetInt32("instance_id", 1);
    entry.row = Variant::Map{{"user_id", id},
                             {"app_id", member.GetString("app_id")},
                             {"app_uid", member.GetString("app_uid")},
                             {"nickname", member.GetString("nickname")},
                             {"avatar", member.GetString("avatar")},
                             {"role", role},
                             {"sort_key", SortKey(role)},
                             {"can_receive_chat", member.GetInt32("user_type", 1) == 1 && instance != 5 && instance != 8},
                             {"is_full_data", true}};
    entry.folded_name = Folded(member.GetString("nickname"));
    entries_.push_back(std::move(entry));
  }
  return entries_;
}

Variant MemberProviderModel::Section(int provider, Activation const* activation, std::string const& search,
                                     size_t limit, bool* more) const {
  Variant users(base::variant::kVariantTypeArray);
  size_t total = 0;
  for (auto const& entry : entries_) {
    if (entry.provider != provider) continue;
    if (!search.empty() && entry.folded_name.find(search) == std::string::npos) continue;
    if (total++ < limit) users.Add(entry.row);
  }
  *more = total > limit;
  return Variant::Map{{"activate_id", activation ? activation->id : 0},
                      {"provider_id", kProviderIds[provider]},
                      {"is_searching", !search.empty()},
                      {"search_str", search},
                      {"is_loading", *more},
                      {"total_count", static_cast<int64_t>(total)},
                      {"user_list", std::move(users)}};
}

bool MemberProviderModel::Activate(Variant const* params, Variant* result) {
  const bool for_im = params && ((params->IsInteger() && params->AsInteger() == mp::kActivateForIm) ||
                                 (params->IsMap() && params->GetInt32("type") == mp::kActivateForIm));
  if (!for_im) return false;
  Activation& activation = activations_[next_id_];
  activation.id = next_id_++;
  const int64_t id = activation.id;
  activation.timer = talvex_common::utils::timer::CreateTimer([this, id] { Deliver(id); });
  if (result) *result = Variant::Map{{"activate_id", id}};
  Schedule(activation);
  return true;
}

bool MemberProviderModel::Search(Variant const* params) {
  if (!params || !params->IsMap() || !params->Get("search_str").IsString()) return false;
  auto it = activations_.find(params->GetInteger("activate_id"));
  if (it == activations_.end()) return false;
  it->second.search = Folded(params->GetString("search_str"));
  it->second.attendees_sent = 0;
  Schedule(it->second);
  return true;
}

bool MemberProviderModel::Deactivate(Variant const* params) {
  if (!params || !params->IsMap()) return false;
  return activations_.erase(params->GetInteger("activate_id")) > 0;
}

bool MemberProviderModel::SearchAll(Variant const* params) {
  if (!params || !params->IsMap()) return false;
  const std::string provider_id = params->GetString("provider_id");
  int provider = -1;
  for (int p = 0; p < 3; ++p) {
    if (provider_id == kProviderIds[p]) provider = p;
  }
  if (provider < 0 || !Provides(provider)) return false;
  const std::string search = Folded(params->GetString("search_str"));
  // Answers already given leave their timers behind; they go now.
  one_shots_.erase(std::remove_if(one_shots_.begin(), one_shots_.end(), [](auto const& t) { return !t->IsActive(); }),
                   one_shots_.end());
  one_shots_.push_back(talvex_common::utils::timer::CreateTimer([this, provider, search] {
    Entries();
    bool more = false;
    Variant sections(base::variant::kVariantTypeArray);
    sections.Add(Section(provider, nullptr, search, SIZE_MAX, &more));
    FireEvent(mp::kEventAllSearchUserList, sections);
  }));
  one_shots_.back()->Start(latency_ms_, 0);
  return true;
}

void MemberProviderModel::Schedule(Activation& activation) {
  if (activation.timer && !activation.timer->IsActive()) activation.timer->Start(latency_ms_, 0);
}

void MemberProviderModel::Deliver(int64_t id) {
  auto it = activations_.find(id);
  if (it == activations_.end()) return;
  Activation& activation = it->second;
  Entries();
  Variant sections(base::variant::kVariantTypeArray);
  bool more = false;
  for (int provider : {kInMeeting, kWaiting, kAttendee}) {
    if (!Provides(provider)) continue;
    if (provider == kAttendee) {
      activation.attendees_sent += static_cast<size_t>(chunk_size_);
      sections.Add(Section(provider, &activation, activation.search, activation.attendees_sent, &more));
    } else {
      bool ignored = false;
      sections.Add(Section(provider, &activation, activation.search, SIZE_MAX, &ignored));
    }
  }
  // The event may end the activation (a view closing on it): the timer is
  // started before, and stopped with the activation.
  if (more) activation.timer->Start(latency_ms_, 0);
  FireEvent(mp::kEventSections, sections);
}

}  // namespace sim
