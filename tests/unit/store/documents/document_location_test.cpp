// Where a document lies, from what a desktop or a user calls it.
#include "store/documents/document_location.h"

#include <QTest>

using namespace tockwise;

class DocumentLocationTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aFileURLNamesAPath_data() {
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("path"); // null: none on this machine
    const auto row = [](const char* name, const char* url, const char* path) {
      QTest::newRow(name) << QString::fromUtf8(url) << (path ? QString::fromUtf8(path) : QString());
    };
    row("plain", "file:///home/me/a.tockwise", "/home/me/a.tockwise");
    row("localhost", "file://localhost/home/me/a.tockwise", "/home/me/a.tockwise");
    row("without slashes", "file:/home/me/a.tockwise", "/home/me/a.tockwise");
    row("capitals", "FILE:///a", "/a");
    row("escaped", "file:///home/me/%C3%A9%20%25%23%3F.tockwise", "/home/me/\u00e9 %#?.tockwise");
    row("dots", "file:///home/../etc//a", "/etc/a");
    row("another machine", "file://server/home/me/a.tockwise", nullptr);
    row("another scheme", "https://example.org/a.tockwise", nullptr);
    row("a path", "/home/me/a.tockwise", nullptr);
    row("nothing", "", nullptr);
    row("relative", "file:a.tockwise", nullptr);
    row("a zero", "file:///a%00b", nullptr);
    row("a fragment", "file:///a#b", nullptr);
    row("damaged", "file:///a%zz", nullptr);
  }
  void aFileURLNamesAPath() {
    QFETCH(QString, url);
    QFETCH(QString, path);
    const auto found = localPathOf(url);
    QCOMPARE(found.has_value(), !path.isNull());
    QCOMPARE(found.value_or(QString()), path);
  }

  void theSuffixIsAddedOnce() {
    QCOMPARE(withDocumentSuffix(QStringLiteral("/a")), QStringLiteral("/a.tockwise"));
    QCOMPARE(withDocumentSuffix(QStringLiteral("/a.tockwise")), QStringLiteral("/a.tockwise"));
    QVERIFY(hasDocumentSuffix(QStringLiteral("/a.Tockwise")));
    QVERIFY(!hasDocumentSuffix(QStringLiteral("/tockwise")));
    QVERIFY(!hasDocumentSuffix(QStringLiteral("/a.tockwise.bak")));
  }
};

QTEST_APPLESS_MAIN(DocumentLocationTest)
#include "document_location_test.moc"
