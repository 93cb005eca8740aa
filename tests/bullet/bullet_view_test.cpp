// The floating chat on screen, offscreen: the items and their life, the chat
// bar, the emoji panel, and the overlay over a meeting window driven by its
// view model through the simulated meeting.
#include <QApplication>
#include <QLineEdit>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include "bullet_fixture.h"
#include "chat/ui/desktop/view/bullet/bullet_item_widget.h"
#include "chat/ui/desktop/view/bullet/chat_item_bar.h"
#include "chat/ui/desktop/view/bullet/emoji_panel_widget.h"
#include "chat/viewmodel/private_chat_members_view_model.h"
#include "chat/ui/desktop/view/bullet/in_meeting_bullet_qt_view.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "framework/navigation/routing.h"
#include "uikit/widget/circle_dot.h"
#include "uikit/widget/qf_image_push_button.h"

namespace bullet_test {
namespace {

Variant Normal(std::string const& sender, std::string const& content, int msg_type = 0) {
  return Variant::Map{{"msg_type", msg_type}, {"chat_type", 0}, {"update_type", 0}, {"msg_id", "m-" + content},
                      {"msg_sender", sender}, {"msg_content", content}};
}

std::unique_ptr<BulletItemWidget> Build(Variant const& record) {
  return std::unique_ptr<BulletItemWidget>(BulletItemWidgetBuilder::Create(nullptr, &record));
}

TEST(BulletItemTest, EachKindBuildsItsItemAndReceiptsAndUnknownTypesBuildNone) {
  EXPECT_EQ(Build(Normal("Sam", "hi"))->kind(), BulletItemWidget::kKindNormal);
  Variant notice = Normal("Riley", "agenda");
  notice.Set("chat_type", 6);
  EXPECT_EQ(Build(notice)->kind(), BulletItemWidget::kKindNotice);
  EXPECT_EQ(Build(notice)->PlainText(), "[Notice] Riley updated the meeting notice. View")
      << "the notice's words are in the client's texts";
  EXPECT_EQ(Build(Variant::Map{{"msg_type", 3}, {"msg_sender", "Riley "}, {"desc_send", "sent"},
                               {"desc_redpacket", "a red packet"}, {"desc_usemobile", "Open it on your phone"}})
                ->PlainText(),
            "Riley sent a red packet Open it on your phone");
  EXPECT_EQ(Build(Variant::Map{{"update_type", 6}, {"notify_title", "Poll"}, {"notify_content", "Vote"}})->kind(),
            BulletItemWidget::kKindBanner);
  talvex_test::LogCapture log;
  EXPECT_EQ(Build(Variant::Map{{"msg_type", 4}}), nullptr) << "a receipt has no item";
  EXPECT_EQ(Build(Variant::Map{{"msg_type", 42}}), nullptr);
  EXPECT_EQ(Build(Variant::Map{{"msg_type", 5}, {"face_elem_index", -1}}), nullptr);
  EXPECT_EQ(BulletItemWidgetBuilder::Create(nullptr, nullptr), nullptr);
  EXPECT_EQ(log.Count("failed to create item for msg_type; "), 3u);
  EXPECT_TRUE(log.Contains("failed to create item with no param"));
}

TEST(BulletItemTest, SenderLinesReadAsThePartiesAreAndATailGrowsTheItem) {
  Variant own = Normal("", "see you", 2);
  own.Set("from_self", true);
  own.Set("you_label", "You");
  own.Set("private_chat_label", " privately to ");
  own.Set("msg_receiver", "Sam");
  EXPECT_TRUE(Build(own)->PlainText().startsWith("You privately to Sam:"));
  Variant group = Normal("Avery", "question");
  group.Set("msg_receiver", "to Waiting room");
  EXPECT_TRUE(Build(group)->PlainText().startsWith("Avery to Waiting room :"));
  Variant recalled = Normal("Avery", "recalled a message");
  recalled.Set("update_type", 1);
  EXPECT_TRUE(Build(recalled)->PlainText().startsWith("Avery"));

  auto plain = Build(Normal("Avery", "hello"));
  Variant tailed = Normal("Avery", "hello");
  tailed.Set("chat_tips", "Only the host sees this");
  auto with_tail = Build(tailed);
  EXPECT_GT(with_tail->height(), plain->height());
  EXPECT_TRUE(with_tail->PlainText().endsWith("Only the host sees this"));
  EXPECT_EQ(plain->width() - plain->label()->width(), with_tail->width() - with_tail->label()->width());
  EXPECT_LE(plain->label()->width(), BulletItemWidget::kTextWidth);
}

TEST(BulletItemTest, AnItemLivesFiveSecondsThenFadesAndGoes) {
  talvex_test::TestClock clock;
  QWidget parent;
  Variant record = Normal("Sam", "bye");
  QPointer<BulletItemWidget> item = BulletItemWidgetBuilder::Create(&parent, &record);
  ASSERT_TRUE(item);
  item->StartDisappear(true);
  clock.Advance(BulletItemWidget::kLifeMs - 1);
  EXPECT_FALSE(item->disappearing());
  clock.Advance(1);
  ASSERT_TRUE(item->disappearing());
  EXPECT_EQ(item->fade_animation()->duration(), BulletItemWidget::kFadeMs);
  item->fade_animation()->setCurrentTime(BulletItemWidget::kFadeMs);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(item.isNull()) << "gone after the fade";
}

TEST(ChatItemBarTest, ADisabledBarStaysCollapsedAndTheEmptyTimerIsOne) {
  talvex_test::TestClock clock;
  ChatItemBar bar;
  EXPECT_EQ(bar.edit()->accessibleName(), "chat_button_accessibility_label");
  EXPECT_EQ(bar.emoji_button()->accessibleName(), "expression_button_accessibility_label");
  EXPECT_EQ(bar.pic_in_pic_button()->accessibleName(), "portraint_mode_button_accessibility_label");
  const int collapsed = bar.width();
  bar.ExpandChatBar(true);
  EXPECT_TRUE(bar.is_expanded());
  EXPECT_GT(bar.width(), collapsed);
  bar.ExpandChatBar(false);
  bar.SetChatDisabled(true);
  bar.ExpandChatBar(true);
  EXPECT_FALSE(bar.is_expanded()) << "muted: expanding does nothing";

  bar.SetChatDisabled(false);
  bar.ExpandChatBar(true);
  bar.ResetEmptyTimer();
  bar.ResetEmptyTimer();
  EXPECT_EQ(clock.active_count(), 1u) << "two removals, one timer";
  clock.Advance(ChatItemBar::kEmptyCollapseMs);
  EXPECT_FALSE(bar.is_expanded());

  bar.UpdateQuickReplyDisable(Variant::Map{{"disable", true}, {"chat_placeholder_text", "Chat is limited"}});
  EXPECT_EQ(bar.emoji_button()->image_path(), ":/images/chat/im_bullet_emoji_disable");
  EXPECT_EQ(bar.edit()->placeholderText(), "Chat is limited");
  Variant pip = Variant::Map{{"enable", true}, {"tool_tips", "Small window"}};
  bar.UpdatePicInPicUIData(&pip);
  EXPECT_EQ(bar.pic_in_pic_button()->image_path(), ":/images/chat/pic_in_pic/icon_picinpic_on");
  bar.UpdatePicInPicUIData(nullptr);
  EXPECT_EQ(bar.pic_in_pic_button()->toolTip(), "Small window");

  QString sent;
  bar.on_send = [&](QString const& text) { sent = text; };
  bar.ExpandChatBar(true);
  QTest::keyClicks(bar.edit(), "ok!");
  QTest::keyClick(bar.edit(), Qt::Key_Return);
  EXPECT_EQ(sent, "ok!");
  EXPECT_TRUE(bar.text().isEmpty());
}

TEST(EmojiPanelTest, FacesArePickedByKeyboardAndMouse) {
  EmojiPanelWidget panel;
  Variant faces(base::variant::kVariantTypeArray);
  for (int i = 0; i < 10; ++i) faces.Add(Variant::Map{{"index", i}, {"face_type", "[F" + std::to_string(i) + "]"}});
  faces.Add(Variant("not a face"));
  panel.SetFaces(faces);
  ASSERT_EQ(panel.face_count(), 10);
  EXPECT_EQ(panel.button(3)->accessibleName(), "[F3]");
  std::vector<int> chosen;
  QObject::connect(&panel, &EmojiPanelWidget::EmojiChosen, [&](int index, QString const&) { chosen.push_back(index); });
  panel.show();
  QTest::keyClick(&panel, Qt::Key_Right);
  QTest::keyClick(&panel, Qt::Key_Down);
  QTest::keyClick(&panel, Qt::Key_Return);
  QTest::mouseClick(panel.button(2), Qt::LeftButton);
  EXPECT_EQ(chosen, (std::vector<int>{9, 2}));
  QTest::keyClick(&panel, Qt::Key_Escape);
  EXPECT_FALSE(panel.isVisible());
  panel.SetFaces(Variant(7));
  EXPECT_EQ(panel.face_count(), 0);
}

// The overlay over a meeting window, driven by its view model.
class BulletViewTest : public BulletFixture {
 protected:
  void SetUp() override {
    BulletFixture::SetUp();
    window_.setObjectName("meeting_window");
    window_.resize(1000, 700);
    auto* stage = new QWidget(&window_);
    stage->setObjectName("MediaRoomWidget");
    stage->setGeometry(0, 0, 1000, 640);
    container_ = new QWidget(stage);
    container_->setObjectName("emojiPanelContainer");
    container_->setGeometry(0, 0, 1000, 640);
    framework::ControllerManager::Instance()->IocRegister("talvex://page/inmeeting", [this] {
      return std::make_shared<WindowController>(&window_);
    });
    window_.show();
  }
  void TearDown() override {
    if (view_) view_->Dispose();
    view_.reset();
    framework::ControllerManager::Instance()->IocUnregister("talvex://page/inmeeting");
    BulletFixture::TearDown();
  }
  struct WindowController : framework::Controller {
    explicit WindowController(QWidget* w) : window(w) {}
    bool CallHasResult(std::string const& name, Variant const*, Variant* result) override {
      if (name != "get_qt_window") return false;
      *result = Variant(static_cast<void*>(window));
      return true;
    }
    QWidget* window;
  };
  void Show(bool auto_disappear_off = false, bool screen_share_window = false) {
    if (auto_disappear_off) meeting_.context().is_webinar = true;
    JoinAndAttach();
    view_ = std::make_shared<QtView::InMeetingBulletQTView>();
    view_->SetViewModel(vm_);
    Variant params(base::variant::kVariantTypeMap);
    params.Set("screen_share_emoji", screen_share_window);
    ASSERT_TRUE(view_->Build(std::weak_ptr<AppBaseView>(), container_, &params, true));
    view_->ResetPosition();
  }
  QWidget* Frame() const { return view_->frame(); }

