#pragma once

#include <QList>
#include <QPair>
#include <QStringList>
#include <set>

// The change between two versions of a list, as a virtualised list applies
// it. Indices in deletes() and in the first element of a move are rows of the
// old list; those in inserts(), updates() and the second element of a move
// are rows of the new list.
class QFDiffResult {
 public:
  std::set<int> const& deletes() const { return deletes_; }
  std::set<int> const& inserts() const { return inserts_; }
  std::set<int> const& updates() const { return updates_; }
  QList<QPair<int, int>> const& moves() const { return moves_; }

  void AddDelete(int old_index) { deletes_.insert(old_index); }
  void AddInsert(int new_index) { inserts_.insert(new_index); }
  void AddUpdate(int new_index) { updates_.insert(new_index); }
  void AddMove(int old_index, int new_index) { moves_.append(qMakePair(old_index, new_index)); }

  bool IsEmpty() const { return deletes_.empty() && inserts_.empty() && updates_.empty() && moves_.isEmpty(); }

  // The diff from `old_keys` to `new_keys` (unique row keys). A row whose key
  // is in both but whose place among the kept rows changed is a move, given
  // with the delete of its old row and the insert of its new one, so that a
  // list keeps its widget and height. `changed` names keys whose rows stay
  // but must be rebound.
  static QFDiffResult FromKeys(QStringList const& old_keys, QStringList const& new_keys,
                               QStringList const& changed = QStringList());

 private:
  std::set<int> deletes_;
  std::set<int> inserts_;
  std::set<int> updates_;
  QList<QPair<int, int>> moves_;
};
