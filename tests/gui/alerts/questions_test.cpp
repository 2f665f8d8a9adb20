#include "alerts/alert_hiding_prompter.h"
#include "platform/message_prompter.h"
#include "support/open_alerts.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWindow>

using namespace tockwise;

namespace {

Question deletion() {
  return Question{QStringLiteral("Delete <b>this</b>?"),
                  QStringLiteral("<img src=x> & \"tea\""),
                  {QStringLiteral("Yes"), QStringLiteral("No")},
                  0,
                  1};
}

QList<QMessageBox*> boxes(const char* name) {
  QList<QMessageBox*> result;
  const QWidgetList windows = QApplication::topLevelWidgets();
  for (QWidget* window : windows) {
    auto* box = qobject_cast<QMessageBox*>(window);
    if (box && box->isVisible() && box->objectName() == QLatin1String(name))
      result += box;
  }
  return result;
}

QMessageBox* openQuestion() {
  const auto open = boxes("questionBox");
  return open.isEmpty() ? nullptr : open.front();
}

QPushButton* button(QWidget* box, const char* name) {
  return box->findChild<QPushButton*>(QString::fromLatin1(name));
}

/// Runs act once a question is open.
void whenAsked(QObject* context, const std::function<void(QMessageBox*)>& act) {
  auto* poll = new QTimer(context);
  QObject::connect(poll, &QTimer::timeout, context, [poll, act] {
    QMessageBox* box = openQuestion();
    if (!box || !box->windowHandle() || !box->windowHandle()->isExposed())
      return;
    poll->stop();
    poll->deleteLater();
    act(box);
  });
  poll->start(5);
}

struct Alerts : AlertSurroundings {
  Alerts() { prompter.setAlerts(&windows); }

  AlertHidingPrompter prompter{std::make_unique<MessagePrompter>()};
  AlertWindows windows{queue, sounds, prompter};

  void open(const QString& text) {
    AlertRequest request;
    request.reminder = text;
    windows.open(request);
  }
};

} // namespace

class QuestionsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void textsAreShownAsTheyAreWritten() {
    MessagePrompter prompter;
    QStringList shown;
    whenAsked(this, [&](QMessageBox* box) {
      for (const QLabel* label : box->findChildren<QLabel*>()) {
        if (!label->text().isEmpty()) {
          shown += label->text();
          QCOMPARE(label->textFormat(), Qt::PlainText);
        }
      }
      QTest::mouseClick(button(box, "questionButton0"), Qt::LeftButton);
    });
    prompter.ask(deletion());
    QVERIFY(shown.contains(QStringLiteral("Delete <b>this</b>?")));
    QVERIFY(shown.contains(QStringLiteral("<img src=x> & \"tea\"")));
  }

  void buttonsStandInTheirOrderWithTheDefaultOne() {
    MessagePrompter prompter;
    whenAsked(this, [&](QMessageBox* box) {
      QPushButton* yes = button(box, "questionButton0");
      QPushButton* no = button(box, "questionButton1");
      QCOMPARE(yes->text(), QStringLiteral("Yes"));
      QCOMPARE(no->text(), QStringLiteral("No"));
      QVERIFY(yes->x() < no->x());
      QVERIFY(yes->isDefault() && !no->isDefault());
      QCOMPARE(no->accessibleName(), QStringLiteral("No"));
      QTest::mouseClick(no, Qt::LeftButton);
    });
    QCOMPARE(prompter.ask(deletion()), 1);
  }

  void keysAnswer_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<int>("escapeButton");
    QTest::addColumn<int>("answer");
    QTest::newRow("Return, first") << int(Qt::Key_Return) << 0 << 1 << 0;
    QTest::newRow("Return, second") << int(Qt::Key_Return) << 1 << 0 << 1;
    QTest::newRow("Escape, second") << int(Qt::Key_Escape) << 0 << 1 << 1;
    QTest::newRow("Escape, first") << int(Qt::Key_Escape) << 0 << 0 << 0;
    QTest::newRow("Escape, none named: the last") << int(Qt::Key_Escape) << 0 << -1 << 1;
  }

  void keysAnswer() {
    QFETCH(int, key);
    Question question = deletion();
    question.defaultButton = *static_cast<int*>(QTest::qData("defaultButton", QMetaType::Int));
    question.escapeButton = *static_cast<int*>(QTest::qData("escapeButton", QMetaType::Int));
    MessagePrompter prompter;
    whenAsked(this, [&](QMessageBox* box) { QTest::keyClick(box->windowHandle(), Qt::Key(key)); });
    const int answer = prompter.ask(question);
    QTEST(answer, "answer");
  }

  void closingTheBoxIsTheEscapeButton() {
    MessagePrompter prompter;
    whenAsked(this, [](QMessageBox* box) { box->windowHandle()->close(); });
    QCOMPARE(prompter.ask(deletion()), 1);
  }

  void anAlertThatOpensDuringAQuestionCanBeDismissedAtOnce() {
    Alerts alerts;
    bool dismissedWhileAsked = false;
    whenAsked(this, [&](QMessageBox* box) {
      alerts.open(QStringLiteral("Tea"));
      auto* window = alerts.windows.window(0);
      // Through the window system, where a modal window would block it.
      QPushButton* ok = button(window, "okButton");
      QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                        ok->mapTo(window, ok->rect().center()));
      dismissedWhileAsked = alerts.windows.count() == 0 && box->isVisible();
      QTest::keyClick(box->windowHandle(), Qt::Key_Return);
    });
    QCOMPARE(alerts.prompter.ask(deletion()), 0);
    QVERIFY(dismissedWhileAsked);
  }

  void anAlertCanBeDismissedWhileAnEditorsQuestionIsOpen() {
    QLineEdit editor;
    editor.show();
    editor.activateWindow();
    QTRY_VERIFY(editor.isActiveWindow());
    Alerts alerts;
    bool dismissed = false;
    bool editorBlocked = false;
    whenAsked(this, [&](QMessageBox* box) {
      QCOMPARE(box->parentWidget(), &editor);
      QTest::keyClick(editor.windowHandle(), Qt::Key_X);
      editorBlocked = editor.text().isEmpty();
      alerts.open(QStringLiteral("Tea"));
      auto* window = alerts.windows.window(0);
      QPushButton* ok = button(window, "okButton");
      QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                        ok->mapTo(window, ok->rect().center()));
      dismissed = alerts.windows.count() == 0;
      QTest::keyClick(box->windowHandle(), Qt::Key_Return);
    });
    alerts.prompter.ask(deletion());
    QVERIFY(dismissed);
    QVERIFY(editorBlocked);
  }

  void aQuestionWithinAQuestionIsAnsweredFirst() {
    MessagePrompter prompter;
    QList<int> answers;
    whenAsked(this, [&](QMessageBox* outer) {
      QTimer::singleShot(0, this, [&, outer] {
        whenAsked(this, [&, outer](QMessageBox*) {
          QMessageBox* inner = outer->findChild<QMessageBox*>();
          QVERIFY(inner);
          QTest::mouseClick(outer->windowHandle(), Qt::LeftButton, {},
                            button(outer, "questionButton0")->geometry().center());
          QVERIFY(outer->isVisible()); // blocked by the inner one
          QTest::keyClick(inner->windowHandle(), Qt::Key_Escape);
        });
        answers += prompter.ask(deletion());
        QTest::keyClick(outer->windowHandle(), Qt::Key_Return);
      });
    });
    answers += prompter.ask(deletion());
    QCOMPARE(answers, (QList<int>{1, 0}));
  }

  void aQuestionWhoseWindowGoesAwayIsAnsweredWithEscape() {
    auto editor = std::make_unique<QWidget>();
    editor->show();
    editor->activateWindow();
    QTRY_VERIFY(editor->isActiveWindow());
    MessagePrompter prompter;
    whenAsked(this, [&](QMessageBox*) { editor.reset(); });
    QCOMPARE(prompter.ask(deletion()), 1);
  }

  void onlyWhatCanBeAnsweredHasAQuestionMark_data() {
    QTest::addColumn<QStringList>("buttons");
    QTest::addColumn<QMessageBox::Icon>("icon");
    QTest::newRow("question") << QStringList{QStringLiteral("Yes"), QStringLiteral("No")}
                              << QMessageBox::Question;
    QTest::newRow("message") << QStringList{QStringLiteral("OK")} << QMessageBox::Information;
  }
  void onlyWhatCanBeAnsweredHasAQuestionMark() {
    QFETCH(const QStringList, buttons);
    QFETCH(const QMessageBox::Icon, icon);
    Question question;
    question.title = QStringLiteral("Cannot Move Item");
    question.buttons = buttons;
    MessagePrompter prompter;
    whenAsked(this, [&](QMessageBox* box) {
      QCOMPARE(box->icon(), icon);
      box->reject();
    });
    prompter.ask(question);
  }

  void aMessageIsNotWaitedForAndGoesAwayWithItsButton() {
    MessagePrompter prompter;
    prompter.tell(QStringLiteral("The store was damaged"), QStringLiteral("<i>kept</i>"));
    QCOMPARE(boxes("messageBox").size(), 1);
    const QPointer<QMessageBox> box = boxes("messageBox").front();
    QCOMPARE(box->windowModality(), Qt::NonModal);
    QVERIFY(box->windowFlags().testFlag(Qt::WindowStaysOnTopHint)); // as alerts are
    QCOMPARE(box->informativeText(), QStringLiteral("<i>kept</i>"));
    QTest::mouseClick(button(box, "questionButton0"), Qt::LeftButton);
    QTRY_VERIFY(box.isNull());
  }

  void messagesGoAwayWithThePrompter() {
    QPointer<QMessageBox> box;
    {
      MessagePrompter prompter;
      prompter.tell(QStringLiteral("a"), QStringLiteral("b"));
      box = boxes("messageBox").front();
    }
    QVERIFY(box.isNull());
  }

  void deletingFromAnAlertAsksWithTheAlertHiddenAndClosesIt() {
    Alerts alerts;
    Reminder reminder;
    reminder.reminderUUID = UUIDString();
    reminder.reminderDescriptions = QStringLiteral("Tea");
    reminder.reminderRTFs = "rtf";
    alerts.queue.append(reminder);
    RemoveReminder remover(alerts.queue, alerts.prompter, [&](const QString& uuid) -> Result<void> {
      return alerts.queue.remove(*alerts.queue.indexOf(uuid));
    });
    alerts.windows.setReminderRemover(&remover);
    AlertRequest request;
    request.reminder = QStringLiteral("Tea");
    request.RTFData = "rtf";
    request.rescheduled = true;
    alerts.windows.open(request);
    bool hidden = false;
    whenAsked(this, [&](QMessageBox* box) {
      hidden = !alerts.windows.entries()[0].shown;
      QTest::mouseClick(button(box, "questionButton0"), Qt::LeftButton);
    });
    QTest::mouseClick(button(alerts.windows.window(0), "deleteButton"), Qt::LeftButton);
    QVERIFY(hidden);
    QVERIFY(alerts.queue.isEmpty());
    QCOMPARE(alerts.windows.count(), 0);
  }
};

QTEST_MAIN(QuestionsTest)
#include "questions_test.moc"