  QWidget window_;
  QWidget* container_ = nullptr;
  std::shared_ptr<QtView::InMeetingBulletQTView> view_;
};

TEST_F(BulletViewTest, BulletsRiseFromTheBarNewestLowestAndRecallsAndShieldsFindThem) {
  Show();
  EXPECT_EQ(Frame()->objectName(), "EmojiFloatWndWidget-InMeeting");
  EXPECT_EQ(Frame()->x(), window_.frameGeometry().x() + 5);
  EXPECT_EQ(Frame()->y() + Frame()->height(), window_.frameGeometry().bottom() - 80);
  const std::string first = Say(2, "first");
  Say(3, "second");
  Advance(2 * VM::kUpcastIntervalMs);
  auto items = view_->items();
  ASSERT_EQ(items.size(), 2u);
  EXPECT_LT(items[0]->y(), items[1]->y()) << "the newest is lowest";
  EXPECT_EQ(items[0]->x(), 12);
  EXPECT_EQ(view_->item_area()->height(), std::min(view_->Limit(), view_->Needed()));
  EXPECT_EQ(Frame()->height(), view_->item_area()->height() + view_->bar()->height() + 48);

  meeting_.messages().Revoke(first);
  Advance(VM::kUpcastIntervalMs);
  EXPECT_TRUE(view_->items()[0]->PlainText().contains(QString::fromStdString(Text("chat.bullet.recalled"))));

  meeting_.shield().ShieldSender("uid-u3");  // the view answers the check with what it shows
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  ASSERT_EQ(view_->items().size(), 1u);
  EXPECT_TRUE(view_->items()[0]->PlainText().startsWith("Member u2"));

  QTest::mouseClick(view_->items()[0], Qt::LeftButton);
  EXPECT_EQ(Reported("inmeeting_im_null_barrage_null_null_click"), 1u);
}

TEST_F(BulletViewTest, FoldingShrinksToTheButtonWhichFlashesForANewMessage) {
  Show();
  Act(VM::kActionToggleBullet, Variant(false));
  EXPECT_EQ(Frame()->width(), QtView::InMeetingBulletQTView::kFoldedWidth);
  EXPECT_FALSE(view_->bar()->isVisible());
  EXPECT_TRUE(view_->unfold_button()->isVisible());
  EXPECT_EQ(view_->unfold_button()->accessibleName(), "im_bullet_show_hover");
  Say(2, "while folded");
  Advance(VM::kUpcastIntervalMs);
  EXPECT_TRUE(view_->flashing());
  QTest::mouseClick(view_->unfold_button(), Qt::LeftButton);
  EXPECT_TRUE(vm_->is_show_bullet());
  EXPECT_FALSE(view_->unfold_button()->isVisible());
  EXPECT_TRUE(view_->bar()->isVisible());
}

TEST_F(BulletViewTest, AWebinarsBulletsStayUntilTheyFillTwiceTheRoom) {
  Show(true);
  EXPECT_FALSE(view_->is_auto_disappear());
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 10; ++i) Say(2, "question " + std::to_string(round * 10 + i));
    Advance(60 * VM::kUpcastIntervalMs);
  }
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(view_->items().empty());
  EXPECT_LT(view_->items().size(), 30u) << "the oldest went";
  EXPECT_LE(view_->Needed(), 2 * view_->Limit());
  EXPECT_TRUE(view_->items().back()->PlainText().endsWith("question 29"));
  Advance(60000);
  EXPECT_FALSE(view_->items().empty()) << "nothing fades in a webinar";
}

