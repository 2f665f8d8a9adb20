#include "menu/ui/menu_list_model.h"
#include "menu/ui/menu_window.h"
#include "menu/ui/native_menu.h"
#include "unit/menu/menu_fixture.h"

#include <QListView>
#include <QSignalSpy>
#include <QTest>

using namespace tockwise;

namespace {

struct OpenWindow {
  MenuFixture fixture;
  QString tea = fixture.add(QStringLiteral("Tea"), 60);
  QString pills = fixture.add(QStringLiteral("Pills"), 120);
  MenuWindow window{[this] { return fixture.input(); }};
  QListView* list = window.findChild<QListView*>(QStringLiteral("menuList"));

  void open() {
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    list->setFocus();
  }
  QModelIndex row(const QString& text) const {
    for (int row = 0; row < list->model()->rowCount(); ++row) {
      if (list->model()->index(row, 0).data().toString() == text)
        return list->model()->index(row, 0);
    }
    return {};
  }
  QString current() const { return list->currentIndex().data().toString(); }
  void goTo(const QString& text) {
    list->setCurrentIndex(row(text));
    list->scrollTo(row(text));
  }
  void click(const QString& text) {
    list->scrollTo(row(text));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(row(text)).center());
  }
  NativeMenu* submenu() const {
    for (NativeMenu* menu : window.findChildren<NativeMenu*>()) {
      if (menu->isVisible())
        return menu;
    }
    return nullptr;
  }
};

MenuActivation activationOf(const QSignalSpy& spy) {
  return spy.back().front().value<MenuActivation>();
}

} // namespace

class MenuWindowTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void itShowsTheWholeMenu() {
    OpenWindow test;
    test.open();
    QVERIFY(!test.list->currentIndex().isValid());
    QVERIFY(test.row(QStringLiteral("Tea")).isValid());
    QVERIFY(test.row(QStringLiteral("2 items, sorted by: date")).isValid());
    QVERIFY(test.row(QStringLiteral("1 minutes, 0 seconds")).isValid());
  }

  void arrowsGoToWhatCanBeChosen() {
    OpenWindow test;
    test.open();
    QTest::keyClick(test.list, Qt::Key_Down);
    QCOMPARE(test.current(), QStringLiteral("Quit Tockwise"));
    QTest::keyClick(test.list, Qt::Key_Down);
    QCOMPARE(test.current(), QStringLiteral("New Reminder...")); // save and open are disabled
    QTest::keyClick(test.list, Qt::Key_Up);
    QCOMPARE(test.current(), QStringLiteral("Quit Tockwise"));
    QTest::keyClick(test.list, Qt::Key_Up);
    QCOMPARE(test.current(), QStringLiteral("Quit Tockwise"));
  }

  void aStrayReturnChoosesNothing() {
    OpenWindow test;
    QSignalSpy activated(&test.window, &MenuWindow::activated);
    test.open();
    QTest::keyClick(test.list, Qt::Key_Return);
    QTest::keyClick(test.list, Qt::Key_Space);
    QCOMPARE(activated.size(), 0);
  }

  void returnAndClickChoose() {
    OpenWindow test;
    test.open();
    QSignalSpy spy(&test.window, &MenuWindow::activated);
    QTest::keyClick(test.list, Qt::Key_Down);
    QTest::keyClick(test.list, Qt::Key_Down);
    QTest::keyClick(test.list, Qt::Key_Return);
    QCOMPARE(activationOf(spy).action, QStringLiteral("newReminder"));
    test.click(QStringLiteral("Clear Queue"));
    QCOMPARE(spy.size(), 2);
    QCOMPARE(activationOf(spy).action, QStringLiteral("clearQueue"));
    test.click(QStringLiteral("Preferences...")); // disabled
    QCOMPARE(spy.size(), 2);
  }

  void aReminderIsDeletedThroughItsSubmenu() {
    OpenWindow test;
    test.open();
    QSignalSpy spy(&test.window, &MenuWindow::activated);
    test.goTo(QStringLiteral("Pills"));
    QTest::keyClick(test.list, Qt::Key_Right);
    QTRY_VERIFY(test.submenu());
    NativeMenu* submenu = test.submenu();
    QVERIFY(test.fixture.queue.permute({1, 0}));
    test.window.refresh();
    submenu->setActiveAction(submenu->actions().front());
    QTest::keyClick(submenu, Qt::Key_Return);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(activationOf(spy).action, QStringLiteral("deleteMenuItem"));
    QCOMPARE(activationOf(spy).reminderUUID, test.pills);
  }

  void aTitleIsChosenOnceThereIsAnEditor() {
    OpenWindow test;
    test.fixture.availableActions += QStringLiteral("showReminder");
    test.open();
    QSignalSpy spy(&test.window, &MenuWindow::activated);
    test.click(QStringLiteral("Tea"));
    QCOMPARE(activationOf(spy).action, QStringLiteral("showReminder"));
    QCOMPARE(activationOf(spy).reminderUUID, test.tea);
  }

  void countdownsMoveOnAndTheCurrentRowStays() {
    OpenWindow test;
    test.open();
    test.goTo(QStringLiteral("Pills"));
    QSignalSpy resets(test.list->model(), &QAbstractItemModel::modelReset);
    QSignalSpy removals(test.list->model(), &QAbstractItemModel::rowsRemoved);
    test.fixture.now = test.fixture.now.plusSeconds(1);
    test.window.refresh();
    QVERIFY(test.row(QStringLiteral("1 minutes, 59 seconds")).isValid());
    QCOMPARE(removals.size(), 0);
    QVERIFY(test.fixture.queue.remove(0));
    test.window.refresh();
    QCOMPARE(test.current(), QStringLiteral("Pills"));
    QCOMPARE(removals.size(), 1);
    QCOMPARE(resets.size(), 0);
  }

  void escapeClosesIt() {
    OpenWindow test;
    QSignalSpy spy(&test.window, &MenuWindow::visibilityChanged);
    test.open();
    QTest::keyClick(test.list, Qt::Key_Escape);
    QVERIFY(!test.window.isVisible());
    QCOMPARE(spy.size(), 2);
    QCOMPARE(spy[0][0].toBool(), true);
    QCOMPARE(spy[1][0].toBool(), false);
  }
};

QTEST_MAIN(MenuWindowTest)
#include "menu_window_test.moc"
