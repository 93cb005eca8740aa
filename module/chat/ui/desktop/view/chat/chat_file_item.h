#pragma once

#include "chat/ui/desktop/view/chat/chat_item.h"

class QLabel;
class QPushButton;

// A file message: kind icon, name, size and state line, the transfer's
// progress behind them, and the button of the next step (cancel, download,
// retry). A click on the card opens the file's page.
class ChatFileItem : public ChatItem {
  Q_OBJECT

 public:
  static constexpr int kCardWidth = 240;
  static constexpr int kCardHeight = 64;

  explicit ChatFileItem(QWidget* parent = nullptr);

  void CopyContent() override;
  QLabel* title_label() const { return title_; }
  QLabel* sub_title_label() const { return sub_title_; }
  QWidget* progress_bar() const { return progress_; }
  QPushButton* operation_button() const { return operation_; }
  // The resource of the kind icon for `icon_type`.
  static QString IconOf(int icon_type);
  // The button's icon name for a transfer state, "" for none.
  static QString OperationIconOf(int status);

 signals:
  void OperationClicked(int status);

 protected:
  QWidget* CreateMsgContent(QWidget* parent) override;
  void UpdateMsgContentWithMessageInfo(Variant const& message) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void UpdateProgress();

  QWidget* container_ = nullptr;
  QWidget* progress_ = nullptr;
  QLabel* icon_ = nullptr;
  QLabel* title_ = nullptr;
  QLabel* sub_title_ = nullptr;
  QPushButton* operation_ = nullptr;
  double progress_value_ = 0;
  bool progress_visible_ = false;
  int status_ = -1;
};