TEST_F(BulletViewTest, TheEmojiButtonOpensThePanelAndAFaceIsSent) {
  meeting_.faces().Load();
  Show();
  QTest::mouseClick(view_->bar()->emoji_button(), Qt::LeftButton);
  ASSERT_TRUE(view_->emoji_panel()->isVisible());
  EXPECT_GT(view_->emoji_panel()->face_count(), 20);
  QTest::mouseClick(view_->emoji_panel()->button(5), Qt::LeftButton);
  EXPECT_FALSE(view_->emoji_panel()->isVisible());
  ASSERT_EQ(meeting_.messages().InvocationsOf(7).size(), 1u);
  EXPECT_EQ(meeting_.messages().InvocationsOf(7)[0].GetString("text_elem_content"), "[ThumbsUp]");
  EXPECT_EQ(Reported("bullet_vm_close_quick_reply_emoji"), 1u);
}

TEST_F(BulletViewTest, TheBarsReceiverOpensTheMemberListWhichHoldsOffImmersiveMode) {
  Show();
  view_->bar()->ExpandChatBar(true);
  QPushButton* receiver = view_->bar()->receiver_button();
  ASSERT_TRUE(receiver->isVisible());
  EXPECT_TRUE(receiver->toolTip().contains(QString::fromStdString(Text("host.chat.receiver.everyone"))));
  QTest::mouseClick(receiver, Qt::LeftButton);
  Advance(100);
  auto* popup = view_->member_select();
  ASSERT_NE(popup, nullptr);
  EXPECT_GT(popup->model()->rowCount(), 2) << "the meeting's members are listed";
  std::string reason;
  EXPECT_FALSE(meeting_.meeting_settings().EnterImmersiveMode(&reason));
  EXPECT_EQ(reason, "PrivateChatMembersViewModel visible");
  // A member picked there is the bar's receiver, marked private.
  for (int i = 0; i < popup->model()->rowCount(); ++i) {
    if (popup->model()->RowAt(i).GetString("user_id") != "u2") continue;
    Variant row = popup->model()->RowAt(i);
    popup->view_model()->Handle(chat::PrivateChatMembersViewModel::kActionSelectMemberInBullet, &row);
    break;
  }
  EXPECT_TRUE(receiver->property("private").toBool());
  EXPECT_TRUE(receiver->toolTip().contains("Member u2"));
  EXPECT_EQ(Reported("private_chat_members_select_member_in_bullet"), 1u);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(view_->member_select(), nullptr);
}

