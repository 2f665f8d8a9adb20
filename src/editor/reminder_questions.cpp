#include "editor/reminder_questions.h"

namespace tockwise {
namespace {

Question yesOrNo(const QString& title, const QString& message) {
  return Question{title, message, {QStringLiteral("Yes"), QStringLiteral("No")}, 0, 1};
}

} // namespace

Question blankReminderMessage() {
  return messageToRead(QStringLiteral("No Reminder"),
                       QStringLiteral("Your reminder is blank. Please type in a reminder."));
}

Question pastDateQuestion() {
  return Question{QStringLiteral("Your date is set in the past."),
                  QStringLiteral("Is this okay?"),
                  {QStringLiteral("OK"), QStringLiteral("NO")},
                  0,
                  1};
}

Question undoChangesQuestion() {
  return yesOrNo(
      QStringLiteral("Undo changes?"),
      QStringLiteral("Are you sure you want to undo any changes you made to this reminder?"));
}

Question deleteReminderQuestion() {
  return yesOrNo(QStringLiteral("Delete reminder?"),
                 QStringLiteral("Are you sure you want to delete this reminder?"));
}

} // namespace tockwise
