#pragma once

#include <QString>
#include <memory>

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

// The same walk, a slice at a time, so that a large paste never holds the
// thread that walks it: the time a walk takes grows with the length of the
// HTML only, never with how deeply it nests.
class CHTMLWalker {
 public:
  // Walks nothing unless CHTMLParser::IsValidParser(html) and `out` is set.
  CHTMLWalker(QString html, CParserOut* out);
  ~CHTMLWalker();
  CHTMLWalker(CHTMLWalker const&) = delete;
  CHTMLWalker& operator=(CHTMLWalker const&) = delete;

  // Reads on through about `budget` characters of the HTML (more when a single
  // tag or a skipped script is longer) and reports what it found. Returns true
  // once the whole HTML has been reported.
  bool Walk(int budget);
  bool AtEnd() const;
  // How far the walk is, in characters of the HTML.
  int position() const;
  int size() const;

 private:
  struct State;
  std::unique_ptr<State> d_;
};
