#pragma once

#include <map>
#include <memory>
#include <string>

#include "framework/meeting/meeting_context.h"
#include "framework/module/app_module.h"
#include "framework/settings/settings_model.h"
#include "sim/chat_send_desk.h"
#include "sim/meeting_notice_service.h"
#include "sim/models/chat_authority_model.h"
#include "sim/models/chat_file_model.h"
#include "sim/models/chat_message_model.h"
#include "sim/models/face_model.h"
#include "sim/models/list_record_model.h"
#include "sim/models/meeting_settings_model.h"
#include "sim/models/meeting_state_model.h"
#include "sim/models/network_model.h"
#include "sim/models/overlay_models.h"
#include "sim/models/private_chat_model.h"
#include "sim/models/member_model.h"
#include "sim/models/member_provider_model.h"
#include "sim/models/sidebar_app_model.h"
#include "sim/models/web_meeting_model.h"

namespace sim {

struct SimOptions {
  // Where the simulated client keeps its files (settings, configuration);
  // empty: the user's config directory.
  std::string data_dir;
  // The remote configuration file; empty: "<data_dir>/remote_config.json".
  std::string remote_config_file;
};

// The meeting behind the client's models. Install() puts its models into the
// client's application registry and makes the application available;
// Uninstall() takes them out again.
class MeetingSimulator {
 public:
  explicit MeetingSimulator(SimOptions options = {});
  ~MeetingSimulator();
  MeetingSimulator(MeetingSimulator const&) = delete;
  MeetingSimulator& operator=(MeetingSimulator const&) = delete;

  void Install();
  void Uninstall();
  bool installed() const { return installed_; }

  // Takes one model out of the registry (a client without it).
  void RemoveModel(int id);
  // Whether every simulated model keeps the calls it takes (on): tests read
  // them, a long run would only pile them up.
  void SetRecording(bool on);

  // The client's view of the meeting and of its own user; Install() sets a
  // local user ("u-self", "Alex Morgan") in meeting 801234567, not yet joined.
  talvex::MeetingContext& context() { return talvex::MeetingContext::Current(); }

  MeetingStateModel& meeting() { return *meeting_; }
  ChatMessageModel& messages() { return *messages_; }
  SidebarAppModel& sidebar() { return *sidebar_; }
  CellHeightModel& cell_height() { return *cell_height_; }
  FaceModel& faces() { return *faces_; }
  ChatFileModel& files() { return *files_; }
  MemberModel& members() { return *members_; }
  MemberProviderModel& member_provider() { return *member_provider_; }
  ListRecordModel& list_records() { return *list_records_; }
  MessageNotificationModel& notifications() { return *notifications_; }
  ShieldModel& shield() { return *shield_; }
  framework::SettingsModel& settings() { return *settings_; }
  MeetingSettingsModel& meeting_settings() { return *meeting_settings_; }
  ChatAuthorityModel& authority() { return *authority_; }
  PrivateChatModel& private_chats() { return *private_chats_; }
  NetworkModel& network() { return *network_; }
  ChatSendDesk& send_desk() { return *send_desk_; }
  // The meeting service's notice, installed as the client's meeting service.
  MeetingNoticeService& notices() { return *notice_service_; }
  BulletSettingsModel& bullet_settings() { return *bullet_settings_; }
  ScreenShareModel& screen_share() { return *screen_share_; }
  PicInPicModel& pic_in_pic() { return *pic_in_pic_; }
  TipsDatabaseModel& tips_db() { return *tips_db_; }
  RedPacketModel& red_packets() { return *red_packets_; }
  BannerModel& banners() { return *banners_; }
  // Model 584: the meeting's chat as web pages read it.
  WebMeetingModel& web_meeting() { return *web_meeting_; }
  // Models the chat follows that nothing else of the meeting drives yet,
  // fired by hand: 539 and 1000001 (notice state; method 3 {bool} keeps the
  // read mark as the "notice_read" switch), 1000020 (method 0 {bool}:
  // the overlay is unfolded), 622 (1 room switching began, 2 ended), 647 (13:
  // a shared document is edited), 590 (0: the chat panel came back), 610 (0:
  // webinar roles changed), 591 (4: full screen); and by their ids the typed
  // ones (523, 530, 690, ...).
  SimModel& model(int id);
  std::shared_ptr<framework::module::ApplicationModule> const& application() const { return application_; }
  std::string const& data_dir() const { return data_dir_; }

 private:
  std::string data_dir_;
  std::string remote_config_file_;
  bool installed_ = false;
  std::shared_ptr<framework::module::ApplicationModule> application_;
  std::shared_ptr<MeetingStateModel> meeting_;
  std::shared_ptr<ChatMessageModel> messages_;
  std::shared_ptr<SidebarAppModel> sidebar_;
  std::shared_ptr<CellHeightModel> cell_height_;
  std::shared_ptr<FaceModel> faces_;
  std::shared_ptr<ChatFileModel> files_;
  std::shared_ptr<MemberModel> members_;
  std::shared_ptr<MemberProviderModel> member_provider_;
  std::shared_ptr<ListRecordModel> list_records_;
  std::shared_ptr<MessageNotificationModel> notifications_;
  std::shared_ptr<ShieldModel> shield_;
  std::shared_ptr<framework::SettingsModel> settings_;
  std::shared_ptr<MeetingSettingsModel> meeting_settings_;
  std::shared_ptr<ChatAuthorityModel> authority_;
  std::shared_ptr<PrivateChatModel> private_chats_;
  std::shared_ptr<NetworkModel> network_;
  std::shared_ptr<BulletSettingsModel> bullet_settings_;
  std::shared_ptr<ScreenShareModel> screen_share_;
  std::shared_ptr<PicInPicModel> pic_in_pic_;
  std::shared_ptr<TipsDatabaseModel> tips_db_;
  std::shared_ptr<TipResourceModel> tip_resources_;
  std::shared_ptr<RedPacketModel> red_packets_;
  std::shared_ptr<BannerModel> banners_;
  std::shared_ptr<WebMeetingModel> web_meeting_;
  std::map<int, std::shared_ptr<SimModel>> plain_models_;
  std::unique_ptr<ChatSendDesk> send_desk_;
  std::unique_ptr<MeetingNoticeService> notice_service_;
};

}  // namespace sim
