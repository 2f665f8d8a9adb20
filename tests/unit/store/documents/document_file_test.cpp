// Documents on the disk: what is read, what is written, and what stays when that fails.
#include "store/documents/document_file.h"
#include "support/file_size_limit.h"
#include "support/ordinary_user.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

using namespace tockwise;

namespace {

void put(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly));
  QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray contentsOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
}

mode_t modeOf(const QString& path) {
  struct stat status = {};
  ::stat(QFile::encodeName(path).constData(), &status);
  return status.st_mode & 07777;
}

QStringList everythingIn(const QString& folder) {
  return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                QDir::NoDotAndDotDot);
}

} // namespace

class DocumentFileTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() {
    m_environment.emplace();
    m_folder = m_environment->path(QStringLiteral("documents"));
    QVERIFY(QDir().mkpath(m_folder));
  }

  void whatWasWrittenIsRead() {
    const QByteArray bytes(100000, 'x');
    QVERIFY(writeDocument(path("a.tockwise"), bytes).ok());
    QCOMPARE(*readDocument(path("a.tockwise")), bytes);
    QCOMPARE(everythingIn(m_folder), QStringList(QStringLiteral("a.tockwise")));
  }

  void aNewDocumentHasTheModeThatTheUmaskLeaves() {
    const mode_t before = ::umask(022);
    QVERIFY(writeDocument(path("public"), "x").ok());
    ::umask(027);
    QVERIFY(writeDocument(path("group"), "x").ok());
    ::umask(before);
    QCOMPARE(modeOf(path("public")), mode_t(0644));
    QCOMPARE(modeOf(path("group")), mode_t(0640));
  }

  void aReplacedDocumentKeepsItsMode() {
    put(path("a"), "old");
    QVERIFY(::chmod(QFile::encodeName(path("a")).constData(), 0664) == 0);
    const mode_t before = ::umask(077);
    const auto written = writeDocument(path("a"), "new");
    ::umask(before);
    QVERIFY(written.ok());
    QCOMPARE(contentsOf(path("a")), QByteArray("new"));
    QCOMPARE(modeOf(path("a")), mode_t(0664));
  }

  void aLinkIsFollowed() {
    put(path("real"), "old");
    QVERIFY(QFile::link(path("real"), path("link")));
    QVERIFY(writeDocument(path("link"), "new").ok());
    QVERIFY(QFileInfo(path("link")).isSymLink());
    QCOMPARE(contentsOf(path("real")), QByteArray("new"));
  }

  void theFoldersOfADocumentAreNotMade() {
    const auto written = writeDocument(path("nowhere/a"), "x");
    QVERIFY(!written.ok());
    QCOMPARE(written.error().kind, Error::Kind::NotFound);
    QVERIFY(written.error().message.startsWith(path("nowhere/a")));
  }

  void aDocumentThatCannotBeWrittenLeavesTheOldOneWhole() {
    put(path("a"), "old");
    const auto written = [this] {
      const FileSizeLimit limit(1000);
      return writeDocument(path("a"), QByteArray(5000, 'x'));
    }();
    QVERIFY(!written.ok());
    QCOMPARE(written.error().kind, Error::Kind::Storage);
    QVERIFY(written.error().message.startsWith(path("a")));
    QCOMPARE(contentsOf(path("a")), QByteArray("old"));
    QCOMPARE(everythingIn(m_folder), QStringList(QStringLiteral("a")));
  }

  void aDocumentThatMayNotBeWrittenIsNotReplaced() {
    put(path("a"), "old");
    QVERIFY(::chmod(QFile::encodeName(path("a")).constData(), 0444) == 0);
    const OrdinaryUser user({m_environment->path(QString()), m_folder});
    const auto written = writeDocument(path("a"), "new");
    QVERIFY(!written.ok());
    QCOMPARE(written.error().message, path("a") + QStringLiteral(": Permission denied"));
    QCOMPARE(contentsOf(path("a")), QByteArray("old"));
  }

  void aFolderIsNoDocument() {
    QVERIFY(!readDocument(m_folder).ok());
    QCOMPARE(readDocument(m_folder).error().message, m_folder + QStringLiteral(" is a folder"));
    QCOMPARE(writeDocument(m_folder, "x").error().message,
             m_folder + QStringLiteral(" is a folder"));
  }

  void pipesAndDevicesAreNotWaitedFor() {
    QVERIFY(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600) == 0);
    for (const QString& each : {path("pipe"), QStringLiteral("/dev/zero")}) {
      QCOMPARE(readDocument(each).error().message, each + QStringLiteral(" is no regular file"));
      QCOMPARE(writeDocument(each, "x").error().message,
               each + QStringLiteral(" is no regular file"));
    }
  }

  void aMissingDocumentIsNotFound() {
    const auto read = readDocument(path("a"));
    QCOMPARE(read.error().kind, Error::Kind::NotFound);
    QCOMPARE(read.error().message, path("a") + QStringLiteral(": No such file or directory"));
  }

  void aDocumentBeyondTheLimitIsRefusedUnread() {
    QFile file(path("large"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(kLargestDocument + 1)); // sparse: it takes no room
    const auto read = readDocument(path("large"));
    QCOMPARE(read.error().kind, Error::Kind::Refused);
    QCOMPARE(read.error().message, path("large") + QStringLiteral(" is larger than 256 MB"));
  }

 private:
  QString path(const char* name) const { return m_folder + u'/' + QString::fromUtf8(name); }

  std::optional<TestEnvironment> m_environment;
  QString m_folder;
};

QTEST_GUILESS_MAIN(DocumentFileTest)
#include "document_file_test.moc"
