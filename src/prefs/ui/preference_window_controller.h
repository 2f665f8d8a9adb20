// The preferences window.
#pragma once

#include "prefs/save_preferences.h"
#include "prefs/ui/preference_surroundings.h"

#include <QDialog>
#include <QPointer>

#include <memory>
#include <vector>

class QFileDialog;

namespace Ui {
class PreferenceWindowCalendar;
}

namespace tockwise {

class EditorPane;
class MailServerPane;
class PreferencePane;
class QuickRemindPane;

/// Main thread. An ordinary window: alerts and questions open in front of it.
class PreferenceWindowController final : public QDialog {
  Q_OBJECT
 public:
  /// The panes in their order; saving leads to the third.
  enum class Pane {
    General,
    Alerts,
    Menu,
    Editor,
    QuickTimes,
    Messages,
    MailServer,
    Calendar,
    Cloud,
    Desktop
  };

  explicit PreferenceWindowController(PreferenceSurroundings surroundings,
                                      QWidget* parent = nullptr);
  ~PreferenceWindowController() override;

  /// Shows the window, its controls filled from the settings when it was closed, and brings it to
  /// the front.
  void prefs();
  /// The settings were changed from outside: shows the new values in every control that the user
  /// did not change since it was filled.
  void settingsChanged();

  /// Stores what the window shows, by the rules of saving, and shows what the user is to be told,
  /// one alert after the other: runs the event loop while one is open. Returns whether every
  /// setting is valid; false as well while it is saving already.
  bool savePreferences();
  /// "Apply": saves, and the window stays.
  void applyPrefs();
  /// "OK": saves, and closes the window when there was nothing to tell.
  void savePrefs();
  /// Saves before the window closes. False when the window has to stay: without a way to show the
  /// queue nothing more can be saved, and the window shows the pane of it.
  bool windowShouldClose();
  /// Lets the user choose the file of the default task in a dialog that takes the window's place
  /// meanwhile, and puts its path into the field.
  void browse();
  /// Whether the program may end: what the user changed in an open window is saved first, as when
  /// it closes.
  bool applicationShouldTerminate();
  void doAlert(const QString& title, const QString& text);

  Pane pane() const;
  void showPane(Pane pane);

  /// Escape: as the window's close button.
  void reject() override;

 Q_SIGNALS:
  /// The clock option as it was saved.
  void changeClockIcon(qint64 value);
  /// Everything was stored.
  void updatePrefs();
  /// Some setting was written; for whoever shows settings.
  void settingsWritten();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void windowDidLoad();
  void makePanes();
  void addPane(QWidget* pane, const QString& title);
  void addPane(PreferencePane* pane, const QString& title);
  void makePaneShortcuts();
  void fill();
  void follow();
  void place();
  void showEdited();
  PreferenceForm shownForm() const;
  void saveForm();

  PreferenceSurroundings m_surroundings;
  std::unique_ptr<Ui::PreferenceWindowCalendar> m_ui;
  std::vector<PreferencePane*> m_panes; // those with settings of the form
  EditorPane* m_editorPane = nullptr;
  MailServerPane* m_mailServerPane = nullptr;
  QuickRemindPane* m_quickRemindPane = nullptr;
  QPointer<QFileDialog> m_browsePanel;
  SavedPreferences m_lastSaved;
  bool m_isOpen = false; // also while the browse panel has its place
  bool m_isPlaced = false;
  bool m_isSaving = false;
};

} // namespace tockwise
