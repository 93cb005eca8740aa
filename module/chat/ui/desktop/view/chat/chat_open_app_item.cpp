#include "chat/ui/desktop/view/chat/chat_open_app_item.h"

#include <QLabel>
#include <QVBoxLayout>

#include "framework/chat/chat_schema_keys.h"

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
  // Cards are laid out for their own message: start from an empty holder.
  if (card_) {
    card_->hide();
    card_->deleteLater();
    card_ = nullptr;
  }
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
  OnCreateMessageContent();
  card_ = new QWidget(holder_);
  card_->setObjectName("OpenAppCard");
  card_->setAttribute(Qt::WA_StyledBackground);
  card_->setFixedWidth(kCardWidth);
  card_->setStyleSheet("QWidget#OpenAppCard { background-color: #FFFFFF; border: 1px solid #EBEDF2; border-radius: 8px; }");
  auto* layout = new QVBoxLayout(card_);
  layout->setContentsMargins(12, 10, 12, 10);
  layout->setSpacing(6);
  holder_->layout()->addWidget(card_);
  const int content_layout = message.GetInt32(ChatOpenappMessageInfoFields_kIntegerInfoContentLayoutType, 0);
  if (message.Has(ChatOpenappMessageInfoFields_kPtrInfoExtData) && content_layout != kLayoutCommon) {
    BuildGoods(message, content_layout == kLayoutFlexGoods);
  } else {
    BuildCommon(message);
  }
  card_->show();
}

void ChatOpenAppItem::BuildCommon(Variant const& message) {
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

void ChatOpenAppItem::BuildGoods(Variant const& message, bool flexible) {
  Variant const& goods = message.Get(ChatOpenappMessageInfoFields_kPtrInfoExtData);
  if (flexible) {
    // The flexible card keeps every part in one box under the app's name.
    auto* box = new QWidget(card_);
    box->setObjectName("CommonGoodCard_FlexBox");
    auto* box_layout = new QVBoxLayout(box);
    box_layout->setContentsMargins(0, 0, 0, 0);
    card_->layout()->addWidget(box);
  }
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
