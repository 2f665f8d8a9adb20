#include "prefs/ui/setting_controls.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QLineEdit>
#include <QScopedValueRollback>

#include <algorithm>

namespace tockwise {
namespace {

constexpr char kSetting[] = "setting"; // the property of a control that names its setting

void name(const QList<QAbstractButton*>& buttons, const QString& key) {
  for (QAbstractButton* button : buttons)
    button->setProperty(kSetting, key);
}

/// Checks the button of that id, or none.
void check(QButtonGroup& group, qint64 id) {
  QAbstractButton* button = group.button(int(id));
  group.setExclusive(false); // else one would stay checked
  for (QAbstractButton* each : group.buttons())
    each->setChecked(each == button);
  group.setExclusive(true);
}

} // namespace

SettingControls::SettingControls(Settings& settings, QObject* parent)
    : QObject(parent), m_settings(settings) {}

template <typename T>
SettingControls::FormControl& SettingControls::add(T PreferenceForm::*value,
                                                   std::function<QVariant()> shown,
                                                   std::function<void(const QVariant&)> show) {
  FormControl control{std::move(shown), std::move(show),
                      [value](const PreferenceForm& form) { return QVariant(form.*value); },
                      [value](PreferenceForm& form, const QVariant& shownValue) {
                        form.*value = shownValue.value<T>();
                      }};
  m_form.push_back(std::move(control));
  return m_form.back();
}

void SettingControls::bind(const QString& key, QLineEdit* field, QString PreferenceForm::*value) {
  field->setProperty(kSetting, key);
  add(
      value, [field] { return QVariant(field->text()); },
      [field](const QVariant& text) { field->setText(text.toString()); });
  connect(field, &QLineEdit::textChanged, this, &SettingControls::changed);
}

void SettingControls::bind(const QString& key, QAbstractButton* box, bool PreferenceForm::*value) {
  box->setProperty(kSetting, key);
  add(
      value, [box] { return QVariant(box->isChecked()); },
      [box](const QVariant& state) { box->setChecked(state.toBool()); });
  connect(box, &QAbstractButton::toggled, this, &SettingControls::changed);
}

void SettingControls::bind(const QString& key, QComboBox* popup, qint64 PreferenceForm::*value) {
  popup->setProperty(kSetting, key);
  add(
      value,
      [popup] {
        const int index = popup->currentIndex();
        return index < 0 ? QVariant() : QVariant(qint64(index));
      },
      [popup](const QVariant& index) {
        const qint64 wanted = index.toLongLong();
        popup->setCurrentIndex(wanted >= 0 && wanted < popup->count() ? int(wanted) : -1);
      });
  connect(popup, &QComboBox::currentIndexChanged, this, &SettingControls::changed);
}

void SettingControls::bind(const QString& key, QButtonGroup* group, qint64 PreferenceForm::*value) {
  name(group->buttons(), key);
  add(
      value,
      [group] {
        return group->checkedId() < 0 ? QVariant() : QVariant(qint64(group->checkedId()));
      },
      [group](const QVariant& id) { check(*group, id.toLongLong()); });
  connect(group, &QButtonGroup::idToggled, this, &SettingControls::changed);
}

void SettingControls::bindText(const QString& key, QComboBox* comboBox,
                               QString PreferenceForm::*value) {
  comboBox->setProperty(kSetting, key);
  add(
      value, [comboBox] { return QVariant(comboBox->currentText()); },
      [comboBox](const QVariant& text) { comboBox->setCurrentText(text.toString()); });
  connect(comboBox, &QComboBox::currentTextChanged, this, &SettingControls::changed);
}

void SettingControls::bindAtOnce(const QString& key, QAbstractButton* box, Absent absent) {
  box->setProperty(kSetting, key);
  m_showAtOnce.emplace_back([this, key, box, absent] {
    const bool counts = absent == Absent::CountsAsYes && m_settings.value(key).isNull();
    box->setChecked(counts || m_settings.boolean(key));
  });
  connect(box, &QAbstractButton::clicked, this, [this, key](bool checked) { write(key, checked); });
}

void SettingControls::bindAtOnce(const QString& key, QComboBox* popup) {
  popup->setProperty(kSetting, key);
  m_showAtOnce.emplace_back([this, key, popup] {
    const qint64 index = m_settings.integer(key);
    popup->setCurrentIndex(index >= 0 && index < popup->count() ? int(index) : -1);
  });
  connect(popup, &QComboBox::activated, this,
          [this, key](int index) { write(key, qint64(index)); });
}

void SettingControls::bindAtOnce(const QString& key, QButtonGroup* group) {
  name(group->buttons(), key);
  m_showAtOnce.emplace_back([this, key, group] { check(*group, m_settings.integer(key)); });
  connect(group, &QButtonGroup::idClicked, this, [this, key](int id) { write(key, qint64(id)); });
}

void SettingControls::fill() {
  const QScopedValueRollback filling(m_filling, true);
  const PreferenceForm form = preferenceForm(m_settings);
  for (FormControl& control : m_form) {
    control.stored = control.read(form);
    control.show(control.stored);
    control.filled = control.shown();
  }
  for (const auto& show : m_showAtOnce)
    show();
}

void SettingControls::update() {
  const QScopedValueRollback filling(m_filling, true);
  const PreferenceForm form = preferenceForm(m_settings);
  for (FormControl& control : m_form) {
    const QVariant now = control.read(form);
    if (now == control.stored || control.shown() != control.filled)
      continue;
    control.stored = now;
    control.show(now);
    control.filled = control.shown();
  }
  for (const auto& show : m_showAtOnce)
    show();
}

void SettingControls::saved() {
  const PreferenceForm form = preferenceForm(m_settings);
  for (FormControl& control : m_form) {
    control.stored = control.read(form);
    control.filled = control.shown();
  }
}

void SettingControls::gather(PreferenceForm& form) const {
  for (const FormControl& control : m_form) {
    const QVariant shown = control.shown();
    control.write(form, shown.isValid() ? shown : control.stored);
  }
}

bool SettingControls::isEdited() const {
  return std::any_of(m_form.begin(), m_form.end(),
                     [](const FormControl& control) { return control.shown() != control.filled; });
}

void SettingControls::write(const QString& key, Value value) {
  m_settings.setValue(key, std::move(value));
  m_settings.synchronize();
  Q_EMIT written(key);
}

void SettingControls::changed() {
  if (!m_filling)
    Q_EMIT edited();
}

} // namespace tockwise
