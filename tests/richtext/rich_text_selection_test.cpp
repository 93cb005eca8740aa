#include <QClipboard>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTextBoundaryFinder>
#include <gtest/gtest.h>

#include "richtext/rich_text_test_util.h"

namespace {

using namespace richtext_test;

const QString kSelectColor = QStringLiteral("#3399ff");

std::unique_ptr<RichTextLabel> Selectable(std::vector<RichTextBlock> const& blocks, int width = 300,
                                          bool native = true) {
  auto label = MakeLabel(blocks, width);
  label->SetContentSelectable(true, native, kSelectColor);
  return label;
}

bool IsSelectColor(QImage const& image, int x, int y) { return QColor(image.pixel(x, y)) == QColor(kSelectColor); }

// The label's middle row of line `line`.
int RowOf(RichTextLabel const& label, int line) { return label.lines()[line].rect.center().y(); }

TEST(RichTextSelectionTest, DragSelectsAndCopiesTheRunBetweenPlaces) {
  auto label = Selectable({Text(QStringLiteral("first line\nsecond line"))});
  ASSERT_EQ(label->lines().size(), 2u);
  Drag(label.get(), QPoint(Advance("first "), 5), QPoint(Advance("first lin"), 5));
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("lin"));
  EXPECT_FALSE(label->selection().all_selected());
  // Pressing and letting go in one place selects nothing.
  Drag(label.get(), QPoint(Advance("fir"), 5), QPoint(Advance("fir"), 5));
  EXPECT_FALSE(label->HasContentSelection());
  EXPECT_EQ(label->CopyContentSelection(), QString());

  // From below the last line up into the text, and up above it for everything.
  Drag(label.get(), QPoint(4, label->height() + 6), QPoint(Advance("first "), RowOf(*label, 0)));
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("line\nsecond line"));
  Drag(label.get(), QPoint(4, label->height() + 6), QPoint(4, -3));
  EXPECT_TRUE(label->selection().all_selected());
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("first line\nsecond line"));
}

TEST(RichTextSelectionTest, SelectionBackgroundCoversExactlyTheSelectedRun) {
  auto label = Selectable({Text(QStringLiteral("abcdefghij"))});
  const int from = Advance("abc");
  const int to = Advance("abcdefg");
  Drag(label.get(), QPoint(from, 5), QPoint(to, 5));
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("defg"));
  const QImage image = Grab(label.get());
  // The top row holds no glyph ink at this size.
  for (int x = 0; x < image.width(); ++x) {
    EXPECT_EQ(IsSelectColor(image, x, 0), x >= from && x <= to) << "x " << x;
  }
  for (int y = 0; y < image.height(); ++y) {
    EXPECT_FALSE(IsSelectColor(image, from - 1, y));
    EXPECT_FALSE(IsSelectColor(image, to + 1, y));
  }

  // Across lines: the first line to its end, the last from its start.
  auto two = Selectable({Text(QStringLiteral("abcdef\nghijkl"))});
  Drag(two.get(), QPoint(Advance("ab"), RowOf(*two, 0)), QPoint(Advance("ghi"), RowOf(*two, 1)));
  EXPECT_EQ(two->CopyContentSelection(), QStringLiteral("cdef\nghi"));
  const QImage both = Grab(two.get());
  const int row0 = two->lines()[0].rect.top() + 1;
  const int row1 = two->lines()[1].rect.bottom() - 1;
  EXPECT_FALSE(IsSelectColor(both, Advance("ab") - 2, row0));
  EXPECT_TRUE(IsSelectColor(both, Advance("ab") + 1, row0));
  EXPECT_TRUE(IsSelectColor(both, two->lines()[0].rect.right(), row0));
  EXPECT_TRUE(IsSelectColor(both, 0, row1));
  EXPECT_FALSE(IsSelectColor(both, Advance("ghi") + 2, row1));
}

