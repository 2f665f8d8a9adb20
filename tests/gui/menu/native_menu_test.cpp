#include "menu/ui/native_menu.h"
#include "unit/menu/menu_fixture.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

using namespace tockwise;

namespace {

/// A menu of three reminders, ready to be opened.
struct OpenMenu {
  MenuFixture fixture;
  LiveMenu live{[this] { return fixture.input(); }};
  NativeMenu menu{live};
  QString tea = fixture.add(QStringLiteral("Tea & cake"), 60);
  QString pills = fixture.add(QStringLiteral("Pills"), 120);
  QString bins = fixture.add(QStringLiteral("Bins"), 180);

  void open() {
    menu.popup(QPoint(10, 10));
    QTRY_VERIFY(menu.isVisible());
  }
  QAction* action(const QString& uuid, MenuItemKind kind = MenuItemKind::ReminderTitle) const {
    for (QAction* action : menu.actions()) {
      const auto& entry = static_cast<MenuEntryAction*>(action)->entry();
      if (entry.kind == kind && entry.reminderUUID == uuid)
        return action;
    }
    return nullptr;
  }
  QAction* action(QStringView text) const {
    for (QAction* action : menu.actions()) {
      if (action->text() == text)
        return action;
    }
    return nullptr;
  }
  QStringList texts() const {
    QStringList result;
    for (QAction* action : menu.actions()) {
      if (!action->isSeparator())
        result += menu.paintedText(action);
    }
    return result;
  }
};

MenuActivation activationOf(const QSignalSpy& spy) {
  return spy.back().front().value<MenuActivation>();
}

} // namespace

class NativeMenuTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void itIsFilledWhenItIsAboutToBeShown() {
    OpenMenu test;
    QVERIFY(test.menu.actions().isEmpty());
    test.open();
    QCOMPARE(test.menu.actions().front()->text(), QStringLiteral("Quit Tockwise"));
    QCOMPARE(test.action(test.tea)->text(), QStringLiteral("Tea && cake"));
    QVERIFY(!test.action(u"Preferences...")->isEnabled());
    QVERIFY(!test.action(u"Reminder Queue")->isEnabled());
    test.menu.close();
    QTRY_VERIFY(test.menu.actions().isEmpty());
  }

  void countdownsMoveOnWhileTheirActionsStay() {
    OpenMenu test;
    test.open();
    const QList<QAction*> before = test.menu.actions();
    QVERIFY(test.texts().contains(QStringLiteral("2 minutes, 0 seconds")));
    test.fixture.now = test.fixture.now.plusSeconds(1);
    test.menu.refresh();
    QVERIFY(test.texts().contains(QStringLiteral("1 minutes, 59 seconds")));
    QCOMPARE(test.menu.actions(), before);
    QVERIFY(test.menu.isVisible());
  }

  void aNewReminderIsInsertedAmongTheOthers() {
    OpenMenu test;
    test.open();
    QPointer<QAction> bins = test.action(test.bins);
    const QList<QAction*> before = test.menu.actions();
    const QString milk = test.fixture.add(QStringLiteral("Milk"), 240);
    QVERIFY(test.fixture.queue.permute({0, 3, 1, 2}));
    test.menu.refresh();
    QVERIFY(test.action(milk));
    QCOMPARE(test.menu.actions().size(), before.size() + 4);
    for (QAction* action : before)
      QVERIFY(test.menu.actions().contains(action));
    QVERIFY(test.menu.actions().indexOf(test.action(milk)) < test.menu.actions().indexOf(bins));
    QVERIFY(test.menu.isVisible());
  }

  void aReminderThatIsGoneLeavesWithoutClosingTheMenu() {
    OpenMenu test;
    test.open();
    QPointer<QAction> tea = test.action(test.tea);
    QPointer<QAction> bins = test.action(test.bins);
    QVERIFY(test.fixture.queue.remove(0));
    test.menu.refresh();
    QVERIFY(!test.action(test.tea));
    QCOMPARE(test.action(test.bins), bins);
    QVERIFY(test.menu.isVisible());
    QTRY_VERIFY(!tea);
  }

  void theHighlightStaysWithItsItem() {
    OpenMenu test;
    test.open();
    test.menu.setActiveAction(test.action(test.bins));
    QVERIFY(test.fixture.queue.remove(0));
    test.menu.refresh();
    QCOMPARE(test.menu.activeAction(), test.action(test.bins));
  }

  void aReorderedItemKeepsItsActionAndItsHighlight() {
    OpenMenu test;
    test.open();
    const QList<QAction*> before = test.menu.actions();
    for (const QString& uuid : {test.tea, test.bins}) {
      QAction* title = test.action(uuid);
      test.menu.setActiveAction(title);
      QVERIFY(test.fixture.queue.permute({2, 1, 0}));
      test.menu.refresh();
      QCOMPARE(test.action(uuid), title);
      QCOMPARE(test.menu.activeAction(), title);
    }
    QCOMPARE(test.menu.actions(), before);
  }

  void aClickCarriesTheIdentityThoughTheQueueWasReordered() {
    OpenMenu test;
    test.open();
    QSignalSpy spy(&test.menu, &NativeMenu::activated);
    QAction* pills = test.action(test.pills);
    test.menu.setActiveAction(pills);
    QTest::keyClick(&test.menu, Qt::Key_Right);
    QTRY_VERIFY(pills->menu() && pills->menu()->isVisible());
    QVERIFY(test.fixture.queue.permute({1, 0, 2})); // by the tick, after the menu was drawn
    QTest::keyClick(pills->menu(), Qt::Key_Return);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(activationOf(spy).action, QStringLiteral("deleteMenuItem"));
    QCOMPARE(activationOf(spy).reminderUUID, test.pills);
    QCOMPARE(activationOf(spy).tag, 1);
  }

  void aTitleRunsItsOwnActionOnceThereIsOne() {
    OpenMenu test;
    test.fixture.availableActions += QStringLiteral("showReminder");
    test.open();
    QSignalSpy spy(&test.menu, &NativeMenu::activated);
    QAction* tea = test.action(test.tea);
    const QRect place = test.menu.actionGeometry(tea);
    QTest::mouseMove(&test.menu, place.center() - QPoint(3, 0));
    QTest::mouseMove(&test.menu, place.center());
    QTest::mouseClick(&test.menu, Qt::LeftButton, {}, place.center());
    QCOMPARE(spy.size(), 1);
    QCOMPARE(activationOf(spy).action, QStringLiteral("showReminder"));
    QCOMPARE(activationOf(spy).reminderUUID, test.tea);
    QTRY_VERIFY(!test.menu.isVisible());
  }

  void aTitleWithoutEditorOpensItsSubmenu() {
    OpenMenu test;
    test.open();
    QSignalSpy spy(&test.menu, &NativeMenu::activated);
    QAction* tea = test.action(test.tea);
    test.menu.setActiveAction(tea);
    QTest::keyClick(&test.menu, Qt::Key_Return);
    QTRY_VERIFY(tea->menu() && tea->menu()->isVisible());
    QCOMPARE(spy.size(), 0);
  }

  void submenusAreCheckedAndChosen() {
    OpenMenu test;
    test.open();
    QSignalSpy spy(&test.menu, &NativeMenu::activated);
    QAction* sort = test.action(u"Sort Queue");
    test.menu.setActiveAction(sort);
    QTest::keyClick(&test.menu, Qt::Key_Right);
    QTRY_VERIFY(sort->menu()->isVisible());
    QVERIFY(sort->menu()->actions().front()->isChecked());
    QVERIFY(!sort->menu()->actions().back()->isChecked());
    QTest::keyClick(sort->menu(), Qt::Key_Return);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(activationOf(spy).action, QStringLiteral("sortByDate"));
    QCOMPARE(activationOf(spy).title, QStringLiteral("By Date"));
  }

  void anOpenSubmenuFollowsTheAlerts() {
    OpenMenu test;
    test.open();
    QAction* alerts = test.action(u"Current Alerts");
    test.menu.setActiveAction(alerts);
    QTest::keyClick(&test.menu, Qt::Key_Right);
    QTRY_VERIFY(alerts->menu()->isVisible());
    QCOMPARE(alerts->menu()->actions().size(), 1);
    test.fixture.openAlerts = {{QStringLiteral("Dentist"), test.tea}};
    test.menu.refresh();
    QCOMPARE(alerts->menu()->actions().front()->text(), QStringLiteral("Dentist"));
    QVERIFY(alerts->menu()->isVisible());
  }

  void theHotKeyStandsInItsColumn() {
    OpenMenu test;
    test.fixture.settings.setValue(QStringLiteral("useGlobalHotKeys"), true);
    test.open();
    QVERIFY(test.texts().contains(QStringLiteral("New Reminder...\tCtrl+Super+M")));
  }

  void aRichTitleIsDrawnInItsColours() {
    OpenMenu test;
    RichTitles titles([](const QByteArray&) {
      RichAttributes green;
      green.color = 0xff00a000;
      green.size = 20;
      return RichText{{QStringLiteral("<b>MMMM</b>"), green}};
    });
    test.fixture.richTitles = &titles;
    QVERIFY(test.fixture.queue.set<&Columns::reminderRTFs>(1, QByteArrayLiteral("archive")));
    QPalette white(Qt::white);
    white.setColor(QPalette::Base, Qt::white);
    test.menu.setPalette(white);
    test.open();
    const QRect place = test.menu.actionGeometry(test.action(test.pills));
    QVERIFY(place.height() > test.menu.actionGeometry(test.action(test.tea)).height());
    const QImage drawn = test.menu.grab(place).toImage();
    const auto hasGreen = [&] {
      for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
          const QColor color = drawn.pixelColor(x, y);
          if (color.green() > 100 && color.red() < 40 && color.blue() < 40)
            return true;
        }
      }
      return false;
    };
    QVERIFY(hasGreen());
    QCOMPARE(test.action(test.pills)->text(), QStringLiteral("Pills"));
  }

  void aLongMenuStaysOnTheScreenAndCostsLittle() {
    OpenMenu test;
    for (int i = 0; i < 1500; ++i)
      test.fixture.add(QString::number(i), 300 + i);
    test.menu.popUpAt(QPoint(10, 10));
    QTRY_VERIFY(test.menu.isVisible());
    QVERIFY(test.menu.height() <= test.menu.screen()->availableGeometry().height());
    QCOMPARE(test.menu.paintedText(test.menu.actions().back()),
             QStringLiteral("503 More Reminders..."));
    const QList<QAction*> before = test.menu.actions();
    test.fixture.now = test.fixture.now.plusSeconds(1);
    test.menu.refresh();
    QCOMPARE(test.menu.actions(), before);
  }
};

QTEST_MAIN(NativeMenuTest)
#include "native_menu_test.moc"
