#include "menu/ui/dbus_types.h"
#include "menu/ui/tray_controller.h"
#include "support/private_bus.h"
#include "unit/menu/menu_fixture.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace tockwise;

namespace {

/// A panel: the watcher that items announce themselves to.
class Panel final : public QDBusVirtualObject {
 public:
  explicit Panel(QDBusConnection connection) : m_connection(std::move(connection)) {}
  ~Panel() override { leave(); }

  void come() {
    m_connection.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), this);
    m_connection.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
  }
  void leave() {
    m_connection.unregisterService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    m_connection.unregisterObject(QStringLiteral("/StatusNotifierWatcher"));
  }
  /// Tells that it can show items now.
  void open() {
    hasHost = true;
    m_connection.send(QDBusMessage::createSignal(QStringLiteral("/StatusNotifierWatcher"),
                                                 QStringLiteral("org.kde.StatusNotifierWatcher"),
                                                 QStringLiteral("StatusNotifierHostRegistered")));
  }
  QStringList registered;
  QString sender;
  bool answers = true;
  bool hasHost = true;

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() == u"RegisterStatusNotifierItem") {
      registered += message.arguments().value(0).toString();
      sender = message.service();
      return connection.send(message.createReply());
    }
    return !answers ||
           connection.send(message.createReply(QVariant::fromValue(QDBusVariant(hasHost))));
  }
  QString introspect(const QString&) const override { return {}; }

  /// Calls the item's process; the answer's arguments.
  QVariantList call(const QString& path, const QString& interface, const QString& member,
                    const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(sender, path, interface, member);
    message.setArguments(arguments);
    QDBusPendingCallWatcher pending(m_connection.asyncCall(message));
    QSignalSpy finished(&pending, &QDBusPendingCallWatcher::finished);
    if (!pending.isFinished() && !finished.wait(5000))
      return {};
    return pending.reply().arguments();
  }
  QVariantList menu(const QString& member, const QVariantList& arguments) {
    return call(QStringLiteral("/MenuBar"), QStringLiteral("com.canonical.dbusmenu"), member,
                arguments);
  }

 private:
  QDBusConnection m_connection;
};

/// An exported item with its children, as a panel reads it.
struct Node {
  int id = 0;
  QVariantMap properties;
  QList<Node> children;
  QString label() const { return properties.value(QStringLiteral("label")).toString(); }
};

Node nodeOf(const QDBusArgument& argument) {
  Node node;
  argument.beginStructure();
  argument >> node.id >> node.properties;
  argument.beginArray();
  while (!argument.atEnd()) {
    QDBusVariant child;
    argument >> child;
    node.children += nodeOf(child.variant().value<QDBusArgument>());
  }
  argument.endArray();
  argument.endStructure();
  return node;
}

/// The first item with this label, or one that is none.
Node find(const Node& node, QStringView label) {
  for (const Node& child : node.children) {
    if (child.label() == label)
      return child;
    if (const Node inside = find(child, label); inside.id >= 0)
      return inside;
  }
  return {-1, {}, {}};
}

} // namespace

class TrayControllerTest : public QObject {
  Q_OBJECT
 private:
  std::unique_ptr<PrivateBus> m_bus;
  std::unique_ptr<BusConnection> m_panelConnection;
  std::unique_ptr<BusConnection> m_trayConnection;
  std::unique_ptr<Panel> m_panel;
  std::unique_ptr<MenuFixture> m_fixture;
  std::unique_ptr<TrayController> m_tray;
  QString m_tea;

  Node layout() {
    const QVariantList answer = m_panel->menu(QStringLiteral("GetLayout"), {0, -1, QStringList()});
    return answer.size() == 2 ? nodeOf(answer[1].value<QDBusArgument>()) : Node();
  }
  void send(int id, const QString& event) {
    m_panel->menu(QStringLiteral("Event"),
                  {id, event, QVariant::fromValue(QDBusVariant(QString())), uint(0)});
  }
  void startWithPanel() {
    m_panel->come();
    m_tray->start();
    QTRY_VERIFY(m_tray->hasTray());
    QTRY_COMPARE(m_panel->registered.size(), 1);
  }

 private Q_SLOTS:
  void init() {
    m_bus = std::make_unique<PrivateBus>();
    m_panelConnection = std::make_unique<BusConnection>();
    m_trayConnection = std::make_unique<BusConnection>();
    m_panel = std::make_unique<Panel>(m_panelConnection->bus);
    m_fixture = std::make_unique<MenuFixture>();
    m_tea = m_fixture->add(QStringLiteral("Tea & snake_case"), 60);
    m_fixture->add(QStringLiteral("Pills"), 120);
    m_tray = std::make_unique<TrayController>([this] { return m_fixture->input(); },
                                              m_trayConnection->bus);
  }
  void cleanup() {
    m_tray.reset();
    m_panel.reset();
    m_trayConnection.reset();
    m_panelConnection.reset();
    m_bus.reset();
  }

