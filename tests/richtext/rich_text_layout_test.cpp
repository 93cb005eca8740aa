#include <QSignalSpy>
#include <gtest/gtest.h>

#include "chat/ui/desktop/view/rich_text/rich_text_measure.h"
#include "richtext/rich_text_test_util.h"
#include "support/test_util.h"

namespace {

using namespace richtext_test;

TEST(RichTextLayoutTest, LineLimitEndsInEllipsisOnlyWhereItFits) {
  // Two ten-letter words a line leave room for "..." plus one pixel size.
  const QString roomy = QStringLiteral("abcdefghij ").repeated(10);
  auto label = MakeLabel({Text(roomy)}, 200, 3);
  ASSERT_EQ(label->lines().size(), 3u);
  EXPECT_TRUE(label->IsReachMaxLines());
  EXPECT_EQ(LineText(label->lines()[0]), QStringLiteral("abcdefghij abcdefghij "));
  // The "..." follows the piece as laid out, its closing space included.
  EXPECT_EQ(LineText(label->lines()[2]), QStringLiteral("abcdefghij abcdefghij ..."));
  EXPECT_EQ(label->height(), label->lines().back().rect.bottom());

  // A word filling its line keeps all its letters and gets no "...".
  const QString tight = QStringLiteral("abcdefghijklmnopqrstuvw ").repeated(6);
  ASSERT_GT(Advance(QStringLiteral("abcdefghijklmnopqrstuvw")) + 14, 200);
  auto full = MakeLabel({Text(tight)}, 200, 3);
  ASSERT_EQ(full->lines().size(), 3u);
  EXPECT_TRUE(full->IsReachMaxLines());
  EXPECT_EQ(LineText(full->lines()[2]), QStringLiteral("abcdefghijklmnopqrstuvw "));

  // Text within the limit is left alone.
  auto fits = MakeLabel({Text(QStringLiteral("short note"))}, 200, 3);
  EXPECT_EQ(fits->lines().size(), 1u);
  EXPECT_FALSE(fits->IsReachMaxLines());
}

TEST(RichTextLayoutTest, SinglePieceRunsMoveWholeOrAreCut) {
  const QString link = QStringLiteral("https://example.test/a");
  auto label = MakeLabel({Text(QStringLiteral("see the page at ")), Text(link, 14, 0)}, 260);
  ASSERT_EQ(label->lines().size(), 2u);
  EXPECT_EQ(LineText(label->lines()[0]), QStringLiteral("see the page at "));
  EXPECT_EQ(LineText(label->lines()[1]), link);

  // Wider than a whole line: one piece, cut, and nothing after it wraps in.
  const QString long_link = QStringLiteral("https://example.test/").append(QString(60, QLatin1Char('q')));
  auto cut = MakeLabel({Text(long_link, 14, 0), Text(QStringLiteral(" tail"))}, 200);
  ASSERT_EQ(cut->lines().size(), 2u);
  QString const first = cut->lines()[0].blocks[0].text->content;
  EXPECT_TRUE(long_link.startsWith(first));
  EXPECT_LT(first.size(), long_link.size());
  EXPECT_LE(cut->lines()[0].rect.width(), 200);
  EXPECT_TRUE(LineText(cut->lines()[1]).endsWith(QStringLiteral("tail")));

  // Whether the run fits is measured on its whole content: a first
  // paragraph that would fit does not keep a longer run on the line.
  auto whole = MakeLabel({Text(QStringLiteral("see ")), Text(QStringLiteral("ab\ncdefghijklmnopqrstuvwxyz"), 14, 0)},
                         Advance(QStringLiteral("see ab")) + 20);
  ASSERT_EQ(whole->lines().size(), 2u);
  EXPECT_EQ(LineText(whole->lines()[0]), QStringLiteral("see "));

  // One piece also when it starts a line: its second paragraph is cut away.
  RichTextBlock wide = Text(QStringLiteral("x"));
  wide.margins = QMargins(0, 0, 200, 0);
  auto two_paragraphs = MakeLabel({wide, Text(QStringLiteral("first\nsecond"), 14, 0)}, 200);
  ASSERT_EQ(two_paragraphs->lines().size(), 2u);
  EXPECT_EQ(LineText(two_paragraphs->lines()[1]), QStringLiteral("first..."));
  EXPECT_TRUE(two_paragraphs->IsReachMaxLines());
}

TEST(RichTextLayoutTest, ParagraphsStackOnSharedPixelRowsAndBreaksDoNotRepeat) {
  auto label = MakeLabel({Text(QStringLiteral("one\ntwo\nthree"))}, 200);
  auto const& lines = label->lines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].rect.top(), 0);
  for (size_t i = 1; i < lines.size(); ++i) EXPECT_EQ(lines[i].rect.top(), lines[i - 1].rect.bottom());
  EXPECT_EQ(label->size(), QSize(Advance(QStringLiteral("three")), lines[2].rect.bottom()));

  auto blank = MakeLabel({Text(QStringLiteral("\n\n"))}, 200);
  ASSERT_EQ(blank->lines().size(), 2u);
  for (auto const& line : blank->lines()) {
    ASSERT_EQ(line.blocks.size(), 1u);
    EXPECT_EQ(line.blocks[0].text->content, QString());
    EXPECT_TRUE(line.blocks[0].text->ends_paragraph);
    EXPECT_GT(line.rect.height(), 0);
  }
  auto breaks = MakeLabel({Text(QStringLiteral("a")), Break(), Break(), Break(), Text(QStringLiteral("b"))}, 200);
  ASSERT_EQ(breaks->lines().size(), 2u);
  EXPECT_EQ(LineText(breaks->lines()[1]), QStringLiteral("b"));
  EXPECT_EQ(MakeLabel({Break(), Break(), Text(QStringLiteral("a"))}, 200)->lines().size(), 1u);

  // Nothing to show still gives one placeholder line, and says so: the chat
  // item tests watch for that report.
  talvex_test::LogCapture log;
  auto empty = MakeLabel({}, 200);
  ASSERT_EQ(empty->lines().size(), 1u);
  EXPECT_EQ(empty->lines()[0].rect.height(), 12);
  EXPECT_EQ(empty->height(), 11);
  EXPECT_TRUE(log.Contains("empty rich blocks in lines", base::log::kLogError));
  EXPECT_EQ(MakeLabel({Break(), RichTextBlock()}, 200)->lines().size(), 1u);
}

