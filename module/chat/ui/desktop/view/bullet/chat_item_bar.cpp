#include "chat/ui/desktop/view/bullet/chat_item_bar.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QStyle>

#include "base/log/log.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"
#include "uikit/tx_qt_ui_util.h"
#include "uikit/widget/qf_image_push_button.h"

namespace {
QString Q(std::string const& text) { return QString::fromStdString(text); }

QWidget* Separator(QWidget* parent) {
  auto* line = new QWidget(parent);
  line->setFixedSize(1, 20);
  line->setStyleSheet("background-color: rgba(255,255,255,56);");
  return line;
}
}  // namespace

ChatItemBar::ChatItemBar(QWidget* parent) : QFWidget(parent) { InitUi(); }

ChatItemBar::~ChatItemBar() { qApp->removeEventFilter(this); }

void ChatItemBar::InitUi() {
  setObjectName("ChatItemBar");
  setStyleSheet("#ChatItemBar{background-color: rgba(43, 46, 51, 0.72); border-radius: 4px;}");
  setFixedHeight(kHeight);
  layout_ = new QHBoxLayout(this);
  layout_->setContentsMargins(8, 0, 8, 0);
  layout_->setSpacing(6);

  pic_in_pic_btn_ = new QFImagePushButton(this);
  pic_in_pic_btn_->setObjectName("PicInPicBtn");
  pic_in_pic_btn_->setFixedSize(20, 20);
  pic_in_pic_btn_->setAccessibleName("portraint_mode_button_accessibility_label");
  pic_in_pic_btn_->setCursor(Qt::PointingHandCursor);
  pic_in_pic_btn_->SetImagePair(":/images/chat/pic_in_pic/icon_picinpic_off",
                                ":/images/chat/pic_in_pic/icon_picinpic_off_hover");
  connect(pic_in_pic_btn_, &QPushButton::clicked, this, [this] {
    if (on_pic_in_pic) on_pic_in_pic(!pic_in_pic_on_);
  });
  layout_->addWidget(pic_in_pic_btn_);
  pic_in_pic_separator_ = Separator(this);
  layout_->addWidget(pic_in_pic_separator_);

  auto* inner = new QHBoxLayout();
  inner_ = inner;
  inner->setSpacing(4);
  inner->setContentsMargins(0, 0, 0, 0);
  emoji_btn_ = new QFImagePushButton(this);
  emoji_btn_->setObjectName("emoji_btn");
  emoji_btn_->setFixedSize(16, 16);
  emoji_btn_->setAccessibleName("expression_button_accessibility_label");
  emoji_btn_->setCursor(Qt::PointingHandCursor);
  emoji_btn_->SetImages(":/images/chat/im_bullet_emoji");
  connect(emoji_btn_, &QPushButton::clicked, this, [this] {
    if (on_emoji_click) on_emoji_click();
  });
  inner->addWidget(emoji_btn_);
  inner->addWidget(Separator(this));

  // Who a reply goes to; a click opens the member list.
  receiver_btn_ = new QPushButton(this);
  receiver_btn_->setObjectName("receiver_btn");
  receiver_btn_->setFixedSize(kReceiverWidth, 20);
  receiver_btn_->setFlat(true);
  receiver_btn_->setCursor(Qt::PointingHandCursor);
  receiver_btn_->setStyleSheet(
      "QPushButton{border: none; color: rgba(255,255,255,0.85); font-size: 12px; background: transparent;"
      " text-align: left;} QPushButton[private=\"true\"]{color: #FF8A80;}");
  connect(receiver_btn_, &QPushButton::clicked, this, [this] {
    if (on_receiver_click) on_receiver_click();
  });
  inner->addWidget(receiver_btn_);
  SetReceiver(QString(), false);

  chat_edit_ = new QLineEdit(this);
  chat_edit_->setObjectName("chat_edit");
  chat_edit_->setFixedHeight(16);
  chat_edit_->setFixedWidth(kEditWidth);
  chat_edit_->setAccessibleName("chat_button_accessibility_label");
  chat_edit_->setStyleSheet("border: none; background-color: transparent; color: white; font-size: 12px;");
  chat_edit_->setMaxLength(32767);
  connect(chat_edit_, &QLineEdit::returnPressed, this, [this] {
    const QString text = chat_edit_->text();
    if (text.isEmpty()) return;
    chat_edit_->clear();
    if (on_send) on_send(text);
  });
  connect(chat_edit_, &QLineEdit::textChanged, this, [this](QString const& text) {
    if (on_text_changed) on_text_changed(text);
  });
  inner->addWidget(chat_edit_);
  edit_separator_ = Separator(this);
  inner->addWidget(edit_separator_);
  layout_->addLayout(inner);

  expand_btn_ = new QPushButton(this);
  expand_btn_->setObjectName("expand_btn");
  expand_btn_->setAccessibleName("bullet_arrow_button_accessibility_label");
  expand_btn_->setIconSize(QSize(6, 10));
  expand_btn_->setIcon(QIcon(TXQtUiUtil::GetHdpiImage(":/images/chat/expand_img")));
  expand_btn_->setFlat(true);
  expand_btn_->setCursor(Qt::PointingHandCursor);
  expand_btn_->setStyleSheet("QPushButton{border: none; color: white; font-size: 12px; background: transparent;}");
  connect(expand_btn_, &QPushButton::clicked, this, [this] {
    if (on_toggle_fold) on_toggle_fold();
  });
  layout_->addWidget(expand_btn_);
  ExpandChatBar(false);
}

