// A QApplication that times every event it dispatches from the event loop;
// nested dispatches belong to the outer one. Busy time and the longest single
// stall of the main thread, while recording.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <functional>

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
    if (observer_) observer_(receiver, event, ns);
    return handled;
  }
  void Record(bool on) { recording_ = on; }
  void Reset() { busy_ns_ = longest_ns_ = 0; }
  qint64 busy_ns() const { return busy_ns_; }
  qint64 longest_ns() const { return longest_ns_; }
  // Told of each outermost event with its time, while recording.
  void SetObserver(std::function<void(QObject*, QEvent*, qint64)> observer) { observer_ = std::move(observer); }

 private:
  int depth_ = 0;
  bool recording_ = false;
  qint64 busy_ns_ = 0;
  qint64 longest_ns_ = 0;
  std::function<void(QObject*, QEvent*, qint64)> observer_;
};
