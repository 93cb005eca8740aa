// The chat items on their own: height estimates and size hints, the sender
// line, the sending spinner, links, selection, notices, files and avatars.
#include <QApplication>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QDesktopServices>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QTest>
#include <QTextDocument>
#include <QUrl>

#include "chat/ui/desktop/view/chat/chat_face_item.h"
#include "chat/ui/desktop/view/chat/chat_file_item.h"
#include "chat/ui/desktop/view/chat/chat_text_item.h"
#include "chat/ui/desktop/view/chat/chat_tips_item.h"
#include "chat/ui/desktop/view/chat/chat_unread_msg_widget.h"
#include "chat/ui/desktop/view/chat/long_text_reader.h"
#include "chat/ui/desktop/view/chat/text_browser.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "items_fixture.h"
#include "uikit/label/qf_plain_label.h"
#include "uikit/widget/rotate_image_widget.h"

namespace items_test {
namespace {

QString PlainOf(QString const& html) {
  QTextDocument document;
  document.setHtml(html);
  return document.toPlainText();
}

class ChatItemsTest : public ::testing::Test {
 protected:
  void SetUp() override { InitChatResources(); }
};

TEST(ChatUnreadMsgWidgetTest, TheNewMessagesTextFitsAtEveryCountAndWidth) {
  ChatUnreadMsgWidget pill;
  pill.show();
  QLabel* label = pill.text_label();
  auto fits = [label] {
    label->parentWidget()->layout()->activate();
    return label->fontMetrics().horizontalAdvance(label->text()) <= label->contentsRect().width();
  };
  for (QString const& text : {QString("1 new messages"), QString("99+ new messages")}) {
    pill.SetText(text);
    EXPECT_EQ(label->text(), text) << "shown whole";
    EXPECT_TRUE(fits()) << text.toStdString();
  }
  // A panel too narrow for the text: the button stays inside it and the tooltip says it all.
  pill.SetMaxWidth(110);
  EXPECT_LE(pill.width(), 110);
  EXPECT_TRUE(fits());
  EXPECT_EQ(pill.toolTip(), "99+ new messages");
}

TEST_F(ChatItemsTest, HeightEstimateFollowsTheKindAndTheShell) {
  auto estimate = [](int chat_type, bool is_private = false, char const* tail = nullptr) {
    Variant message(base::variant::kVariantTypeMap);
    message.Set("chat_type", chat_type);
    if (is_private) message.Set(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel, "(private)");
    if (tail) message.Set(ChatMsgBaseInfoFields_kStringBaseInfoTipsText, tail);
    return ChatItem::GetChatItemHeight(message, 300);
  };
  EXPECT_EQ(estimate(-1), 0 + 16 + 101) << "a tip: no sender line";
  EXPECT_EQ(estimate(0), 24 + 16 + 81);
  EXPECT_EQ(estimate(4), 24 + 16 + 168);
  EXPECT_EQ(estimate(4, true), 24 + 16 + 168);
  EXPECT_EQ(estimate(6), 24 + 16 + 101);
  EXPECT_EQ(estimate(7), 24 + 16 + 125);
  EXPECT_EQ(estimate(8), 24 + 16 + 108);
  EXPECT_EQ(estimate(0, false, "Not sent"), 24 + 16 + 81 + 26);
  EXPECT_EQ(estimate(0, false, ""), 24 + 16 + 81) << "an empty tail costs nothing";
  EXPECT_EQ(estimate(1), 24 + 16) << "faces reserve no content height";
}

TEST_F(ChatItemsTest, TextRowSizeHintGrowsWithItsLinesAndItsTail) {
  talvex_test::LogCapture logs;
  auto short_row = MakeRow(TextInfo("m1", "hello"));
  EXPECT_FALSE(logs.Contains("empty rich blocks")) << "a new row never lays out nothing";
  auto* text = qobject_cast<ChatTextItem*>(short_row->item());
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(short_row->sizeHint().height(), 24 + 16 + text->browser()->sizeHint().height() + 4);
  EXPECT_EQ(text->browser()->label()->lines().size(), 1u);

  auto long_row = MakeRow(TextInfo("m2", "word " + std::string(60, 'x') + " and more words " + std::string(400, 'w')));
  EXPECT_GT(long_row->sizeHint().height(), short_row->sizeHint().height() + 40);

  // Laying bubbles out again, as every scroll and resize does, writes nothing at info level or above.
  short_row->show();
  long_row->show();
  QApplication::processEvents();
  logs.Clear();
  for (int width : {300, 420, 360}) {
    for (auto* row : {short_row.get(), long_row.get()}) {
      row->setFixedWidth(width);
      QApplication::processEvents();
      row->sizeHint();
    }
  }
  for (auto const& record : logs.records()) {
    EXPECT_GT(record.level, base::log::kLogInfo) << record.file << ": " << record.text;
  }

  // Narrower rows wrap into more lines: the bubble follows the width the list gives.
  const std::string sentence = "a sentence long enough to wrap at a narrow width but not at a wide one";
  auto narrow = MakeRow(TextInfo("m3", sentence), 200);
  EXPECT_GT(narrow->sizeHint().height(), MakeRow(TextInfo("m3", sentence), 700)->sizeHint().height());
  EXPECT_LE(static_cast<ChatTextItem*>(narrow->item())->browser()->label()->width(), 200 - 128 - 16);

  Variant failed = TextInfo("m4", "hello");
  failed.Set(ChatMsgBaseInfoFields_kStringBaseInfoTipsText, "Not sent. Tap to retry");
  failed.Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, 3);
  auto failed_row = MakeRow(failed);
  const int tail = failed_row->item()->tail_label()->sizeHint().height();
  EXPECT_EQ(failed_row->sizeHint().height(), short_row->sizeHint().height() + tail);
  EXPECT_TRUE(failed_row->item()->IsStatusIconShown()) << "a failed send shows its error icon";
}

TEST_F(ChatItemsTest, EachKindBuildsItsItemAndSizesFromItsContent) {
  Variant tip = BaseInfo("t1", -1, "");
  tip.Set(ChatTipMessageInfoFields_kStringInfoTipContent, "10:24");
  auto tip_row = MakeRow(tip);
  auto* tips = qobject_cast<ChatTipsItem*>(tip_row->item());
  ASSERT_NE(tips, nullptr);
  EXPECT_EQ(tips->left_avatar(), nullptr) << "tips have no avatar";
  EXPECT_EQ(tip_row->sizeHint().height(), 16 + tips->GetMessageContentWidget()->sizeHint().height() + 4);

  Variant file = BaseInfo("f1", 8, "Jordan Blake");
  file.Set("status", 7);
  file.Set("progress", 0.5);
  file.Set("progress_visible", true);
  auto file_row = MakeRow(file);
  auto* files = qobject_cast<ChatFileItem*>(file_row->item());
  ASSERT_NE(files, nullptr);
  EXPECT_EQ(files->progress_bar()->width(), ChatFileItem::kCardWidth / 2);
  EXPECT_FALSE(files->operation_button()->isHidden()) << "a download in progress can be cancelled";
  EXPECT_EQ(file_row->sizeHint().height(), 24 + 16 + ChatFileItem::kCardHeight + 4);
  file.Set("status", 9);
  file.Set("progress_visible", false);
  file_row->SetMessageInfo(file);
  EXPECT_TRUE(files->progress_bar()->isHidden());
  EXPECT_TRUE(files->operation_button()->isHidden()) << "a downloaded file has no next step";

  Variant face = BaseInfo("e1", 1, "Avery Quinn");
  face.Set(ChatFaceMessageInfoFields_kStringInfoEmojiText, "[Smile]");
  auto face_row = MakeRow(face);
  ASSERT_NE(qobject_cast<ChatFaceItem*>(face_row->item()), nullptr);
  EXPECT_EQ(face_row->sizeHint().height(), 24 + 16 + ChatFaceItem::kFaceSize + 4);
}

TEST_F(ChatItemsTest, SenderLineShowsNamesLiterallyAndElidesThem) {
  EXPECT_EQ(PlainOf(MakeRow(TextInfo("m1", "hi", "<b>x</b>&amp;"))->item()->sender_label()->text()), "<b>x</b>&amp;");

  const QString elided = PlainOf(MakeRow(TextInfo("m2", "hi", std::string(200, 'N')))->item()->sender_label()->text());
  EXPECT_LT(elided.size(), 200);
  EXPECT_TRUE(elided.endsWith(QChar(0x2026))) << elided.toStdString();

  // Private, incoming: name, "says to me", and the private mark.
  Variant to_me = TextInfo("m3", "psst", "Jordan <J>");
  to_me.Set(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel, " (privately)");
  to_me.Set(ChatMsgBaseInfoFields_kStringBaseInfoSayToMe, " to me");
  EXPECT_EQ(PlainOf(MakeRow(to_me)->item()->sender_label()->text()), "Jordan <J> to me (privately)");

  // One's own message to a group names the audience, not oneself.
  Variant own = TextInfo("m4", "hello all", "Alex Morgan", true);
  own.Set(ChatMsgBaseInfoFields_kStringBaseInfoSendTo, "to");
  own.Set(ChatMsgBaseInfoFields_kStringBaseInfoReceiverName, "Panelists");
  auto own_row = MakeRow(own);
  EXPECT_EQ(PlainOf(own_row->item()->sender_label()->text()), "to Panelists");
  EXPECT_TRUE(own_row->item()->left_avatar()->isHidden());
  EXPECT_FALSE(own_row->item()->right_avatar()->isHidden());
}

TEST_F(ChatItemsTest, SpinnerWaitsASecondSoThatFastSendsNeverShowIt) {
  Variant sending = TextInfo("fast", "quick one", "Alex Morgan", true);
  sending.Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, 1);
  auto fast = MakeRow(sending);
  sending.Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgId, "slow");
  auto slow = MakeRow(sending);
  EXPECT_FALSE(fast->item()->IsStatusIconShown()) << "no spinner at once";
  Variant sent = sending;
  sent.Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgId, "fast");
  sent.Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, 2);
  fast->SetMessageInfo(sent);

  // By the time the slow send shows its spinner, the fast one, sent before,
  // must still show nothing.
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return slow->item()->IsStatusIconShown(); }));
  EXPECT_TRUE(slow->item()->status_icon()->IsRotating());
  EXPECT_FALSE(fast->item()->IsStatusIconShown());

  // A failure stops the spinner and shows the error icon instead.
  sending.Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, 3);
  slow->SetMessageInfo(sending);
  EXPECT_TRUE(slow->item()->IsStatusIconShown());
  EXPECT_FALSE(slow->item()->status_icon()->IsRotating());
}

