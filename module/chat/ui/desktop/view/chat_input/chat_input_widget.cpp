#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"

#include <QActionGroup>
#include <QFile>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QStackedWidget>
#include <QStyle>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolButton>
#include <QVBoxLayout>

#include "chat/ui/desktop/view/chat_input/toolbar_menu_item_action.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"
#include "chat/ui/desktop/chat_resources.h"
#include "uikit/richedit/rich_edit.h"
#include "uikit/tx_qt_ui_util.h"


namespace {

constexpr int kToolbarHeight = 38;
constexpr int kRightToolbarWidth = 166;
constexpr int kEditFontSize = 14;
constexpr char kEditColor[] = "#1F2329";
constexpr char kContainerSheet[] = "background-color:#FFFFFF";
constexpr char kEditSheet[] = "#chat_input_edit { border:none; font-size:%1px; color: %2; padding:0px;}";
constexpr char kWidgetSheet[] = ":/qss/chat/chat_widget";
constexpr char kForbidIcon[] = ":/images/chat/chat_view_input_forbid_icon";
constexpr char kOptionIconNormal[] = ":/images/chat/send_opt_btn_normal";
constexpr char kOptionIconClick[] = ":/images/chat/send_opt_btn_click";
constexpr char kEditAccessibleName[] = "atg__chat_input_widget_edit__name";

QWidget* MakeContainer(char const* name, QWidget* parent) {
  auto* container = new QWidget(parent);
  container->setObjectName(name);
  container->setAttribute(Qt::WA_StyledBackground, true);
  container->setStyleSheet(kContainerSheet);
  return container;
}

QString Text(char const* name) {
  return QString::fromStdString(talvex_common::utils::GetLocalizedString(framework::NameId(name)));
}

bool IsReturn(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }

}  // namespace

ChatInputWidget::ChatInputWidget(QWidget* parent) : QWidget(parent) {
  chat::InitChatResources();
  qRegisterMetaType<ChatInputWidget::SendOption>();
  setObjectName("chat_input_widget");
  setAttribute(Qt::WA_StyledBackground, true);
  QFile sheet(kWidgetSheet);
  if (sheet.open(QIODevice::ReadOnly)) setStyleSheet(QString::fromUtf8(sheet.readAll()));
  BuildLayout();
  BuildSendOptionMenu();
  setMinimumHeight(kMinHeight);
  setMaximumHeight(kMaxHeight);
  SetInputHeight(kDefaultHeight);
  // A click gives the edit the focus; Tab passes the widget by and stops at the edit.
  setFocusPolicy(Qt::ClickFocus);
  SetSendButtonColor(kColorEmpty);
}

ChatInputWidget::~ChatInputWidget() = default;

