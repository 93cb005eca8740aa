#pragma once

#include <QPixmap>
#include <QString>

// What an image block of rich text carries.
struct RichTextPropertyPixmap {
  // Stretched to the width of the lines laid out so far (rules, separators).
  bool fill_width = false;
  QPixmap pixmap;
  // Written by copy in place of the image.
  QString alt_text;
  // Font of the "..." shown when the line limit cuts the image away.
  int ellipsis_pixel_size = 12;
  QString ellipsis_color = QStringLiteral("black");
};
