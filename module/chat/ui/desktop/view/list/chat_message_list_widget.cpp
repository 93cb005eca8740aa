#include "chat/ui/desktop/view/list/chat_message_list_widget.h"

#include <QScrollBar>
#include <QSignalBlocker>

ChatMessageListWidget::ChatMessageListWidget(QWidget* parent) : ChatReuseListWidget(parent) {
  QWidget* content = ContentWidget();
  content->setObjectName("ChatMessageListContentWidget");
  content->setAttribute(Qt::WA_StyledBackground, true);
  content->setStyleSheet("#ChatMessageListContentWidget { background: transparent; }");
  SetMargins(QMargins(0, 0, 0, 24));
  verticalScrollBar()->setContextMenuPolicy(Qt::NoContextMenu);
}

void ChatMessageListWidget::OnVerticalScrollValueChanged(int value) {
  QScrollBar* bar = verticalScrollBar();
  is_at_bottom_ = value == bar->maximum();
  ChatReuseListWidget::OnVerticalScrollValueChanged(value);
  if (is_at_bottom_) {
    // Rows laid out just now may have measured taller than their estimate.
    if (bar->value() != bar->maximum()) {
      const QSignalBlocker blocker(this);
      ScrollToBottom();
    }
    emit ScrollToBottomSignal();
  } else if (value == bar->minimum()) {
    emit ScrollToTopSignal();
  } else {
    emit ScrollPosChangedSignal();
  }
}

void ChatMessageListWidget::resizeEvent(QResizeEvent* event) {
  ChatReuseListWidget::resizeEvent(event);
  const int height = ListHeight();
  if (is_at_bottom_ && height != last_height_) {
    last_height_ = height;
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
  }
}

void ChatMessageListWidget::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (is_at_bottom_) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}
