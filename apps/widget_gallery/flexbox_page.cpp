// The flexible box page: a layout description on the left, the card it draws
// on the right, redrawn as the description is edited. Whoever writes a card
// layout for a meeting's configuration can try it here first.
#include <QHBoxLayout>
#include <QJsonDocument>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "gallery_page.h"
#include "sim/goods_card_layout.h"
#include "uikit/widget/flex_box_widget.h"

namespace {

constexpr int kCardWidth = 240;

Variant SampleCard() {
  Variant data(base::variant::kVariantTypeMap);
  data.Set("app_info_name", "Team Shop");
  data.Set("msg_content_title", "Offer for today's attendees");
  data.Set("goods_name", "Team mug, 350 ml, dishwasher safe, in four colours");
  data.Set("current_price", "$12.50");
  data.Set("original_price", "$18.00");
  data.Set("has_discount", true);
  data.Set("confirm_btn_text", "Buy now");
  data.Set("app_info_icon", ":/images/chat/meeting_notice");
  return data;
}

QWidget* MakePage(QWidget* parent) {
  auto* page = new QWidget(parent);
  auto* row = new QHBoxLayout(page);
  auto* editor = new QPlainTextEdit(page);
  editor->setObjectName("flexbox_description");
  const std::string compact = sim::GoodsCardLayouts().Get("default").ToJson();
  editor->setPlainText(QString::fromUtf8(
      QJsonDocument::fromJson(QByteArray::fromStdString(compact)).toJson(QJsonDocument::Indented)));
  row->addWidget(editor, 1);

  auto* side = new QVBoxLayout();
  auto* card = new FlexBoxWidget(page);
  card->setObjectName("flexbox_preview");
  card->setFixedWidth(kCardWidth);
  auto* status = new QLabel(page);
  status->setWordWrap(true);
  status->setFixedWidth(kCardWidth);
  side->addWidget(card);
  side->addWidget(status);
  side->addStretch(1);
  row->addLayout(side);

  auto redraw = [editor, card, status] {
    const bool ok = card->SetLayoutTemplate(editor->toPlainText());
    card->SetData(SampleCard());
    status->setText(ok ? QStringLiteral("%1 px high at %2 px").arg(card->heightForWidth(kCardWidth)).arg(kCardWidth)
                       : QStringLiteral("Not drawn: %1").arg(card->error()));
    status->setStyleSheet(ok ? "color: #7B818F;" : "color: #F25555;");
  };
  QObject::connect(editor, &QPlainTextEdit::textChanged, card, redraw);
  redraw();
  return page;
}

}  // namespace

GALLERY_PAGE(flexbox, "Flexible card", MakePage);
