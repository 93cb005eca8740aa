#pragma once

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QString>
#include <QTemporaryDir>

namespace input_test {

// A directory of real files for a test: pictures, documents, empty files.
class Files {
 public:
  QString Dir() const { return dir_.path(); }
  QString Picture(QString const& name, QSize size = QSize(30, 20), QColor color = Qt::red) const {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    const QString path = dir_.filePath(name);
    image.save(path);
    return path;
  }
  QString Document(QString const& name, QByteArray const& content = "some content") const {
    const QString path = dir_.filePath(name);
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(content);
    return path;
  }
  QString Missing(QString const& name) const { return dir_.filePath(name); }

 private:
  QTemporaryDir dir_;
};

}  // namespace input_test
