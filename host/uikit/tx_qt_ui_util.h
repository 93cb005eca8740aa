#pragma once

#include <string>

class QWidget;

class TXQtUiUtil {
 public:
  // Registers a module's compiled Qt resource file, found as given or under
  // `module_path`. False when there is no such file (a module may also carry
  // its resources inside its own binary).
  static bool LoadQtModuleResource(std::string const& resource_file, std::string const& module_path);
  // The top-level window a transient widget (toast, alert) should stand over.
  static QWidget* ActiveMainWindow();
};
