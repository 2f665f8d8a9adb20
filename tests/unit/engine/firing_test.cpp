#include "engine/firing.h"
#include "engine/repeat_rules.h"
#include "support/fakes.h"
#include "support/log_lines.h"

#include <QTest>

#include <memory>

using namespace tockwise;

namespace {

const Calendar& here() {
  return Calendar::current();
}

Date at(int year, int month, int day, int hour = 9, int minute = 0, int second = 0) {
  return here().dateWithYear(year, month, day, hour, minute, second);
}

struct Fixture {
  ReminderQueue queue;
  MemorySettings settings;
  FakeClock clock{at(2025, 3, 4, 9, 5)}; // a Tuesday
  RecordingFiringActions actions;
  Firing firing{queue, settings, clock, actions};

  Reminder reminder(const QString& text = QStringLiteral("Tea")) const {
    Reminder row;
    row.reminderQueue = clock.now();
    row.reminderUUID = UUIDString();
    row.reminderDescriptions = text;
    return row;
  }
  void set(const char16_t* key, Value value) {
    settings.setValue(QString::fromUtf16(key), std::move(value));
  }
  void sendAllMail() {
    set(u"sendEmail", true);
    set(u"sendSMS", true);
  }
};

} // namespace

class FiringTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() { f = std::make_unique<Fixture>(); }

  void firingCountsAndNotesTheTime() {
    f->queue.append(f->reminder());
    QVERIFY(f->firing.doReminder(0));
    const Reminder after = *f->queue.reminder(0);
    QCOMPARE(after.reminderRecent, 1);
    QCOMPARE(after.reminderDateTimeFired, f->clock.now());
    QCOMPARE(after.reminderQueue, f->clock.now());
    QCOMPARE(f->actions.calls, (QStringList{QStringLiteral("task"), QStringLiteral("alert")}));
  }

  void theAlertCarriesTheRecord() {
    Reminder row = f->reminder();
    row.reminderRTFs = "rich";
    row.reminderTypes = QStringLiteral("old");
    row.reminderSendEmail = true;
    row.reminderIntervals = {0, 1, 0, 0};
    f->queue.append(row);
    QVERIFY(f->firing.doReminder(0));
    const AlertRequest expected{
        row.reminderDescriptions, row.reminderRTFs, f->clock.now(), true, false, true,
        row.reminderTypes,        row.reminderUUID};
    QCOMPARE(f->actions.alerts.size(), size_t(1));
    QVERIFY(f->actions.alerts[0] == expected);
    QVERIFY(f->actions.emails.empty()); // the flag goes to the alert, the preference is off
  }

  void aOneTimeReminderThatHasFiredDoesNothing() {
    f->queue.append(f->reminder());
    QVERIFY(f->firing.doReminder(0));
    const quint64 revision = f->queue.revision();
    QVERIFY(!f->firing.doReminder(0));
    QCOMPARE(f->queue.revision(), revision);
    QCOMPARE(f->queue.count(), 1);
    QCOMPARE(f->actions.alerts.size(), size_t(1));
  }

  void aDailyReminderMissedForDaysFiresOnceAndMovesPastNow() {
    Reminder row = f->reminder();
    row.reminderQueue = at(2025, 3, 1, 8, 5);
    row.reminderIntervals = {0, 1, 0, 0};
    f->queue.append(row);
    QVERIFY(f->firing.doReminder(0));
    QCOMPARE(f->queue.reminder(0)->reminderQueue, at(2025, 3, 5, 8, 5));
    QCOMPARE(f->queue.reminder(0)->reminderRecent, 1);
    QCOMPARE(f->actions.alerts.size(), size_t(1));
    QCOMPARE(f->actions.alerts[0].date, at(2025, 3, 1, 8, 5));
    QVERIFY(f->actions.alerts[0].rescheduled);
  }

  void aRefusedRepeatingReminderIsMovedOnAndNothingElse() {
    f->sendAllMail();
    Reminder row = f->reminder();
    row.reminderIntervals = {0, 1, 0, 0};
    row.reminderExtras.days.fill(false);
    row.reminderSendEmail = row.reminderSendSMS = true;
    f->queue.append(row);
    QVERIFY(f->firing.doReminder(0));
    QCOMPARE(f->queue.reminder(0)->reminderQueue, at(2025, 3, 5, 9, 5));
    QCOMPARE(f->queue.reminder(0)->reminderRecent, 0);
    QVERIFY(isDistantPast(f->queue.reminder(0)->reminderDateTimeFired));
    QCOMPARE(f->actions.calls, QStringList());
  }

  void aRefusedOneTimeReminderIsLeftAlone() {
    Reminder row = f->reminder();
    row.reminderExtras.days[2] = false;
    f->queue.append(row);
    const quint64 revision = f->queue.revision();
    QVERIFY(!f->firing.doReminder(0));
    QCOMPARE(f->queue.revision(), revision);
    f->clock.set(at(2025, 3, 5, 0, 0));
    QVERIFY(f->firing.doReminder(0));
  }

  void mailNeedsThePreferenceAndTheReminder() {
    for (const bool preference : {false, true}) {
      for (const bool flag : {false, true}) {
        init();
        f->set(u"sendEmail", preference);
        f->set(u"sendSMS", preference);
        Reminder row = f->reminder();
        row.reminderSendEmail = row.reminderSendSMS = flag;
        f->queue.append(row);
        QVERIFY(f->firing.doReminder(0));
        QCOMPARE(f->actions.emails.size(), size_t(preference && flag));
        QCOMPARE(f->actions.texts.size(), size_t(preference && flag));
      }
    }
  }

  void theMailTellsTheFireDateBeforeRescheduling() {
    f->sendAllMail();
    Reminder row = f->reminder();
    row.reminderSendEmail = row.reminderSendSMS = true;
    row.reminderIntervals = {0, 1, 0, 0};
    row.reminderOffsets = {1, 0, 30};
    f->queue.append(row);
    QVERIFY(f->firing.doReminder(0));
    QCOMPARE(f->actions.emails[0].subject, QStringLiteral("Reminder! Tea"));
    QCOMPARE(f->actions.emails[0].body, QStringLiteral("Tue 3/4/2025 09:05 AM\n \nTea"));
    QCOMPARE(f->actions.texts[0].subject, QStringLiteral("Reminder!"));
    QCOMPARE(f->actions.texts[0].body, QStringLiteral("Tue 3/4/2025 09:05 AM\nTea"));
    QCOMPARE(f->actions.calls, QStringLiteral("task email sms alert").split(u' '));
  }

  void longTextsAreCut_data() {
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("subject");
    QTest::addColumn<int>("SMSLength");
    const QString prefix = QStringLiteral("Reminder! ");
    QTest::newRow("30") << 30 << prefix + QString(30, u'x') << 30;
    QTest::newRow("31") << 31 << prefix + QString(30, u'x') + QStringLiteral("...") << 31;
    QTest::newRow("140") << 140 << prefix + QString(30, u'x') + QStringLiteral("...") << 140;
    QTest::newRow("141") << 141 << prefix + QString(30, u'x') + QStringLiteral("...") << 140;
  }
  void longTextsAreCut() {
    QFETCH(int, length);
    QFETCH(QString, subject);
    QFETCH(int, SMSLength);
    f->sendAllMail();
    Reminder row = f->reminder(QString(length, u'x'));
    row.reminderSendEmail = row.reminderSendSMS = true;
    f->queue.append(row);
    QVERIFY(f->firing.doReminder(0));
    QCOMPARE(f->actions.emails[0].subject, subject);
    QVERIFY(f->actions.emails[0].body.endsWith(QStringLiteral("\n \n") + QString(length, u'x')));
    QCOMPARE(f->actions.texts[0].body,
             QStringLiteral("Tue 3/4/2025 09:05 AM\n") + QString(SMSLength, u'x'));
  }

  void anHTMLMailIsTriedFirstWhereItIsChosen() {
    f->sendAllMail();
    f->set(u"contentTypeIndex", 1);
    Reminder row = f->reminder();
    row.reminderSendEmail = true;
    f->queue.append(row);
    QVERIFY(f->firing.doReminder(0));
    QCOMPARE(f->actions.calls, QStringLiteral("task html alert").split(u' '));
  }

  void aFailedHTMLMailIsFollowedByOnePlainOne() {
    f->sendAllMail();
    f->set(u"contentTypeIndex", 1);
    f->actions.htmlSucceeds = false;
    Reminder row = f->reminder();
    row.reminderSendEmail = true;
    f->queue.append(row);
    QVERIFY(f->firing.doReminder(0));
    QCOMPARE(f->actions.calls, QStringLiteral("task html email alert").split(u' '));
    QCOMPARE(f->actions.emails[0].subject, f->actions.htmlSubjects[0]);
  }

  void withNoReminderOnOnlyTheAlertIsLeftOut() {
    f->sendAllMail();
    f->set(u"noReminder", true);
    Reminder row = f->reminder();
    row.reminderSendEmail = row.reminderSendSMS = true;
    row.reminderTasks = {false, Task::WebAddress, QStringLiteral("https://example.org")};
    f->queue.append(row);
    QVERIFY(f->firing.doReminder(0));
    QCOMPARE(f->actions.calls, QStringLiteral("task email sms").split(u' '));
    QVERIFY(f->actions.tasks[0] == row.reminderTasks);
  }

  void anIndexThatTheQueueDoesNotHoldIsLogged() {
    const LogLines log;
    QVERIFY(!f->firing.doReminder(0));
    f->queue.append(f->reminder());
    QVERIFY(!f->firing.doReminder(1));
    QVERIFY(!f->firing.doReminder(-1));
    QCOMPARE(log.lines().size(), 3);
    QVERIFY(log.lines()[0].contains(u"index 0 beyond the end"));
    QCOMPARE(f->actions.calls, QStringList());
  }

  void aShortColumnEndsTheFiringBeforeAnythingChanges() {
    Columns columns;
    ReminderQueue::valuesOf(columns.reminderQueue) = {f->clock.now()};
    ReminderQueue::valuesOf(columns.reminderDescriptions) = {QStringLiteral("Tea")};
    f->queue.setColumns(std::move(columns));
    const quint64 revision = f->queue.revision();
    const LogLines log;
    QVERIFY(!f->firing.doReminder(0));
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(f->queue.revision(), revision);
  }

  void aReminderRemovedByItsTaskStillAlerts() {
    RecordingFiringActions actions;
    actions.onTask = [this] { f->queue.clear(); };
    Firing firing(f->queue, f->settings, f->clock, actions);
    f->queue.append(f->reminder());
    QVERIFY(firing.doReminder(0));
    QVERIFY(f->queue.isEmpty());
    QCOMPARE(actions.alerts.size(), size_t(1));
    QCOMPARE(actions.alerts[0].reminder, QStringLiteral("Tea"));
  }

 private:
  std::unique_ptr<Fixture> f;
};

QTEST_GUILESS_MAIN(FiringTest)
#include "firing_test.moc"
