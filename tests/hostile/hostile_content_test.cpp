// Hostile content: markup in names shows as text on buttons, tool tips,
// alerts and toasts; only web links open; meeting ids and file names never
// lead a file outside its folder; pictures that lie about their size, or
// stop half-way, are refused or shown broken without a large allocation.
#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QtEndian>

#include "base/util/file_util.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/view/bullet/chat_item_bar.h"
#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_file_utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/ui/ui_service.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"
#include "uikit/qt_ui_service.h"
#include "uikit/tx_qt_ui_util.h"

namespace hostile_test {
namespace {

bool Inside(std::string const& path, std::string const& folder) {
  const QString clean = QDir::cleanPath(QString::fromStdString(path));
  return clean.startsWith(QDir::cleanPath(QString::fromStdString(folder)) + "/");
}

quint32 Crc32(QByteArray const& bytes) {
  quint32 crc = 0xFFFFFFFFu;
  for (char byte : bytes) {
    crc ^= static_cast<quint8>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

// A PNG whose header claims `width` x `height` and whose pixels stop at once.
QByteArray LyingPng(quint32 width, quint32 height) {
  QByteArray png("\x89PNG\r\n\x1a\n", 8);
  QByteArray chunk("IHDR", 4);
  char field[4];
  qToBigEndian(width, field);
  chunk.append(field, 4);
  qToBigEndian(height, field);
  chunk.append(field, 4);
  chunk.append("\x08\x06\x00\x00\x00", 5);  // 8 bits, RGBA
  qToBigEndian<quint32>(13, field);
  png.append(field, 4);
  png.append(chunk);
  qToBigEndian(Crc32(chunk), field);
  png.append(field, 4);
  // The start of the pixels, and then the data stops.
  const QByteArray pixels("IDAT\x78\x9c", 6);
  qToBigEndian<quint32>(2, field);
  png.append(field, 4);
  png.append(pixels);
  qToBigEndian(Crc32(pixels), field);
  png.append(field, 4);
  return png;
}

TEST(HostileContentTest, OnlyWebLinksOpen) {
  EXPECT_EQ(chat::WebAddressOf("www.talvex-demo.org/agenda"), "https://www.talvex-demo.org/agenda");
  EXPECT_EQ(chat::WebAddressOf("  HTTPS://Talvex-demo.org/a?b=1 "), "https://talvex-demo.org/a?b=1");
  EXPECT_EQ(chat::WebAddressOf("http://a.example"), "http://a.example");
  for (char const* refused : {"javascript:alert(1)", "file:///etc/passwd", "ftp://a.example/x", "http://",
                              "mailto:a@b.example", "data:text/html,<b>x</b>", "", "   ", "vbscript:msgbox"}) {
    EXPECT_EQ(chat::WebAddressOf(refused), "") << refused;
  }
}

TEST(HostileContentTest, IdsAndNamesThatClimbStayInTheirFolder) {
  talvex_test::IsolateUserDirectories();
  for (char const* bad : {"..", ".", "../..", "a/../../b", "..\\..", "/etc", ""}) {
    const std::string safe = util::file::SafePathComponent(bad);
    EXPECT_FALSE(safe.empty()) << bad;
    EXPECT_EQ(safe.find('/'), std::string::npos) << bad;
    EXPECT_NE(safe, "..") << bad;
    EXPECT_NE(safe, ".") << bad;
  }
  const std::string day = talvex::ChatFileUtils::GetChatFileDateDirPath();
  EXPECT_TRUE(Inside(chat::MakeUniqueChatFileDirPath("../../.."), day));
  EXPECT_TRUE(Inside(chat::MakeUniqueChatFileDirPath(".."), day));
  const std::string cache = talvex::ChatUtils::GetChatImageCacheDir("");
  const std::string root = QFileInfo(QString::fromStdString(cache)).absolutePath().toStdString();
  EXPECT_TRUE(Inside(talvex::ChatUtils::GetOriginalPicFileName("../../x", ".."), root));
  EXPECT_TRUE(Inside(talvex::ChatUtils::GetChatImageCacheDir(".."), root));
}

TEST(HostileContentTest, ADownloadedFileWithAClimbingNameLandsInTheChatFolder) {
  talvex_test::IsolateUserDirectories();
  talvex_test::TestClock clock;
  sim::MeetingSimulator meeting;
  meeting.Install();
  meeting.meeting().Join();
  meeting.files().set_step_ms(10);
  meeting.files().set_steps(2);
  Variant info = Variant::Map{{"id", "f-evil"}, {"name", "../../evil.sh"}, {"size", 64}, {"status", 5}};
  const std::string id = meeting.messages().Post(sim::ChatRecord(meeting.meeting().meeting_id(),
                                                                 sim::Sender("u-2", "Mallory"), 8, Variant(), false,
                                                                 Variant::Map{{"file_info", info}}));
  Variant ask = Variant::Map{{"msg_id", id}, {"file_info", info}};
  ASSERT_TRUE(meeting.files().Invoke(4, &ask, nullptr));
  clock.Advance(100);
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(id);
  ASSERT_TRUE(record);
  const std::string path = record->Get("ext_content").Get("file_info").GetString("path");
  EXPECT_TRUE(Inside(path, talvex::ChatFileUtils::GetChatFileDateDirPath())) << path;
  EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(path)));
  meeting.Uninstall();
}

TEST(HostileContentTest, PicturesThatLieAboutTheirSizeOrStopHalfWayAreRefused) {
  // Four hundred million pixels (1.6 GB) declared: refused from the header
  // alone, before the decoder would allocate them.
  talvex_test::LogCapture log;
  QByteArray huge = LyingPng(20000, 20000);
  QBuffer huge_buffer(&huge);
  QImageReader huge_reader(&huge_buffer, "png");
  ASSERT_EQ(huge_reader.size(), QSize(20000, 20000));
  EXPECT_TRUE(TXQtUiUtil::ReadImageCapped(huge_reader).isNull());
  EXPECT_TRUE(log.Contains("too large to decode"));

  // A real picture cut in half decodes to nothing or to what arrived, never a crash.
  QImage picture(64, 64, QImage::Format_ARGB32);
  picture.fill(Qt::red);
  QByteArray bytes;
  QBuffer out(&bytes);
  ASSERT_TRUE(picture.save(&out, "PNG"));
  QByteArray half = bytes.left(bytes.size() / 2);
  QBuffer half_buffer(&half);
  QImageReader half_reader(&half_buffer, "png");
  const QImage read = TXQtUiUtil::ReadImageCapped(half_reader);
  EXPECT_TRUE(read.isNull() || read.size() == QSize(64, 64));

  // No size to read at all: refused.
  QByteArray noise("not a picture at all");
  QBuffer noise_buffer(&noise);
  QImageReader noise_reader(&noise_buffer);
  EXPECT_TRUE(TXQtUiUtil::ReadImageCapped(noise_reader).isNull());

  // A picture within the limit reads whole.
  QBuffer whole(&bytes);
  QImageReader whole_reader(&whole, "png");
  EXPECT_EQ(TXQtUiUtil::ReadImageCapped(whole_reader).size(), QSize(64, 64));
}

TEST(HostileContentTest, MarkupAndAmpersandsInNamesShowAsTheyAre) {
  const QString name = "Tom & <b>Jerry</b> <img src='/etc/passwd'>";
  ChatInputWidget input;
  input.SetReceiver(name, true);
  EXPECT_TRUE(input.receiver_button()->text().contains("Tom && <b>Jerry</b>")) << "no shortcut key, no markup";

  ChatItemBar bar;
  bar.SetReceiver("A&B", false);
  EXPECT_TRUE(bar.receiver_button()->text().contains("A&&B"));
  bar.SetReceiver(name, false);
  EXPECT_TRUE(bar.receiver_button()->toolTip().contains("&lt;b&gt;Jerry&lt;/b&gt;")) << "the tool tip escapes it";
  EXPECT_EQ(TXQtUiUtil::PlainToolTip(""), "");

  // The client's alerts and toasts show texts as text.
  QWidget window;
  window.show();
  QApplication::setActiveWindow(&window);
  QtUIService ui;
  framework::AlertRequest alert;
  alert.title = "Remove";
  alert.content = "Remove <b>Jerry</b> from the meeting?";
  ui.ShowAlert(alert, nullptr);
  QMessageBox* box = nullptr;
  for (QWidget* top : QApplication::topLevelWidgets()) {
    if (auto* found = qobject_cast<QMessageBox*>(top)) box = found;
  }
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->textFormat(), Qt::PlainText);
  EXPECT_EQ(box->text(), "Remove <b>Jerry</b> from the meeting?");
  box->close();
  framework::ToastRequest toast;
  toast.text = "<i>Jerry</i> left";
  toast.duration_ms = 100;
  ui.ShowToast(toast);
  auto* label = window.findChild<QLabel*>("talvex_toast");
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

}  // namespace
}  // namespace hostile_test
