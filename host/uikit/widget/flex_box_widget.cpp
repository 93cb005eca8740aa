#include "uikit/widget/flex_box_widget.h"

#include <QBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <QRegularExpression>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "base/log/log.h"

namespace {

constexpr int kMaxPixels = 4096;
constexpr int kDefaultImageSide = 48;

QString Text(Variant const& node, char const* key) { return QString::fromStdString(node.GetString(key)); }

int Pixels(Variant const& node, char const* key, int def = 0) {
  Variant const& value = node.Get(key);
  return value.IsNumber() ? std::clamp(value.AsInt32(), 0, kMaxPixels) : def;
}

QColor Colour(Variant const& node, char const* key) {
  Variant const& value = node.Get(key);
  return value.IsString() ? QColor(QString::fromStdString(value.AsStr())) : QColor();
}

QMargins Padding(Variant const& value) {
  if (value.IsNumber()) {
    const int all = std::clamp(value.AsInt32(), 0, kMaxPixels);
    return QMargins(all, all, all, all);
  }
  if (value.IsArray() && value.Size() == 4) {
    auto side = [&value](int i) { return std::clamp(value[i].AsInt32(), 0, kMaxPixels); };
    return QMargins(side(0), side(1), side(2), side(3));
  }
  return QMargins();
}

bool Truthy(Variant const& value) {
  if (value.IsBool() || value.IsNumber()) return value.AsDouble() != 0.0;
  if (value.IsString() || value.IsArray() || value.IsMap()) return !value.Empty();
  return false;
}

// The text of a data value as a placeholder shows it; containers show nothing.
QString ValueText(Variant const& value) {
  if (value.IsArray() || value.IsMap() || value.IsPointer()) return QString();
  return QString::fromStdString(value.ToString());
}

QString Fill(QString const& pattern, Variant const& data) {
  static const QRegularExpression kPlaceholder(QStringLiteral("\\{\\{\\s*([^{}]*?)\\s*\\}\\}"));
  if (!pattern.contains(QLatin1String("{{"))) return pattern;
  QString out;
  int last = 0;
  auto it = kPlaceholder.globalMatch(pattern);
  while (it.hasNext()) {
    const auto match = it.next();
    out += pattern.midRef(last, match.capturedStart() - last);
    out += ValueText(data.Get(match.captured(1).toStdString()));
    last = match.capturedEnd();
  }
  out += pattern.midRef(last);
  return out;
}

// A box: its children's layout, and its own background, border and corners.
class FlexFrame : public QWidget {
 public:
  FlexFrame(QColor background, QColor border, int radius, QWidget* parent)
      : QWidget(parent), background_(background), border_(border), radius_(radius) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    if (!background_.isValid() && !border_.isValid()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(border_.isValid() ? QPen(border_, 1) : Qt::NoPen);
    painter.setBrush(background_.isValid() ? QBrush(background_) : Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius_, radius_);
  }

 private:
  QColor background_;
  QColor border_;
  int radius_;
};

// Wrapped text whose height follows its width, cut to a number of lines with
// an ellipsis on the last one shown.
class FlexText : public QWidget {
 public:
  FlexText(int max_lines, Qt::Alignment alignment, QColor colour, QWidget* parent)
      : QWidget(parent), max_lines_(max_lines), alignment_(alignment), colour_(colour) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
  }

