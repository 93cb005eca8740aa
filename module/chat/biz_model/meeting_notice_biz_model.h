#pragma once

#include "chat/runtime/chat_ids.h"
#include "framework/model/model_impl.h"

namespace chat {

// Publishes, edits and clears the meeting notice.
class MeetingNoticeBizModel : public framework::ModelImpl {
 public:
  MeetingNoticeBizModel() : framework::ModelImpl(kMeetingNoticeBizModelId) {}
};

}  // namespace chat
