#include "prefs/integer_value.h"

#include <QString> // QStringView's numbers are in here

#include <limits>

namespace tockwise {

qint64 integerValue(QStringView text) {
  qsizetype at = 0;
  while (at < text.size() && text[at].isSpace())
    ++at;
  const qsizetype start = at;
  if (at < text.size() && (text[at] == u'-' || text[at] == u'+'))
    ++at;
  const qsizetype digits = at;
  while (at < text.size() && text[at] >= u'0' && text[at] <= u'9')
    ++at;
  if (at == digits)
    return 0;
  bool fits = false;
  const qint64 number = text.sliced(start, at - start).toLongLong(&fits);
  if (fits)
    return number;
  return text[start] == u'-' ? std::numeric_limits<qint64>::min()
                             : std::numeric_limits<qint64>::max();
}

} // namespace tockwise
