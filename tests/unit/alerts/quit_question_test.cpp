#include "alerts/alert_hiding_prompter.h"
#include "alerts/quit_question.h"
#include "support/fake_current_alerts.h"
#include "support/fakes.h"

#include <QTest>

using namespace tockwise;

namespace {

struct Fixture {
  Fixture() { questions.setAlerts(&alerts); }

  FakePrompter* fake = new FakePrompter;
  FakePrompter& prompter = *fake;
  AlertHidingPrompter questions{std::unique_ptr<Prompter>(fake)};
  FakeCurrentAlerts alerts;
  qint64 mail = 0;
  QuitQuestion quitting{questions, alerts, [this] { return mail; }};
};

const QStringList kHidden{QStringLiteral("hide 1")};
const QStringList kHiddenAndShown{QStringLiteral("hide 1"), QStringLiteral("show 1")};

} // namespace

class QuitQuestionTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void withNothingOpenItEndsWithoutAQuestion() {
    Fixture f;
    QCOMPARE(f.quitting.applicationShouldTerminate(), TerminateReply::TerminateNow);
    QVERIFY(f.prompter.asked.empty());
    QVERIFY(f.alerts.calls.isEmpty());
  }

  void theMessageTellsWhatIsOpen_data() {
    QTest::addColumn<int>("alerts");
    QTest::addColumn<int>("mail");
    QTest::addColumn<QString>("message");
    QTest::newRow("one alert") << 1 << 0 << QStringLiteral("You have one alert window open.");
    QTest::newRow("two alerts") << 2 << 0 << QStringLiteral("You have 2 alert windows open.");
    QTest::newRow("alerts come first")
        << 2 << 1 << QStringLiteral("You have 2 alert windows open.");
    QTest::newRow("one message") << 0 << 1 << QStringLiteral("You have one outgoing mail message.");
    QTest::newRow("messages") << 0 << 12 << QStringLiteral("You have 12 outgoing mail messages.");
  }

  void theMessageTellsWhatIsOpen() {
    QFETCH(int, alerts);
    QFETCH(int, mail);
    Fixture f;
    f.alerts.open = alerts;
    f.mail = mail;
    f.quitting.applicationShouldTerminate();
    QCOMPARE(f.prompter.asked.size(), size_t(1));
    const Question& question = f.prompter.asked.front();
    QCOMPARE(question.title, QStringLiteral("Are you sure you want to quit Tockwise?"));
    QTEST(question.message, "message");
    QCOMPARE(question.buttons, (QStringList{QStringLiteral("No"), QStringLiteral("Yes")}));
    QCOMPARE(question.defaultButton, 0);
    QCOMPARE(question.escapeButton, 0);
  }

  void returnKeepsTheProgramRunning() {
    Fixture f;
    f.alerts.open = 1; // the fake answers with the default button
    QCOMPARE(f.quitting.applicationShouldTerminate(), TerminateReply::Cancel);
    QCOMPARE(f.alerts.calls, kHiddenAndShown);
  }

  void yesEndsItAndLeavesTheAlertsHidden() {
    Fixture f;
    f.alerts.open = 1;
    f.prompter.answers = {1};
    QCOMPARE(f.quitting.applicationShouldTerminate(), TerminateReply::TerminateNow);
    QCOMPARE(f.alerts.calls, kHidden);
  }

  void yesToTheMailQuestionEndsIt() {
    Fixture f;
    f.mail = 1;
    f.prompter.answers = {1};
    QCOMPARE(f.quitting.applicationShouldTerminate(), TerminateReply::TerminateNow);
    QCOMPARE(f.alerts.calls, kHidden);
  }

  void noToTheMailQuestionKeepsItRunning() {
    Fixture f;
    f.mail = 1;
    f.prompter.answers = {0};
    QCOMPARE(f.quitting.applicationShouldTerminate(), TerminateReply::Cancel);
    QCOMPARE(f.alerts.calls, kHiddenAndShown);
  }

  void aSecondRequestWhileTheQuestionIsOpenAsksNothing() {
    Fixture f;
    f.alerts.open = 1;
    TerminateReply second = TerminateReply::TerminateNow;
    f.prompter.meanwhile = [&] { second = f.quitting.applicationShouldTerminate(); };
    f.quitting.applicationShouldTerminate();
    QCOMPARE(second, TerminateReply::Cancel);
    QCOMPARE(f.prompter.asked.size(), size_t(1));
  }

  void afterNoTheQuestionCanBeAskedAgain() {
    Fixture f;
    f.alerts.open = 1;
    f.quitting.applicationShouldTerminate();
    f.quitting.applicationShouldTerminate();
    QCOMPARE(f.prompter.asked.size(), size_t(2));
  }
};

QTEST_GUILESS_MAIN(QuitQuestionTest)
#include "quit_question_test.moc"
