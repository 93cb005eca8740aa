#pragma once

#include <QPixmap>
#include <QStringList>
#include <QWidget>
#include <memory>

class QLabel;
class QHBoxLayout;
class QPlainTextEdit;
class QTreeWidget;
class QTabWidget;
class ExtensionHostWidget;

namespace sim {
class MeetingSimulator;
}
namespace talvex {
class WebHost;
}

// Where the video of the participants would be: a dark grid of tiles.
class StageWidget : public QWidget {
  Q_OBJECT
 public:
  explicit StageWidget(QStringList participants, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QStringList participants_;
};

// The demo client's meeting window: the stage, the toolbar (with the
// buttons modules contribute) and a right-hand panel that shows what the
// chat module registered with the client, beside the chat panel that the
// module contributes.
class MeetingWindow : public QWidget {
  Q_OBJECT
 public:
  MeetingWindow(sim::MeetingSimulator& meeting, QWidget* parent = nullptr);
  ~MeetingWindow() override;
  // Re-reads the client's registries into the status panel and toolbar.
  void RefreshModuleStatus(QString const& module_state);
  // A readable account of everything in the status panel.
  QString StatusText() const;
  // Hosts what the loaded modules contribute to the chat panel; returns the
  // number of views built.
  int ShowChatPanel();
  // Gives the chat panel's views back before the module unloads.
  void DisposeChatPanel();
  ExtensionHostWidget* chat_panel() const { return chat_panel_; }
  // Hosts what the modules float over the meeting (the chat's bullets);
  // returns the number of views built.
  int ShowFloatingViews();
  void DisposeFloatingViews();
  // The toolbar's share button: the simulated meeting shares the local
  // user's screen, and what floats over the meeting follows.
  void ToggleScreenShare(bool sharing);
  // The window with the floating views painted where they stand over it.
  QPixmap GrabWithOverlays();

 signals:
  // Leave was pressed or the window closed: the meeting is over for this
  // client, and so is everything its modules opened.
  void Left();

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* BuildToolbar();
  QWidget* BuildSidePanel();
  void RebuildExtensionButtons();
  // The "Web page" section: a page in the web view asks the chat bridge for
  // the meeting's public messages and shows what it was answered.
  QWidget* BuildWebPageSection(QWidget* parent);
  void AskForPublicChat();

  sim::MeetingSimulator& meeting_;
  QHBoxLayout* extension_buttons_ = nullptr;
  QLabel* module_state_ = nullptr;
  QTreeWidget* registry_ = nullptr;
  QPlainTextEdit* journal_ = nullptr;
  QPlainTextEdit* web_answers_ = nullptr;
  std::unique_ptr<talvex::WebHost> web_page_;
  QTabWidget* tabs_ = nullptr;
  ExtensionHostWidget* chat_panel_ = nullptr;
  ExtensionHostWidget* floating_ = nullptr;
  QWidget* stage_ = nullptr;
  QWidget* overlay_container_ = nullptr;
};
