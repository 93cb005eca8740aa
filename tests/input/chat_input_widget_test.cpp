#include <QAction>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <QSignalSpy>
#include <QStackedWidget>

#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"
#include "input_test_util.h"

namespace {

using Option = ChatInputWidget::SendOption;

struct WidgetHarness {
  WidgetHarness() {
    widget.resize(360, ChatInputWidget::kDefaultHeight);
    widget.show();
    QApplication::processEvents();
  }
  RichEdit* edit() { return widget.edit(); }
  void Type(QString const& text) { QTest::keyClicks(edit(), text); }
  ChatInputWidget widget;
};

TEST(ChatInputWidgetTest, TheHeightStaysWithinItsRange) {
  WidgetHarness h;
  EXPECT_EQ(h.widget.height(), ChatInputWidget::kDefaultHeight);
  h.widget.SetInputHeight(10);
  EXPECT_EQ(h.widget.height(), 82);
  h.widget.SetInputHeight(5000);
  EXPECT_EQ(h.widget.height(), 214);
}

TEST(ChatInputWidgetTest, EnterSendsByTheChosenKeyAndEveryOtherEnterBreaksTheLine) {
  const struct {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    Option option;
    bool sends;
  } cases[] = {
      {Qt::Key_Return, Qt::NoModifier, Option::kSendByEnter, true},
      {Qt::Key_Enter, Qt::KeypadModifier, Option::kSendByEnter, true},
      {Qt::Key_Return, Qt::ControlModifier, Option::kSendByEnter, false},
      {Qt::Key_Return, Qt::ShiftModifier, Option::kSendByEnter, false},
      {Qt::Key_Return, Qt::NoModifier, Option::kSendByCtrlEnter, false},
      {Qt::Key_Return, Qt::ControlModifier, Option::kSendByCtrlEnter, true},
      {Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier, Option::kSendByCtrlEnter, true},
      {Qt::Key_Return, Qt::ShiftModifier, Option::kSendByCtrlEnter, false},
      {Qt::Key_Return, Qt::ShiftModifier | Qt::ControlModifier, Option::kSendByEnter, false},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << "key " << c.key << " modifiers " << c.modifiers << " option " << c.option);
    WidgetHarness h;
    h.widget.SetSendOption(c.option);
    QSignalSpy sent(&h.widget, &ChatInputWidget::SendMsgBtnClicked);
    h.Type("ab");
    QTest::keyClick(h.edit(), c.key, c.modifiers);
    EXPECT_EQ(sent.count(), c.sends ? 1 : 0);
    EXPECT_EQ(h.edit()->document()->blockCount(), c.sends ? 1 : 2);
    EXPECT_EQ(h.edit()->toPlainText(), c.sends ? "ab" : "ab\n");
  }
}

TEST(ChatInputWidgetTest, ALineBreakNeverJoinsTheUndoHistory) {
  WidgetHarness h;
  h.Type("ab");
  QTest::keyClick(h.edit(), Qt::Key_Return, Qt::ShiftModifier);
  h.Type("cd");
  ASSERT_EQ(h.edit()->toPlainText(), "ab\ncd");
  h.edit()->undo();
  EXPECT_EQ(h.edit()->toPlainText(), "ab\n");
  // Nothing before the break can be undone through it, and the break stays.
  EXPECT_FALSE(h.edit()->document()->isUndoAvailable());
  h.edit()->undo();
  EXPECT_EQ(h.edit()->toPlainText(), "ab\n");
}

TEST(ChatInputWidgetTest, TheSendButtonColourFollowsContentAndHover) {
  WidgetHarness h;
  ChatInputWidget& w = h.widget;
  QSignalSpy empty(&w, &ChatInputWidget::EmptyChanged);
  // The colour while hovering, and after.
  auto hover = [&] {
    QEvent enter(QEvent::Enter), leave(QEvent::Leave);
    QApplication::sendEvent(w.send_button(), &enter);
    const QString during = w.send_button_color();
    QApplication::sendEvent(w.send_button(), &leave);
    return std::pair{during, w.send_button_color()};
  };
  EXPECT_EQ(hover(), std::pair(QString("#B0B6C3"), QString("#B0B6C3"))) << "hovering an empty input changes nothing";
  h.Type("hey");
  EXPECT_TRUE(w.send_button()->styleSheet().contains("#000000"));
  EXPECT_EQ(hover(), std::pair(QString("#006FFF"), QString("#000000")));
  w.ClearInput();
  EXPECT_EQ(w.send_button_color(), "#B0B6C3");
  // Three keys and a clear: emptiness changed twice.
  ASSERT_EQ(empty.count(), 2);
  EXPECT_FALSE(empty.at(0).at(0).toBool());
  EXPECT_TRUE(empty.at(1).at(0).toBool());
}