TEST(RichTextSelectionTest, BackwardSelectionPaintsAndCopiesLikeForward) {
  const std::vector<RichTextBlock> blocks{Text(QStringLiteral("one two three\nfour five six"))};
  auto forward = Selectable(blocks);
  auto backward = Selectable(blocks);
  const QPoint a(Advance("one t"), RowOf(*forward, 0));
  const QPoint b(Advance("four fi"), RowOf(*forward, 1));
  Drag(forward.get(), a, b);
  Drag(backward.get(), b, a);
  EXPECT_EQ(backward->CopyContentSelection(), QStringLiteral("wo three\nfour fi"));
  EXPECT_EQ(forward->CopyContentSelection(), backward->CopyContentSelection());
  EXPECT_EQ(Grab(forward.get()), Grab(backward.get()));
}

TEST(RichTextSelectionTest, CopyKeepsParagraphsImagesAndBreaks) {
  // Soft wraps join; the author's line breaks stay; nothing trails the end.
  const QString text = QStringLiteral("a first paragraph long enough to wrap twice\nand a second one");
  auto label = Selectable({Text(text)}, 120);
  ASSERT_GT(label->lines().size(), 3u);
  label->SelectContent(QPoint(), QPoint(), true);
  EXPECT_EQ(label->CopyContentSelection(), text);

  auto mixed = Selectable({Text(QStringLiteral("hi ")), Image(QSize(14, 14), Qt::yellow, QStringLiteral("[smile]")),
                           Text(QStringLiteral(" there")), Break(), Text(QStringLiteral("next")),
                           Image(QSize(14, 14), Qt::blue)});
  mixed->SelectContent(QPoint(), QPoint(), true);
  EXPECT_EQ(mixed->CopyContentSelection(), QStringLiteral("hi [smile] there\nnext[img]"));

  // Starting behind an image leaves it out; ending on either side of one keeps it.
  const int image_left = Advance("hi ");
  Drag(mixed.get(), QPoint(image_left + 12, 5), QPoint(image_left + 14 + Advance(" th"), 5));
  EXPECT_EQ(mixed->CopyContentSelection(), QStringLiteral(" th"));
  Drag(mixed.get(), QPoint(image_left + 2, 5), QPoint(image_left + 14 + Advance(" th"), 5));
  EXPECT_EQ(mixed->CopyContentSelection(), QStringLiteral("[smile] th"));
  Drag(mixed.get(), QPoint(Advance("h"), 5), QPoint(image_left + 3, 5));
  EXPECT_EQ(mixed->CopyContentSelection(), QStringLiteral("i [smile]"));
}

TEST(RichTextSelectionTest, DrivenSelectionAcrossRows) {
  const QString text = QStringLiteral("row text here");
  auto label = Selectable({Text(text)}, 300, false);
  const QPoint middle = label->mapToGlobal(QPoint(Advance("row te"), 5));

  // A drag coming down from the row above starts at the first place.
  label->UpdateSelectionState(2, middle, true);
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("row te"));
  label->UpdateSelectionState(3, middle, true);
  label->ClearContentSelection();

  // Coming up from the row below, at the last place.
  label->UpdateSelectionState(2, middle, false);
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("xt here"));
  label->ClearContentSelection();

  // A drag that starts in this row.
  label->UpdateSelectionState(1, label->mapToGlobal(QPoint(Advance("ro"), 5)), true);
  label->UpdateSelectionState(2, middle, true);
  label->UpdateSelectionState(3, middle, true);
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("w te"));

  // Rows wholly inside the drag are selected whole, and a whole row may be
  // narrowed to a range; a range is changed only by the drag itself.
  label->SelectContent(QPoint(), QPoint(), true);
  EXPECT_TRUE(label->selection().all_selected());
  EXPECT_EQ(label->CopyContentSelection(), text);
  label->SelectContent(QPoint(Advance("row "), 5), QPoint(Advance("row text"), 5), false);
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("text"));
  label->SelectContent(QPoint(Advance("r"), 5), QPoint(Advance("row"), 5), false);
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("text"));
}