  void SetText(QString text) {
    text.replace(QLatin1Char('\n'), QChar::LineSeparator);
    if (text == text_) return;
    text_ = std::move(text);
    cached_width_ = -1;
    // What a screen reader says, and what tests read.
    setAccessibleName(QString(text_).replace(QChar::LineSeparator, QLatin1Char('\n')));
    setVisible(!text_.isEmpty());
    updateGeometry();
    update();
  }
  QString const& text() const { return text_; }

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return ShownLines(width) * fontMetrics().lineSpacing(); }

  QSize sizeHint() const override {
    int natural = 0;
    for (auto const& part : text_.split(QChar::LineSeparator)) {
      natural = std::max(natural, fontMetrics().horizontalAdvance(part));
    }
    natural = std::min(natural + 1, kMaxPixels);
    return QSize(natural, heightForWidth(natural));
  }
  QSize minimumSizeHint() const override {
    return QSize(fontMetrics().horizontalAdvance(QStringLiteral("M\u2026")), fontMetrics().lineSpacing());
  }

 protected:
  void changeEvent(QEvent* event) override {
    if (event->type() == QEvent::FontChange) cached_width_ = -1;
    QWidget::changeEvent(event);
  }

  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setPen(colour_.isValid() ? colour_ : palette().color(QPalette::WindowText));
    painter.setFont(font());
    QTextLayout layout(text_, font());
    LayOut(layout, width());
    const int shown = ShownLines(width());
    const int line_height = fontMetrics().lineSpacing();
    for (int i = 0; i < shown; ++i) {
      QTextLine line = layout.lineAt(i);
      const bool cut = i == shown - 1 && shown < layout.lineCount();
      if (!cut) {
        line.draw(&painter, QPointF(0, i * line_height - line.y()));
        continue;
      }
      QString rest = text_.mid(line.textStart());
      rest.replace(QChar::LineSeparator, QLatin1Char(' '));
      const QString elided = fontMetrics().elidedText(rest, Qt::ElideRight, width());
      painter.drawText(QRect(0, i * line_height, width(), line_height), alignment_ | Qt::AlignVCenter, elided);
    }
  }

 private:
  void LayOut(QTextLayout& layout, int width) const {
    QTextOption option(alignment_);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
      line.setLineWidth(std::max(width, 1));
    }
    layout.endLayout();
  }

  int ShownLines(int width) const {
    if (text_.isEmpty()) return 0;
    if (width != cached_width_) {
      QTextLayout layout(text_, font());
      LayOut(layout, width);
      cached_width_ = width;
      cached_lines_ = layout.lineCount();
    }
    return max_lines_ > 0 ? std::min(cached_lines_, max_lines_) : cached_lines_;
  }

  QString text_;
  int max_lines_;
  Qt::Alignment alignment_;
  QColor colour_;
  mutable int cached_width_ = -1;
  mutable int cached_lines_ = 0;
};

// A picture cropped to its box, with rounded corners; a plain colour stands
// in while there is none.
class FlexImage : public QWidget {
 public:
  FlexImage(int radius, QColor placeholder, QWidget* parent)
      : QWidget(parent), radius_(radius), placeholder_(placeholder) {}

  void SetSource(QString source) {
    if (source.startsWith(QLatin1String("qrc:"))) source = source.mid(3);
    if (source.startsWith(QLatin1String("file://"))) source = source.mid(7);
    if (source == source_) return;
    source_ = source;
    picture_ = QPixmap();
    // Remote pictures are the host's to fetch; until then the placeholder shows.
    const bool local = !source.isEmpty() && !source.contains(QLatin1String("://"));
    if (local && !QPixmapCache::find(QStringLiteral("flex:") + source, &picture_)) {
      if (picture_.load(source)) QPixmapCache::insert(QStringLiteral("flex:") + source, picture_);
    }
    update();
  }
  bool HasPicture() const { return !picture_.isNull(); }

  QSize sizeHint() const override { return QSize(kDefaultImageSide, kDefaultImageSide); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath clip;
    clip.addRoundedRect(QRectF(rect()), radius_, radius_);
    painter.setClipPath(clip);
    if (picture_.isNull()) {
      if (placeholder_.isValid()) painter.fillRect(rect(), placeholder_);
      return;
    }
    // Crop the middle of the picture to the box's proportions.
    const QSizeF box = size();
    QSizeF part = picture_.size();
    if (part.width() * box.height() > part.height() * box.width()) {
      part.setWidth(part.height() * box.width() / std::max(box.height(), 1.0));
    } else {
      part.setHeight(part.width() * box.height() / std::max(box.width(), 1.0));
    }
    const QRectF source(QPointF((picture_.width() - part.width()) / 2, (picture_.height() - part.height()) / 2), part);
    painter.drawPixmap(QRectF(rect()), picture_, source);
  }

 private:
  int radius_;
  QColor placeholder_;
  QString source_;
  QPixmap picture_;
};

Qt::Alignment CrossAlignment(QString const& align, bool row) {
  if (align == QLatin1String("start")) return row ? Qt::AlignTop : Qt::AlignLeft;
  if (align == QLatin1String("center")) return row ? Qt::AlignVCenter : Qt::AlignHCenter;
  if (align == QLatin1String("end")) return row ? Qt::AlignBottom : Qt::AlignRight;
  return Qt::Alignment();
}

