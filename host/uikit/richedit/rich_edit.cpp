#include "uikit/tx_qt_ui_util.h"
#include "uikit/richedit/rich_edit.h"
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
#include <QDateTime>
#include "uikit/tx_qt_ui_util.h"
#include <QDir>
#include "uikit/tx_qt_ui_util.h"
#include <QFileInfo>
#include "uikit/tx_qt_ui_util.h"
#include <QImage>
#include "uikit/tx_qt_ui_util.h"
#include <QImageReader>
#include "uikit/tx_qt_ui_util.h"
#include <QMimeData>
#include "uikit/tx_qt_ui_util.h"
#include <QTextBlock>
#include "uikit/tx_qt_ui_util.h"
#include <QTextCursor>
#include "uikit/tx_qt_ui_util.h"
#include <QTextDocument>
#include "uikit/tx_qt_ui_util.h"
#include <QTextFragment>
#include "uikit/tx_qt_ui_util.h"
#include <QTextImageFormat>
#include "uikit/tx_qt_ui_util.h"
#include <QUrl>
#include "uikit/tx_qt_ui_util.h"
#include <atomic>
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
namespace {
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
constexpr QChar kObject = QChar::ObjectReplacementCharacter;
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
QSize FitWithin(QSize size, int extent) {
#include "uikit/tx_qt_ui_util.h"
  if (size.width() <= extent && size.height() <= extent) return size;
#include "uikit/tx_qt_ui_util.h"
  return size.scaled(extent, extent, Qt::KeepAspectRatio);
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
// Paragraph text as the user sees it: line separators are line breaks and a
#include "uikit/tx_qt_ui_util.h"
// non-breaking space is a space.
#include "uikit/tx_qt_ui_util.h"
QString PlainOf(QString text) {
#include "uikit/tx_qt_ui_util.h"
  text.replace(QChar::LineSeparator, QLatin1Char('\n'));
#include "uikit/tx_qt_ui_util.h"
  text.replace(QChar::Nbsp, QLatin1Char(' '));
#include "uikit/tx_qt_ui_util.h"
  return text;
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
QString ImagePathOf(QTextImageFormat const& format) {
#include "uikit/tx_qt_ui_util.h"
  const QVariantMap data = format.property(RichEdit::kImageDataProperty).toMap();
#include "uikit/tx_qt_ui_util.h"
  const QString path = data.value(QStringLiteral("path")).toString();
#include "uikit/tx_qt_ui_util.h"
  return path.isEmpty() ? QUrl(format.name()).toLocalFile() : path;
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
// What an image stands for in text: an emoji's text, nothing for a picture.
#include "uikit/tx_qt_ui_util.h"
QString TextOfImage(QTextImageFormat const& format) {
#include "uikit/tx_qt_ui_util.h"
  return format.property(RichEdit::kImageDataProperty).toMap().value(QStringLiteral("text")).toString();
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
void AppendText(QVector<RichEditItem>& items, QString const& text) {
#include "uikit/tx_qt_ui_util.h"
  if (text.isEmpty()) return;
#include "uikit/tx_qt_ui_util.h"
  if (!items.isEmpty() && items.last().kind == RichEditItem::kText) {
#include "uikit/tx_qt_ui_util.h"
    items.last().text += text;
#include "uikit/tx_qt_ui_util.h"
    return;
#include "uikit/tx_qt_ui_util.h"
  }
#include "uikit/tx_qt_ui_util.h"
  RichEditItem item;
#include "uikit/tx_qt_ui_util.h"
  item.text = text;
#include "uikit/tx_qt_ui_util.h"
  items.append(item);
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
// Calls `text` and `image` for the part of `block` between `from` and `to`
#include "uikit/tx_qt_ui_util.h"
// (positions in the block).
#include "uikit/tx_qt_ui_util.h"
template <typename TextFn, typename ImageFn>
#include "uikit/tx_qt_ui_util.h"
void WalkBlock(QTextBlock const& block, int from, int to, TextFn text, ImageFn image) {
#include "uikit/tx_qt_ui_util.h"
  for (auto it = block.begin(); !it.atEnd(); ++it) {
#include "uikit/tx_qt_ui_util.h"
    const QTextFragment fragment = it.fragment();
#include "uikit/tx_qt_ui_util.h"
    if (!fragment.isValid()) continue;
#include "uikit/tx_qt_ui_util.h"
    const int start = fragment.position() - block.position();
#include "uikit/tx_qt_ui_util.h"
    const int begin = qMax(start, from);
#include "uikit/tx_qt_ui_util.h"
    const int end = qMin(start + fragment.length(), to);
#include "uikit/tx_qt_ui_util.h"
    if (begin >= end) continue;
#include "uikit/tx_qt_ui_util.h"
    const QString part = fragment.text().mid(begin - start, end - begin);
#include "uikit/tx_qt_ui_util.h"
    const QTextCharFormat format = fragment.charFormat();
#include "uikit/tx_qt_ui_util.h"
    if (format.isImageFormat()) {
#include "uikit/tx_qt_ui_util.h"
      // Adjacent images with one format share a fragment: one character each.
#include "uikit/tx_qt_ui_util.h"
      for (QChar c : part) {
#include "uikit/tx_qt_ui_util.h"
        if (c == kObject) image(format.toImageFormat());
#include "uikit/tx_qt_ui_util.h"
      }
#include "uikit/tx_qt_ui_util.h"
    } else {
#include "uikit/tx_qt_ui_util.h"
      text(QString(part).remove(kObject));
#include "uikit/tx_qt_ui_util.h"
    }
#include "uikit/tx_qt_ui_util.h"
  }
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
}  // namespace
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
RichEdit::RichEdit(QWidget* parent) : QTextEdit(parent) {
#include "uikit/tx_qt_ui_util.h"
  setAcceptRichText(false);
#include "uikit/tx_qt_ui_util.h"
  setLineWrapMode(QTextEdit::WidgetWidth);
#include "uikit/tx_qt_ui_util.h"
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
void RichEdit::InsertText(QString const& text) {
#include "uikit/tx_qt_ui_util.h"
  QTextCursor cursor = textCursor();
#include "uikit/tx_qt_ui_util.h"
  InsertText(cursor, text);
#include "uikit/tx_qt_ui_util.h"
  setTextCursor(cursor);
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
void RichEdit::InsertText(QTextCursor& cursor, QString const& text) {
#include "uikit/tx_qt_ui_util.h"
  QString clean = text;
#include "uikit/tx_qt_ui_util.h"
  clean.replace(QLatin1String("\r\n"), QLatin1String("\n"));
#include "uikit/tx_qt_ui_util.h"
  clean.remove(kObject);
#include "uikit/tx_qt_ui_util.h"
  // A plain insertion never carries an image's format on.
#include "uikit/tx_qt_ui_util.h"
  cursor.setCharFormat(QTextCharFormat());
#include "uikit/tx_qt_ui_util.h"
  cursor.insertText(clean);
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
bool RichEdit::InsertImage(QString const& path, QSize const& size, QVariantMap const& data) {
#include "uikit/tx_qt_ui_util.h"
  QTextCursor cursor = textCursor();
#include "uikit/tx_qt_ui_util.h"
  const bool inserted = InsertImage(cursor, path, size, data);
#include "uikit/tx_qt_ui_util.h"
  setTextCursor(cursor);
#include "uikit/tx_qt_ui_util.h"
  return inserted;
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
bool RichEdit::InsertImage(QTextCursor& cursor, QString const& path, QSize const& size, QVariantMap const& data) {
#include "uikit/tx_qt_ui_util.h"
  if (path.isEmpty()) return false;
#include "uikit/tx_qt_ui_util.h"
  QImageReader reader(path);
#include "uikit/tx_qt_ui_util.h"
  reader.setAutoTransform(true);
#include "uikit/tx_qt_ui_util.h"
  // A picture too large to hold in memory is refused before it is decoded.
#include "uikit/tx_qt_ui_util.h"
  QImage image = TXQtUiUtil::ReadImageCapped(reader, kMaxImagePixels);
#include "uikit/tx_qt_ui_util.h"
  if (image.isNull()) return false;
#include "uikit/tx_qt_ui_util.h"
  const QSize shown = size.isEmpty() ? FitWithin(image.size(), kMaxImageExtent) : size;
#include "uikit/tx_qt_ui_util.h"
  const qreal ratio = devicePixelRatioF();
#include "uikit/tx_qt_ui_util.h"
  if (image.size() != shown * ratio) {
#include "uikit/tx_qt_ui_util.h"
    image = image.scaled(shown * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
#include "uikit/tx_qt_ui_util.h"
  }
#include "uikit/tx_qt_ui_util.h"
  image.setDevicePixelRatio(ratio);
#include "uikit/tx_qt_ui_util.h"
  const QUrl url = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
#include "uikit/tx_qt_ui_util.h"
  // Keyed by file and size: an emoji and the same file at full size differ.
#include "uikit/tx_qt_ui_util.h"
  QUrl key = url;
#include "uikit/tx_qt_ui_util.h"
  key.setFragment(QStringLiteral("%1x%2").arg(shown.width()).arg(shown.height()));
#include "uikit/tx_qt_ui_util.h"
  document()->addResource(QTextDocument::ImageResource, key, image);
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
  QVariantMap stored = data;
#include "uikit/tx_qt_ui_util.h"
  if (!stored.contains(QStringLiteral("path"))) stored.insert(QStringLiteral("path"), path);
#include "uikit/tx_qt_ui_util.h"
  QTextImageFormat format;
#include "uikit/tx_qt_ui_util.h"
  format.setName(key.toString());
#include "uikit/tx_qt_ui_util.h"
  format.setWidth(shown.width());
#include "uikit/tx_qt_ui_util.h"
  format.setHeight(shown.height());
#include "uikit/tx_qt_ui_util.h"
  format.setVerticalAlignment(QTextCharFormat::AlignBottom);
#include "uikit/tx_qt_ui_util.h"
  format.setProperty(kImageDataProperty, stored);
#include "uikit/tx_qt_ui_util.h"
  cursor.insertImage(format);
#include "uikit/tx_qt_ui_util.h"
  cursor.setCharFormat(QTextCharFormat());
#include "uikit/tx_qt_ui_util.h"
  return true;
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
QString RichEdit::SaveImageToTempPath(QImage const& image) const {
#include "uikit/tx_qt_ui_util.h"
  if (image.isNull()) return QString();
#include "uikit/tx_qt_ui_util.h"
  const QString dir = temp_path_.isEmpty() ? QDir::tempPath() : temp_path_;
#include "uikit/tx_qt_ui_util.h"
  if (!QDir().mkpath(dir)) return QString();
#include "uikit/tx_qt_ui_util.h"
  static std::atomic<unsigned> sequence{0};
#include "uikit/tx_qt_ui_util.h"
  const QString name = QStringLiteral("paste_%1_%2.png")
#include "uikit/tx_qt_ui_util.h"
                           .arg(QDateTime::currentMSecsSinceEpoch())
#include "uikit/tx_qt_ui_util.h"
                           .arg(sequence.fetch_add(1) + 1);
#include "uikit/tx_qt_ui_util.h"
  const QString path = QDir(dir).filePath(name);
#include "uikit/tx_qt_ui_util.h"
  return image.save(path, "PNG") ? path : QString();
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
QVector<RichEditItem> RichEdit::Items() const {
#include "uikit/tx_qt_ui_util.h"
  QVector<RichEditItem> items;
#include "uikit/tx_qt_ui_util.h"
  QTextDocument const* doc = document();
#include "uikit/tx_qt_ui_util.h"
  for (QTextBlock block = doc->begin(); block.isValid(); block = block.next()) {
#include "uikit/tx_qt_ui_util.h"
    if (block != doc->begin()) AppendText(items, QStringLiteral("\n"));
#include "uikit/tx_qt_ui_util.h"
    WalkBlock(
#include "uikit/tx_qt_ui_util.h"
        block, 0, block.length(), [&](QString const& text) { AppendText(items, PlainOf(text)); },
#include "uikit/tx_qt_ui_util.h"
        [&](QTextImageFormat const& format) {
#include "uikit/tx_qt_ui_util.h"
          RichEditItem item;
#include "uikit/tx_qt_ui_util.h"
          item.kind = RichEditItem::kImage;
#include "uikit/tx_qt_ui_util.h"
          item.image_path = ImagePathOf(format);
#include "uikit/tx_qt_ui_util.h"
          item.image_data = format.property(kImageDataProperty).toMap();
#include "uikit/tx_qt_ui_util.h"
          items.append(item);
#include "uikit/tx_qt_ui_util.h"
        });
#include "uikit/tx_qt_ui_util.h"
  }
#include "uikit/tx_qt_ui_util.h"
  return items;
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
bool RichEdit::IsEmpty() const { return document()->isEmpty(); }
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
QMimeData* RichEdit::GetSelectionMimeDataByTextBlock(int selection_start_block, int selection_end_block,
#include "uikit/tx_qt_ui_util.h"
                                                     int selection_start_position,
#include "uikit/tx_qt_ui_util.h"
                                                     int selection_end_position) const {
#include "uikit/tx_qt_ui_util.h"
  QString plain;
#include "uikit/tx_qt_ui_util.h"
  QString html;
#include "uikit/tx_qt_ui_util.h"
  QTextDocument const* doc = document();
#include "uikit/tx_qt_ui_util.h"
  for (int number = selection_start_block; number <= selection_end_block; ++number) {
#include "uikit/tx_qt_ui_util.h"
    const QTextBlock block = doc->findBlockByNumber(number);
#include "uikit/tx_qt_ui_util.h"
    if (!block.isValid()) break;
#include "uikit/tx_qt_ui_util.h"
    if (number != selection_start_block) {
#include "uikit/tx_qt_ui_util.h"
      plain += QLatin1Char('\n');
#include "uikit/tx_qt_ui_util.h"
      html += QStringLiteral("<br>");
#include "uikit/tx_qt_ui_util.h"
    }
#include "uikit/tx_qt_ui_util.h"
    const int from = number == selection_start_block ? selection_start_position : 0;
#include "uikit/tx_qt_ui_util.h"
    const int to = number == selection_end_block ? selection_end_position : block.length();
#include "uikit/tx_qt_ui_util.h"
    WalkBlock(
#include "uikit/tx_qt_ui_util.h"
        block, from, to,
#include "uikit/tx_qt_ui_util.h"
        [&](QString const& text) {
#include "uikit/tx_qt_ui_util.h"
          const QString clean = PlainOf(text);
#include "uikit/tx_qt_ui_util.h"
          plain += clean;
#include "uikit/tx_qt_ui_util.h"
          html += clean.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"));
#include "uikit/tx_qt_ui_util.h"
        },
#include "uikit/tx_qt_ui_util.h"
        [&](QTextImageFormat const& format) {
#include "uikit/tx_qt_ui_util.h"
          const QString text = TextOfImage(format);
#include "uikit/tx_qt_ui_util.h"
          if (!text.isEmpty()) {
#include "uikit/tx_qt_ui_util.h"
            // An emoji travels as its text and comes back as an emoji.
#include "uikit/tx_qt_ui_util.h"
            plain += text;
#include "uikit/tx_qt_ui_util.h"
            html += text.toHtmlEscaped();
#include "uikit/tx_qt_ui_util.h"
            return;
#include "uikit/tx_qt_ui_util.h"
          }
#include "uikit/tx_qt_ui_util.h"
          const QString src = QUrl::fromLocalFile(ImagePathOf(format)).toString(QUrl::FullyEncoded);
#include "uikit/tx_qt_ui_util.h"
          html += QStringLiteral("<img src=\"%1\">").arg(src.toHtmlEscaped());
#include "uikit/tx_qt_ui_util.h"
        });
#include "uikit/tx_qt_ui_util.h"
  }
#include "uikit/tx_qt_ui_util.h"
  auto* mime = new QMimeData;
#include "uikit/tx_qt_ui_util.h"
  mime->setText(plain);
#include "uikit/tx_qt_ui_util.h"
  mime->setHtml(QStringLiteral("<html><body>") + html + QStringLiteral("</body></html>"));
#include "uikit/tx_qt_ui_util.h"
  return mime;
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
bool RichEdit::canInsertFromMimeData(QMimeData const* source) const {
#include "uikit/tx_qt_ui_util.h"
  return source && (source->hasUrls() || source->hasHtml() || source->hasText() || source->hasImage());
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
void RichEdit::insertFromMimeData(QMimeData const* source) {
#include "uikit/tx_qt_ui_util.h"
  if (!source) return;
#include "uikit/tx_qt_ui_util.h"
  if (paste_handler_ && paste_handler_(source)) return;
#include "uikit/tx_qt_ui_util.h"
  // Foreign formatting never enters the edit.
#include "uikit/tx_qt_ui_util.h"
  if (source->hasText()) InsertText(source->text());
#include "uikit/tx_qt_ui_util.h"
}
#include "uikit/tx_qt_ui_util.h"

#include "uikit/tx_qt_ui_util.h"
QMimeData* RichEdit::createMimeDataFromSelection() const {
#include "uikit/tx_qt_ui_util.h"
  const QTextCursor cursor = textCursor();
#include "uikit/tx_qt_ui_util.h"
  if (!cursor.hasSelection()) return nullptr;
#include "uikit/tx_qt_ui_util.h"
  QTextDocument const* doc = document();
#include "uikit/tx_qt_ui_util.h"
  const QTextBlock first = doc->findBlock(cursor.selectionStart());
#include "uikit/tx_qt_ui_util.h"
  const QTextBlock last = doc->findBlock(cursor.selectionEnd());
#include "uikit/tx_qt_ui_util.h"
  return GetSelectionMimeDataByTextBlock(first.blockNumber(), last.blockNumber(),
#include "uikit/tx_qt_ui_util.h"
                                         cursor.selectionStart() - first.position(),
#include "uikit/tx_qt_ui_util.h"
                                         cursor.selectionEnd() - last.position());
#include "uikit/tx_qt_ui_util.h"
}
