#include "editor/reminder_draft.h"
#include "store/plist_reader.h"
#include "store/plist_writer.h"
#include "support/log_lines.h"
#include "support/test_environment.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace tockwise;

namespace {

ReminderDraft fullDraft(const QString& identifier = QStringLiteral("8C6D6A60-0000-4000")) {
  ReminderDraft draft;
  draft.identifier = identifier;
  draft.purpose = EditorPurpose::EditReminder;
  draft.reminderUUID = QStringLiteral("U-1");
  draft.reminderDate = {762854400.123456};
  draft.reminderText = QStringLiteral("Tea\n<b>ö</b> \U0001F375");
  draft.RTFData = QByteArray("bplist00\0\1\2", 11);
  draft.reminderInterval = {1, 2, 3, 4};
  draft.reminderExtra = {{false, true, false, true, true, true, false}, {9, 5, 17, 0}};
  draft.reminderOffset = {1, 0, 30};
  draft.reminderTask = {false, Task::Document, QStringLiteral("/home/me/plan.odt")};
  draft.smsState = true;
  draft.emailState = true;
  return draft;
}

class Folder {
 public:
  QString path() const { return m_environment.path(QStringLiteral("state/drafts")); }
  QString file(const QString& name) const { return path() + u'/' + name; }
  QStringList names() const { return QDir(path()).entryList(QDir::Files, QDir::Name); }
  void write(const QString& name, const QByteArray& bytes) const {
    QFile target(file(name));
    QVERIFY(target.open(QIODevice::WriteOnly) && target.write(bytes) == bytes.size());
  }
  QByteArray read(const QString& name) const {
    QFile source(file(name));
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
  }
  void setModified(const QString& name, int secondsSince1970) const {
    QFile target(file(name));
    QVERIFY(target.open(QIODevice::ReadWrite));
    QVERIFY(target.setFileTime(QDateTime::fromSecsSinceEpoch(secondsSince1970),
                               QFileDevice::FileModificationTime));
  }

 private:
  TestEnvironment m_environment;
};

} // namespace

class DraftStoreTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void initTestCase() { enableLogLines(); }

  void aDraftComesBackAsItWas() {
    Folder folder;
    ReminderDraft blank;
    blank.identifier = QStringLiteral("B");
    blank.reminderDate = kDistantFuture;
    QVERIFY(DraftStore(folder.path()).keep(fullDraft()));
    QVERIFY(DraftStore(folder.path()).keep(blank));
    folder.setModified(QStringLiteral("B.plist"), 1000);
    QVERIFY(DraftStore(folder.path()).kept() == std::vector({blank, fullDraft()}));
  }

  void everyPurposeComesBack() {
    Folder folder;
    for (const auto purpose : {EditorPurpose::NewReminder, EditorPurpose::RecentReminder,
                               EditorPurpose::RemindAgain, EditorPurpose::EditReminder}) {
      ReminderDraft draft = fullDraft();
      draft.purpose = purpose;
      QVERIFY(DraftStore(folder.path()).keep(draft));
      QVERIFY(DraftStore(folder.path()).kept().front().purpose == purpose);
    }
  }

  void draftsAreForTheUserAlone() {
    Folder folder;
    QVERIFY(DraftStore(folder.path()).keep(fullDraft()));
    constexpr auto kReadWrite =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    QCOMPARE(QFile::permissions(folder.file(folder.names().front())), kReadWrite);
    QCOMPARE(QFile::permissions(folder.path()), kReadWrite | QFile::ExeOwner | QFile::ExeUser);
  }

  void keepingAgainReplaces() {
    Folder folder;
    DraftStore store(folder.path());
    QVERIFY(store.keep(fullDraft()));
    ReminderDraft changed = fullDraft();
    changed.reminderText = QStringLiteral("Coffee");
    changed.reminderTask = {};
    QVERIFY(store.keep(changed));
    QVERIFY(store.kept() == std::vector{changed});
  }

  void theLeastLatelyKeptComesFirst() {
    Folder folder;
    DraftStore store(folder.path());
    for (const char* name : {"A", "B", "C"})
      QVERIFY(store.keep(fullDraft(QString::fromLatin1(name))));
    folder.setModified(QStringLiteral("A.plist"), 3000);
    folder.setModified(QStringLiteral("B.plist"), 1000);
    folder.setModified(QStringLiteral("C.plist"), 2000);
    QString order;
    for (const ReminderDraft& draft : store.kept())
      order += draft.identifier;
    QCOMPARE(order, QStringLiteral("BCA"));
  }

  void aRemovedDraftIsGone() {
    Folder folder;
    DraftStore store(folder.path());
    QVERIFY(store.keep(fullDraft(QStringLiteral("A"))));
    QVERIFY(store.keep(fullDraft(QStringLiteral("B"))));
    store.remove(QStringLiteral("A"));
    store.remove(QStringLiteral("A"));
    QCOMPARE(folder.names(), QStringList{QStringLiteral("B.plist")});
  }

  void withoutAFolderThereIsNothing() {
    Folder folder;
    DraftStore store(folder.path());
    QVERIFY(store.kept().empty());
    store.remove(QStringLiteral("A"));
    QVERIFY(!QFile::exists(folder.path()));
  }

  void aDamagedDraftIsPutAside_data() {
    QTest::addColumn<QByteArray>("bytes");
    const auto changed = [](const QString& key, const Value& value) {
      Folder folder;
      (void)DraftStore(folder.path()).keep(fullDraft());
      const auto reader = plist::Reader::open(folder.read(folder.names().front()));
      auto stored = *reader->value(reader->root()).get<Value::Dictionary>();
      std::erase_if(stored, [&](const auto& entry) { return entry.first == key; });
      if (!value.isNull())
        stored.emplace_back(key, value);
      plist::Writer writer;
      return writer.finish(writer.value(Value(stored)));
    };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("foreign") << QByteArray("tea");
    QTest::newRow("cut off") << changed(QStringLiteral("x"), {}).left(200);
    QTest::newRow("no version") << changed(QStringLiteral("version"), {});
    QTest::newRow("no text") << changed(QStringLiteral("reminderText"), {});
    QTest::newRow("no purpose") << changed(QStringLiteral("purpose"), QStringLiteral("old"));
    QTest::newRow("date") << changed(QStringLiteral("reminderDate"), QStringLiteral("today"));
    QTest::newRow("days") << changed(QStringLiteral("days"), Value(Value::Array{true}));
    QTest::newRow("half a task") << changed(QStringLiteral("taskType"), {});
  }
  void aDamagedDraftIsPutAside() {
    QFETCH(QByteArray, bytes);
    Folder folder;
    DraftStore store(folder.path());
    QVERIFY(store.keep(fullDraft(QStringLiteral("B"))));
    for (const char* aside : {"A.plist.damaged", "A.plist.damaged-1"}) {
      folder.write(QStringLiteral("A.plist"), bytes);
      QTest::ignoreMessage(QtInfoMsg,
                           QRegularExpression(QStringLiteral("^Cannot read the draft .*A.plist: "
                                                             ".*; it is kept as .*damaged")));
      QVERIFY(store.kept() == std::vector{fullDraft(QStringLiteral("B"))});
      QCOMPARE(folder.read(QString::fromLatin1(aside)), bytes);
      QVERIFY(!QFile::exists(folder.file(QStringLiteral("A.plist"))));
    }
    QCOMPARE(store.kept().size(), size_t(1));
  }

  void aNewerVersionsDraftStays() {
    Folder folder;
    DraftStore store(folder.path());
    QVERIFY(store.keep(fullDraft()));
    plist::Writer writer;
    const QByteArray newer = writer.finish(
        writer.value(Value(Value::Dictionary{{QStringLiteral("version"), qint64(2)}})));
    folder.write(QStringLiteral("N.plist"), newer);
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("newer version")));
    QCOMPARE(store.kept().size(), size_t(1));
    QCOMPARE(folder.read(QStringLiteral("N.plist")), newer);
  }

  void onlyNamesOfFilesAreTaken() {
    Folder folder;
    DraftStore store(folder.path());
    for (const char* name : {"", "../A", "a/b", ".", "a.b", "-a"}) {
      const auto kept = store.keep(fullDraft(QString::fromLatin1(name)));
      QVERIFY(!kept);
      QCOMPARE(int(kept.error().kind), int(Error::Kind::Refused));
      store.remove(QString::fromLatin1(name));
    }
    QVERIFY(!QFile::exists(folder.path()));
  }

  void aFolderThatCannotBeMadeIsReported() {
    TestEnvironment environment;
    QFile(environment.path(QStringLiteral("state"))).open(QIODevice::WriteOnly);
    const auto kept =
        DraftStore(environment.path(QStringLiteral("state/drafts"))).keep(fullDraft());
    QVERIFY(!kept);
    QCOMPARE(int(kept.error().kind), int(Error::Kind::Storage));
  }

  void theUsersFolderLiesBesideTheBackups() {
    TestEnvironment environment;
    QCOMPARE(DraftStore::folderOfUser(),
             environment.path(QStringLiteral("home/.local/state/tockwise/drafts")));
  }
};

QTEST_GUILESS_MAIN(DraftStoreTest)
#include "draft_store_test.moc"
