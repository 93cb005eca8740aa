// Image rows: display sizing, decoding off the main thread, stale results on
// a recycled row, thumbnails, copy; the selection mask of non-text rows;
// notices and avatars.
#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include "chat/ui/desktop/view/chat/chat_image_item.h"
#include "chat/ui/desktop/view/chat/chat_notice_item.h"
#include "chat/ui/desktop/view/chat/image_browser.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "chat/viewmodel/chat_image_message_view_model.h"
#include "chat/viewmodel/chat_notice_message_view_model.h"
#include "items_fixture.h"
#include "uikit/avatar/qt_avatar_view_factory.h"
#include "uikit/label/qf_label.h"

namespace items_test {
namespace {

Variant ImageInfo(std::string const& msg_id, QString const& path, bool self = false) {
  Variant info = BaseInfo(msg_id, 4, "Avery Quinn", self);
  info.Set(ChatImageMessageInfoFields_kStringInfoOrigPath, path.toStdString());
  info.Set(ChatImageMessageInfoFields_kIntegerInfoOrigDownloadStatus, path.isEmpty() ? 1 : 2);
  return info;
}

Variant NoticeInfo(std::string const& text) {
  Variant info = BaseInfo("n1", 6, "Host");
  Variant items(base::variant::kVariantTypeArray);
  Variant item(base::variant::kVariantTypeMap);
  item.Set(ChatNoticeMessageItemFields_kIntegerItemType, 0);
  item.Set(ChatNoticeMessageItemFields_kStringItemContent, text);
  items.Add(item);
  info.Set(ChatNoticeMessageInfoFields_kPtrInfoArrayItem, items);
  return info;
}

std::string Agenda() {
  std::string agenda;
  for (int i = 1; i <= 12; ++i) agenda += "Item " + std::to_string(i) + " of the agenda.\r\n";
  return agenda;
}

ImageBrowser* BrowserOf(ChatMessageWidget* row) { return static_cast<ChatImageItem*>(row->item())->browser(); }

bool Loaded(ChatMessageWidget* row) {
  return talvex_test::WaitUntil([row] { return BrowserOf(row)->is_image_loaded(); });
}

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

TEST_F(ChatImageItemTest, WideImageShowsAtTheBoxWidthAndTheRowGrowsToIt) {
  const QString path = WriteImage("panorama.png", 5000, 100);
  auto row = MakeRow(ImageInfo("img1", path));
  int changes = 0;
  QObject::connect(row.get(), &ChatMessageWidget::SizeChanged, [&] { ++changes; });
  ImageBrowser* browser = BrowserOf(row.get());
  EXPECT_EQ(browser->size(), QSize(200, 120)) << "the placeholder holds the place while decoding";
  const int before = row->sizeHint().height();
  ASSERT_TRUE(Loaded(row.get()));
  const int box = row->item()->GetMaxContentWidth();
  EXPECT_EQ(browser->label()->size(), QSize(box, 100 * box / 5000));
  EXPECT_EQ(row->sizeHint().height(), 24 + 16 + 2 + browser->height() + 4);
  EXPECT_NE(row->sizeHint().height(), before);
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return changes > 0; })) << "the list is told to measure again";
  // Another row given the same picture shows it at once, without a placeholder.
  auto again = MakeRow(ImageInfo("img2", path));
  EXPECT_TRUE(BrowserOf(again.get())->is_image_loaded());
  EXPECT_EQ(BrowserOf(again.get())->label()->size(), browser->label()->size());
  // Decoding left a thumbnail at most 560 long beside the file.
  const QString thumb = ImageAsycnBrowser::ThumbnailPathOf(path);
  ASSERT_TRUE(QFileInfo::exists(thumb));
  EXPECT_EQ(QImage(thumb).width(), 560);
}

