#include <QApplication>
#include <QElapsedTimer>
#include <QTextDocument>
#include <benchmark/benchmark.h>
#include <algorithm>

#include "uikit/richedit/html_parser.h"
#include "qt_bench_main.h"

namespace {

// Counts what the walker reports, so that nothing is optimised away.
class Counter : public CParserOut {
 public:
  void OnParserImage(QString const&) override { ++images; }
  void OnParserText(QString const& text) override { chars += text.size(); }
  void OnParserLineBreak() override { ++lines; }
  long chars = 0, lines = 0, images = 0;
};

// 0: nested 5,000 deep; 1: nested 20,000 deep; 2: a 566 KB table; 3: a 1.9 MB page of paragraphs.
QString Html(int kind) {
  QString html;
  switch (kind) {
    case 0:
    case 1: {
      const int depth = kind == 0 ? 5000 : 20000;
      for (int i = 0; i < depth; ++i) html += "<div><span>";
      html += "bottom";
      for (int i = 0; i < depth; ++i) html += "</span></div>";
      return html;
    }
    case 2: {
      html = "<table>";
      for (int cell = 0; html.size() < 566 * 1024;) {
        html += "<tr>";
        for (int c = 0; c < 8; ++c) html += "<td style=\"border:1px solid\">cell " + QString::number(cell++) + "</td>";
        html += "</tr>";
      }
      return html + "</table>";
    }
    default:
      while (html.size() < 1900 * 1024) {
        html += "<p class=\"MsoNormal\">Minutes of the review: <b>budget</b> &amp; <i>schedule</i>, "
                "see <a href=\"https://example.test/doc\">the document</a>&nbsp;and the figures.<br>"
                "<img src=\"file:///tmp/chart.png\"></p>\n";
      }
      return html;
  }
}

// The whole walk, in the slices the chat input takes (16 K characters), with
// the longest slice reported.
void BM_HtmlWalker(benchmark::State& state) {
  const QString html = Html(static_cast<int>(state.range(0)));
  double longest_ms = 0;
  for (auto _ : state) {
    Counter out;
    CHTMLWalker walker(html, &out);
    QElapsedTimer slice;
    for (bool done = false; !done;) {
      slice.start();
      done = walker.Walk(16 * 1024);
      longest_ms = std::max(longest_ms, slice.nsecsElapsed() / 1e6);
    }
    benchmark::DoNotOptimize(out.chars);
  }
  state.counters["longest_slice_ms"] = longest_ms;
  state.counters["KB"] = html.size() / 1024.0;
}
BENCHMARK(BM_HtmlWalker)->ArgName("kind")->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

// Qt's import, which walks everything before anything can be inserted: the
// stall it causes is its whole time. Nested 20,000 deep it takes tens of
// seconds, so that case is left out.
void BM_QTextDocumentSetHtml(benchmark::State& state) {
  const QString html = Html(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    QTextDocument doc;
    doc.setUndoRedoEnabled(false);
    doc.setHtml(html);
    benchmark::DoNotOptimize(doc.characterCount());
  }
  state.counters["KB"] = html.size() / 1024.0;
}
BENCHMARK(BM_QTextDocumentSetHtml)->ArgName("kind")->Arg(0)->Arg(2)->Arg(3)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

int main(int argc, char** argv) { return RunQtBenchmarks(argc, argv); }
