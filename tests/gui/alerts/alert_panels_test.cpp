#include "alerts/alert_panel_controller.h"

#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextEdit>
#include <QWindow>

using namespace tockwise;

namespace {

const QString kFailure = QStringLiteral("The message could not be sent.");

QTextEdit* errorField(const AlertPanelController* panel) {
  return panel->findChild<QTextEdit*>(QStringLiteral("errorField"));
}

QPushButton* closeButton(const AlertPanelController* panel) {
  return panel->findChild<QPushButton*>(QStringLiteral("closeButton"));
}

/// The newest panel, active and past the time in which keys are ignored.
AlertPanelController* ready(const AlertPanels& panels) {
  AlertPanelController* panel = panels.panel(panels.count() - 1);
  panel->activateWindow();
  [&] { QTRY_VERIFY(panel->isActiveWindow() && !panel->isGuardingKeys()); }();
  return panel;
}

} // namespace

class AlertPanelsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aPanelOpensInFrontWithItsText() {
    AlertPanels panels;
    panels.initWithError(kFailure);
    QCOMPARE(panels.count(), 1);
    const AlertPanelController* panel = panels.panel(0);
    QCOMPARE(panel->errorMessage(), kFailure);
    QCOMPARE(errorField(panel)->toPlainText(), kFailure);
    QVERIFY(panel->isVisible());
    QVERIFY(panel->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QCOMPARE(panel->windowModality(), Qt::NonModal);
    QVERIFY(!panels.panel(1) && !panels.panel(-1));
  }

  void theTextIsShownAsItIsWritten() {
    AlertPanels panels;
    const QString text = QStringLiteral("550 <b>No such user</b> &amp; <img src=x>\nline two");
    panels.initWithError(text);
    QCOMPARE(errorField(panels.panel(0))->toPlainText(), text);
  }

  void theTextCanBeSelectedAndNotChanged() {
    AlertPanels panels;
    panels.initWithError(kFailure);
    QTextEdit* field = errorField(ready(panels));
    field->setFocus();
    QTest::keyClick(field, Qt::Key_X);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(field->toPlainText(), kFailure);
    QCOMPARE(field->textCursor().selectedText(), kFailure);
  }

  void severalAreOpenAtOnceAndEachLivesUntilItIsClosed() {
    AlertPanels panels;
    for (int i = 0; i < 3; ++i)
      panels.initWithError(QString::number(i));
    QCOMPARE(panels.count(), 3);
    for (int a = 0; a < 3; ++a) {
      for (int b = 0; b < a; ++b)
        QVERIFY(panels.panel(a)->pos() != panels.panel(b)->pos());
    }
    const QPointer<AlertPanelController> second = panels.panel(1);
    QTest::mouseClick(closeButton(second), Qt::LeftButton);
    QCOMPARE(panels.count(), 2);
    QCOMPARE(panels.panel(0)->errorMessage(), QStringLiteral("0"));
    QCOMPARE(panels.panel(1)->errorMessage(), QStringLiteral("2"));
    QTRY_VERIFY(second.isNull());
    QVERIFY(panels.panel(0)->isVisible() && panels.panel(1)->isVisible());
  }

  void keysCloseThePanel_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("fromText");
    QTest::newRow("Return") << int(Qt::Key_Return) << false;
    QTest::newRow("Enter") << int(Qt::Key_Enter) << false;
    QTest::newRow("Escape") << int(Qt::Key_Escape) << false;
    QTest::newRow("Return from the text") << int(Qt::Key_Return) << true;
    QTest::newRow("Escape from the text") << int(Qt::Key_Escape) << true;
  }

  void keysCloseThePanel() {
    QFETCH(int, key);
    QFETCH(bool, fromText);
    AlertPanels panels;
    panels.initWithError(kFailure);
    AlertPanelController* panel = ready(panels);
    if (fromText)
      errorField(panel)->setFocus();
    QTest::keyClick(panel->windowHandle(), Qt::Key(key));
    QCOMPARE(panels.count(), 0);
  }

  void aKeyPressedWhileItOpensIsNoAnswer() {
    AlertPanels panels;
    panels.initWithError(kFailure);
    panels.panel(0)->activateWindow();
    QTRY_VERIFY(panels.panel(0)->isActiveWindow());
    QVERIFY(panels.panel(0)->isGuardingKeys());
    QTest::keyClick(panels.panel(0)->windowHandle(), Qt::Key_Return);
    QCOMPARE(panels.count(), 1);
  }

  void theWindowManagersButtonClosesIt() {
    AlertPanels panels;
    panels.initWithError(kFailure);
    panels.panel(0)->windowHandle()->close();
    QCOMPARE(panels.count(), 0);
  }

  void aLongTextScrollsWithinTheScreen() {
    AlertPanels panels;
    panels.initWithError(QStringLiteral("a long story of what went wrong ").repeated(400));
    const AlertPanelController* panel = panels.panel(0);
    const QRect screen = panel->screen()->availableGeometry();
    QVERIFY(panel->height() < screen.height());
    QTRY_VERIFY(errorField(panel)->verticalScrollBar()->maximum() > 0);
    panels.initWithError(kFailure);
    QTRY_COMPARE(errorField(panels.panel(1))->verticalScrollBar()->maximum(), 0);
    QVERIFY(panels.panel(1)->height() < panel->height());
  }

  void aLongWordIsBroken() {
    AlertPanels panels;
    panels.initWithError(QString(300, u'x'));
    const QTextEdit* field = errorField(panels.panel(0));
    QVERIFY(field->document()->idealWidth() <= field->viewport()->width() + 1);
  }

  void itFollowsTheDesktopsColours() {
    AlertPanels panels;
    panels.initWithError(kFailure);
    const QPalette before = QApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::WindowText, QColor(250, 240, 230));
    dark.setColor(QPalette::Window, QColor(20, 20, 20));
    QApplication::setPalette(dark);
    QTRY_COMPARE(errorField(panels.panel(0))->palette().color(QPalette::Text),
                 QColor(250, 240, 230));
    QApplication::setPalette(before);
  }

  void itIsReadToThoseWhoDoNotSee() {
    AlertPanels panels;
    panels.initWithError(kFailure);
    QCOMPARE(panels.panel(0)->accessibleName(), QStringLiteral("Error"));
    QCOMPARE(panels.panel(0)->accessibleDescription(), kFailure);
    QVERIFY(!errorField(panels.panel(0))->accessibleName().isEmpty());
  }

  void goingAwayWithOpenPanelsIsSafe() {
    QPointer<AlertPanelController> panel;
    {
      AlertPanels panels;
      panels.initWithError(kFailure);
      panel = panels.panel(0);
    }
    QVERIFY(panel.isNull());
  }
};

QTEST_MAIN(AlertPanelsTest)
#include "alert_panels_test.moc"