TEST_F(ChatItemsTest, HoverOffersTheMoreButtonAndPressesReportMenus) {
  auto row = MakeRow(TextInfo("m1", "hello", "Alex Morgan", true));
  row->resize(360, row->sizeHint().height());
  row->show();
  ChatItem* item = row->item();
  QPushButton* more = item->more_button();
  ASSERT_NE(more, nullptr);
  EXPECT_TRUE(more->isHidden());
  QEvent enter(QEvent::Enter), leave(QEvent::Leave);
  QApplication::sendEvent(item, &enter);
  EXPECT_FALSE(more->isHidden());

  std::vector<Variant> menus;
  QObject::connect(item, &ChatItem::OnCustomContextMenuRequested, [&](Variant const& p) { menus.push_back(p); });
  more->click();
  ASSERT_EQ(menus.size(), 1u);
  EXPECT_TRUE(menus[0].GetBoolean("from_more"));
  EXPECT_TRUE(menus[0].GetBoolean("is_self"));
  EXPECT_EQ(menus[0].GetString("msg_id"), "m1");

  // While its menu is open the button stays; otherwise leaving hides it.
  item->SetMenuOpen(true);
  QApplication::sendEvent(item, &leave);
  EXPECT_FALSE(more->isHidden());
  item->SetMenuOpen(false);
  QApplication::sendEvent(item, &leave);
  EXPECT_TRUE(more->isHidden());

  std::vector<Variant> avatar;
  QObject::connect(item, &ChatItem::ChatItemMenuRequested, [&](Variant const& p) { avatar.push_back(p); });
  QTest::mousePress(item, Qt::LeftButton, Qt::NoModifier, item->right_avatar()->geometry().center());
  ASSERT_EQ(avatar.size(), 1u);
  EXPECT_EQ(avatar[0].GetString("msg_id"), "m1");
  QTest::mousePress(item, Qt::LeftButton, Qt::NoModifier, QPoint(2, 2));
  EXPECT_EQ(avatar.size(), 1u) << "a press elsewhere is no avatar press";
}


