#include "chat/ui/desktop/chat_resources.h"

#include <QtGlobal>

// Q_INIT_RESOURCE must stand outside any namespace.
static void InitAllChatResources() {
  Q_INIT_RESOURCE(chat_resources);
  Q_INIT_RESOURCE(chat_input_resources);
}

namespace chat {

void InitChatResources() {
  static const bool done = (InitAllChatResources(), true);
  (void)done;
}

}  // namespace chat
