// The notice dialog on its page, offscreen: reading a notice with its link,
// and a host writing, counting and publishing one.
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextBrowser>
#include <QUrl>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/controller/page_controller.h"
#include "chat/ui/desktop/view/notice/meeting_notice_banner.h"
#include "chat/ui/desktop/view/notice/meeting_notice_view.h"
#include "chat/viewmodel/meeting_notice_view_model.h"
#include "framework/navigation/routing.h"
#include "framework/ui/ui_service.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace notice_test {
namespace {

class NoticePageTest : public ::testing::Test {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    ui_ = std::make_shared<framework::RecordingUIService>();
    framework::SetUIService(ui_);
    framework::NavigateService::Instance()->ClearOpened();
    meeting_.Install();
    meeting_.meeting_settings().SetSwitch("notice_enable", true);
    ASSERT_TRUE(runtime_.Activate());
    meeting_.meeting().Join();
    clock_.Advance(100);
  }
  void TearDown() override {
    controller_.reset();
    runtime_.Unactivate();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
  }
  MeetingNoticeWidget* Show() {
    controller_ = std::make_unique<MeetingNoticeContoller>(&runtime_);
    Variant params = Variant::Map{{"template_type", 2}};
    controller_->Call("show", &params);
    auto view = std::dynamic_pointer_cast<QtView::MeetingNoticeView>(controller_->view());
    return view ? view->widget() : nullptr;
  }

  talvex_test::TestClock clock_;
  sim::MeetingSimulator meeting_;
  chat::ChatModuleRuntime runtime_;
  std::shared_ptr<framework::RecordingUIService> ui_;
  std::unique_ptr<MeetingNoticeContoller> controller_;
};

TEST_F(NoticePageTest, AParticipantReadsTheNoticeAndItsLinkOpensOnTheWeb) {
  meeting_.notices().PublishAs(meeting_.context().meeting_id, "u-host", "Riley <b>Chen</b>", 1,
                               R"([{"item_type":0,"item_content":"Agenda <draft>: "},)"
                               R"({"item_type":2,"item_content":"https://talvex-demo.org/agenda"}])");
  clock_.Advance(100);
  MeetingNoticeWidget* widget = Show();
  ASSERT_NE(widget, nullptr);
  EXPECT_TRUE(widget->window()->isVisible());
  EXPECT_FALSE(widget->editing());
  EXPECT_FALSE(widget->edit_button()->isVisible()) << "only a host edits";
  EXPECT_EQ(widget->reader()->toPlainText(), "Agenda <draft>: https://talvex-demo.org/agenda") << "markup shows as text";
  EXPECT_EQ(widget->sender_label()->text(), "Riley <b>Chen</b>");
  EXPECT_TRUE(widget->reader()->toHtml().contains("href=\"https://talvex-demo.org/agenda\""));
  emit widget->reader()->anchorClicked(QUrl("https://talvex-demo.org/agenda"));
  ASSERT_EQ(framework::NavigateService::Instance()->opened().size(), 1u);
}

TEST_F(NoticePageTest, AHostWritesWithinTheLimitPublishesAndTheDialogCloses) {
  meeting_.context().self_role = talvex::MeetingContext::kRoleHost;
  MeetingNoticeWidget* widget = Show();
  ASSERT_NE(widget, nullptr);
  ASSERT_TRUE(widget->editing()) << "no notice yet: a host starts writing";
  widget->editor()->setPlainText(QString(1001, 'x'));
  EXPECT_FALSE(widget->publish_button()->isEnabled());
  EXPECT_TRUE(widget->counter()->text().contains("1001/1000"));
  widget->editor()->clear();
  QTest::keyClicks(widget->editor(), "Questions at the end, please.");
  EXPECT_TRUE(widget->publish_button()->isEnabled());
  EXPECT_EQ(widget->counter()->text(), "29/1000");
  QTest::mouseClick(widget->publish_button(), Qt::LeftButton);
  ASSERT_NE(ui_->LastOpenAlert(), nullptr);
  ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonPositive);
  clock_.Advance(100);
  EXPECT_EQ(meeting_.notices().NoticeOf(meeting_.context().meeting_id).notice_content, "Questions at the end, please.");
  QWidget* window = widget->window();
  EXPECT_TRUE(window->isVisible());
  clock_.Advance(chat::MeetingNoticeViewModel::kCloseDelayMs);
  EXPECT_FALSE(window->isVisible()) << "closed after the success";
}

// The banner's own behaviour, without a view model: what it shows for a
// published banner, how it cuts the notice, and its keys.
TEST(NoticeBannerWidgetTest, ItCutsTheNoticeToTwoLinesAndOpensOrHidesByKey) {
  const QFont font;
  const QString text = "one two three four five six seven eight nine ten eleven twelve thirteen fourteen";
  const int width = QFontMetrics(font).horizontalAdvance("one two three four") + 4;
  const QString cut = MeetingNoticeBanner::ElideToLines(text, font, width, 2);
  ASSERT_EQ(cut.count('\n'), 1);
  EXPECT_TRUE(cut.startsWith("one two three")) << cut.toStdString();
  EXPECT_TRUE(cut.endsWith(QString::fromUtf8("\u2026")));
  for (QString const& line : cut.split('\n')) EXPECT_LE(QFontMetrics(font).horizontalAdvance(line), width);
  EXPECT_EQ(MeetingNoticeBanner::ElideToLines("short", font, width, 2), "short") << "what fits is left whole";
  EXPECT_EQ(MeetingNoticeBanner::ElideToLines(text, font, 0, 2), "");

  MeetingNoticeBanner banner;
  banner.resize(360, 80);
  banner.SetBanner(Variant::Map{{"visible", true}, {"title", "Meeting notice"}, {"text", "Doors <open> at 9"},
                                {"sender", "Riley"}, {"time", "09:30"}, {"updated", false}});
  banner.show();
  EXPECT_TRUE(banner.isVisible());
  EXPECT_EQ(banner.text_label()->text(), "Doors <open> at 9");
  EXPECT_EQ(banner.full_meta(), QString::fromUtf8("Riley \u00b7 09:30"));
  EXPECT_FALSE(banner.updated_label()->isVisible());
  QSignalSpy open(&banner, &MeetingNoticeBanner::OpenClicked);
  QSignalSpy close(&banner, &MeetingNoticeBanner::CloseClicked);
  QTest::keyClick(&banner, Qt::Key_Return);
  QTest::keyClick(&banner, Qt::Key_Space);
  QTest::keyClick(&banner, Qt::Key_Escape);
  EXPECT_EQ(open.count(), 2);
  EXPECT_EQ(close.count(), 1);

  for (Variant hidden : {Variant(), Variant(7), Variant(Variant::Map{{"visible", false}, {"text", "x"}})}) {
    banner.SetBanner(hidden);
    EXPECT_TRUE(banner.isHidden());
    EXPECT_TRUE(banner.full_text().isEmpty());
  }
}

}  // namespace
}  // namespace notice_test
