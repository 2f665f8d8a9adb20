// The documents that are printed: the queue, and the open alerts. Their contents and texts; how
// they look on paper is PrintPages'.
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

/// Whether the entries' texts are printed as plain or as rich text.
enum class PrintForm { Plain, Rich };

/// What stands where an entry's rich text is missing or can't be read.
enum class WithoutRichText { PlainText, Nothing };

/// What is to be printed. Copies share their bytes with the queue and the alerts.
struct PrintContents {
  PrintForm form = PrintForm::Plain;
  WithoutRichText withoutRichText = WithoutRichText::PlainText; // of the rich form
  std::vector<PrintEntry> entries;
};

/// In the queue's order. Any one thread.
std::vector<PrintEntry> entriesOfQueue(const ReminderQueue& queue);

/// The plain form: the heading, then for each entry the separator, the date and the plain text.
QString plainPrintHeading();
QString plainPrintPiece(const PrintEntry& entry, const Calendar& calendar);

/// The rich form: the heading, then for each entry this piece and the entry's own text.
QString richPrintHeading();
QString richPrintPiece(Date date, const Calendar& calendar);

} // namespace tockwise
