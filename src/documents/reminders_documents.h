// Saving the queue as a reminders document, and opening one: the panels, the question, and the
// review of what its reminders would run.
#pragma once

#include "base/result.h"
#include "documents/document_panels.h"
#include "ports/prompter.h"
#include "store/documents/data_dictionary.h"
#include "store/reminder_store.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace tockwise {

class TaskReviewWindow;

/// Main thread.
class RemindersDocuments final : public QObject {
  Q_OBJECT
 public:
  struct Surroundings {
    ReminderStore& store; // must outlive the object, as all references here
    Prompter& prompter;
    std::function<void()> hideAllCurrentAlerts;
    std::function<void()> showAllCurrentAlerts;
    std::unique_ptr<DocumentPanels> panels = {}; // null: FileDialogPanels
  };
  explicit RemindersDocuments(Surroundings surroundings, QObject* parent = nullptr);
  ~RemindersDocuments() override;

  /// Opens the save panel and returns; the document is written when a place was chosen, and the log
  /// says so. A further request while the panel is open brings it to the front.
  void selItemSaveReminders();
  /// Opens the open panel and returns; askOpenFile() follows with the file that was chosen.
  void selItemOpenReminders();
  /// Asks, lets the user review the tasks that the document brings, and replaces the queue. What
  /// can't be read changes nothing and is logged. True when the queue was replaced. Runs the event
  /// loop while the user decides; a request that comes meanwhile waits until then, and its call
  /// returns false at once.
  bool askOpenFile(const QString& path);
  /// Whether a question of askOpenFile() is open.
  bool isAsking() const { return m_asking.has_value(); }
  /// What the desktop asks for; always true, whatever the user chooses.
  bool openFile(const QString& path);

 Q_SIGNALS:
  /// The queue was replaced.
  void changed();

 private:
  void saveTo(const QString& chosen);
  bool mayReplaceFile(const QString& path);
  bool openNow(const QString& path);
  void openNext();
  std::optional<DataDictionary> confirmedContents(const QString& path);
  Result<DataDictionary> read(const QString& path) const;
  bool review(const QString& fileName, DataDictionary& dictionary);
  int askWithoutAlerts(const Question& question);

  Surroundings m_surroundings;
  std::optional<QString> m_asking; // the file that is asked about
  QStringList m_waiting;           // those to be opened after it
  QPointer<TaskReviewWindow> m_review;
};

} // namespace tockwise
