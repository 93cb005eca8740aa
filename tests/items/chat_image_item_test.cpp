// Image rows: display sizing, decoding off the main thread, stale results on
// a recycled row, thumbnails, copy; the selection mask of non-text rows;
// notices and avatars.
#include <QApplication>
#include <QDateTime>
#include <QFileDialog>
#include <QClipboard>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QTest>
#include <QUrl>
#include <QTemporaryDir>
#include <memory>

#include "chat/ui/desktop/view/chat/chat_image_item.h"
#include "chat/ui/desktop/view/chat/chat_message_widget.h"
#include "chat/ui/desktop/view/chat/chat_notice_item.h"
#include "chat/ui/desktop/view/chat/image_browser.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "chat/viewmodel/chat_image_message_view_model.h"
#include "chat/viewmodel/chat_notice_message_view_model.h"
#include "items_fixture.h"
#include "support/test_util.h"
#include "uikit/avatar/qt_avatar_view_factory.h"
#include "uikit/label/qf_label.h"

namespace items_test {
namespace {

class ChatImageItemTest : public ::testing::Test {
 protected:
  void SetUp() override {
    InitChatResources();
    ASSERT_TRUE(dir_.isValid());
  }

  QString WriteImage(QString const& name, int width, int height, QColor color = Qt::darkCyan) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    const QString path = dir_.filePath(name);
    EXPECT_TRUE(image.save(path, "PNG"));
    return path;
  }

  static Variant ImageInfo(std::string const& msg_id, QString const& path, bool self = false) {
    Variant info = BaseInfo(msg_id, 4, "Avery Quinn", self);
    info.Set(ChatImageMessageInfoFields_kStringInfoOrigPath, path.toStdString());
    info.Set(ChatImageMessageInfoFields_kIntegerInfoOrigDownloadStatus, path.isEmpty() ? 1 : 2);
    return info;
  }

  std::unique_ptr<ChatMessageWidget> Row(Variant const& info, int width = 360) {
    auto row = std::make_unique<ChatMessageWidget>("reuse_id4_2");
    row->setFixedWidth(width);
    row->SetMessageInfo(info);
    return row;
  }

  static ImageBrowser* BrowserOf(ChatMessageWidget* row) {
    return static_cast<ChatImageItem*>(row->item())->browser();
  }

  QTemporaryDir dir_;
};

TEST_F(ChatImageItemTest, DisplaySizeKeepsProportionsInsideTheBox) {
  // No width given: a 200 by 200 box.
  EXPECT_EQ(ImageAsycnBrowser::DisplaySizeFor(100, 50, 0), QSize(100, 50));
  EXPECT_EQ(ImageAsycnBrowser::DisplaySizeFor(400, 100, 0), QSize(200, 50));
  EXPECT_EQ(ImageAsycnBrowser::DisplaySizeFor(100, 400, 0), QSize(50, 200));
  // A width: the box is that wide (at most 560) and 9/16 of it high.
  EXPECT_EQ(ImageAsycnBrowser::DisplaySizeFor(5000, 100, 232), QSize(232, 4));
  EXPECT_EQ(ImageAsycnBrowser::DisplaySizeFor(1000, 1000, 232), QSize(130, 130));
  EXPECT_EQ(ImageAsycnBrowser::DisplaySizeFor(2000, 100, 900), QSize(560, 28));
}

TEST_F(ChatImageItemTest, WideImageShowsAtTheBoxWidthWithItsHeightInProportion) {
  const QString path = WriteImage("panorama.png", 5000, 100);
  auto row = Row(ImageInfo("img1", path));
  ImageBrowser* browser = BrowserOf(row.get());
  EXPECT_EQ(browser->size(), QSize(200, 120)) << "the placeholder holds the place while decoding";
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return browser->is_image_loaded(); }));
  const int box = row->item()->GetMaxContentWidth();
  EXPECT_EQ(browser->label()->size(), QSize(box, 100 * box / 5000));
  EXPECT_EQ(row->sizeHint().height(), 24 + 16 + 2 + browser->height() + 4);
  // Decoding left a thumbnail at most 560 long beside the file.
  const QString thumb = ImageAsycnBrowser::ThumbnailPathOf(path);
  ASSERT_TRUE(QFileInfo::exists(thumb));
  EXPECT_EQ(QImage(thumb).width(), 560);
}

