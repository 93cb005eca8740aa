#include "uikit/tx_qt_ui_util.h"

#include <QApplication>
#include <QGuiApplication>
#include <QPixmapCache>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
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

QPixmap TXQtUiUtil::GetHdpiImage(QString const& path, qreal device_pixel_ratio) {
  qreal ratio = device_pixel_ratio;
  if (ratio <= 0) ratio = qApp ? qApp->devicePixelRatio() : 1.0;
  // Rows ask for the same icons again and again: decode each once.
  const QString key = QString("hdpi:%1@%2").arg(path).arg(ratio);
  QPixmap cached;
  if (QPixmapCache::find(key, &cached)) return cached;
  QPixmap pixmap = LoadHdpiImage(path, ratio);
  if (!pixmap.isNull()) QPixmapCache::insert(key, pixmap);
  return pixmap;
}

QPixmap TXQtUiUtil::LoadHdpiImage(QString const& path, qreal ratio) {
  QPixmap pixmap;
  if (ratio > 1.0) {
    const int dot = path.lastIndexOf('.');
    const QString hdpi = dot > path.lastIndexOf('/') ? path.left(dot) + "@2x" + path.mid(dot) : path + "@2x";
    if (pixmap.load(hdpi)) {
      pixmap.setDevicePixelRatio(2.0);
      return pixmap;
    }
  }
  pixmap.load(path);
  return pixmap;
}

void TXQtUiUtil::CenterToWidget(QWidget* widget, QWidget* target) {
  if (!widget || !target) return;
  QPoint center = target->rect().center();
  if (widget->parentWidget() != target) {
    center = target->mapTo(widget->parentWidget() ? widget->parentWidget()->window() : target->window(), center);
    if (widget->parentWidget()) center = widget->parentWidget()->mapFrom(widget->parentWidget()->window(), center);
  }
  widget->move(center.x() - widget->width() / 2 + 1, center.y() - widget->height() / 2 + 1);
}

void TXQtUiUtil::SetupTopMost(QWidget* widget, bool top_most) {
  if (!widget) return;
  const bool visible = widget->isVisible();
  widget->setWindowFlag(Qt::WindowStaysOnTopHint, top_most);
  // Changing a window's flags hides it; it comes back as it was.
  if (visible) widget->show();
}

QString TXQtUiUtil::PlainToolTip(QString const& text) {
  if (text.isEmpty()) return text;
  return "<p style='white-space:pre-wrap'>" + text.toHtmlEscaped() + "</p>";
}

QString TXQtUiUtil::EscapeMnemonic(QString text) { return text.replace('&', QStringLiteral("&&")); }

QImage TXQtUiUtil::ReadImageCapped(QImageReader& reader, qint64 max_pixels) {
  const QSize natural = reader.size();
  if (!natural.isValid()) {
    TXLOG_WARN << "picture refused: its size can't be read, " << reader.fileName().toStdString();
    return QImage();
  }
  QSize decoded = natural;
  const QSize scaled = reader.scaledSize();
  if (scaled.isValid() && reader.supportsOption(QImageIOHandler::ScaledSize)) decoded = scaled;
  if (qint64(decoded.width()) * decoded.height() > max_pixels) {
    TXLOG_WARN << "picture refused: " << natural.width() << "x" << natural.height() << " is too large to decode, "
               << reader.fileName().toStdString();
    return QImage();
  }
  return reader.read();
}
