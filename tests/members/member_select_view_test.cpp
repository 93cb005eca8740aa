// The member popup offscreen, as a user drives it: from the chat panel's
// receiver line, with the keyboard and with the mouse.
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QtTest/QTest>

#include "chat/ui/desktop/view/chat_input/chat_input_view.h"
#include "chat/ui/desktop/view/private_chat/chat_member_select_view.h"
#include "framework/meeting/private_chat_record.h"
#include "members_fixture.h"

namespace members_test {
namespace {

using QtView::ChatMemberListModel;
using QtView::ChatMemberSelectView;
namespace record = talvex_common::utils::privatechatrecord;

class MemberPopupTest : public MembersFixture {
 protected:
  void SetUp() override {
    MembersFixture::SetUp();
    meeting_.members().AddMembers({Person("u-host", "Riley Chen", "host"), Person("u-b1", "Blake Ito"),
                                   Person("u-ada", "Ada Lund"), Person("u-zoe", "Zoë Park"),
                                   Person("u-kim", "Kim Novak"), Person("u-oli", "Oli Berg")});
  }
  void TearDown() override {
    if (input_) input_->Dispose();
    input_.reset();
    delete host_;
    MembersFixture::TearDown();
  }
  // The chat panel's input with its receiver line, on screen.
  void BuildInput() {
    host_ = new QWidget;
    host_->resize(360, 200);
    input_ = std::make_shared<QtView::ChatInputView>();
    input_->SetViewModel(std::make_shared<framework::StatefulViewModel>());
    ASSERT_TRUE(input_->Build({}, host_, nullptr, true));
    input_->widget()->resize(360, 150);
    host_->show();
    QApplication::processEvents();
  }
  // Runs what the event loop would: closed popups go.
  static void Flush() {
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  ChatMemberSelectView* OpenFromReceiverLine() {
    Flush();
    QTest::mouseClick(input_->widget()->receiver_button(), Qt::LeftButton);
    Settle();
    QApplication::processEvents();
    return input_->member_select();
  }
  // The lines of the popup: names, titles as "#", "more", "empty".
  static Strings Lines(ChatMemberSelectView* popup) {
    Strings lines;
    auto* model = popup->model();
    for (int i = 0; i < model->rowCount(); ++i) {
      switch (model->KindAt(i)) {
        case ChatMemberListModel::kKindTitle:
          lines.push_back("#");
          break;
        case ChatMemberListModel::kKindMore:
          lines.push_back("more");
          break;
        case ChatMemberListModel::kKindMember:
          lines.push_back(model->RowAt(i).GetString("nickname"));
          break;
        default:
          lines.push_back("-");
          break;
      }
    }
    return lines;
  }
  static int LineOf(ChatMemberSelectView* popup, std::string const& text) {
    Strings lines = Lines(popup);
    auto it = std::find(lines.begin(), lines.end(), text);
    return it == lines.end() ? -1 : static_cast<int>(it - lines.begin());
  }
  static void ClickLine(ChatMemberSelectView* popup, int line) {
    QListView* list = popup->list();
    const QRect rect = list->visualRect(popup->model()->index(line));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, rect.center());
  }