void ChatInputWidget::BuildLayout() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);

  // A thin strip along the top edge: dragging it changes the input's height.
  resize_handle_ = new QWidget(this);
  resize_handle_->setObjectName("chat_input_resize_handle");
  resize_handle_->setFixedHeight(4);
  resize_handle_->setCursor(Qt::SizeVerCursor);
  resize_handle_->installEventFilter(this);
  layout->addWidget(resize_handle_);

  auto* top_row = new QHBoxLayout;
  top_row->setContentsMargins(0, 0, 0, 0);
  top_row->setSpacing(0);
  left_toolbar_ = MakeContainer("left_toolbar_container", this);
  left_toolbar_->setFixedHeight(kToolbarHeight);
  right_toolbar_ = MakeContainer("right_toolbar_container", this);
  right_toolbar_->setFixedSize(kRightToolbarWidth, kToolbarHeight);
  auto* tools = new QHBoxLayout(left_toolbar_);
  tools->setContentsMargins(8, 0, 0, 0);
  tools->setSpacing(4);
  notice_button_ = new QToolButton(left_toolbar_);
  notice_button_->setObjectName("chat_input_notice_button");
  notice_button_->setIcon(QIcon(":/images/chat/meeting_notice"));
  notice_button_->setIconSize(QSize(16, 16));
  notice_button_->setAutoRaise(true);
  notice_button_->setCursor(Qt::PointingHandCursor);
  notice_button_->setFocusPolicy(Qt::TabFocus);
  notice_button_->setStyleSheet(
      "QToolButton#chat_input_notice_button { border: none; padding: 3px; border-radius: 4px; }"
      "QToolButton#chat_input_notice_button:hover { background: #F0F4FF; }");
  connect(notice_button_, &QToolButton::clicked, this, &ChatInputWidget::NoticeClicked);
  notice_red_dot_ = new QWidget(notice_button_);
  notice_red_dot_->setObjectName("chat_input_notice_red_dot");
  notice_red_dot_->setAttribute(Qt::WA_StyledBackground);
  notice_red_dot_->setAttribute(Qt::WA_TransparentForMouseEvents);
  notice_red_dot_->setStyleSheet("background: #F5483B; border-radius: 3px;");
  notice_red_dot_->setGeometry(16, 2, 6, 6);
  notice_red_dot_->hide();
  tools->addWidget(notice_button_);
  tools->addStretch(1);
  SetNoticeButton(false, false, QString(), QString());
  top_row->addWidget(left_toolbar_, 1);
  top_row->addWidget(right_toolbar_);
  layout->addLayout(top_row);

  stacked_ = new QStackedWidget(this);
  stacked_->setObjectName("chat_input_stacked_widget");
  stacked_->setContentsMargins(8, 0, 8, 0);
  edit_ = new RichEdit(stacked_);
  edit_->setObjectName("chat_input_edit");
  edit_->setAccessibleName(kEditAccessibleName);
  edit_->setStyleSheet(QString(kEditSheet).arg(kEditFontSize).arg(kEditColor));
  edit_->setFrameShape(QFrame::NoFrame);
  edit_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // Tab moves on, as in every other field of the window; Ctrl+Tab types a tab.
  edit_->setTabChangesFocus(true);
  edit_->installEventFilter(this);
  connect(edit_, &QTextEdit::textChanged, this, &ChatInputWidget::OnTextChanged);
  stacked_->addWidget(edit_);

  disabled_page_ = MakeContainer("chat_input_disabled_page", stacked_);
  auto* disabled_row = new QHBoxLayout(disabled_page_);
  disabled_row->setContentsMargins(4, 0, 4, 0);
  disabled_row->setSpacing(6);
  disabled_icon_ = new QLabel(disabled_page_);
  disabled_icon_->setObjectName("chat_input_disabled_icon");
  disabled_icon_->setFixedSize(16, 16);
  disabled_icon_->setPixmap(QIcon(kForbidIcon).pixmap(16, 16));
  disabled_label_ = new QLabel(disabled_page_);
  disabled_label_->setObjectName("chat_input_disabled_label");
  disabled_label_->setProperty("label-style", "chat_disabled_label");
  disabled_label_->setWordWrap(true);
  disabled_row->addWidget(disabled_icon_, 0, Qt::AlignVCenter);
  disabled_row->addWidget(disabled_label_, 1, Qt::AlignVCenter);
  stacked_->addWidget(disabled_page_);
  layout->addWidget(stacked_, 1);

  auto* bottom_row = new QHBoxLayout;
  bottom_row->setContentsMargins(0, 4, 12, 8);
  bottom_row->setSpacing(0);
  send_button_ = new QPushButton(this);
  send_button_->setObjectName("chat_input_send_button");
  send_button_->setFocusPolicy(Qt::NoFocus);
  send_button_->setCursor(Qt::PointingHandCursor);
  send_button_->installEventFilter(this);
  connect(send_button_, &QPushButton::clicked, this, &ChatInputWidget::RequestSend);
  send_option_button_ = new QPushButton(this);
  send_option_button_->setObjectName("chat_input_send_option_button");
  send_option_button_->setFocusPolicy(Qt::NoFocus);
  send_option_button_->setIcon(QIcon(kOptionIconNormal));
  connect(send_option_button_, &QPushButton::clicked, this, &ChatInputWidget::ShowSendOptionMenu);
  // Who the message goes to; a click opens the member list.
  receiver_button_ = new QPushButton(this);
  receiver_button_->setObjectName("chat_input_receiver_button");
  receiver_button_->setCursor(Qt::PointingHandCursor);
  receiver_button_->setFlat(true);
  receiver_button_->setFixedHeight(18);
  receiver_button_->setToolTip(Text("chat.receiver.choose"));
  receiver_button_->setAccessibleName(Text("chat.receiver.choose"));
  receiver_button_->setStyleSheet(
      "QPushButton#chat_input_receiver_button { border: none; padding: 0 6px; margin-left: 6px; color: #5C6166;"
      " font-size: 12px; text-align: left; }"
      "QPushButton#chat_input_receiver_button[private=\"true\"] { color: #D54941; }"
      "QPushButton#chat_input_receiver_button:hover { color: #1A73E8; background: #F0F4FF; border-radius: 4px; }");
  connect(receiver_button_, &QPushButton::clicked, this, &ChatInputWidget::ReceiverClicked);
  SetReceiver(QString(), false);
  bottom_row->addWidget(receiver_button_, 0, Qt::AlignVCenter);
  bottom_row->addStretch(1);
  bottom_row->addWidget(send_button_);
  bottom_row->addWidget(send_option_button_);
  layout->addLayout(bottom_row);
}

