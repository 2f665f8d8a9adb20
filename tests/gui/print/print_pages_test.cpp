// The text of documents that are printed, and its formats.
#include "print_vocabulary.h"
#include "support/log_lines.h"

#include <QFile>
#include <QGuiApplication>
#include <QPalette>
#include <QTest>
#include <QTextBlock>

using namespace tockwise;

namespace {

const QString kSeparator(65, u'-');
const QString kDate = QStringLiteral("Tue 3/4/2025 09:05 AM");

QString textOfPages(PrintContents contents) {
  PrintPages pages(std::move(contents), a4());
  pages.complete();
  return pages.document().toPlainText();
}

} // namespace

class PrintPagesTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() { QGuiApplication::setPalette(QPalette()); }
  void cleanup() { QGuiApplication::setPalette(QPalette()); }

  void anEmptyQueueIsTheHeadingAndABlankLine() {
    QCOMPARE(textOfPages(plain({})), QStringLiteral("Reminders \n\n"));
    QCOMPARE(textOfPages(richQueue({})), QStringLiteral("Reminders \n"));
  }

  void twoPlainRemindersAreTheHeadingAndAPieceEach() {
    QCOMPARE(textOfPages(plain({entry(QStringLiteral("Tea")), entry(QStringLiteral("Bread"))})),
             QStringLiteral("Reminders \n\n") + kSeparator + u'\n' + kDate +
                 QStringLiteral("\n \nTea\n \n") + kSeparator + u'\n' + kDate +
                 QStringLiteral("\n \nBread\n \n"));
  }

  void aParagraphWithoutEndIsCutWhereAWordEnds() {
    const QString word = QStringLiteral("12345678 ");
    const QString endless = word.repeated(2000);
    const QStringList lines = textOfPages(plain({entry(endless)})).split(u'\n');
    QString joined;
    for (const QString& line : lines) {
      QVERIFY(line.size() <= 5000);
      QVERIFY(!line.contains(word) || line.endsWith(word));
      joined += line;
    }
    QVERIFY(joined.contains(endless)); // and nothing is lost or added
  }

  void cutsKeepTheFormatsWhereTheyAre() {
    AttributedText text;
    for (int i = 0; i < 30; ++i) {
      text.append(QString(999, u'a'), {});
      text.append(QString(777, u'b'), coloured(0xffff0000));
    }
    PrintPages pages(richQueue({entry(QStringLiteral("Tea"), archiveText(text))}), a4());
    pages.complete();
    qsizetype found = 0;
    for (QTextBlock block = pages.document().begin(); block.isValid(); block = block.next()) {
      for (auto each = block.begin(); !each.atEnd(); ++each) {
        const QTextFragment fragment = each.fragment();
        const bool isRed = fragment.charFormat().foreground().color() == QColor(Qt::red);
        QCOMPARE(fragment.text().contains(u'b'), isRed);
        found += fragment.text().count(u'b');
      }
    }
    QCOMPARE(found, 30 * 777);
  }

  // As one word for Qt it would run into the suite's time limit.
  void aWordWithoutEndIsLaidOutAllTheSame() {
    PrintPages pages(plain({entry(QString(1'000'000, u'x'))}), a4());
    pages.complete();
    QVERIFY(pages.pageCount() > 125);
  }

  void thePlainFormTakesNoRichText() {
    const QByteArray archive = archiveText(rich(QStringLiteral("rich")));
    QVERIFY(textOfPages(plain({entry(QStringLiteral("plain"), archive)}))
                .contains(QStringLiteral("plain")));
  }

  void richRemindersAreTheirOwnTexts() {
    const QByteArray archive = archiveText(rich(QStringLiteral("Tea, rich")));
    const LogLines log;
    QCOMPARE(textOfPages(richQueue({entry(QStringLiteral("Tea"), archive)})),
             QStringLiteral("Reminders \n\n") + kSeparator + u'\n' + kDate +
                 QStringLiteral("\n \nTea, rich"));
    QCOMPARE(log.lines(), QStringList());
  }

  void withoutRichTextTheQueueTakesThePlainOne_data() {
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<QStringList>("logged");
    const QStringList line{QStringLiteral("No data to unarchive")};
    QTest::newRow("none") << QByteArray() << QStringList();
    QTest::newRow("damaged") << QByteArray("not an archive") << line;
    QFile file(
        QStringLiteral(TOCKWISE_TEST_DATA "/archives/keyed-synthetic/apple_attrstr_multi.plist"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QTest::newRow("another object") << file.readAll() << line;
  }
  void withoutRichTextTheQueueTakesThePlainOne() {
    QFETCH(const QByteArray, archive);
    const LogLines log;
    QCOMPARE(textOfPages(richQueue({entry(QStringLiteral("Tea"), archive)})),
             QStringLiteral("Reminders \n\n") + kSeparator + u'\n' + kDate +
                 QStringLiteral("\n \nTea"));
    QTEST(log.lines(), "logged");
  }

  void withoutRichTextAnAlertIsItsDateOnly_data() {
    withoutRichTextTheQueueTakesThePlainOne_data();
  }
  void withoutRichTextAnAlertIsItsDateOnly() {
    QFETCH(const QByteArray, archive);
    const LogLines log;
    QCOMPARE(textOfPages(alerts({entry(QStringLiteral("Tea"), archive)})),
             QStringLiteral("Reminders \n\n") + kSeparator + u'\n' + kDate +
                 QStringLiteral("\n \n"));
    QTEST(log.lines(), "logged");
  }

  void noOpenAlertIsTheHeading() {
    QCOMPARE(textOfPages(alerts({})), QStringLiteral("Reminders \n"));
  }

  void markupIsText() {
    const QString markup = QStringLiteral("<b>bold</b><img src='x'>&amp;");
    QVERIFY(textOfPages(plain({entry(markup)})).contains(markup));
    QVERIFY(textOfPages(richQueue({entry(markup)})).contains(markup));
  }

  void whatFollowsARichTextIsInNoneOfItsFormats() {
    TextAttributes attributes;
    attributes.color = TextColor{0xffff0000, false, {}};
    attributes.font = TextFont{QStringLiteral("Helvetica-Bold"), 30, {}};
    attributes.paragraph = ParagraphStyle();
    attributes.paragraph->alignment = TextAlignment::Right;
    const QByteArray archive = archiveText(rich(QStringLiteral("Tea"), attributes));
    PrintPages pages(
        richQueue({entry(QStringLiteral("Tea"), archive), entry(QStringLiteral("plain")),
                   entry(QStringLiteral("Tea"), archive)}),
        a4());
    pages.complete();
    int rightAligned = 0;
    for (QTextBlock block = pages.document().begin(); block.isValid(); block = block.next()) {
      const bool isRich = block.text() == u"Tea";
      rightAligned += isRich ? 1 : 0;
      QCOMPARE(block.blockFormat().alignment().testFlag(Qt::AlignRight), isRich);
      for (auto at = block.begin(); !at.atEnd(); ++at) {
        QCOMPARE(at.fragment().charFormat().fontPointSize() == 30, isRich);
        QCOMPARE(at.fragment().charFormat().hasProperty(QTextFormat::ForegroundBrush), isRich);
      }
    }
    QCOMPARE(rightAligned, 2);
  }

  void listsAndTheirMarkersAreKept() {
    TextAttributes attributes;
    attributes.paragraph = ParagraphStyle();
    attributes.paragraph->headIndent = 36;
    attributes.paragraph->lists = {QStringLiteral("{disc}")};
    const QByteArray archive =
        archiveText(rich(QStringLiteral("\t•\tmilk\n\t•\tbread"), attributes));
    QVERIFY(textOfPages(richQueue({entry(QString(), archive)}))
                .endsWith(QStringLiteral("\t•\tmilk\n\t•\tbread")));
  }
};

QTEST_MAIN(PrintPagesTest)
#include "print_pages_test.moc"
