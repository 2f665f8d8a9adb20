#include "editor/reminder_summaries.h"

#include <QTest>

using namespace tockwise;

class ReminderSummariesTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void repeatRulesAreSummedUp() {
    QCOMPARE(repeatSummary(kBlankInterval, kBlankExtra, kBlankOffset),
             QStringLiteral("Does not repeat"));
    Extra mondays;
    mondays.days = {false, true, false, false, false, false, false};
    QCOMPARE(repeatSummary(kBlankInterval, mondays, kBlankOffset),
             QStringLiteral("Does not repeat, only on Mon"));
    QCOMPARE(repeatSummary({0, 7, 0, 0}, mondays, {0, 1, 0}),
             QStringLiteral("Repeats every week on Mon, 1 hour before"));
    QCOMPARE(repeatSummary({0, 2, 0, 0}, kBlankExtra, kBlankOffset),
             QStringLiteral("Repeats every 2 days"));
  }

  void tasksAreSummedUp_data() {
    QTest::addColumn<qint64>("type");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("summary");
    const auto row = [](qint64 type, const char* path, const char* summary) {
      QTest::newRow(summary) << type << QString::fromLatin1(path) << QString::fromLatin1(summary);
    };
    row(Task::WebAddress, "example.org/tea", "Web Address: example.org/tea");
    row(Task::Media, "/m/a.mp3", "Media File: a.mp3");
    row(Task::Document, "/d/a b.odt", "Document: a b.odt");
    row(Task::Application, "org.example.App", "Application: org.example.App");
    row(Task::Script, "/s/a\nb.sh", "Script: a b.sh");
    row(Task::Document, "/", "Document: /");
    row(17, "x", "A task that this version does not know");
  }

  void tasksAreSummedUp() {
    QFETCH(qint64, type);
    QFETCH(QString, path);
    QTEST(taskSummary(Task{false, type, path}), "summary");
  }

  void noTaskIsNoTask() { QCOMPARE(taskSummary(Task{}), QStringLiteral("No task")); }
};

QTEST_APPLESS_MAIN(ReminderSummariesTest)
#include "reminder_summaries_test.moc"
