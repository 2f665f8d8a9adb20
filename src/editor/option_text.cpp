#include "editor/option_text.h"

#include "engine/fire_forecast.h"

namespace tockwise {

QString optionText(const Interval& interval, const Extra& extra, const Offset& offset) {
  const QString every = intervalText(interval);
  QString text = every.isEmpty() ? QStringLiteral("Does not repeat.")
                                 : QStringLiteral("Repeats %1.").arg(every);
  if (const QString reason = reasonNeverToAlert(extra); !reason.isEmpty())
    return text + QStringLiteral(" Never alerts: %1.").arg(reason);
  const QString notice = offsetText(offset);
  text += notice.isEmpty() ? QStringLiteral(" Alerts at its date")
                           : QStringLiteral(" Alerts %1 its date").arg(notice);
  if (const QString limits = extraText(extra); !limits.isEmpty())
    text += QStringLiteral(", only ") + limits;
  return text + u'.';
}

} // namespace tockwise
