// The save and the open panel, driven as a user drives them.
#include "documents/document_panels.h"
#include "support/test_environment.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace tockwise;

namespace {
QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}
} // namespace

class DocumentPanelsTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  std::unique_ptr<FileDialogPanels> m_panels;
  QStringList m_chosen;

  QFileDialog* panel(const char* name) {
    QFileDialog* found = nullptr;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
      if (window->objectName() == text(name) && window->isVisible())
        found = qobject_cast<QFileDialog*>(window);
    }
    return found;
  }
  QLineEdit* field(QFileDialog* of) { return of->findChild<QLineEdit*>(text("fileNameEdit")); }
  void confirm(QFileDialog* in, const QString& name) {
    field(in)->setText(name);
    QTest::keyClick(field(in), Qt::Key_Return);
  }
  QMessageBox* box(QFileDialog* of) {
    for (QMessageBox* each : of->findChildren<QMessageBox*>()) {
      if (each->isVisible())
        return each;
    }
    return nullptr;
  }
  void save() {
    m_panels->chooseWhereToSave(text("Untitled"),
                                [this](const QString& path) { m_chosen += path; });
  }
  void open() {
    m_panels->chooseDocument([this](const QString& path) { m_chosen += path; });
  }
  QString makeFile(const char* name) {
    const QString path = m_environment->path(text(name));
    if (!QFile(path).open(QIODevice::WriteOnly))
      qFatal("no file");
    return path;
  }
  /// Runs a step while a box that the panel opened waits in its own event loop.
  void whileBoxIsOpen(QFileDialog* of, const std::function<void(QMessageBox*)>& step) {
    auto* timer = new QTimer(of);
    timer->setInterval(10);
    connect(timer, &QTimer::timeout, of, [this, of, step, timer] {
      if (QMessageBox* found = box(of)) {
        timer->stop();
        step(found);
      }
    });
    timer->start();
  }

 private Q_SLOTS:
  void init() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    m_environment = std::make_unique<TestEnvironment>();
    m_panels = std::make_unique<FileDialogPanels>();
    m_chosen.clear();
  }
  void cleanup() {
    m_panels.reset();
    m_environment.reset();
  }

  void theSavePanelProposesUntitledAndAddsTheSuffix() {
    save();
    QFileDialog* shown = panel("savePanel");
    QVERIFY(shown);
    QCOMPARE(field(shown)->text(), text("Untitled"));
    QCOMPARE(shown->acceptMode(), QFileDialog::AcceptSave);
    QVERIFY(QDir(shown->directory()).exists());
    confirm(shown, m_environment->path(text("mine")));
    QTRY_COMPARE(m_chosen, QStringList{m_environment->path(text("mine.tockwise"))});
    QVERIFY(!panel("savePanel"));
  }

  void theSavePanelAsksBeforeItTakesTheNameOfAFileWithTheSuffixAdded() {
    const QString path = makeFile("mine.tockwise");
    save();
    QFileDialog* shown = panel("savePanel");
    bool asked = false;
    whileBoxIsOpen(shown, [&](QMessageBox* question) {
      asked = true;
      QCOMPARE(question->windowModality(), Qt::WindowModal); // alerts stay usable
      QVERIFY(question->text().contains(text("mine.tockwise")));
      question->button(QMessageBox::No)->click();
    });
    confirm(shown, m_environment->path(text("mine")));
    QVERIFY(asked);
    QVERIFY(panel("savePanel")); // still there for another name
    whileBoxIsOpen(shown,
                   [](QMessageBox* question) { question->button(QMessageBox::Yes)->click(); });
    confirm(shown, m_environment->path(text("mine")));
    QTRY_COMPARE(m_chosen, QStringList{path});
  }

  void theOpenPanelShowsDocumentsAlone() {
    const QString path = makeFile("mine.tockwise");
    open();
    QFileDialog* shown = panel("openPanel");
    QVERIFY(shown);
    QCOMPARE(shown->windowTitle(), text("Choose a file"));
    QCOMPARE(shown->labelText(QFileDialog::Accept), text("Choose"));
    QCOMPARE(shown->fileMode(), QFileDialog::ExistingFile);
    QCOMPARE(shown->nameFilters(), QStringList{text("Reminders documents (*.tockwise)")});
    QVERIFY(shown->testOption(QFileDialog::ReadOnly));
    confirm(shown, path);
    QTRY_COMPARE(m_chosen, QStringList{path});
    QVERIFY(!panel("openPanel"));
  }

  void aFileThatIsNotThereIsSaidWithoutBlockingAlerts() {
    open();
    QFileDialog* shown = panel("openPanel");
    bool told = false;
    whileBoxIsOpen(shown, [&](QMessageBox* message) {
      told = true;
      QCOMPARE(message->windowModality(), Qt::WindowModal);
      message->close();
    });
    confirm(shown, m_environment->path(text("nothing.tockwise")));
    QVERIFY(told);
    QVERIFY(panel("openPanel"));
    QCOMPARE(m_chosen, QStringList());
  }

  void cancellingChoosesNothing() {
    save();
    QTest::keyClick(panel("savePanel"), Qt::Key_Escape);
    QTRY_VERIFY(!panel("savePanel"));
    open();
    panel("openPanel")->close();
    QTRY_VERIFY(!panel("openPanel"));
    QCoreApplication::processEvents();
    QCOMPARE(m_chosen, QStringList());
  }

  void aSecondRequestBringsTheOpenPanelBack() {
    open();
    QFileDialog* shown = panel("openPanel");
    open();
    int panels = 0;
    for (QWidget* window : QApplication::topLevelWidgets())
      panels += window->objectName() == text("openPanel") ? 1 : 0;
    QCOMPARE(panels, 1);
    QCOMPARE(panel("openPanel"), shown);
  }

  void bothPanelsMayBeOpenAndBlockNothing() {
    save();
    open();
    QVERIFY(panel("savePanel") && panel("openPanel"));
    QCOMPARE(panel("savePanel")->windowModality(), Qt::NonModal);
    QCOMPARE(panel("openPanel")->windowModality(), Qt::NonModal);
  }

  void theNextPanelBeginsWhereTheLastFileWas() {
    const QString path = makeFile("mine.tockwise");
    open();
    confirm(panel("openPanel"), path);
    QTRY_COMPARE(m_chosen.size(), 1);
    save();
    QCOMPARE(panel("savePanel")->directory().absolutePath(), QFileInfo(path).absolutePath());
  }

  void aPanelGoesWithItsOwner() {
    open();
    m_panels.reset();
    QVERIFY(!panel("openPanel"));
  }
};

QTEST_MAIN(DocumentPanelsTest)
#include "document_panels_test.moc"