TEST_F(BulletViewTest, TheMeetingWindowMovesHidesAndBringsBackTheOverlay) {
  Show();
  window_.move(40, 30);
  QCoreApplication::processEvents();
  EXPECT_EQ(Frame()->x(), window_.frameGeometry().x() + 5);
  window_.showMinimized();
  QCoreApplication::processEvents();
  EXPECT_FALSE(Frame()->isVisible());
  window_.showNormal();
  QCoreApplication::processEvents();
  EXPECT_TRUE(Frame()->isVisible());
  meeting_.meeting().EnterWaitingRoom();
  EXPECT_FALSE(Frame()->isVisible());

  // A frame that is not the container's child lets its clicks pass, with a word.
  talvex_test::LogCapture log;
  Frame()->setParent(nullptr);
  QTest::mouseClick(container_, Qt::LeftButton);
  EXPECT_TRUE(log.Contains("widget level error"));
}

TEST_F(BulletViewTest, TipsStandInTheTipLineAndWelcomesJoinTheBullets) {
  meeting_.context().self_role = talvex::MeetingContext::kRoleAttendee;
  Configure("inmeeting", "show_webinar_welcom_tip", true);
  Configure("inmeeting", "show_webinar_welcom_tip_service_delay", false);
  Configure("inmeeting", "welcom-message", R"({"join_welcom_title":"Welcome!","Join_welcom_content":"Enjoy"})");
  Show(true);
  EXPECT_TRUE(view_->tip_line()->isVisible()) << "the local user's own join tip";
  auto tips = view_->tip_line()->findChildren<BulletItemWidget*>();
  ASSERT_EQ(tips.size(), 1);
  EXPECT_EQ(tips[0]->kind(), BulletItemWidget::kKindAnimatable);
  ASSERT_TRUE(tips[0]->slide_animation()) << "it slides in from the left";
  EXPECT_EQ(tips[0]->x(), -tips[0]->width());
  tips[0]->slide_animation()->setCurrentTime(tips[0]->slide_animation()->duration());
  EXPECT_EQ(tips[0]->x(), 12);
  EXPECT_EQ(tips[0]->y() + tips[0]->height(), QtView::InMeetingBulletQTView::kTipLineHeight);
  ASSERT_EQ(view_->items().size(), 1u);
  EXPECT_EQ(view_->items()[0]->kind(), BulletItemWidget::kKindWelcome);
  EXPECT_TRUE(view_->items()[0]->PlainText().startsWith("Welcome!"));
  Advance(5000);  // the join tips end
  EXPECT_FALSE(view_->tip_line()->isVisible());
}