TEST_F(ChatImageItemTest, RecycledRowShowsOnlyTheImageGivenLast) {
  auto row = MakeRow(ImageInfo("img1", WriteImage("first.png", 3000, 3000, Qt::red)));
  talvex_test::LogCapture logs;
  // The row is recycled for another message before the first decode is back.
  const QString second = WriteImage("second.png", 80, 40, Qt::blue);
  row->SetMessageInfo(ImageInfo("img2", second));
  ImageBrowser* browser = BrowserOf(row.get());
  ASSERT_TRUE(Loaded(row.get()));
  // Let the first result arrive too, and be dropped.
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return logs.Contains("image changed"); }));
  EXPECT_EQ(browser->image_path(), second);
  EXPECT_EQ(browser->label()->size(), QSize(80, 40));
  EXPECT_EQ(browser->label()->pixmap(Qt::ReturnByValue).toImage().pixelColor(1, 1), QColor(Qt::blue));
}

TEST_F(ChatImageItemTest, SaveAsProposesATimedPngAtHomeAndCopiesThePicture) {
  const QString proposed = ImageBrowser::ProposedSaveName();
  EXPECT_TRUE(proposed.startsWith(QDir::homePath() + "/") && proposed.endsWith(".png")) << proposed.toStdString();
  EXPECT_TRUE(QDateTime::fromString(proposed.section('_', -1).section('.', 0, 0), "yyyyMMddhhmmsszzz").isValid());

  auto row = MakeRow(ImageInfo("img1", WriteImage("photo.png", 64, 32, Qt::green)));
  row->show();
  ASSERT_TRUE(Loaded(row.get()));
  BrowserOf(row.get())->OnSaveAs();
  QFileDialog* dialog = nullptr;
  ASSERT_TRUE(talvex_test::WaitUntil([&] {
    for (QWidget* w : QApplication::topLevelWidgets()) {
      if (auto* d = qobject_cast<QFileDialog*>(w); d && d->isVisible()) dialog = d;
    }
    return dialog != nullptr;
  }));
  EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
  const QString target = dir_.filePath("saved.png");
  emit dialog->fileSelected(target);
  dialog->close();
  ASSERT_TRUE(QFileInfo::exists(target));
  EXPECT_EQ(QImage(target).pixelColor(1, 1), QColor(Qt::green));
}

TEST_F(ChatImageItemTest, MissingImagesShowTheirPlaceholderAndCopyNothing) {
  auto incoming = MakeRow(ImageInfo("img1", QString()));
  EXPECT_EQ(BrowserOf(incoming.get())->placeholder(), ":/images/chat/im_icon_imageloading_normal");
  EXPECT_FALSE(BrowserOf(incoming.get())->label()->pixmap(Qt::ReturnByValue).isNull()) << "the placeholder image is in the resources";
  auto own = MakeRow(ImageInfo("img2", QString(), true));
  EXPECT_EQ(BrowserOf(own.get())->placeholder(), ":/images/chat/im_icon_imagemissing_normal");

  QApplication::clipboard()->setText("before");
  own->item()->CopyContent();
  EXPECT_EQ(QApplication::clipboard()->text(), "before");

  const QString path = WriteImage("photo.png", 64, 64);
  auto loaded = MakeRow(ImageInfo("img3", path));
  ASSERT_TRUE(Loaded(loaded.get()));
  loaded->item()->CopyContent();
  QMimeData const* mime = QApplication::clipboard()->mimeData();
  ASSERT_NE(mime, nullptr);
  EXPECT_EQ(mime->urls(), QList<QUrl>({QUrl::fromLocalFile(path)}));
}

