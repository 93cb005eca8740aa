#include "chat/ui/desktop/view/chat/chat_item.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCursor>
#include <QEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>

#include "base/log/log.h"
#include "framework/chat/chat_schema_keys.h"
#include "uikit/avatar/qt_avatar_view_factory.h"
#include "uikit/label/qf_plain_label.h"
#include "uikit/reuse/qt_paint_rect_helper.h"
#include "uikit/tx_qt_ui_util.h"
#include "uikit/widget/rotate_image_widget.h"
#include "chat/model/chat_message.h"

namespace {

constexpr int kAvatarSize = 32;
constexpr int kSenderHeight = 20;
constexpr int kSenderCost = 24;
constexpr int kTopMargin = 16;
constexpr int kTailGap = 4;
constexpr int kTailCost = 26;
constexpr int kSideMargin = 16;
constexpr int kFarMargin = 28;
constexpr int kAvatarGap = 8;
constexpr int kContentInset = 128;
constexpr int kSenderInset = 92;
constexpr double kSpinnerSpeed = 0.8;

QString Str(Variant const& message, char const* key) { return QString::fromStdString(message.GetString(key)); }

bool HasText(Variant const& message, char const* key) {
  return message.Has(key) && !message.GetString(key).empty();
}

// A widget inside `ancestor`, or `ancestor` itself.
bool IsInside(QWidget* widget, QWidget* ancestor) {
  for (QWidget* w = widget; w; w = w->parentWidget()) {
    if (w == ancestor) return true;
  }
  return false;
}

}  // namespace

ChatItem::ChatItem(QWidget* parent) : QWidget(parent) {}

ChatItem::~ChatItem() {
  if (avatar_left_) QtAvatarViewFactory::RemoveAvatarView(avatar_left_);
  if (avatar_right_) QtAvatarViewFactory::RemoveAvatarView(avatar_right_);
  DropMask();
}

int ChatItem::GetChatMsgType(Variant const& message) {
  if (chat::MessageRecord(message).IsTip()) return kMsgTip;
  if (message.Has(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel)) return kMsgPrivate;
  return kMsgNormal;
}

int ChatItem::GetChatItemHeight(Variant const& message, int content_width) {
  Q_UNUSED(content_width);
  return EstimateHeight(ToInt(chat::MessageRecord(message).chat_type()),
                        message.Has(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel),
                        HasText(message, ChatMsgBaseInfoFields_kStringBaseInfoTipsText));
}

int ChatItem::EstimateHeight(int chat_type, bool is_private, bool has_tail) {
  using chat::ChatType;
  const int type = chat_type == ToInt(ChatType::kTip) ? kMsgTip : (is_private ? kMsgPrivate : kMsgNormal);
  const int sender = type != kMsgTip ? kSenderCost : 0;
  const int tail = has_tail ? kTailCost : 0;
  int content = 0;
  // The table has a row for a shell type 3, which GetChatMsgType never
  // gives; it stays, for the table's sake.
  constexpr int kShellTypeUnused = 3;
  if (chat_type == ToInt(ChatType::kOpenApp)) {
    content = 125;
  } else if (type == kMsgTip || type == kShellTypeUnused) {
    content = 101;
  } else if (chat_type == ToInt(ChatType::kImage)) {
    content = 168;
  } else if (chat_type == ToInt(ChatType::kNotice)) {
    content = 101;
  } else if (chat_type == ToInt(ChatType::kFile)) {
    content = 108;
  } else if (chat_type == ToInt(ChatType::kText)) {
    content = 81;
  } else {
    TXLOG_ERROR << "<IM> no height estimate for chat_type " << chat_type;
  }
  return sender + kTopMargin + content + tail;
}

