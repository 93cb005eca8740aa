#pragma once

#include "chat/ui/desktop/view/chat/chat_item.h"

class QLabel;
class RichTextLabel;

// The meeting's notice in the list: at most six lines of it, and a row that
// leads to the whole notice when it is longer.
class ChatNoticeItem : public ChatItem {
  Q_OBJECT

 public:
  static constexpr int kContentWidth = 216;
  static constexpr int kMaxLines = 6;

  explicit ChatNoticeItem(QWidget* parent = nullptr);
  RichTextLabel* content_label() const { return content_; }
  QWidget* view_detail_row() const { return detail_row_; }

 signals:
  void ViewDetailClicked();

 protected:
  QWidget* CreateMsgContent(QWidget* parent) override;
  void UpdateMsgContentWithMessageInfo(Variant const& message) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  RichTextLabel* content_ = nullptr;
  QWidget* detail_row_ = nullptr;
};
