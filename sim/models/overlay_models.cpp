#include "sim/models/overlay_models.h"

#include "framework/meeting/meeting_context.h"

namespace sim {

BulletSettingsModel::BulletSettingsModel(framework::SettingsModel& store) : SimModel(kId), store_(store) {
  SetMethod(14, [this](Variant const*, Variant* result) {
    if (result) *result = Variant::Map{{"is_show_bullet_enabled", show_bullet()}};
    return true;
  });
  SetMethod(16, [this](Variant const*, Variant* result) {
    if (result) *result = Variant::Map{{"is_new_msg_bullet_enabled", new_msg_bullet()}};
    return true;
  });
  SetMethod(13, [this](Variant const* params, Variant*) {
    if (!params || !params->IsBool()) return false;
    Write(kShowKey, params->AsBoolean());
    return true;
  });
  SetMethod(1, [this](Variant const*, Variant* result) {
    if (result) *result = Variant::Map{{"allow_emoji", allow_emoji_}};
    return true;
  });
}

bool BulletSettingsModel::Read(char const* key) const {
  Variant ask = Variant::Map{{"key", key}, {"def_value", true}};
  Variant value;
  return !store_.Invoke(3, &ask, &value) || !value.IsBool() || value.AsBoolean();
}

void BulletSettingsModel::Write(char const* key, bool value) {
  Variant write = Variant::Map{{"key", key}, {"value", value}};
  store_.Invoke(4, &write, nullptr);
}

bool BulletSettingsModel::show_bullet() const { return Read(kShowKey); }
bool BulletSettingsModel::new_msg_bullet() const { return Read(kNewMsgKey); }

void BulletSettingsModel::SetShowBullet(bool show) {
  Write(kShowKey, show);
  FireEvent(8, Variant(Variant::Map{{"is_show_bullet_enabled", show}}));
  FireEvent(0, nullptr);
}

void BulletSettingsModel::SetNewMsgBullet(bool show) {
  Write(kNewMsgKey, show);
  FireEvent(9, Variant(Variant::Map{{"is_new_msg_bullet_enabled", show}}));
  FireEvent(0, nullptr);
}

void BulletSettingsModel::SetAllowEmoji(bool allow) {
  allow_emoji_ = allow;
  FireEvent(0, nullptr);
}

ScreenShareModel::ScreenShareModel() : SimModel(kId) {
  SetMethod(2, [](Variant const*, Variant* result) {
    if (result) *result = talvex::MeetingContext::Current().screen_sharing;
    return true;
  });
}

void ScreenShareModel::SetSelfSharing(bool sharing) {
  auto& context = talvex::MeetingContext::Current();
  context.screen_sharing = sharing;
  context.screen_share_mode = sharing;
  FireEvent(0, Variant(Variant::Map{{"enable", sharing}}));
}

PicInPicModel::PicInPicModel() : SimModel(kId) {
  SetMethod(7, [this](Variant const*, Variant* result) {
    if (result) *result = Variant::Map{{"state", state_}};
    return true;
  });
  SetMethod(8, [this](Variant const*, Variant* result) {
    if (result && result->IsMap()) {
      result->Set("tips", state_ == 0 ? "Leave picture-in-picture" : "Keep the meeting in a small window");
    }
    return true;
  });
  SetMethod(12, [this](Variant const* params, Variant*) {
    if (!params || !params->IsMap() || !params->Get("state").IsInteger()) return false;
    state_ = params->GetInt32("state");
    return true;
  });
}

TipsDatabaseModel::TipsDatabaseModel() : SimModel(kId) {
  SetMethod(3, [this](Variant const*, Variant* result) {
    if (config_.IsNull()) return false;
    if (result) *result = config_;
    return true;
  });
  SetMethod(6, [this](Variant const* params, Variant*) {
    const int type = params && params->IsMap() ? params->GetInt32("tips_type") : 0;
    Variant shown(base::variant::kVariantTypeArray);
    for (auto const& tip : shown_) {
      if (tip.GetInt32("tips_type") == type) shown.Add(tip);
    }
    FireEvent(1, shown.Empty() ? Variant() : shown);
    return true;
  });
  SetMethod(7, [this](Variant const* params, Variant*) {
    if (!params || !params->IsMap()) return false;
    shown_.push_back(*params);
    return true;
  });
}

TipResourceModel::TipResourceModel() : SimModel(kId) {
  SetMethod(0, [](Variant const* index, Variant* result) {
    if (!index || !index->IsInteger()) return false;
    static char const* const kTexts[] = {"Chat is not part of this meeting's plan",
                                         "Reactions are not part of this meeting's plan"};
    const int64_t i = index->AsInteger();
    if (i < 0 || i >= 2) return false;
    if (result) *result = kTexts[i];
    return true;
  });
}

namespace {
bool IsSelf(Variant const& member) {
  return member.GetString("user_id") == talvex::MeetingContext::Current().self_user_id;
}
}  // namespace

std::string RedPacketModel::Send(Variant const& from) {
  const std::string ticket = "rp-" + std::to_string(next_ticket_++);
  Variant packet = Variant::Map{{"msg_type", 3}, {"msg_is_self", IsSelf(from)}, {"sender_info", from},
                                {"ticket", ticket}};
  FireEvent(0, Variant(Variant::Array{std::move(packet)}));
  return ticket;
}

void RedPacketModel::Open(std::string const& ticket, Variant const& from, Variant const& receiver) {
  Variant receipt = Variant::Map{{"msg_type", 4},           {"sender_is_self", IsSelf(from)},
                                 {"receiver_is_self", IsSelf(receiver)}, {"sender_info", from},
                                 {"receiver_info", receiver}, {"ticket", ticket}};
  FireEvent(0, Variant(Variant::Array{std::move(receipt)}));
}

void BannerModel::Notify(int banner_id, std::string const& title, std::string const& content, bool over_video) {
  FireEvent(0, Variant(Variant::Map{{"notify_type", 10}, {"banner_id", banner_id},
                                    {"sync_bullet", over_video ? "1" : "0"}, {"bullet_title", title},
                                    {"bullet_content", content}}));
}

}  // namespace sim
