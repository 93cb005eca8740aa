#include "uikit/label/tx_label_string_util.h"

#include <QTextBoundaryFinder>
#include <gtest/gtest.h>

#include "richtext/rich_text_test_util.h"

namespace {

using richtext_test::Advance;

struct Pieces {
  QStringList strings;
  QVector<QRect> rects;
  bool more = false;
};

Pieces Split(QString const& text, int width, int start_x = 0, int limit = -1, int pixel_size = 14) {
  QFont font = richtext_test::MonoFont();
  font.setPixelSize(pixel_size);
  const QFontMetrics metrics(font);
  Pieces out;
  TXLabelStringUtil::CalculateMultiLineStringRects(QPoint(start_x, 0), 0, 0, width, 0, font, metrics, text,
                                                   out.strings, out.rects, out.more, limit);
  return out;
}

QString TrimmedEnd(QString text) {
  while (!text.isEmpty() && text.back().isSpace()) text.chop(1);
  return text;
}

// Every piece fits from where it starts, and each cut is a grapheme boundary
// of the whole text.
void ExpectCleanPieces(QString const& text, Pieces const& pieces, int width, int start_x = 0) {
  ASSERT_EQ(pieces.strings.size(), pieces.rects.size());
  EXPECT_EQ(pieces.strings.join(QString()), text);
  QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
  int offset = 0;
  for (int i = 0; i < pieces.strings.size(); ++i) {
    const int room = width - (i == 0 ? start_x : 0);
    // A single character wider than the line stands alone however wide.
    QTextBoundaryFinder in_piece(QTextBoundaryFinder::Grapheme, pieces.strings[i]);
    in_piece.toNextBoundary();
    const bool one_character = in_piece.position() == pieces.strings[i].size();
    if (!one_character) {
      EXPECT_LE(Advance(TrimmedEnd(pieces.strings[i])), room) << pieces.strings[i].toStdString();
    }
    EXPECT_EQ(pieces.rects[i].x(), i == 0 ? start_x : 0);
    offset += pieces.strings[i].size();
    graphemes.setPosition(offset);
    EXPECT_TRUE(graphemes.isAtBoundary()) << "cut inside a character at " << offset;
  }
}

TEST(TXLabelStringUtilTest, BreaksBetweenWordsAndInsideWordsWiderThanALine) {
  const QString text = QStringLiteral("the quick brown fox jumps over the lazy dog again and again");
  const Pieces pieces = Split(text, 100);
  ASSERT_GT(pieces.strings.size(), 2);
  ExpectCleanPieces(text, pieces, 100);
  for (int i = 0; i < pieces.strings.size(); ++i) {
    // No word is torn: each piece ends at a space or the end of the text.
    EXPECT_TRUE(pieces.strings[i].endsWith(QLatin1Char(' ')) || i + 1 == pieces.strings.size());
    EXPECT_EQ(pieces.rects[i].y(), i * pieces.rects[0].height());
  }
  EXPECT_FALSE(pieces.more);

  // The first piece starts at the given point.
  ExpectCleanPieces(QStringLiteral("alpha beta gamma delta"), Split(QStringLiteral("alpha beta gamma delta"), 120, 70),
                    120, 70);
  // A word that fits a line of its own but not beside the start point begins the next line.
  EXPECT_EQ(Split(QStringLiteral("abcdefghij"), 100, 60).strings, QStringList({QString(), "abcdefghij"}));

  // A word wider than a line is cut as late as possible.
  const QString wide(60, QLatin1Char('w'));
  const Pieces cut = Split(wide, 100);
  ASSERT_GT(cut.strings.size(), 3);
  ExpectCleanPieces(wide, cut, 100);
  EXPECT_GT(Advance(cut.strings[0]) + Advance(QStringLiteral("w")), 100);
}

TEST(TXLabelStringUtilTest, PieceLimitLeftoverTextAndParagraphEnds) {
  const QString text = QStringLiteral("one two three four five six seven eight nine ten");
  const Pieces all = Split(text, 80);
  ASSERT_GT(all.strings.size(), 3);
  const Pieces two = Split(text, 80, 0, 2);
  EXPECT_TRUE(two.more);
  EXPECT_EQ(two.strings, all.strings.mid(0, 2));
  const Pieces exact = Split(text, 80, 0, all.strings.size());
  EXPECT_EQ(exact.strings, all.strings);
  EXPECT_FALSE(exact.more);

  // The paragraph end mark stays on the last piece only and takes no width.
  const Pieces whole = Split(QStringLiteral("short\r"), 200);
  EXPECT_EQ(whole.strings, QStringList({QStringLiteral("short\r")}));
  EXPECT_EQ(whole.rects[0].width(), Advance(QStringLiteral("short")));
  const QString paragraph = QStringLiteral("a paragraph that needs a few lines\r");
  const Pieces wrapped = Split(paragraph, 90);
  ASSERT_GT(wrapped.strings.size(), 1);
  EXPECT_EQ(wrapped.strings.join(QString()).count(QLatin1Char('\r')), 1);
  EXPECT_TRUE(wrapped.strings.last().endsWith(QLatin1Char('\r')));
  // Cut short by the limit, the paragraph does not end on screen.
  const Pieces limited = Split(paragraph, 90, 0, 1);
  EXPECT_TRUE(limited.more);
  EXPECT_EQ(limited.strings, wrapped.strings.mid(0, 1));

  // An empty paragraph is one empty piece a line high.
  const Pieces empty = Split(QString(), 100);
  EXPECT_EQ(empty.strings, QStringList({QString()}));
  EXPECT_EQ(empty.rects[0].width(), 0);
  EXPECT_GT(empty.rects[0].height(), 0);
  EXPECT_EQ(Split(QStringLiteral("\r"), 100).strings, QStringList({QStringLiteral("\r")}));
}

TEST(TXLabelStringUtilTest, EmojiSequencesFlagsAndMarksStayWhole) {
  const QString family = QStringLiteral("\U0001F469\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466");
  const QString flags = QStringLiteral("\U0001F1EF\U0001F1F5\U0001F1EB\U0001F1F7\U0001F1E9\U0001F1EA");
  const QString waving = QStringLiteral("\U0001F44B\U0001F3FD");
  const QString accented = QStringLiteral("e\u0301a\u0308o\u0302");
  const QString texts[] = {family.repeated(12), flags.repeated(8), waving.repeated(20), accented.repeated(20),
                           family + QLatin1Char('x') + flags + waving + accented + family};
  for (QString const& text : texts) {
    for (int width : {20, 37, 64}) {
      const Pieces pieces = Split(text, width);
      ExpectCleanPieces(text, pieces, width);
      for (QString const& piece : pieces.strings) {
        ASSERT_FALSE(piece.isEmpty());
        EXPECT_FALSE(piece.front().isLowSurrogate());
        EXPECT_FALSE(piece.back().isHighSurrogate());
        EXPECT_NE(piece.front(), QChar(0x200D));
        EXPECT_FALSE(piece.front().isMark());
      }
    }
  }
  // Flags pair up from the start of a run of indicators.
  const Pieces one_flag_each = Split(flags, 1);
  EXPECT_EQ(one_flag_each.strings.size(), 3);
  // Also right after an emoji sequence, where Qt's own grapheme finder loses
  // the pairing of indicators.
  const Pieces after_family = Split(family + flags, 1);
  EXPECT_EQ(after_family.strings, (QStringList{family, flags.mid(0, 4), flags.mid(4, 4), flags.mid(8, 4)}));
}

TEST(TXLabelStringUtilTest, ScriptsWithoutSpacesAndZeroWidthSpaces) {
  // CJK text breaks between ideographs.
  const QString cjk = QStringLiteral("\u4eca\u5929\u7684\u4f1a\u8bae\u5ef6\u671f\u5230\u4e0b\u5348\u4e09\u70b9"
                                     "\u8bf7\u5927\u5bb6\u51c6\u65f6\u53c2\u52a0\u8c22\u8c22");
  const Pieces cjk_pieces = Split(cjk, 60);
  ASSERT_GT(cjk_pieces.strings.size(), 2);
  ExpectCleanPieces(cjk, cjk_pieces, 60);

  // A zero-width space is a place to break, and stays with the text before it.
  const QString joined = QStringLiteral("abcdefgh\u200Bijklmnop\u200Bqrstuvwx");
  const Pieces zwsp = Split(joined, 100);
  ASSERT_EQ(zwsp.strings.size(), 3);
  EXPECT_EQ(zwsp.strings[0], QStringLiteral("abcdefgh\u200B"));
  EXPECT_EQ(zwsp.strings[1], QStringLiteral("ijklmnop\u200B"));

  // Right-to-left text breaks between its words like any other.
  const QString arabic = QStringLiteral("\u0645\u0631\u062d\u0628\u0627 \u0628\u0643\u0645 \u0641\u064a "
                                        "\u0627\u0644\u0627\u062c\u062a\u0645\u0627\u0639 \u0627\u0644\u064a\u0648\u0645");
  const QString hebrew = QStringLiteral("\u05e9\u05dc\u05d5\u05dd \u05dc\u05db\u05d5\u05dc\u05dd "
                                        "\u05d1\u05e4\u05d2\u05d9\u05e9\u05d4 \u05e9\u05dc \u05d4\u05d9\u05d5\u05dd");
  for (QString const& text : {arabic, hebrew}) {
    // Wide enough for the longest word: breaks fall between words only.
    int width = 0;
    for (QString const& word : text.split(QLatin1Char(' '))) width = qMax(width, Advance(word) + 2);
    const Pieces pieces = Split(text, width);
    ASSERT_GT(pieces.strings.size(), 1);
    ExpectCleanPieces(text, pieces, width);
    for (int i = 0; i + 1 < pieces.strings.size(); ++i) EXPECT_TRUE(pieces.strings[i].endsWith(QLatin1Char(' ')));
  }
}

TEST(TXLabelStringUtilTest, HundredThousandCharacterParagraphs) {
  QString words;
  while (words.size() < 100000) words += QStringLiteral("meeting notes ");
  const Pieces spaced = Split(words, 260);
  ExpectCleanPieces(words, spaced, 260);
  EXPECT_GT(spaced.strings.size(), 100000 / 40);

  const QString solid(100000, QLatin1Char('x'));
  const Pieces cut = Split(solid, 260, 0, 5);
  EXPECT_EQ(cut.strings.size(), 5);
  EXPECT_TRUE(cut.more);
  for (QString const& piece : cut.strings) EXPECT_LE(Advance(piece), 260);
}

}  // namespace
