// A webinar's message storm into the chat panel's list: the main thread's
// cost per received message (conversion, filtering, batching, the flush),
// beside appending the same texts to a QStandardItemModel.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QThread>

#include "base/log/log.h"
#include "chat/runtime/chat_module_runtime.h"
#include "chat/viewmodel/chat_panel_history_list_view_model.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "bench_environment.h"

namespace {

constexpr int kStorm = 10000;
const sim::Sender kSenders[] = {{"u1", "Avery Quinn"}, {"u2", "Jordan Blake"}, {"u3", "Sam Rivera"}};

std::string TextOf(int i) {
  return "Question " + std::to_string(i) + ": is the recording shared after the session? see www.example.com/q/" +
         std::to_string(i);
}

void BM_Storm_PanelHistoryList(benchmark::State& state) {
  sim::MeetingSimulator meeting;
  meeting.Install();
  meeting.meeting().Join();
  meeting.messages().SetHistorySynchronous(true);
  chat::ChatModuleRuntime runtime;
  runtime.Activate();
  int64_t updates = 0;
  int64_t messages = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto list = std::make_shared<chat::ChatPanelHistoryListViewModel>();
    list->SetModuleParams(&runtime);
    list->BindProp(chat::ChatHistoryListBaseViewModel::kPropMessageList,
                   [&](Variant const*, Variant const*) { ++updates; });
    Variant params(base::variant::kVariantTypeMap);
    list->DidCreated(&params);
    list->DidAttached(&params);
    std::vector<Variant> records;
    records.reserve(kStorm);
    for (int i = 0; i < kStorm; ++i) {
      Variant record = sim::TextRecord(meeting.meeting().meeting_id(), kSenders[i % 3], TextOf(i));
      record.Set("message_time", 1700000000 + i / 10);
      records.push_back(std::move(record));
    }
    state.ResumeTiming();
    for (auto& record : records) meeting.messages().Post(std::move(record));
    // The panel's flush: held 400 ms, then one update carries the burst.
    state.PauseTiming();
    while (list->flush_pending()) {
      QThread::msleep(5);
      QCoreApplication::processEvents();
    }
    state.ResumeTiming();
    messages += kStorm;
    state.PauseTiming();
    list->DidDetached();
    state.ResumeTiming();
  }
  state.counters["us_per_message"] =
      benchmark::Counter(static_cast<double>(messages), benchmark::Counter::kIsRate | benchmark::Counter::kInvert,
                         benchmark::Counter::kIs1000);
  state.counters["list_updates"] = static_cast<double>(updates) / static_cast<double>(state.iterations());
  runtime.Unactivate();
}
BENCHMARK(BM_Storm_PanelHistoryList)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Storm_QStandardItemModel(benchmark::State& state) {
  int64_t messages = 0;
  for (auto _ : state) {
    QStandardItemModel model;
    for (int i = 0; i < kStorm; ++i) {
      auto* item = new QStandardItem(QString::fromStdString(kSenders[i % 3].nickname + ": " + TextOf(i)));
      model.appendRow(item);
    }
    benchmark::DoNotOptimize(model.rowCount());
    messages += kStorm;
  }
  state.counters["us_per_message"] =
      benchmark::Counter(static_cast<double>(messages), benchmark::Counter::kIsRate | benchmark::Counter::kInvert,
                         benchmark::Counter::kIs1000);
}
BENCHMARK(BM_Storm_QStandardItemModel)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

int main(int argc, char** argv) {
  BenchEnvironment environment;
  QApplication app(argc, argv);
  environment.InitLogging();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
