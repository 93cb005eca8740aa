#pragma once

#include <QImage>
#include <QPixmap>
#include <QString>
#include <string>

class QWidget;

class QImageReader;

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
  // A tool tip that shows `text` as it is: tool tips take markup otherwise.
  static QString PlainToolTip(QString const& text);
  // A button or menu text that shows `text` as it is: '&' marks a shortcut
  // key otherwise.
  static QString EscapeMnemonic(QString text);
  // Pictures decode up to this many pixels (256 MB at 32 bits a pixel).
  static constexpr qint64 kMaxDecodePixels = 64LL * 1024 * 1024;
  // What `reader` holds, decoded; a null image, before anything large is
  // allocated, when its size can't be read or the decode would take more
  // than `max_pixels` (at the reader's scaled size when its format decodes
  // scaled). Truncated data decodes to null or to what was there.
  static QImage ReadImageCapped(QImageReader& reader, qint64 max_pixels = kMaxDecodePixels);
};