TEST(RichTextSelectionTest, OnlyNativeModeTakesTheMouseAndTheKeyboard) {
  auto label = Selectable({Text(QStringLiteral("driven from the list\nplease"))}, 300, false);
  Drag(label.get(), QPoint(2, 5), QPoint(Advance("driven"), 5));
  EXPECT_FALSE(label->HasContentSelection());
  label->SetContentSelectable(true, true, kSelectColor);
  Drag(label.get(), QPoint(0, 5), QPoint(Advance("driven"), 5));
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("driven"));
  EXPECT_EQ(label->cursor().shape(), Qt::IBeamCursor);
  QApplication::clipboard()->clear();
  QKeyEvent select_all(QEvent::KeyPress, Qt::Key_A, Qt::ControlModifier);
  QApplication::sendEvent(label.get(), &select_all);
  QKeyEvent copy(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
  QApplication::sendEvent(label.get(), &copy);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("driven from the list\nplease"));

  // A missing colour changes nothing; turning selection off clears it.
  label->SetContentSelectable(true, true, QString());
  EXPECT_TRUE(label->HasContentSelection());
  label->SetContentSelectable(false, true, kSelectColor);
  EXPECT_FALSE(label->HasContentSelection());
  Drag(label.get(), QPoint(0, 5), QPoint(Advance("driven"), 5));
  EXPECT_FALSE(label->HasContentSelection());
}

TEST(RichTextSelectionTest, ReleaseOutsideEndsTheDragWhenThePointerComesBack) {
  auto label = Selectable({Text(QStringLiteral("pointer left the label"))});
  SendMouse(label.get(), QEvent::MouseButtonPress, QPoint(2, 5), Qt::LeftButton, Qt::LeftButton);
  SendMouse(label.get(), QEvent::MouseMove, QPoint(Advance("pointer"), 5), Qt::NoButton, Qt::LeftButton);
  EXPECT_TRUE(label->selection().selecting());
  QEvent enter(QEvent::Enter);
  QApplication::sendEvent(label.get(), &enter);
  EXPECT_FALSE(label->selection().selecting());
  SendMouse(label.get(), QEvent::MouseMove, QPoint(Advance("pointer left"), 5), Qt::NoButton, Qt::LeftButton);
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("pointer"));
}

TEST(RichTextSelectionTest, ClickOnALinkInsideSelectableText) {
  RichTextBlock link = Text(QStringLiteral("link"));
  link.text->clickable = true;
  auto label = Selectable({Text(QStringLiteral("a ")), link});
  QSignalSpy spy(label.get(), &RichTextLabel::ClickText);
  Drag(label.get(), QPoint(0, 5), QPoint(Advance("a "), 5));
  ASSERT_TRUE(label->HasContentSelection());
  const QPoint on_link(Advance("a li"), 5);
  Drag(label.get(), on_link, on_link);
  EXPECT_EQ(spy.count(), 1);
  EXPECT_FALSE(label->HasContentSelection());
  // A drag that starts on the link selects instead of clicking.
  Drag(label.get(), on_link, QPoint(0, 5));
  EXPECT_EQ(spy.count(), 1);
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("a li"));
}

TEST(RichTextSelectionTest, RightToLeftTextIsSelectedWhereItIsShown) {
  const QString first = QStringLiteral("\u05e9\u05dc\u05d5\u05dd");
  const QString second = QStringLiteral("\u05e2\u05d5\u05dc\u05dd");
  auto label = Selectable({Text(first + QLatin1Char(' ') + second)});
  const int right = label->width() - 1;
  // The first word is drawn on the right.
  Drag(label.get(), QPoint(right, 5), QPoint(right - label->width() / 3, 5));
  const QString copied = label->CopyContentSelection();
  ASSERT_GE(copied.size(), 2);
  EXPECT_TRUE(first.startsWith(copied.left(2))) << copied.toStdString();
  EXPECT_FALSE(copied.contains(second.left(2)));
  const QImage image = Grab(label.get());
  EXPECT_TRUE(IsSelectColor(image, right - 2, 0));
  EXPECT_FALSE(IsSelectColor(image, 2, 0));
}

