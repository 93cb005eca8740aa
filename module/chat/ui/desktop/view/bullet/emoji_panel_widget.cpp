#include "chat/ui/desktop/view/bullet/emoji_panel_widget.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QPixmap>
#include <QToolButton>

EmojiPanelWidget::EmojiPanelWidget(QWidget* parent) : QFWidget(parent) {
  setObjectName("BulletEmojiPanel");
  setStyleSheet(
      "#BulletEmojiPanel{background-color: rgba(43, 46, 51, 0.92); border-radius: 6px;}"
      "QToolButton{border: none; border-radius: 4px; background: transparent;}"
      "QToolButton:hover, QToolButton:focus{background-color: rgba(255, 255, 255, 0.16);}");
  setAccessibleName("emoji_panel");
  grid_ = new QGridLayout(this);
  grid_->setContentsMargins(8, 8, 8, 8);
  grid_->setSpacing(2);
  setFocusPolicy(Qt::StrongFocus);
}

void EmojiPanelWidget::SetFaces(Variant const& faces) {
  for (auto* button : buttons_) delete button;
  buttons_.clear();
  faces_.clear();
  if (faces.IsArray()) {
    for (auto const& face : faces.AsArray()) {
      if (!face.IsMap() || !face.Get("index").IsInteger()) continue;
      const int index = face.GetInt32("index");
      const QString shortcut = QString::fromStdString(face.GetString("face_type"));
      auto* button = new QToolButton(this);
      button->setFixedSize(kCell, kCell);
      button->setIconSize(QSize(24, 24));
      button->setIcon(QIcon(QPixmap(QString::fromStdString(face.GetString("path")))));
      button->setToolTip(shortcut);
      button->setAccessibleName(shortcut);
      button->setCursor(Qt::PointingHandCursor);
      const int slot = static_cast<int>(buttons_.size());
      connect(button, &QToolButton::clicked, this, [this, index, shortcut] { emit EmojiChosen(index, shortcut); });
      grid_->addWidget(button, slot / kColumns, slot % kColumns);
      buttons_.push_back(button);
      faces_.emplace_back(index, shortcut);
    }
  }
  const int rows = (face_count() + kColumns - 1) / kColumns;
  setFixedSize(kColumns * (kCell + 2) + 14, std::max(rows, 1) * (kCell + 2) + 14);
  current_ = 0;
}

void EmojiPanelWidget::Focus(int i) {
  if (buttons_.empty()) return;
  current_ = std::clamp(i, 0, face_count() - 1);
  buttons_[static_cast<size_t>(current_)]->setFocus(Qt::TabFocusReason);
}

void EmojiPanelWidget::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left: Focus(current_ - 1); return;
    case Qt::Key_Right: Focus(current_ + 1); return;
    case Qt::Key_Up: Focus(current_ - kColumns); return;
    case Qt::Key_Down: Focus(current_ + kColumns); return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (!faces_.empty()) emit EmojiChosen(faces_[static_cast<size_t>(current_)].first,
                                            faces_[static_cast<size_t>(current_)].second);
      return;
    case Qt::Key_Escape: hide(); return;
    default: QFWidget::keyPressEvent(event);
  }
}

void EmojiPanelWidget::showEvent(QShowEvent* event) {
  QFWidget::showEvent(event);
  Focus(current_);
  emit VisibilityChanged(true);
}

void EmojiPanelWidget::hideEvent(QHideEvent* event) {
  QFWidget::hideEvent(event);
  emit VisibilityChanged(false);
}
