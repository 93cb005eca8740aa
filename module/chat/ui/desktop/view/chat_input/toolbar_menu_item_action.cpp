#include "chat/ui/desktop/view/chat_input/toolbar_menu_item_action.h"

ToolbarMenuItemAction::ToolbarMenuItemAction(QString const& text, int value, QObject* parent)
    : QAction(text, parent), value_(value) {
  setCheckable(true);
}
