#pragma once

#include "chat/ui/desktop/view/chat/chat_item.h"

class ImageBrowser;

// An image message: the picture scaled into the bubble, its placeholders
// while it is missing or downloading.
class ChatImageItem : public ChatItem {
  Q_OBJECT

 public:
  explicit ChatImageItem(QWidget* parent = nullptr);

  void CopyContent() override;
  ImageBrowser* browser() const { return browser_; }
  // The file the row shows: the first rendition present on disk.
  static QString ImagePathOf(Variant const& message);

 protected:
  QWidget* CreateMsgContent(QWidget* parent) override;
  void UpdateMsgContentWithMessageInfo(Variant const& message) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  ImageBrowser* browser_ = nullptr;
};
