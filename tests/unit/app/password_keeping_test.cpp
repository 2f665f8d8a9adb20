#include "prefs/password_keeping.h"
#include "store/kept_elsewhere.h"
#include "store/root_dictionary.h"
#include "store/store_backups.h"
#include "support/fakes.h"
#include "support/test_environment.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace tockwise;
using State = SecretStore::State;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

const QString kKey = text("passwordAD");
const QString kHere = text("Kept in Tockwise's own file, readable only by you, since %1.");
const QString kNoStore = kHere.arg(text("this desktop has no password store"));
const QString kRefused = kHere.arg(text("the desktop's password store did not take it"));
const QString kThere = text("Kept in the desktop's password store.");

class NoSection final : public StoreSection {
 public:
  QStringList keys() const override { return {}; }
  quint64 revision() const override { return 0; }
  bool isEmpty() const override { return false; }
  Reading readFrom(const plist::Reader&) override { return {}; }
  void writeTo(plist::Writer&, std::vector<plist::Writer::Object>&,
               std::vector<plist::Writer::Object>&) const override {}
};

} // namespace

class PasswordKeepingTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Date::fromUnixSeconds(1741079742)};
  PreferencesStore::Paths m_paths;
  NoSection m_section;
  std::unique_ptr<FakeSecretStore> m_secrets;
  std::unique_ptr<PreferencesStore> m_preferences;
  std::unique_ptr<PasswordKeeping> m_keeping;

  /// The program starts; the desktop's store is as it was left.
  void open() {
    m_keeping.reset();
    m_preferences.reset();
    auto store = PreferencesStore::open(m_paths, m_clock);
    QVERIFY(store.ok());
    m_preferences = std::move(*store);
    m_preferences->attach(m_section);
    m_preferences->registerDefaults({{kKey, Value(QString())}});
    m_keeping = std::make_unique<PasswordKeeping>(*m_preferences, *m_secrets);
  }
  void start() {
    open();
    m_keeping->start();
  }
  /// As the window and the command line do.
  void set(const char* password) {
    m_preferences->setValue(kKey, text(password));
    m_preferences->synchronize();
  }
  /// The file holds a password, as an older version left it.
  void leaveInFile(const char* password) {
    open();
    m_keeping.reset(); // older versions have none
    set(password);
    m_preferences.reset();
    m_secrets->calls.clear();
  }
  /// The secret store holds one, and the file says so.
  void leaveElsewhere(const char* password) {
    start();
    set(password);
    m_keeping.reset();
    m_preferences.reset();
    m_secrets = std::make_unique<FakeSecretStore>();
    m_secrets->secrets[kKey] = text(password);
  }
  QString password() const { return m_preferences->string(kKey); }
  QString inService() const {
    const auto found = m_secrets->secrets.find(kKey);
    return found == m_secrets->secrets.end() ? QString() : found->second;
  }
  /// What a program that starts now would find in the file; nothing when it is named as elsewhere.
  std::optional<QString> inFile() const {
    const auto reader = plist::readRootDictionary(m_paths.file);
    if (!reader || keptElsewhere(*reader).contains(kKey))
      return std::nullopt;
    const auto found = reader->find(reader->root(), kKey);
    return found ? reader->string(*found) : QString();
  }
  /// What would be left if the program were killed now.
  QString leftIfKilled() const { return inFile().value_or(inService()); }
  bool fileHolds(const char* bytes) const {
    QFile file(m_paths.file);
    return file.open(QIODevice::ReadOnly) && file.readAll().contains(bytes);
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_paths = PreferencesStore::Paths::ofUser();
    m_secrets = std::make_unique<FakeSecretStore>();
  }
  void cleanup() {
    m_keeping.reset();
    m_preferences.reset();
  }

  void withoutAPasswordTheStoreIsOnlyLookedAt() {
    start();
    QCOMPARE(m_secrets->calls, QStringList{text("look")});
    QCOMPARE(m_keeping->hint(), QString());
    m_keeping->fetch();
    QCOMPARE(m_secrets->calls, QStringList{text("look")});
    QVERIFY(m_keeping->isSettled());
  }

  void aNewPasswordGoesToTheStoreAndNeverIntoTheFile() {
    start();
    m_secrets->delays = true;
    set("s3cret");
    QCOMPARE(password(), text("s3cret"));
    QVERIFY(!fileHolds("s3cret"));
    QVERIFY(!m_keeping->isSettled());
    m_secrets->answerAll(); // written
    m_secrets->answerAll(); // and read again
    QVERIFY(m_keeping->isSettled());
    QCOMPARE(inService(), text("s3cret"));
    QVERIFY(!fileHolds("s3cret"));
    QCOMPARE(inFile(), std::nullopt);
    QCOMPARE(password(), text("s3cret"));
    QCOMPARE(m_keeping->hint(), kThere);
  }
  void afterAStartItReadsAsBefore() {
    leaveElsewhere("s3cret");
    open();
    QCOMPARE(password(), QString());
    QSignalSpy changed(m_keeping.get(), &PasswordKeeping::changed);
    m_keeping->start();
    QCOMPARE(password(), text("s3cret"));
    QVERIFY(changed.count() > 0);
    QCOMPARE(m_keeping->hint(), kThere);
    m_preferences->setValue(text("email"), text("x"));
    m_preferences->synchronize();
    QVERIFY(!fileHolds("s3cret"));
    QCOMPARE(password(), text("s3cret"));
  }

  void aPasswordInTheFileMoves() {
    leaveInFile("s3cret");
    QVERIFY(fileHolds("s3cret"));
    start();
    QCOMPARE(inService(), text("s3cret"));
    QVERIFY(!fileHolds("s3cret"));
    QCOMPARE(password(), text("s3cret"));
    QCOMPARE(m_keeping->hint(), kThere);
    for (const QString& copy : StoreBackups(m_paths.backups).newestFirst()) {
      QFile file(copy);
      QVERIFY(file.open(QIODevice::ReadOnly));
      QVERIFY(!file.readAll().contains("s3cret"));
    }
  }
  void aKillAtAnyPointOfTheMoveLosesNothing() {
    leaveInFile("s3cret");
    m_secrets->delays = true;
    start();
    int steps = 0;
    for (; !m_secrets->waiting.empty(); ++steps) {
      QCOMPARE(leftIfKilled(), text("s3cret"));
      m_secrets->answerAll();
    }
    QCOMPARE(leftIfKilled(), text("s3cret"));
    QCOMPARE(steps, 3); // looked, written, read again
    QCOMPARE(inFile(), std::nullopt);
  }
  void aKillWhileAPasswordIsReplacedLeavesOneOfTheTwo() {
    leaveElsewhere("old");
    start();
    m_secrets->delays = true;
    set("new");
    while (!m_secrets->waiting.empty()) {
      const QString left = leftIfKilled();
      QVERIFY2(left == u"old" || left == u"new", qPrintable(left));
      m_secrets->answerAll();
    }
    QVERIFY(m_keeping->isSettled()); // from here on it is the new one
    QCOMPARE(leftIfKilled(), text("new"));
  }
  void aPasswordOfTheFileIsReplacedInTheFileFirst() {
    leaveInFile("old");
    m_secrets->delays = true;
    start();
    m_secrets->answerAll(); // the move of the old one begins
    set("new");
    while (!m_secrets->waiting.empty()) {
      QCOMPARE(leftIfKilled(), text("new"));
      m_secrets->answerAll();
    }
    QCOMPARE(inService(), text("new"));
    QVERIFY(!fileHolds("new"));
    QVERIFY(!fileHolds("old"));
  }

  void aStoreThatKeepsNothingIsFoundOut() {
    leaveInFile("s3cret");
    m_secrets->forgets = true;
    start();
    QCOMPARE(inFile(), std::optional(text("s3cret")));
    QCOMPARE(m_keeping->hint(), kRefused);
    QVERIFY(m_keeping->isSettled());
  }
  void whatIsNotTakenGoesIntoTheFile() {
    start();
    m_secrets->fails = true;
    set("s3cret");
    QCOMPARE(inFile(), std::optional(text("s3cret")));
    QCOMPARE(password(), text("s3cret"));
    QCOMPARE(m_keeping->hint(), kRefused);
    const auto calls = m_secrets->calls;
    m_preferences->setValue(text("email"), text("x")); // is no reason to try again
    m_preferences->synchronize();
    QCOMPARE(m_secrets->calls, calls);
    m_secrets->fails = false;
    m_keeping->fetch(); // the window opens
    QCOMPARE(inFile(), std::nullopt);
    QCOMPARE(inService(), text("s3cret"));
  }
  void replacingFailsIntoTheFile() {
    leaveElsewhere("old");
    start();
    m_secrets->fails = true;
    set("new");
    QCOMPARE(inFile(), std::optional(text("new")));
    m_keeping.reset();
    m_secrets->fails = false;
    start();
    QCOMPARE(password(), text("new"));
    QCOMPARE(inService(), text("new"));
    QCOMPARE(inFile(), std::nullopt);
  }
  void whatIsNotTakenByTheEndGoesIntoTheFile() {
    start();
    m_secrets->delays = true;
    set("s3cret");
    m_keeping.reset();
    QCOMPARE(inFile(), std::optional(text("s3cret")));
    m_secrets->answerAll(); // to nobody
  }

  void withoutAStoreItIsKeptInTheFile() {
    m_secrets->now = State::NotAvailable;
    start();
    set("s3cret");
    QCOMPARE(inFile(), std::optional(text("s3cret")));
    QCOMPARE(m_keeping->hint(), kNoStore);
    QCOMPARE(QFile::permissions(m_paths.file) & 0x77, QFile::Permissions());
    m_secrets->become(State::Available); // one was started
    QCOMPARE(inFile(), std::nullopt);
    QCOMPARE(inService(), text("s3cret"));
  }
  void aStoreThatGoesForGoodLeavesThePasswordInTheFile() {
    leaveElsewhere("s3cret");
    start();
    m_keeping->setGrace(std::chrono::milliseconds(1));
    m_secrets->become(State::NotAvailable);
    QTRY_COMPARE(inFile(), std::optional(text("s3cret")));
    QCOMPARE(m_keeping->hint(), kNoStore);
    m_secrets->become(State::Available);
    QCOMPARE(inFile(), std::nullopt);
  }
  void aStoreThatIsOnlyRestartedLeavesTheFileAlone() {
    leaveElsewhere("s3cret");
    start();
    m_secrets->become(State::NotAvailable);
    QCOMPARE(password(), text("s3cret"));
    m_secrets->become(State::Available);
    QCOMPARE(inFile(), std::nullopt);
    m_secrets->become(State::NotAvailable); // the end of a session
    m_keeping.reset();
    QCOMPARE(inFile(), std::nullopt);
  }
  void aStoreThatNeverAnswersLosesNothing() {
    leaveElsewhere("s3cret");
    m_secrets->now = State::NotAvailable;
    start();
    QCOMPARE(password(), QString());
    QVERIFY(m_preferences->isUnread(kKey));
    QCOMPARE(m_keeping->hint(),
             text("The password is in the desktop's password store, which does not answer."));
    m_keeping->setGrace(std::chrono::milliseconds(0));
    m_secrets->become(State::NotAvailable);
    QCoreApplication::processEvents();
    QCOMPARE(inFile(), std::nullopt); // there is nothing to write there
    set("again");                     // entered once more
    QCOMPARE(inFile(), std::optional(text("again")));
  }

  void aLockedStoreIsNotAskedAtTheStart() {
    leaveElsewhere("s3cret");
    m_secrets->now = State::Locked;
    start();
    QCOMPARE(m_secrets->calls, QStringList{text("look")});
    QCOMPARE(m_keeping->hint(), text("The desktop's password store is locked; unlock it to use the "
                                     "password that is kept there."));
    m_secrets->become(State::Available); // the user unlocked it
    QCOMPARE(password(), text("s3cret"));
  }
  void aLockedStoreIsAskedWhenThePasswordIsWanted() {
    leaveElsewhere("s3cret");
    m_secrets->now = State::Locked;
    start();
    m_secrets->delays = true;
    m_keeping->fetch();
    QCOMPARE(m_secrets->calls.last(), text("read passwordAD"));
    m_secrets->now = State::Available; // the user is asked, and unlocks it
    m_secrets->answerAll();
    QCOMPARE(password(), text("s3cret"));
  }
  void whileTheUserIsAskedEverythingGoesOn() {
    leaveElsewhere("old");
    m_secrets->now = State::Locked;
    start();
    m_secrets->delays = true;
    m_keeping->fetch();
    QVERIFY(m_keeping->isSettled()); // nobody waits for somebody who may be away
    set("new");
    QCOMPARE(inFile(), std::optional(text("new")));
    int calls = 0;
    m_keeping->whenSettled(this, [&] { ++calls; });
    QCOMPARE(calls, 1);
    m_secrets->now = State::Available; // at last
    while (!m_secrets->waiting.empty())
      m_secrets->answerAll();
    QCOMPARE(password(), text("new"));
    QCOMPARE(inService(), text("new"));
    QCOMPARE(inFile(), std::nullopt);
  }
  void whoDoesNotUnlockIsNotAskedOverAndOver() {
    leaveElsewhere("s3cret");
    m_secrets->now = State::Locked;
    start();
    m_keeping->fetch();
    const auto calls = m_secrets->calls;
    m_secrets->become(State::Locked);
    m_preferences->setValue(text("email"), text("x"));
    QCOMPARE(m_secrets->calls, calls);
    QVERIFY(m_keeping->isSettled());
    QVERIFY(m_preferences->isUnread(kKey));
  }
  void whileLockedANewPasswordWaitsInTheFile() {
    leaveElsewhere("old");
    m_secrets->now = State::Locked;
    start();
    set("new");
    QCOMPARE(inFile(), std::optional(text("new")));
    QCOMPARE(m_keeping->hint(),
             text("The desktop's password store is locked; until it is unlocked, the password is "
                  "kept in Tockwise's own file, readable only by you."));
    m_secrets->become(State::Available);
    QCOMPARE(inService(), text("new"));
    QCOMPARE(inFile(), std::nullopt);
  }

  void aStoreThatSleepsIsWokenOnlyWhenThePasswordIsWanted() {
    leaveElsewhere("s3cret");
    m_secrets->stateIsOpen = false;
    start();
    QCOMPARE(m_secrets->calls, QStringList{text("look")});
    QCOMPARE(password(), QString());
    m_keeping->fetch();
    QVERIFY(m_secrets->calls.contains(text("wake")));
    QCOMPARE(password(), text("s3cret"));
  }
  void aStoreThatSleepsIsWokenForANewPassword() {
    m_secrets->stateIsOpen = false;
    start();
    m_secrets->delays = true;
    set("s3cret");
    QCOMPARE(inFile(), std::optional(text("s3cret"))); // until it is awake
    while (!m_secrets->waiting.empty())
      m_secrets->answerAll();
    QCOMPARE(inService(), text("s3cret"));
    QCOMPARE(inFile(), std::nullopt);
  }
  void nobodyIsWokenByACommand() {
    open();
    m_keeping = nullptr;
    m_secrets->stateIsOpen = false;
    m_keeping = std::make_unique<PasswordKeeping>(*m_preferences, *m_secrets, nullptr,
                                                  PasswordKeeping::Waking::Forbidden);
    m_keeping->start();
    set("s3cret");
    QVERIFY(!m_secrets->calls.contains(text("wake")));
    QCOMPARE(inFile(), std::optional(text("s3cret")));
  }
  void fetchingBeforeTheFirstLookIsNotForgotten() {
    leaveElsewhere("s3cret");
    m_secrets->now = State::Locked;
    m_secrets->delays = true;
    start();
    m_keeping->fetch(); // the window was opened at once
    m_secrets->answerAll();
    QCOMPARE(m_secrets->calls.last(), text("read passwordAD"));
  }

  void aSecretThatIsGoneIsSaid() {
    leaveElsewhere("s3cret");
    m_secrets->secrets.clear();
    start();
    QCOMPARE(password(), QString());
    QCOMPARE(m_keeping->hint(), text("The desktop's password store no longer has the password: "
                                     "please enter it again."));
    QVERIFY(m_keeping->isSettled());
    set("again");
    QCOMPARE(inService(), text("again"));
    QCOMPARE(m_keeping->hint(), kThere);
  }

  void emptyingItRemovesItFromTheStore() {
    leaveElsewhere("s3cret");
    start();
    set("");
    QVERIFY(m_secrets->secrets.empty());
    QCOMPARE(inFile(), std::optional(QString()));
    QVERIFY(!m_preferences->isUnread(kKey));
    m_keeping.reset();
    start();
    QCOMPARE(password(), QString());
    QCOMPARE(m_keeping->hint(), QString());
  }
  void emptyingItWhileItIsBeingWrittenLeavesNone() {
    start();
    m_secrets->delays = true;
    set("s3cret");
    set("");
    while (!m_secrets->waiting.empty())
      m_secrets->answerAll();
    QVERIFY(m_secrets->secrets.empty());
    QCOMPARE(leftIfKilled(), QString());
  }
  void theLastOfSeveralCounts() {
    start();
    m_secrets->delays = true;
    set("one");
    set("two");
    set("three");
    while (!m_secrets->waiting.empty())
      m_secrets->answerAll();
    QCOMPARE(inService(), text("three"));
    QCOMPARE(password(), text("three"));
    QVERIFY(m_keeping->isSettled());
  }
  void aStoreThatLocksMeanwhileLosesNothing() {
    start();
    m_secrets->delays = true;
    set("one");
    set("two");
    m_secrets->now = State::Locked;
    while (!m_secrets->waiting.empty())
      m_secrets->answerAll();
    QCOMPARE(inFile(), std::optional(text("two")));
    QVERIFY(m_keeping->isSettled());
  }

  void aPasswordThatAnotherProcessWroteMoves() {
    leaveElsewhere("s3cret");
    start();
    m_preferences->onChangedByOthers = [this] { m_keeping->othersChanged(); };
    plist::Writer writer;
    const QByteArray bytes =
        writer.finish(writer.value(Value(Value::Dictionary{{kKey, Value(text("theirs"))}})));
    QFile file(m_paths.file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    m_preferences->synchronize();
    QCOMPARE(password(), text("theirs"));
    QCOMPARE(inService(), text("theirs"));
    QVERIFY(!fileHolds("theirs"));
  }

  void whoWaitsForItIsCalledWhenItIsSettled() {
    start();
    int calls = 0;
    m_keeping->whenSettled(this, [&] { ++calls; });
    QCOMPARE(calls, 1);
    m_secrets->delays = true;
    set("s3cret");
    m_keeping->whenSettled(this, [&] { ++calls; });
    QCOMPARE(calls, 1);
    m_secrets->answerAll();
    QCOMPARE(calls, 1);
    m_secrets->answerAll();
    QCOMPARE(calls, 2);
    set("another");
    while (!m_secrets->waiting.empty())
      m_secrets->answerAll();
    QCOMPARE(calls, 2);
  }
  void answersAfterTheEndGoNowhere() {
    leaveElsewhere("s3cret");
    m_secrets->delays = true;
    start();
    m_secrets->answerAll();
    m_keeping.reset();
    m_secrets->answerAll();
    QVERIFY(m_preferences->isUnread(kKey));
  }
};

QTEST_GUILESS_MAIN(PasswordKeepingTest)
#include "password_keeping_test.moc"
