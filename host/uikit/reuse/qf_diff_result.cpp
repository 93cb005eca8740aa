#include "uikit/reuse/qf_diff_result.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <vector>

QFDiffResult QFDiffResult::FromKeys(QStringList const& old_keys, QStringList const& new_keys,
                                    QStringList const& changed) {
  QFDiffResult diff;
  QHash<QString, int> old_index;
  old_index.reserve(old_keys.size());
  for (int i = 0; i < old_keys.size(); ++i) old_index.insert(old_keys[i], i);
  QHash<QString, int> new_index;
  new_index.reserve(new_keys.size());
  for (int i = 0; i < new_keys.size(); ++i) new_index.insert(new_keys[i], i);

  for (int i = 0; i < old_keys.size(); ++i) {
    if (!new_index.contains(old_keys[i])) diff.AddDelete(i);
  }

  // Rows in both lists, in new order, with their old rows. The longest run
  // whose old rows rise stays where it is; every other common row moves.
  std::vector<int> common_new;
  std::vector<int> common_old;
  for (int i = 0; i < new_keys.size(); ++i) {
    auto it = old_index.constFind(new_keys[i]);
    if (it == old_index.constEnd()) {
      diff.AddInsert(i);
    } else {
      common_new.push_back(i);
      common_old.push_back(*it);
    }
  }
  const int n = static_cast<int>(common_old.size());
  std::vector<int> tails;       // position in common_* of the smallest tail of each run length
  std::vector<int> previous(n, -1);
  for (int i = 0; i < n; ++i) {
    auto pos = std::lower_bound(tails.begin(), tails.end(), common_old[i],
                                [&](int idx, int value) { return common_old[idx] < value; });
    if (pos != tails.begin()) previous[i] = *(pos - 1);
    if (pos == tails.end()) {
      tails.push_back(i);
    } else {
      *pos = i;
    }
  }
  std::vector<bool> stays(n, false);
  for (int i = tails.empty() ? -1 : tails.back(); i >= 0; i = previous[i]) stays[i] = true;

  const QSet<QString> changed_set(changed.begin(), changed.end());
  for (int i = 0; i < n; ++i) {
    if (changed_set.contains(new_keys[common_new[i]])) diff.AddUpdate(common_new[i]);
    if (stays[i]) continue;
    diff.AddDelete(common_old[i]);
    diff.AddInsert(common_new[i]);
    diff.AddMove(common_old[i], common_new[i]);
  }
  return diff;
}
