// The chat items on their own: height estimates and size hints, the sender
// line, the sending spinner, links, selection, notices, files and avatars.
#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>
#include <QUrl>
#include <memory>

#include "chat/ui/desktop/view/chat/chat_face_item.h"
#include "chat/ui/desktop/view/chat/chat_file_item.h"
#include "chat/ui/desktop/view/chat/chat_message_widget.h"
#include "chat/ui/desktop/view/chat/chat_notice_item.h"
#include "chat/ui/desktop/view/chat/chat_text_item.h"
#include "chat/ui/desktop/view/chat/chat_tips_item.h"
#include "chat/ui/desktop/view/chat/text_browser.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "items_fixture.h"
#include "support/test_util.h"
#include "uikit/avatar/qt_avatar_view_factory.h"
#include "uikit/label/qf_plain_label.h"
#include "uikit/widget/rotate_image_widget.h"

namespace items_test {
namespace {

constexpr int kRowWidth = 360;

class ChatItemsTest : public ::testing::Test {
 protected:
  void SetUp() override { InitChatResources(); }

  // A row as the list makes it: fixed to the list's width, then bound.
  std::unique_ptr<ChatMessageWidget> Row(Variant const& info, int width = kRowWidth) {
    auto row = std::make_unique<ChatMessageWidget>("reuse_id0_2");
    row->setFixedWidth(width);
    row->SetMessageInfo(info);
    return row;
  }

