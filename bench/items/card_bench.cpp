// Binding a goods card to a recycled row, as the list does when a recycled
// row shows another card, and measuring the row: the flexible card drawn
// from the meeting's layout description, against the fixed card of labels
// and against the card written as HTML for QTextDocument, the components a
// developer would otherwise reach for. The flexible box on its own: building
// it from the description, and refilling a built one with the next card.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTextDocument>
#include <memory>

#include "chat/ui/desktop/view/chat/chat_message_widget.h"
#include "chat/ui/desktop/view/chat/chat_open_app_item.h"
#include "chat/viewmodel/chat_openapp_message_view_model.h"
#include "framework/chat/chat_schema_keys.h"
#include "sim/goods_card_layout.h"
#include "uikit/widget/flex_box_widget.h"

namespace {

constexpr int kRowWidth = 360;

Variant CardInfo(int content_layout, int n) {
  Variant goods(base::variant::kVariantTypeMap);
  goods.Set(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoGoodsName,
            "Team mug number " + std::to_string(n) + ", 350 ml, dishwasher safe");
  goods.Set(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoOriginalPrice, "$18.00");
  goods.Set(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoCurrentPrice, "$12.50");
  goods.Set(ChatOpenappMessageGoodsInfoFields_kBooleanGoodsInfoHasDiscount, n % 2 == 0);
  goods.Set("app_info_name", "Team Shop");
  goods.Set("msg_content_title", "Offer for today's attendees");
  goods.Set(chat::ChatOpenappMessageViewModel::kGoodsCardLayoutQt, sim::GoodsCardLayouts().Get("default"));
  Variant info(base::variant::kVariantTypeMap);
  info.Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgId, "card-" + std::to_string(n));
  info.Set("chat_type", 7);
  info.Set(ChatMsgBaseInfoFields_kStringBaseInfoNickName, "Riley Chen");
  info.Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, 2);
  info.Set(ChatOpenappMessageInfoFields_kStringInfoConfirmBtn, "Buy now");
  info.Set(ChatOpenappMessageInfoFields_kIntegerInfoContentLayoutType, content_layout);
  info.Set(ChatOpenappMessageInfoFields_kPtrInfoExtData, goods);
  return info;
}

// The box alone. These run first: after the fixed card's benchmark, whose
// labels each carry a style sheet of their own, building the box was seen to
// cost about five times more in the same process.
void BM_FlexBoxBuild(benchmark::State& state) {
  const Variant layout = sim::GoodsCardLayouts().Get("default");
  const Variant data = ChatOpenAppItem::FlexCardData(CardInfo(2, 0));
  for (auto _ : state) {
    FlexBoxWidget box;
    box.setFixedWidth(240);
    box.SetLayoutTemplate(layout);
    box.SetData(data);
    benchmark::DoNotOptimize(box.sizeHint().height());
  }
}
BENCHMARK(BM_FlexBoxBuild)->Unit(benchmark::kMicrosecond);

void BM_FlexBoxRebind(benchmark::State& state) {
  FlexBoxWidget box;
  box.setFixedWidth(240);
  box.SetLayoutTemplate(sim::GoodsCardLayouts().Get("default"));
  const Variant data[] = {ChatOpenAppItem::FlexCardData(CardInfo(2, 0)), ChatOpenAppItem::FlexCardData(CardInfo(2, 1))};
  int n = 0;
  for (auto _ : state) {
    box.SetData(data[n++ % 2]);
    benchmark::DoNotOptimize(box.sizeHint().height());
  }
}
BENCHMARK(BM_FlexBoxRebind)->Unit(benchmark::kMicrosecond);

void BindCards(benchmark::State& state, int content_layout) {
  ChatMessageWidget row("reuse_id7_2");
  row.setFixedWidth(kRowWidth);
  const Variant cards[] = {CardInfo(content_layout, 0), CardInfo(content_layout, 1)};
  int n = 0;
  for (auto _ : state) {
    row.SetMessageInfo(cards[n++ % 2]);
    benchmark::DoNotOptimize(row.sizeHint().height());
    // The card a recycled row drops is deleted on the next loop turn.
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

void BM_BindFlexibleGoodsCard(benchmark::State& state) { BindCards(state, ChatOpenAppItem::kLayoutFlexGoods); }
BENCHMARK(BM_BindFlexibleGoodsCard)->Unit(benchmark::kMicrosecond);

void BM_BindFixedGoodsCardOfStyledLabels(benchmark::State& state) { BindCards(state, ChatOpenAppItem::kLayoutGoods); }
BENCHMARK(BM_BindFixedGoodsCardOfStyledLabels)->Unit(benchmark::kMicrosecond);

// The same card as HTML: parse, lay out at the card's width, measure.
void BM_GoodsCardAsHtmlInQTextDocument(benchmark::State& state) {
  int n = 0;
  for (auto _ : state) {
    QTextDocument document;
    document.setHtml(QString("<table width=100%><tr><td><font color=#7B818F>Team Shop</font></td></tr>"
                             "<tr><td><b>Offer for today's attendees</b></td></tr>"
                             "<tr><td><img width=72 height=72></td><td>Team mug number %1, 350 ml, dishwasher safe"
                             "<br><font color=#F25555><b>$12.50</b></font> <s>$18.00</s></td></tr>"
                             "<tr><td align=right>Buy now</td></tr></table>")
                         .arg(n++));
    document.setTextWidth(ChatOpenAppItem::kCardWidth);
    benchmark::DoNotOptimize(document.size().height());
  }
}
BENCHMARK(BM_GoodsCardAsHtmlInQTextDocument)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  Q_INIT_RESOURCE(chat_resources);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
