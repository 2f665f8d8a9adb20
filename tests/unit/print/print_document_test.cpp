// The texts of printed documents, to the letter.
#include "print/print_document.h"
#include "store/reminder_queue.h"

#include <QTest>

using namespace tockwise;

namespace {

const QString kSeparator =
    QStringLiteral("-----------------------------------------------------------------");

Date date(int day, int hour, int minute) {
  return Calendar::current().dateWithYear(2025, 3, day, hour, minute, 0);
}

} // namespace

class PrintDocumentTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void anEmptyDocumentIsItsHeading() {
    QCOMPARE(plainPrintHeading(), QStringLiteral("Reminders \n\n"));
    QCOMPARE(richPrintHeading(), QStringLiteral("Reminders \n"));
  }

  void theSeparatorIsOf65Hyphens() { QCOMPARE(kSeparator, QString(65, u'-')); }

  void aPlainPieceIsSeparatorDateAndTextWithTheirBlanks() {
    const PrintEntry entry{date(4, 9, 5), QStringLiteral("Tea"), {}};
    QCOMPARE(plainPrintPiece(entry, Calendar::current()),
             kSeparator + QStringLiteral("\nTue 3/4/2025 09:05 AM\n \nTea\n \n"));
  }

  void aRichPieceEndsBeforeTheText() {
    QCOMPARE(richPrintPiece(date(9, 21, 30), Calendar::current()),
             u'\n' + kSeparator + QStringLiteral("\nSun 3/9/2025 09:30 PM\n \n"));
  }

  void aTextIsTakenAsItIs() {
    const QString text = QStringLiteral("<b>%1</b> &amp; %2\n%@ 100 %");
    const PrintEntry entry{date(4, 9, 5), text, {}};
    QVERIFY(plainPrintPiece(entry, Calendar::current())
                .endsWith(QStringLiteral("\n \n") + text + QStringLiteral("\n \n")));
  }

  void entriesStandInTheOrderOfTheQueue() {
    ReminderQueue queue;
    for (const auto* words : {u"b", u"a", u"c"}) {
      Reminder reminder;
      reminder.reminderUUID = UUIDString();
      reminder.reminderDescriptions = QString::fromUtf16(words);
      reminder.reminderQueue = date(4, 9, int(queue.count()));
      reminder.reminderRTFs = QByteArray::number(queue.count());
      queue.append(reminder);
    }
    const auto entries = entriesOfQueue(queue);
    QCOMPARE(entries.size(), size_t(3));
    QCOMPARE(entries[0].description, QStringLiteral("b"));
    QCOMPARE(entries[1].description, QStringLiteral("a"));
    QCOMPARE(entries[2].date.seconds, date(4, 9, 2).seconds);
    QCOMPARE(entries[2].RTFData, QByteArray("2"));
  }

  void anEmptyQueueHasNoEntries() { QVERIFY(entriesOfQueue(ReminderQueue()).empty()); }
};

QTEST_GUILESS_MAIN(PrintDocumentTest)
#include "print_document_test.moc"
