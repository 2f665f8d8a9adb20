// What comes out of the preview: jobs, chosen pages and PDF files.
#include "print/print_job.h"
#include "print_window_fixture.h"
#include "support/file_size_limit.h"

#include <QFile>

using namespace tockwise;

class PrintOutputTest : public PrintWindowFixture {
  Q_OBJECT

  QString PDFPath() const { return m_environment->path(QStringLiteral("out.pdf")); }
  QByteArray fileAt(const QString& path) const {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

 private Q_SLOTS:
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

  void aJobWithoutRoomOnTheDiskIsTold() {
    add(QStringLiteral("Tea"));
    m_answer = [this](QPrinter& printer) {
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(PDFPath());
      return true;
    };
    m_prompter.answers = {1};
    const FileSizeLimit limit(500);
    preview([] { press("printButton"); });
    QCOMPARE(m_prompter.asked.size(), size_t(1));
    QVERIFY(m_prompter.asked[0].message.contains(PDFPath()));
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

  void withoutRoomOnTheDiskTheFileStaysAsItWas_data() {
    QTest::addColumn<int>("size");
    QTest::newRow("within a buffer") << 1000;
    QTest::newRow("beyond it") << 100000;
  }
  void withoutRoomOnTheDiskTheFileStaysAsItWas() {
    QFETCH(const int, size);
    QVERIFY(writeWholeFile(PDFPath(), "before"));
    const FileSizeLimit limit(500);
    const auto written = writeWholeFile(PDFPath(), QByteArray(size, 'x'));
    QVERIFY(!written);
    QCOMPARE(written.error().kind, Error::Kind::Storage);
    QCOMPARE(fileAt(PDFPath()), QByteArray("before"));
    QCOMPARE(QDir(QFileInfo(PDFPath()).path()).entryList({QStringLiteral("out.pdf*")}).size(), 1);
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

QTEST_MAIN(PrintOutputTest)
#include "print_output_test.moc"
