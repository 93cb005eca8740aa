// Searching the member list of a webinar of 10,000 attendees and 20
// panelists, as the local host types a few letters: from the end of the
// search delay to the published list (the client's provider searching, the
// view model sorting and building the sections), the view model alone on a
// ready answer, and to the repainted popup. On a manual clock, so the 500 ms
// delay costs nothing. Beside it: what a Qt developer might write instead, a
// QSortFilterProxyModel over a QStandardItemModel of the same names, sorted
// locale-aware, filtered by the same text, painted in a QListView.
#include <benchmark/benchmark.h>

#include <QListView>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>

#include <memory>

#include "base/timer/tx_timer.h"
#include "bench_environment.h"
#include "chat/ui/desktop/view/private_chat/chat_member_select_view.h"
#include "chat/viewmodel/private_chat_members_view_model.h"
#include "framework/meeting/meeting_context.h"
#include "qt_bench_main.h"
#include "sim/meeting_sim.h"
#include "sim/roster.h"

namespace {

using VM = chat::PrivateChatMembersViewModel;
constexpr int kAttendees = 10000;
constexpr int kPanelists = 20;
// Two letters (many found), three letters, and most of a name (few found).
const char* const kQueries[] = {"an", "ber", "ada ca"};

BenchEnvironment& Environment() {
  static BenchEnvironment environment(base::log::kLogError);
  return environment;
}

struct Webinar {
  talvex_common::utils::timer::ManualTimerClock clock;
  sim::MeetingSimulator meeting;
  Webinar() {
    Environment().InitLogging();
    meeting.Install();
    meeting.context().is_webinar = true;
    meeting.context().self_role = talvex::MeetingContext::kRoleHost;
    meeting.SetRecording(false);
    meeting.member_provider().set_latency_ms(0);
    sim::RosterOptions roster;
    roster.panelists = kPanelists;
    roster.attendees = kAttendees;
    sim::PopulateRoster(meeting, roster);
    meeting.meeting().Join();
  }
};

size_t Found(Variant const& list) {
  return list.Get("in_meeting_info").Get("user_list").Size() + list.Get("waiting_member_info").Get("user_list").Size();
}

void Search(VM& vm, char const* text) {
  Variant params = Variant::Map{{"search_text", text}};
  vm.Handle(VM::kActionSearchTextChanged, &params);
}

// Typing happens untimed; timed is the delay's end, the provider's answer
// and the published list. Each round first leaves the search (the whole list
// of ten thousand is built again, untimed), so the rounds are few and fixed.
void BM_SearchToPublishedList(benchmark::State& state) {
  Webinar webinar;
  auto vm = std::make_shared<VM>();
  vm->DidCreated(nullptr);
  vm->DidAttached(nullptr);
  webinar.clock.Advance(50);
  const char* query = kQueries[state.range(0)];
  for (auto _ : state) {
    state.PauseTiming();
    Search(*vm, "");  // out of the search, so that each round searches anew
    webinar.clock.Advance(VM::kSearchDelayMs);
    Search(*vm, query);
    webinar.clock.Advance(VM::kSearchDelayMs - 1);
    const size_t before = vm->PropSetCount(VM::kPropMemberList);
    state.ResumeTiming();
    webinar.clock.Advance(1);
    if (vm->PropSetCount(VM::kPropMemberList) == before) state.SkipWithError("no list published");
  }
  state.counters["rows"] = static_cast<double>(Found(vm->PickPropValue(VM::kPropMemberList)));
  vm->DidDetached();
}
BENCHMARK(BM_SearchToPublishedList)->DenseRange(0, 2)->Iterations(20)->Unit(benchmark::kMillisecond);

// The view model's own share: the provider's answer is ready and fired again.
void BM_ViewModelOnReadyAnswer(benchmark::State& state) {
  Webinar webinar;
  auto vm = std::make_shared<VM>();
  vm->DidCreated(nullptr);
  vm->DidAttached(nullptr);
  Variant answer;
  webinar.meeting.member_provider().Subscribe(0, 99, std::make_shared<framework::EventHandler>(
                                                         [&answer](Variant const* p) { answer = *p; }));
  Search(*vm, kQueries[state.range(0)]);
  webinar.clock.Advance(VM::kSearchDelayMs + 10);
  for (auto _ : state) vm->OnEventSections(&answer);
  state.counters["rows"] = static_cast<double>(Found(vm->PickPropValue(VM::kPropMemberList)));
  webinar.meeting.member_provider().Unsubscribe(99);
  vm->DidDetached();
}
BENCHMARK(BM_ViewModelOnReadyAnswer)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

// Through the popup: the list published, the lines rebuilt, the popup painted.
void BM_SearchToPaintedPopup(benchmark::State& state) {
  Webinar webinar;
  auto* popup = new QtView::ChatMemberSelectView(1);
  popup->PopupAbove(QPoint(100, 500));
  webinar.clock.Advance(50);
  popup->repaint();
  const char* query = kQueries[state.range(0)];
  for (auto _ : state) {
    state.PauseTiming();
    Search(*popup->view_model(), "");
    webinar.clock.Advance(VM::kSearchDelayMs);
    popup->repaint();
    Search(*popup->view_model(), query);
    webinar.clock.Advance(VM::kSearchDelayMs - 1);
    state.ResumeTiming();
    webinar.clock.Advance(1);
    popup->repaint();
  }
  state.counters["lines"] = popup->model()->rowCount();
  delete popup;
}
BENCHMARK(BM_SearchToPaintedPopup)->DenseRange(0, 2)->Iterations(20)->Unit(benchmark::kMillisecond);

// The same names in the Qt models a developer might pick.
struct QtList {
  QStandardItemModel source;
  QSortFilterProxyModel proxy;
  QListView view;
  QtList() {
    for (int i = 0; i < kPanelists + kAttendees; ++i) {
      source.appendRow(new QStandardItem(QString::fromStdString(sim::RosterName(i))));
    }
    proxy.setSourceModel(&source);
    proxy.setSortLocaleAware(true);
    proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
    proxy.sort(0);
    view.setModel(&proxy);
    view.resize(QtView::ChatMemberSelectView::kWidth, QtView::ChatMemberSelectView::kHeight);
    view.show();
    view.repaint();
  }
};

void BM_QtProxyFilter(benchmark::State& state) {
  QtList qt;
  const QString query = kQueries[state.range(0)];
  for (auto _ : state) {
    state.PauseTiming();
    qt.proxy.setFilterFixedString(QString());
    state.ResumeTiming();
    qt.proxy.setFilterFixedString(query);
  }
  state.counters["rows"] = qt.proxy.rowCount();
}
BENCHMARK(BM_QtProxyFilter)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void BM_QtProxyFilterToPaintedList(benchmark::State& state) {
  QtList qt;
  const QString query = kQueries[state.range(0)];
  for (auto _ : state) {
    state.PauseTiming();
    qt.proxy.setFilterFixedString(QString());
    qt.view.repaint();
    state.ResumeTiming();
    qt.proxy.setFilterFixedString(query);
    qt.view.repaint();
  }
  state.counters["rows"] = qt.proxy.rowCount();
}
BENCHMARK(BM_QtProxyFilterToPaintedList)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  Environment();
  return RunQtBenchmarks(argc, argv);
}
