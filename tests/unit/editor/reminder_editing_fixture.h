// The editing of reminders with a store of its own and editors without windows.
#pragma once

#include "editor/reminder_editing.h"
#include "support/fakes.h"
#include "support/log_lines.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QDir>
#include <QTest>

#include <chrono>
#include <stdexcept>

namespace tockwise {

inline constexpr Date kNow{762854400};
inline constexpr std::chrono::milliseconds kSoon{1}; // when drafts are kept

inline QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

/// An editor without a window: the test writes and closes.
class FakeEditor final : public ReminderEditor {
 public:
  explicit FakeEditor(ReminderDraft draft) : opened(std::move(draft)), now(opened) {}

  void showWindow() override { ++timesShown; }
  ReminderDraft current() const override { return now; }
  bool isChanged() const override { return !(now == opened); }
  void tellDraftTrouble(const QString& why) override { troubles += why; }
  End end() const override { return m_end; }
  ReminderDraft result() const override { return now; }

  void write(const char* words) {
    now.reminderText = text(words);
    Q_EMIT changed();
  }
  void close(End end) {
    m_end = end;
    Q_EMIT finished();
  }

  ReminderDraft opened;
  ReminderDraft now;
  int timesShown = 0;
  QStringList troubles;

 private:
  End m_end = End::Cancelled;
};

/// One run of the program.
class Session {
 public:
  explicit Session(FakeClock& clock, std::chrono::milliseconds draftDelay = kSoon)
      : store(openUserStore(clock)),
        editing(
            *store, DraftStore(DraftStore::folderOfUser()), prompter,
            [this](ReminderDraft draft) { return make(std::move(draft)); }, draftDelay) {}

  std::unique_ptr<ReminderEditor> make(ReminderDraft draft) {
    if (refuses)
      throw std::runtime_error("no display");
    return std::make_unique<FakeEditor>(std::move(draft));
  }
  FakeEditor& editor(size_t index = 0) {
    return dynamic_cast<FakeEditor&>(*editing.reminderWindows().at(index));
  }
  Reminder reminder(qsizetype index = 0) const { return store->queue().reminder(index).value(); }
  QString add(const char* words) {
    Reminder reminder;
    reminder.reminderDescriptions = text(words);
    reminder.reminderQueue = kNow.plusSeconds(86400);
    reminder.importedUIDs = text("event");
    return store->appendReminder(reminder, ReminderStore::RecentEntry::Omit);
  }
  QStringList recent() const {
    QStringList texts;
    for (const RecentReminder& entry : store->recentReminders().entries())
      texts += entry.fullDescription;
    return texts;
  }

  FakePrompter prompter;
  bool refuses = false;
  std::unique_ptr<ReminderStore> store;
  ReminderEditing editing;
};

inline QStringList draftFiles() {
  return QDir(DraftStore::folderOfUser()).entryList(QDir::Files);
}

class ReminderEditingFixture : public QObject {
  Q_OBJECT
 protected:
  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock;
  std::unique_ptr<Session> m_session;

  /// The program ends in whatever way and is started again.
  Session& restart(std::chrono::milliseconds draftDelay = kSoon) {
    m_session.reset();
    m_session = std::make_unique<Session>(m_clock, draftDelay);
    return *m_session;
  }

 private Q_SLOTS:
  void initTestCase() { enableLogLines(); }
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_clock.set(kNow);
    restart();
  }
  void cleanup() {
    m_session.reset();
    m_environment.reset();
  }
};

} // namespace tockwise
