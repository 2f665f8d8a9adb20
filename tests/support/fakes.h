// Stand-ins for the ports: they record what was asked and answer as they were told.
#pragma once

#include "engine/firing.h"
#include "ports/hot_keys.h"
#include "ports/login_items.h"
#include "ports/notification_centre.h"
#include "ports/power_events.h"
#include "ports/prompter.h"
#include "ports/script_host.h"
#include "ports/secret_store.h"
#include "ports/sound_player.h"
#include "ports/wake_timer.h"
#include "ports/workspace.h"

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <utility>
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

/// Opens nothing.
class FakeWorkspace final : public Workspace {
 public:
  QStringList calls; // "openURL http://example.org", …
  bool succeeds = true;

  bool openURL(const QString& address) override { return note("openURL ", address); }
  bool openFile(const QString& path) override { return note("openFile ", path); }
  bool openMediaFile(const QString& path) override { return note("openMediaFile ", path); }
  bool launchApplication(const QString& application) override {
    return note("launchApplication ", application);
  }

 private:
  bool note(const char* operation, const QString& what) {
    calls += QString::fromLatin1(operation) + what;
    return succeeds;
  }
};

/// Scripts that run until the test ends them.
class FakeScriptHost final : public ScriptHost {
 public:
  std::vector<RunningScript> scripts;
  std::vector<quint64> stopped;
  Date now;
  double timeLimit = 300; // seconds

  quint64 run(const QString& path) override {
    scripts.push_back({++m_lastId, path, now, now.plusSeconds(timeLimit)});
    Q_EMIT started(scripts.back());
    return m_lastId;
  }
  std::vector<RunningScript> running() const override { return scripts; }
  void stop(quint64 id) override { stopped.push_back(id); }
  void end(quint64 id, ScriptEnd::How how = ScriptEnd::How::Exited, const QString& output = {}) {
    ScriptEnd ended;
    for (const RunningScript& script : scripts) {
      if (script.id == id)
        ended.path = script.path;
    }
    std::erase_if(scripts, [&](const RunningScript& script) { return script.id == id; });
    ended.id = id;
    ended.how = how;
    ended.output = output;
    Q_EMIT finished(ended);
  }

 private:
  quint64 m_lastId = 0;
};

/// Keys that the test presses.
class FakeHotKeys final : public HotKeys {
 public:
  bool available = true;
  bool registered = false;
  int registrations = 0;
  State whenRegistered = State::Registered;
  bool isAvailable() const override { return available; }
  void registerHotKeys() override {
    registrations += registered ? 0 : 1;
    registered = true;
    Q_EMIT stateChanged();
  }
  void unregisterHotKeys() override {
    registered = false;
    Q_EMIT stateChanged();
  }
  State state(HotKey) const override {
    if (!available)
      return State::NotAvailable;
    return registered ? whenRegistered : State::Off;
  }
  QString detail() const override { return QStringLiteral("fake"); }
  void press(int number) { Q_EMIT pressed(number); }
};

class FakeLoginItems final : public LoginItems {
 public:
  bool present = false;
  QStringList calls; // "add", "remove"
  std::optional<Error> failure;
  bool isPresent() const override { return present; }
  Result<void> add() override { return change(QStringLiteral("add"), true); }
  Result<void> remove() override { return change(QStringLiteral("remove"), false); }

 private:
  Result<void> change(const QString& call, bool now) {
    calls += call;
    if (failure)
      return *failure;
    present = now;
    return {};
  }
};

class FakeNotificationCentre final : public NotificationCentre {
 public:
  std::vector<UserNotification> scheduled; // number n stands at n - 1
  std::vector<quint64> removed;
  bool isAvailable() const override { return true; }
  quint64 schedule(const UserNotification& notification) override {
    scheduled.push_back(notification);
    return scheduled.size();
  }
  void removeDelivered(quint64 number) override { removed.push_back(number); }
  void click(quint64 number) { Q_EMIT didActivate(number); }
};

/// Answers at once, or when the test says so.
class FakeSecretStore final : public SecretStore {
 public:
  State now = State::Available;
  std::map<QString, QString> secrets;
  QStringList calls;       // "look", "wake", "read KEY", "write KEY", "remove KEY"
  bool fails = false;      // says no, whatever its state
  bool forgets = false;    // says yes to writing and keeps nothing
  bool delays = false;     // answers wait for answerAll()
  bool stateIsOpen = true; // looking finds the state; else it stays Unknown until woken
  std::vector<std::function<void()>> waiting;

  State state() const override { return m_looked && stateIsOpen ? now : State::Unknown; }
  void look(std::function<void()> done) override {
    calls += QStringLiteral("look");
    later([this, done = std::move(done)] { looked(done); });
  }
  void wake(std::function<void()> done) override {
    calls += QStringLiteral("wake");
    stateIsOpen = true;
    later([this, done = std::move(done)] { looked(done); });
  }
  void read(const QString& key, std::function<void(bool, std::optional<QString>)> answer) override {
    calls += QStringLiteral("read ") + key;
    later([this, key, answer = std::move(answer)] {
      const auto found = secrets.find(key);
      const bool ok = works();
      answer(ok, ok && found != secrets.end() ? std::optional(found->second) : std::nullopt);
    });
  }
  void write(const QString& key, const QString& secret, std::function<void(bool)> answer) override {
    calls += QStringLiteral("write ") + key;
    later([this, key, secret, answer = std::move(answer)] {
      if (works() && !forgets)
        secrets[key] = secret;
      answer(works());
    });
  }
  void remove(const QString& key, std::function<void(bool)> answer) override {
    calls += QStringLiteral("remove ") + key;
    later([this, key, answer = std::move(answer)] {
      if (works())
        secrets.erase(key);
      answer(works());
    });
  }

  /// As the desktop would change it.
  void become(State state) {
    now = state;
    Q_EMIT stateChanged();
  }
  /// Gives the answers that were asked for so far.
  void answerAll() {
    for (const auto& answer : std::exchange(waiting, {}))
      answer();
  }

 private:
  bool works() const { return now == State::Available && !fails; }
  void looked(const std::function<void()>& done) {
    m_looked = true;
    Q_EMIT stateChanged();
    if (done)
      done();
  }
  void later(std::function<void()> answer) {
    if (delays)
      waiting.push_back(std::move(answer));
    else
      answer();
  }
  bool m_looked = false;
};

class RecordingFiringActions final : public FiringActions {
 public:
  /// Run when a task is started and when an alert is opened, as what happens meanwhile.
  std::function<void()> onTask;
  std::function<void(const AlertRequest&)> onAlert;

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
    if (onTask)
      onTask();
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
    if (onAlert)
      onAlert(request);
  }
};

} // namespace tockwise
