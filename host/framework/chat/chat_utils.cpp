#include "framework/chat/chat_utils.h"

#include "framework/module/app_module.h"

namespace talvex {

std::shared_ptr<Variant> ChatUtils::GetMsgInfoPtrById(std::string const& msg_id) {
  if (msg_id.empty()) return nullptr;
  auto model = framework::module::GetAppModuleModel(524);
  auto* store = dynamic_cast<IChatMessageStore*>(model.get());
  return store ? store->FindMessage(msg_id) : nullptr;
}

bool ChatUtils::IsRedPacketOrReceiptType(int chat_type) { return chat_type == 2 || chat_type == 3; }

}  // namespace talvex
