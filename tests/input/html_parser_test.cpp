#include <gtest/gtest.h>

#include "uikit/richedit/html_parser.h"

namespace {

// Writes what the walker reports as one line: text as is, "|" for a line
// break, "[img:src]" for an image.
class Transcript : public CParserOut {
 public:
  void OnParserImage(QString const& url) override { out += "[img:" + url + "]"; }
  void OnParserText(QString const& text) override { out += text; }
  void OnParserLineBreak() override { out += "|"; }
  QString out;
};

std::string Walk(QString const& html) {
  Transcript transcript;
  CHTMLParser(html, &transcript);
  return transcript.out.toStdString();
}

TEST(HtmlParserTest, BlocksStartLinesAndImagesKeepTheirPlace) {
  const std::pair<char const*, char const*> cases[] = {
      // Qt's import keeps an inline image that follows a paragraph on the
      // paragraph's line; text that follows one starts a line of its own.
      {"<html><head><meta charset=\"utf-8\"><title>Page title</title></head><body>"
       "<!--StartFragment--><p>Hello <a href=\"https://example.test/x\">the link</a>&nbsp;here</p>"
       "<img src=\"file:///tmp/picture.png\" alt=\"alt text\"><br>after the break<!--EndFragment--></body></html>",
       "Hello the link here[img:file:///tmp/picture.png]|after the break"},
      {"<p>one</p>two<h1>three</h1>four", "one|two|three|four"},
      {"<p>one</p><p>two</p><ul><li>three</li><li>four</li></ul>", "one|two|three|four"},
      {"<table><tr><td>a</td><td>b</td></tr><tr><td>c</td></tr></table>", "a|b|c"},
      // Blank paragraphs around the content are the page's, not the user's.
      {"<p></p><p>&nbsp;</p><p>only</p><p> </p>", "only"},
      {"<div>x<br><br>y</div>", "x||y"},
      // A data URL is reported as the source it is; nothing is decoded or fetched.
      {"<img src=\"data:image/png;base64,iVBORw0KGgo=\"><img src=\"https://example.test/a.png\">",
       "[img:data:image/png;base64,iVBORw0KGgo=][img:https://example.test/a.png]"},
  };
  for (auto const& [html, expected] : cases) EXPECT_EQ(Walk(html), expected) << html;
}

TEST(HtmlParserTest, ScriptsStylesAndHeadsNeverComeOut) {
  const std::string out = Walk(
      "<html><head><style>p { color: red } .x::after { content: 'styled' }</style>"
      "<script>alert('script text')</script></head><body>"
      "<script type=\"text/javascript\">document.write('written')</script>"
      "<p onclick=\"evil()\" style=\"font-size:90px\">visible</p>"
      "<noscript>fallback</noscript><iframe src=\"https://example.test\">frame</iframe></body></html>");
  EXPECT_NE(out.find("visible"), std::string::npos) << out;
  for (char const* hidden : {"script text", "written", "color", "styled", "evil"}) {
    EXPECT_EQ(out.find(hidden), std::string::npos) << hidden << " in " << out;
  }
}

TEST(HtmlParserTest, MalformedOrDeeplyNestedHtmlStillGivesItsText) {
  const std::string unclosed = Walk("<p><b>unclosed <i>tags <table><tr><td>cell<td>next</p></b>& < > &bogus; tail");
  for (char const* part : {"unclosed tags", "cell", "tail"}) EXPECT_NE(unclosed.find(part), std::string::npos) << part;

  QString nested, deep;
  for (int i = 0; i < 40; ++i) nested += "<table><tr><td>level" + QString::number(i);
  for (int i = 0; i < 3000; ++i) deep += "<div><span>";
  EXPECT_NE(Walk(nested).find("level39"), std::string::npos);
  EXPECT_NE(Walk(deep + "bottom").find("bottom"), std::string::npos);
}

TEST(HtmlParserTest, OnlyMarkupOfAReasonableSizeIsWorthWalking) {
  EXPECT_TRUE(CHTMLParser::IsValidParser("<b>x</b>"));
  EXPECT_FALSE(CHTMLParser::IsValidParser(""));
  EXPECT_FALSE(CHTMLParser::IsValidParser("plain words without markup"));
  const QString huge = "<p>" + QString(CHTMLParser::kMaxHtmlLength, QLatin1Char('x'));
  EXPECT_FALSE(CHTMLParser::IsValidParser(huge));
  EXPECT_EQ(Walk(huge), "") << "a walk of something not worth walking reports nothing";
  CHTMLParser("<p>x</p>", nullptr);
}

}  // namespace
