// The floating chat on screen over a meeting window, fed by the simulated
// meeting at 20 messages a second for a minute (real time: the fades are
// animations). The figures are the main thread's busy share over the run
// (every event dispatched, timed at the outermost level), its longest single
// stall, the most bullets alive at once, and the time to repaint the overlay
// while a bullet fades. Beside it, what a Qt developer might otherwise write:
// a QLabel of HTML per message in a translucent window, faded out by a
// QGraphicsOpacityEffect after the same five seconds.
//
//   bench_bullet_overlay [--runs N] [--seconds N] [--rate N]
#include <QElapsedTimer>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QPropertyAnimation>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "base/log/log.h"
#include "base/threading/looper.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/view/bullet/bullet_item_widget.h"
#include "chat/ui/desktop/view/bullet/in_meeting_bullet_qt_view.h"
#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/module/providers.h"
#include "framework/navigation/routing.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "bench_environment.h"
#include "timed_application.h"

namespace {

const sim::Sender kPeople[] = {{"u1", "Avery Quinn"}, {"u2", "Jordan Blake"}, {"u3", "Sam Rivera"}};

std::string TextOf(int i) {
  static const char* const kTexts[] = {
      "Hello from the back row [Wave]", "Could you share the slides afterwards?", "+1 [ThumbsUp]",
      "The audio dropped for a second, all good now",
      "When does the Q&A start? I have a question about the roadmap for the second half of the year"};
  return kTexts[i % 5];
}

struct Figures {
  std::vector<double> busy, stall, alive, paint;
};

double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v.empty() ? 0 : v[v.size() / 2];
}

void Print(char const* name, std::vector<double> const& v, char const* unit, char const* goal) {
  std::printf("  %-26s %8.2f %-3s [%.2f .. %.2f]  %s\n", name, Median(v), unit,
              v.empty() ? 0 : *std::min_element(v.begin(), v.end()),
              v.empty() ? 0 : *std::max_element(v.begin(), v.end()), goal);
}

class WindowController : public framework::Controller {
 public:
  explicit WindowController(QWidget* window) : window_(window) {}
  bool CallHasResult(std::string const& name, Variant const*, Variant* result) override {
    if (name != "get_qt_window") return false;
    *result = Variant(static_cast<void*>(window_));
    return true;
  }

 private:
  QWidget* window_;
};

// A meeting window with its stage and the container the overlay stands over.
struct MeetingWindow {
  QWidget window;
  QWidget* container = nullptr;
  MeetingWindow() {
    window.resize(1280, 760);
    auto* stage = new QWidget(&window);
    stage->setObjectName("MediaRoomWidget");
    stage->setGeometry(0, 0, 900, 700);
    container = new QWidget(stage);
    container->setObjectName("emojiPanelContainer");
    container->setGeometry(stage->rect());
    window.show();
  }
};

// Runs the feed for `seconds` while `sample` is asked once a tick for the
// live count; the observer times the repaints of `painted` while `fading`.
void RunFeed(TimedApplication& app, int seconds, int rate, std::function<void(int)> const& post,
             std::function<int()> const& alive, std::function<QWidget*()> const& painted,
             std::function<bool()> const& fading, Figures& figures) {
  qint64 paint_ns = 0;
  int paints = 0;
  app.SetObserver([&](QObject* receiver, QEvent* event, qint64 ns) {
    if (event->type() == QEvent::UpdateRequest && receiver == painted() && fading()) {
      paint_ns += ns;
      ++paints;
    }
  });
  // A few messages first, not counted: fonts, glyph caches and face pictures
  // load as a client in a meeting has long done.
  int next = 0;
  for (; next < 5; ++next) post(next);
  QElapsedTimer warm;
  warm.start();
  while (warm.elapsed() < 1500) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  int most = 0;
  QTimer feeder;
  feeder.setInterval(1000 / rate);
  QObject::connect(&feeder, &QTimer::timeout, [&] {
    post(next++);
    most = std::max(most, alive());
  });
  QElapsedTimer clock;
  app.Reset();
  app.Record(true);
  clock.start();
  feeder.start();
  while (clock.elapsed() < seconds * 1000) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  app.Record(false);
  app.SetObserver(nullptr);
  figures.busy.push_back(app.busy_ns() / 1e6 / (10.0 * seconds));
  figures.stall.push_back(app.longest_ns() / 1e6);
  figures.alive.push_back(most);
  figures.paint.push_back(paints ? paint_ns / 1e6 / paints : 0);
}

