// Stand-ins for the ports: they record what was asked and answer as they were told.
#pragma once

#include "engine/firing.h"
#include "ports/power_events.h"
#include "ports/prompter.h"
#include "ports/sound_player.h"
#include "ports/wake_timer.h"

#include <deque>
#include <functional>
#include <optional>
#include <vector>

namespace tockwise {

/// Answers questions with the prepared answers, in order; an unprepared question gets its
/// default button.
class FakePrompter final : public Prompter {
 public:
  std::deque<int> answers;
  std::vector<Question> asked;
  std::vector<QString> told;
  int beeps = 0;
  /// Runs while a question is open, as the event loop would.
  std::function<void()> meanwhile;

  int ask(const Question& question) override {
    asked.push_back(question);
    if (meanwhile)
      meanwhile();
    if (answers.empty())
      return question.defaultButton;
    const int answer = answers.front();
    answers.pop_front();
    return answer;
  }
  void tell(const QString& title, const QString& message) override {
    told.push_back(title + QStringLiteral(": ") + message);
  }
  void beep() override { ++beeps; }
};

class FakeSoundPlayer final : public SoundPlayer {
 public:
  std::vector<QString> played;
  void play(const QString& path) override { played.push_back(path); }
};

class FakePowerEvents final : public PowerEvents {
 public:
  bool isAvailable() const override { return true; }
  void sleep() { Q_EMIT willSleep(); }
  void wake() { Q_EMIT didWake(); }
};

/// Expires when the test says so.
class FakeWakeTimer final : public WakeTimer {
 public:
  std::optional<Date> armed;
  int timesArmed = 0;
  void arm(Date when) override {
    armed = when;
    ++timesArmed;
  }
  void disarm() override { armed.reset(); }
  void expire() {
    armed.reset();
    Q_EMIT expired();
  }
  void changeClock() { Q_EMIT clockChanged(); }
};

class RecordingFiringActions final : public FiringActions {
 public:
  QStringList calls; // in order: "task", "email", "html", "sms", "alert"
  std::vector<Task> tasks;
  struct Message {
    QString subject;
    QString body;
  };
  std::vector<Message> emails;
  std::vector<Message> texts;
  std::vector<QString> htmlSubjects;
  std::vector<AlertRequest> alerts;
  bool htmlSucceeds = true;
  std::vector<QString> firedReminders;

  void doTask(const Task& task) override {
    calls += QStringLiteral("task");
    tasks.push_back(task);
  }
  void sendEmailWithSubject(const QString& subject, const QString& message) override {
    calls += QStringLiteral("email");
    emails.push_back({subject, message});
  }
  bool sendEmailWithSubjectAndHTMLMessage(const QString& subject, const QByteArray&) override {
    calls += QStringLiteral("html");
    htmlSubjects.push_back(subject);
    return htmlSucceeds;
  }
  void sendSMSWithSubject(const QString& subject, const QString& message) override {
    calls += QStringLiteral("sms");
    texts.push_back({subject, message});
  }
  void fired(const QString& reminderUUID) override { firedReminders.push_back(reminderUUID); }
  void openAlert(const AlertRequest& request) override {
    calls += QStringLiteral("alert");
    alerts.push_back(request);
  }
};

} // namespace tockwise
