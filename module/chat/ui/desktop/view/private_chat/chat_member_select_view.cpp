#include "chat/ui/desktop/view/private_chat/chat_member_select_view.h"

#include <QApplication>
#include <algorithm>
#include <QGuiApplication>
#include <QHideEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QScreen>
#include <QVBoxLayout>

#include "base/log/log.h"
#include "chat/viewmodel/private_chat_members_view_model.h"
#include "framework/meeting/member_provider.h"

namespace QtView {

namespace {

using VM = chat::PrivateChatMembersViewModel;

QString Str(Variant const& row, char const* key) { return QString::fromStdString(row.GetString(key)); }

// A colour of its own for each person, from the id.
QColor AvatarColour(QString const& id) {
  static const QColor kColours[] = {QColor("#4F7CFF"), QColor("#2BA471"), QColor("#E37318"), QColor("#8E56DD"),
                                    QColor("#D54941"), QColor("#0594FA"), QColor("#C9A100"), QColor("#5C6B77")};
  return kColours[qHash(id) % (sizeof(kColours) / sizeof(kColours[0]))];
}

QString Initials(QString const& name) {
  QString initials;
  for (QString const& part : name.split(' ', Qt::SkipEmptyParts)) {
    initials += part.at(0).toUpper();
    if (initials.size() == 2) break;
  }
  return initials.isEmpty() ? QStringLiteral("?") : initials;
}

}  // namespace

// --- the lines ----------------------------------------------------------------------

void ChatMemberListModel::SetList(Variant const& list) {
  beginResetModel();
  lines_.clear();
  const bool searching = list.GetBoolean("is_searching");
  AddSection(list.Get("in_meeting_info"), true);
  // The second section's emptiness is news only when searching a webinar's
  // attendees.
  AddSection(list.Get("waiting_member_info"), searching && list.GetBoolean("is_webinar"));
  if (list.GetBoolean("is_attendee_loading")) {
    lines_.push_back({kKindLoading, -1, Variant(), QString::fromUtf8("…")});
  }
  endResetModel();
}

void ChatMemberListModel::AddSection(Variant const& info, bool show_empty) {
  Variant const& users = info.Get("user_list");
  if (!users.IsArray() || users.Empty()) {
    if (show_empty && info.Has("section_desc")) {
      lines_.push_back({kKindEmpty, -1, Variant(), Str(info, "section_desc")});
    }
    return;
  }
  const bool expanded = info.GetBoolean("expanded", true);
  const int max_count = info.GetInt32("max_count", VM::kFoldCount);
  int section = -1;
  int members = 0;
  for (auto const& row : users.AsArray()) {
    const int type = row.GetInt32("type");
    if (type == VM::kRowTitle) {
      section = row.GetInt32("title_type");
      lines_.push_back({kKindTitle, section, row, Str(row, "title")});
      continue;
    }
    const bool counted = type != VM::kRowEveryone && type != VM::kRowPanelists;
    if (counted && !expanded && members >= max_count) continue;
    if (counted) ++members;
    lines_.push_back({kKindMember, section, row, Str(row, "nickname")});
  }
  const QString more = Str(info, "show_more_desc");
  if (!expanded && !more.isEmpty()) lines_.push_back({kKindMore, section, Variant(), more});
}

int ChatMemberListModel::rowCount(QModelIndex const& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

ChatMemberListModel::Kind ChatMemberListModel::KindAt(int row) const {
  return row >= 0 && row < static_cast<int>(lines_.size()) ? lines_[row].kind : kKindEmpty;
}

Variant const& ChatMemberListModel::RowAt(int row) const {
  static const Variant kNull{};
  return row >= 0 && row < static_cast<int>(lines_.size()) ? lines_[row].row : kNull;
}

int ChatMemberListModel::SectionAt(int row) const {
  return row >= 0 && row < static_cast<int>(lines_.size()) ? lines_[row].section : -1;
}

Qt::ItemFlags ChatMemberListModel::flags(QModelIndex const& index) const {
  const Kind kind = KindAt(index.row());
  if (kind == kKindEmpty || kind == kKindLoading) return Qt::NoItemFlags;
  // A greyed member can still be reached, so that its reason can be read.
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

QVariant ChatMemberListModel::data(QModelIndex const& index, int role) const {
  if (!index.isValid() || index.row() >= static_cast<int>(lines_.size())) return QVariant();
  Line const& line = lines_[index.row()];
  switch (role) {
    case Qt::DisplayRole:
      return line.text;
    case kKindRole:
      return static_cast<int>(line.kind);
    case kEnabledRole:
      return line.kind != kKindMember || line.row.GetBoolean("enable", true);
    case kCheckedRole:
      return line.row.GetBoolean("checked");
    case kRemarkRole:
      return Str(line.row, "remark");
    case Qt::ToolTipRole:
      return line.kind == kKindMember ? QVariant(Str(line.row, "disable_reason")) : QVariant();
    case Qt::AccessibleTextRole: {
      QStringList parts{line.text};
      if (line.kind == kKindMember) {
        if (!Str(line.row, "remark").isEmpty()) parts << Str(line.row, "remark");
        if (line.row.GetBoolean("checked")) parts << QObject::tr("chosen");
        if (!line.row.GetBoolean("enable", true)) parts << Str(line.row, "disable_reason");
      } else if (line.kind == kKindTitle && line.row.Has("title_expand_collapse_desc")) {
        parts << Str(line.row, "title_expand_collapse_desc");
      }
      return parts.join(", ");
    }
    default:
      return QVariant();
  }
}

// --- painting -----------------------------------------------------------------------

QSize ChatMemberItemDelegate::sizeHint(QStyleOptionViewItem const& option, QModelIndex const& index) const {
  const int kind = index.data(ChatMemberListModel::kKindRole).toInt();
  return QSize(option.rect.width(), kind == ChatMemberListModel::kKindMember ? kMemberHeight : kTitleHeight);
}

void ChatMemberItemDelegate::paint(QPainter* painter, QStyleOptionViewItem const& option,
                                   QModelIndex const& index) const {
  auto const* model = qobject_cast<ChatMemberListModel const*>(index.model());
  if (!model) return;
  const int kind = index.data(ChatMemberListModel::kKindRole).toInt();
  const QRect rect = option.rect;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const bool current = option.state & QStyle::State_Selected;
  const bool hovered = option.state & QStyle::State_MouseOver;
  if (kind != ChatMemberListModel::kKindEmpty && kind != ChatMemberListModel::kKindLoading && (current || hovered)) {
    painter->fillRect(rect, current ? QColor("#E8F0FE") : QColor("#F3F5F7"));
  }
  QFont font = option.font;
  const QString text = index.data(Qt::DisplayRole).toString();
  if (kind == ChatMemberListModel::kKindTitle) {
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 0.9);
    painter->setFont(font);
    painter->setPen(QColor("#5C6166"));
    const QString fold = QString::fromStdString(model->RowAt(index.row()).GetString("title_expand_collapse_desc"));
    QRect text_rect = rect.adjusted(12, 0, -12, 0);
    if (!fold.isEmpty()) {
      painter->setPen(QColor("#1A73E8"));
      painter->drawText(text_rect, Qt::AlignVCenter | Qt::AlignRight, fold);
      text_rect.setRight(text_rect.right() - painter->fontMetrics().horizontalAdvance(fold) - 8);
      painter->setPen(QColor("#5C6166"));
    }
    painter->drawText(text_rect, Qt::AlignVCenter | Qt::AlignLeft,
                      painter->fontMetrics().elidedText(text, Qt::ElideRight, text_rect.width()));
  } else if (kind == ChatMemberListModel::kKindMember) {
    Variant const& row = model->RowAt(index.row());
    const bool enabled = row.GetBoolean("enable", true);
    QColor title_colour(QString::fromStdString(row.GetString("title_color", "#2D3033")));
    if (!title_colour.isValid()) title_colour = QColor("#2D3033");
    // The avatar: a coloured disc with the initials, or a group mark for
    // everyone.
    const QRect avatar(rect.left() + 12, rect.center().y() - kAvatarSize / 2 + 1, kAvatarSize, kAvatarSize);
    const int type = row.GetInt32("type");
    const bool group = type == chat::PrivateChatMembersViewModel::kRowEveryone ||
                       type == chat::PrivateChatMembersViewModel::kRowPanelists;
    QColor disc = group ? QColor("#1A73E8") : AvatarColour(QString::fromStdString(row.GetString("user_id")));
    if (!enabled) disc = QColor("#C5C8CC");
    painter->setPen(Qt::NoPen);
    painter->setBrush(disc);
    painter->drawEllipse(avatar);
    QFont initials_font = font;
    initials_font.setBold(true);
    initials_font.setPointSizeF(font.pointSizeF() * 0.8);
    painter->setFont(initials_font);
    painter->setPen(Qt::white);
    painter->drawText(avatar, Qt::AlignCenter, group ? QStringLiteral("All") : Initials(text));

    QRect text_rect(avatar.right() + 10, rect.top(), rect.right() - avatar.right() - 40, rect.height());
    painter->setFont(font);
    const QString remark = index.data(ChatMemberListModel::kRemarkRole).toString();
    const QFontMetrics metrics(font);
    const int remark_width = remark.isEmpty() ? 0 : metrics.horizontalAdvance(remark) + 8;
    const QString name = metrics.elidedText(text, Qt::ElideRight, std::max(0, text_rect.width() - remark_width));
    painter->setPen(title_colour);
    painter->drawText(text_rect, Qt::AlignVCenter | Qt::AlignLeft, name);
    if (!remark.isEmpty()) {
      QColor remark_colour(QString::fromStdString(row.GetString("remark_color", "#777777")));
      painter->setPen(remark_colour.isValid() ? remark_colour : QColor("#777777"));
      painter->drawText(text_rect.adjusted(metrics.horizontalAdvance(name) + 8, 0, 0, 0),
                        Qt::AlignVCenter | Qt::AlignLeft, remark);
    }
    if (row.GetBoolean("checked")) {
      // The tick of the chosen receiver.
      QPen tick(QColor("#1A73E8"), 2);
      painter->setPen(tick);
      const QPoint c(rect.right() - 20, rect.center().y());
      QPainterPath path;
      path.moveTo(c + QPoint(-5, 0));
      path.lineTo(c + QPoint(-1, 4));
      path.lineTo(c + QPoint(6, -4));
      painter->setBrush(Qt::NoBrush);
      painter->drawPath(path);
    }
  } else {
    painter->setFont(font);
    painter->setPen(kind == ChatMemberListModel::kKindMore ? QColor("#1A73E8") : QColor("#8A8F99"));
    painter->drawText(rect.adjusted(12, 0, -12, 0),
                      Qt::AlignVCenter | (kind == ChatMemberListModel::kKindMore ? Qt::AlignLeft : Qt::AlignHCenter),
                      text);
  }
  painter->restore();
}

// --- the popup ----------------------------------------------------------------------

ChatMemberSelectView::ChatMemberSelectView(int source, QWidget* parent)
    : QFrame(parent, Qt::Popup | Qt::FramelessWindowHint), source_(source) {
  setObjectName("ChatMemberSelectView");
  setAttribute(Qt::WA_DeleteOnClose);
  setFixedSize(kWidth, kHeight);
  setMinimumHeight(kMinHeight);
  setStyleSheet(
      "#ChatMemberSelectView { background: #FFFFFF; border: 1px solid #DCDFE3; border-radius: 8px; }"
      "#ChatMemberSelectTitle { color: #1F2329; font-weight: bold; }"
      "#ChatMemberSearch { border: 1px solid #DCDFE3; border-radius: 6px; padding: 5px 8px; background: #F7F8FA; }"
      "#ChatMemberSearch:focus { border-color: #1A73E8; background: #FFFFFF; }"
      "#ChatMemberHint { color: #B26B00; background: #FFF6E5; border-radius: 4px; padding: 4px 8px; }"
      "QListView { border: none; background: transparent; outline: none; }");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 12, 0, 8);
  layout->setSpacing(8);
  title_ = new QLabel(this);
  title_->setObjectName("ChatMemberSelectTitle");
  title_->setContentsMargins(12, 0, 12, 0);
  search_ = new QLineEdit(this);
  search_->setObjectName("ChatMemberSearch");
  search_->setClearButtonEnabled(true);
  search_->setAccessibleName(tr("Search members"));
  search_->installEventFilter(this);
  auto* search_row = new QHBoxLayout;
  search_row->setContentsMargins(12, 0, 12, 0);
  search_row->addWidget(search_);
  hint_ = new QLabel(this);
  hint_->setObjectName("ChatMemberHint");
  hint_->setWordWrap(true);
  hint_->hide();
  auto* hint_row = new QHBoxLayout;
  hint_row->setContentsMargins(12, 0, 12, 0);
  hint_row->addWidget(hint_);
  model_ = new ChatMemberListModel(this);
  list_ = new QListView(this);
  list_->setObjectName("ChatMemberList");
  list_->setAccessibleName(tr("Members"));
  list_->setModel(model_);
  list_->setItemDelegate(new ChatMemberItemDelegate(list_));
  list_->setUniformItemSizes(false);
  list_->setMouseTracking(true);
  list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  list_->installEventFilter(this);
  layout->addWidget(title_);
  layout->addLayout(search_row);
  layout->addLayout(hint_row);
  layout->addWidget(list_, 1);
  connect(list_, &QListView::clicked, this, [this](QModelIndex const& index) { Activate(index.row()); });
  connect(search_, &QLineEdit::textEdited, this, [this](QString const& text) {
    Variant params = Variant::Map{{"search_text", text.toStdString()}};
    view_model_->Handle(VM::kActionSearchTextChanged, &params);
  });
  connect(search_, &QLineEdit::returnPressed, this, [this] {
    // Enter in the box picks the line one stands on, else the first one
    // that can be picked.
    int row = list_->currentIndex().row();
    if (row < 0) {
      for (int i = 0; i < model_->rowCount(); ++i) {
        if (model_->KindAt(i) == ChatMemberListModel::kKindMember && model_->RowAt(i).GetBoolean("enable", true)) {
          row = i;
          break;
        }
      }
    }
    Activate(row);
  });

  view_model_ = std::make_shared<VM>();
  QPointer<ChatMemberSelectView> self(this);
  view_model_->BindProp(VM::kPropMemberList, [self](Variant const* list, Variant const*) {
    if (self && list) self->OnMemberList(*list);
  });
  view_model_->BindProp(VM::kPropAuthorityHint, [self](Variant const* hint, Variant const*) {
    if (self && hint) self->OnHint(*hint);
  });
  view_model_->BindProp(VM::kPropClose, [self](Variant const*, Variant const*) {
    if (!self || self->closing_) return;
    self->chosen_ = true;
    self->close();
  });
  Variant params(source_);
  view_model_->DidCreated(nullptr);
  view_model_->DidAttached(&params);
  Variant orientation = Variant::Map{{"orientation", static_cast<int>(talvex::PrivateChatMembers::kPortrait)}};
  view_model_->Handle(VM::kActionOrientation, &orientation);
}

ChatMemberSelectView::~ChatMemberSelectView() {
  if (view_model_) view_model_->DidDetached();
}

void ChatMemberSelectView::PopupAbove(QPoint const& anchor) {
  QPoint top_left(anchor.x(), anchor.y() - height());
  if (QScreen* screen = QGuiApplication::screenAt(anchor)) {
    const QRect area = screen->availableGeometry();
    top_left.setX(std::clamp(top_left.x(), area.left(), std::max(area.left(), area.right() - width())));
    top_left.setY(std::clamp(top_left.y(), area.top(), std::max(area.top(), area.bottom() - height())));
  }
  anchor_ = anchor;
  move(top_left);
  view_model_->SetVisible(true);
  view_model_->Handle(VM::kActionShow);
  show();
  search_->setFocus(Qt::PopupFocusReason);
}

void ChatMemberSelectView::OnMemberList(Variant const& list) {
  title_->setText(QString::fromStdString(list.GetString("search_panel_title")));
  search_->setPlaceholderText(QString::fromStdString(list.GetString("search_placeholder_text")));
  search_->setEnabled(!list.GetBoolean("disable_search"));
  // Keep the line one stands on across the update, by what it shows.
  const int current = list_->currentIndex().row();
  const Variant before = model_->RowAt(current);
  const int before_kind = model_->KindAt(current);
  model_->SetList(list);
  FitHeight();
  if (list.GetBoolean("scroll_to_top")) {
    list_->scrollToTop();
    view_model_->Handle(VM::kActionClearScrollToTop);
  }
  if (current < 0) return;
  for (int i = 0; i < model_->rowCount(); ++i) {
    if (model_->KindAt(i) != before_kind) continue;
    Variant const& row = model_->RowAt(i);
    const bool same = before_kind == ChatMemberListModel::kKindMember
                          ? row.GetString("user_id") == before.GetString("user_id") &&
                                row.GetInt32("type") == before.GetInt32("type")
                          : model_->SectionAt(i) == model_->SectionAt(current);
    if (same) {
      list_->setCurrentIndex(model_->index(i));
      return;
    }
  }
}

void ChatMemberSelectView::FitHeight() {
  // As tall as the lines need, up to kHeight; the bottom stays at the anchor.
  if (layout()) layout()->activate();
  int lines = 0;
  QStyleOptionViewItem option;
  option.rect = QRect(0, 0, list_->viewport()->width(), 0);
  for (int i = 0; i < model_->rowCount() && lines < kHeight; ++i) {
    lines += list_->itemDelegate()->sizeHint(option, model_->index(i)).height();
  }
  const int chrome = height() - list_->height();
  const int wanted = std::clamp(chrome + lines + 2 * list_->frameWidth() + 4, kMinHeight, kHeight);
  if (wanted == height()) return;
  setFixedHeight(wanted);
  if (!anchor_.isNull()) move(x(), anchor_.y() - wanted);
}

void ChatMemberSelectView::OnHint(Variant const& hint) {
  hint_->setText(QString::fromStdString(hint.GetString("text")));
  hint_->setVisible(!hint.GetBoolean("hidden", true) && !hint_->text().isEmpty());
}

void ChatMemberSelectView::Activate(int row) {
  switch (model_->KindAt(row)) {
    case ChatMemberListModel::kKindMember: {
      Variant const& member = model_->RowAt(row);
      if (!member.GetBoolean("enable", true)) {
        QApplication::beep();
        return;
      }
      Variant chosen = member;
      view_model_->Handle(source_ == VM::kSourceBullet ? VM::kActionSelectMemberInBullet : VM::kActionSelectMember,
                          &chosen);
      return;
    }
    case ChatMemberListModel::kKindTitle:
    case ChatMemberListModel::kKindMore: {
      if (model_->KindAt(row) == ChatMemberListModel::kKindTitle &&
          !model_->RowAt(row).Has("title_expand_collapse_desc")) {
        return;
      }
      Variant params = Variant::Map{{"title_type", model_->SectionAt(row)}};
      view_model_->Handle(VM::kActionExpandCollapse, &params);
      return;
    }
    default:
      return;
  }
}

void ChatMemberSelectView::MoveCurrent(int step) {
  int row = list_->currentIndex().row();
  const int count = model_->rowCount();
  for (int i = row + step; i >= 0 && i < count; i += step) {
    if (model_->flags(model_->index(i)) & Qt::ItemIsEnabled) {
      list_->setCurrentIndex(model_->index(i));
      list_->scrollTo(model_->index(i));
      return;
    }
  }
  // Up from the first line goes back to the search box.
  if (step < 0) search_->setFocus(Qt::OtherFocusReason);
}

bool ChatMemberSelectView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && (watched == search_ || watched == list_)) {
    auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
      case Qt::Key_Down:
        if (watched == search_) {
          // Into the list, at its first line one can stand on.
          list_->setFocus(Qt::OtherFocusReason);
          list_->setCurrentIndex(QModelIndex());
        }
        MoveCurrent(1);
        return true;
      case Qt::Key_Up:
        if (watched == list_) MoveCurrent(-1);
        return true;
      case Qt::Key_Return:
      case Qt::Key_Enter:
        if (watched == list_) {
          Activate(list_->currentIndex().row());
          return true;
        }
        return false;
      case Qt::Key_Escape:
        keyPressEvent(key);
        return true;
      default:
        break;
    }
  }
  if (event->type() == QEvent::FocusIn && watched == search_) view_model_->Handle(VM::kActionSearchFocus);
  return QFrame::eventFilter(watched, event);
}

void ChatMemberSelectView::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) {
    QFrame::keyPressEvent(event);
    return;
  }
  // Escape leaves a search first, then closes.
  if (!search_->text().isEmpty()) {
    search_->clear();
    view_model_->Handle(VM::kActionSearchCancel);
    search_->setFocus(Qt::OtherFocusReason);
    return;
  }
  close();
}

void ChatMemberSelectView::hideEvent(QHideEvent* event) {
  QFrame::hideEvent(event);
  if (closing_) return;
  closing_ = true;
  view_model_->SetVisible(false);
  // Closed without a choice: the user's close.
  if (!chosen_) view_model_->Handle(VM::kActionClose);
  if (on_closed) on_closed();
}

}  // namespace QtView
