#pragma once

#include <string>
#include <vector>

// What the client's journal shows when the chat module's load functions are
// undone: the UI side (router before navigator, then the proxy, the loader,
// the four pages) and the non-UI side.
namespace unload_order {

inline std::vector<std::string> const& UiUnload() {
  static const std::vector<std::string> entries = {
      "DesktopSchemeRouterManager.UninitRouterManager",
      "NavigatorManager.UninitNavigatorManager",
      "DeleteNavigateProxyService",
      "DesktopUIModuleLoader.Unload",
      "ControllerManager.IocUnregister talvex://page/inmeeting/chat",
      "ControllerManager.IocUnregister talvex://page/inmeeting/emoji_bullet",
      "ControllerManager.IocUnregister talvex://page/chat_record_qt",
      "ControllerManager.IocUnregister talvex://page/meeting_notice",
  };
  return entries;
}

inline std::vector<std::string> const& NonUiUnload() {
  static const std::vector<std::string> entries = {
      "SchemeRouterManager.UninitRouterManager",
      "ExtensionManager.UninitExtensionManager",
      "NavigatorManager.UninitNavigatorManager",
      "UiModuleLoaderRegister.UnInitRuntimeLoader chat",
  };
  return entries;
}

}  // namespace unload_order
