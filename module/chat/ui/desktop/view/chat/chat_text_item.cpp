#include "chat/ui/desktop/view/chat/chat_text_item.h"

#include <QApplication>
#include <QClipboard>
#include <QLayout>
#include <QMimeData>

#include "base/log/log.h"
#include "chat/ui/desktop/view/chat/text_browser.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "framework/chat/chat_schema_keys.h"

namespace {
constexpr int kBubblePadding = 8;
constexpr int kMinBubbleWidth = 32;
}  // namespace

ChatTextItem::ChatTextItem(QWidget* parent) : ChatItem(parent) {}

QWidget* ChatTextItem::CreateMsgContent(QWidget* parent) {
  browser_ = new TextBrowser(parent);
  browser_->setObjectName("ChatTextItem#msg_content");
  browser_->setMinimumWidth(kMinBubbleWidth);
  browser_->layout()->setContentsMargins(kBubblePadding, kBubblePadding, kBubblePadding, kBubblePadding);
  connect(browser_, &TextBrowser::ContextMenuRequested, this, [this] { RequestContextMenu(false); });
  return browser_;
}

void ChatTextItem::UpdateMsgContentWithMessageInfo(Variant const& message) {
  browser_->Clear();
  browser_->SetMaxTextWidth(GetMaxContentWidth() - 2 * kBubblePadding);
  QList<QVariantMap> entries;
  for (auto const& item : message.Get(ChatTextMessageInfoFields_kPtrInfoArrayItem).AsArray()) {
    const int type = item.GetInt32(ChatTextMessageItemFields_kIntegerItemType, -1);
    QVariantMap entry;
    if (type == 0) {
      entry["text"] = QString::fromStdString(item.GetString(ChatTextMessageItemFields_kStringItemContent));
    } else if (type == 2) {
      entry["text"] = QString::fromStdString(item.GetString(ChatTextMessageItemFields_kStringItemContent));
      entry["link"] = true;
      entry["link_color"] = is_from_self_ ? "#FFFFFF" : "#006FFF";
    } else if (type == 1) {
      const QString text = QString::fromStdString(item.GetString(ChatTextMessageItemFields_kStringItemEmojiText));
      entry["emoji"] = true;
      entry["path"] = QString::fromStdString(item.GetString(ChatTextMessageItemFields_kStringItemEmojiPath));
      entry["title"] = text;
      entry["face_type"] = text;
      entry["index"] = item.GetInt32(ChatTextMessageItemFields_kIntegerItemEmojiIndex, -1);
    } else {
      TXLOG_NOTICE << "unsupport msg type:" << type;
      continue;
    }
    entries.append(entry);
  }
  UpdateBackground();
  browser_->SetContent(entries, is_from_self_);
}

void ChatTextItem::resizeEvent(QResizeEvent* event) {
  ChatItem::resizeEvent(event);
  if (browser_) browser_->SetMaxTextWidth(GetMaxContentWidth() - 2 * kBubblePadding);
}

void ChatTextItem::UpdateBackground() {
  const char* color = is_from_self_ ? (is_selected_ ? "#177EE6" : "#198CFF") : (is_selected_ ? "#DDE1E5" : "#EBEDF2");
  browser_->SetBackground(QColor(color));
}

void ChatTextItem::SetSelected(bool selected, Variant const& record) {
  const bool changed = selected != is_selected_;
  is_selected_ = selected;
  if (changed) UpdateBackground();
  RichTextLabel* label = browser_->label();
  if (!selected) {
    label->ClearContentSelection();
    return;
  }
  if (!record.GetBoolean("select_all", false)) {
    const bool is_down = record.GetBoolean("is_down", true);
    if (record.GetBoolean("is_first", false)) {
      label->UpdateSelectionState(1, QPoint(record.GetInt32("p_x"), record.GetInt32("p_y")), is_down);
    }
    label->UpdateSelectionState(2, QPoint(record.GetInt32("m_x"), record.GetInt32("m_y")), is_down);
  } else {
    label->SelectContent(QPoint(), QPoint(), true);
  }
}

QString ChatTextItem::GetPlainText() { return browser_->GetPlainText(); }

void ChatTextItem::CopyContent() {
  const QString text = GetPlainText();
  if (text.isEmpty()) return;
  auto* mime = new QMimeData();
  mime->setText(text);
  QApplication::clipboard()->setMimeData(mime);
}
