#pragma once

#include "chat/runtime/chat_ids.h"
#include "framework/model/model_impl.h"

namespace chat {

// The meeting notice with its version and read mark.
class MeetingNoticeModel : public framework::ModelImpl {
 public:
  MeetingNoticeModel() : framework::ModelImpl(kMeetingNoticeModelId) {}
};

}  // namespace chat
