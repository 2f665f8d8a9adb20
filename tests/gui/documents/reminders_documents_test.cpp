// Saving and opening reminders: panels, question, and what becomes of the queue.
#include "reminders_documents_fixture.h"

#include <QSignalSpy>

using namespace tockwise;

class RemindersDocumentsTest : public RemindersDocumentsFixture {
  Q_OBJECT
 private Q_SLOTS:
  // Saving.

  void savingWritesWhereTheUserChose() {
    add(reminder("Tea", 1));
    m_documents->selItemSaveReminders();
    QCOMPARE(m_panels->proposed, QStringList{text("Untitled")});
    m_panels->save(path("mine.tockwise"));
    QCOMPARE(m_log->take(), QStringList{text("Saved '%1'").arg(path("mine.tockwise"))});
    QCOMPARE(readDocument(path("mine.tockwise")).value(), archivedDataDictionary(m_store->queue()));
    QVERIFY(m_prompter.asked.empty() && m_prompter.told.empty());
  }

  void whatIsSavedIsTheQueueAtTheMomentOfTheChoice() {
    m_documents->selItemSaveReminders();
    add(reminder("Added while the panel was open", 1));
    m_panels->save(path("mine.tockwise"));
    const auto saved =
        unarchivedDataDictionary(readDocument(path("mine.tockwise")).value(), m_store->pads());
    QVERIFY(saved.ok());
    QCOMPARE(saved->columns.reminderQueue.size(), 1);
  }

