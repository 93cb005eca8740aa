#include "uikit/richedit/rich_edit.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QMimeData>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextImageFormat>
#include <QUrl>
#include <atomic>

namespace {

constexpr QChar kObject = QChar::ObjectReplacementCharacter;

QSize FitWithin(QSize size, int extent) {
  if (size.width() <= extent && size.height() <= extent) return size;
  return size.scaled(extent, extent, Qt::KeepAspectRatio);
}

// Paragraph text as the user sees it: line separators are line breaks and a
// non-breaking space is a space.
QString PlainOf(QString text) {
  text.replace(QChar::LineSeparator, QLatin1Char('\n'));
  text.replace(QChar::Nbsp, QLatin1Char(' '));
  return text;
}

QString ImagePathOf(QTextImageFormat const& format) {
  const QVariantMap data = format.property(RichEdit::kImageDataProperty).toMap();
  const QString path = data.value(QStringLiteral("path")).toString();
  return path.isEmpty() ? QUrl(format.name()).toLocalFile() : path;
}

// What an image stands for in text: an emoji's text, nothing for a picture.
QString TextOfImage(QTextImageFormat const& format) {
  return format.property(RichEdit::kImageDataProperty).toMap().value(QStringLiteral("text")).toString();
}

void AppendText(QVector<RichEditItem>& items, QString const& text) {
  if (text.isEmpty()) return;
  if (!items.isEmpty() && items.last().kind == RichEditItem::kText) {
    items.last().text += text;
    return;
  }
  RichEditItem item;
  item.text = text;
  items.append(item);
}

// Calls `text` and `image` for the part of `block` between `from` and `to`
// (positions in the block).
template <typename TextFn, typename ImageFn>
void WalkBlock(QTextBlock const& block, int from, int to, TextFn text, ImageFn image) {
  for (auto it = block.begin(); !it.atEnd(); ++it) {
    const QTextFragment fragment = it.fragment();
    if (!fragment.isValid()) continue;
    const int start = fragment.position() - block.position();
    const int begin = qMax(start, from);
    const int end = qMin(start + fragment.length(), to);
    if (begin >= end) continue;
    const QString part = fragment.text().mid(begin - start, end - begin);
    const QTextCharFormat format = fragment.charFormat();
    if (format.isImageFormat()) {
      // Adjacent images with one format share a fragment: one character each.
      for (QChar c : part) {
        if (c == kObject) image(format.toImageFormat());
      }
    } else {
      text(QString(part).remove(kObject));
    }
  }
}

}  // namespace

RichEdit::RichEdit(QWidget* parent) : QTextEdit(parent) {
  setAcceptRichText(false);
  setLineWrapMode(QTextEdit::WidgetWidth);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
}

void RichEdit::InsertText(QString const& text) {
  QTextCursor cursor = textCursor();
  InsertText(cursor, text);
  setTextCursor(cursor);
}

void RichEdit::InsertText(QTextCursor& cursor, QString const& text) {
  QString clean = text;
  clean.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  clean.remove(kObject);
  // A plain insertion never carries an image's format on.
  cursor.setCharFormat(QTextCharFormat());
  cursor.insertText(clean);
}

bool RichEdit::InsertImage(QString const& path, QSize const& size, QVariantMap const& data) {
  QTextCursor cursor = textCursor();
  const bool inserted = InsertImage(cursor, path, size, data);
  setTextCursor(cursor);
  return inserted;
}