Qt::Alignment TextAlignment(QString const& align) {
  if (align == QLatin1String("center")) return Qt::AlignHCenter;
  if (align == QLatin1String("right")) return Qt::AlignRight;
  return Qt::AlignLeft;
}

}  // namespace

struct FlexBoxWidget::Binding {
  QWidget* widget = nullptr;
  enum Kind { kBox, kText, kImage } kind = kBox;
  QString pattern;  // text or source, with placeholders
  QString visible_key;
  bool visible_inverted = false;
};

class FlexBoxWidget::Builder {
 public:
  explicit Builder(std::vector<Binding>* bindings) : bindings_(bindings) {}

  QWidget* Build(Variant const& node, int depth, QWidget* parent) {
    if (!error_.isEmpty()) return nullptr;
    if (depth > kMaxDepth) return Fail(QStringLiteral("nesting deeper than %1").arg(kMaxDepth));
    if (++nodes_ > kMaxNodes) return Fail(QStringLiteral("more than %1 nodes").arg(kMaxNodes));
    if (!node.IsMap()) return Fail(QStringLiteral("a node is not an object"));
    const QString type = Text(node, "type");
    Binding binding;
    QWidget* widget = nullptr;
    if (type == QLatin1String("box")) {
      widget = BuildBox(node, depth, parent);
      binding.kind = Binding::kBox;
    } else if (type == QLatin1String("text")) {
      QFont font = parent->font();
      if (node.Get("font_size").IsNumber()) font.setPixelSize(std::clamp(node.GetInt32("font_size"), 1, 200));
      font.setBold(node.GetBoolean("bold"));
      font.setStrikeOut(node.GetBoolean("strike"));
      auto* text = new FlexText(Pixels(node, "max_lines"), TextAlignment(Text(node, "align")), Colour(node, "color"),
                                parent);
      text->setFont(font);
      widget = text;
      binding.kind = Binding::kText;
      binding.pattern = Text(node, "text");
    } else if (type == QLatin1String("image")) {
      widget = new FlexImage(Pixels(node, "radius"), Colour(node, "placeholder"), parent);
      binding.kind = Binding::kImage;
      binding.pattern = Text(node, "source");
    } else if (type == QLatin1String("spacer")) {
      widget = new QWidget(parent);
      widget->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    } else {
      return Fail(QStringLiteral("unknown node type \"%1\"").arg(type));
    }
    if (!widget) return nullptr;
    widget->setObjectName(Text(node, "name"));
    const int width = Pixels(node, "width", -1);
    const int height = Pixels(node, "height", -1);
    if (width >= 0) widget->setFixedWidth(width);
    if (height >= 0) widget->setFixedHeight(height);
    if (type == QLatin1String("image") && (width < 0 || height < 0)) {
      widget->setFixedSize(width < 0 ? kDefaultImageSide : width, height < 0 ? kDefaultImageSide : height);
    }
    QString visible = Text(node, "visible");
    if (visible.startsWith(QLatin1Char('!'))) {
      binding.visible_inverted = true;
      visible.remove(0, 1);
    }
    binding.visible_key = visible.trimmed();
    binding.widget = widget;
    if (binding.kind != Binding::kBox || !binding.visible_key.isEmpty()) bindings_->push_back(binding);
    return widget;
  }

  QString const& error() const { return error_; }

 private:
  QWidget* BuildBox(Variant const& node, int depth, QWidget* parent) {
    auto* frame = new FlexFrame(Colour(node, "background"), Colour(node, "border"), Pixels(node, "radius"), parent);
    const bool row = Text(node, "direction") == QLatin1String("row");
    auto* layout = new QBoxLayout(row ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, frame);
    layout->setContentsMargins(Padding(node.Get("padding")));
    layout->setSpacing(Pixels(node, "spacing"));
    const Qt::Alignment cross = CrossAlignment(Text(node, "align"), row);
    const QString justify = Text(node, "justify");
    const bool between = justify == QLatin1String("space-between");
    if (justify == QLatin1String("center") || justify == QLatin1String("end")) layout->addStretch(1);
    Variant const& children = node.Get("children");
    if (!children.IsNull() && !children.IsArray()) return Fail(QStringLiteral("\"children\" is not an array"));
    bool first = true;
    bool grows = false;
    for (auto const& child : children.AsArray()) {
      if (between && !first) layout->addStretch(1);
      first = false;
      QWidget* widget = Build(child, depth + 1, frame);
      if (!widget) return nullptr;
      const int grow = Pixels(child, "grow");
      grows = grows || grow > 0;
      layout->addWidget(widget, grow, cross);
    }
    // Spare room goes after the children unless one of them takes it; a box
    // layout would otherwise share it out and move fixed children apart.
    const bool start = justify.isEmpty() || justify == QLatin1String("start");
    if (justify == QLatin1String("center") || (start && !grows)) layout->addStretch(1);
    return frame;
  }

