// Which words of the command line are documents, and which files they name.
#include "cli/document_words.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QUrl>

#include <memory>

using namespace tockwise;

namespace {
QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}
} // namespace

class DocumentWordsTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  QString m_folder;

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_folder = m_environment->path(text("here"));
    QVERIFY(QDir().mkpath(m_folder + text("/folder.tockwise")));
    QVERIFY(QDir::setCurrent(m_folder));
    for (const char* name : {"a.tockwise", "notes.txt", "list"}) {
      QFile file(text(name));
      QVERIFY(file.open(QIODevice::WriteOnly));
    }
  }
  void cleanup() {
    QVERIFY(QDir::setCurrent(text("/")));
    m_environment.reset();
  }

  void aWordIsADocumentWhenItIsNoCommand_data() {
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("isDocument");
    QTest::newRow("document") << text("a.tockwise") << true;
    QTest::newRow("missing document") << text("b.tockwise") << true;
    QTest::newRow("another file") << text("notes.txt") << true;
    QTest::newRow("file URL") << text("file:///nowhere") << true;
    QTest::newRow("command") << text("list") << false; // though there is a file of that name
    QTest::newRow("its file") << text("./list") << true;
    QTest::newRow("no command") << text("lsit") << false;
    QTest::newRow("option") << text("--help") << false;
    QTest::newRow("help") << text("help") << false;
    QTest::newRow("empty") << QString() << false;
  }
  void aWordIsADocumentWhenItIsNoCommand() {
    QFETCH(QString, word);
    QFETCH(bool, isDocument);
    QCOMPARE(nameDocuments({word}), isDocument);
  }

  void pathsCountFromTheFolderOfTheCaller() {
    const auto paths = documentPaths(
        {text("a.tockwise"), text("../here/notes.txt"),
         QString::fromLatin1(QUrl::fromLocalFile(m_folder + text("/list")).toEncoded())});
    QVERIFY(paths.ok());
    QCOMPARE(paths->size(), 3);
    QCOMPARE(paths->at(0), m_folder + text("/a.tockwise"));
    QCOMPARE(QDir::cleanPath(paths->at(1)), m_folder + text("/notes.txt"));
    QVERIFY(QDir::isAbsolutePath(paths->at(1)));
    QCOMPARE(paths->at(2), m_folder + text("/list"));
  }

  void whatCannotBeOpenedIsAnError_data() {
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("kind");
    QTest::newRow("missing") << text("b.tockwise") << int(Error::Kind::NotFound);
    QTest::newRow("missing URL") << text("file:///no/such/file") << int(Error::Kind::NotFound);
    QTest::newRow("another machine") << text("file://server/a") << int(Error::Kind::Refused);
    QTest::newRow("folder") << text("folder.tockwise") << int(Error::Kind::Refused);
  }
  void whatCannotBeOpenedIsAnError() {
    QFETCH(QString, word);
    QFETCH(int, kind);
    const auto paths = documentPaths({text("a.tockwise"), word});
    QVERIFY(!paths.ok());
    QCOMPARE(int(paths.error().kind), kind);
    QVERIFY(!paths.error().message.contains(u'\n'));
  }
};

QTEST_GUILESS_MAIN(DocumentWordsTest)
#include "document_words_test.moc"