void ChatItem::SetMessageInfo(Variant const& message) {
  if (!frame_created_) {
    setObjectName("ChatItem");
    setStyleSheet("QWidget#ChatItem { background-color: transparent; }");
  }
  const bool reused = !item_msg_id_.empty();
  message_ = message;
  is_from_self_ = message.GetBoolean(ChatMsgBaseInfoFields_kBooleanBaseInfoIsFromSelf, false);
  const std::string msg_id = message.GetString(ChatMsgBaseInfoFields_kStringBaseInfoMsgId);
  if (msg_id != item_msg_id_ && is_selected_) SetSelected(false, Variant());
  item_msg_id_ = msg_id;
  chat_item_kind_ = chat::MessageRecord(message).chat_type() == chat::ChatType::kImage ? 2 : 0;
  msg_type_ = GetChatMsgType(message);
  if (!frame_created_) {
    CreateFrame();
  } else if (reused) {
    OnCreateMessageContent();
  }
  UpdateSenderAndAvatar();
  UpdateMsgContentWithMessageInfo(message);
  UpdateTail();
  const int status = message.GetInt32(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, kStatusSent);
  if (status != msg_status_ || !reused) {
    msg_status_ = status;
    UpdateMsgStatus(status, 0);
  }
}

void ChatItem::UpdateMsgData(Variant const& message) { SetMessageInfo(message); }

void ChatItem::CreateFrame() {
  frame_created_ = true;
  root_layout_ = new QVBoxLayout(this);
  root_layout_->setSpacing(0);
  row_layout_ = new QHBoxLayout();
  row_layout_->setSpacing(0);
  row_layout_->setContentsMargins(0, 0, 0, 0);
  content_widget_ = CreateMsgContent(this);

  tail_container_ = new QWidget(this);
  auto* tail_layout = new QHBoxLayout(tail_container_);
  tail_layout->setContentsMargins(0, kTailGap, 0, 0);
  tail_layout->setSpacing(0);
  tail_label_ = new QLabel(tail_container_);
  tail_label_->setObjectName("msg_tail_label");
  tail_label_->hide();
  tail_layout->addWidget(tail_label_);

  if (msg_type_ == kMsgTip) {
    root_layout_->setContentsMargins(0, kTopMargin, 0, 0);
    row_layout_->addStretch(1);
    row_layout_->addWidget(content_widget_);
    row_layout_->addStretch(1);
    root_layout_->addLayout(row_layout_);
    root_layout_->addWidget(tail_container_);
    ConnectSignals();
    return;
  }

  avatar_left_ = QtAvatarViewFactory::CreateAvatarView(this, QString(), QString(), kAvatarSize);
  avatar_right_ = QtAvatarViewFactory::CreateAvatarView(this, QString(), QString(), kAvatarSize);

  sender_container_ = new QWidget(this);
  sender_container_->setObjectName("ChatItem#sender_container");
  sender_container_->setFixedHeight(kSenderHeight);
  sender_layout_ = new QHBoxLayout(sender_container_);
  sender_layout_->setContentsMargins(0, 0, 0, 0);
  sender_layout_->setSpacing(0);
  sender_label_ = new QFPlainLabel(sender_container_);
  sender_label_->setTextFormat(Qt::RichText);
  sender_label_->setProperty("label-style", "msg_sender_label");

  message_container_ = new QWidget(this);
  message_container_->setObjectName("ChatItem#message_container");
  message_layout_ = new QHBoxLayout(message_container_);
  message_layout_->setContentsMargins(0, 0, 0, 0);
  message_layout_->setSpacing(6);
  content_widget_->setParent(message_container_);

  status_container_ = new QWidget(message_container_);
  status_container_->setObjectName("ChatItem#status_container");
  status_container_->setFixedSize(16, 16);
  status_icon_ = new RotateImageWidget(status_container_);
  status_icon_->setObjectName("msg_status_icon");
  status_icon_->setFixedSize(16, 16);
  status_container_->hide();

  more_btn_ = new QPushButton(message_container_);
  more_btn_->setObjectName("more_btn");
  more_btn_->setFixedSize(20, 20);
  more_btn_->setCursor(Qt::PointingHandCursor);
  more_btn_->setFlat(true);
  QIcon more_icon(TXQtUiUtil::GetHdpiImage(":/images/chat/im_more_opt_icon_normal"));
  more_icon.addPixmap(TXQtUiUtil::GetHdpiImage(":/images/chat/im_more_opt_icon_hover"), QIcon::Active);
  more_btn_->setIcon(more_icon);
  more_btn_->setIconSize(QSize(20, 20));
  more_btn_->hide();
  // Keeps its place when hidden, so that hovering never moves the bubble.
  QSizePolicy keep = more_btn_->sizePolicy();
  keep.setRetainSizeWhenHidden(true);
  more_btn_->setSizePolicy(keep);
  connect(more_btn_, &QPushButton::clicked, this, [this] { RequestContextMenu(true); });

  auto* middle = new QVBoxLayout();
  middle->setContentsMargins(0, 0, 0, 0);
  middle->setSpacing(0);
  middle->addWidget(sender_container_);
  middle->addSpacing(kSenderCost - kSenderHeight);
  middle->addWidget(message_container_);
  middle->addWidget(tail_container_);

  row_layout_->addWidget(avatar_left_, 0, Qt::AlignTop);
  row_layout_->addSpacing(kAvatarGap);
  row_layout_->addLayout(middle, 1);
  row_layout_->addSpacing(kAvatarGap);
  row_layout_->addWidget(avatar_right_, 0, Qt::AlignTop);
  root_layout_->addLayout(row_layout_);
  root_layout_->addStretch(1);

  hover_timer_ = new QTimer(this);
  hover_timer_->setInterval(kHoverCheckMs);
  connect(hover_timer_, &QTimer::timeout, this, &ChatItem::OnHoverTimer);
  ConnectSignals();
}

