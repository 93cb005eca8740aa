// The chat panel on screen, fed by the simulated meeting.
//
// Storm: 1,000 messages arrive within one second into the visible panel. The
// figures are the main thread's busy time (every event the application
// dispatches, timed at the outermost level), its longest single stall, and
// the number of full reloads of the list.
//
// Scroll: 10,000 mixed messages (text of every length with links and emoji,
// pictures, files, notices) scrolled from the top to the bottom in 60-pixel
// steps, each step repainted: the median and 99th percentile of a step.
//
//   bench_chat_panel [--messages N]
#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

#include "base/log/log.h"
#include "base/threading/looper.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/ui/desktop/extension/chatting_panel_show_view.h"
#include "chat/viewmodel/chat_panel_history_list_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/chat/chat_schema_keys.h"
#include "framework/chat/chat_utils.h"
#include "framework/module/providers.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "sim/scripted_participants.h"

namespace {

// Times every event dispatched from the event loop; nested dispatches belong
// to the outer one.
class TimedApplication : public QApplication {
 public:
  using QApplication::QApplication;
  bool notify(QObject* receiver, QEvent* event) override {
    if (depth_++ > 0 || !recording_) {
      const bool handled = QApplication::notify(receiver, event);
      --depth_;
      return handled;
    }
    QElapsedTimer timer;
    timer.start();
    const bool handled = QApplication::notify(receiver, event);
    const qint64 ns = timer.nsecsElapsed();
    --depth_;
    busy_ns_ += ns;
    longest_ns_ = std::max(longest_ns_, ns);
    return handled;
  }
  void Record(bool on) { recording_ = on; }
  void Reset() { busy_ns_ = longest_ns_ = 0; }
  qint64 busy_ns() const { return busy_ns_; }
  qint64 longest_ns() const { return longest_ns_; }

 private:
  int depth_ = 0;
  bool recording_ = false;
  qint64 busy_ns_ = 0;
  qint64 longest_ns_ = 0;
};

const sim::Sender kPeople[] = {{"u1", "Avery Quinn"}, {"u2", "Jordan Blake"}, {"u3", "Sam Rivera"},
                               {"u4", "Morgan Ellis"}};

std::string TextOf(int i) {
  static const char* const kTexts[] = {
      "ok",
      "Thanks, that makes sense [Smile]",
      "Is the recording shared after the session? see www.talvex-demo.org/q/",
      "Could you go back one slide? I missed the numbers on the second chart and I'd like to note them down "
      "before we move on to the roadmap part.",
      "[ThumbsUp][Clap]",
      "Here is the long version of my question: when the migration runs over the weekend, do we keep the old "
      "endpoints alive until Monday, or do clients need the new address from Saturday on? The docs at "
      "https://docs.talvex-demo.org/migration say both.",
  };
  std::string text = kTexts[i % 6];
  if (i % 6 == 2) text += std::to_string(i);
  return text;
}

struct Panel {
  sim::MeetingSimulator meeting;
  chat::ChatModuleRuntime runtime;
  std::shared_ptr<QtView::ChattingPanelShowView> view;
  std::unique_ptr<QWidget> window;

  void Install() {
    meeting.Install();
    meeting.meeting().Join();
    meeting.faces().Load();
    runtime.Activate();
  }

  void Open() {
    if (!meeting.installed()) Install();
    auto model = std::dynamic_pointer_cast<framework::StatefulViewModel>(
        runtime.GetViewModelProvider()->CreateViewModel(chat::kViewModelPanelHistoryList));
    view = std::make_shared<QtView::ChattingPanelShowView>();
    view->SetViewModel(model);
    window = std::make_unique<QWidget>();
    window->resize(380, 700);
    auto* layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    Variant params(base::variant::kVariantTypeMap);
    view->Build(std::weak_ptr<AppBaseView>(), window.get(), &params, true);
    layout->addWidget(view->frame());
    window->show();
  }

  bool Settled() const {
    auto* panel = static_cast<chat::ChatPanelHistoryListViewModel*>(view->view_model().get());
    return !view->HasPendingUpdates() && !panel->flush_pending() && !panel->is_getting_more();
  }

