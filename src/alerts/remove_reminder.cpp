#include "alerts/remove_reminder.h"

#include "base/log.h"
#include "base/main_thread.h"
#include "store/text_cut.h"

namespace tockwise {
namespace {

constexpr qsizetype kLongestQuestionText = 50;

enum DeleteAnswer { Delete = 0, Keep = 1 };

Question deleteQuestion(const QString& text) {
  Question question;
  question.title = QStringLiteral("Are you sure you want to delete this reminder?");
  question.message = cutText(text, kLongestQuestionText);
  question.buttons = {QStringLiteral("Yes"), QStringLiteral("No")};
  question.defaultButton = Delete;
  question.escapeButton = Keep;
  return question;
}

} // namespace

RemoveReminder::RemoveReminder(const ReminderQueue& queue, Prompter& prompter, Remove remove)
    : m_queue(queue), m_prompter(prompter), m_remove(std::move(remove)) {}

void RemoveReminder::removeReminder(qsizetype index) {
  runOnMainThread([this, index] { askAndRemove(index); });
}

void RemoveReminder::askAndRemove(qsizetype index) {
  const auto text = m_queue->reminderDescriptions.at(index);
  const auto uuid = m_queue->reminderUUID.at(index);
  if (!text || !uuid) {
    logLine(text ? uuid.error().message : text.error().message);
    return;
  }
  if (m_prompter.ask(deleteQuestion(*text)) != Delete)
    return;
  // The queue may have been sorted, merged or shortened while the question was open.
  if (const auto removed = m_remove(*uuid); !removed)
    logLine(removed.error().message);
}

} // namespace tockwise
