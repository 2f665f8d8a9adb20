#include "print/print_document.h"

namespace tockwise {
namespace {

constexpr int kSeparatorLength = 65;

QString separator() {
  return QString(kSeparatorLength, u'-');
}

QString dateText(Date date, const Calendar& calendar) {
  return calendar.dateStringWithFormat(date, kDisplayPattern);
}

} // namespace

std::vector<PrintEntry> entriesOfQueue(const ReminderQueue& queue) {
  std::vector<PrintEntry> entries;
  entries.reserve(size_t(queue.count()));
  for (qsizetype i = 0; i < queue.count(); ++i) {
    // A column that is too short for this reminder lacks its value, not the reminder.
    PrintEntry entry;
    if (const auto date = queue->reminderQueue.at(i))
      entry.date = *date;
    if (const auto description = queue->reminderDescriptions.at(i))
      entry.description = *description;
    if (const auto RTFData = queue->reminderRTFs.at(i))
      entry.RTFData = *RTFData;
    entries.push_back(std::move(entry));
  }
  return entries;
}

QString plainPrintHeading() {
  return QStringLiteral("Reminders \n\n");
}

QString plainPrintPiece(const PrintEntry& entry, const Calendar& calendar) {
  // Joined, not filled in: a text may hold what looks like a place to fill.
  return separator() + u'\n' + dateText(entry.date, calendar) + QStringLiteral("\n \n") +
         entry.description + QStringLiteral("\n \n");
}

QString richPrintHeading() {
  return QStringLiteral("Reminders \n");
}

QString richPrintPiece(Date date, const Calendar& calendar) {
  return u'\n' + separator() + u'\n' + dateText(date, calendar) + QStringLiteral("\n \n");
}

} // namespace tockwise
