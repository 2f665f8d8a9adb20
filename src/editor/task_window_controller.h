// The window in which a reminder's task is chosen: its type and what it opens.
#pragma once

#include "ports/prompter.h"
#include "store/reminder.h"

#include <QDialog>

#include <memory>

namespace tockwise {

/// Main thread. Opens over its parent window and blocks no other; accepted() when a task was
/// confirmed, rejected() when the window was closed. Read the accessors then.
class TaskWindowController final : public QDialog {
  Q_OBJECT
 public:
  TaskWindowController(QWidget* parent, Prompter& prompter);
  ~TaskWindowController() override;

  /// A Task::Type.
  qint64 taskType() const;
  QString pathString() const;
  /// Whether the user confirmed a task, or closed the window.
  bool addTask() const;
  bool didClose() const;

  /// Takes type and path, and closes the window. Without a path it beeps and the window stays.
  void addTaskAction();
  /// Lets the user choose a file (for an application: its desktop entry or program) in a dialog
  /// that takes the window's place meanwhile, and puts its path into the field.
  void browse();
  /// Closes the window without a task.
  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
