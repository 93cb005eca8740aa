#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QMessageBox>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <string>
#include <vector>

#include "support/test_util.h"
#include "uikit/qt_ui_monitor_helper.h"
#include "uikit/qt_ui_service.h"
#include "uikit/widget/qf_image_push_button.h"
#include "uikit/tx_qt_ui_util.h"

namespace {

QMessageBox* FindAlert(QString const& title) {
  for (QWidget* w : QApplication::topLevelWidgets()) {
    auto* box = qobject_cast<QMessageBox*>(w);
    if (box && box->isVisible() && box->windowTitle() == title) return box;
  }
  return nullptr;
}

QAbstractButton* FindButton(QMessageBox* box, QString const& text) {
  for (QAbstractButton* b : box->buttons()) {
    if (b->text() == text) return b;
  }
  return nullptr;
}

TEST(UikitTest, ModuleResourceFilesAreRegisteredOnlyWhenTheyExist) {
  talvex_test::LogCapture log;
  EXPECT_FALSE(TXQtUiUtil::LoadQtModuleResource("", TEST_RCC_DIR));
  EXPECT_FALSE(TXQtUiUtil::LoadQtModuleResource("/nonexistent/dir/chat.rcc", ""));
  EXPECT_FALSE(TXQtUiUtil::LoadQtModuleResource("chat.rcc", "/nonexistent/dir"));
  EXPECT_TRUE(log.Contains("module resource file not found: /nonexistent/dir/chat.rcc"));
  EXPECT_FALSE(QFile::exists(":/framework_test/greeting.txt"));

  // A relative name is looked up in the module's directory.
  ASSERT_TRUE(TXQtUiUtil::LoadQtModuleResource(TEST_RCC_NAME, TEST_RCC_DIR));
  QFile greeting(":/framework_test/greeting.txt");
  ASSERT_TRUE(greeting.open(QIODevice::ReadOnly));
  EXPECT_EQ(greeting.readAll().trimmed().toStdString(), "hello from a module");
}

TEST(UikitTest, AlertsAreDialogsAnsweredByTheirButtons) {
  QtUIService ui;
  framework::AlertRequest request;
  request.title = "Delete message";
  request.content = "Delete it for everyone?";
  request.positive_text = "Delete";
  request.negative_text = "Keep";
  request.has_check = true;
  request.check_state = true;
  request.check_state_text = "Don't ask again";
  std::vector<std::string> answers;
  const long id = ui.ShowAlert(request, [&](long alert, int button, Variant* data) {
    answers.push_back(std::to_string(alert) + "/" + std::to_string(button) + "/" + data->ToString());
  });
  QMessageBox* box = FindAlert("Delete message");
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->text(), "Delete it for everyone?");
  ASSERT_NE(box->checkBox(), nullptr);
  EXPECT_TRUE(box->checkBox()->isChecked());
  EXPECT_EQ(box->checkBox()->text(), "Don't ask again");
  ASSERT_NE(FindButton(box, "Keep"), nullptr);
  ASSERT_NE(FindButton(box, "Delete"), nullptr);

  box->checkBox()->setChecked(false);
  FindButton(box, "Delete")->click();
  EXPECT_EQ(answers, std::vector<std::string>{std::to_string(id) + "/1/{\"check_state\":false}"});
  EXPECT_EQ(ui.LastOpenAlert(), nullptr);
  EXPECT_TRUE(talvex_test::WaitUntil([] { return FindAlert("Delete message") == nullptr; }));

  framework::AlertRequest plain;
  plain.title = "Notice";
  const long second = ui.ShowAlert(plain, [&](long alert, int button, Variant*) {
    answers.push_back(std::to_string(alert) + "/" + std::to_string(button));
  });
  box = FindAlert("Notice");
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->text(), "Notice");  // no content: the title stands in
  ASSERT_EQ(box->buttons().size(), 1);
  box->buttons()[0]->click();
  EXPECT_EQ(answers.back(), std::to_string(second) + "/1");
}

