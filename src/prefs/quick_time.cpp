#include "prefs/quick_time.h"

#include "prefs/integer_value.h"

#include <QStringList>

#include <array>
#include <limits>

namespace tockwise {
namespace {

struct Unit {
  QStringView singular;
  QStringView plural;
  qint64 seconds;
};

constexpr std::array kUnits{Unit{u"Day", u"Days", 86400}, Unit{u"Hour", u"Hours", 3600},
                            Unit{u"Minute", u"Minutes", 60}};

qint64 unitSeconds(qint64 number, const QString& word) {
  for (const Unit& unit : kUnits) {
    if (word == (number == 1 ? unit.singular : unit.plural))
      return unit.seconds;
  }
  return 0;
}

bool everyPairCounts(const QString& text) {
  const QStringList words = text.trimmed().split(u' ');
  if (words.size() % 2 != 0)
    return false;
  for (qsizetype i = 0; i < words.size(); i += 2) {
    bool isNumber = false;
    const qint64 number = words[i].toLongLong(&isNumber);
    if (!isNumber || unitSeconds(number, words[i + 1]) == 0)
      return false;
  }
  return true;
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

QString durationText(qint64 seconds) {
  QStringList parts;
  for (const Unit& unit : kUnits) {
    const qint64 number = seconds / unit.seconds;
    seconds %= unit.seconds;
    if (number > 0) {
      parts += QStringLiteral("%1 %2").arg(
          QString::number(number),
          (number == 1 ? unit.singular : unit.plural).toString().toLower());
    }
  }
  return parts.join(u' ');
}

QString quickTimeRemark(const QString& text) {
  const qint64 seconds = stringToSeconds(text);
  if (seconds == 0)
    return QStringLiteral("adds nothing");
  if (seconds < 0)
    return QStringLiteral("lies in the past");
  return everyPairCounts(text) ? QString()
                               : QStringLiteral("counts as %1").arg(durationText(seconds));
}

} // namespace tockwise
