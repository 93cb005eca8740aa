#include "uikit/richedit/html_parser.h"

#include <QStringList>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextImageFormat>
#include <QVariant>

namespace {

// Qt's HTML import, with every resource refused: images are reported by their
// source, never loaded, and no file or URL is ever opened.
class DetachedDocument : public QTextDocument {
 protected:
  QVariant loadResource(int, QUrl const&) override { return QVariant(); }
};

// Text between line breaks; a line separator (from <br>) is a break.
void EmitText(QString text, CParserOut* out) {
  text.replace(QChar::Nbsp, QLatin1Char(' '));
  text.remove(QChar::ObjectReplacementCharacter);
  const QStringList lines = text.split(QChar::LineSeparator);
  for (int i = 0; i < lines.size(); ++i) {
    if (i > 0) out->OnParserLineBreak();
    if (!lines[i].isEmpty()) out->OnParserText(lines[i]);
  }
}

bool BlockIsBlank(QTextBlock const& block) {
  for (auto it = block.begin(); !it.atEnd(); ++it) {
    const QTextFragment fragment = it.fragment();
    if (fragment.charFormat().isImageFormat()) return false;
    if (!fragment.text().trimmed().isEmpty()) return false;
  }
  return true;
}

}  // namespace

bool CHTMLParser::IsValidParser(QString const& html) {
  if (html.isEmpty() || html.size() > kMaxHtmlLength) return false;
  return html.contains(QLatin1Char('<')) && html.contains(QLatin1Char('>'));
}

CHTMLParser::CHTMLParser(QString const& html, CParserOut* out) {
  if (!out || !IsValidParser(html)) return;
  DetachedDocument doc;
  doc.setUndoRedoEnabled(false);
  doc.setHtml(html);

  // Blank paragraphs at either end are the page's margins, not the user's.
  QTextBlock first = doc.begin();
  while (first.isValid() && BlockIsBlank(first)) first = first.next();
  QTextBlock last = doc.lastBlock();
  while (last.isValid() && last != first && BlockIsBlank(last)) last = last.previous();
  if (!first.isValid()) return;

  for (QTextBlock block = first; block.isValid(); block = block.next()) {
    if (block != first) out->OnParserLineBreak();
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextFragment fragment = it.fragment();
      if (!fragment.isValid()) continue;
      const QTextCharFormat format = fragment.charFormat();
      if (format.isImageFormat()) {
        const QString src = format.toImageFormat().name();
        for (QChar c : fragment.text()) {
          if (c == QChar::ObjectReplacementCharacter) out->OnParserImage(src);
        }
        continue;
      }
      EmitText(fragment.text(), out);
    }
    if (block == last) break;
  }
}
