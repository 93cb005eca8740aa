#include "sim/models/chat_message_model.h"

#include <algorithm>

#include "base/log/log.h"

namespace sim {

ChatMessageModel::ChatMessageModel() : SimModel(kId) {
  SetMethod(38, [this](Variant const* params, Variant* result) {
    if (!params || !params->IsMap()) return false;
    auto it = image_states_.find(params->GetString("local_msg_id"));
    if (result) *result = it == image_states_.end() ? Variant(base::variant::kVariantTypeMap) : it->second;
    return true;
  });
}

bool ChatMessageModel::ReceiveMessage(Variant record) {
  const std::string msg_id = record.GetString("msg_id");
  if (!AddMessage(std::move(record))) return false;
  // Converters change the stored record itself.
  Variant* stored = messages_[msg_id].get();
  return !FireEvent(kEventConvertMessage, stored);
}

void ChatMessageModel::SetImageDownloadState(uint64_t local_msg_id, Variant states) {
  image_states_[std::to_string(local_msg_id)] = std::move(states);
}

std::shared_ptr<Variant> ChatMessageModel::FindMessage(std::string const& msg_id) const {
  auto it = messages_.find(msg_id);
  return it == messages_.end() ? nullptr : it->second;
}

bool ChatMessageModel::AddMessage(Variant record) {
  const std::string msg_id = record.GetString("msg_id");
  if (!record.IsMap() || msg_id.empty()) {
    TXLOG_ERROR << "[sim] message without msg_id refused";
    return false;
  }
  if (!messages_.count(msg_id)) order_.push_back(msg_id);
  messages_[msg_id] = std::make_shared<Variant>(std::move(record));
  return true;
}

void ChatMessageModel::RemoveMessage(std::string const& msg_id) {
  if (messages_.erase(msg_id) == 0) return;
  order_.erase(std::remove(order_.begin(), order_.end(), msg_id), order_.end());
  Variant payload(base::variant::kVariantTypeMap);
  payload.Set("msg_id", msg_id);
  FireEvent(kEventMessageRemoved, &payload);
}

}  // namespace sim
