// App cards in the chat: the layout each kind of card is drawn in, the
// flexible goods card the meeting's configuration describes, and the click
// that opens the card's app.
#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QTest>
#include <memory>
#include <vector>

#include "chat/ui/desktop/view/chat/chat_message_widget.h"
#include "chat/ui/desktop/view/chat/chat_open_app_item.h"
#include "chat/viewmodel/chat_openapp_message_view_model.h"
#include "items_fixture.h"
#include "sim/goods_card_layout.h"
#include "support/test_util.h"
#include "uikit/widget/flex_box_widget.h"

namespace items_test {
namespace {

Variant Card(int layout, Variant ext_data = Variant()) {
  Variant info = BaseInfo("c1", 7, "Riley Chen");
  info.Set(ChatOpenappMessageInfoFields_kStringInfoTitle, "Poll: lunch options");
  info.Set(ChatOpenappMessageInfoFields_kStringInfoDescription, "Vote before noon");
  info.Set(ChatOpenappMessageInfoFields_kStringInfoIconName, "Polls");
  info.Set(ChatOpenappMessageInfoFields_kStringInfoConfirmBtn, "Buy now");
  info.Set(ChatOpenappMessageInfoFields_kIntegerInfoContentLayoutType, layout);
  if (!ext_data.IsNull()) info.Set(ChatOpenappMessageInfoFields_kPtrInfoExtData, ext_data);
  return info;
}

Variant Goods(Variant layout = Variant()) {
  Variant goods(base::variant::kVariantTypeMap);
  goods.Set(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoGoodsName, "Team mug");
  goods.Set(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoOriginalPrice, "$18.00");
  goods.Set(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoCurrentPrice, "$12.50");
  goods.Set(ChatOpenappMessageGoodsInfoFields_kBooleanGoodsInfoHasDiscount, true);
  goods.Set("app_info_name", "Team Shop");
  goods.Set("msg_content_title", "Offer for today");
  if (!layout.IsNull()) goods.Set(chat::ChatOpenappMessageViewModel::kGoodsCardLayoutQt, layout);
  return goods;
}

ChatOpenAppItem* ItemOf(ChatMessageWidget const& row) { return qobject_cast<ChatOpenAppItem*>(row.item()); }

QString LabelText(QWidget* card, char const* name) {
  auto* label = card->findChild<QLabel*>(name);
  return label ? label->text() : QStringLiteral("<no %1>").arg(name);
}

class ChatOpenAppItemTest : public ::testing::Test {
 protected:
  void SetUp() override { InitChatResources(); }
};

TEST_F(ChatOpenAppItemTest, EachCardKindGetsItsLayoutAndTheRowItsHeight) {
  auto common = MakeRow(Card(ChatOpenAppItem::kLayoutCommon, Goods()));
  QWidget* card = ItemOf(*common)->card();
  ASSERT_NE(card, nullptr);
  EXPECT_EQ(LabelText(card, "OpenApp_title_lbl"), "Poll: lunch options") << "a common layout ignores goods data";
  EXPECT_EQ(LabelText(card, "OpenApp_app_name"), "Polls");
  EXPECT_EQ(common->sizeHint().height(), 24 + 16 + card->sizeHint().height() + 4);

  auto fixed = MakeRow(Card(ChatOpenAppItem::kLayoutGoods, Goods(sim::GoodsCardLayouts().Get("default"))));
  card = ItemOf(*fixed)->card();
  EXPECT_EQ(card->objectName(), "OpenAppCard") << "the fixed goods layout even when a flexible one came along";
  EXPECT_EQ(LabelText(card, "OldGoodCard_title_lbl"), "Offer for today");
  EXPECT_EQ(LabelText(card, "OldGoodCard_good_desc_lbl"), "Team mug");
  EXPECT_TRUE(LabelText(card, "OldGoodCard_org_price_lbl").contains("<s>")) << "a discount crosses out the old price";
}

TEST_F(ChatOpenAppItemTest, TheFlexibleGoodsCardIsDrawnFromTheConfiguredLayout) {
  auto row = MakeRow(Card(ChatOpenAppItem::kLayoutFlexGoods, Goods(sim::GoodsCardLayouts().Get("default"))));
  auto* box = qobject_cast<FlexBoxWidget*>(ItemOf(*row)->card());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->width(), ChatOpenAppItem::kCardWidth);
  auto text = [&box](char const* name) {
    QWidget* part = box->findChild<QWidget*>(name);
    return part && !part->isHidden() ? part->accessibleName() : QString();
  };
  EXPECT_EQ(text("app_name"), "Team Shop");
  EXPECT_EQ(text("title"), "Offer for today");
  EXPECT_EQ(text("goods_name"), "Team mug");
  EXPECT_EQ(text("current_price"), "$12.50");
  EXPECT_EQ(text("original_price"), "$18.00");
  EXPECT_EQ(text("confirm"), "Buy now");
  EXPECT_EQ(row->sizeHint().height(), 24 + 16 + box->heightForWidth(ChatOpenAppItem::kCardWidth) + 4);

