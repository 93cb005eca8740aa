#pragma once

#include <QObject>
#include <QPoint>
#include <QString>
#include <functional>

class QWidget;

// What the local user does in the demo, with real clicks and keys on the
// module's widgets (found by their object names; the demo sees nothing else
// of the module): opens the receiver line under the chat input, finds a
// participant by typing part of the name, picks them, sends a private
// message, goes back to everyone, and opens the member list once more so
// that a screenshot shows it, then closes it. Last, a message sent by mistake
// is recalled from its menu.
class LocalUserTour : public QObject {
  Q_OBJECT

 public:
  // `who` is what the user types to find the receiver.
  LocalUserTour(QWidget* window, QString who, QString message, QObject* parent = nullptr);
  // Starts after `delay_ms`; the steps take about three seconds.
  void Start(int delay_ms);
  // Opens the meeting notice from its row in the chat after `delay_ms`, and
  // closes it again; `on_notice_open` is called while it stands open.
  void ShowNotice(int delay_ms);
  std::function<void()> on_notice_open;
  // Opens the page of the file shared in the chat from its card after
  // `delay_ms`, downloads it, and opens it once it is on disk;
  // `on_file_page` is called while the download runs.
  void ShowFile(int delay_ms);
  std::function<void()> on_file_page;
  // Notes in the log what the notice banner over the chat shows now.
  void NoteNoticeBanner();
  // Called while the member list stands open the last time, before Escape
  // closes it: the moment for a picture of it.
  std::function<void()> on_member_list_open;
  // What happened, step by step, for the transcript.
  QStringList const& log() const { return log_; }

 private:
  QWidget* Find(char const* object_name) const;
  void Click(char const* object_name);
  void Type(char const* object_name, QString const& text);
  void Key(char const* object_name, int key);
  // A press and release of the left button at `at` in `target`.
  static void LeftClick(QWidget* target, QPoint at);
  // Picks the member whose name holds `who_` once the list shows them;
  // looks again every 100 ms.
  void PickWhenFound(int tries_left);
  // The "more" button of the newest message in the chat panel.
  void OpenNewestMessageMenu();
  // Triggers the item of the open message menu with this title.
  void ChooseMenuItem(QString const& title);
  // The rest of the tour, once the receiver is picked.
  void AfterPick();

  QWidget* window_;
  QString who_;
  QString message_;
  QStringList log_;
};