// What the label shows, without the "..." and "Show all" drawn after a cut.
QString ShownText(RichTextLabel* label) {
  QString shown;
  for (auto const& block : label->source_blocks()) {
    if (block.text && !block.text->decoration) shown += block.text->content;
  }
  return shown;
}

TEST_F(ChatItemsTest, ALongMessageIsShownShortenedAndCopiedWhole) {
  // A megabyte of paragraphs after a link: far past what a bubble shows.
  std::string body;
  while (body.size() < 1024 * 1024) body += "a pasted log line with words and numbers 12345 ";
  Variant info = BaseInfo("m1", 0, "Avery Quinn");
  Variant pieces(base::variant::kVariantTypeArray);
  pieces.Add(TextPiece(2, "www.example.org"));
  pieces.Add(TextPiece(0, " " + body));
  info.Set(ChatTextMessageInfoFields_kPtrInfoArrayItem, pieces);
  auto row = MakeRow(info);
  row->show();
  TextBrowser* browser = static_cast<ChatTextItem*>(row->item())->browser();
  const QString whole = QString::fromStdString("www.example.org " + body);
  ASSERT_TRUE(browser->IsShortened());
  EXPECT_EQ(browser->plain_text(), whole);
  EXPECT_EQ(ShownText(browser->label()), whole.left(TextBrowser::kShownCharLimit));
  EXPECT_LT(row->sizeHint().height(), 1000) << "the row is as tall as what is shown";
  EXPECT_TRUE(browser->label()->HasClickableText());

  // Copy with nothing selected, and after the list selects every row: the whole message.
  QApplication::clipboard()->clear();
  row->item()->CopyContent();
  EXPECT_EQ(QApplication::clipboard()->text(), whole);
  Variant all(base::variant::kVariantTypeMap);
  all.Set("select_all", true);
  row->item()->SetSelected(true, all);
  EXPECT_EQ(browser->GetPlainText(), whole);

  // A drag over the first line only copies that line.
  RichTextLabel* label = browser->label();
  auto drag = [&](QPoint from, QPoint to) {
    Variant record(base::variant::kVariantTypeMap);
    record.Set("is_first", true);
    record.Set("p_x", from.x());
    record.Set("p_y", from.y());
    record.Set("m_x", to.x());
    record.Set("m_y", to.y());
    row->item()->SetSelected(false, Variant());
    row->item()->SetSelected(true, record);
  };
  const QPoint top_left = label->mapToGlobal(QPoint(1, 2));
  drag(top_left, label->mapToGlobal(QPoint(label->width() / 2, 2)));
  const QString first_part = browser->GetPlainText();
  EXPECT_FALSE(first_part.isEmpty());
  EXPECT_TRUE(whole.startsWith(first_part));
  EXPECT_LT(first_part.size(), 100);
  // A drag down past the cut takes the rest of the message with it, and never the "Show all".
  drag(top_left, label->mapToGlobal(QPoint(label->width() + 20, label->height() + 20)));
  EXPECT_EQ(browser->GetPlainText(), whole);
}

