#include "store/preferences_store.h"
#include "support/file_size_limit.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

const QString kKey = QStringLiteral("email");

QStringList filesIn(const QString& folder) {
  return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

/// A section of one key.
class OneKeySection final : public StoreSection {
 public:
  QStringList keys() const override { return {text("section")}; }
  quint64 revision() const override { return m_revision; }
  bool isEmpty() const override { return false; }
  Reading readFrom(const plist::Reader& reader) override {
    const auto found = reader.find(reader.root(), u"section");
    m_value = found ? reader.value(*found) : Value();
    ++m_revision;
    return {};
  }
  void writeTo(plist::Writer& writer, std::vector<plist::Writer::Object>& keys,
               std::vector<plist::Writer::Object>& values) const override {
    keys.push_back(writer.string(text("section")));
    values.push_back(writer.value(m_value));
  }
  const Value& value() const { return m_value; }
  void set(Value value) {
    m_value = std::move(value);
    ++m_revision;
  }

 private:
  Value m_value;
  quint64 m_revision = 0;
};

} // namespace

class PreferencesStoreTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Date::fromUnixSeconds(1741079742)};
  PreferencesStore::Paths m_paths;
  OneKeySection m_section;

  std::unique_ptr<PreferencesStore> open() {
    auto store = PreferencesStore::open(m_paths, m_clock);
    if (!store)
      return nullptr;
    (*store)->attach(m_section);
    return std::move(*store);
  }

  void write(const QString& value) {
    const auto store = open();
    store->setValue(kKey, value);
    store->synchronize();
    QVERIFY(store->isSaved());
  }

  // As another process would.
  void writeByOthers(const Value::Dictionary& dictionary) {
    plist::Writer writer;
    const QByteArray bytes = writer.finish(writer.value(Value(dictionary)));
    QFile file(m_paths.file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_paths = PreferencesStore::Paths::ofUser();
    m_section = OneKeySection();
    m_clock.set(Date::fromUnixSeconds(1741079742));
  }

  void valuesSurvive() {
    write(text("me@example.org"));
    const auto store = open();
    QCOMPARE(store->string(kKey), text("me@example.org"));
    QVERIFY(store->isSet(kKey));
  }

  void aMissingKeyReadsAsItsDefault() {
    const auto store = open();
    store->registerDefaults({{kKey, Value(text("default"))}});
    QCOMPARE(store->string(kKey), text("default"));
    QVERIFY(!store->isSet(kKey));
    store->setValue(kKey, Value(text("set")));
    store->setValue(kKey, Value());
    QCOMPARE(store->string(kKey), text("default"));
  }

  void fileAndFolderArePrivate() {
    write(text("x"));
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(m_paths.file).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, mode_t(0600));
    QCOMPARE(::stat(QFile::encodeName(QFileInfo(m_paths.file).path()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, mode_t(0700));
  }

  void aFolderThatIsThereIsMadePrivate() {
    const QByteArray folder = QFile::encodeName(QFileInfo(m_paths.file).path());
    QDir().mkpath(QFileInfo(m_paths.file).path());
    QCOMPARE(::chmod(folder.constData(), 0755), 0);
    write(text("x"));
    struct stat status = {};
    QCOMPARE(::stat(folder.constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, mode_t(0700));
  }

  void nothingIsWrittenWhenNothingChanged() {
    write(text("x"));
    const auto store = open();
    store->synchronize();
    store->setValue(kKey, text("x"));
    store->synchronize();
    QCOMPARE(store->bytesWritten(), 0);
  }

  void aSecondStoreIsRefusedUntilTheFirstIsGone() {
    auto first = open();
    const auto second = PreferencesStore::open(m_paths, m_clock);
    QVERIFY(!second);
    QCOMPARE(second.error().kind, Error::Kind::Busy);
    first.reset();
    QVERIFY(open() != nullptr);
  }

  void theLockDiesWithItsHolder() {
    int ready[2];
    QCOMPARE(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
      const auto store = PreferencesStore::open(m_paths, m_clock);
      (void)!::write(ready[1], "r", 1);
      ::pause();
      ::_exit(store.ok() ? 0 : 1);
    }
    char byte = 0;
    QCOMPARE(::read(ready[0], &byte, 1), ssize_t(1));
    QVERIFY(!PreferencesStore::open(m_paths, m_clock));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    QVERIFY(PreferencesStore::open(m_paths, m_clock).ok());
  }

  void aDamagedStoreIsPutAsideAndTheNewestGoodCopyTaken() {
    write(text("first"));
    m_clock.advance(86400);
    write(text("second")); // keeps a copy of "first"
    QDir(m_paths.backups).entryList();
    QFile file(m_paths.file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("bplist00 nonsense");
    file.close();

    auto store = open();
    QVERIFY(store != nullptr);
    QCOMPARE(store->string(kKey), text("first"));
    QVERIFY(QFileInfo::exists(store->notice().damagedKeptAs));
    QVERIFY(store->notice().damagedKeptAs.startsWith(m_paths.file + text(".damaged-")));
    QVERIFY(store->notice().restoredFrom.startsWith(m_paths.backups));
    store->synchronize();
    store.reset();
    store = open();
    QVERIFY(store->notice().isEmpty());
    QCOMPARE(store->string(kKey), text("first"));
  }

  void aDamagedCopyIsPassedOver() {
    write(text("first"));
    m_clock.advance(86400);
    write(text("second"));
    QVERIFY(QFile(m_paths.backups + text("/com.quillstone.Tockwise-29990101-000000.plist"))
                .open(QIODevice::WriteOnly));
    QVERIFY(QFile::resize(m_paths.file, 20));
    QCOMPARE(open()->string(kKey), text("first"));
  }

  void aDamagedStoreWithoutCopiesStartsEmpty() {
    write(text("first"));
    QVERIFY(QFile::resize(m_paths.file, 20));
    const auto store = open();
    QVERIFY(!store->isSet(kKey));
    QVERIFY(!store->notice().isEmpty());
    QVERIFY(store->notice().restoredFrom.isEmpty());
  }

  void oneCopyADayIsKeptAndTenInAll() {
    for (int day = 0; day < 14; ++day) {
      write(QString::number(2 * day));
      write(QString::number(2 * day + 1));
      m_clock.advance(86400);
    }
    QCOMPARE(filesIn(m_paths.backups).size(), 10);
  }

  void aNewVersionsFirstWriteKeepsACopy() {
    const auto store = open();
    const auto writeVersion = [&](const char* version) {
      store->setValue(text("dataVersion"), text(version));
      store->synchronize();
    };
    writeVersion("1");
    writeVersion("1");
    store->setValue(kKey, text("x"));
    store->synchronize();
    const qsizetype copies = filesIn(m_paths.backups).size();
    writeVersion("2");
    QCOMPARE(filesIn(m_paths.backups).size(), copies + 1);
  }

  void aFullDiskLeavesTheOldFileWholeAndIsToldOnce() {
    write(text("old"));
    auto store = open();
    int failures = 0;
    store->onWriteFailure = [&](const Error& error) {
      ++failures;
      QCOMPARE(error.kind, Error::Kind::Storage);
      QVERIFY(!error.message.isEmpty());
    };
    store->setValue(kKey, QString(100000, u'x'));
    {
      const FileSizeLimit limit(1000);
      store->synchronize();
      store->synchronize();
    }
    QCOMPARE(failures, 1);
    QVERIFY(!store->isSaved());
    QCOMPARE(filesIn(QFileInfo(m_paths.file).path()).size(), 2); // the store and its lock
    store->synchronize();
    QVERIFY(store->isSaved());
    {
      const FileSizeLimit limit(1000);
      store->setValue(kKey, QString(100000, u'y'));
      store->synchronize();
    }
    QCOMPARE(failures, 2);
    store.reset();
    QCOMPARE(open()->string(kKey), QString(100000, u'x'));
  }

  void aLostFolderIsMadeAgain() {
    write(text("old"));
    const auto store = open();
    QVERIFY(QDir(QFileInfo(m_paths.file).path()).removeRecursively());
    store->synchronize();
    QVERIFY(store->isSaved());
    QVERIFY(QFileInfo::exists(m_paths.file));
  }

  void aFolderThatCannotBeMadeIsAnError() {
    QDir().mkpath(QFileInfo(QFileInfo(m_paths.file).path()).path());
    QVERIFY(QFile(QFileInfo(m_paths.file).path()).open(QIODevice::WriteOnly));
    const auto store = PreferencesStore::open(m_paths, m_clock);
    QVERIFY(!store);
    QCOMPARE(store.error().kind, Error::Kind::Storage);
  }

  void changesOfAnotherProcessAreAdopted() {
    write(text("old"));
    const auto store = open();
    int changes = 0;
    store->onChangedByOthers = [&] { ++changes; };
    store->setValue(text("mine"), Value(1));
    writeByOthers({{kKey, Value(text("theirs"))},
                   {text("mine"), Value(2)},
                   {text("section"), Value(text("theirs"))}});
    store->synchronize();
    QCOMPARE(changes, 1);
    QCOMPARE(store->string(kKey), text("theirs"));
    QCOMPARE(store->integer(text("mine")), 1);
    QCOMPARE(m_section.value(), Value(text("theirs")));
    QVERIFY(store->isSaved());
  }

  void aSectionChangedOnBothSidesIsOursAndTheirsIsKept() {
    write(text("old"));
    const auto store = open();
    m_section.set(Value(text("ours")));
    writeByOthers({{text("section"), Value(text("theirs"))}});
    store->synchronize();
    QCOMPARE(m_section.value(), Value(text("ours")));
    bool kept = false;
    for (const QString& name : filesIn(m_paths.backups)) {
      QFile copy(m_paths.backups + u'/' + name);
      QVERIFY(copy.open(QIODevice::ReadOnly));
      kept = kept || copy.readAll().contains("theirs");
    }
    QVERIFY(kept);
  }

  void aStoreThatAnotherProcessDamagedIsWrittenAgain() {
    write(text("old"));
    auto store = open();
    QFile file(m_paths.file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("nonsense");
    file.close();
    int notices = 0;
    store->onNotice = [&](const StoreNotice& notice) {
      ++notices;
      QVERIFY(QFileInfo::exists(notice.damagedKeptAs));
    };
    store->synchronize();
    QVERIFY(file.exists()); // it may be half of what somebody is writing
    QCOMPARE(notices, 0);
    m_clock.advance(3);
    store->synchronize();
    QCOMPARE(notices, 1);
    QVERIFY(store->isSaved());
    QVERIFY(filesIn(m_paths.backups).isEmpty());
    store.reset();
    QCOMPARE(open()->string(kKey), text("old"));
  }

  void aFileThatIsWrittenInPlaceIsWaitedFor() {
    write(text("old"));
    const auto store = open();
    store->setValue(text("mine"), Value(1));
    QVERIFY(QFile::resize(m_paths.file, 0));
    store->synchronize();
    QCOMPARE(QFileInfo(m_paths.file).size(), 0);
    writeByOthers({{kKey, Value(text("theirs"))}});
    store->synchronize();
    QCOMPARE(store->string(kKey), text("theirs"));
    QVERIFY(store->isSaved());
  }

  void copiesAreNamedTheSameInEveryLocale() {
    qputenv("LC_ALL", "th_TH.UTF-8");
    write(text("first"));
    write(text("second"));
    qunsetenv("LC_ALL");
    QCOMPARE(filesIn(m_paths.backups),
             QStringList{text("com.quillstone.Tockwise-20250304-091542-000.plist")});
  }

  void aLinkedStoreIsWrittenThroughTheLink() {
    write(text("old"));
    const QString target = m_environment->path(text("elsewhere.plist"));
    QVERIFY(QFile::rename(m_paths.file, target));
    QVERIFY(QFile::link(target, m_paths.file));
    write(text("new"));
    QVERIFY(QFileInfo(m_paths.file).isSymLink());
    QCOMPARE(open()->string(kKey), text("new"));
  }

  void theFileOfAKilledWriterIsReplaced() {
    write(text("old"));
    QFile left(m_paths.file + text(".writing"));
    QVERIFY(left.open(QIODevice::WriteOnly));
    left.write("half");
    left.close();
    write(text("new"));
    QVERIFY(!left.exists());
    QCOMPARE(open()->string(kKey), text("new"));
  }
};

QTEST_GUILESS_MAIN(PreferencesStoreTest)
#include "preferences_store_test.moc"
