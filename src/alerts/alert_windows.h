// The open alert windows, and what is done with all of them.
#pragma once

#include "alerts/alert_sounds.h"
#include "alerts/alert_window_controller.h"
#include "alerts/current_alerts.h"
#include "alerts/remove_reminder.h"
#include "base/result.h"
#include "engine/firing.h"
#include "ports/prompter.h"
#include "store/reminder_queue.h"

#include <QObject>

#include <memory>
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
  bool shown = false; // false while hidden
  bool rescheduled = false;
};

/// Main thread. An alert stays open when its reminder is deleted or changed.
class AlertWindows final : public QObject, public CurrentAlerts {
  Q_OBJECT
 public:
  /// The references must outlive the object; unarchive may be empty (plain texts only).
  AlertWindows(const ReminderQueue& queue, AlertSounds& sounds, Prompter& prompter,
               UnarchiveText unarchive = {}, QObject* parent = nullptr);
  ~AlertWindows() override;

  /// Who deletes reminders, with the question. Until it is given, deleteReminder only closes.
  void setReminderRemover(ReminderRemover* remover) { m_remover = remover; }

  /// Plays the alert sound and opens an alert window without taking the keyboard, on the screen
  /// with the pointer. Returns its position in the list.
  qsizetype open(const AlertRequest& request, AlertLevel level = AlertLevel::ModalPanel);

  qsizetype count() const override { return qsizetype(m_windows.size()); }
  /// Oldest first.
  std::vector<AlertEntry> entries() const;
  /// The window at that position, or null.
  AlertWindowController* window(qsizetype position) const;

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

  void hideAllCurrentAlerts() override;
  void showAllCurrentAlerts() override;
  /// Asks; on "Yes" dismisses every alert a moment later.
  void closeAllCurrentAlerts();
  /// Dismisses every alert without a question.
  void okAll();

 Q_SIGNALS:
  void opened(const QString& reminderUUID);
  void closed(const QString& reminderUUID);
  void countChanged();
  void remindAgainRequested(const tockwise::RemindAgainRequest& request);
  /// A link in an alert's text was clicked. Only addresses that a text may open are passed on.
  void linkChosen(const QUrl& address);

 private:
  /// Windows are closed from within their own buttons' signals, so they are deleted later.
  struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
  };
  using WindowPointer = std::unique_ptr<AlertWindowController, DeleteLater>;

  void connectWindow(AlertWindowController* window);
  void place(AlertWindowController& window) const;
  void keepLevels();
  qsizetype positionOf(const AlertWindowController* window) const;
  qsizetype rescheduledReminderIndex(const QByteArray& RTFData) const;
  void remove(AlertWindowController* window);
  void remindAgainFrom(AlertWindowController* window);
  void deleteReminderOf(AlertWindowController* window);
  void followLink(const QUrl& address);

  const ReminderQueue& m_queue;
  AlertSounds& m_sounds;
  Prompter& m_prompter;
  ReminderRemover* m_remover = nullptr;
  UnarchiveText m_unarchive;
  std::vector<WindowPointer> m_windows; // alertWindows, oldest first
};

} // namespace tockwise