  void theSuffixIsAddedWhenItIsMissing_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("written");
    QTest::newRow("none") << text("mine") << text("mine.tockwise");
    QTest::newRow("another") << text("mine.plist") << text("mine.plist.tockwise");
    QTest::newRow("there") << text("mine.tockwise") << text("mine.tockwise");
    QTest::newRow("in capitals") << text("mine.TOCKWISE") << text("mine.TOCKWISE");
    QTest::newRow("without a dot") << text("tockwise") << text("tockwise.tockwise");
  }
  void theSuffixIsAddedWhenItIsMissing() {
    QFETCH(QString, name);
    QFETCH(QString, written);
    m_documents->selItemSaveReminders();
    m_panels->save(m_environment->path(name));
    QVERIFY(QFile::exists(m_environment->path(written)));
    QVERIFY(m_prompter.asked.empty());
  }

  void aFileWhoseNameTheSuffixMakesIsAskedAbout() {
    file("mine.tockwise", "precious");
    m_prompter.answers = {Cancel, Ok};
    m_documents->selItemSaveReminders();
    m_panels->save(path("mine"));
    QCOMPARE(m_prompter.asked.size(), size_t(1));
    QVERIFY(m_prompter.asked.front().title.contains(text("\"mine.tockwise\" already exists")));
    QCOMPARE(m_prompter.asked.front().defaultButton, Cancel);
    QCOMPARE(readDocument(path("mine.tockwise")).value(), QByteArray("precious"));
    QCOMPARE(m_alerts, (QStringList{text("hide"), text("ask"), text("show")}));
    QCOMPARE(m_panels->proposed.back(), path("mine")); // the panel is back
    m_panels->save(path("mine"));
    QVERIFY(readDocument(path("mine.tockwise")).value() != QByteArray("precious"));
  }

  void aFileThatTheUserNamedInFullWasAskedAboutByThePanel() {
    file("mine.tockwise", "precious");
    m_documents->selItemSaveReminders();
    m_panels->save(path("mine.tockwise"));
    QVERIFY(m_prompter.asked.empty());
    QVERIFY(readDocument(path("mine.tockwise")).value() != QByteArray("precious"));
  }

  void aFailedWriteIsLoggedInOneLineAndShownNowhere() {
    m_documents->selItemSaveReminders();
    m_panels->save(path("no such folder/mine\nSaved 'x'"));
    const QStringList logged = m_log->take();
    QCOMPARE(logged.size(), 1);
    QVERIFY(logged.front().startsWith(text("Cannot save /")));
    QVERIFY(!logged.front().contains(u'\n'));
    QVERIFY(m_prompter.asked.empty() && m_prompter.told.empty());
    QCOMPARE(m_panels->proposed.size(), 1);
  }

  // Opening.

  void whatWasSavedOpensAsItWas() {
    add(reminder("Tea", 800000000.25));
    add(reminder("Coffee \u2615\n\u05e9", kDistantFuture.seconds));
    add(reminder("", -1));
    std::vector<Reminder> before;
    for (qsizetype i = 0; i < 3; ++i)
      before.push_back(m_store->queue().reminder(i).value());
    m_documents->selItemSaveReminders();
    m_panels->save(path("mine.tockwise"));
    m_store->clearQueue();
    add(reminder("Something else", 5));
    QSignalSpy changed(m_documents.get(), &RemindersDocuments::changed);
    m_prompter.answers = {Ok};
    m_documents->selItemOpenReminders();
    m_panels->open(path("mine.tockwise"));
    QCOMPARE(m_store->queue().count(), 3);
    for (qsizetype i = 0; i < 3; ++i)
      QVERIFY(m_store->queue().reminder(i).value() == before[size_t(i)]);
    QCOMPARE(changed.size(), 1);
    QVERIFY(!reviewWindow());
  }

  void anEmptyDocumentEmptiesTheQueue() {
    const QString empty = document("empty.tockwise", {});
    add(reminder("Tea", 1));
    m_prompter.answers = {Ok};
    QVERIFY(m_documents->askOpenFile(empty));
    QVERIFY(m_store->queue().isEmpty());
  }

  void theQuestionIsAskedWithTheAlertsOutOfTheWay() {
    m_prompter.answers = {Cancel};
    m_documents->askOpenFile(text("/some/where/100% mine.tockwise"));
    QCOMPARE(m_prompter.asked.size(), size_t(1));
    const Question& question = m_prompter.asked.front();
    QCOMPARE(question.title,
             text("Are you sure you want to replace the current set of reminders with the contents "
                  "of the file \"100% mine.tockwise\"?"));
    QCOMPARE(question.message, text("This operation can not be undone unless you save the current "
                                    "set of reminders first."));
    QCOMPARE(question.buttons, (QStringList{text("OK"), text("Cancel")}));
    QCOMPARE(question.defaultButton, Ok);
    QCOMPARE(question.escapeButton, Cancel);
    QCOMPARE(m_alerts, (QStringList{text("hide"), text("ask"), text("show")}));
  }

  void cancellingChangesNothingAndTheDesktopIsToldThatItWorked() {
    const QString other = document("other.tockwise", {reminder("Coffee", 1)});
    add(reminder("Tea", 1));
    QSignalSpy changed(m_documents.get(), &RemindersDocuments::changed);
    m_prompter.answers = {Cancel, Cancel};
    QVERIFY(m_documents->openFile(other));
    QVERIFY(!m_documents->askOpenFile(other));
    QCOMPARE(texts(), QStringList{text("Tea")});
    QCOMPARE(changed.size(), 0);
    QCOMPARE(m_log->take(), QStringList());
  }

  void whatCannotBeReadChangesNothing_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("not there") << text("nothing.tockwise") << QByteArray();
    QTest::newRow("empty") << text("a.tockwise") << QByteArray("");
    QTest::newRow("no archive") << text("a.tockwise") << QByteArray("Dear diary,\n");
    QTest::newRow("half an archive")
        << text("a.tockwise") << QByteArray("bplist00\xd1\x01\x02", 11);
    QTest::newRow("no dictionary")
        << text("a.tockwise")
        << QByteArray("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict/></plist>");
  }
  void whatCannotBeReadChangesNothing() {
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    if (!bytes.isNull())
      file(name.toLatin1().constData(), bytes);
    add(reminder("Tea", 1));
    QSignalSpy changed(m_documents.get(), &RemindersDocuments::changed);
    m_prompter.answers = {Ok, Ok};
    m_log->take();
    QVERIFY(!m_documents->askOpenFile(m_environment->path(name)));
    QCOMPARE(texts(), QStringList{text("Tea")});
    QCOMPARE(changed.size(), 0);
    const QStringList logged = m_log->take();
    QCOMPARE(logged.size(), 1);
    QVERIFY2(logged.front().startsWith(text("Cannot open /")), qPrintable(logged.front()));
    QCOMPARE(m_prompter.asked.size(), size_t(1));
    QVERIFY(m_prompter.told.empty());
    QCOMPARE(m_alerts.count(text("hide")), m_alerts.count(text("show")));
    QVERIFY(m_documents->openFile(m_environment->path(name)));
  }

  void filesThatComeMeanwhileAreAskedAboutOneAfterAnother() {
    const QString first = document("first.tockwise", {reminder("First", 1)});
    const QString second = document("second.tockwise", {reminder("Second", 1)});
    const QString third = document("third.tockwise", {reminder("Third", 1)});
    m_prompter.answers = {Ok, Cancel, Ok};
    int depth = 0;
    m_prompter.meanwhile = [&] {
      QCOMPARE(++depth, 1);
      if (m_prompter.asked.size() == 1) {
        QVERIFY(m_documents->openFile(second));
        QVERIFY(m_documents->openFile(third));
        QVERIFY(m_documents->openFile(second)); // asked for twice, by a double click, say
        QVERIFY(m_documents->openFile(first));
        QVERIFY(m_store->queue().isEmpty());
      }
      --depth;
    };
    QVERIFY(!m_documents->isAsking());
    QVERIFY(m_documents->askOpenFile(first));
    QCOMPARE(texts(), QStringList{text("First")}); // its answer is not kept back by the others'
    QTRY_COMPARE(m_prompter.asked.size(), size_t(3));
    QVERIFY(m_prompter.asked[1].title.contains(text("second.tockwise")));
    QVERIFY(m_prompter.asked[2].title.contains(text("third.tockwise")));
    QCOMPARE(texts(), QStringList{text("Third")});
  }

  void theQueueMayChangeWhileTheQuestionIsOpen() {
    const QString other = document("other.tockwise", {reminder("Coffee", 1)});
    m_prompter.answers = {Ok};
    m_prompter.meanwhile = [&] {
      m_store->clearQueue();
      add(reminder("a", 1));
      add(reminder("b", 1));
    };
    QVERIFY(m_documents->askOpenFile(other));
    QCOMPARE(texts(), QStringList{text("Coffee")});
  }

  void savingAndOpeningMayBeAskedForWhileTheQuestionIsOpen() {
    const QString other = document("other.tockwise", {reminder("Coffee", 1)});
    add(reminder("Tea", 1));
    m_prompter.answers = {Ok};
    m_prompter.meanwhile = [&] {
      m_documents->selItemSaveReminders(); // what the question recommends
      m_panels->save(path("before.tockwise"));
      m_documents->selItemOpenReminders();
    };
    QVERIFY(m_documents->askOpenFile(other));
    QCOMPARE(m_panels->opened, 1);
    QVERIFY(QFile::exists(path("before.tockwise")));
    m_prompter.meanwhile = {};
    m_prompter.answers = {Ok};
    m_panels->open(path("before.tockwise"));
    QCOMPARE(texts(), QStringList{text("Tea")});
  }
};

QTEST_MAIN(RemindersDocumentsTest)
#include "reminders_documents_test.moc"
