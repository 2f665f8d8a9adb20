#include "alerts/alert_hiding_prompter.h"
#include "support/fake_current_alerts.h"
#include "support/fakes.h"

#include <QTest>

using namespace tockwise;

namespace {

constexpr int kNo = 0;
constexpr int kYes = 1;

Question question(int quitButton = -1) {
  Question asked;
  asked.title = QStringLiteral("Sure?");
  asked.buttons = {QStringLiteral("No"), QStringLiteral("Yes")};
  asked.quitButton = quitButton;
  return asked;
}

struct Fixture {
  Fixture() { questions.setAlerts(&alerts); }

  FakePrompter* fake = new FakePrompter;
  FakePrompter& inner = *fake;
  AlertHidingPrompter questions{std::unique_ptr<Prompter>(fake)};
  FakeCurrentAlerts alerts;

  int ask(int answer, int quitButton = -1) {
    inner.answers.push_back(answer);
    return questions.ask(question(quitButton));
  }
};

QStringList calls(std::initializer_list<const char*> names) {
  QStringList list;
  for (const char* name : names)
    list += QString::fromLatin1(name);
  return list;
}

} // namespace

class AlertHidingPrompterTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void alertsAreHiddenWhileAskedAndShownWhateverTheAnswer() {
    for (const int answer : {kNo, kYes}) {
      Fixture f;
      f.inner.meanwhile = [&] { QCOMPARE(f.alerts.calls, calls({"hide 1"})); };
      QCOMPARE(f.ask(answer), answer);
      QCOMPARE(f.alerts.calls, calls({"hide 1", "show 1"}));
    }
  }

  void aQuestionWithinAQuestionShowsNoneOfWhatTheFirstHid() {
    Fixture f;
    f.inner.meanwhile = [&] {
      f.inner.meanwhile = nullptr;
      f.ask(kYes);
    };
    f.ask(kNo);
    QCOMPARE(f.alerts.calls, calls({"hide 1", "hide 2", "show 2", "show 1"}));
  }

  void theAnswerThatEndsTheProgramLeavesThemHidden() {
    Fixture f;
    f.ask(kYes, kYes);
    QCOMPARE(f.alerts.calls, calls({"hide 1"}));
  }

  void theOtherAnswerToThatQuestionShowsThem() {
    Fixture f;
    f.ask(kNo, kYes);
    QCOMPARE(f.alerts.calls, calls({"hide 1", "show 1"}));
  }

  void anEndThatIsThoughtBetterOfInASecondQuestionShowsThem() {
    Fixture f;
    f.ask(kYes, kYes);
    f.ask(kNo, kYes);
    QCOMPARE(f.alerts.calls, calls({"hide 1", "hide 1", "show 1"}));
  }

  void questionsThatEndWithTheProgramShowNothing() {
    Fixture f;
    f.inner.meanwhile = [&] { f.questions.leaveHidden(); };
    f.ask(kNo);
    QCOMPARE(f.alerts.calls, calls({"hide 1"}));
  }

  void anEndChosenWithinAQuestionShowsNothingAfterEither() {
    Fixture f;
    f.inner.meanwhile = [&] {
      f.inner.meanwhile = nullptr;
      f.questions.ask(question(kYes));
    };
    f.inner.answers = {kYes}; // to the inner one; the outer one ends with the program
    f.questions.ask(question());
    QCOMPARE(f.alerts.calls, calls({"hide 1", "hide 2"}));
  }

  void goingOnShowsWhatAnEndLeftHidden() {
    Fixture f;
    f.ask(kYes, kYes);
    f.questions.goOn();
    QCOMPARE(f.alerts.calls, calls({"hide 1", "show 1"}));
    f.questions.goOn();
    QCOMPARE(f.alerts.calls, calls({"hide 1", "show 1"}));
  }

  void goingOnWithinAQuestionShowsThemAfterIt() {
    Fixture f;
    f.inner.meanwhile = [&] {
      f.inner.meanwhile = nullptr;
      f.ask(kYes, kYes);
      f.questions.goOn();
    };
    f.inner.answers = {kYes}; // to the inner one, which asks first
    f.questions.ask(question());
    QCOMPARE(f.alerts.calls, calls({"hide 1", "hide 2", "show 1"}));
  }

  void goingOnWithoutAnEndShowsNothing() {
    Fixture f;
    f.questions.goOn();
    QVERIFY(f.alerts.calls.isEmpty());
  }

  void aDialogThatIsNoQuestionCounts() {
    Fixture f;
    f.questions.dialogOpens();
    f.ask(kYes);
    f.questions.dialogCloses();
    QCOMPARE(f.alerts.calls, calls({"hide 1", "hide 2", "show 2", "show 1"}));
  }

  void anUnansweredQuestionWithoutButtonsIsNoEnd() {
    Fixture f;
    f.ask(-1);
    QCOMPARE(f.alerts.calls, calls({"hide 1", "show 1"}));
  }

  void messagesAndBeepsHideNothing() {
    Fixture f;
    f.questions.tell(QStringLiteral("a"), QStringLiteral("b"));
    f.questions.beep();
    QCOMPARE(f.inner.told.size(), size_t(1));
    QCOMPARE(f.inner.beeps, 1);
    QVERIFY(f.alerts.calls.isEmpty());
  }

  void putAroundTakesThePlaceOfThePrompter() {
    auto fake = std::make_unique<FakePrompter>();
    FakePrompter& inner = *fake;
    std::unique_ptr<Prompter> prompter = std::move(fake);
    FakeCurrentAlerts alerts;
    AlertHidingPrompter& around = AlertHidingPrompter::putAround(prompter);
    QCOMPARE(prompter.get(), static_cast<Prompter*>(&around));
    prompter->ask(question()); // there are no alert windows yet
    around.setAlerts(&alerts);
    prompter->ask(question());
    QCOMPARE(inner.asked.size(), size_t(2));
    QCOMPARE(alerts.calls, calls({"hide 1", "show 1"}));
  }
};

QTEST_GUILESS_MAIN(AlertHidingPrompterTest)
#include "alert_hiding_prompter_test.moc"
