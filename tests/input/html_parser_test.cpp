#include <gtest/gtest.h>

#include <QStringList>
#include <random>

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

// The same walk in slices of `budget` characters; `slices` counts the calls.
std::string WalkSliced(QString const& html, int budget, int* slices = nullptr, int* largest_step = nullptr) {
  Transcript transcript;
  CHTMLWalker walker(html, &transcript);
  int calls = 0, largest = 0;
  for (bool done = false; !done; ++calls) {
    const int before = walker.position();
    done = walker.Walk(budget);
    largest = std::max(largest, walker.position() - before);
    if (calls > html.size() + 1) {
      ADD_FAILURE() << "the walk does not move on";
      break;
    }
  }
  if (slices) *slices = calls;
  if (largest_step) *largest_step = largest;
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

TEST(HtmlParserTest, TextShowsAsABrowserShowsIt) {
  const std::pair<char const*, char const*> cases[] = {
      // White space collapses, and goes at the ends of lines.
      {"<p>  lots \n\t of   space  </p><p>\n next</p>", "lots of space|next"},
      {"<b>bold</b> <i>and</i>   <u>under</u>", "bold and under"},
      // Preformatted text keeps its spaces and lines; the newline after <pre> is markup.
      {"<pre>\n  indented\n\tTab  two</pre>after", "  indented|\tTab  two|after"},
      // References, named, decimal and hexadecimal, with and without the semicolon.
      {"<p>a&amp;b &lt;tag&gt; &quot;q&quot; &copy 2026 &hellip;&mdash;&euro;</p>", "a&b <tag> \"q\" \u00A9 2026 \u2026\u2014\u20AC"},
      {"<p>&#72;&#x69;&#X21; &#x1F600; &#128512;</p>", "Hi! \U0001F600 \U0001F600"},
      // What is no reference stays as written; what no character can be is replaced.
      {"<p>&bogus; & &#; &#xZZ; AT&T</p>", "&bogus; & &#; &#xZZ; AT&T"},
      {"<p>&#0;&#xD800;&#x110000;&#99999999999;</p>", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      // A paragraph of no-break spaces between others is an empty line the author meant.
      {"<p>a</p><p>&nbsp;</p><p>b</p>", "a||b"},
      {"<p>&nbsp;&nbsp;x</p>", "  x"},
      {"<br><br>x<br><br>", "x"},
      // An image in a paragraph of its own starts a line; one after a paragraph joins it.
      {"<p>x</p><p><img src=\"a.png\"></p>y", "x|[img:a.png]|y"},
      {"<p>x</p><img src='b.png'>y", "x[img:b.png]y"},
      {"<img src=a&amp;b.png alt=\"&lt;\"><IMG SRC=\" spaced.png \">", "[img:a&b.png][img:spaced.png]"},
      // Markup left open at the end shows nothing more; a lone "<" is text.
      {"<b>x</b><p class=\"open", "x"},
      {"x<!-- a comment never closed <p>y</p>", "x"},
      {"x<script>never closed <p>y</p>", "x"},
      {"1 < 2 and 3 <4> 5 </ 6", "1 < 2 and 3 <4> 5"},
  };
  for (auto const& [html, expected] : cases) {
    EXPECT_EQ(Walk(QString::fromUtf8(html)), expected) << html;
    // However it is sliced, a walk reports the same.
    for (int budget : {1, 3, 17}) EXPECT_EQ(WalkSliced(QString::fromUtf8(html), budget), expected) << html << " in slices of " << budget;
  }
}

TEST(HtmlParserTest, AnyNestingIsWalkedInSlicesOfTheGivenLength) {
  // Twenty thousand levels of nesting, as a hostile page pastes them.
  QString deep;
  for (int i = 0; i < 20000; ++i) deep += "<div><span><b>";
  deep += "bottom";
  for (int i = 0; i < 20000; ++i) deep += "</b></span></div>";
  // A table of half a megabyte, as a spreadsheet pastes it.
  QString table = "<table>";
  int cells = 0;
  while (table.size() < 566 * 1024) {
    table += "<tr>";
    for (int c = 0; c < 8; ++c, ++cells) table += "<td style=\"border:1px solid\">cell " + QString::number(cells) + "</td>";
    table += "</tr>";
  }
  table += "</table>";

  constexpr int kBudget = 16 * 1024;
  int slices = 0, largest = 0;
  EXPECT_EQ(WalkSliced(deep, kBudget, &slices, &largest), "bottom");
  EXPECT_GE(slices, deep.size() / kBudget);
  EXPECT_LE(largest, kBudget + 64) << "a slice reads its budget and at most the tag it is in";

  const std::string text = WalkSliced(table, kBudget, &slices, &largest);
  EXPECT_GE(slices, table.size() / kBudget);
  EXPECT_LE(largest, kBudget + 64);
  EXPECT_EQ(std::count(text.begin(), text.end(), '|'), cells - 1) << "one line a cell";
  EXPECT_EQ(text.substr(text.size() - 10), "cell " + std::to_string(cells - 1));
  EXPECT_EQ(text, Walk(table)) << "slices report what a walk at once reports";

  // A walk that has ended stays ended; one of nothing ends at once.
  Transcript transcript;
  CHTMLWalker walker("<p>x</p>", &transcript);
  EXPECT_TRUE(walker.Walk(100));
  EXPECT_TRUE(walker.Walk(100));
  EXPECT_EQ(transcript.out, "x");
  EXPECT_TRUE(CHTMLWalker("no markup", &transcript).Walk(1));
  EXPECT_TRUE(CHTMLWalker("<p>x</p>", nullptr).AtEnd());
}

TEST(HtmlParserTest, ARandomPasteReportsTheSameHoweverItIsSliced) {
  // Pieces that meet at every kind of boundary: inside references, tags,
  // comments, hidden elements, surrogate pairs and runs of white space.
  const QStringList pieces = {"<p>", "</p>", "<br>", "<img src='a.png'>", "<pre>", "</pre>", "<b>", "</b>",
                              "<!--", "-->", "<script>", "</script>", "<td>", "&amp;", "&#x1F600;", "&#65;",
                              "&nbsp;", "&", ";", "#", "x", "<", ">", "\"", " ", "  ", "\n", "\t", "word",
                              QString::fromUtf8("\xE6\x96\x87"), QString::fromUtf8("\xF0\x9F\x98\x80"),
                              "<p class=\"a&amp;b\">", "</td>", "<div>", "</div>"};
  std::mt19937 random(20261124);
  for (int doc = 0; doc < 400; ++doc) {
    QString html = "<p>";
    const int length = 5 + static_cast<int>(random() % 60);
    for (int i = 0; i < length; ++i) html += pieces[static_cast<int>(random() % pieces.size())];
    const std::string whole = Walk(html);
    for (int budget : {1, 2, 5, 13}) {
      ASSERT_EQ(WalkSliced(html, budget), whole) << "slices of " << budget << " in " << html.toStdString();
    }
  }
}

TEST(HtmlParserTest, ASliceNeverEndsInsideAReference) {
  // A slice that starts on a reference takes it whole and stops before the
  // next one; the digits of a reference may run on past any budget.
  const std::pair<QString, std::string> cases[] = {
      {"<p>&amp;" + QString(33, 'x') + "&nbsp;end</p>", "&" + std::string(33, 'x') + " end"},
      {"<p>&#" + QString(60, '0') + "65;after</p>", "\uFFFDafter"},
      {"<p>x&#x" + QString(50, '0') + "41 y &lt;" + QString(40, 'z') + "&gt;</p>",
       "x\uFFFD y <" + std::string(40, 'z') + ">"},
      // No reference, though its first letters would make one.
      {"<p>&amp;" + QString(32, 'x') + "&lt1 &amp2 &nbspx;</p>", "&" + std::string(32, 'x') + "&lt1 &amp2 &nbspx;"},
  };
  for (auto const& [html, expected] : cases) {
    EXPECT_EQ(Walk(html), expected) << html.toStdString();
    for (int budget : {1, 2, 5, 13, 40}) {
      EXPECT_EQ(WalkSliced(html, budget), expected) << html.toStdString() << " in slices of " << budget;
    }
  }
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