void ChatItem::ArrangeForSender() {
  if (msg_type_ == kMsgTip || !message_layout_) return;
  // A recycled row mostly shows the same side again: nothing to move.
  const int side = is_from_self_ ? 1 : 0;
  if (side == arranged_side_) return;
  arranged_side_ = side;
  if (is_from_self_) {
    root_layout_->setContentsMargins(kFarMargin, kTopMargin, kSideMargin, 0);
  } else {
    root_layout_->setContentsMargins(kSideMargin, kTopMargin, kFarMargin, 0);
  }
  avatar_left_->setVisible(!is_from_self_);
  avatar_right_->setVisible(is_from_self_);

  // The bubble hugs the sender's side; icon and "more" stand on the inner side.
  while (message_layout_->count() > 0) delete message_layout_->takeAt(0);
  if (is_from_self_) {
    message_layout_->addStretch(1);
    message_layout_->addWidget(more_btn_, 0, Qt::AlignVCenter);
    message_layout_->addWidget(status_container_, 0, Qt::AlignVCenter);
    message_layout_->addWidget(content_widget_);
  } else {
    message_layout_->addWidget(content_widget_);
    message_layout_->addWidget(status_container_, 0, Qt::AlignVCenter);
    message_layout_->addWidget(more_btn_, 0, Qt::AlignVCenter);
    message_layout_->addStretch(1);
  }
  while (sender_layout_->count() > 0) delete sender_layout_->takeAt(0);
  sender_layout_->addSpacerItem(
      new QSpacerItem(0, 0, is_from_self_ ? QSizePolicy::Expanding : QSizePolicy::Fixed, QSizePolicy::Minimum));
  sender_layout_->addWidget(sender_label_);
  sender_layout_->addSpacerItem(
      new QSpacerItem(0, 0, is_from_self_ ? QSizePolicy::Fixed : QSizePolicy::Expanding, QSizePolicy::Minimum));
  tail_label_->setAlignment(is_from_self_ ? Qt::AlignRight : Qt::AlignLeft);
}

void ChatItem::UpdateSenderAndAvatar() {
  if (msg_type_ == kMsgTip) return;
  ArrangeForSender();
  const QString name = Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoNickName);
  const QString avatar = Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoAvatarUrl);
  (is_from_self_ ? avatar_right_ : avatar_left_)->SetPerson(name, avatar);
  UpdateSenderText();
}