  static QString PlainOf(QString const& html) {
    QTextDocument document;
    document.setHtml(html);
    return document.toPlainText();
  }
};

TEST_F(ChatItemsTest, HeightEstimateFollowsTheKindAndTheShell) {
  auto estimate = [](int chat_type, bool is_private = false, std::string const& tail = "") {
    Variant message(base::variant::kVariantTypeMap);
    message.Set("chat_type", chat_type);
    if (is_private) message.Set(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel, "(private)");
    if (!tail.empty()) message.Set(ChatMsgBaseInfoFields_kStringBaseInfoTipsText, tail);
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

  Variant no_type(base::variant::kVariantTypeMap);
  EXPECT_EQ(ChatItem::GetChatMsgType(no_type), ChatItem::kMsgNormal);
  no_type.Set(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel, "");
  EXPECT_EQ(ChatItem::GetChatMsgType(no_type), ChatItem::kMsgPrivate);
}

TEST_F(ChatItemsTest, TextRowSizeHintGrowsWithItsLinesAndItsTail) {
  talvex_test::LogCapture logs;
  auto short_row = Row(TextInfo("m1", "hello"));
  EXPECT_FALSE(logs.Contains("empty rich blocks")) << "a new row never lays out nothing";
  ChatItem* item = short_row->item();
  ASSERT_NE(qobject_cast<ChatTextItem*>(item), nullptr);
  auto* text = static_cast<ChatTextItem*>(item);
  const int bubble = text->browser()->sizeHint().height();
  EXPECT_EQ(short_row->sizeHint().height(), 24 + 16 + bubble + 4);
  EXPECT_EQ(text->browser()->label()->lines().size(), 1u);

  const std::string long_text(400, 'w');
  auto long_row = Row(TextInfo("m2", "word " + std::string(60, 'x') + " and more words to wrap " + long_text));
  EXPECT_GT(long_row->sizeHint().height(), short_row->sizeHint().height() + 40);

  // Narrower rows wrap into more lines: the bubble follows the width the list gives.
  auto narrow = Row(TextInfo("m3", "a sentence long enough to wrap at a narrow width but not at a wide one"), 200);
  auto wide = Row(TextInfo("m3", "a sentence long enough to wrap at a narrow width but not at a wide one"), 700);
  EXPECT_GT(narrow->sizeHint().height(), wide->sizeHint().height());
  EXPECT_LE(static_cast<ChatTextItem*>(narrow->item())->browser()->label()->width(), 200 - 128 - 16);

  Variant failed = TextInfo("m4", "hello");
  failed.Set(ChatMsgBaseInfoFields_kStringBaseInfoTipsText, "Not sent. Tap to retry");
  failed.Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, 3);
  auto failed_row = Row(failed);
  const int tail = failed_row->item()->tail_label()->sizeHint().height();
  EXPECT_EQ(failed_row->sizeHint().height(), short_row->sizeHint().height() + tail);
  EXPECT_TRUE(failed_row->item()->IsStatusIconShown()) << "a failed send shows its error icon";
}

TEST_F(ChatItemsTest, EachKindBuildsItsItemAndSizesFromItsContent) {
  Variant tip = BaseInfo("t1", -1, "");
  tip.Set(ChatTipMessageInfoFields_kStringInfoTipContent, "10:24");
  auto tip_row = Row(tip);
  auto* tips = qobject_cast<ChatTipsItem*>(tip_row->item());
  ASSERT_NE(tips, nullptr);
  EXPECT_EQ(tips->tips_label()->text(), "10:24");
  EXPECT_EQ(tips->left_avatar(), nullptr) << "tips have no avatar";
  EXPECT_EQ(tip_row->sizeHint().height(), 16 + tips->GetMessageContentWidget()->sizeHint().height() + 4);

  Variant file = BaseInfo("f1", 8, "Jordan Blake");
  file.Set("title", "quarterly-report.pdf");
  file.Set("sub_title", "1.2 MB");
  file.Set("icon_type", 4);
  file.Set("status", 7);
  file.Set("progress", 0.5);
  file.Set("progress_visible", true);
  auto file_row = Row(file);
  auto* files = qobject_cast<ChatFileItem*>(file_row->item());
  ASSERT_NE(files, nullptr);
  EXPECT_EQ(files->title_label()->text(), "quarterly-report.pdf");
  EXPECT_EQ(files->sub_title_label()->text(), "1.2 MB");
  EXPECT_FALSE(files->progress_bar()->isHidden());
  EXPECT_EQ(files->progress_bar()->width(), ChatFileItem::kCardWidth / 2);
  EXPECT_FALSE(files->operation_button()->isHidden()) << "a download in progress can be cancelled";
  EXPECT_EQ(file_row->sizeHint().height(), 24 + 16 + ChatFileItem::kCardHeight + 4);

  file.Set("status", 9);
  file.Set("progress_visible", false);
  file_row->SetMessageInfo(file);
  EXPECT_TRUE(files->progress_bar()->isHidden());
  EXPECT_TRUE(files->operation_button()->isHidden()) << "a downloaded file has no next step";
  EXPECT_EQ(ChatFileItem::OperationIconOf(8), "icon_fail");
  EXPECT_EQ(ChatFileItem::OperationIconOf(5), "icon_download");

  Variant face = BaseInfo("e1", 1, "Avery Quinn");
  face.Set(ChatFaceMessageInfoFields_kStringInfoEmojiText, "[Smile]");
  auto face_row = Row(face);
  ASSERT_NE(qobject_cast<ChatFaceItem*>(face_row->item()), nullptr);
  EXPECT_EQ(face_row->sizeHint().height(), 24 + 16 + ChatFaceItem::kFaceSize + 4);

  EXPECT_EQ(ChatMessageWidget::CreateItem(99, nullptr), nullptr) << "an unknown kind has no item";
}

TEST_F(ChatItemsTest, SenderLineShowsNamesLiterallyAndElidesThem) {
  auto row = Row(TextInfo("m1", "hi", "<b>x</b>&amp;"));
  QFPlainLabel* sender = row->item()->sender_label();
  ASSERT_NE(sender, nullptr);
  EXPECT_EQ(sender->textFormat(), Qt::RichText);
  EXPECT_EQ(PlainOf(sender->text()), "<b>x</b>&amp;");

  const std::string long_name(200, 'N');
  auto elided = Row(TextInfo("m2", "hi", long_name));
  const QString shown = PlainOf(elided->item()->sender_label()->text());
  EXPECT_LT(shown.size(), 200);
  EXPECT_TRUE(shown.endsWith(QChar(0x2026))) << shown.toStdString();

  // Private, incoming: name, "says to me", and the private mark.
  Variant to_me = TextInfo("m3", "psst", "Jordan <J>");
  to_me.Set(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel, " (privately)");
  to_me.Set(ChatMsgBaseInfoFields_kStringBaseInfoSayToMe, " to me");
  auto private_row = Row(to_me);
  EXPECT_EQ(PlainOf(private_row->item()->sender_label()->text()), "Jordan <J> to me (privately)");
  EXPECT_TRUE(private_row->item()->sender_label()->text().contains("#198CFF"));

  // One's own message to a group names the audience, not oneself.
  Variant own = TextInfo("m4", "hello all", "Alex Morgan", true);
  own.Set(ChatMsgBaseInfoFields_kStringBaseInfoSendTo, "to");
  own.Set(ChatMsgBaseInfoFields_kStringBaseInfoReceiverName, "Panelists");
  auto own_row = Row(own);
  EXPECT_EQ(PlainOf(own_row->item()->sender_label()->text()), "to Panelists");
  EXPECT_TRUE(own_row->item()->left_avatar()->isHidden());
  EXPECT_FALSE(own_row->item()->right_avatar()->isHidden());
}

TEST_F(ChatItemsTest, SpinnerWaitsASecondSoThatFastSendsNeverShowIt) {
  Variant sending = TextInfo("fast", "quick one", "Alex Morgan", true);
  sending.Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, 1);
  auto fast = Row(sending);
  sending.Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgId, "slow");
  auto slow = Row(sending);
  EXPECT_FALSE(fast->item()->IsStatusIconShown()) << "no spinner at once";