TEST_F(ChatItemsTest, ShorteningCountsLinesAndNeverSplitsACharacter) {
  auto browser_for = [](QString const& text) {
    auto browser = std::make_unique<TextBrowser>();
    QVariantMap entry;
    entry["text"] = text;
    browser->SetContent({entry}, false);
    return browser;
  };
  const QString at_limit(TextBrowser::kShownCharLimit, QLatin1Char('x'));
  EXPECT_FALSE(browser_for(at_limit)->IsShortened());
  EXPECT_TRUE(browser_for(at_limit + "y")->IsShortened());

  QString lines;
  for (int i = 0; i < 100; ++i) lines += QString("line %1\n").arg(i);
  auto by_lines = browser_for(lines);
  ASSERT_TRUE(by_lines->IsShortened());
  EXPECT_EQ(ShownText(by_lines->label()).count(QLatin1Char('\n')), TextBrowser::kShownParagraphLimit - 1);

  // A thumbs-up (two UTF-16 units) across the cut is left out whole.
  const QString thumbs = QStringLiteral("\U0001F44D");
  auto pair = browser_for(QString(TextBrowser::kShownCharLimit - 1, QLatin1Char('x')) + thumbs + "more");
  EXPECT_EQ(pair->shown_length(), TextBrowser::kShownCharLimit - 1);
  // A combining accent stays with its letter.
  auto accent = browser_for(QString(TextBrowser::kShownCharLimit - 1, QLatin1Char('x')) + "e\u0301 more");
  EXPECT_EQ(accent->shown_length(), TextBrowser::kShownCharLimit - 1);
}

