// Opening a document whose reminders have tasks: their review, and what becomes of the queue.
#include "reminders_documents_fixture.h"
#include "support/named_child.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTimer>

using namespace tockwise;

class DocumentsWithTasksTest : public RemindersDocumentsFixture {
  Q_OBJECT

  /// Runs the step once the review window has the keyboard, from the event loop.
  void whileReviewing(const std::function<void(TaskReviewWindow*)>& step) {
    auto* timer = new QTimer(m_documents.get());
    timer->setInterval(5);
    connect(timer, &QTimer::timeout, m_documents.get(), [step, timer] {
      TaskReviewWindow* review = reviewWindow();
      if (review && review->isActiveWindow()) { // else Alt and a letter go nowhere
        timer->stop();
        step(review);
      }
    });
    timer->start();
  }
  static void click(TaskReviewWindow* review, const char* button) {
    QTest::mouseClick(namedChild<QPushButton>(*review, button), Qt::LeftButton);
  }

 private Q_SLOTS:
  void tasksAreReviewedBeforeAnythingChanges() {
    const QString other = document(
        "other.tockwise",
        {reminder("Plain", 1), reminder("Web", 1, {false, Task::WebAddress, text("example.org")}),
         reminder("Script", 1, {false, Task::Script, text("/tmp/a.sh")})});
    add(reminder("Tea", 1));
    m_prompter.answers = {Ok};
    whileReviewing([&](TaskReviewWindow* review) {
      m_alerts += text("review");
      QCOMPARE(texts(), QStringList{text("Tea")});
      QCOMPARE(review->findChild<QTableView*>()->model()->rowCount(), 2);
      click(review, "keepButton");
    });
    QVERIFY(m_documents->askOpenFile(other));
    QCOMPARE(texts(), (QStringList{text("Plain"), text("Web"), text("Script")}));
    const auto& tasks = m_store->queue()->reminderTasks.values();
    QVERIFY(tasks[0].blank);
    QCOMPARE(tasks[1].path, text("example.org"));
    QVERIFY(tasks[2] == Task());
    QCOMPARE(m_alerts, (QStringList{text("hide"), text("ask"), text("review"), text("show")}));
  }

  void tasksAreReviewedAboveAWindowThatBlocksAllOthers() {
    const QString other = document(
        "other.tockwise", {reminder("Script", 1, {false, Task::Script, text("/tmp/a.sh")})});
    QDialog preview;
    preview.setWindowModality(Qt::ApplicationModal);
    preview.show();
    m_prompter.answers = {Ok};
    whileReviewing([](TaskReviewWindow* review) {
      QCOMPARE(QApplication::activeModalWidget(), review);
      click(review, "keepButton");
    });
    QVERIFY(m_documents->askOpenFile(other));
    QCOMPARE(QApplication::activeModalWidget(), &preview);
  }

  void aReviewWhoseOwnerGoesAwayIsCancelled() {
    const QString other = document(
        "other.tockwise", {reminder("Script", 1, {false, Task::Script, text("/tmp/a.sh")})});
    auto owner = std::make_unique<QDialog>();
    owner->setWindowModality(Qt::ApplicationModal);
    owner->show();
    m_prompter.answers = {Ok};
    whileReviewing([&](TaskReviewWindow*) { owner.reset(); });
    QVERIFY(!m_documents->askOpenFile(other));
    QVERIFY(m_store->queue().isEmpty());
  }

  void aScriptThatIsTickedIsKept() {
    const QString other = document(
        "other.tockwise", {reminder("Script", 1, {false, Task::Script, text("/tmp/a.sh")})});
    m_prompter.answers = {Ok};
    whileReviewing([](TaskReviewWindow* review) {
      QTest::keyClick(review->focusWidget(), Qt::Key_Space);
      QTest::keyClick(review, Qt::Key_O, Qt::AltModifier);
    });
    QVERIFY(m_documents->askOpenFile(other));
    const Task kept = m_store->queue()->reminderTasks.values().front();
    QCOMPARE(kept.type, qint64(Task::Script));
    QCOMPARE(kept.path, text("/tmp/a.sh"));
  }

  void openingWithoutTasksBlanksThemAll() {
    const QString other = document(
        "other.tockwise", {reminder("Web", 1, {false, Task::WebAddress, text("example.org")}),
                           reminder("Program", 1, {false, Task::Application, text("xterm")})});
    m_prompter.answers = {Ok};
    whileReviewing([](TaskReviewWindow* review) { click(review, "blankButton"); });
    QVERIFY(m_documents->askOpenFile(other));
    QCOMPARE(m_store->queue().count(), 2);
    for (const Task& task : m_store->queue()->reminderTasks.values())
      QVERIFY(task == Task());
  }

  void cancellingTheReviewChangesNothing() {
    const QString other = document(
        "other.tockwise", {reminder("Script", 1, {false, Task::Script, text("/tmp/a.sh")})});
    add(reminder("Tea", 1));
    QSignalSpy changed(m_documents.get(), &RemindersDocuments::changed);
    m_prompter.answers = {Ok};
    whileReviewing(
        [](TaskReviewWindow* review) { QTest::keyClick(review->focusWidget(), Qt::Key_Escape); });
    QVERIFY(!m_documents->askOpenFile(other));
    QCOMPARE(texts(), QStringList{text("Tea")});
    QCOMPARE(changed.size(), 0);
    QCOMPARE(m_alerts.back(), text("show"));
  }

  void aFileThatComesDuringTheReviewWaits() {
    const QString first = document(
        "first.tockwise", {reminder("Script", 1, {false, Task::Script, text("/tmp/a.sh")})});
    const QString second = document("second.tockwise", {reminder("Second", 1)});
    m_prompter.answers = {Ok, Ok};
    whileReviewing([&](TaskReviewWindow* review) {
      QVERIFY(m_documents->openFile(second));
      QCOMPARE(m_prompter.asked.size(), size_t(1));
      QVERIFY(review->isVisible());
      click(review, "blankButton");
    });
    QVERIFY(m_documents->askOpenFile(first));
    QTRY_COMPARE(texts(), QStringList{text("Second")});
  }

  void theEndOfTheProgramDuringTheReviewOpensNothing() {
    const QString other = document(
        "other.tockwise", {reminder("Script", 1, {false, Task::Script, text("/tmp/a.sh")})});
    add(reminder("Tea", 1));
    m_prompter.answers = {Ok};
    bool replaced = true;
    QTimer::singleShot(0, m_documents.get(), [&] {
      replaced = m_documents->askOpenFile(other);
      QCoreApplication::exit();
    });
    whileReviewing([](TaskReviewWindow*) { QCoreApplication::exit(); });
    QCoreApplication::exec();
    QVERIFY(!replaced);
    QCOMPARE(texts(), QStringList{text("Tea")});
  }
};

QTEST_MAIN(DocumentsWithTasksTest)
#include "documents_with_tasks_test.moc"
