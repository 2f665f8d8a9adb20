#include "store/recent_reminders.h"
#include "store/reminder_queue.h"
#include "store/text_cut.h"

#include <QRegularExpression>
#include <QTest>

using namespace tockwise;

namespace {

constexpr Date kNow{790000000};

Reminder reminderNamed(const QString& text) {
  Reminder reminder;
  reminder.reminderQueue = kNow.plusSeconds(3600);
  reminder.reminderDateTimeCreated = kNow;
  reminder.reminderDateTimeModified = kNow;
  reminder.reminderUUID = UUIDString();
  reminder.reminderDescriptions = text;
  return reminder;
}

QStringList texts(const ReminderQueue& queue) {
  QStringList result;
  for (const QString& text : queue->reminderDescriptions.values())
    result += text;
  return result;
}

} // namespace

class ReminderQueueTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aUUIDIsUpperCaseInGroups() {
    static const QRegularExpression form(
        QStringLiteral("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
    QVERIFY(form.match(UUIDString()).hasMatch());
    QVERIFY(UUIDString() != UUIDString());
  }

  void appendingExtendsEveryColumn() {
    ReminderQueue queue;
    queue.append(reminderNamed(QStringLiteral("Tea")));
    queue.forEachColumn([](const auto& column) { QCOMPARE(column.size(), 1); });
    QCOMPARE(queue.reminder(0)->reminderTypes, QStringLiteral("regular"));
    QVERIFY(isDistantPast(queue.reminder(0)->reminderDateTimeFired));
  }

  void anIndexBeyondTheEndIsAReportedFailure() {
    ReminderQueue queue;
    queue.append(reminderNamed(QStringLiteral("Tea")));
    const quint64 revision = queue.revision();
    QVERIFY(!queue.reminder(1));
    QVERIFY(!queue.set<&Columns::reminderRecent>(1, 5));
    QVERIFY(!queue.set<&Columns::reminderRecent>(-1, 5));
    QVERIFY(!queue.remove(1));
    QVERIFY(!queue->reminderQueue.at(7));
    QCOMPARE(queue->reminderQueue.at(7).error().kind, Error::Kind::OutOfRange);
    QCOMPARE(queue.revision(), revision);
    QCOMPARE(queue.count(), 1);
  }

  void syncArraysPadsAndTrimsToTheDescriptions() {
    Columns columns;
    using Q = ReminderQueue;
    Q::valuesOf(columns.reminderDescriptions) = {QStringLiteral("a"), QStringLiteral("b"),
                                                 QStringLiteral("c")};
    Q::valuesOf(columns.reminderUUID) = {QStringLiteral("U1")};
    Q::valuesOf(columns.reminderRecent) = {1, 2, 3, 4, 5};
    Q::valuesOf(columns.reminderQueue) = {kNow};
    ReminderQueue queue;
    queue.setColumns(std::move(columns));
    queue.syncArrays({kNow, true, false});

    QCOMPARE(queue->reminderUUID.size(), 3);
    QCOMPARE(queue->reminderUUID.values()[0], QStringLiteral("U1"));
    QVERIFY(queue->reminderUUID.values()[1] != queue->reminderUUID.values()[2]);
    QCOMPARE(queue->reminderRecent.values(), (std::vector<qint64>{1, 2, 3}));
    QCOMPARE(queue->reminderDateTimeCreated.values(), (std::vector<Date>(3, kNow)));
    QCOMPARE(queue->reminderDateTimeFired.values(), (std::vector<Date>(3, kDistantPast)));
    QCOMPARE(queue->reminderTypes.values().back(), QStringLiteral("regular"));
    QCOMPARE(queue->reminderSendEmail.values(), (std::vector<Flag>(3, true)));
    QCOMPARE(queue->reminderSendSMS.values(), (std::vector<Flag>(3, false)));
    QCOMPARE(queue->importedUIDs.size(), 3);
    QCOMPARE(queue->reminderQueue.size(), 1); // left alone on purpose

    queue.syncImportedUIDs();
    QCOMPARE(queue->importedUIDs.size(), 1);
  }

  void aLongerUUIDColumnLosesItsTail() {
    Columns columns;
    ReminderQueue::valuesOf(columns.reminderDescriptions) = {QStringLiteral("a")};
    ReminderQueue::valuesOf(columns.reminderUUID) = {QStringLiteral("U1"), QStringLiteral("U2")};
    ReminderQueue queue;
    queue.setColumns(std::move(columns));
    queue.syncArrays({kNow, false, false});
    QCOMPARE(queue->reminderUUID.values(), (std::vector<QString>{QStringLiteral("U1")}));
  }

  void anEditKeepsIdentityAndHistory() {
    ReminderQueue queue;
    Reminder before = reminderNamed(QStringLiteral("Tea"));
    before.reminderRecent = 4;
    before.reminderTypes = QStringLiteral("old");
    before.importedUIDs = QStringLiteral("event");
    before.reminderDateTimeFired = kNow.plusSeconds(-60);
    queue.append(before);

    Reminder edited = reminderNamed(QStringLiteral("Coffee"));
    edited.reminderDateTimeCreated = kNow.plusSeconds(10);
    edited.reminderDateTimeModified = kNow.plusSeconds(10);
    edited.reminderIntervals = {0, 1, 0, 0};
    QVERIFY(queue.replace(0, edited));

    const Reminder after = *queue.reminder(0);
    QCOMPARE(after.reminderDescriptions, QStringLiteral("Coffee"));
    QCOMPARE(after.reminderDateTimeModified, kNow.plusSeconds(10));
    QCOMPARE(after.reminderTypes, QStringLiteral("regular"));
    QCOMPARE(after.reminderIntervals, (Interval{0, 1, 0, 0}));
    QCOMPARE(after.reminderUUID, before.reminderUUID);
    QCOMPARE(after.reminderDateTimeCreated, before.reminderDateTimeCreated);
    QCOMPARE(after.reminderDateTimeFired, before.reminderDateTimeFired);
    QCOMPARE(after.reminderRecent, 4);
    QCOMPARE(after.importedUIDs, QStringLiteral("event"));
  }

  void removingTakesTheElementFromEveryColumn() {
    ReminderQueue queue;
    for (const char16_t* name : {u"a", u"b", u"c"})
      queue.append(reminderNamed(QString::fromUtf16(name)));
    QVERIFY(queue.remove(1));
    QCOMPARE(texts(queue), (QStringList{QStringLiteral("a"), QStringLiteral("c")}));
    queue.forEachColumn([](const auto& column) { QCOMPARE(column.size(), 2); });
  }

  void permutingMovesWholeReminders() {
    ReminderQueue queue;
    for (const char16_t* name : {u"a", u"b", u"c"})
      queue.append(reminderNamed(QString::fromUtf16(name)));
    const Reminder last = *queue.reminder(2);
    QVERIFY(queue.permute({2, 0, 1}));
    QCOMPARE(texts(queue),
             (QStringList{QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(*queue.reminder(0), last);
  }

  void permutingAShorterColumnChangesNothing() {
    Columns columns;
    using Q = ReminderQueue;
    Q::valuesOf(columns.reminderQueue) = {kNow, kNow.plusSeconds(1)};
    Q::valuesOf(columns.reminderDescriptions) = {QStringLiteral("a")};
    ReminderQueue queue;
    queue.setColumns(std::move(columns));
    QVERIFY(!queue.permute({1, 0}));
    QCOMPARE(queue->reminderQueue.values().front(), kNow);
  }

  void settingAnEqualValueIsNoChange() {
    ReminderQueue queue;
    queue.append(reminderNamed(QStringLiteral("Tea")));
    const quint64 revision = queue.revision();
    QVERIFY(queue.set<&Columns::reminderRecent>(0, qint64(0)));
    QCOMPARE(queue.revision(), revision);
    QVERIFY(queue.set<&Columns::reminderRecent>(0, qint64(1)));
    QVERIFY(queue.revision() != revision);
  }

  void cuttingKeepsSurrogatePairsWhole() {
    QCOMPARE(cutText(QString(50, u'x'), 50), QString(50, u'x'));
    QCOMPARE(cutText(QString(51, u'x'), 50), QString(50, u'x') + QStringLiteral("..."));
    const QString text = QString(39, u'x') + QStringLiteral("\U0001F600yy");
    QCOMPARE(cutText(text, 40), QString(39, u'x') + QStringLiteral("..."));
  }

  void theEleventhRecentReminderDropsTheOldest() {
    RecentReminders recent;
    for (int i = 1; i <= 11; ++i)
      recent.append(QStringLiteral("text %1").arg(i));
    QCOMPARE(recent.entries().size(), size_t(10));
    QCOMPARE(recent.entries().front().fullDescription, QStringLiteral("text 2"));
  }

  void aRecentTextIsCutAfterFortyCharacters() {
    RecentReminders recent;
    recent.append(QString(40, u'a'));
    recent.append(QString(41, u'b'));
    QCOMPARE(recent.entries()[0].description, QString(40, u'a'));
    QCOMPARE(recent.entries()[1].description, QString(40, u'b') + QStringLiteral("..."));
    QCOMPARE(recent.entries()[1].fullDescription, QString(41, u'b'));
  }

  void recentRemindersSurviveTheirStoredForm() {
    RecentReminders recent;
    recent.append(QStringLiteral("Tea"));
    Value::Array stored = *recent.stored().get<Value::Array>();
    stored.push_back(QStringLiteral("not a record"));
    RecentReminders again;
    QCOMPARE(again.setStored(stored), 1);
    QCOMPARE(again.entries(), recent.entries());
  }
};

QTEST_GUILESS_MAIN(ReminderQueueTest)
#include "reminder_queue_test.moc"
