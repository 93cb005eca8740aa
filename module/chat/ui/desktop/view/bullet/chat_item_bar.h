#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "base/timer/tx_timer.h"
#include "base/variant/variant.h"
#include "uikit/reuse/qf_widget.h"

class QFImagePushButton;
class QLineEdit;
class QPushButton;
class QHBoxLayout;

// The bar at the foot of the floating chat: picture-in-picture, the emoji
// button, a one-line reply box and the fold arrow. Collapsed it shows its
// buttons; expanded, the reply box too.
class ChatItemBar : public QFWidget {
  Q_OBJECT

 public:
  static constexpr int kHeight = 30;
  static constexpr int kEditWidth = 180;
  static constexpr int kReceiverWidth = 96;
  static constexpr int kEmptyCollapseMs = 1000;

  explicit ChatItemBar(QWidget* parent = nullptr);
  ~ChatItemBar() override;

  void UpdateUiData(Variant const& data);
  void UpdatePicInPicUIData(Variant const* data);
  void UpdateQuickReplyDisable(Variant const& data);
  // The whole bar refuses replies (only the host speaks, or muted).
  void SetChatDisabled(bool disabled);
  void ExpandChatBar(bool expand);
  // The arrow's text beside it, shown while the overlay is unfolded.
  void SetExpandTextVisible(bool show);
  // The last bullet left: in a second the bar collapses, unless it has focus.
  void ResetEmptyTimer();
  void CancelEmptyTimer();
  void SetPicInPicVisible(bool visible);
  void SetText(QString const& text);
  QString text() const;

  bool is_expanded() const { return is_expand_; }
  bool is_chat_disabled() const { return is_disable_chat_; }
  bool has_empty_timer() const { return empty_timer_ != nullptr; }
  bool empty_timer_active() const { return empty_timer_ && empty_timer_->IsActive(); }
  // The width the bar takes expanded.
  int expanded_width() const;
  QLineEdit* edit() const { return chat_edit_; }
  QFImagePushButton* emoji_button() const { return emoji_btn_; }
  QFImagePushButton* pic_in_pic_button() const { return pic_in_pic_btn_; }
  QPushButton* receiver_button() const { return receiver_btn_; }
  // The receiver of a reply, shown while the bar is expanded.
  void SetReceiver(QString const& name, bool is_private);
  QPushButton* expand_button() const { return expand_btn_; }

  std::function<void(QString const&)> on_send;
  std::function<void(QString const&)> on_text_changed;
  std::function<void()> on_toggle_fold;
  std::function<void()> on_text_click;
  std::function<void()> on_emoji_click;
  std::function<void()> on_receiver_click;
  std::function<void(bool)> on_pic_in_pic;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void InitUi();
  void RefreshArrow();
  void RefreshWidth();

  QHBoxLayout* layout_ = nullptr;
  QHBoxLayout* inner_ = nullptr;
  QFImagePushButton* pic_in_pic_btn_ = nullptr;
  QWidget* pic_in_pic_separator_ = nullptr;
  QFImagePushButton* emoji_btn_ = nullptr;
  QLineEdit* chat_edit_ = nullptr;
  QPushButton* receiver_btn_ = nullptr;
  QWidget* edit_separator_ = nullptr;
  QPushButton* expand_btn_ = nullptr;
  bool is_expand_ = false;
  bool is_disable_chat_ = false;
  bool show_expand_text_ = false;
  bool pic_in_pic_on_ = false;
  QString arrow_title_;
  QString fold_tips_;
  QString text_tips_;
  std::unique_ptr<talvex_common::utils::timer::TXTimer> empty_timer_;
};
