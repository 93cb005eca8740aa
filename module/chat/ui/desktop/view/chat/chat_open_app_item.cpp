#include "chat/ui/desktop/view/chat/chat_open_app_item.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QVBoxLayout>

#include "base/log/log.h"
#include "chat/viewmodel/chat_openapp_message_view_model.h"
#include "framework/chat/chat_schema_keys.h"
#include "uikit/widget/flex_box_widget.h"

namespace {
QString Str(Variant const& v, char const* key) { return QString::fromStdString(v.GetString(key)); }
}  // namespace

ChatOpenAppItem::ChatOpenAppItem(QWidget* parent) : ChatItem(parent) {}

QWidget* ChatOpenAppItem::CreateMsgContent(QWidget* parent) {
  holder_ = new QWidget(parent);
  holder_->setObjectName("ChatOpenAppItem#msg_content");
  auto* layout = new QVBoxLayout(holder_);
  layout->setContentsMargins(0, 0, 0, 0);
  holder_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(holder_, &QWidget::customContextMenuRequested, this, [this] { RequestContextMenu(false); });
  return holder_;
}

void ChatOpenAppItem::OnCreateMessageContent() {
  // A recycled row decides in UpdateMsgContentWithMessageInfo whether its
  // card can show the next message: a flexible card of the same layout only
  // takes the new values.
}

void ChatOpenAppItem::DropCard() {
  if (!card_) return;
  card_->hide();
  card_->deleteLater();
  card_ = nullptr;
}

Variant ChatOpenAppItem::FlexCardData(Variant const& message) {
  Variant const& goods = message.Get(ChatOpenappMessageInfoFields_kPtrInfoExtData);
  Variant data(base::variant::kVariantTypeMap);
  data.Set("goods_name", goods.GetString(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoGoodsName));
  data.Set("goods_image", goods.GetString(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoGoodsImage));
  data.Set("original_price", goods.GetString(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoOriginalPrice));
  data.Set("current_price", goods.GetString(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoCurrentPrice));
  data.Set("has_discount", goods.GetBoolean(ChatOpenappMessageGoodsInfoFields_kBooleanGoodsInfoHasDiscount));
  for (char const* key : {"app_info_name", "app_info_icon", "msg_content_title"}) data.Set(key, goods.GetString(key));
  data.Set("title", message.GetString(ChatOpenappMessageInfoFields_kStringInfoTitle));
  data.Set("description", message.GetString(ChatOpenappMessageInfoFields_kStringInfoDescription));
  data.Set("confirm_btn_text", message.GetString(ChatOpenappMessageInfoFields_kStringInfoConfirmBtn));
  return data;
}

QWidget* ChatOpenAppItem::NewCard() {
  card_ = new QWidget(holder_);
  card_->setObjectName("OpenAppCard");
  card_->setAttribute(Qt::WA_StyledBackground);
  card_->setFixedWidth(kCardWidth);
  card_->setStyleSheet("QWidget#OpenAppCard { background-color: #FFFFFF; border: 1px solid #EBEDF2; border-radius: 8px; }");
  auto* layout = new QVBoxLayout(card_);
  layout->setContentsMargins(12, 10, 12, 10);
  layout->setSpacing(6);
  return card_;
}

QLabel* ChatOpenAppItem::AddLabel(char const* name, QString const& text, char const* color, int pixel_size) {
  auto* label = new QLabel(text, card_);
  label->setObjectName(name);
  label->setWordWrap(true);
  label->setStyleSheet(QString("QLabel { color: %1; font-size: %2px; background: transparent; }").arg(color).arg(pixel_size));
  card_->layout()->addWidget(label);
  return label;
}

void ChatOpenAppItem::UpdateMsgContentWithMessageInfo(Variant const& message) {
  const int content_layout = message.GetInt32(ChatOpenappMessageInfoFields_kIntegerInfoContentLayoutType, 0);
  const bool goods = message.Has(ChatOpenappMessageInfoFields_kPtrInfoExtData) && content_layout != kLayoutCommon;
  const bool flexible = goods && content_layout == kLayoutFlexGoods;
  if (flexible && RefillFlexGoods(message)) return;
  DropCard();
  if (!goods) {
    BuildCommon(message);
  } else if (!flexible || !BuildFlexGoods(message)) {
    BuildGoods(message);
  }
  holder_->layout()->addWidget(card_);
  card_->setCursor(Qt::PointingHandCursor);
  card_->installEventFilter(this);
  card_->show();
}

