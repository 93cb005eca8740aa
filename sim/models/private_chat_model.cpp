#include "sim/models/private_chat_model.h"

namespace sim {

PrivateChatModel::PrivateChatModel() : SimModel(kId) {
  SetMethod(1, [this](Variant const*, Variant* result) {
    if (result) *result = receiver_;
    return true;
  });
  SetMethod(2, [this](Variant const* params, Variant*) {
    SetReceiver(params ? *params : Variant());
    return true;
  });
  SetMethod(3, [](Variant const* params, Variant* result) {
    if (!params || !params->IsMap()) return false;
    std::string peer = params->GetString("user_id");
    if (peer.empty()) peer = params->GetString("app_uid");
    if (peer.empty()) return false;
    if (result) *result = "c2c_" + peer;
    return true;
  });
}

void PrivateChatModel::SetReceiver(Variant receiver) {
  receiver_ = std::move(receiver);
  FireEvent(0, receiver_);
}

}  // namespace sim