TEST_F(ChatImageItemTest, PressesOnPicturesAndNoticesAskTheRowsViewModel) {
  std::vector<std::pair<quint32, Variant>> actions;
  auto press = [&actions](ChatMessageWidget* row, QWidget* target) {
    QObject::connect(row, &ChatMessageWidget::ActionRequested,
                     [&actions](quint32 action, Variant const& params) { actions.emplace_back(action, params); });
    QTest::mouseClick(target, Qt::LeftButton);
  };
  Variant failed = ImageInfo("img1", QString());
  failed.Set(ChatImageMessageInfoFields_kIntegerInfoOrigDownloadStatus, 3);
  auto missing = MakeRow(failed);
  press(missing.get(), BrowserOf(missing.get())->label());
  auto downloading = MakeRow(ImageInfo("img2", QString()));
  press(downloading.get(), BrowserOf(downloading.get())->label());  // a picture on its way needs nothing
  auto loaded = MakeRow(ImageInfo("img3", WriteImage("photo.png", 64, 64)));
  ASSERT_TRUE(Loaded(loaded.get()));
  press(loaded.get(), BrowserOf(loaded.get())->label());
  auto notice = MakeRow(NoticeInfo(Agenda()));
  press(notice.get(), static_cast<ChatNoticeItem*>(notice->item())->view_detail_row());

  ASSERT_EQ(actions.size(), 3u);
  EXPECT_EQ(actions[0].first, chat::ChatImageMessageViewModel::kActionRefreshImage) << "a missing picture is fetched";
  EXPECT_EQ(actions[0].second.GetString(ChatImageMessageDownloadMsgFields_kStringMsgId), "img1");
  EXPECT_EQ(actions[1].first, chat::ChatImageMessageViewModel::kActionPreviewClicked);
  EXPECT_EQ(actions[1].second.GetString("msg_id"), "img3");
  EXPECT_EQ(actions[2].first, chat::ChatNoticeMessageViewModel::kActionShowMeetingNotice);
  EXPECT_EQ(actions[2].second.GetString("msg_id"), "n1");
}

TEST_F(ChatImageItemTest, SelectionLaysAMaskOverTheContent) {
  auto row = MakeRow(ImageInfo("img1", WriteImage("photo.png", 120, 90)));
  row->resize(360, row->sizeHint().height());
  row->show();
  ASSERT_TRUE(Loaded(row.get()));
  ChatItem* item = row->item();
  item->SetSelected(true, Variant());
  QWidget* mask = item->mask_widget();
  ASSERT_NE(mask, nullptr);
  EXPECT_TRUE(mask->testAttribute(Qt::WA_TransparentForMouseEvents)) << "presses reach the row under it";
  QWidget* content = item->GetMessageContentWidget();
  EXPECT_EQ(mask->geometry(), QRect(content->mapTo(item, QPoint(0, 0)), content->size()));
  item->SetSelected(true, Variant());
  EXPECT_EQ(item->mask_widget(), mask) << "selecting again keeps the one mask";
  item->SetSelected(false, Variant());
  EXPECT_EQ(item->mask_widget(), nullptr);
}

TEST_F(ChatImageItemTest, NoticeShowsSixLinesAndOffersTheRestBehindARow) {
  auto row = MakeRow(NoticeInfo("Welcome to the quarterly review."));
  auto* item = qobject_cast<ChatNoticeItem*>(row->item());
  ASSERT_NE(item, nullptr);
  EXPECT_TRUE(item->view_detail_row()->isHidden());
  const int short_height = row->sizeHint().height();
  row->SetMessageInfo(NoticeInfo(Agenda()));
  EXPECT_EQ(item->content_label()->lines().size(), 6u);
  EXPECT_TRUE(item->content_label()->IsReachMaxLines());
  EXPECT_FALSE(item->view_detail_row()->isHidden());
  EXPECT_GT(row->sizeHint().height(), short_height);
}

TEST_F(ChatImageItemTest, AvatarsShowInitialsAndAreGivenBack) {
  EXPECT_EQ(QtAvatarView::InitialsOf("avery quinn"), "AQ");
  EXPECT_EQ(QtAvatarView::InitialsOf("  Jordan  "), "J");
  const int before = QtAvatarViewFactory::LiveCount();
  {
    auto row = MakeRow(ImageInfo("img1", QString()));
    EXPECT_EQ(QtAvatarViewFactory::LiveCount(), before + 2);
    auto* left = static_cast<QtAvatarView*>(row->item()->left_avatar());
    EXPECT_EQ(left->initials(), "AQ");
    EXPECT_FALSE(left->HasPicture());
  }
  EXPECT_EQ(QtAvatarViewFactory::LiveCount(), before);
}

}  // namespace
}  // namespace items_test