bool ChatOpenAppItem::eventFilter(QObject* watched, QEvent* event) {
  if (watched != card_ || (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonRelease)) {
    return ChatItem::eventFilter(watched, event);
  }
  auto* mouse = static_cast<QMouseEvent*>(event);
  if (mouse->button() != Qt::LeftButton) return ChatItem::eventFilter(watched, event);
  if (event->type() == QEvent::MouseButtonPress) {
    press_pos_ = mouse->globalPos();
    pressed_ = true;
    return ChatItem::eventFilter(watched, event);
  }
  // A click, not the end of a drag that selects rows, opens the card's app.
  const bool click = pressed_ && card_->rect().contains(mouse->pos()) &&
                     (mouse->globalPos() - press_pos_).manhattanLength() < QApplication::startDragDistance();
  pressed_ = false;
  if (click) RequestAction(chat::ChatOpenappMessageViewModel::kActionClickOpenApp);
  return ChatItem::eventFilter(watched, event);
}

void ChatOpenAppItem::BuildCommon(Variant const& message) {
  NewCard();
  AddLabel("OpenApp_title_lbl", Str(message, ChatOpenappMessageInfoFields_kStringInfoTitle), "#000000", 14);
  AddLabel("OpenApp_desc_lbl", Str(message, ChatOpenappMessageInfoFields_kStringInfoDescription), "#66615E", 12);
  const QString image = Str(message, ChatOpenappMessageInfoFields_kStringInfoImage);
  QPixmap picture(image.startsWith("qrc:") ? image.mid(3) : image);
  if (!picture.isNull()) {
    auto* panel = new QLabel(card_);
    panel->setObjectName("OpenApp_image_panel");
    panel->setFixedSize(kCardWidth - 24, (kCardWidth - 24) * 9 / 16);
    panel->setScaledContents(true);
    panel->setPixmap(picture);
    card_->layout()->addWidget(panel);
  }
  AddLabel("OpenApp_app_name", Str(message, ChatOpenappMessageInfoFields_kStringInfoIconName), "#7B818F", 12);
}

void ChatOpenAppItem::BuildGoods(Variant const& message) {
  NewCard();
  Variant const& goods = message.Get(ChatOpenappMessageInfoFields_kPtrInfoExtData);
  AddLabel("OldGoodCard_title_lbl", Str(goods, "msg_content_title"), "#000000", 14);
  QPixmap picture(Str(goods, ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoGoodsImage));
  auto* icon = new QLabel(card_);
  icon->setObjectName("OldGoodCard_good_icon_panel");
  icon->setFixedSize(64, 64);
  icon->setScaledContents(true);
  if (!picture.isNull()) icon->setPixmap(picture);
  card_->layout()->addWidget(icon);
  AddLabel("OldGoodCard_good_desc_lbl", Str(goods, ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoGoodsName), "#000000", 12);
  const QString original = Str(goods, ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoOriginalPrice);
  const QString current = Str(goods, ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoCurrentPrice);
  QLabel* price = AddLabel("OldGoodCard_org_price_lbl", current.isEmpty() ? original : current, "#F25555", 14);
  if (goods.GetBoolean(ChatOpenappMessageGoodsInfoFields_kBooleanGoodsInfoHasDiscount, false) && !current.isEmpty()) {
    price->setText(QString("%1  <s><font color=#7B818F>%2</font></s>").arg(current.toHtmlEscaped(), original.toHtmlEscaped()));
  }
}

namespace {
Variant const& FlexLayoutOf(Variant const& message) {
  return message.Get(ChatOpenappMessageInfoFields_kPtrInfoExtData).Get(chat::ChatOpenappMessageViewModel::kGoodsCardLayoutQt);
}
}  // namespace

bool ChatOpenAppItem::RefillFlexGoods(Variant const& message) {
  auto* box = qobject_cast<FlexBoxWidget*>(card_);
  if (!box) return false;
  Variant const& layout = FlexLayoutOf(message);
  if (layout.IsNull() || !(layout.SharesStorageWith(flex_layout_) || layout == flex_layout_)) return false;
  box->SetData(FlexCardData(message));
  return true;
}

bool ChatOpenAppItem::BuildFlexGoods(Variant const& message) {
  Variant const& layout = FlexLayoutOf(message);
  if (layout.IsNull()) {
    TXLOG_INFO << "<IM> goods card without a flexible layout, msg_id=" << item_msg_id_;
    return false;
  }
  auto* box = new FlexBoxWidget(holder_);
  box->setObjectName("CommonGoodCard_FlexBox");
  box->setFixedWidth(kCardWidth);
  if (!box->SetLayoutTemplate(layout)) {
    TXLOG_ERROR << "<IM> goods card layout unusable, msg_id=" << item_msg_id_;
    delete box;
    return false;
  }
  box->SetData(FlexCardData(message));
  card_ = box;
  flex_layout_ = layout;
  return true;
}
