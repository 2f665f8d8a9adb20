#include "app/store_messages.h"

namespace tockwise {

QString damageText(const StoreNotice& notice) {
  QString text;
  if (!notice.damagedKeptAs.isEmpty()) {
    text = QStringLiteral("The file with your reminders is damaged. It was kept as \"%1\".\n")
               .arg(notice.damagedKeptAs);
    text += notice.restoredFrom.isEmpty()
                ? QStringLiteral("No earlier copy of it was taken.")
                : QStringLiteral("The newest good copy was taken in its place: \"%1\".")
                      .arg(notice.restoredFrom);
  }
  if (notice.foreignElements > 0) {
    if (!text.isEmpty())
      text += u'\n';
    text += QStringLiteral("%1 values in the file were not what they should be and read as empty.")
                .arg(notice.foreignElements);
    if (!notice.originalKeptAs.isEmpty())
      text += QStringLiteral(" The file as it was is kept as \"%1\".").arg(notice.originalKeptAs);
  }
  return text;
}

Question unsavedQuestion() {
  return {QStringLiteral("Quit without saving?"),
          QStringLiteral("Your last changes could not be saved. They are lost when Tockwise ends."),
          {QStringLiteral("No"), QStringLiteral("Yes")},
          0,
          0,
          kQuitUnsaved};
}

QString writeFailureText(const Error& error) {
  return error.message + QStringLiteral("\nYour reminders as they were last saved are safe, and "
                                        "the changes since are kept while Tockwise runs. Saving "
                                        "is tried again until it works.");
}

} // namespace tockwise
