#include "cli/command_table.h"

#include <algorithm>
#include <array>

namespace tockwise {
namespace {

constexpr std::array kReminderOptions{
    OptionSpec{u"at", true, u"'YYYY-MM-DD HH:MM', local time"},
    OptionSpec{u"in", true, u"'1 Day 2 Hours 30 Minutes' from now"},
    OptionSpec{u"every", true,
               u"how often: month, week, day, hour, minute, never or MONTHS,DAYS,HOURS,MINUTES",
               u"month week day hour minute never"},
    OptionSpec{u"days", true, u"the weekdays on which it may alert: Sun,Mon,..."},
    OptionSpec{u"between", true, u"the time of day in which it may alert: HH:MM-HH:MM"},
    OptionSpec{u"before", true, u"DAYS,HOURS,MINUTES of advance notice"},
    OptionSpec{u"email", false, u"send an e-mail when it fires"},
    OptionSpec{u"no-email", false, u"send no e-mail"},
    OptionSpec{u"sms", false, u"send a text message when it fires"},
    OptionSpec{u"no-sms", false, u"send no text message"},
    OptionSpec{u"task", true,
               u"TYPE:PATH to open; TYPE is web, media, document, application or script"},
    OptionSpec{u"no-task", false, u"open nothing"},
    OptionSpec{u"rich", true, u"an HTML, RTF, RTFD or picture file: the text, with its format"},
    OptionSpec{u"text", true, u"the new text"}, // edit only: add takes all but this last one
};
constexpr std::span kEditOptions{kReminderOptions};
constexpr std::span kAddOptions = kEditOptions.first(kEditOptions.size() - 1);

constexpr std::array kJsonOption{OptionSpec{u"json", false, u"print one JSON value"}};
constexpr std::array kPrintOptions{
    OptionSpec{u"alerts", false, u"the open alerts of the running application, not the queue"},
    OptionSpec{u"pdf", true, u"the file to write; one that is there is overwritten"},
};
constexpr std::array kYesOption{OptionSpec{u"yes", false, u"answer every question with Yes"}};

constexpr std::array kOpenOptions{
    OptionSpec{u"yes", false, u"answer the question with OK"},
    OptionSpec{u"no-tasks", false, u"with --yes: run and open nothing that the document brings"},
};
constexpr std::array kMergeOptions{
    OptionSpec{u"no-tasks", false, u"run and open nothing that the document brings"}};

constexpr CommandSpec kCommands[] = {
    {u"add", u"(TEXT | --rich FILE) (--at WHEN | --in TIME) [options]",
     u"appends a reminder; prints its identifier", 1, 1, kAddOptions, u"rich"},
    {u"new",
     u"",
     u"opens the editor for a new reminder; starts the application if need be",
     0,
     0,
     {}},
    {u"list", u"[--json]", u"the queue in its order", 0, 0, kJsonOption},
    {u"show", u"UUID|N [--json]", u"one reminder; N counts from 1", 1, 1, kJsonOption},
    {u"edit", u"UUID|N [options] [--text TEXT | --rich FILE]", u"changes a reminder", 1, 1,
     kEditOptions},
    {u"delete", u"UUID|N", u"removes a reminder", 1, 1, {}},
    {u"clear", u"--yes", u"removes every reminder", 0, 0, kYesOption},
    {u"save", u"FILE", u"writes the queue as a reminders document", 1, 1, {}},
    {u"open", u"FILE [--yes [--no-tasks]]",
     u"replaces the queue by a document, once the running application has asked or with --yes", 1,
     1, kOpenOptions},
    {u"merge", u"FILE [--no-tasks]",
     u"adds the reminders of a document that are not there yet; prints how many", 1, 1,
     kMergeOptions},
    {u"menu", u"[--json]", u"the status menu as it would be shown now", 0, 0, kJsonOption},
    {u"alerts", u"[--json] | ok|again|delete|show|hide|ok-all [N]",
     u"the open alerts of the running application, and what to do with them", 0, 2, kJsonOption},
    {u"prefs",
     u"get KEY | set KEY VALUE... | list | open",
     u"settings, and their window",
     1,
     -1,
     {}},
    {u"doctor", u"[--json]", u"what works on this desktop, and what to do about the rest", 0, 0,
     kJsonOption},
    {u"print", u"[--alerts] [--pdf FILE]",
     u"opens the print preview of the running application, or writes its pages to a PDF file", 0, 0,
     kPrintOptions},
    {u"quit", u"[--yes]", u"ends the running application", 0, 0, kYesOption},
};

} // namespace

std::span<const CommandSpec> commandTable() {
  return kCommands;
}

const CommandSpec* findCommand(QStringView name) {
  const auto* found =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [&](const CommandSpec& command) { return name == QStringView(command.name); });
  return found == std::end(kCommands) ? nullptr : found;
}

} // namespace tockwise
