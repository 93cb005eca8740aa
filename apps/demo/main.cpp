// The demo client: a meeting window on the simulated meeting that loads the
// chat module as a client would. Without a display it runs offscreen, writes
// a screenshot and a transcript, and exits.
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <cstdlib>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "base/threading/looper.h"
#include "framework/journal/host_journal.h"
#include "framework/ui/ui_service.h"
#include "local_user_tour.h"
#include "meeting_window.h"
#include "soak_run.h"
#include "module_host.h"
#include "sim/meeting_sim.h"
#include "sim/roster.h"
#include "sim/scripted_participants.h"
#include "uikit/qt_ui_service.h"

namespace {

bool HasDisplay() { return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY"); }

bool WriteText(QString const& path, QString const& text) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) return false;
  file.write(text.toUtf8());
  return true;
}

QString Transcript(MeetingWindow const& window, ModuleHost const& host, QStringList const& tour) {
  QStringList lines;
  lines << "# Demo transcript" << "";
  lines << "## Module status" << window.StatusText() << "";
  lines << "## What the local user did" << tour << "";
  lines << "## Client journal";
  for (auto const& entry : framework::HostJournal::Entries()) lines << QString::fromStdString(entry);
  lines << "" << "## Analytics events";
  for (auto const& event : base::analytics::RecordedEvents()) lines << QString::fromStdString(event.name);
  if (!host.error().isEmpty()) lines << "" << "## Error" << host.error();
  return lines.join('\n') + '\n';
}

}  // namespace