TEST(RichTextSelectionTest, PlacesNeverFallInsideACharacter) {
  const QString text = QStringLiteral("a\U0001F469\u200D\U0001F467b\U0001F1EF\U0001F1F5e\u0301\U0001F44D\U0001F3FDz");
  auto label = Selectable({Text(text)});
  QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
  for (int x = 0; x <= label->width(); x += 2) {
    Drag(label.get(), QPoint(0, 5), QPoint(x, 5));
    const QString copied = label->CopyContentSelection();
    EXPECT_TRUE(text.startsWith(copied));
    graphemes.setPosition(copied.size());
    EXPECT_TRUE(graphemes.isAtBoundary()) << "x " << x << " gives " << copied.size();
  }
  label->SelectContent(QPoint(), QPoint(), true);
  EXPECT_EQ(label->CopyContentSelection(), text);
}

TEST(RichTextSelectionTest, DoubleClickSelectsAWordOrAnImage) {
  auto label =
      Selectable({Text(QStringLiteral("hello wide world ")), Image(QSize(14, 14), Qt::red, QStringLiteral("[ok]"))});
  const auto double_click = [&](QPoint const& pos) {
    SendMouse(label.get(), QEvent::MouseButtonPress, pos, Qt::LeftButton, Qt::LeftButton);
    SendMouse(label.get(), QEvent::MouseButtonRelease, pos, Qt::LeftButton, Qt::NoButton);
    SendMouse(label.get(), QEvent::MouseButtonDblClick, pos, Qt::LeftButton, Qt::LeftButton);
    SendMouse(label.get(), QEvent::MouseButtonRelease, pos, Qt::LeftButton, Qt::NoButton);
  };
  double_click(QPoint(Advance("hello wi"), 5));
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("wide"));
  // Just behind the last letter is still the word.
  double_click(QPoint(Advance("hello") + 1, 5));
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("hello"));
  double_click(QPoint(Advance("hello wide world ") + 7, 5));
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("[ok]"));
  const QImage image = Grab(label.get());
  EXPECT_TRUE(IsSelectColor(image, Advance("hello wide world ") + 1, 0));
  EXPECT_FALSE(IsSelectColor(image, Advance("hello wide world ") - 3, 0));
}

TEST(RichTextSelectionTest, ARightClickOutsideItAFocusLossOrANewLayoutDropsTheSelection) {
  auto label = Selectable({Text(QStringLiteral("context menu target"))});
  auto select_menu = [&label] {
    Drag(label.get(), QPoint(Advance("context menu"), 5), QPoint(Advance("context "), 5));
    ASSERT_EQ(label->CopyContentSelection(), QStringLiteral("menu"));
  };
  select_menu();
  RightClick(label.get(), QPoint(Advance("context me"), 5));
  EXPECT_EQ(label->CopyContentSelection(), QStringLiteral("menu")) << "kept for the menu";
  RightClick(label.get(), QPoint(Advance("context menu tar"), 5));
  EXPECT_FALSE(label->HasContentSelection());

  select_menu();
  QFocusEvent to_menu(QEvent::FocusOut, Qt::PopupFocusReason);
  QApplication::sendEvent(label.get(), &to_menu);
  EXPECT_TRUE(label->HasContentSelection());
  QFocusEvent clicked_away(QEvent::FocusOut, Qt::MouseFocusReason);
  QApplication::sendEvent(label.get(), &clicked_away);
  EXPECT_FALSE(label->HasContentSelection());

  select_menu();
  label->UpdateRichText(100, -1, false);
  EXPECT_FALSE(label->HasContentSelection());
  EXPECT_EQ(label->CopyContentSelection(), QString());
}

}  // namespace
