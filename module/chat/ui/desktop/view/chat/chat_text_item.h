#pragma once

#include "chat/ui/desktop/view/chat/chat_item.h"

class TextBrowser;

// A text message: its runs, links and emoji in a coloured bubble. Selection
// changes the bubble's colour and is drawn by the text itself.
class ChatTextItem : public ChatItem {
  Q_OBJECT

 public:
  explicit ChatTextItem(QWidget* parent = nullptr);

  void SetSelected(bool selected, Variant const& record) override;
  void CopyContent() override;
  QString GetPlainText();
  TextBrowser* browser() const { return browser_; }

 protected:
  QWidget* CreateMsgContent(QWidget* parent) override;
  void UpdateMsgContentWithMessageInfo(Variant const& message) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void UpdateBackground();

  TextBrowser* browser_ = nullptr;
};
