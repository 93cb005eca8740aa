#include <QTextCursor>
#include <memory>

#include "input_test_util.h"

namespace {

using input_test::Files;

TEST(RichEditTest, TextAndPicturesComeBackAsItemsInOrderWithTheirData) {
  Files files;
  const QString picture = files.Picture("wide.png", QSize(640, 160));
  const QString face = files.Picture("face.png", QSize(64, 64));
  RichEdit edit;
  edit.InsertText("hello\nworld ");
  ASSERT_TRUE(edit.InsertImage(picture, QSize(), {{"image_type", "image"}}));
  edit.InsertText("after\r\nthe picture");
  // The same emoji twice: equal images side by side are still two items.
  ASSERT_TRUE(edit.InsertImage(face, QSize(22, 22), {{"image_type", "emoji"}}));
  ASSERT_TRUE(edit.InsertImage(face, QSize(22, 22), {{"image_type", "emoji"}}));

  const QVector<RichEditItem> items = edit.Items();
  ASSERT_EQ(items.size(), 5);
  EXPECT_EQ(items[0].text, "hello\nworld ");
  EXPECT_EQ(items[1].kind, RichEditItem::kImage);
  EXPECT_EQ(items[1].image_path, picture);
  EXPECT_EQ(items[1].image_data.value("image_type"), "image");
  EXPECT_EQ(items[2].text, "after\nthe picture");
  EXPECT_EQ(items[3].image_data.value("image_type"), "emoji");
  EXPECT_EQ(items[4].image_path, face);

  // A large picture shows scaled down within the limit, an emoji at the
  // size asked.
  const auto images = input_test::ImagesOf(edit.document());
  ASSERT_EQ(images.size(), 3u);
  EXPECT_EQ(input_test::SizeOf(images[0]), QSizeF(RichEdit::kMaxImageExtent, 40));
  EXPECT_EQ(input_test::SizeOf(images[2]), QSizeF(22, 22));
}

TEST(RichEditTest, AFileThatIsMissingOrNoPictureInsertsNothing) {
  Files files;
  RichEdit edit;
  EXPECT_FALSE(edit.InsertImage(files.Missing("gone.png"), QSize(), {}));
  EXPECT_FALSE(edit.InsertImage(files.Document("notes.png", "not a picture at all"), QSize(), {}));
  EXPECT_FALSE(edit.InsertImage(QString(), QSize(), {}));
  EXPECT_TRUE(edit.IsEmpty());
  EXPECT_TRUE(edit.Items().isEmpty());
}

TEST(RichEditTest, ARangeOfBlocksCopiesAsPlainTextAndHtmlWithLocalPictures) {
  Files files;
  const QString picture = files.Picture("shot.png");
  RichEdit edit;
  edit.InsertText("first line\nsecond <line> ");
  edit.InsertImage(files.Picture("smile.png", QSize(22, 22), Qt::yellow), QSize(22, 22),
                   {{"image_type", "emoji"}, {"text", "[Smile]"}});
  edit.InsertImage(picture, QSize(), {{"image_type", "image"}});
  edit.InsertText("\nthird");

  // From "line" of the first block to "th" of the third.
  std::unique_ptr<QMimeData> mime(edit.GetSelectionMimeDataByTextBlock(0, 2, 6, 2));
  ASSERT_TRUE(mime);
  EXPECT_EQ(mime->text(), "line\nsecond <line> [Smile]\nth");
  const QString html = mime->html();
  EXPECT_TRUE(html.contains("second &lt;line&gt; [Smile]")) << html.toStdString();
  EXPECT_TRUE(html.contains(QString("<img src=\"%1\">").arg(QUrl::fromLocalFile(picture).toString())));
  EXPECT_FALSE(html.contains("smile.png")) << "an emoji copies as its text";

  QTextCursor cursor(edit.document());
  cursor.setPosition(5, QTextCursor::KeepAnchor);
  edit.setTextCursor(cursor);
  edit.copy();
  EXPECT_EQ(QApplication::clipboard()->text(), "first");
}

TEST(RichEditTest, APasteGoesToTheOwnerFirstAndOtherwiseOnlyAsPlainText) {
  RichEdit edit;
  auto* mime = new QMimeData;
  mime->setHtml("<html><body><b>bold</b> words</body></html>");
  mime->setText("bold words");
  QApplication::clipboard()->setMimeData(mime);

  int offered = 0;
  edit.SetPasteHandler([&](QMimeData const* m) { return ++offered && m->hasHtml(); });
  edit.paste();
  EXPECT_EQ(offered, 1);
  EXPECT_TRUE(edit.IsEmpty());

  edit.SetPasteHandler([&](QMimeData const*) { return false; });
  edit.paste();
  EXPECT_EQ(edit.toPlainText(), "bold words");
  QTextCursor cursor(edit.document());
  cursor.setPosition(2);
  EXPECT_NE(cursor.charFormat().fontWeight(), QFont::Bold) << "no foreign formatting came in";
}

TEST(RichEditTest, RawImageDataIsWrittenUnderTheTemporaryPath) {
  Files files;
  RichEdit edit;
  edit.SetTempPath(files.Dir() + "/cache/pictures");
  QImage image(12, 8, QImage::Format_RGB32);
  image.fill(Qt::blue);
  const QString first = edit.SaveImageToTempPath(image);
  EXPECT_TRUE(first.startsWith(edit.TempPath()));
  EXPECT_NE(edit.SaveImageToTempPath(image), first);
  EXPECT_EQ(QImage(first).size(), QSize(12, 8));
}

}  // namespace