  QWidget* Fail(QString why) {
    if (error_.isEmpty()) error_ = std::move(why);
    return nullptr;
  }

  std::vector<Binding>* bindings_;
  QString error_;
  int nodes_ = 0;
};

FlexBoxWidget::FlexBoxWidget(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
}

FlexBoxWidget::~FlexBoxWidget() = default;

bool FlexBoxWidget::SetLayoutTemplate(QString const& json) {
  Variant layout;
  const QByteArray bytes = json.toUtf8();
  if (!layout.FromJsonStr(bytes.constData(), bytes.size())) {
    Clear();
    error_ = QStringLiteral("the layout is not valid JSON");
    TXLOG_ERROR << "flex box layout refused: " << error_.toStdString();
    return false;
  }
  return SetLayoutTemplate(layout);
}

bool FlexBoxWidget::SetLayoutTemplate(Variant const& layout) {
  if (layout.IsString()) return SetLayoutTemplate(QString::fromStdString(layout.AsStr()));
  Clear();
  std::vector<Binding> bindings;
  Builder builder(&bindings);
  QWidget* root = layout.IsMap() ? builder.Build(layout, 0, this) : nullptr;
  if (!root) {
    // A refused description leaves nothing of what it had built so far.
    qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
    error_ = layout.IsMap() ? builder.error() : QStringLiteral("the layout is not an object");
    TXLOG_ERROR << "flex box layout refused: " << error_.toStdString();
    return false;
  }
  this->layout()->addWidget(root);
  root_ = root;
  bindings_ = std::move(bindings);
  ApplyData();
  if (isVisible()) root_->show();
  return true;
}

bool FlexBoxWidget::HasLayout() const { return root_ != nullptr; }

void FlexBoxWidget::Clear() {
  error_.clear();
  bindings_.clear();
  delete root_;
  root_ = nullptr;
}

void FlexBoxWidget::SetData(Variant const& data) {
  data_ = data.IsMap() ? data : Variant(base::variant::kVariantTypeMap);
  ApplyData();
}

void FlexBoxWidget::ApplyData() {
  for (auto const& binding : bindings_) {
    if (binding.kind == Binding::kText) {
      static_cast<FlexText*>(binding.widget)->SetText(Fill(binding.pattern, data_));
    } else if (binding.kind == Binding::kImage) {
      static_cast<FlexImage*>(binding.widget)->SetSource(Fill(binding.pattern, data_));
    }
    if (!binding.visible_key.isEmpty()) {
      const bool on = Truthy(data_.Get(binding.visible_key.toStdString())) != binding.visible_inverted;
      // An empty text stays hidden whatever its switch says.
      const bool empty_text =
          binding.kind == Binding::kText && static_cast<FlexText*>(binding.widget)->text().isEmpty();
      binding.widget->setVisible(on && !empty_text);
    }
  }
  // Children shown or hidden before the box is on screen do not tell their
  // boxes, whose measurements (and those of the boxes around them) would
  // then be stale.
  for (QWidget* part : findChildren<QWidget*>()) part->updateGeometry();
  for (QLayout* box : findChildren<QLayout*>()) box->invalidate();
  updateGeometry();
}

bool FlexBoxWidget::hasHeightForWidth() const { return layout()->hasHeightForWidth(); }

int FlexBoxWidget::heightForWidth(int width) const {
  return layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width) : layout()->totalSizeHint().height();
}

QSize FlexBoxWidget::sizeHint() const {
  const QSize natural = layout()->totalSizeHint();
  const int width = minimumWidth() == maximumWidth() ? minimumWidth() : natural.width();
  return QSize(width, hasHeightForWidth() ? heightForWidth(width) : natural.height());
}
