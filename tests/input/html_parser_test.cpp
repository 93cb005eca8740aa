#include <QStringList>

#include <gtest/gtest.h>

#include "uikit/richedit/html_parser.h"

namespace {

// Writes what the walker reports as one line: text as is, "|" for a line
// break, "[img:src]" for an image.
class Transcript : public CParserOut {
 public:
  void OnParserImage(QString const& url) override {
    out += "[img:" + url + "]";
    ++images;
  }
  void OnParserText(QString const& text) override { out += text; }
  void OnParserLineBreak() override { out += "|"; }
  QString out;
  int images = 0;
};

std::string Walk(QString const& html) {
  Transcript transcript;
  CHTMLParser(html, &transcript);
  return transcript.out.toStdString();
}

bool Has(std::string const& text, char const* part) { return text.find(part) != std::string::npos; }

TEST(HtmlParserTest, ABrowserClipboardBecomesTextImagesAndLineBreaks) {
  const QString html =
      "<html><head><meta charset=\"utf-8\"><title>Page title</title></head><body>"
      "<!--StartFragment--><p>Hello <a href=\"https://example.test/x\">the link</a>&nbsp;here</p>"
      "<img src=\"file:///tmp/picture.png\" alt=\"alt text\"><br>after the break"
      "<!--EndFragment--></body></html>";
  // Qt's import keeps an inline image that follows a paragraph on the
  // paragraph's line; text that follows one starts a line of its own.
  EXPECT_EQ(Walk(html), "Hello the link here[img:file:///tmp/picture.png]|after the break");
  EXPECT_EQ(Walk("<p>one</p>two<h1>three</h1>four"), "one|two|three|four");
}

TEST(HtmlParserTest, ParagraphsListsAndTableCellsEachStartALine) {
  EXPECT_EQ(Walk("<p>one</p><p>two</p><ul><li>three</li><li>four</li></ul>"), "one|two|three|four");
  EXPECT_EQ(Walk("<table><tr><td>a</td><td>b</td></tr><tr><td>c</td></tr></table>"), "a|b|c");
  // Blank paragraphs around the content are the page's, not the user's.
  EXPECT_EQ(Walk("<p></p><p>&nbsp;</p><p>only</p><p> </p>"), "only");
  EXPECT_EQ(Walk("<div>x<br><br>y</div>"), "x||y");
}

TEST(HtmlParserTest, ScriptsStylesAndHeadsNeverComeOut) {
  const QString html =
      "<html><head><style>p { color: red } .x::after { content: 'styled' }</style>"
      "<script>alert('script text')</script></head><body>"
      "<script type=\"text/javascript\">document.write('written')</script>"
      "<p onclick=\"evil()\" style=\"font-size:90px\">visible</p>"
      "<noscript>fallback</noscript><iframe src=\"https://example.test\">frame</iframe></body></html>";
  const std::string out = Walk(html);
  EXPECT_TRUE(Has(out, "visible"));
  for (char const* hidden : {"script text", "written", "color", "styled", "evil"}) {
    EXPECT_FALSE(Has(out, hidden)) << hidden << " in " << out;
  }
}

TEST(HtmlParserTest, MalformedNestedOrStrangeHtmlStillGivesOnlyTextAndImages) {
  Transcript unclosed;
  CHTMLParser("<p><b>unclosed <i>tags <table><tr><td>cell<td>next</p></b>& < > &bogus; tail", &unclosed);
  EXPECT_TRUE(unclosed.out.contains("unclosed tags"));
  EXPECT_TRUE(unclosed.out.contains("cell"));
  EXPECT_TRUE(unclosed.out.contains("tail"));

  QString nested;
  for (int i = 0; i < 40; ++i) nested += "<table><tr><td>level" + QString::number(i);
  EXPECT_TRUE(Has(Walk(nested), "level39"));

  QString deep;
  for (int i = 0; i < 3000; ++i) deep += "<div><span>";
  deep += "bottom";
  EXPECT_TRUE(Has(Walk(deep), "bottom"));

  // A data URL is reported as the source it is; nothing is decoded or fetched.
  Transcript data;
  CHTMLParser("<img src=\"data:image/png;base64,iVBORw0KGgo=\"><img src=\"https://example.test/a.png\">", &data);
  EXPECT_EQ(data.images, 2);
  EXPECT_TRUE(data.out.startsWith("[img:data:image/png;base64,"));
}

TEST(HtmlParserTest, OnlyMarkupOfAReasonableSizeIsWorthWalking) {
  EXPECT_TRUE(CHTMLParser::IsValidParser("<b>x</b>"));
  EXPECT_FALSE(CHTMLParser::IsValidParser(""));
  EXPECT_FALSE(CHTMLParser::IsValidParser("plain words without markup"));
  QString huge = "<p>";
  huge += QString(CHTMLParser::kMaxHtmlLength, QLatin1Char('x'));
  EXPECT_FALSE(CHTMLParser::IsValidParser(huge));
  // A walk of something not worth walking reports nothing.
  Transcript nothing;
  CHTMLParser(huge, &nothing);
  EXPECT_TRUE(nothing.out.isEmpty());
  CHTMLParser("<p>x</p>", nullptr);
}

}  // namespace
