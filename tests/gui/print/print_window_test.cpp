// The preview: what its buttons do, what waits while it is open, and the lists of previews.
#include "print/print_text_view.h"
#include "print/printing.h"
#include "support/fakes.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace tockwise;

namespace {

constexpr Date kNow{790000000};

QDialog* previewWindow() {
  return qobject_cast<QDialog*>(QApplication::activeModalWidget());
}

template <typename Widget> Widget* child(const char* name) {
  QDialog* window = previewWindow();
  return window ? window->findChild<Widget*>(QString::fromLatin1(name)) : nullptr;
}

PrintTextView* textView() {
  return child<PrintTextView>("textView");
}

bool isReady() {
  const auto* button = child<QPushButton>("printButton");
  return button && button->isVisible() && button->isEnabled();
}

} // namespace

class PrintWindowTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{kNow};
  FakePrompter m_prompter;
  FakeSoundPlayer m_player;
  std::unique_ptr<ReminderStore> m_store;
  std::unique_ptr<AlertSounds> m_sounds;
  std::unique_ptr<AlertWindows> m_alerts;
  std::unique_ptr<Printing> m_printing;
  QList<bool> m_holds;
  // What the desktop's part in printing was asked, and what it answers.
  bool m_hasPrinters = true;
  int m_dialogs = 0;
  std::function<bool(QPrinter&)> m_answer;
  QString m_PDFFile;

  void add(const QString& text) {
    Reminder reminder;
    reminder.reminderQueue = kNow;
    reminder.reminderUUID = UUIDString();
    reminder.reminderDescriptions = text;
    m_store->queue().append(reminder);
  }
  void openAlert(const QString& text) {
    AlertRequest request;
    request.reminder = text;
    request.date = kNow;
    request.reminderType = QStringLiteral("regular");
    m_alerts->open(request);
  }
  /// Runs the preview of the queue; does work when it is open and its pages are there.
  void preview(const std::function<void()>& work) {
    QTimer poll;
    bool isDone = false;
    connect(&poll, &QTimer::timeout, this, [&] {
      if (isDone || !isReady())
        return;
      isDone = true;
      work();
    });
    poll.start(5);
    QTimer::singleShot(20000, &poll, [] { // a test that hangs says nothing
      if (QDialog* window = previewWindow())
        window->reject();
    });
    m_printing->print();
    QVERIFY(isDone);
  }
  static void press(const char* button) {
    QTest::mouseClick(child<QPushButton>(button), Qt::LeftButton);
  }
  QString PDFPath() const { return m_environment->path(QStringLiteral("out.pdf")); }
  QByteArray fileAt(const QString& path) const {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

 private Q_SLOTS:
  void init() {
    qputenv("CUPS_SERVER", "/nonexistent/cups.sock"); // the machine's own printers are not asked
    m_environment = std::make_unique<TestEnvironment>();
    m_prompter = FakePrompter();
    m_store = openUserStore(m_clock);
    m_sounds = std::make_unique<AlertSounds>(m_store->preferences(), m_player, QStringList(),
                                             AlertSounds::systemRandom());
    m_alerts = std::make_unique<AlertWindows>(m_store->queue(), *m_sounds, m_prompter);
    m_holds.clear();
    m_hasPrinters = true;
    m_dialogs = 0;
    m_PDFFile.clear();
    m_answer = [](QPrinter&) { return false; };
    m_printing = std::make_unique<Printing>(
        *m_store, *m_alerts, m_prompter, [this](bool hold) { m_holds += hold; },
        PrintPanels{[this] { return m_hasPrinters; },
                    [this](QPrinter& printer, int, QWidget*) {
                      ++m_dialogs;
                      return m_answer(printer);
                    },
                    [this](QWidget*) { return m_PDFFile; }});
  }
  void cleanup() {
    m_printing.reset();
    m_alerts.reset();
    m_sounds.reset();
    m_store.reset();
  }

  void thePreviewShowsTheQueueOnPages() {
    add(QStringLiteral("Tea"));
    preview([&] {
      QCOMPARE(previewWindow()->windowModality(), Qt::ApplicationModal);
      QCOMPARE(child<QPushButton>("printButton")->text(), QStringLiteral("Print"));
      QCOMPARE(child<QPushButton>("cancelButton")->text(), QStringLiteral("Cancel"));
      QCOMPARE(child<QLabel>("pageLabel")->text(), QStringLiteral("Page 1 of 1"));
      QCOMPARE(textView()->pageCount(), 1);
      QVERIFY(!child<QProgressBar>("progressBar")->isVisible());
      press("cancelButton");
    });
  }

  void cancelClosesAndIsRemembered_data() {
    QTest::addColumn<std::function<void()>>("cancel");
    const auto row = [](const char* name, const std::function<void()>& cancel) {
      QTest::newRow(name) << cancel;
    };
    row("button", [] { press("cancelButton"); });
    row("Escape", [] { QTest::keyClick(textView(), Qt::Key_Escape); });
    row("window closed", [] { previewWindow()->close(); });
  }
  void cancelClosesAndIsRemembered() {
    QFETCH(const std::function<void()>, cancel);
    preview(cancel);
    QCOMPARE(m_dialogs, 0);
    QVERIFY(!m_printing->isPreviewOpen());
    QVERIFY(!previewWindow());
    QVERIFY(m_printing->printWindow()->didCancel());
  }

  void printRunsTheDialogAndCloses_data() {
    QTest::addColumn<bool>("byKey");
    QTest::newRow("button") << false;
    QTest::newRow("Return in the text") << true;
  }
  void printRunsTheDialogAndCloses() {
    QFETCH(const bool, byKey);
    preview([&] {
      if (byKey)
        QTest::keyClick(textView(), Qt::Key_Return);
      else
        press("printButton");
    });
    QCOMPARE(m_dialogs, 1);
    QVERIFY(!m_printing->printWindow()->didCancel());
    QVERIFY(m_prompter.asked.empty());
  }

  void aPreviewJoinsTheListWhenItHasClosed() {
    const auto press1 = [&](const char* button, size_t before) {
      const PrintWindowController* last = m_printing->printWindow();
      preview([&] {
        QCOMPARE(m_printing->printWindows().size(), before);
        QCOMPARE(m_printing->printWindow(), last);
        press(button);
        // The button takes it off a list that it is not on.
        QCOMPARE(m_printing->printWindows().size(), before);
      });
      QCOMPARE(m_printing->printWindows().size(), before + 1);
      QCOMPARE(m_printing->printWindows().back().get(), m_printing->printWindow());
    };
    press1("cancelButton", 0);
    press1("printButton", 1);
    press1("cancelButton", 2);
    QVERIFY(m_printing->printWindows()[0]->didCancel());
    QVERIFY(!m_printing->printWindows()[1]->didCancel());
  }

  void theTickIsHeldWhileThePreviewIsOpen() {
    preview([&] {
      QCOMPARE(m_holds, QList<bool>{true});
      press("cancelButton");
      QCOMPARE(m_holds, QList<bool>{true});
    });
    QCOMPARE(m_holds, (QList<bool>{true, false}));
  }

  void aSecondRequestBringsTheFirstToTheFront() {
    preview([&] {
      QDialog* window = previewWindow();
      m_printing->printAllCurrentAlerts();
      m_printing->print();
      QCOMPARE(previewWindow(), window);
      QCOMPARE(m_holds, QList<bool>{true});
      press("cancelButton");
    });
    QCOMPARE(m_printing->printWindows().size(), size_t(1));
  }

  void noOtherWindowReacts() {
    QPushButton other;
    other.show();
    QSignalSpy clicked(&other, &QPushButton::clicked);
    preview([&] {
      QVERIFY(QApplication::activeModalWidget());
      QTest::mouseClick(other.windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
      QCOMPARE(clicked.size(), 0);
      press("cancelButton");
    });
    QTest::mouseClick(other.windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
    QCOMPARE(clicked.size(), 1);
  }

  void openAlertsStayAndDoNotCoverThePreview() {
    openAlert(QStringLiteral("Tea"));
    preview([&] {
      QVERIFY(m_alerts->window(0)->isVisible());
      QVERIFY(previewWindow()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
      press("cancelButton");
    });
    m_alerts->hideAllCurrentAlerts();
    preview([&] {
      QVERIFY(!previewWindow()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
      press("cancelButton");
    });
    QVERIFY(!m_alerts->window(0)->isVisible());
  }

  void theWholeEndsInOrderWhenTheProgramIsQuit() {
    QTimer::singleShot(100, qApp, [] { QCoreApplication::exit(); });
    QTimer::singleShot(0, this, [this] { m_printing->print(); });
    QCoreApplication::exec();
    QVERIFY(!m_printing->isPreviewOpen());
    QCOMPARE(m_holds, (QList<bool>{true, false}));
    QCOMPARE(m_printing->printWindows().size(), size_t(1));
    QVERIFY(!m_printing->printWindow()->didCancel());
  }

  void theKeyboardTurnsThePages() {
    for (int i = 0; i < 60; ++i)
      add(QStringLiteral("reminder %1").arg(i));
    preview([&] {
      const int count = textView()->pageCount();
      QVERIFY(count > 3);
      const QString last = QStringLiteral("Page %1 of %1").arg(count);
      QTest::keyClick(textView(), Qt::Key_End);
      QCOMPARE(child<QLabel>("pageLabel")->text(), last);
      QTest::keyClick(textView(), Qt::Key_Home);
      QCOMPARE(textView()->currentPage(), 0);
      QTest::keyClick(textView(), Qt::Key_PageDown);
      QTest::keyClick(textView(), Qt::Key_Space);
      QVERIFY(textView()->verticalScrollBar()->value() > 0);
      press("cancelButton");
    });
  }

  void manyRemindersAreMadeWhileTheWindowIsOpen() {
    for (int i = 0; i < 30000; ++i) // more than any machine lays out before it would be shown
      add(QStringLiteral("reminder %1").arg(i));
    bool sawProgress = false;
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
      const auto* bar = child<QProgressBar>("progressBar");
      if (bar && child<QPushButton>("printButton")->isEnabled())
        return press("cancelButton"); // it was too fast: the test fails, and does not hang
      if (!bar || !bar->isVisible())
        return;
      sawProgress = true;
      QVERIFY(!child<QPushButton>("printButton")->isEnabled());
      press("cancelButton");
    });
    watch.start(5);
    m_printing->print();
    QVERIFY(sawProgress);
    QVERIFY(m_printing->printWindow()->didCancel());
  }

  void printingIntoAFileWritesThePages() {
    add(QStringLiteral("Tea"));
    m_answer = [this](QPrinter& printer) {
      [&] { QCOMPARE(printer.docName(), QStringLiteral("Reminders")); }();
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(PDFPath());
      return true;
    };
    preview([] { press("printButton"); });
    QVERIFY(fileAt(PDFPath()).startsWith("%PDF-"));
    QVERIFY(m_prompter.asked.empty());
  }

  void paperAndOrientationAreKeptForTheNextPreview() {
    add(QStringLiteral("Tea"));
    m_answer = [this](QPrinter& printer) {
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(PDFPath());
      printer.setPageSize(QPageSize(QPageSize::A5));
      printer.setPageOrientation(QPageLayout::Landscape);
      printer.setCopyCount(3);
      return true;
    };
    preview([] { press("printButton"); });
    const QByteArray file = fileAt(PDFPath());
    QVERIFY(file.contains("/MediaBox [0 0 595 420]") || file.contains("/MediaBox [0 0 595.0"));
    QVERIFY(file.contains("/Count 3"));
    m_answer = [](QPrinter& printer) {
      [&] {
        QCOMPARE(printer.pageLayout().pageSize().id(), QPageSize::A5);
        QCOMPARE(printer.pageLayout().orientation(), QPageLayout::Landscape);
        QCOMPARE(printer.copyCount(), 1);
      }();
      return false;
    };
    preview([] {
      QVERIFY(textView()->grab().width() > 0);
      press("printButton");
    });
    QCOMPARE(m_dialogs, 2);
  }

  void onlyTheChosenPagesArePrinted() {
    for (int i = 0; i < 60; ++i)
      add(QStringLiteral("reminder %1").arg(i));
    m_answer = [this](QPrinter& printer) {
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(PDFPath());
      QPageRanges ranges;
      ranges.addRange(2, 3);
      printer.setPageRanges(ranges);
      return true;
    };
    preview([] { press("printButton"); });
    QVERIFY(fileAt(PDFPath()).contains("/Count 2"));
  }

  void withoutPrintersAPDFFileIsOffered() {
    m_hasPrinters = false;
    m_PDFFile = PDFPath();
    add(QStringLiteral("Tea"));
    m_prompter.answers = {0};
    preview([] { press("printButton"); });
    QCOMPARE(m_dialogs, 0);
    QCOMPARE(m_prompter.asked.size(), size_t(1));
    QCOMPARE(m_prompter.asked[0].buttons,
             (QStringList{QStringLiteral("Save as PDF..."), QStringLiteral("Cancel")}));
    QVERIFY(fileAt(PDFPath()).startsWith("%PDF-"));
  }

  void withoutPrintersAndWithoutAFileNothingIsWritten() {
    m_hasPrinters = false;
    m_PDFFile = PDFPath();
    m_prompter.answers = {1};
    preview([] { press("printButton"); });
    QVERIFY(!QFile::exists(PDFPath()));
  }

  void aFileThatCannotBeWrittenIsTold() {
    m_hasPrinters = false;
    m_PDFFile = m_environment->path(QStringLiteral("missing/out.pdf"));
    m_prompter.answers = {0, 0};
    preview([] { press("printButton"); });
    QCOMPARE(m_prompter.asked.size(), size_t(2));
    QVERIFY(m_prompter.asked[1].message.contains(m_PDFFile));
  }

  void aJobThatIsNotTakenIsToldAndAPDFFileOffered() {
    m_answer = [this](QPrinter& printer) {
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(m_environment->path(QStringLiteral("missing/out.pdf")));
      return true;
    };
    m_PDFFile = PDFPath();
    m_prompter.answers = {0};
    preview([] { press("printButton"); });
    QCOMPARE(m_prompter.asked.size(), size_t(1));
    QVERIFY(m_prompter.asked[0].message.contains(QStringLiteral("missing/out.pdf")));
    QVERIFY(fileAt(PDFPath()).startsWith("%PDF-"));
  }

  void aPDFFileIsMadeBesideTheProgram_data() {
    QTest::addColumn<Printing::Document>("document");
    QTest::newRow("queue") << Printing::Document::Queue;
    QTest::newRow("alerts") << Printing::Document::Alerts;
  }
  void aPDFFileIsMadeBesideTheProgram() {
    QFETCH(const Printing::Document, document);
    std::optional<bool> saved;
    m_printing->savePDF(document, PDFPath(),
                        [&](const Result<void>& result) { saved = result.ok(); });
    QVERIFY(!saved);
    QTRY_VERIFY(saved);
    QVERIFY(*saved);
    QVERIFY(fileAt(PDFPath()).startsWith("%PDF-"));
    QVERIFY(m_holds.isEmpty());
  }

  void aPDFFileInTheMakingEndsWithTheProgram() {
    bool told = false;
    m_printing->savePDF(Printing::Document::Queue, PDFPath(),
                        [&](const Result<void>&) { told = true; });
    m_printing.reset();
    QCoreApplication::processEvents();
    QVERIFY(!told);
    QVERIFY(!QFile::exists(PDFPath()));
  }
};

QTEST_MAIN(PrintWindowTest)
#include "print_window_test.moc"