TEST_F(ChatImageItemTest, RecycledRowShowsOnlyTheImageGivenLast) {
  const QString first = WriteImage("first.png", 3000, 3000, Qt::red);
  const QString second = WriteImage("second.png", 80, 40, Qt::blue);
  auto row = Row(ImageInfo("img1", first));
  talvex_test::LogCapture logs;
  // The row is recycled for another message before the first decode is back.
  row->SetMessageInfo(ImageInfo("img2", second));
  ImageBrowser* browser = BrowserOf(row.get());
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return browser->is_image_loaded(); }));
  // Let the first result arrive too, and be dropped.
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return logs.Contains("image changed"); }));
  EXPECT_EQ(browser->image_path(), second);
  EXPECT_EQ(browser->label()->size(), QSize(80, 40));
  EXPECT_EQ(browser->label()->pixmap()->toImage().pixelColor(1, 1), QColor(Qt::blue));
}

TEST_F(ChatImageItemTest, SaveAsProposesATimedPngAtHomeAndCopiesThePicture) {
  const QString path = WriteImage("photo.png", 64, 32, Qt::green);
  auto row = Row(ImageInfo("img1", path));
  row->show();
  ImageBrowser* browser = BrowserOf(row.get());
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return browser->is_image_loaded(); }));

  const QString proposed = ImageBrowser::ProposedSaveName();
  EXPECT_TRUE(proposed.startsWith(QDir::homePath() + "/")) << proposed.toStdString();
  EXPECT_TRUE(proposed.endsWith(".png"));
  const QString stamp = proposed.section('_', -1).section('.', 0, 0);
  EXPECT_EQ(stamp.size(), 17) << "yyyyMMddhhmmsszzz";
  EXPECT_TRUE(QDateTime::fromString(stamp, "yyyyMMddhhmmsszzz").isValid());

  browser->OnSaveAs();
  QFileDialog* dialog = nullptr;
  ASSERT_TRUE(talvex_test::WaitUntil([&] {
    for (QWidget* w : QApplication::topLevelWidgets()) {
      if (auto* d = qobject_cast<QFileDialog*>(w); d && d->isVisible()) dialog = d;
    }
    return dialog != nullptr;
  }));
  EXPECT_EQ(dialog->windowTitle(), "Save As");
  EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
  EXPECT_EQ(dialog->nameFilters(), QStringList{"Images (*.png *.jpg)"});
  const QString target = dir_.filePath("saved.png");
  emit dialog->fileSelected(target);
  dialog->close();
  ASSERT_TRUE(QFileInfo::exists(target));
  EXPECT_EQ(QImage(target).pixelColor(1, 1), QColor(Qt::green));
}

TEST_F(ChatImageItemTest, ARowGrowsWhenItsPictureArrivesAndSaysSo) {
  const QString path = WriteImage("tall.png", 120, 400);
  auto row = Row(ImageInfo("img1", path));
  int changes = 0;
  QObject::connect(row.get(), &ChatMessageWidget::SizeChanged, [&] { ++changes; });
  const int before = row->sizeHint().height();
  ImageBrowser* browser = BrowserOf(row.get());
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return browser->is_image_loaded(); }));
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return changes > 0; })) << "the list is told to measure again";
  EXPECT_NE(row->sizeHint().height(), before);
  EXPECT_EQ(row->sizeHint().height(), 24 + 16 + 2 + browser->height() + 4);
}

