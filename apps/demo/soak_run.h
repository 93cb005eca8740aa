#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <vector>

class QTimer;

namespace sim {
class MessageStorm;
class MeetingSimulator;
}  // namespace sim

// A long meeting's chat under load, measured: the storm runs for `seconds`
// while the client shows the panel and the overlay; every second the run
// notes resident memory, live widgets and live view models (soak.csv in the
// output folder). At the end it compares what stood right after the warm-up
// with what stands last, and fails (exit code 1) when memory grew 5 % or
// more, or the widgets kept multiplying.
class SoakRun : public QObject {
  Q_OBJECT

 public:
  struct Sample {
    double seconds = 0;
    long rss_kb = 0;
    // What the program holds allocated; resident memory also counts the
    // allocator's own keeping (and a sanitizer's).
    long heap_kb = 0;
    int widgets = 0;
    int view_models = 0;
    long long posted = 0;
    size_t stored = 0;
    size_t journal = 0;
    size_t analytics = 0;
  };

  SoakRun(sim::MeetingSimulator& meeting, QString out_dir, int seconds, int per_second, QObject* parent = nullptr);
  ~SoakRun() override;
  void Start();
  // The verdict once the run ended: 0 passed, 1 failed.
  int result() const { return result_; }

 signals:
  void Finished(int result);

 private:
  void TakeSample();
  void Finish();

  sim::MeetingSimulator& meeting_;
  QString out_dir_;
  int seconds_;
  int per_second_;
  int warm_up_seconds_;
  sim::MessageStorm* storm_ = nullptr;
  QTimer* sampler_ = nullptr;
  QElapsedTimer clock_;
  std::vector<Sample> samples_;
  int result_ = 0;
};
