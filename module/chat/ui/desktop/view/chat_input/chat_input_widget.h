#pragma once

#include <QPointer>
#include <QWidget>

class QActionGroup;
class QLabel;
class QMenu;
class QPushButton;
class QStackedWidget;
class QToolButton;
class RichEdit;

// The input box of the chat panel: two toolbars over a rich edit (or, while
// chat is off, a page saying why), a send button and the menu that picks the
// send key. It sends nothing itself: it tells its owner.
class ChatInputWidget : public QWidget {
  Q_OBJECT

 public:
  enum SendOption { kSendByEnter = 0, kSendByCtrlEnter = 1 };
  Q_ENUM(SendOption)

  static constexpr int kMinHeight = 82;
  static constexpr int kMaxHeight = 214;
  static constexpr int kDefaultHeight = 85;
  static constexpr char kColorEmpty[] = "#B0B6C3";
  static constexpr char kColorReady[] = "#000000";
  static constexpr char kColorHover[] = "#006FFF";

  explicit ChatInputWidget(QWidget* parent = nullptr);
  ~ChatInputWidget() override;

  RichEdit* edit() const { return edit_; }
  QWidget* left_toolbar_container() const { return left_toolbar_; }
  QWidget* right_toolbar_container() const { return right_toolbar_; }
  QPushButton* send_button() const { return send_button_; }
  QPushButton* send_option_button() const { return send_option_button_; }
  // The receiver line under the input: "To: Everyone", or a name marked
  // private.
  QPushButton* receiver_button() const { return receiver_button_; }
  void SetReceiver(QString const& name, bool is_private);
  // The notice button in the left toolbar: off (greyed, with why as its tip)
  // when the meeting has notices turned off; a red dot while a notice is unread.
  QToolButton* notice_button() const { return notice_button_; }
  QWidget* notice_red_dot() const { return notice_red_dot_; }
  void SetNoticeButton(bool enabled, bool red_dot, QString const& tips, QString const& disabled_tips);
  QString const& receiver_name() const { return receiver_name_; }
  bool receiver_private() const { return receiver_private_; }
  QMenu* send_option_menu() const { return send_option_menu_; }
  QStackedWidget* stacked_widget() const { return stacked_; }
  QLabel* disabled_label() const { return disabled_label_; }
  QLabel* disabled_icon() const { return disabled_icon_; }
  QWidget* resize_handle() const { return resize_handle_; }

  void SetSendOption(SendOption option);
  SendOption send_option() const { return static_cast<SendOption>(send_option_); }
  // Off: the edit gives way to the disabled page and nothing can be sent.
  void SetChatEnabled(bool enabled);
  bool chat_enabled() const;
  void SetDisabledText(QString const& text);
  void SetDisabledIconVisible(bool visible);
  // Kept within kMinHeight..kMaxHeight.
  void SetInputHeight(int height);
  void SetSendText(QString const& text);
  void SetPlaceholderText(QString const& text);
  // The view model's word on whether the button is ready to send; shown as
  // the button's "send_state" property for the style sheet.
  void SetSendState(bool ready);
  // While set, every change of the content scrolls the edit to its end.
  void SetSnapBottom(bool snap) { snap_bottom_ = snap; }
  bool snap_bottom() const { return snap_bottom_; }
  void ClearInput();
  void FocusEdit();
  // A line break at the cursor that never joins the undo history.
  void InsertLineBreak();

  bool is_empty() const { return is_empty_; }
  bool menu_visible() const { return menu_visible_; }
  // The send button's text colour now.
  QString send_button_color() const { return send_button_color_; }

 signals:
  void ReceiverClicked();
  void NoticeClicked();
  void SendMsgBtnClicked();
  void SendOptionSelected(ChatInputWidget::SendOption option);
  void EmptyChanged(bool empty);
  // After the user dragged the top edge.
  void InputHeightChanged(int height);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  void BuildLayout();
  void BuildSendOptionMenu();
  void ShowSendOptionMenu();
  void OnTextChanged();
  // Something besides blanks: text, an emoji or a picture.
  bool HasSendableContent() const;
  void SetSendButtonColor(QString const& color);
  void RequestSend();
  bool HandleEditKey(QKeyEvent* key);
  bool HandleResizeDrag(QEvent* event);

  QWidget* resize_handle_ = nullptr;
  QWidget* left_toolbar_ = nullptr;
  QWidget* right_toolbar_ = nullptr;
  QStackedWidget* stacked_ = nullptr;
  RichEdit* edit_ = nullptr;
  QWidget* disabled_page_ = nullptr;
  QLabel* disabled_icon_ = nullptr;
  QLabel* disabled_label_ = nullptr;
  QPushButton* send_button_ = nullptr;
  QPushButton* send_option_button_ = nullptr;
  QPushButton* receiver_button_ = nullptr;
  QToolButton* notice_button_ = nullptr;
  QWidget* notice_red_dot_ = nullptr;
  QString receiver_name_;
  bool receiver_private_ = false;
  QMenu* send_option_menu_ = nullptr;
  QActionGroup* send_option_group_ = nullptr;

  int send_option_ = kSendByEnter;
  bool is_empty_ = true;
  bool menu_visible_ = false;
  bool snap_bottom_ = false;
  bool hovered_ = false;
  QString send_button_color_;
  int drag_start_y_ = -1;
  int drag_start_height_ = 0;
};
