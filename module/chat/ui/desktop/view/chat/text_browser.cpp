#include "chat/ui/desktop/view/chat/text_browser.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QPainter>
#include <QPixmapCache>
#include <QUrl>

#include "base/log/log.h"
#include "chat/ui/desktop/view/chat/long_text_reader.h"
#include "chat/util/utils.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"

namespace {

constexpr int kEmojiSize = 22;
constexpr int kLineHeight = 22;
constexpr int kPixelSize = 14;
constexpr qreal kBubbleRadius = 6;

// Emoji images are shared by every row that shows them.
QPixmap EmojiPixmap(QString const& path) {
  QPixmap pixmap;
  if (path.isEmpty()) return pixmap;
  if (QPixmapCache::find("emoji:" + path, &pixmap)) return pixmap;
  QPixmap loaded;
  if (loaded.load(path)) {
    pixmap = loaded.scaled(kEmojiSize * 2, kEmojiSize * 2, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    pixmap.setDevicePixelRatio(2.0);
    QPixmapCache::insert("emoji:" + path, pixmap);
  }
  return pixmap;
}

// How much of a long message the bubble still shows.
struct ShownBudget {
  int chars = TextBrowser::kShownCharLimit;
  int paragraphs = TextBrowser::kShownParagraphLimit;

  // The length of `text`'s shown beginning: up to the character budget or
  // before the line break past the paragraph budget, never inside a
  // surrogate pair or before a combining mark.
  int Take(QString const& text) {
    const int limit = qMin(text.size(), qMax(chars, 0));
    int cut = limit;
    for (int i = 0; i < limit; ++i) {
      if (text[i] != QLatin1Char('\n')) continue;
      if (--paragraphs <= 0) {
        cut = i;
        break;
      }
    }
    if (cut < text.size()) {
      while (cut > 0 && (text[cut].isLowSurrogate() || text[cut].isMark())) --cut;
      chars = 0;
    } else {
      chars -= cut;
    }
    return cut;
  }
};

QString ShowAllText() { return QObject::tr("Show all"); }

// A run drawn after a shortened message: never copied, one piece.
RichTextBlock Decoration(QString const& text, QString const& color, bool clickable) {
  RichTextBlock block(RichTextBlock::kText, RichTextBlock::kAlignCenter, QSize(0, kLineHeight));
  block.text = std::make_shared<RichTextPropertyText>();
  block.text->content = text;
  block.text->pixel_size = kPixelSize;
  block.text->color = color;
  block.text->decoration = true;
  block.text->clickable = clickable;
  block.text->underline = clickable;
  if (clickable) block.margins = QMargins(6, 0, 2, 0);
  return block;
}

}  // namespace

TextBrowser::TextBrowser(QWidget* parent) : QWidget(parent) {
  auto* layout = new QHBoxLayout(this);
  layout->setSpacing(0);
  layout->setContentsMargins(0, 0, 0, 0);
  label_ = new RichTextLabel(this);
  label_->setObjectName("Content");
  label_->setAccessibleName("content");
  label_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(label_, &QWidget::customContextMenuRequested, this, [this] { emit ContextMenuRequested(); });
  connect(label_, &RichTextLabel::ClickText, this, [this](RichTextBlock block, QString text) {
    Q_UNUSED(text);
    if (!block.text) return;
    if (block.text->decoration) {
      OpenReader();
      return;
    }
    OnClickLinkText(block.text->content);
  });
  layout->addWidget(label_);
}

void TextBrowser::SetContent(QList<QVariantMap> const& entries, bool is_self) {
  const QString color = is_self ? "#FFFFFF" : "#000000";
  const QString selection = is_self ? "#549EFF" : "#ABD0FF";
  plain_text_.clear();
  shortened_ = false;
  shown_length_ = 0;
  ShownBudget budget;
  std::vector<RichTextBlock> blocks;
  blocks.reserve(qMin(entries.size(), 256));
  for (QVariantMap const& entry : entries) {
    if (entry.value("emoji").toBool()) {
      const QString face = entry.value("face_type").toString();
      plain_text_ += face;
      if (shortened_) continue;
      if (budget.chars <= 0) {
        shortened_ = true;
        continue;
      }
      --budget.chars;
      shown_length_ += face.size();
      RichTextBlock block(EmojiPixmap(entry.value("path").toString()), QMargins(), QSize(kEmojiSize, kEmojiSize));
      block.pixmap->alt_text = entry.value("title").toString();
      block.pixmap->ellipsis_color = color;
      blocks.push_back(std::move(block));
      continue;
    }
    const QString text = entry.value("text").toString();
    if (text.isEmpty()) continue;
    plain_text_ += text;
    if (shortened_) continue;
    const int shown = budget.Take(text);
    shown_length_ += shown;
    if (shown < text.size()) shortened_ = true;
    if (shown == 0) continue;
    RichTextBlock block(RichTextBlock::kText, RichTextBlock::kAlignCenter, QSize(0, kLineHeight));
    block.text = std::make_shared<RichTextPropertyText>();
    block.text->content = shown < text.size() ? text.left(shown) : text;
    block.text->pixel_size = kPixelSize;
    // Runs wrap over as many lines as they need.
    block.text->max_lines = -1;
    if (entry.value("link").toBool()) {
      block.text->underline = true;
      block.text->clickable = true;
      block.text->color = entry.value("link_color").toString();
      block.margins = QMargins(2, 0, 2, 0);
    } else {
      block.text->color = color;
    }
    blocks.push_back(std::move(block));
  }
  if (shortened_) {
    const QString link_color = is_self ? "#FFFFFF" : "#006FFF";
    blocks.push_back(Decoration(QStringLiteral("..."), color, false));
    blocks.push_back(Decoration(ShowAllText(), link_color, true));
    TXLOG_VERBOSE << "long message shortened, shown " << shown_length_ << " of "
                                  << plain_text_.size();
  }
  label_->SetRichText(blocks, max_text_width_, -1);
  label_->SetContentSelectable(true, false, selection);
}

void TextBrowser::SetMaxTextWidth(int width) {
  max_text_width_ = qMax(1, width);
  // Nothing to lay out before the first content.
  if (!label_->source_blocks().empty()) label_->UpdateRichText(max_text_width_, -1);
}

void TextBrowser::Clear() {
  plain_text_.clear();
  label_->ClearContentSelection();
}

void TextBrowser::SetBackground(QColor const& color) {
  if (color == background_) return;
  background_ = color;
  update();
}

void TextBrowser::paintEvent(QPaintEvent*) {
  if (background_.alpha() == 0) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(background_);
  painter.drawRoundedRect(QRectF(rect()), kBubbleRadius, kBubbleRadius);
}

QString TextBrowser::GetPlainText() {
  if (label_->HasContentSelection()) {
    QString selected = label_->CopyContentSelection();
    if (shortened_ && !selected.isEmpty()) {
      // Only white space after the selection: it runs to the cut, and the
      // rest of the message goes with it.
      const QString after = label_->selection().TextAfterSelection();
      if (after.trimmed().isEmpty()) selected += after + plain_text_.mid(shown_length_);
    }
    if (!selected.isEmpty()) {
      TXLOG_INFO << "selection:" << selected.toStdString();
      return selected;
    }
  }
  TXLOG_INFO << "plain text:" << plain_text_.toStdString();
  return plain_text_;
}

void TextBrowser::OpenReader() {
  if (plain_text_.isEmpty()) return;
  auto* reader = new LongTextReader(plain_text_, window());
  reader->setAttribute(Qt::WA_DeleteOnClose);
  reader->show();
  reader->raise();
  reader->activateWindow();
}

void TextBrowser::OnClickLinkText(QString const& text) {
  const std::string address = chat::WebAddressOf(text.toStdString());
  if (address.empty()) return;
  QDesktopServices::openUrl(QUrl(QString::fromStdString(address), QUrl::StrictMode));
}
