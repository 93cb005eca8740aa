#pragma once

#include "chat/ui/desktop/view/list/chat_reuse_list_widget.h"
#include "framework/view/app_view.h"

// The chat history's list: it stays at the bottom while the user is there,
// even when rows measure taller than estimated or the panel is resized, and
// tells its view where the user is.
class ChatMessageListWidget : public ChatReuseListWidget, public WidgetView {
  Q_OBJECT

 public:
  explicit ChatMessageListWidget(QWidget* parent = nullptr);

  bool IsAtBottom() const { return is_at_bottom_; }

 signals:
  void ScrollToBottomSignal();
  void ScrollPosChangedSignal();
  void ScrollToTopSignal();

 protected:
  void OnVerticalScrollValueChanged(int value) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  bool is_at_bottom_ = false;
  int last_height_ = 0;
};