TEST_F(BulletViewTest, BadRecordsFromTheViewModelBuildNothingAndBreakNothing) {
  Show();
  Say(2, "kept");
  Advance(VM::kUpcastIntervalMs);
  talvex_test::LogCapture log;
  for (Variant bad : {Variant(7), Variant("text"), Variant(Variant::Map{{"msg_type", 4}}),
                      Variant(Variant::Map{{"update_type", 1}, {"msg_id", "nobody"}}),
                      Variant(Variant::Map{{"update_type", 5}, {"msg_list", "not a list"}}), Variant()}) {
    vm_->SetPropValue(VM::kPropNewBulletMsg, bad);
  }
  for (uint32_t prop : {VM::kPropShowOrHideBulletMsg, VM::kPropUiData, VM::kPropUnfoldState,
                        VM::kPropPrivateChatAuthorityInfo, VM::kPropPicInPicUidata, VM::kPropWelcomeTip}) {
    vm_->SetPropValue(prop, Variant(3));
  }
  ASSERT_EQ(view_->items().size(), 1u);
  EXPECT_TRUE(view_->items()[0]->PlainText().endsWith("kept"));
  // The receipt, and the shield update without its list, which goes on to
  // the builder as any other record.
  EXPECT_EQ(log.Count("failed to create item for msg_type; "), 2u);
}