TEST_F(ChatImageItemTest, MissingImagesShowTheirPlaceholderAndCopyNothing) {
  auto incoming = Row(ImageInfo("img1", QString()));
  EXPECT_EQ(BrowserOf(incoming.get())->placeholder(), ":/images/chat/im_icon_imageloading_normal");
  EXPECT_FALSE(BrowserOf(incoming.get())->label()->pixmap()->isNull()) << "the placeholder image is in the resources";

  Variant missing = ImageInfo("img2", QString(), true);
  auto own = Row(missing);
  EXPECT_EQ(BrowserOf(own.get())->placeholder(), ":/images/chat/im_icon_imagemissing_normal");

  QApplication::clipboard()->setText("before");
  own->item()->CopyContent();
  EXPECT_EQ(QApplication::clipboard()->text(), "before");

  const QString path = WriteImage("photo.png", 64, 64);
  auto loaded = Row(ImageInfo("img3", path));
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return BrowserOf(loaded.get())->is_image_loaded(); }));
  loaded->item()->CopyContent();
  QMimeData const* mime = QApplication::clipboard()->mimeData();
  ASSERT_NE(mime, nullptr);
  ASSERT_EQ(mime->urls().size(), 1);
  EXPECT_EQ(mime->urls()[0].toLocalFile(), path);
}

TEST_F(ChatImageItemTest, PressesOnPicturesAndNoticesAskTheRowsViewModel) {
  std::vector<std::pair<quint32, Variant>> actions;
  auto watch = [&actions](ChatMessageWidget* row) {
    QObject::connect(row, &ChatMessageWidget::ActionRequested,
                     [&actions](quint32 action, Variant const& params) { actions.emplace_back(action, params); });
  };
  Variant failed = ImageInfo("img1", QString());
  failed.Set(ChatImageMessageInfoFields_kIntegerInfoOrigDownloadStatus, 3);
  auto missing = Row(failed);
  watch(missing.get());
  QTest::mousePress(BrowserOf(missing.get())->label(), Qt::LeftButton);
  ASSERT_EQ(actions.size(), 1u);
  EXPECT_EQ(actions[0].first, chat::ChatImageMessageViewModel::kActionRefreshImage) << "a missing picture is fetched again";
  EXPECT_EQ(actions[0].second.GetString(ChatImageMessageDownloadMsgFields_kStringMsgId), "img1");

  auto downloading = Row(ImageInfo("img2", QString()));
  watch(downloading.get());
  QTest::mousePress(BrowserOf(downloading.get())->label(), Qt::LeftButton);
  EXPECT_EQ(actions.size(), 1u) << "a picture on its way needs nothing";

  auto loaded = Row(ImageInfo("img3", WriteImage("photo.png", 64, 64)));
  watch(loaded.get());
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return BrowserOf(loaded.get())->is_image_loaded(); }));
  QTest::mousePress(BrowserOf(loaded.get())->label(), Qt::LeftButton);
  ASSERT_EQ(actions.size(), 2u);
  EXPECT_EQ(actions[1].first, chat::ChatImageMessageViewModel::kActionPreviewClicked);
  EXPECT_EQ(actions[1].second.GetString("msg_id"), "img3");

  Variant notice = BaseInfo("n1", 6, "Host");
  Variant items(base::variant::kVariantTypeArray);
  Variant item(base::variant::kVariantTypeMap);
  std::string agenda;
  for (int i = 1; i <= 12; ++i) agenda += "Item " + std::to_string(i) + " of the agenda.\r\n";
  item.Set(ChatNoticeMessageItemFields_kStringItemContent, agenda);
  items.Add(item);
  notice.Set(ChatNoticeMessageInfoFields_kPtrInfoArrayItem, items);
  auto notice_row = std::make_unique<ChatMessageWidget>("reuse_id6_2");
  notice_row->setFixedWidth(360);
  notice_row->SetMessageInfo(notice);
  watch(notice_row.get());
  QWidget* detail = static_cast<ChatNoticeItem*>(notice_row->item())->view_detail_row();
  QTest::mouseClick(detail, Qt::LeftButton);
  ASSERT_EQ(actions.size(), 3u);
  EXPECT_EQ(actions[2].first, chat::ChatNoticeMessageViewModel::kActionShowMeetingNotice);
  EXPECT_EQ(actions[2].second.GetString("msg_id"), "n1");
}