TEST(RichTextLayoutTest, ImagesStandAloneWhenWideFillTheWidthAndLeaveRoomForEllipsis) {
  auto label = MakeLabel({Text(QStringLiteral("ab")), Image(QSize(300, 20), Qt::red), Text(QStringLiteral("cd"))}, 200);
  auto const& lines = label->lines();
  ASSERT_EQ(lines.size(), 3u);
  ASSERT_EQ(lines[1].blocks.size(), 1u);
  EXPECT_EQ(lines[1].blocks[0].size, QSize(300, 20));
  EXPECT_EQ(lines[1].rect.width(), 200);
  EXPECT_EQ(label->width(), 200);
  const QImage image = Grab(label.get());
  const int y = lines[1].rect.top() + 10;
  EXPECT_EQ(QColor(image.pixel(0, y)), QColor(Qt::red));
  EXPECT_EQ(QColor(image.pixel(199, y)), QColor(Qt::red));

  // A fill-width image takes the width laid out before it.
  RichTextBlock rule = Image(QSize(5, 2), Qt::gray);
  rule.pixmap->fill_width = true;
  EXPECT_EQ(MakeLabel({rule, Text(QStringLiteral("text"))}, 200)->lines()[0].blocks[0].size.width(), 0);
  auto after = MakeLabel({Text(QStringLiteral("a wider line")), Break(), rule}, 200);
  ASSERT_EQ(after->lines().size(), 2u);
  EXPECT_EQ(after->lines()[1].blocks[0].size.width(), Advance(QStringLiteral("a wider line")));

  // 14-pixel emoji: the line limit leaves no room for a further image.
  std::vector<RichTextBlock> emoji(30, Image(QSize(14, 14), Qt::yellow, QStringLiteral(":sun:")));
  auto limited = MakeLabel(emoji, 100, 2);
  ASSERT_EQ(limited->lines().size(), 2u);
  EXPECT_TRUE(limited->IsReachMaxLines());
  ASSERT_EQ(limited->lines()[1].blocks.back().type, RichTextBlock::kText);
  EXPECT_EQ(limited->lines()[1].blocks.back().text->content, QStringLiteral("..."));
  EXPECT_LE(limited->lines()[1].rect.width(), 100);
}

