#pragma once

namespace chat {

// The numbers by which the client asks the module for a view model: each
// extension names the view model that shows it.
enum ChatViewModelType : int {
  kViewModelNone = 0,
  kViewModelChatIcon = 1001,
  kViewModelChatSidebarTab = 1002,
  kViewModelChatBroadcast = 1003,
  kViewModelInMeetingBullet = 1004,
  kViewModelSendCommon = 1005,
  kViewModelNoticeMessage = 1010,
  kViewModelOpenappMessage = 1011,
  kViewModelFileMessage = 1012,
  kViewModelFaceMessage = 1013,
  kViewModelTipMessage = 1014,
  kViewModelTextMessage = 1015,
  kViewModelImageMessage = 1016,
  kViewModelMessageContainer = 1017,
  kViewModelPanelHistoryList = 1020,
  kViewModelRecordPanelHistoryList = 1021,
  kViewModelPanelInput = 1022,
  kViewModelPrivateChatMembers = 1023,
  kViewModelMeetingNotice = 1024,
  kViewModelHistoryMeetingNotice = 1025,
  kViewModelMeetingNoticeBanner = 1026,
  kViewModelFilePreview = 1027,
  kViewModelQuickOperation = 1030,
};

}  // namespace chat
