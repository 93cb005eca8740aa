#include "sim/models/chat_message_model.h"

#include <algorithm>

#include "base/log/log.h"
#include "base/threading/looper.h"
#include "base/util/time_util.h"
#include "framework/meeting/meeting_context.h"
#include "sim/chat_records.h"

namespace sim {

ChatMessageModel::ChatMessageModel() : SimModel(kId) {
  SetMethod(62, [this](Variant const* params, Variant*) {
    if (!params || !params->IsMap()) return false;
    ++history_requests_;
    Variant page = HistoryPage(*params);
    if (history_synchronous_) {
      FireEvent(kEventMessageList, &page);
      return true;
    }
    // The answer comes on a later turn, unless the model is gone by then.
    std::weak_ptr<bool> alive = alive_;
    base::threading::LooperThread::MainLooper()->PostTask([this, alive, page] {
      if (alive.lock()) FireEvent(kEventMessageList, &page);
    });
    return true;
  });
  SetMethod(32, [this](Variant const* params, Variant*) {
    return params && params->IsMap() && !params->GetString("uuid").empty();
  });
  SetMethod(18, [this](Variant const*, Variant* result) {
    if (result) *result = chat_key_ready_;
    return true;
  });
  SetMethod(65, [this](Variant const* msg_id, Variant*) { return msg_id && msg_id->IsString() && Revoke(msg_id->AsStr()); });
  SetMethod(66, [this](Variant const* msg_id, Variant*) { return msg_id && msg_id->IsString() && Delete(msg_id->AsStr()); });
  SetMethod(45, [](Variant const*, Variant* result) {
    if (result) *result = "im-" + talvex_common::utils::GetStrMeetingId();
    return true;
  });
  SetMethod(46, [this](Variant const*, Variant* result) {
    if (result) *result = webinar_unread_;
    return true;
  });
  SetMethod(12, [this](Variant const*, Variant*) {
    if (webinar_unread_ == 0) return true;
    webinar_unread_ = 0;
    FireEvent(kEventUnreadChanged, nullptr);
    return true;
  });
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

namespace sim {

Variant ChatMessageModel::HistoryPage(Variant const& params) {
  const std::string meeting_id = params.GetString("meeting_id");
  const uint64_t before = params.GetUint64("msg_id");
  const size_t limit = static_cast<size_t>(std::max<int64_t>(0, params.GetInteger("limit", 50)));
  Variant page(base::variant::kVariantTypeMap);
  page.Set("meeting_id", meeting_id);
  page.Set("from_msg_id", before);
  page.Set("result", fail_next_page_);
  Variant ids(base::variant::kVariantTypeArray);
  if (fail_next_page_ == 0) {
    std::vector<std::string> matching;
    for (auto const& id : order_) {
      Variant const& record = *messages_.at(id);
      if (record.GetBoolean("is_local")) continue;
      const std::string conv = record.Has("in_meeting_info") ? record.Get("in_meeting_info").Get("meeting_id").ToString()
                                                             : record.GetString("conv_id");
      if (conv != meeting_id) continue;
      if (before != 0 && record.GetUint64("local_msg_id") >= before) continue;
      matching.push_back(id);
    }
    const size_t start = matching.size() > limit ? matching.size() - limit : 0;
    for (size_t i = start; i < matching.size(); ++i) ids.Add(matching[i]);
  }
  fail_next_page_ = 0;
  page.Set("msg_id_list", std::move(ids));
  return page;
}

std::string ChatMessageModel::Post(Variant record) {
  if (!record.IsMap()) return {};
  if (!record.Has("local_msg_id")) record.Set("local_msg_id", next_local_id_++);
  if (!record.Has("msg_id")) record.Set("msg_id", "msg-" + std::to_string(record.GetUint64("local_msg_id")));
  if (!record.Has("message_time")) record.Set("message_time", util::time::GetServerTimestamp());
  if (!record.Has("message_status")) record.Set("message_status", 2);
  const std::string id = record.GetString("msg_id");
  // The floating chat hears of it as it came over the wire, before the
  // client's conversion rewrote the stored record.
  const bool from_others = !record.GetBoolean("message_is_from_self") && !record.GetBoolean("is_local");
  Variant form = from_others ? BulletFormOf(record) : Variant();
  if (!ReceiveMessage(std::move(record))) return {};
  Variant payload(id);
  FireEvent(kEventMessageAdded, &payload);
  if (from_others) {
    ++webinar_unread_;
    Variant list(base::variant::kVariantTypeArray);
    list.Add(std::move(form));
    Variant arrived(base::variant::kVariantTypeMap);
    arrived.Set("new_msg_list", std::move(list));
    FireEvent(kEventReceived, &arrived);
  }
  return id;
}

bool ChatMessageModel::Update(std::string const& msg_id, std::function<void(Variant&)> const& change) {
  auto it = messages_.find(msg_id);
  if (it == messages_.end()) return false;
  change(*it->second);
  Variant payload(msg_id);
  FireEvent(kEventMessageUpdated, &payload);
  return true;
}

bool ChatMessageModel::Revoke(std::string const& msg_id) {
  if (!Update(msg_id, [](Variant& record) { record.Set("message_status", 6); })) return false;
  const Variant recalled = BulletFormOf(*FindMessage(msg_id));
  FireEvent(kEventMessageRemoved, &recalled);
  return true;
}

bool ChatMessageModel::Delete(std::string const& msg_id) {
  auto it = messages_.find(msg_id);
  if (it == messages_.end()) return false;
  it->second->Set("message_status", 4);
  Variant payload(msg_id);
  FireEvent(kEventMessageDeleted, &payload);
  return true;
}

}  // namespace sim
