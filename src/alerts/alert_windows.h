// The open alert windows, and what is done with all of them.
#pragma once

#include "alerts/alert_sounds.h"
#include "alerts/current_alerts.h"
#include "alerts/listed_alert.h"
#include "alerts/remove_reminder.h"
#include "base/result.h"
#include "engine/firing.h"
#include "ports/prompter.h"
#include "store/reminder_queue.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <vector>

namespace tockwise {

/// What the "Remind Again" button of an alert asks for.
struct RemindAgainRequest {
  QString reminderType;
  QString reminderMessage;
  QByteArray reminderRTFData;
  bool smsState = false;
  bool emailState = false;
  QString reminderUUID; // the reminder that the alert was of; it may be gone

  friend bool operator==(const RemindAgainRequest&, const RemindAgainRequest&) = default;
};

/// One open alert.
struct AlertEntry {
  qsizetype position = 0; // in the list, from 0
  QString reminderUUID;   // of the reminder as it fired; it may be gone
  QString text;
  QByteArray RTFData;
  Date date;
  bool shown = false; // false while hidden, also for a question
  bool rescheduled = false;
};

/// Main thread. An alert stays open when its reminder is deleted or changed.
///
/// The first window of a burst is made at once, the others in slices between which the event loop
/// runs; until then they are on the list as all others are.
class AlertWindows final : public QObject, public CurrentAlerts {
  Q_OBJECT
 public:
  /// The references must outlive the object; unarchive may be empty (plain texts only).
  AlertWindows(const ReminderQueue& queue, AlertSounds& sounds, Prompter& prompter,
               UnarchiveText unarchive = {}, QObject* parent = nullptr);
  ~AlertWindows() override;

  /// Who deletes reminders, with the question. Until it is given, deleteReminder only closes.
  void setReminderRemover(ReminderRemover* remover) { m_remover = remover; }

  /// Opens an alert window without taking the keyboard, on the screen with the pointer, and plays
  /// the alert sound when the event loop runs. Returns its position in the list. An alert of the
  /// same reminder and date that was restored goes away: its firing was not saved, and this is it.
  qsizetype open(const AlertRequest& request, AlertLevel level = AlertLevel::ModalPanel);
  /// Opens alerts of an earlier session again, in their order, without a sound. Their windows are
  /// made when the event loop runs.
  void restore(const std::vector<AlertState>& states);

  qsizetype count() const override { return qsizetype(m_alerts.size()); }
  /// Oldest first.
  std::vector<AlertEntry> entries() const;
  /// The alerts that nobody answered yet, oldest first.
  std::vector<AlertState> states() const;
  /// The window at that position, made now if it waits for that; null when there is no such
  /// position, or the alert was hidden before it was ever seen.
  AlertWindowController* window(qsizetype position);

  // Each of these fails with OutOfRange when there is no such position.
  /// Brings the window to the front without giving it the keyboard.
  Result<void> exposeCurrentAlert(qsizetype position);
  /// Takes the window off the screen; it stays open.
  Result<void> hide(qsizetype position);
  /// Dismisses the alert.
  Result<void> OK(qsizetype position);
  /// Closes the window, emits remindAgainRequested, and takes the alert off the list when the
  /// receivers have returned (an editor may have run meanwhile).
  Result<void> remindAgain(qsizetype position);
  /// Asks and deletes the first reminder of the queue whose rich text equals the alert's, byte for
  /// byte, the one at index 0 when none does; closes the alert whatever the answer was.
  Result<void> deleteReminder(qsizetype position);

  /// Takes every alert window off the screen; none is closed.
  void hideAllCurrentAlerts();
  /// Brings every alert window to the front, oldest first, so that the newest ends on top and
  /// has the keyboard.
  void showAllCurrentAlerts();
  /// Asks; on "Yes" dismisses every alert a moment later.
  void closeAllCurrentAlerts();
  /// Dismisses every alert without a question.
  void okAll();

  void hideForQuestion(int question) override;
  void showAfterQuestion(int question) override;

 Q_SIGNALS:
  void opened(const QString& reminderUUID);
  void closed(const QString& reminderUUID);
  void countChanged();
  /// states() is another than before.
  void statesChanged();
  void remindAgainRequested(const tockwise::RemindAgainRequest& request);
  /// A link in an alert's text was clicked. Only addresses that a text may open are passed on.
  void linkChosen(const QUrl& address);

 private:
  void append(AlertState state);
  void makeWaiting();
  void makeWindow(ListedAlert& alert);
  void nextTurn();
  void connectWindow(AlertWindowController* window, quint64 number);
  void place(AlertWindowController& window) const;
  void keepLevels();
  void bringNewestUp();
  ListedAlert* alertAt(qsizetype position);
  ListedAlert* find(quint64 number);
  qsizetype rescheduledReminderIndex(const QByteArray& RTFData) const;
  void dropRestored(const AlertRequest& request);
  void remove(quint64 number);
  void remindAgainFrom(quint64 number);
  void deleteReminderOf(quint64 number);
  void followLink(const QUrl& address);

  const ReminderQueue& m_queue;
  AlertSounds& m_sounds;
  Prompter& m_prompter;
  ReminderRemover* m_remover = nullptr;
  UnarchiveText m_unarchive;
  std::vector<ListedAlert> m_alerts; // alertWindows, oldest first
  quint64 m_lastNumber = 0;
  quint64 m_lastRestored = 0; // alerts up to this number are of an earlier session
  QElapsedTimer m_turn;       // since the first window of this turn of the event loop was made
  QTimer m_nextTurn;
  bool m_bringsNewestUp = false; // once all windows are there
};

} // namespace tockwise
