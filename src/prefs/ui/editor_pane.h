// The pane of the reminder editor and of what new reminders begin with.
#pragma once

#include "prefs/ui/preference_pane.h"
#include "prefs/ui/preference_surroundings.h"

#include <memory>

namespace Ui {
class EditorPane;
}

namespace tockwise {

/// Main thread.
class EditorPane final : public PreferencePane {
  Q_OBJECT
 public:
  explicit EditorPane(const PreferenceSurroundings& surroundings, QWidget* parent = nullptr);
  ~EditorPane() override;

  /// Where the file of the default task is looked for first.
  QString folderToBrowse() const;
  void setTaskPath(const QString& path);

 Q_SIGNALS:
  /// The user wants to choose the file of the default task.
  void browseRequested();

 private:
  void showState() override;
  /// The sample shows what the box says.
  void changePicker();
  void showTask();

  const Clock& m_clock;
  std::unique_ptr<Ui::EditorPane> m_ui;
};

} // namespace tockwise
