// How long it takes from the firing of a reminder until what its task starts is running.
#include "engine/firing.h"
#include "engine/task_runner.h"
#include "platform/desktop_workspace.h"
#include "platform/process_script_host.h"
#include "support/fakes.h"
#include "support/test_environment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <benchmark/benchmark.h>

#include <chrono>
#include <optional>

using namespace tockwise;

namespace {

constexpr int kApplications = 300; // as many as a full desktop has
using Moment = std::chrono::steady_clock::time_point;

/// A home with many desktop entries and a script. GLib reads the environment once, so there is one.
class Home {
 public:
  Home() {
    qputenv("XDG_DATA_DIRS", m_environment.path(QStringLiteral("share")).toUtf8());
    qputenv("XDG_CONFIG_DIRS", m_environment.path(QStringLiteral("etc")).toUtf8());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    const QString entries = path(QStringLiteral(".local/share/applications"));
    QDir().mkpath(entries);
    // Of the system only its table of types is read.
    QFile::link(QStringLiteral("/usr/share/mime"), path(QStringLiteral(".local/share/mime")));
    for (int i = 0; i < kApplications; ++i) {
      write(entries + QStringLiteral("/org.example.App%1.desktop").arg(i),
            QStringLiteral("[Desktop Entry]\nType=Application\nName=Application %1\nName[de]="
                           "Anwendung %1\nComment=One of many\nExec=/bin/true %U\n"
                           "Categories=Utility;\nMimeType=text/plain;\n")
                .arg(i)
                .toUtf8());
    }
    write(path(QStringLiteral(".config/mimeapps.list")),
          "[Default Applications]\ntext/plain=org.example.App7.desktop\n"
          "x-scheme-handler/http=org.example.App7.desktop\n");
    write(path(QStringLiteral("script.sh")), "#!/bin/sh\nexit 0\n");
    write(path(QStringLiteral("list.txt")), "tea\n");
  }
  QString path(const QString& name) const {
    return m_environment.path(QStringLiteral("home/") + name);
  }

 private:
  static void write(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
      qFatal("%s can't be written", qPrintable(path));
    file.write(content);
    file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
  }

  TestEnvironment m_environment;
};

const Home& home() {
  static int argumentCount = 1;
  static char name[] = "task_bench";
  static char* arguments[] = {name, nullptr};
  static const QCoreApplication application(argumentCount, arguments);
  static const Home made;
  return made;
}

class RunningActions final : public FiringActions {
 public:
  explicit RunningActions(TaskRunner& tasks) : m_tasks(tasks) {}
  void doTask(const Task& task) override { m_tasks.doTask(task); }
  void sendEmailWithSubject(const QString&, const QString&) override {}
  bool sendEmailWithSubjectAndHTMLMessage(const QString&, const QByteArray&) override {
    return true;
  }
  void sendSMSWithSubject(const QString&, const QString&) override {}
  void openAlert(const AlertRequest&) override {}

 private:
  TaskRunner& m_tasks;
};

/// A reminder fires; ends when what its task names has been executed.
void fire(benchmark::State& state, const Task& task) {
  const SystemClock clock;
  ReminderQueue queue;
  MemorySettings settings;
  DesktopWorkspace workspace;
  ProcessScriptHost scripts(clock);
  TaskRunner tasks(workspace, scripts);
  RunningActions actions(tasks);
  Firing firing(queue, settings, clock, actions);
  std::optional<Moment> running;
  QObject::connect(&scripts, &ScriptHost::started, &scripts,
                   [&] { running = std::chrono::steady_clock::now(); });
  for (auto _ : state) {
    queue.clear();
    Reminder reminder;
    reminder.reminderQueue = clock.now();
    reminder.reminderTasks = task;
    queue.append(reminder);
    running.reset();
    const Moment begin = std::chrono::steady_clock::now();
    firing.doReminder(0);
    if (task.type != Task::Script) // such a task is running when doTask() returns
      running = std::chrono::steady_clock::now();
    while (!running)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    state.SetIterationTime(std::chrono::duration<double>(*running - begin).count());
    while (!scripts.running().empty())
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

void taskScript(benchmark::State& state) {
  fire(state, {false, Task::Script, home().path(QStringLiteral("script.sh"))});
}
void taskAddress(benchmark::State& state) {
  home();
  fire(state, {false, Task::WebAddress, QStringLiteral("example.org")});
}
void taskDocument(benchmark::State& state) {
  fire(state, {false, Task::Document, home().path(QStringLiteral("list.txt"))});
}
void taskProgram(benchmark::State& state) {
  home();
  fire(state, {false, Task::Application, QStringLiteral("/bin/true")});
}
void taskEntry(benchmark::State& state) {
  home();
  fire(state, {false, Task::Application, QStringLiteral("org.example.App150")});
}
void taskApplicationByName(benchmark::State& state) {
  home();
  fire(state, {false, Task::Application, QStringLiteral("Application 299")});
}

/// The first task of a program's life pays for reading what the desktop has.
void taskFirstDocument(benchmark::State& state) {
  taskDocument(state);
}

} // namespace

BENCHMARK(taskFirstDocument)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(taskScript)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(taskAddress)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(taskDocument)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(taskProgram)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(taskEntry)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(taskApplicationByName)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
