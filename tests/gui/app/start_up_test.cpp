// The order of the start: what the user sees comes at once, what nobody waits for comes when the
// tray has the item.
#include "app/app_controller.h"
#include "store/store_file.h"
#include "support/fake_pasteboard.h"
#include "support/fakes.h"
#include "support/test_environment.h"

#include <QApplication>
#include <QTest>

using namespace tockwise;

namespace {
QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}
} // namespace

class StartUpTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock;
  FakeHotKeys* m_hotKeys = nullptr;
  FakeSecretStore* m_secrets = nullptr;
  std::unique_ptr<AppController> m_controller;

  /// As far as it is before the event loop runs.
  void makeProgram() {
    auto store = ReminderStore::open(PreferencesStore::Paths::ofUser(), m_clock);
    QVERIFY(store.ok());
    auto hotKeys = std::make_unique<FakeHotKeys>();
    auto secrets = std::make_unique<FakeSecretStore>();
    m_hotKeys = hotKeys.get();
    m_secrets = secrets.get();
    m_controller = std::make_unique<AppController>(
        std::move(*store),
        Ports{std::make_unique<FakePrompter>(), std::make_unique<FakeSoundPlayer>(),
              std::make_unique<FakePowerEvents>(), std::make_unique<FakeWakeTimer>(),
              std::make_unique<FakeWorkspace>(), std::make_unique<FakeScriptHost>(),
              std::make_unique<FakePasteboard>(), std::move(hotKeys),
              std::make_unique<FakeLoginItems>(), std::make_unique<FakeNotificationCentre>(),
              std::move(secrets)});
  }
  void set(const char* setting, const char* value) {
    QVERIFY(m_controller->commands().setPreference(text(setting), {text(value)}));
  }
  static QList<QWidget*> windows() {
    QList<QWidget*> visible;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->isVisible())
        visible += widget;
    }
    return visible;
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_clock.set(Calendar::current().dateWithYear(2025, 3, 4, 10, 0, 0));
    QApplication::setWindowIcon(QIcon());
    makeProgram();
  }
  void cleanup() {
    m_controller.reset();
    m_environment.reset();
  }

  void hotKeysAndPasswordsComeWhenTheItemStands() {
    set("useGlobalHotKeys", "YES");
    m_controller->start();
    QVERIFY(!m_hotKeys->registered);
    QVERIFY(m_secrets->calls.isEmpty());
    QTRY_VERIFY(m_hotKeys->registered);
    QVERIFY(m_secrets->calls.contains(text("look")));
  }

  void theSettingIsFollowedAlsoBetweenTheStartAndTheRest() {
    set("useGlobalHotKeys", "YES");
    m_controller->start();
    set("useGlobalHotKeys", "NO");
    QTRY_VERIFY(m_secrets->calls.contains(text("look")));
    QVERIFY(!m_hotKeys->registered);
    set("useGlobalHotKeys", "YES");
    QTRY_VERIFY(m_hotKeys->registered);
  }

  void aDueReminderAlertsBeforeTheRest() {
    QVERIFY(m_controller->commands().add(text("Tea"), {{text("at"), text("2025-03-04 09:00")}}));
    m_controller->start();
    QVERIFY(m_secrets->calls.isEmpty());
    QCOMPARE(m_controller->alertsJson().size(), 1);
  }

  void windowsThatWereOpenEarlierGetTheIcon() {
    QVERIFY(m_controller->commands().add(text("Tea"), {{text("at"), text("2025-03-04 09:00")}}));
    m_controller->start();
    QTRY_COMPARE(windows().size(), 1);
    QTRY_VERIFY(!windows().constFirst()->windowIcon().isNull());
  }

  void aPasswordThatIsSetBeforeTheRestEndsInTheSecretStore() {
    m_controller->start();
    set("passwordAD", "secret");
    QTRY_COMPARE(m_secrets->secrets.size(), size_t(1));
    QCOMPARE(m_secrets->secrets.begin()->second, text("secret"));
    QTRY_VERIFY(m_controller->passwordKeeping().isSettled());
    QCOMPARE(*m_controller->commands().getPreference(text("passwordAD")), text("secret"));
  }
};

QTEST_MAIN(StartUpTest)
#include "start_up_test.moc"
