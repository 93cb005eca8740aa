#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QTextDocument>
#include <QTextLayout>
#include <benchmark/benchmark.h>
#include <memory>
#include <random>
#include <vector>

#include "chat/ui/desktop/view/chat/text_browser.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "qt_bench_main.h"

namespace {

constexpr int kMessageCount = 1000;
constexpr int kWidth = 260;
constexpr int kEmojiKinds = 8;

// One chat message in the three forms the compared components take.
struct Message {
  std::vector<RichTextBlock> blocks;
  QString html;
  QString plain;
};

QFont MessageFont() {
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setPixelSize(14);
  return font;
}

QPixmap EmojiPixmap(int kind) {
  QPixmap pixmap(20, 20);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(QColor::fromHsv(kind * 45, 200, 240));
  painter.setPen(Qt::NoPen);
  painter.drawEllipse(1, 1, 18, 18);
  return pixmap;
}

std::vector<Message> const& Messages() {
  static const std::vector<Message> messages = [] {
    const QStringList words = QStringLiteral(
                                  "the meeting starts at ten please share your screen I can hear you now "
                                  "thanks everyone for joining today slides are in the channel could you "
                                  "repeat the last point agreed let us move on to questions budget review "
                                  "next week sounds good")
                                  .split(QLatin1Char(' '));
    std::mt19937 random(7);
    std::vector<Message> out;
    for (int m = 0; m < kMessageCount; ++m) {
      Message message;
      // One to five lines at this width: about 10 to 180 characters.
      const int target = 10 + static_cast<int>(random() % 170);
      QString run;
      auto flush = [&] {
        if (run.isEmpty()) return;
        RichTextBlock block = RichTextBlock::Text(run, 14, QStringLiteral("#222222"));
        block.text->max_lines = -1;
        message.blocks.push_back(block);
        message.html += run.toHtmlEscaped();
        message.plain += run;
        run.clear();
      };
      int length = 0;
      while (length < target) {
        const unsigned pick = random() % 20;
        if (pick == 0) {
          flush();
          const QString link = QStringLiteral("https://example.test/room/%1").arg(random() % 100000);
          RichTextBlock block = RichTextBlock::Text(link, 14, QStringLiteral("#1a73e8"));
          block.text->clickable = true;
          block.text->underline = true;
          block.text->max_lines = -1;
          message.blocks.push_back(block);
          message.html += QStringLiteral("<a href=\"%1\">%1</a>").arg(link);
          message.plain += link;
          length += link.size();
        } else if (pick < 3) {
          flush();
          const int kind = static_cast<int>(random() % kEmojiKinds);
          static const std::vector<QPixmap> pixmaps = [] {
            std::vector<QPixmap> all;
            for (int k = 0; k < kEmojiKinds; ++k) all.push_back(EmojiPixmap(k));
            return all;
          }();
          RichTextBlock block(pixmaps[kind], QMargins(1, 0, 1, 0), QSize());
          block.pixmap->alt_text = QStringLiteral("[emoji%1]").arg(kind);
          message.blocks.push_back(block);
          message.html += QStringLiteral("<img src=\"emoji://%1\" width=\"20\" height=\"20\">").arg(kind);
          message.plain += QChar(0xFFFC);
          length += 2;
        } else {
          const QString word = words[static_cast<int>(random() % words.size())];
          run += word + QLatin1Char(' ');
          length += word.size() + 1;
        }
      }
      flush();
      out.push_back(std::move(message));
    }
    return out;
  }();
  return messages;
}

void BM_RichTextLabel(benchmark::State& state) {
  auto const& messages = Messages();
  RichTextLabel label;
  label.setFont(MessageFont());
  long height = 0;
  for (auto _ : state) {
    for (auto const& message : messages) {
      label.SetRichText(message.blocks, kWidth, -1);
      height += label.height();
    }
  }
  benchmark::DoNotOptimize(height);
  state.SetItemsProcessed(state.iterations() * kMessageCount);
}
BENCHMARK(BM_RichTextLabel)->Unit(benchmark::kMillisecond);

void BM_QTextDocument(benchmark::State& state) {
  auto const& messages = Messages();
  QTextDocument document;
  document.setDefaultFont(MessageFont());
  for (int k = 0; k < kEmojiKinds; ++k) {
    document.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("emoji://%1").arg(k)),
                         EmojiPixmap(k).toImage());
  }
  qreal height = 0;
  for (auto _ : state) {
    for (auto const& message : messages) {
      document.setHtml(message.html);
      document.setTextWidth(kWidth);
      height += document.size().height();
    }
  }
  benchmark::DoNotOptimize(height);
  state.SetItemsProcessed(state.iterations() * kMessageCount);
}
BENCHMARK(BM_QTextDocument)->Unit(benchmark::kMillisecond);

void BM_QTextLayout(benchmark::State& state) {
  auto const& messages = Messages();
  const QFont font = MessageFont();
  qreal height = 0;
  for (auto _ : state) {
    for (auto const& message : messages) {
      QTextLayout layout(message.plain, font);
      layout.beginLayout();
      for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(kWidth);
        line.setPosition(QPointF(0, height));
        height += line.height();
      }
      layout.endLayout();
    }
  }
  benchmark::DoNotOptimize(height);
  state.SetItemsProcessed(state.iterations() * kMessageCount);
}
BENCHMARK(BM_QTextLayout)->Unit(benchmark::kMillisecond);

