#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <cstdint>
#include <deque>
#include <string>

class QTimer;

namespace sim {

class MeetingSimulator;

// A webinar's chat at a steady rate: attendees write short texts, texts with
// a link or an emoji, and now and then a long one, on a real-time timer that
// catches up when the loop was busy. The meeting keeps its newest `keep`
// messages, as a client does over a long meeting: older ones are deleted
// (the lists drop them) and removed from the store.
class MessageStorm : public QObject {
  Q_OBJECT

 public:
  explicit MessageStorm(MeetingSimulator& meeting, QObject* parent = nullptr);
  ~MessageStorm() override;

  void Start(int per_second, size_t keep = 2000);
  void Stop();
  int64_t posted() const { return posted_; }
  size_t kept() const { return kept_ids_.size(); }
  // The next message at once, for a driver that keeps its own time; the
  // meeting keeps the newest `set_keep` (2000 unless Start said otherwise).
  void PostOne();
  void set_keep(size_t keep) { keep_ = keep; }

 private:
  void Tick();

  MeetingSimulator& meeting_;
  QTimer* timer_ = nullptr;
  QElapsedTimer clock_;
  int per_second_ = 0;
  size_t keep_ = 2000;
  int64_t posted_ = 0;
  std::deque<std::string> kept_ids_;
};

}  // namespace sim
