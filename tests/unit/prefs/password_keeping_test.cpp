// The mail password on its way between the file and the desktop's store.
#include "password_keeping_fixture.h"
#include "store/store_backups.h"

#include <QSignalSpy>

using namespace tockwise;

class PasswordKeepingTest : public PasswordKeepingFixture {
  Q_OBJECT
 private Q_SLOTS:
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
