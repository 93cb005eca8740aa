// What the input tests share: the Qt headers they use, a directory of real
// files, and the images of a document.
#pragma once

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextImageFormat>
#include <QUrl>
#include <gtest/gtest.h>
#include <vector>

#include "uikit/richedit/rich_edit.h"

namespace input_test {

// A directory of real files for a test: pictures, documents, empty files.
class Files {
 public:
  QString Dir() const { return dir_.path(); }
  QString Picture(QString const& name, QSize size = QSize(30, 20), QColor color = Qt::red) const {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    image.save(dir_.filePath(name));
    return dir_.filePath(name);
  }
  QString Document(QString const& name, QByteArray const& content = "some content") const {
    QFile file(dir_.filePath(name));
    file.open(QIODevice::WriteOnly);
    file.write(content);
    return file.fileName();
  }
  QString Missing(QString const& name) const { return dir_.filePath(name); }

 private:
  QTemporaryDir dir_;
};

// The images of a document in order, one per character: equal images side
// by side share a fragment.
inline std::vector<QTextImageFormat> ImagesOf(QTextDocument const* doc) {
  std::vector<QTextImageFormat> images;
  for (QTextBlock b = doc->begin(); b.isValid(); b = b.next()) {
    for (auto it = b.begin(); !it.atEnd(); ++it) {
      if (!it.fragment().charFormat().isImageFormat()) continue;
      for (int i = 0; i < it.fragment().length(); ++i) images.push_back(it.fragment().charFormat().toImageFormat());
    }
  }
  return images;
}
inline QSizeF SizeOf(QTextImageFormat const& image) { return QSizeF(image.width(), image.height()); }

}  // namespace input_test
