// All open alerts at once: hidden, shown, closed, restored, and hundreds of them.
#include "gui/alerts/alert_windows_fixture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace tockwise;

class AlertsTogetherTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void hideAndShowKeepEveryAlert() {
    Fixture f;
    f.open(kTea);
    f.open(kCake);
    f.alerts.hideAllCurrentAlerts();
    QCOMPARE(f.alerts.count(), 2);
    QCOMPARE(f.shown(), 0);
    f.alerts.showAllCurrentAlerts();
    QCOMPARE(f.shown(), 2);
  }

  void afterShowAllTheNewestHasTheKeyboard() {
    Fixture f;
    f.open(kTea);
    f.open(kCake);
    f.alerts.hideAllCurrentAlerts();
    f.alerts.showAllCurrentAlerts();
    QTRY_VERIFY(f.alerts.window(1)->isActiveWindow());
    QVERIFY(!f.alerts.window(0)->isActiveWindow());
  }

  void exposingShowsAHiddenAlertAndNoOther() {
    Fixture f;
    f.open(kTea);
    f.open(kCake);
    f.alerts.hideAllCurrentAlerts();
    QVERIFY(f.alerts.exposeCurrentAlert(0));
    QVERIFY(f.alerts.entries()[0].shown);
    QVERIFY(!f.alerts.entries()[1].shown);
  }

  void closeAllAsksWithTheSafeAnswerAsDefault() {
    Fixture f;
    f.alerts.closeAllCurrentAlerts(); // asked even with nothing open
    QCOMPARE(f.prompter.asked.size(), size_t(1));
    const Question& question = f.prompter.asked.front();
    QCOMPARE(question.title, QStringLiteral("Are you sure you want to close all alert windows?"));
    QCOMPARE(question.message, QStringLiteral("This can not be undone."));
    QCOMPARE(question.buttons, (QStringList{QStringLiteral("No"), QStringLiteral("Yes")}));
    QCOMPARE(question.defaultButton, 0);
    QCOMPARE(question.escapeButton, 0);
  }

  void closeAllWithNothingOpenAsksAndDoesNothing() {
    Fixture f;
    QSignalSpy closed(&f.alerts, &AlertWindows::closed);
    QSignalSpy count(&f.alerts, &AlertWindows::countChanged);
    f.prompter.answers = {1};
    f.alerts.closeAllCurrentAlerts();
    QCOMPARE(f.prompter.asked.size(), size_t(1));
    QTest::qWait(150); // longer than the pause before closing
    QCOMPARE(f.alerts.count(), 0);
    QVERIFY(closed.isEmpty() && count.isEmpty());
  }

  void noToCloseAllLeavesEveryAlertVisible() {
    Fixture f;
    f.open(kTea);
    f.open(kCake);
    f.prompter.answers = {0};
    f.prompter.meanwhile = [&] { QCOMPARE(f.shown(), 0); };
    f.alerts.closeAllCurrentAlerts();
    QCOMPARE(f.shown(), 2);
    QTest::qWait(150); // longer than the pause before closing
    QCOMPARE(f.shown(), 2);
  }

  void yesToCloseAllBringsThemBackAndClosesThemAMomentLater() {
    Fixture f;
    f.open(kTea);
    f.open(kCake);
    f.prompter.answers = {1};
    QSignalSpy closed(&f.alerts, &AlertWindows::closed);
    f.alerts.closeAllCurrentAlerts();
    QCOMPARE(f.shown(), 2);
    QTRY_COMPARE(f.alerts.count(), 0);
    QCOMPARE(closed.count(), 2);
  }

  void showAllBringsBackWhatAWindowManagerMinimized() {
    Fixture f;
    f.open(kTea);
    f.alerts.window(0)->showMinimized();
    f.alerts.showAllCurrentAlerts();
    QVERIFY(!f.alerts.window(0)->isMinimized());
    QVERIFY(f.alerts.window(0)->isVisible());
  }

  void hiddenAlertsKeepTheirStateAndComeBackWhole() {
    Fixture f;
    AlertRequest request = alertOf(kTea);
    request.RTFData = "rtf";
    request.sentEmail = true;
    f.alerts.open(request);
    AlertWindowController* window = f.alerts.window(0);
    f.alerts.hideAllCurrentAlerts();
    f.alerts.showAllCurrentAlerts();
    QCOMPARE(f.alerts.window(0), window);
    QVERIFY(window->isVisible() && window->emailState());
    QCOMPARE(window->request(), request);
    QTRY_COMPARE(f.settings.synchronizations(), 1); // one sound was chosen, for its opening
  }

  void anAlertThatOpensDuringAQuestionIsSeenAtOnce() {
    Fixture f;
    f.open(kTea);
    f.prompter.meanwhile = [&] {
      f.open(kCake);
      QVERIFY(!f.alerts.entries()[0].shown);
      QVERIFY(f.alerts.window(1)->isVisible());
      QVERIFY(f.alerts.OK(1));
    };
    f.alerts.closeAllCurrentAlerts();
    QCOMPARE(f.texts(), QStringList{kTea});
    QVERIFY(f.alerts.window(0)->isVisible());
  }

  void aQuestionWithinAQuestionBringsBackOnlyWhatItHid() {
    Fixture f;
    f.open(kTea);
    f.prompter.meanwhile = [&] {
      f.open(kCake); // while the first question is open
      f.prompter.meanwhile = [&] { QCOMPARE(f.shown(), 0); };
      f.alerts.closeAllCurrentAlerts(); // the second
      QVERIFY(!f.alerts.entries()[0].shown);
      QVERIFY(f.alerts.window(1)->isVisible());
    };
    f.alerts.closeAllCurrentAlerts();
    QCOMPARE(f.shown(), 2);
    QCOMPARE(f.prompter.asked.size(), size_t(2));
  }

  void whatTheUserHidesDuringAQuestionStaysHiddenUntilTheFirstOneEnds() {
    Fixture f;
    f.prompter.meanwhile = [&] {
      f.open(kTea);
      f.prompter.meanwhile = [&] { QVERIFY(f.alerts.hide(0)); };
      f.alerts.closeAllCurrentAlerts();
      QCOMPARE(f.shown(), 0);
    };
    f.alerts.closeAllCurrentAlerts();
    QCOMPARE(f.shown(), 1);
  }

  void aQuestionIsNoHidingByTheUser() {
    Fixture f;
    f.open(kTea);
    f.open(kCake);
    QVERIFY(f.alerts.hide(1));
    f.prompter.meanwhile = [&] {
      QVERIFY(!f.alerts.states()[0].hidden);
      QVERIFY(f.alerts.states()[1].hidden);
    };
    f.alerts.closeAllCurrentAlerts();
    QVERIFY(!f.alerts.states()[1].hidden); // all are shown again
  }

  void closeAllDismissesHiddenOnesAndWhatOpenedMeanwhile() {
    Fixture f;
    f.open(kTea);
    f.prompter.answers = {1};
    f.alerts.closeAllCurrentAlerts();
    f.open(kCake);
    f.alerts.hideAllCurrentAlerts();
    QTRY_COMPARE(f.alerts.count(), 0);
  }

  void manyAlertsLeaveTheEventLoopTimeBetweenThem() {
    Fixture f;
    QElapsedTimer since;
    since.start();
    qint64 longest = 0;
    QTimer pulse;
    connect(&pulse, &QTimer::timeout, this, [&] { longest = std::max(longest, since.restart()); });
    for (int i = 0; i < 300; ++i)
      f.open(QStringLiteral("Alert %1").arg(i));
    const qint64 opening = since.restart();
    pulse.start(0);
    QCOMPARE(f.alerts.count(), 300);
    QCOMPARE(f.shown(), 300);
    const auto visible = [] {
      const QWidgetList windows = QApplication::topLevelWidgets();
      return std::count_if(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && qobject_cast<const AlertWindowController*>(window);
      });
    };
    const qint64 atOnce = visible();
    QVERIFY(atOnce >= 1);
    QTRY_COMPARE_WITH_TIMEOUT(visible(), qint64(300), 60000);
    pulse.stop();
    qInfo("opening 300 took %lld ms, the longest turn %lld ms", opening, longest);
    QVERIFY(atOnce < 300);
    QVERIFY(f.alerts.window(299)->pos() != f.alerts.window(298)->pos());
  }

  void waitingAlertsAreHiddenAndAnsweredAsOthers() {
    Fixture f;
    f.alerts.restore({{alertOf(kTea)}, {alertOf(kCake)}, {alertOf(kWalk)}});
    QCOMPARE(f.shown(), 3);
    QVERIFY(f.alerts.OK(0));
    QVERIFY(f.alerts.hide(1));
    QVERIFY(f.alerts.exposeCurrentAlert(0));
    QVERIFY(f.alerts.window(0)->isVisible());
    QVERIFY(!f.alerts.window(1));
    QCoreApplication::processEvents();
    QVERIFY(!f.alerts.window(1));
    f.alerts.showAllCurrentAlerts();
    QTRY_VERIFY(f.alerts.window(1)->isActiveWindow());
    QCOMPARE(f.texts(), (QStringList{kCake, kWalk}));
  }

  void restoredAlertsComeInOrderWithoutASound() {
    Fixture f;
    QSignalSpy opened(&f.alerts, &AlertWindows::opened);
    QSignalSpy counts(&f.alerts, &AlertWindows::countChanged);
    AlertState hidden{alertOf(kCake), AlertLevel::MainMenu, true};
    f.alerts.restore({{alertOf(kTea)}, hidden});
    QCOMPARE(f.texts(), (QStringList{kTea, kCake}));
    QCOMPARE(f.settings.synchronizations(), 0); // no sound was chosen
    QCOMPARE(opened.count(), 2);
    QCOMPARE(counts.count(), 1);
    QCOMPARE(f.alerts.states(), (std::vector<AlertState>{{alertOf(kTea)}, hidden}));
    QVERIFY(f.alerts.entries()[0].shown && !f.alerts.entries()[1].shown);
    QTRY_VERIFY(f.alerts.window(0)->isVisible());
  }

  void theButtonsOfARestoredAlertWork() {
    Fixture f;
    f.add("a");
    f.add("b");
    AlertRequest repeating = alertOf(kTea);
    repeating.RTFData = "b";
    repeating.rescheduled = true;
    AlertRequest once = alertOf(kCake);
    once.sentSMS = true;
    f.alerts.restore({{repeating}, {once}});
    std::vector<RemindAgainRequest> requests;
    connect(&f.alerts, &AlertWindows::remindAgainRequested, this,
            [&](const RemindAgainRequest& request) { requests.push_back(request); });
    QTest::mouseClick(f.button(0, "deleteButton"), Qt::LeftButton);
    QCOMPARE(f.remover.indexes, std::vector<qsizetype>{1});
    QTest::mouseClick(f.button(0, "remindAgainButton"), Qt::LeftButton);
    QCOMPARE(requests.size(), size_t(1));
    QVERIFY(requests.front().smsState && !requests.front().emailState);
    QCOMPARE(f.alerts.count(), 0);
  }

  void aFiringThatWasNotSavedTakesThePlaceOfItsRestoredAlert() {
    Fixture f;
    f.alerts.restore({{alertOf(kTea)}, {alertOf(kCake)}});
    f.alerts.open(alertOf(kTea)); // fired again, since nobody wrote down that it had
    QCOMPARE(f.texts(), (QStringList{kCake, kTea}));
    AlertRequest next = alertOf(kCake);
    next.date = kNow.plusSeconds(86400);
    f.alerts.open(next); // the next day's
    QCOMPARE(f.texts(), (QStringList{kCake, kTea, kCake}));
    f.alerts.open(next); // edited and due once more: both are of this session
    QCOMPARE(f.alerts.count(), 4);
  }

  void anAlertWhoseEditorIsOpenIsNotKept() {
    Fixture f;
    f.open(kTea);
    connect(&f.alerts, &AlertWindows::remindAgainRequested, this,
            [&] { QVERIFY(f.alerts.states().empty()); });
    QVERIFY(f.alerts.remindAgain(0));
  }
};

QTEST_MAIN(AlertsTogetherTest)
#include "alerts_together_test.moc"
