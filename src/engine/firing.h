// Firing one reminder: moving a repeating one on, counting, running its task, sending its mail and
// text message, opening its alert.
#pragma once

#include "base/clock.h"
#include "store/reminder_queue.h"
#include "store/settings.h"

namespace tockwise {

/// What an alert window shows, and which reminder it is of.
struct AlertRequest {
  QString reminder;       // the plain text
  QByteArray RTFData;     // the archived rich text, or empty
  Date date;              // the fire date before rescheduling
  bool sentEmail = false; // the reminder's own flags
  bool sentSMS = false;
  bool rescheduled = false;
  QString reminderType;
  QString reminderUUID;

  friend bool operator==(const AlertRequest&, const AlertRequest&) = default;
};

/// What firing asks of the rest of the program. Main thread; none of these may fail the firing.
class FiringActions {
 public:
  virtual ~FiringActions() = default;
  virtual void doTask(const Task& task) = 0;
  virtual void sendEmailWithSubject(const QString& subject, const QString& message) = 0;
  /// Sends the rich text as HTML; false when it could not (the caller then sends plain text).
  virtual bool sendEmailWithSubjectAndHTMLMessage(const QString& subject,
                                                  const QByteArray& RTFData) = 0;
  virtual void sendSMSWithSubject(const QString& subject, const QString& message) = 0;
  virtual void openAlert(const AlertRequest& request) = 0;
  /// The reminder was counted as fired; comes before all others.
  virtual void fired(const QString& reminderUUID) { Q_UNUSED(reminderUUID) }
};

/// Main thread.
class Firing {
 public:
  Firing(ReminderQueue& queue, const Settings& settings, const Clock& clock,
         FiringActions& actions);

  /// Fires the reminder at index, in the order of the rules. True when it changed the record
  /// (rescheduled or fired it). An index that a column does not hold ends the firing with a log
  /// line; false then.
  bool doReminder(qsizetype index);

 private:
  ReminderQueue& m_queue;
  const Settings& m_settings;
  const Clock& m_clock;
  FiringActions& m_actions;
};

} // namespace tockwise
