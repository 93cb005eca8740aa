#pragma once

#include <QAbstractListModel>
#include <QFrame>
#include <QStyledItemDelegate>
#include <functional>
#include <memory>
#include <vector>

#include "base/variant/variant.h"

class QLabel;
class QLineEdit;
class QListView;

namespace chat {
class PrivateChatMembersViewModel;
}

namespace QtView {

// The member list flattened into what the popup shows, one entry per line:
// section titles, the rows of a section (four while it is folded), a "show
// all" line under a folded section, an empty section's text and a loading
// line.
class ChatMemberListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Kind : int { kKindTitle, kKindMember, kKindMore, kKindEmpty, kKindLoading };
  enum Role : int { kKindRole = Qt::UserRole + 1, kEnabledRole, kCheckedRole, kRemarkRole };

  using QAbstractListModel::QAbstractListModel;

  // Takes the view model's member list prop.
  void SetList(Variant const& list);
  int rowCount(QModelIndex const& parent = QModelIndex()) const override;
  QVariant data(QModelIndex const& index, int role) const override;
  Qt::ItemFlags flags(QModelIndex const& index) const override;

  Kind KindAt(int row) const;
  // The row map as published (members and titles); null for other lines.
  Variant const& RowAt(int row) const;
  // The `title_type` of the section a line belongs to.
  int SectionAt(int row) const;

 private:
  struct Line {
    Kind kind;
    int section;  // title_type of its section
    Variant row;
    QString text;
  };
  void AddSection(Variant const& info, bool show_empty);
  std::vector<Line> lines_;
};

// Paints a line: a member with avatar, name, role and a tick for the chosen
// one (greyed when it can't be chosen); a section title with its fold text.
class ChatMemberItemDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  static constexpr int kMemberHeight = 40;
  static constexpr int kTitleHeight = 28;
  static constexpr int kAvatarSize = 26;
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, QStyleOptionViewItem const& option, QModelIndex const& index) const override;
  QSize sizeHint(QStyleOptionViewItem const& option, QModelIndex const& index) const override;
};

// The popup in which a user picks the receiver of a message: a search box,
// the sections with their fold, the policy's hint. It owns its view model
// (the member list), opens from the chat panel's receiver line or from the
// floating chat's bar, and closes on a choice, on Escape or on a click
// outside. Arrow keys move through the list from the search box; Enter
// picks; Escape first leaves a search, then closes.
class ChatMemberSelectView : public QFrame {
  Q_OBJECT

 public:
  static constexpr int kWidth = 300;
  static constexpr int kHeight = 420;
  static constexpr int kMinHeight = 160;

  // `source`: the entrance (2 the floating chat).
  explicit ChatMemberSelectView(int source, QWidget* parent = nullptr);
  ~ChatMemberSelectView() override;

  // Shows the popup with its lower left corner at `anchor` (global), kept on
  // the screen.
  void PopupAbove(QPoint const& anchor);

  QLineEdit* search_box() const { return search_; }
  QListView* list() const { return list_; }
  QLabel* hint_label() const { return hint_; }
  ChatMemberListModel* model() const { return model_; }
  chat::PrivateChatMembersViewModel* view_model() const { return view_model_.get(); }

  // Called once the popup has closed (chosen or not).
  std::function<void()> on_closed;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void OnMemberList(Variant const& list);
  void OnHint(Variant const& hint);
  // Runs the line: picks a member, or folds or unfolds its section.
  void Activate(int row);
  // Moves the current line by `step` over the lines one can stand on.
  void MoveCurrent(int step);
  void FitHeight();

  int source_;
  std::shared_ptr<chat::PrivateChatMembersViewModel> view_model_;
  QLabel* title_ = nullptr;
  QLineEdit* search_ = nullptr;
  QLabel* hint_ = nullptr;
  QListView* list_ = nullptr;
  ChatMemberListModel* model_ = nullptr;
  QPoint anchor_;
  bool closing_ = false;
  bool chosen_ = false;
};

}  // namespace QtView
