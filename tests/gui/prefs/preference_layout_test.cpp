// The preferences window: reaching its panes and controls, its size, and the panel of files.
#include "preference_test.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QWindow>

using namespace tockwise;
using Pane = PreferenceWindowController::Pane;

namespace {

constexpr Pane kPanes[] = {Pane::General,    Pane::Alerts,   Pane::Menu,       Pane::Editor,
                           Pane::QuickTimes, Pane::Messages, Pane::MailServer, Pane::Calendar,
                           Pane::Cloud,      Pane::Desktop};

} // namespace

class PreferenceLayoutTest : public PreferenceTest {
  Q_OBJECT

 private Q_SLOTS:
  void browsingTakesTheWindowsPlaceAndFillsTheField() {
    set("useDefaultTask", true);
    set("defaultTask", 2);
    set("defaultTaskPath", text("/etc/hostname"));
    open();
    write("emailField", "me@");
    window().showPane(Pane::Editor);
    click("browseButton");
    QVERIFY(!window().isVisible());
    const auto panel = [] {
      for (QWidget* each : QApplication::topLevelWidgets()) {
        if (each->objectName() == text("browsePanel"))
          return qobject_cast<QFileDialog*>(each);
      }
      return static_cast<QFileDialog*>(nullptr);
    };
    QTRY_VERIFY(panel() && panel()->isVisible());
    QCOMPARE(panel()->windowTitle(), text("Choose a File")); // the program's name is added to it
    QCOMPARE(panel()->directory().path(), text("/etc"));
    window().prefs(); // the menu leads to the panel meanwhile
    QVERIFY(!window().isVisible());
    auto* name = panel()->findChild<QLineEdit*>(text("fileNameEdit"));
    name->setText(text("/etc/passwd"));
    QTest::keyClick(name, Qt::Key_Return);
    QTRY_VERIFY(window().isVisible());
    QCOMPARE(find<QLineEdit>("taskPathField")->text(), text("/etc/passwd"));
    QCOMPARE(find<QLineEdit>("emailField")->text(), text("me@"));
    QTRY_VERIFY(!panel());
    click("browseButton");
    QTRY_VERIFY(panel() && panel()->isVisible());
    QTest::keyClick(panel(), Qt::Key_Escape);
    QTRY_VERIFY(window().isVisible());
    QCOMPARE(find<QLineEdit>("taskPathField")->text(), text("/etc/passwd"));
  }

  void theWindowMayGoAwayWhileItsPanelIsOpen() {
    set("useDefaultTask", true);
    set("defaultTask", 2);
    open();
    window().browse();
    m_preferences->closeForGood();
    for (QWidget* each : QApplication::topLevelWidgets())
      QVERIFY(each->objectName() != text("browsePanel"));
  }

  void thePanesAreReachedWithTheKeyboard() {
    open();
    auto* list = find<QListWidget>("paneList");
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Down);
    QCOMPARE(window().pane(), Pane::Alerts);
    QTest::keyClick(window().windowHandle(), Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(window().pane(), Pane::Menu);
    QCOMPARE(list->currentRow(), 2);
    for (int i = 0; i < 3; ++i)
      QTest::keyClick(window().windowHandle(), Qt::Key_PageUp, Qt::ControlModifier);
    QCOMPARE(window().pane(), Pane::Desktop); // round and round
  }

  void everyControlHasANameAndIsReachedByTab_data() {
    QTest::addColumn<int>("pane");
    for (const Pane pane : kPanes)
      QTest::addRow("pane %d", int(pane)) << int(pane);
  }
  void everyControlHasANameAndIsReachedByTab() {
    QFETCH(int, pane);
    set("authenticationAD", 2);
    set("useDefaultTask", true);
    set("defaultTask", 2);
    m_preferences->checks = {{text("Tray"), true, text("Here."), {}}};
    open();
    window().showPane(Pane(pane));
    QTRY_VERIFY(pane != int(Pane::Desktop) || m_preferences->timesChecked == 1);
    QSet<QWidget*> reached;
    find<QListWidget>("paneList")->setFocus();
    for (int i = 0; i < 60; ++i) {
      QTest::keyClick(window().windowHandle(), Qt::Key_Tab);
      reached.insert(window().focusWidget());
    }
    QVERIFY(reached.contains(find<QPushButton>("okButton")));
    const auto* page = find<QStackedWidget>("tabView")->currentWidget();
    for (QWidget* control : page->findChildren<QWidget*>()) {
      const bool isControl = qobject_cast<QAbstractButton*>(control) ||
                             qobject_cast<QComboBox*>(control) || qobject_cast<QLineEdit*>(control);
      if (!isControl || control->objectName().isEmpty() ||
          control->objectName().startsWith(text("qt_")))
        continue;
      const bool isSaid = qobject_cast<QAbstractButton*>(control) &&
                          !control->property("text").toString().isEmpty();
      QVERIFY2(isSaid || !control->accessibleName().isEmpty(), qPrintable(control->objectName()));
      // The buttons of a group are reached through one of them, and with the arrows.
      auto* button = qobject_cast<QAbstractButton*>(control);
      const bool isOneOfGroup = button && button->group();
      if (control->isEnabled() && control->isVisible() && control->focusPolicy() & Qt::TabFocus &&
          !isOneOfGroup)
        QVERIFY2(reached.contains(control) || reached.contains(control->focusProxy()) ||
                     reached.contains(control->parentWidget()),
                 qPrintable(control->objectName()));
    }
  }

  void noTwoControlsOfAPaneShareAMnemonic_data() { everyControlHasANameAndIsReachedByTab_data(); }
  void noTwoControlsOfAPaneShareAMnemonic() {
    QFETCH(int, pane);
    open();
    window().showPane(Pane(pane));
    QHash<QChar, QString> taken{{u'a', text("Apply")}};
    for (const QWidget* widget :
         find<QStackedWidget>("tabView")->currentWidget()->findChildren<QWidget*>()) {
      const QString title = widget->property("text").toString();
      const qsizetype place = title.indexOf(u'&');
      if (place < 0 || widget->inherits("QLineEdit"))
        continue;
      const QChar key = title[place + 1].toLower();
      QVERIFY2(!taken.contains(key), qPrintable(title + text(" / ") + taken.value(key)));
      taken.insert(key, title);
    }
  }

  void everyPaneFitsTheWindowAndIsScrolledInASmallOne_data() {
    everyControlHasANameAndIsReachedByTab_data();
  }
  void everyPaneFitsTheWindowAndIsScrolledInASmallOne() {
    QFETCH(int, pane);
    open();
    window().showPane(Pane(pane));
    QVERIFY(window().minimumSizeHint().width() <= 600);
    QVERIFY(window().minimumSizeHint().height() <= 360);
    auto* scroller = qobject_cast<QScrollArea*>(find<QStackedWidget>("tabView")->currentWidget());
    window().resize(800, 660); // what fits 1024 by 700 with a title bar
    QTRY_COMPARE(scroller->verticalScrollBar()->maximum(), 0);
    QCOMPARE(scroller->horizontalScrollBar()->maximum(), 0);
    window().resize(600, 360); // 1366 by 768 at 200 %
    QTRY_COMPARE(scroller->width(), find<QStackedWidget>("tabView")->width());
    QCOMPARE(scroller->horizontalScrollBar()->maximum(), 0);
  }
};

QTEST_MAIN(PreferenceLayoutTest)
#include "preference_layout_test.moc"
