#include "chat/runtime/chat_model_provider.h"

#include "chat/biz_model/chat_biz_model.h"
#include "chat/biz_model/chat_in_live_biz_model.h"
#include "chat/biz_model/chat_message_biz_model.h"
#include "chat/biz_model/chat_send_message_biz_model.h"
#include "chat/biz_model/meeting_notice_biz_model.h"
#include "chat/model/meeting_notice_model.h"
#include "chat/model/send_button_config_model.h"
#include "chat/runtime/chat_ids.h"

namespace chat {

void ChatModelProvider::Init() {
  framework::ModelProviderBaseImpl::Init();
  ModelOf(kChatSendMessageBizModelId);
  ModelOf(kChatMessageBizModelId);
}

framework::ModelPtr ChatModelProvider::Build(int id) {
  switch (id) {
    case kSendButtonConfigModelId:
      return std::make_shared<SendButtonConfigModel>();
    case kChatInLiveBizModelId:
      return std::make_shared<ChatInLiveBizModel>();
    case kChatMessageBizModelId:
      return std::make_shared<ChatMessageBizModel>();
    case kMeetingNoticeModelId:
      return std::make_shared<MeetingNoticeModel>();
    case kMeetingNoticeBizModelId:
      return std::make_shared<MeetingNoticeBizModel>(runtime_);
    case kChatSendMessageBizModelId:
      return std::make_shared<ChatSendMessageBizModel>(runtime_);
    case kChatBizModelId:
      return std::make_shared<ChatBizModel>();
    default:
      return nullptr;
  }
}

}  // namespace chat
