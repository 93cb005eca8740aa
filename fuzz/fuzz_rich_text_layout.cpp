// The chat's rich text: a source of text runs, images and line breaks of any
// shape laid out at random widths and line limits, laid out again at a second
// width, painted, hit and copied.
#include <fuzzer/FuzzedDataProvider.h>

#include <QColor>
#include <QFont>
#include <QImage>
#include <QMargins>
#include <QPixmap>
#include <QString>
#include <cstdio>
#include <vector>

#include "chat/ui/desktop/view/rich_text/rich_text_block.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "finding.h"
#include "fuzz_support.h"

namespace {

constexpr char const* kColors[] = {"black", "#1a73e8", "#80ff0000", "not-a-colour", "", "#12"};
constexpr char const* kFonts[] = {"DejaVu Sans", "DejaVu Sans Mono", "Noto Color Emoji"};

RichTextBlock MakeBlock(FuzzedDataProvider& in) {
  switch (in.ConsumeIntegralInRange<int>(0, 5)) {
    case 0:
      return RichTextBlock(RichTextBlock::kLineBreak, in.ConsumeIntegralInRange<int16_t>(0, 3),
                           QSize(0, in.ConsumeIntegralInRange<int>(-4, 40)));
    case 1: {
      QPixmap pixmap(in.ConsumeIntegralInRange<int>(0, 120), in.ConsumeIntegralInRange<int>(0, 80));
      pixmap.fill(Qt::darkCyan);
      const int m = in.ConsumeIntegralInRange<int>(-3, 12);
      RichTextBlock block(pixmap, QMargins(m, m / 2, m, 0),
                          QSize(in.ConsumeIntegralInRange<int>(-1, 90), in.ConsumeIntegralInRange<int>(-1, 60)));
      block.alignment = in.ConsumeIntegralInRange<int16_t>(0, 3);
      block.pixmap->fill_width = in.ConsumeBool();
      block.pixmap->alt_text = QString::fromUtf8(in.ConsumeRandomLengthString(8).c_str());
      block.pixmap->ellipsis_pixel_size = in.ConsumeIntegralInRange<int>(-2, 40);
      return block;
    }
    case 2:
      return RichTextBlock(RichTextBlock::kEmpty);
    default: {
      const std::string bytes = in.ConsumeRandomLengthString(160);
      RichTextBlock block = RichTextBlock::Text(QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size())),
                                                in.ConsumeIntegralInRange<int>(-2, 64),
                                                QString::fromLatin1(in.PickValueInArray(kColors)));
      block.text->max_lines = in.ConsumeIntegralInRange<int>(-1, 4);
      block.text->bold = in.ConsumeBool();
      block.text->underline = in.ConsumeBool();
      block.text->clickable = in.ConsumeBool();
      if (in.ConsumeIntegralInRange<int>(0, 5) == 0) {
        const int m = in.ConsumeIntegralInRange<int>(-3, 300);
        block.margins = QMargins(m, 0, in.ConsumeIntegralInRange<int>(-3, 300), 0);
      }
      return block;
    }
  }
}

void CheckFits(RichTextLabel const& label, char const* when) {
  if (label.max_render_width() > 0 && label.rendered_width() > label.max_render_width()) {
    fuzz::Finding("%s: rendered %d wider than the render width %d", when, label.rendered_width(),
                  label.max_render_width());
  }
  if (label.max_lines() > 0 && static_cast<int>(label.lines().size()) > label.max_lines()) {
    fuzz::Finding("%s: %zu lines over the limit %d", when, label.lines().size(), label.max_lines());
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::InitProcess();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const int width = in.ConsumeIntegralInRange<int>(-20, 900);
  const int max_lines = in.ConsumeIntegralInRange<int>(-1, 12);
  const int second_width = in.ConsumeIntegralInRange<int>(-20, 900);
  const int second_lines = in.ConsumeIntegralInRange<int>(-1, 12);
  QFont font(QString::fromLatin1(in.PickValueInArray(kFonts)));
  font.setPixelSize(in.ConsumeIntegralInRange<int>(1, 40));

  std::vector<RichTextBlock> blocks;
  while (in.remaining_bytes() > 0 && blocks.size() < 24) blocks.push_back(MakeBlock(in));

  RichTextLabel label;
  label.setFont(font);
  label.SetContentSelectable(true, false, QStringLiteral("#cce"));
  label.SetRichText(blocks, width, max_lines);
  CheckFits(label, "first layout");

  // Painting reads only what layout stored.
  QImage canvas(300, 200, QImage::Format_ARGB32_Premultiplied);
  canvas.fill(Qt::white);
  label.render(&canvas);

  label.SelectContent(QPoint(0, 0), QPoint(label.width(), label.height()), true);
  (void)label.CopyContentSelection();
  label.SelectContent(QPoint(label.width() / 3, 1), QPoint(label.width() / 2, label.height() / 2), false);
  (void)label.CopyContentSelection();

  label.UpdateRichText(second_width, second_lines);
  CheckFits(label, "second layout");
  label.render(&canvas);
  label.SelectContent(QPoint(0, 0), QPoint(label.width(), label.height()), true);
  (void)label.CopyContentSelection();
  return 0;
}
