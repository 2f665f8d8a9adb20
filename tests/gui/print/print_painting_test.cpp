// Documents on pages: where the text stands, in which colours, and that nothing is cut.
#include "print_vocabulary.h"
#include "store/archive/typedstream.h"
#include "support/pictures.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>

using namespace tockwise;
using namespace std::chrono_literals;

namespace {

QImage painted(const PrintPages& pages, int page = 0, double dotsPerPixel = 3) {
  QImage image((pages.pageSize() / dotsPerPixel).toSize(), QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.scale(1 / dotsPerPixel, 1 / dotsPerPixel);
  pages.paint(painter, page);
  return image;
}

QImage paintedPage(PrintContents contents) {
  PrintPages pages(std::move(contents), a4());
  pages.complete();
  return painted(pages);
}

/// The smallest rectangle that holds every pixel of which counts() is true.
template <typename Counts> QRect areaOf(const QImage& image, Counts counts) {
  QRect area;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (counts(image.pixelColor(x, y)))
        area |= QRect(x, y, 1, 1);
    }
  }
  return area;
}

QRect inkOf(const QImage& image) {
  return areaOf(image, [](const QColor& color) { return color.lightness() < 128; });
}

QStringList manyWords(int count) {
  QStringList words;
  for (int i = 0; i < count; ++i)
    words += QStringLiteral("word%1").arg(i);
  return words;
}

QPalette darkPalette() {
  QPalette palette(QColor(40, 40, 40));
  palette.setColor(QPalette::Text, Qt::white);
  palette.setColor(QPalette::Base, Qt::black);
  palette.setColor(QPalette::Link, QColor(255, 255, 150));
  return palette;
}

} // namespace

class PrintPaintingTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() { QGuiApplication::setPalette(QPalette()); }
  void cleanup() { QGuiApplication::setPalette(QPalette()); }

  void pagesHaveTheirMargins() {
    PrintPages pages(plain({entry(manyWords(6000).join(u' '))}), a4());
    pages.complete();
    QVERIFY(pages.pageCount() > 2);
    const QImage page = painted(pages, 1, 300 / 25.4); // a pixel is a millimetre
    QCOMPARE(page.size(), QSize(210, 297));
    const QRect ink = areaOf(page, [](const QColor& color) { return color.lightness() < 240; });
    QVERIFY2(ink.left() >= 19 && ink.left() <= 22, qPrintable(QString::number(ink.left())));
    QVERIFY2(ink.top() >= 19 && ink.top() <= 24, qPrintable(QString::number(ink.top())));
    QVERIFY(ink.right() <= 190);
    QVERIFY2(ink.bottom() <= 277 && ink.bottom() >= 265, qPrintable(QString::number(ink.bottom())));
  }

  void everyLineStandsOnOnePage() {
    PrintPages pages(plain({entry(manyWords(4000).join(u'\n'))}), a4());
    pages.complete();
    const double pageHeight = pages.pageSize().height();
    for (QTextBlock block = pages.document().begin(); block.isValid(); block = block.next()) {
      const QRectF place = pages.document().documentLayout()->blockBoundingRect(block);
      if (block.lineCount() == 1)
        QCOMPARE(int(place.top() / pageHeight), int((place.bottom() - 1) / pageHeight));
    }
  }

  void textWithoutAColourIsBlackWhateverTheTheme() {
    const QByteArray archive = archiveText(rich(QStringLiteral("no colour")));
    for (const auto& contents :
         {plain({entry(QStringLiteral("Tea"))}), richQueue({entry(QString(), archive)})}) {
      QGuiApplication::setPalette(QPalette());
      const QImage light = paintedPage(contents);
      QGuiApplication::setPalette(darkPalette());
      const QImage dark = paintedPage(contents);
      QVERIFY(!inkOf(light).isEmpty());
      QCOMPARE(dark, light);
    }
  }

  void aColourThatFollowsTheThemeIsBlack() {
    QFile file(QStringLiteral(TOCKWISE_TEST_DATA
                              "/archives/typedstream-synthetic/ts_synth_textstorage_le.bin"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto text = readTypedstreamText(file.readAll());
    QVERIFY(text.ok());
    const TextAttributes themed = text->text.runs[5].attributes;
    QVERIFY(themed.color->followsTheme);
    TextAttributes colourless = themed;
    colourless.color.reset();
    const auto pageWith = [](const TextAttributes& attributes) {
      return paintedPage(
          richQueue({entry(QString(), archiveText(rich(QStringLiteral("MMMM"), attributes)))}));
    };
    QGuiApplication::setPalette(darkPalette());
    QCOMPARE(pageWith(themed), pageWith(colourless));
  }

  void linksAreInTheColourOfPaper() {
    TextAttributes attributes;
    attributes.link = QStringLiteral("https://www.example.org");
    const auto contents = richQueue(
        {entry(QString(), archiveText(rich(QStringLiteral("the forecast"), attributes)))});
    const QImage light = paintedPage(contents);
    QGuiApplication::setPalette(darkPalette());
    QCOMPARE(paintedPage(contents), light);
    QVERIFY(!areaOf(light, [](const QColor& color) {
               return color.blue() > color.red() + 60;
             }).isEmpty());
  }

  void coloursStayAsWritten() {
    const auto words = QStringLiteral("MMMM");
    const auto pageWith = [&](quint32 argb) {
      return paintedPage(richQueue({entry(QString(), archiveText(rich(words, coloured(argb))))}));
    };
    const auto isRed = [](const QColor& color) {
      return color.red() > 150 && color.green() < 100 && color.blue() < 100;
    };
    QVERIFY(!areaOf(pageWith(0xffff0000), isRed).isEmpty());
    // White on white: as it was written.
    const QImage empty =
        paintedPage(richQueue({entry(QString(), archiveText(rich(QStringLiteral(" "))))}));
    QCOMPARE(inkOf(pageWith(0xffffffff)), inkOf(empty));
  }

  void aPictureStandsAsLargeAsItIs() {
    TextAttributes attributes;
    attributes.attachment =
        TextAttachment{QStringLiteral("image.png"), pngOf({192, 96}, Qt::green), {}};
    const QByteArray archive =
        archiveText(rich(QString(QChar(AttributedText::kAttachmentCharacter)), attributes));
    const QImage page = paintedPage(alerts({entry(QString(), archive)}));
    const QRect picture = areaOf(page, [](const QColor& color) {
      return color.green() > 200 && color.red() < 60 && color.blue() < 60;
    });
    QVERIFY(std::abs(picture.width() - 200) <= 2); // two inches, of 100 pixels here
    QVERIFY(std::abs(picture.height() - 100) <= 2);
  }

  void aPictureLargerThanAPageIsMadeToFit() {
    TextAttributes attributes;
    attributes.attachment =
        TextAttachment{QStringLiteral("image.png"), pngOf({400, 4000}, Qt::green), {}};
    PrintPages pages(
        alerts(
            {entry(QString(), archiveText(rich(QString(QChar(AttributedText::kAttachmentCharacter)),
                                               attributes)))}),
        a4());
    pages.complete();
    QVERIFY(pages.pageCount() <= 2);
    const QImage page = painted(pages, pages.pageCount() - 1);
    const QRect picture = areaOf(page, [](const QColor& color) {
      return color.green() > 200 && color.red() < 60 && color.blue() < 60;
    });
    QVERIFY(picture.bottom() <= page.height() - 78); // two centimetres
    QVERIFY(picture.height() > page.height() / 2);
  }

  void otherPaperBeginsThePagesAnew() {
    PrintPages pages(plain({entry(manyWords(3000).join(u' '))}), a4());
    pages.complete();
    const int onA4 = pages.pageCount();
    pages.setPageLayout(paperOfSize(QPageSize(QPageSize::A5)));
    QVERIFY(!pages.isComplete());
    pages.complete();
    QVERIFY(pages.pageCount() > onA4);
    pages.setPageLayout(a4());
    pages.complete();
    QCOMPARE(pages.pageCount(), onA4);
    pages.setPageLayout(a4());
    QVERIFY(pages.isComplete());
  }

  void pagesMadeBitByBitAreTheSame() {
    std::vector<PrintEntry> entries;
    for (int i = 0; i < 300; ++i)
      entries.push_back(entry(QStringLiteral("reminder %1").arg(i)));
    PrintPages whole(plain(entries), a4());
    whole.complete();
    PrintPages slices(plain(entries), a4());
    double progress = slices.progress();
    int steps = 0;
    while (!slices.advance(1ms)) {
      QVERIFY(slices.progress() >= progress);
      progress = slices.progress();
      QCOMPARE(slices.pageCount(), 0);
      ++steps;
    }
    QVERIFY(steps > 0);
    QCOMPARE(slices.progress(), 1.0);
    QCOMPARE(slices.pageCount(), whole.pageCount());
    QCOMPARE(painted(slices, 3), painted(whole, 3));
  }

  void thePDFHasAPageForEachPageAndATitle() {
    PrintPages pages(plain({entry(manyWords(3000).join(u' '))}), a4());
    PDFMaking making(pages);
    while (!making.advance(10ms)) {
    }
    const auto bytes = making.takePDF();
    QVERIFY(bytes.ok());
    QVERIFY(bytes->startsWith("%PDF-"));
    QVERIFY(bytes->contains("/Count " + QByteArray::number(pages.pageCount())));
  }

  void aFileIsWrittenAsAWholeOrNotAtAll() {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("out.pdf"));
    QVERIFY(writeWholeFile(path, "one").ok());
    QVERIFY(writeWholeFile(path, "two").ok());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("two"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("out.pdf")});
    const auto missing = writeWholeFile(folder.filePath(QStringLiteral("no/out.pdf")), "x");
    QVERIFY(!missing.ok());
    QCOMPARE(missing.error().kind, Error::Kind::Storage);
    QVERIFY(missing.error().message.contains(QStringLiteral("no/out.pdf")));
    QCOMPARE(writeWholeFile(folder.path(), "x").error().kind, Error::Kind::Refused);
    QCOMPARE(writeWholeFile(QStringLiteral("/dev/null"), "x").error().kind, Error::Kind::Refused);
  }

  void aLinkIsFollowed() {
    const QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("target.pdf"));
    const QString link = folder.filePath(QStringLiteral("link.pdf"));
    QVERIFY(writeWholeFile(target, "one").ok());
    QVERIFY(QFile::link(target, link));
    QVERIFY(writeWholeFile(link, "two").ok());
    QVERIFY(QFileInfo(link).isSymLink());
    QFile file(target);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("two"));
  }
};

QTEST_MAIN(PrintPaintingTest)
#include "print_painting_test.moc"
