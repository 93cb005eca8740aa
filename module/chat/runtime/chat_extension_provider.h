#pragma once

#include "framework/module/providers.h"

namespace chat {

class ChatExtensionProvider : public framework::ExtensionProviderBaseImpl {
 protected:
  std::shared_ptr<framework::extension::ExtensionImpl> Build(std::string const& extension_id) override;
};

}  // namespace chat
