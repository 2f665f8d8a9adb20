// Saving the queue as a reminders document, and opening one: the panels, the question, and the
// review of what its reminders would run.
#pragma once

#include "ports/prompter.h"
#include "store/documents/data_dictionary.h"
#include "store/reminder_store.h"

#include <QObject>

#include <functional>

namespace tockwise {

/// Main thread. Every operation may run the event loop for a panel or a question.
class RemindersDocuments final : public QObject {
  Q_OBJECT
 public:
  struct Surroundings {
    ReminderStore& store; // must outlive the object, as all references here
    Prompter& prompter;
    std::function<void()> hideAllCurrentAlerts;
    std::function<void()> showAllCurrentAlerts;
  };
  explicit RemindersDocuments(Surroundings surroundings, QObject* parent = nullptr);
  ~RemindersDocuments() override;

  /// The save panel, then the document. A further request while the panel is open brings it to the
  /// front.
  void selItemSaveReminders();
  /// The open panel, then askOpenFile() with the file that was chosen.
  void selItemOpenReminders();
  /// Asks, lets the user review the tasks that the document brings, and replaces the queue. What
  /// can't be read changes nothing and is logged. True when the queue was replaced.
  bool askOpenFile(const QString& path);
  /// What the desktop asks for; always true, whatever the user chooses.
  bool openFile(const QString& path);

 Q_SIGNALS:
  /// The queue was replaced.
  void changed();

 private:
  Surroundings m_surroundings;
};

} // namespace tockwise
