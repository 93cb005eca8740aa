#pragma once

#include <QString>

// Receives what CHTMLParser finds in a piece of HTML, in document order.
class CParserOut {
 public:
  virtual ~CParserOut() = default;
  // The source of an image, as written in the HTML.
  virtual void OnParserImage(QString const& url) = 0;
  virtual void OnParserText(QString const& text) = 0;
  virtual void OnParserLineBreak() = 0;
};

// Walks HTML (a browser's or an office program's clipboard) and reports its
// text, images and line breaks: paragraphs, list items and table cells each
// start a line. Nothing else of the HTML comes out: scripts, styles, links'
// targets and formatting are dropped, and nothing is ever fetched.
class CHTMLParser {
 public:
  // Larger HTML is not walked: a paste that big falls back to its plain text.
  static constexpr int kMaxHtmlLength = 2 * 1024 * 1024;

  // Walks `html` at once, calling `out`.
  CHTMLParser(QString const& html, CParserOut* out);

  // True when `html` is worth walking: not empty, not too large, and holding
  // markup.
  static bool IsValidParser(QString const& html);
};
