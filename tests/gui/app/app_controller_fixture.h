// The controller with a store of its own and stand-ins for the desktop.
#pragma once

#include "app/app_controller.h"
#include "support/fake_pasteboard.h"
#include "support/fakes.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QTest>
#include <QTimer>

namespace tockwise {

/// It is ten o'clock on 4 March 2025, and the program has just been started.
class AppControllerFixture : public QObject {
  Q_OBJECT
 protected:
  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock;
  FakePrompter* m_prompter = nullptr;
  FakeSoundPlayer* m_sounds = nullptr;
  FakeWakeTimer* m_wakeTimer = nullptr;
  FakeWorkspace* m_workspace = nullptr;
  FakeScriptHost* m_scripts = nullptr;
  FakePasteboard* m_pasteboard = nullptr;
  ReminderStore* m_store = nullptr; // the controller's
  std::unique_ptr<AppController> m_controller;

  static QString text(const char* utf8) { return QString::fromUtf8(utf8); }
  QString addDue(const char* words, QVariantMap options = {}) {
    options.insert(text("at"), text("2025-03-04 09:00"));
    return *m_controller->commands().add(text(words), options);
  }
  QString addLater(const char* words) {
    return *m_controller->commands().add(text(words), {{text("in"), text("2 Hours")}});
  }
  QStringList textsOfQueue() {
    QStringList texts;
    for (const QJsonValue& reminder : m_controller->commands().list())
      texts += reminder.toObject()[text("reminderDescriptions")].toString();
    return texts;
  }
  void choose(const char* action, qint64 tag = 0, const QString& reminderUUID = {},
              const char* title = "") {
    m_controller->perform({text(action), tag, reminderUUID, text(title)});
  }
  void openAlerts(int count) { QTRY_COMPARE(m_controller->alertsJson().size(), count); }
  /// prepare: what happens to the store before the controller has it.
  void startProgram(const std::function<void()>& prepare = {}) {
    auto store = openUserStore(m_clock);
    auto prompter = std::make_unique<FakePrompter>();
    auto sounds = std::make_unique<FakeSoundPlayer>();
    auto wakeTimer = std::make_unique<FakeWakeTimer>();
    m_prompter = prompter.get();
    m_sounds = sounds.get();
    m_wakeTimer = wakeTimer.get();
    auto workspace = std::make_unique<FakeWorkspace>();
    auto scripts = std::make_unique<FakeScriptHost>();
    m_workspace = workspace.get();
    m_scripts = scripts.get();
    auto pasteboard = std::make_unique<FakePasteboard>();
    m_pasteboard = pasteboard.get();
    m_store = store.get();
    if (prepare)
      prepare();
    m_controller = std::make_unique<AppController>(
        std::move(store),
        Ports{std::move(prompter), std::move(sounds), std::make_unique<FakePowerEvents>(),
              std::move(wakeTimer), std::move(workspace), std::move(scripts), std::move(pasteboard),
              std::make_unique<FakeHotKeys>(), std::make_unique<FakeLoginItems>(),
              std::make_unique<FakeNotificationCentre>(), std::make_unique<FakeSecretStore>()});
    m_controller->start();
  }
  void restart(const std::function<void()>& prepare = {}) {
    m_controller.reset();
    startProgram(prepare);
  }
  /// The event loop, in which something ends the program.
  void runToItsEnd(const std::function<void()>& end) {
    QTimer::singleShot(0, this, end);
    QCoreApplication::exec();
  }
  Reminder dueReminder(const char* words) {
    Reminder reminder;
    reminder.reminderUUID = UUIDString();
    reminder.reminderDescriptions = text(words);
    reminder.reminderQueue = m_clock.now().plusSeconds(-60);
    reminder.reminderTypes = text("regular");
    return reminder;
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_clock.set(Calendar::current().dateWithYear(2025, 3, 4, 10, 0, 0));
    startProgram();
  }
  void cleanup() {
    m_controller.reset();
    m_environment.reset();
  }
};

} // namespace tockwise
