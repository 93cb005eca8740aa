#pragma once

#include <string>

#include "framework/model/model_impl.h"

namespace TypedBizModel {
namespace Chat {
// The typed face of the chat state model: its id, methods and events.
class ModelImpl : public framework::ModelImpl {
 public:
  enum Method : uint32_t {
    kFireUnreadVisible = 1178261561,         // 0x463ad839
    kFireScrollToBottom = 106111829,         // 0x6532355
    kSetReminderDisabled = 1221829388,       // 0x48d3a30c
    kSetReminderMsgId = 174928842,           // 0xa6d33ca
    kHasReminder = 92328003,                 // 0x580d043
    kSetTipsPending = 299888644,             // 0x11dff004
    kFlushTipsPending = 763807169,           // 0x2d86c5c1
    kSetSecondMsgId = 930535670,             // 0x3776d8f6
    kHasSecondMsgId = 545245409,             // 0x207fc8e1
    kSetInputDraft = 898330509,              // 0x358b6f8d
    kGetInputDraft = 304022665,              // 0x121f0489
    kSetBulletDraft = 627967063,             // 0x256e0457
    kGetBulletDraft = 460618874,             // 0x1b747c7a
    kSetSharedValue = 186161225,             // 0xb189849
    kGetSharedValue = 1015205842,            // 0x3c82cfd2
  };
  enum Event : uint32_t {
    kEventScrollToBottom = 150614097,
    kEventUnreadVisible = 150945945,
    kEventTipsPending = 918107302,
  };
  using framework::ModelImpl::ModelImpl;
};
}  // namespace Chat
}  // namespace TypedBizModel

namespace chat {

// The chat state shared between view models: the reminded message, pending
// tips, and three values that outlive a view (the input draft, the bullet
// draft and one more), cleared when the meeting state says so.
class ChatBizModel : public TypedBizModel::Chat::ModelImpl {
 public:
  ChatBizModel();
  void Init() override;
  void UnInit() override;

  void OnEventMeetingStateReset(Variant const* params);
  void OnEventMeetingEnded(Variant const* params);
  void OnEventMeetingMoved(Variant const* params);
  void OnEventMessageRemoved(Variant const* params);

 private:
  bool ReadBool(Variant const* params, char const* method, bool& out) const;
  // Reads a string param; false (logged as `what`) for anything else.
  static bool ReadString(Variant const* params, char const* what, std::string& out);
  bool FireUnreadVisible(Variant const* params);
  void FlushTipsPending();
  bool SetInputDraft(Variant const* params);
  bool SetBulletDraft(Variant const* params);
  // Hands `value` to a caller that wants an answer.
  static bool Answer(Variant* result, Variant const& value);
  bool IsMeetingOn() const;

  bool reminder_disabled_ = false;
  bool tips_pending_ = false;
  std::string reminder_msg_id_;
  std::string second_msg_id_;
  Variant first_;
  Variant second_;
  Variant third_;
};

}  // namespace chat
