#include "alerts/alert_hiding_prompter.h"
#include "alerts/alert_windows.h"
#include "support/fakes.h"

#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

using namespace tockwise;

namespace {

constexpr Date kNow{790000000};

class RecordingRemover final : public ReminderRemover {
 public:
  std::vector<qsizetype> indexes;
  std::function<void()> meanwhile;
  void removeReminder(qsizetype index) override {
    indexes.push_back(index);
    if (meanwhile)
      meanwhile();
  }
};

AlertRequest alertOf(const QString& text) {
  AlertRequest request;
  request.reminder = text;
  request.date = kNow;
  request.reminderType = QStringLiteral("regular");
  request.reminderUUID = QStringLiteral("UUID of ") + text;
  return request;
}

struct Fixture {
  Fixture() {
    questions.setAlerts(&alerts);
    alerts.setReminderRemover(&remover);
  }

  ReminderQueue queue;
  MemorySettings settings;
  FakeSoundPlayer player;
  AlertSounds sounds{settings, player, {}, AlertSounds::systemRandom()};
  FakePrompter* fake = new FakePrompter;
  FakePrompter& prompter = *fake;
  AlertHidingPrompter questions{std::unique_ptr<Prompter>(fake)};
  RecordingRemover remover;
  AlertWindows alerts{queue, sounds, questions};

  QString add(const QByteArray& RTFData) {
    Reminder reminder;
    reminder.reminderUUID = UUIDString();
    reminder.reminderRTFs = RTFData;
    queue.append(reminder);
    return reminder.reminderUUID;
  }
  qsizetype open(const QString& text, const QByteArray& RTFData = {}, bool rescheduled = false) {
    AlertRequest request = alertOf(text);
    request.RTFData = RTFData;
    request.rescheduled = rescheduled;
    return alerts.open(request);
  }
  QStringList texts() const {
    QStringList result;
    for (const AlertEntry& entry : alerts.entries())
      result += entry.text;
    return result;
  }
  QPushButton* button(qsizetype position, const char* name) {
    return alerts.window(position)->findChild<QPushButton*>(QString::fromLatin1(name));
  }
  int shown() const {
    int result = 0;
    for (const AlertEntry& entry : alerts.entries())
      result += entry.shown ? 1 : 0;
    return result;
  }
};

const QString kTea = QStringLiteral("Tea");
const QString kCake = QStringLiteral("Cake");
const QString kWalk = QStringLiteral("Walk");

} // namespace

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
    AlertRequest request;
    request.reminder = kTea;
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
