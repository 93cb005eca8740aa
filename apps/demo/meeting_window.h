#pragma once

#include <QStringList>
#include <QWidget>

class QLabel;
class QHBoxLayout;
class QPlainTextEdit;
class QTreeWidget;

namespace sim {
class MeetingSimulator;
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
// chat module registered with the client.
class MeetingWindow : public QWidget {
  Q_OBJECT
 public:
  MeetingWindow(sim::MeetingSimulator& meeting, QWidget* parent = nullptr);
  // Re-reads the client's registries into the status panel and toolbar.
  void RefreshModuleStatus(QString const& module_state);
  // A readable account of everything in the status panel.
  QString StatusText() const;

 private:
  QWidget* BuildToolbar();
  QWidget* BuildSidePanel();
  void RebuildExtensionButtons();

  sim::MeetingSimulator& meeting_;
  QHBoxLayout* extension_buttons_ = nullptr;
  QLabel* module_state_ = nullptr;
  QTreeWidget* registry_ = nullptr;
  QPlainTextEdit* journal_ = nullptr;
};
