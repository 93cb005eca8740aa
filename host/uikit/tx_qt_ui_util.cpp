#include "uikit/tx_qt_ui_util.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QResource>
#include <QWidget>

#include "base/log/log.h"

bool TXQtUiUtil::LoadQtModuleResource(std::string const& resource_file, std::string const& module_path) {
  if (resource_file.empty()) return false;
  QString path = QString::fromStdString(resource_file);
  if (QFileInfo(path).isRelative() && !module_path.empty()) {
    path = QDir(QString::fromStdString(module_path)).filePath(path);
  }
  if (!QFileInfo::exists(path)) {
    TXLOG_NOTICE << "module resource file not found: " << path.toStdString();
    return false;
  }
  const bool ok = QResource::registerResource(path);
  if (!ok) TXLOG_ERROR << "module resource file not registered: " << path.toStdString();
  return ok;
}

QWidget* TXQtUiUtil::ActiveMainWindow() {
  if (QWidget* active = QApplication::activeWindow()) return active;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->isVisible() && widget->property("talvex_main_window").toBool()) return widget;
  }
  return nullptr;
}
