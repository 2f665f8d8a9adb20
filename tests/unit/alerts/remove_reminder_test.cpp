#include "alerts/remove_reminder.h"
#include "support/fakes.h"
#include "support/log_lines.h"

#include <QTest>
#include <QThread>

#include <memory>

using namespace tockwise;

namespace {

constexpr Date kNow{790000000};

struct Fixture {
  ReminderQueue queue;
  FakePrompter prompter;
  QStringList removed;
  RemoveReminder remover{queue, prompter, [this](const QString& uuid) -> Result<void> {
                           const auto index = queue.indexOf(uuid);
                           if (!index)
                             return Error{Error::Kind::NotFound, QStringLiteral("it is gone")};
                           removed += uuid;
                           return queue.remove(*index);
                         }};

  QString add(const QString& text) {
    Reminder reminder;
    reminder.reminderQueue = kNow;
    reminder.reminderUUID = UUIDString();
    reminder.reminderDescriptions = text;
    queue.append(reminder);
    return reminder.reminderUUID;
  }
};

} // namespace

class RemoveReminderTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void initTestCase() { enableLogLines(); }

  void theQuestionHasItsTextsAndButtons() {
    Fixture f;
    f.add(QStringLiteral("Tea"));
    f.remover.removeReminder(0);
    QCOMPARE(f.prompter.asked.size(), size_t(1));
    const Question& question = f.prompter.asked.front();
    QCOMPARE(question.title, QStringLiteral("Are you sure you want to delete this reminder?"));
    QCOMPARE(question.message, QStringLiteral("Tea"));
    QCOMPARE(question.buttons, (QStringList{QStringLiteral("Yes"), QStringLiteral("No")}));
    QCOMPARE(question.defaultButton, 0);
    QCOMPARE(question.escapeButton, 1);
  }

  void aTextOfFiftyCharactersIsShownWholeALongerOneCut() {
    Fixture f;
    f.prompter.answers = {1, 1};
    f.add(QString(50, u'x'));
    f.add(QString(51, u'y'));
    f.remover.removeReminder(0);
    f.remover.removeReminder(1);
    QCOMPARE(f.prompter.asked[0].message, QString(50, u'x'));
    QCOMPARE(f.prompter.asked[1].message, QString(50, u'y') + QStringLiteral("..."));
  }

  void noLeavesEverything() {
    Fixture f;
    f.add(QStringLiteral("Tea"));
    const quint64 revision = f.queue.revision();
    f.prompter.answers = {1};
    f.remover.removeReminder(0);
    QCOMPARE(f.queue.revision(), revision);
  }

  void yesRemovesTheOneAskedFor() {
    Fixture f;
    const QString first = f.add(QStringLiteral("first"));
    const QString second = f.add(QStringLiteral("second"));
    f.remover.removeReminder(1);
    QCOMPARE(f.removed, QStringList{second});
    QCOMPARE(f.queue->reminderUUID.values(), std::vector<QString>{first});
  }

  void aQueueSortedWhileTheQuestionIsOpenLosesTheOneAskedFor() {
    Fixture f;
    const QString first = f.add(QStringLiteral("first"));
    const QString second = f.add(QStringLiteral("second"));
    f.prompter.meanwhile = [&] { QVERIFY(f.queue.permute({1, 0})); };
    f.remover.removeReminder(0);
    QCOMPARE(f.removed, QStringList{first});
    QCOMPARE(f.queue->reminderUUID.values(), std::vector<QString>{second});
  }

  void aReminderThatWentMeanwhileTakesNoOtherWithIt() {
    Fixture f;
    f.add(QStringLiteral("first"));
    const QString second = f.add(QStringLiteral("second"));
    f.prompter.meanwhile = [&] { QVERIFY(f.queue.remove(0)); };
    QTest::ignoreMessage(QtInfoMsg, "it is gone");
    f.remover.removeReminder(0);
    QCOMPARE(f.queue->reminderUUID.values(), std::vector<QString>{second});
  }

  void anIndexBeyondTheEndAsksNothing() {
    Fixture f;
    QTest::ignoreMessage(QtInfoMsg, "reminderDescriptions: index 0 beyond the end (0 elements)");
    f.remover.removeReminder(0);
    QVERIFY(f.prompter.asked.empty());
  }

  void anotherThreadWaitsForTheMainThread() {
    Fixture f;
    f.add(QStringLiteral("Tea"));
    QThread* askedOn = nullptr;
    f.prompter.meanwhile = [&] { askedOn = QThread::currentThread(); };
    const std::unique_ptr<QThread> thread(QThread::create([&] { f.remover.removeReminder(0); }));
    thread->start();
    QTRY_VERIFY(thread->isFinished());
    QCOMPARE(askedOn, QThread::currentThread());
    QVERIFY(f.queue.isEmpty());
  }
};

QTEST_GUILESS_MAIN(RemoveReminderTest)
#include "remove_reminder_test.moc"
