#include "app/bus_service.h"

#include "app/alert_commands.h"
#include "app/app_controller.h"
#include "app/bus_names.h"
#include "app/command_service.h"
#include "app/json.h"
#include "base/log.h"

#include <QDBusConnectionInterface>

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

ApplicationAdaptor::ApplicationAdaptor(QObject* parent, AppController& controller)
    : QDBusAbstractAdaptor(parent), m_controller(controller) {}

void ApplicationAdaptor::Activate(const QVariantMap&) {
  m_controller.showMenu();
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap&) {
  for (const QString& uri : uris)
    logLine(QStringLiteral("Cannot open %1: documents are not supported yet").arg(uri));
  m_controller.showMenu();
}

void ApplicationAdaptor::ActivateAction(const QString& name, const QVariantList&,
                                        const QVariantMap&) {
  if (name == u"quit")
    m_controller.quit();
  else
    m_controller.showMenu();
}

} // namespace tockwise
