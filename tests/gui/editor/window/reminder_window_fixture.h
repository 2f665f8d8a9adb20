// A reminder window on a desk of its own: settings, clock and answers that the test decides.
#pragma once

#include "editor/custom_panel.h"
#include "editor/date_picker.h"
#include "editor/quick_time_pop.h"
#include "editor/reminder_window_controller.h"
#include "editor/toned_label.h"
#include "richtext/qs_text_view.h"
#include "store/archive/text_archive.h"
#include "support/fakes.h"
#include "support/test_environment.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace tockwise {

/// Wed 2025-03-05 08:00:00 UTC, 09:00 in Berlin.
inline constexpr Date kNow{762854400};

inline constexpr int kYes = 0;
inline constexpr int kNo = 1;

struct ReminderWindowFixture {
  TestEnvironment environment;
  MemorySettings settings{
      {{QStringLiteral("quickRemindMenuArray"),
        Value(Value::Array{Value(QStringLiteral("5 Minutes")), Value(QStringLiteral("1 Days")),
                           Value(QStringLiteral("1 Day 2 Hours "))})}}};
  FakePrompter prompter;
  FakeClock clock{kNow};
  QList<QUrl> openedURLs;
  std::unique_ptr<ReminderWindowController> controller;

  ReminderWindowController::Surroundings surroundings() {
    return {settings, prompter, clock, [this](const QUrl& url) { openedURLs += url; }};
  }
  void open(const ReminderDraft& draft) {
    controller = std::make_unique<ReminderWindowController>(draft, surroundings());
    controller->showWindow();
    QVERIFY(QTest::qWaitForWindowActive(controller->window()));
  }
  ReminderDraft blank() { return ReminderWindowController::newReminder(settings, clock.now()); }
  /// A new reminder that could be created at once.
  void openWritten() {
    ReminderDraft draft = blank();
    draft.reminderText = QStringLiteral("Tea");
    draft.reminderDate = kNow.plusSeconds(3600);
    open(draft);
  }
  void openEditing() { open(ReminderWindowController::thisReminder(storedReminder())); }

  static Reminder storedReminder() {
    Reminder reminder;
    reminder.reminderUUID = QStringLiteral("0000-TEA");
    reminder.reminderQueue = kNow.plusSeconds(7242.5);
    reminder.reminderDescriptions = QStringLiteral("Tea");
    AttributedText text;
    text.append(QStringLiteral("Tea"), {});
    reminder.reminderRTFs = archiveText(text);
    reminder.reminderIntervals = {0, 7, 0, 0};
    reminder.reminderExtras.days[0] = false;
    reminder.reminderOffsets = {0, 1, 0};
    reminder.reminderTasks = Task{false, Task::Document, QStringLiteral("/home/me/plan.odt")};
    reminder.reminderSendSMS = true;
    return reminder;
  }

  template <class Widget> Widget* control(const char* name) const {
    auto* found = controller->window()->findChild<Widget*>(QString::fromLatin1(name));
    if (!found)
      qFatal("there is no %s", name);
    return found;
  }
  QPushButton* button(const char* name) const { return control<QPushButton>(name); }
  void click(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
  CustomPanel* panel() const { return qobject_cast<CustomPanel*>(controller->window()); }
  QSTextView* text() const { return control<QSTextView>("reminderTextView"); }
  DatePicker* date() const { return control<DatePicker>("reminderDate"); }
  QuickTimePop* quickPop() const { return control<QuickTimePop>("quickPop"); }
  TonedLabel* line(const char* name) const { return control<TonedLabel>(name); }
  bool isOpen() const { return controller->window()->isVisible(); }

  /// The one question that was asked, and forgets it.
  Question asked() {
    if (prompter.asked.size() != 1)
      qFatal("%d questions were asked", int(prompter.asked.size()));
    const Question question = prompter.asked.front();
    prompter.asked.clear();
    return question;
  }
};

inline void compareQuestion(const Question& question, const char* title, const char* message,
                            const char* buttons) {
  QCOMPARE(question.title, QString::fromLatin1(title));
  QCOMPARE(question.message, QString::fromLatin1(message));
  QCOMPARE(question.buttons.join(u'|'), QString::fromLatin1(buttons));
}

} // namespace tockwise
