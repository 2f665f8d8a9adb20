#include "app/store_messages.h"

namespace tockwise {

QString damageText(const ReminderStore::LoadReport& report) {
  QString text;
  if (!report.notice.isEmpty()) {
    text = QStringLiteral("The file with your reminders is damaged. It was kept as \"%1\".\n")
               .arg(report.notice.damagedKeptAs);
    text += report.notice.restoredFrom.isEmpty()
                ? QStringLiteral("There is no earlier copy of it, so the queue starts empty.")
                : QStringLiteral("The newest good copy was taken in its place: \"%1\".")
                      .arg(report.notice.restoredFrom);
  }
  if (report.foreignElements > 0) {
    if (!text.isEmpty())
      text += u'\n';
    text += QStringLiteral("%1 values in the file were not what they should be and read as empty.")
                .arg(report.foreignElements);
    if (!report.originalKeptAs.isEmpty())
      text += QStringLiteral(" The file as it was is kept as \"%1\".").arg(report.originalKeptAs);
  }
  return text;
}

QString writeFailureText(const Error& error) {
  return error.message + QStringLiteral("\nYour reminders as they were last saved are safe, and "
                                        "the changes since are kept while Tockwise runs. Saving "
                                        "is tried again until it works.");
}

} // namespace tockwise
