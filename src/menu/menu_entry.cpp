#include "menu/menu_entry.h"

#include <QHash>

#include <algorithm>

namespace tockwise {
namespace {

/// What isSameItem compares, as a key.
struct ItemKey {
  MenuItemKind kind;
  qint32 row;
  QString reminderUUID;
  friend bool operator==(const ItemKey&, const ItemKey&) = default;
};

size_t qHash(const ItemKey& key, size_t seed = 0) {
  return qHashMulti(seed, int(key.kind), key.row, key.reminderUUID);
}

ItemKey keyOf(const MenuEntry& entry) {
  return {entry.kind, entry.reminderUUID.isEmpty() ? entry.row : -1, entry.reminderUUID};
}

/// Positions of a longest rising subsequence of values; negative values do not count.
std::vector<size_t> longestRise(const std::vector<qsizetype>& values) {
  std::vector<size_t> tails; // tails[k]: where the lowest end of a rise of length k + 1 stands
  std::vector<size_t> previous(values.size());
  for (size_t i = 0; i < values.size(); ++i) {
    if (values[i] < 0)
      continue;
    const auto at =
        std::lower_bound(tails.begin(), tails.end(), values[i],
                         [&](size_t tail, qsizetype value) { return values[tail] < value; });
    previous[i] = at == tails.begin() ? i : *(at - 1);
    if (at == tails.end())
      tails.push_back(i);
    else
      *at = i;
  }
  std::vector<size_t> rise(tails.size());
  if (!tails.empty()) {
    size_t position = tails.back();
    for (size_t k = rise.size(); k-- > 0; position = previous[position])
      rise[k] = position;
  }
  return rise;
}

} // namespace

bool isSameItem(const MenuEntry& left, const MenuEntry& right) {
  return left.kind == right.kind && left.reminderUUID == right.reminderUUID &&
         (!left.reminderUUID.isEmpty() || left.row == right.row);
}

MenuChanges menuChanges(const std::vector<MenuEntry>& before, const std::vector<MenuEntry>& after) {
  size_t head = 0;
  const size_t shorter = std::min(before.size(), after.size());
  while (head < shorter && isSameItem(before[head], after[head]))
    ++head;
  size_t tail = 0;
  while (tail < shorter - head &&
         isSameItem(before[before.size() - 1 - tail], after[after.size() - 1 - tail]))
    ++tail;
  const size_t beforeEnd = before.size() - tail;
  const size_t afterEnd = after.size() - tail;

  // Equal keys (a damaged queue may hold a UUID twice) are claimed in order.
  QHash<ItemKey, std::vector<qsizetype>> places;
  for (size_t i = afterEnd; i-- > head;)
    places[keyOf(after[i])].push_back(qsizetype(i));
  std::vector<qsizetype> targets;
  for (size_t i = head; i < beforeEnd; ++i) {
    const auto found = places.find(keyOf(before[i]));
    const bool claimed = found != places.end() && !found->empty();
    targets.push_back(claimed ? found->back() : -1);
    if (claimed)
      found->pop_back();
  }

  MenuChanges changes;
  std::vector<bool> keptBefore(beforeEnd - head);
  std::vector<bool> keptAfter(afterEnd - head);
  for (const size_t position : longestRise(targets)) {
    keptBefore[position] = true;
    keptAfter[size_t(targets[position]) - head] = true;
  }
  std::vector<qsizetype> source(keptAfter.size(), -1);
  for (size_t i = keptBefore.size(); i-- > 0;) {
    if (keptBefore[i])
      continue;
    changes.removed.push_back(qsizetype(i) + qsizetype(head));
    if (targets[i] >= 0)
      source[size_t(targets[i]) - head] = qsizetype(i) + qsizetype(head);
  }
  for (size_t i = 0; i < keptAfter.size(); ++i) {
    if (keptAfter[i])
      continue;
    changes.inserted.push_back(qsizetype(i) + qsizetype(head));
    changes.movedFrom.push_back(source[i]);
  }
  return changes;
}

} // namespace tockwise
