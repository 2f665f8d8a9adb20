// Ties the controls of a pane to settings: those that are stored when the preferences are saved,
// and those that write at once.
#pragma once

#include "prefs/save_preferences.h"
#include "store/settings.h"

#include <QObject>
#include <QVariant>

#include <functional>
#include <vector>

class QAbstractButton;
class QButtonGroup;
class QComboBox;
class QLineEdit;

namespace tockwise {

/// Main thread. The controls must live as long as it. Every control gets the property "setting"
/// with the key that it shows.
class SettingControls final : public QObject {
  Q_OBJECT
 public:
  /// settings must outlive it.
  explicit SettingControls(Settings& settings, QObject* parent = nullptr);

  /// A control of the form. The pop-up gives its index, the group the id of its checked button,
  /// the combo box its text; an index or an id that a control can't show stays as it is.
  void bind(const QString& key, QLineEdit* field, QString PreferenceForm::*value);
  void bind(const QString& key, QAbstractButton* box, bool PreferenceForm::*value);
  void bind(const QString& key, QComboBox* popup, qint64 PreferenceForm::*value);
  void bind(const QString& key, QButtonGroup* group, qint64 PreferenceForm::*value);
  void bindText(const QString& key, QComboBox* comboBox, QString PreferenceForm::*value);

  enum class Absent { CountsAsNo, CountsAsYes };
  /// A control that writes its setting, and has it synchronized, when the user changes it.
  void bindAtOnce(const QString& key, QAbstractButton* box, Absent absent = Absent::CountsAsNo);
  void bindAtOnce(const QString& key, QComboBox* popup);
  void bindAtOnce(const QString& key, QButtonGroup* group);

  /// Shows every setting as it is.
  void fill();
  /// Shows those settings that have changed since they were shown, and that the user has not
  /// changed here.
  void update();
  /// What the controls of the form show is what was saved.
  void saved();
  void gather(PreferenceForm& form) const;
  /// Whether a control of the form shows something else than it was filled with.
  bool isEdited() const;

 Q_SIGNALS:
  /// The user changed a control of the form.
  void edited();
  /// A setting was written.
  void written(const QString& key);

 private:
  struct FormControl {
    std::function<QVariant()> shown; // invalid: nothing that could be stored
    std::function<void(const QVariant& value)> show;
    std::function<QVariant(const PreferenceForm& form)> read;
    std::function<void(PreferenceForm& form, const QVariant& value)> write;
    QVariant filled{}; // what it showed when it was filled
    QVariant stored{}; // what the settings had then
  };

  template <typename T>
  FormControl& add(T PreferenceForm::*value, std::function<QVariant()> shown,
                   std::function<void(const QVariant& value)> show);
  void write(const QString& key, Value value);
  void changed();

  Settings& m_settings;
  std::vector<FormControl> m_form;
  std::vector<std::function<void()>> m_showAtOnce; // each shows the setting of one control
  bool m_filling = false;
};

} // namespace tockwise
