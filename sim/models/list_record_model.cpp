#include "sim/models/list_record_model.h"

#include <algorithm>

#include "base/log/log.h"
#include "base/util/time_util.h"
#include "sim/models/chat_message_model.h"

namespace sim {

namespace {
std::vector<std::string> Ids(Variant const& params) {
  std::vector<std::string> ids;
  for (auto const& id : params.Get("msg_id_list").AsArray()) {
    if (id.IsString()) ids.push_back(id.AsStr());
  }
  return ids;
}
}  // namespace

ListRecordModel::ListRecordModel(ChatMessageModel& messages) : SimModel(kId), messages_(messages) {
  SetMethod(1039495232, [this](Variant const* params, Variant* result) {
    if (!params || !params->IsString()) return false;
    const std::string id = "list-" + std::to_string(next_list_++) + "-" + params->AsStr();
    lists_[id];
    if (result) *result = id;
    return true;
  });
  SetMethod(468035239, [this](Variant const* params, Variant*) {
    if (!params || !params->IsMap()) return false;
    const std::string id = params->GetString("list_id");
    if (!params->Has("msg_id_list")) {
      lists_.erase(id);
      return true;
    }
    lists_[id] = Ids(*params);
    return true;
  });
  SetMethod(124265569, [this](Variant const* params, Variant*) {
    if (!params || !params->IsMap()) return false;
    auto& list = lists_[params->GetString("list_id")];
    for (auto const& id : Ids(*params)) list.push_back(id);
    return true;
  });
  SetMethod(204832767, [this](Variant const* params, Variant*) {
    if (!params || !params->IsMap()) return false;
    auto& list = lists_[params->GetString("list_id")];
    for (auto const& id : Ids(*params)) list.erase(std::remove(list.begin(), list.end(), id), list.end());
    return true;
  });
  SetMethod(236764533, [this](Variant const* params, Variant* result) {
    if (!params || !params->IsMap() || !params->Get("msg_content").IsMap()) {
      TXLOG_ERROR << "[sim] tip without content";
      return false;
    }
    Variant tip(base::variant::kVariantTypeMap);
    const std::string id = "tip-" + std::to_string(next_tip_++);
    tip.Set("msg_id", id);
    tip.Set("chat_type", params->GetInt32("chat_type", -1));
    tip.Set("message_status", params->GetInt32("message_status", -1));
    tip.Set("conv_id", params->GetString("conv_id"));
    tip.Set("msg_content", params->Get("msg_content"));
    tip.Set("is_local", true);
    tip.Set("message_time", util::time::GetServerTimestamp());
    if (!messages_.AddMessage(tip)) return false;
    if (result) *result = id;
    return true;
  });
}

std::vector<std::string> ListRecordModel::List(std::string const& list_id) const {
  auto it = lists_.find(list_id);
  return it == lists_.end() ? std::vector<std::string>() : it->second;
}

ShieldModel::ShieldModel() : SimModel(kId) {
  SetMethod(2, [this](Variant const* params, Variant*) {
    const std::string app_uid = params && params->IsMap() ? params->Get("sender_info").GetString("app_uid") : "";
    if (app_uid.empty()) return false;
    if (params->GetBoolean("forbid")) forbidden_.push_back(app_uid);
    ShieldSender(app_uid);
    return true;
  });
  SetMethod(4, [this](Variant const* params, Variant* result) {
    if (!params || !params->IsMap()) return false;
    Variant shielded(base::variant::kVariantTypeArray);
    for (auto const& entry : params->Get("msg_list").AsArray()) {
      if (std::find(shielded_.begin(), shielded_.end(), entry.GetString("app_uid")) == shielded_.end()) continue;
      Variant item(base::variant::kVariantTypeMap);
      item.Set("msg_id", entry.GetString("msg_id"));
      shielded.Add(std::move(item));
    }
    Variant answer(base::variant::kVariantTypeMap);
    answer.Set("shield_msg_list", std::move(shielded));
    if (result) *result = std::move(answer);
    return true;
  });
  SetMethod(5, [this](Variant const*, Variant*) {
    watching_ = true;
    return true;
  });
  SetMethod(6, [this](Variant const*, Variant*) {
    watching_ = false;
    return true;
  });
  SetMethod(8, [](Variant const*, Variant* result) {
    if (result) *result = false;
    return true;
  });
  SetMethod(9, [](Variant const*, Variant* result) {
    Variant data(base::variant::kVariantTypeMap);
    data.Set("url", "https://meeting.example/chat_control/sensitive_words");
    if (result) *result = std::move(data);
    return true;
  });
}

bool ShieldModel::shielded(std::string const& app_uid) const {
  return std::find(shielded_.begin(), shielded_.end(), app_uid) != shielded_.end();
}

void ShieldModel::ShieldSender(std::string const& app_uid) {
  shielded_.push_back(app_uid);
  FireEvent(0, nullptr);
}

}  // namespace sim
