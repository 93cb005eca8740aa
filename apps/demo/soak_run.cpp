#include "soak_run.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTextStream>
#include <QTimer>
#include <algorithm>
#include <cstdio>

#include "base/analytics/analytics.h"
#include "devkit/process_memory.h"
#include "framework/journal/host_journal.h"
#include "framework/viewmodel/view_model.h"
#include "sim/meeting_sim.h"
#include "sim/message_storm.h"

namespace {
constexpr double kMaxGrowth = 0.05;
constexpr int kWindow = 5;  // samples on each side of the comparison

template <typename T>
T Median(std::vector<T> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? T() : values[values.size() / 2];
}
}  // namespace

SoakRun::SoakRun(sim::MeetingSimulator& meeting, QString out_dir, int seconds, int per_second, QObject* parent)
    : QObject(parent),
      meeting_(meeting),
      out_dir_(std::move(out_dir)),
      seconds_(seconds),
      per_second_(per_second),
      // A third of a short run, a minute of a long one: caches and pools fill first.
      warm_up_seconds_(std::min(60, std::max(10, seconds / 3))) {}

SoakRun::~SoakRun() = default;

void SoakRun::Start() {
  // The simulated client's call log is for tests; over a long run it would only grow.
  meeting_.SetRecording(false);
  storm_ = new sim::MessageStorm(meeting_, this);
  sampler_ = new QTimer(this);
  connect(sampler_, &QTimer::timeout, this, &SoakRun::TakeSample);
  clock_.start();
  // The meeting keeps its newest 500 messages: full within the warm-up.
  storm_->Start(per_second_, 500);
  sampler_->start(1000);
  QTimer::singleShot(seconds_ * 1000, this, &SoakRun::Finish);
}

void SoakRun::TakeSample() {
  Sample sample;
  sample.seconds = clock_.elapsed() / 1000.0;
  sample.rss_kb = devkit::ResidentKb();
  sample.heap_kb = devkit::HeapKb();
  sample.widgets = QApplication::allWidgets().size();
  sample.view_models = static_cast<int>(framework::ViewModel::LiveViewModels().size());
  sample.posted = storm_ ? storm_->posted() : 0;
  // What the client keeps for the whole run: these should not grow with the chat.
  sample.stored = meeting_.messages().size();
  sample.journal = framework::HostJournal::Entries().size();
  sample.analytics = base::analytics::RecordedEvents().size();
  samples_.push_back(sample);
}

void SoakRun::Finish() {
  sampler_->stop();
  storm_->Stop();
  TakeSample();
  QFile csv(QDir(out_dir_).filePath("soak.csv"));
  if (csv.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
    QTextStream out(&csv);
    out << "seconds,rss_kb,heap_kb,widgets,view_models,messages,stored,journal_entries,analytics_events\n";
    for (auto const& s : samples_) {
      out << s.seconds << ',' << s.rss_kb << ',' << s.heap_kb << ',' << s.widgets << ',' << s.view_models << ',' << s.posted << ',' << s.stored << ','
          << s.journal << ',' << s.analytics << '\n';
    }
  }
  // Right after the warm-up against the end of the run.
  std::vector<long> early_rss, late_rss, early_heap, late_heap;
  std::vector<int> early_widgets, late_widgets;
  for (auto const& s : samples_) {
    if (s.seconds >= warm_up_seconds_ && early_rss.size() < kWindow) {
      early_rss.push_back(s.rss_kb);
      early_heap.push_back(s.heap_kb);
      early_widgets.push_back(s.widgets);
    }
  }
  for (size_t i = samples_.size() >= kWindow ? samples_.size() - kWindow : 0; i < samples_.size(); ++i) {
    late_rss.push_back(samples_[i].rss_kb);
    late_heap.push_back(samples_[i].heap_kb);
    late_widgets.push_back(samples_[i].widgets);
  }
  const long early = Median(early_rss);
  const long late = Median(late_rss);
  const double growth = early > 0 ? static_cast<double>(late - early) / early : 0;
  const long heap_early = Median(early_heap);
  const long heap_late = Median(late_heap);
  const double heap_growth = heap_early > 0 ? static_cast<double>(heap_late - heap_early) / heap_early : 0;
  const int widgets_early = Median(early_widgets);
  const int widgets_late = Median(late_widgets);
  const bool memory_ok = early > 0 && growth < kMaxGrowth;
  // A few widgets come and go with the overlay's bubbles; a leak keeps adding.
  const bool widgets_ok = widgets_late <= widgets_early + std::max(20, widgets_early / 10);
  result_ = memory_ok && widgets_ok ? 0 : 1;
  const QString summary =
      QString("soak: %1 s at %2 messages/s, %3 messages; after a %4 s warm-up resident memory %5 -> %6 KB (%7 %), "
              "heap %8 -> %9 KB (%10 %), widgets %11 -> %12, view models %13 at the end: %14\n")
          .arg(seconds_)
          .arg(per_second_)
          .arg(samples_.empty() ? 0 : samples_.back().posted)
          .arg(warm_up_seconds_)
          .arg(early)
          .arg(late)
          .arg(growth * 100, 0, 'f', 2)
          .arg(heap_early)
          .arg(heap_late)
          .arg(heap_growth * 100, 0, 'f', 2)
          .arg(widgets_early)
          .arg(widgets_late)
          .arg(samples_.empty() ? 0 : samples_.back().view_models)
          .arg(result_ == 0 ? "passed" : "FAILED");
  std::fputs(summary.toUtf8().constData(), stdout);
  QFile text(QDir(out_dir_).filePath("soak.txt"));
  if (text.open(QIODevice::WriteOnly | QIODevice::Truncate)) text.write(summary.toUtf8());
  emit Finished(result_);
}
