// The mail password while the desktop's store is missing, goes, is locked or sleeps.
#include "password_keeping_fixture.h"

using namespace tockwise;

class PasswordWithoutStoreTest : public PasswordKeepingFixture {
  Q_OBJECT
 private Q_SLOTS:
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
};

QTEST_GUILESS_MAIN(PasswordWithoutStoreTest)
#include "password_without_store_test.moc"
