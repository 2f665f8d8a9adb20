#include "menu/sort/folded_text.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace tockwise {
namespace {

char16_t folded(char16_t unit) {
  if (unit < 0x80)
    return unit >= u'A' && unit <= u'Z' ? char16_t(unit + 0x20) : unit;
  return QChar(unit).toCaseFolded().unicode();
}

quint64 fourUnits(const char16_t* units) {
  quint64 value = 0;
  std::memcpy(&value, units, sizeof value);
  return value;
}

} // namespace

int compareFolded(QStringView left, QStringView right) {
  const qsizetype shorter = std::min(left.size(), right.size());
  const char16_t* a = left.utf16();
  const char16_t* b = right.utf16();
  qsizetype i = 0;
  // Names often begin alike; four units at a time that costs next to nothing.
  while (i + 4 <= shorter && fourUnits(a + i) == fourUnits(b + i))
    i += 4;
  for (; i < shorter; ++i) {
    if (a[i] == b[i])
      continue;
    if (const int difference = int(folded(a[i])) - int(folded(b[i])))
      return difference;
  }
  return left.size() < right.size() ? -1 : left.size() > right.size() ? 1 : 0;
}

FoldedTexts::FoldedTexts(const std::vector<QString>& texts) {
  size_t total = 0;
  for (const QString& text : texts)
    total += size_t(text.size());
  m_units.reserve(total);
  m_entries.reserve(texts.size());
  for (const QString& text : texts) {
    Entry entry{0, m_units.size(), size_t(text.size())};
    for (const QChar unit : text)
      m_units += folded(unit.unicode());
    for (size_t i = 0; i < 4; ++i)
      entry.start = entry.start << 16 | (i < entry.length ? m_units[entry.begin + i] : 0);
    m_entries.push_back(entry);
  }
}

bool FoldedTexts::isBefore(quint32 left, quint32 right) const {
  const Entry& a = m_entries[left];
  const Entry& b = m_entries[right];
  if (a.start != b.start)
    return a.start < b.start;
  const std::u16string_view units(m_units);
  return units.substr(a.begin, a.length) < units.substr(b.begin, b.length);
}

} // namespace tockwise