  Variant sent = sending;
  sent.Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgId, "fast");
  sent.Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, 2);
  fast->SetMessageInfo(sent);

  // The slow send shows its spinner once its delay is over; by then the fast
  // one, sent before, must still show nothing.
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
  Variant info = TextInfo("m1", "hello", "Alex Morgan", true);
  info.Set(ChatMsgBaseInfoFields_kStringBaseInfoMoreOptBtnTips, "More");
  auto row = Row(info);
  row->resize(kRowWidth, row->sizeHint().height());
  row->show();
  ChatItem* item = row->item();
  QPushButton* more = item->more_button();
  ASSERT_NE(more, nullptr);
  EXPECT_TRUE(more->isHidden());
  QEvent enter(QEvent::Enter);
  QApplication::sendEvent(item, &enter);
  EXPECT_FALSE(more->isHidden());
  EXPECT_EQ(more->toolTip(), "More");

  std::vector<Variant> menus;
  QObject::connect(item, &ChatItem::OnCustomContextMenuRequested, [&](Variant const& p) { menus.push_back(p); });
  more->click();
  ASSERT_EQ(menus.size(), 1u);
  Variant const params = menus[0];
  EXPECT_TRUE(params.GetBoolean("from_more"));
  EXPECT_TRUE(params.GetBoolean("is_self"));
  EXPECT_EQ(params.GetString("msg_id"), "m1");

  // While its menu is open the button stays; otherwise leaving hides it.
  item->SetMenuOpen(true);
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(item, &leave);
  EXPECT_FALSE(more->isHidden());
  item->SetMenuOpen(false);
  QApplication::sendEvent(item, &leave);
  EXPECT_TRUE(more->isHidden());

  // A press on the sender's avatar asks for the avatar's menu.
  std::vector<Variant> avatar;
  QObject::connect(item, &ChatItem::ChatItemMenuRequested, [&](Variant const& p) { avatar.push_back(p); });
  QWidget* own_avatar = item->right_avatar();
  QTest::mousePress(item, Qt::LeftButton, Qt::NoModifier, own_avatar->geometry().center());
  ASSERT_EQ(avatar.size(), 1u);
  EXPECT_EQ(avatar[0].GetString("msg_id"), "m1");
  QTest::mousePress(item, Qt::LeftButton, Qt::NoModifier, QPoint(2, 2));
  EXPECT_EQ(avatar.size(), 1u) << "a press elsewhere is no avatar press";
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
  auto row = Row(info);
  row->show();
  RichTextLabel* label = static_cast<ChatTextItem*>(row->item())->browser()->label();
  ASSERT_TRUE(label->HasClickableText());
  // The link is the end of the only line: click near the label's right edge.
  ASSERT_EQ(label->lines().size(), 1u);
  const QPoint on_link(label->width() - 6, label->height() / 2);
  QTest::mousePress(label, Qt::LeftButton, Qt::NoModifier, on_link);
  QTest::mouseRelease(label, Qt::LeftButton, Qt::NoModifier, on_link);
  TextBrowser::OnClickLinkText("http://plain.example.org");  // kept as it is
  for (auto const* scheme : {"http", "https"}) QDesktopServices::unsetUrlHandler(scheme);
  ASSERT_EQ(catcher.urls.size(), 2);
  EXPECT_EQ(catcher.urls[0], QUrl("https://www.example.org/agenda"));
  EXPECT_EQ(catcher.urls[1], QUrl("http://plain.example.org"));
}

}  // namespace
}  // namespace items_test

#include "chat_items_test.moc"