TEST(RichTextLayoutTest, VerticalAlignmentInATallLine) {
  RichTextBlock bottom = Text(QStringLiteral("low"));
  bottom.alignment = RichTextBlock::kAlignBottom;
  bottom.margins = QMargins(0, 0, 0, 2);
  RichTextBlock centre = Text(QStringLiteral("mid"));
  centre.alignment = RichTextBlock::kAlignCenter;
  auto label = MakeLabel({Image(QSize(20, 40), Qt::blue), bottom, centre}, 300);
  auto const& blocks = label->lines()[0].blocks;
  ASSERT_EQ(blocks.size(), 3u);
  EXPECT_EQ(label->lines()[0].rect.height(), 40);
  const int text_height = blocks[1].size.height();
  EXPECT_EQ(blocks[1].margins.top(), 40 - text_height - 2);
  EXPECT_EQ(blocks[2].margins.top(), (40 - text_height) / 2);
  EXPECT_EQ(blocks[0].margins.top(), 0);
}

TEST(RichTextLayoutTest, OnlyNewRulesMeasureAgainAndPaintingMeasuresNothing) {
  RichTextBlock link = Text(QStringLiteral("a link"));
  link.text->clickable = true;
  auto label = MakeLabel({Text(QStringLiteral("some text that wraps over a few lines \U0001F600 ok")), link,
                          Image(QSize(16, 16), Qt::red)},
                         520);
  EXPECT_EQ(label->lines().size(), 1u);
  RichTextMeasure::ResetCount();
  label->UpdateRichText(520, -1, false);
  EXPECT_EQ(RichTextMeasure::Count(), 0) << "the same rules again";
  label->UpdateRichText(120, -1, false);
  EXPECT_GT(RichTextMeasure::Count(), 0);
  EXPECT_GT(label->lines().size(), 2u);
  EXPECT_LE(label->width(), 120);

  label->SetContentSelectable(true, true, QStringLiteral("#99c9ff"));
  Drag(label.get(), QPoint(2, 3), QPoint(60, label->height() - 2));
  ASSERT_TRUE(label->HasContentSelection());
  RichTextMeasure::ResetCount();
  EXPECT_FALSE(Grab(label.get()).isNull());
  EXPECT_EQ(RichTextMeasure::Count(), 0);
  label->UpdateRichText(520, -1, false);
  EXPECT_EQ(label->lines().size(), 1u);
}

TEST(RichTextLayoutTest, AFontSetLaterLaysTheTextOutAgain) {
  auto label = MakeLabel({Text(QStringLiteral("styled later"))}, 300);
  const QSize before = label->size();
  label->setStyleSheet(QStringLiteral("font-family: 'DejaVu Serif';"));
  label->ensurePolished();
  EXPECT_NE(label->size(), before);
  // The run keeps its own pixel size and weight.
  QFont serif(QStringLiteral("DejaVu Serif"));
  serif.setPixelSize(14);
  EXPECT_EQ(label->width(), QFontMetrics(serif).horizontalAdvance(QStringLiteral("styled later")));
}

TEST(RichTextLayoutTest, BadInputIsRepaired) {
  RichTextBlock colourless = Text(QStringLiteral("plain"));
  colourless.text->color.clear();
  RichTextBlock sizeless = Text(QStringLiteral("tiny"), 0);
  RichTextBlock image = Image(QSize(10, 10), Qt::green);
  image.margins = QMargins(-5, -5, -5, -5);
  auto label = MakeLabel({colourless, sizeless, RichTextBlock(), image}, 300);
  EXPECT_EQ(label->source_blocks()[0].text->color, QStringLiteral("black")) << "drawn, not invisible";
  auto const& blocks = label->lines()[0].blocks;
  ASSERT_EQ(blocks.size(), 3u);
  EXPECT_EQ(blocks[1].size.width(), Advance(QStringLiteral("tiny"), 12));
  EXPECT_EQ(blocks[2].margins.left(), 0);

  const int before = label->width();
  label->UpdateRichText(-10, -1, false);
  EXPECT_EQ(label->max_render_width(), qMax(12, before));
  EXPECT_EQ(label->width(), before);
}

