#include "sim/models/face_model.h"

#include <algorithm>
#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QString>

#include "base/log/log.h"
#include "base/util/file_util.h"

namespace sim {

namespace {
constexpr int kImageSize = 72;

bool HasColor(QImage const& image) {
  for (int y = 0; y < image.height(); y += 3) {
    for (int x = 0; x < image.width(); x += 3) {
      const QColor c = image.pixelColor(x, y);
      if (c.alpha() > 0 && c.saturation() > 40) return true;
    }
  }
  return false;
}
}  // namespace

FaceModel::FaceModel()
    : SimModel(kId),
      faces_{{0, "[Smile]", "\U0001F60A"},      {1, "[Grin]", "\U0001F600"},    {2, "[Joy]", "\U0001F602"},
             {3, "[Wink]", "\U0001F609"},       {4, "[Heart]", "\u2764\uFE0F"}, {5, "[ThumbsUp]", "\U0001F44D"},
             {6, "[Clap]", "\U0001F44F"},       {7, "[Party]", "\U0001F389"},   {8, "[Think]", "\U0001F914"},
             {9, "[Cry]", "\U0001F622"},        {10, "[Wow]", "\U0001F62E"},    {11, "[Cool]", "\U0001F60E"},
             {12, "[Fire]", "\U0001F525"},      {13, "[OK]", "\U0001F44C"},     {14, "[Wave]", "\U0001F44B"},
             {15, "[Thanks]", "\U0001F64F"},    {16, "[Rocket]", "\U0001F680"}, {17, "[Coffee]", "\u2615"},
             {18, "[Done]", "\u2705"},          {19, "[Phew]", "\U0001F605"},   {20, "[Angry]", "\U0001F620"},
             {21, "[Sleepy]", "\U0001F634"},    {22, "[Hug]", "\U0001F917"},    {23, "[Star]", "\u2B50"}},
      image_dir_(util::file::MakeFilePath(util::file::UserCacheDir(), "talvex/faces")) {
  SetMethod(0, [this](Variant const*, Variant* result) {
    Variant all(base::variant::kVariantTypeArray);
    for (auto const& face : faces_) all.Add(FaceInfo(face));
    if (result) *result = std::move(all);
    return true;
  });
  SetMethod(1, [this](Variant const* params, Variant* result) {
    Face const* face = loaded_ && params && params->IsInteger() ? FindByIndex(params->AsInt32()) : nullptr;
    if (!face) return false;
    if (result) *result = FaceInfo(*face);
    return true;
  });
  SetMethod(2, [this](Variant const* params, Variant* result) {
    Face const* face = loaded_ && params && params->IsString() ? FindByShortcut(params->AsStr()) : nullptr;
    if (!face) return false;
    if (result) *result = FaceInfo(*face);
    return true;
  });
  SetMethod(4, [this](Variant const*, Variant* result) {
    if (result) *result = loaded_;
    return true;
  });
  SetMethod(7, [this](Variant const* params, Variant* result) {
    if (!params || !params->IsString()) return false;
    if (result) *result = SplitText(params->AsStr());
    return true;
  });
}

std::string FaceModel::ImagePath(int index) const {
  return util::file::MakeFilePath(image_dir_, "face_" + std::to_string(index) + ".png");
}

void FaceModel::Load() {
  util::file::EnsureDirExist(image_dir_);
  emoji_items_.clear();
  for (auto const& face : faces_) {
    const std::string path = ImagePath(face.index);
    if (!util::file::IsFileValid(path)) DrawImage(face, path);
    emoji_items_.push_back(Variant::Map{{"item_type", 1}, {"item_emoji_index", face.index},
                                        {"item_emoji_text", face.shortcut}, {"item_emoji_path", path}});
  }
  loaded_ = true;
  FireEvent(0, nullptr);
}

void FaceModel::DrawImage(Face const& face, std::string const& path) const {
  QImage image(kImageSize, kImageSize, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QFont font("Noto Color Emoji");
    font.setPixelSize(kImageSize * 3 / 4);
    painter.setFont(font);
    painter.drawText(image.rect(), Qt::AlignCenter, QString::fromStdString(face.emoji));
  }
  if (!HasColor(image)) {
    // No color emoji font here: a plain face with the shortcut's initial.
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor("#fbbf24"));
    painter.setPen(QPen(QColor("#d97706"), 3));
    painter.drawEllipse(QRectF(4, 4, kImageSize - 8, kImageSize - 8));
    QFont font;
    font.setPixelSize(kImageSize / 3);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor("#78350f"));
    painter.drawText(image.rect(), Qt::AlignCenter, QString::fromStdString(face.shortcut.substr(1, 1)));
  }
  if (!image.save(QString::fromStdString(path), "PNG")) TXLOG_ERROR << "[sim] face image not written: " << path;
}

Variant FaceModel::FaceInfo(Face const& face) const {
  Variant info(base::variant::kVariantTypeMap);
  info.Set("index", face.index);
  info.Set("face_type", face.shortcut);
  info.Set("path", ImagePath(face.index));
  return info;
}

FaceModel::Face const* FaceModel::FindByIndex(int index) const {
  for (auto const& face : faces_) {
    if (face.index == index) return &face;
  }
  return nullptr;
}

FaceModel::Face const* FaceModel::FindByShortcut(std::string_view shortcut) const {
  for (auto const& face : faces_) {
    if (face.shortcut == shortcut) return &face;
  }
  return nullptr;
}

Variant FaceModel::SplitText(std::string const& text) const {
  Variant items(base::variant::kVariantTypeArray);
  std::string run;
  auto flush = [&] {
    if (run.empty()) return;
    Variant item(base::variant::kVariantTypeMap);
    item.Set("item_type", 0);
    item.Set("item_content", run);
    items.Add(std::move(item));
    run.clear();
  };
  // The next "]" is looked up only when the scan has passed the last one
  // found, so a text of many "[" and no "]" is read once.
  size_t close = 0;
  size_t longest = 0;
  for (auto const& face : faces_) longest = std::max(longest, face.shortcut.size());
  size_t i = 0;
  while (i < text.size()) {
    if (text[i] == '[' && loaded_) {
      if (close != std::string::npos && close <= i) close = text.find(']', i + 1);
      if (close != std::string::npos && close - i < longest) {
        if (Face const* face = FindByShortcut(std::string_view(text).substr(i, close - i + 1))) {
          flush();
          items.Add(emoji_items_[static_cast<size_t>(face - faces_.data())]);
          i = close + 1;
          continue;
        }
      }
    }
    // Up to the next "[" in one go.
    const size_t next = loaded_ ? text.find('[', i + 1) : std::string::npos;
    const size_t stop = next == std::string::npos ? text.size() : next;
    run.append(text, i, stop - i);
    i = stop;
  }
  flush();
  return items;
}

}  // namespace sim