// A list row resized: the same messages laid out again at a new width.
void BM_RichTextLabelRelayout(benchmark::State& state) {
  auto const& messages = Messages();
  std::vector<std::unique_ptr<RichTextLabel>> labels;
  for (auto const& message : messages) {
    labels.push_back(std::make_unique<RichTextLabel>());
    labels.back()->setFont(MessageFont());
    labels.back()->SetRichText(message.blocks, kWidth, -1);
  }
  int width = kWidth;
  for (auto _ : state) {
    width = width == kWidth ? kWidth - 40 : kWidth;
    for (auto& label : labels) label->UpdateRichText(width, -1, false);
  }
  state.SetItemsProcessed(state.iterations() * kMessageCount);
}
BENCHMARK(BM_RichTextLabelRelayout)->Unit(benchmark::kMillisecond);

// The worst a sender can do: a megabyte of text in one message.
QString PlainMegabyte() {
  QString text;
  while (text.size() < 1024 * 1024) text += QStringLiteral("a long pasted log line with words and numbers 12345\n");
  return text;
}

// Text that must be shaped word by word, and words that rarely repeat:
// Arabic and Hebrew letters drawn at random, accented Latin, emoji with skin
// tones.
QString ShapedMegabyte() {
  std::mt19937 random(11);
  QString text;
  while (text.size() < 1024 * 1024) {
    const unsigned kind = random() % 8;
    if (kind == 0) {
      text += QStringLiteral("\U0001F44D") + QChar(0xD83C) + QChar(static_cast<ushort>(0xDFFB + random() % 5));
    } else if (kind == 1) {
      text += QStringLiteral("cafe\u0301");
    } else {
      const ushort base = kind < 6 ? 0x0628 : 0x05D0;
      const int letters = 3 + static_cast<int>(random() % 6);
      for (int i = 0; i < letters; ++i) text += QChar(static_cast<ushort>(base + random() % 26));
    }
    text += random() % 12 == 0 ? QLatin1Char('\n') : QLatin1Char(' ');
  }
  return text;
}

QString const& MegabyteText(int shaped) {
  static const QString plain = PlainMegabyte();
  static const QString complex = ShapedMegabyte();
  return shaped ? complex : plain;
}

// The label laying a whole megabyte out, as it would if a bubble showed it.
void BM_RichTextLabelOneMegabyte(benchmark::State& state) {
  RichTextBlock block = RichTextBlock::Text(MegabyteText(static_cast<int>(state.range(0))), 14);
  block.text->max_lines = -1;
  RichTextLabel label;
  label.setFont(MessageFont());
  for (auto _ : state) {
    label.SetRichText({block}, kWidth, -1);
    benchmark::DoNotOptimize(label.height());
  }
}
BENCHMARK(BM_RichTextLabelOneMegabyte)->ArgName("shaped")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

// The same megabyte as a chat bubble gets it: shortened to what it shows.
// Arrival (content set and laid out), a resize of the panel, a repaint.
void BM_TextBrowserOneMegabyte(benchmark::State& state) {
  QVariantMap entry;
  entry["text"] = MegabyteText(static_cast<int>(state.range(0)));
  TextBrowser browser;
  browser.setFont(MessageFont());
  browser.SetMaxTextWidth(kWidth);
  QImage canvas(kWidth + 20, 1200, QImage::Format_ARGB32_Premultiplied);
  int width = kWidth;
  for (auto _ : state) {
    browser.SetContent({entry}, false);
    width = width == kWidth ? kWidth - 40 : kWidth;
    browser.SetMaxTextWidth(width);
    browser.label()->render(&canvas);
  }
  state.counters["shown"] = browser.shown_length();
}
BENCHMARK(BM_TextBrowserOneMegabyte)->ArgName("shaped")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// What a developer would otherwise reach for: a QTextDocument holding the
// whole message at the bubble's width.
void BM_QTextDocumentOneMegabyte(benchmark::State& state) {
  const QString& text = MegabyteText(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    QTextDocument document;
    document.setDefaultFont(MessageFont());
    document.setPlainText(text);
    document.setTextWidth(kWidth);
    benchmark::DoNotOptimize(document.size());
  }
}
BENCHMARK(BM_QTextDocumentOneMegabyte)->ArgName("shaped")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

// Repainting a laid-out message: walks the stored lines, measures nothing.
void BM_RichTextLabelPaint(benchmark::State& state) {
  auto const& messages = Messages();
  std::vector<std::unique_ptr<RichTextLabel>> labels;
  for (size_t i = 0; i < 100; ++i) {
    labels.push_back(std::make_unique<RichTextLabel>());
    labels.back()->setFont(MessageFont());
    labels.back()->SetRichText(messages[i].blocks, kWidth, -1);
  }
  QImage canvas(kWidth, 120, QImage::Format_ARGB32_Premultiplied);
  for (auto _ : state) {
    for (auto& label : labels) label->render(&canvas);
  }
  state.SetItemsProcessed(state.iterations() * labels.size());
}
BENCHMARK(BM_RichTextLabelPaint)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return RunQtBenchmarks(argc, argv); }
