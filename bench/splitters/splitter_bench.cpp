#include <QApplication>
#include <QRegularExpression>
#include <benchmark/benchmark.h>
#include <memory>
#include <string>

#include "framework/chat/chat_utils.h"
#include "sim/meeting_sim.h"
#include "qt_bench_main.h"

namespace {

using talvex::ChatUtils;

// A chat text of about `bytes` UTF-8 bytes: words, links, face shortcuts and
// Chinese, as a long paste into a meeting's chat looks.
// With `faces` false it holds links but no shortcut, so that nothing splits
// it before the link splitter sees it whole.
std::string MixedText(size_t bytes, bool faces = true) {
  static char const* const pieces[] = {
      "please see ", "https://docs.example.com/q3/review?id=42&tab=2", " and ", "[Smile]", " 会议纪要在这里 ",
      "www.example.org/a_(b)", ", thanks. ", "[ThumbsUp]", " (see http://x.io/p) ", "[Unknown] ",
  };
  constexpr size_t kPieces = sizeof(pieces) / sizeof(*pieces);
  std::string text;
  for (size_t i = 0; text.size() < bytes; ++i) {
    char const* piece = pieces[i % kPieces];
    if (!faces && piece[0] == '[') continue;
    text += piece;
  }
  text.resize(bytes);
  // Never end inside a UTF-8 sequence.
  while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) text.pop_back();
  if (!text.empty() && (static_cast<unsigned char>(text.back()) & 0x80)) text.pop_back();
  return text;
}

// The simulated meeting's face model (570) answers the emoji half.
sim::MeetingSimulator& Meeting() {
  static auto* meeting = [] {
    auto* m = new sim::MeetingSimulator();
    m->Install();
    m->faces().Load();
    return m;
  }();
  return *meeting;
}

void SetBytes(benchmark::State& state, size_t bytes) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
  state.counters["KB"] = static_cast<double>(bytes) / 1024.0;
}

// range(0): kilobytes; range(1): 1 with face shortcuts, 0 links and text only.
void BM_ParseMessageContext(benchmark::State& state) {
  Meeting();
  const std::string text = MixedText(static_cast<size_t>(state.range(0)) * 1024, state.range(1) != 0);
  size_t items = 0;
  for (auto _ : state) {
    Variant out = ChatUtils::ParseMessageContext(text);
    items = out.Size();
    benchmark::DoNotOptimize(out);
  }
  state.counters["items"] = static_cast<double>(items);
  SetBytes(state, text.size());
}
BENCHMARK(BM_ParseMessageContext)
    ->ArgNames({"KB", "faces"})
    ->ArgsProduct({{3, 30, 300}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

// What a developer would write instead: one pattern for links and one for
// shortcuts, matched over the whole text, building the same pieces.
void BM_QRegularExpression(benchmark::State& state) {
  const std::string text = MixedText(static_cast<size_t>(state.range(0)) * 1024, state.range(1) != 0);
  static const QRegularExpression pattern(
      QStringLiteral("(?:https?://|www\\.)[^\\s\"<>`{}|\\\\^\\[]+|\\[[^\\[\\]\\s]{1,16}\\]"),
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
  size_t items = 0;
  for (auto _ : state) {
    const QString qtext = QString::fromStdString(text);
    Variant out(base::variant::kVariantTypeArray);
    int last = 0;
    for (auto it = pattern.globalMatch(qtext); it.hasNext();) {
      const QRegularExpressionMatch match = it.next();
      if (match.capturedStart() > last) {
        out.Add(Variant::Map{{"item_type", 0}, {"item_content", qtext.mid(last, match.capturedStart() - last).toStdString()}});
      }
      const bool face = qtext.at(match.capturedStart()) == QLatin1Char('[');
      out.Add(Variant::Map{{"item_type", face ? 1 : 2}, {"item_content", match.captured().toStdString()}});
      last = match.capturedEnd();
    }
    if (last < qtext.size()) out.Add(Variant::Map{{"item_type", 0}, {"item_content", qtext.mid(last).toStdString()}});
    items = out.Size();
    benchmark::DoNotOptimize(out);
  }
  state.counters["items"] = static_cast<double>(items);
  SetBytes(state, text.size());
}
BENCHMARK(BM_QRegularExpression)
    ->ArgNames({"KB", "faces"})
    ->ArgsProduct({{3, 30, 300}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

// Texts shaped to make a splitter go back over what it has read.
std::string Hostile(int kind) {
  switch (kind) {
    case 0:
      return "www." + std::string(30000, ')');
    case 1:
      return std::string(300000, '[');
    case 2:
      return "[" + std::string(300000, '[') + "]";
    default: {
      std::string text;
      while (text.size() < 300000) text += "http://a.io/";
      return text;
    }
  }
}

void BM_ParseHostileText(benchmark::State& state) {
  Meeting();
  const std::string text = Hostile(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(ChatUtils::ParseMessageContext(text));
  SetBytes(state, text.size());
}
// 0: "www." and 30,000 ")"; 1: 300,000 "["; 2: the same closed once; 3: 25,000 links back to back.
BENCHMARK(BM_ParseHostileText)->ArgName("kind")->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return RunQtBenchmarks(argc, argv); }