void RunOverlay(TimedApplication& app, int seconds, int rate, Figures& figures) {
  sim::MeetingSimulator meeting;
  meeting.Install();
  meeting.faces().Load();
  meeting.SetRecording(false);
  chat::ChatModuleRuntime runtime;
  runtime.Activate();
  MeetingWindow window;
  framework::ControllerManager::Instance()->IocRegister(
      "talvex://page/inmeeting", [&] { return std::make_shared<WindowController>(&window.window); });
  auto vm = std::dynamic_pointer_cast<framework::StatefulViewModel>(
      runtime.GetViewModelProvider()->CreateViewModel(chat::kViewModelInMeetingBullet));
  auto view = std::make_shared<QtView::InMeetingBulletQTView>();
  view->SetViewModel(vm);
  Variant params(base::variant::kVariantTypeMap);
  view->Build(std::weak_ptr<AppBaseView>(), window.container, &params, true);
  meeting.meeting().Join();
  view->ResetPosition();
  std::vector<Variant> records;
  for (int i = 0; i < seconds * rate + rate + 5; ++i) {
    records.push_back(sim::TextRecord(meeting.meeting().meeting_id(), kPeople[i % 3], TextOf(i)));
  }
  RunFeed(
      app, seconds, rate, [&](int i) { meeting.messages().Post(std::move(records[i])); },
      [&] { return static_cast<int>(view->items().size()); }, [&] { return view->frame(); },
      [&] {
        for (auto* item : view->items()) {
          if (item->disappearing()) return true;
        }
        return false;
      },
      figures);
  view->Dispose();
  framework::ControllerManager::Instance()->IocUnregister("talvex://page/inmeeting");
  runtime.Unactivate();
  meeting.Uninstall();
}

// The Qt way: labels of HTML in a translucent window, each faded out by an
// opacity effect after five seconds and deleted.
void RunLabels(TimedApplication& app, int seconds, int rate, Figures& figures) {
  MeetingWindow window;
  QWidget overlay(window.container, Qt::Tool | Qt::FramelessWindowHint);
  overlay.setAttribute(Qt::WA_TranslucentBackground);
  overlay.setGeometry(5, 420, 300, 260);
  auto* column = new QVBoxLayout(&overlay);
  column->setAlignment(Qt::AlignBottom);
  overlay.show();
  int alive = 0;
  int fading = 0;
  RunFeed(
      app, seconds, rate,
      [&](int i) {
        auto* label = new QLabel(&overlay);
        label->setWordWrap(true);
        label->setFixedWidth(272);
        label->setStyleSheet("background-color: rgba(43, 46, 51, 0.6); color: white; border-radius: 4px;");
        label->setText(QString("<b style='color:#9CCBFF'>%1:</b> %2")
                           .arg(QString::fromStdString(kPeople[i % 3].nickname), QString::fromStdString(TextOf(i))));
        column->addWidget(label);
        ++alive;
        QTimer::singleShot(5000, label, [label, &fading, &alive] {
          auto* effect = new QGraphicsOpacityEffect(label);
          label->setGraphicsEffect(effect);
          auto* fade = new QPropertyAnimation(effect, "opacity", label);
          fade->setDuration(800);
          fade->setStartValue(1.0);
          fade->setEndValue(0.0);
          ++fading;
          QObject::connect(fade, &QPropertyAnimation::finished, label, [label, &fading, &alive] {
            --fading;
            --alive;
            label->deleteLater();
          });
          fade->start();
        });
      },
      [&] { return alive; }, [&] { return &overlay; }, [&] { return fading > 0; }, figures);
}

}  // namespace

int main(int argc, char** argv) {
  BenchEnvironment environment(base::log::kLogError);
  TimedApplication app(argc, argv);
  environment.InitLogging();
  int runs = 3;
  int seconds = 60;
  int rate = 20;
  for (int i = 1; i + 1 < argc; ++i) {
    if (QString(argv[i]) == "--runs") runs = std::max(1, std::atoi(argv[i + 1]));
    if (QString(argv[i]) == "--seconds") seconds = std::max(1, std::atoi(argv[i + 1]));
    if (QString(argv[i]) == "--rate") rate = std::max(1, std::atoi(argv[i + 1]));
  }
  Figures overlay, labels;
  for (int run = 0; run < runs; ++run) {
    RunOverlay(app, seconds, rate, overlay);
    RunLabels(app, seconds, rate, labels);
  }
  std::printf("%d messages a second for %d s, %d runs: median [min .. max]\n", rate, seconds, runs);
  std::printf("floating chat (InMeetingBulletQTView):\n");
  Print("main thread busy", overlay.busy, "%", "goal: under 3 %");
  Print("longest stall", overlay.stall, "ms", "goal: at most 8 ms");
  Print("most bullets alive", overlay.alive, "", "bound: 8 a second x (5.8 s + the timers' slack)");
  Print("repaint while fading", overlay.paint, "ms", "");
  std::printf("QLabel bubbles with an opacity fade:\n");
  Print("main thread busy", labels.busy, "%", "");
  Print("longest stall", labels.stall, "ms", "");
  Print("most bubbles alive", labels.alive, "", "");
  Print("repaint while fading", labels.paint, "ms", "");
  base::threading::LooperThread::ShutdownFileLooper();
  return 0;
}
