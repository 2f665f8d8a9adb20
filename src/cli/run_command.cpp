#include "cli/run_command.h"

#include "app/desktop_facts.h"
#include "app/json.h"
#include "app/store_messages.h"
#include "base/harmless_text.h"
#include "cli/activate_application.h"
#include "cli/bus_backend.h"
#include "cli/command_line.h"
#include "cli/output.h"
#include "cli/password_option.h"
#include "cli/rich_option.h"
#include "cli/store_backend.h"
#include "cli/waiting.h"
#include "prefs/setting_table.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>

namespace tockwise {
namespace {

// How long a command waits for another one that has the store open.

// An application that hangs is amiss, too.
constexpr std::chrono::seconds kPatienceOfDoctor{5};

using Printed = Result<QString>; // what a command prints on stdout

bool print(FILE* stream, const QString& text) {
  const QByteArray bytes = text.toUtf8();
  const size_t written = std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
  return written == size_t(bytes.size()) && std::fflush(stream) == 0;
}

// What a command was asked for; half of it on a full disk is a failure.
int finishWith(const QString& text) {
  if (text.isEmpty() || print(stdout, text))
    return kDone;
  return failCommand(
      {Error::Kind::Storage,
       QStringLiteral("the answer cannot be written: %1").arg(qt_error_string(errno))});
}

void warnOfDamage(const StoreNotice& notice) {
  const QString text = damageText(notice);
  if (!text.isEmpty())
    print(stderr, QStringLiteral("tockwise: ") + QString(text).replace(u'\n', u' ') + u'\n');
}

// The running application if there is one, else the store. A store that is held while no
// application is on the bus belongs to another command that is about to finish, or to an
// application that is just starting.
Result<std::unique_ptr<Backend>> findBackend(const Clock& clock) {
  QElapsedTimer waited;
  waited.start();
  for (;;) {
    if (auto bus = BusBackend::connect())
      return std::unique_ptr<Backend>(std::move(bus));
    auto store = StoreBackend::open(PreferencesStore::Paths::ofUser(), clock);
    if (store) {
      warnOfDamage((*store)->loadReport());
      return std::unique_ptr<Backend>(std::move(*store));
    }
    if (store.error().kind != Error::Kind::Busy)
      return store.error();
    if (waited.elapsed() > kPatience) {
      return Error{Error::Kind::Busy,
                   QStringLiteral("the reminders are in use by a Tockwise that cannot be asked "
                                  "from here (another session, or no session bus)")};
    }
    QThread::msleep(kPause);
  }
}

// Calls method and lets show make text of the JSON that it returns. A reminder may come from
// somebody else's document.
template <typename Json, typename Show>
Printed printJson(Backend& backend, const QString& method, const QVariantList& arguments,
                  bool asJson, Show&& show) {
  const auto reply = backend.call(method, arguments);
  if (!reply)
    return reply.error();
  const QString text = reply->toString();
  if (asJson)
    return text;
  const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
  if constexpr (std::is_same_v<Json, QJsonArray>)
    return harmlessLines(show(document.array()));
  else
    return harmlessLines(show(document.object()));
}

// Calls a method that returns an identifier or nothing.
Printed printReply(Backend& backend, const QString& method, const QVariantList& arguments) {
  const auto reply = backend.call(method, arguments);
  if (!reply)
    return reply.error();
  const QString text = reply->toString();
  return text.isEmpty() ? text : text + u'\n';
}

// The application has a folder of its own.
Result<QString> absolutePath(const QString& path) {
  const QString folder = QDir::currentPath();
  if (QDir::isRelativePath(path) && !QFileInfo::exists(folder))
    return Error{Error::Kind::NotFound, QStringLiteral("the current folder is gone")};
  return QDir(folder).absoluteFilePath(path);
}

// Calls a method whose first argument is the path of the document that the words name.
Result<QVariant> callOnDocument(Backend& backend, const QString& method, const Invocation& words,
                                const QVariantList& more = {}) {
  const QString file = words.arguments.value(0);
  if (file.isEmpty())
    return Error{Error::Kind::Usage, QStringLiteral("FILE is the name of a file")};
  const auto path = absolutePath(file);
  if (!path)
    return path.error();
  return backend.call(method, QVariantList{*path} + more);
}

Printed silently(const Printed& printed) {
  return printed ? Printed(QString()) : printed;
}

Printed runAlerts(Backend& backend, const Invocation& words) {
  if (words.arguments.isEmpty()) {
    return printJson<QJsonArray>(backend, QStringLiteral("Alerts"), {}, words.json, alertsText);
  }
  static const QStringList actions{QStringLiteral("ok"),     QStringLiteral("again"),
                                   QStringLiteral("delete"), QStringLiteral("show"),
                                   QStringLiteral("hide"),   QStringLiteral("ok-all")};
  bool numeric = true;
  const int position = words.arguments.size() > 1 ? words.arguments[1].toInt(&numeric) : 0;
  if (words.json || !actions.contains(words.arguments[0]) || !numeric || position < 0 ||
      (words.arguments.size() > 1 && position < 1)) {
    return Error{
        Error::Kind::Usage,
        QStringLiteral("usage: tockwise alerts %1").arg(QStringView(words.command->synopsis))};
  }
  return silently(
      printReply(backend, QStringLiteral("AlertCommand"), {words.arguments[0], position}));
}

Printed listPreferences(Backend& backend) {
  const auto reply = backend.call(QStringLiteral("ListPreferences"), {});
  if (!reply)
    return reply.error();
  const QVariantMap values = reply->toMap();
  QString text;
  for (const SettingRow& row : settingTable()) {
    const QString key = QString::fromUtf16(row.key);
    QString value = values.value(key).toString();
    text += QStringLiteral("%1=%2\n").arg(key, value.replace(u'\n', u','));
  }
  return text;
}

Printed runPrefs(Backend& backend, const Invocation& words) {
  const QString verb = words.arguments.value(0);
  const qsizetype count = words.arguments.size();
  if (verb == u"list" && count == 1)
    return listPreferences(backend);
  if (verb == u"get" && count == 2) {
    const auto reply = backend.call(QStringLiteral("GetPreference"), {words.arguments[1]});
    return reply ? Printed(reply->toString() + u'\n') : Printed(reply.error());
  }
  if (verb == u"set" && count >= 3) {
    return printReply(backend, QStringLiteral("SetPreference"),
                      {words.arguments[1], QVariant(words.arguments.mid(2))});
  }
  return Error{
      Error::Kind::Usage,
      QStringLiteral("usage: tockwise prefs %1").arg(QStringView(words.command->synopsis))};
}

Printed runQuit(Backend& backend, const Invocation& words) {
  const auto reply = backend.call(QStringLiteral("Quit"), {words.yes});
  if (!reply)
    return reply.error();
  if (!reply->toBool())
    return Error{Error::Kind::Refused,
                 QStringLiteral("Tockwise keeps running: the question was answered with No")};
  return QString();
}

Printed runClear(Backend& backend, const Invocation& words) {
  if (!words.yes)
    return Error{Error::Kind::Usage,
                 QStringLiteral("clear removes every reminder: say so with --yes")};
  return printReply(backend, QStringLiteral("Clear"), {});
}

// The file is written by whoever makes the pages, and the application has another folder.
Printed runPrint(Backend& backend, const Invocation& words) {
  const bool alerts = words.options.contains(QStringLiteral("alerts"));
  if (!words.options.contains(QStringLiteral("pdf")))
    return printReply(backend, QStringLiteral("Print"), {alerts});
  const QString path = words.options.value(QStringLiteral("pdf")).toString();
  if (path.isEmpty())
    return Error{Error::Kind::Usage, QStringLiteral("--pdf takes the name of a file")};
  const auto file = absolutePath(path);
  if (!file)
    return file.error();
  return printReply(backend, QStringLiteral("PrintPDF"), {*file, alerts});
}

// What of a document runs or opens something by itself is told beside what the command prints.
void warnOfTasks(const QVariantMap& report) {
  const QStringList tasks = report.value(QStringLiteral("tasks")).toStringList();
  for (const QString& task : tasks)
    print(stderr, QStringLiteral("tockwise: ") + task + u'\n');
  const qlonglong more = report.value(QStringLiteral("taskCount")).toLongLong() - tasks.size();
  if (more > 0)
    print(stderr, QStringLiteral("tockwise: and %1 more\n").arg(more));
}

Printed runOpen(Backend& backend, const Invocation& words) {
  if (!words.yes && !words.options.isEmpty()) {
    return Error{Error::Kind::Usage, QStringLiteral("--no-tasks goes with --yes: without it, the "
                                                    "application lets you choose")};
  }
  const auto reply =
      callOnDocument(backend, QStringLiteral("Open"), words, {words.yes, words.options});
  if (!reply)
    return reply.error();
  warnOfTasks(reply->toMap());
  return QString();
}

Printed runMerge(Backend& backend, const Invocation& words) {
  const auto reply = callOnDocument(backend, QStringLiteral("Merge"), words, {words.options});
  if (!reply)
    return reply.error();
  const QVariantMap report = reply->toMap();
  warnOfTasks(report);
  return QStringLiteral("%1 merged, %2 existed\n")
      .arg(report.value(QStringLiteral("merged")).toLongLong())
      .arg(report.value(QStringLiteral("existed")).toLongLong());
}

Printed carryOut(Backend& backend, const Invocation& words) {
  const QString name = QString::fromUtf16(words.command->name);
  const QString first = words.arguments.value(0);
  if (name == u"add")
    return printReply(backend, QStringLiteral("Add"), {first, words.options});
  if (name == u"edit")
    return printReply(backend, QStringLiteral("Edit"), {first, words.options});
  if (name == u"delete")
    return silently(printReply(backend, QStringLiteral("Delete"), {first}));
  if (name == u"list")
    return printJson<QJsonArray>(backend, QStringLiteral("List"), {}, words.json, listText);
  if (name == u"show")
    return printJson<QJsonObject>(backend, QStringLiteral("Show"), {first}, words.json,
                                  reminderText);
  if (name == u"menu")
    return printJson<QJsonArray>(backend, QStringLiteral("Menu"), {}, words.json, menuText);
  if (name == u"alerts")
    return runAlerts(backend, words);
  if (name == u"prefs")
    return runPrefs(backend, words);
  if (name == u"print")
    return runPrint(backend, words);
  if (name == u"clear")
    return runClear(backend, words);
  if (name == u"save") {
    const auto saved = callOnDocument(backend, QStringLiteral("Save"), words);
    return saved ? Printed(QString()) : Printed(saved.error());
  }
  if (name == u"open")
    return runOpen(backend, words);
  if (name == u"merge")
    return runMerge(backend, words);
  return runQuit(backend, words);
}

// Works whatever is amiss with the store: that is one of the things it tells.
int printChecks(const Invocation& words) {
  QJsonArray checks;
  const auto bus = BusBackend::connect();
  if (bus)
    bus->setPatience(kPatienceOfDoctor);
  const auto reply = bus ? bus->call(QStringLiteral("Doctor"), {}) : Result<QVariant>(QVariant());
  if (reply && reply->isValid())
    checks = QJsonDocument::fromJson(reply->toString().toUtf8()).array();
  else
    checks = checksToJson(checksWithoutApplication(SystemClock()));
  return finishWith(words.json ? jsonText(checks) : harmlessLines(checksText(checks)));
}

// Asks the application, or does it on the store, and prints what comes of it.
int printAnswer(const Invocation& invocation) {
  const SystemClock clock;
  QElapsedTimer waited;
  waited.start();
  Printed printed = QString();
  do { // an application that goes away meanwhile leaves the store to us
    const auto backend = findBackend(clock);
    if (!backend)
      return failCommand(backend.error());
    printed = carryOut(**backend, invocation);
    if (printed || printed.error().kind != Error::Kind::Busy)
      break;
    QThread::msleep(kPause);
  } while (waited.elapsed() < kPatience);
  if (!printed)
    return failCommand(printed.error());
  return finishWith(*printed);
}

// The desktop action that a command opens a window with, or "".
QString desktopActionOf(const Invocation& words) {
  const QStringView name(words.command->name);
  if (name == u"new")
    return QStringLiteral("new-reminder");
  if (name == u"prefs" && words.arguments == QStringList(QStringLiteral("open")))
    return QStringLiteral("preferences");
  return {};
}

} // namespace

int failCommand(const Error& error) {
  QString message = error.message; // may hold a name of a file that somebody else chose
  print(stderr, QStringLiteral("tockwise: ") + harmlessLines(message.replace(u'\n', u' ')) + u'\n');
  return error.kind == Error::Kind::Usage ? kWrongWords : kFailed;
}

bool needsFonts(const QStringList& words) {
  return words.value(0) == u"print" &&
         std::any_of(words.begin(), words.end(),
                     [](const QString& word) { return word.startsWith(u"--pdf"); });
}

int runCommand(const QStringList& words) {
  const QString first = words.value(0);
  if (first == u"--help" || first == u"-h" || first == u"help") {
    const CommandSpec* command = findCommand(words.value(1));
    if (words.size() > 1 && !command)
      return failCommand(
          {Error::Kind::Usage, QStringLiteral("there is no command \"%1\"").arg(words[1])});
    return finishWith(helpText(command));
  }
  if (first == u"--version") {
    return finishWith(QStringLiteral("Tockwise %1\n").arg(QStringLiteral(TOCKWISE_VERSION)));
  }
  auto invocation = parseCommandLine(words);
  if (!invocation)
    return failCommand(invocation.error());
  if (invocation->help) {
    return finishWith(helpText(invocation->command));
  }
  // A command tells what happened in one line of its own.
  QLoggingCategory::setFilterRules(
      QStringLiteral("tockwise.info=false\nqt.gui.imageio*.warning=false"));
  if (QStringView(invocation->command->name) == u"doctor")
    return printChecks(*invocation);
  if (const QString action = desktopActionOf(*invocation); !action.isEmpty()) {
    const auto activated = activateApplication(action);
    return activated ? int(kDone) : failCommand(activated.error());
  }
  // Here, where the caller's folder is: the application has another.
  if (const auto read = readRichOption(invocation->options); !read)
    return failCommand(read.error());
  if (QStringView(invocation->command->name) == u"prefs") {
    if (const auto read = readPasswordOption(invocation->arguments); !read)
      return failCommand(read.error());
  }
  return printAnswer(*invocation);
}

} // namespace tockwise
