// The chat panel on screen, fed by the simulated meeting.
//
// Storms: 1,000 messages arriving within one second, and 5,000 a second for
// five seconds, into the visible panel. The figures are the main thread's busy
// time (every event the application dispatches, timed at the outermost
// level) as a share of the arrival time, its longest single stall, the list's
// layout passes and full reloads, and whether the list ends at the bottom
// with every message in it. Beside them, the same texts arriving at the same
// rate into a QListView over a QStandardItemModel that follows the bottom.
//
// Memory: what the panel holds per text message (list items, ids, cached
// heights, the view model's record of shown ids), as the heap's growth with
// the panel open minus its growth for the same messages without a panel.
//
// Scroll: mixed messages (text of every length with links and emoji,
// pictures, files, notices) scrolled from the top to the bottom in 60-pixel
// steps, each step repainted: the median and 99th percentile of a step.
//
// Worst messages: one message of a megabyte (plain, and in scripts that must
// be shaped), 300 KB of links and emoji, and a link followed by 30,000
// closing brackets, each arriving in the open panel: the longest single
// stall of its arrival, of a resize of the panel, and of a repaint.
//
// Every figure is the median of several runs, with the range beside it.
//
//   bench_chat_panel [--runs N] [--messages N] [--rows N] [--only storm|memory|scroll|worst]
#include <malloc.h>

#include <random>

#include <QApplication>
#include <QElapsedTimer>
#include <QListView>
#include <QStandardItemModel>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
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
#include "timed_application.h"
#include "sim/scripted_participants.h"

