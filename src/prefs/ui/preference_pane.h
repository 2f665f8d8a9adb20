// What the pages of the preferences window have in common.
#pragma once

#include "prefs/ui/setting_controls.h"

#include <QWidget>

namespace tockwise {

/// Main thread.
class PreferencePane : public QWidget {
  Q_OBJECT
 public:
  /// settings must outlive it.
  explicit PreferencePane(Settings& settings, QWidget* parent = nullptr);

  /// Shows everything as it is in the settings.
  void fill();
  /// Shows what was changed from outside; see SettingControls::update.
  void follow();
  /// What the pane shows is what was saved.
  void saved();
  /// Puts what the pane shows into its part of the form.
  virtual void gather(PreferenceForm& form) const;
  /// Whether something is shown that saving would store.
  virtual bool isEdited() const { return m_controls.isEdited(); }

 Q_SIGNALS:
  /// The user changed something that is stored when the preferences are saved.
  void edited();
  /// A setting was written.
  void settingsWritten();

 protected:
  /// Brings up to date what is not a control of a setting; after each of fill, follow and saved,
  /// and after every change by the user.
  virtual void showState() {}

  Settings& settings() const { return m_settings; }
  SettingControls& controls() { return m_controls; }

 private:
  Settings& m_settings;
  SettingControls m_controls;
};

} // namespace tockwise
