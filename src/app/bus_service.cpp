#include "app/bus_service.h"

#include "app/alert_commands.h"
#include "app/app_controller.h"
#include "app/bus_names.h"
#include "app/command_service.h"
#include "app/desktop_actions.h"
#include "app/desktop_facts.h"
#include "app/json.h"
#include "base/harmless_text.h"
#include "base/log.h"
#include "store/documents/document_location.h"

#include <QDBusConnectionInterface>
#include <QDir>

namespace tockwise {
namespace {

const QString kPassword = QStringLiteral("passwordAD");

QDBusMessage errorReply(const QDBusMessage& message, const Error& error) {
  const bool usage = error.kind == Error::Kind::Usage;
  return message.createErrorReply(usage ? busUsageError() : busFailedError(), error.message);
}

// Answers message with the error of result, if it has one.
template <typename T> T replyTo(const QDBusMessage& message, const Result<T>& result) {
  if (!result) {
    message.setDelayedReply(true);
    QDBusConnection::sessionBus().send(errorReply(message, result.error()));
    if constexpr (std::is_void_v<T>)
      return;
    else
      return T();
  }
  if constexpr (!std::is_void_v<T>)
    return *result;
}

Result<QVariantMap> reportMap(const Result<DocumentReport>& report) {
  if (!report)
    return report.error();
  return report->toMap();
}

} // namespace

CommandAdaptor::CommandAdaptor(QObject* parent, AppController& controller)
    : QDBusAbstractAdaptor(parent), m_controller(controller) {
  connect(&controller, &AppController::queueChanged, this, &CommandAdaptor::QueueChanged);
  connect(&controller, &AppController::reminderFired, this, &CommandAdaptor::ReminderFired);
  connect(&controller, &AppController::alertOpened, this, &CommandAdaptor::AlertOpened);
  connect(&controller, &AppController::alertClosed, this, &CommandAdaptor::AlertClosed);
}

QString CommandAdaptor::Add(const QString& text, const QVariantMap& options,
                            const QDBusMessage& message) {
  return replyTo(message, m_controller.commands().add(text, options));
}

QString CommandAdaptor::List() {
  return jsonText(m_controller.commands().list());
}

QString CommandAdaptor::Show(const QString& reminder, const QDBusMessage& message) {
  return jsonText(replyTo(message, m_controller.commands().show(reminder)));
}

QString CommandAdaptor::Edit(const QString& reminder, const QVariantMap& options,
                             const QDBusMessage& message) {
  return replyTo(message, m_controller.commands().edit(reminder, options));
}

QString CommandAdaptor::Delete(const QString& reminder, const QDBusMessage& message) {
  return replyTo(message, m_controller.commands().remove(reminder));
}

void CommandAdaptor::Clear(const QDBusMessage& message) {
  replyTo(message, m_controller.commands().clear());
}

void CommandAdaptor::Save(const QString& path, const QDBusMessage& message) {
  replyTo(message, m_controller.commands().documents().save(path));
}

QVariantMap CommandAdaptor::Open(const QString& path, bool yes, const QVariantMap& options,
                                 const QDBusMessage& message) {
  DocumentCommands& documents = m_controller.commands().documents();
  const auto tasks = tasksOption(options);
  if (!tasks)
    return replyTo<QVariantMap>(message, tasks.error());
  if (yes)
    return replyTo(message, reportMap(documents.open(path, *tasks)));
  if (!options.isEmpty()) // the question has its own review of the tasks
    return replyTo<QVariantMap>(
        message, Error{Error::Kind::Usage, QStringLiteral("--no-tasks goes with --yes")});
  if (const auto checked = documents.check(path); !checked)
    return replyTo<QVariantMap>(message, checked.error());
  askToOpen(path, message);
  return {};
}

// The question may stay open for long: the caller waits, the bus does not.
void CommandAdaptor::askToOpen(const QString& path, const QDBusMessage& message) {
  message.setDelayedReply(true);
  QMetaObject::invokeMethod(
      this,
      [this, path, message] {
        RemindersDocuments& documents = m_controller.documents();
        const Error refused{Error::Kind::Refused,
                            documents.isAsking()
                                ? QStringLiteral("Tockwise is asking about another document: "
                                                 "answer that question first")
                                : QStringLiteral("the reminders were not replaced")};
        const bool opened = !documents.isAsking() && documents.askOpenFile(path);
        QDBusConnection::sessionBus().send(opened ? message.createReply(QVariantMap())
                                                  : errorReply(message, refused));
      },
      Qt::QueuedConnection);
}

QVariantMap CommandAdaptor::Merge(const QString& path, const QVariantMap& options,
                                  const QDBusMessage& message) {
  const auto tasks = tasksOption(options);
  if (!tasks)
    return replyTo<QVariantMap>(message, tasks.error());
  return replyTo(message, reportMap(m_controller.commands().documents().merge(path, *tasks)));
}

QString CommandAdaptor::Menu() {
  return jsonText(menuToJson(m_controller.menuItems()));
}

QString CommandAdaptor::Alerts() {
  return jsonText(m_controller.alertsJson());
}

void CommandAdaptor::AlertCommand(const QString& action, int position,
                                  const QDBusMessage& message) {
  // Deleting asks, and its question may stay open for long.
  message.setDelayedReply(true);
  QMetaObject::invokeMethod(
      this,
      [this, action, position, message] {
        const auto done = alertCommand(m_controller.alerts(), action, position);
        QDBusConnection::sessionBus().send(done ? message.createReply()
                                                : errorReply(message, done.error()));
      },
      Qt::QueuedConnection);
}

void CommandAdaptor::answerWhenSettled(const QDBusMessage& message,
                                       std::function<QDBusMessage()> reply) {
  message.setDelayedReply(true);
  m_controller.passwordKeeping().whenSettled(
      this, [reply = std::move(reply)] { QDBusConnection::sessionBus().send(reply()); });
}

QString CommandAdaptor::GetPreference(const QString& key, const QDBusMessage& message) {
  if (key != kPassword)
    return replyTo(message, m_controller.commands().getPreference(key));
  answerWhenSettled(message, [this, key, message] {
    const auto text = m_controller.commands().getPreference(key);
    return text ? message.createReply(*text) : errorReply(message, text.error());
  });
  return {};
}

void CommandAdaptor::SetPreference(const QString& key, const QStringList& values,
                                   const QDBusMessage& message) {
  const auto done = m_controller.commands().setPreference(key, values);
  if (key != kPassword || !done) {
    replyTo(message, done);
    return;
  }
  // Whoever set it may rely on it from the answer on.
  answerWhenSettled(message, [this, message] {
    const auto saved = m_controller.commands().saved();
    return saved ? message.createReply() : errorReply(message, saved.error());
  });
}

QVariantMap CommandAdaptor::ListPreferences() {
  QVariantMap map;
  for (const auto& [key, text] : m_controller.commands().preferences())
    map.insert(key, text);
  return map;
}

QString CommandAdaptor::Doctor() {
  return jsonText(checksToJson(m_controller.desktopChecks()));
}

bool CommandAdaptor::Quit(bool yes, const QDBusMessage& message) {
  // The question may stay open for long: the caller waits, the bus does not.
  message.setDelayedReply(true);
  QMetaObject::invokeMethod(
      this,
      [this, yes, message] {
        const bool quits = m_controller.mayQuit(yes ? QuitMode::Omit : QuitMode::Ask);
        if (quits) { // whoever waits for the answer may start the next one at once
          QDBusConnection::sessionBus().interface()->unregisterService(busName());
        }
        QDBusConnection::sessionBus().send(message.createReply(quits));
        if (quits)
          m_controller.quitNow();
      },
      Qt::QueuedConnection);
  return false;
}

void CommandAdaptor::ShowMenu() {
  m_controller.showMenu();
}

void CommandAdaptor::Print(bool alerts) {
  // The preview stays open for long: the caller is not to wait for it.
  Printing* printing = &m_controller.printing();
  QMetaObject::invokeMethod(
      printing, [=] { alerts ? printing->printAllCurrentAlerts() : printing->print(); },
      Qt::QueuedConnection);
}

void CommandAdaptor::PrintPDF(const QString& path, bool alerts, const QDBusMessage& message) {
  if (QDir::isRelativePath(path)) {
    replyTo(message, Result<void>(Error{Error::Kind::Usage,
                                        QStringLiteral("%1 is no absolute path").arg(path)}));
    return;
  }
  message.setDelayedReply(true);
  m_controller.printing().savePDF(alerts ? Printing::Document::Alerts : Printing::Document::Queue,
                                  path, [message](const Result<void>& saved) {
                                    QDBusConnection::sessionBus().send(
                                        saved ? message.createReply()
                                              : errorReply(message, saved.error()));
                                  });
}

ApplicationAdaptor::ApplicationAdaptor(QObject* parent, AppController& controller)
    : QDBusAbstractAdaptor(parent), m_controller(controller) {}

void ApplicationAdaptor::Activate(const QVariantMap& platformData) {
  takeActivationToken(platformData);
  m_controller.showMenu();
}

// The platform is never told that opening failed, and never waits for the user's answer.
void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap&) {
  if (uris.isEmpty())
    m_controller.showMenu();
  for (const QString& uri : uris) {
    const auto path = localPathOf(uri);
    if (!path) {
      logLine(QStringLiteral("Cannot open '%1': this is no file on this machine")
                  .arg(harmlessLine(uri)));
      continue;
    }
    QMetaObject::invokeMethod(
        &m_controller.documents(),
        [documents = &m_controller.documents(), path = *path] { documents->openFile(path); },
        Qt::QueuedConnection);
  }
}

void ApplicationAdaptor::ActivateAction(const QString& name, const QVariantList&,
                                        const QVariantMap& platformData) {
  takeActivationToken(platformData);
  const auto operation = operationOfDesktopAction(name);
  if (!operation) {
    m_controller.showMenu();
    return;
  }
  // Some ask a question: whoever asked for the action is not to wait for its answer.
  QMetaObject::invokeMethod(
      &m_controller,
      [this, operation = *operation] {
        MenuActivation activation;
        activation.action = operation;
        m_controller.perform(activation);
      },
      Qt::QueuedConnection);
}

} // namespace tockwise