int main(int argc, char** argv) {
  const bool headless_env = !HasDisplay();
  if (headless_env && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QApplication::setApplicationName("talvex-demo");

  QCommandLineParser parser;
  parser.setApplicationDescription("A meeting on the simulated backend, with the chat module loaded.");
  parser.addHelpOption();
  QCommandLineOption headless_option("headless", "Render offscreen, write a screenshot and a transcript, exit.");
  QCommandLineOption out_option("out", "Directory for the screenshot and transcript.", "dir", "demo-output");
  QCommandLineOption seconds_option("seconds", "Close a windowed run after this many seconds.", "n", "0");
  QCommandLineOption gallery_option("gallery", "Open the widget gallery at a page instead of a meeting.", "page");
  // The meeting's knobs.
  QCommandLineOption webinar_option("webinar", "A webinar, joined as an attendee.");
  QCommandLineOption anonymous_option("anonymous", "An anonymous meeting.");
  QCommandLineOption display_option("display-state", "The meeting's display state (1 keeps text and pictures off "
                                    "the video).", "n", "0");
  QCommandLineOption share_option("share-screen", "The local user shares the screen.");
  QCommandLineOption immersive_option("immersive", "Ask for immersive mode once the module is up.");
  QCommandLineOption control_option("security-control", "Chat is under the organization's control, with this text.",
                                    "text");
  QCommandLineOption members_option("members", "People in the meeting beside the scripted five (1000 for a large "
                                    "meeting).", "n", "24");
  QCommandLineOption attendees_option("attendees", "A webinar's attendees (10000 for a large one).", "n", "0");
  QCommandLineOption host_option("host", "The local user hosts the meeting.");
  QCommandLineOption download_auth_option("download-auth", "The account's authorization for chat files (2: may "
                                          "download; anything else is refused).", "n", "2");
  QCommandLineOption soak_option("soak", "A webinar's chat storm for this many seconds with the panel and the "
                                 "overlay on screen, measured (soak.csv, soak.txt); fails when memory grows 5 % "
                                 "after the warm-up.", "seconds");
  QCommandLineOption rate_option("rate", "Messages a second in a soak.", "n", "50");
  QCommandLineOption tour_option("tour", "In a window too: the local user picks a receiver, writes privately, and "
                                 "goes back to everyone (a headless run always does).");
  parser.addOptions({headless_option, out_option, seconds_option, gallery_option, webinar_option, anonymous_option,
                     display_option, share_option, immersive_option, control_option, members_option,
                     attendees_option, host_option, download_auth_option, soak_option, rate_option, tour_option});
  parser.process(app);
  if (parser.isSet(gallery_option)) {
    // The gallery links the module's widgets directly, so it is a program of its own.
    QStringList args{"--page", parser.value(gallery_option), "--out", parser.value(out_option)};
    if (parser.isSet(headless_option)) args << "--headless";
    return QProcess::execute(QDir(QCoreApplication::applicationDirPath()).filePath("talvex_gallery"), args);
  }
  const bool headless = headless_env || parser.isSet(headless_option);
  const QString out_dir = QDir(parser.value(out_option)).absolutePath();
  QDir().mkpath(out_dir);

  base::log::LogOptions log_options;
  log_options.stderr_level = base::log::kLogWarning;
  base::log::InitLogging(log_options);
  base::analytics::SetJsonLinesFile(QDir(out_dir).filePath("analytics.jsonl").toStdString());

  auto ui_service = std::make_shared<QtUIService>();
  framework::SetUIService(ui_service);

  sim::MeetingSimulator meeting;
  meeting.Install();
  // The host of this meeting published a notice and lets everyone read it.
  meeting.meeting_settings().SetSwitch("notice_enable", true);
  const int soak_seconds = parser.isSet(soak_option) ? std::max(1, parser.value(soak_option).toInt()) : 0;
  if (parser.isSet(webinar_option) || soak_seconds > 0) {
    meeting.context().is_webinar = true;
    meeting.context().self_role = talvex::MeetingContext::kRoleAttendee;
  }
  meeting.context().anonymous = parser.isSet(anonymous_option);
  meeting.meeting().SetDisplayState(parser.value(display_option).toInt());
  if (parser.isSet(control_option)) meeting.context().security_controls[3] = parser.value(control_option).toStdString();
  if (parser.isSet(host_option)) meeting.context().self_role = talvex::MeetingContext::kRoleHost;
  meeting.network().SetAuthState(parser.value(download_auth_option).toInt());
  meeting.meeting().Join();
  // The people: the scripted five, a roster around them, two in the waiting
  // room and a meeting room's device that can't take chat.
  sim::ScriptedParticipants participants(meeting);
  participants.JoinMeeting();
  sim::RosterOptions roster;
  roster.members = std::max(0, parser.value(members_option).toInt());
  roster.attendees = std::max(soak_seconds > 0 ? 1000 : 0, parser.value(attendees_option).toInt());
  roster.waiting = 2;
  roster.no_chat_devices = 1;
  sim::PopulateRoster(meeting, roster);

  MeetingWindow window(meeting);
  // Leaving ends the client's run: the module unloads below and takes its pages with it.
  QObject::connect(&window, &MeetingWindow::Left, &app, &QApplication::quit);
  ModuleHost host;
  const QString library = QDir(QCoreApplication::applicationDirPath()).filePath("libchat_module.so");
  const bool loaded = host.Load(library);
  window.RefreshModuleStatus(loaded ? "Loaded from " + library + " and activated."
                                    : "Not loaded: " + host.error());
  // The chat panel as the client hosts it, with people chatting in the meeting.
  const bool panel = loaded && window.ShowChatPanel() > 0;
  if (headless) participants.set_notice_edit_delay_ms(5000);  // the minute, told in seconds
  if (panel && soak_seconds == 0) participants.Start(headless ? 280 : 1500);
  // The local user writes privately to one of them, then to everyone again.
  LocalUserTour tour(&window, "jor", "Could you send me the slides after the call?");
  if (headless) {
    tour.on_member_list_open = [&] {
      const QString shot = QDir(out_dir).filePath("demo-members.png");
      if (window.GrabWithOverlays().save(shot)) std::printf("member list: %s\n", qPrintable(shot));
    };
  }
  if (headless) {
    tour.on_notice_open = [&] {
      const QString shot = QDir(out_dir).filePath("demo-notice.png");
      for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->objectName() == "MeetingNoticeDialog" && top->isVisible() && top->grab().save(shot)) {
          std::printf("notice: %s\n", qPrintable(shot));
        }
      }
    };
  }
  if (headless) {
    tour.on_file_page = [&] {
      const QString shot = QDir(out_dir).filePath("demo-file.png");
      for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->objectName() == "ChatFilePreviewDialog" && top->isVisible() && top->grab().save(shot)) {
          std::printf("file page: %s\n", qPrintable(shot));
        }
      }
    };
  }
  if (panel && soak_seconds == 0 && (headless || parser.isSet(tour_option))) {
    tour.ShowFile(2200);
    tour.ShowNotice(3900);
    tour.Start(4500);
  }
  // The chat's bullets over the meeting.
  if (loaded) window.ShowFloatingViews();
  if (parser.isSet(share_option)) {
    // As the user would: the toolbar's share button.
    if (auto* share = window.findChild<QPushButton*>("share_button")) share->setChecked(true);
  }
  if (loaded && parser.isSet(immersive_option)) {
    std::string refusal;
    if (!meeting.meeting_settings().EnterImmersiveMode(&refusal)) std::printf("immersive mode refused: %s\n", refusal.c_str());
  }
  window.show();

  int rc = loaded ? 0 : 1;
  SoakRun soak(meeting, out_dir, soak_seconds, std::max(1, parser.value(rate_option).toInt()));
  if (soak_seconds > 0) {
    QObject::connect(&soak, &SoakRun::Finished, &app, [&](int result) {
      if (result != 0) rc = 1;
      window.GrabWithOverlays().save(QDir(out_dir).filePath("soak.png"));
      app.quit();
    });
    if (loaded) soak.Start();
  } else if (headless) {
    // A few seconds of chat traffic before the picture is taken.
    QTimer::singleShot(10000, &window, [&] {
      const QString shot = QDir(out_dir).filePath("demo.png");
      const QString transcript = QDir(out_dir).filePath("transcript.md");
      if (!window.GrabWithOverlays().save(shot)) rc = 1;
      tour.NoteNoticeBanner();
      if (!WriteText(transcript, Transcript(window, host, tour.log()))) rc = 1;
      std::printf("screenshot: %s\ntranscript: %s\n", qPrintable(shot), qPrintable(transcript));
      app.quit();
    });
  } else if (const int seconds = parser.value(seconds_option).toInt(); seconds > 0) {
    QTimer::singleShot(seconds * 1000, &app, &QApplication::quit);
  }
  app.exec();

  participants.Stop();
  window.DisposeFloatingViews();
  window.DisposeChatPanel();
  host.Unload();
  meeting.Uninstall();
  base::threading::LooperThread::ShutdownFileLooper();
  base::analytics::SetJsonLinesFile({});
  base::log::ShutdownLogging();
  return rc;
}
