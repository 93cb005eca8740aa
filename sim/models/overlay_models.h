#pragma once

#include <string>
#include <vector>

#include "framework/settings/settings_model.h"
#include "sim/models/sim_model.h"

// The client's models the floating chat follows beside the message model.
namespace sim {

// Model 523: the bullet settings, kept in the client's settings store (517)
// so that they outlive the meeting.
//   method 14 -> {is_show_bullet_enabled}, 16 -> {is_new_msg_bullet_enabled}
//   method 13 (bool) stores the fold choice
//   method 1 -> {allow_emoji}: webinar attendees may send reactions
// Events: 8 {is_show_bullet_enabled} and 9 {is_new_msg_bullet_enabled} when a
// setting changes from outside the overlay, 0 when any host setting changed.
class BulletSettingsModel : public SimModel {
 public:
  static constexpr int kId = 523;
  static constexpr char kShowKey[] = "meeting.bullet.show";
  static constexpr char kNewMsgKey[] = "meeting.bullet.new_msg";
  explicit BulletSettingsModel(framework::SettingsModel& store);
  bool show_bullet() const;
  bool new_msg_bullet() const;
  // The user changes the settings in the client's settings page.
  void SetShowBullet(bool show);
  void SetNewMsgBullet(bool show);
  void SetAllowEmoji(bool allow);

 private:
  bool Read(char const* key) const;
  void Write(char const* key, bool value);
  framework::SettingsModel& store_;
  bool allow_emoji_ = true;
};

// Model 1000021: the local user's screen share. Method 2 -> bool, sharing.
class ScreenShareModel : public SimModel {
 public:
  static constexpr int kId = 1000021;
  ScreenShareModel();
  // Also puts the client in (or out of) its screen-share mode.
  void SetSelfSharing(bool sharing);
};

// Model 597: picture-in-picture. Method 7 -> {state} (0 on), 8 fills {tips},
// 12 {state, from} switches it.
class PicInPicModel : public SimModel {
 public:
  static constexpr int kId = 597;
  PicInPicModel();
  int state() const { return state_; }

 private:
  int state_ = 1;
};

// Model 690: the webinar tips database.
//   method 3 -> the system tip configuration {show_times,
//     show_times_in_meeting, play_duration (minutes), theme1..3}
//   method 6 {tips_type} -> answered as event 1: the tips of that type shown
//     so far (an array), null when none was ever shown
//   method 7 {meeting_id, role_type, tips_type} records a showing
class TipsDatabaseModel : public SimModel {
 public:
  static constexpr int kId = 690;
  TipsDatabaseModel();
  void SetConfig(Variant config) { config_ = std::move(config); }
  size_t shown_count() const { return shown_.size(); }

 private:
  Variant config_;
  std::vector<Variant> shown_;
};

// Model 571: tip texts by resource index. Method 0 (index) -> string.
class TipResourceModel : public SimModel {
 public:
  static constexpr int kId = 571;
  TipResourceModel();
};

// Model 1000004: red packets. Event 0 fires an array: a packet sent
// {msg_type 3, msg_is_self, sender_info, ticket} or opened
// {msg_type 4, sender_is_self, receiver_is_self, sender_info, receiver_info,
// ticket}.
class RedPacketModel : public SimModel {
 public:
  static constexpr int kId = 1000004;
  RedPacketModel() : SimModel(kId) {}
  // `from` sends a packet; returns its ticket.
  std::string Send(Variant const& from);
  // `receiver` opens the packet `from` sent.
  void Open(std::string const& ticket, Variant const& from, Variant const& receiver);

 private:
  int next_ticket_ = 1;
};

// Model 10054: the meeting's notification banners. Event 0 {notify_type,
// banner_id, sync_bullet ("0": not over the video), bullet_title,
// bullet_content}.
class BannerModel : public SimModel {
 public:
  static constexpr int kId = 10054;
  BannerModel() : SimModel(kId) {}
  void Notify(int banner_id, std::string const& title, std::string const& content, bool over_video = true);
};

}  // namespace sim
