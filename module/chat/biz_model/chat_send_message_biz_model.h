#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "chat/model/chat_message.h"
#include "chat/runtime/chat_ids.h"
#include "framework/model/model_impl.h"

namespace framework::module {
class ModuleRuntime;
}

namespace TypedBizModel {
namespace ChatSendMessage {
// The typed face of the send model: its methods and events.
class ModelImpl : public framework::ModelImpl {
 public:
  enum Method : uint32_t {
    kSendTextMessage = 799784748,   // 0x2fabbf2c
    kSendImageMessage = 436483197,  // 0x1a04347d
    kSendFileMessage = 190514483,   // 0xb5b0533
  };
  enum Event : uint32_t {
    kEventSendRefused = 998861097,   // 0x3b896929, string: the text a user reads
    kEventSendReminder = 187168662,  // 0xb27f796, {message_info, send_type}
    kEventMixedSent = 601504210,     // 0x23da39d2, null
  };
  explicit ModelImpl(int type = 0);

  virtual bool InvokeSendTextMessage(Variant const* params, Variant* result) = 0;
  virtual bool InvokeSendImageMessage(Variant const* params, Variant* result) = 0;
  virtual bool InvokeSendFileMessage(Variant const* params, Variant* result) = 0;
};
}  // namespace ChatSendMessage
}  // namespace TypedBizModel

namespace chat {

// Input keys of a send.
constexpr char kSendFieldText[] = "ChatInputSendMessageFields_kStringMsgItemMsgText";
constexpr char kSendFieldImagePath[] = "ChatInputSendMessageFields_kStringMsgItemMsgImagePath";
constexpr char kSendFieldItemType[] = "ChatInputSendMessageFields_kIntegerMsgItemItemType";
constexpr char kSendFieldImageFormat[] = "ChatInputSendMessageFields_kIntegerMsgItemImageElemFormat";
constexpr char kSendFieldImageLevel[] = "ChatInputSendMessageFields_kIntegerMsgItemImageElemLevel";

// Turns what the input hands over (text, a picture, files, or a mixed list of
// text and pictures) into send calls on the client's message model (524),
// after the public-send reminder, the receiver's authorization, the meeting's
// and the organization's permissions and the limits. A refusal the user must
// see goes out as one event with its text; the sent message comes back
// through the client's message events.
class ChatSendMessageBizModel : public TypedBizModel::ChatSendMessage::ModelImpl {
 public:
  explicit ChatSendMessageBizModel(framework::module::ModuleRuntime* runtime = nullptr);
  ~ChatSendMessageBizModel() override;

  void Init() override;
  void UnInit() override;

  bool InvokeSendTextMessage(Variant const* params, Variant* result) override;
  bool InvokeSendImageMessage(Variant const* params, Variant* result) override;
  bool InvokeSendFileMessage(Variant const* params, Variant* result) override;

  // Priority event 34 of the message model: a list of text and picture
  // items, sent as separate messages in list order.
  void SendMixedMessage(Variant const* items);

  // Whether the chosen receiver may be written to now; tells the user why not.
  bool CheckAuthorizeBeforeSendAction();

 private:
  struct Conversation {
    int receiver_type = ToInt(ReceiverType::kNone);
    int conv_type = ToInt(ConvType::kGroup);
    std::string conv_id;
  };
  // A send about to be made: the chosen receiver, its type and conversation,
  // and the request with the conversation's keys filled in.
  struct SendRequest {
    Variant receiver;
    int receiver_type = ToInt(ReceiverType::kNone);
    Conversation conv;
    Variant params;
  };
  // The request for the chosen receiver; none (logged) when there is no
  // receiver to send to.
  std::optional<SendRequest> BeginSend();
  // A path in `dir` for `name` that no file has and no staging of this model
  // has taken: two files of one name staged in one millisecond get two paths.
  std::string UniqueTarget(std::string const& dir, std::string const& name);
  // Hands a send to the client's message model; false (logged) without one.
  // `msg_id` is the id the client gave the message, or "".
  bool PostToMessageModel(uint32_t method, Variant const& send, char const* what, std::string* msg_id);

  void Refuse(std::string const& text);
  void RefuseById(uint32_t text_id);
  void ReportSendToWaitingRoom();
  bool CheckReminderBeforeSend(Variant const& params, int send_type);
  Conversation CurrentConversation(Variant const& receiver) const;
  void ReportWebinarSend(Variant const& receiver, int receiver_type);
  void ReportSend(char const* message_type, Conversation const& conv, Variant const& receiver);

  void HandleSendTextMessage(std::string const& text, int template_type);
  bool IsPrivateChatCanSendImage(bool notify);
  bool IsEnterpriseCanSendImageMessage(bool notify);
  bool IsEnterpriseCanSendFileMessage();
  bool CheckSendImage(std::string const& path, Variant const& params);
  void HandleSendImageMessage(std::string const& path, Variant const& params, int template_type);
  // The checks and the copy of a picture send; the picture goes out when its
  // copy is staged. `after_copy` runs once the copy has answered, and only
  // when `*copying` comes back true.
  bool SendImage(Variant const* params, std::function<void()> after_copy, bool* copying);
  // Hands the queued pieces of mixed sends to the client in input order; a
  // picture holds back what follows it until its copy is staged.
  void SendQueuedMixedPieces();
  bool GenerateNewFilePath(std::vector<std::string>& paths_out, std::vector<std::string> const& paths);
  void HandleSendFileMessage(Variant const& params, std::string const& path);

  framework::module::ModuleRuntime* runtime_;
  // Copies answer later; a model that went by then does nothing.
  std::shared_ptr<bool> alive_;
  std::deque<Variant> mixed_queue_;
  bool mixed_copy_in_flight_ = false;
  std::set<std::string> reserved_targets_;
};

}  // namespace chat