TEST(RichTextLayoutTest, BlocksCopyTheirRunsAndKeepTheirType) {
  RichTextBlock text = Text(QStringLiteral("original"));
  RichTextBlock copy(text);
  copy.text->content = QStringLiteral("changed");
  EXPECT_EQ(text.text->content, QStringLiteral("original"));

  RichTextBlock image = Image(QSize(4, 4), Qt::black);
  image = text;
  EXPECT_EQ(image.type, RichTextBlock::kImage);
  EXPECT_EQ(image.text, nullptr);

  RichTextBlock empty;
  empty = text;
  EXPECT_EQ(empty.type, RichTextBlock::kText);
  ASSERT_NE(empty.text, nullptr);
  EXPECT_NE(empty.text.get(), text.text.get());
}

TEST(RichTextLayoutTest, ClickableRunsEmitTheirSourceBlock) {
  RichTextBlock link = Text(QStringLiteral("open the notes"));
  link.text->clickable = true;
  link.text->underline = true;
  link.text->color = QStringLiteral("#1a73e8");
  auto label = MakeLabel({Text(QStringLiteral("see ")), link}, 300);
  EXPECT_TRUE(label->hasMouseTracking());
  QSignalSpy spy(label.get(), &RichTextLabel::ClickText);
  const QPoint on_link(Advance(QStringLiteral("see open")), 8);
  const QPoint on_plain(Advance(QStringLiteral("s")), 8);

  SendMouse(label.get(), QEvent::MouseMove, on_link, Qt::NoButton, Qt::NoButton);
  EXPECT_EQ(label->cursor().shape(), Qt::PointingHandCursor);
  SendMouse(label.get(), QEvent::MouseMove, on_plain, Qt::NoButton, Qt::NoButton);
  EXPECT_EQ(label->cursor().shape(), Qt::ArrowCursor);

  SendMouse(label.get(), QEvent::MouseButtonPress, on_link, Qt::LeftButton, Qt::LeftButton);
  SendMouse(label.get(), QEvent::MouseButtonRelease, on_link, Qt::LeftButton, Qt::NoButton);
  ASSERT_EQ(spy.count(), 1);
  EXPECT_EQ(spy[0][1].toString(), QStringLiteral("open the notes"));
  EXPECT_EQ(spy[0][0].value<RichTextBlock>().text->color, QStringLiteral("#1a73e8"));

  // Pressed on plain text and released on the link, or the other way: no click.
  SendMouse(label.get(), QEvent::MouseButtonPress, on_plain, Qt::LeftButton, Qt::LeftButton);
  SendMouse(label.get(), QEvent::MouseButtonRelease, on_link, Qt::LeftButton, Qt::NoButton);
  SendMouse(label.get(), QEvent::MouseButtonPress, on_link, Qt::LeftButton, Qt::LeftButton);
  SendMouse(label.get(), QEvent::MouseButtonRelease, on_plain, Qt::LeftButton, Qt::NoButton);
  EXPECT_EQ(spy.count(), 1);

  EXPECT_FALSE(MakeLabel({Text(QStringLiteral("nothing to click"))}, 300)->hasMouseTracking());

  // Callbacks run first and may stop the event; an ignored release also drops
  // the press, so a later release alone is no click.
  int presses = 0;
  label->SetMousePressCallback([&](RichTextLabel*, QMouseEvent*) { ++presses; });
  label->SetMouseReleaseCallback([](RichTextLabel*, QMouseEvent* event) { event->ignore(); });
  SendMouse(label.get(), QEvent::MouseButtonPress, on_link, Qt::LeftButton, Qt::LeftButton);
  SendMouse(label.get(), QEvent::MouseButtonRelease, on_link, Qt::LeftButton, Qt::NoButton);
  EXPECT_EQ(presses, 1);
  label->SetMouseReleaseCallback(nullptr);
  SendMouse(label.get(), QEvent::MouseButtonRelease, on_link, Qt::LeftButton, Qt::NoButton);
  EXPECT_EQ(spy.count(), 1);
}

TEST(RichTextLayoutTest, PartialRepaintDrawsTheLinesItExposes) {
  QString text;
  for (int i = 0; i < 300; ++i) text += QStringLiteral("line %1 of a long pasted log\n").arg(i);
  auto label = MakeLabel({Text(text), Image(QSize(400, 30), Qt::darkGreen)}, 260);
  ASSERT_GT(label->lines().size(), 300u);
  const QImage whole = Grab(label.get());
  for (int top : {0, 1234, label->height() - 40}) {
    const QRect part(0, top, label->width(), 37);
    const QImage piece = label->grab(part).toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(piece, whole.copy(part)) << "rows from " << top;
  }
}

}  // namespace
