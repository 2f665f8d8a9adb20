// An open editor as the one who opened it sees it: what it holds, and how it ended.
#pragma once

#include "editor/reminder_draft.h"
#include "editor/reminder_window_controller.h"

#include <QObject>

#include <functional>
#include <memory>

namespace tockwise {

/// Main thread.
class ReminderEditor : public QObject {
  Q_OBJECT
 public:
  enum class End { Created, Cancelled, Deleted };

  /// Shows it, or brings it to the front.
  virtual void showWindow() = 0;
  /// What it holds now, to be gone on with later.
  virtual ReminderDraft current() const = 0;
  /// Whether that differs from what it was opened with.
  virtual bool isChanged() const = 0;
  /// Says that what it holds would be lost if the program ended now, and why; "" once it no longer
  /// would.
  virtual void tellDraftTrouble(const QString& why) = 0;
  // Once it has finished:
  virtual End end() const = 0;
  /// The values to store, as they were when it was closed.
  virtual ReminderDraft result() const = 0;

 Q_SIGNALS:
  /// Anything the user can lose was changed.
  void changed();
  /// It was closed. Once.
  void finished();
};

/// Makes an editor that starts with the draft; nothing when it cannot.
using MakeEditor = std::function<std::unique_ptr<ReminderEditor>(ReminderDraft)>;

/// Makes windows.
MakeEditor reminderWindows(ReminderWindowController::Surroundings surroundings);

} // namespace tockwise
