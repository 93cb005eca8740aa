#pragma once

#include <cstdint>

// The numbers the chat module answers to and calls. The module's own model
// and service ids are distinct from the client's model ids.
namespace chat {

enum ChatModelId : int {
  kSendButtonConfigModelId = 22544178,      // 0x157ff32
  kChatInLiveBizModelId = 215793732,        // 0xcdcc044
  kChatMessageBizModelId = 321749439,       // 0x132d81bf
  kMeetingNoticeModelId = 632276380,        // 0x25afc59c
  kMeetingNoticeBizModelId = 841113345,     // 0x32225f01
  kChatSendMessageBizModelId = 894662031,   // 0x3553758f
  kChatBizModelId = 1144207436,             // 0x4433384c
};

enum ChatServiceId : int {
  kChatUIAssistantServiceId = 351964787,  // 0x14fa8e73
};

// The client's models, by the number the client gives them.
enum HostModelId : int {
  kHostMeetingSettingsModel = 502,
  kHostNetworkModel = 504,
  kHostMemberModel = 508,
  kHostMeetingModel = 514,
  kHostSettingsModel = 517,
  kHostChatMessageModel = 524,
  kHostAuthorityModel = 526,
  kHostPrivateChatModel = 528,
  kHostFaceModel = 570,
  kHostSidebarAppModel = 641,
  kHostChatFileModel = 10009,
  kHostCellHeightModel = 10014,
};

// Methods and events of the client's models that several parts of the module call.
constexpr uint32_t kMemberMethodWaitingRoomList = 35;     // kHostMemberModel: who waits in the waiting room
constexpr uint32_t kMemberMethodWaitingRoomMembers = 37;  // kHostMemberModel: the waiting room's member list
constexpr uint32_t kMeetingEventJoined = 1;               // kHostMeetingModel: the meeting is joined
constexpr uint32_t kMeetingEventLeft = 2;                 // kHostMeetingModel: the meeting was left
constexpr uint32_t kMeetingEventRoomChanged = 18;         // kHostMeetingModel: moved to another room
constexpr uint32_t kFileMethodStartDownload = 4;          // kHostChatFileModel: download a message's file
constexpr uint32_t kFileMethodStopDownload = 5;           // kHostChatFileModel: stop that download
constexpr uint32_t kFileMethodIsSupport = 16;             // kHostChatFileModel: whether a kind of file opens
constexpr uint32_t kFileEventMsgChanged = 0;              // kHostChatFileModel: a chat file's transfer moved
constexpr uint32_t kFileEventRecordMsgChanged = 3;        // kHostChatFileModel: a chat record file's transfer moved
constexpr uint32_t kFileEventRevoked = 4;                 // kHostChatFileModel: a file was taken back

constexpr char kModuleName[] = "chat";
constexpr char kMeetingNoticePage[] = "talvex://page/meeting_notice";

}  // namespace chat