TEST_F(BulletViewTest, TheLastBulletLeavingAFoldedOverlayStartsTheBarsEmptyTimer) {
  Show();
  Say(2, "going soon");
  Advance(VM::kUpcastIntervalMs);
  ASSERT_EQ(view_->items().size(), 1u);
  QPointer<BulletItemWidget> item = view_->items()[0];
  Act(VM::kActionToggleBullet, Variant(false));
  const QSize folded = Frame()->size();
  Advance(BulletItemWidget::kLifeMs);
  ASSERT_TRUE(item && item->disappearing());
  item->fade_animation()->setCurrentTime(BulletItemWidget::kFadeMs);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
  EXPECT_TRUE(item.isNull());
  EXPECT_TRUE(view_->items().empty());
  EXPECT_EQ(view_->items_height(), 0);
  EXPECT_TRUE(view_->bar()->has_empty_timer());
  EXPECT_TRUE(view_->bar()->empty_timer_active());
  EXPECT_EQ(Frame()->size(), folded) << "a folded overlay keeps its size";
}

TEST_F(BulletViewTest, BulletsAndTheDotAreDrawnInTheirColours) {
  Show();
  Say(2, "colour check");
  Advance(VM::kUpcastIntervalMs);
  ASSERT_EQ(view_->items().size(), 1u);
  // The bubble: rgba(43, 46, 51, 0.6) over the white of an empty window.
  QWidget white;
  white.setStyleSheet("background: white;");
  white.resize(400, 100);
  Variant record = Variant::Map{{"msg_type", 0}, {"chat_type", 0}, {"msg_sender", "Sam"}, {"msg_content", "hi"}};
  BulletItemWidget* item = BulletItemWidgetBuilder::Create(&white, &record);
  item->move(10, 10);
  white.show();
  const QImage shot = white.grab().toImage();
  const QColor bubble = shot.pixelColor(item->x() + 2, item->y() + item->height() / 2);
  const auto blend = [](int c) { return static_cast<int>(c * 0.6 + 255 * 0.4); };
  EXPECT_NEAR(bubble.red(), blend(43), 3);
  EXPECT_NEAR(bubble.green(), blend(46), 3);
  EXPECT_NEAR(bubble.blue(), blend(51), 3);
  // The unread dot of a folded webinar overlay.
  CircleDot dot(nullptr);
  dot.resize(6, 6);
  const QColor red = dot.grab().toImage().pixelColor(3, 3);
  EXPECT_EQ(red, QColor("#FF3C33"));
}

TEST_F(BulletViewTest, TheScreenShareWindowStacksItsBulletsInAWindowOfTheirOwn) {
  Show(false, true);
  EXPECT_TRUE(view_->container()->isWindow()) << "the bullets stand in a top-most window";
  EXPECT_TRUE(view_->container()->windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_TRUE(vm_->HasProp(VM::kPropBulletDraftText)) << "the window asks for the draft at once";
  Say(2, "one");
  Say(3, "two");
  Advance(2 * VM::kUpcastIntervalMs);
  ASSERT_EQ(view_->items().size(), 2u);
  EXPECT_EQ(view_->items()[0]->parentWidget(), view_->item_area());
  EXPECT_EQ(view_->container()->x(), Frame()->geometry().left());
  EXPECT_GT(view_->item_area()->height(), 0);
  EXPECT_EQ(view_->container()->size(), view_->item_area()->size()) << "the window is as large as its column";
  EXPECT_TRUE(view_->items()[1]->isVisible());
}

TEST_F(BulletViewTest, LeavingTheApplicationHidesTheOverlayAndComingBackPlacesIt) {
  Show();
  ASSERT_TRUE(Frame()->isVisible());
  QMetaObject::invokeMethod(qApp, "applicationStateChanged", Q_ARG(Qt::ApplicationState, Qt::ApplicationInactive));
  EXPECT_FALSE(Frame()->isVisible());
  window_.move(60, 20);
  QMetaObject::invokeMethod(qApp, "applicationStateChanged", Q_ARG(Qt::ApplicationState, Qt::ApplicationActive));
  EXPECT_TRUE(Frame()->isVisible());
  EXPECT_EQ(Frame()->x(), window_.frameGeometry().x() + 5);
}

}  // namespace
}  // namespace bullet_test
