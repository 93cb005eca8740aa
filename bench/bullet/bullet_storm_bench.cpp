// A webinar's storm into the floating chat: 5,000 messages a second for ten
// seconds of meeting time, on a manual clock so the overlay's 125 ms pacing
// runs as it would. Measured: the main thread's time per message in the
// overlay's view model (the client firing its received event, conversion,
// the queue, the paced publication), the same through the whole simulated
// meeting (store, the panel's conversion, the event), the queue's high-water
// mark and the most records the view got in one second of meeting time.
// Beside it: what a Qt developer might write instead, each message made a
// QVariantMap row of a QStandardItemModel kept to the newest 50 rows.
#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QStandardItemModel>
#include <QTemporaryDir>

#include <algorithm>
#include <map>

#include "base/log/log.h"
#include "base/timer/tx_timer.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/meeting/meeting_context.h"
#include "bench_environment.h"
#include "qt_bench_main.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"

namespace {

using VM = chat::InMeetingBulletViewModel;
constexpr int kPerSecond = 5000;
constexpr int kSeconds = 10;
constexpr int kPerMillisecond = kPerSecond / 1000;
const sim::Sender kSenders[] = {{"u1", "Avery Quinn"}, {"u2", "Jordan Blake"}, {"u3", "Sam Rivera"}};

std::string TextOf(int i) {
  return "Question " + std::to_string(i) + ": will the slides be shared after the session? [ThumbsUp]";
}

struct Storm {
  sim::MeetingSimulator meeting;
  chat::ChatModuleRuntime runtime;
  std::shared_ptr<VM> vm;
  std::map<int64_t, int> shown_per_second;
  size_t high_water = 0;
  talvex_common::utils::timer::ManualTimerClock* clock = nullptr;

  explicit Storm(talvex_common::utils::timer::ManualTimerClock* c) : clock(c) {
    meeting.Install();
    meeting.context().is_webinar = true;
    meeting.context().self_role = talvex::MeetingContext::kRoleAttendee;
    meeting.faces().Load();
    // The simulator keeps every call for tests; a client keeps none.
    meeting.SetRecording(false);
    runtime.Activate();
    vm = std::dynamic_pointer_cast<VM>(runtime.GetViewModelProvider()->CreateViewModel(chat::kViewModelInMeetingBullet));
    vm->BindProp(VM::kPropNewBulletMsg,
                 [this](Variant const*, Variant const*) { ++shown_per_second[clock->now_ms() / 1000]; });
    Variant none;
    vm->DidCreated(&none);
    vm->DidAttached(&none);
    meeting.meeting().Join();
  }
  ~Storm() {
    vm->DidDetached();
    runtime.Unactivate();
  }
  int MostShownInASecond() const {
    int most = 0;
    for (auto const& [second, count] : shown_per_second) most = std::max(most, count);
    return most;
  }
};

// Runs the storm; `deliver` hands one message to the client. Returns the
// main thread's nanoseconds, the clock's own bookkeeping left out.
template <typename Deliver>
int64_t RunStorm(Storm& storm, talvex_common::utils::timer::ManualTimerClock& clock, Deliver deliver) {
  QElapsedTimer timer;
  int64_t busy = 0;
  int i = 0;
  for (int ms = 0; ms < kSeconds * 1000; ++ms) {
    timer.start();
    for (int k = 0; k < kPerMillisecond; ++k, ++i) deliver(i);
    clock.Advance(1);
    busy += timer.nsecsElapsed();
    storm.high_water = std::max(storm.high_water, storm.vm->queued_count());
  }
  return busy;
}

void Report(benchmark::State& state, Storm const& storm, int64_t messages, int64_t busy_ns) {
  state.counters["us_per_message"] = static_cast<double>(busy_ns) / 1000.0 / static_cast<double>(messages);
  state.counters["queue_high_water"] = static_cast<double>(storm.high_water);
  state.counters["most_shown_per_s"] = storm.MostShownInASecond();
}

// The rounds of one storm benchmark: each sets up a fresh meeting and its
// payloads untimed (`make(storm, i)` for the i-th message), then times their
// delivery (`deliver(storm, payload)`).
template <typename Make, typename Deliver>
void StormRounds(benchmark::State& state, Make make, Deliver deliver) {
  int64_t busy = 0;
  int64_t messages = 0;
  for (auto _ : state) {
    state.PauseTiming();
    talvex_common::utils::timer::ManualTimerClock clock;
    Storm storm(&clock);
    std::vector<Variant> payloads;
    payloads.reserve(kPerSecond * kSeconds);
    for (int i = 0; i < kPerSecond * kSeconds; ++i) payloads.push_back(make(storm, i));
    state.ResumeTiming();
    busy += RunStorm(storm, clock, [&](int i) { deliver(storm, payloads[i]); });
    messages += kPerSecond * kSeconds;
    state.PauseTiming();
    Report(state, storm, messages, busy);
    state.ResumeTiming();
  }
}

// The overlay's part: the client fires its received event with one message.
void BM_BulletStorm_ViewModel(benchmark::State& state) {
  StormRounds(
      state,
      [](Storm& storm, int i) {
        Variant record = sim::TextRecord(storm.meeting.meeting().meeting_id(), kSenders[i % 3], TextOf(i));
        record.Set("local_msg_id", static_cast<uint64_t>(1000 + i));
        record.Set("msg_id", "storm-" + std::to_string(i));
        return Variant(Variant::Map{{"new_msg_list", Variant::Array{sim::BulletFormOf(record)}}});
      },
      [](Storm& storm, Variant& event) { storm.meeting.messages().FireEvent(8, &event); });
}
BENCHMARK(BM_BulletStorm_ViewModel)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

// The whole simulated meeting: each message is posted, stored, converted for
// the panel and announced to the overlay.
void BM_BulletStorm_ThroughTheMeeting(benchmark::State& state) {
  StormRounds(
      state,
      [](Storm& storm, int i) {
        return sim::TextRecord(storm.meeting.meeting().meeting_id(), kSenders[i % 3], TextOf(i));
      },
      [](Storm& storm, Variant& record) { storm.meeting.messages().Post(std::move(record)); });
}
BENCHMARK(BM_BulletStorm_ThroughTheMeeting)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

// What one might write with Qt alone: every message a row of maps, the
// newest 50 kept, nothing paced.
void BM_BulletStorm_QStandardItemModel(benchmark::State& state) {
  int64_t busy = 0;
  int64_t messages = 0;
  for (auto _ : state) {
    QStandardItemModel model;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < kPerSecond * kSeconds; ++i) {
      QVariantMap row;
      row["msg_sender"] = QString::fromStdString(kSenders[i % 3].nickname);
      row["msg_content"] = QString::fromStdString(TextOf(i)).replace('\n', ' ');
      row["msg_id"] = QString::number(1000 + i);
      row["msg_type"] = 0;
      row["update_type"] = 0;
      auto* item = new QStandardItem(row["msg_content"].toString());
      item->setData(row, Qt::UserRole);
      model.appendRow(item);
      if (model.rowCount() > 50) model.removeRow(0);
    }
    busy += timer.nsecsElapsed();
    messages += kPerSecond * kSeconds;
  }
  state.counters["us_per_message"] = static_cast<double>(busy) / 1000.0 / static_cast<double>(messages);
  state.counters["rows_shown_per_s"] = kPerSecond;
}
BENCHMARK(BM_BulletStorm_QStandardItemModel)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

}  // namespace

int main(int argc, char** argv) {
  BenchEnvironment environment;
  environment.InitLogging();
  return RunQtBenchmarks(argc, argv);
}
