// The window in which the tasks of a document are reviewed, driven as a user drives it.
#include "documents/task_review_model.h"
#include "documents/task_review_window.h"
#include "support/named_child.h"
#include "support/test_environment.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include <memory>

using namespace tockwise;

namespace {

using Rows = std::vector<qsizetype>;

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

DocumentTask task(qsizetype row, qint64 type, const QString& path,
                  const QString& reminder = QStringLiteral("Tea")) {
  return {row, reminder, Date{800000000}, {false, type, path}};
}

/// One of each kind, at rows of the document with gaps.
std::vector<DocumentTask> oneOfEach() {
  return {task(0, Task::WebAddress, text("example.org")), task(2, Task::Media, text("/m/a.ogg")),
          task(3, Task::Document, text("/d/a.pdf")), task(5, Task::Application, text("xterm")),
          task(8, Task::Script, text("/s/a.sh"))};
}

} // namespace

class TaskReviewTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  std::unique_ptr<TaskReviewWindow> m_window;

  void open(std::vector<DocumentTask> tasks, const QString& name = text("mine.tockwise")) {
    m_window = std::make_unique<TaskReviewWindow>(name, std::move(tasks));
    m_window->bringToFront();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
  }
  template <typename T> T* find(const char* name) { return namedChild<T>(*m_window, name); }
  QTableView* table() { return find<QTableView>("taskTable"); }
  QString cell(int row, int column) {
    return table()->model()->index(row, column).data().toString();
  }
  QString wholePath() { return find<QPlainTextEdit>("pathView")->toPlainText(); }
  QString count() { return find<QLabel>("countLabel")->text(); }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(m_window->focusWidget(), key, modifiers);
  }
  void clickBox(int row) {
    const QRect place = table()->visualRect(table()->model()->index(row, 0));
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {},
                      QPoint(place.left() + place.height() / 2, place.center().y()));
  }

 private Q_SLOTS:
  void init() { m_environment = std::make_unique<TestEnvironment>(); }
  void cleanup() {
    m_window.reset();
    m_environment.reset();
  }

  void onlyWhatStartsNothingHereIsTickedAtFirst() {
    open(oneOfEach());
    QCOMPARE(count(), text("2 of 5 ticked"));
    QCOMPARE(m_window->blankedRows(), (Rows{3, 5, 8}));
  }

  void eachRowSaysWhatItDoesWithWhatAndWhen() {
    open({task(0, Task::Script, text("/s/a.sh"), text("Water the plants"))});
    QCOMPARE(cell(0, TaskReviewModel::Reminder), text("Water the plants"));
    QCOMPARE(cell(0, TaskReviewModel::Kind), text("Runs a script"));
    QCOMPARE(cell(0, TaskReviewModel::Path), text("/s/a.sh"));
    QCOMPARE(cell(0, TaskReviewModel::Fires), text("Sat 5/9/2026 08:13 AM"));
  }

  void aReminderWithoutADateNeverFires() {
    auto tasks = oneOfEach();
    tasks[0].fires = kDistantFuture;
    open(tasks);
    QCOMPARE(cell(0, TaskReviewModel::Fires), text("Never"));
  }

  void spaceTicksTheCurrentLineAndTakesItBack() {
    open(oneOfEach());
    QCOMPARE(m_window->focusWidget(), table());
    for (int i = 0; i < 4; ++i)
      press(Qt::Key_Down);
    press(Qt::Key_Space);
    QCOMPARE(m_window->blankedRows(), (Rows{3, 5}));
    press(Qt::Key_Space);
    QCOMPARE(m_window->blankedRows(), (Rows{3, 5, 8}));
  }

  void spaceTicksEveryLineThatIsSelected() {
    open(oneOfEach());
    press(Qt::Key_End, Qt::ControlModifier); // a line without a tick leads
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Space);
    QCOMPARE(count(), text("5 of 5 ticked"));
    QCOMPARE(m_window->blankedRows(), Rows());
    press(Qt::Key_Space);
    QCOMPARE(m_window->blankedRows(), (Rows{0, 2, 3, 5, 8}));
  }

  void aClickOnItsBoxTicksALine() {
    open(oneOfEach());
    clickBox(3);
    QCOMPARE(m_window->blankedRows(), (Rows{3, 8}));
    clickBox(0);
    QCOMPARE(m_window->blankedRows(), (Rows{0, 3, 8}));
  }

  void theButtons_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<qsizetype>("blanked");
    QTest::newRow("keep") << text("keepButton") << true << qsizetype(3);
    QTest::newRow("without") << text("blankButton") << true << qsizetype(5);
    QTest::newRow("cancel") << text("cancelButton") << false << qsizetype(3);
  }
  void theButtons() {
    QFETCH(QString, button);
    QFETCH(bool, opens);
    QFETCH(qsizetype, blanked);
    open(oneOfEach());
    QSignalSpy finished(m_window.get(), &QDialog::finished);
    QTest::mouseClick(find<QPushButton>(button.toLatin1().constData()), Qt::LeftButton);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(m_window->result() == QDialog::Accepted, opens);
    QCOMPARE(qsizetype(m_window->blankedRows().size()), blanked);
  }

  void whatIsPressedByAccidentOpensNothing_data() {
    QTest::addColumn<int>("key");
    QTest::newRow("Escape") << int(Qt::Key_Escape);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
  }
  void whatIsPressedByAccidentOpensNothing() {
    QFETCH(int, key);
    open(oneOfEach());
    press(Qt::Key(key));
    QTRY_VERIFY(!m_window->isVisible());
    QCOMPARE(m_window->result(), int(QDialog::Rejected));
  }

  void closingTheWindowOpensNothing() {
    open(oneOfEach());
    m_window->close();
    QCOMPARE(m_window->result(), int(QDialog::Rejected));
  }

  void theKeyboardAloneIsEnough() {
    open(oneOfEach());
    for (const char* name :
         {"taskTable", "pathView", "cancelButton", "blankButton", "keepButton"}) {
      QCOMPARE(m_window->focusWidget()->objectName(), text(name));
      QVERIFY(!m_window->focusWidget()->accessibleName().isEmpty());
      if (text(name) != text("keepButton"))
        press(Qt::Key_Tab);
    }
    press(Qt::Key_Return);
    QCOMPARE(m_window->result(), int(QDialog::Accepted));
  }

  void theBoxesTellAScreenReaderWhatTheyAre() {
    open(oneOfEach());
    const auto spoken = [this](int row) {
      return table()->model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
    };
    QCOMPARE(spoken(0), text("ticked: Tea, Opens a web address example.org"));
    QCOMPARE(spoken(4), text("not ticked: Tea, Runs a script /s/a.sh"));
  }

  void aPathOfAnyLengthIsReadToItsEnd() {
    const QString path = u'/' + QString(100000, u'x') + text("/rm.sh");
    open({task(0, Task::Script, text("/a")), task(1, Task::Script, path)});
    QCOMPARE(wholePath(), text("/a"));
    press(Qt::Key_Down);
    QCOMPARE(wholePath(), path);
    QVERIFY(cell(1, TaskReviewModel::Path).size() < 1000);
  }

  void whatWouldHideSomethingIsShown() {
    open({task(0, Task::Script, text("/a\n/b\u202Ehs.txt\x1b[2J"),
               text("Tea\n\u2066hidden\u200B"))});
    QCOMPARE(wholePath(), text("/a\u240A/b\uFFFDhs.txt\u241B[2J"));
    QCOMPARE(cell(0, TaskReviewModel::Path), wholePath());
    QCOMPARE(cell(0, TaskReviewModel::Reminder), text("Tea\u240A\uFFFDhidden\uFFFD"));
  }

  void textsOfOthersAreNoMarkup() {
    open({task(0, Task::Script, text("<b>/a</b>"), text("<h1>Tea</h1>"))},
         text("<i>a</i>.tockwise"));
    QCOMPARE(find<QLabel>("headingLabel")->textFormat(), Qt::PlainText);
    QVERIFY(find<QLabel>("headingLabel")->text().contains(text("<i>a</i>.tockwise")));
    QCOMPARE(wholePath(), text("<b>/a</b>"));
    QCOMPARE(cell(0, TaskReviewModel::Reminder), text("<h1>Tea</h1>"));
  }

  void aLongNameOfADocumentDoesNotWidenTheWindow() {
    open(oneOfEach());
    const int least = m_window->minimumSizeHint().width();
    open(oneOfEach(), QString(250, u'W') + text(".tockwise"));
    QVERIFY(m_window->minimumSizeHint().width() <= least * 3 / 2);
    QVERIFY(m_window->width() <= m_window->screen()->availableSize().width());
  }

  void aThousandTasksOpenAtOnce() {
    std::vector<DocumentTask> tasks;
    for (qsizetype row = 0; row < 1000; ++row)
      tasks.push_back(task(row, row % 5, text("/a/b/%1").arg(row)));
    open(tasks);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Space); // the first is ticked: all lose their ticks
    QCOMPARE(m_window->blankedRows().size(), size_t(1000));
  }

  void itBlocksNoOtherWindow() {
    open(oneOfEach());
    QCOMPARE(m_window->windowModality(), Qt::NonModal);
  }
};

QTEST_MAIN(TaskReviewTest)
#include "task_review_test.moc"
