// The texts that the status menu shows of one reminder: functions of its values, the present
// moment and the calendar.
//
// Any thread that may use the calendar passed in; nothing here fails.
#pragma once

#include "base/date.h"
#include "dates/calendar.h"

#include <QString>

#include <optional>

namespace tockwise {

/// Most characters of a title when reminders are truncated.
inline constexpr qsizetype kTitleCharacters = 50;
/// Most characters of an open alert's text in the menu.
inline constexpr qsizetype kAlertCharacters = 40;

enum class Truncation { Off, On };

/// A compact phrase of the time elapsed since date: "3 h, 12 m ago", "now" within a minute,
/// nothing when date is now to the second. The sign is ignored: a future date reads the same.
std::optional<QString> countDownStringFromDate(Date date, Date now, const Calendar& calendar);

/// "1" for index 0.
QString indexLine(qsizetype index);

/// The fire date; between bullets when the reminder repeats.
QString absoluteDateLine(Date fireDate, bool repeating, const Calendar& calendar);

/// Whether the countdown has run out: less than a whole second is left. Cheap.
bool isExpired(Date fireDate, Date now, const Calendar& calendar);

/// Whether the countdown is followed by a line that tells when the reminder last fired.
bool hasLastLine(Date fireDate, Date lastFired, Date now, const Calendar& calendar);

/// "2 hours, 0 minutes, 5 seconds", or "Expired: 3 h, 12 m ago".
QString countdownLine(Date fireDate, Date now, const Calendar& calendar);

/// "Last: 30 m ago".
QString lastLine(Date lastFired, Date now, const Calendar& calendar);

/// The description, with truncation cut to 50 characters and "...".
QString plainTitle(const QString& description, Truncation truncation);

/// "Created: Tue 3/4/2025 09:05 AM".
QString titleToolTip(Date created, const Calendar& calendar);

/// The number beside the status item's icon: messages on their way, else open alerts, else null.
QString statusTitle(qsizetype outgoingMailCount, qsizetype openAlerts);

} // namespace tockwise
