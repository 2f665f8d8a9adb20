#include "menu/menu_actions.h"

#include "base/main_thread.h"

#include <algorithm>
#include <array>

namespace tockwise {
namespace {

struct Toggle {
  const char16_t* action;
  const char16_t* setting;
};

constexpr std::array<Toggle, 4> kToggles{{{u"setShowItemIndex", u"showItemIndex"},
                                          {u"setShowRichText", u"showRichText"},
                                          {u"truncateReminders", u"truncateReminders"},
                                          {u"setShowRuler", u"showRuler"}}};

enum Answer { Yes = 0, No = 1 };

Question clearQueueQuestion() {
  Question question;
  question.title = QStringLiteral("Clear Queue?");
  question.message = QStringLiteral("Are you sure you want to clear the queue?");
  question.buttons = {QStringLiteral("Yes"), QStringLiteral("No")};
  question.defaultButton = Yes;
  question.escapeButton = No;
  return question;
}

} // namespace

std::optional<QString> settingOfToggle(const QString& action) {
  const auto* toggle =
      std::find_if(kToggles.begin(), kToggles.end(), [&action](const Toggle& candidate) {
        return action == QStringView(candidate.action);
      });
  if (toggle == kToggles.end())
    return std::nullopt;
  return QString::fromUtf16(toggle->setting);
}

QStringList toggleActions() {
  QStringList actions;
  for (const Toggle& toggle : kToggles)
    actions += QString::fromUtf16(toggle.action);
  return actions;
}

MenuActions::MenuActions(ReminderStore& store, Prompter& prompter)
    : m_store(store), m_prompter(prompter) {}

std::optional<QString> MenuActions::recentText(qsizetype position, const QString& title) const {
  const auto& entries = std::as_const(m_store).recentReminders().entries();
  const auto isMeant = [&title](const RecentReminder& entry) { return entry.description == title; };
  auto found = position >= 0 && position < qsizetype(entries.size()) ? entries.begin() + position
                                                                     : entries.end();
  if (found == entries.end() || !isMeant(*found))
    found = std::find_if(entries.begin(), entries.end(), isMeant);
  if (found == entries.end() || found->fullDescription.isEmpty())
    return std::nullopt;
  return found->fullDescription;
}

void MenuActions::clearRecent() {
  m_store.recentReminders().clear();
  m_store.saveDefaults();
}

void MenuActions::toggle(const QString& setting) {
  PreferencesStore& preferences = m_store.preferences();
  preferences.setValue(setting, !preferences.boolean(setting));
}

bool MenuActions::clearQueue() {
  if (m_prompter.ask(clearQueueQuestion()) == No)
    return false;
  runOnMainThread([this] { m_store.clearQueue(); });
  return true;
}

void MenuActions::importCalendarEventsPrefs() {
  m_prompter.ask(
      messageToRead(QStringLiteral("No calendar is connected."),
                    QStringLiteral("This version of Tockwise does not import calendar events.")));
}

} // namespace tockwise
