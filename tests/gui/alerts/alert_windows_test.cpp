#include "gui/alerts/alert_windows_fixture.h"

#include <QApplication>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

using namespace tockwise;

class AlertWindowsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void openingAppendsToTheListAndShowsTheWindow() {
    Fixture f;
    QSignalSpy opened(&f.alerts, &AlertWindows::opened);
    QSignalSpy counts(&f.alerts, &AlertWindows::countChanged);
    QCOMPARE(f.open(kTea), 0);
    QCOMPARE(f.open(kCake, "rtf", true), 1);
    QCOMPARE(f.alerts.count(), 2);
    QCOMPARE(opened.count(), 2);
    QCOMPARE(opened.back().front().toString(), QStringLiteral("UUID of Cake"));
    QCOMPARE(counts.count(), 2);
    const AlertEntry entry = f.alerts.entries()[1];
    QCOMPARE(entry.position, 1);
    QCOMPARE(entry.reminderUUID, QStringLiteral("UUID of Cake"));
    QCOMPARE(entry.text, kCake);
    QCOMPARE(entry.RTFData, QByteArray("rtf"));
    QCOMPARE(entry.date, kNow);
    QVERIFY(entry.shown);
    QVERIFY(entry.rescheduled);
  }

  void openingPlaysTheSoundOnce() {
    Fixture f;
    f.open(kTea);
    QTRY_COMPARE(f.settings.synchronizations(),
                 1); // the sound is chosen from the settings as stored
  }

  void severalAlertsDoNotHideOneAnother() {
    Fixture f;
    for (int i = 0; i < 4; ++i)
      f.open(QStringLiteral("Alert %1").arg(i));
    for (int a = 0; a < 4; ++a) {
      for (int b = 0; b < a; ++b)
        QVERIFY(f.alerts.window(a)->pos() != f.alerts.window(b)->pos());
    }
  }

  void okClosesTheAlertAndTakesItOffTheList() {
    Fixture f;
    f.open(kTea);
    f.open(kCake);
    QSignalSpy closed(&f.alerts, &AlertWindows::closed);
    const QPointer<AlertWindowController> window = f.alerts.window(0);
    QTest::mouseClick(f.button(0, "okButton"), Qt::LeftButton);
    QCOMPARE(f.texts(), QStringList{kCake});
    QCOMPARE(closed.count(), 1);
    QCOMPARE(closed.front().front().toString(), QStringLiteral("UUID of Tea"));
    QTRY_VERIFY(window.isNull());
  }

  void closingTheWindowByTheWindowManagerIsOK() {
    Fixture f;
    f.open(kTea);
    QSignalSpy closed(&f.alerts, &AlertWindows::closed);
    f.alerts.window(0)->windowHandle()->close();
    QCOMPARE(f.alerts.count(), 0);
    QCOMPARE(closed.count(), 1);
  }

  void remindAgainPostsItsRequestAndThenLeavesTheList() {
    Fixture f;
    AlertRequest request;
    request.reminder = kTea;
    request.RTFData = "rtf";
    request.sentSMS = true;
    request.reminderType = QStringLiteral("regular");
    request.reminderUUID = QStringLiteral("U");
    f.alerts.open(request);
    std::vector<RemindAgainRequest> requests;
    qsizetype countMeanwhile = -1;
    bool shownMeanwhile = true;
    connect(&f.alerts, &AlertWindows::remindAgainRequested, this,
            [&](const RemindAgainRequest& posted) {
              requests.push_back(posted);
              countMeanwhile = f.alerts.count();
              f.alerts.showAllCurrentAlerts(); // as a question in the editor would
              shownMeanwhile = f.alerts.entries()[0].shown;
            });
    QTest::mouseClick(f.button(0, "remindAgainButton"), Qt::LeftButton);
    QCOMPARE(requests.size(), size_t(1));
    QCOMPARE(requests.front(), (RemindAgainRequest{QStringLiteral("regular"), kTea, "rtf", true,
                                                   false, QStringLiteral("U")}));
    QCOMPARE(countMeanwhile, 1);
    QVERIFY(!shownMeanwhile);
    QCOMPARE(f.alerts.count(), 0);
  }

  void okAllWhileTheEditorOfRemindAgainIsOpenIsSafe() {
    Fixture f;
    f.open(kTea);
    f.open(kCake);
    connect(&f.alerts, &AlertWindows::remindAgainRequested, this, [&] {
      f.alerts.okAll();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    });
    QSignalSpy closed(&f.alerts, &AlertWindows::closed);
    QVERIFY(f.alerts.remindAgain(0));
    QCOMPARE(f.alerts.count(), 0);
    QCOMPARE(closed.count(), 2);
  }

  void deletingFindsTheFirstReminderWithTheSameRichText() {
    Fixture f;
    f.add("a");
    f.add("b");
    f.add("b");
    f.open(kTea, "b", true);
    QTest::mouseClick(f.button(0, "deleteButton"), Qt::LeftButton);
    QCOMPARE(f.remover.indexes, std::vector<qsizetype>{1});
    QCOMPARE(f.alerts.count(), 0);
  }

  void deletingWithoutAMatchTakesTheFirstReminder() {
    Fixture f;
    f.add("edited since");
    f.add("other");
    f.open(kTea, "as it fired", true);
    QVERIFY(f.alerts.deleteReminder(0));
    QCOMPARE(f.remover.indexes, std::vector<qsizetype>{0});
  }

  void richTextsAreComparedByteForByte() {
    Fixture f;
    f.add("rtf");
    f.add(QByteArray("rtf\0", 4));
    f.open(kTea, QByteArray("rtf\0", 4), true);
    QVERIFY(f.alerts.deleteReminder(0));
    QCOMPARE(f.remover.indexes, std::vector<qsizetype>{1});
  }

  void anotherAlertDismissedDuringTheDeleteQuestionStaysDismissed() {
    Fixture f;
    f.open(kTea, "a", true);
    f.open(kCake, "b", true);
    f.remover.meanwhile = [&] { QVERIFY(f.alerts.OK(0)); };
    QVERIFY(f.alerts.deleteReminder(1));
    QCOMPARE(f.alerts.count(), 0);
  }

  void theAlertItselfDismissedDuringTheDeleteQuestionIsSafe() {
    Fixture f;
    f.open(kTea, "a", true);
    f.open(kCake, "b", true);
    f.remover.meanwhile = [&] {
      QVERIFY(f.alerts.OK(0));
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    QVERIFY(f.alerts.deleteReminder(0));
    QCOMPARE(f.texts(), QStringList{kCake});
  }

  void anAlertOfADeletedReminderStaysOpen() {
    Fixture f;
    f.add("a");
    f.open(kTea, "a");
    f.queue.clear();
    QCOMPARE(f.texts(), QStringList{kTea});
    QVERIFY(f.alerts.entries()[0].shown);
  }

  void aPositionThatNobodyHoldsIsReported() {
    Fixture f;
    f.open(kTea);
    for (const qsizetype position : {qsizetype(-1), qsizetype(1)}) {
      QCOMPARE(f.alerts.OK(position).error().kind, Error::Kind::OutOfRange);
      QVERIFY(!f.alerts.remindAgain(position));
      QVERIFY(!f.alerts.deleteReminder(position));
      QVERIFY(!f.alerts.exposeCurrentAlert(position));
    }
    QCOMPARE(f.texts(), QStringList{kTea});
  }

  void onlyAddressesThatATextMayOpenArePassedOn_data() {
    QTest::addColumn<QString>("address");
    QTest::addColumn<int>("passed");
    QTest::newRow("web") << QStringLiteral("https://example.org") << 1;
    QTest::newRow("mail") << QStringLiteral("mailto:a@example.org") << 1;
    QTest::newRow("script") << QStringLiteral("javascript:alert(1)") << 0;
    QTest::newRow("unknown") << QStringLiteral("steam://run/1") << 0;
  }

  void onlyAddressesThatATextMayOpenArePassedOn() {
    QFETCH(QString, address);
    QFETCH(int, passed);
    Fixture f;
    f.open(kWalk);
    QSignalSpy links(&f.alerts, &AlertWindows::linkChosen);
    Q_EMIT f.alerts.window(0)->linkChosen(QUrl(address));
    QCOMPARE(links.count(), passed);
  }

  void goingAwayWithOpenAlertsIsSafe() {
    QPointer<AlertWindowController> window;
    {
      Fixture f;
      f.open(kTea);
      window = f.alerts.window(0);
    }
    QVERIFY(window.isNull());
  }
};

QTEST_MAIN(AlertWindowsTest)
#include "alert_windows_test.moc"
