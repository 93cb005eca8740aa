#include "chat/runtime/chat_extension_provider.h"

#include "base/log/log.h"
#include "chat/runtime/chat_contributions.h"

namespace chat {

std::shared_ptr<framework::extension::ExtensionImpl> ChatExtensionProvider::Build(std::string const& id) {
  ChatContribution const* row = FindContribution(id);
  if (row && row->make_extension) return row->make_extension();
  TXLOG_ERROR << "extension_id: " << id;
  return nullptr;
}

}  // namespace chat
