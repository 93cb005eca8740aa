#include "sim/message_storm.h"

#include <QTimer>

#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "sim/roster.h"

namespace sim {

namespace {
constexpr int kTickMs = 20;
constexpr int kSenders = 400;

std::string TextFor(int64_t n) {
  switch (n % 8) {
    case 0:
      return "Great point, thanks!";
    case 1:
      return "Slides are at www.talvex-demo.org/slides/" + std::to_string(n % 50);
    case 2:
      return "+1 [ThumbsUp]";
    case 3:
      return "Can you repeat the last number? The audio dropped for a second.";
    case 4:
      return "Question " + std::to_string(n) + ": how does this compare with last quarter?";
    case 5: {
      std::string long_text = "A longer note: ";
      for (int i = 0; i < 24; ++i) long_text += "the figures on page " + std::to_string(i) + " look right, ";
      return long_text + "thanks.";
    }
    case 6:
      return "<b>not bold</b> & not a link: javascript:alert(1)";
    default:
      return "Hello from row " + std::to_string(n % 30) + " [Smile]";
  }
}
}  // namespace

MessageStorm::MessageStorm(MeetingSimulator& meeting, QObject* parent) : QObject(parent), meeting_(meeting) {}

MessageStorm::~MessageStorm() = default;

void MessageStorm::Start(int per_second, size_t keep) {
  per_second_ = per_second;
  keep_ = keep;
  if (!timer_) {
    timer_ = new QTimer(this);
    connect(timer_, &QTimer::timeout, this, &MessageStorm::Tick);
  }
  clock_.start();
  timer_->start(kTickMs);
}

void MessageStorm::Stop() {
  if (timer_) timer_->stop();
}

void MessageStorm::Tick() {
  // As many as the rate asks for by now, so that a busy loop doesn't slow the storm.
  const int64_t due = clock_.elapsed() * per_second_ / 1000;
  while (posted_ < due) PostOne();
}

void MessageStorm::PostOne() {
  const int64_t n = posted_++;
  const int who = static_cast<int>(n % kSenders);
  const Sender sender("storm-" + std::to_string(who), RosterName(who));
  const std::string id =
      meeting_.messages().Post(TextRecord(meeting_.meeting().meeting_id(), sender, TextFor(n)));
  if (id.empty()) return;
  kept_ids_.push_back(id);
  while (kept_ids_.size() > keep_) {
    const std::string oldest = kept_ids_.front();
    kept_ids_.pop_front();
    meeting_.messages().Delete(oldest);
    meeting_.messages().RemoveMessage(oldest);
  }
}

}  // namespace sim
