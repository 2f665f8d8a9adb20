// The documents that are printed: the queue, and the open alerts. Texts only, no widgets.
#pragma once

#include "base/date.h"
#include "dates/calendar.h"
#include "store/reminder_queue.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace tockwise {

/// An entry of a document.
struct PrintEntry {
  Date date;
  QString description; // the plain text
  QByteArray RTFData;  // the archived rich text, or empty
};

/// What stands where an entry's rich text is missing or can't be read.
enum class WithoutRichText { PlainText, Nothing };

std::vector<PrintEntry> entriesOfQueue(const ReminderQueue& queue);

/// The plain form: heading, and for each entry the separator, the date and the plain text.
QString plainPrintText(const std::vector<PrintEntry>& entries, const Calendar& calendar);

/// The pieces of the rich form around the entries' own texts.
QString richPrintHeading();
QString richPrintPiece(Date date, const Calendar& calendar);

} // namespace tockwise