TEST(UikitTest, DisposingAlertsClosesOnlyTheOwnersDialogs) {
  QtUIService ui;
  framework::AlertRequest mine, theirs;
  mine.title = "Mine";
  mine.owner = 1;
  theirs.title = "Theirs";
  theirs.owner = 2;
  int answered = 0;
  ui.ShowAlert(mine, [&](long, int, Variant*) { ++answered; });
  ui.ShowAlert(theirs, [&](long, int, Variant*) { ++answered; });
  ASSERT_NE(FindAlert("Mine"), nullptr);
  ASSERT_NE(FindAlert("Theirs"), nullptr);

  ui.DisposeAlerts(1);
  EXPECT_TRUE(talvex_test::WaitUntil([] { return FindAlert("Mine") == nullptr; }));
  EXPECT_NE(FindAlert("Theirs"), nullptr);
  ASSERT_NE(ui.LastOpenAlert(), nullptr);
  EXPECT_EQ(ui.LastOpenAlert()->request.title, "Theirs");

  ui.DisposeAlerts(0);
  EXPECT_TRUE(talvex_test::WaitUntil([] { return FindAlert("Theirs") == nullptr; }));
  EXPECT_EQ(ui.LastOpenAlert(), nullptr);
  EXPECT_EQ(answered, 0);
}

// A picture of one colour, written where a button looks for it.
void WritePicture(QString const& path, QColor color) {
  QImage image(8, 8, QImage::Format_ARGB32);
  image.fill(color);
  ASSERT_TRUE(image.save(path, "PNG"));
}

TEST(UikitTest, AnImageButtonDrawsThePictureOfItsStateAndBlendsItsFlash) {
  QTemporaryDir dir;
  const QString base = dir.filePath("button");
  WritePicture(base, Qt::blue);
  WritePicture(base + "_disable", Qt::gray);
  WritePicture(dir.filePath("flash"), Qt::red);
  QFImagePushButton button;
  button.SetImages(base, dir.filePath("flash"));
  button.resize(8, 8);
  auto centre = [&] { return button.grab().toImage().pixelColor(4, 4); };
  EXPECT_EQ(centre(), QColor(Qt::blue));
  EXPECT_EQ(button.sizeHint(), QSize(8, 8));
  button.SetFlash(100);
  EXPECT_EQ(centre(), QColor(Qt::red));
  button.SetFlash(250);
  EXPECT_EQ(button.flash(), 100) << "the flash is a share, 0 to 100";
  button.SetFlash(50);
  const QColor half = centre();
  EXPECT_NEAR(half.red(), 127, 3);
  EXPECT_NEAR(half.blue(), 128, 3);
  button.SetFlash(0);
  button.setEnabled(false);
  EXPECT_EQ(centre(), QColor(Qt::gray));

  // Without pictures a button still says what it is.
  QFImagePushButton bare;
  bare.setText("Open");
  bare.SetImages(dir.filePath("missing"));
  EXPECT_TRUE(bare.image_path().endsWith("missing"));
  EXPECT_GT(bare.sizeHint().width(), 8);
}

TEST(UikitTest, MonitoredWidgetsCoverTheirRectsOnlyWhileTheyShow) {
  QWidget window;
  window.setGeometry(100, 100, 300, 200);
  auto* panel = new QWidget(&window);
  panel->setGeometry(10, 10, 50, 40);
  QTUIMonitorHelper::AddMonitorRectWidget(panel);
  QTUIMonitorHelper::AddMonitorRectWidget(panel);
  window.show();
  const QPoint inside = panel->mapToGlobal(QPoint(5, 5));
  EXPECT_TRUE(QTUIMonitorHelper::IsMonitoredPoint(inside));
  EXPECT_FALSE(QTUIMonitorHelper::IsMonitoredPoint(panel->mapToGlobal(QPoint(80, 80))));
  EXPECT_EQ(QTUIMonitorHelper::MonitoredWidgets().size(), 1u) << "added once";
  panel->hide();
  EXPECT_FALSE(QTUIMonitorHelper::IsMonitoredPoint(inside));
  panel->show();
  delete panel;
  EXPECT_TRUE(QTUIMonitorHelper::MonitoredWidgets().empty()) << "a deleted widget drops out";

  QWidget top;
  top.show();
  TXQtUiUtil::SetupTopMost(&top);
  EXPECT_TRUE(top.windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_TRUE(top.isVisible()) << "a shown window stays shown";
  TXQtUiUtil::SetupTopMost(&top, false);
  EXPECT_FALSE(top.windowFlags() & Qt::WindowStaysOnTopHint);
}

}  // namespace