bool RichEdit::InsertImage(QTextCursor& cursor, QString const& path, QSize const& size, QVariantMap const& data) {
  if (path.isEmpty()) return false;
  QImageReader reader(path);
  reader.setAutoTransform(true);
  // A picture too large to hold in memory is refused before it is decoded.
  const QSize natural = reader.size();
  if (natural.isValid() && qint64(natural.width()) * natural.height() > kMaxImagePixels) return false;
  QImage image = reader.read();
  if (image.isNull()) return false;
  const QSize shown = size.isEmpty() ? FitWithin(image.size(), kMaxImageExtent) : size;
  const qreal ratio = devicePixelRatioF();
  if (image.size() != shown * ratio) {
    image = image.scaled(shown * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  }
  image.setDevicePixelRatio(ratio);
  const QUrl url = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
  // Keyed by file and size: an emoji and the same file at full size differ.
  QUrl key = url;
  key.setFragment(QStringLiteral("%1x%2").arg(shown.width()).arg(shown.height()));
  document()->addResource(QTextDocument::ImageResource, key, image);

  QVariantMap stored = data;
  if (!stored.contains(QStringLiteral("path"))) stored.insert(QStringLiteral("path"), path);
  QTextImageFormat format;
  format.setName(key.toString());
  format.setWidth(shown.width());
  format.setHeight(shown.height());
  format.setVerticalAlignment(QTextCharFormat::AlignBottom);
  format.setProperty(kImageDataProperty, stored);
  cursor.insertImage(format);
  cursor.setCharFormat(QTextCharFormat());
  return true;
}

QString RichEdit::SaveImageToTempPath(QImage const& image) const {
  if (image.isNull()) return QString();
  const QString dir = temp_path_.isEmpty() ? QDir::tempPath() : temp_path_;
  if (!QDir().mkpath(dir)) return QString();
  static std::atomic<unsigned> sequence{0};
  const QString name = QStringLiteral("paste_%1_%2.png")
                           .arg(QDateTime::currentMSecsSinceEpoch())
                           .arg(sequence.fetch_add(1) + 1);
  const QString path = QDir(dir).filePath(name);
  return image.save(path, "PNG") ? path : QString();
}

QVector<RichEditItem> RichEdit::Items() const {
  QVector<RichEditItem> items;
  QTextDocument const* doc = document();
  for (QTextBlock block = doc->begin(); block.isValid(); block = block.next()) {
    if (block != doc->begin()) AppendText(items, QStringLiteral("\n"));
    WalkBlock(
        block, 0, block.length(), [&](QString const& text) { AppendText(items, PlainOf(text)); },
        [&](QTextImageFormat const& format) {
          RichEditItem item;
          item.kind = RichEditItem::kImage;
          item.image_path = ImagePathOf(format);
          item.image_data = format.property(kImageDataProperty).toMap();
          items.append(item);
        });
  }
  return items;
}

bool RichEdit::IsEmpty() const { return document()->isEmpty(); }

QMimeData* RichEdit::GetSelectionMimeDataByTextBlock(int selection_start_block, int selection_end_block,
                                                     int selection_start_position,
                                                     int selection_end_position) const {
  QString plain;
  QString html;
  QTextDocument const* doc = document();
  for (int number = selection_start_block; number <= selection_end_block; ++number) {
    const QTextBlock block = doc->findBlockByNumber(number);
    if (!block.isValid()) break;
    if (number != selection_start_block) {
      plain += QLatin1Char('\n');
      html += QStringLiteral("<br>");
    }
    const int from = number == selection_start_block ? selection_start_position : 0;
    const int to = number == selection_end_block ? selection_end_position : block.length();
    WalkBlock(
        block, from, to,
        [&](QString const& text) {
          const QString clean = PlainOf(text);
          plain += clean;
          html += clean.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"));
        },
        [&](QTextImageFormat const& format) {
          const QString text = TextOfImage(format);
          if (!text.isEmpty()) {
            // An emoji travels as its text and comes back as an emoji.
            plain += text;
            html += text.toHtmlEscaped();
            return;
          }
          const QString src = QUrl::fromLocalFile(ImagePathOf(format)).toString(QUrl::FullyEncoded);
          html += QStringLiteral("<img src=\"%1\">").arg(src.toHtmlEscaped());
        });
  }
  auto* mime = new QMimeData;
  mime->setText(plain);
  mime->setHtml(QStringLiteral("<html><body>") + html + QStringLiteral("</body></html>"));
  return mime;
}

bool RichEdit::canInsertFromMimeData(QMimeData const* source) const {
  return source && (source->hasUrls() || source->hasHtml() || source->hasText() || source->hasImage());
}

void RichEdit::insertFromMimeData(QMimeData const* source) {
  if (!source) return;
  if (paste_handler_ && paste_handler_(source)) return;
  // Foreign formatting never enters the edit.
  if (source->hasText()) InsertText(source->text());
}

QMimeData* RichEdit::createMimeDataFromSelection() const {
  const QTextCursor cursor = textCursor();
  if (!cursor.hasSelection()) return nullptr;
  QTextDocument const* doc = document();
  const QTextBlock first = doc->findBlock(cursor.selectionStart());
  const QTextBlock last = doc->findBlock(cursor.selectionEnd());
  return GetSelectionMimeDataByTextBlock(first.blockNumber(), last.blockNumber(),
                                         cursor.selectionStart() - first.position(),
                                         cursor.selectionEnd() - last.position());
}
