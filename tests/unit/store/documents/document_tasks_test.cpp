// What the tasks of a document are said to do.
#include "store/documents/document_tasks.h"

#include <QTest>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

} // namespace

class DocumentTasksTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aLineTellsWhatATaskDoes_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("line");
    QTest::newRow("address") << 0 << text("\"Tea\" opens the address x");
    QTest::newRow("media") << 1 << text("\"Tea\" plays x");
    QTest::newRow("document") << 2 << text("\"Tea\" opens x");
    QTest::newRow("application") << 3 << text("\"Tea\" starts the application x");
    QTest::newRow("script") << 4 << text("\"Tea\" runs the script x");
    QTest::newRow("unknown") << 77 << text("\"Tea\" has a task of an unknown kind: x");
  }
  void aLineTellsWhatATaskDoes() {
    QFETCH(int, type);
    QFETCH(QString, line);
    QCOMPARE(taskLine({0, text("Tea"), {}, {false, type, text("x")}}), line);
  }

  void aLineObeysNothingInItsTexts() {
    const QString line = taskLine({0,
                                   text("two\nlines\t\x1b[31mred %1\u202e"),
                                   {},
                                   {false, Task::Script, text("/bin/a\r\nb %1 %2")}});
    QCOMPARE(line, text("\"two lines ␛[31mred %1�\" runs the script /bin/a␍␊b %1 %2"));
  }

  void longTextsAreCut() {
    const QString line =
        taskLine({0, QString(49, u'a') + text("😀😀"), {}, {false, 4, QString(500, u'p')}});
    QCOMPARE(line, QStringLiteral("\"%1...\" runs the script %2...")
                       .arg(QString(49, u'a'), QString(200, u'p')));
  }

  void eachKindHasItsHeading_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("heading");
    QTest::addColumn<bool>("harmless");
    QTest::newRow("address") << 0 << text("Opens a web address") << true;
    QTest::newRow("media") << 1 << text("Plays a media file") << true;
    QTest::newRow("document") << 2 << text("Opens a document") << false;
    QTest::newRow("application") << 3 << text("Starts an application") << false;
    QTest::newRow("script") << 4 << text("Runs a script") << false;
    QTest::newRow("unknown") << 77 << text("Unknown kind 77") << false;
    QTest::newRow("negative") << -1 << text("Unknown kind -1") << false;
  }
  void eachKindHasItsHeading() {
    QFETCH(int, type);
    const Task task{false, type, text("x")};
    QTEST(taskKindText(task), "heading");
    QTEST(startsNothingHere(task), "harmless");
  }
};

QTEST_GUILESS_MAIN(DocumentTasksTest)
#include "document_tasks_test.moc"