void ChatInputWidget::SetNoticeButton(bool enabled, bool red_dot, QString const& tips, QString const& disabled_tips) {
  // Still clickable when off: the click says why.
  notice_button_->setProperty("notice_enabled", enabled);
  notice_button_->setIcon(QIcon(":/images/chat/meeting_notice").pixmap(16, 16, enabled ? QIcon::Normal : QIcon::Disabled));
  notice_button_->setToolTip(enabled ? tips : disabled_tips);
  notice_button_->setAccessibleName(tips);
  notice_button_->setAccessibleDescription(enabled ? QString() : disabled_tips);
  notice_red_dot_->setVisible(enabled && red_dot);
}

void ChatInputWidget::SetReceiver(QString const& name, bool is_private) {
  receiver_name_ = name;
  receiver_private_ = is_private;
  QString text = Text("chat.receiver.to") + " " + (name.isEmpty() ? Text("chat.members.everyone") : name);
  if (is_private) text += " " + Text("chat.receiver.private");
  receiver_button_->setText(TXQtUiUtil::EscapeMnemonic(text) + QString::fromUtf8(" \u25BE"));
  receiver_button_->setProperty("private", is_private);
  receiver_button_->style()->unpolish(receiver_button_);
  receiver_button_->style()->polish(receiver_button_);
}

void ChatInputWidget::BuildSendOptionMenu() {
  send_option_menu_ = new QMenu(this);
  send_option_menu_->setObjectName("chat_input_send_option_menu");
  send_option_group_ = new QActionGroup(send_option_menu_);
  send_option_group_->setExclusive(true);
  auto* by_enter = new ToolbarMenuItemAction(Text("chat.input.send_by_enter"), kSendByEnter, send_option_group_);
  auto* by_ctrl_enter =
      new ToolbarMenuItemAction(Text("chat.input.send_by_ctrl_enter"), kSendByCtrlEnter, send_option_group_);
  send_option_menu_->addAction(by_enter);
  send_option_menu_->addAction(by_ctrl_enter);
  by_enter->setChecked(true);
  connect(send_option_group_, &QActionGroup::triggered, this, [this](QAction* action) {
    auto* row = qobject_cast<ToolbarMenuItemAction*>(action);
    if (!row) return;
    const auto option = static_cast<SendOption>(row->value());
    SetSendOption(option);
    emit SendOptionSelected(option);
  });
  connect(send_option_menu_, &QMenu::aboutToShow, this, [this] {
    menu_visible_ = true;
    send_option_button_->setIcon(QIcon(kOptionIconClick));
  });
  connect(send_option_menu_, &QMenu::aboutToHide, this, [this] {
    menu_visible_ = false;
    send_option_button_->setIcon(QIcon(kOptionIconNormal));
  });
}

void ChatInputWidget::ShowSendOptionMenu() {
  const QSize size = send_option_menu_->sizeHint();
  const QPoint corner = send_option_button_->mapToGlobal(QPoint(send_option_button_->width(), 0));
  send_option_menu_->popup(corner - QPoint(size.width(), size.height()));
}

void ChatInputWidget::SetSendOption(SendOption option) {
  send_option_ = option == kSendByCtrlEnter ? kSendByCtrlEnter : kSendByEnter;
  for (QAction* action : send_option_group_->actions()) {
    auto* row = qobject_cast<ToolbarMenuItemAction*>(action);
    if (row) row->setChecked(row->value() == send_option_);
  }
}

void ChatInputWidget::SetChatEnabled(bool enabled) {
  stacked_->setCurrentWidget(enabled ? static_cast<QWidget*>(edit_) : disabled_page_);
  // With chat off there is nothing to send: the send row gives its room to
  // the reason.
  send_button_->setVisible(enabled);
  send_option_button_->setVisible(enabled);
}

bool ChatInputWidget::chat_enabled() const { return stacked_->currentWidget() == edit_; }

void ChatInputWidget::SetDisabledText(QString const& text) { disabled_label_->setText(text); }

void ChatInputWidget::SetDisabledIconVisible(bool visible) { disabled_icon_->setVisible(visible); }

void ChatInputWidget::SetInputHeight(int height) { setFixedHeight(qBound(kMinHeight, height, kMaxHeight)); }