void ChatItemBar::UpdateUiData(Variant const& data) {
  if (!data.IsMap()) return;
  chat_edit_->setPlaceholderText(Q(data.GetString("chat_placeholder_text")));
  text_tips_ = Q(data.GetString("bullet_quick_reply_text_tips"));
  chat_edit_->setToolTip(text_tips_);
  arrow_title_ = Q(data.GetString("bullet_arrow_btn_title"));
  fold_tips_ = Q(data.GetString("bullet_quick_fold_tips"));
  emoji_btn_->setToolTip(Q(data.GetString("bullet_quick_reply_emoji_tips")));
  RefreshArrow();
  RefreshWidth();
}

void ChatItemBar::UpdatePicInPicUIData(Variant const* data) {
  if (!data || !data->IsMap()) {
    TXLOG_ERROR << "param null";
    return;
  }
  pic_in_pic_on_ = data->GetBoolean("enable");
  const QString base = QString(":/images/chat/pic_in_pic/icon_picinpic_") + (pic_in_pic_on_ ? "on" : "off");
  pic_in_pic_btn_->SetImagePair(base, base + "_hover");
  pic_in_pic_btn_->setToolTip(Q(data->GetString("tool_tips")));
}

void ChatItemBar::UpdateQuickReplyDisable(Variant const& data) {
  if (!data.IsMap()) return;
  const bool disable = data.GetBoolean("disable");
  emoji_btn_->SetImages(disable ? ":/images/chat/im_bullet_emoji_disable" : ":/images/chat/im_bullet_emoji");
  chat_edit_->setPlaceholderText(Q(data.GetString("chat_placeholder_text")));
}

void ChatItemBar::SetChatDisabled(bool disabled) {
  is_disable_chat_ = disabled;
  chat_edit_->setEnabled(!disabled);
  if (disabled) ExpandChatBar(false);
}

void ChatItemBar::ExpandChatBar(bool expand) {
  if (expand && is_disable_chat_) {
    TXLOG_INFO << "is_disable_chat_:" << is_disable_chat_ << " is_expand:" << expand;
    return;
  }
  is_expand_ = expand;
  chat_edit_->setVisible(expand);
  receiver_btn_->setVisible(expand);
  edit_separator_->setVisible(expand);
  if (expand) {
    qApp->installEventFilter(this);
  } else {
    qApp->removeEventFilter(this);
  }
  RefreshArrow();
  RefreshWidth();
}

