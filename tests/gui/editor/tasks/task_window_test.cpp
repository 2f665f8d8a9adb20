// The window in which a task is chosen, driven as a user drives it.
#include "editor/task_window_controller.h"
#include "support/fakes.h"
#include "support/named_child.h"
#include "support/test_environment.h"

#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <memory>

using namespace tockwise;

namespace {
QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}
} // namespace

class TaskWindowTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakePrompter m_prompter;
  std::unique_ptr<QWidget> m_editor;
  std::unique_ptr<TaskWindowController> m_window;

  template <typename T> T* find(const char* name) { return namedChild<T>(*m_window, name); }
  QComboBox* taskPopUp() { return find<QComboBox>("taskPopUp"); }
  QLineEdit* pathField() { return find<QLineEdit>("pathField"); }
  void click(const char* button) { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }
  QFileDialog* panel() { return m_editor->findChild<QFileDialog*>(text("browsePanel")); }
  void choose(int type) {
    taskPopUp()->setFocus();
    QTest::keyClick(taskPopUp(), Qt::Key_Home);
    for (int i = 0; i < type; ++i)
      QTest::keyClick(taskPopUp(), Qt::Key_Down);
    QCOMPARE(taskPopUp()->currentIndex(), type);
  }

 private Q_SLOTS:
  void init() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    m_environment = std::make_unique<TestEnvironment>();
    m_prompter = {};
    m_editor = std::make_unique<QWidget>();
    m_editor->setGeometry(100, 100, 700, 560);
    m_editor->show();
    m_window = std::make_unique<TaskWindowController>(m_editor.get(), m_prompter);
    m_window->open();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
  }
  void cleanup() {
    m_window.reset();
    m_editor.reset();
    m_environment.reset();
  }

  void theFiveTypesStandInTheirOrder() {
    QStringList titles;
    for (int i = 0; i < taskPopUp()->count(); ++i)
      titles += taskPopUp()->itemText(i);
    QCOMPARE(titles, text("Web Address,Media File,Document,Application,Script").split(u','));
  }

  void addTakesTypeAndPath_data() {
    QTest::addColumn<int>("type");
    for (const int type : {0, 1, 2, 3, 4})
      QTest::addRow("%d", type) << type;
  }
  void addTakesTypeAndPath() {
    QFETCH(int, type);
    QSignalSpy accepted(m_window.get(), &QDialog::accepted);
    choose(type);
    pathField()->setFocus();
    QTest::keyClicks(pathField(), text(" a 'b' $(c) "));
    click("addButton");
    QCOMPARE(accepted.size(), 1);
    QVERIFY(!m_window->isVisible());
    QVERIFY(m_window->addTask());
    QVERIFY(!m_window->didClose());
    QCOMPARE(m_window->taskType(), qint64(type));
    QCOMPARE(m_window->pathString(), text(" a 'b' $(c) ")); // as it was typed
    QCOMPARE(m_prompter.beeps, 0);
  }

  void anEmptyPathBeepsAndTheWindowStays() {
    click("addButton");
    QCOMPARE(m_prompter.beeps, 1);
    QVERIFY(m_window->isVisible());
    QTest::keyClick(m_window.get(), Qt::Key_Return);
    QCOMPARE(m_prompter.beeps, 2);
    QVERIFY(m_window->isVisible());
    QTest::keyClicks(pathField(), text("example.org"));
    QTest::keyClick(pathField(), Qt::Key_Return);
    QVERIFY(m_window->addTask());
    QCOMPARE(m_window->pathString(), text("example.org"));
  }

  void closingAddsNoTask_data() {
    QTest::addColumn<QByteArray>("way");
    QTest::newRow("button") << QByteArray("button");
    QTest::newRow("Escape") << QByteArray("escape");
    QTest::newRow("title bar") << QByteArray("close");
    QTest::newRow("after a refused one") << QByteArray("refused");
  }
  void closingAddsNoTask() {
    QFETCH(QByteArray, way);
    QSignalSpy rejected(m_window.get(), &QDialog::rejected);
    if (way == "refused")
      click("addButton");
    else
      pathField()->setText(text("example.org"));
    if (way == "escape")
      QTest::keyClick(m_window.get(), Qt::Key_Escape);
    else if (way == "close")
      m_window->windowHandle()->close();
    else
      click("closeButton");
    QTRY_COMPARE(rejected.size(), 1);
    QVERIFY(m_window->didClose());
    QVERIFY(!m_window->addTask());
  }

  void browsingTakesTheWindowsPlaceAndFillsTheField() {
    const QString file = m_environment->path(text("a song.ogg"));
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    choose(Task::Media);
    click("browseButton");
    QVERIFY(panel());
    QTRY_VERIFY(panel()->isVisible());
    QVERIFY(!m_window->isVisible());
    QCOMPARE(panel()->windowTitle(), text("Choose a File")); // the program's name is added to it
    QVERIFY(panel()->nameFilters().constFirst().contains(u"*.ogg"));
    QCOMPARE(panel()->nameFilters().constLast(), text("All files (*)"));
    QCOMPARE(panel()->windowModality(), Qt::WindowModal);
    auto* name = panel()->findChild<QLineEdit*>(text("fileNameEdit"));
    QVERIFY(name);
    name->setText(file);
    QTest::keyClick(name, Qt::Key_Return);
    QTRY_VERIFY(m_window->isVisible());
    QCOMPARE(pathField()->text(), file);
    QTRY_VERIFY(!panel());
    click("addButton");
    QCOMPARE(m_window->pathString(), file);
  }

  void cancellingTheBrowsingKeepsTheField() {
    choose(Task::Document);
    pathField()->setText(text("/etc/hostname"));
    click("browseButton");
    QTRY_VERIFY(panel() && panel()->isVisible());
    QCOMPARE(panel()->directory().path(), text("/etc"));
    QTest::keyClick(panel(), Qt::Key_Escape);
    QTRY_VERIFY(m_window->isVisible());
    QCOMPARE(pathField()->text(), text("/etc/hostname"));
    QVERIFY(!m_window->didClose());
  }

  void theWindowMayGoAwayWhileItsPanelIsOpen() {
    choose(Task::Script);
    click("browseButton");
    QTRY_VERIFY(panel() && panel()->isVisible());
    m_window.reset();
    QVERIFY(!panel());
  }

  void anAddressIsNotBrowsedFor() {
    QVERIFY(!find<QPushButton>("browseButton")->isEnabled());
    choose(Task::Document);
    QVERIFY(find<QPushButton>("browseButton")->isEnabled());
  }

  void installedApplicationsAreOfferedByName() {
    const QString folder = m_environment->path(text("home/.local/share/applications"));
    QVERIFY(QDir().mkpath(folder));
    QFile entry(folder + text("/org.example.tea.desktop"));
    QVERIFY(entry.open(QIODevice::WriteOnly));
    entry.write("[Desktop Entry]\nType=Application\nName=Tea Timer of Mine\nExec=tea %U\n");
    entry.close();
    QVERIFY(!pathField()->completer());
    choose(Task::Application);
    pathField()->setFocus();
    QTest::keyClicks(pathField(), text("r of mi"));
    QCOMPARE(pathField()->completer()->completionCount(), 1);
    QCOMPARE(pathField()->completer()->currentCompletion(), text("Tea Timer of Mine"));
    choose(Task::Script);
    QVERIFY(!pathField()->completer());
  }

  void everyControlHasANameAndAPlaceInTheTabOrder() {
    choose(Task::Document);
    for (const char* name :
         {"taskPopUp", "pathField", "browseButton", "addButton", "closeButton"}) {
      QWidget* focus = m_window->focusWidget();
      QCOMPARE(focus->objectName(), text(name));
      QVERIFY(!focus->accessibleName().isEmpty());
      QTest::keyClick(focus, Qt::Key_Tab);
    }
  }
};

QTEST_MAIN(TaskWindowTest)
#include "task_window_test.moc"
