#include "alerts/quit_question.h"

#include <QScopedValueRollback>

namespace tockwise {
namespace {

enum QuitAnswer { Stay = 0, Quit = 1 };

QString counted(qint64 count, const QString& one, const QString& several) {
  return count == 1 ? one : several.arg(count);
}

} // namespace

QuitQuestion::QuitQuestion(Prompter& prompter, CurrentAlerts& alerts,
                           std::function<qint64()> outgoingMailCount)
    : m_prompter(prompter), m_alerts(alerts), m_outgoingMailCount(std::move(outgoingMailCount)) {}

TerminateReply QuitQuestion::applicationShouldTerminate() {
  if (m_asking)
    return TerminateReply::Cancel;
  if (const qsizetype alerts = m_alerts.count(); alerts > 0) {
    return ask(counted(alerts, QStringLiteral("You have one alert window open."),
                       QStringLiteral("You have %1 alert windows open.")));
  }
  if (const qint64 messages = m_outgoingMailCount(); messages > 0) {
    return ask(counted(messages, QStringLiteral("You have one outgoing mail message."),
                       QStringLiteral("You have %1 outgoing mail messages.")));
  }
  return TerminateReply::TerminateNow;
}

TerminateReply QuitQuestion::ask(const QString& message) {
  const QScopedValueRollback<bool> asking(m_asking, true);
  Question question;
  question.title = QStringLiteral("Are you sure you want to quit Tockwise?");
  question.message = message;
  question.buttons = {QStringLiteral("No"), QStringLiteral("Yes")};
  question.defaultButton = Stay;
  question.escapeButton = Stay;
  question.quitButton = Quit;
  return m_prompter.ask(question) == Quit ? TerminateReply::TerminateNow : TerminateReply::Cancel;
}

} // namespace tockwise
