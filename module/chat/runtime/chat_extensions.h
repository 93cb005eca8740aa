#pragma once

#include <set>
#include <string>

#include "chat/model/chat_message.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/extension/extension.h"

namespace chat {

// An extension whose item is shown by one kind of view model.
class ChatModuleExtension : public talvex::ModuleExtension {
 public:
  explicit ChatModuleExtension(ChatViewModelType view_model) : view_model_(view_model) {}
  int InnerHandleGetItem(Variant* item) override { return view_model_; }

 private:
  ChatViewModelType view_model_;
};

// The chat button of the toolbar: visible as the client last said.
class ChatExtension : public ChatModuleExtension {
 public:
  ChatExtension() : ChatModuleExtension(kViewModelChatIcon) {}
  void InnerHandleItem(Variant* item) override;
};

class ChatTabForSidebarExtension : public ChatModuleExtension {
 public:
  ChatTabForSidebarExtension() : ChatModuleExtension(kViewModelChatSidebarTab) {}
};

class ChatBroadcastExtension : public ChatModuleExtension {
 public:
  ChatBroadcastExtension() : ChatModuleExtension(kViewModelChatBroadcast) {}
};

class InMeetingBulletExtension : public ChatModuleExtension {
 public:
  InMeetingBulletExtension() : ChatModuleExtension(kViewModelInMeetingBullet) {}
};

// The image, file, emoji and notice buttons beside the input.
class ChatSendCommonExtension : public ChatModuleExtension {
 public:
  ChatSendCommonExtension() : ChatModuleExtension(kViewModelSendCommon) {}
};

class ChatPanelHistoryListExtension : public ChatModuleExtension {
 public:
  ChatPanelHistoryListExtension() : ChatModuleExtension(kViewModelPanelHistoryList) {}
};

class ChatRecordPanelHistoryListExtension : public ChatModuleExtension {
 public:
  ChatRecordPanelHistoryListExtension() : ChatModuleExtension(kViewModelRecordPanelHistoryList) {}
};

class ChatPanelInputExtension : public ChatModuleExtension {
 public:
  ChatPanelInputExtension() : ChatModuleExtension(kViewModelPanelInput) {}
};

// A row of the message list. It activates only for a message (`msg_id`)
// of its own kinds of `chat_type`; an empty set takes every message.
class ChatMessageExtension : public ChatModuleExtension {
 public:
  ChatMessageExtension(ChatViewModelType view_model, std::set<int> chat_types)
      : ChatModuleExtension(view_model), chat_types_(std::move(chat_types)) {}
  void InnerHandleItem(Variant* item) override;
  void OnContributesActivate(long view, Variant const* params) override;

 private:
  std::set<int> chat_types_;
};

class ChatNoticeMessageExtension : public ChatMessageExtension {
 public:
  ChatNoticeMessageExtension() : ChatMessageExtension(kViewModelNoticeMessage, {ToInt(ChatType::kNotice)}) {}
};

class ChatOpenappMessageExtension : public ChatMessageExtension {
 public:
  ChatOpenappMessageExtension() : ChatMessageExtension(kViewModelOpenappMessage, {ToInt(ChatType::kOpenApp)}) {}
};

class ChatFileMessageExtension : public ChatMessageExtension {
 public:
  ChatFileMessageExtension() : ChatMessageExtension(kViewModelFileMessage, {ToInt(ChatType::kFile)}) {}
};

class ChatFaceMessageExtension : public ChatMessageExtension {
 public:
  ChatFaceMessageExtension() : ChatMessageExtension(kViewModelFaceMessage, {ToInt(ChatType::kFace)}) {}
};

// Time tips and notices of the list are rows without a kind of their own.
class ChatTipMessageExtension : public ChatMessageExtension {
 public:
  ChatTipMessageExtension() : ChatMessageExtension(kViewModelTipMessage, {}) {}
};

class ChatTextMessageExtension : public ChatMessageExtension {
 public:
  ChatTextMessageExtension() : ChatMessageExtension(kViewModelTextMessage, {ToInt(ChatType::kText), ToInt(ChatType::kPlainText), ToInt(ChatType::kMixed)}) {}
};

class ChatImageMessageExtension : public ChatMessageExtension {
 public:
  ChatImageMessageExtension() : ChatMessageExtension(kViewModelImageMessage, {ToInt(ChatType::kImage)}) {}
};

// The entries of the member list's quick-operation menu.
class PrivateTalkQuickOperationMenuExtension : public ChatModuleExtension {
 public:
  PrivateTalkQuickOperationMenuExtension() : ChatModuleExtension(kViewModelQuickOperation) {}
};

class ChatPermissionsQuickOperationMenuExtension : public ChatModuleExtension {
 public:
  ChatPermissionsQuickOperationMenuExtension() : ChatModuleExtension(kViewModelQuickOperation) {}
};

class HistoryMessageQuickOperationMenuExtension : public ChatModuleExtension {
 public:
  HistoryMessageQuickOperationMenuExtension() : ChatModuleExtension(kViewModelQuickOperation) {}
};

}  // namespace chat