  void Close() {
    view->Dispose();
    view.reset();
    window.reset();
    runtime.Unactivate();
    meeting.Uninstall();
  }
};

void Spin(int ms) {
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < ms) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

void RunStorm(TimedApplication& app, int count) {
  Panel panel;
  panel.Open();
  Spin(300);
  const int reloads_before = panel.view->reload_count();
  std::vector<Variant> records;
  for (int i = 0; i < count; ++i) {
    records.push_back(sim::TextRecord(panel.meeting.meeting().meeting_id(), kPeople[i % 4], TextOf(i)));
  }
  // The messages arrive spread over one second, as the backend would deliver them.
  int next = 0;
  QTimer feeder;
  QElapsedTimer clock;
  feeder.setInterval(1);
  QObject::connect(&feeder, &QTimer::timeout, [&] {
    const int due = std::min<int>(count, static_cast<int>(clock.elapsed() * count / 1000) + 1);
    while (next < due) panel.meeting.messages().Post(std::move(records[next++]));
    if (next >= count) feeder.stop();
  });
  app.Reset();
  app.Record(true);
  clock.start();
  feeder.start();
  while (next < count || !panel.Settled()) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  Spin(200);
  app.Record(false);
  const double wall_ms = clock.nsecsElapsed() / 1e6;
  std::printf("storm: %d messages in 1 s into the visible panel\n", count);
  std::printf("  main thread busy   %8.1f ms over %.0f ms (%.1f%% of the arrival second)\n", app.busy_ns() / 1e6,
              wall_ms, app.busy_ns() / 1e6 / 10.0);
  std::printf("  longest stall      %8.2f ms\n", app.longest_ns() / 1e6);
  std::printf("  list reloads       %8d\n", panel.view->reload_count() - reloads_before);
  std::printf("  rows in the list   %8zu\n", panel.view->MessageIds().size());
  panel.Close();
}

void RunScroll(TimedApplication& app, int count) {
  Panel panel;
  panel.Install();
  const std::string meeting_id = panel.meeting.meeting().meeting_id();
  // A few pictures, shared by the image messages.
  std::vector<std::string> images;
  for (int i = 0; i < 3; ++i) {
    const std::string id = "bench-image-" + std::to_string(i);
    sim::ScriptedParticipants::DrawPicture(talvex::ChatUtils::GetOriginalPicFileName(id, meeting_id), 900 - 200 * i,
                                           500 + 150 * i, i);
    images.push_back(id);
  }
  Variant items(base::variant::kVariantTypeArray);
  for (int i = 0; i < count; ++i) {
    const sim::Sender& who = kPeople[i % 4];
    Variant record;
    int chat_type = 0;
    if (i % 10 == 3) {
      chat_type = 4;
      Variant content(base::variant::kVariantTypeArray);
      Variant element(base::variant::kVariantTypeMap);
      element.Set("image_elem_orig_id", images[i % 3]);
      element.Set("image_elem_orig_url", "https://images.talvex.example/" + images[i % 3]);
      content.Add(element);
      record = sim::ChatRecord(meeting_id, who, 4, content);
    } else if (i % 10 == 6) {
      chat_type = 8;
      Variant ext(base::variant::kVariantTypeMap);
      ext["file_info"].Set("name", "report-" + std::to_string(i) + ".pdf");
      ext["file_info"].Set("size", 1024 * (i + 1));
      ext["file_info"].Set("status", i % 20 == 6 ? 5 : 9);
      record = sim::ChatRecord(meeting_id, who, 8, Variant(), false, ext);
    } else if (i % 50 == 9) {
      chat_type = 6;
      Variant content(base::variant::kVariantTypeArray);
      Variant element(base::variant::kVariantTypeMap);
      element.Set("item_type", 0);
      element.Set("item_content", "Notice: the session is recorded. " + TextOf(3));
      content.Add(element);
      record = sim::ChatRecord(meeting_id, who, 6, content);
    } else {
      record = sim::TextRecord(meeting_id, who, TextOf(i), i % 7 == 0);
    }
    const std::string id = panel.meeting.messages().Post(record);
    if (id.empty()) continue;
    Variant item(base::variant::kVariantTypeMap);
    item.Set(ChatHistoryListMsgItemFields_kStringMsgItemMsgId, id);
    item.Set(ChatHistoryListMsgItemFields_kStringMsgItemReuseId, "reuse_id" + std::to_string(chat_type) + "_2");
    items.Add(item);
  }
  // The panel opens on a meeting that already has all of them.
  panel.Open();
  while (!panel.Settled()) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  Spin(200);
  // The whole history at once, as a reset of the list.
  Variant update(base::variant::kVariantTypeMap);
  update.Set(ChatHistoryListMsgListFields_kIntegerMsgListUpdateType, 3);
  update.Set(ChatHistoryListMsgListFields_kMsgListMsgList, items);
  panel.view->view_model()->SetPropValue(chat::ChatHistoryListBaseViewModel::kPropMessageList, update);
  while (panel.view->HasPendingUpdates()) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  Spin(300);

  ChatMessageListWidget* list = panel.view->list();
  list->SetVerticalScrollValue(0);
  Spin(200);
  std::vector<double> steps;
  const int step = 60;
  app.Record(false);
  for (;;) {
    const int before = list->ScrollValue();
    QElapsedTimer timer;
    timer.start();
    list->SetVerticalScrollValue(before + step);
    list->viewport()->repaint();
    steps.push_back(timer.nsecsElapsed() / 1e6);
    // Decoded pictures come back between steps, as they would while a user scrolls.
    QCoreApplication::processEvents();
    if (list->ScrollValue() == before || list->IsScrollBottom()) break;
  }
  std::sort(steps.begin(), steps.end());
  auto at = [&](double q) { return steps[std::min(steps.size() - 1, static_cast<size_t>(q * steps.size()))]; };
  std::printf("scroll: %zu rows (%d posted), %zu steps of %d px, each repainted\n", panel.view->MessageIds().size(),
              count, steps.size(), step);
  std::printf("  step median        %8.3f ms\n", at(0.5));
  std::printf("  step p99           %8.3f ms\n", at(0.99));
  std::printf("  step max           %8.3f ms\n", steps.back());
  panel.Close();
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  TimedApplication app(argc, argv);
  Q_INIT_RESOURCE(chat_resources);
  base::log::SetLogLevel(base::log::kLogError);
  int storm = 1000;
  int scroll = 10000;
  for (int i = 1; i + 1 < argc; ++i) {
    if (QString(argv[i]) == "--messages") storm = std::atoi(argv[i + 1]);
    if (QString(argv[i]) == "--rows") scroll = std::atoi(argv[i + 1]);
  }
  RunStorm(app, storm);
  RunScroll(app, scroll);
  base::threading::LooperThread::ShutdownFileLooper();
  return 0;
}
