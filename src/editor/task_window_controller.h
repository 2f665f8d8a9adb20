// The window in which a reminder's task is chosen: its type and what it opens.
#pragma once

#include "ports/prompter.h"
#include "store/reminder.h"

#include <QDialog>

#include <memory>

namespace tockwise {

/// Main thread. Opens over its parent window and does not block others.
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

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
