#include "sim/models/meeting_state_model.h"

#include "framework/meeting/meeting_context.h"

namespace sim {

MeetingStateModel::MeetingStateModel() : SimModel(kId) {
  SetMethod(0, [this](Variant const*, Variant* result) {
    if (result) *result = on_;
    return true;
  });
  SetMethod(3, [this](Variant const*, Variant* result) {
    if (result) *result = on_;
    return true;
  });
  SetMethod(11, [this](Variant const*, Variant* result) {
    if (result) *result = display_state_;
    return true;
  });
  SetMethod(54, [this](Variant const*, Variant* result) {
    if (result) *result = abilities_;
    return true;
  });
}

void MeetingStateModel::Join(int result) {
  on_ = result == 0;
  auto& context = talvex::MeetingContext::Current();
  if (on_) {
    context.joined = true;
    context.meeting_id = std::stoull(meeting_id_);
  }
  Variant payload(base::variant::kVariantTypeMap);
  payload.Set("result", result);
  payload.Set("meeting_id", meeting_id_);
  FireEvent(kEventJoined, &payload);
}

void MeetingStateModel::Leave(int result) {
  on_ = false;
  talvex::MeetingContext::Current().joined = false;
  Variant payload(base::variant::kVariantTypeMap);
  payload.Set("result", result);
  FireEvent(kEventLeft, &payload);
}

void MeetingStateModel::MoveToWaitingRoom() { FireEvent(kEventMoved, nullptr); }

}  // namespace sim