  QWidget* host_ = nullptr;
  std::shared_ptr<QtView::ChatInputView> input_;
};

TEST_F(MemberPopupTest, TheReceiverLineOpensTheListAndTheKeyboardPicksAMember) {
  BuildInput();
  EXPECT_EQ(input_->widget()->receiver_button()->text().toStdString(),
            Text("chat.receiver.to") + " " + Text("host.chat.receiver.everyone") + " \u25BE");
  ChatMemberSelectView* popup = OpenFromReceiverLine();
  ASSERT_NE(popup, nullptr);
  EXPECT_TRUE(popup->isVisible());
  EXPECT_TRUE(popup->search_box()->hasFocus());
  // Folded at four, with the line that unfolds it.
  EXPECT_EQ(Lines(popup), (Strings{"#", Text("chat.members.everyone"), "Riley Chen", "Ada Lund", "Blake Ito",
                                   "Kim Novak", "more"}));

  // Down into the list, down past the title and everyone to Riley, Enter.
  for (int i = 0; i < 3; ++i) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
  EXPECT_TRUE(popup->list()->hasFocus());
  EXPECT_EQ(popup->model()->RowAt(popup->list()->currentIndex().row()).GetString("nickname"), "Riley Chen");
  QTest::keyClick(popup->list(), Qt::Key_Return);
  EXPECT_EQ(record::GetPrivateChatUserInfo().GetString("user_id"), "u-host");
  Flush();
  EXPECT_EQ(input_->member_select(), nullptr) << "a choice closes the list";
  EXPECT_TRUE(input_->widget()->receiver_private());
  EXPECT_EQ(input_->widget()->receiver_name(), "Riley Chen");
  EXPECT_TRUE(input_->widget()->receiver_button()->text().contains(
      QString::fromStdString(Text("chat.receiver.private"))));

  // Again, and back to everyone by the mouse.
  popup = OpenFromReceiverLine();
  ASSERT_NE(popup, nullptr);
  EXPECT_EQ(popup->model()->data(popup->model()->index(LineOf(popup, "Riley Chen")), ChatMemberListModel::kCheckedRole),
            true);
  ClickLine(popup, LineOf(popup, Text("chat.members.everyone")));
  EXPECT_EQ(record::GetChatReceiverType(record::GetPrivateChatUserInfo()), 2);
  EXPECT_FALSE(input_->widget()->receiver_private());
}

TEST_F(MemberPopupTest, SearchingByTypingAndEscapeLeavesTheSearchThenCloses) {
  BuildInput();
  ChatMemberSelectView* popup = OpenFromReceiverLine();
  ASSERT_NE(popup, nullptr);
  QTest::keyClicks(popup->search_box(), "BER");
  Settle();
  QApplication::processEvents();
  EXPECT_EQ(Lines(popup), (Strings{"#", "Oli Berg"}));
  // Enter in the box picks the only one found.
  QTest::keyClick(popup->search_box(), Qt::Key_Return);
  EXPECT_EQ(record::GetPrivateChatUserInfo().GetString("user_id"), "u-oli");

  popup = OpenFromReceiverLine();
  ASSERT_NE(popup, nullptr);
  QTest::keyClicks(popup->search_box(), "nobody");
  Settle();
  EXPECT_EQ(Lines(popup), (Strings{"-"})) << "no one found";
  QTest::keyClick(popup->search_box(), Qt::Key_Escape);
  Settle();
  EXPECT_TRUE(popup->isVisible());
  EXPECT_TRUE(popup->search_box()->text().isEmpty());
  EXPECT_EQ(Lines(popup).size(), 7u) << "the whole list is back";
  QTest::keyClick(popup->search_box(), Qt::Key_Escape);
  Flush();
  EXPECT_EQ(input_->member_select(), nullptr);
  EXPECT_EQ(Reported("private_chat_members_close"), 1u);
}

TEST_F(MemberPopupTest, TheMouseUnfoldsAndGreyedRowsSayWhyAndCannotBePicked) {
  meeting_.authority().SetPolicy(2);  // messages to the host only
  BuildInput();
  ChatMemberSelectView* popup = OpenFromReceiverLine();
  ASSERT_NE(popup, nullptr);
  EXPECT_TRUE(popup->hint_label()->isVisible());
  EXPECT_EQ(popup->hint_label()->text().toStdString(), Text("chat.members.hint.only_to_host"));
  ClickLine(popup, LineOf(popup, "more"));
  EXPECT_EQ(Lines(popup).size(), 8u) << "title, everyone and all six";
  EXPECT_EQ(LineOf(popup, "more"), -1);

  const QModelIndex ada = popup->model()->index(LineOf(popup, "Ada Lund"));
  EXPECT_EQ(ada.data(ChatMemberListModel::kEnabledRole), false);
  EXPECT_EQ(ada.data(Qt::ToolTipRole).toString().toStdString(), Text("chat.members.disabled.only_to_host"));
  EXPECT_TRUE(ada.data(Qt::AccessibleTextRole).toString().contains(
      QString::fromStdString(Text("chat.members.disabled.only_to_host"))));
  ClickLine(popup, ada.row());
  EXPECT_TRUE(record::GetPrivateChatUserInfo().IsNull());
  EXPECT_TRUE(popup->isVisible());
  // The picture of the list paints without trouble, greyed rows and all.
  EXPECT_FALSE(popup->grab().isNull());
}

}  // namespace
}  // namespace members_test
