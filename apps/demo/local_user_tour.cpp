#include "local_user_tour.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>

LocalUserTour::LocalUserTour(QWidget* window, QString who, QString message, QObject* parent)
    : QObject(parent), window_(window), who_(std::move(who)), message_(std::move(message)) {}

QWidget* LocalUserTour::Find(char const* object_name) const {
  // The member list is a popup of its own: look through every window.
  for (QWidget* top : QApplication::topLevelWidgets()) {
    if (!top->isVisible()) continue;
    if (top->objectName() == object_name) return top;
    if (auto* found = top->findChild<QWidget*>(object_name)) return found;
  }
  return nullptr;
}

void LocalUserTour::Click(char const* object_name) {
  auto* button = qobject_cast<QAbstractButton*>(Find(object_name));
  log_ << QString("click %1%2").arg(object_name, button ? "" : " (not found)");
  if (button) button->click();
}

void LocalUserTour::Type(char const* object_name, QString const& text) {
  QWidget* target = Find(object_name);
  log_ << QString("type \"%1\" into %2%3").arg(text, object_name, target ? "" : " (not found)");
  if (!target) return;
  target->setFocus();
  for (QChar c : text) {
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
    QApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, QString(c));
    QApplication::sendEvent(target, &release);
  }
}

void LocalUserTour::Key(char const* object_name, int key) {
  QWidget* target = Find(object_name);
  log_ << QString("key %1 in %2%3").arg(QKeySequence(key).toString(), object_name, target ? "" : " (not found)");
  if (!target) return;
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
  QApplication::sendEvent(target, &press);
}

void LocalUserTour::PickWhenFound(int tries_left) {
  auto* list = qobject_cast<QAbstractItemView*>(Find("ChatMemberList"));
  if (list && list->model()) {
    QAbstractItemModel* model = list->model();
    for (int row = 0; row < model->rowCount(); ++row) {
      const QModelIndex index = model->index(row, 0);
      const QString text = index.data(Qt::DisplayRole).toString();
      // A member's line, not the section's title.
      if (!text.contains(who_, Qt::CaseInsensitive) || !(model->flags(index) & Qt::ItemIsSelectable)) continue;
      list->setFocus();
      list->setCurrentIndex(index);
      log_ << QString("found \"%1\"").arg(text);
      Key("ChatMemberList", Qt::Key_Return);
      AfterPick();
      return;
    }
  }
  if (tries_left <= 0) {
    log_ << QString("\"%1\" not found in the member list").arg(who_);
    return;
  }
  QTimer::singleShot(100, this, [this, tries_left] { PickWhenFound(tries_left - 1); });
}

void LocalUserTour::OpenNewestMessageMenu() {
  // The row lowest on screen is the newest; its "more" button opens its menu.
  QAbstractButton* newest = nullptr;
  int lowest = -1;
  for (QWidget* top : QApplication::topLevelWidgets()) {
    if (!top->isVisible()) continue;
    for (auto* button : top->findChildren<QAbstractButton*>("more_btn")) {
      QWidget* row = button->parentWidget();
      if (!row || !row->isVisible()) continue;
      const int y = row->mapToGlobal(QPoint(0, 0)).y();
      if (y > lowest) {
        lowest = y;
        newest = button;
      }
    }
  }
  log_ << QString("open the newest message's menu%1").arg(newest ? "" : " (no message found)");
  if (newest) newest->click();
}

void LocalUserTour::ChooseMenuItem(QString const& title) {
  for (QWidget* top : QApplication::topLevelWidgets()) {
    auto* menu = qobject_cast<QMenu*>(top);
    if (!menu || !menu->isVisible() || menu->objectName() != "ChatMessageMenu") continue;
    QStringList titles;
    for (QAction* action : menu->actions()) {
      titles << action->text();
      if (action->text() != title || !action->isEnabled()) continue;
      log_ << QString("choose \"%1\" of [%2]").arg(title, titles.join(", "));
      menu->close();
      action->trigger();
      return;
    }
    log_ << QString("no \"%1\" in [%2]").arg(title, titles.join(", "));
    return;
  }
  log_ << "no message menu open";
}

