// The chat input in its states: empty, holding text with emoji and a pasted
// picture, sending by Ctrl+Enter, and turned off by the host.
#include <QDir>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"
#include "gallery_page.h"
#include "uikit/richedit/rich_edit.h"

namespace {

QString SampleDir() {
  const QString dir = QDir(QStandardPaths::writableLocation(QStandardPaths::TempLocation)).filePath("talvex_gallery");
  QDir().mkpath(dir);
  return dir;
}

QString Smile() {
  const QString path = QDir(SampleDir()).filePath("smile.png");
  QImage image(44, 44, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter p(&image);
  p.setRenderHint(QPainter::Antialiasing);
  p.setBrush(QColor("#FFC83D"));
  p.setPen(Qt::NoPen);
  p.drawEllipse(2, 2, 40, 40);
  p.setBrush(QColor("#5A3E00"));
  p.drawEllipse(13, 14, 5, 7);
  p.drawEllipse(26, 14, 5, 7);
  p.setPen(QPen(QColor("#5A3E00"), 3, Qt::SolidLine, Qt::RoundCap));
  p.setBrush(Qt::NoBrush);
  p.drawArc(11, 12, 22, 20, 200 * 16, 140 * 16);
  p.end();
  image.save(path);
  return path;
}

QString Photo() {
  const QString path = QDir(SampleDir()).filePath("photo.png");
  QImage image(480, 300, QImage::Format_RGB32);
  QPainter p(&image);
  QLinearGradient sky(0, 0, 0, 300);
  sky.setColorAt(0, QColor("#5AA9E6"));
  sky.setColorAt(1, QColor("#F8E9A1"));
  p.fillRect(image.rect(), sky);
  p.setBrush(QColor("#3C6E47"));
  p.setPen(Qt::NoPen);
  p.drawEllipse(-80, 200, 400, 220);
  p.drawEllipse(200, 220, 420, 200);
  p.end();
  image.save(path);
  return path;
}

ChatInputWidget* Input(QWidget* parent, QString const& placeholder) {
  auto* input = new ChatInputWidget(parent);
  input->setFixedWidth(360);
  input->SetSendText("Send");
  input->SetPlaceholderText(placeholder);
  return input;
}

}  // namespace

GALLERY_PAGE(input, "Input", [](QWidget* parent) -> QWidget* {
  auto* page = new QWidget(parent);
  auto* layout = new QVBoxLayout(page);
  layout->setSpacing(16);
  auto caption = [&](QString const& text) {
    auto* label = new QLabel(text, page);
    label->setWordWrap(true);
    layout->addWidget(label);
  };

  caption("Empty: the send button is grey until there is something to send.");
  layout->addWidget(Input(page, "Type a message"));

  caption("Text with emoji and a pasted picture, in a taller box.");
  auto* filled = Input(page, "Type a message");
  const QString smile = Smile();
  const QVariantMap emoji{{"image_type", "emoji"}, {"path", smile}, {"index", 0}, {"text", "[Smile]"}};
  filled->edit()->InsertText("Here is the view from the hill ");
  filled->edit()->InsertImage(smile, QSize(22, 22), emoji);
  filled->edit()->InsertImage(smile, QSize(22, 22), emoji);
  filled->edit()->InsertText("\n");
  filled->edit()->InsertImage(Photo(), QSize(), {{"image_type", "image"}});
  filled->SetInputHeight(ChatInputWidget::kMaxHeight);
  filled->SetSendOption(ChatInputWidget::kSendByCtrlEnter);
  layout->addWidget(filled);

  caption("Turned off by the host: the box says why.");
  auto* disabled = Input(page, "Type a message");
  disabled->SetDisabledText("The host has turned off chat for everyone.");
  disabled->SetChatEnabled(false);
  layout->addWidget(disabled);
  layout->addStretch(1);
  return page;
});
