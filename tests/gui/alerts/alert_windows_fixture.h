// Alert windows with everything around them faked, for tests of the list of them.
#pragma once

#include "alerts/alert_hiding_prompter.h"
#include "support/open_alerts.h"

#include <QPushButton>

namespace tockwise {

inline constexpr Date kNow{790000000};

class RecordingRemover final : public ReminderRemover {
 public:
  std::vector<qsizetype> indexes;
  std::function<void()> meanwhile;
  void removeReminder(qsizetype index) override {
    indexes.push_back(index);
    if (meanwhile)
      meanwhile();
  }
};

inline AlertRequest alertOf(const QString& text) {
  AlertRequest request;
  request.reminder = text;
  request.date = kNow;
  request.reminderType = QStringLiteral("regular");
  request.reminderUUID = QStringLiteral("UUID of ") + text;
  return request;
}

struct Fixture : AlertSurroundings {
  Fixture() {
    questions.setAlerts(&alerts);
    alerts.setReminderRemover(&remover);
  }

  FakePrompter* fake = new FakePrompter;
  FakePrompter& prompter = *fake;
  AlertHidingPrompter questions{std::unique_ptr<Prompter>(fake)};
  RecordingRemover remover;
  AlertWindows alerts{queue, sounds, questions};

  QString add(const QByteArray& RTFData) {
    Reminder reminder;
    reminder.reminderUUID = UUIDString();
    reminder.reminderRTFs = RTFData;
    queue.append(reminder);
    return reminder.reminderUUID;
  }
  qsizetype open(const QString& text, const QByteArray& RTFData = {}, bool rescheduled = false) {
    AlertRequest request = alertOf(text);
    request.RTFData = RTFData;
    request.rescheduled = rescheduled;
    return alerts.open(request);
  }
  QStringList texts() const { return textsOf(alerts); }
  QPushButton* button(qsizetype position, const char* name) {
    return alerts.window(position)->findChild<QPushButton*>(QString::fromLatin1(name));
  }
  int shown() const {
    int result = 0;
    for (const AlertEntry& entry : alerts.entries())
      result += entry.shown ? 1 : 0;
    return result;
  }
};

inline const QString kTea = QStringLiteral("Tea");
inline const QString kCake = QStringLiteral("Cake");
inline const QString kWalk = QStringLiteral("Walk");

} // namespace tockwise