  void thePanelReadsTheMenu() {
    startWithPanel();
    m_panel->menu(QStringLiteral("AboutToShow"), {0});
    const Node menu = layout();
    QCOMPARE(menu.children.value(0).label(), QStringLiteral("Quit Tockwise"));
    QVERIFY(find(menu, u"1 minutes, 0 seconds").id > 0);
    QCOMPARE(find(menu, u"Tea & snake__case").children.size(), 2);
    QCOMPARE(find(menu, u"By Date").properties.value(QStringLiteral("toggle-state")).toInt(), 1);
    QVERIFY(!find(menu, u"Preferences...").properties.value(QStringLiteral("enabled")).toBool());
  }

  void theMenuCountsAsOpenFromShowingToChoosing() {
    startWithPanel();
    QSignalSpy open(m_tray.get(), &TrayController::visibilityChanged);
    layout(); // panels look at it when they start, too
    QVERIFY(!m_tray->isOpen());
    m_panel->menu(QStringLiteral("AboutToShow"), {0});
    QVERIFY(m_tray->isOpen());
    QSignalSpy chosen(m_tray.get(), &TrayController::activated);
    send(find(layout(), u"New Reminder...").id, QStringLiteral("clicked"));
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen[0][0].value<MenuActivation>().action, QStringLiteral("newReminder"));
    QVERIFY(!m_tray->isOpen());
    QCOMPARE(open.size(), 2);
    m_panel->menu(QStringLiteral("AboutToShow"), {0});
    send(0, QStringLiteral("closed"));
    QVERIFY(!m_tray->isOpen());
  }

  void aClickCarriesTheIdentityThoughTheQueueWasReordered() {
    startWithPanel();
    m_panel->menu(QStringLiteral("AboutToShow"), {0});
    const Node menu = layout();
    const int remove = find(find(menu, u"Tea & snake__case"), u"Delete").id;
    QVERIFY(m_fixture->queue.permute({1, 0}));
    m_tray->refresh();
    QSignalSpy chosen(m_tray.get(), &TrayController::activated);
    send(remove, QStringLiteral("clicked"));
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen[0][0].value<MenuActivation>().reminderUUID, m_tea);
  }

  void itemsKeepTheirIdsWhileOthersComeAndGo() {
    startWithPanel();
    const Node before = layout();
    m_fixture->add(QStringLiteral("Milk"), 30);
    QVERIFY(m_fixture->queue.permute({2, 0, 1}));
    const Node after = layout();
    for (const char16_t* label : {u"Tea & snake__case", u"Pills", u"Quit Tockwise", u"By Name"})
      QCOMPARE(find(after, label).id, find(before, label).id);
    QVERIFY(find(after, u"Milk").id > 0);
  }

  void aClickOnADisabledOrForgottenItemDoesNothing() {
    startWithPanel();
    const Node menu = layout();
    QSignalSpy chosen(m_tray.get(), &TrayController::activated);
    send(find(menu, u"Preferences...").id, QStringLiteral("clicked"));
    const int gone = find(find(menu, u"Pills"), u"Delete").id;
    QVERIFY(m_fixture->queue.remove(1));
    layout();
    send(gone, QStringLiteral("clicked"));
    QCOMPARE(chosen.size(), 0);
  }

  void countdownsAreSentWhileItIsOpen() {
    startWithPanel();
    m_panel->menu(QStringLiteral("AboutToShow"), {0});
    const int countdown = find(layout(), u"2 minutes, 0 seconds").id;
    m_fixture->now = m_fixture->now.plusSeconds(1);
    m_tray->refresh();
    const QVariantList label =
        m_panel->menu(QStringLiteral("GetProperty"), {countdown, QStringLiteral("label")});
    QCOMPARE(label.value(0).value<QDBusVariant>().variant().toString(),
             QStringLiteral("1 minutes, 59 seconds"));
  }

  void thePanelsActivationTokenIsHandedOn() {
    const auto restore = qScopeGuard([] { qunsetenv("XDG_ACTIVATION_TOKEN"); });
    startWithPanel();
    m_panel->call(QStringLiteral("/StatusNotifierItem"),
                  QStringLiteral("org.kde.StatusNotifierItem"),
                  QStringLiteral("ProvideXdgActivationToken"), {QStringLiteral("kwin-7")});
    QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), QByteArray("kwin-7"));
    m_panel->call(QStringLiteral("/StatusNotifierItem"),
                  QStringLiteral("org.kde.StatusNotifierItem"),
                  QStringLiteral("ProvideXdgActivationToken"), {QString()});
    QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), QByteArray("kwin-7"));
  }

  void aPanelThatComesLateOrAgainIsFound() {
    m_tray->start();
    QSignalSpy available(m_tray.get(), &TrayController::trayAvailableChanged);
    QTest::qWait(0);
    QVERIFY(!m_tray->hasTray());
    m_panel->come();
    QTRY_VERIFY(m_tray->hasTray());
    QTRY_COMPARE(m_panel->registered.size(), 1);
    m_panel->leave();
    QTRY_VERIFY(!m_tray->hasTray());
    m_panel->come();
    QTRY_COMPARE(m_panel->registered.size(), 2);
    QCOMPARE(available.size(), 3);
  }

  void aWatcherWithoutAPanelIsAskedAgainWhenItHasOne() {
    m_panel->hasHost = false;
    m_panel->come();
    QSignalSpy settled(m_tray.get(), &TrayController::settled);
    m_tray->start();
    QVERIFY(settled.wait());
    QVERIFY(m_panel->registered.isEmpty());
    m_panel->open();
    QTRY_COMPARE(m_panel->registered.size(), 1);
  }

  void itIsSettledOnceWhenAPanelHasTheItem() {
    m_panel->come();
    QSignalSpy settled(m_tray.get(), &TrayController::settled);
    m_tray->start();
    QVERIFY(settled.isEmpty()); // what waits for it does not delay the item
    QVERIFY(settled.wait());
    QVERIFY(m_tray->hasTray());
    m_panel->leave();
    QTRY_VERIFY(!m_tray->hasTray());
    m_panel->come();
    QTRY_VERIFY(m_tray->hasTray());
    QCOMPARE(settled.size(), 1);
  }

  void withoutAPanelOrItsAnswerItIsSettledAllTheSame_data() {
    QTest::addColumn<bool>("hasPanel");
    QTest::newRow("none") << false;
    QTest::newRow("one that hangs") << true;
  }
  void withoutAPanelOrItsAnswerItIsSettledAllTheSame() {
    QFETCH(bool, hasPanel);
    m_panel->answers = false;
    if (hasPanel)
      m_panel->come();
    QSignalSpy settled(m_tray.get(), &TrayController::settled);
    m_tray->start();
    QVERIFY(settled.wait());
    QVERIFY(!m_tray->hasTray());
    QCOMPARE(settled.size(), 1);
  }

  void withoutABusItIsSettledAllTheSame() {
    TrayController tray([this] { return m_fixture->input(); },
                        QDBusConnection::connectToBus(QStringLiteral("unix:path=/nowhere"),
                                                      QStringLiteral("nowhere")));
    QSignalSpy settled(&tray, &TrayController::settled);
    tray.start();
    QVERIFY(settled.wait());
    QCOMPARE(settled.size(), 1);
  }

  void thePanelSeesIconAndToolTip() {
    m_tray->setToolTip(QStringLiteral("Next: <Tea>"));
    startWithPanel();
    const QVariantList answer = m_panel->call(
        QStringLiteral("/StatusNotifierItem"), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("GetAll"), {QStringLiteral("org.kde.StatusNotifierItem")});
    const auto properties = qdbus_cast<QVariantMap>(answer.value(0));
    const auto toolTip =
        qdbus_cast<DbusToolTip>(properties.value(QStringLiteral("ToolTip")).value<QDBusArgument>());
    QCOMPARE(toolTip.title, QStringLiteral("Tockwise"));
    QCOMPARE(toolTip.text, QStringLiteral("Next: &lt;Tea&gt;"));
    const auto pixmaps = qdbus_cast<QList<DbusPixmap>>(
        properties.value(QStringLiteral("IconPixmap")).value<QDBusArgument>());
    QVERIFY(pixmaps.size() >= 4);
    QCOMPARE(pixmaps[0].bytes.size(), pixmaps[0].width * pixmaps[0].height * 4);
    QVERIFY(properties.value(QStringLiteral("ItemIsMenu")).toBool());
  }

  void withoutATrayTheWindowStandsIn() {
    m_tray->start();
    QSignalSpy open(m_tray.get(), &TrayController::visibilityChanged);
    m_tray->showMenu();
    QVERIFY(m_tray->isOpen());
    QCOMPARE(open.size(), 1);
  }

  void aClockOptionThatNamesNoneChangesNothing() {
    startWithPanel();
    const auto icon = [&] {
      return m_panel
          ->call(QStringLiteral("/StatusNotifierItem"),
                 QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                 {QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("IconPixmap")})
          .value(0)
          .value<QDBusVariant>()
          .variant()
          .value<QDBusArgument>();
    };
    const auto bytes = [&] { return qdbus_cast<QList<DbusPixmap>>(icon()).value(0).bytes; };
    m_tray->setClockOption(3);
    const QByteArray third = bytes();
    for (const qint64 option : {5, 0, -1}) {
      m_tray->setClockOption(option);
      QCOMPARE(bytes(), third);
    }
    m_tray->setClockOption(4);
    QVERIFY(bytes() != third);
  }
};

QTEST_MAIN(TrayControllerTest)
#include "tray_controller_test.moc"
