#pragma once

#include <cstdint>
#include <string>

#include "chat/runtime/chat_ids.h"
#include "framework/model/model_impl.h"

namespace TypedBizModel {
namespace ChatMessage {
class ModelImpl : public framework::ModelImpl {
 public:
  using framework::ModelImpl::ModelImpl;
};
}  // namespace ChatMessage
}  // namespace TypedBizModel

namespace chat {

// Turns the client's message records into their UI form: while the client's
// message model converts a record (event 40), this model fills the record's
// `ui_msg_content` ahead of every other subscriber.
class ChatMessageBizModel : public TypedBizModel::ChatMessage::ModelImpl {
 public:
  static constexpr uint32_t kConvertEvent = 40;
  static constexpr int kConvertPriority = 102;

  ChatMessageBizModel() : TypedBizModel::ChatMessage::ModelImpl(kChatMessageBizModelId) {}
  void Init() override;
  void UnInit() override;

  // `record` is the client's record, changed in place; `stop` ends the event
  // for a kind the chat doesn't show.
  void OnEventConvertToUIMsg(Variant const* record, bool& stop);

  static void ParseImageMessageContent(Variant const& element, Variant const& ext, Variant& result,
                                       std::string const& meeting_id, uint64_t local_msg_id);
  static void ParseNoticeMessageContent(Variant const& ext, Variant& result);
  static void ParseOpenAppMessage(Variant const& ext, Variant& result);
  static void ParseFileMessageContent(Variant const& ext, Variant& result);
  // The line under a file's name: its size and what its state says.
  static std::string FileStatusText(Variant const& file_info);
};

}  // namespace chat
