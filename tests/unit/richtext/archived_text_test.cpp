// Archives through a document and back: every fixture, and texts of our own.
#include "richtext/text_document.h"
#include "support/archive_json.h"
#include "support/random_text.h"

#include <QFileInfo>
#include <QTest>
#include <QTextBlock>

using namespace tockwise;

namespace {

QString text(const char* latin) {
  return QString::fromLatin1(latin);
}

AttributedText decoded(const QByteArray& archive) {
  const auto text = unarchiveText(archive);
  return text ? text.value().text : AttributedText();
}

} // namespace

class ArchivedTextTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void fixturesSurviveADocument_data() {
    QTest::addColumn<QString>("path");
    for (const char* folder : {"keyed-gnustep", "keyed-synthetic", "keyed-genuine"}) {
      for (const QString& path : archiveFixtures(text(folder), text("*.plist"))) {
        if (expectedOf(path).find(u"$attributed"))
          QTest::newRow(qPrintable(text(folder) + u'/' + QFileInfo(path).fileName())) << path;
      }
    }
  }

  void fixturesSurviveADocument() {
    QFETCH(QString, path);
    AttributedText original = decoded(readFixture(path));
    QTextDocument document;
    loadText(original, document);
    const AttributedText read = textOf(document);
    original.joinEqualRuns();
    QVERIFY(read == original);
    const AttributedText again = decoded(archiveText(read));
    QCOMPARE(difference(describe(original), describe(again)), QString());
  }

  void anEditInAFixtureLeavesTheRest_data() { fixturesSurviveADocument_data(); }
  void anEditInAFixtureLeavesTheRest() {
    QFETCH(QString, path);
    AttributedText original = decoded(readFixture(path));
    original.joinEqualRuns();
    QTextDocument document;
    loadText(original, document);
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(text("\nmore"));
    const AttributedText edited = decoded(archiveText(textOf(document)));
    QCOMPARE(edited.text, original.text + text("\nmore"));
    // The last run goes on, the others are what they were.
    for (size_t i = 0; i + 1 < original.runs.size(); ++i) {
      AttributedText before = original;
      AttributedText after = original;
      before.runs = {original.runs[i]};
      after.runs = {edited.runs[i]};
      QCOMPARE(difference(describe(before), describe(after)), QString());
    }
  }

  void onlyATextStorageIsLoaded() {
    QTextDocument document;
    document.setPlainText(text("before"));
    QVERIFY(!loadArchivedText("no archive", document));
    QCOMPARE(document.toPlainText(), text("before"));
    QVERIFY(loadArchivedText(archiveText(textWith(text("after"))), document));
    QCOMPARE(document.toPlainText(), text("after"));
  }

  void randomTextsSurviveArchiveAndDocument() {
    for (quint32 seed = 0; seed < 100; ++seed) {
      const AttributedText original =
          decoded(archiveText(withoutOriginals(RandomText(seed).text())));
      QTextDocument document;
      loadText(original, document);
      const AttributedText again = decoded(archiveText(textOf(document)));
      QCOMPARE(again.text, original.text);
      QVERIFY2(withoutOriginals(again) == withoutOriginals(original),
               qPrintable(text("seed %1").arg(seed)));
    }
  }
};

QTEST_MAIN(ArchivedTextTest)
#include "archived_text_test.moc"
