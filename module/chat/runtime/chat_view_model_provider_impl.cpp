#include "chat/runtime/chat_view_model_provider_impl.h"

#include "base/log/log.h"
#include "chat/viewmodel/chat_face_message_view_model.h"
#include "chat/viewmodel/chat_file_message_view_model.h"
#include "chat/viewmodel/chat_image_message_view_model.h"
#include "chat/viewmodel/chat_message_container_view_model.h"
#include "chat/viewmodel/chat_notice_message_view_model.h"
#include "chat/viewmodel/chat_openapp_message_view_model.h"
#include "chat/viewmodel/chat_panel_history_list_view_model.h"
#include "chat/viewmodel/chat_text_message_view_model.h"
#include "chat/viewmodel/chat_tip_message_view_model.h"
#include "chat/viewmodel/chat_input_view_model.h"
#include "chat/viewmodel/file_preview_view_model.h"
#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "chat/viewmodel/meeting_notice_banner_view_model.h"
#include "chat/viewmodel/meeting_notice_view_model.h"
#include "chat/viewmodel/private_chat_members_view_model.h"
#include "chat/viewmodel/view_model_types.h"

namespace chat {

namespace {
template <typename T>
ChatViewModelProviderImpl::Maker Make() {
  return [] { return std::make_shared<T>(); };
}
}  // namespace

ChatViewModelProviderImpl::ChatViewModelProviderImpl(framework::module::ModuleRuntime* runtime)
    : framework::ViewModelProviderBaseImpl(runtime) {
  makers_[kViewModelPanelHistoryList] = Make<ChatPanelHistoryListViewModel>();
  makers_[kViewModelRecordPanelHistoryList] = Make<ChatRecordPanelHistoryListViewModel>();
  makers_[kViewModelTextMessage] = Make<ChatTextMessageViewModel>();
  makers_[kViewModelFaceMessage] = Make<ChatFaceMessageViewModel>();
  makers_[kViewModelImageMessage] = Make<ChatImageMessageViewModel>();
  makers_[kViewModelTipMessage] = Make<ChatTipMessageViewModel>();
  makers_[kViewModelNoticeMessage] = Make<ChatNoticeMessageViewModel>();
  makers_[kViewModelOpenappMessage] = Make<ChatOpenappMessageViewModel>();
  makers_[kViewModelFileMessage] = Make<ChatFileMessageViewModel>();
  makers_[kViewModelMessageContainer] = Make<ChatMessageContainerViewModel>();
  makers_[kViewModelPanelInput] = [] { return std::make_shared<ChatInputViewModel>(); };
  makers_[kViewModelInMeetingBullet] = Make<InMeetingBulletViewModel>();
  makers_[kViewModelPrivateChatMembers] = Make<PrivateChatMembersViewModel>();
  makers_[kViewModelMeetingNotice] = Make<MeetingNoticeViewModel>();
  makers_[kViewModelHistoryMeetingNotice] = Make<HistoryMeetingNoticeViewModel>();
  makers_[kViewModelMeetingNoticeBanner] = Make<MeetingNoticeBannerViewModel>();
  makers_[kViewModelFilePreview] = Make<FilePreviewViewModel>();
}

std::shared_ptr<framework::ViewModel> ChatViewModelProviderImpl::Build(int type) {
  auto it = makers_.find(type);
  if (it == makers_.end()) {
    TXLOG_WARN << "<IM> no chat view model of type " << type;
    return nullptr;
  }
  return it->second();
}

}  // namespace chat