void ChatItem::UpdateSenderText() {
  if (!sender_label_) return;
  const QFontMetrics metrics(sender_label_->font());
  auto part = [this](char const* key) { return Str(message_, key).toHtmlEscaped(); };
  auto width_of = [&metrics](QString const& text) { return metrics.horizontalAdvance(text); };
  const QString name = Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoNickName);
  const QString receiver = Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoReceiverName);
  const QString send_to = Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoSendTo);
  const int budget = width() - kSenderInset;
  auto elide = [&metrics](QString const& text, int room) {
    return metrics.elidedText(text, Qt::ElideRight, qMax(room, 0)).toHtmlEscaped();
  };
  QString html;
  if (msg_type_ == kMsgPrivate) {
    const QString label = part(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel);
    if (!is_from_self_) {
      const QString say_to_me = Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoSayToMe);
      const int room = budget - width_of(say_to_me) - width_of(Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel));
      html = QString("<font color = #4E5461>%1</font><font color = #4E5461>%2</font><font color = #198CFF>%3</font>")
                 .arg(elide(name, room), say_to_me.toHtmlEscaped(), label);
    } else {
      const QString send = Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoMyselfSendTo);
      const QString say = Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoSay);
      const int room = budget - width_of(send) - width_of(say) -
                       width_of(Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel));
      html = QString(
                 "<font color = #4E5461>%1</font><font color = #4E5461>%2</font><font color = #4E5461>%3</font>"
                 "<font color = #198CFF>%4</font>")
                 .arg(send.toHtmlEscaped(), elide(receiver, room), say.toHtmlEscaped(), label);
    }
  } else if (!send_to.isEmpty() || !receiver.isEmpty()) {
    if (!is_from_self_) {
      const int room = budget - width_of(send_to) - width_of(receiver) - 2 * width_of(" ");
      html = QString("<font color = #4E5461>%1</font> <font color = #4E5461>%2</font> <font color = #4E5461>%3</font>")
                 .arg(elide(name, room), send_to.toHtmlEscaped(), receiver.toHtmlEscaped());
    } else {
      html = QString("<font color = #4E5461>%1</font> <font color = #4E5461>%2</font>")
                 .arg(send_to.toHtmlEscaped(), receiver.toHtmlEscaped());
    }
  } else {
    html = QString("<font color = #4E5461>%1</font>").arg(elide(name, budget));
  }
  sender_label_->setText(html);
}

void ChatItem::UpdateTail() {
  if (!tail_label_) return;
  const QString tail = Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoTipsText);
  tail_label_->setText(tail);
  tail_label_->setVisible(!tail.isEmpty());
}

QSize ChatItem::sizeHint() const {
  if (message_.IsNull() || !content_widget_) return size();
  const int sender = msg_type_ != kMsgTip ? kSenderCost : 0;
  if (QLayout* layout = content_widget_->layout()) layout->invalidate();
  // As a layout would size it: the hint within the widget's own limits.
  const int content = content_widget_->sizeHint()
                          .expandedTo(content_widget_->minimumSize())
                          .boundedTo(content_widget_->maximumSize())
                          .height();
  const QString tail = Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoTipsText);
  const int tail_part = tail.isEmpty() ? kTailGap : tail_label_->sizeHint().height() + kTailGap;
  return QSize(width(), sender + kTopMargin + content + tail_part);
}

int ChatItem::GetMaxContentWidth() const {
  return msg_type_ != kMsgTip ? width() - kContentInset : width();
}

void ChatItem::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  UpdateSenderText();
}

void ChatItem::UpdateMsgStatus(int status, int reason) {
  Q_UNUSED(reason);
  if (!is_status_enabled_) return;
  msg_status_ = status;
  if (status == kStatusSending && !is_sending_delayed_) {
    if (!show_sending_timer_) {
      show_sending_timer_ = new QTimer(this);
      show_sending_timer_->setSingleShot(true);
      connect(show_sending_timer_, &QTimer::timeout, this, [this] {
        is_sending_delayed_ = true;
        UpdateStatusIcon();
      });
    }
    show_sending_timer_->stop();
    show_sending_timer_->start(kSendingSpinnerDelayMs);
  } else if (status != kStatusSending) {
    if (show_sending_timer_) show_sending_timer_->stop();
    if (status == kStatusSent) is_sending_delayed_ = false;
  }
  UpdateStatusIcon();
}

void ChatItem::UpdateStatusIcon() {
  if (!status_container_) return;
  if (msg_status_ == kStatusFailed) {
    status_icon_->SetImage(TXQtUiUtil::GetHdpiImage(":/images/chat/icon_msg_error"));
    status_icon_->stop();
    status_container_->show();
  } else if (msg_status_ == kStatusSending && is_sending_delayed_) {
    status_icon_->SetImage(TXQtUiUtil::GetHdpiImage(":/images/chat/icon_msg_loading"));
    status_icon_->startWithInterval(kSpinnerSpeed);
    status_container_->show();
  } else {
    status_icon_->stop();
    status_container_->hide();
  }
}