namespace {

const sim::Sender kPeople[] = {{"u1", "Avery Quinn", "", "1400", ""},
                               {"u2", "Jordan Blake", "", "1400", ""},
                               {"u3", "Sam Rivera", "", "1400", ""},
                               {"u4", "Morgan Ellis", "", "1400", ""}};

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

// The median of several runs' figures, with their range.
struct Figure {
  std::vector<double> runs;
  void Add(double value) { runs.push_back(value); }
  double Median() const {
    std::vector<double> sorted = runs;
    std::sort(sorted.begin(), sorted.end());
    return sorted.empty() ? 0 : sorted[sorted.size() / 2];
  }
  double Min() const { return runs.empty() ? 0 : *std::min_element(runs.begin(), runs.end()); }
  double Max() const { return runs.empty() ? 0 : *std::max_element(runs.begin(), runs.end()); }
};

void Print(char const* name, Figure const& figure, char const* unit, char const* goal = "") {
  std::printf("  %-22s %9.2f %-3s [%.2f .. %.2f]  %s\n", name, figure.Median(), unit, figure.Min(), figure.Max(), goal);
}

struct StormResult {
  double busy_share = 0;  // percent of the arrival time
  double stall_ms = 0;
  int layouts = 0;
  int reloads = 0;
  bool complete = false;
};

// Feeds `count` messages over `seconds`, spread as the backend delivers them,
// through `post`; spins until `settled` holds, and times the main thread.
StormResult TimeStorm(TimedApplication& app, int count, int seconds, std::function<void(int)> const& post,
                      std::function<bool()> const& settled) {
  int next = 0;
  QTimer feeder;
  QElapsedTimer clock;
  feeder.setInterval(1);
  QObject::connect(&feeder, &QTimer::timeout, [&] {
    const qint64 due = std::min<qint64>(count, clock.elapsed() * count / (1000 * seconds) + 1);
    while (next < due) post(next++);
    if (next >= count) feeder.stop();
  });
  app.Reset();
  app.Record(true);
  clock.start();
  feeder.start();
  while (next < count || !settled()) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  Spin(200);
  app.Record(false);
  StormResult result;
  result.busy_share = app.busy_ns() / 1e6 / (10.0 * seconds);
  result.stall_ms = app.longest_ns() / 1e6;
  return result;
}

StormResult RunPanelStorm(TimedApplication& app, int count, int seconds) {
  Panel panel;
  panel.Open();
  Spin(300);
  const int reloads_before = panel.view->reload_count();
  const int layouts_before = panel.view->layout_count();
  std::vector<Variant> records;
  records.reserve(count);
  for (int i = 0; i < count; ++i) {
    records.push_back(sim::TextRecord(panel.meeting.meeting().meeting_id(), kPeople[i % 4], TextOf(i)));
  }
  StormResult result = TimeStorm(
      app, count, seconds, [&](int i) { panel.meeting.messages().Post(std::move(records[i])); },
      [&] { return panel.Settled(); });
  result.layouts = panel.view->layout_count() - layouts_before;
  result.reloads = panel.view->reload_count() - reloads_before;
  // The time tip at the top and every message.
  result.complete = panel.view->MessageIds().size() == static_cast<size_t>(count) + 1 &&
                    panel.view->list()->IsScrollBottom();
  panel.Close();
  return result;
}

// What a Qt developer would otherwise write: a model of strings and a list
// view that follows the bottom. Its fast configuration: rows of one height
// (wrapped rows of their own heights lay the whole list out again on every
// scroll to the bottom, which no storm survives), and one scroll a tick.
StormResult RunListViewStorm(TimedApplication& app, int count, int seconds) {
  QListView view;
  QStandardItemModel model;
  view.setModel(&model);
  view.setUniformItemSizes(true);
  view.resize(380, 700);
  view.show();
  Spin(100);
  bool scroll_pending = false;
  StormResult result = TimeStorm(
      app, count, seconds,
      [&](int i) {
        const sim::Sender& who = kPeople[i % 4];
        model.appendRow(new QStandardItem(QString::fromStdString(who.nickname + ": " + TextOf(i))));
        if (scroll_pending) return;
        scroll_pending = true;
        QTimer::singleShot(0, &view, [&] {
          scroll_pending = false;
          view.scrollToBottom();
        });
      },
      [&] { return !scroll_pending; });
  result.complete = model.rowCount() == count;
  return result;
}

size_t HeapInUse() { return mallinfo2().uordblks; }

// Heap growth per message for `count` text messages: with the panel open,
// and without it (the meeting's records and their conversion alone).
void MeasureMemory(int count) {
  auto grow = [count](bool with_panel) {
    Panel panel;
    if (with_panel) {
      panel.Open();
    } else {
      panel.Install();
    }
    Spin(300);
    std::vector<Variant> records;
    for (int i = 0; i < count; ++i) {
      records.push_back(sim::TextRecord(panel.meeting.meeting().meeting_id(), kPeople[i % 4], TextOf(i)));
    }
    malloc_trim(0);
    const size_t before = HeapInUse();
    for (int i = 0; i < count; ++i) panel.meeting.messages().Post(std::move(records[i]));
    if (with_panel) {
      while (!panel.Settled()) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    Spin(300);
    const double per_message = (static_cast<double>(HeapInUse()) - before) / count;
    if (with_panel) {
      panel.Close();
    } else {
      panel.runtime.Unactivate();
      panel.meeting.Uninstall();
    }
    return per_message;
  };
  const double records_only = grow(false);
  const double with_panel = grow(true);
  std::printf("memory: %d text messages\n", count);
  std::printf("  %-22s %9.0f B\n", "record and conversion", records_only);
  std::printf("  %-22s %9.0f B   goal: under 1024 B\n", "held by the panel", with_panel - records_only);
}

void RunStorms(TimedApplication& app, int runs, int count, int seconds, char const* busy_goal, char const* stall_goal) {
  Figure busy, stall, layouts, reloads, qt_busy, qt_stall;
  int complete = 0;
  // A client in a meeting has drawn text and faces long before a storm: a
  // short storm first loads the fonts, glyph caches and face pictures, and
  // is not counted.
  RunPanelStorm(app, 200, 1);
  RunListViewStorm(app, 200, 1);
  for (int run = 0; run < runs; ++run) {
    const StormResult panel = RunPanelStorm(app, count, seconds);
    busy.Add(panel.busy_share);
    stall.Add(panel.stall_ms);
    layouts.Add(panel.layouts);
    reloads.Add(panel.reloads);
    complete += panel.complete ? 1 : 0;
    const StormResult qt = RunListViewStorm(app, count, seconds);
    qt_busy.Add(qt.busy_share);
    qt_stall.Add(qt.stall_ms);
  }
  std::printf("storm: %d messages in %d s into the visible panel, %d runs (median [min .. max])\n", count, seconds,
              runs);
  Print("main thread busy", busy, "%", busy_goal);
  Print("longest stall", stall, "ms", stall_goal);
  Print("layout passes", layouts, "");
  Print("full reloads", reloads, "");
  std::printf("  %-22s %6d of %d runs\n", "at bottom, all there", complete, runs);
  Print("QListView busy", qt_busy, "%");
  Print("QListView stall", qt_stall, "ms");
}

struct ScrollResult {
  size_t rows = 0;
  size_t steps = 0;
  double median = 0;
  double p99 = 0;
  double max = 0;
};

ScrollResult RunScroll(TimedApplication& app, int count) {
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
  ScrollResult result;
  result.rows = panel.view->MessageIds().size();
  result.steps = steps.size();
  result.median = at(0.5);
  result.p99 = at(0.99);
  result.max = steps.back();
  panel.Close();
  return result;
}

void RunScrolls(TimedApplication& app, int runs, int count) {
  Figure median, p99, max;
  ScrollResult last;
  for (int run = 0; run < runs; ++run) {
    last = RunScroll(app, count);
    median.Add(last.median);
    p99.Add(last.p99);
    max.Add(last.max);
  }
  std::printf("scroll: %zu rows, %zu steps of 60 px, each repainted, %d runs (median [min .. max])\n", last.rows,
              last.steps, runs);
  Print("step median", median, "ms");
  Print("step p99", p99, "ms", "goal: at most 4 ms");
  Print("step max", max, "ms", "goal: at most 16 ms");
}


std::string WorstText(int kind) {
  std::string text;
  if (kind == 0) {
    while (text.size() < 1024 * 1024) text += "a long pasted log line with words and numbers 12345\n";
  } else if (kind == 1) {
    // Arabic and Hebrew words drawn at random, accented Latin, emoji with skin tones.
    std::mt19937 random(11);
    QString shaped;
    while (shaped.size() < 512 * 1024) {
      const unsigned pick = random() % 8;
      if (pick == 0) {
        shaped += QStringLiteral("\U0001F44D") + QChar(0xD83C) + QChar(static_cast<ushort>(0xDFFB + random() % 5));
      } else if (pick == 1) {
        shaped += QStringLiteral("cafe\u0301");
      } else {
        const ushort base = pick < 6 ? 0x0628 : 0x05D0;
        for (int i = 3 + static_cast<int>(random() % 6); i > 0; --i) shaped += QChar(static_cast<ushort>(base + random() % 26));
      }
      shaped += random() % 12 == 0 ? QLatin1Char('\n') : QLatin1Char(' ');
    }
    text = shaped.toStdString();
  } else if (kind == 2) {
    for (int i = 0; text.size() < 300 * 1024; ++i) {
      text += "see https://docs.talvex-demo.org/page/" + std::to_string(i) + " [Smile] and www.talvex-demo.org ";
    }
  } else {
    text = "www." + std::string(30000, ')');
  }
  return text;
}

// One worst message into the open panel: the longest stall of its arrival,
// of a resize and of a repaint.
void RunWorst(TimedApplication& app, int runs) {
  static const char* const kNames[] = {"1 MB plain", "1 MB shaped", "300 KB links+emoji", "www. + 30,000 )"};
  std::printf("worst messages into the open panel, %d runs (median [min .. max])\n", runs);
  for (int kind = 0; kind < 4; ++kind) {
    const std::string text = WorstText(kind);
    Figure arrive, resize, repaint;
    for (int run = 0; run < runs; ++run) {
      Panel panel;
      panel.Open();
      Spin(300);
      Variant record = sim::TextRecord(panel.meeting.meeting().meeting_id(), kPeople[0], text);
      app.Reset();
      app.Record(true);
      // Posted from the event loop, as the backend delivers it, so that its
      // conversion is timed too.
      bool posted = false;
      QTimer::singleShot(0, [&] {
        panel.meeting.messages().Post(std::move(record));
        posted = true;
      });
      while (!posted || !panel.Settled()) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
      Spin(200);
      arrive.Add(app.longest_ns() / 1e6);
      app.Reset();
      panel.window->resize(300, 700);
      Spin(100);
      panel.window->resize(380, 700);
      Spin(100);
      resize.Add(app.longest_ns() / 1e6);
      app.Reset();
      panel.window->update();
      Spin(100);
      repaint.Add(app.longest_ns() / 1e6);
      app.Record(false);
      panel.Close();
    }
    std::printf("  %s\n", kNames[kind]);
    Print("arrival stall", arrive, "ms", "goal: at most 16 ms");
    Print("resize stall", resize, "ms", "goal: at most 16 ms");
    Print("repaint stall", repaint, "ms", "goal: at most 16 ms");
  }
}
}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  TimedApplication app(argc, argv);
  Q_INIT_RESOURCE(chat_resources);
  base::log::SetLogLevel(base::log::kLogError);
  int runs = 5;
  int storm = 1000;
  int scroll = 10000;
  QString only;
  for (int i = 1; i + 1 < argc; ++i) {
    if (QString(argv[i]) == "--only") only = argv[i + 1];
    if (QString(argv[i]) == "--runs") runs = std::max(1, std::atoi(argv[i + 1]));
    if (QString(argv[i]) == "--messages") storm = std::atoi(argv[i + 1]);
    if (QString(argv[i]) == "--rows") scroll = std::atoi(argv[i + 1]);
  }
  auto wanted = [&only](char const* section) { return only.isEmpty() || only == section; };
  if (wanted("storm")) {
    RunStorms(app, runs, storm, 1, "goal: at most 2 %", "goal: at most 8 ms");
    RunStorms(app, runs, storm * 5 * 5, 5, "goal: at most 8 %", "goal: at most 12 ms");
  }
  if (wanted("memory")) MeasureMemory(storm * 10);
  if (wanted("scroll")) RunScrolls(app, std::max(1, runs / 2), scroll);
  if (wanted("worst")) RunWorst(app, std::max(3, runs / 2));
  base::threading::LooperThread::ShutdownFileLooper();
  return 0;
}
