#include "uikit/avatar/qt_avatar_view_factory.h"

#include <QFileInfo>
#include <QPainter>
#include <QPainterPath>
#include <QUrl>

namespace {

int g_live_avatars = 0;

// Calm colours that keep white initials readable.
const QColor kPalette[] = {QColor("#3D7EFF"), QColor("#00A870"), QColor("#FF7E29"), QColor("#7A5AF8"),
                           QColor("#E0457B"), QColor("#1AA3B8"), QColor("#C98A00"), QColor("#5B6B8C")};

QString LocalPath(QString const& path) {
  if (path.startsWith("file:")) return QUrl(path).toLocalFile();
  return path;
}

}  // namespace

QtAvatarView::QtAvatarView(QString const& name, QString const& picture_path, int size, QWidget* parent)
    : QWidget(parent) {
  setFixedSize(size, size);
  setAttribute(Qt::WA_TranslucentBackground);
  SetPerson(name, picture_path);
}

void QtAvatarView::SetPerson(QString const& name, QString const& picture_path) {
  name_ = name;
  initials_ = InitialsOf(name);
  background_ = ColorOf(name);
  picture_ = QPixmap();
  const QString local = LocalPath(picture_path);
  if (!local.isEmpty() && QFileInfo::exists(local)) picture_.load(local);
  setToolTip(name);
  update();
}

QString QtAvatarView::InitialsOf(QString const& name) {
  const QStringList words = name.simplified().split(' ', Qt::SkipEmptyParts);
  QString initials;
  for (QString const& word : words) {
    // A whole grapheme: a surrogate pair stays together.
    const int length = word.at(0).isHighSurrogate() && word.size() > 1 ? 2 : 1;
    initials += word.left(length).toUpper();
    if (initials.size() >= 2 || words.size() == 1) break;
  }
  return initials;
}

QColor QtAvatarView::ColorOf(QString const& name) {
  uint hash = 2166136261u;
  for (QChar c : name) hash = (hash ^ c.unicode()) * 16777619u;
  return kPalette[hash % (sizeof(kPalette) / sizeof(kPalette[0]))];
}

void QtAvatarView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing);
  QPainterPath circle;
  circle.addEllipse(QRectF(rect()));
  if (!picture_.isNull()) {
    painter.setClipPath(circle);
    painter.drawPixmap(rect(), picture_.scaled(size() * devicePixelRatioF(), Qt::KeepAspectRatioByExpanding,
                                               Qt::SmoothTransformation));
    return;
  }
  painter.fillPath(circle, background_);
  QFont font = painter.font();
  font.setPixelSize(qMax(8, height() * 2 / 5));
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(rect(), Qt::AlignCenter, initials_);
}

QtAvatarView* QtAvatarViewFactory::CreateAvatarView(QWidget* parent, QString const& name,
                                                    QString const& picture_path, int size) {
  ++g_live_avatars;
  return new QtAvatarView(name, picture_path, size, parent);
}

void QtAvatarViewFactory::RemoveAvatarView(QWidget* avatar) {
  if (!avatar) return;
  --g_live_avatars;
  avatar->hide();
  avatar->deleteLater();
}

int QtAvatarViewFactory::LiveCount() { return g_live_avatars; }