TEST_F(ChatImageItemTest, SelectionLaysATranslucentMaskOverTheContent) {
  const QString path = WriteImage("photo.png", 120, 90);
  auto row = Row(ImageInfo("img1", path));
  row->resize(360, row->sizeHint().height());
  row->show();
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return BrowserOf(row.get())->is_image_loaded(); }));
  ChatItem* item = row->item();
  item->SetSelected(true, Variant());
  QWidget* mask = item->mask_widget();
  ASSERT_NE(mask, nullptr);
  EXPECT_EQ(mask->objectName(), "mask");
  EXPECT_TRUE(mask->testAttribute(Qt::WA_TransparentForMouseEvents));
  QWidget* content = item->GetMessageContentWidget();
  EXPECT_EQ(mask->geometry(), QRect(content->mapTo(item, QPoint(0, 0)), content->size()));
  item->SetSelected(true, Variant());
  EXPECT_EQ(item->mask_widget(), mask) << "selecting again keeps the one mask";
  item->SetSelected(false, Variant());
  EXPECT_EQ(item->mask_widget(), nullptr);
}

TEST_F(ChatImageItemTest, NoticeShowsSixLinesAndOffersTheRestBehindARow) {
  auto notice = [](std::string const& text) {
    Variant info = BaseInfo("n1", 6, "Host");
    Variant items(base::variant::kVariantTypeArray);
    Variant item(base::variant::kVariantTypeMap);
    item.Set(ChatNoticeMessageItemFields_kIntegerItemType, 0);
    item.Set(ChatNoticeMessageItemFields_kStringItemContent, text);
    items.Add(item);
    info.Set(ChatNoticeMessageInfoFields_kPtrInfoArrayItem, items);
    return info;
  };
  auto row = std::make_unique<ChatMessageWidget>("reuse_id6_2");
  row->setFixedWidth(360);
  row->SetMessageInfo(notice("Welcome to the quarterly review."));
  auto* item = qobject_cast<ChatNoticeItem*>(row->item());
  ASSERT_NE(item, nullptr);
  EXPECT_TRUE(item->view_detail_row()->isHidden());
  const int short_height = row->sizeHint().height();

  std::string agenda;
  for (int i = 1; i <= 12; ++i) agenda += "Item " + std::to_string(i) + " of the agenda.\r\n";
  row->SetMessageInfo(notice(agenda));
  EXPECT_EQ(item->content_label()->lines().size(), 6u);
  EXPECT_TRUE(item->content_label()->IsReachMaxLines());
  EXPECT_FALSE(item->view_detail_row()->isHidden());
  EXPECT_GT(row->sizeHint().height(), short_height);
}

TEST_F(ChatImageItemTest, AvatarsShowInitialsOnTheNamesColourAndAreGivenBack) {
  EXPECT_EQ(QtAvatarView::InitialsOf("avery quinn"), "AQ");
  EXPECT_EQ(QtAvatarView::InitialsOf("  Jordan  "), "J");
  EXPECT_EQ(QtAvatarView::InitialsOf(""), "");
  EXPECT_EQ(QtAvatarView::ColorOf("Avery Quinn"), QtAvatarView::ColorOf("Avery Quinn"));

  const int before = QtAvatarViewFactory::LiveCount();
  {
    auto row = Row(ImageInfo("img1", QString()));
    EXPECT_EQ(QtAvatarViewFactory::LiveCount(), before + 2);
    auto* left = static_cast<QtAvatarView*>(row->item()->left_avatar());
    EXPECT_EQ(left->initials(), "AQ");
    EXPECT_FALSE(left->HasPicture());
  }
  EXPECT_EQ(QtAvatarViewFactory::LiveCount(), before);
}

}  // namespace
}  // namespace items_test