bool ChatItem::IsStatusIconShown() const { return status_container_ && !status_container_->isHidden(); }

QWidget* ChatItem::left_avatar() const { return avatar_left_; }
QWidget* ChatItem::right_avatar() const { return avatar_right_; }

void ChatItem::enterEvent(QEvent* event) {
  QWidget::enterEvent(event);
  if (!more_btn_) return;
  more_btn_->setToolTip(Str(message_, ChatMsgBaseInfoFields_kStringBaseInfoMoreOptBtnTips));
  more_btn_->show();
  hovering_ = true;
  hover_timer_->start();
}

void ChatItem::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  if (!more_btn_) return;
  hover_timer_->stop();
  hovering_ = false;
  if (!menu_open_) more_btn_->hide();
}

void ChatItem::OnHoverTimer() {
  if (rect().contains(mapFromGlobal(QCursor::pos()))) return;
  hover_timer_->stop();
  // The leave event went missing (a popup took the mouse): make it good.
  if (hovering_) {
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(this, &leave);
  }
}

void ChatItem::RequestAction(quint32 action) {
  Variant params(base::variant::kVariantTypeMap);
  params.Set(chat::chat_key::kMsgId, item_msg_id_);
  emit ActionRequested(action, params);
}

void ChatItem::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    QWidget* hit = childAt(event->pos());
    if (hit && ((avatar_left_ && IsInside(hit, avatar_left_)) || (avatar_right_ && IsInside(hit, avatar_right_)))) {
      Variant params(base::variant::kVariantTypeMap);
      params.Set(chat::chat_key::kMsgId, item_msg_id_);
      params.Set("pt_x", QCursor::pos().x());
      params.Set("pt_y", QCursor::pos().y());
      emit ChatItemMenuRequested(params);
      return;
    }
  }
  QWidget::mousePressEvent(event);
}

void ChatItem::RequestContextMenu(bool from_more, Variant extra) {
  Variant params = extra.IsMap() ? extra : Variant(base::variant::kVariantTypeMap);
  const QPoint at = from_more && more_btn_ ? more_btn_->mapToGlobal(QPoint(0, more_btn_->height())) : QCursor::pos();
  params.Set("from_more", from_more);
  params.Set(chat::chat_key::kMsgId, item_msg_id_);
  params.Set("pt_x", at.x());
  params.Set("pt_y", at.y());
  params.Set("is_self", is_from_self_);
  emit OnCustomContextMenuRequested(params);
}

void ChatItem::SetSelected(bool selected, Variant const& record) {
  Q_UNUSED(record);
  const bool changed = selected != is_selected_;
  is_selected_ = selected;
  if (!selected) {
    DropMask();
    return;
  }
  QWidget* content = GetMessageContentWidget();
  if (!content) return;
  if (!changed && mask_widget_) {
    mask_widget_->setGeometry(QRect(content->mapTo(this, QPoint(0, 0)), content->size()));
    mask_widget_->raise();
    return;
  }
  if (!mask_widget_) {
    mask_widget_ = new QWidget(this);
    mask_widget_->setAttribute(Qt::WA_TransparentForMouseEvents);
    mask_widget_->setAttribute(Qt::WA_StyledBackground);
    mask_widget_->setObjectName("mask");
    mask_widget_->setStyleSheet("QWidget#mask { background-color: #60B0B6C3; border-radius: 8px; }");
  }
  mask_paint_helper_ = std::make_unique<QTPaintRectHelper>();
  QPointer<QWidget> mask = mask_widget_;
  mask_paint_helper_->BindWidget(content, [this, mask](QWidget* widget, bool visible, QRect const&) {
    if (!mask) return;
    mask->setGeometry(QRect(widget->mapTo(this, QPoint(0, 0)), widget->size()));
    mask->setVisible(visible);
    mask->raise();
  });
  mask_widget_->setGeometry(QRect(content->mapTo(this, QPoint(0, 0)), content->size()));
  mask_widget_->show();
  mask_widget_->raise();
}

void ChatItem::DropMask() {
  mask_paint_helper_.reset();
  if (mask_widget_) {
    mask_widget_->hide();
    mask_widget_->deleteLater();
    mask_widget_.clear();
  }
}