TEST_F(ChatItemsTest, ShowAllOpensTheWholeMessageInAReader) {
  QString text;
  for (int i = 0; i < 60; ++i) text += QString("paragraph %1 of a long message\n").arg(i);
  text += QString(3 * LongTextReader::kPieceLength, QLatin1Char('z'));  // one paragraph too long for a piece
  TextBrowser browser;
  QVariantMap entry;
  entry["text"] = text;
  browser.SetContent({entry}, false);
  browser.show();
  ASSERT_TRUE(browser.IsShortened());

  // The "Show all" link ends the last line; click it.
  RichTextLabel* label = browser.label();
  auto const& last = label->lines().back();
  const QPoint on_link(last.rect.right() - 20, last.rect.center().y());
  QTest::mousePress(label, Qt::LeftButton, Qt::NoModifier, on_link);
  QTest::mouseRelease(label, Qt::LeftButton, Qt::NoModifier, on_link);
  auto* reader = browser.window()->findChild<LongTextReader*>();
  ASSERT_NE(reader, nullptr);
  EXPECT_TRUE(reader->isVisible());
  for (int turns = 0; !reader->IsFilled() && turns < 100; ++turns) QApplication::processEvents();
  ASSERT_TRUE(reader->IsFilled());
  const QString shown = reader->view()->toPlainText();
  EXPECT_TRUE(shown.startsWith(text.left(text.indexOf('z'))));
  EXPECT_EQ(QString(shown).remove('\n'), QString(text).remove('\n')) << "every character, in order";
  QApplication::clipboard()->clear();
  reader->findChild<QPushButton*>("LongTextReader#copy")->click();
  EXPECT_EQ(QApplication::clipboard()->text(), text);
  reader->close();
}

class UrlCatcher : public QObject {
  Q_OBJECT

 public:
  QList<QUrl> urls;

 public slots:
  void Open(QUrl const& url) { urls.append(url); }
};

TEST_F(ChatItemsTest, LinksOpenWithHttpsWhenTheyHaveNoScheme) {
  UrlCatcher catcher;
  for (auto const* scheme : {"http", "https"}) QDesktopServices::setUrlHandler(scheme, &catcher, "Open");
  Variant info = BaseInfo("m1", 0, "Avery Quinn");
  Variant pieces(base::variant::kVariantTypeArray);
  pieces.Add(TextPiece(0, "see "));
  pieces.Add(TextPiece(2, "www.example.org/agenda"));
  info.Set(ChatTextMessageInfoFields_kPtrInfoArrayItem, pieces);
  auto row = MakeRow(info);
  row->show();
  RichTextLabel* label = static_cast<ChatTextItem*>(row->item())->browser()->label();
  ASSERT_TRUE(label->HasClickableText());
  // The link ends the only line: click near the label's right edge.
  ASSERT_EQ(label->lines().size(), 1u);
  const QPoint on_link(label->width() - 6, label->height() / 2);
  QTest::mousePress(label, Qt::LeftButton, Qt::NoModifier, on_link);
  QTest::mouseRelease(label, Qt::LeftButton, Qt::NoModifier, on_link);
  TextBrowser::OnClickLinkText("http://plain.example.org");  // kept as it is
  for (auto const* scheme : {"http", "https"}) QDesktopServices::unsetUrlHandler(scheme);
  EXPECT_EQ(catcher.urls, QList<QUrl>({QUrl("https://www.example.org/agenda"), QUrl("http://plain.example.org")}));
}

}  // namespace
}  // namespace items_test

#include "chat_items_test.moc"