void LocalUserTour::LeftClick(QWidget* target, QPoint at) {
  QMouseEvent press(QEvent::MouseButtonPress, at, target->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
  QApplication::sendEvent(target, &press);
  QMouseEvent release(QEvent::MouseButtonRelease, at, target->mapToGlobal(at), Qt::LeftButton, Qt::NoButton,
                      Qt::NoModifier);
  QApplication::sendEvent(target, &release);
}

void LocalUserTour::ShowFile(int delay_ms) {
  QTimer::singleShot(delay_ms, this, [this] {
    // The card around the file's name.
    QWidget* title = Find("file_title");
    QWidget* card = title ? title->parentWidget() : nullptr;
    log_ << QString("open the file's page from its card%1").arg(card ? "" : " (no file on screen)");
    if (!card) return;
    LeftClick(card, QPoint(8, 8));
  });
  QTimer::singleShot(delay_ms + 300, this, [this] {
    auto* main = qobject_cast<QAbstractButton*>(Find("file_preview_main"));
    const bool shown = main && main->isVisible();
    log_ << QString("click %1 on the file's page").arg(shown ? "\"" + main->text() + "\"" : QString("(no button)"));
    if (shown) main->click();
  });
  QTimer::singleShot(delay_ms + 1200, this, [this] {
    auto* process = qobject_cast<QLabel*>(Find("file_preview_process"));
    log_ << QString("the file's page shows %1").arg(process && process->isVisible() ? process->text()
                                                                                     : QString("no progress"));
    if (on_file_page) on_file_page();
  });
  QTimer::singleShot(delay_ms + 3000, this, [this] {
    auto* open = qobject_cast<QAbstractButton*>(Find("file_preview_open"));
    const bool done = open && open->isVisible();
    log_ << QString("the download %1").arg(done ? "finished: click Open" : "did not finish");
    if (done) open->click();
    if (QWidget* page = Find("ChatFilePreviewDialog")) page->close();
  });
}

void LocalUserTour::ShowNotice(int delay_ms) {
  QTimer::singleShot(delay_ms, this, [this] {
    QWidget* row = Find("notice_view_detail_row");
    log_ << QString("open the notice from its row%1").arg(row ? "" : " (no notice row on screen)");
    if (!row) return;
    LeftClick(row, row->rect().center());
  });
  QTimer::singleShot(delay_ms + 400, this, [this] {
    QWidget* dialog = Find("MeetingNoticeDialog");
    log_ << QString("the notice dialog %1").arg(dialog ? "is open" : "did not open");
    if (!dialog) return;
    if (on_notice_open) on_notice_open();
    dialog->close();
  });
}

void LocalUserTour::NoteNoticeBanner() {
  QWidget* banner = Find("meeting_notice_banner");
  if (!banner || !banner->isVisible()) {
    log_ << "no notice banner over the chat";
    return;
  }
  QStringList shown;
  for (char const* name : {"notice_banner_title", "notice_banner_updated", "notice_banner_meta", "notice_banner_text"}) {
    auto* label = banner->findChild<QLabel*>(name);
    if (label && label->isVisible()) shown << label->text().simplified();
  }
  log_ << QString("the notice banner over the chat reads: %1").arg(shown.join(" | "));
}

void LocalUserTour::Start(int delay_ms) {
  QTimer::singleShot(delay_ms, this, [this] { Click("chat_input_receiver_button"); });
  QTimer::singleShot(delay_ms + 300, this, [this] { Type("ChatMemberSearch", who_); });
  // The list searches half a second after the last key; the user waits for
  // the name to show, then picks it.
  QTimer::singleShot(delay_ms + 900, this, [this] { PickWhenFound(30); });
}

void LocalUserTour::AfterPick() {
  const std::vector<std::pair<int, std::function<void()>>> steps = {
      {300, [this] { Type("chat_input_edit", message_); }},
      {500, [this] { Click("chat_input_send_button"); }},
      // Back to everyone: into the list, past its title, Enter.
      {1100, [this] { Click("chat_input_receiver_button"); }},
      {1400,
       [this] {
         Key("ChatMemberSearch", Qt::Key_Down);
         Key("ChatMemberList", Qt::Key_Down);
         Key("ChatMemberList", Qt::Key_Return);
       }},
      // Open once more, for the picture, and close with Escape.
      {1900, [this] { Click("chat_input_receiver_button"); }},
      {2300,
       [this] {
         if (on_member_list_open) on_member_list_open();
         Key("ChatMemberSearch", Qt::Key_Escape);
       }},
      // A message to everyone that was meant for nobody: recalled from its
      // menu.
      {2700, [this] { Type("chat_input_edit", "oops, wrong window"); }},
      {2900, [this] { Click("chat_input_send_button"); }},
      {3500, [this] { OpenNewestMessageMenu(); }},
      {3800, [this] { ChooseMenuItem("Recall"); }},
  };
  for (auto const& [at_ms, run] : steps) QTimer::singleShot(at_ms, this, run);
}