void ChatItemBar::SetExpandTextVisible(bool show) {
  if (show == show_expand_text_) return;
  show_expand_text_ = show;
  RefreshArrow();
  RefreshWidth();
}

void ChatItemBar::RefreshArrow() {
  const QFontMetrics metrics(expand_btn_->font());
  if (show_expand_text_ && !arrow_title_.isEmpty()) {
    const QString text = metrics.elidedText(arrow_title_, Qt::ElideRight, 72);
    expand_btn_->setText(text);
    expand_btn_->setFixedWidth(metrics.horizontalAdvance(text) + 6 + 24);  // arrow, spacing, text
  } else {
    expand_btn_->setText(QString());
    expand_btn_->setFixedWidth(6 + 12);
  }
  expand_btn_->setToolTip(fold_tips_);
  chat_edit_->setToolTip(text_tips_);
}

void ChatItemBar::RefreshWidth() {
  // The nested group keeps its own cached size until told.
  inner_->invalidate();
  layout_->invalidate();
  setFixedWidth(layout_->sizeHint().width());
}

int ChatItemBar::expanded_width() const {
  if (is_expand_) return width();
  return width() + kReceiverWidth + 4 + kEditWidth + 4 + 1 + 4;
}

void ChatItemBar::SetReceiver(QString const& name, bool is_private) {
  const QString to = QString::fromStdString(
      talvex_common::utils::GetLocalizedString(framework::NameId("chat.receiver.to")));
  const QString full = to + " " + (name.isEmpty() ? QStringLiteral("…") : name) + QString::fromUtf8(" \u25BE");
  receiver_btn_->setText(
      TXQtUiUtil::EscapeMnemonic(receiver_btn_->fontMetrics().elidedText(full, Qt::ElideMiddle, kReceiverWidth - 4)));
  receiver_btn_->setToolTip(TXQtUiUtil::PlainToolTip(full));
  receiver_btn_->setAccessibleName(full);
  receiver_btn_->setProperty("private", is_private);
  receiver_btn_->style()->unpolish(receiver_btn_);
  receiver_btn_->style()->polish(receiver_btn_);
}

void ChatItemBar::ResetEmptyTimer() {
  if (!empty_timer_) {
    empty_timer_ = talvex_common::utils::timer::CreateTimer([this] {
      if (!chat_edit_->hasFocus()) ExpandChatBar(false);
    });
  }
  empty_timer_->Start(kEmptyCollapseMs, 0);
}

void ChatItemBar::CancelEmptyTimer() {
  if (empty_timer_) empty_timer_->Stop();
}

void ChatItemBar::SetPicInPicVisible(bool visible) {
  pic_in_pic_btn_->setVisible(visible);
  pic_in_pic_separator_->setVisible(visible);
  RefreshWidth();
}

void ChatItemBar::SetText(QString const& text) {
  if (chat_edit_->text() != text) chat_edit_->setText(text);
}

QString ChatItemBar::text() const { return chat_edit_->text(); }

void ChatItemBar::mousePressEvent(QMouseEvent* event) {
  // A press on the collapsed bar asks to reply.
  if (event->button() == Qt::LeftButton && !is_expand_ && on_text_click) on_text_click();
  QFWidget::mousePressEvent(event);
}

bool ChatItemBar::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && is_expand_) {
    auto* widget = qobject_cast<QWidget*>(watched);
    auto* mouse = static_cast<QMouseEvent*>(event);
    const bool inside = widget && rect().contains(mapFromGlobal(mouse->globalPos()));
    const bool menu_open = qobject_cast<QMenu*>(QApplication::activePopupWidget()) != nullptr;
    if (!inside && !menu_open) ExpandChatBar(false);
  }
  return QFWidget::eventFilter(watched, event);
}
