// The rich text page: chat messages laid out by RichTextLabel at several
// widths, with links, drawn emoji, CJK, right-to-left text, long words, a line
// limit and a selection, so that the layout can be looked at.
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QVBoxLayout>
#include <cmath>
#include <vector>

#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "gallery_page.h"

namespace {

enum class Emoji { kSmile, kHeart, kStar };

QPixmap DrawEmoji(Emoji kind) {
  QPixmap pixmap(20, 20);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  switch (kind) {
    case Emoji::kSmile:
      painter.setPen(QPen(QColor("#c98a00"), 1));
      painter.setBrush(QColor("#ffcc33"));
      painter.drawEllipse(QRectF(1.5, 1.5, 17, 17));
      painter.setBrush(QColor("#5a3b00"));
      painter.setPen(Qt::NoPen);
      painter.drawEllipse(QRectF(6, 6, 2.5, 3));
      painter.drawEllipse(QRectF(11.5, 6, 2.5, 3));
      painter.setPen(QPen(QColor("#5a3b00"), 1.4));
      painter.setBrush(Qt::NoBrush);
      painter.drawArc(QRectF(5.5, 6, 9, 8), 200 * 16, 140 * 16);
      break;
    case Emoji::kHeart: {
      QPainterPath path;
      path.moveTo(10, 17);
      path.cubicTo(2, 11, 1, 6, 5, 3.5);
      path.cubicTo(7.5, 2, 9.5, 3.5, 10, 5.5);
      path.cubicTo(10.5, 3.5, 12.5, 2, 15, 3.5);
      path.cubicTo(19, 6, 18, 11, 10, 17);
      painter.setPen(Qt::NoPen);
      painter.setBrush(QColor("#e53950"));
      painter.drawPath(path);
      break;
    }
    case Emoji::kStar: {
      QPolygonF star;
      for (int i = 0; i < 10; ++i) {
        const qreal radius = i % 2 == 0 ? 9 : 4;
        const qreal angle = -M_PI / 2 + i * M_PI / 5;
        star << QPointF(10 + radius * std::cos(angle), 10.5 + radius * std::sin(angle));
      }
      painter.setPen(QPen(QColor("#d08a00"), 0.8));
      painter.setBrush(QColor("#ffc83d"));
      painter.drawPolygon(star);
      break;
    }
  }
  return pixmap;
}

RichTextBlock Text(QString const& content, QString const& color = QStringLiteral("#1f1f1f")) {
  RichTextBlock block = RichTextBlock::Text(content, 14, color);
  block.text->max_lines = -1;
  return block;
}

RichTextBlock Link(QString const& url) {
  RichTextBlock block = Text(url, QStringLiteral("#1a6fd6"));
  block.text->clickable = true;
  block.text->underline = true;
  return block;
}

RichTextBlock Image(Emoji kind, QString const& alt) {
  RichTextBlock block(DrawEmoji(kind), QMargins(1, 0, 1, 0), QSize());
  block.pixmap->alt_text = alt;
  return block;
}

RichTextBlock Sender(QString const& name) {
  RichTextBlock block = RichTextBlock::Text(name, 12, QStringLiteral("#6b6b6b"));
  block.text->bold = true;
  block.text->max_lines = 0;
  return block;
}

struct Sample {
  QString sender;
  std::vector<RichTextBlock> blocks;
  int max_lines = -1;
  bool show_selection = false;
};

std::vector<Sample> Samples() {
  return {
      {QStringLiteral("Mira Okafor"),
       {Text(QStringLiteral("Slides are up, have a look before we start ")), Image(Emoji::kSmile, QStringLiteral("[smile]")),
        Text(QStringLiteral(" ")), Link(QStringLiteral("https://docs.example.test/q3-review")),
        Text(QStringLiteral(" thanks!"))}},
      {QStringLiteral("Jun Takeda"), {Text(QStringLiteral("会议将在五分钟后开始，请大家准备好发言内容。谢谢！"))}},
      {QStringLiteral("Layla Haddad"),
       {Text(QStringLiteral("مرحبا بالجميع، سأشارك الشاشة بعد قليل")), Text(QStringLiteral(" ")),
        Image(Emoji::kHeart, QStringLiteral("[heart]"))}},
      {QStringLiteral("Noa Levi"), {Text(QStringLiteral("שלום לכולם, the build is green again"))}},
      {QStringLiteral("Piotr Wrona"),
       {Text(QStringLiteral("Log: ")),
        Text(QStringLiteral("/var/tmp/session-2b41f7e0c9d34a56b8e1/recordings/part-0001-of-0042.bin"))}},
      {QStringLiteral("Ana Souza"),
       {Text(QStringLiteral("Great work team ")), Image(Emoji::kStar, QStringLiteral("[star]")),
        Image(Emoji::kStar, QStringLiteral("[star]")), Image(Emoji::kStar, QStringLiteral("[star]")),
        Text(QStringLiteral(" 👍🏽 🇯🇵 👩‍👩‍👧"))}},
      {QStringLiteral("Ravi Menon"),
       {Text(QStringLiteral("Agenda:\n1. Budget review\n2. Hiring plan\n3. Questions from the floor"))}},
      {QStringLiteral("Long message (two lines at most)"),
       {Text(QStringLiteral("This message goes on and on about the quarterly numbers and keeps going well past the "
                            "two lines that the preview allows, so it is cut"))},
       2},
      {QStringLiteral("Selected text"),
       {Text(QStringLiteral("Drag over text to select it; copy keeps paragraphs and emoji ")),
        Image(Emoji::kSmile, QStringLiteral("[smile]"))},
       -1,
       true},
  };
}

QWidget* Bubble(Sample const& sample, int width, QWidget* parent) {
  auto* frame = new QFrame(parent);
  frame->setObjectName(QStringLiteral("bubble"));
  frame->setStyleSheet(QStringLiteral("#bubble { background: #f1f3f6; border-radius: 8px; }"));
  auto* layout = new QVBoxLayout(frame);
  layout->setContentsMargins(10, 6, 10, 8);
  layout->setSpacing(3);
  auto* sender = new RichTextLabel(frame);
  sender->SetRichText({Sender(sample.sender)}, width, 1);
  layout->addWidget(sender);
  auto* body = new RichTextLabel(frame);
  body->SetContentSelectable(true, true, QStringLiteral("#b3d4fc"));
  body->SetRichText(sample.blocks, width, sample.max_lines);
  if (sample.show_selection) {
    body->SelectContent(QPoint(body->width() / 3, 4), QPoint(body->width() / 2, body->height() - 3), false);
  }
  layout->addWidget(body);
  // The bubble hugs its text, as in the chat panel.
  frame->setFixedSize(frame->sizeHint());
  return frame;
}

QWidget* Column(int width, QWidget* parent) {
  auto* column = new QWidget(parent);
  auto* layout = new QVBoxLayout(column);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  auto* title = new QLabel(QStringLiteral("width %1").arg(width), column);
  title->setStyleSheet(QStringLiteral("color: #888; font-size: 11px;"));
  layout->addWidget(title);
  for (Sample const& sample : Samples()) layout->addWidget(Bubble(sample, width, column), 0, Qt::AlignLeft);
  layout->addStretch(1);
  return column;
}

}  // namespace

GALLERY_PAGE(richtext, "Rich text", [](QWidget* parent) -> QWidget* {
  auto* scroll = new QScrollArea(parent);
  auto* content = new QWidget(scroll);
  content->setObjectName(QStringLiteral("richtext_page"));
  content->setStyleSheet(QStringLiteral("#richtext_page { background: white; }"));
  auto* layout = new QHBoxLayout(content);
  layout->setContentsMargins(12, 12, 12, 12);
  layout->setSpacing(16);
  for (int width : {150, 240, 330}) layout->addWidget(Column(width, content), 0, Qt::AlignTop);
  layout->addStretch(1);
  scroll->setWidget(content);
  scroll->setWidgetResizable(true);
  return scroll;
});
