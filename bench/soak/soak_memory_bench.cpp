// The soak's memory curve without the wait: a webinar of a thousand attendees
// writing 50 messages a second of meeting time, the chat panel and the
// overlay on screen, the meeting keeping its newest 500 messages. Every timer
// of the chat runs on a manual clock, so ten minutes of meeting take seconds.
// Every 5,000 messages (100 s of meeting) the run notes the heap in use
// (glibc's count of allocated bytes) and resident memory; the growth is read
// from the first point after the warm-up (the store and the lists full) to
// the last.
//
// Beside it: the same storm into a QListView over a QStandardItemModel that
// keeps the newest 500 rows, what a Qt developer would reach for.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QListView>
#include <QStandardItemModel>
#include <QWidget>

#include <malloc.h>

#include <memory>
#include <string>
#include <vector>

#include "base/timer/tx_timer.h"
#include "bench_environment.h"
#include "devkit/in_process_module.h"
#include "devkit/process_memory.h"
#include "framework/meeting/meeting_context.h"
#include "framework/ui/ui_service.h"
#include "qt_bench_main.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "sim/message_storm.h"
#include "sim/roster.h"
#include "uikit/extension/extension_host_widget.h"

namespace {

using talvex_common::utils::timer::ManualTimerClock;

constexpr int kPerSecond = 50;
constexpr int kStepMs = 1000 / kPerSecond;
constexpr int kMessages = 30000;       // ten minutes of meeting
constexpr int kSampleEvery = 5000;     // 100 s of meeting
constexpr int kWarmUp = 5000;          // the store (500) and the lists full many times over
constexpr size_t kKept = 500;

// What the event loop would do by now: paint, and delete what asked to be
// deleted (outside a running loop only this deletes them).
void BringScreenUpToDate() {
  QApplication::processEvents();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Points of the curve, and the growth after the warm-up, as counters.
class Curve {
 public:
  void Note(int messages) {
    // Memory that is free but not yet given back reads as in use without this.
    malloc_trim(0);
    points_.push_back({messages, static_cast<double>(devkit::HeapKb()), static_cast<double>(devkit::ResidentKb())});
  }
  void Report(benchmark::State& state) const {
    Point const* warm = nullptr;
    for (auto const& p : points_) {
      if (!warm && p.messages >= kWarmUp) warm = &p;
      state.counters["heap_kb@" + std::to_string(p.messages / 1000) + "k"] = p.heap_kb;
    }
    if (!warm) return;
    Point const& last = points_.back();
    state.counters["heap_growth_pct"] = 100.0 * (last.heap_kb - warm->heap_kb) / warm->heap_kb;
    state.counters["rss_growth_pct"] = 100.0 * (last.rss_kb - warm->rss_kb) / warm->rss_kb;
    state.counters["heap_b_per_1k_msgs"] =
        1024.0 * (last.heap_kb - warm->heap_kb) / ((last.messages - warm->messages) / 1000.0);
  }

 private:
  struct Point {
    int messages;
    double heap_kb;
    double rss_kb;
  };
  std::vector<Point> points_;
};

// The whole module as the client hosts it, in a webinar.
class HostedChat {
 public:
  HostedChat() {
    framework::SetUIService(std::make_shared<framework::RecordingUIService>());
    meeting_.Install();
    meeting_.SetRecording(false);
    meeting_.context().is_webinar = true;
    meeting_.context().self_role = talvex::MeetingContext::kRoleAttendee;
    meeting_.faces().Load();
    meeting_.meeting().Join();
    sim::RosterOptions roster;
    roster.attendees = 1000;
    sim::PopulateRoster(meeting_, roster);
    module_ = std::make_unique<InProcessChatModule>();
    panel_ = std::make_unique<ExtensionHostWidget>("contributes:app.chat_full");
    panel_->resize(380, 640);
    panel_->Populate();
    panel_->show();
    stage_ = std::make_unique<QWidget>();
    stage_->resize(1280, 720);
    stage_->show();
    overlay_ = std::make_unique<ExtensionHostWidget>("contributes:app.inmeeting_float");
    overlay_->SetFloatingParent(stage_.get());
    overlay_->Populate();
    storm_ = std::make_unique<sim::MessageStorm>(meeting_);
    storm_->set_keep(kKept);
    QApplication::processEvents();
  }
  ~HostedChat() {
    storm_.reset();
    overlay_.reset();
    stage_.reset();
    panel_.reset();
    module_.reset();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
  }
  // One message, then meeting time moves on to the next; the screen is
  // brought up to date ten times a second of meeting.
  void Step(int i) {
    storm_->PostOne();
    clock_.Advance(kStepMs);
    if (i % (kPerSecond / 10) == 0) BringScreenUpToDate();
  }
  size_t stored() { return meeting_.messages().size(); }

 private:
  // First, so that every timer the meeting and the chat make runs on it.
  ManualTimerClock clock_;
  sim::MeetingSimulator meeting_;
  std::unique_ptr<InProcessChatModule> module_;
  std::unique_ptr<ExtensionHostWidget> panel_;
  std::unique_ptr<QWidget> stage_;
  std::unique_ptr<ExtensionHostWidget> overlay_;
  std::unique_ptr<sim::MessageStorm> storm_;
};

void BM_SoakMemory_ChatModule(benchmark::State& state) {
  for (auto _ : state) {
    Curve curve;
    size_t stored = 0;
    {
      HostedChat chat;
      for (int i = 1; i <= kMessages; ++i) {
        chat.Step(i);
        if (i % kSampleEvery == 0) curve.Note(i);
      }
      stored = chat.stored();
    }
    curve.Report(state);
    state.counters["stored_at_end"] = static_cast<double>(stored);
  }
}
BENCHMARK(BM_SoakMemory_ChatModule)->Unit(benchmark::kMillisecond)->Iterations(1);

// The same texts as rows of a list view, the newest 500 kept.
void BM_SoakMemory_QListView(benchmark::State& state) {
  for (auto _ : state) {
    Curve curve;
    {
      QStandardItemModel model;
      QListView view;
      view.setModel(&model);
      view.setUniformItemSizes(false);
      view.setWordWrap(true);
      view.resize(380, 640);
      view.show();
      for (int i = 1; i <= kMessages; ++i) {
        const QString sender = QString::fromStdString(sim::RosterName(i % 400));
        const QString text = QString("Question %1: how does this compare with last quarter?").arg(i);
        auto* item = new QStandardItem(sender + ": " + text);
        item->setData(QVariantMap{{"msg_id", QString("msg-%1").arg(i)}, {"msg_sender", sender}, {"msg_content", text}},
                      Qt::UserRole);
        model.appendRow(item);
        if (model.rowCount() > static_cast<int>(kKept)) model.removeRow(0);
        if (i % (kPerSecond / 10) == 0) {
          view.scrollToBottom();
          BringScreenUpToDate();
        }
        if (i % kSampleEvery == 0) curve.Note(i);
      }
    }
    curve.Report(state);
  }
}
BENCHMARK(BM_SoakMemory_QListView)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

int main(int argc, char** argv) {
  BenchEnvironment environment;
  environment.InitLogging();
  Q_INIT_RESOURCE(chat_resources);
  return RunQtBenchmarks(argc, argv);
}