  // Without a discount the old price goes, and the card is no taller.
  const int discounted = row->sizeHint().height();
  Variant goods = Goods(sim::GoodsCardLayouts().Get("default"));
  goods.Set(ChatOpenappMessageGoodsInfoFields_kBooleanGoodsInfoHasDiscount, false);
  QPointer<FlexBoxWidget> first_card(box);
  row->SetMessageInfo(Card(ChatOpenAppItem::kLayoutFlexGoods, goods));
  EXPECT_EQ(ItemOf(*row)->card(), first_card.data()) << "a recycled row refills a card of the same layout";
  EXPECT_EQ(row->findChildren<FlexBoxWidget*>().size(), 1);
  EXPECT_EQ(text("original_price"), "");
  EXPECT_EQ(text("current_price"), "$12.50");
  EXPECT_LE(row->sizeHint().height(), discounted);

  // Another layout builds another card.
  Variant other = sim::GoodsCardLayouts().Get("default");
  other.Set("padding", 4);
  row->SetMessageInfo(Card(ChatOpenAppItem::kLayoutFlexGoods, Goods(other)));
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(first_card.isNull()) << "the card of the other layout is gone";
  EXPECT_NE(qobject_cast<FlexBoxWidget*>(ItemOf(*row)->card()), nullptr);
  EXPECT_EQ(row->findChildren<FlexBoxWidget*>().size(), 1);

  // The same row reused for a common card shows that card alone.
  row->SetMessageInfo(Card(ChatOpenAppItem::kLayoutCommon));
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(ItemOf(*row)->card()->objectName(), "OpenAppCard");
  EXPECT_EQ(row->findChild<FlexBoxWidget*>("CommonGoodCard_FlexBox"), nullptr);
}

TEST_F(ChatOpenAppItemTest, AFlexibleCardWithoutAUsableLayoutFallsBackToTheFixedOne) {
  talvex_test::LogCapture log;
  auto none = MakeRow(Card(ChatOpenAppItem::kLayoutFlexGoods, Goods()));
  EXPECT_EQ(ItemOf(*none)->card()->objectName(), "OpenAppCard");
  EXPECT_EQ(LabelText(ItemOf(*none)->card(), "OldGoodCard_good_desc_lbl"), "Team mug");
  EXPECT_TRUE(log.Contains("goods card without a flexible layout"));

  auto broken = MakeRow(Card(ChatOpenAppItem::kLayoutFlexGoods, Goods(Variant(R"({"type": "triangle"})"))));
  EXPECT_EQ(ItemOf(*broken)->card()->objectName(), "OpenAppCard");
  EXPECT_TRUE(log.Contains("goods card layout unusable"));
  EXPECT_EQ(broken->findChild<FlexBoxWidget*>(), nullptr) << "the refused box is gone";
}

TEST_F(ChatOpenAppItemTest, AClickOnTheCardAsksToOpenItsAppButADragDoesNot) {
  auto row = MakeRow(Card(ChatOpenAppItem::kLayoutFlexGoods, Goods(sim::GoodsCardLayouts().Get("default"))));
  row->resize(360, row->sizeHint().height());
  row->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(row.get()));
  std::vector<std::pair<quint32, Variant>> actions;
  QObject::connect(row.get(), &ChatMessageWidget::ActionRequested,
                   [&](quint32 action, Variant const& params) { actions.emplace_back(action, params); });

  // A press on a part of the card is passed on to the card.
  QWidget* name = ItemOf(*row)->card()->findChild<QWidget*>("goods_name");
  ASSERT_NE(name, nullptr);
  QTest::mouseClick(name, Qt::LeftButton, Qt::NoModifier, QPoint(4, 4));
  ASSERT_EQ(actions.size(), 1u);
  EXPECT_EQ(actions[0].first, chat::ChatOpenappMessageViewModel::kActionClickOpenApp);
  EXPECT_EQ(actions[0].second.GetString("msg_id"), "c1");

  QTest::mousePress(name, Qt::LeftButton, Qt::NoModifier, QPoint(4, 4));
  QTest::mouseRelease(name, Qt::LeftButton, Qt::NoModifier, QPoint(4 + 3 * QApplication::startDragDistance(), 4));
  EXPECT_EQ(actions.size(), 1u) << "the end of a drag that selects rows opens nothing";
  QTest::mouseClick(name, Qt::RightButton, Qt::NoModifier, QPoint(4, 4));
  EXPECT_EQ(actions.size(), 1u);
}

}  // namespace
}  // namespace items_test
