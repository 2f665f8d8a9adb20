// What only a window manager can show: who has the keyboard, what lies on what, where windows are.
#include "support/open_alerts.h"

#include <QApplication>
#include <QEventLoop>
#include <QLineEdit>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <QWindow>

using namespace tockwise;

namespace {

struct Fixture : OpenAlerts {
  AlertWindowController* open(const QString& text, AlertLevel level = AlertLevel::ModalPanel) {
    AlertRequest request;
    request.reminder = text;
    return alerts.window(alerts.open(request, level));
  }
};

QString output(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  process.waitForFinished();
  return QString::fromUtf8(process.readAllStandardOutput());
}

QString windowProperty(const QWidget& window, const char* name) {
  return output(QStringLiteral("xprop"), {QStringLiteral("-id"), QString::number(window.winId()),
                                          QString::fromLatin1(name)});
}

/// Lets the event loop sleep once: requests to the X server are sent off when it does, and waiting
/// as Qt Test does never lets it.
void sendOff() {
  QEventLoop loop;
  QTimer::singleShot(10, &loop, &QEventLoop::quit);
  loop.exec();
}

/// Position in the window manager's stack, the topmost highest; -1 when it is not in it.
qsizetype height(const QWidget& window) {
  sendOff();
  const QString stack =
      output(QStringLiteral("xprop"),
             {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")});
  return stack.indexOf(QStringLiteral("0x") + QString::number(window.winId(), 16));
}

bool isManaged(const QWidget& window) {
  return window.windowHandle()->isExposed() && height(window) >= 0;
}

} // namespace

class WindowManagerTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void anAlertOpensAboveATypistAndTakesNoKey() {
    Fixture f;
    QLineEdit letter;
    letter.show();
    letter.activateWindow();
    QTRY_VERIFY(letter.isActiveWindow());
    AlertWindowController* alert = f.open(QStringLiteral("Tea"));
    QTRY_VERIFY(isManaged(*alert));
    QTRY_VERIFY(height(*alert) > height(letter));
    output(QStringLiteral("xdotool"), {QStringLiteral("type"), QStringLiteral("half")});
    output(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("Return")});
    QTRY_COMPARE(letter.text(), QStringLiteral("half"));
    QVERIFY(letter.isActiveWindow());
    QCOMPARE(f.alerts.count(), 1);
  }

  void anAlertAsksForAttentionAndStaysAbove() {
    Fixture f;
    QLineEdit letter;
    letter.show();
    letter.activateWindow();
    QTRY_VERIFY(letter.isActiveWindow());
    AlertWindowController* alert = f.open(QStringLiteral("Tea"));
    QTRY_VERIFY(windowProperty(*alert, "_NET_WM_STATE").contains(u"_NET_WM_STATE_ABOVE"));
    QTRY_VERIFY(windowProperty(*alert, "_NET_WM_STATE").contains(u"DEMANDS_ATTENTION"));
    QVERIFY(windowProperty(*alert, "_NET_WM_WINDOW_TYPE").contains(u"_NET_WM_WINDOW_TYPE_DIALOG"));
    letter.raise();
    QTRY_VERIFY(height(*alert) > height(letter));
  }

  void exposingBringsAnAlertToTheFrontWithoutTheKeyboard() {
    Fixture f;
    QLineEdit letter;
    letter.show();
    AlertWindowController* older = f.open(QStringLiteral("Tea"));
    AlertWindowController* newer = f.open(QStringLiteral("Cake"));
    QTRY_VERIFY(isManaged(*older) && isManaged(*newer));
    letter.activateWindow();
    QTRY_VERIFY(letter.isActiveWindow());
    QTRY_VERIFY(height(*newer) > height(*older));
    QVERIFY(f.alerts.exposeCurrentAlert(0));
    QTRY_VERIFY(height(*older) > height(*newer));
    f.alerts.hideAllCurrentAlerts();
    QTRY_VERIFY(height(*older) < 0);
    QVERIFY(f.alerts.exposeCurrentAlert(0));
    QTRY_VERIFY(isManaged(*older));
    QVERIFY(letter.isActiveWindow());
  }

  void afterShowAllTheNewestIsOnTopWithTheKeyboard() {
    Fixture f;
    AlertWindowController* older = f.open(QStringLiteral("Tea"));
    AlertWindowController* newer = f.open(QStringLiteral("Cake"));
    QTRY_VERIFY(isManaged(*older) && isManaged(*newer));
    QVERIFY(f.alerts.exposeCurrentAlert(0));
    QTRY_VERIFY(height(*older) > height(*newer));
    f.alerts.hideAllCurrentAlerts();
    f.alerts.showAllCurrentAlerts();
    QTRY_VERIFY(isManaged(*older) && isManaged(*newer));
    QTRY_VERIFY(newer->isActiveWindow());
    QTRY_VERIFY(height(*newer) > height(*older));
  }

  void theHigherLevelStaysInFrontOfTheOthers() {
    Fixture f;
    AlertWindowController* high = f.open(QStringLiteral("High"), AlertLevel::MainMenu);
    AlertWindowController* low = f.open(QStringLiteral("Low"));
    QTRY_VERIFY(isManaged(*high) && isManaged(*low));
    QTRY_VERIFY(height(*high) > height(*low));
    QVERIFY(f.alerts.exposeCurrentAlert(1));
    QTRY_VERIFY(height(*high) > height(*low));
  }

  void hiddenAndShownAlertsStandWhereTheyStood() {
    Fixture f;
    QList<QPoint> before;
    for (int i = 0; i < 3; ++i)
      f.open(QStringLiteral("Alert %1").arg(i));
    for (int i = 0; i < 3; ++i)
      QTRY_VERIFY(isManaged(*f.alerts.window(i)));
    f.alerts.window(1)->move(400, 300); // as the user would drag it
    for (int i = 0; i < 10; ++i)
      sendOff(); // the window manager's answer may differ by the frame
    for (int i = 0; i < 3; ++i)
      before += f.alerts.window(i)->pos();
    for (int round = 0; round < 3; ++round) {
      f.alerts.hideAllCurrentAlerts();
      for (int i = 0; i < 3; ++i)
        QTRY_VERIFY(height(*f.alerts.window(i)) < 0);
      f.alerts.showAllCurrentAlerts();
      for (int i = 0; i < 3; ++i)
        QTRY_VERIFY(isManaged(*f.alerts.window(i)));
    }
    for (int i = 0; i < 3; ++i)
      QTRY_COMPARE(f.alerts.window(i)->pos(), before[i]);
  }

  void alertsStandOnTheScreenAndApart() {
    Fixture f;
    for (int i = 0; i < 5; ++i) {
      AlertWindowController* alert = f.open(QStringLiteral("Alert %1").arg(i));
      QTRY_VERIFY(isManaged(*alert));
      QVERIFY(QRect(0, 0, 1280, 800).contains(alert->frameGeometry()));
    }
    for (int a = 0; a < 5; ++a) {
      for (int b = 0; b < a; ++b) {
        const QPoint apart = f.alerts.window(a)->pos() - f.alerts.window(b)->pos();
        QVERIFY(apart.manhattanLength() >= 24);
      }
    }
  }
};

QTEST_MAIN(WindowManagerTest)
#include "window_manager_test.moc"
