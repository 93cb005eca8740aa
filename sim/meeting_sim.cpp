#include "sim/meeting_sim.h"

#include "base/log/log.h"
#include "base/util/file_util.h"
#include "framework/config/configure_service.h"
#include "framework/module/module_service.h"
#include "sim/goods_card_layout.h"

namespace sim {

namespace {
// What the meeting's remote configuration says when it says nothing else.
Variant DefaultRemoteConfig() {
  Variant defaults(base::variant::kVariantTypeMap);
  defaults["im"]["msg_input_height"] = 82;
  defaults["im"]["max_text_length"] = 5000;
  defaults["im"]["max_image_size_mb"] = 20;
  defaults["im"]["max_file_size_mb"] = 1024;
  defaults["dyna_layout"]["im_goods_card_layout_qt"] = GoodsCardLayouts();
  return defaults;
}
}  // namespace

MeetingSimulator::MeetingSimulator(SimOptions options)
    : data_dir_(options.data_dir.empty() ? util::file::MakeFilePath(util::file::UserConfigDir(), "talvex")
                                         : options.data_dir),
      remote_config_file_(options.remote_config_file.empty()
                              ? util::file::MakeFilePath(data_dir_, "remote_config.json")
                              : options.remote_config_file),
      application_(std::make_shared<framework::module::ApplicationModule>()),
      meeting_(std::make_shared<MeetingStateModel>()),
      messages_(std::make_shared<ChatMessageModel>()),
      sidebar_(std::make_shared<SidebarAppModel>()),
      cell_height_(std::make_shared<CellHeightModel>()),
      faces_(std::make_shared<FaceModel>()),
      files_(std::make_shared<ChatFileModel>()),
      members_(std::make_shared<MemberModel>()),
      member_provider_(std::make_shared<MemberProviderModel>(*members_)),
      list_records_(std::make_shared<ListRecordModel>(*messages_)),
      notifications_(std::make_shared<MessageNotificationModel>()),
      shield_(std::make_shared<ShieldModel>()),
      settings_(std::make_shared<framework::SettingsModel>(util::file::MakeFilePath(data_dir_, "settings.json"))),
      meeting_settings_(std::make_shared<MeetingSettingsModel>()),
      authority_(std::make_shared<ChatAuthorityModel>(members_.get())),
      private_chats_(std::make_shared<PrivateChatModel>()),
      network_(std::make_shared<NetworkModel>()),
      bullet_settings_(std::make_shared<BulletSettingsModel>(*settings_)),
      screen_share_(std::make_shared<ScreenShareModel>()),
      pic_in_pic_(std::make_shared<PicInPicModel>()),
      tips_db_(std::make_shared<TipsDatabaseModel>()),
      tip_resources_(std::make_shared<TipResourceModel>()),
      red_packets_(std::make_shared<RedPacketModel>()),
      banners_(std::make_shared<BannerModel>()),
      web_meeting_(std::make_shared<WebMeetingModel>(*messages_)),
      send_desk_(std::make_unique<ChatSendDesk>(*messages_, *members_, *files_)),
      notice_service_(std::make_unique<MeetingNoticeService>()) {
  files_->set_messages(messages_.get());
  for (int id : {539, 1000001, 1000020, 622, 647, 590, 610, 591}) {
    plain_models_[id] = std::make_shared<SimModel>(id);
  }
  plain_models_[1000020]->SetMethod(0, [](Variant const* unfolded, Variant*) { return unfolded && unfolded->IsBool(); });
  // The notice's read mark (method 3 {bool}) is kept as the meeting's
  // "notice_read" switch and announced as event 3.
  plain_models_[1000001]->SetMethod(3, [this](Variant const* read, Variant*) {
    if (!read || !read->IsBool()) return false;
    meeting_settings_->SetSwitch("notice_read", read->AsBoolean());
    plain_models_[1000001]->FireEvent(3, *read);
    return true;
  });
  util::file::EnsureDirExist(data_dir_);
}

MeetingSimulator::~MeetingSimulator() { Uninstall(); }

void MeetingSimulator::Install() {
  if (installed_) return;
  application_->RegisterModel(MeetingStateModel::kId, meeting_);
  application_->RegisterModel(ChatMessageModel::kId, messages_);
  application_->RegisterModel(SidebarAppModel::kId, sidebar_);
  application_->RegisterModel(CellHeightModel::kId, cell_height_);
  application_->RegisterModel(framework::SettingsModel::kModelId, settings_);
  application_->RegisterModel(FaceModel::kId, faces_);
  application_->RegisterModel(ChatFileModel::kId, files_);
  application_->RegisterModel(MemberModel::kId, members_);
  application_->RegisterModel(MemberProviderModel::kId, member_provider_);
  application_->RegisterModel(ListRecordModel::kId, list_records_);
  application_->RegisterModel(MessageNotificationModel::kId, notifications_);
  application_->RegisterModel(ShieldModel::kId, shield_);
  application_->RegisterModel(MeetingSettingsModel::kId, meeting_settings_);
  application_->RegisterModel(ChatAuthorityModel::kId, authority_);
  application_->RegisterModel(PrivateChatModel::kId, private_chats_);
  application_->RegisterModel(NetworkModel::kId, network_);
  application_->RegisterModel(WebMeetingModel::kId, web_meeting_);
  for (std::shared_ptr<SimModel> model : std::initializer_list<std::shared_ptr<SimModel>>{
           bullet_settings_, screen_share_, pic_in_pic_, tips_db_, tip_resources_, red_packets_, banners_}) {
    application_->RegisterModel(model->type(), model);
  }
  for (auto const& [id, model] : plain_models_) application_->RegisterModel(id, model);
  auto* configure = talvexsdk::utils::service::GetConfigureService();
  configure->SetDefaults(DefaultRemoteConfig());
  configure->LoadFile(remote_config_file_);
  framework::module::GetModuleService()->SetApplicationModule(application_);
  talvexsdk::utils::service::SetMeetingService(notice_service_.get());
  talvex::MeetingContext::Reset();
  auto& self = talvex::MeetingContext::Current();
  self.self_user_id = "u-self";
  self.self_app_id = "1400";
  self.self_app_uid = "u-self";
  self.nickname = "Alex Morgan";
  installed_ = true;
  TXLOG_INFO << "[sim] meeting installed with " << application_->ModelIds().size() << " models";
}

void MeetingSimulator::Uninstall() {
  if (!installed_) return;
  auto* service = framework::module::GetModuleService();
  if (service->GetApplicationModule() == application_.get()) service->SetApplicationModule(nullptr);
  application_->Clear();
  if (talvexsdk::utils::service::GetMeetingService() == notice_service_.get()) {
    talvexsdk::utils::service::SetMeetingService(nullptr);
  }
  talvex::MeetingContext::Reset();
  installed_ = false;
}

SimModel& MeetingSimulator::model(int id) {
  if (id == ShieldModel::kId) return *shield_;
  if (id == BulletSettingsModel::kId) return *bullet_settings_;
  if (id == TipsDatabaseModel::kId) return *tips_db_;
  if (id == ScreenShareModel::kId) return *screen_share_;
  if (id == PicInPicModel::kId) return *pic_in_pic_;
  if (id == RedPacketModel::kId) return *red_packets_;
  if (id == BannerModel::kId) return *banners_;
  if (id == MemberProviderModel::kId) return *member_provider_;
  if (id == WebMeetingModel::kId) return *web_meeting_;
  auto& slot = plain_models_[id];
  if (!slot) slot = std::make_shared<SimModel>(id);
  return *slot;
}

void MeetingSimulator::RemoveModel(int id) { application_->UnregisterModel(id); }

void MeetingSimulator::SetRecording(bool on) {
  for (int id : application_->ModelIds()) {
    if (auto model = std::dynamic_pointer_cast<SimModel>(application_->GetModel(id))) model->SetRecording(on);
  }
  for (auto& [id, model] : plain_models_) model->SetRecording(on);
}

}  // namespace sim
