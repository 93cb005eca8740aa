#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <memory>
#include <string>

#include "base/variant/variant.h"

class QBoxLayout;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QSpacerItem;
class QTimer;
class QVBoxLayout;
class QFPlainLabel;
class QTPaintRectHelper;
class QtAvatarView;
class RotateImageWidget;

// The shell of one message in the chat list: the avatar on the sender's
// side, the sender line, the bubble that a subclass fills, the sending or
// failure icon, the "more" button and the tail line under the bubble. Tips
// take the centred frame without avatar or sender.
class ChatItem : public QWidget {
  Q_OBJECT

 public:
  // The shell layouts.
  enum MsgType : int { kMsgTip = 0, kMsgNormal = 1, kMsgPrivate = 2 };
  enum MsgStatus : int { kStatusSending = 1, kStatusSent = 2, kStatusFailed = 3 };
  static constexpr int kSendingSpinnerDelayMs = 1000;
  static constexpr int kHoverCheckMs = 500;

  explicit ChatItem(QWidget* parent = nullptr);
  ~ChatItem() override;

  // 0 for a tip, 2 for a private message, else 1.
  static int GetChatMsgType(Variant const& message);
  // The height reserved for a row before any widget exists.
  static int GetChatItemHeight(Variant const& message, int content_width);
  // The same from what it depends on: the kind, a private label, a tail line.
  static int EstimateHeight(int chat_type, bool is_private, bool has_tail);

  // Shows `message` (a row's published info). The first call builds the
  // frame; later calls, on a recycled item, rebind the content.
  void SetMessageInfo(Variant const& message);
  QSize sizeHint() const override;
  int GetMaxContentWidth() const;

  virtual void UpdateMsgData(Variant const& message);
  // Puts the message on the clipboard.
  virtual void CopyContent() {}
  virtual QWidget* GetMessageContentWidget() { return content_widget_; }
  virtual void SetSelected(bool selected, Variant const& record);
  virtual void OnCreateMessageContent() {}
  virtual void ConnectSignals() {}
  virtual void UpdateMsgStatus(int status, int reason);

  bool is_from_self() const { return is_from_self_; }
  std::string const& item_msg_id() const { return item_msg_id_; }
  int chat_item_kind() const { return chat_item_kind_; }
  bool is_selected() const { return is_selected_; }
  Variant const& message() const { return message_; }
  // What tests and the list look at.
  QFPlainLabel* sender_label() const { return sender_label_; }
  QLabel* tail_label() const { return tail_label_; }
  RotateImageWidget* status_icon() const { return status_icon_; }
  bool IsStatusIconShown() const;
  QWidget* left_avatar() const;
  QWidget* right_avatar() const;
  QWidget* mask_widget() const { return mask_widget_.data(); }
  QPushButton* more_button() const { return more_btn_; }
  void SetMenuOpen(bool open) { menu_open_ = open; }

 signals:
  void ChatItemSizeChanged();
  // The context menu of the message: "from_more", "msg_id", "pt_x", "pt_y", "is_self".
  void OnCustomContextMenuRequested(Variant const& params);
  // A press on the avatar: "msg_id", "pt_x", "pt_y".
  void ChatItemMenuRequested(Variant const& params);
  // Something in the bubble asks the message's view model for `action`
  // (opening a card's app, a notice's page, retrying a picture).
  void ActionRequested(quint32 action, Variant const& params);
  // A file's card was clicked: its page, "msg_id".
  void FilePreviewRequested(Variant const& params);

 protected:
  virtual QWidget* CreateMsgContent(QWidget* parent) = 0;
  virtual void UpdateMsgContentWithMessageInfo(Variant const& message) = 0;

  void enterEvent(QEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

  // Sends the context menu request at the global cursor position.
  void RequestContextMenu(bool from_more, Variant extra = Variant());
  // Asks the row's view model for `action` about this message: "msg_id".
  void RequestAction(quint32 action);

  bool is_from_self_ = false;
  std::string item_msg_id_;
  int64_t msg_status_ = 0;
  bool is_status_enabled_ = true;
  bool is_selected_ = false;
  int chat_item_kind_ = 0;
  Variant message_;
  QWidget* content_widget_ = nullptr;

 private:
  void CreateFrame();
  void ArrangeForSender();
  void UpdateSenderAndAvatar();
  void UpdateSenderText();
  void UpdateTail();
  void UpdateStatusIcon();
  void OnHoverTimer();
  void DropMask();

  int msg_type_ = kMsgNormal;
  // The side the bubble was last arranged for: 1 one's own, 0 others', -1 none yet.
  int arranged_side_ = -1;
  bool frame_created_ = false;
  QVBoxLayout* root_layout_ = nullptr;
  QHBoxLayout* row_layout_ = nullptr;
  QHBoxLayout* message_layout_ = nullptr;
  QHBoxLayout* sender_layout_ = nullptr;
  QtAvatarView* avatar_left_ = nullptr;
  QtAvatarView* avatar_right_ = nullptr;
  QWidget* sender_container_ = nullptr;
  QFPlainLabel* sender_label_ = nullptr;
  QWidget* message_container_ = nullptr;
  QWidget* status_container_ = nullptr;
  RotateImageWidget* status_icon_ = nullptr;
  QPushButton* more_btn_ = nullptr;
  QWidget* tail_container_ = nullptr;
  QLabel* tail_label_ = nullptr;
  bool is_sending_delayed_ = false;
  QTimer* show_sending_timer_ = nullptr;
  QTimer* hover_timer_ = nullptr;
  bool hovering_ = false;
  bool menu_open_ = false;
  QPointer<QWidget> mask_widget_;
  std::unique_ptr<QTPaintRectHelper> mask_paint_helper_;
};