void ChatInputWidget::SetSendText(QString const& text) { send_button_->setText(text); }

void ChatInputWidget::SetPlaceholderText(QString const& text) { edit_->setPlaceholderText(text); }

void ChatInputWidget::SetSendState(bool ready) {
  send_button_->setProperty("send_state", ready);
  send_button_->style()->unpolish(send_button_);
  send_button_->style()->polish(send_button_);
}

void ChatInputWidget::ClearInput() { edit_->clear(); }

void ChatInputWidget::FocusEdit() {
  if (chat_enabled()) edit_->setFocus(Qt::OtherFocusReason);
}

void ChatInputWidget::InsertLineBreak() {
  QTextDocument* doc = edit_->document();
  QTextCursor cursor = edit_->textCursor();
  doc->setUndoRedoEnabled(false);
  cursor.insertBlock();
  doc->setUndoRedoEnabled(true);
  edit_->setTextCursor(cursor);
  edit_->ensureCursorVisible();
}

void ChatInputWidget::RequestSend() {
  if (!chat_enabled()) return;
  emit SendMsgBtnClicked();
}

bool ChatInputWidget::HasSendableContent() const {
  // A picture or an emoji stands in the text as one object character.
  for (QChar const c : edit_->toPlainText()) {
    if (!c.isSpace()) return true;
  }
  return false;
}

void ChatInputWidget::OnTextChanged() {
  const bool empty = !HasSendableContent();
  if (empty != is_empty_) {
    is_empty_ = empty;
    SetSendButtonColor(empty ? kColorEmpty : (hovered_ ? kColorHover : kColorReady));
    emit EmptyChanged(empty);
  }
  if (snap_bottom_) edit_->verticalScrollBar()->setValue(edit_->verticalScrollBar()->maximum());
}

void ChatInputWidget::SetSendButtonColor(QString const& color) {
  if (color == send_button_color_) return;
  send_button_color_ = color;
  send_button_->setStyleSheet(QStringLiteral("#chat_input_send_button { color: %1; }").arg(color));
}

bool ChatInputWidget::HandleEditKey(QKeyEvent* key) {
  if (key->key() == Qt::Key_Tab && key->modifiers() == Qt::ControlModifier) {
    QTextCursor cursor = edit_->textCursor();
    cursor.insertText(QStringLiteral("\t"));
    edit_->setTextCursor(cursor);
    return true;
  }
  if (!IsReturn(key->key())) return false;
  const Qt::KeyboardModifiers mods = key->modifiers();
  bool send = false;
  if (mods & Qt::ControlModifier) {
    send = send_option_ == kSendByCtrlEnter;
  } else if (mods & Qt::ShiftModifier) {
    send = false;
  } else {
    send = send_option_ == kSendByEnter;
  }
  if (send) {
    RequestSend();
  } else {
    InsertLineBreak();
  }
  return true;
}

bool ChatInputWidget::HandleResizeDrag(QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress: {
      auto* mouse = static_cast<QMouseEvent*>(event);
      if (mouse->button() != Qt::LeftButton) return false;
      drag_start_y_ = mouse->globalPos().y();
      drag_start_height_ = height();
      return true;
    }
    case QEvent::MouseMove: {
      if (drag_start_y_ < 0) return false;
      auto* mouse = static_cast<QMouseEvent*>(event);
      // Dragging the top edge up makes the input taller.
      SetInputHeight(drag_start_height_ + drag_start_y_ - mouse->globalPos().y());
      return true;
    }
    case QEvent::MouseButtonRelease: {
      if (drag_start_y_ < 0) return false;
      drag_start_y_ = -1;
      if (height() != drag_start_height_) emit InputHeightChanged(height());
      return true;
    }
    default:
      return false;
  }
}

bool ChatInputWidget::eventFilter(QObject* watched, QEvent* event) {
  if (watched == edit_ && event->type() == QEvent::KeyPress) {
    return HandleEditKey(static_cast<QKeyEvent*>(event));
  }
  if (watched == send_button_) {
    if (event->type() == QEvent::Enter) {
      hovered_ = true;
      if (!is_empty_) SetSendButtonColor(kColorHover);
    } else if (event->type() == QEvent::Leave) {
      hovered_ = false;
      SetSendButtonColor(is_empty_ ? kColorEmpty : kColorReady);
    }
    return false;
  }
  if (watched == resize_handle_) return HandleResizeDrag(event);
  return QWidget::eventFilter(watched, event);
}

void ChatInputWidget::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  FocusEdit();
}
