#include "prefs/quick_time.h"

#include "prefs/integer_value.h"

#include <QStringList>

#include <array>
#include <limits>

namespace tockwise {
namespace {

struct Unit {
  const char16_t* singular;
  const char16_t* plural;
  qint64 seconds;
};

constexpr std::array kUnits{Unit{u"Day", u"Days", 86400}, Unit{u"Hour", u"Hours", 3600},
                            Unit{u"Minute", u"Minutes", 60}};

qint64 unitSeconds(qint64 number, const QString& word) {
  for (const Unit& unit : kUnits) {
    if (word == QStringView(number == 1 ? unit.singular : unit.plural))
      return unit.seconds;
  }
  return 0;
}

} // namespace

qint64 stringToSeconds(const QString& text) {
  constexpr qint64 kMost = std::numeric_limits<qint64>::max() / (86400LL * 4);
  const QStringList words = text.split(u' ');
  qint64 sum = 0;
  for (qsizetype i = 0; i + 1 < words.size(); i += 2) {
    const qint64 number = qBound(-kMost, integerValue(words[i]), kMost);
    sum += number * unitSeconds(number, words[i + 1]);
    sum = qBound(-kMost * 86400, sum, kMost * 86400);
  }
  return sum;
}

} // namespace tockwise
