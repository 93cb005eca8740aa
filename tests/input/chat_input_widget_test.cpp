#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QTextDocument>

#include <gtest/gtest.h>

#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"
#include "chat/ui/desktop/view/chat_input/toolbar_menu_item_action.h"
#include "support/test_util.h"
#include "uikit/richedit/rich_edit.h"

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

TEST(ChatInputWidgetTest, BuildsTheNamedPartsWithinItsHeightRange) {
  WidgetHarness h;
  ChatInputWidget& w = h.widget;
  EXPECT_EQ(w.left_toolbar_container()->objectName(), "left_toolbar_container");
  EXPECT_EQ(w.left_toolbar_container()->height(), 38);
  EXPECT_EQ(w.right_toolbar_container()->objectName(), "right_toolbar_container");
  EXPECT_EQ(w.right_toolbar_container()->size(), QSize(166, 38));
  EXPECT_EQ(w.left_toolbar_container()->styleSheet(), "background-color:#FFFFFF");
  EXPECT_EQ(w.stacked_widget()->objectName(), "chat_input_stacked_widget");
  EXPECT_EQ(w.edit()->objectName(), "chat_input_edit");
  EXPECT_EQ(w.edit()->accessibleName(), "atg__chat_input_widget_edit__name");
  EXPECT_TRUE(w.edit()->styleSheet().startsWith("#chat_input_edit { border:none; font-size:"));
  EXPECT_EQ(w.disabled_icon()->size(), QSize(16, 16));
  EXPECT_FALSE(w.disabled_icon()->pixmap(Qt::ReturnByValue).isNull());
  EXPECT_EQ(w.disabled_label()->property("label-style").toString(), "chat_disabled_label");
  EXPECT_FALSE(w.styleSheet().isEmpty());

  EXPECT_EQ(w.height(), ChatInputWidget::kDefaultHeight);
  w.SetInputHeight(10);
  EXPECT_EQ(w.height(), 82);
  w.SetInputHeight(5000);
  EXPECT_EQ(w.height(), 214);
}

// One row of the key table: keys, send option, and whether it sends.
struct KeyCase {
  Qt::Key key;
  Qt::KeyboardModifiers modifiers;
  Option option;
  bool sends;
};

TEST(ChatInputWidgetTest, EnterSendsByTheChosenKeyAndEveryOtherEnterBreaksTheLine) {
  const KeyCase cases[] = {
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
  for (KeyCase const& c : cases) {
    WidgetHarness h;
    h.widget.SetSendOption(c.option);
    QSignalSpy sent(&h.widget, &ChatInputWidget::SendMsgBtnClicked);
    h.Type("ab");
    QTest::keyClick(h.edit(), c.key, c.modifiers);
    const auto what = ::testing::Message() << "key " << c.key << " modifiers " << c.modifiers << " option " << c.option;
    EXPECT_EQ(sent.count(), c.sends ? 1 : 0) << what;
    EXPECT_EQ(h.edit()->document()->blockCount(), c.sends ? 1 : 2) << what;
    EXPECT_EQ(h.edit()->toPlainText(), c.sends ? "ab" : "ab\n") << what;
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
  EXPECT_EQ(h.edit()->document()->blockCount(), 2);
}

TEST(ChatInputWidgetTest, TheSendButtonColourFollowsContentAndHover) {
  WidgetHarness h;
  ChatInputWidget& w = h.widget;
  QSignalSpy empty(&w, &ChatInputWidget::EmptyChanged);
  QEvent enter(QEvent::Enter);
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(w.send_button(), &enter);
  EXPECT_EQ(w.send_button_color(), "#B0B6C3") << "hovering an empty input changes nothing";
  QApplication::sendEvent(w.send_button(), &leave);

  h.Type("hey");
  EXPECT_EQ(w.send_button_color(), "#000000");
  EXPECT_TRUE(w.send_button()->styleSheet().contains("#000000"));
  QApplication::sendEvent(w.send_button(), &enter);
  EXPECT_EQ(w.send_button_color(), "#006FFF");
  QApplication::sendEvent(w.send_button(), &leave);
  EXPECT_EQ(w.send_button_color(), "#000000");
  w.ClearInput();
  EXPECT_EQ(w.send_button_color(), "#B0B6C3");
  // Three keys and a clear: emptiness changed twice.
  ASSERT_EQ(empty.count(), 2);
  EXPECT_FALSE(empty.at(0).at(0).toBool());
  EXPECT_TRUE(empty.at(1).at(0).toBool());
}

TEST(ChatInputWidgetTest, TheSendOptionMenuChecksOneRowAndTellsTheChoice) {
  WidgetHarness h;
  ChatInputWidget& w = h.widget;
  QSignalSpy chosen(&w, &ChatInputWidget::SendOptionSelected);
  QTest::mouseClick(w.send_option_button(), Qt::LeftButton);
  EXPECT_TRUE(w.menu_visible());

  const QList<QAction*> rows = w.send_option_menu()->actions();
  ASSERT_EQ(rows.size(), 2);
  EXPECT_FALSE(rows[0]->text().isEmpty());
  EXPECT_TRUE(rows[0]->isChecked());
  EXPECT_FALSE(rows[1]->isChecked());

  rows[1]->trigger();
  ASSERT_EQ(chosen.count(), 1);
  EXPECT_EQ(chosen.at(0).at(0).value<Option>(), Option::kSendByCtrlEnter);
  EXPECT_EQ(w.send_option(), Option::kSendByCtrlEnter);
  EXPECT_FALSE(rows[0]->isChecked());
  EXPECT_TRUE(rows[1]->isChecked());

  w.send_option_menu()->hide();
  EXPECT_FALSE(w.menu_visible());

  // An option set from outside (the saved shortcut) checks its row, silently.
  w.SetSendOption(Option::kSendByEnter);
  EXPECT_TRUE(rows[0]->isChecked());
  EXPECT_FALSE(rows[1]->isChecked());
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
  EXPECT_FALSE(w.chat_enabled());
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
  EXPECT_EQ(w.edit()->toPlainText(), "typed before");
  QTest::mouseClick(w.send_button(), Qt::LeftButton);
  EXPECT_EQ(sent.count(), 1);
}

}  // namespace
