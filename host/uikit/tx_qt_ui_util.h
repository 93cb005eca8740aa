#pragma once

#include <QPixmap>
#include <QString>
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
  // The image at `path` for the screen's pixel ratio: "name@2x.ext" beside
  // it when the ratio is above 1 and that file exists. A null pixmap when
  // neither loads.
  static QPixmap GetHdpiImage(QString const& path, qreal device_pixel_ratio = 0);
  static QPixmap LoadHdpiImage(QString const& path, qreal ratio);
  // Moves `widget` so that it stands in the middle of `target`.
  static void CenterToWidget(QWidget* widget, QWidget* target);
  // Keeps a window above the client's other windows (or lets it go back).
  static void SetupTopMost(QWidget* widget, bool top_most = true);
};