TEST(ChatInputWidgetTest, BlanksAloneLeaveTheSendButtonGreyAndTabMovesOn) {
  QWidget window;
  auto* layout = new QVBoxLayout(&window);
  auto* before = new QLineEdit(&window);
  auto* input = new ChatInputWidget(&window);
  auto* after = new QLineEdit(&window);
  layout->addWidget(before);
  layout->addWidget(input);
  layout->addWidget(after);
  window.show();
  QApplication::setActiveWindow(&window);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  RichEdit* edit = input->edit();
  edit->setFocus();
  QTest::keyClicks(edit, "  ");
  QTest::keyClick(edit, Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(edit->toPlainText(), "  \t") << "Ctrl+Tab types a tab";
  EXPECT_TRUE(input->is_empty()) << "spaces and tabs are nothing to send";
  EXPECT_EQ(input->send_button_color(), "#B0B6C3");
  QTest::keyClicks(edit, "x");
  EXPECT_FALSE(input->is_empty());

  QTest::keyClick(edit, Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), input->receiver_button()) << "on to the receiver line";
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), after);
  EXPECT_EQ(edit->toPlainText(), "  \tx") << "Tab inserts nothing";
  edit->setFocus();
  QTest::keyClick(edit, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(QApplication::focusWidget(), input->notice_button()) << "back to the toolbar's notice button";
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(QApplication::focusWidget(), before) << "Shift+Tab leaves backwards";
}

TEST(ChatInputWidgetTest, TheSendOptionMenuChecksOneRowAndTellsTheChoice) {
  WidgetHarness h;
  ChatInputWidget& w = h.widget;
  QSignalSpy chosen(&w, &ChatInputWidget::SendOptionSelected);
  QTest::mouseClick(w.send_option_button(), Qt::LeftButton);
  EXPECT_TRUE(w.menu_visible());
  const QList<QAction*> rows = w.send_option_menu()->actions();
  ASSERT_EQ(rows.size(), 2);
  auto checked = [&] { return std::pair{rows[0]->isChecked(), rows[1]->isChecked()}; };
  EXPECT_EQ(checked(), std::pair(true, false));

  rows[1]->trigger();
  ASSERT_EQ(chosen.count(), 1);
  EXPECT_EQ(chosen.at(0).at(0).value<Option>(), Option::kSendByCtrlEnter);
  EXPECT_EQ(w.send_option(), Option::kSendByCtrlEnter);
  EXPECT_EQ(checked(), std::pair(false, true));
  w.send_option_menu()->hide();
  EXPECT_FALSE(w.menu_visible());

  // An option set from outside (the saved shortcut) checks its row, silently.
  w.SetSendOption(Option::kSendByEnter);
  EXPECT_EQ(checked(), std::pair(true, false));
  EXPECT_EQ(chosen.count(), 1);
}

TEST(ChatInputWidgetTest, WithChatOffTheDisabledPageShowsWhyAndNothingSends) {
  WidgetHarness h;
  ChatInputWidget& w = h.widget;
  QSignalSpy sent(&w, &ChatInputWidget::SendMsgBtnClicked);
  h.Type("typed before");
  w.SetDisabledText("The host has turned off chat.");
  w.SetDisabledIconVisible(false);
  w.SetChatEnabled(false);
  EXPECT_EQ(w.stacked_widget()->currentWidget(), w.disabled_label()->parentWidget());
  EXPECT_EQ(w.disabled_label()->text(), "The host has turned off chat.");
  EXPECT_TRUE(w.disabled_label()->isVisible());
  EXPECT_FALSE(w.disabled_icon()->isVisible());
  EXPECT_FALSE(w.edit()->isVisible());
  w.send_button()->click();
  QTest::keyClick(w.edit(), Qt::Key_Return);
  EXPECT_EQ(sent.count(), 0);

  w.SetDisabledIconVisible(true);
  w.SetChatEnabled(true);
  EXPECT_TRUE(w.edit()->isVisible());
  EXPECT_EQ(w.edit()->toPlainText(), "typed before") << "the user's text survives";
  QTest::mouseClick(w.send_button(), Qt::LeftButton);
  EXPECT_EQ(sent.count(), 1);
}

}  // namespace
